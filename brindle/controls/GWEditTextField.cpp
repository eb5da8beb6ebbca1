// SPDX-License-Identifier: Apache-2.0
#include "GWEditTextField.h"

#include "foundation/NSObject+DelayedPerforming.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct GWEditTextField::Methods<struct Focus> {

    // Methods of its own: what a host exchanges here reaches no other field.
    static Ref<NSView> initWithFrame(GWEditTextField& self, NSRect frame)
    {
        return super<GWEditTextField, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void drawRect(GWEditTextField& self, NSRect dirty)
    {
        super<GWEditTextField, "drawRect:">(self, dirty);
    }
    static bool becomeFirstResponder(GWEditTextField& self)
    {
        const bool accepted = super<GWEditTextField, "becomeFirstResponder", bool>(self);
        if (accepted)
            performSelector_withObject_afterDelay(self, selector<"selectText:">, &self, 0);
        return accepted;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawRect:", imp<drawRect> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
        });
    }
};
BRINDLE_RECORD(GWEditTextField, Focus)

}
