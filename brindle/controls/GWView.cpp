// SPDX-License-Identifier: Apache-2.0
#include "GWView.h"

#include "core/NSObject+Inheritance.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct GWView::Methods<struct Changes> {

    static Ref<NSView> initWithFrame(GWView& self, NSRect frame)
    {
        if (!super<GWView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.setup();
        return &self;
    }
    static void awakeFromNib(GWView& self) { self.setup(); }
    // Nothing takes the view off the list again: the centre forgets observers that have gone.
    static void setup(GWView& self)
    {
        constexpr SEL kChanged = selector<"frameDidChange">;
        if (isMethodOverridden(self, kChanged))
            NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
                &self, kChanged, NSViewFrameDidChangeNotification, &self);
    }
    static void frameDidChange(GWView&) { }
    // A method of its own: what a host exchanges here reaches no other view.
    static void drawRect(GWView& self, NSRect dirty) { super<GWView, "drawRect:">(self, dirty); }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "awakeFromNib", imp<awakeFromNib> },
            { "setup", imp<setup> },
            { "frameDidChange", imp<frameDidChange> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(GWView, Changes)

}
