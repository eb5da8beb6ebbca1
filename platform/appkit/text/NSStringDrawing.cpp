// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSStringDrawing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "TextDrawingPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/NSDictionary.h"
#include "quartz/ContextState.h"
#include "runtime/Table.h"

namespace brindle {

using layouts::Container;
using layouts::Layout;
using layouts::Place;

namespace {

    constexpr double kUnbounded = std::numeric_limits<float>::max();

    Ref<NSAttributedString> attributed(NSString& string, NSDictionary* attributes)
    {
        const bool usable = attributes && attributes->isKindOfClass(NSDictionary::cls());
        return alloc<NSAttributedString>()->initWithString_attributes(
            &string, usable ? attributes : nullptr);
    }

    bool isUsable(NSRect rect)
    {
        return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y)
            && !std::isnan(rect.size.width) && !std::isnan(rect.size.height);
    }

    void prepare(
        Layout& layout, NSAttributedString& text, NSSize size, NSStringDrawingOptions options)
    {
        layout.usesFontLeading = options & NSStringDrawingUsesFontLeading;
        layout.setLastLineTruncates(options & NSStringDrawingTruncatesLastVisibleLine);
        layout.setText(&text);
        layout.removeContainers();
        layout.addContainer({ size.width, size.height, 0, 0, {} });
    }

    /// Draws what is laid out; `top` is the upper left corner.
    void draw(Layout& layout, NSPoint top, bool flipped)
    {
        const Place place { top, flipped };
        const NSRange range = NSMakeRange(0, layout.laidOutTo());
        layouts::drawBackgrounds(layout, range, 0, place);
        layouts::drawText(layout, range, 0, place);
    }

    struct Drawing {

        static NSRect boundingRect(
            NSAttributedString& self, NSSize size, NSStringDrawingOptions options)
        {
            const layouts::LayoutOwner owner = layouts::takeLayout();
            Layout& layout = *owner;
            const bool wraps = options & NSStringDrawingUsesLineFragmentOrigin;
            const bool truncates = options & NSStringDrawingTruncatesLastVisibleLine;
            // Only truncation drops lines: what is measured is what the whole text takes.
            const NSSize room { wraps ? size.width : kUnbounded,
                wraps && truncates ? size.height : kUnbounded };
            prepare(layout, self, room, options);
            layout.ensureAll();
            if (wraps)
                return layout.usedRect(0);
            if (layout.fragments().empty())
                return NSMakeRect(0, 0, 0, layout.usedRect(0).size.height);
            const layouts::Fragment& line = layout.fragments().front();
            return NSMakeRect(0, line.baseline - line.rect.size.height, line.used.size.width,
                line.used.size.height);
        }

        static NSSize size(NSAttributedString& self)
        {
            return boundingRect(self, { kUnbounded, kUnbounded },
                NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading)
                .size;
        }

        static void drawAtPoint(NSAttributedString& self, NSPoint point)
        {
            const Ref<NSGraphicsContext> current = NSGraphicsContext::cls().currentContext();
            if (!current || !isUsable({ point, {} }))
                return;
            const layouts::LayoutOwner owner = layouts::takeLayout();
            Layout& layout = *owner;
            prepare(layout, self, { kUnbounded, kUnbounded }, NSStringDrawingUsesFontLeading);
            layout.ensureAll();
            const bool flipped = current->isFlipped();
            if (!flipped)
                point.y += NSMaxY(layout.usedRect(0));
            draw(layout, point, flipped);
        }

        static void drawInRect(NSAttributedString& self, NSRect rect)
        {
            drawWithRect(
                self, rect, NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading);
        }

        static void drawWithRect(
            NSAttributedString& self, NSRect rect, NSStringDrawingOptions options)
        {
            const Ref<NSGraphicsContext> current = NSGraphicsContext::cls().currentContext();
            if (!current || !isUsable(rect))
                return;
            const bool flipped = current->isFlipped();
            const bool truncates = options & NSStringDrawingTruncatesLastVisibleLine;
            const layouts::LayoutOwner owner = layouts::takeLayout();
            Layout& layout = *owner;
            if (!(options & NSStringDrawingUsesLineFragmentOrigin)) {
                prepare(layout, self, { kUnbounded, kUnbounded }, options);
                layout.ensureIndex(0);
                if (layout.fragments().empty())
                    return;
                const layouts::Fragment line = layout.fragments().front();
                const Place place {
                    { rect.origin.x, rect.origin.y + (flipped ? -1 : 1) * line.baseline }, flipped
                };
                layouts::drawBackgrounds(layout, line.range, 0, place);
                return layouts::drawText(layout, line.range, 0, place);
            }
            prepare(layout, self, { rect.size.width, truncates ? rect.size.height : kUnbounded },
                options);
            const bool isTall = rect.size.height > 0;
            layout.ensurePoint(0, isTall ? rect.size.height : kUnbounded);
            const GraphicsStateGuard saved;
            if (isTall && rect.size.width > 0)
                quartz::clipToTouchedPixels(current->CGContext().get(), { &rect, 1 });
            draw(layout, { rect.origin.x, flipped || !isTall ? rect.origin.y : NSMaxY(rect) },
                flipped);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "size", imp<size> },
                { "drawAtPoint:", imp<drawAtPoint> },
                { "drawInRect:", imp<drawInRect> },
                { "drawWithRect:options:", imp<drawWithRect> },
                { "boundingRectWithSize:options:", imp<boundingRect> },
            });
        }
    };

    struct PlainDrawing {

        static NSSize size(NSString& self, NSDictionary* attributes)
        {
            return brindle::size(attributed(self, attributes));
        }
        static void drawAtPoint(NSString& self, NSPoint point, NSDictionary* attributes)
        {
            brindle::drawAtPoint(attributed(self, attributes), point);
        }
        static void drawInRect(NSString& self, NSRect rect, NSDictionary* attributes)
        {
            brindle::drawInRect(attributed(self, attributes), rect);
        }
        static void drawWithRect(
            NSString& self, NSRect rect, NSStringDrawingOptions options, NSDictionary* attributes)
        {
            drawWithRect_options(attributed(self, attributes), rect, options);
        }
        static NSRect boundingRect(
            NSString& self, NSSize size, NSStringDrawingOptions options, NSDictionary* attributes)
        {
            return boundingRectWithSize_options(attributed(self, attributes), size, options);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "sizeWithAttributes:", imp<size> },
                { "drawAtPoint:withAttributes:", imp<drawAtPoint> },
                { "drawInRect:withAttributes:", imp<drawInRect> },
                { "drawWithRect:options:attributes:", imp<drawWithRect> },
                { "boundingRectWithSize:options:attributes:", imp<boundingRect> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSAttributedString, Drawing)
BRINDLE_EXTENSION(NSString, PlainDrawing)

}
