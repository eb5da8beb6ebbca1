// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "raster/PixelMath.h"

#include <cmath>
#include <cstring>

namespace brindle::quartz {

using raster::Pixel;
using raster::PixelRect;

// ---- the pen

cairo_t* Canvas::pen(const GraphicsState& state)
{
    // An error stays with a pen for ever; memory may have been short only once.
    if (!cr_ || cairo_status(cr_.get()) != CAIRO_STATUS_SUCCESS) {
        surface_.reset(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(bitmap_.pixels), CAIRO_FORMAT_ARGB32, bitmap_.width,
            bitmap_.height, static_cast<int>(bitmap_.stride)));
        cairo_surface_set_device_offset(surface_.get(), -left_, -top_);
        cr_.reset(cairo_create(surface_.get()));
        appliedBox_ = bounds();
        appliedShapes_ = nullptr;
    }
    applyClip(state);
    return cr_.get();
}

void Canvas::applyClip(const GraphicsState& state)
{
    if (appliedBox_ == state.clipBox && appliedShapes_ == state.clipShapes)
        return;
    cairo_t* const cr = cr_.get();
    cairo_reset_clip(cr);
    cairo_identity_matrix(cr);
    cairo_new_path(cr);
    const PixelRect& box = state.clipBox;
    if (!(box == bounds())) {
        cairo_rectangle(cr, box.left, box.top, box.right - box.left, box.bottom - box.top);
        cairo_clip(cr);
    }
    for (const ClipShape* shape = state.clipShapes.get(); shape; shape = shape->next.get()) {
        tracePath(cr, shape->path);
        cairo_set_fill_rule(
            cr, shape->evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
        cairo_set_antialias(cr, shape->antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
        cairo_clip(cr);
    }
    appliedBox_ = box;
    appliedShapes_ = state.clipShapes;
}

void Canvas::beginDirect()
{
    if (surface_)
        cairo_surface_flush(surface_.get());
}

void Canvas::endDirect()
{
    if (surface_)
        cairo_surface_mark_dirty(surface_.get());
}

// ---- foreign pixel orders

namespace {

    constexpr Pixel exchangedRedAndBlue(Pixel p)
    {
        return (p & 0xFF00FF00) | (p >> 16 & 0xFF) | (p & 0xFF) << 16;
    }
    constexpr Pixel reversed(Pixel p) { return __builtin_bswap32(p); }
    constexpr Pixel turnedLeft(Pixel p) { return p << 8 | p >> 24; }
    constexpr Pixel turnedRight(Pixel p) { return p >> 8 | p << 24; }

    template <Pixel (*Change)(Pixel)>
    void changeRegion(const raster::Bitmap& bitmap, PixelRect r, Pixel opaque)
    {
        for (int y = r.top; y < r.bottom; ++y) {
            Pixel* row = bitmap.row(y);
            for (int x = r.left; x < r.right; ++x)
                row[x] = Change(row[x]) | opaque;
        }
    }

    constexpr Pixel unchanged(Pixel p) { return p; }

    void makeNative(const ContextData& data, PixelRect r)
    {
        const raster::Bitmap& bitmap = data.base.bitmap();
        // Skipped alpha holds anything; drawing must find it solid.
        const Pixel opaque = data.opaque ? 0xFF000000 : 0;
        switch (data.order) {
        case PixelOrder::native:
            return changeRegion<unchanged>(bitmap, r, opaque);
        case PixelOrder::redFirst:
            return changeRegion<exchangedRedAndBlue>(bitmap, r, opaque);
        case PixelOrder::alphaFirst:
            return changeRegion<reversed>(bitmap, r, opaque);
        case PixelOrder::alphaLast:
            return changeRegion<turnedRight>(bitmap, r, opaque);
        }
    }

    void makeForeign(const ContextData& data, PixelRect r)
    {
        const raster::Bitmap& bitmap = data.base.bitmap();
        switch (data.order) {
        case PixelOrder::native:
            return;
        case PixelOrder::redFirst:
            return changeRegion<exchangedRedAndBlue>(bitmap, r, 0);
        case PixelOrder::alphaFirst:
            return changeRegion<reversed>(bitmap, r, 0);
        case PixelOrder::alphaLast:
            return changeRegion<turnedLeft>(bitmap, r, 0);
        }
    }

}

Access::Access(ContextData& data, PixelRect touched)
    : data_(data)
    , isForeign_(data.layers.empty() && (data.order != PixelOrder::native || data.opaque))
{
    if (!isForeign_ && !data.state.clipMask)
        return;
    touched_ = intersection(touched, intersection(data.state.clipBox, data.canvas().bounds()));
    if (touched_.isEmpty())
        return;
    if (isForeign_)
        makeNative(data_, touched_);
    if (data.state.clipMask)
        keepBefore();
}

Access::~Access()
{
    if (touched_.isEmpty())
        return;
    if (!before_.empty())
        takeBack();
    if (isForeign_)
        makeForeign(data_, touched_);
}

void Access::keepBefore()
{
    Canvas& canvas = data_.canvas();
    const PixelRect r = canvas.local(touched_);
    canvas.beginDirect();
    for (int y = r.top; y < r.bottom; ++y)
        before_.insert(
            before_.end(), canvas.bitmap().row(y) + r.left, canvas.bitmap().row(y) + r.right);
}

void Access::takeBack() const
{
    Canvas& canvas = data_.canvas();
    const raster::Stencil& mask = *data_.state.clipMask;
    canvas.beginDirect();
    const Pixel* before = before_.data();
    for (int y = touched_.top; y < touched_.bottom; ++y) {
        Pixel* row = canvas.bitmap().row(y - canvas.top()) - canvas.left();
        for (int x = touched_.left; x < touched_.right; ++x, ++before) {
            const Pixel part = mask.at(x, y);
            row[x] = raster::scaled(row[x], part) + raster::scaled(*before, 255 - part);
        }
    }
    canvas.endDirect();
}

// ---- small conversions

int wholePixel(double value)
{
    constexpr double kFarthest = 1 << 22;
    if (!(value > -kFarthest)) // NaN too
        return value == value ? -(1 << 22) : 0;
    return value < kFarthest ? static_cast<int>(value) : 1 << 22;
}

PixelRect touchedPixels(CGRect device)
{
    if (CGRectIsNull(device))
        return {};
    return { wholePixel(std::floor(device.origin.x)), wholePixel(std::floor(device.origin.y)),
        wholePixel(std::ceil(NSMaxX(device))), wholePixel(std::ceil(NSMaxY(device))) };
}

bool isUsable(const CGAffineTransform& t)
{
    constexpr double kLargest = 1e6;
    const auto fits = [](double value) { return std::abs(value) < kLargest; };
    const double determinant = std::abs(t.a * t.d - t.b * t.c);
    return fits(t.a) && fits(t.b) && fits(t.c) && fits(t.d) && fits(t.tx / 8) && fits(t.ty / 8)
        && determinant > 1e-12;
}

cairo_matrix_t matrixFrom(const CGAffineTransform& t)
{
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, t.a, t.b, t.c, t.d, t.tx, t.ty);
    return matrix;
}

cairo_operator_t operatorFor(CGBlendMode mode)
{
    static constexpr cairo_operator_t kOperators[] = { CAIRO_OPERATOR_OVER, CAIRO_OPERATOR_MULTIPLY,
        CAIRO_OPERATOR_SCREEN, CAIRO_OPERATOR_OVERLAY, CAIRO_OPERATOR_DARKEN,
        CAIRO_OPERATOR_LIGHTEN, CAIRO_OPERATOR_COLOR_DODGE, CAIRO_OPERATOR_COLOR_BURN,
        CAIRO_OPERATOR_SOFT_LIGHT, CAIRO_OPERATOR_HARD_LIGHT, CAIRO_OPERATOR_DIFFERENCE,
        CAIRO_OPERATOR_EXCLUSION, CAIRO_OPERATOR_HSL_HUE, CAIRO_OPERATOR_HSL_SATURATION,
        CAIRO_OPERATOR_HSL_COLOR, CAIRO_OPERATOR_HSL_LUMINOSITY, CAIRO_OPERATOR_CLEAR,
        CAIRO_OPERATOR_SOURCE, CAIRO_OPERATOR_IN, CAIRO_OPERATOR_OUT, CAIRO_OPERATOR_ATOP,
        CAIRO_OPERATOR_DEST_OVER, CAIRO_OPERATOR_DEST_IN, CAIRO_OPERATOR_DEST_OUT,
        CAIRO_OPERATOR_DEST_ATOP, CAIRO_OPERATOR_XOR, CAIRO_OPERATOR_OVER, CAIRO_OPERATOR_ADD };
    const auto index = static_cast<std::size_t>(mode);
    return index < std::size(kOperators) ? kOperators[index] : CAIRO_OPERATOR_OVER;
}

}
