// SPDX-License-Identifier: Apache-2.0
#include "NSView+GWExtensions.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct GWExtensions {

        static bool visible(NSView& self) { return !self.isHidden(); }
        static void setVisible(NSView& self, bool visible) { self.setHidden(!visible); }

        static Ref<NSView> superviewOfClass(NSView& self, Class* cls)
        {
            Ref<NSView> view = self.superview();
            while (view && !view->isKindOfClass(cls))
                view = view->superview();
            return view;
        }

        static void table(Builder& t)
        {
            t.methods({
                { "visible", imp<visible> },
                { "setVisible:", imp<setVisible> },
                { "superviewOfClass:", imp<superviewOfClass> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSView, GWExtensions)

}
