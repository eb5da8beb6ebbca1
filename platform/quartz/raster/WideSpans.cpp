// SPDX-License-Identifier: Apache-2.0
#include "WideSpans.h"

#include <cstring>

// Each of these functions is compiled twice and the loader chooses. Sanitizers do not stand that early in a program.
#if defined(__x86_64__) && defined(__ELF__) && !defined(__SANITIZE_ADDRESS__)                      \
    && !defined(__SANITIZE_THREAD__)
#define BRINDLE_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define BRINDLE_WIDE
#endif
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)                            \
    || __has_feature(memory_sanitizer)
#undef BRINDLE_WIDE
#define BRINDLE_WIDE
#endif
#endif

namespace brindle::raster {

namespace {

    // These never cross a call: how they would be passed depends on the processor.
    using Pixels8 = std::uint32_t __attribute__((vector_size(32)));
    using Parts16 = std::uint16_t __attribute__((vector_size(32)));
    using Bytes8 = std::uint8_t __attribute__((vector_size(8)));

    constexpr std::uint16_t kLow = 0xFF;
    constexpr std::uint16_t kHigh = 0xFF00;
    constexpr std::uint16_t kHalf = 128;

}

BRINDLE_WIDE void fillWide(const Bitmap& bitmap, const PixelRect& rect, Pixel value)
{
    const Pixels8 eight = Pixels8 {} + value;
    const int count = rect.right - rect.left;
    for (int y = rect.top; y < rect.bottom; ++y) {
        Pixel* const row = bitmap.row(y) + rect.left;
        if (count < kWide) {
            for (int i = 0; i < count; ++i)
                row[i] = value;
            continue;
        }
        for (int i = 0; i + kWide <= count; i += kWide)
            std::memcpy(row + i, &eight, sizeof eight);
        std::memcpy(row + count - kWide, &eight, sizeof eight); // the rest, and some once more
    }
}

BRINDLE_WIDE int overWide(Pixel* row, const Pixel* source, int count)
{
    int i = 0;
    for (; i + kWide <= count; i += kWide) {
        Pixels8 above;
        Pixels8 below;
        std::memcpy(&above, source + i, sizeof above);
        std::memcpy(&below, row + i, sizeof below);
        const Pixels8 clear = ~above >> 24;
        const auto rest = reinterpret_cast<Parts16>(clear | clear << 16);
        const auto parts = reinterpret_cast<Parts16>(below);
        // Divided by 255 and rounded to the nearest, in the high bytes.
        Parts16 even = (parts & kLow) * rest + kHalf;
        Parts16 odd = (parts >> 8) * rest + kHalf;
        even += even >> 8;
        odd += odd >> 8;
        const Pixels8 mixed = above + reinterpret_cast<Pixels8>((even >> 8) | (odd & kHigh));
        std::memcpy(row + i, &mixed, sizeof mixed);
    }
    return i;
}

BRINDLE_WIDE int maskWide(Pixel* row, const std::uint8_t* coverage, int count, Pixel color)
{
    const Pixels8 full = Pixels8 {} + color;
    const auto colorParts = reinterpret_cast<Parts16>(full);
    const Parts16 colorEven = colorParts & kLow;
    const Parts16 colorOdd = colorParts >> 8;
    const Parts16 alpha = Parts16 {} + static_cast<std::uint16_t>(color >> 24);
    const bool isOpaque = color >> 24 == 255;
    int i = 0;
    for (; i + kWide <= count; i += kWide) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, coverage + i, sizeof eight);
        if (eight == 0)
            continue;
        if (eight == ~std::uint64_t { 0 } && isOpaque) {
            std::memcpy(row + i, &full, sizeof full);
            continue;
        }
        Bytes8 bytes;
        Pixels8 below;
        std::memcpy(&bytes, &eight, sizeof bytes);
        std::memcpy(&below, row + i, sizeof below);
        const Pixels8 wide = __builtin_convertvector(bytes, Pixels8);
        const auto covered = reinterpret_cast<Parts16>(wide | wide << 16);
        Parts16 rest = alpha * covered + kHalf;
        rest = kLow - ((rest + (rest >> 8)) >> 8);
        // What is above and what shows through are added before they are divided, and rounded once.
        const auto parts = reinterpret_cast<Parts16>(below);
        Parts16 even = colorEven * covered + (parts & kLow) * rest + kHalf;
        Parts16 odd = colorOdd * covered + (parts >> 8) * rest + kHalf;
        even += even >> 8;
        odd += odd >> 8;
        const auto mixed = reinterpret_cast<Pixels8>((even >> 8) | (odd & kHigh));
        std::memcpy(row + i, &mixed, sizeof mixed);
    }
    return i;
}

}
