// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButton.h"
#include "appkit/NSSlider.h"
#include "appkit/NSTextField.h"
#include "foundation/NSData.h"
#include "kit/Card.h"
#include "pages/objects/Bike.h"

namespace gallery {

/// A bike that is edited: each control shows one of its properties and sets it by key.
class FormCard : public GalleryCard {
    BRINDLE_OBJECT(FormCard, GalleryCard)

private:
    brindle::Ref<GalleryBike> bike_;
    brindle::Ref<brindle::NSData> original_; // the bike as it was, archived
    brindle::Ref<brindle::NSTextField> name_, gears_, tags_;
    brindle::Ref<brindle::NSSlider> weight_;
    brindle::Ref<brindle::NSButton> electric_, revert_;
};

}
