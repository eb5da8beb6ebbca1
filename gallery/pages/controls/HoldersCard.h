// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSBox.h"
#include "appkit/NSImageView.h"
#include "appkit/NSSplitView.h"
#include "appkit/NSTabView.h"
#include "kit/Card.h"

namespace gallery {

/// What holds other views: a box, tabs, a split view, and a picture in a frame.
class HoldersCard : public GalleryCard {
    BRINDLE_OBJECT(HoldersCard, GalleryCard)

private:
    brindle::Ref<brindle::NSBox> box_;
    brindle::Ref<brindle::NSTabView> tabs_;
    brindle::Ref<brindle::NSSplitView> split_;
};

}
