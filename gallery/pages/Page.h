// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "kit/Chip.h"

namespace gallery {

/// One page: a title, a line about it, and cards that the page lays out below them. Flipped.
///
/// Subclasses override `addCards`, `pageTitle`, `pageCaption`, `layOutIn:` and `chooseNext:`. Left and Right choose; a letter
/// presses the chip that shows it; digits, Page Up and Page Down turn to another page. A page with other keys overrides
/// `keyDown:` and hands the rest on. Two chips of the page itself show the code and switch light and dark.
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
    /// Makes the cards and adds them; called once, when the page is made.
    void addCards() { send<"addCards">(); }
    /// Places the cards in the room below the title; called with the cards there, whenever the page's size changes.
    void layOutIn(brindle::NSRect room) { send<"layOutIn:">(room); }
    /// Chooses what stands so many places further in the page's list of choices; a page without choices does nothing.
    void chooseNext(brindle::NSInteger places) { send<"chooseNext:">(places); }
    /// Shows on the page's own chips what is chosen now.
    void showOptions() { send<"showOptions">(); }

private:
    brindle::Ref<GalleryChip> code_;
    brindle::Ref<GalleryChip> dark_;
};

/// Answers the one character of a key press, 0 where there is none or several.
brindle::unichar keyOf(brindle::NSEvent* event);

}
