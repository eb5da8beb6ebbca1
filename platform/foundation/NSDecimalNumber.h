// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSNumber.h"
#include "decimals/Decimal.h"

namespace brindle {

class NSDecimalNumberHandler;

/// How digits are cut off.
enum NSRoundingMode : NSUInteger {
    NSRoundPlain = 0, ///< to the nearest; a half away from zero
    NSRoundDown = 1, ///< towards minus infinity
    NSRoundUp = 2, ///< towards infinity
    NSRoundBankers = 3, ///< to the nearest; a half to the even digit
};

/// What was lost in a calculation.
enum NSCalculationError : NSUInteger {
    NSCalculationNoError = 0,
    NSCalculationLossOfPrecision = 1,
    NSCalculationUnderflow = 2, ///< too small for a number; the answer is 0
    NSCalculationOverflow = 3, ///< too large; the answer is `notANumber`
    NSCalculationDivideByZero = 4, ///< the answer is `notANumber`
};

/// A scale that does not limit the digits behind the point.
inline constexpr short NSDecimalNoScale = decimals::kNoScale;

/// A decimal number: up to 38 digits times a power of ten from -128 to 127, exact where binary numbers are not (0.1).
///
/// Arithmetic rounds as a behavior says: an object with the operations of `NSDecimalNumberHandler`. A nil behavior is the
/// default one. No number (`notANumber`) in a calculation gives no number.
/// Compared with a number of another kind it counts as the nearest double, a whole one of at most 64 bits to its last digit:
/// 0.1 equals the double 0.1, and not the float 0.1f, which is another value.
/// - Nil: arithmetic and comparison with nil raise `NSInvalidArgumentException`.
/// Thread: any; a number does not change.
class NSDecimalNumber : public NSNumber {
    BRINDLE_OBJECT(NSDecimalNumber, NSNumber)

public:
    struct Meta : NSNumber::Meta {
        Ref<NSDecimalNumber> zero() const { return send<"zero", Ref<NSDecimalNumber>>(); }
        Ref<NSDecimalNumber> one() const { return send<"one", Ref<NSDecimalNumber>>(); }
        /// Answers the number farthest below zero.
        Ref<NSDecimalNumber> minimumDecimalNumber() const
        {
            return send<"minimumDecimalNumber", Ref<NSDecimalNumber>>();
        }
        Ref<NSDecimalNumber> maximumDecimalNumber() const
        {
            return send<"maximumDecimalNumber", Ref<NSDecimalNumber>>();
        }
        Ref<NSDecimalNumber> notANumber() const
        {
            return send<"notANumber", Ref<NSDecimalNumber>>();
        }
        /// Reads "-12.5e3". What stands behind the number is left alone; no digits give `notANumber`.
        Ref<NSDecimalNumber> decimalNumberWithString(NSString* text) const
        {
            return send<"decimalNumberWithString:", Ref<NSDecimalNumber>>(text);
        }
        /// The same with the locale's decimal point; a nil locale has ".".
        Ref<NSDecimalNumber> decimalNumberWithString_locale(NSString* text, NSLocale* locale) const
        {
            return send<"decimalNumberWithString:locale:", Ref<NSDecimalNumber>>(text, locale);
        }
        Ref<NSDecimalNumber> decimalNumberWithMantissa_exponent_isNegative(
            unsigned long long mantissa, short exponent, bool isNegative) const
        {
            return send<"decimalNumberWithMantissa:exponent:isNegative:", Ref<NSDecimalNumber>>(
                mantissa, exponent, isNegative);
        }
        /// Answers the behavior of operations that name none.
        Ref<NSObject> defaultBehavior() const { return send<"defaultBehavior", Ref<NSObject>>(); }
        /// - Nil: nil brings the first one back.
        void setDefaultBehavior(NSObject* behavior) const { send<"setDefaultBehavior:">(behavior); }
    };

    Ref<NSDecimalNumber> initWithString(NSString* text)
    {
        return send<"initWithString:", Ref<NSDecimalNumber>>(text);
    }
    Ref<NSDecimalNumber> initWithString_locale(NSString* text, NSLocale* locale)
    {
        return send<"initWithString:locale:", Ref<NSDecimalNumber>>(text, locale);
    }
    Ref<NSDecimalNumber> initWithMantissa_exponent_isNegative(
        unsigned long long mantissa, short exponent, bool isNegative)
    {
        return send<"initWithMantissa:exponent:isNegative:", Ref<NSDecimalNumber>>(
            mantissa, exponent, isNegative);
    }

    Ref<NSDecimalNumber> decimalNumberByAdding(NSDecimalNumber* other) const
    {
        return send<"decimalNumberByAdding:", Ref<NSDecimalNumber>>(other);
    }
    Ref<NSDecimalNumber> decimalNumberByAdding_withBehavior(
        NSDecimalNumber* other, NSObject* behavior) const
    {
        return send<"decimalNumberByAdding:withBehavior:", Ref<NSDecimalNumber>>(other, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberBySubtracting(NSDecimalNumber* other) const
    {
        return send<"decimalNumberBySubtracting:", Ref<NSDecimalNumber>>(other);
    }
    Ref<NSDecimalNumber> decimalNumberBySubtracting_withBehavior(
        NSDecimalNumber* other, NSObject* behavior) const
    {
        return send<"decimalNumberBySubtracting:withBehavior:", Ref<NSDecimalNumber>>(
            other, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberByMultiplyingBy(NSDecimalNumber* other) const
    {
        return send<"decimalNumberByMultiplyingBy:", Ref<NSDecimalNumber>>(other);
    }
    Ref<NSDecimalNumber> decimalNumberByMultiplyingBy_withBehavior(
        NSDecimalNumber* other, NSObject* behavior) const
    {
        return send<"decimalNumberByMultiplyingBy:withBehavior:", Ref<NSDecimalNumber>>(
            other, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberByDividingBy(NSDecimalNumber* other) const
    {
        return send<"decimalNumberByDividingBy:", Ref<NSDecimalNumber>>(other);
    }
    Ref<NSDecimalNumber> decimalNumberByDividingBy_withBehavior(
        NSDecimalNumber* other, NSObject* behavior) const
    {
        return send<"decimalNumberByDividingBy:withBehavior:", Ref<NSDecimalNumber>>(
            other, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberByRaisingToPower(NSUInteger power) const
    {
        return send<"decimalNumberByRaisingToPower:", Ref<NSDecimalNumber>>(power);
    }
    Ref<NSDecimalNumber> decimalNumberByRaisingToPower_withBehavior(
        NSUInteger power, NSObject* behavior) const
    {
        return send<"decimalNumberByRaisingToPower:withBehavior:", Ref<NSDecimalNumber>>(
            power, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberByMultiplyingByPowerOf10(short power) const
    {
        return send<"decimalNumberByMultiplyingByPowerOf10:", Ref<NSDecimalNumber>>(power);
    }
    Ref<NSDecimalNumber> decimalNumberByMultiplyingByPowerOf10_withBehavior(
        short power, NSObject* behavior) const
    {
        return send<"decimalNumberByMultiplyingByPowerOf10:withBehavior:", Ref<NSDecimalNumber>>(
            power, behavior);
    }
    Ref<NSDecimalNumber> decimalNumberByRoundingAccordingToBehavior(NSObject* behavior) const
    {
        return send<"decimalNumberByRoundingAccordingToBehavior:", Ref<NSDecimalNumber>>(behavior);
    }

private:
    decimals::Decimal value_;
    bool hasValue_ = false; // otherwise the digits are those of the number that it was made from
};

/// Rounding, and what to do about a loss.
///
/// The default one rounds plainly, keeps all digits, and raises for everything but lost digits.
class NSDecimalNumberHandler : public NSObject {
    BRINDLE_OBJECT(NSDecimalNumberHandler, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSDecimalNumberHandler> defaultDecimalNumberHandler() const
        {
            return send<"defaultDecimalNumberHandler", Ref<NSDecimalNumberHandler>>();
        }
        Ref<NSDecimalNumberHandler>
        decimalNumberHandlerWithRoundingMode_scale_raiseOnExactness_raiseOnOverflow_raiseOnUnderflow_raiseOnDivideByZero(
            NSRoundingMode mode, short scale, bool exact, bool overflow, bool underflow,
            bool divideByZero) const
        {
            return send<
                "decimalNumberHandlerWithRoundingMode:scale:raiseOnExactness:raiseOnOverflow:"
                "raiseOnUnderflow:raiseOnDivideByZero:",
                Ref<NSDecimalNumberHandler>>(mode, scale, exact, overflow, underflow, divideByZero);
        }
    };

    Ref<NSDecimalNumberHandler>
    initWithRoundingMode_scale_raiseOnExactness_raiseOnOverflow_raiseOnUnderflow_raiseOnDivideByZero(
        NSRoundingMode mode, short scale, bool exact, bool overflow, bool underflow,
        bool divideByZero)
    {
        return send<"initWithRoundingMode:scale:raiseOnExactness:raiseOnOverflow:raiseOnUnderflow:"
                    "raiseOnDivideByZero:",
            Ref<NSDecimalNumberHandler>>(mode, scale, exact, overflow, underflow, divideByZero);
    }
    NSRoundingMode roundingMode() const { return send<"roundingMode", NSRoundingMode>(); }
    /// Answers how many digits stay behind the point; a negative number cuts before it.
    short scale() const { return send<"scale", short>(); }
    /// Asked about every loss. - Nil: nil keeps what the operation gave.
    /// - Raises: as it was made to, "NSDecimalNumberExactnessException", "NSDecimalNumberOverflowException",
    ///   "NSDecimalNumberUnderflowException" or "NSDecimalNumberDivideByZeroException".
    Ref<NSDecimalNumber> exceptionDuringOperation_error_leftOperand_rightOperand(SEL operation,
        NSCalculationError error, NSDecimalNumber* left, NSDecimalNumber* right) const
    {
        return send<"exceptionDuringOperation:error:leftOperand:rightOperand:",
            Ref<NSDecimalNumber>>(operation, error, left, right);
    }

private:
    NSRoundingMode mode_ = NSRoundPlain;
    short scale_ = NSDecimalNoScale;
    bool raisesForLoss_ = false;
    bool raisesForOverflow_ = true;
    bool raisesForUnderflow_ = true;
    bool raisesForZero_ = true;
};

}
