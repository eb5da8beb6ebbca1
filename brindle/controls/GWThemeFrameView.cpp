// SPDX-License-Identifier: Apache-2.0
#include "GWThemeFrameView.h"

#include "GWOverlayHoverView.h"
#include "VLImageView.h"
#include "appkit/NSAnimationContext.h"
#include "appkit/NSButton.h"
#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSTrackingArea.h"
#include "appkit/NSWindow.h"
#include "foundation/NSLog.h"
#include "foundation/NSNotificationCenter.h"
#include "quartz/layers/CAMediaTimingFunction.h"
#include "runtime/Table.h"
#include "viewkit/NSView+MovingAndSizing.h"

#include <cmath>

namespace brindle {

template <> struct GWThemeFrameView::Methods<struct Strip> {

    static constexpr double kTitleBarHeight = 22;
    static constexpr double kInset = 8; // of widgets and close button from the left
    static constexpr double kFadeSeconds = 0.2356;

    static Ref<NSView> initWithFrame(GWThemeFrameView& self, NSRect frame)
    {
        if (!super<GWThemeFrameView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.setCustomWindowWidgets(true);
        self.setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
        const Ref<NSImage> widgets = NSImage::cls().imageNamed("minimalWidgets.png"_ns);
        self.minimalWidgetsView_ = cast<VLImageView>(alloc<VLImageView>()->initWithFrame({}));
        self.minimalWidgetsView_->setImage(widgets.get());
        self.minimalWidgetsView_->setFrameSize(maybe(widgets)->size());
        self.setAdditionalTitleBarHeight(0);
        self.setAdditionalTrackY(0);
        return &self;
    }
    // A method of its own: what a host exchanges here reaches no other view.
    static void drawRect(GWThemeFrameView& self, NSRect dirty)
    {
        super<GWThemeFrameView, "drawRect:">(self, dirty);
    }
    static bool mouseDownCanMoveWindow(GWThemeFrameView&) { return true; }
    static Ref<NSView> themeFrameView(GWThemeFrameView& self) { return self.superview(); }

    // ---- its place

    static void viewWillMoveToSuperview(GWThemeFrameView& self, NSView* superview)
    {
        const double height = self.additionalTitleBarHeight() + kTitleBarHeight;
        const NSRect outer = superview ? superview->frame() : NSRect {};
        self.setFrame(NSMakeRect(0, NSMaxY(outer) - height, outer.size.width, height));
    }

    static void placeWidgets(GWThemeFrameView& self, double windowHeight)
    {
        VLImageView& widgets = *self.minimalWidgetsView_;
        constexpr double kFromTop = 5;
        setFrameOriginX(widgets, kInset);
        setFrameOriginY(widgets, windowHeight - frameSizeHeight(widgets) - kFromTop);
        widgets.setAutoresizingMask(NSViewMaxXMargin | NSViewMinYMargin);
        widgets.setBackgroundColor(self.backgroundColor().get());
        widgets.setImageAlpha(0.62);
        maybe(self.themeFrameView())->addSubview(&widgets);
    }
    static double trackedDepth(double stripHeight)
    {
        double depth = stripHeight;
        for (int i = 0; i < 4; ++i)
            depth *= 1.6180339887;
        return std::round(static_cast<float>(depth));
    }
    static void viewDidMoveToWindow(GWThemeFrameView& self)
    {
        const double windowHeight = maybe(self.window())->frame().size.height;
        setFrameOriginY(self, windowHeight - frameSizeHeight(self));
        if (self.customWindowWidgets())
            placeWidgets(self, windowHeight);
        if (!self.titlebarOverlay() && !self.customWindowWidgets())
            return;
        if (self.additionalTrackY() == 0)
            self.setAdditionalTrackY(trackedDepth(frameSizeHeight(self)));
        self.setUpTitleBarOverlayHover();
    }

    // ---- the zone

    static void addCloseButton(GWThemeFrameView& self, GWOverlayHoverView& overlay)
    {
        self.closeButton_ = NSWindow::cls().standardWindowButton_forStyleMask(
            NSWindowCloseButton, NSTitledWindowMask);
        if (!self.closeButton_)
            return;
        NSRect place = self.closeButton_->frame();
        const double middle = NSMaxY(overlay.bounds()) - overlay.opaqueHeight() * 0.5;
        place.origin = { kInset, std::round(static_cast<float>(middle - place.size.height * 0.5)) };
        self.closeButton_->setFrame(place);
        self.closeButton_->setEnabled(true);
        overlay.addSubview(self.closeButton_.get());
    }
    static void makeOverlay(GWThemeFrameView& self)
    {
        const Ref<NSWindow> window = self.window();
        NSRect zone = self.frame();
        zone.origin.y -= self.additionalTrackY();
        zone.size.height += self.additionalTrackY();
        zone = maybe(maybe(window)->contentView())
                   ->convertRect_fromView(zone, self.superview().get());
        const auto overlay
            = cast<GWOverlayHoverView>(alloc<GWOverlayHoverView>()->initWithFrame(zone));
        self.setOverlayHoverView(overlay.get());
        overlay->setAutoresizingMask(self.autoresizingMask());
        overlay->setTitlebarOverlayHeight(self.titlebarOverlayHeight());
        if (self.titlebarOverlay()) {
            overlay->setTitlebarOverlay(true);
            overlay->setTitlebarOverlayHeight(self.titlebarOverlayHeight());
            overlay->setAlphaValue(0);
        }
        if (!maybe(window)->hasTitleBar())
            addCloseButton(self, *overlay);
    }
    static void trackAnew(GWThemeFrameView& self)
    {
        if (maybe(self.window())->inLiveResize())
            return;
        const Ref<GWOverlayHoverView> overlay = self.overlayHoverView();
        if (self.widgetHoverTracking_)
            maybe(overlay)->removeTrackingArea(self.widgetHoverTracking_.get());
        self.widgetHoverTracking_
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(maybe(overlay)->bounds(),
                NSTrackingMouseEnteredAndExited | NSTrackingActiveInActiveApp, &self, nullptr);
        maybe(overlay)->addTrackingArea(self.widgetHoverTracking_.get());
    }
    static void setUpTitleBarOverlayHover(GWThemeFrameView& self)
    {
        if (!self.overlayHoverView())
            makeOverlay(self);
        maybe(self.themeFrameView())
            ->addSubview_positioned_relativeTo(
                self.overlayHoverView().get(), NSWindowAbove, nullptr);
        NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSViewFrameDidChangeNotification, &self, nullptr,
            [strip = Ref<GWThemeFrameView>(&self)](NSNotification*) { trackAnew(*strip); });
    }

    // ---- the pointer

    static void mouseEntered(GWThemeFrameView& self, NSEvent*)
    {
        self.fadeIn(true);
        NSLog("mouseEntered"_ns);
    }
    static void mouseExited(GWThemeFrameView& self, NSEvent*) { self.fadeIn(false); }
    static void fadeIn(GWThemeFrameView& self, bool entering)
    {
        if (self.closeButton_) {
            self.closeButton_->highlight(false);
            // Twice: the button's look changed before and after.
            self.closeButton_->setNeedsDisplay();
            self.closeButton_->setNeedsDisplay();
        }
        const auto contexts = NSAnimationContext::cls();
        contexts.beginGrouping();
        const Ref<NSAnimationContext> group = contexts.currentContext();
        group->setDuration(kFadeSeconds);
        group->setTimingFunction(
            CAMediaTimingFunction::cls()
                .functionWithName(entering ? kCAMediaTimingFunctionEaseIn.get()
                                           : kCAMediaTimingFunctionEaseOut.get())
                .get());
        if (self.customWindowWidgets())
            self.minimalWidgetsView_->animator()->setAlphaValue(entering ? 0 : 1);
        if (self.titlebarOverlay())
            maybe(maybe(self.overlayHoverView())->animator())->setAlphaValue(entering ? 1 : 0);
        contexts.endGrouping();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawRect:", imp<drawRect> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "themeFrameView", imp<themeFrameView> },
            { "viewWillMoveToSuperview:", imp<viewWillMoveToSuperview> },
            { "viewDidMoveToWindow", imp<viewDidMoveToWindow> },
            { "setUpTitleBarOverlayHover", imp<setUpTitleBarOverlayHover> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "fadeIn:", imp<fadeIn> },
        });
        t.properties({
            property<&GWThemeFrameView::customWindowWidgets_>("customWindowWidgets"),
            property<&GWThemeFrameView::overlayHoverView_>("overlayHoverView"),
            property<&GWThemeFrameView::additionalTitleBarHeight_>("additionalTitleBarHeight"),
            property<&GWThemeFrameView::additionalTrackY_>("additionalTrackY"),
            property<&GWThemeFrameView::titlebarOverlay_>("titlebarOverlay"),
            property<&GWThemeFrameView::titlebarOverlayHeight_>("titlebarOverlayHeight"),
        });
    }
};
BRINDLE_RECORD(GWThemeFrameView, Strip)

}
