// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSFont.h"
#include "appkit/NSParagraphStyle.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "quartz/text/Typesetter.h"

/// What attributes mean for the laying out of text.
namespace brindle::layouts {

/// Answers an attribute's value; a value of another class counts as none.
template <class T> Ref<T> attribute(const NSDictionary* attributes, NSString* name)
{
    Ref<NSObject> value = maybe(const_cast<NSDictionary*>(attributes))->objectForKey(name);
    return value && value->isKindOfClass(T::cls()) ? cast<T>(std::move(value)) : nullptr;
}
/// Answers a number among the attributes, 0 where there is none.
double numberAttribute(const NSDictionary* attributes, NSString* name);

/// Answers the font of text without one, Helvetica 12.
NSFont* defaultFont();
/// Answers the style of a paragraph that begins with these attributes.
Ref<NSParagraphStyle> paragraphStyleIn(const NSDictionary* attributes);

/// Answers how text with these attributes is set. - range: what the run covers.
text::StyledRun styledRun(const NSDictionary* attributes, NSRange range);
/// Replaces `runs` by those of a range of the text; their ranges count from its start. One run at least, an empty one for
/// an empty range.
/// - Returns: the attributes at its start.
Ref<NSDictionary> readRuns(
    NSAttributedString& text, NSRange range, std::vector<text::StyledRun>& runs);

/// Answers how high a line of a font is: each measure is rounded by itself.
double lineHeight(const text::Font& font, bool usesLeading = true);

/// What every line asks of its paragraph's style, asked once.
struct ParagraphShape {
    NSTextAlignment alignment = NSTextAlignmentNatural;
    NSLineBreakMode lineBreakMode = NSLineBreakByWordWrapping;
    double lineSpacing = 0;
    double paragraphSpacing = 0;
    double paragraphSpacingBefore = 0;
    double lineHeightMultiple = 0;
    double minimumLineHeight = 0;
    double maximumLineHeight = 0;
    double firstLineHeadIndent = 0;
    double headIndent = 0;
    double tailIndent = 0;
    text::BaseDirection direction = text::BaseDirection::natural;
    double tabInterval = 0;
};
/// Answers the shape of a paragraph that begins with these attributes.
ParagraphShape shapeIn(const NSDictionary* attributes);

std::vector<text::TabStop> tabsOf(const NSParagraphStyle& style);

}
