// SPDX-License-Identifier: Apache-2.0
#include "TextDrawing.h"

#include "ContextPrivate.h"
#include "raster/TextLine.h"
#include "text/GlyphCache.h"
#include "text/GlyphRasterizer.h"

#include <cmath>

namespace brindle::quartz {

namespace {

    /// Answers pixels a point when letters keep their shape and stand upright in this space; 0 when they do not.
    double uprightScale(const GraphicsState& state)
    {
        const CGAffineTransform& t = state.toDevice;
        const bool even = state.isScaleAndMove() && t.a > 0 && std::abs(t.a) == std::abs(t.d);
        return even && std::isfinite(t.tx + t.ty) ? t.a : 0;
    }

    /// Answers device pixels that hold the whole line with room for swashes.
    raster::PixelRect areaOf(const text::Line& line, CGPoint device, double scale)
    {
        const text::LineMetrics& m = line.metrics();
        const double em = (m.ascent + m.descent) * scale;
        return touchedPixels(
            { { device.x - em, device.y - 2 * em }, { m.width * scale + 2 * em, 4 * em } });
    }

    void drawMasks(ContextData& data, const text::Line& line, CGPoint device, double scale,
        const raster::Color& color)
    {
        const Access access(data, areaOf(line, device, scale));
        Canvas& canvas = data.canvas();
        canvas.beginDirect();
        raster::drawLine(canvas.bitmap(), line, device.x - canvas.left(), device.y - canvas.top(),
            scale, canvas.local(data.state.clipBox), color);
        canvas.endDirect();
    }

    /// Adds a glyph's outline at a place of device space.
    void addGlyph(
        PathData& path, const text::FontFace& face, text::GlyphId glyph, const CGAffineTransform& t)
    {
        const auto at = [&t](CGPoint p) { return CGPointApplyAffineTransform(p, t); };
        for (const text::OutlineStep& step : face.outline(glyph)) {
            switch (step.kind) {
            case text::OutlineStep::Kind::move:
                path.move(at(step.to));
                break;
            case text::OutlineStep::Kind::line:
                path.line(at(step.to));
                break;
            case text::OutlineStep::Kind::quadratic:
                path.quad(at(step.control1), at(step.to));
                break;
            case text::OutlineStep::Kind::cubic:
                path.curve(at(step.control1), at(step.control2), at(step.to));
                break;
            case text::OutlineStep::Kind::close:
                path.close();
                break;
            }
        }
    }

    double determinant(const CGAffineTransform& t) { return t.a * t.d - t.b * t.c; }

    /// Answers which way is up. Device rows go down, so a plain space has a negative determinant; a flipped one does
    /// not, and its letters are turned over once more.
    double upward(const CGAffineTransform& toDevice) { return determinant(toDevice) > 0 ? -1 : 1; }

    PathData outlineOf(const text::Line& line, CGPoint baseline, const CGAffineTransform& toDevice)
    {
        const double up = upward(toDevice);
        PathData path;
        for (const text::LineRun& run : line.runs()) {
            const double size = run.font.size;
            for (const text::LineGlyph& glyph : line.glyphs(run)) {
                const CGAffineTransform place { size, 0, 0, up * size, baseline.x + glyph.x,
                    baseline.y + up * glyph.y };
                addGlyph(
                    path, *run.font.face, glyph.glyph, CGAffineTransformConcat(place, toDevice));
            }
        }
        return path;
    }

    void drawPicture(
        CGContext* context, const text::GlyphPicture& picture, CGPoint origin, CGSize scale)
    {
        if (picture.pixels.empty())
            return;
        const Ref<CGImage> image
            = imageFromPixels(picture.pixels.data(), static_cast<std::size_t>(picture.width),
                static_cast<std::size_t>(picture.height), std::ptrdiff_t { picture.width } * 4);
        CGContextSaveGState(context);
        CGContextTranslateCTM(context, origin.x, origin.y);
        CGContextScaleCTM(context, scale.width, scale.height);
        CGContextDrawImage(context, picture.place, image.get());
        CGContextRestoreGState(context);
    }

    /// Draws the coloured glyphs of a line, which have no outlines; they fade with the colour.
    void drawPictures(CGContext* context, const text::Line& line, CGPoint baseline, double alpha)
    {
        const CGAffineTransform toDevice = dataOf(context)->state.toDevice;
        const double up = upward(toDevice);
        const double pixels = std::sqrt(std::abs(determinant(toDevice)));
        CGContextSaveGState(context);
        CGContextSetAlpha(context, dataOf(context)->state.alpha * alpha);
        for (const text::LineRun& run : line.runs()) {
            if (!run.font.face->isColored())
                continue;
            const double size = run.font.size;
            for (const text::LineGlyph& glyph : line.glyphs(run)) {
                const text::GlyphPicture picture
                    = text::GlyphCache::Session(text::GlyphCache::shared())
                          .picture(*run.font.face, glyph.glyph, size * pixels);
                drawPicture(context, picture, { baseline.x + glyph.x, baseline.y + up * glyph.y },
                    { size, up * size });
            }
        }
        CGContextRestoreGState(context);
    }

    void drawOutlines(
        CGContext* context, const text::Line& line, CGPoint baseline, const Paint& paint)
    {
        ContextData& data = *dataOf(context);
        if (!isUsable(data.state.toDevice))
            return;
        fillPath(data, outlineOf(line, baseline, data.state.toDevice), false, paint);
        drawPictures(context, line, baseline, paint.color.alpha);
    }

    bool hasRoom(const ContextData* data, const text::Line& line)
    {
        return data && !line.glyphs().empty() && !data->state.clipBox.isEmpty();
    }

}

void drawTextLine(
    CGContext* context, const text::Line& line, CGPoint baseline, const raster::Color& color)
{
    ContextData* const data = dataOf(context);
    if (!hasRoom(data, line) || !(color.alpha > 0))
        return;
    const double scale = uprightScale(data->state);
    if (scale == 0 || !raster::canDrawLine(line, scale))
        return drawOutlines(context, line, baseline, { color, true, nullptr });
    const CGPoint device = CGPointApplyAffineTransform(baseline, data->state.toDevice);
    const GraphicsState& state = data->state;
    if (!state.clipShapes && !state.shadow.paints && state.blend == kCGBlendModeNormal) {
        raster::Color faded = color;
        faded.alpha *= state.alpha;
        return drawMasks(*data, line, device, scale, faded);
    }
    // A group takes the letters as they always look, and is laid down with the rest of the state.
    beginLayer(*data, areaOf(line, device, scale));
    drawMasks(*data, line, device, scale, color);
    endLayer(*data);
}

void drawTextLine(CGContext* context, const text::Line& line, CGPoint baseline, CGColor* color)
{
    CGPattern* const pattern = CGColorGetPattern(color);
    if (!pattern)
        drawTextLine(context, line, baseline, rasterColor(color));
    else if (hasRoom(dataOf(context), line))
        drawOutlines(context, line, baseline, { rasterColor(color), true, pattern });
}

}
