// SPDX-License-Identifier: Apache-2.0
#include "NSDecimalNumber.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <optional>

#include "CodingTable.h"
#include "Exceptions.h"
#include "NSLocale.h"
#include "NSStringPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using decimals::Decimal;
using decimals::Fitting;
using decimals::Result;

namespace {

    std::mutex defaultBehaviorLock;
    constinit Ref<NSObject>* chosenBehavior = nullptr; // null: nobody has chosen one

    Ref<NSObject> defaultBehavior()
    {
        const std::lock_guard lock(defaultBehaviorLock);
        if (chosenBehavior && *chosenBehavior)
            return *chosenBehavior;
        return NSDecimalNumberHandler::cls().defaultDecimalNumberHandler();
    }

    /// What an operation asks of the object that says how to round.
    struct Behavior {
        Ref<NSObject> object;
        Fitting fitting;

        explicit Behavior(NSObject* given)
            : object(given ? Ref<NSObject>(given) : defaultBehavior())
        {
            const auto mode = object->send<"roundingMode", NSRoundingMode>();
            fitting.rounding = static_cast<decimals::Rounding>(std::min(mode, NSRoundBankers));
            fitting.scale = object->send<"scale", short>();
        }
    };

}

template <> struct NSDecimalNumber::Methods<struct Decimals> {

    // ---- making

    /// Answers a number without its sign when it is whole and 64 bits hold it.
    static std::optional<std::uint64_t> wholeOf(const Decimal& value)
    {
        if (!value.isNumber || value.high != 0)
            return {};
        std::uint64_t whole = value.low;
        for (int power = value.exponent; power > 0; --power) {
            if (__builtin_mul_overflow(whole, std::uint64_t { 10 }, &whole))
                return {};
        }
        for (int power = value.exponent; power < 0; ++power, whole /= 10) {
            if (whole % 10 != 0)
                return {};
        }
        return whole;
    }
    /// Keeps a number, and beside it what the operations of all numbers read.
    static Ref<NSDecimalNumber> keep(NSDecimalNumber& self, const Decimal& value)
    {
        self.value_ = value;
        self.hasValue_ = true;
        const std::optional<std::uint64_t> whole = wholeOf(value);
        if (whole && !value.isNegative)
            return cast<NSDecimalNumber>(
                super<NSDecimalNumber, "initWithUnsignedLongLong:", Ref<NSNumber>>(self, *whole));
        constexpr std::uint64_t kMost = 1ull << 63;
        if (whole && *whole <= kMost)
            return cast<NSDecimalNumber>(super<NSDecimalNumber, "initWithLongLong:", Ref<NSNumber>>(
                self, static_cast<long long>(0 - *whole)));
        return cast<NSDecimalNumber>(
            super<NSDecimalNumber, "initWithDouble:", Ref<NSNumber>>(self, value.toDouble()));
    }
    static Ref<NSDecimalNumber> made(Class& self, const Decimal& value)
    {
        const Ref<NSDecimalNumber> number
            = cast<NSDecimalNumber>(Meta { { { { &self } } } }.alloc()->init());
        return number ? keep(*number, value) : nullptr;
    }
    static Ref<NSDecimalNumber> made(const Decimal& value)
    {
        return made(*classOf<NSDecimalNumber>(), value);
    }
    static Decimal read(NSString* text, NSLocale* locale)
    {
        const std::string digits = utf8Of(text);
        return Decimal::read(digits, locale ? utf8Of(locale->decimalSeparator()) : ".");
    }

    static Ref<NSDecimalNumber> zero(Class& self) { return made(self, {}); }
    static Ref<NSDecimalNumber> one(Class& self) { return made(self, Decimal::from(1, 0, false)); }
    static Ref<NSDecimalNumber> largest(Class& self) { return made(self, Decimal::largest()); }
    static Ref<NSDecimalNumber> smallest(Class& self)
    {
        Decimal value = Decimal::largest();
        value.isNegative = true;
        return made(self, value);
    }
    static Ref<NSDecimalNumber> notANumber(Class& self)
    {
        return made(self, Decimal::notANumber());
    }
    static Ref<NSDecimalNumber> withString(Class& self, NSString* text)
    {
        return made(self, read(text, nullptr));
    }
    static Ref<NSDecimalNumber> withStringIn(Class& self, NSString* text, NSLocale* locale)
    {
        return made(self, read(text, locale));
    }
    static Ref<NSDecimalNumber> withMantissa(
        Class& self, unsigned long long mantissa, short exponent, bool isNegative)
    {
        return made(self, Decimal::from(mantissa, exponent, isNegative));
    }
    static Ref<NSDecimalNumber> initWithString(NSDecimalNumber& self, NSString* text)
    {
        return keep(self, read(text, nullptr));
    }
    static Ref<NSDecimalNumber> initWithStringIn(
        NSDecimalNumber& self, NSString* text, NSLocale* locale)
    {
        return keep(self, read(text, locale));
    }
    static Ref<NSDecimalNumber> initWithMantissa(
        NSDecimalNumber& self, unsigned long long mantissa, short exponent, bool isNegative)
    {
        return keep(self, Decimal::from(mantissa, exponent, isNegative));
    }

    static Ref<NSObject> behavior(Class&) { return defaultBehavior(); }
    static void setBehavior(Class&, NSObject* behavior)
    {
        Ref<NSObject> former(behavior); // goes when the lock is free: its end may run anything
        const std::lock_guard lock(defaultBehaviorLock);
        if (!chosenBehavior)
            chosenBehavior = new Ref<NSObject>; // for as long as the process lives
        std::swap(*chosenBehavior, former);
    }

    // ---- calculating

    /// Answers any number with the digits that it shows.
    static Decimal valueOf(NSNumber& number)
    {
        if (!number.isKindOfClass(classOf<NSDecimalNumber>()))
            return Decimal::read(utf8Of(number.stringValue()));
        auto& decimal = static_cast<NSDecimalNumber&>(number);
        if (decimal.hasValue_)
            return decimal.value_;
        return Decimal::read(utf8Of(super<NSDecimalNumber, "stringValue", Ref<NSString>>(decimal)));
    }

    /// Answers the object for a result, or what the behavior puts in its place.
    static Ref<NSDecimalNumber> answer(NSDecimalNumber& self, SEL operation, const Result& result,
        const Behavior& behavior, NSDecimalNumber* other)
    {
        if (result.loss == decimals::Loss::none)
            return made(result.value);
        const auto instead
            = behavior.object->send<"exceptionDuringOperation:error:leftOperand:rightOperand:",
                Ref<NSDecimalNumber>>(
                operation, static_cast<NSCalculationError>(result.loss), &self, other);
        return instead ? instead : made(result.value);
    }

    using Operation = Result (*)(const Decimal&, const Decimal&, Fitting);

    template <Operation kOperation, Text kName>
    static Ref<NSDecimalNumber> with(NSDecimalNumber& self, NSDecimalNumber* other, NSObject* given)
    {
        strings::checkArgument(self, kName.characters, other);
        const Behavior behavior(given);
        return answer(self, selector<kName>,
            kOperation(valueOf(self), valueOf(*other), behavior.fitting), behavior, other);
    }
    template <Operation kOperation, Text kName>
    static Ref<NSDecimalNumber> by(NSDecimalNumber& self, NSDecimalNumber* other)
    {
        return with<kOperation, kName>(self, other, nullptr);
    }
    static Ref<NSDecimalNumber> raisedWith(NSDecimalNumber& self, NSUInteger power, NSObject* given)
    {
        const Behavior behavior(given);
        return answer(self, selector<"decimalNumberByRaisingToPower:">,
            decimals::raise(valueOf(self), power, behavior.fitting), behavior, nullptr);
    }
    static Ref<NSDecimalNumber> raised(NSDecimalNumber& self, NSUInteger power)
    {
        return raisedWith(self, power, nullptr);
    }
    static Ref<NSDecimalNumber> shiftedWith(NSDecimalNumber& self, short power, NSObject* given)
    {
        const Behavior behavior(given);
        return answer(self, selector<"decimalNumberByMultiplyingByPowerOf10:">,
            decimals::multiplyByPowerOf10(valueOf(self), power, behavior.fitting), behavior,
            nullptr);
    }
    static Ref<NSDecimalNumber> shifted(NSDecimalNumber& self, short power)
    {
        return shiftedWith(self, power, nullptr);
    }
    /// Rounding is what was asked for: digits that go are no loss.
    static Ref<NSDecimalNumber> rounded(NSDecimalNumber& self, NSObject* given)
    {
        return made(decimals::round(valueOf(self), Behavior(given).fitting).value);
    }

    // ---- reading

    static const char* objCType(NSDecimalNumber&) { return "d"; }
    static void getValue(NSDecimalNumber& self, void* buffer)
    {
        strings::checkArgument(self, "getValue:", buffer);
        const double value = self.doubleValue();
        std::memcpy(buffer, &value, sizeof value);
    }
    static double doubleValue(NSDecimalNumber& self) { return valueOf(self).toDouble(); }
    static Ref<NSString> description(NSDecimalNumber& self)
    {
        return stringFrom(valueOf(self).text());
    }
    static Ref<NSString> descriptionIn(NSDecimalNumber& self, NSLocale* locale)
    {
        return stringFrom(valueOf(self).text(locale ? utf8Of(locale->decimalSeparator()) : "."));
    }
    static NSComparisonResult compare(NSDecimalNumber& self, NSNumber* other)
    {
        strings::checkArgument(self, "compare:", other);
        // Other numbers see the value that they can hold, and so do we: both ways must answer the same.
        if (!other->isKindOfClass(classOf<NSDecimalNumber>()))
            return super<NSDecimalNumber, "compare:", NSComparisonResult>(self, other);
        const int order = decimals::compare(valueOf(self), valueOf(*other));
        return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
    }
    static bool isEqualToNumber(NSDecimalNumber& self, NSNumber* other)
    {
        return other && compare(self, other) == NSOrderedSame;
    }
    static bool isEqual(NSDecimalNumber& self, NSObject* other)
    {
        return other && other->isKindOfClass(classOf<NSNumber>())
            && isEqualToNumber(self, static_cast<NSNumber*>(other));
    }
    static bool isEqualToValue(NSDecimalNumber& self, NSValue* other)
    {
        return isEqual(self, other);
    }

    // ---- archives

    static void encode(NSDecimalNumber& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(description(self).get(), "NS.decimal"_ns);
    }
    static Ref<NSObject> initWithCoder(NSDecimalNumber& self, NSCoder* coder)
    {
        return keep(self, read(decode<NSString>(coder, "NS.decimal"_ns).get(), nullptr));
    }

    static void table(Builder& t)
    {
        declareCoding<encode, initWithCoder>(t);
        t.classMethods({
            { "zero", imp<zero> },
            { "one", imp<one> },
            { "minimumDecimalNumber", imp<smallest> },
            { "maximumDecimalNumber", imp<largest> },
            { "notANumber", imp<notANumber> },
            { "decimalNumberWithString:", imp<withString> },
            { "decimalNumberWithString:locale:", imp<withStringIn> },
            { "decimalNumberWithMantissa:exponent:isNegative:", imp<withMantissa> },
            { "defaultBehavior", imp<behavior> },
            { "setDefaultBehavior:", imp<setBehavior> },
        });
        t.methods({
            { "initWithString:", imp<initWithString> },
            { "initWithString:locale:", imp<initWithStringIn> },
            { "initWithMantissa:exponent:isNegative:", imp<initWithMantissa> },
            { "decimalNumberByAdding:", imp<by<decimals::add, "decimalNumberByAdding:">> },
            { "decimalNumberByAdding:withBehavior:",
                imp<with<decimals::add, "decimalNumberByAdding:">> },
            { "decimalNumberBySubtracting:",
                imp<by<decimals::subtract, "decimalNumberBySubtracting:">> },
            { "decimalNumberBySubtracting:withBehavior:",
                imp<with<decimals::subtract, "decimalNumberBySubtracting:">> },
            { "decimalNumberByMultiplyingBy:",
                imp<by<decimals::multiply, "decimalNumberByMultiplyingBy:">> },
            { "decimalNumberByMultiplyingBy:withBehavior:",
                imp<with<decimals::multiply, "decimalNumberByMultiplyingBy:">> },
            { "decimalNumberByDividingBy:",
                imp<by<decimals::divide, "decimalNumberByDividingBy:">> },
            { "decimalNumberByDividingBy:withBehavior:",
                imp<with<decimals::divide, "decimalNumberByDividingBy:">> },
            { "decimalNumberByRaisingToPower:", imp<raised> },
            { "decimalNumberByRaisingToPower:withBehavior:", imp<raisedWith> },
            { "decimalNumberByMultiplyingByPowerOf10:", imp<shifted> },
            { "decimalNumberByMultiplyingByPowerOf10:withBehavior:", imp<shiftedWith> },
            { "decimalNumberByRoundingAccordingToBehavior:", imp<rounded> },
            { "objCType", imp<objCType> },
            { "getValue:", imp<getValue> },
            { "doubleValue", imp<doubleValue> },
            { "description", imp<description> },
            { "stringValue", imp<description> },
            { "descriptionWithLocale:", imp<descriptionIn> },
            { "compare:", imp<compare> },
            { "isEqualToNumber:", imp<isEqualToNumber> },
            { "isEqualToValue:", imp<isEqualToValue> },
            { "isEqual:", imp<isEqual> },
        });
    }
};
BRINDLE_RECORD(NSDecimalNumber, Decimals)
template <> struct NSDecimalNumberHandler::Methods<struct Handling> {

    static Ref<NSDecimalNumberHandler> standard(Class&)
    {
        static NSDecimalNumberHandler& shared = *make<NSDecimalNumberHandler>().leak();
        return &shared;
    }
    static Ref<NSDecimalNumberHandler> init(NSDecimalNumberHandler& self, NSRoundingMode mode,
        short scale, bool exact, bool overflow, bool underflow, bool divideByZero)
    {
        self.mode_ = std::min(mode, NSRoundBankers);
        self.scale_ = scale;
        self.raisesForLoss_ = exact;
        self.raisesForOverflow_ = overflow;
        self.raisesForUnderflow_ = underflow;
        self.raisesForZero_ = divideByZero;
        return &self;
    }
    static Ref<NSDecimalNumberHandler> with(Class& self, NSRoundingMode mode, short scale,
        bool exact, bool overflow, bool underflow, bool divideByZero)
    {
        const auto fresh = cast<NSDecimalNumberHandler>(Meta { { &self } }.alloc());
        return fresh
            ->initWithRoundingMode_scale_raiseOnExactness_raiseOnOverflow_raiseOnUnderflow_raiseOnDivideByZero(
                mode, scale, exact, overflow, underflow, divideByZero);
    }
    static NSRoundingMode mode(NSDecimalNumberHandler& self) { return self.mode_; }
    static short scale(NSDecimalNumberHandler& self) { return self.scale_; }
    static Ref<NSDecimalNumber> loss(NSDecimalNumberHandler& self, SEL, NSCalculationError error,
        NSDecimalNumber*, NSDecimalNumber*)
    {
        if (error == NSCalculationLossOfPrecision && self.raisesForLoss_)
            raise("NSDecimalNumberExactnessException", "NSDecimalNumber exactness exception");
        if (error == NSCalculationOverflow && self.raisesForOverflow_)
            raise("NSDecimalNumberOverflowException", "NSDecimalNumber overflow exception");
        if (error == NSCalculationUnderflow && self.raisesForUnderflow_)
            raise("NSDecimalNumberUnderflowException", "NSDecimalNumber underflow exception");
        if (error == NSCalculationDivideByZero && self.raisesForZero_)
            raise(
                "NSDecimalNumberDivideByZeroException", "NSDecimalNumber divide by zero exception");
        return nullptr;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "defaultDecimalNumberHandler", imp<standard> },
            { "decimalNumberHandlerWithRoundingMode:scale:raiseOnExactness:raiseOnOverflow:"
              "raiseOnUnderflow:raiseOnDivideByZero:",
                imp<with> },
        });
        t.methods({
            { "initWithRoundingMode:scale:raiseOnExactness:raiseOnOverflow:raiseOnUnderflow:"
              "raiseOnDivideByZero:",
                imp<init> },
            { "roundingMode", imp<mode> },
            { "scale", imp<scale> },
            { "exceptionDuringOperation:error:leftOperand:rightOperand:", imp<loss> },
        });
    }
};
BRINDLE_RECORD(NSDecimalNumberHandler, Handling)

}
