// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>

#include "support/Pixels.h"

/// Pictures that were looked at and kept: `tests/golden/NAME.png`.

namespace brindle::test {

/// Answers where pictures differ: white where they are alike, the redder the further apart.
inline Ref<CGImage> differencePicture(const CGImage* a, const CGImage* b)
{
    std::vector<std::uint32_t> pixels(a->width() * a->height());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const int apart = distance(
            pixelAt(a, i % a->width(), i / a->width()), pixelAt(b, i % a->width(), i / a->width()));
        const auto rest = static_cast<std::uint32_t>(apart == 0 ? 255 : 192 - apart * 3 / 4);
        pixels[i] = 0xFFFF0000u | rest << 8 | rest;
    }
    return quartz::imageFromPixels(
        pixels.data(), a->width(), a->height(), static_cast<std::ptrdiff_t>(a->width() * 4));
}

/// Answers the folder of kept pictures, as the surroundings of the tests name it; otherwise that of a build inside the tree.
inline std::string goldenFolder()
{
    const char* const named = std::getenv("BRINDLE_GOLDEN");
    return std::string(named ? named : "../../tests/golden") + "/";
}

/// Answers whether a picture is the kept one within a tolerance. On failure `NAME-out.png` and `NAME-diff.png` lie in the
/// folder for temporary files; with `BRINDLE_KEEP_GOLDEN` set in the environment the picture is kept instead, and fails, so
/// that somebody looks at it.
inline testing::AssertionResult isGolden(
    const CGImage* picture, const std::string& name, int tolerance = 2)
{
    const std::string kept = goldenFolder() + name + ".png";
    if (std::getenv("BRINDLE_KEEP_GOLDEN")) {
        quartz::writePNG(picture, kept);
        return testing::AssertionFailure() << "kept " << kept << ": look at it";
    }
    const Ref<CGImage> golden = quartz::readImage(kept).image;
    const Difference difference = compare(picture, golden.get(), tolerance);
    if (difference.sameSize && difference.pixels == 0)
        return testing::AssertionSuccess();
    const std::string out = testing::TempDir() + name;
    quartz::writePNG(picture, out + "-out.png");
    if (!difference.sameSize)
        return testing::AssertionFailure() << kept << " is missing or of another size";
    quartz::writePNG(differencePicture(picture, golden.get()).get(), out + "-diff.png");
    return testing::AssertionFailure()
        << name << ": " << difference.pixels << " pixels differ, most (" << difference.greatest
        << ") at " << difference.x << ", " << difference.y << "; see " << out << "-diff.png";
}

/// A sheet of small drawings on white, at one and two pixels a point.
template <class Draw> void expectSheet(const std::string& name, int width, int height, Draw draw)
{
    for (const int scale : { 1, 2 }) {
        const Picture picture(width * scale, height * scale, scale);
        picture.fillWhite();
        draw(picture.context());
        EXPECT_TRUE(isGolden(picture.image().get(), name + (scale == 2 ? "@2x" : "")));
    }
}

/// Brackets a drawing in a cell of the sheet, counted from the lower left.
template <class Draw> void inCell(CGContextRef context, double x, double y, Draw draw)
{
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, x, y);
    draw();
    CGContextRestoreGState(context);
}

}
