// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableAttributedString.h"

namespace brindle {

// What attributes mean for letters: reading and repairing them.
//
// Ranges that leave the text raise `NSRangeException`.

/// Answers the attributes that say how the letters of a range look: all but paragraph style and attachment, as they are at
/// the range's start. Empty for an empty range.
inline Ref<NSDictionary> fontAttributesInRange(To<NSAttributedString> string, NSRange range)
{
    return string.send<"fontAttributesInRange:", Ref<NSDictionary>>(range);
}
/// Answers the paragraph style at the range's start, as a dictionary of its one name; empty where there is none.
inline Ref<NSDictionary> rulerAttributesInRange(To<NSAttributedString> string, NSRange range)
{
    return string.send<"rulerAttributesInRange:", Ref<NSDictionary>>(range);
}
/// Answers whether any unit of the range is an attachment's character.
inline bool containsAttachmentsInRange(To<NSAttributedString> string, NSRange range)
{
    return string.send<"containsAttachmentsInRange:", bool>(range);
}

/// Does the three that follow.
inline void fixAttributesInRange(To<NSMutableAttributedString> string, NSRange range)
{
    string.send<"fixAttributesInRange:">(range);
}
/// Gives characters that their font lacks one that has them, where one is installed.
inline void fixFontAttributeInRange(To<NSMutableAttributedString> string, NSRange range)
{
    string.send<"fixFontAttributeInRange:">(range);
}
/// Gives every paragraph that the range touches the style of its first unit.
inline void fixParagraphStyleAttributeInRange(To<NSMutableAttributedString> string, NSRange range)
{
    string.send<"fixParagraphStyleAttributeInRange:">(range);
}
/// Takes attachments away from characters that do not stand for one.
inline void fixAttachmentAttributeInRange(To<NSMutableAttributedString> string, NSRange range)
{
    string.send<"fixAttachmentAttributeInRange:">(range);
}

/// Sets the alignment in the styles of the range's paragraphs.
inline void setAlignment_range(
    To<NSMutableAttributedString> string, NSUInteger alignment, NSRange range)
{
    string.send<"setAlignment:range:">(alignment, range);
}

}
