// SPDX-License-Identifier: Apache-2.0
#include <vector>

#include "graphics/NSImage+AverageColor.h"
#include "graphics/NSImage+InvertImage.h"
#include "graphics/NSImage+TintImage.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kSide = 1024; // pixels
    constexpr std::size_t kLargeSide = 4096;

    std::vector<std::uint32_t> noise(std::size_t side)
    {
        std::vector<std::uint32_t> pixels(side * side);
        std::uint32_t seed = 1;
        for (std::uint32_t& pixel : pixels) {
            seed = seed * 1664525 + 1013904223;
            pixel = seed | 0xFF000000;
        }
        return pixels;
    }
    Ref<NSImage> imageOf(std::size_t side)
    {
        return alloc<NSImage>()->initWithCGImage_size(
            quartz::imageTaking(noise(side), side, side, true).get(), NSZeroSize);
    }

    // The floors: one plain loop over the same pixels, and where a picture is made, memory for it.

    template <class Change> Sample loopOver(std::size_t side, Change change)
    {
        return repeated([pixels = noise(side), change](std::size_t) {
            std::vector<std::uint32_t> out(pixels.size());
            for (std::size_t i = 0; i < pixels.size(); ++i)
                out[i] = change(pixels[i]);
            keep(out.data());
        });
    }

    Pair averaging()
    {
        const Ref<NSImage> image = imageOf(kLargeSide);
        return { repeated([image](std::size_t) { keep(averageColor(image).get()); }),
            repeated([pixels = noise(kLargeSide)](std::size_t) {
                std::uint64_t sums[4] {};
                for (const std::uint32_t pixel : pixels) {
                    for (unsigned part = 0; part < 4; ++part)
                        sums[part] += pixel >> 8 * part & 0xFF;
                }
                keep(sums[0] + sums[1] + sums[2] + sums[3]);
            }) };
    }
    Pair inverting()
    {
        const Ref<NSImage> image = imageOf(kSide);
        return { repeated([image](std::size_t) { keep(invertedImage(image).get()); }),
            loopOver(kSide, [](std::uint32_t pixel) { return pixel ^ 0x00FFFFFF; }) };
    }
    Pair tinting()
    {
        const Ref<NSImage> image = imageOf(kSide);
        const Ref<NSColor> color = NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1);
        return { repeated([image, color](std::size_t) {
                    keep(imageTintedWithColor(image, color.get()).get());
                }),
            loopOver(kSide, [](std::uint32_t pixel) { return (pixel >> 24) * 0x01010000u; }) };
    }
    Pair copying()
    {
        const Ref<NSImage> image = imageOf(kSide);
        return { repeated([image](std::size_t) { keep(bitmapImageRepresentation(image).get()); }),
            loopOver(kSide, [](std::uint32_t pixel) {
                return (pixel & 0xFF00FF00) | (pixel >> 16 & 0xFF) | (pixel & 0xFF) << 16;
            }) };
    }

}

void addImages(Plan& plan)
{
    plan.time("image: average colour, 4,096 x 4,096", kNoBudget, averaging);
    plan.time("image: invert, 1,024 x 1,024", kNoBudget, inverting);
    plan.time("image: tint, 1,024 x 1,024", kNoBudget, tinting);
    plan.time("image: draw into a bitmap, 1,024 x 1,024", kNoBudget, copying);
}

}
