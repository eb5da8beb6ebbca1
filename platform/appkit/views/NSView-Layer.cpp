// SPDX-License-Identifier: Apache-2.0
#include "FlagScopePrivate.h"
#include "NSViewPrivate.h"
#include "PainterPrivate.h"
#include "ViewLayerPrivate.h"
#include "appkit/NSAnimationContext.h"
#include "foundation/NSNull.h"
#include "quartz/layers/CALayer.h"
#include "quartz/layers/CATransaction.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

ViewLayer::ViewLayer(NSView& view, CALayer* layer, bool made)
    : view_(view)
    , layer_(layer)
    , made_(made)
{
    layer_->setDelegate(&view);
    followView();
    quartz::setLayerHost(*layer_, this);
}

void ViewLayer::leave()
{
    if (std::exchange(left_, true))
        return;
    quartz::setLayerHost(*layer_, nullptr);
    layer_->setDelegate(nullptr);
}

void ViewLayer::followView()
{
    const NSRect frame = ViewAccess::frame(view_);
    const CGPoint anchor = layer_->anchorPoint();
    layer_->setBounds(ViewAccess::bounds(view_));
    layer_->setPosition({ frame.origin.x + anchor.x * frame.size.width,
        frame.origin.y + anchor.y * frame.size.height });
    layer_->setGeometryFlipped(view_.isFlipped());
    layer_->setOpacity(static_cast<float>(ViewAccess::alpha(view_)));
}

NSRect ViewLayer::extent(quartz::LayerLook look) const
{
    const CGRect extent = quartz::layerExtent(*layer_, look);
    const NSRect bounds = ViewAccess::bounds(view_);
    return CGRectIsNull(extent) ? bounds : NSUnionRect(extent, bounds);
}

void ViewLayer::mark(NSRect rect)
{
    if (NSView* const above = ViewAccess::superview(view_))
        ViewAccess::invalidate(*above, ViewAccess::toSuperview(view_).apply(rect));
    else
        ViewAccess::invalidate(view_, rect);
}

void ViewLayer::layersChanged()
{
    if (quiet_ || changed_ || !ViewAccess::window(view_) || ViewAccess::isHidden(view_))
        return;
    changed_ = true;
    mark(NSUnionRect(painted_, ViewAccess::bounds(view_)));
}

void ViewLayer::settle()
{
    if (changed_)
        mark(extent(quartz::LayerLook::shown));
}

void ViewLayer::update()
{
    const FlagScope quiet(quiet_);
    view_.updateLayer();
}

void ViewLayer::wasPainted()
{
    changed_ = false;
    painted_ = extent(quartz::LayerLook::shown);
}

void ViewLayer::render(CGContextRef context, quartz::LayerLook look)
{
    const Ref<NSView> alive(&view_);
    const NSRect bounds = ViewAccess::bounds(view_);
    NSRect area = extent(look);
    if (view_.isFlipped()) { // the painter turns the view itself
        const CGFloat middle = NSMinY(bounds) + NSMaxY(bounds);
        CGContextConcatCTM(context, { 1, 0, 0, -1, 0, middle });
        area.origin.y = middle - NSMaxY(area);
    }
    if (ViewAccess::isHidden(view_))
        return;
    Painter painter(context, area, look);
    painter.paintAlone(view_);
    if (painter.raised())
        std::rethrow_exception(painter.raised());
}

template <> struct NSView::Methods<struct Layers> {

    static bool wantsLayer(NSView& self) { return self.layer_ && self.layer_->wanted; }
    static void setWantsLayer(NSView& self, bool wants)
    {
        if (wants == wantsLayer(self))
            return;
        if (!wants) {
            if (self.layer_->wasMade())
                show(self, nullptr, false);
            else
                self.layer_->wanted = false;
            return;
        }
        if (!self.layer_)
            show(self, self.makeBackingLayer().get(), true);
        if (self.layer_)
            self.layer_->wanted = true;
    }
    static Ref<CALayer> layer(NSView& self)
    {
        return self.layer_ ? self.layer_->layer() : Ref<CALayer>();
    }
    static void show(NSView& self, CALayer* layer, bool made)
    {
        if (self.layer_) {
            self.layer_->layersChanged();
            self.layer_->leave();
        }
        const NSViewLayerContentsRedrawPolicy policy = layerContentsRedrawPolicy(self);
        self.layer_ = nullptr;
        if (layer && layer->isKindOfClass(CALayer::cls())) {
            self.layer_ = std::make_shared<ViewLayer>(self, layer, made);
            self.layer_->policy = policy;
        }
        self.setNeedsDisplay(true);
    }
    static void setLayer(NSView& self, CALayer* layer)
    {
        if (self.layer_ && self.layer_->layer() == layer)
            return;
        const bool wanted = wantsLayer(self);
        show(self, layer, false);
        if (self.layer_)
            self.layer_->wanted = wanted;
    }
    static Ref<CALayer> makeBackingLayer(NSView&) { return CALayer::cls().layer(); }

    static bool wantsUpdateLayer(NSView&) { return false; }
    static void updateLayer(NSView&) { }
    static NSViewLayerContentsRedrawPolicy layerContentsRedrawPolicy(NSView& self)
    {
        return self.layer_ ? self.layer_->policy : NSViewLayerContentsRedrawDuringViewResize;
    }
    static void setPolicy(NSView& self, NSViewLayerContentsRedrawPolicy policy)
    {
        if (self.layer_)
            self.layer_->policy = policy;
    }

    // Sublayers with another delegate move by themselves; the view's own layer only where the context says so.
    static Ref<NSObject> actionForLayer(NSView&, CALayer*, NSString*)
    {
        if (NSAnimationContext::cls().currentContext()->allowsImplicitAnimation())
            return nullptr;
        return NSNull::cls().null();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "wantsLayer", imp<wantsLayer> },
            { "setWantsLayer:", imp<setWantsLayer> },
            { "layer", imp<layer> },
            { "setLayer:", imp<setLayer> },
            { "makeBackingLayer", imp<makeBackingLayer> },
            { "wantsUpdateLayer", imp<wantsUpdateLayer> },
            { "updateLayer", imp<updateLayer> },
            { "layerContentsRedrawPolicy", imp<layerContentsRedrawPolicy> },
            { "setLayerContentsRedrawPolicy:", imp<setPolicy> },
            { "actionForLayer:forKey:", imp<actionForLayer> },
        });
        t.properties({
            computed<bool>("wantsLayer", nonatomic),
            computed<Ref<CALayer>>("layer", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSView, Layers)

}
