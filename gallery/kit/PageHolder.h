// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"

namespace gallery {

/// Holds the page: as large as there is room, scrolled where that is less than what a page needs.
class PageHolder : public brindle::NSScrollView {
    BRINDLE_OBJECT(PageHolder, brindle::NSScrollView)
};

/// The least size that a page is laid out for, in points.
constexpr brindle::NSSize kLeastPage { 780, 600 };

}
