// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSFont.h"
#include "foundation/StringConstant.h"

/// Drawing and measuring plain strings. Attributes are a dictionary of the names below; nil means none.

namespace brindle {

class NSDictionary;

inline constexpr StringConstant<"NSFont"> NSFontAttributeName; ///< NSFont; absent: Helvetica 12
inline constexpr StringConstant<"NSColor">
    NSForegroundColorAttributeName; ///< NSColor; absent: black
inline constexpr StringConstant<"NSBackgroundColor"> NSBackgroundColorAttributeName; ///< NSColor
inline constexpr StringConstant<"NSShadow"> NSShadowAttributeName; ///< NSShadow
inline constexpr StringConstant<"NSParagraphStyle">
    NSParagraphStyleAttributeName; ///< NSParagraphStyle
inline constexpr StringConstant<"NSUnderline">
    NSUnderlineStyleAttributeName; ///< NSNumber; 1 single
inline constexpr StringConstant<"NSKern"> NSKernAttributeName; ///< NSNumber, points

/// Answers the size of the text on one line, without padding.
/// - Returns: points; the width as it is, the height of a full line.
inline NSSize sizeWithAttributes(To<NSString> string, const NSDictionary* attributes)
{
    return string.send<"sizeWithAttributes:", NSSize>(attributes);
}

/// Draws the text on one line in the current context, upright in flipped and unflipped views.
/// - point: where the line's rectangle begins: its top left in a flipped view, its bottom left in another.
inline void drawAtPoint_withAttributes(
    To<NSString> string, NSPoint point, const NSDictionary* attributes)
{
    string.send<"drawAtPoint:withAttributes:">(point, attributes);
}

}
