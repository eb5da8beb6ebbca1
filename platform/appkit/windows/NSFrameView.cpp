// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cmath>

#include "FrameLookPrivate.h"
#include "NSWindowPrivate.h"
#include "appkit/NSButton.h"
#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/controls/ShortenedTextPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/NSDictionary.h"
#include "quartz/CGContext.h"
#include "quartz/CGPath.h"
#include "runtime/Table.h"

namespace brindle {

using namespace frames;

namespace {

    constexpr CGFloat kCornerRadius = 6;
    constexpr CGFloat kButtonStep = 20;
    constexpr CGFloat kFirstButton = 9;
    constexpr CGFloat kTitleLeft = 74; // clear of the buttons
    constexpr CGFloat kTitleRight = 10;
    constexpr CGFloat kTitleSize = 13;

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

/// Covers a window, draws its frame and background and holds the content view.
class NSWindowFrameView : public NSView {
    BRINDLE_OBJECT(NSWindowFrameView, NSView)

public:
    std::array<Ref<NSButton>, 3> buttons_;
};

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
        const Ref<NSString> shown = controls::shortened(*title, attributes.get(), room);
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
            if (background->alphaComponent() > 0) { // a pass begins with clear pixels
                background->set();
                NSRectFill(rect);
            }
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
            Ref<NSButton>& button = self.buttons_[i];
            if (!button && shown) {
                button = makeFrameButton(static_cast<NSWindowButton>(i));
                self.addSubview(button.get());
            }
            if (!button)
                continue;
            static constexpr NSWindowStyleMask needed[]
                = { NSClosableWindowMask, NSMiniaturizableWindowMask, NSResizableWindowMask };
            button->setEnabled((style & needed[i]) != 0);
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

Ref<NSButton> frameButton(NSWindow& window, NSWindowButton kind)
{
    const auto& frame = static_cast<NSWindowFrameView&>(WindowAccess::frameView(window));
    return kind < frame.buttons_.size() && frame.buttons_[kind] && !frame.buttons_[kind]->isHidden()
        ? frame.buttons_[kind]
        : nullptr;
}

}
