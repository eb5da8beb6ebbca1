// SPDX-License-Identifier: Apache-2.0
#include "CGShading.h"

#include <algorithm>

#include "TextDrawing.h"
#include "runtime/Table.h"

namespace brindle {

/// Fills functions and shadings in, and asks the ones for the others.
struct Shadings {
    static CGFunctionRef create(void* info, const CGFloat* domain, std::size_t results,
        const CGFloat* range, const CGFunctionCallbacks& callbacks)
    {
        Ref<CGFunction> function = make<CGFunction>();
        function->info_ = info;
        function->callbacks_ = callbacks;
        function->from_ = domain ? domain[0] : 0;
        function->to_ = domain ? domain[1] : 1;
        function->results_ = results;
        if (range)
            function->range_.assign(range, range + 2 * results);
        return function.leak();
    }
    static void letGo(CGFunction& function)
    {
        if (function.callbacks_.releaseInfo)
            function.callbacks_.releaseInfo(function.info_);
    }

    /// - Nil: nil where the function says too little of a colour.
    static Ref<CGGradient> colors(CGColorSpaceRef space, const CGFunction& function)
    {
        constexpr int kSteps = 256;
        const std::size_t parts = CGColorSpaceGetNumberOfComponents(space);
        if (function.results_ < parts)
            return nullptr;
        std::vector<raster::GradientStop> stops;
        for (int step = 0; step <= kSteps; ++step) {
            const double offset = static_cast<double>(step) / kSteps;
            std::vector<CGFloat> values = function.valuesAt(offset);
            values.resize(parts + 1, 1); // opaque where nothing is said
            const auto color = Ref<CGColor>::adopt(CGColorCreate(space, values.data()));
            stops.push_back({ offset, quartz::rasterColor(color.get()) });
        }
        return quartz::gradientFromStops(std::move(stops));
    }

    static Ref<CGShading> colored(
        CGColorSpaceRef space, CGFunctionRef function, bool extendStart, bool extendEnd)
    {
        Ref<CGGradient> gradient = space && function ? colors(space, *function) : nullptr;
        if (!gradient)
            return nullptr;
        Ref<CGShading> shading = make<CGShading>();
        shading->colors_ = std::move(gradient);
        shading->options_ = static_cast<CGGradientDrawingOptions>(
            (extendStart ? kCGGradientDrawsBeforeStartLocation : 0u)
            | (extendEnd ? kCGGradientDrawsAfterEndLocation : 0u));
        return shading;
    }
    static CGShadingRef axial(Ref<CGShading> shading, CGPoint start, CGPoint end)
    {
        if (!shading)
            return nullptr;
        shading->start_ = start;
        shading->end_ = end;
        return shading.leak();
    }
    static CGShadingRef radial(
        Ref<CGShading> shading, CGPoint start, CGFloat startRadius, CGPoint end, CGFloat endRadius)
    {
        if (!shading)
            return nullptr;
        shading->isRadial_ = true;
        shading->startRadius_ = startRadius;
        shading->endRadius_ = endRadius;
        return axial(std::move(shading), start, end);
    }

    static void draw(CGContextRef context, const CGShading& shading)
    {
        if (shading.isRadial_)
            CGContextDrawRadialGradient(context, shading.colors_.get(), shading.start_,
                shading.startRadius_, shading.end_, shading.endRadius_, shading.options_);
        else
            CGContextDrawLinearGradient(
                context, shading.colors_.get(), shading.start_, shading.end_, shading.options_);
    }
};

std::vector<CGFloat> CGFunction::valuesAt(double part) const
{
    std::vector<CGFloat> values(results_);
    const CGFloat in = from_ + (to_ - from_) * part;
    if (callbacks_.evaluate)
        callbacks_.evaluate(info_, &in, values.data());
    for (std::size_t i = 0; 2 * i < range_.size(); ++i)
        values[i] = std::max(std::min(values[i], range_[2 * i + 1]), range_[2 * i]);
    return values;
}

template <> struct CGFunction::Methods<struct Basics> {
    static void dealloc(CGFunction& self) { Shadings::letGo(self); }
    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(CGFunction, Basics)

template <> struct CGShading::Methods<struct Basics> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(CGShading, Basics)

CGFunctionRef CGFunctionCreate(void* info, std::size_t domainDimension, const CGFloat* domain,
    std::size_t rangeDimension, const CGFloat* range, const CGFunctionCallbacks* callbacks)
{
    constexpr std::size_t kMostResults = 64;
    if (domainDimension != 1 || rangeDimension == 0 || rangeDimension > kMostResults || !callbacks
        || !callbacks->evaluate)
        return nullptr;
    return Shadings::create(info, domain, rangeDimension, range, *callbacks);
}

CGFunctionRef CGFunctionRetain(CGFunctionRef function)
{
    if (function)
        retain(function);
    return function;
}

void CGFunctionRelease(CGFunctionRef function)
{
    if (function)
        release(function);
}

CGShadingRef CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end,
    CGFunctionRef function, bool extendStart, bool extendEnd)
{
    return Shadings::axial(Shadings::colored(space, function, extendStart, extendEnd), start, end);
}

CGShadingRef CGShadingCreateRadial(CGColorSpaceRef space, CGPoint start, CGFloat startRadius,
    CGPoint end, CGFloat endRadius, CGFunctionRef function, bool extendStart, bool extendEnd)
{
    return Shadings::radial(Shadings::colored(space, function, extendStart, extendEnd), start,
        startRadius, end, endRadius);
}

CGShadingRef CGShadingRetain(CGShadingRef shading)
{
    if (shading)
        retain(shading);
    return shading;
}

void CGShadingRelease(CGShadingRef shading)
{
    if (shading)
        release(shading);
}

void CGContextDrawShading(CGContextRef context, CGShadingRef shading)
{
    if (shading)
        Shadings::draw(context, *shading);
}

}
