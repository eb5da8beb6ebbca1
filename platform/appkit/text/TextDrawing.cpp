// SPDX-License-Identifier: Apache-2.0
#include "TextDrawingPrivate.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "quartz/TextDrawing.h"

namespace brindle::layouts {

namespace {

    Ref<NSColor> colorIn(
        const NSDictionary* attributes, NSString* name, const Ref<NSColor>& otherwise)
    {
        Ref<NSColor> color = attribute<NSColor>(attributes, name);
        return color ? color : otherwise;
    }

    /// Draws the stretches of a line that have the same attributes, one by one.
    class LinePainter {
    public:
        LinePainter(Layout& layout, std::size_t index, const Place& place)
            : layout_(layout)
            , fragment_(layout.fragments()[index])
            , glyphs_(layout.glyphsOf(index))
            , place_(place)
            , context_(maybe(NSGraphicsContext::cls().currentContext())->CGContext())
        {
        }

        template <class Paint> void forEachRun(NSRange range, const Paint& paint) const
        {
            NSAttributedString& text = *layout_.text();
            const NSRange part = NSIntersectionRange(range, fragment_.range);
            for (NSUInteger at = part.location; at < NSMaxRange(part);) {
                NSRange found {};
                const Ref<NSDictionary> attributes
                    = text.attributesAtIndex_effectiveRange(at, &found);
                const NSUInteger end = std::clamp(NSMaxRange(found), at + 1, NSMaxRange(part));
                const NSUInteger from = glyphs_.toLine(at, fragment_.range.location);
                const NSUInteger to = glyphs_.toLine(end, fragment_.range.location);
                if (to > from)
                    paint(*attributes, NSMakeRange(from, to - from));
                at = end;
            }
        }

        void drawBackground(NSDictionary& attributes, NSRange part) const
        {
            const Ref<NSColor> color
                = attribute<NSColor>(&attributes, NSBackgroundColorAttributeName);
            if (!color)
                return;
            for (const text::LineSpan span : glyphs_.line.spansOf(part))
                color->drawSwatchInRect(place_.of(NSMakeRect(fragment_.textX + span.x,
                    fragment_.used.origin.y, span.width, fragment_.used.size.height)));
        }

        void drawRun(NSDictionary& attributes, NSRange part) const
        {
            const GraphicsStateGuard saved;
            setShadow(attributes);
            const text::StyledRun run = styledRun(&attributes, part);
            if (run.isBox)
                return drawAttachment(attributes, part);
            const Ref<NSColor> color
                = colorIn(&attributes, NSForegroundColorAttributeName, NSColor::cls().blackColor());
            const NSPoint baseline = place_.at(fragment_.textX, baselineY() - run.raise);
            const bool isWhole = part.location == 0 && part.length >= glyphs_.line.text().size();
            const text::Line letters = isWhole ? text::Line() : glyphs_.line.partFor(part);
            quartz::drawTextLine(context_.get(), isWhole ? glyphs_.line : letters,
                CGPointMake(baseline.x, baseline.y), maybe(color)->CGColor().get());
            drawRules(attributes, part, run, color);
        }

        bool isClipped() const { return fragment_.cut == NSLineBreakByClipping; }
        void clip() const
        {
            const NSRect rect = place_.of(NSMakeRect(fragment_.textX, fragment_.rect.origin.y,
                fragment_.room, fragment_.rect.size.height));
            CGContextClipToRect(context_.get(), rect);
        }

    private:
        double baselineY() const { return fragment_.rect.origin.y + fragment_.baseline; }

        static void setShadow(NSDictionary& attributes)
        {
            const Ref<NSObject> shadow = attributes.objectForKey(NSShadowAttributeName);
            Class* const cls = shadow ? objc_getClass("NSShadow") : nullptr;
            if (cls && shadow->isKindOfClass(cls))
                shadow->send<"set">();
        }

        void drawAttachment(NSDictionary& attributes, NSRange part) const
        {
            const auto attachment
                = attribute<NSTextAttachment>(&attributes, NSAttachmentAttributeName);
            const Ref<NSObject> image = maybe(attachment)->image();
            if (!image || !image->respondsToSelector(selector<"drawInRect:">))
                return;
            const NSRect bounds = attachment->attachmentBounds();
            for (NSUInteger i = 0; i < part.length; ++i) {
                const auto spans = glyphs_.line.spansOf(NSMakeRange(part.location + i, 1));
                if (spans.empty())
                    continue;
                const double top = baselineY() - NSMaxY(bounds);
                image->send<"drawInRect:">(place_.of(NSMakeRect(fragment_.textX + spans.front().x,
                    top, bounds.size.width, bounds.size.height)));
            }
        }

        /// Draws the lines under and through the letters.
        void drawRules(NSDictionary& attributes, NSRange part, const text::StyledRun& run,
            const Ref<NSColor>& color) const
        {
            if (!run.font.face)
                return;
            const auto under = static_cast<NSInteger>(
                numberAttribute(&attributes, NSUnderlineStyleAttributeName));
            const auto through = static_cast<NSInteger>(
                numberAttribute(&attributes, NSStrikethroughStyleAttributeName));
            const double position = run.font.face->metrics().underlinePosition * run.font.size;
            if (under)
                drawRule(part, run, under, std::max(-position, 1.0),
                    colorIn(&attributes, NSUnderlineColorAttributeName, color));
            if (through)
                drawRule(part, run, through, -run.font.xHeight() / 2,
                    colorIn(&attributes, NSStrikethroughColorAttributeName, color));
        }

        /// - below: from the baseline to the middle of the rule.
        void drawRule(NSRange part, const text::StyledRun& run, NSInteger style, double below,
            const Ref<NSColor>& color) const
        {
            constexpr NSInteger kShape = 0xF;
            double thickness = std::max(
                std::round(run.font.face->metrics().underlineThickness * run.font.size), 1.0);
            if ((style & kShape) == NSUnderlineStyleThick)
                thickness *= 2;
            const bool isDouble = (style & kShape) == NSUnderlineStyleDouble;
            const double top = std::round(baselineY() - run.raise + below - thickness / 2);
            for (const text::LineSpan span : glyphs_.line.spansOf(part)) {
                const double x = fragment_.textX + span.x;
                color->setFill();
                CGContextFillRect(
                    context_.get(), place_.of(NSMakeRect(x, top, span.width, thickness)));
                if (isDouble)
                    CGContextFillRect(context_.get(),
                        place_.of(NSMakeRect(x, top + 2 * thickness, span.width, thickness)));
            }
        }

        Layout& layout_;
        const Fragment& fragment_;
        const GlyphLine& glyphs_;
        const Place& place_;
        Ref<CGContext> context_;
    };

    template <class Paint>
    void forEachLine(Layout& layout, NSRange range, std::size_t container, const Place& place,
        const Paint& paint)
    {
        if (!range.length || !layout.text() || !NSGraphicsContext::cls().currentContext())
            return;
        layout.ensureIndex(NSMaxRange(range) - 1);
        const auto [first, end] = layout.fragmentsIn(container);
        for (std::size_t i = std::max(first, layout.fragmentAt(range.location));
             i < end && layout.fragments()[i].range.location < NSMaxRange(range); ++i)
            paint(LinePainter(layout, i, place));
    }

}

void drawBackgrounds(Layout& layout, NSRange range, std::size_t container, const Place& place)
{
    forEachLine(layout, range, container, place, [range](const LinePainter& line) {
        line.forEachRun(range,
            [&](NSDictionary& attributes, NSRange part) { line.drawBackground(attributes, part); });
    });
}

void drawText(Layout& layout, NSRange range, std::size_t container, const Place& place)
{
    forEachLine(layout, range, container, place, [range](const LinePainter& line) {
        const GraphicsStateGuard saved;
        if (line.isClipped())
            line.clip();
        line.forEachRun(
            range, [&](NSDictionary& attributes, NSRange part) { line.drawRun(attributes, part); });
    });
}

}
