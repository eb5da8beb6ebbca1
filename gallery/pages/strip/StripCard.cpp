// SPDX-License-Identifier: Apache-2.0
#include "StripCard.h"

#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
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
    // A point narrower: the change to the wanted frame is what makes the strip feel the pointer.
    static NSRect startingFrame(StripCard& self)
    {
        NSRect frame = wantedFrame(self);
        frame.size.width -= 1;
        return frame;
    }
    static void open(StripCard& self)
    {
        const NSWindowStyleMask style = self.overlay_ ? NSWindowStyleMask { NSBorderlessWindowMask }
                                                      : NSTitledWindowMask | NSClosableWindowMask;
        self.sample_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            startingFrame(self), style, NSBackingStoreBuffered, true);
        self.sample_->setContentView(make<StripContent>().get());
        self.strip_ = make<GWThemeFrameView>();
        self.strip_->setBackgroundColor(palette().sidebar.get());
        self.strip_->setTitlebarOverlay(self.overlay_);
        self.strip_->setTitlebarOverlayHeight(kBand);
        self.strip_->setAdditionalTrackY(kBand);
        self.sample_->contentView()->superview()->addSubview(self.strip_.get());
        self.sample_->setFrame_display(wantedFrame(self), false);
        self.window()->addChildWindow_ordered(self.sample_.get(), NSWindowAbove);
    }
    static void close(StripCard& self)
    {
        if (self.sample_)
            self.sample_->close();
        self.sample_ = nullptr;
        self.strip_ = nullptr;
    }
    static void openAnew(StripCard& self)
    {
        close(self);
        if (self.window() && self.bounds().size.height > 150)
            open(self);
    }

    static void viewWillMoveToWindow(StripCard& self, NSWindow*) { close(self); }
    static void viewDidMoveToWindow(StripCard& self) { openAnew(self); }
    static void setFrameSize(StripCard& self, NSSize size)
    {
        super<StripCard, "setFrameSize:">(self, size);
        openAnew(self);
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
