// SPDX-License-Identifier: Apache-2.0
#include "CGBitmapContext.h"

#include "BitmapInfoPrivate.h"
#include "ContextPrivate.h"

#include <cmath>

namespace brindle {

using quartz::Access;
using quartz::ContextData;
using quartz::dataOf;
using quartz::PixelOrder;

namespace {

    constexpr std::size_t kLongestSide = 32767; // of an image surface

    /// What a bitmap info says about memory on a little-endian machine.
    struct BitmapLayout {
        bool isSupported = false;
        PixelOrder order = PixelOrder::native;
        bool opaque = false;
    };

    BitmapLayout layoutOf(CGBitmapInfo info)
    {
        const CGBitmapInfo byteOrder = info & kCGBitmapByteOrderMask;
        const bool little = byteOrder == kCGBitmapByteOrder32Little;
        const bool big
            = byteOrder == kCGBitmapByteOrder32Big || byteOrder == kCGBitmapByteOrderDefault;
        const CGBitmapInfo rest = info & ~(kCGBitmapAlphaInfoMask | kCGBitmapByteOrderMask);
        if (rest != 0 || (!little && !big))
            return {};
        switch (info & kCGBitmapAlphaInfoMask) {
        case kCGImageAlphaPremultipliedFirst:
            return { true, little ? PixelOrder::native : PixelOrder::alphaFirst, false };
        case kCGImageAlphaNoneSkipFirst:
            return { true, little ? PixelOrder::native : PixelOrder::alphaFirst, true };
        case kCGImageAlphaPremultipliedLast:
            return { true, little ? PixelOrder::alphaLast : PixelOrder::redFirst, false };
        case kCGImageAlphaNoneSkipLast:
            return { true, little ? PixelOrder::alphaLast : PixelOrder::redFirst, true };
        default:
            return {};
        }
    }

    /// Everything a new context needs to know.
    struct Plan {
        void* memory = nullptr;
        std::size_t width = 0;
        std::size_t height = 0;
        std::size_t bytesPerRow = 0;
        CGBitmapInfo info = kNativeInfo;
        CGColorSpaceRef space = nullptr;
        double scale = 1;
    };

    void fill(ContextData& data, const Plan& plan, const BitmapLayout& layout)
    {
        data.memory = plan.memory;
        data.bytesPerRow = plan.bytesPerRow;
        data.info = plan.info;
        data.space = plan.space;
        data.order = layout.order;
        data.opaque = layout.opaque;
        const raster::Bitmap bitmap { static_cast<raster::Pixel*>(plan.memory),
            static_cast<int>(plan.width), static_cast<int>(plan.height),
            static_cast<std::ptrdiff_t>(plan.bytesPerRow) };
        data.base = quartz::Canvas(bitmap, 0, 0);
        data.state.clipBox = data.base.bounds();
        data.scale = plan.scale;
        data.state.toDevice
            = { plan.scale, 0, 0, -plan.scale, 0, static_cast<double>(plan.height) };
    }

}

/// Makes contexts.
struct Contexts {
    static Ref<CGContext> create(Plan plan)
    {
        auto data = std::make_unique<ContextData>();
        if (!plan.memory) {
            // Large memory comes as zeros from the system, and is not written a second time.
            data->ownMemory.reset(std::calloc(plan.height, plan.bytesPerRow));
            if (!data->ownMemory)
                return nullptr;
            plan.memory = data->ownMemory.get();
        }
        fill(*data, plan, layoutOf(plan.info));
        Ref<CGContext> context = make<CGContext>();
        context->data_ = data.release();
        return context;
    }
};

CGContextRef CGBitmapContextCreate(void* data, std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo info)
{
    if (width == 0 || height == 0 || width > kLongestSide || height > kLongestSide)
        return nullptr;
    const std::size_t row = bytesPerRow == 0 && !data ? width * 4 : bytesPerRow;
    if (bitsPerComponent != 8 || row < width * 4 || row % 4 != 0 || row > 0x7FFFFFFF
        || CGColorSpaceGetModel(space) != kCGColorSpaceModelRGB || !layoutOf(info).isSupported
        || reinterpret_cast<std::uintptr_t>(data) % 4 != 0)
        return nullptr;
    return Contexts::create({ data, width, height, row, info, space }).leak();
}

CGImageRef CGBitmapContextCreateImage(CGContextRef context)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return nullptr;
    const raster::Bitmap& bitmap = data->base.bitmap();
    const auto wide = static_cast<std::size_t>(bitmap.width);
    const auto high = static_cast<std::size_t>(bitmap.height);
    // The clip bounds what drawing may touch; a picture shows everything.
    const raster::PixelRect kept = std::exchange(data->state.clipBox, data->base.bounds());
    std::vector<std::unique_ptr<quartz::Layer>> layers = std::move(data->layers);
    data->layers.clear();
    Ref<CGImage> image;
    {
        const Access access(*data, data->base.bounds());
        image = quartz::imageFromPixels(bitmap.pixels, wide, high, bitmap.stride);
    }
    data->layers = std::move(layers);
    data->state.clipBox = kept;
    return image.leak();
}

void* CGBitmapContextGetData(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->memory : nullptr;
}

std::size_t CGBitmapContextGetWidth(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? static_cast<std::size_t>(data->base.bitmap().width) : 0;
}

std::size_t CGBitmapContextGetHeight(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? static_cast<std::size_t>(data->base.bitmap().height) : 0;
}

std::size_t CGBitmapContextGetBitsPerComponent(CGContextRef context) { return context ? 8 : 0; }
std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context) { return context ? 32 : 0; }

std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->bytesPerRow : 0;
}

CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->space.get() : nullptr;
}

CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->info : 0;
}

CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context)
{
    return static_cast<CGImageAlphaInfo>(
        CGBitmapContextGetBitmapInfo(context) & kCGBitmapAlphaInfoMask);
}

namespace quartz {

    Ref<CGContext> contextForPixels(const ForeignPixels& pixels)
    {
        const Ref<CGColorSpace> space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        if (!pixels.pixels || pixels.width <= 0 || pixels.height <= 0
            || pixels.stride < pixels.width * std::ptrdiff_t { 4 }
            || pixels.width > static_cast<int>(kLongestSide)
            || pixels.height > static_cast<int>(kLongestSide))
            return nullptr;
        return Contexts::create({ pixels.pixels, static_cast<std::size_t>(pixels.width),
            static_cast<std::size_t>(pixels.height), static_cast<std::size_t>(pixels.stride),
            kNativeInfo, space.get(), pixels.scale });
    }

    Ref<CGContext> makeContext(int width, int height, double scale)
    {
        const Ref<CGColorSpace> space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        if (width <= 0 || height <= 0 || width > static_cast<int>(kLongestSide)
            || height > static_cast<int>(kLongestSide))
            return nullptr;
        const auto wide = static_cast<std::size_t>(width);
        return Contexts::create({ nullptr, wide, static_cast<std::size_t>(height), wide * 4,
            kNativeInfo, space.get(), scale });
    }

}

}
