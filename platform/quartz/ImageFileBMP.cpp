// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace brindle::quartz {

namespace {

    constexpr std::size_t kFileHeader = 14;
    constexpr double kInch = 0.0254; // metres

    /// A bitmap file without packing: 1, 4, 8, 16, 24 or 32 bits a pixel, the last row first unless the height is negative.
    struct Bitmap {
        FileBytes bytes;
        std::size_t headerSize = 0;
        std::size_t width = 0;
        std::size_t height = 0;
        bool topFirst = false;
        std::uint32_t bits = 0;
        std::uint32_t compression = 0;
        std::array<std::uint32_t, 4> masks {}; // red, green, blue, alpha
        std::array<std::uint32_t, 256> palette {};

        bool readHeader()
        {
            headerSize = bytes.word(kFileHeader);
            if (headerSize == 12) {
                width = bytes.half(18);
                height = bytes.half(20);
                bits = bytes.half(24);
            } else if (headerSize >= 40 && headerSize <= 124) {
                const auto signedHeight = static_cast<std::int32_t>(bytes.word(22));
                width = bytes.word(18);
                topFirst = signedHeight < 0;
                height = static_cast<std::size_t>(std::abs(std::int64_t { signedHeight }));
                bits = bytes.half(28);
                compression = bytes.word(30);
            }
            const bool plain = compression == 0
                && (bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32);
            const bool masked = compression == 3 && (bits == 16 || bits == 32);
            return (plain || masked) && width > 0 && width <= 1 << 20 && height > 0
                && height <= kMostPixels / width && !bytes.failed();
        }
        void readMasks()
        {
            if (compression != 3) {
                masks = bits == 16 ? std::array<std::uint32_t, 4> { 0x7C00, 0x3E0, 0x1F, 0 }
                                   : std::array<std::uint32_t, 4> { 0xFF0000, 0xFF00, 0xFF, 0 };
                return;
            }
            const std::size_t count = headerSize >= 56 ? 4 : 3;
            for (std::size_t i = 0; i < count; ++i)
                masks[i] = bytes.word(kFileHeader + 40 + 4 * i);
        }
        void readPalette()
        {
            const std::size_t entry = headerSize == 12 ? 3 : 4;
            const std::uint32_t told = headerSize == 12 ? 0 : bytes.word(46);
            const std::size_t most = std::size_t { 1 } << bits;
            const std::size_t count = told == 0 ? most : std::min<std::size_t>(told, most);
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t at = kFileHeader + headerSize + i * entry;
                palette[i]
                    = plainPixel(bytes.byte(at + 2), bytes.byte(at + 1), bytes.byte(at), 255);
            }
        }
        /// Answers the part of a pixel under a mask, 0 to 255.
        static std::uint32_t part(std::uint32_t pixel, std::uint32_t mask, std::uint32_t otherwise)
        {
            if (mask == 0)
                return otherwise;
            const int shift = std::countr_zero(mask);
            const std::uint64_t greatest = mask >> shift;
            return static_cast<std::uint32_t>(
                ((pixel & mask) >> shift) * std::uint64_t { 255 } / greatest);
        }
        std::uint32_t pixel(const FileBytes& row, std::size_t x) const
        {
            if (bits <= 8) {
                const std::size_t shift = 8 - bits - x * bits % 8;
                return palette[row.byte(x * bits / 8) >> shift & ((1u << bits) - 1)];
            }
            if (bits == 24)
                return plainPixel(row.byte(x * 3 + 2), row.byte(x * 3 + 1), row.byte(x * 3), 255);
            const std::uint32_t word = bits == 16 ? row.half(x * 2) : row.word(x * 4);
            return plainPixel(part(word, masks[0], 0), part(word, masks[1], 0),
                part(word, masks[2], 0), part(word, masks[3], 255));
        }
    };

    void addLittle(std::string& out, std::uint32_t value, int bytes)
    {
        for (int i = 0; i < bytes; ++i)
            out.push_back(static_cast<char>(value >> 8 * i));
    }

}

ImageFile decodeBMP(std::span<const std::byte> bytes)
{
    Bitmap bitmap { FileBytes { bytes } };
    if (!bitmap.readHeader())
        return {};
    if (bitmap.bits <= 8)
        bitmap.readPalette();
    else
        bitmap.readMasks();
    const std::size_t stride = (bitmap.width * bitmap.bits + 31) / 32 * 4;
    const auto rows = bitmap.bytes.part(bitmap.bytes.word(10), stride * bitmap.height);
    if (bitmap.bytes.failed())
        return {};
    const bool hasAlpha = bitmap.masks[3] != 0;
    std::vector<std::uint32_t> pixels(bitmap.width * bitmap.height);
    for (std::size_t y = 0; y < bitmap.height; ++y) {
        const std::size_t from = bitmap.topFirst ? y : bitmap.height - 1 - y;
        const FileBytes row { rows.subspan(from * stride, stride) };
        for (std::size_t x = 0; x < bitmap.width; ++x)
            pixels[y * bitmap.width + x] = bitmap.pixel(row, x);
    }
    if (hasAlpha)
        premultiply(pixels.data(), pixels.size());
    const std::uint32_t perMetre = bitmap.headerSize == 12 ? 0 : bitmap.bytes.word(38);
    return { imageTaking(std::move(pixels), bitmap.width, bitmap.height, hasAlpha),
        perMetre > 0 && perMetre < 1u << 20 ? perMetre * kInch : 72 };
}

std::string encodeBMP(const ImageFile& picture)
{
    constexpr std::uint32_t kHeader = 108;
    constexpr std::uint32_t kStart = kFileHeader + kHeader;
    const CGImage* const image = picture.image.get();
    // The file counts its bytes with 32 bits.
    constexpr std::size_t kMost = (std::numeric_limits<std::uint32_t>::max() - kStart) / 4;
    if (!image || image->width() * image->height() > kMost)
        return {};
    const std::size_t count = image->width() * image->height();
    const auto size = static_cast<std::uint32_t>(count * 4);
    const auto perMetre = static_cast<std::uint32_t>(
        std::lround(std::clamp(picture.dotsPerInch, 0.0, 1e6) / kInch));
    std::string out = "BM";
    for (const std::uint32_t word :
        { kStart + size, 0u, kStart, kHeader, static_cast<std::uint32_t>(image->width()),
            static_cast<std::uint32_t>(image->height()) })
        addLittle(out, word, 4);
    addLittle(out, 1, 2);
    addLittle(out, 32, 2);
    for (const std::uint32_t word : { 3u, size, perMetre, perMetre, 0u, 0u, 0xFF0000u, 0xFF00u,
             0xFFu, 0xFF000000u, 0x73524742u }) // the last one says sRGB
        addLittle(out, word, 4);
    out.resize(kStart);
    const std::vector<std::uint32_t> plain = dividedByAlpha(*image);
    for (std::size_t y = image->height(); y-- > 0;) {
        for (std::size_t x = 0; x < image->width(); ++x)
            addLittle(out, plain[y * image->width() + x], 4);
    }
    return out;
}

}
