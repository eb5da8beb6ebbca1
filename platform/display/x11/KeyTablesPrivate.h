// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace brindle::display {

/// Answers the number that events give to the key in that place; 0xFFFF when it has none.
/// - keycode: the server's.
std::uint16_t keyCodeOf(std::uint8_t keycode);

/// Answers the character of the key in that place on an American keyboard; 0 when it has none.
char32_t americanCharacter(std::uint8_t keycode, bool shift);

/// Answers the character for a key that types none, or another than X has for it; 0 for ordinary keys.
char16_t specialCharacter(std::uint32_t keysym);

/// Answers whether the keysym belongs to the keypad.
bool isKeypad(std::uint32_t keysym);

/// Answers the modifiers that a special character brings along by itself.
std::uint64_t flagsOfCharacter(char16_t character);

}
