// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSActionCell.h"

#include "appkit/NSView.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSActionCell::Methods<struct Basics> {

    static Ref<NSObject> target(NSActionCell& self) { return self.target_.get(); }
    static void setTarget(NSActionCell& self, NSObject* target) { self.target_ = target; }
    static SEL action(NSActionCell& self) { return self.action_; }
    static void setAction(NSActionCell& self, SEL action) { self.action_ = action; }
    static NSInteger tag(NSActionCell& self) { return self.tag_; }
    static void setTag(NSActionCell& self, NSInteger tag) { self.tag_ = tag; }

    static Ref<NSObject> copyWithZone(NSActionCell& self, void* zone)
    {
        const Ref<NSActionCell> copy
            = cast<NSActionCell>(super<NSActionCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->target_ = self.target_;
        copy->action_ = self.action_;
        copy->tag_ = self.tag_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "action", imp<action> },
            { "setAction:", imp<setAction> },
            { "tag", imp<tag> },
            { "setTag:", imp<setTag> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSActionCell, Basics)

}
