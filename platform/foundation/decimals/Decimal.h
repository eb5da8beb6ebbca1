// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brindle::decimals {

/// How digits are cut off; the values are those of `NSRoundingMode`.
enum class Rounding : unsigned char { plain, down, up, bankers };

/// What became of a number when it was fitted; the values are those of `NSCalculationError`.
enum class Loss : unsigned char { none, precision, underflow, overflow, divideByZero };

/// Digits behind the point are not limited.
inline constexpr int kNoScale = 32767;

/// A whole number below 10^38 times a power of ten, or no number at all.
struct Decimal {
    std::uint64_t high = 0; // of the whole number
    std::uint64_t low = 0;
    std::int16_t exponent = 0; // -128 to 127
    bool isNegative = false;
    bool isNumber = true;

    bool isZero() const { return isNumber && high == 0 && low == 0; }

    static Decimal notANumber();
    static Decimal largest();
    static Decimal from(std::uint64_t whole, int exponent, bool isNegative);
    /// Reads an optional sign, digits with an optional point, and an optional power after "e" or "E". What stands behind is
    /// left alone.
    /// - Returns: no number when there are no digits.
    static Decimal read(std::string_view text, std::string_view point = ".");
    /// Writes plain digits, whatever the power; "NaN" for no number.
    std::string text(std::string_view point = ".") const;
    double toDouble() const;
};

/// What the answer of an operation is cut to.
struct Fitting {
    Rounding rounding = Rounding::plain;
    int scale = kNoScale; // digits that stay behind the point; a negative one cuts before it
};

/// A number with what was lost on the way to it.
struct Result {
    Decimal value;
    Loss loss = Loss::none;
};

Result add(const Decimal& a, const Decimal& b, Fitting fitting);
Result subtract(const Decimal& a, const Decimal& b, Fitting fitting);
Result multiply(const Decimal& a, const Decimal& b, Fitting fitting);
Result divide(const Decimal& a, const Decimal& b, Fitting fitting);
Result raise(const Decimal& base, std::uint64_t power, Fitting fitting);
Result multiplyByPowerOf10(const Decimal& a, int power, Fitting fitting);
Result round(const Decimal& a, Fitting fitting);
/// Answers -1, 0 or 1; no number stands before all numbers.
int compare(const Decimal& a, const Decimal& b);

}
