// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSFont.h"
#include "foundation/NSAttributedString.h"
#include "foundation/StringConstant.h"

/// Drawing and measuring of strings, plain ones with a dictionary of the attributes below; nil means none.
///
/// Nothing here pads lines. Text stands upright in flipped and unflipped views. A point is where the text's rectangle begins:
/// its top left in a flipped view, its bottom left in another. Without a current context nothing is drawn.
/// Thread: main; measuring: any.

namespace brindle {

class NSDictionary;

inline constexpr StringConstant<"NSFont"> NSFontAttributeName; ///< NSFont; absent: Helvetica 12
inline constexpr StringConstant<"NSColor">
    NSForegroundColorAttributeName; ///< NSColor; absent: black
inline constexpr StringConstant<"NSBackgroundColor"> NSBackgroundColorAttributeName; ///< NSColor
inline constexpr StringConstant<"NSShadow"> NSShadowAttributeName; ///< NSShadow
inline constexpr StringConstant<"NSParagraphStyle">
    NSParagraphStyleAttributeName; ///< NSParagraphStyle; that of a paragraph's first unit holds for all of it
inline constexpr StringConstant<"NSUnderline">
    NSUnderlineStyleAttributeName; ///< NSNumber; 1 single, 2 thick, 9 double
inline constexpr StringConstant<"NSUnderlineColor">
    NSUnderlineColorAttributeName; ///< NSColor; absent: that of the letters
inline constexpr StringConstant<"NSStrikethrough">
    NSStrikethroughStyleAttributeName; ///< NSNumber, as for underlines
inline constexpr StringConstant<"NSStrikethroughColor"> NSStrikethroughColorAttributeName;
inline constexpr StringConstant<"NSKern"> NSKernAttributeName; ///< NSNumber, points
inline constexpr StringConstant<"NSBaselineOffset">
    NSBaselineOffsetAttributeName; ///< NSNumber, points upward
inline constexpr StringConstant<"NSSuperScript">
    NSSuperscriptAttributeName; ///< NSNumber, steps upward, a third of the font's size each
inline constexpr StringConstant<"NSAttachment">
    NSAttachmentAttributeName; ///< NSTextAttachment, on U+FFFC
inline constexpr StringConstant<"NSLink"> NSLinkAttributeName; ///< NSURL or NSString
inline constexpr StringConstant<"NSCursor"> NSCursorAttributeName; ///< NSCursor
inline constexpr StringConstant<"NSToolTip"> NSToolTipAttributeName; ///< NSString

enum NSUnderlineStyle : NSInteger {
    NSUnderlineStyleNone = 0,
    NSUnderlineStyleSingle = 1,
    NSUnderlineStyleThick = 2,
    NSUnderlineStyleDouble = 9,
};

/// How text is drawn and measured in a rectangle; bits that are added together.
using NSStringDrawingOptions = NSUInteger;
enum : NSUInteger {
    /// The origin is the top of the text and lines wrap; without it, it is the baseline of a single line.
    NSStringDrawingUsesLineFragmentOrigin = 1 << 0,
    NSStringDrawingUsesFontLeading = 1 << 1, ///< lines have the fonts' own room between them
    NSStringDrawingUsesDeviceMetrics = 1 << 3, ///< without effect: letters are never cut off
    NSStringDrawingTruncatesLastVisibleLine = 1 << 5, ///< an ellipsis stands for what does not fit
};

/// Answers the size of the text, broken only where it has line breaks.
/// - Returns: points; the width as it is, the height of full lines.
inline NSSize sizeWithAttributes(To<NSString> string, const NSDictionary* attributes)
{
    return string.send<"sizeWithAttributes:", NSSize>(attributes);
}
inline void drawAtPoint_withAttributes(
    To<NSString> string, NSPoint point, const NSDictionary* attributes)
{
    string.send<"drawAtPoint:withAttributes:">(point, attributes);
}
/// Draws the text from the rectangle's top, wrapped in its width; what does not fit is not drawn.
inline void drawInRect_withAttributes(
    To<NSString> string, NSRect rect, const NSDictionary* attributes)
{
    string.send<"drawInRect:withAttributes:">(rect, attributes);
}
inline void drawWithRect_options_attributes(To<NSString> string, NSRect rect,
    NSStringDrawingOptions options, const NSDictionary* attributes)
{
    string.send<"drawWithRect:options:attributes:">(rect, options, attributes);
}
/// Answers the rectangle that the text takes up in a size, 0 meaning unbounded, seen from its origin.
inline NSRect boundingRectWithSize_options_attributes(To<NSString> string, NSSize size,
    NSStringDrawingOptions options, const NSDictionary* attributes)
{
    return string.send<"boundingRectWithSize:options:attributes:", NSRect>(
        size, options, attributes);
}

inline NSSize size(To<NSAttributedString> string) { return string.send<"size", NSSize>(); }
inline void drawAtPoint(To<NSAttributedString> string, NSPoint point)
{
    string.send<"drawAtPoint:">(point);
}
inline void drawInRect(To<NSAttributedString> string, NSRect rect)
{
    string.send<"drawInRect:">(rect);
}
inline void drawWithRect_options(
    To<NSAttributedString> string, NSRect rect, NSStringDrawingOptions options)
{
    string.send<"drawWithRect:options:">(rect, options);
}
inline NSRect boundingRectWithSize_options(
    To<NSAttributedString> string, NSSize size, NSStringDrawingOptions options)
{
    return string.send<"boundingRectWithSize:options:", NSRect>(size, options);
}

}
