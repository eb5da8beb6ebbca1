// SPDX-License-Identifier: Apache-2.0
#include "TimelineCard.h"

#include <algorithm>

#include "foundation/NSUserDefaults.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct TimelineCard::Methods<struct Uses> {

    static constexpr NSInteger kFirst = 8; // use that asks
    static constexpr NSInteger kAfterLater = 11; // uses until it asks again
    static constexpr NSInteger kShown = 24;
    static constexpr double kNames = 150;
    static constexpr double kMostRow = 72;
    static constexpr double kSquare = 34;

    struct Answer {
        NSString* name;
        NSInteger response; // as the defaults keep it
    };

    static bool asks(NSInteger use, NSInteger response)
    {
        switch (response) {
        case 0:
            return use >= kFirst;
        case 2:
            return use == kFirst || use >= kFirst + kAfterLater;
        default:
            return use == kFirst;
        }
    }
    static void drawUse(NSRect square, NSInteger use, bool isAsked, bool isNow)
    {
        const Palette& colors = palette();
        fillRounded(square, 4, (isAsked ? colors.accent : colors.soft).get());
        const auto number = NSString::cls().stringWithFormat("%ld"_ns, use);
        drawCentered(number.get(), square, Style::caption,
            (isAsked ? colors.accentText : colors.quietText).get());
        if (isNow)
            strokeRounded(inset(square, -2), 6, colors.text.get());
    }
    static void drawBody(TimelineCard&, NSRect body)
    {
        const auto defaults = NSUserDefaults::cls().standardUserDefaults();
        const NSInteger uses = defaults->integerForKey("JUAppUses"_ns);
        const NSInteger response = defaults->integerForKey("JUAppUsesResponse"_ns);
        const double step = (body.size.width - kNames) / kShown;
        const double row = std::min(body.size.height / 3, kMostRow);
        double y = body.origin.y + 4;
        for (const Answer& answer : { Answer { "No answer"_ns, 0 },
                 { "“Rate Later” at the eighth"_ns, 2 }, { "“Rate App” at the eighth"_ns, 1 } }) {
            drawFitted(answer.name, { body.origin.x, y + 10 }, kNames - 12, Style::caption,
                palette().text.get());
            for (NSInteger use = 1; use <= kShown; ++use) {
                const double x = body.origin.x + kNames + step * static_cast<double>(use - 1);
                drawUse(NSMakeRect(x, y, step - 4, kSquare), use, asks(use, answer.response),
                    use == uses && answer.response == response);
            }
            y += row;
        }
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(TimelineCard, Uses)

}
