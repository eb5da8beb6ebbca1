// SPDX-License-Identifier: Apache-2.0
#include "NSNumberFormatter.h"

#include <algorithm>
#include <cmath>

#include <unicode/unum.h>

#include "LocalePrivate.h"
#include "NSDecimalNumber.h"
#include "foundation/unicode/UnicodeCallsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using Lease = unicode::Pool<UNumberFormat*>::Lease;

/// The way to a formatter's settings for this file.
struct NumberFormatAccess {
    static constexpr UNumberFormatStyle kStyles[] { UNUM_DECIMAL, UNUM_DECIMAL, UNUM_CURRENCY,
        UNUM_PERCENT, UNUM_SCIENTIFIC, UNUM_SPELLOUT, UNUM_ORDINAL };

    static UNumberFormat* open(const NSNumberFormatter& self)
    {
        if (!unicode::isThere())
            return nullptr;
        UErrorCode error = U_ZERO_ERROR;
        UNumberFormat* const format = ICU(unum_open)(kStyles[self.style_], nullptr, 0,
            localeName(self.locale_.get()).c_str(), nullptr, &error);
        if (U_FAILURE(error))
            return nullptr;
        if (self.style_ == NSNumberFormatterNoStyle) {
            ICU(unum_setAttribute)(format, UNUM_MAX_FRACTION_DIGITS, 0);
            ICU(unum_setAttribute)(format, UNUM_GROUPING_USED, 0);
        }
        return format;
    }

    static void set(const Lease& format, UNumberFormatAttribute attribute, std::int32_t value)
    {
        if (value != NSNumberFormatter::kOwn)
            ICU(unum_setAttribute)(format.get(), attribute, value);
    }

    static std::string keyOf(const NSNumberFormatter& self)
    {
        std::string key = localeName(self.locale_.get()) + '\n' + utf8Of(self.currency_);
        for (const auto setting :
            { static_cast<std::int32_t>(self.style_), static_cast<std::int32_t>(self.rounding_),
                self.integers_, self.fewest_, self.most_, self.grouping_ })
            key += '\n' + std::to_string(setting);
        return key;
    }

    /// Lends a format with all of the settings; its key names them, so that setting them again changes nothing.
    static Lease lend(const NSNumberFormatter& self)
    {
        static unicode::Pool<UNumberFormat*>& pool
            = *new unicode::Pool<UNumberFormat*>([](UNumberFormat* format) {
                  ICU(unum_close)
                  (format);
              });
        Lease format = pool.lease(keyOf(self), [&] { return open(self); });
        if (!format)
            return format;
        const std::u16string currency = utf16Of(self.currency_);
        UErrorCode error = U_ZERO_ERROR;
        if (!currency.empty())
            ICU(unum_setTextAttribute)
        (format.get(), UNUM_CURRENCY_CODE, currency.data(),
            static_cast<std::int32_t>(currency.size()), &error);
        set(format, UNUM_ROUNDING_MODE, static_cast<std::int32_t>(self.rounding_));
        set(format, UNUM_MIN_INTEGER_DIGITS, self.integers_);
        set(format, UNUM_MAX_FRACTION_DIGITS, self.most_);
        set(format, UNUM_MIN_FRACTION_DIGITS, self.fewest_);
        set(format, UNUM_GROUPING_USED, self.grouping_);
        return format;
    }

    static NSUInteger attribute(const NSNumberFormatter& self, UNumberFormatAttribute which)
    {
        const Lease format = lend(self);
        return format ? static_cast<NSUInteger>(ICU(unum_getAttribute)(format.get(), which)) : 0;
    }

    static std::int32_t digits(NSUInteger count)
    {
        constexpr NSUInteger kMost = 340; // all that a double has
        return static_cast<std::int32_t>(std::min(count, kMost));
    }
};

namespace {

    /// Answers whether a number has no more digits than a double.
    bool isReal(const NSNumber& number)
    {
        const char type = *number.objCType();
        return (type == 'd' || type == 'f') && !number.isKindOfClass(classOf<NSDecimalNumber>());
    }

}

template <> struct NSNumberFormatter::Methods<struct Settings> {
    using Access = NumberFormatAccess;

    static NSNumberFormatterStyle style(NSNumberFormatter& self) { return self.style_; }
    static void setStyle(NSNumberFormatter& self, NSNumberFormatterStyle style)
    {
        self.style_ = style <= NSNumberFormatterOrdinalStyle ? style : NSNumberFormatterNoStyle;
        self.integers_ = self.fewest_ = self.most_ = self.grouping_ = kOwn;
    }
    static Ref<NSLocale> locale(NSNumberFormatter& self)
    {
        return self.locale_ ? self.locale_ : NSLocale::cls().currentLocale();
    }
    static void setLocale(NSNumberFormatter& self, NSLocale* locale) { self.locale_ = locale; }
    static NSUInteger integers(NSNumberFormatter& self)
    {
        return Access::attribute(self, UNUM_MIN_INTEGER_DIGITS);
    }
    static void setIntegers(NSNumberFormatter& self, NSUInteger count)
    {
        self.integers_ = Access::digits(count);
    }
    static NSUInteger fewest(NSNumberFormatter& self)
    {
        return Access::attribute(self, UNUM_MIN_FRACTION_DIGITS);
    }
    static void setFewest(NSNumberFormatter& self, NSUInteger count)
    {
        self.fewest_ = Access::digits(count);
        if (self.most_ != kOwn)
            self.most_ = std::max(self.most_, self.fewest_);
    }
    static NSUInteger most(NSNumberFormatter& self)
    {
        return Access::attribute(self, UNUM_MAX_FRACTION_DIGITS);
    }
    static void setMost(NSNumberFormatter& self, NSUInteger count)
    {
        self.most_ = Access::digits(count);
        if (self.fewest_ != kOwn)
            self.fewest_ = std::min(self.most_, self.fewest_);
    }
    static bool groups(NSNumberFormatter& self)
    {
        return Access::attribute(self, UNUM_GROUPING_USED) != 0;
    }
    static void setGroups(NSNumberFormatter& self, bool uses) { self.grouping_ = uses; }
    static NSNumberFormatterRoundingMode rounding(NSNumberFormatter& self)
    {
        return self.rounding_;
    }
    static void setRounding(NSNumberFormatter& self, NSNumberFormatterRoundingMode mode)
    {
        self.rounding_
            = mode <= NSNumberFormatterRoundHalfUp ? mode : NSNumberFormatterRoundHalfEven;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "numberStyle", imp<style> },
            { "setNumberStyle:", imp<setStyle> },
            { "locale", imp<locale> },
            { "setLocale:", imp<setLocale> },
            { "minimumIntegerDigits", imp<integers> },
            { "setMinimumIntegerDigits:", imp<setIntegers> },
            { "minimumFractionDigits", imp<fewest> },
            { "setMinimumFractionDigits:", imp<setFewest> },
            { "maximumFractionDigits", imp<most> },
            { "setMaximumFractionDigits:", imp<setMost> },
            { "usesGroupingSeparator", imp<groups> },
            { "setUsesGroupingSeparator:", imp<setGroups> },
            { "roundingMode", imp<rounding> },
            { "setRoundingMode:", imp<setRounding> },
        });
        t.properties({
            property<&NSNumberFormatter::currency_>("currencyCode", copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(NSNumberFormatter, Settings)

template <> struct NSNumberFormatter::Methods<struct Writing> {

    static Ref<NSString> stringFromNumber(NSNumberFormatter& self, NSNumber* number)
    {
        if (!number)
            return nullptr;
        const Lease format = NumberFormatAccess::lend(self);
        if (!format)
            return number->description();
        const std::string digits = isReal(*number) ? "" : utf8Of(number->stringValue());
        return stringFrom(
            unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
                return digits.empty()
                    ? ICU(unum_formatDouble)(
                        format.get(), number->doubleValue(), out, room, nullptr, error)
                    : ICU(unum_formatDecimal)(format.get(), digits.data(),
                        static_cast<std::int32_t>(digits.size()), out, room, nullptr, error);
            }));
    }
    static Ref<NSNumber> numberFromString(NSNumberFormatter& self, NSString* string)
    {
        constexpr std::size_t kLongest = 4096;
        const std::u16string text = utf16Of(string);
        const Lease format = NumberFormatAccess::lend(self);
        if (!format || text.empty() || text.size() > kLongest)
            return nullptr;
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t end = 0;
        const double value = ICU(unum_parseDouble)(
            format.get(), text.data(), static_cast<std::int32_t>(text.size()), &end, &error);
        if (U_FAILURE(error) || static_cast<std::size_t>(end) != text.size())
            return nullptr;
        constexpr double kWhole = 9007199254740992.0; // a double has every whole number up to here
        if (std::fabs(value) <= kWhole && value == std::trunc(value))
            return NSNumber::cls().numberWithLongLong(static_cast<long long>(value));
        return NSNumber::cls().numberWithDouble(value);
    }
    static Ref<NSString> stringFor(NSNumberFormatter& self, NSObject* object)
    {
        return maybe(object)->isKindOfClass(NSNumber::cls())
            ? self.stringFromNumber(static_cast<NSNumber*>(object))
            : nullptr;
    }
    static bool getObject(
        NSNumberFormatter& self, Ref<NSObject>* object, NSString* string, Ref<NSString>* error)
    {
        return reportReading(self.numberFromString(string), object, error);
    }
    static Ref<NSString> localized(Class&, NSNumber* number, NSNumberFormatterStyle style)
    {
        const auto formatter = make<NSNumberFormatter>();
        formatter->setNumberStyle(style);
        return formatter->stringFromNumber(number);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "localizedStringFromNumber:numberStyle:", imp<localized> } });
        t.methods({
            { "stringFromNumber:", imp<stringFromNumber> },
            { "numberFromString:", imp<numberFromString> },
            { "stringForObjectValue:", imp<stringFor> },
            { "getObjectValue:forString:errorDescription:", imp<getObject> },
        });
    }
};
BRINDLE_RECORD(NSNumberFormatter, Writing)

}
