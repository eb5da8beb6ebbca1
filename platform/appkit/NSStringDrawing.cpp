// SPDX-License-Identifier: Apache-2.0
#include "NSStringDrawing.h"

#include "NSColor.h"
#include "NSGraphicsContext.h"
#include "foundation/NSDictionary.h"
#include "quartz/TextDrawing.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

namespace {

    // A value of another class counts as none.
    template <class T> Ref<T> attribute(NSDictionary* attributes, NSString* name)
    {
        const Ref<NSObject> value = maybe(attributes)->objectForKey(name);
        return value && value->isKindOfClass(T::cls()) ? cast<T>(value) : nullptr;
    }

    text::Font fontIn(NSDictionary* attributes)
    {
        Ref<NSFont> font = attribute<NSFont>(attributes, NSFontAttributeName);
        if (!font)
            font = NSFont::cls().userFontOfSize(12);
        return NSFont::textFont(font.get());
    }

    /// Lines are as high as the text system lays them out: each measure is rounded by itself.
    double lineHeight(const text::Font& font)
    {
        return std::round(font.ascender()) + std::round(-font.descender())
            + std::round(font.leading());
    }

    struct Drawing {

        static NSSize size(NSString& self, NSDictionary* attributes)
        {
            const text::Font font = fontIn(attributes);
            return { text::measureLine(utf16Of(&self), font).width, lineHeight(font) };
        }

        static void drawAtPoint(NSString& self, NSPoint point, NSDictionary* attributes)
        {
            const Ref<NSGraphicsContext> current = NSGraphicsContext::cls().currentContext();
            if (!current)
                return;
            const Ref<CGContext> context = current->CGContext();
            const text::Font font = fontIn(attributes);
            const text::Line line = text::shapeLine(utf16Of(&self), font);
            const double height = lineHeight(font);
            drawBackground(attributes, { point, { line.width(), height } });
            const double ascent = std::round(font.ascender());
            const double y = current->isFlipped() ? point.y + ascent : point.y + height - ascent;
            quartz::drawTextLine(context.get(), line, { point.x, y }, colorIn(attributes).get());
        }

        static void drawBackground(NSDictionary* attributes, NSRect rect)
        {
            const Ref<NSColor> ground
                = attribute<NSColor>(attributes, NSBackgroundColorAttributeName);
            if (ground)
                ground->drawSwatchInRect(rect);
        }

        static Ref<CGColor> colorIn(NSDictionary* attributes)
        {
            Ref<NSColor> color = attribute<NSColor>(attributes, NSForegroundColorAttributeName);
            if (!color)
                color = NSColor::cls().blackColor();
            return color->CGColor();
        }

        static void table(Builder& t)
        {
            t.methods({
                { "sizeWithAttributes:", imp<size> },
                { "drawAtPoint:withAttributes:", imp<drawAtPoint> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSString, Drawing)

}
