// SPDX-License-Identifier: Apache-2.0
#include "BRApplication.h"

#include "runtime/Table.h"

namespace brindle {

template <> struct BRApplication::Methods<struct Keys> {

    // The menubar's folder asks this one for names, so its class is found by name.
    static bool menubarTakes(NSEvent& event)
    {
        Class* const bars = objc_getClass("BRCustomMenubar");
        const Ref<NSObject> bar
            = bars ? bars->send<"sharedCustomMenubar", Ref<NSObject>>() : Ref<NSObject>();
        return bar && bar->send<"performKeyEquivalent:", bool>(&event);
    }

    static void sendEvent(BRApplication& self, NSEvent* event)
    {
        if (event && event->type() == NSKeyDown && (event->modifierFlags() & NSCommandKeyMask)
            && menubarTakes(*event))
            return;
        super<BRApplication, "sendEvent:">(self, event);
    }

    static void table(Builder& t) { t.methods({ { "sendEvent:", imp<sendEvent> } }); }
};
BRINDLE_RECORD(BRApplication, Keys)

}
