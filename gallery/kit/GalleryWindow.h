// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"

namespace gallery {

/// The gallery's window: Tab goes through the sidebar, the page and the code, and in each card from one end to the other
/// before it goes to the next, whatever has come and gone since.
class GalleryWindow : public brindle::NSWindow {
    BRINDLE_OBJECT(GalleryWindow, brindle::NSWindow)
};

}
