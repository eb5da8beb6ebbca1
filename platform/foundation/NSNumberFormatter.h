// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSFormatter.h"

namespace brindle {

class NSLocale;
class NSNumber;

/// How a number is written: "1234.5" by no style, "1,234.5", "$1,234.50", "123,450%", "1.2345E3", "one thousand ...".
enum NSNumberFormatterStyle : NSUInteger {
    NSNumberFormatterNoStyle = 0, ///< whole numbers without separators
    NSNumberFormatterDecimalStyle = 1,
    NSNumberFormatterCurrencyStyle = 2,
    NSNumberFormatterPercentStyle = 3,
    NSNumberFormatterScientificStyle = 4,
    NSNumberFormatterSpellOutStyle = 5,
    NSNumberFormatterOrdinalStyle = 6,
};

/// How digits are cut off.
enum NSNumberFormatterRoundingMode : NSUInteger {
    NSNumberFormatterRoundCeiling = 0,
    NSNumberFormatterRoundFloor = 1,
    NSNumberFormatterRoundDown = 2, ///< towards zero
    NSNumberFormatterRoundUp = 3,
    NSNumberFormatterRoundHalfEven = 4, ///< unless another is set
    NSNumberFormatterRoundHalfDown = 5,
    NSNumberFormatterRoundHalfUp = 6,
};

/// Writes numbers as people of a locale do, and reads them.
///
/// What is not set is the style's own. A nil locale follows the user. Digits are counted up to 340.
/// - Nil: no number gives nil. Without the Unicode library a number is written by its description.
/// Thread: any, as long as nobody changes it meanwhile.
class NSNumberFormatter : public NSFormatter {
    BRINDLE_OBJECT(NSNumberFormatter, NSFormatter)

public:
    struct Meta : NSFormatter::Meta {
        Ref<NSString> localizedStringFromNumber_numberStyle(
            NSNumber* number, NSNumberFormatterStyle style) const
        {
            return send<"localizedStringFromNumber:numberStyle:", Ref<NSString>>(number, style);
        }
    };

    NSNumberFormatterStyle numberStyle() const
    {
        return send<"numberStyle", NSNumberFormatterStyle>();
    }
    /// Also forgets what was set of digits and separators.
    void setNumberStyle(NSNumberFormatterStyle style) { send<"setNumberStyle:">(style); }
    Ref<NSLocale> locale() const { return send<"locale", Ref<NSLocale>>(); }
    void setLocale(NSLocale* locale) { send<"setLocale:">(locale); }
    /// Answers the money that amounts are in, "EUR"; nil for the locale's own.
    Ref<NSString> currencyCode() const { return send<"currencyCode", Ref<NSString>>(); }
    void setCurrencyCode(NSString* code) { send<"setCurrencyCode:">(code); }
    NSUInteger minimumIntegerDigits() const { return send<"minimumIntegerDigits", NSUInteger>(); }
    void setMinimumIntegerDigits(NSUInteger digits) { send<"setMinimumIntegerDigits:">(digits); }
    NSUInteger minimumFractionDigits() const { return send<"minimumFractionDigits", NSUInteger>(); }
    void setMinimumFractionDigits(NSUInteger digits) { send<"setMinimumFractionDigits:">(digits); }
    NSUInteger maximumFractionDigits() const { return send<"maximumFractionDigits", NSUInteger>(); }
    void setMaximumFractionDigits(NSUInteger digits) { send<"setMaximumFractionDigits:">(digits); }
    bool usesGroupingSeparator() const { return send<"usesGroupingSeparator", bool>(); }
    void setUsesGroupingSeparator(bool uses) { send<"setUsesGroupingSeparator:">(uses); }
    NSNumberFormatterRoundingMode roundingMode() const
    {
        return send<"roundingMode", NSNumberFormatterRoundingMode>();
    }
    void setRoundingMode(NSNumberFormatterRoundingMode mode) { send<"setRoundingMode:">(mode); }

    Ref<NSString> stringFromNumber(NSNumber* number) const
    {
        return send<"stringFromNumber:", Ref<NSString>>(number);
    }
    /// Answers the number that the whole text stands for; nil when it is none.
    Ref<NSNumber> numberFromString(NSString* string) const
    {
        return send<"numberFromString:", Ref<NSNumber>>(string);
    }

private:
    friend struct NumberFormatAccess;
    static constexpr std::int32_t kOwn = -1; // the style's

    NSNumberFormatterStyle style_ = NSNumberFormatterNoStyle;
    NSNumberFormatterRoundingMode rounding_ = NSNumberFormatterRoundHalfEven;
    std::int32_t integers_ = kOwn;
    std::int32_t fewest_ = kOwn;
    std::int32_t most_ = kOwn;
    std::int32_t grouping_ = kOwn;
    Ref<NSLocale> locale_;
    Ref<NSString> currency_;
};

}
