// SPDX-License-Identifier: Apache-2.0
#include "KeyTablesPrivate.h"

#include <array>
#include <string_view>

#include <xkbcommon/xkbcommon-keysyms.h>

#include "display/Types.h"

namespace brindle::display {

namespace {

    constexpr std::uint16_t kNone = 0xFFFF;
    constexpr unsigned kFirstKeycode = 8; // the server's numbers are the kernel's plus this

    // By the kernel's numbers.
    constexpr std::array<std::uint16_t, 128> kKeyCodes { kNone, 53, 18, 19, 20, 21, 23, 22, 26, 28,
        25, 29, 27, 24, 51, 48, // escape, digits, tab
        12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 36, 59, 0, 1, // q to ], return, a, s
        2, 3, 5, 4, 38, 40, 37, 41, 39, 50, 56, 42, 6, 7, 8, 9, // d to `, shift, z to v
        11, 45, 46, 43, 47, 44, 60, 67, 58, 49, 57, 122, 120, 99, 118,
        96, // b to /, space, F1 to F5
        97, 98, 100, 101, 109, 71, 107, 89, 91, 92, 78, 86, 87, 88, 69, 83, // F6 to F10, keypad
        84, 85, 82, 65, kNone, kNone, 10, 103, 111, kNone, kNone, kNone, kNone, kNone, kNone, kNone,
        76, 62, 75, 105, 61, kNone, 115, 126, 116, 123, 124, 119, 125, 121, 114, 117, // arrows
        kNone, kNone, kNone, kNone, kNone, 81, kNone, 113, kNone, kNone, kNone, kNone, kNone, 55,
        54, 110 };

    struct Row {
        unsigned first; // the kernel's number
        std::string_view plain;
        std::string_view shifted;
    };
    constexpr std::array<Row, 5> kRows { {
        { 2, "1234567890-=", "!@#$%^&*()_+" },
        { 16, "qwertyuiop[]", "QWERTYUIOP{}" },
        { 30, "asdfghjkl;'`", "ASDFGHJKL:\"~" },
        { 43, "\\zxcvbnm,./", "|ZXCVBNM<>?" },
        { 57, " ", " " },
    } };

    struct Special {
        std::uint32_t keysym;
        char16_t character;
    };
    constexpr std::array<Special, 41> kSpecials { {
        { XKB_KEY_Return, u'\r' },
        { XKB_KEY_KP_Enter, 0x03 },
        { XKB_KEY_Tab, u'\t' },
        { XKB_KEY_KP_Tab, u'\t' },
        { XKB_KEY_ISO_Left_Tab, 0x19 },
        { XKB_KEY_BackSpace, 0x7F },
        { XKB_KEY_Escape, 0x1B },
        { XKB_KEY_Up, 0xF700 },
        { XKB_KEY_KP_Up, 0xF700 },
        { XKB_KEY_Down, 0xF701 },
        { XKB_KEY_KP_Down, 0xF701 },
        { XKB_KEY_Left, 0xF702 },
        { XKB_KEY_KP_Left, 0xF702 },
        { XKB_KEY_Right, 0xF703 },
        { XKB_KEY_KP_Right, 0xF703 },
        { XKB_KEY_Insert, 0xF727 },
        { XKB_KEY_KP_Insert, 0xF727 },
        { XKB_KEY_Delete, 0xF728 },
        { XKB_KEY_KP_Delete, 0xF728 },
        { XKB_KEY_Home, 0xF729 },
        { XKB_KEY_KP_Home, 0xF729 },
        { XKB_KEY_Begin, 0xF72A },
        { XKB_KEY_KP_Begin, 0xF72A },
        { XKB_KEY_End, 0xF72B },
        { XKB_KEY_KP_End, 0xF72B },
        { XKB_KEY_Page_Up, 0xF72C },
        { XKB_KEY_KP_Page_Up, 0xF72C },
        { XKB_KEY_Page_Down, 0xF72D },
        { XKB_KEY_KP_Page_Down, 0xF72D },
        { XKB_KEY_Print, 0xF72E },
        { XKB_KEY_Scroll_Lock, 0xF72F },
        { XKB_KEY_Pause, 0xF730 },
        { XKB_KEY_Sys_Req, 0xF731 },
        { XKB_KEY_Break, 0xF732 },
        { XKB_KEY_Menu, 0xF735 },
        { XKB_KEY_Num_Lock, 0xF739 },
        { XKB_KEY_Select, 0xF741 },
        { XKB_KEY_Execute, 0xF742 },
        { XKB_KEY_Undo, 0xF743 },
        { XKB_KEY_Redo, 0xF744 },
        { XKB_KEY_Help, 0xF746 },
    } };

}

std::uint16_t keyCodeOf(std::uint8_t keycode)
{
    const unsigned number = keycode - kFirstKeycode;
    return keycode >= kFirstKeycode && number < kKeyCodes.size() ? kKeyCodes[number] : kNone;
}

char32_t americanCharacter(std::uint8_t keycode, bool shift)
{
    for (const Row& row : kRows) {
        const unsigned first = row.first + kFirstKeycode;
        if (keycode >= first && keycode - first < row.plain.size()) {
            const std::string_view characters = shift ? row.shifted : row.plain;
            return static_cast<unsigned char>(characters[keycode - first]);
        }
    }
    return 0;
}

char16_t specialCharacter(std::uint32_t keysym)
{
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35)
        return static_cast<char16_t>(0xF704 + (keysym - XKB_KEY_F1));
    if (keysym >= XKB_KEY_KP_F1 && keysym <= XKB_KEY_KP_F4)
        return static_cast<char16_t>(0xF704 + (keysym - XKB_KEY_KP_F1));
    for (const Special& special : kSpecials) {
        if (special.keysym == keysym)
            return special.character;
    }
    return 0;
}

bool isKeypad(std::uint32_t keysym)
{
    return keysym >= XKB_KEY_KP_Space && keysym <= XKB_KEY_KP_Equal;
}

std::uint64_t flagsOfCharacter(char16_t character)
{
    if (character >= 0xF700 && character <= 0xF703)
        return kFunction | kKeypad;
    return character >= 0xF700 && character <= 0xF8FF ? kFunction : 0;
}

}
