// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "Line.h"
#include "Unicode.h"

namespace brindle::text {

/// A script by its four-letter tag, first letter in the top byte ("Latn").
using ScriptTag = std::uint32_t;

inline constexpr ScriptTag kLatin = 0x4C61746E;

/// A stretch of text that can be shaped in one go.
struct Item {
    std::size_t start = 0;
    std::size_t length = 0;
    Font font; // after fallback
    ScriptTag script = kLatin;
    Level level = 0;

    bool isRightToLeft() const { return level % 2 != 0; }
};

/// Cuts text where its font, script, direction or fallback font changes; in the text's order.
/// - items: receives them in place of what it holds, so that its memory is used again.
void itemize(std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction,
    std::vector<Item>& items);

/// Answers whether text in a font is a single left-to-right item in that very font.
bool isSingleItem(std::u16string_view text, const Font& font);

/// Answers whether a unit is a control character, which takes no room on a line. A tab is not one
/// here.
constexpr bool isHiddenControl(char16_t unit)
{
    return (unit < 0x20 && unit != 0x09) || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028
        || unit == 0x2029;
}

}
