// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "quartz/CGBitmapContext.h"

/// Reading pictures in tests: single pixels with a tolerance, whole pictures against each other.

namespace brindle::test {

/// One pixel as it is kept: values of 0 to 255, colours multiplied by alpha.
struct Rgba {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

inline constexpr Rgba kRed { 255, 0, 0, 255 };
inline constexpr Rgba kGreen { 0, 255, 0, 255 };
inline constexpr Rgba kBlue { 0, 0, 255, 255 };
inline constexpr Rgba kBlack { 0, 0, 0, 255 };
inline constexpr Rgba kWhite { 255, 255, 255, 255 };
inline constexpr Rgba kClear {};

inline void PrintTo(const Rgba& p, std::ostream* out)
{
    *out << "(" << p.red << ", " << p.green << ", " << p.blue << ", " << p.alpha << ")";
}

/// Answers the greatest difference of the four parts.
inline int distance(const Rgba& a, const Rgba& b)
{
    return std::max({ std::abs(a.red - b.red), std::abs(a.green - b.green),
        std::abs(a.blue - b.blue), std::abs(a.alpha - b.alpha) });
}

/// Answers a pixel of an image, counted from the top left.
inline Rgba pixelAt(const CGImage* image, std::size_t x, std::size_t y)
{
    const std::uint32_t word = image->pixels()[y * image->width() + x];
    return { static_cast<int>(word >> 16 & 0xFF), static_cast<int>(word >> 8 & 0xFF),
        static_cast<int>(word & 0xFF), static_cast<int>(word >> 24) };
}

/// A context in memory with its pixels at hand.
class Picture {
public:
    /// - width, height: pixels. - scale: pixels a point.
    Picture(int width, int height, double scale = 1)
        : context_(quartz::makeContext(width, height, scale))
    {
    }
    CGContext* context() const { return context_.get(); }
    operator CGContext*() const { return context_.get(); }
    Ref<CGImage> image() const
    {
        return Ref<CGImage>::adopt(CGBitmapContextCreateImage(context_.get()));
    }
    /// Answers a pixel, counted from the top left.
    Rgba at(int x, int y) const
    {
        return pixelAt(image().get(), static_cast<std::size_t>(x), static_cast<std::size_t>(y));
    }
    void fillWhite() const
    {
        CGContextSaveGState(context());
        CGContextSetGrayFillColor(context(), 1, 1);
        CGContextFillRect(context(), CGContextGetClipBoundingBox(context()));
        CGContextRestoreGState(context());
    }

private:
    Ref<CGContext> context_;
};

/// `EXPECT_PRED_FORMAT3(isNear, picture.at(1, 2), (Rgba { 255, 0, 0, 255 }), 1)`
inline testing::AssertionResult isNear(const char* actualText, const char*, const char*,
    const Rgba& actual, const Rgba& expected, int tolerance)
{
    if (distance(actual, expected) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << actualText << " is " << testing::PrintToString(actual)
                                       << ", not " << testing::PrintToString(expected);
}

/// How two pictures differ.
struct Difference {
    bool sameSize = true;
    int greatest = 0; // of any part of any pixel
    std::size_t pixels = 0; // how many differ by more than the tolerance
    std::size_t x = 0; // of the greatest difference
    std::size_t y = 0;
};

inline Difference compare(const CGImage* a, const CGImage* b, int tolerance = 0)
{
    Difference result;
    result.sameSize = a && b && a->width() == b->width() && a->height() == b->height();
    if (!result.sameSize)
        return result;
    for (std::size_t y = 0; y < a->height(); ++y) {
        for (std::size_t x = 0; x < a->width(); ++x) {
            const int apart = distance(pixelAt(a, x, y), pixelAt(b, x, y));
            result.pixels += apart > tolerance;
            if (apart > result.greatest) {
                result.greatest = apart;
                result.x = x;
                result.y = y;
            }
        }
    }
    return result;
}

/// Answers whether two pictures are alike within a tolerance; on failure keeps both and says where they differ.
/// - name: of the kept files, in the folder for temporary ones.
inline testing::AssertionResult areAlike(
    const CGImage* actual, const CGImage* expected, int tolerance, const std::string& name)
{
    const Difference difference = compare(actual, expected, tolerance);
    if (difference.sameSize && difference.pixels == 0)
        return testing::AssertionSuccess();
    const std::string folder = testing::TempDir();
    quartz::writePNG(actual, folder + name + "-out.png");
    quartz::writePNG(expected, folder + name + "-expected.png");
    if (!difference.sameSize)
        return testing::AssertionFailure() << name << ": the sizes differ";
    return testing::AssertionFailure()
        << name << ": " << difference.pixels << " pixels differ, most (" << difference.greatest
        << ") at " << difference.x << ", " << difference.y << "; see " << folder << name
        << "-out.png";
}

}
