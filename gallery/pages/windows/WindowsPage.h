// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "WindowsCards.h"
#include "pages/Page.h"

namespace gallery {

/// Windows and panels with their answers about key and main, and the about panel.
class WindowsPage : public GalleryPage {
    BRINDLE_OBJECT(WindowsPage, GalleryPage)

private:
    brindle::Ref<WindowKindsCard> kinds_;
    brindle::Ref<WindowListCard> list_;
};

class Tour;
void tourWindows(Tour& tour);

}
