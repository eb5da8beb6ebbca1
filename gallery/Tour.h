// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Gallery.h"
#include "display/headless/HeadlessDisplay.h"

namespace gallery {

/// Walks the pages on a headless display with a scripted hand and writes a PNG of each state.
///
/// Time is turned by hand, so every run draws the same pictures.
class Tour {
public:
    /// - folder: made when it is missing. - scale: device pixels a point.
    Tour(std::string folder, double scale);

    /// Opens the gallery and plays everything.
    /// - Returns: false when a picture could not be written.
    bool play();

private:
    void playGround();
    brindle::NSPoint onScreen(double x, double y) const; // from the page's flipped coordinates
    void settle(double seconds = 0);
    void picture(const char* name);

    std::string folder_;
    brindle::display::HeadlessDisplay* display_ = nullptr; // the application's
    brindle::Ref<GalleryController> controller_;
    bool written_ = true;
};

}
