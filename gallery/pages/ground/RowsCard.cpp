// SPDX-License-Identifier: Apache-2.0
#include "RowsCard.h"

#include <algorithm>

#include "core/BRGeometry.h"
#include "foundation/NSString.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct RowsCard::Methods<struct Screen> {

    static Ref<NSView> initWithFrame(RowsCard& self, NSRect frame)
    {
        self.setHeading("Screen rows"_ns);
        self.setCaption("Even rows for the whole screen"_ns);
        self.standardHeight_ = 22;
        return super<RowsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setStandardHeight(RowsCard& self, double height)
    {
        self.standardHeight_ = height;
        self.setNeedsDisplay(true);
    }

    static void drawMiniature(NSRect room, double rows)
    {
        const Palette& colors = palette();
        const NSRect screen = BRUIScreen();
        if (NSIsEmptyRect(screen)) {
            drawCentered("No screen"_ns, room, Style::caption, colors.quietText.get());
            return;
        }
        const double scale
            = std::min(room.size.width / screen.size.width, room.size.height / screen.size.height);
        NSRect small = NSMakeRect(0, 0, screen.size.width * scale, screen.size.height * scale);
        small.origin = { room.origin.x, NSMaxY(room) - small.size.height };
        fillRounded(small, 4, colors.soft.get());
        for (double row = 1; row < rows; ++row) {
            const double y = small.origin.y + small.size.height * row / rows;
            fill(NSMakeRect(small.origin.x, y, small.size.width, 0.5), colors.accent.get());
        }
        strokeRounded(small, 4, colors.accent.get());
    }

    static void drawBody(RowsCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const NSRect screen = BRUIScreen();
        const double rows
            = BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(self.standardHeight_);
        const double height
            = BRRowHeightRoundToIntegralForScreenHeight(self.standardHeight_, screen.size.height);
        const auto format = [](NSString* text, double a, double b) {
            return NSString::cls().stringWithFormat(text, a, b);
        };
        const Ref<NSString> standard = NSString::cls().stringWithFormat(
            "from a standard of %.0f points"_ns, self.standardHeight_);
        drawFigure(format("%.0f rows of %.0f"_ns, rows, height).get(), standard.get(), body);
        drawText(
            format("screen %.0f × %.0f points"_ns, screen.size.width, screen.size.height).get(),
            { body.origin.x, body.origin.y + 44 }, Style::caption, colors.quietText.get());
        drawMiniature(NSMakeRect(body.origin.x, body.origin.y + 70, body.size.width,
                          std::max(0.0, body.size.height - 70)),
            rows);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&RowsCard::standardHeight_>("standardHeight", nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setStandardHeight:", imp<setStandardHeight> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(RowsCard, Screen)

}
