// SPDX-License-Identifier: Apache-2.0
#include "RasterFloors.h"

#include <cstdint>
#include <cstring>

namespace brindle::bench::floors {

void fill(raster::Pixel* row, int count, raster::Pixel pixel)
{
    for (int i = 0; i < count; ++i)
        row[i] = pixel;
}

void blend(raster::Pixel* row, int count, raster::Pixel pixel)
{
    constexpr std::size_t kTogether = 16; // bytes, four pixels
    std::uint8_t source[kTogether];
    for (std::size_t i = 0; i < kTogether; ++i)
        source[i] = static_cast<std::uint8_t>(pixel >> i % 4 * 8);
    const auto rest = static_cast<std::uint16_t>(255 - (pixel >> 24));
    auto* bytes = reinterpret_cast<std::uint8_t*>(row);
    for (const std::uint8_t* const end = bytes + count / 4 * kTogether; bytes < end;
         bytes += kTogether) {
        std::uint8_t mixed[kTogether];
        for (std::size_t i = 0; i < kTogether; ++i) {
            const auto product = static_cast<std::uint16_t>(bytes[i] * rest + 128);
            const auto divided = static_cast<std::uint16_t>(product + (product >> 8)) >> 8;
            mixed[i] = static_cast<std::uint8_t>(source[i] + divided);
        }
        std::memcpy(bytes, mixed, kTogether);
    }
}

}
