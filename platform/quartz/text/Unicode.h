// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "Line.h"

namespace brindle::text {

/// A depth of nesting of directions; odd levels run from right to left.
using Level = std::uint8_t;

/// The directions of a text by the Unicode bidirectional algorithm.
struct Directions {
    std::vector<Level> levels; // one a UTF-16 unit; empty when all of it has the base level
    Level base = 0;
};

/// Answers whether a unit is a Latin letter, sign or control before U+0300, or general punctuation
/// such as a dash, a quotation mark or an ellipsis.
constexpr bool isPlainLatin(char16_t unit)
{
    return unit < 0x0300 || (unit >= 0x2010 && unit <= 0x2027)
        || (unit >= 0x2030 && unit <= 0x205E);
}

/// Answers all bits that are set in any unit: a quick first look at a text.
inline char16_t bitsOf(std::u16string_view text)
{
    std::uint64_t bits = 0;
    std::size_t index = 0;
    constexpr std::size_t kUnits = sizeof bits / sizeof(char16_t);
    for (; index + kUnits <= text.size(); index += kUnits) {
        std::uint64_t units = 0;
        std::memcpy(&units, text.data() + index, sizeof units);
        bits |= units;
    }
    bits |= bits >> 32;
    bits |= bits >> 16;
    for (; index < text.size(); ++index)
        bits |= text[index];
    return static_cast<char16_t>(bits);
}

/// Answers whether every unit is so: then each is a character, and all can be of one script.
bool isPlainLatin(std::u16string_view text);

/// Answers whether any part of the text can run from right to left, in a line that begins at the
/// left.
bool mayRunRightToLeft(std::u16string_view text);

Directions directionsOfText(std::u16string_view text, BaseDirection direction);

/// Answers the order in which pieces with these levels are shown, leftmost first.
std::vector<std::size_t> visualOrder(const std::vector<Level>& levels);

/// Answers where characters, as a reader counts them, begin; the length of the text comes last.
std::vector<std::size_t> characterBoundaries(std::u16string_view text);

/// Answers where lines may begin, by the rules of Unicode; the length of the text comes last.
std::vector<std::size_t> lineBoundaries(std::u16string_view text);

/// Answers whether a character is shown as a coloured picture where nothing else is asked for
/// (the Unicode property Emoji_Presentation).
bool isPictureByItself(char32_t codePoint);

/// Reads the code point at an index and moves the index past it. Half a pair answers itself.
inline char32_t nextCodePoint(std::u16string_view text, std::size_t& index)
{
    const char32_t unit = text[index++];
    const bool high = unit >= 0xD800 && unit < 0xDC00;
    if (high && index < text.size() && text[index] >= 0xDC00 && text[index] < 0xE000)
        return 0x10000 + ((unit - 0xD800) << 10) + (text[index++] - 0xDC00u);
    return unit;
}

}
