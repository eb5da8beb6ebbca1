// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "appkit/NSScrollView.h"
#include "appkit/NSTextTab.h"
#include "appkit/NSTextView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A table of plain text and tabs; the marks of the ruler above it are dragged, and change their kind when they are clicked.
class TabsCard : public GalleryCard {
    BRINDLE_OBJECT(TabsCard, GalleryCard)

public:
    static constexpr std::size_t kStops = 4;

    brindle::Ref<brindle::NSTextView> text() const
    {
        return send<"text", brindle::Ref<brindle::NSTextView>>();
    }

private:
    struct Stop {
        double location = 0; // points from where lines begin
        brindle::NSTextTabType type = brindle::NSLeftTabStopType;
    };

    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTextView> text_;
    brindle::Ref<GalleryChip> reset_;
    std::array<Stop, kStops> stops_;
    std::size_t held_ = kStops; // the mark under the button
    double hold_ = 0; // from the mark to the pointer
    bool wasDragged_ = false;
};

}
