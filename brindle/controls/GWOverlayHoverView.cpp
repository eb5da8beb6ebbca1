// SPDX-License-Identifier: Apache-2.0
#include "GWOverlayHoverView.h"

#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "quartz/layers/CAGradientLayer.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct GWOverlayHoverView::Methods<struct Band> {

    // A method of its own: what a host exchanges here reaches no other view.
    static Ref<NSView> initWithFrame(GWOverlayHoverView& self, NSRect frame)
    {
        return super<GWOverlayHoverView, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void drawRect(GWOverlayHoverView&, NSRect) { }
    static double opaqueHeight(GWOverlayHoverView& self)
    {
        return self.titlebarOverlayHeight() * 0.62;
    }

    static Ref<CGColor> white(CGFloat white, CGFloat alpha)
    {
        return NSColor::cls().colorWithWhite_alpha(white, alpha)->CGColor();
    }
    static Ref<CAGradientLayer> makeBand(NSRect bounds, CGFloat height)
    {
        const Ref<CAGradientLayer> band = make<CAGradientLayer>();
        const Ref<CGColor> grey = white(0.38, 1);
        const Ref<CGColor> black = white(0, 1);
        const Ref<CGColor> clear = white(0, 0);
        band->setColors(makeArray({ grey.get(), black.get(), clear.get() }).get());
        band->setStartPoint({ 0.5, 1 });
        band->setEndPoint({ 0.5, 0 });
        const Ref<NSNumber> first = NSNumber::cls().numberWithFloat(0.2356f);
        const Ref<NSNumber> second = NSNumber::cls().numberWithFloat(0.62f);
        band->setLocations(makeArray({ first.get(), second.get() }).get());
        band->setAutoresizingMask(kCALayerWidthSizable);
        band->setFrame(
            NSMakeRect(NSMinX(bounds), NSMaxY(bounds) - height, bounds.size.width, height));
        return band;
    }
    static void viewWillMoveToSuperview(GWOverlayHoverView& self, NSView*)
    {
        if (!self.titlebarOverlay())
            return;
        self.setWantsLayer(true);
        const Ref<CAGradientLayer> band = makeBand(self.bounds(), self.titlebarOverlayHeight());
        maybe(self.layer())->insertSublayer_atIndex(band.get(), 0);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawRect:", imp<drawRect> },
            { "opaqueHeight", imp<opaqueHeight> },
            { "viewWillMoveToSuperview:", imp<viewWillMoveToSuperview> },
        });
        t.properties({
            property<&GWOverlayHoverView::titlebarOverlay_>("titlebarOverlay"),
            property<&GWOverlayHoverView::titlebarOverlayHeight_>("titlebarOverlayHeight"),
        });
    }
};
BRINDLE_RECORD(GWOverlayHoverView, Band)

}
