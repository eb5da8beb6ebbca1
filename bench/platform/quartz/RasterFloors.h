// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/raster/Bitmap.h"

// Loops over one row of pixels as anybody would write them, compiled with -O3 so that the compiler uses vectors.

namespace brindle::bench::floors {

void fill(raster::Pixel* row, int count, raster::Pixel pixel);

/// Lays a colour, multiplied by its alpha, over a row; exact to the last bit.
/// - count: a multiple of 4.
void blend(raster::Pixel* row, int count, raster::Pixel pixel);

}
