// SPDX-License-Identifier: Apache-2.0
#include "CGLayer.h"

#include <cmath>

#include "runtime/Table.h"

#include "CGBitmapContext.h"
#include "CGImage.h"
#include "ContextPrivate.h"

namespace brindle {

template <> struct CGLayer::Methods<struct Basics> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(CGLayer, Basics)

/// Fills layers in, and lays them down.
struct LayerPictures {
    static CGLayerRef create(const quartz::ContextData& data, CGSize size)
    {
        constexpr double kLongestSide = 32767; // pixels
        const double width = std::ceil(size.width * data.scale);
        const double height = std::ceil(size.height * data.scale);
        if (!(width >= 1 && width <= kLongestSide && height >= 1 && height <= kLongestSide))
            return nullptr;
        Ref<CGLayer> layer = make<CGLayer>();
        layer->size_ = size;
        layer->context_
            = quartz::makeContext(static_cast<int>(width), static_cast<int>(height), data.scale);
        return layer->context_ ? layer.leak() : nullptr;
    }

    static void draw(CGContextRef context, CGPoint origin, CGSize size, const CGLayer& layer)
    {
        CGContextRef const own = layer.context_.get();
        const double scale = quartz::dataOf(own)->scale;
        const auto points
            = [scale](std::size_t pixels) { return static_cast<double>(pixels) / scale; };
        // Its last pixels may lie partly outside of its size.
        const CGRect rect { origin,
            { points(CGBitmapContextGetWidth(own)) * size.width / layer.size_.width,
                points(CGBitmapContextGetHeight(own)) * size.height / layer.size_.height } };
        const auto picture = Ref<CGImage>::adopt(CGBitmapContextCreateImage(own));
        CGContextDrawImage(context, rect, picture.get());
    }
};

CGLayerRef CGLayerCreateWithContext(CGContextRef context, CGSize size, NSDictionary*)
{
    const quartz::ContextData* const data = quartz::dataOf(context);
    return data ? LayerPictures::create(*data, size) : nullptr;
}

CGLayerRef CGLayerRetain(CGLayerRef layer)
{
    if (layer)
        retain(layer);
    return layer;
}

void CGLayerRelease(CGLayerRef layer)
{
    if (layer)
        release(layer);
}

CGSize CGLayerGetSize(CGLayerRef layer) { return layer ? layer->size() : CGSize {}; }

CGContextRef CGLayerGetContext(CGLayerRef layer) { return layer ? layer->context() : nullptr; }

void CGContextDrawLayerInRect(CGContextRef context, CGRect rect, CGLayerRef layer)
{
    if (layer && layer->context())
        LayerPictures::draw(context, rect.origin, rect.size, *layer);
}

void CGContextDrawLayerAtPoint(CGContextRef context, CGPoint point, CGLayerRef layer)
{
    CGContextDrawLayerInRect(context, { point, CGLayerGetSize(layer) }, layer);
}

}
