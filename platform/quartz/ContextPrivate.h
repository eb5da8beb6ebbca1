// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <cairo.h>

#include "CGContext.h"
#include "CGPattern.h"
#include "ContextState.h"
#include "raster/Bitmap.h"
#include "raster/Blur.h"
#include "raster/Fill.h"

namespace brindle::quartz {

class ShapeKey;

struct CairoDeleter {
    void operator()(cairo_t* cr) const { cairo_destroy(cr); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
template <class T> using Cairo = std::unique_ptr<T, CairoDeleter>;

/// A shape that the clip is cut by, in device space; the clip is the whole chain.
struct ClipShape {
    PathData path;
    bool evenOdd = false;
    bool antialias = true;
    std::shared_ptr<const ClipShape> next;
};
using ClipChain = std::shared_ptr<const ClipShape>;

/// How much of each pixel the clip lets through, where a picture says so; device space, nothing outside.
using ClipMask = std::shared_ptr<const raster::Stencil>;

/// A colour or a pattern to paint with, or none.
struct Paint {
    raster::Color color { 0, 0, 0, 1 };
    bool paints = true;
    Ref<CGPattern> pattern; // nil for a plain colour
};

/// All that is saved and restored. Device space is pixels from the top left, y down.
struct GraphicsState {
    CGAffineTransform toDevice = CGAffineTransformIdentity;
    Paint fill;
    Paint stroke;
    double alpha = 1;
    CGBlendMode blend = kCGBlendModeNormal;
    double lineWidth = 1;
    double miterLimit = 10;
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    double dashPhase = 0;
    std::vector<double> dashes;
    CGSize shadowOffset;
    double shadowBlur = 0;
    Paint shadow { {}, false, nullptr };
    CGSize patternPhase;
    FocusRing ring = FocusRing::none;
    raster::Color ringColor;
    CGInterpolationQuality interpolation = kCGInterpolationDefault;
    bool antialias = true;
    bool allowsAntialiasing = true;
    bool smoothFonts = true;
    bool allowsFontSmoothing = true;
    raster::PixelRect clipBox;
    ClipChain clipShapes;
    ClipMask clipMask; // null for all of it

    void clipAll()
    {
        clipBox = {};
        clipShapes = nullptr;
        clipMask = nullptr;
    }
    bool smoothEdges() const { return antialias && allowsAntialiasing; }
    bool isScaleAndMove() const { return toDevice.b == 0 && toDevice.c == 0; }
};

/// Memory that is drawn into: the context's own, or that of a transparency layer. Its first pixel lies at `left`, `top`.
class Canvas {
public:
    Canvas(const raster::Bitmap& bitmap, int left, int top)
        : bitmap_(bitmap)
        , left_(left)
        , top_(top)
    {
    }
    const raster::Bitmap& bitmap() const { return bitmap_; }
    int left() const { return left_; }
    int top() const { return top_; }
    /// Answers a device rectangle in the memory's own pixels.
    raster::PixelRect local(raster::PixelRect r) const
    {
        return { r.left - left_, r.top - top_, r.right - left_, r.bottom - top_ };
    }
    raster::PixelRect bounds() const
    {
        return { left_, top_, left_ + bitmap_.width, top_ + bitmap_.height };
    }

    /// Answers a pen in device space with the state's clip; a spoilt one is replaced first.
    cairo_t* pen(const GraphicsState& state);
    /// Call around drawing that goes past the pen.
    void beginDirect();
    void endDirect();

private:
    void applyClip(const GraphicsState& state);

    raster::Bitmap bitmap_;
    int left_;
    int top_;
    Cairo<cairo_surface_t> surface_;
    Cairo<cairo_t> cr_;
    raster::PixelRect appliedBox_;
    ClipChain appliedShapes_;
};

/// How the pixels in memory differ from native words.
enum class PixelOrder { native, redFirst, alphaFirst, alphaLast };

/// A transparency layer under construction.
struct Layer {
    std::vector<raster::Pixel> pixels;
    Canvas canvas;
    GraphicsState outer;
    std::size_t savedDepth = 0;
};

struct ContextData {
    Canvas base { {}, 0, 0 };
    std::vector<std::unique_ptr<Layer>> layers;
    GraphicsState state;
    std::vector<GraphicsState> saved;
    std::size_t savedFloor = 0; // what lies below belongs to whoever opened the present scope
    std::size_t layersFloor = 0;
    PathData path; // device space

    double scale = 1; // pixels a point of the base space
    std::unique_ptr<void, decltype(&std::free)> ownMemory { nullptr, &std::free };
    void* memory = nullptr;
    std::size_t bytesPerRow = 0;
    CGBitmapInfo info = 0;
    Ref<CGColorSpace> space;
    PixelOrder order = PixelOrder::native;
    bool opaque = false;

    Canvas& canvas() { return layers.empty() ? base : layers.back()->canvas; }
};

/// Stands around everything that changes a stretch of the canvas's memory: makes it native while it lives, and at the end
/// takes back what the clip's mask does not let through.
class Access {
public:
    Access(ContextData& data, raster::PixelRect touched);
    ~Access();
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

private:
    void keepBefore();
    void takeBack() const;

    ContextData& data_;
    raster::PixelRect touched_; // empty where nothing is to be done
    bool isForeign_ = false;
    std::vector<raster::Pixel> before_; // where there is a mask
};

inline ContextData* dataOf(CGContextRef context) { return context ? &context->data() : nullptr; }

/// What fits a whole number of pixels: saturated, and 0 for what is no number.
int wholePixel(double value);
/// Answers the pixels that a rectangle of device space touches.
raster::PixelRect touchedPixels(CGRect device);

// ---- painting, device space

/// Adds a path to a pen's; points that are no numbers are left out, far ones are brought near.
void tracePath(cairo_t* cr, const PathData& path);
/// Answers a pattern's cells over the whole device, as transparent as `alpha`; null for a matrix that makes no sense.
Cairo<cairo_pattern_t> tilesFor(const ContextData& data, const Paint& paint, double alpha);
void fillPath(ContextData& data, const PathData& path, bool evenOdd, const Paint& paint);
void strokePath(ContextData& data, const PathData& path);
void fillRect(ContextData& data, CGRect userRect);
void clipToPath(ContextData& data, const PathData& path, bool evenOdd);
/// Leaves of the clip what a stencil lets through.
void clipToStencil(ContextData& data, raster::Stencil stencil);
/// Answers pixels for a pen: lent ones, or a copy where they are to be as transparent as `alpha`.
Cairo<cairo_surface_t> surfaceOf(const raster::Bitmap& pixels, double alpha);
/// Lays pixels over the canvas at a place, with the state's alpha, blend mode and clip.
void drawPixels(ContextData& data, const raster::Bitmap& pixels, int x, int y);

/// Paints through the pen with the state's blend mode. `shape` puts the path of what is painted on the pen, `paint`
/// paints the pen's source in that shape.
using PenStep = void (*)(cairo_t* cr, const void* info);
struct PenJob {
    raster::PixelRect touched;
    const void* info = nullptr;
    PenStep source = nullptr;
    PenStep outline = nullptr; // makes the path
    PenStep paint = nullptr; // fill or stroke
    bool clipsToShape
        = true; // whether the outline bounds the paint, so that it can stand as a clip
    const raster::Color* color = nullptr; // where the source is nothing but a colour
    ShapeKey* key = nullptr; // what the shape is remembered by; null when it is not
};
void runJob(ContextData& data, const PenJob& job);
/// Answers whether a job's shape is small and plain enough to be remembered.
bool canBeRemembered(const PenJob& job, const GraphicsState& state);
/// The same, by a remembered stencil where there can be one.
void paintShape(ContextData& data, const PenJob& job);
/// Lays the shadow of a job, or of pixels at a place, where the state has one.
void castShadow(ContextData& data, const PenJob& job);
void castShadow(ContextData& data, const raster::Bitmap& pixels, int x, int y);
/// Answers where something can lie to show inside the clip, itself or by its shadow.
raster::PixelRect rectThatShows(const ContextData& data);

/// No shadows in its scope.
class ShadowPause {
public:
    explicit ShadowPause(GraphicsState& state)
        : state_(state)
        , kept_(std::exchange(state.shadow.paints, false))
    {
    }
    ~ShadowPause() { state_.shadow.paints = kept_; }
    ShadowPause(const ShadowPause&) = delete;
    ShadowPause& operator=(const ShadowPause&) = delete;

private:
    GraphicsState& state_;
    bool kept_;
};

/// Answers whether rectangles can be written straight into the pixels.
inline bool paintsDirectly(const GraphicsState& state)
{
    return !state.clipShapes && !state.shadow.paints && state.ring == FocusRing::none
        && state.smoothEdges()
        && (state.blend == kCGBlendModeNormal || state.blend == kCGBlendModeCopy);
}

inline raster::Blend directBlend(const GraphicsState& state)
{
    return state.blend == kCGBlendModeCopy ? raster::Blend::copy : raster::Blend::over;
}

cairo_operator_t operatorFor(CGBlendMode mode);
/// Answers whether a transform can be given to a pen without spoiling it.
bool isUsable(const CGAffineTransform& transform);
cairo_matrix_t matrixFrom(const CGAffineTransform& transform);

void beginLayer(ContextData& data, raster::PixelRect box);
void endLayer(ContextData& data);

}
