// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cmath>

#include "NSApplicationPrivate.h"
#include "NSColor.h"
#include "NSEventPrivate.h"
#include "NSStringDrawing.h"
#include "NSViewPrivate.h"
#include "NSWindowPrivate.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "quartz/CGContext.h"
#include "quartz/CGPath.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr CGFloat kCornerRadius = 6;
    constexpr CGFloat kButtonWidth = 14;
    constexpr CGFloat kButtonHeight = 16;
    constexpr CGFloat kButtonStep = 20;
    constexpr CGFloat kFirstButton = 9;
    constexpr CGFloat kTitleLeft = 74; // clear of the buttons
    constexpr CGFloat kTitleRight = 10;
    constexpr CGFloat kTitleSize = 13;

    struct Shade {
        double red;
        double green;
        double blue;
        double alpha = 1;
    };

    // The frame's own colours, light and dark; everything else comes from the system colours.
    struct Look {
        Shade barTop;
        Shade barBottom;
        Shade barIdle; // of a window that is not main
        Shade line; // below the bar
        Shade border;
        Shade highlight; // just inside the top edge
        Shade title;
        Shade titleIdle;
        Shade disc;
        Shade discIdle;
        Shade glyph;
    };
    constexpr Look kLight {
        { 0.955, 0.957, 0.965 },
        { 0.880, 0.885, 0.900 },
        { 0.955, 0.957, 0.962 },
        { 0.700, 0.710, 0.735 },
        { 0.00, 0.01, 0.04, 0.28 },
        { 1, 1, 1, 0.75 },
        { 0.16, 0.17, 0.20 },
        { 0.55, 0.57, 0.61 },
        { 0.765, 0.775, 0.800 },
        { 0.865, 0.872, 0.885 },
        { 0.30, 0.32, 0.37 },
    };
    constexpr Look kDark {
        { 0.275, 0.282, 0.302 },
        { 0.218, 0.224, 0.243 },
        { 0.185, 0.190, 0.205 },
        { 0.098, 0.102, 0.114 },
        { 0, 0, 0, 0.65 },
        { 1, 1, 1, 0.10 },
        { 0.90, 0.91, 0.93 },
        { 0.54, 0.56, 0.60 },
        { 0.400, 0.412, 0.440 },
        { 0.275, 0.282, 0.300 },
        { 0.86, 0.87, 0.90 },
    };
    // Under the pointer a button takes its own colour.
    constexpr Shade kHovered[3]
        = { { 0.835, 0.290, 0.235 }, { 0.306, 0.447, 0.694 }, { 0.224, 0.545, 0.435 } };
    constexpr Shade kOnColour { 1, 1, 1 };

    const Look& look() { return appkit::appearance() == appkit::Appearance::dark ? kDark : kLight; }
    void fill(CGContext* c, Shade s)
    {
        CGContextSetRGBFillColor(c, s.red, s.green, s.blue, s.alpha);
    }
    void stroke(CGContext* c, Shade s)
    {
        CGContextSetRGBStrokeColor(c, s.red, s.green, s.blue, s.alpha);
    }
    Shade darker(Shade s) { return { s.red * 0.78, s.green * 0.78, s.blue * 0.78, s.alpha }; }
    Shade mixed(Shade a, Shade b, double t)
    {
        return { a.red + (b.red - a.red) * t, a.green + (b.green - a.green) * t,
            a.blue + (b.blue - a.blue) * t, 1 };
    }

    // A rectangle whose upper corners are round.
    void addFrameShape(CGContext* c, NSRect r, CGFloat radius)
    {
        CGContextBeginPath(c);
        CGContextMoveToPoint(c, NSMinX(r), NSMinY(r));
        CGContextAddLineToPoint(c, NSMaxX(r), NSMinY(r));
        CGContextAddArcToPoint(c, NSMaxX(r), NSMaxY(r), NSMidX(r), NSMaxY(r), radius);
        CGContextAddArcToPoint(c, NSMinX(r), NSMaxY(r), NSMinX(r), NSMidY(r), radius);
        CGContextClosePath(c);
    }

}

/// One of the three buttons in a title bar.
class NSWindowFrameButton : public NSView {
    BRINDLE_OBJECT(NSWindowFrameButton, NSView)

public:
    int kind_ = 0; // as NSWindowButton
    bool hovered_ = false;
    bool pressed_ = false;
};

/// Covers a window, draws its frame and background and holds the content view.
class NSWindowFrameView : public NSView {
    BRINDLE_OBJECT(NSWindowFrameView, NSView)

public:
    std::array<Ref<NSWindowFrameButton>, 3> buttons_;
};

template <> struct NSWindowFrameButton::Methods<struct Behaviour> {

    static NSWindow* window(NSWindowFrameButton& self) { return ViewAccess::window(self); }
    static bool isEnabled(NSWindowFrameButton& self)
    {
        static constexpr NSWindowStyleMask needed[]
            = { NSClosableWindowMask, NSMiniaturizableWindowMask, NSResizableWindowMask };
        return window(self) && (WindowAccess::state(*window(self)).style & needed[self.kind_]);
    }

    static void drawGlyph(CGContext* c, int kind, NSPoint m, CGFloat reach)
    {
        CGContextBeginPath(c);
        if (kind == NSWindowCloseButton) {
            CGContextMoveToPoint(c, m.x - reach, m.y - reach);
            CGContextAddLineToPoint(c, m.x + reach, m.y + reach);
            CGContextMoveToPoint(c, m.x - reach, m.y + reach);
            CGContextAddLineToPoint(c, m.x + reach, m.y - reach);
        } else {
            CGContextMoveToPoint(c, m.x - reach - 0.5, m.y);
            CGContextAddLineToPoint(c, m.x + reach + 0.5, m.y);
        }
        if (kind == NSWindowZoomButton) {
            CGContextMoveToPoint(c, m.x, m.y - reach - 0.5);
            CGContextAddLineToPoint(c, m.x, m.y + reach + 0.5);
        }
        CGContextStrokePath(c);
    }
    static void drawRect(NSWindowFrameButton& self, NSRect)
    {
        const Ref<CGContext> c = currentCGContext();
        const bool enabled = isEnabled(self);
        const bool live
            = enabled && (self.hovered_ || self.pressed_ || window(self)->isKeyWindow());
        Shade disc = live ? look().disc : look().discIdle;
        Shade glyph = look().glyph;
        if (enabled && (self.hovered_ || self.pressed_)) {
            disc = self.pressed_ ? darker(kHovered[self.kind_]) : kHovered[self.kind_];
            glyph = kOnColour;
        }
        const NSPoint middle { kButtonWidth / 2, kButtonHeight / 2 };
        fill(c.get(), disc);
        CGContextFillEllipseInRect(c.get(), NSMakeRect(middle.x - 6, middle.y - 6, 12, 12));
        if (!live)
            return;
        stroke(c.get(), glyph);
        CGContextSetLineWidth(c.get(), 1.25);
        CGContextSetLineCap(c.get(), kCGLineCapRound);
        drawGlyph(c.get(), self.kind_, middle, 2.25);
    }

    static void setPressed(NSWindowFrameButton& self, bool pressed)
    {
        if (std::exchange(self.pressed_, pressed) != pressed)
            self.setNeedsDisplay(true);
    }
    static void perform(NSWindowFrameButton& self)
    {
        const Ref<NSWindow> target(window(self));
        if (self.kind_ == NSWindowCloseButton)
            maybe(target)->performClose(&self);
        else if (self.kind_ == NSWindowMiniaturizeButton)
            maybe(target)->performMiniaturize(&self);
        else
            maybe(target)->performZoom(&self);
    }
    static void mouseDown(NSWindowFrameButton& self, NSEvent* press)
    {
        if (!isEnabled(self))
            return;
        const Ref<NSView> alive(&self);
        const Ref<NSDate> never = NSDate::cls().distantFuture();
        const Ref<NSApplication> app = NSApplication::cls().sharedApplication();
        bool inside = true;
        for (Ref<NSEvent> event(press); event && event->type() != NSLeftMouseUp;) {
            setPressed(self, inside);
            event = app->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, never.get(), NSEventTrackingRunLoopMode,
                true);
            inside = event
                && NSPointInRect(
                    self.convertPoint_fromView(event->locationInWindow(), nullptr), self.bounds());
        }
        setPressed(self, false);
        if (inside)
            perform(self);
    }
    static bool yes(NSWindowFrameButton&, NSEvent*) { return true; }
    static bool no(NSWindowFrameButton&) { return false; }

    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "acceptsFirstMouse:", imp<yes> },
            { "mouseDownCanMoveWindow", imp<no> },
        });
    }
};
BRINDLE_RECORD(NSWindowFrameButton, Behaviour)

template <> struct NSWindowFrameView::Methods<struct Frame> {

    static const WindowState& of(NSWindowFrameView& self)
    {
        return WindowAccess::state(*ViewAccess::window(self));
    }

    static void drawBar(CGContext* c, NSRect bar, bool active)
    {
        // Rows of one colour: a gradient over 22 points has no more steps than that.
        for (CGFloat y = 0; y < bar.size.height; ++y) {
            fill(c,
                active ? mixed(look().barBottom, look().barTop, y / (bar.size.height - 1))
                       : look().barIdle);
            CGContextFillRect(c, NSMakeRect(NSMinX(bar), NSMinY(bar) + y, bar.size.width, 1));
        }
        fill(c, look().line);
        CGContextFillRect(c, NSMakeRect(NSMinX(bar), NSMinY(bar), bar.size.width, 1));
        fill(c, look().highlight);
        CGContextFillRect(c, NSMakeRect(NSMinX(bar), NSMaxY(bar) - 2, bar.size.width, 1));
    }

    // The longest beginning that fits, with an ellipsis.
    static Ref<NSString> shortened(
        const Ref<NSString>& text, NSDictionary* attributes, CGFloat room)
    {
        if (sizeWithAttributes(text, attributes).width <= room)
            return text;
        const auto cut = [&](NSUInteger length) {
            return text->substringToIndex(length)->stringByAppendingString("…"_ns);
        };
        NSUInteger fits = 0;
        NSUInteger tooLong = text->length();
        while (fits + 1 < tooLong) {
            const NSUInteger middle = (fits + tooLong) / 2;
            if (sizeWithAttributes(cut(middle), attributes).width <= room)
                fits = middle;
            else
                tooLong = middle;
        }
        return cut(fits);
    }

    static void drawTitle(NSWindow& window, NSRect bar, bool active)
    {
        const Ref<NSString> title = window.title();
        if (!title || title->length() == 0)
            return;
        const Shade s = active ? look().title : look().titleIdle;
        const Ref<NSColor> color
            = NSColor::cls().colorWithSRGBRed_green_blue_alpha(s.red, s.green, s.blue, s.alpha);
        const Ref<NSFont> font = NSFont::cls().titleBarFontOfSize(kTitleSize);
        const Ref<NSDictionary> attributes = makeDictionary({ { NSFontAttributeName, font.get() },
            { NSForegroundColorAttributeName, color.get() } });
        const CGFloat room = bar.size.width - kTitleLeft - kTitleRight;
        if (room <= 0)
            return;
        const Ref<NSString> shown = shortened(title, attributes.get(), room);
        const NSSize size = sizeWithAttributes(shown, attributes.get());
        // In the middle of the window, or as near to it as the buttons allow.
        const CGFloat left = std::max(kTitleLeft,
            std::min(NSMidX(bar) - size.width / 2, NSMaxX(bar) - kTitleRight - size.width));
        drawAtPoint_withAttributes(shown,
            { std::round(left), std::round(NSMidY(bar) - size.height / 2) }, attributes.get());
    }

    static void drawRect(NSWindowFrameView& self, NSRect rect)
    {
        if (!ViewAccess::window(self))
            return;
        NSWindow& window = *ViewAccess::window(self);
        const WindowState& state = of(self);
        const Ref<NSColor> background = window.backgroundColor();
        const Ref<CGContext> c = currentCGContext();
        const NSRect whole { {}, state.frame.size };
        if (!WindowAccess::hasBar(state.style)) {
            background->set();
            NSRectFill(rect);
            if (state.style & NSDocModalWindowMask) {
                stroke(c.get(), look().border);
                CGContextStrokeRectWithWidth(c.get(), NSInsetRect(whole, 0.5, 0.5), 1);
            }
            return;
        }
        const NSRect bar
            = NSMakeRect(0, whole.size.height - kTitleBarHeight, whole.size.width, kTitleBarHeight);
        const bool active = window.isMainWindow() || window.isKeyWindow();
        const CGFloat radius = state.zoomed ? 0 : kCornerRadius;
        {
            const GraphicsStateGuard saved;
            if (NSIntersectsRect(rect, bar)) {
                addFrameShape(c.get(), whole, radius);
                CGContextClip(c.get());
            }
            background->set();
            NSRectFill(rect);
            if (NSIntersectsRect(rect, bar)) {
                drawBar(c.get(), bar, active);
                drawTitle(window, bar, active);
            }
        }
        stroke(c.get(), look().border);
        CGContextSetLineWidth(c.get(), 1);
        addFrameShape(c.get(), NSInsetRect(whole, 0.5, 0.5), radius > 0 ? radius - 0.5 : 0);
        CGContextStrokePath(c.get());
    }

    static void placeButtons(NSWindowFrameView& self)
    {
        const NSSize size = self.bounds().size;
        const NSWindow* window = ViewAccess::window(self);
        const NSWindowStyleMask style = window ? WindowAccess::state(*window).style : 0;
        const bool shown = WindowAccess::hasBar(style)
            && (style
                & (NSClosableWindowMask | NSMiniaturizableWindowMask | NSResizableWindowMask));
        for (std::size_t i = 0; i < self.buttons_.size(); ++i) {
            Ref<NSWindowFrameButton>& button = self.buttons_[i];
            if (!button && shown) {
                button = cast<NSWindowFrameButton>(alloc<NSWindowFrameButton>()->initWithFrame({}));
                button->kind_ = static_cast<int>(i);
                self.addSubview(button.get());
            }
            if (!button)
                continue;
            button->setHidden(!shown);
            button->setFrame(NSMakeRect(kFirstButton + static_cast<CGFloat>(i) * kButtonStep,
                size.height - (kTitleBarHeight + kButtonHeight) / 2, kButtonWidth, kButtonHeight));
        }
    }
    static void setFrameSize(NSWindowFrameView& self, NSSize size)
    {
        super<NSWindowFrameView, "setFrameSize:">(self, size);
        placeButtons(self);
    }
    static void viewDidMoveToWindow(NSWindowFrameView& self) { placeButtons(self); }

    // The window draws all of its background with one colour: where that is opaque, nothing shows through.
    static bool isOpaque(NSWindowFrameView& self)
    {
        return ViewAccess::window(self) && of(self).opaque && !WindowAccess::isTitled(of(self));
    }
    static bool mouseDownCanMoveWindow(NSWindowFrameView&) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "setFrameSize:", imp<setFrameSize> },
            { "viewDidMoveToWindow", imp<viewDidMoveToWindow> },
            { "isOpaque", imp<isOpaque> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
        });
    }
};
BRINDLE_RECORD(NSWindowFrameView, Frame)

Ref<NSView> makeFrameView(NSWindow&, NSRect frame)
{
    return alloc<NSWindowFrameView>()->initWithFrame(frame);
}

void frameLookChanged(NSWindow& window)
{
    const WindowState& state = WindowAccess::state(window);
    if (!WindowAccess::isTitled(state))
        return;
    const NSSize size = state.frame.size;
    WindowAccess::addDamage(
        window, NSMakeRect(0, size.height - kTitleBarHeight, size.width, kTitleBarHeight));
}

void framePointerMoved(NSWindow& window, bool inside)
{
    const WindowState& state = WindowAccess::state(window);
    auto& frame = static_cast<NSWindowFrameView&>(*state.frameView);
    for (const Ref<NSWindowFrameButton>& button : frame.buttons_) {
        if (!button || button->isHidden())
            continue;
        const bool over = inside && NSPointInRect(state.pointer, button->frame());
        if (std::exchange(button->hovered_, over) != over)
            button->setNeedsDisplay(true);
    }
}

}
