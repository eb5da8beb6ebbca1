// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "FormatsCards.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// Numbers and dates as they are written in the language that is chosen at the top.
class FormatsPage : public GalleryPage {
    BRINDLE_OBJECT(FormatsPage, GalleryPage)

public:
    static constexpr std::size_t kLanguages = 6;

private:
    std::array<brindle::Ref<GalleryChip>, kLanguages> chips_;
    brindle::Ref<NumbersCard> numbers_;
    brindle::Ref<DatesCard> dates_;
    brindle::Ref<PatternsCard> patterns_;
    brindle::NSUInteger chosen_ = 0;
};

void tourFormats(Tour& tour);

}
