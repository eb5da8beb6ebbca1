// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <exception>

#include "../CGBitmapContext.h"
#include "../ContextState.h"
#include "CALayerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// A picture of a layer's own drawing is no larger than this on a side.
    constexpr double kMostPixels = 8192;

    Ref<CGImage> imageOf(NSObject* contents)
    {
        if (!contents)
            return nullptr;
        if (contents->isKindOfClass(CGImage::cls()))
            return static_cast<CGImage*>(contents);
        constexpr SEL sel = selector<"CGImageForProposedRect:context:hints:">;
        if (!contents->respondsToSelector(sel))
            return nullptr;
        return contents->send<"CGImageForProposedRect:context:hints:", Ref<CGImage>>(
            static_cast<CGRect*>(nullptr), static_cast<NSObject*>(nullptr),
            static_cast<NSDictionary*>(nullptr));
    }

    /// Answers a colour's parts as they are with another alpha.
    Ref<CGColor> faded(CGColor* color, double alpha)
    {
        return Ref<CGColor>::adopt(
            CGColorCreateCopyWithAlpha(color, CGColorGetAlpha(color) * alpha));
    }

    bool paints(const Ref<CGColor>& color) { return color && color->alpha() > 0; }

    bool isDrawable(CGRect rect)
    {
        return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y)
            && std::isfinite(rect.size.width) && std::isfinite(rect.size.height);
    }

    void addOutline(CGContextRef context, CGRect rect, CGFloat radius)
    {
        const CGFloat limit = std::min(CGRectGetWidth(rect), CGRectGetHeight(rect)) / 2;
        const CGFloat bounded = std::min(radius, limit);
        CGContextBeginPath(context);
        if (!(bounded > 0)) {
            CGContextAddRect(context, rect);
            return;
        }
        const auto path
            = Ref<CGPath>::adopt(CGPathCreateWithRoundedRect(rect, bounded, bounded, nullptr));
        CGContextAddPath(context, path.get());
    }

    void fillGround(CGContextRef context, const LayerValues& v)
    {
        if (!paints(v.backgroundColor))
            return;
        CGContextSetFillColorWithColor(context, v.backgroundColor.get());
        if (!(v.cornerRadius > 0)) {
            CGContextFillRect(context, v.bounds);
            return;
        }
        addOutline(context, v.bounds, v.cornerRadius);
        CGContextFillPath(context);
    }

    void drawBorder(CGContextRef context, const LayerValues& v)
    {
        if (!(v.borderWidth > 0) || !paints(v.borderColor))
            return;
        const CGRect inner = CGRectInset(v.bounds, v.borderWidth, v.borderWidth);
        CGContextSetFillColorWithColor(context, v.borderColor.get());
        addOutline(context, v.bounds, v.cornerRadius);
        const auto path = Ref<CGPath>::adopt(CGContextCopyPath(context));
        if (!CGRectIsEmpty(inner)) {
            addOutline(context, inner, std::max(v.cornerRadius - v.borderWidth, 0.0));
            CGContextAddPath(context, path.get());
        }
        CGContextEOFillPath(context);
    }

    // ---- pictures

    struct Alignment {
        double x; // 0 left, 1 right
        double y; // 0 bottom, 1 top
    };

    /// Answers where contents lie that keep their size.
    Alignment alignmentOf(NSString* gravity)
    {
        const auto is = [gravity](NSString* name) { return gravity->isEqual(name); };
        Alignment place { 0.5, 0.5 };
        if (is(kCAGravityLeft) || is(kCAGravityTopLeft) || is(kCAGravityBottomLeft))
            place.x = 0;
        if (is(kCAGravityRight) || is(kCAGravityTopRight) || is(kCAGravityBottomRight))
            place.x = 1;
        if (is(kCAGravityBottom) || is(kCAGravityBottomLeft) || is(kCAGravityBottomRight))
            place.y = 0;
        if (is(kCAGravityTop) || is(kCAGravityTopLeft) || is(kCAGravityTopRight))
            place.y = 1;
        return place;
    }

    CGRect placeFor(const LayerValues& v, CGSize size)
    {
        const CGRect& b = v.bounds;
        NSString* const gravity = v.contentsGravity.get();
        const bool fits = gravity->isEqual(kCAGravityResizeAspect);
        const bool fills = gravity->isEqual(kCAGravityResizeAspectFill);
        if (gravity->isEqual(kCAGravityResize))
            return b;
        if ((fits || fills) && size.width > 0 && size.height > 0) {
            const double x = b.size.width / size.width;
            const double y = b.size.height / size.height;
            const double scale = fits ? std::min(x, y) : std::max(x, y);
            size = { size.width * scale, size.height * scale };
        }
        const Alignment place = alignmentOf(gravity);
        return { { b.origin.x + (b.size.width - size.width) * place.x,
                     b.origin.y + (b.size.height - size.height) * place.y },
            size };
    }

    Ref<CGImage> partOf(const Ref<CGImage>& image, CGRect part)
    {
        if (part == CGRect { { 0, 0 }, { 1, 1 } })
            return image;
        const auto width = static_cast<double>(image->width());
        const auto height = static_cast<double>(image->height());
        return Ref<CGImage>::adopt(CGImageCreateWithImageInRect(image.get(),
            { { part.origin.x * width, part.origin.y * height },
                { part.size.width * width, part.size.height * height } }));
    }

    void drawPicture(CGContextRef context, const LayerValues& v, bool flipped)
    {
        const Ref<CGImage> whole = imageOf(v.contents.get());
        const Ref<CGImage> image = whole ? partOf(whole, v.contentsRect) : nullptr;
        if (!image)
            return;
        const double scale = v.contentsScale > 0 ? v.contentsScale : 1;
        const CGRect place = placeFor(v,
            { static_cast<double>(image->width()) / scale,
                static_cast<double>(image->height()) / scale });
        CGContextSaveGState(context);
        if (flipped) // pictures stand upright whichever way y goes
            CGContextConcatCTM(
                context, { 1, 0, 0, -1, 0, v.bounds.origin.y * 2 + v.bounds.size.height });
        CGContextDrawImage(context, place, image.get());
        CGContextRestoreGState(context);
    }

    void drawTree(CALayer& layer, CGContextRef context, quartz::LayerLook look);

}

void LayerAccess::drawContents(CALayer& look, CGContextRef context)
{
    const LayerState& s = state(look);
    if (s.values.contents && !s.ownContents) {
        drawPicture(context, s.values, look.contentsAreFlipped());
        return;
    }
    const quartz::StateScope scope(context);
    CGContextClipToRect(context, s.values.bounds);
    look.drawInContext(context);
}

// ---- one layer in steps

struct quartz::HostedDrawing::Parts {
    Ref<CALayer> layer;
    Ref<CALayer> seen; // with the values that are drawn
    CGContextRef context;
    LayerLook look;
    StateScope scope;
    bool clipsInside = false;
    const int raised = std::uncaught_exceptions();

    Parts(CALayer& drawn, CGContextRef target, LayerLook wanted)
        : layer(&drawn)
        , seen(wanted == LayerLook::shown ? LayerAccess::shown(drawn) : layer)
        , context(target)
        , look(wanted)
        , scope(target)
    {
    }
    const LayerValues& values() const { return LayerAccess::values(*seen); }
    Ref<CALayer> mask() const { return LayerAccess::state(*layer).mask; }

    bool isVisible() const
    {
        const LayerValues& v = values();
        return !v.hidden && v.opacity > 0 && isDrawable(v.bounds);
    }
    void begin()
    {
        const LayerValues& v = values();
        const bool shadows = v.shadowOpacity > 0 && paints(v.shadowColor) && !v.masksToBounds;
        if (shadows) {
            const double points = 1 / quartz::baseScale(context);
            const CGAffineTransform ctm = CGAffineTransformConcat(
                CGContextGetCTM(context), CGAffineTransformMakeScale(points, points));
            const CGSize offset = CGSizeApplyAffineTransform(v.shadowOffset, ctm);
            const double scale = std::sqrt(std::abs(ctm.a * ctm.d - ctm.b * ctm.c));
            CGContextSetShadowWithColor(context, offset, v.shadowRadius * 2 * scale,
                faded(v.shadowColor.get(), static_cast<double>(v.shadowOpacity)).get());
        }
        if (shadows || v.opacity < 1 || mask()) {
            CGContextSetAlpha(context, static_cast<double>(v.opacity));
            CGContextBeginTransparencyLayer(context, nullptr);
        }
        fillGround(context, v);
        if (v.masksToBounds) {
            CGContextSaveGState(context);
            clipsInside = true;
            addOutline(context, v.bounds, v.cornerRadius);
            CGContextClip(context);
        }
        LayerAccess::drawContents(*seen, context);
    }
    void drawSublayers()
    {
        CGContextSaveGState(context);
        CGContextConcatCTM(context, LayerAccess::forSublayers(values()));
        for (const Ref<CALayer>& sublayer : LayerAccess::drawingOrder(*layer))
            drawTree(*sublayer, context, look);
        CGContextRestoreGState(context);
    }
    void finish()
    {
        if (clipsInside)
            CGContextRestoreGState(context);
        drawBorder(context, values());
        if (const Ref<CALayer> shape = mask()) {
            CGContextSetBlendMode(context, kCGBlendModeDestinationIn);
            CGContextBeginTransparencyLayer(context, nullptr);
            drawTree(*shape, context, look);
            CGContextEndTransparencyLayer(context);
        }
    }
};

quartz::HostedDrawing::HostedDrawing(CALayer& layer, CGContextRef context, LayerLook look)
    : parts_(std::make_unique<Parts>(layer, context, look))
{
    if (look == LayerLook::shown)
        LayerAccess::state(layer).wasShown = true;
    if (parts_->isVisible())
        parts_->begin();
    else
        parts_ = nullptr;
}

// The mask's delegate may raise here. Where another one did before, the rest is left out.
quartz::HostedDrawing::~HostedDrawing() noexcept(false)
{
    if (parts_ && std::uncaught_exceptions() == parts_->raised)
        parts_->finish();
}

void quartz::HostedDrawing::drawSublayers()
{
    if (parts_)
        parts_->drawSublayers();
}

namespace {

    void drawTree(CALayer& layer, CGContextRef context, quartz::LayerLook look)
    {
        const LayerDepth depth;
        if (depth.isTooGreat())
            return;
        layer.layoutIfNeeded();
        const Ref<CALayer> seen
            = look == quartz::LayerLook::shown ? LayerAccess::shown(layer) : Ref<CALayer>(&layer);
        const LayerValues& v = LayerAccess::values(*seen);
        if (v.hidden || !(v.opacity > 0))
            return;
        CGContextSaveGState(context);
        CGContextConcatCTM(context, LayerAccess::toSuperlayer(v));
        {
            quartz::HostedDrawing drawing(layer, context, look);
            drawing.drawSublayers();
        }
        CGContextRestoreGState(context);
    }

    /// - toOuter: a layer's coordinates in those of the answer.
    CGRect extentOf(CALayer& layer, quartz::LayerLook look)
    {
        const LayerDepth depth;
        if (depth.isTooGreat())
            return CGRectNull;
        const Ref<CALayer> seen
            = look == quartz::LayerLook::shown ? LayerAccess::shown(layer) : Ref<CALayer>(&layer);
        const LayerValues& v = LayerAccess::values(*seen);
        if (v.hidden || !(v.opacity > 0) || !isDrawable(v.bounds))
            return CGRectNull;
        CGRect extent = v.bounds;
        if (v.masksToBounds)
            return extent;
        const CGAffineTransform inner = LayerAccess::forSublayers(v);
        const std::vector<Ref<CALayer>> sublayers = LayerAccess::state(layer).sublayers;
        for (const Ref<CALayer>& sublayer : sublayers) {
            const CGRect part = extentOf(*sublayer, look);
            if (CGRectIsNull(part))
                continue;
            const Ref<CALayer> shown
                = look == quartz::LayerLook::shown ? LayerAccess::shown(*sublayer) : sublayer;
            const CGAffineTransform out = CGAffineTransformConcat(
                LayerAccess::toSuperlayer(LayerAccess::values(*shown)), inner);
            extent = CGRectUnion(extent, CGRectApplyAffineTransform(part, out));
        }
        if (v.shadowOpacity > 0) {
            const CGFloat reach = v.shadowRadius * 3
                + std::max(std::abs(v.shadowOffset.width), std::abs(v.shadowOffset.height));
            extent = CGRectInset(extent, -reach, -reach);
        }
        return extent;
    }

}

void quartz::drawLayer(CALayer& layer, CGContextRef context, LayerLook look)
{
    const StateScope scope(context);
    drawTree(layer, context, look);
}

CGRect quartz::layerExtent(CALayer& layer, LayerLook look) { return extentOf(layer, look); }

template <> struct CALayer::Methods<struct Drawing> {

    static LayerState& of(CALayer& layer) { return LayerAccess::state(layer); }

    static void setNeedsDisplay(CALayer& self)
    {
        of(self).needsDisplay = true;
        LayerAccess::invalidate(self);
    }
    static void setNeedsDisplayInRect(CALayer& self, CGRect) { self.setNeedsDisplay(); }
    static bool needsDisplay(CALayer& self) { return of(self).needsDisplay; }
    static void displayIfNeeded(CALayer& self)
    {
        if (of(self).needsDisplay)
            self.display();
    }
    static void display(CALayer& self)
    {
        const Ref<CALayer> alive(&self);
        LayerState& state = of(self);
        state.needsDisplay = false;
        const Ref<NSObject> delegate = state.delegate.get();
        if (delegate && delegate->respondsToSelector(selector<"displayLayer:">)) {
            delegate->send<"displayLayer:">(&self);
            return;
        }
        const CGRect bounds = state.values.bounds;
        const double scale = state.values.contentsScale > 0 ? state.values.contentsScale : 1;
        const double width = std::ceil(bounds.size.width * scale);
        const double height = std::ceil(bounds.size.height * scale);
        if (!(width >= 1 && height >= 1 && width <= kMostPixels && height <= kMostPixels))
            return;
        const Ref<CGContext> context
            = quartz::makeContext(static_cast<int>(width), static_cast<int>(height), scale);
        CGContextTranslateCTM(context.get(), -bounds.origin.x, -bounds.origin.y);
        CGContextConcatCTM(context.get(), LayerAccess::flipping(state.values));
        self.drawInContext(context.get());
        state.values.contents = Ref<CGImage>::adopt(CGBitmapContextCreateImage(context.get()));
        state.ownContents = true;
        LayerAccess::invalidate(self);
    }
    static void drawInContext(CALayer& self, CGContextRef context)
    {
        const Ref<NSObject> delegate = of(self).delegate.get();
        if (delegate && delegate->respondsToSelector(selector<"drawLayer:inContext:">))
            delegate->send<"drawLayer:inContext:">(&self, context);
    }
    static void renderInContext(CALayer& self, CGContextRef context)
    {
        if (!context)
            return;
        const LayerState& state = of(self);
        CALayer& model = state.model ? *state.model : self;
        const quartz::StateScope scope(context);
        CGContextConcatCTM(context, LayerAccess::flipping(state.values));
        const auto look = state.model ? quartz::LayerLook::shown : quartz::LayerLook::model;
        if (quartz::LayerHost* const host = of(model).host) {
            host->render(context, look);
            return;
        }
        model.layoutIfNeeded();
        quartz::HostedDrawing drawing(model, context, look);
        drawing.drawSublayers();
    }

    static void setNeedsLayout(CALayer& self) { of(self).needsLayout = true; }
    static bool needsLayout(CALayer& self) { return of(self).needsLayout; }
    static void layoutIfNeeded(CALayer& self)
    {
        if (std::exchange(of(self).needsLayout, false))
            self.layoutSublayers();
    }
    static void layoutSublayers(CALayer& self)
    {
        const Ref<NSObject> delegate = of(self).delegate.get();
        if (delegate && delegate->respondsToSelector(selector<"layoutSublayersOfLayer:">))
            delegate->send<"layoutSublayersOfLayer:">(&self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setNeedsDisplay", imp<setNeedsDisplay> },
            { "setNeedsDisplayInRect:", imp<setNeedsDisplayInRect> },
            { "needsDisplay", imp<needsDisplay> },
            { "displayIfNeeded", imp<displayIfNeeded> },
            { "display", imp<display> },
            { "drawInContext:", imp<drawInContext> },
            { "renderInContext:", imp<renderInContext> },
            { "setNeedsLayout", imp<setNeedsLayout> },
            { "needsLayout", imp<needsLayout> },
            { "layoutIfNeeded", imp<layoutIfNeeded> },
            { "layoutSublayers", imp<layoutSublayers> },
        });
    }
};
BRINDLE_RECORD(CALayer, Drawing)

}
