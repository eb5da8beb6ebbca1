// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "quartz/ImageFiles.h"

using namespace brindle;

namespace {

quartz::ImageFiles readAgain(const std::string& bytes)
{
    return quartz::decodeImages({ reinterpret_cast<const std::byte*>(bytes.data()), bytes.size() });
}

bool haveSameSize(const CGImage& one, const CGImage& two)
{
    return one.width() == two.width() && one.height() == two.height();
}

}

/// Reads the bytes as a picture file. What is read can be written and read again, and shows the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const quartz::ImageFiles files
        = quartz::decodeImages({ reinterpret_cast<const std::byte*>(data), size });
    std::size_t pixels = 0;
    for (const quartz::ImageFile& file : files.pictures)
        pixels += file.image->width() * file.image->height();
    if (pixels == 0 || pixels > 1 << 15)
        return 0;
    const quartz::ImageFiles same = readAgain(quartz::encodeTIFF(files.pictures, true));
    if (same.pictures.size() != files.pictures.size())
        std::abort();
    for (std::size_t i = 0; i < same.pictures.size(); ++i) {
        const CGImage& one = *files.pictures[i].image;
        const CGImage& two = *same.pictures[i].image;
        if (!haveSameSize(one, two)
            || !std::equal(one.pixels(), one.pixels() + one.width() * one.height(), two.pixels()))
            std::abort();
    }
    // The other formats keep one picture, and not every colour.
    const quartz::ImageFile& first = files.pictures[0];
    for (const std::string& bytes : { quartz::encodePNG(first.image.get(), first.dotsPerInch),
             quartz::encodeJPEG(first.image.get(), 0.5, first.dotsPerInch),
             quartz::encodeBMP(first) }) {
        const quartz::ImageFiles back = readAgain(bytes);
        if (back.pictures.size() != 1 || !haveSameSize(*first.image, *back.pictures[0].image))
            std::abort();
    }
    return 0;
}
