// SPDX-License-Identifier: Apache-2.0
#include "StrokesCard.h"

#include <algorithm>

#include "appkit/NSTrackingArea.h"
#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct StrokesCard::Methods<struct Debounce> {

    static constexpr double kRest = 0.4; // seconds

    static void updateTrackingAreas(StrokesCard& self)
    {
        const Ref<NSArray> areas = self.trackingAreas();
        for (NSObject* area : *areas)
            self.removeTrackingArea(static_cast<NSTrackingArea*>(area));
        const auto area = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
            self.bounds(), NSTrackingMouseMoved | NSTrackingActiveAlways, &self, nullptr);
        self.addTrackingArea(area.get());
    }

    static void mouseMoved(StrokesCard& self, NSEvent*)
    {
        ++self.moves_;
        timeoutToSelector_afterDelay(self, selector<"settle">, kRest);
    }

    static void settle(StrokesCard& self)
    {
        self.shownMoves_ = self.moves_;
        ++self.redraws_;
        self.setNeedsDisplay(true);
    }

    static void drawBody(StrokesCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const auto figure = NSString::cls().stringWithFormat("%ld moves"_ns, self.shownMoves_);
        const auto note = self.redraws_ == 0
            ? Ref<NSString>("move over this card, then rest"_ns)
            : NSString::cls().stringWithFormat(
                self.redraws_ == 1 ? "%ld redraw"_ns : "%ld redraws"_ns, self.redraws_);
        drawFigure(figure.get(), note.get(), body);
        const double step = 4;
        const auto most = static_cast<NSInteger>(body.size.width / step);
        const NSInteger ticks = std::min(self.shownMoves_, most);
        for (NSInteger i = 0; i < ticks; ++i)
            fillRounded(
                NSMakeRect(body.origin.x + static_cast<double>(i) * step, NSMaxY(body) - 24, 2, 24),
                1, colors.accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "mouseMoved:", imp<mouseMoved> },
            { "settle", imp<settle> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(StrokesCard, Debounce)

}
