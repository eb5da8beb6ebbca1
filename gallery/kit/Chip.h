// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "runtime/Block.h"

namespace gallery {

/// A pressable label: runs its closure when the pointer is released inside. Flipped.
class GalleryChip : public brindle::NSView {
    BRINDLE_OBJECT(GalleryChip, brindle::NSView)

public:
    brindle::Ref<brindle::NSString> title() const
    {
        return send<"title", brindle::Ref<brindle::NSString>>();
    }
    void setTitle(brindle::NSString* title) { send<"setTitle:">(title); }
    brindle::Block<void()> onPress() const { return send<"onPress", brindle::Block<void()>>(); }
    void setOnPress(const brindle::Block<void()>& code) { send<"setOnPress:">(code.get()); }

private:
    brindle::Ref<brindle::NSString> title_;
    brindle::Block<void()> onPress_;
    bool hovered_ = false;
    bool pressed_ = false;
};

}
