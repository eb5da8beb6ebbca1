// SPDX-License-Identifier: Apache-2.0
#include "NSLocale.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/ulocdata.h>
#include <unicode/unum.h>

#include "CodingTable.h"
#include "LocalePrivate.h"
#include "NSArray.h"
#include "NSNumber.h"
#include "UserLocale.h"
#include "foundation/unicode/UnicodeCallsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    bool isPlain(std::string_view text, std::string_view also)
    {
        return std::all_of(text.begin(), text.end(), [also](unsigned char c) {
            return (c < 0x80 && std::isalnum(c)) || also.find(static_cast<char>(c)) != also.npos;
        });
    }

    /// Whether the library may be given a name. It takes most of them for some language or other, but not all: with
    /// a few it goes on without a calendar, to its end.
    bool isLocaleName(std::string_view name)
    {
        constexpr std::size_t kLongest = 100;
        constexpr std::size_t kLongestLanguage = 8;
        const std::size_t at = std::min(name.find('@'), name.size());
        const std::string_view base = name.substr(0, at);
        const std::string_view language = base.substr(0, base.find_first_of("_-"));
        const bool isLanguage = language.empty()
            || (language.size() >= 2 && language.size() <= kLongestLanguage
                && std::all_of(language.begin(), language.end(),
                    [](unsigned char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }));
        return name.size() <= kLongest && isLanguage && isPlain(base, "_-")
            && isPlain(name.substr(at), "@=;_-");
    }

}

std::string localeName(const NSLocale* locale)
{
    const std::string name = locale ? utf8Of(locale->localeIdentifier()) : UserLocale::identifier();
    return isLocaleName(name) ? name : std::string();
}

namespace {

    Ref<NSString> textOrNil(const std::string& text)
    {
        return text.empty() ? nullptr : stringFrom(text);
    }
    Ref<NSString> textOrNil(const std::u16string& text)
    {
        return text.empty() ? nullptr : stringFrom(text);
    }

    /// A part of the identifier, by one of the library's functions.
    template <class Function> Ref<NSString> part(const NSLocale& locale, Function function)
    {
        const std::string name = localeName(&locale);
        return textOrNil(
            unicode::filled<std::string>([&](char* out, std::int32_t room, UErrorCode* error) {
                return function(name.c_str(), out, room, error);
            }));
    }

    Ref<NSString> symbol(const NSLocale& locale, UNumberFormatSymbol which)
    {
        const std::string name = localeName(&locale);
        UErrorCode error = U_ZERO_ERROR;
        UNumberFormat* const format
            = ICU(unum_open)(UNUM_DECIMAL, nullptr, 0, name.c_str(), nullptr, &error);
        if (U_FAILURE(error))
            return nullptr;
        const auto text = unicode::filled<std::u16string>(
            [&](UChar* out, std::int32_t room, UErrorCode* failure) {
                return ICU(unum_getSymbol)(format, which, out, room, failure);
            });
        ICU(unum_close)(format);
        return textOrNil(text);
    }

}

template <> struct NSLocale::Methods<struct Identity> {

    static Ref<NSLocale> withIdentifier(Class& self, NSString* identifier)
    {
        return cast<NSLocale>(NSObject::Meta { &self }.alloc())
            ->initWithLocaleIdentifier(identifier);
    }
    static Ref<NSLocale> current(Class& self)
    {
        return withIdentifier(self, stringFrom(UserLocale::identifier()).get());
    }
    static Ref<NSLocale> system(Class& self) { return withIdentifier(self, ""_ns); }
    static Ref<NSLocale> initWithIdentifier(NSLocale& self, NSString* identifier)
    {
        if (!identifier || !super<NSLocale, "init", Ref<NSObject>>(self))
            return nullptr;
        self.identifier_ = cast<NSString>(identifier->copy());
        return &self;
    }
    static Ref<NSLocale> init(NSLocale& self) { return self.initWithLocaleIdentifier(""_ns); }
    static Ref<NSString> identifier(NSLocale& self) { return self.identifier_; }

    static Ref<NSArray> preferredLanguages(Class&)
    {
        std::vector<Ref<NSObject>> all;
        for (const std::string& language : UserLocale::languages())
            all.emplace_back(stringFrom(language));
        return makeArray(std::move(all));
    }
    static Ref<NSArray> available(Class&)
    {
        std::vector<Ref<NSObject>> all;
        const std::int32_t count = unicode::isThere() ? ICU(uloc_countAvailable)() : 0;
        all.reserve(static_cast<std::size_t>(count));
        for (std::int32_t i = 0; i < count; ++i)
            all.emplace_back(stringFrom(ICU(uloc_getAvailable)(i)));
        return makeArray(std::move(all));
    }
    static Ref<NSString> canonical(Class& self, NSString* identifier)
    {
        if (!identifier || !unicode::isThere())
            return identifier;
        const std::string name = localeName(withIdentifier(self, identifier).get());
        return stringFrom(
            unicode::filled<std::string>([&](char* out, std::int32_t room, UErrorCode* error) {
                return ICU(uloc_canonicalize)(name.c_str(), out, room, error);
            }));
    }

    static bool isEqual(NSLocale& self, NSObject* other)
    {
        return other == &self
            || (other && other->isKindOfClass(NSLocale::cls())
                && maybe(self.localeIdentifier())
                       ->isEqualToString(static_cast<NSLocale*>(other)->localeIdentifier().get()));
    }
    static std::uint64_t hash(NSLocale& self) { return maybe(self.localeIdentifier())->hash(); }
    static Ref<NSObject> copyWithZone(NSLocale& self, void*) { return &self; }
    static Ref<NSString> description(NSLocale& self)
    {
        return NSString::cls().stringWithFormat("<NSLocale: \"%@\">"_ns, self.localeIdentifier());
    }

    static void encodeWithCoder(NSLocale& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.localeIdentifier().get(), "NS.identifier"_ns);
    }
    static Ref<NSObject> initWithCoder(NSLocale& self, NSCoder* coder)
    {
        return self.initWithLocaleIdentifier(decode<NSString>(coder, "NS.identifier"_ns).get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "currentLocale", imp<current> },
            { "autoupdatingCurrentLocale", imp<current> },
            { "systemLocale", imp<system> },
            { "localeWithLocaleIdentifier:", imp<withIdentifier> },
            { "availableLocaleIdentifiers", imp<available> },
            { "preferredLanguages", imp<preferredLanguages> },
            { "canonicalLocaleIdentifierFromString:", imp<canonical> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithLocaleIdentifier:", imp<initWithIdentifier> },
            { "localeIdentifier", imp<identifier> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSLocale, Identity)

template <> struct NSLocale::Methods<struct Customs> {

    static Ref<NSString> language(NSLocale& self)
    {
        return unicode::isThere() ? part(self, ICU(uloc_getLanguage)) : nullptr;
    }
    static Ref<NSString> country(NSLocale& self)
    {
        return unicode::isThere() ? part(self, ICU(uloc_getCountry)) : nullptr;
    }
    static Ref<NSString> script(NSLocale& self)
    {
        return unicode::isThere() ? part(self, ICU(uloc_getScript)) : nullptr;
    }
    static Ref<NSString> decimalSeparator(NSLocale& self)
    {
        return unicode::isThere() ? symbol(self, UNUM_DECIMAL_SEPARATOR_SYMBOL) : "."_ns;
    }
    static Ref<NSString> groupingSeparator(NSLocale& self)
    {
        return unicode::isThere() ? symbol(self, UNUM_GROUPING_SEPARATOR_SYMBOL) : ","_ns;
    }
    static Ref<NSString> currencyCode(NSLocale& self)
    {
        if (!unicode::isThere())
            return nullptr;
        const std::string name = localeName(&self);
        return textOrNil(
            unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
                return ICU(ucurr_forLocale)(name.c_str(), out, room, error);
            }));
    }
    static Ref<NSString> currencySymbol(NSLocale& self)
    {
        const std::u16string code = utf16Of(self.currencyCode());
        if (code.empty())
            return nullptr;
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t length = 0;
        const UChar* const name = ICU(ucurr_getName)(
            code.c_str(), localeName(&self).c_str(), UCURR_SYMBOL_NAME, nullptr, &length, &error);
        return U_FAILURE(error)
            ? nullptr
            : stringFrom(std::u16string_view(name, static_cast<std::size_t>(length)));
    }
    static bool usesMetricSystem(NSLocale& self)
    {
        if (!unicode::isThere())
            return true;
        UErrorCode error = U_ZERO_ERROR;
        const auto system = ICU(ulocdata_getMeasurementSystem)(localeName(&self).c_str(), &error);
        return U_FAILURE(error) || system != UMS_US;
    }

    static Ref<NSObject> objectForKey(NSLocale& self, NSString* key)
    {
        if (!key)
            return nullptr;
        if (key->isEqualToString(NSLocaleIdentifier))
            return self.localeIdentifier();
        if (key->isEqualToString(NSLocaleLanguageCode))
            return self.languageCode();
        if (key->isEqualToString(NSLocaleCountryCode))
            return self.countryCode();
        if (key->isEqualToString(NSLocaleScriptCode))
            return self.scriptCode();
        if (key->isEqualToString(NSLocaleDecimalSeparator))
            return self.decimalSeparator();
        if (key->isEqualToString(NSLocaleGroupingSeparator))
            return self.groupingSeparator();
        if (key->isEqualToString(NSLocaleCurrencyCode))
            return self.currencyCode();
        if (key->isEqualToString(NSLocaleCurrencySymbol))
            return self.currencySymbol();
        if (key->isEqualToString(NSLocaleUsesMetricSystem))
            return NSNumber::cls().numberWithBool(self.usesMetricSystem());
        return nullptr;
    }

    static Ref<NSString> displayName(NSLocale& self, NSString* key, NSString* value)
    {
        if (!key || !value || !unicode::isThere())
            return nullptr;
        auto display = ICU(uloc_getDisplayName);
        std::string wanted = localeName(NSLocale::cls().localeWithLocaleIdentifier(value).get());
        if (key->isEqualToString(NSLocaleLanguageCode)) {
            display = ICU(uloc_getDisplayLanguage);
        } else if (key->isEqualToString(NSLocaleCountryCode)) {
            display = ICU(uloc_getDisplayCountry);
            wanted.insert(0, "und_");
        } else if (!key->isEqualToString(NSLocaleIdentifier)) {
            return nullptr;
        }
        const std::string own = localeName(&self);
        return textOrNil(
            unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
                return display(wanted.c_str(), own.c_str(), out, room, error);
            }));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "languageCode", imp<language> },
            { "countryCode", imp<country> },
            { "scriptCode", imp<script> },
            { "decimalSeparator", imp<decimalSeparator> },
            { "groupingSeparator", imp<groupingSeparator> },
            { "currencyCode", imp<currencyCode> },
            { "currencySymbol", imp<currencySymbol> },
            { "usesMetricSystem", imp<usesMetricSystem> },
            { "objectForKey:", imp<objectForKey> },
            { "displayNameForKey:value:", imp<displayName> },
        });
    }
};
BRINDLE_RECORD(NSLocale, Customs)

}
