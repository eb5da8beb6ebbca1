// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSStringPrivate.h"

/// Numbers as they are written in text, the same in every language. Each function reads at a place and answers where it
/// stopped; when no number begins there it answers the place itself and leaves the value alone.
namespace brindle::numerals {

/// Digits behind an optional sign; a value too large is the largest or smallest one, and all digits are read.
std::size_t readInteger(strings::View text, std::size_t from, std::int64_t& value);
/// The same without a negative half: a minus sign before other digits than zeros gives 0.
std::size_t readUnsigned(strings::View text, std::size_t from, std::uint64_t& value);
/// Hexadecimal digits behind an optional "0x" or "0X"; a value too large is the largest one.
std::size_t readHexadecimal(strings::View text, std::size_t from, std::uint64_t& value);

/// Sign, digits with a point among them, exponent: the number itself goes to `number`.
std::size_t readDecimal(strings::View text, std::size_t from, std::string& number);
/// The same behind "0x" with hexadecimal digits and an optional exponent of two behind "p".
std::size_t readHexadecimalFraction(strings::View text, std::size_t from, std::string& number);

/// Answers the value of what one of the two before read; too large is infinite, no number 0.
double doubleOf(const std::string& number);
float floatOf(const std::string& number);

}
