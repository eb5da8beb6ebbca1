// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace gallery {

class Tour;

/// One page: a title, a line about it, and cards that the page lays out below them. Flipped.
///
/// Subclasses override `pageTitle`, `pageCaption` and `layOutIn:`, and take keys by `keyDown:`.
class GalleryPage : public brindle::NSView {
    BRINDLE_OBJECT(GalleryPage, brindle::NSView)

public:
    brindle::Ref<brindle::NSString> pageTitle() const
    {
        return send<"pageTitle", brindle::Ref<brindle::NSString>>();
    }
    brindle::Ref<brindle::NSString> pageCaption() const
    {
        return send<"pageCaption", brindle::Ref<brindle::NSString>>();
    }
    /// Places the cards in the room below the title; called whenever the page's size changes.
    void layOutIn(brindle::NSRect room) { send<"layOutIn:">(room); }
};

}
