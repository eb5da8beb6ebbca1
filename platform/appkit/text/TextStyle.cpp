// SPDX-License-Identifier: Apache-2.0
#include "TextStylePrivate.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextTab.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSCharacterSet.h"
#include "foundation/NSNumber.h"
#include "runtime/MethodChanges.h"

namespace brindle::layouts {

namespace {

    // Raised and lowered text: a part of the font's size for each step.
    constexpr double kScriptStep = 0.33;

    double finite(double value) { return std::isfinite(value) ? value : 0; }

    void addBox(text::StyledRun& run, const NSTextAttachment& attachment)
    {
        const NSRect bounds = attachment.attachmentBounds();
        run.isBox = true;
        run.boxWidth = std::max(finite(bounds.size.width), 0.0);
        run.boxDescent = std::max(finite(-bounds.origin.y), 0.0);
        run.boxAscent = std::max(finite(bounds.origin.y + bounds.size.height), 0.0);
    }

}

double numberAttribute(const NSDictionary* attributes, NSString* name)
{
    const Ref<NSNumber> number = attribute<NSNumber>(attributes, name);
    return number ? finite(number->doubleValue()) : 0;
}

NSFont* defaultFont()
{
    static NSFont* const font = NSFont::cls().userFontOfSize(12).leak();
    return font;
}

Ref<NSParagraphStyle> paragraphStyleIn(const NSDictionary* attributes)
{
    Ref<NSParagraphStyle> style
        = attribute<NSParagraphStyle>(attributes, NSParagraphStyleAttributeName);
    return style ? style : NSParagraphStyle::cls().defaultParagraphStyle();
}

text::StyledRun styledRun(const NSDictionary* attributes, NSRange range)
{
    text::StyledRun run;
    run.range = range;
    const NSUInteger count = attributes->count();
    const Ref<NSFont> font = attribute<NSFont>(attributes, NSFontAttributeName);
    run.font = NSFont::textFont(font ? font.get() : defaultFont());
    if (!run.font.face)
        run.font = NSFont::textFont(defaultFont());
    if (count == (font ? 1u : 0u))
        return run;
    run.kern = numberAttribute(attributes, NSKernAttributeName);
    run.raise = numberAttribute(attributes, NSBaselineOffsetAttributeName)
        + std::clamp(numberAttribute(attributes, NSSuperscriptAttributeName), -9.0, 9.0)
            * kScriptStep * run.font.size;
    if (const auto attachment = attribute<NSTextAttachment>(attributes, NSAttachmentAttributeName))
        addBox(run, *attachment);
    return run;
}

Ref<NSDictionary> readRuns(
    NSAttributedString& text, NSRange range, std::vector<text::StyledRun>& runs)
{
    runs.clear();
    Ref<NSDictionary> first;
    for (NSUInteger at = range.location; at < NSMaxRange(range);) {
        NSRange found {};
        Ref<NSDictionary> attributes = text.attributesAtIndex_effectiveRange(at, &found);
        const NSUInteger end = std::clamp(NSMaxRange(found), at + 1, NSMaxRange(range));
        runs.push_back(styledRun(attributes.get(), NSMakeRange(at - range.location, end - at)));
        at = end;
        if (!first)
            first = std::move(attributes);
    }
    if (!runs.empty())
        return first;
    // An empty line is as high as its line break, or as the letter before it.
    const NSUInteger length = text.length();
    const NSUInteger near = range.location < length ? range.location : length - 1;
    Ref<NSDictionary> attributes
        = length ? text.attributesAtIndex_effectiveRange(near, nullptr) : make<NSDictionary>();
    runs.push_back(styledRun(attributes.get(), NSMakeRange(0, 0)));
    runs.back().isBox = false;
    return attributes;
}

double lineHeight(const text::Font& font, bool usesLeading)
{
    return std::round(font.ascender()) + std::round(-font.descender())
        + (usesLeading ? std::round(font.leading()) : 0);
}

namespace {

    text::BaseDirection directionOf(const NSParagraphStyle& style)
    {
        switch (style.baseWritingDirection()) {
        case NSWritingDirectionLeftToRight:
            return text::BaseDirection::leftToRight;
        case NSWritingDirectionRightToLeft:
            return text::BaseDirection::rightToLeft;
        default:
            return text::BaseDirection::natural;
        }
    }

    ParagraphShape shapeOf(const NSParagraphStyle& style)
    {
        return { style.alignment(), style.lineBreakMode(), style.lineSpacing(),
            style.paragraphSpacing(), style.paragraphSpacingBefore(), style.lineHeightMultiple(),
            style.minimumLineHeight(), style.maximumLineHeight(), style.firstLineHeadIndent(),
            style.headIndent(), style.tailIndent(), directionOf(style),
            style.defaultTabInterval() };
    }

    /// Answers the shape of paragraphs without a style, asked again when a method has changed anywhere.
    ParagraphShape plainShape()
    {
        struct Known {
            std::uint64_t changes = 0;
            NSParagraphStyle* style
                = nullptr; // never changes; kept, so that no other takes its place
            ParagraphShape shape;
        };
        thread_local constinit Known known;
        const std::uint64_t changes = methodChanges.load(std::memory_order_acquire);
        const Ref<NSParagraphStyle> style = NSParagraphStyle::cls().defaultParagraphStyle();
        if (known.changes == changes && known.style == style.get() && style)
            return known.shape;
        const ParagraphShape shape = shapeOf(*style);
        if (style->classObject() == NSParagraphStyle::cls()) {
            const auto former = Ref<NSParagraphStyle>::adopt(known.style);
            known = { changes, Ref<NSParagraphStyle>(style).leak(), shape };
        }
        return shape;
    }

}

ParagraphShape shapeIn(const NSDictionary* attributes)
{
    const auto style = attribute<NSParagraphStyle>(attributes, NSParagraphStyleAttributeName);
    return style ? shapeOf(*style) : plainShape();
}

namespace {

    std::function<bool(char16_t)> columnEndsOf(const NSTextTab& tab)
    {
        const Ref<NSDictionary> options = tab.options();
        const auto ends
            = attribute<NSCharacterSet>(options.get(), NSTabColumnTerminatorsAttributeName);
        if (!ends)
            return {};
        return [ends](char16_t letter) { return ends->characterIsMember(letter); };
    }

}

std::vector<text::TabStop> tabsOf(const NSParagraphStyle& style)
{
    std::vector<text::TabStop> stops;
    for (NSTextTab* tab : each<NSTextTab>(style.tabStops())) {
        const NSTextAlignment alignment = tab->alignment();
        const double share = alignment == NSTextAlignmentRight ? 1
            : alignment == NSTextAlignmentCenter               ? 0.5
                                                               : 0;
        stops.push_back({ tab->location(), share, columnEndsOf(*tab) });
    }
    return stops;
}

}
