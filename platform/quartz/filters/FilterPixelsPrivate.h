// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "CIImage.h"

namespace brindle {

namespace quartz {

    /// A rectangle of pixels, y up; its rows lie top first.
    struct FilterPixels {
        std::ptrdiff_t left = 0;
        std::ptrdiff_t bottom = 0;
        std::ptrdiff_t width = 0;
        std::ptrdiff_t height = 0;
        std::vector<std::uint32_t> words; // native

        std::uint32_t* row(std::ptrdiff_t y)
        {
            return words.data() + (bottom + height - 1 - y) * width;
        }
    };

    /// How a picture's pixels follow from those of its input.
    struct FilterStep {
        std::ptrdiff_t reach = 0; // how far around a pixel it looks
        std::function<void(FilterPixels&)> apply;
    };

    /// Four parts of a pixel from 0 to 1, the colours not multiplied by alpha.
    struct FilterColor {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 0;

        /// How bright it looks: the weights of ITU-R BT.709.
        double luminance() const { return 0.2126 * red + 0.7152 * green + 0.0722 * blue; }
    };

    /// Applies a function to the colour of every pixel that has one.
    template <class Function> void eachColor(FilterPixels& pixels, Function&& change)
    {
        for (std::uint32_t& word : pixels.words) {
            const std::uint32_t alpha = word >> 24;
            if (alpha == 0)
                continue;
            const double whole = alpha;
            FilterColor color { (word >> 16 & 0xFF) / whole, (word >> 8 & 0xFF) / whole,
                (word & 0xFF) / whole, whole / 255 };
            change(color);
            const auto level = [whole](double part) {
                const double bounded = part > 0 ? std::min(part, 1.0) : 0;
                return static_cast<std::uint32_t>(std::lround(bounded * whole));
            };
            word = alpha << 24 | level(color.red) << 16 | level(color.green) << 8
                | level(color.blue);
        }
    }

    /// Makes every colour 1 minus itself.
    void invert(FilterPixels& pixels);
    /// Spreads every pixel by the normal distribution, nearly: three averages after each other (W. Wells, "Efficient
    /// Synthesis of Gaussian Filters by Cascaded Uniform Filters", 1986).
    void blur(FilterPixels& pixels, double deviation);

}

struct FilterAccess {
    /// Answers the picture that a step makes of another one.
    static Ref<CIImage> derived(CIImage* input, CGRect extent, quartz::FilterStep step);
    /// Computes the pixels in a rectangle; nil when it is empty or too large.
    static Ref<CGImage> render(CIImage& image, CGRect rect);
};

}
