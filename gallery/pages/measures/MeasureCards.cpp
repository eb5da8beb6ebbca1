// SPDX-License-Identifier: Apache-2.0
#include "MeasureCards.h"

#include <limits>

#include "appkit/NSColor.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSMutableAttributedString.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "text/NSAttributedString+Geometrics.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kGap = 10;
    constexpr double kLinePadding = 5; // what a measurement adds at both ends of a line
    constexpr float kUnbounded = std::numeric_limits<float>::max();

    Ref<NSAttributedString> styled(
        NSString* text, double size, NSTextAlignment alignment, NSLineBreakMode mode)
    {
        const auto style = make<NSMutableParagraphStyle>();
        style->setAlignment(alignment);
        style->setLineBreakMode(mode);
        const auto attributes = make<NSMutableDictionary>();
        attributes->setObject_forKey(
            NSFont::cls().systemFontOfSize(size).get(), NSFontAttributeName.get());
        attributes->setObject_forKey(palette().text.get(), NSForegroundColorAttributeName.get());
        attributes->setObject_forKey(style.get(), NSParagraphStyleAttributeName.get());
        return alloc<NSAttributedString>()->initWithString_attributes(text, attributes.get());
    }

    /// Draws a text in the box that it measures, and answers the box.
    NSRect drawMeasured(const Ref<NSAttributedString>& text, NSPoint place, double width)
    {
        const NSSize size = sizeForWidth_height(text, static_cast<float>(width), kUnbounded);
        const NSRect box { place, size };
        fillRounded(box, 3, palette().soft.get());
        // The box holds the lines that were measured in it.
        drawInRect(text,
            NSMakeRect(
                place.x + kLinePadding, place.y, size.width - 2 * kLinePadding, size.height));
        strokeRounded(box, 3, palette().accent.get());
        return box;
    }

    void label(NSString* text, NSPoint place)
    {
        drawText(text, place, Style::caption, palette().quietText.get());
    }

}

template <> struct ScriptsCard::Methods<struct Drawing> {

    static void drawBody(ScriptsCard&, NSRect body)
    {
        NSString* const texts[] = {
            "The lamp stands near the window, where somebody well-known left it."_ns,
            "Лампа стоит у окна, и её свет падает на стол."_ns,
            "Η λάμπα στέκεται κοντά στο παράθυρο."_ns,
            "המנורה עומדת ליד החלון, 3 צעדים מהדלת."_ns,
            "المصباح يقف قرب النافذة."_ns,
            "Լամպը կանգնած է պատուհանի մոտ։"_ns,
            "דמפ and lamp, 12 mixed"_ns,
        };
        NSPoint place = body.origin;
        for (NSString* text : texts) {
            const auto string = styled(text, 17, NSTextAlignmentNatural, NSLineBreakByWordWrapping);
            place.y = NSMaxY(drawMeasured(string, place, body.size.width)) + kGap;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ScriptsCard, Drawing)

template <> struct AlignmentsCard::Methods<struct Drawing> {

    static void drawBody(AlignmentsCard&, NSRect body)
    {
        const double width = (body.size.width - 3 * kGap) / 4;
        const NSTextAlignment all[] = { NSTextAlignmentLeft, NSTextAlignmentRight,
            NSTextAlignmentCenter, NSTextAlignmentJustified };
        double x = body.origin.x;
        for (const NSTextAlignment alignment : all) {
            const NSRect column = NSMakeRect(x, body.origin.y, width, body.size.height);
            fillRounded(column, 3, palette().soft.get());
            drawInRect(styled("A lamp on the table throws more light than two at the ceiling."_ns,
                           12, alignment, NSLineBreakByWordWrapping),
                inset(column, 6));
            x += width + kGap;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AlignmentsCard, Drawing)

template <> struct CutsCard::Methods<struct Drawing> {

    static constexpr double kLabelWidth = 90;
    static constexpr double kRow = 24;

    static void drawBody(CutsCard&, NSRect body)
    {
        struct Row {
            NSString* name;
            NSLineBreakMode mode;
        };
        const Row rows[]
            = { { "clipped"_ns, NSLineBreakByClipping }, { "head"_ns, NSLineBreakByTruncatingHead },
                  { "middle"_ns, NSLineBreakByTruncatingMiddle },
                  { "tail"_ns, NSLineBreakByTruncatingTail } };
        double y = body.origin.y;
        for (const Row& row : rows) {
            label(row.name, { body.origin.x, y + 3 });
            const NSRect room = NSMakeRect(
                body.origin.x + kLabelWidth, y, body.size.width - kLabelWidth, kRow - 4);
            fillRounded(room, 3, palette().soft.get());
            drawInRect(
                styled("The lamp stands near the window, and its light falls on the table and "
                       "the letters."_ns,
                    13, NSTextAlignmentLeft, row.mode),
                inset(room, 2));
            y += kRow;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(CutsCard, Drawing)

template <> struct AttributesCard::Methods<struct Drawing> {

    static void drawBody(AttributesCard&, NSRect body)
    {
        const auto text = cast<NSMutableAttributedString>(styled(
            "Large and small, underlined, struck, wide, on a ground, raised x2\none\ttwo\tthree"_ns,
            14, NSTextAlignmentLeft, NSLineBreakByWordWrapping)
                                                              ->mutableCopy());
        const auto add = [&](NSString* part, NSString* name, NSObject* value) {
            text->addAttribute_value_range(name, value, text->string()->rangeOfString(part));
        };
        const auto number = [](double value) { return NSNumber::cls().numberWithDouble(value); };
        add("Large"_ns, NSFontAttributeName, NSFont::cls().boldSystemFontOfSize(26).get());
        add("small"_ns, NSFontAttributeName, NSFont::cls().systemFontOfSize(9).get());
        add("small"_ns, NSForegroundColorAttributeName, palette().accent.get());
        add("underlined"_ns, NSUnderlineStyleAttributeName, number(NSUnderlineStyleSingle).get());
        add("struck"_ns, NSStrikethroughStyleAttributeName, number(NSUnderlineStyleSingle).get());
        add("wide"_ns, NSKernAttributeName, number(6).get());
        add("on a ground"_ns, NSBackgroundColorAttributeName, palette().selection.get());
        add("2"_ns, NSSuperscriptAttributeName, number(1).get());
        drawMeasured(text, body.origin, body.size.width);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AttributesCard, Drawing)

}
