// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>

#include "appkit/NSView.h"
#include "runtime/Block.h"

namespace gallery {

/// A pressable label: runs its closure when the pointer is released inside, when Space or Return is pressed while it has the
/// keyboard, or when the page gets its key. Flipped.
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
    /// The letter that presses the chip, shown behind its title; nil for none.
    brindle::Ref<brindle::NSString> key() const
    {
        return send<"key", brindle::Ref<brindle::NSString>>();
    }
    void setKey(brindle::NSString* key) { send<"setKey:">(key); }
    /// Whether the chip is the chosen one of several.
    bool isOn() const { return send<"isOn", bool>(); }
    void setOn(bool on) { send<"setOn:">(on); }
    void press() { send<"press">(); }
    /// Answers the width that title and key want.
    double fittingWidth() const { return send<"fittingWidth", double>(); }

private:
    brindle::Ref<brindle::NSString> title_;
    brindle::Ref<brindle::NSString> key_;
    brindle::Block<void()> onPress_;
    bool on_ = false;
    bool hovered_ = false;
    bool pressed_ = false;
    bool isFocused_ = false; // by a key; a press needs no ring
};

/// Answers a closure that sends a message without arguments; it does not keep the receiver.
template <brindle::Text S> brindle::Block<void()> sending(brindle::NSObject* receiver)
{
    return [weak = brindle::WeakRef<brindle::NSObject>(receiver)] {
        brindle::maybe(weak.get())->send<S>();
    };
}

/// Adds a chip to a view. - key: nil for none.
brindle::Ref<GalleryChip> addChip(brindle::NSView* to, brindle::NSString* title,
    brindle::NSString* key, const brindle::Block<void()>& press);

constexpr double kChipHeight = 28;

/// Places chips in a row from a left end, each as wide as it wants to be.
void layOutChips(std::initializer_list<GalleryChip*> chips, brindle::NSPoint leftTop);

}
