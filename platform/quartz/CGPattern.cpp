// SPDX-License-Identifier: Apache-2.0
#include "CGPattern.h"

#include "runtime/Table.h"

#include "CGBitmapContext.h"
#include "ContextPrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle {

void CGPattern::draw(CGContextRef context) const
{
    if (callbacks_.drawPattern)
        callbacks_.drawPattern(info_, context);
}

/// Fills patterns in and lets go of their infos.
struct Patterns {
    static CGPatternRef create(void* info, CGRect bounds, CGAffineTransform matrix, CGSize step,
        bool colored, const CGPatternCallbacks& callbacks)
    {
        Ref<CGPattern> pattern = make<CGPattern>();
        pattern->info_ = info;
        pattern->callbacks_ = callbacks;
        pattern->bounds_ = bounds;
        pattern->matrix_ = matrix;
        pattern->step_ = step;
        pattern->colored_ = colored;
        return pattern.leak();
    }
    static void letGo(CGPattern& pattern)
    {
        if (pattern.callbacks_.releaseInfo)
            pattern.callbacks_.releaseInfo(pattern.info_);
    }
};

template <> struct CGPattern::Methods<struct Basics> {
    static void dealloc(CGPattern& self) { Patterns::letGo(self); }
    static Ref<NSObject> copyWithZone(CGPattern& self, void*) { return &self; }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "dealloc", imp<dealloc> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(CGPattern, Basics)

CGPatternRef CGPatternCreate(void* info, CGRect bounds, CGAffineTransform matrix, CGFloat xStep,
    CGFloat yStep, CGPatternTiling, bool isColored, const CGPatternCallbacks* callbacks)
{
    const CGRect cell = CGRectStandardize(bounds);
    const CGSize step { std::abs(xStep), std::abs(yStep) };
    const bool finite = std::isfinite(cell.origin.x + cell.origin.y + step.width + step.height
        + cell.size.width + cell.size.height);
    if (!callbacks || !finite || CGRectIsEmpty(cell) || !(step.width > 0) || !(step.height > 0))
        return nullptr;
    return Patterns::create(info, cell, matrix, step, isColored, *callbacks);
}

CGPatternRef CGPatternRetain(CGPatternRef pattern)
{
    if (pattern)
        retain(pattern);
    return pattern;
}

void CGPatternRelease(CGPatternRef pattern)
{
    if (pattern)
        release(pattern);
}

// ---- in the state

namespace {

    CGColorRef makeColor(CGPatternRef pattern, const CGFloat* components)
    {
        const auto rgb = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        const bool colored = pattern && pattern->isColored();
        const auto space
            = Ref<CGColorSpace>::adopt(CGColorSpaceCreatePattern(colored ? nullptr : rgb.get()));
        return CGColorCreateWithPattern(space.get(), pattern, components);
    }

}

void CGContextSetFillPattern(CGContextRef context, CGPatternRef pattern, const CGFloat* components)
{
    const auto color = Ref<CGColor>::adopt(makeColor(pattern, components));
    CGContextSetFillColorWithColor(context, color.get());
}

void CGContextSetStrokePattern(
    CGContextRef context, CGPatternRef pattern, const CGFloat* components)
{
    const auto color = Ref<CGColor>::adopt(makeColor(pattern, components));
    CGContextSetStrokeColorWithColor(context, color.get());
}

void CGContextSetPatternPhase(CGContextRef context, CGSize phase)
{
    if (quartz::ContextData* const data = quartz::dataOf(context))
        data->state.patternPhase = phase;
}

// ---- tiles

namespace quartz {

    namespace {

        struct CellSize {
            int width = 0;
            int height = 0;
        };

        CellSize pixelsOf(const CGPattern& pattern, const CGAffineTransform& toDevice)
        {
            constexpr int kLongestSide = 2048;
            const auto side = [](double length) {
                return static_cast<int>(std::clamp<double>(std::round(length), 1, kLongestSide));
            };
            return { side(pattern.step().width * std::hypot(toDevice.a, toDevice.b)),
                side(pattern.step().height * std::hypot(toDevice.c, toDevice.d)) };
        }

        /// Draws one cell as large as it will be seen.
        Cairo<cairo_surface_t> drawCell(
            const CGPattern& pattern, const raster::Color& color, CellSize size)
        {
            Cairo<cairo_surface_t> surface(
                cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height));
            unsigned char* const bytes = cairo_image_surface_get_data(surface.get());
            if (!bytes)
                return surface;
            const Ref<CGContext> context
                = contextForPixels({ reinterpret_cast<std::uint32_t*>(bytes), size.width,
                    size.height, cairo_image_surface_get_stride(surface.get()) });
            const CGRect bounds = pattern.bounds();
            CGContextScaleCTM(context.get(), size.width / pattern.step().width,
                size.height / pattern.step().height);
            CGContextTranslateCTM(context.get(), -bounds.origin.x, -bounds.origin.y);
            CGContextClipToRect(context.get(), bounds);
            if (!pattern.isColored()) {
                CGContextSetRGBFillColor(context.get(), color.red, color.green, color.blue, 1);
                CGContextSetRGBStrokeColor(context.get(), color.red, color.green, color.blue, 1);
            }
            pattern.draw(context.get());
            cairo_surface_mark_dirty(surface.get());
            return surface;
        }

        /// Answers the surface as transparent as the colour.
        Cairo<cairo_surface_t> faded(Cairo<cairo_surface_t> surface, double alpha)
        {
            if (alpha >= 1)
                return surface;
            const Cairo<cairo_t> cr(cairo_create(surface.get()));
            cairo_set_operator(cr.get(), CAIRO_OPERATOR_DEST_IN);
            cairo_paint_with_alpha(cr.get(), alpha);
            return surface;
        }

    }

    Cairo<cairo_pattern_t> tilesFor(const ContextData& data, const Paint& paint, double alpha)
    {
        const Ref<CGPattern> kept = paint.pattern; // drawing a cell may change the colour
        const CGPattern& pattern = *kept;
        const CGAffineTransform base { data.scale, 0, 0, -data.scale,
            data.state.patternPhase.width * data.scale,
            data.base.bitmap().height - data.state.patternPhase.height * data.scale };
        const CGAffineTransform toDevice = CGAffineTransformConcat(pattern.matrix(), base);
        if (!isUsable(toDevice))
            return nullptr;
        const CellSize size = pixelsOf(pattern, toDevice);
        const Cairo<cairo_surface_t> cell = faded(drawCell(pattern, paint.color, size), alpha);
        Cairo<cairo_pattern_t> tiles(cairo_pattern_create_for_surface(cell.get()));
        cairo_pattern_set_extend(tiles.get(), CAIRO_EXTEND_REPEAT);
        const CGAffineTransform fromPixels { pattern.step().width / size.width, 0, 0,
            -pattern.step().height / size.height, pattern.bounds().origin.x,
            pattern.bounds().origin.y + pattern.step().height };
        const CGAffineTransform placed = CGAffineTransformConcat(fromPixels, toDevice);
        if (!isUsable(placed))
            return nullptr;
        const cairo_matrix_t inverse = matrixFrom(CGAffineTransformInvert(placed));
        cairo_pattern_set_matrix(tiles.get(), &inverse);
        cairo_pattern_set_filter(tiles.get(), CAIRO_FILTER_GOOD);
        return tiles;
    }

}

}
