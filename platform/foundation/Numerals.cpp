// SPDX-License-Identifier: Apache-2.0
#include "NumeralsPrivate.h"

#include <limits>
#include <locale.h>
#include <stdlib.h>

#include "PercentEscapesPrivate.h"

namespace brindle::numerals {

using strings::View;

namespace {

    bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
    bool isHexadecimalDigit(char16_t unit) { return escapes::digitOf(unit) >= 0; }
    bool isSign(char16_t unit) { return unit == u'-' || unit == u'+'; }
    bool isLetter(char16_t unit, char16_t small) { return unit < 0x80 && (unit | 0x20) == small; }

    /// Reads the units of a text one after the other; behind the end there are zeros.
    struct Cursor {
        View text;
        std::size_t at;

        char16_t peek(std::size_t ahead = 0) const
        {
            return at + ahead < text.size() ? text[at + ahead] : u'\0';
        }
        char16_t take()
        {
            const char16_t unit = peek();
            ++at;
            return unit;
        }
        void takeInto(std::string& out) { out.push_back(static_cast<char>(take())); }
        /// Answers how many units were taken.
        template <class Test> std::size_t takeWhile(Test test, std::string& out)
        {
            const std::size_t begin = at;
            while (test(peek()))
                takeInto(out);
            return at - begin;
        }
        bool takeHexadecimalMark()
        {
            if (peek() != u'0' || !isLetter(peek(1), u'x'))
                return false;
            at += 2;
            return true;
        }
    };

    /// Reads digits of a base up to a largest value.
    std::uint64_t takeDigits(Cursor& cursor, unsigned base, std::uint64_t most)
    {
        std::uint64_t value = 0;
        while (base == 16 ? isHexadecimalDigit(cursor.peek()) : isDigit(cursor.peek())) {
            const auto digit = static_cast<std::uint64_t>(escapes::digitOf(cursor.take()));
            const bool fits = digit <= most && value <= (most - digit) / base;
            value = fits ? value * base + digit : most;
        }
        return value;
    }

    /// Reads a sign and answers whether it is a minus.
    bool takeSign(Cursor& cursor) { return isSign(cursor.peek()) && cursor.take() == u'-'; }

    template <class Test>
    bool takeFraction(Cursor& cursor, Test isDigitHere, char16_t exponent, std::string& number)
    {
        std::size_t digits = cursor.takeWhile(isDigitHere, number);
        if (cursor.peek() == u'.' && (digits > 0 || isDigitHere(cursor.peek(1)))) {
            cursor.takeInto(number);
            digits += cursor.takeWhile(isDigitHere, number);
        }
        if (digits == 0)
            return false;
        if (isLetter(cursor.peek(), exponent)
            && isDigit(cursor.peek(isSign(cursor.peek(1)) ? 2 : 1))) {
            cursor.takeInto(number);
            cursor.takeInto(number);
            cursor.takeWhile(isDigit, number);
        }
        return true;
    }

    locale_t plainLocale()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

}

std::size_t readInteger(View text, std::size_t from, std::int64_t& value)
{
    Cursor cursor { text, from };
    const bool isNegative = takeSign(cursor);
    if (!isDigit(cursor.peek()))
        return from;
    const auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::uint64_t size = takeDigits(cursor, 10, most + (isNegative ? 1 : 0));
    value = static_cast<std::int64_t>(isNegative ? 0 - size : size);
    return cursor.at;
}

std::size_t readUnsigned(View text, std::size_t from, std::uint64_t& value)
{
    Cursor cursor { text, from };
    const bool isNegative = takeSign(cursor);
    if (!isDigit(cursor.peek()))
        return from;
    const std::uint64_t size = takeDigits(cursor, 10, std::numeric_limits<std::uint64_t>::max());
    value = isNegative ? 0 : size;
    return cursor.at;
}

std::size_t readHexadecimal(View text, std::size_t from, std::uint64_t& value)
{
    Cursor cursor { text, from };
    if (cursor.takeHexadecimalMark() && !isHexadecimalDigit(cursor.peek()))
        cursor.at = from; // the mark's own "0" is the number
    if (!isHexadecimalDigit(cursor.peek()))
        return from;
    value = takeDigits(cursor, 16, std::numeric_limits<std::uint64_t>::max());
    return cursor.at;
}

std::size_t readDecimal(View text, std::size_t from, std::string& number)
{
    Cursor cursor { text, from };
    std::string out;
    if (isSign(cursor.peek()))
        cursor.takeInto(out);
    if (!takeFraction(cursor, isDigit, u'e', out))
        return from;
    number = std::move(out);
    return cursor.at;
}

std::size_t readHexadecimalFraction(View text, std::size_t from, std::string& number)
{
    Cursor cursor { text, from };
    std::string out = takeSign(cursor) ? "-0x" : "0x";
    if (!cursor.takeHexadecimalMark() || !takeFraction(cursor, isHexadecimalDigit, u'p', out))
        return from;
    number = std::move(out);
    return cursor.at;
}

double doubleOf(const std::string& number)
{
    return strtod_l(number.c_str(), nullptr, plainLocale());
}
float floatOf(const std::string& number)
{
    return strtof_l(number.c_str(), nullptr, plainLocale());
}

}
