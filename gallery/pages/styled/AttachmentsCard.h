// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "appkit/NSTextView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A text with pictures among its letters; chips insert one and let all stand higher, lower or larger.
class AttachmentsCard : public GalleryCard {
    BRINDLE_OBJECT(AttachmentsCard, GalleryCard)

public:
    brindle::Ref<brindle::NSTextView> text() const
    {
        return send<"text", brindle::Ref<brindle::NSTextView>>();
    }

private:
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTextView> text_;
    brindle::Ref<GalleryChip> insert_, raise_, lower_, enlarge_;
    brindle::NSUInteger inserted_ = 0;
    double rise_ = 0; // points above the baseline
    double side_ = 0; // of each picture
};

}
