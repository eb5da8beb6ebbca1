// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "CGColorSpace.h"

namespace brindle {

/// Called when a data provider no longer needs its bytes.
using CGDataProviderReleaseDataCallback = void (*)(void* info, const void* data, std::size_t size);

/// Bytes for an image.
class CGDataProvider : public NSObject {
    BRINDLE_OBJECT(CGDataProvider, NSObject)

public:
    std::span<const std::byte> bytes() const { return { data_.get(), size_ }; }

private:
    friend struct Images;
    std::shared_ptr<const std::byte> data_;
    std::size_t size_ = 0;
};

/// A picture. Never changes.
///
/// Whatever the bytes were that it was made from, its pixels are kept as drawing wants them.
/// Thread: any.
class CGImage : public NSObject {
    BRINDLE_OBJECT(CGImage, NSObject)

public:
    std::size_t width() const { return width_; }
    std::size_t height() const { return height_; }
    /// Answers the pixels.
    /// - Shape: `height` rows of `width` words, top row first, no padding; a word is alpha in the top byte, then red,
    ///   green, blue, multiplied by alpha.
    const std::uint32_t* pixels() const { return pixels_.get(); }
    /// Answers whether every pixel covers what lies below.
    bool isOpaque() const { return opaque_; }

private:
    friend struct Images;
    std::shared_ptr<const std::uint32_t> pixels_;
    std::size_t width_ = 0;
    std::size_t height_ = 0;
    std::size_t bytesPerRow_ = 0;
    std::size_t bitsPerPixel_ = 32;
    CGBitmapInfo info_ = 0;
    Ref<CGColorSpace> space_;
    Ref<CGDataProvider> provider_;
    bool opaque_ = false;
};

// ---- data providers

/// - data: used where it lies until `release` is called. - release: may be nullptr.
BRINDLE_EXPORT CGDataProviderRef CGDataProviderCreateWithData(
    void* info, const void* data, std::size_t size, CGDataProviderReleaseDataCallback release);
/// - Nil: NULL when the file cannot be read.
BRINDLE_EXPORT CGDataProviderRef CGDataProviderCreateWithFilename(const char* filename);
BRINDLE_EXPORT CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider);
BRINDLE_EXPORT void CGDataProviderRelease(CGDataProviderRef provider);

// ---- images

/// Makes an image of raw pixels: 8 bits a component; grey, grey and alpha, RGB, or 4 bytes in any order.
/// - decode, shouldInterpolate, intent: accepted; a decode array is not applied.
/// - Nil: NULL for combinations that make no image, or when the provider holds too few bytes.
BRINDLE_EXPORT CGImageRef CGImageCreate(std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bitsPerPixel, std::size_t bytesPerRow,
    CGColorSpaceRef space, CGBitmapInfo info, CGDataProviderRef provider, const CGFloat* decode,
    bool shouldInterpolate, CGColorRenderingIntent intent);
/// Answers a part of an image.
/// - rect: pixels from the top left; made whole and cut to the image.
/// - Nil: NULL when nothing is left.
BRINDLE_EXPORT CGImageRef CGImageCreateWithImageInRect(CGImageRef image, CGRect rect);
BRINDLE_EXPORT CGImageRef CGImageCreateCopy(CGImageRef image);
BRINDLE_EXPORT CGImageRef CGImageCreateWithPNGDataProvider(CGDataProviderRef source,
    const CGFloat* decode, bool shouldInterpolate, CGColorRenderingIntent intent);
BRINDLE_EXPORT CGImageRef CGImageCreateWithJPEGDataProvider(CGDataProviderRef source,
    const CGFloat* decode, bool shouldInterpolate, CGColorRenderingIntent intent);
BRINDLE_EXPORT std::size_t CGImageGetWidth(CGImageRef image);
BRINDLE_EXPORT std::size_t CGImageGetHeight(CGImageRef image);
BRINDLE_EXPORT std::size_t CGImageGetBitsPerComponent(CGImageRef image);
BRINDLE_EXPORT std::size_t CGImageGetBitsPerPixel(CGImageRef image);
BRINDLE_EXPORT std::size_t CGImageGetBytesPerRow(CGImageRef image);
BRINDLE_EXPORT CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
BRINDLE_EXPORT CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
BRINDLE_EXPORT CGColorSpaceRef CGImageGetColorSpace(CGImageRef image);
/// Answers the image's bytes in the layout that the functions above tell.
BRINDLE_EXPORT CGDataProviderRef CGImageGetDataProvider(CGImageRef image);
BRINDLE_EXPORT CGImageRef CGImageRetain(CGImageRef image);
BRINDLE_EXPORT void CGImageRelease(CGImageRef image);

namespace quartz {

    /// What a picture file tells besides its pixels.
    struct ImageFile {
        Ref<CGImage> image; // nil when the bytes are no picture
        double dotsPerInch = 72;
        double seconds = 0; // how long it is shown, of an animation
    };

    /// The most pixels that are read from a picture file.
    inline constexpr std::size_t kMostPixels = std::size_t { 48 } << 20;

    /// Reads the first picture of a file, known by its first bytes. Broken and oversized pictures answer nil.
    BRINDLE_EXPORT ImageFile decodeImage(std::span<const std::byte> bytes);
    /// The same for a file.
    BRINDLE_EXPORT ImageFile readImage(const std::string& path);
    /// Answers a picture as PNG; empty when that fails.
    BRINDLE_EXPORT std::string encodePNG(const CGImage* image, double dotsPerInch = 72);
    /// Answers a picture as JPEG on a white ground; empty when that fails.
    /// - quality: 0 to 1.
    BRINDLE_EXPORT std::string encodeJPEG(
        const CGImage* image, double quality, double dotsPerInch = 72);
    /// Writes a picture as PNG. Answers NO when there is no picture or the file cannot be written.
    BRINDLE_EXPORT bool writePNG(const CGImage* image, const std::string& path);
    /// Answers an image of native pixels that it takes over.
    /// - pixels: `height` rows of `width` words, as `CGImage::pixels` tells. - hasAlpha: NO says so in its bitmap info.
    BRINDLE_EXPORT Ref<CGImage> imageTaking(
        std::vector<std::uint32_t>&& pixels, std::size_t width, std::size_t height, bool hasAlpha);

    /// Pixels as bytes in one of the layouts that `CGImageCreate` takes.
    struct PixelBytes {
        std::span<const std::byte> bytes;
        std::size_t width = 0;
        std::size_t height = 0;
        std::size_t bytesPerRow = 0;
        std::size_t bitsPerPixel = 0;
        bool isGray = false;
        CGBitmapInfo info = 0;
    };
    /// Answers an image of a copy of them; nil for too few bytes and for other layouts.
    BRINDLE_EXPORT Ref<CGImage> imageFromBytes(const PixelBytes& source);

    /// Answers an image of a copy of native pixels.
    /// - pixels: `height` rows `stride` bytes apart, as `CGImage::pixels` tells.
    BRINDLE_EXPORT Ref<CGImage> imageFromPixels(
        const std::uint32_t* pixels, std::size_t width, std::size_t height, std::ptrdiff_t stride);

}

}
