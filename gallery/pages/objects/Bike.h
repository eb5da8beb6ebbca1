// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "foundation/NSString.h"
#include "runtime/Block.h"

namespace gallery {

/// What a bike rings.
class GalleryBell : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryBell, brindle::NSObject)

public:
    brindle::Ref<brindle::NSString> sound() const
    {
        return send<"sound", brindle::Ref<brindle::NSString>>();
    }
    void setSound(brindle::NSString* sound) { send<"setSound:">(sound); }

private:
    brindle::Ref<brindle::NSString> sound_;
    double pitch_ = 880; // hertz
};

/// An object with properties of several kinds. It has no line about archiving: the table is enough.
class GalleryBike : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryBike, brindle::NSObject)

private:
    brindle::Ref<brindle::NSString> name_;
    brindle::NSInteger gears_ = 0;
    double weight_ = 0; // kilograms
    bool electric_ = false;
    brindle::NSSize frame_ {}; // inches
    brindle::Ref<brindle::NSDate> bought_;
    brindle::Ref<brindle::NSColor> paint_;
    brindle::Ref<brindle::NSArray> tags_;
    brindle::Ref<GalleryBell> bell_;
    brindle::NSUInteger trips_ = 0; // counted anew by every process
};

}
