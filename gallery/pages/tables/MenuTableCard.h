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

/// A table that behaves like a menu. The card gives its rows their content and gets the taps.
class MenuTableCard : public GalleryCard {
    BRINDLE_OBJECT(MenuTableCard, GalleryCard)

private:
    brindle::Ref<brindle::BRMenuTableView> menu_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSString> tapped_;
};

}
