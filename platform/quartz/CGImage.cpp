// SPDX-License-Identifier: Apache-2.0
#include "CGImage.h"

#include "runtime/Runtime.h"
#include "runtime/Table.h"

#include "BitmapInfoPrivate.h"
#include "CGGeometry.h"
#include "raster/PixelMath.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>

namespace brindle {

using Pixel = std::uint32_t;

namespace {

    struct FileDeleter {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    /// Where the parts of a pixel stand in its bytes; -1 for a part that is not there.
    struct PixelLayout {
        int bytes = 0; // of a pixel
        int red = 0;
        int green = 0;
        int blue = 0;
        int alpha = -1;
        bool premultiplied = false;
    };

    PixelLayout fourBytes(CGBitmapInfo info)
    {
        const CGBitmapInfo alpha = info & kCGBitmapAlphaInfoMask;
        const bool little = (info & kCGBitmapByteOrderMask) == kCGBitmapByteOrder32Little;
        const bool first = alpha == kCGImageAlphaPremultipliedFirst || alpha == kCGImageAlphaFirst
            || alpha == kCGImageAlphaNoneSkipFirst;
        const bool has = alpha != kCGImageAlphaNoneSkipFirst && alpha != kCGImageAlphaNoneSkipLast
            && alpha != kCGImageAlphaNone;
        const int start = first ? 1 : 0;
        const auto place = [little](int index) { return little ? 3 - index : index; };
        return { 4, place(start), place(start + 1), place(start + 2),
            has ? place(first ? 0 : 3) : -1,
            alpha == kCGImageAlphaPremultipliedFirst || alpha == kCGImageAlphaPremultipliedLast };
    }

    PixelLayout layoutOf(std::size_t bitsPerPixel, bool gray, CGBitmapInfo info)
    {
        const CGBitmapInfo alpha = info & kCGBitmapAlphaInfoMask;
        if (gray && bitsPerPixel == 8 && alpha == kCGImageAlphaNone)
            return { 1, 0, 0, 0, -1, false };
        if (gray && bitsPerPixel == 16)
            return { 2, 0, 0, 0, alpha == kCGImageAlphaNone ? -1 : 1,
                alpha == kCGImageAlphaPremultipliedLast };
        if (!gray && bitsPerPixel == 24 && alpha == kCGImageAlphaNone)
            return { 3, 0, 1, 2, -1, false };
        if (!gray && bitsPerPixel == 32 && alpha <= kCGImageAlphaNoneSkipFirst)
            return fourBytes(info);
        return {};
    }

    Pixel pixelFrom(const std::uint8_t* bytes, const PixelLayout& layout)
    {
        const Pixel alpha = layout.alpha < 0 ? 255 : bytes[layout.alpha];
        const Pixel plain = 0xFF000000u | static_cast<Pixel>(bytes[layout.red]) << 16
            | static_cast<Pixel>(bytes[layout.green]) << 8 | bytes[layout.blue];
        if (alpha == 255)
            return plain;
        if (!layout.premultiplied)
            return raster::scaled(plain, alpha);
        // A part above its alpha is no colour; drawing would overflow.
        return raster::bounded(alpha << 24 | (plain & 0x00FFFFFF));
    }

    // R, G, B, A, multiplied by alpha: the layout of bitmaps that hosts write into. Without branches, so that several
    // pixels go at once.
    void convertRedFirst(Pixel* out, const std::uint8_t* bytes, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, bytes += 4) {
            const std::uint8_t alpha = bytes[3];
            const auto bounded = [alpha](std::uint8_t part) { return part < alpha ? part : alpha; };
            out[i] = Pixel { alpha } << 24 | Pixel { bounded(bytes[0]) } << 16
                | Pixel { bounded(bytes[1]) } << 8 | bounded(bytes[2]);
        }
    }

    void convert(
        Pixel* out, const std::uint8_t* bytes, std::size_t count, const PixelLayout& layout)
    {
        if (layout.bytes == 4 && layout.premultiplied && layout.red == 0 && layout.alpha == 3)
            return convertRedFirst(out, bytes, count);
        for (std::size_t i = 0; i < count; ++i, bytes += layout.bytes)
            out[i] = pixelFrom(bytes, layout);
    }

    std::shared_ptr<Pixel> allocatePixels(std::size_t count)
    {
        return { new (std::nothrow) Pixel[count], std::default_delete<Pixel[]>() };
    }

    bool allOpaque(const Pixel* pixels, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (pixels[i] < 0xFF000000u)
                return false;
        }
        return true;
    }

}

template <> struct CGDataProvider::Methods<struct Basics> {
    static Ref<NSObject> copyWithZone(CGDataProvider& self, void*) { return &self; }
    static void table(Builder& t) { t.methods({ { "copyWithZone:", imp<copyWithZone> } }); }
};
BRINDLE_RECORD(CGDataProvider, Basics)

template <> struct CGImage::Methods<struct Basics> {
    static Ref<NSObject> copyWithZone(CGImage& self, void*) { return &self; }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
    }
};
BRINDLE_RECORD(CGImage, Basics)

/// Fills images and providers in.
struct Images {
    static Ref<CGDataProvider> provider(std::shared_ptr<const std::byte> data, std::size_t size)
    {
        Ref<CGDataProvider> provider = make<CGDataProvider>();
        provider->data_ = std::move(data);
        provider->size_ = size;
        return provider;
    }

    static Ref<CGImage> image(
        std::shared_ptr<const Pixel> pixels, std::size_t width, std::size_t height)
    {
        Ref<CGImage> image = make<CGImage>();
        image->opaque_ = allOpaque(pixels.get(), width * height);
        image->pixels_ = std::move(pixels);
        image->width_ = width;
        image->height_ = height;
        image->bytesPerRow_ = width * 4;
        image->info_ = kNativeInfo;
        image->space_ = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        return image;
    }

    static void describe(CGImage& image, std::size_t bitsPerPixel, std::size_t bytesPerRow,
        CGBitmapInfo info, CGColorSpaceRef space, CGDataProviderRef provider)
    {
        image.bitsPerPixel_ = bitsPerPixel;
        image.bytesPerRow_ = bytesPerRow;
        image.info_ = info;
        image.space_ = space;
        image.provider_ = provider;
    }
    static void setInfo(CGImage& image, CGBitmapInfo info) { image.info_ = info; }
    static std::size_t bytesPerRow(const CGImage& image) { return image.bytesPerRow_; }
    static CGBitmapInfo info(const CGImage& image) { return image.info_; }
    static CGColorSpaceRef space(const CGImage& image) { return image.space_.get(); }
    static std::size_t bitsPerPixel(const CGImage& image) { return image.bitsPerPixel_; }

    static CGDataProviderRef providerOf(CGImage& image)
    {
        const Synchronized lock(&image);
        if (!image.provider_) {
            // The pixels are the bytes; both share them.
            const std::shared_ptr<const std::byte> bytes(
                image.pixels_, reinterpret_cast<const std::byte*>(image.pixels_.get()));
            image.provider_ = provider(bytes, image.width_ * image.height_ * 4);
        }
        return image.provider_.get();
    }
};

// ---- providers

CGDataProviderRef CGDataProviderCreateWithData(
    void* info, const void* data, std::size_t size, CGDataProviderReleaseDataCallback done)
{
    const auto end = [info, size, done](const std::byte* bytes) {
        if (done)
            done(info, bytes, size);
    };
    return Images::provider({ static_cast<const std::byte*>(data), end }, data ? size : 0).leak();
}

CGDataProviderRef CGDataProviderCreateWithFilename(const char* filename)
{
    const std::unique_ptr<std::FILE, FileDeleter> file(
        filename ? std::fopen(filename, "rbe") : nullptr);
    if (!file)
        return nullptr;
    auto bytes = std::make_shared<std::string>();
    char part[16384];
    constexpr std::size_t kLargest = std::size_t { 256 } << 20;
    while (const std::size_t count = std::fread(part, 1, sizeof part, file.get())) {
        bytes->append(part, count);
        if (bytes->size() > kLargest)
            return nullptr;
    }
    if (std::ferror(file.get()))
        return nullptr;
    const std::shared_ptr<const std::byte> shared(
        bytes, reinterpret_cast<const std::byte*>(bytes->data()));
    return Images::provider(shared, bytes->size()).leak();
}

CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider)
{
    if (provider)
        retain(provider);
    return provider;
}

void CGDataProviderRelease(CGDataProviderRef provider)
{
    if (provider)
        release(provider);
}

// ---- images

CGImageRef CGImageCreate(std::size_t width, std::size_t height, std::size_t bitsPerComponent,
    std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo info,
    CGDataProviderRef provider, const CGFloat*, bool, CGColorRenderingIntent)
{
    const bool isGray = CGColorSpaceGetModel(space) == kCGColorSpaceModelMonochrome;
    if (!provider || bitsPerComponent != 8)
        return nullptr;
    Ref<CGImage> image = quartz::imageFromBytes(
        { provider->bytes(), width, height, bytesPerRow, bitsPerPixel, isGray, info });
    if (!image)
        return nullptr;
    Images::describe(*image, bitsPerPixel, bytesPerRow, info, space, provider);
    return image.leak();
}

CGImageRef CGImageCreateWithImageInRect(CGImageRef image, CGRect rect)
{
    if (!image)
        return nullptr;
    const CGRect whole = CGRectMake(
        0, 0, static_cast<double>(image->width()), static_cast<double>(image->height()));
    const CGRect part = CGRectIntersection(CGRectIntegral(rect), whole);
    if (!(part.size.width > 0 && part.size.height > 0)
        || !std::isfinite(part.origin.x + part.origin.y))
        return nullptr;
    const auto x = static_cast<std::size_t>(part.origin.x);
    const auto y = static_cast<std::size_t>(part.origin.y);
    return quartz::imageFromPixels(image->pixels() + y * image->width() + x,
        static_cast<std::size_t>(part.size.width), static_cast<std::size_t>(part.size.height),
        static_cast<std::ptrdiff_t>(image->width() * 4))
        .leak();
}

CGImageRef CGImageCreateCopy(CGImageRef image) { return CGImageRetain(image); }

CGImageRef CGImageCreateWithPNGDataProvider(
    CGDataProviderRef source, const CGFloat*, bool, CGColorRenderingIntent)
{
    return source ? quartz::decodeImage(source->bytes()).image.leak() : nullptr;
}

CGImageRef CGImageCreateWithJPEGDataProvider(
    CGDataProviderRef source, const CGFloat*, bool, CGColorRenderingIntent)
{
    return source ? quartz::decodeImage(source->bytes()).image.leak() : nullptr;
}

std::size_t CGImageGetWidth(CGImageRef image) { return image ? image->width() : 0; }
std::size_t CGImageGetHeight(CGImageRef image) { return image ? image->height() : 0; }
std::size_t CGImageGetBitsPerComponent(CGImageRef image) { return image ? 8 : 0; }

std::size_t CGImageGetBitsPerPixel(CGImageRef image)
{
    return image ? Images::bitsPerPixel(*image) : 0;
}

std::size_t CGImageGetBytesPerRow(CGImageRef image)
{
    return image ? Images::bytesPerRow(*image) : 0;
}
CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image) { return image ? Images::info(*image) : 0; }

CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image)
{
    return static_cast<CGImageAlphaInfo>(CGImageGetBitmapInfo(image) & kCGBitmapAlphaInfoMask);
}

CGColorSpaceRef CGImageGetColorSpace(CGImageRef image)
{
    return image ? Images::space(*image) : nullptr;
}

CGDataProviderRef CGImageGetDataProvider(CGImageRef image)
{
    return image ? Images::providerOf(*image) : nullptr;
}

CGImageRef CGImageRetain(CGImageRef image)
{
    if (image)
        retain(image);
    return image;
}

void CGImageRelease(CGImageRef image)
{
    if (image)
        release(image);
}

namespace quartz {

    Ref<CGImage> imageTaking(
        std::vector<Pixel>&& pixels, std::size_t width, std::size_t height, bool hasAlpha)
    {
        if (width == 0 || height == 0 || pixels.size() < width * height)
            return nullptr;
        const auto kept = std::make_shared<const std::vector<Pixel>>(std::move(pixels));
        Ref<CGImage> image = Images::image({ kept, kept->data() }, width, height);
        if (!hasAlpha)
            Images::setInfo(*image, kCGImageAlphaNoneSkipFirst | kCGBitmapByteOrder32Little);
        return image;
    }

    Ref<CGImage> imageFromBytes(const PixelBytes& source)
    {
        constexpr std::size_t kLongestSide = 1 << 20;
        const auto [bytes, width, height, bytesPerRow, bitsPerPixel, isGray, info] = source;
        const PixelLayout layout = layoutOf(bitsPerPixel, isGray, info);
        if (layout.bytes == 0 || width == 0 || height == 0 || width > kLongestSide
            || height > kMostPixels / width || bytesPerRow > (1u << 30))
            return nullptr;
        const std::size_t used = width * static_cast<std::size_t>(layout.bytes);
        if (bytesPerRow < used || bytes.size() < bytesPerRow * (height - 1) + used)
            return nullptr;
        const std::shared_ptr<Pixel> pixels = allocatePixels(width * height);
        if (!pixels)
            return nullptr;
        const auto* row = reinterpret_cast<const std::uint8_t*>(bytes.data());
        for (std::size_t y = 0; y < height; ++y, row += bytesPerRow)
            convert(pixels.get() + y * width, row, width, layout);
        return Images::image(pixels, width, height);
    }

    Ref<CGImage> imageFromPixels(
        const std::uint32_t* pixels, std::size_t width, std::size_t height, std::ptrdiff_t stride)
    {
        if (!pixels || width == 0 || height == 0)
            return nullptr;
        const std::shared_ptr<Pixel> copy = allocatePixels(width * height);
        if (!copy)
            return nullptr;
        const auto* row = reinterpret_cast<const std::byte*>(pixels);
        for (std::size_t y = 0; y < height; ++y, row += stride)
            std::memcpy(copy.get() + y * width, row, width * sizeof(Pixel));
        return Images::image(copy, width, height);
    }

}

}
