// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"
#include "kit/Card.h"

namespace gallery {

/// The property list that a keyed archive is, line by line; references are shown as arrows to numbers.
class ArchiveCard : public GalleryCard {
    BRINDLE_OBJECT(ArchiveCard, GalleryCard)

public:
    void setArchive(brindle::NSData* archive) { send<"setArchive:">(archive); }

private:
    struct Line {
        int indent = 0;
        brindle::Ref<brindle::NSString> label;
        brindle::Ref<brindle::NSString> value;
        bool isReference = false;
    };
    std::vector<Line> lines_;
    brindle::NSUInteger firstLine_ = 0;
};

}
