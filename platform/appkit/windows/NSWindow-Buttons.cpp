// SPDX-License-Identifier: Apache-2.0
#include "FrameLookPrivate.h"
#include "NSWindowPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/controls/NSButtonPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/SubviewsPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

using namespace frames;

/// A button that closes, minimises or zooms the window it sits in.
class NSWindowFrameButton : public NSButton {
    BRINDLE_OBJECT(NSWindowFrameButton, NSButton)

public:
    NSWindowButton kind_ = NSWindowCloseButton;
};

template <> struct NSWindowFrameButton::Methods<struct Behaviour> {

    // ---- drawing

    static void drawGlyph(CGContext* c, NSWindowButton kind, NSPoint m, CGFloat reach)
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
        const bool enabled = self.isEnabled();
        const bool pressed = self.isHighlighted();
        const bool pointed = enabled && (pressed || ButtonAccess::isHovered(self));
        const bool live = enabled && (pointed || maybe(self.window())->isKeyWindow());
        Shade disc = live ? look().disc : look().discIdle;
        Shade glyph = look().glyph;
        if (pointed) {
            disc = pressed ? darker(kHovered[self.kind_]) : kHovered[self.kind_];
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

    // ---- what it does; a target of somebody's own gets the action instead

    static bool sendAction(NSWindowFrameButton& self, SEL action, NSObject* target)
    {
        if (target)
            return super<NSWindowFrameButton, "sendAction:to:", bool>(self, action, target);
        const Ref<NSWindow> window = self.window();
        if (!window)
            return false;
        if (self.kind_ == NSWindowCloseButton)
            WindowAccess::closeIfAgreed(*window);
        else if (self.kind_ == NSWindowMiniaturizeButton)
            window->miniaturize(&self);
        else
            window->zoom(&self);
        return true;
    }
    static bool yes(NSWindowFrameButton&, NSEvent*) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "sendAction:to:", imp<sendAction> },
            { "acceptsFirstMouse:", imp<yes> },
        });
    }
};
BRINDLE_RECORD(NSWindowFrameButton, Behaviour)

Ref<NSButton> makeFrameButton(NSWindowButton kind)
{
    static constexpr SEL actions[]
        = { selector<"performClose:">, selector<"performMiniaturize:">, selector<"performZoom:"> };
    Ref<NSWindowFrameButton> button = cast<NSWindowFrameButton>(
        alloc<NSWindowFrameButton>()->initWithFrame(NSMakeRect(0, 0, kButtonWidth, kButtonHeight)));
    button->kind_ = kind;
    button->setTitle(nullptr);
    button->setBordered(false);
    button->setRefusesFirstResponder(true);
    button->setAction(actions[kind]);
    button->setEnabled(false);
    return button;
}

void WindowAccess::keyLookChanged(NSWindow& window)
{
    struct Marking {
        static void mark(NSView& view)
        {
            if (view.isKindOfClass(NSControl::cls()))
                view.setNeedsDisplay(true);
            forSubviews(view, [](NSView& subview) { mark(subview); });
        }
    };
    Marking::mark(frameView(window));
    frameLookChanged(window);
}

template <> struct NSWindow::Methods<struct Buttons> {

    static Ref<NSButton> make(Class&, NSWindowButton kind, NSWindowStyleMask)
    {
        return kind <= NSWindowZoomButton ? makeFrameButton(kind) : nullptr;
    }
    static Ref<NSButton> own(NSWindow& self, NSWindowButton kind)
    {
        return frameButton(self, kind);
    }

    // ---- the button that Return presses

    static Ref<NSButtonCell> defaultCell(NSWindow& self)
    {
        return cast<NSButtonCell>(WindowAccess::state(self).defaultButtonCell.get());
    }
    static void setDefaultCell(NSWindow& self, NSButtonCell* cell)
    {
        if (cell && !cell->isKindOfClass(NSButtonCell::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSWindow setDefaultButtonCell:]: not the cell of a button");
        const Ref<NSButtonCell> before = defaultCell(self);
        if (before == cell)
            return;
        maybe(before)->setKeyEquivalent(nullptr);
        WindowAccess::state(self).defaultButtonCell = cell;
        maybe(cell)->setKeyEquivalent("\r"_ns);
    }
    static void enableDefault(NSWindow& self)
    {
        maybe(defaultCell(self))->setKeyEquivalent("\r"_ns);
    }
    static void disableDefault(NSWindow& self)
    {
        maybe(defaultCell(self))->setKeyEquivalent(nullptr);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "standardWindowButton:forStyleMask:", imp<make> } });
        t.methods({
            { "standardWindowButton:", imp<own> },
            { "defaultButtonCell", imp<defaultCell> },
            { "setDefaultButtonCell:", imp<setDefaultCell> },
            { "enableKeyEquivalentForDefaultButtonCell", imp<enableDefault> },
            { "disableKeyEquivalentForDefaultButtonCell", imp<disableDefault> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Buttons)

}
