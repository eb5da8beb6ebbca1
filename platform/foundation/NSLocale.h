// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"
#include "StringConstant.h"

namespace brindle {

class NSArray;

// Keys of `objectForKey:`.
inline constexpr StringConstant<"kCFLocaleIdentifierKey"> NSLocaleIdentifier;
inline constexpr StringConstant<"kCFLocaleLanguageCodeKey"> NSLocaleLanguageCode;
inline constexpr StringConstant<"kCFLocaleCountryCodeKey"> NSLocaleCountryCode;
inline constexpr StringConstant<"kCFLocaleScriptCodeKey"> NSLocaleScriptCode;
inline constexpr StringConstant<"kCFLocaleDecimalSeparatorKey"> NSLocaleDecimalSeparator;
inline constexpr StringConstant<"kCFLocaleGroupingSeparatorKey"> NSLocaleGroupingSeparator;
inline constexpr StringConstant<"kCFLocaleCurrencyCodeKey"> NSLocaleCurrencyCode;
inline constexpr StringConstant<"kCFLocaleCurrencySymbolKey"> NSLocaleCurrencySymbol;
/// An NSNumber of YES or NO.
inline constexpr StringConstant<"kCFLocaleUsesMetricSystemKey"> NSLocaleUsesMetricSystem;

/// A language and region with their customs. A value; copying answers the receiver.
///
/// The identifier is a language, perhaps a script and a region: "de", "de_CH", "sr_Latn_RS"; dashes do as well. A
/// language that nobody knows has the customs of the session's, and what is no identifier, or longer than 100 letters,
/// those of the neutral locale "".
/// Thread: any.
class NSLocale : public NSObject {
    BRINDLE_OBJECT(NSLocale, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the user's, by `UserLocale`.
        Ref<NSLocale> currentLocale() const { return send<"currentLocale", Ref<NSLocale>>(); }
        Ref<NSLocale> autoupdatingCurrentLocale() const
        {
            return send<"autoupdatingCurrentLocale", Ref<NSLocale>>();
        }
        /// Answers the neutral one, whose identifier is "".
        Ref<NSLocale> systemLocale() const { return send<"systemLocale", Ref<NSLocale>>(); }
        Ref<NSLocale> localeWithLocaleIdentifier(NSString* identifier) const
        {
            return send<"localeWithLocaleIdentifier:", Ref<NSLocale>>(identifier);
        }
        /// Answers the identifiers that have customs of their own, in the order of the alphabet.
        Ref<NSArray> availableLocaleIdentifiers() const
        {
            return send<"availableLocaleIdentifiers", Ref<NSArray>>();
        }
        /// Answers the user's languages, such as "de-CH", best first.
        Ref<NSArray> preferredLanguages() const
        {
            return send<"preferredLanguages", Ref<NSArray>>();
        }
        /// Answers the usual spelling: "de_CH" for "DE-ch".
        Ref<NSString> canonicalLocaleIdentifierFromString(NSString* identifier) const
        {
            return send<"canonicalLocaleIdentifierFromString:", Ref<NSString>>(identifier);
        }
    };

    /// - Nil: for nil.
    Ref<NSLocale> initWithLocaleIdentifier(NSString* identifier)
    {
        return send<"initWithLocaleIdentifier:", Ref<NSLocale>>(identifier);
    }
    Ref<NSString> localeIdentifier() const { return send<"localeIdentifier", Ref<NSString>>(); }
    /// - Nil: for a key that is not listed above, and for what the identifier does not say (script, country).
    Ref<NSObject> objectForKey(NSString* key) const
    {
        return send<"objectForKey:", Ref<NSObject>>(key);
    }
    /// Answers how people of this locale call another locale, a language or a country.
    /// - key: `NSLocaleIdentifier`, `NSLocaleLanguageCode` or `NSLocaleCountryCode`; others give nil.
    Ref<NSString> displayNameForKey_value(NSString* key, NSString* value) const
    {
        return send<"displayNameForKey:value:", Ref<NSString>>(key, value);
    }
    Ref<NSString> languageCode() const { return send<"languageCode", Ref<NSString>>(); }
    Ref<NSString> countryCode() const { return send<"countryCode", Ref<NSString>>(); }
    Ref<NSString> scriptCode() const { return send<"scriptCode", Ref<NSString>>(); }
    Ref<NSString> decimalSeparator() const { return send<"decimalSeparator", Ref<NSString>>(); }
    Ref<NSString> groupingSeparator() const { return send<"groupingSeparator", Ref<NSString>>(); }
    /// - Nil: when the identifier names no country.
    Ref<NSString> currencyCode() const { return send<"currencyCode", Ref<NSString>>(); }
    Ref<NSString> currencySymbol() const { return send<"currencySymbol", Ref<NSString>>(); }
    bool usesMetricSystem() const { return send<"usesMetricSystem", bool>(); }

private:
    Ref<NSString> identifier_;
};

}
