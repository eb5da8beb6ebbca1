// SPDX-License-Identifier: Apache-2.0
#include "StripCard.h"

#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kBand = 56;

}

/// What the sample windows show: some lines of something. Not flipped: a strip's zone is placed in its coordinates.
class StripContent : public NSView {
    BRINDLE_OBJECT(StripContent, NSView)
};
template <> struct StripContent::Methods<struct Lines> {
    static void drawRect(StripContent& self, NSRect)
    {
        const NSRect bounds = self.bounds();
        fill(bounds, palette().card.get());
        constexpr double kShares[] = { 0.5, 0.82, 0.7, 0.9, 0.64, 0.78 };
        double y = NSMaxY(bounds) - 88;
        for (const double share : kShares) {
            fillRounded(
                NSMakeRect(28, y, (bounds.size.width - 56) * share, 12), 6, palette().soft.get());
            y -= 30;
        }
    }
    static void table(Builder& t) { t.methods({ { "drawRect:", imp<drawRect> } }); }
};
BRINDLE_RECORD(StripContent, Lines)

template <> struct StripCard::Methods<struct Sample> {

    static NSRect wantedFrame(StripCard& self)
    {
        const NSRect room = inset(self.bodyRect(), 16);
        return self.window()->convertRectToScreen(self.convertRect_toView(room, nullptr));
    }
    static NSWindowStyleMask style(StripCard& self)
    {
        return self.overlay_ ? NSWindowStyleMask { NSBorderlessWindowMask }
                             : NSTitledWindowMask | NSClosableWindowMask;
    }
    static Ref<NSWindow> makeSample(StripCard& self)
    {
        // A point narrower than wanted: the change of the frame is what makes the strip feel the pointer.
        NSRect frame = wantedFrame(self);
        frame.size.width -= 1;
        Ref<NSWindow> sample = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            frame, style(self), NSBackingStoreBuffered, true);
        sample->setContentView(make<StripContent>().get());
        const Ref<GWThemeFrameView> strip = make<GWThemeFrameView>();
        strip->setTitlebarOverlay(self.overlay_);
        strip->setTitlebarOverlayHeight(kBand);
        strip->setAdditionalTrackY(kBand);
        sample->contentView()->superview()->addSubview(strip.get());
        return sample;
    }
    static void leaveWidgets(NSWindow& sample)
    {
        for (NSView* view : each<NSView>(sample.contentView()->superview()->subviews())) {
            if (view->isKindOfClass(GWThemeFrameView::cls()))
                static_cast<GWThemeFrameView*>(view)->fadeIn(false);
        }
    }

    // A strip lives as long as the process: the gallery's window keeps a sample of each kind for the next card.
    static const void* keyOf(StripCard& self)
    {
        static constexpr char keys[2] {};
        return &keys[self.overlay_ ? 1 : 0];
    }
    static void lend(StripCard& self)
    {
        const Ref<NSWindow> window = self.window();
        self.sample_ = cast<NSWindow>(objc_getAssociatedObject(window.get(), keyOf(self)));
        if (!self.sample_)
            self.sample_ = makeSample(self);
        objc_setAssociatedObject(
            window.get(), keyOf(self), nullptr, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }
    static void giveBack(StripCard& self)
    {
        if (!self.sample_)
            return;
        leaveWidgets(*self.sample_);
        self.sample_->close();
        objc_setAssociatedObject(self.window().get(), keyOf(self), self.sample_.get(),
            OBJC_ASSOCIATION_RETAIN_NONATOMIC);
        self.sample_ = nullptr;
    }
    static void place(StripCard& self)
    {
        if (!self.window() || self.bounds().size.height <= 150)
            return giveBack(self);
        if (!self.sample_)
            lend(self);
        self.sample_->setFrame_display(wantedFrame(self), false);
        self.window()->addChildWindow_ordered(self.sample_.get(), NSWindowAbove);
    }

    static void viewWillMoveToWindow(StripCard& self, NSWindow*) { giveBack(self); }
    static void viewDidMoveToWindow(StripCard& self) { place(self); }
    static void setFrameSize(StripCard& self, NSSize size)
    {
        super<StripCard, "setFrameSize:">(self, size);
        place(self);
    }
    static void drawBody(StripCard& self, NSRect body)
    {
        fillRounded(body, 8, palette().grid.get());
        if (!self.sample_)
            return;
        const Ref<NSView> frameView = self.sample_->contentView()->superview();
        for (NSView* view : each<NSView>(frameView->subviews())) {
            if (view->isKindOfClass(GWBackgroundColorView::cls())) // the strip and its widgets
                static_cast<GWBackgroundColorView*>(view)->setBackgroundColor(
                    palette().sidebar.get());
        }
        frameView->setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&StripCard::overlay_>("overlay", nonatomic) });
        t.methods({
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
            { "viewDidMoveToWindow", imp<viewDidMoveToWindow> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(StripCard, Sample)

}
