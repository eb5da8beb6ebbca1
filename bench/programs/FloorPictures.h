// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include <cairo.h>

// What the floors of starting programs show, painted with Cairo, FreeType and fontconfig alone.

namespace brindle::bench::scene {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

/// What a window shows, and where on the screen.
struct Picture {
    int left;
    int top;
    Surface surface;

    int width() const { return cairo_image_surface_get_width(surface.get()); }
    int height() const { return cairo_image_surface_get_height(surface.get()); }
};

/// Answers the window with rows of text.
std::vector<Picture> paintRows();

/// Answers the bar and the window of `examples/startup`.
std::vector<Picture> paintControls();

}
