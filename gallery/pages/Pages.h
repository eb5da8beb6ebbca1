// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "Page.h"

namespace gallery {

class Tour;

/// What the sidebar lists, how a page is made, and the walk through it that the tour takes.
struct PageEntry {
    const char* group; ///< the heading that it stands under
    const char* name;
    const char* folder; ///< of its sources
    brindle::Ref<GalleryPage> (*make)();
    void (*tour)(Tour& tour);
};

/// Answers all pages in the sidebar's order.
std::span<const PageEntry> pages();

}
