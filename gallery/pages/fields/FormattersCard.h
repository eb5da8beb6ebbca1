// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "appkit/NSTextField.h"
#include "kit/Card.h"

namespace gallery {

/// Fields that read and write what is typed with a formatter each. What is no number, or no date, is not taken.
class FormattersCard : public GalleryCard {
    BRINDLE_OBJECT(FormattersCard, GalleryCard)

public:
    static constexpr std::size_t kFields = 4;

private:
    std::array<brindle::Ref<brindle::NSTextField>, kFields> fields_;
    brindle::Ref<brindle::NSString> refused_; // what was typed last and not taken
};

}
