// SPDX-License-Identifier: Apache-2.0
#include "GroundPage.h"

#include <algorithm>

#include "appkit/NSEvent.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GroundPage::Methods<struct Cards> {

    static constexpr double kLeftWidth = 236;
    static constexpr double kBottomHeight = 168;
    static constexpr double kLeastStandard = 12;
    static constexpr double kMostStandard = 60;

    static void addCards(GroundPage& self)
    {
        self.rows_ = addCard<RowsCard>(self);
        self.grid_ = addCard<GridCard>(self);
        self.job_ = addCard<JobCard>(self);
        self.strokes_
            = addCard<StrokesCard>(self, "Debounced redraw"_ns, "timeoutToSelector:afterDelay:"_ns);
        self.exchange_ = addCard<ExchangeCard>(self);
        self.standardHeight_ = 22;
    }

    static Ref<NSString> pageTitle(GroundPage&) { return "The ground"_ns; }
    static Ref<NSString> pageCaption(GroundPage&)
    {
        return "Rows, jobs, timeouts and methods, live.  Up, Down: row height"_ns;
    }

    static void layOutIn(GroundPage& self, NSRect room)
    {
        layOutRow({ self.job_.get(), self.strokes_.get(), self.exchange_.get() },
            takeBottom(room, kBottomHeight));
        self.rows_->setFrame(takeLeft(room, kLeftWidth));
        self.grid_->setFrame(room);
    }

    static void changeStandard(GroundPage& self, double step)
    {
        self.standardHeight_
            = std::clamp(self.standardHeight_ + step, kLeastStandard, kMostStandard);
        self.rows_->setStandardHeight(self.standardHeight_);
        self.grid_->setStandardHeight(self.standardHeight_);
    }

    static void scrollWheel(GroundPage& self, NSEvent* event)
    {
        changeStandard(self, event->scrollingDeltaY() > 0 ? 1 : -1);
    }

    static void keyDown(GroundPage& self, NSEvent* event)
    {
        switch (keyOf(event)) {
        case NSUpArrowFunctionKey:
            return changeStandard(self, 1);
        case NSDownArrowFunctionKey:
            return changeStandard(self, -1);
        default:
            super<GroundPage, "keyDown:">(self, event);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
            { "scrollWheel:", imp<scrollWheel> },
            { "keyDown:", imp<keyDown> },
        });
    }
};
BRINDLE_RECORD(GroundPage, Cards)

}
