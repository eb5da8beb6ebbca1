// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A scanner that goes back to a word, step by step.
class ScannerCard : public GalleryCard {
    BRINDLE_OBJECT(ScannerCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> keyChip_, nowChip_, oneChip_;
    brindle::Ref<brindle::NSString> word_; // nil before the first scan
    brindle::Ref<brindle::NSString> answer_;
    brindle::NSUInteger end_ = 0; // where the scanner came to
    brindle::NSUInteger shownSteps_ = 0;
    bool isFound_ = false;
};

}
