// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

#include "appkit/NSColor.h"

namespace brindle::appkit {

/// Sets the look that counts as long as the host chooses none.
void setDesktopAppearance(Appearance appearance);

/// A colour that follows the appearance; red, green, blue and alpha, a byte each.
struct SystemColor {
    const char* name;
    std::uint32_t light;
    std::uint32_t dark;
};

/// The palette: cool greys around one blue. Text keeps a contrast of 7 to 1 and more on its grounds; labels are the
/// text's colour with less of it, so that they fit every ground.
inline constexpr std::array kSystemColors {
    SystemColor { "controlTextColor", 0x1D1D22FF, 0xF2F3F5FF },
    SystemColor { "disabledControlTextColor", 0x1D1D2259, 0xF2F3F559 },
    SystemColor { "controlColor", 0xFFFFFFFF, 0x43464CFF },
    SystemColor { "controlBackgroundColor", 0xFFFFFFFF, 0x1F2125FF },
    SystemColor { "controlHighlightColor", 0xF4F5F7FF, 0x565A61FF },
    SystemColor { "controlLightHighlightColor", 0xFFFFFFFF, 0x656A72FF },
    SystemColor { "controlShadowColor", 0xB9BDC6FF, 0x17181BFF },
    SystemColor { "controlDarkShadowColor", 0x8D929CFF, 0x0E0F11FF },
    SystemColor { "selectedControlColor", 0xBFD7FFFF, 0x2B4F87FF },
    SystemColor { "selectedControlTextColor", 0x1D1D22FF, 0xFFFFFFFF },
    SystemColor { "alternateSelectedControlColor", 0x2468E5FF, 0x2B6FEAFF },
    SystemColor { "alternateSelectedControlTextColor", 0xFFFFFFFF, 0xFFFFFFFF },
    SystemColor { "secondarySelectedControlColor", 0xDADDE3FF, 0x43474FFF },
    SystemColor { "selectedContentBackgroundColor", 0x2468E5FF, 0x2B6FEAFF },
    SystemColor { "unemphasizedSelectedContentBackgroundColor", 0xDADDE3FF, 0x43474FFF },
    SystemColor { "unemphasizedSelectedTextBackgroundColor", 0xDADDE3FF, 0x43474FFF },
    SystemColor { "unemphasizedSelectedTextColor", 0x1D1D22FF, 0xFFFFFFFF },
    SystemColor { "alternatingContentBackgroundColor", 0xF4F5F8FF, 0x26282DFF },
    SystemColor { "findHighlightColor", 0xFFE23DFF, 0xFFE23DFF },
    SystemColor { "keyboardFocusIndicatorColor", 0x2468E580, 0x5B95FF99 },
    SystemColor { "windowBackgroundColor", 0xECEDF0FF, 0x2A2C30FF },
    SystemColor { "windowFrameColor", 0xA9ADB6FF, 0x0C0D0FFF },
    SystemColor { "windowFrameTextColor", 0x2B2D33FF, 0xE4E6EAFF },
    SystemColor { "underPageBackgroundColor", 0x9EA2ABFF, 0x1A1B1EFF },
    SystemColor { "textColor", 0x1D1D22FF, 0xF2F3F5FF },
    SystemColor { "textBackgroundColor", 0xFFFFFFFF, 0x1F2125FF },
    SystemColor { "selectedTextColor", 0x1D1D22FF, 0xFFFFFFFF },
    SystemColor { "selectedTextBackgroundColor", 0xB6D1FFFF, 0x31579AFF },
    SystemColor { "gridColor", 0xDFE1E6FF, 0x3B3E44FF },
    SystemColor { "headerColor", 0xF5F6F8FF, 0x2F3237FF },
    SystemColor { "headerTextColor", 0x4A4D56FF, 0xC9CCD3FF },
    SystemColor { "scrollBarColor", 0xF2F3F5FF, 0x25272BFF },
    SystemColor { "knobColor", 0x9BA0AAFF, 0x767B85FF },
    SystemColor { "selectedKnobColor", 0x757A85FF, 0x9BA0ABFF },
    SystemColor { "selectedMenuItemColor", 0x2468E5FF, 0x2B6FEAFF },
    SystemColor { "selectedMenuItemTextColor", 0xFFFFFFFF, 0xFFFFFFFF },
    SystemColor { "highlightColor", 0xFFFFFFFF, 0xB4B8C0FF },
    SystemColor { "shadowColor", 0x000000FF, 0x000000FF },
    SystemColor { "labelColor", 0x1D1D22E6, 0xF2F3F5E6 },
    SystemColor { "secondaryLabelColor", 0x1D1D2299, 0xF2F3F599 },
    SystemColor { "tertiaryLabelColor", 0x1D1D2266, 0xF2F3F566 },
    SystemColor { "quaternaryLabelColor", 0x1D1D2230, 0xF2F3F530 },
    SystemColor { "placeholderTextColor", 0x1D1D2266, 0xF2F3F566 },
    SystemColor { "separatorColor", 0x1D1D221F, 0xF2F3F524 },
    SystemColor { "linkColor", 0x1B5FD9FF, 0x6AA2FFFF },
    SystemColor { "controlAccentColor", 0x2468E5FF, 0x2B6FEAFF },
    SystemColor { "systemRedColor", 0xE0342FFF, 0xFF5A52FF },
    SystemColor { "systemOrangeColor", 0xEF8A17FF, 0xFF9F2EFF },
    SystemColor { "systemYellowColor", 0xE8B908FF, 0xFFD432FF },
    SystemColor { "systemGreenColor", 0x2BA84AFF, 0x3CCB61FF },
    SystemColor { "systemTealColor", 0x1FA3B5FF, 0x4CC3D4FF },
    SystemColor { "systemBlueColor", 0x2468E5FF, 0x4B8BFFFF },
    SystemColor { "systemIndigoColor", 0x5552CCFF, 0x7C79F0FF },
    SystemColor { "systemPurpleColor", 0x9A4BD0FF, 0xBC74EEFF },
    SystemColor { "systemPinkColor", 0xDE3C73FF, 0xFF6493FF },
    SystemColor { "systemBrownColor", 0x9B7A55FF, 0xB59470FF },
    SystemColor { "systemMintColor", 0x14AE93FF, 0x4FD8BCFF },
    SystemColor { "systemCyanColor", 0x219FD6FF, 0x5CC8F5FF },
    SystemColor { "systemGrayColor", 0x868B95FF, 0x9A9FA9FF },
};

}
