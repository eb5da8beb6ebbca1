// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Blit.h"

namespace brindle::raster {

/// A picture of coverage with memory of its own; `left` and `top` are the device pixel of its first one.
struct Stencil {
    std::vector<std::uint8_t> coverage;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<Stretch> solid {}; // what is wholly covered of each row; empty where nobody looked

    Mask mask() const { return { coverage.data(), width, height, width }; }
    /// Answers the coverage of a device pixel; 0 outside.
    std::uint8_t at(int x, int y) const
    {
        const int column = x - left;
        const int row = y - top;
        if (column < 0 || row < 0 || column >= width || row >= height)
            return 0;
        return coverage[static_cast<std::size_t>(row) * static_cast<std::size_t>(width)
            + static_cast<std::size_t>(column)];
    }
    bool isEmpty() const { return width <= 0 || height <= 0; }
};

/// Answers how many pixels a blur reaches beyond what it blurs.
/// - sigma: standard deviation in pixels.
int blurReach(double sigma);

/// Answers a stencil made soft by a Gaussian; it is larger by the reach on every side.
///
/// Three passes of a box whose outermost pixels count in part, so that any sigma is met: P. Gwosdek et al., "Theoretical
/// Foundations of Gaussian Convolution by Extended Box Filtering" (2011). The time does not depend on sigma.
Stencil blurred(const Stencil& stencil, double sigma);

/// Notes the longest wholly covered stretch of each row.
void findSolid(Stencil& stencil);

/// Answers a stencil without the blank rows and columns around it.
Stencil trimmed(const Stencil& stencil);

}
