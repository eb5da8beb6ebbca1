// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// The search list as a table: a row for each key, a column for each layer; the layer that answers is filled.
///
/// A click, or `toggle` for the cell that is framed, sets a value there or takes it out.
class SearchCard : public GalleryCard {
    BRINDLE_OBJECT(SearchCard, GalleryCard)

public:
    void toggle() { send<"toggle">(); }
    /// Frames another cell.
    void moveBy_down(brindle::NSInteger right, brindle::NSInteger down)
    {
        send<"moveBy:down:">(right, down);
    }

private:
    brindle::NSUInteger row_ = 0;
    brindle::NSUInteger column_ = 1;
};

}
