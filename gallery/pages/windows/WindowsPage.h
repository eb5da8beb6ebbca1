// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StateCards.h"
#include "WindowsCards.h"
#include "pages/Page.h"

namespace gallery {

/// Windows and panels with their answers about key and main, sheets and proportions, the screens, and the about panel.
class WindowsPage : public GalleryPage {
    BRINDLE_OBJECT(WindowsPage, GalleryPage)

private:
    brindle::Ref<WindowKindsCard> kinds_;
    brindle::Ref<WindowListCard> list_;
    brindle::Ref<WindowStateCard> state_;
    brindle::Ref<ScreensCard> screens_;
};

class Tour;
void tourWindows(Tour& tour);

}
