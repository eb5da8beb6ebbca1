// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"
#include "raster/PixelMath.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

namespace brindle::quartz {

namespace {

    bool beginsWith(std::span<const std::byte> bytes, std::span<const std::uint8_t> start)
    {
        return bytes.size() >= start.size()
            && std::memcmp(bytes.data(), start.data(), start.size()) == 0;
    }

    constexpr std::array<std::uint8_t, 8> kPNGStart { 0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A };
    constexpr std::array<std::uint8_t, 3> kJPEGStart { 0xFF, 0xD8, 0xFF };
    constexpr std::array<std::uint8_t, 4> kGIFStart { 'G', 'I', 'F', '8' };
    constexpr std::array<std::uint8_t, 2> kBMPStart { 'B', 'M' };
    constexpr std::array<std::uint8_t, 4> kTIFFLittleStart { 'I', 'I', 42, 0 };
    constexpr std::array<std::uint8_t, 4> kTIFFBigStart { 'M', 'M', 0, 42 };

    std::uint32_t bigEndian(const std::byte* bytes)
    {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return __builtin_bswap32(word);
    }

    /// Looks for the chunk that tells the resolution; it stands before the pixels.
    double dotsPerInchOf(std::span<const std::byte> png)
    {
        constexpr double kInch = 0.0254; // metres
        for (std::size_t at = kPNGStart.size(); at + 21 <= png.size();) {
            const std::uint32_t length = bigEndian(png.data() + at);
            const char* type = reinterpret_cast<const char*>(png.data() + at + 4);
            if (std::memcmp(type, "IDAT", 4) == 0)
                break;
            if (std::memcmp(type, "pHYs", 4) == 0 && length == 9) {
                const std::uint32_t perMetre = bigEndian(png.data() + at + 8);
                const bool metres = std::to_integer<int>(png[at + 16]) == 1;
                return metres && perMetre > 0 ? perMetre * kInch : 72;
            }
            at += std::size_t { length } + 12;
        }
        return 72;
    }

    /// A library's picture under way; what it allocated goes with it.
    struct PNGImage {
        png_image image {};
        PNGImage() { image.version = PNG_IMAGE_VERSION; }
        ~PNGImage() { png_image_free(&image); }
        PNGImage(const PNGImage&) = delete;
        PNGImage& operator=(const PNGImage&) = delete;
    };

    // The check of a chunk: annex D of the format's description at w3.org.
    std::uint32_t checkOf(std::string_view bytes)
    {
        std::uint32_t check = 0xFFFFFFFF;
        for (const char byte : bytes) {
            check ^= static_cast<std::uint8_t>(byte);
            for (int bit = 0; bit < 8; ++bit)
                check = check >> 1 ^ (check & 1 ? 0xEDB88320 : 0);
        }
        return ~check;
    }

    void addBigEndian(std::string& bytes, std::uint32_t word)
    {
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<char>(word >> shift));
    }

    /// Answers the chunk that tells the resolution.
    std::string resolutionChunk(double dotsPerInch)
    {
        constexpr double kInchesAMetre = 1 / 0.0254;
        const auto perMetre = static_cast<std::uint32_t>(
            std::lround(std::clamp(dotsPerInch, 0.0, 1e6) * kInchesAMetre));
        std::string content = "pHYs";
        addBigEndian(content, perMetre);
        addBigEndian(content, perMetre);
        content.push_back(1); // the unit is the metre
        std::string chunk;
        addBigEndian(chunk, static_cast<std::uint32_t>(content.size() - 4));
        chunk += content;
        addBigEndian(chunk, checkOf(content));
        return chunk;
    }

}

std::vector<std::uint32_t> dividedByAlpha(const CGImage& image)
{
    const std::size_t count = image.width() * image.height();
    std::vector<std::uint32_t> plain(image.pixels(), image.pixels() + count);
    for (std::uint32_t& pixel : plain) {
        const std::uint32_t alpha = pixel >> 24;
        if (alpha == 0 || alpha == 255)
            continue;
        const auto part = [&](int shift) {
            return std::min<std::uint32_t>(255, ((pixel >> shift & 0xFF) * 255 + alpha / 2) / alpha)
                << shift;
        };
        pixel = alpha << 24 | part(16) | part(8) | part(0);
    }
    return plain;
}

void premultiply(std::uint32_t* pixels, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t alpha = pixels[i] >> 24;
        pixels[i] = raster::scaled(pixels[i] | 0xFF000000u, alpha);
    }
}

ImageFile decodePNG(std::span<const std::byte> bytes)
{
    // The format packs at best 1,032 bytes of eight pixels each into a byte: more pixels cannot be in the file.
    constexpr std::size_t kMostPixelsAByte = 8256;
    PNGImage png;
    if (!png_image_begin_read_from_memory(&png.image, bytes.data(), bytes.size()))
        return {};
    const std::size_t width = png.image.width;
    const std::size_t height = png.image.height;
    const std::size_t most = std::min(kMostPixels, bytes.size() * kMostPixelsAByte);
    if (width == 0 || height == 0 || height > most / width)
        return {};
    const bool hasAlpha = (png.image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    png.image.format = PNG_FORMAT_BGRA;
    std::vector<std::uint32_t> pixels(width * height);
    if (!png_image_finish_read(&png.image, nullptr, pixels.data(), 0, nullptr))
        return {};
    if (hasAlpha)
        premultiply(pixels.data(), pixels.size());
    return { imageTaking(std::move(pixels), width, height, hasAlpha), dotsPerInchOf(bytes) };
}

bool isImage(std::span<const std::byte> bytes)
{
    return beginsWith(bytes, kPNGStart) || beginsWith(bytes, kJPEGStart)
        || beginsWith(bytes, kGIFStart) || beginsWith(bytes, kBMPStart)
        || beginsWith(bytes, kTIFFLittleStart) || beginsWith(bytes, kTIFFBigStart);
}

ImageFiles decodeImages(std::span<const std::byte> bytes)
{
    if (beginsWith(bytes, kGIFStart))
        return decodeGIF(bytes);
    if (beginsWith(bytes, kTIFFLittleStart) || beginsWith(bytes, kTIFFBigStart))
        return decodeTIFF(bytes);
    ImageFile only;
    if (beginsWith(bytes, kPNGStart))
        only = decodePNG(bytes);
    else if (beginsWith(bytes, kJPEGStart))
        only = decodeJPEG(bytes);
    else if (beginsWith(bytes, kBMPStart))
        only = decodeBMP(bytes);
    ImageFiles files;
    if (only.image)
        files.pictures.push_back(std::move(only));
    return files;
}

ImageFile decodeImage(std::span<const std::byte> bytes)
{
    const ImageFiles files = decodeImages(bytes);
    return files.pictures.empty() ? ImageFile {} : files.pictures.front();
}

ImageFile readImage(const std::string& path)
{
    const Ref<CGDataProvider> file
        = Ref<CGDataProvider>::adopt(CGDataProviderCreateWithFilename(path.c_str()));
    return file ? decodeImage(file->bytes()) : ImageFile {};
}

std::string encodePNG(const CGImage* image, double dotsPerInch)
{
    if (!image)
        return {};
    PNGImage png;
    png.image.width = static_cast<png_uint_32>(image->width());
    png.image.height = static_cast<png_uint_32>(image->height());
    png.image.format = PNG_FORMAT_BGRA;
    const std::vector<std::uint32_t> pixels = dividedByAlpha(*image);
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png.image);
    std::string bytes(size, 0);
    if (!png_image_write_to_memory(&png.image, bytes.data(), &size, 0, pixels.data(), 0, nullptr))
        return {};
    bytes.resize(size);
    constexpr std::size_t kHeader = 8 + 25; // the chunk follows the first one
    if (dotsPerInch != 72 && dotsPerInch > 0 && size > kHeader)
        bytes.insert(kHeader, resolutionChunk(dotsPerInch));
    return bytes;
}

bool writePNG(const CGImage* image, const std::string& path)
{
    const std::string bytes = encodePNG(image);
    std::FILE* const file = bytes.empty() ? nullptr : std::fopen(path.c_str(), "wbe");
    if (!file)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

}
