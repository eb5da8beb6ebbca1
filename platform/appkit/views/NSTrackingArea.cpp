// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTrackingArea.h"

#include <bit>

#include "foundation/NSDictionary.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTrackingArea::Methods<struct Values> {

    static Ref<NSTrackingArea> initWithRect(NSTrackingArea& self, NSRect rect,
        NSTrackingAreaOptions options, NSObject* owner, NSDictionary* userInfo)
    {
        if (std::popcount(options & 0xF0) != 1 || !(options & 0x07))
            raise("NSInternalInconsistencyException",
                "*** -[NSTrackingArea initWithRect:options:owner:userInfo:]: exactly one active "
                "option and at "
                "least one type of event are needed");
        if (!super<NSTrackingArea, "init", Ref<NSObject>>(self))
            return nullptr;
        self.rect_ = rect;
        self.options_ = options;
        self.owner_ = owner;
        self.userInfo_ = userInfo;
        return &self;
    }
    static NSRect rect(NSTrackingArea& self) { return self.rect_; }
    static NSTrackingAreaOptions options(NSTrackingArea& self) { return self.options_; }
    static Ref<NSObject> owner(NSTrackingArea& self) { return self.owner_.get(); }
    static Ref<NSDictionary> userInfo(NSTrackingArea& self)
    {
        return cast<NSDictionary>(self.userInfo_);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithRect:options:owner:userInfo:", imp<initWithRect> },
            { "rect", imp<rect> },
            { "options", imp<options> },
            { "owner", imp<owner> },
            { "userInfo", imp<userInfo> },
        });
    }
};
BRINDLE_RECORD(NSTrackingArea, Values)

}
