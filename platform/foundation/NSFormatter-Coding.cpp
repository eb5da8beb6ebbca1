// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "CodingTable.h"
#include "NSCalendar.h"
#include "NSDate.h"
#include "NSDateFormatter.h"
#include "NSLocale.h"
#include "NSNumberFormatter.h"
#include "NSTimeZone.h"

namespace brindle {

// What follows the user or the style is not written, so that it goes on doing so where the archive is read.

template <> struct NSFormatter::Methods<struct Coding> {
    static void encode(NSFormatter&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(NSFormatter& self, NSCoder*)
    {
        return super<NSFormatter, "init", Ref<NSObject>>(self);
    }
    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSFormatter, Coding)

// - Shape: "NSNumberStyle" and "NSRoundingMode" as numbers; "NSMinimumIntegerDigits", "NSMinimumFractionDigits",
//   "NSMaximumFractionDigits" and "NSUsesGroupingSeparator" where they were set; "NSLocale", "NSCurrencyCode".
template <> struct NSNumberFormatter::Methods<struct Coding> {

    struct Count {
        NSString* key;
        std::int32_t NSNumberFormatter::*field;
        void (NSNumberFormatter::*set)(NSUInteger);
    };
    static const std::array<Count, 3>& counts()
    {
        using F = NSNumberFormatter;
        static const std::array<Count, 3> all { {
            { "NSMinimumIntegerDigits"_ns, &F::integers_, &F::setMinimumIntegerDigits },
            { "NSMinimumFractionDigits"_ns, &F::fewest_, &F::setMinimumFractionDigits },
            { "NSMaximumFractionDigits"_ns, &F::most_, &F::setMaximumFractionDigits },
        } };
        return all;
    }
    static void encode(NSNumberFormatter& self, NSCoder* coder)
    {
        super<NSNumberFormatter, "encodeWithCoder:">(self, coder);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.style_), "NSNumberStyle"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.rounding_), "NSRoundingMode"_ns);
        for (const Count& count : counts()) {
            if (self.*count.field != kOwn)
                coder->encodeInteger_forKey(self.*count.field, count.key);
        }
        if (self.grouping_ != kOwn)
            coder->encodeBool_forKey(self.grouping_ != 0, "NSUsesGroupingSeparator"_ns);
        coder->encodeObject_forKey(self.locale_.get(), "NSLocale"_ns);
        coder->encodeObject_forKey(self.currency_.get(), "NSCurrencyCode"_ns);
    }
    static Ref<NSObject> initWithCoder(NSNumberFormatter& self, NSCoder* coder)
    {
        if (!super<NSNumberFormatter, "initWithCoder:", Ref<NSObject>>(self, coder))
            return nullptr;
        self.setNumberStyle(
            static_cast<NSNumberFormatterStyle>(coder->decodeIntegerForKey("NSNumberStyle"_ns)));
        self.setRoundingMode(static_cast<NSNumberFormatterRoundingMode>(
            coder->decodeIntegerForKey("NSRoundingMode"_ns)));
        for (const Count& count : counts()) {
            if (coder->containsValueForKey(count.key))
                (self.*count.set)(static_cast<NSUInteger>(coder->decodeIntegerForKey(count.key)));
        }
        if (coder->containsValueForKey("NSUsesGroupingSeparator"_ns))
            self.setUsesGroupingSeparator(coder->decodeBoolForKey("NSUsesGroupingSeparator"_ns));
        self.locale_ = decode<NSLocale>(coder, "NSLocale"_ns);
        self.currency_ = decode<NSString>(coder, "NSCurrencyCode"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<coding<encode>> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
        });
    }
};
BRINDLE_RECORD(NSNumberFormatter, Coding)

// - Shape: "NSDateStyle" and "NSTimeStyle" as numbers, "NSRelative", "NSLenient"; "NSDateFormat", "NSLocale", "NSTimeZone",
//   "NSCalendar" and "NSDefaultDate" where they were set.
template <> struct NSDateFormatter::Methods<struct Coding> {

    static void encode(NSDateFormatter& self, NSCoder* coder)
    {
        super<NSDateFormatter, "encodeWithCoder:">(self, coder);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.dateStyle_), "NSDateStyle"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.timeStyle_), "NSTimeStyle"_ns);
        coder->encodeBool_forKey(self.relative_, "NSRelative"_ns);
        coder->encodeBool_forKey(self.lenient_, "NSLenient"_ns);
        coder->encodeObject_forKey(self.pattern_.get(), "NSDateFormat"_ns);
        coder->encodeObject_forKey(self.locale_.get(), "NSLocale"_ns);
        coder->encodeObject_forKey(self.timeZone_.get(), "NSTimeZone"_ns);
        coder->encodeObject_forKey(self.calendar_.get(), "NSCalendar"_ns);
        coder->encodeObject_forKey(self.defaultDate_.get(), "NSDefaultDate"_ns);
    }
    static Ref<NSObject> initWithCoder(NSDateFormatter& self, NSCoder* coder)
    {
        if (!super<NSDateFormatter, "initWithCoder:", Ref<NSObject>>(self, coder))
            return nullptr;
        const auto style = [coder](NSString* key) {
            return static_cast<NSDateFormatterStyle>(coder->decodeIntegerForKey(key));
        };
        self.setDateStyle(style("NSDateStyle"_ns));
        self.setTimeStyle(style("NSTimeStyle"_ns));
        self.relative_ = coder->decodeBoolForKey("NSRelative"_ns);
        self.lenient_ = coder->decodeBoolForKey("NSLenient"_ns);
        self.pattern_ = decode<NSString>(coder, "NSDateFormat"_ns);
        self.locale_ = decode<NSLocale>(coder, "NSLocale"_ns);
        self.timeZone_ = decode<NSTimeZone>(coder, "NSTimeZone"_ns);
        self.calendar_ = decode<NSCalendar>(coder, "NSCalendar"_ns);
        self.defaultDate_ = decode<NSDate>(coder, "NSDefaultDate"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<coding<encode>> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
        });
    }
};
BRINDLE_RECORD(NSDateFormatter, Coding)

}
