// SPDX-License-Identifier: Apache-2.0
#include "CGContext.h"

#include "runtime/Table.h"

#include "CGBitmapContext.h"
#include "ContextPrivate.h"
#include "TextDrawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brindle {

using quartz::ContextData;
using quartz::dataOf;
using quartz::GraphicsState;

template <> struct CGContext::Methods<struct Lifetime> {

    static void dealloc(CGContext& self) { delete self.data_; }

    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(CGContext, Lifetime)

CGContextRef CGContextRetain(CGContextRef context)
{
    if (context)
        retain(context);
    return context;
}

void CGContextRelease(CGContextRef context)
{
    if (context)
        release(context);
}

// ---- saving

void CGContextSaveGState(CGContextRef context)
{
    if (ContextData* const data = dataOf(context))
        data->saved.push_back(data->state);
}

void CGContextRestoreGState(CGContextRef context)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    const std::size_t layerFloor = data->layers.empty() ? 0 : data->layers.back()->savedDepth;
    if (data->saved.size() <= std::max(layerFloor, data->savedFloor))
        return;
    data->state = std::move(data->saved.back());
    data->saved.pop_back();
}

quartz::StateScope::StateScope(CGContextRef context, Start start)
    : context_(context)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    if (!data->path.isEmpty()) // else the memory of the last path serves what is drawn here
        path_ = std::exchange(data->path, {});
    data->saved.push_back(data->state);
    if (start == Start::bottom)
        data->state = data->saved.front();
    savedFloor_ = std::exchange(data->savedFloor, data->saved.size());
    layersFloor_ = std::exchange(data->layersFloor, data->layers.size());
}

quartz::StateScope::~StateScope()
{
    ContextData* const data = dataOf(context_.get());
    if (!data)
        return;
    while (data->layers.size() > data->layersFloor)
        endLayer(*data);
    data->saved.resize(data->savedFloor);
    data->state = std::move(data->saved.back());
    data->saved.pop_back();
    data->savedFloor = savedFloor_;
    data->layersFloor = layersFloor_;
    data->path.clear();
    if (!path_.isEmpty())
        data->path = std::move(path_);
}

// Nothing waits: memory is current after every operation.
void CGContextFlush(CGContextRef) { }
void CGContextSynchronize(CGContextRef) { }

// ---- transform

namespace {

    /// Device rows go down; the base space's y goes up.
    CGAffineTransform turnedOver(const ContextData& data, const CGAffineTransform& t)
    {
        return { t.a, -t.b, t.c, -t.d, t.tx, data.base.bitmap().height - t.ty };
    }

}

void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform)
{
    if (ContextData* const data = dataOf(context))
        data->state.toDevice = CGAffineTransformConcat(transform, data->state.toDevice);
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty)
{
    CGContextConcatCTM(context, CGAffineTransformMakeTranslation(tx, ty));
}

void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy)
{
    CGContextConcatCTM(context, CGAffineTransformMakeScale(sx, sy));
}

void CGContextRotateCTM(CGContextRef context, CGFloat angle)
{
    CGContextConcatCTM(context, CGAffineTransformMakeRotation(angle));
}

CGAffineTransform CGContextGetCTM(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? turnedOver(*data, data->state.toDevice) : CGAffineTransformIdentity;
}

CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context)
{
    return CGContextGetCTM(context);
}

CGPoint CGContextConvertPointToDeviceSpace(CGContextRef context, CGPoint point)
{
    return CGPointApplyAffineTransform(point, CGContextGetCTM(context));
}

CGPoint CGContextConvertPointToUserSpace(CGContextRef context, CGPoint point)
{
    return CGPointApplyAffineTransform(point, CGAffineTransformInvert(CGContextGetCTM(context)));
}

CGRect CGContextConvertRectToDeviceSpace(CGContextRef context, CGRect rect)
{
    return CGRectApplyAffineTransform(rect, CGContextGetCTM(context));
}

CGRect CGContextConvertRectToUserSpace(CGContextRef context, CGRect rect)
{
    return CGRectApplyAffineTransform(rect, CGAffineTransformInvert(CGContextGetCTM(context)));
}

// ---- colours

namespace {

    void setFill(CGContextRef context, const raster::Color& color, bool paints,
        CGPatternRef pattern = nullptr)
    {
        if (ContextData* const data = dataOf(context))
            data->state.fill = { color, paints, pattern };
    }

    void setStroke(CGContextRef context, const raster::Color& color, bool paints,
        CGPatternRef pattern = nullptr)
    {
        if (ContextData* const data = dataOf(context))
            data->state.stroke = { color, paints, pattern };
    }

    double unit(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

    raster::Color colorOf(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
    {
        return { unit(red), unit(green), unit(blue), unit(alpha) };
    }

}

raster::Color quartz::rasterColor(const CGColor* color)
{
    if (!color)
        return { 0, 0, 0, 0 };
    const CGFloat* c = color->components();
    switch (color->componentCount()) {
    case 1: // a pattern's alpha
        return colorOf(0, 0, 0, c[0]);
    case 2:
        return colorOf(c[0], c[0], c[0], c[1]);
    default:
        return colorOf(c[0], c[1], c[2], c[3]);
    }
}

void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color)
{
    setFill(context, quartz::rasterColor(color), color != nullptr, CGColorGetPattern(color));
}

void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color)
{
    setStroke(context, quartz::rasterColor(color), color != nullptr, CGColorGetPattern(color));
}

void CGContextSetRGBFillColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    setFill(context, colorOf(red, green, blue, alpha), true);
}

void CGContextSetRGBStrokeColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    setStroke(context, colorOf(red, green, blue, alpha), true);
}

void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha)
{
    CGContextSetRGBFillColor(context, gray, gray, gray, alpha);
}

void CGContextSetGrayStrokeColor(CGContextRef context, CGFloat gray, CGFloat alpha)
{
    CGContextSetRGBStrokeColor(context, gray, gray, gray, alpha);
}

// ---- the rest of the state

namespace {

    template <auto Field, class T> void setField(CGContextRef context, T value)
    {
        if (ContextData* const data = dataOf(context))
            data->state.*Field = value;
    }

    double numberOr(double value, double otherwise)
    {
        return std::isfinite(value) ? value : otherwise;
    }

}

void CGContextSetAlpha(CGContextRef context, CGFloat alpha)
{
    setField<&GraphicsState::alpha>(context, unit(alpha));
}

void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode)
{
    if (mode >= kCGBlendModeNormal && mode <= kCGBlendModePlusLighter)
        setField<&GraphicsState::blend>(context, mode);
}

void CGContextSetLineWidth(CGContextRef context, CGFloat width)
{
    setField<&GraphicsState::lineWidth>(context, numberOr(width, 0));
}

void CGContextSetLineCap(CGContextRef context, CGLineCap cap)
{
    if (cap >= kCGLineCapButt && cap <= kCGLineCapSquare)
        setField<&GraphicsState::cap>(context, cap);
}

void CGContextSetLineJoin(CGContextRef context, CGLineJoin join)
{
    if (join >= kCGLineJoinMiter && join <= kCGLineJoinBevel)
        setField<&GraphicsState::join>(context, join);
}

void CGContextSetMiterLimit(CGContextRef context, CGFloat limit)
{
    setField<&GraphicsState::miterLimit>(context, numberOr(limit, 10));
}

void CGContextSetLineDash(
    CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    data->state.dashes.clear();
    data->state.dashPhase = std::abs(phase) < 1e9 ? phase : 0;
    const bool usable = lengths && std::all_of(lengths, lengths + count, [](CGFloat length) {
        return length >= 0 && length < 1e9;
    });
    if (usable)
        data->state.dashes.assign(lengths, lengths + count);
}

// Curves are flattened as finely as the pixels ask for.
void CGContextSetFlatness(CGContextRef, CGFloat) { }

void CGContextSetShouldAntialias(CGContextRef context, bool antialias)
{
    setField<&GraphicsState::antialias>(context, antialias);
}

void CGContextSetAllowsAntialiasing(CGContextRef context, bool allows)
{
    setField<&GraphicsState::allowsAntialiasing>(context, allows);
}

void CGContextSetShouldSmoothFonts(CGContextRef context, bool smooth)
{
    setField<&GraphicsState::smoothFonts>(context, smooth);
}

void CGContextSetAllowsFontSmoothing(CGContextRef context, bool allows)
{
    setField<&GraphicsState::allowsFontSmoothing>(context, allows);
}

void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality)
{
    setField<&GraphicsState::interpolation>(context, quality);
}

CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->state.interpolation : kCGInterpolationDefault;
}

void CGContextSetShadowWithColor(
    CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    data->state.shadowOffset = { numberOr(offset.width, 0), numberOr(offset.height, 0) };
    data->state.shadowBlur = std::max(0.0, numberOr(blur, 0));
    const raster::Color shown = quartz::rasterColor(color);
    data->state.shadow = { shown, shown.alpha > 0, nullptr };
}

void CGContextSetShadow(CGContextRef context, CGSize offset, CGFloat blur)
{
    const Ref<CGColor> third = Ref<CGColor>::adopt(CGColorCreateGenericGray(0, 1.0 / 3));
    CGContextSetShadowWithColor(context, offset, blur, third.get());
}

// ---- questions

CGBlendMode quartz::blendMode(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->state.blend : kCGBlendModeNormal;
}

double quartz::alpha(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->state.alpha : 1;
}

double quartz::baseScale(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? data->scale : 1;
}

bool quartz::shouldAntialias(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data && data->state.antialias;
}

void quartz::setFocusRing(CGContextRef context, FocusRing ring, CGColorRef color)
{
    if (ContextData* const data = dataOf(context)) {
        data->state.ring = color ? ring : FocusRing::none;
        data->state.ringColor = rasterColor(color);
    }
}

}
