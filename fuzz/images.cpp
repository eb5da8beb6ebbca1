// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "quartz/ImageFiles.h"

using namespace brindle;

/// Reads the bytes as a picture file. What is read can be written and read again, and shows the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const quartz::ImageFiles files
        = quartz::decodeImages({ reinterpret_cast<const std::byte*>(data), size });
    std::size_t pixels = 0;
    for (const quartz::ImageFile& file : files.pictures)
        pixels += file.image->width() * file.image->height();
    if (pixels == 0 || pixels > 1 << 16)
        return 0;
    const std::string again = quartz::encodeTIFF(files.pictures, true);
    const quartz::ImageFiles same
        = quartz::decodeImages({ reinterpret_cast<const std::byte*>(again.data()), again.size() });
    if (same.pictures.size() != files.pictures.size())
        std::abort();
    for (std::size_t i = 0; i < same.pictures.size(); ++i) {
        const CGImage& one = *files.pictures[i].image;
        const CGImage& two = *same.pictures[i].image;
        if (one.width() != two.width() || one.height() != two.height()
            || !std::equal(one.pixels(), one.pixels() + one.width() * one.height(), two.pixels()))
            std::abort();
    }
    return 0;
}
