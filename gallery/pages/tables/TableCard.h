// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "People.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"
#include "appkit/NSTextField.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A hundred thousand rows, sorted by their titles and searched while one types. Its columns are found again as they were
/// left, and are chosen by their titles where that is wanted. The card is the table's data source.
class TableCard : public GalleryCard {
    BRINDLE_OBJECT(TableCard, GalleryCard)

private:
    People people_;
    brindle::Ref<brindle::NSTextField> search_;
    brindle::Ref<GalleryChip> columns_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTableView> table_;
};

}
