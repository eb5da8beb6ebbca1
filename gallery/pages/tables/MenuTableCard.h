// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "appkit/NSTableCellView.h"
#include "kit/Card.h"
#include "menubar/BRMenuTableView.h"

namespace gallery {

/// An entry of the menu table: a text whose colour follows the row's.
class MenuEntryView : public brindle::NSTableCellView {
    BRINDLE_OBJECT(MenuEntryView, brindle::NSTableCellView)
};

/// Gives the rows of the menu table their content and gets the taps. The table keeps it: a view above the table would be kept
/// by what it keeps itself.
class MenuEntries : public brindle::NSObject {
    BRINDLE_OBJECT(MenuEntries, brindle::NSObject)

public:
    brindle::WeakRef<brindle::NSView> card_; // shows what was tapped
    brindle::Ref<brindle::NSString> tapped_;
};

/// A table that behaves like a menu, and what was tapped in it.
class MenuTableCard : public GalleryCard {
    BRINDLE_OBJECT(MenuTableCard, GalleryCard)

private:
    brindle::Ref<brindle::BRMenuTableView> menu_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<MenuEntries> entries_;
};

}
