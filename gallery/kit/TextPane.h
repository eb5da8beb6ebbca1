// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "appkit/NSTextView.h"

namespace gallery {

/// A text that is edited, and the scroll view in which it stands.
struct TextPane {
    brindle::Ref<brindle::NSTextView> text;
    brindle::Ref<brindle::NSScrollView> scroll;
};

/// Puts a text to be edited into a card: of the system's font, with undo, as wide as its scroll view and as long as it gets.
TextPane addTextPane(brindle::NSView& card, brindle::NSString* text, double points = 14);

}
