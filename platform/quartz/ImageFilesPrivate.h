// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ImageFiles.h"

#include <optional>
#include <vector>

namespace brindle::quartz {

ImageFile decodePNG(std::span<const std::byte> bytes);
ImageFile decodeJPEG(std::span<const std::byte> bytes);
ImageFile decodeBMP(std::span<const std::byte> bytes);
ImageFiles decodeGIF(std::span<const std::byte> bytes);
ImageFiles decodeTIFF(std::span<const std::byte> bytes);

/// Multiplies the colours of pixels by their alpha, as drawing wants them.
void premultiply(std::uint32_t* pixels, std::size_t count);
/// Answers the pixels with their colours divided by alpha, bytes B, G, R, A.
std::vector<std::uint32_t> dividedByAlpha(const CGImage& image);

/// Numbers from the bytes of a file. What lies behind its end reads as zero and is remembered.
class FileBytes {
public:
    FileBytes(std::span<const std::byte> bytes, bool bigEndian = false)
        : bytes_(bytes)
        , bigEndian_(bigEndian)
    {
    }
    std::size_t size() const { return bytes_.size(); }
    /// Answers whether something was asked for that is not there.
    bool failed() const { return failed_; }
    std::uint32_t byte(std::size_t at) const { return number(at, 1); }
    std::uint32_t half(std::size_t at) const { return number(at, 2); }
    std::uint32_t word(std::size_t at) const { return number(at, 4); }
    /// Answers a stretch of the file; an empty one that has failed where it reaches over the end.
    std::span<const std::byte> part(std::size_t at, std::size_t length) const
    {
        if (at <= size() && length <= size() - at)
            return bytes_.subspan(at, length);
        failed_ = true;
        return {};
    }

private:
    std::uint32_t number(std::size_t at, std::size_t length) const
    {
        std::uint32_t value = 0;
        const auto bytes = part(at, length);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const std::size_t place = bigEndian_ ? length - 1 - i : i;
            value |= std::to_integer<std::uint32_t>(bytes[i]) << 8 * place;
        }
        return value;
    }

    std::span<const std::byte> bytes_;
    bool bigEndian_;
    mutable bool failed_ = false;
};

/// How the codes of two formats that share the method of Lempel, Ziv and Welch differ.
enum class CodeOrder {
    lowBitsFirst, // GIF
    highBitsFirst, // TIFF, whose codes also grow one entry earlier
};
/// Unpacks codes.
/// - bits: of the plain values. - count: how many bytes are wanted; no more are made.
/// - Returns: fewer bytes where the codes end early or make no sense.
std::vector<std::uint8_t> unpackCodes(
    std::span<const std::byte> codes, unsigned bits, CodeOrder order, std::size_t count);

/// Answers a colour that is not multiplied by its alpha as a native word.
inline std::uint32_t plainPixel(
    std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha)
{
    return alpha << 24 | red << 16 | green << 8 | blue;
}

}
