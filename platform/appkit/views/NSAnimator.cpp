// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAnimator.h"

#include "PropertyMovementPrivate.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "runtime/Table.h"

namespace brindle {

/// Makes what stands for views and windows.
struct Animators {
    static Ref<NSObject> of(NSObject& target)
    {
        Ref<NSAnimator> animator = make<NSAnimator>();
        animator->target_ = &target;
        return animator;
    }
};

namespace {

    MovingNumbers numbers(NSRect r)
    {
        return { r.origin.x, r.origin.y, r.size.width, r.size.height };
    }
    NSRect rect(const MovingNumbers& n) { return { { n[0], n[1] }, { n[2], n[3] } }; }

    template <class T> T& as(NSObject& object) { return static_cast<T&>(object); }

    constexpr MovingProperty kViewAlpha { "alphaValue",
        [](NSObject& o) { return MovingNumbers { as<NSView>(o).alphaValue() }; },
        [](NSObject& o, const MovingNumbers& n) { as<NSView>(o).setAlphaValue(n[0]); } };
    constexpr MovingProperty kViewFrame { "frame",
        [](NSObject& o) { return numbers(as<NSView>(o).frame()); },
        [](NSObject& o, const MovingNumbers& n) { as<NSView>(o).setFrame(rect(n)); } };
    constexpr MovingProperty kViewOrigin { "frameOrigin",
        [](NSObject& o) {
            return numbers({ as<NSView>(o).frame().origin, {} });
        },
        [](NSObject& o, const MovingNumbers& n) {
            as<NSView>(o).setFrameOrigin({ n[0], n[1] });
        } };
    constexpr MovingProperty kViewSize { "frameSize",
        [](NSObject& o) {
            return numbers({ {}, as<NSView>(o).frame().size });
        },
        [](NSObject& o, const MovingNumbers& n) {
            as<NSView>(o).setFrameSize({ n[2], n[3] });
        } };
    constexpr MovingProperty kViewBounds { "bounds",
        [](NSObject& o) { return numbers(as<NSView>(o).bounds()); },
        [](NSObject& o, const MovingNumbers& n) { as<NSView>(o).setBounds(rect(n)); } };
    constexpr MovingProperty kViewBoundsOrigin { kMovingBoundsOrigin,
        [](NSObject& o) {
            return numbers({ as<NSView>(o).bounds().origin, {} });
        },
        [](NSObject& o, const MovingNumbers& n) {
            as<NSView>(o).setBoundsOrigin({ n[0], n[1] });
        } };
    constexpr MovingProperty kWindowAlpha { "alphaValue",
        [](NSObject& o) { return MovingNumbers { as<NSWindow>(o).alphaValue() }; },
        [](NSObject& o, const MovingNumbers& n) { as<NSWindow>(o).setAlphaValue(n[0]); } };
    constexpr MovingProperty kWindowFrame {
        "frame", [](NSObject& o) { return numbers(as<NSWindow>(o).frame()); },
        [](NSObject& o, const MovingNumbers& n) { as<NSWindow>(o).setFrame_display(rect(n), true); }
    };

}

template <> struct NSAnimator::Methods<struct Standing> {

    static NSView* view(NSAnimator& self) { return kind<NSView>(self); }
    static NSWindow* window(NSAnimator& self) { return kind<NSWindow>(self); }
    template <class T> static T* kind(NSAnimator& self)
    {
        NSObject* const target = self.target_.get();
        return target && target->isKindOfClass(T::cls()) ? static_cast<T*>(target) : nullptr;
    }
    static void move(NSAnimator& self, const MovingProperty& property, const MovingNumbers& to)
    {
        const Ref<NSObject> target = self.target_;
        PropertyMovements::move(*target, property, to);
    }

    static void setAlphaValue(NSAnimator& self, CGFloat alpha)
    {
        if (view(self))
            move(self, kViewAlpha, { alpha });
        else if (window(self))
            move(self, kWindowAlpha, { alpha });
    }
    static void setFrame(NSAnimator& self, NSRect frame)
    {
        if (view(self))
            move(self, kViewFrame, numbers(frame));
    }
    static void setFrameOrigin(NSAnimator& self, NSPoint origin)
    {
        if (view(self))
            move(self, kViewOrigin, numbers({ origin, {} }));
        else if (NSWindow* const moved = window(self))
            move(self, kWindowFrame, numbers({ origin, moved->frame().size }));
    }
    static void setFrameSize(NSAnimator& self, NSSize size)
    {
        if (view(self))
            move(self, kViewSize, numbers({ {}, size }));
    }
    static void setBounds(NSAnimator& self, NSRect bounds)
    {
        if (view(self))
            move(self, kViewBounds, numbers(bounds));
    }
    static void setBoundsOrigin(NSAnimator& self, NSPoint origin)
    {
        if (view(self))
            move(self, kViewBoundsOrigin, numbers({ origin, {} }));
    }
    static void setFrameDisplay(NSAnimator& self, NSRect frame, bool)
    {
        if (window(self))
            move(self, kWindowFrame, numbers(frame));
    }
    static void setFrameDisplayAnimate(NSAnimator& self, NSRect frame, bool display, bool)
    {
        setFrameDisplay(self, frame, display);
    }

    static Ref<NSObject> animator(NSAnimator& self) { return &self; }
    static Ref<NSObject> forwardingTarget(NSAnimator& self, SEL) { return self.target_; }
    static bool respondsToSelector(NSAnimator& self, SEL sel)
    {
        return super<NSAnimator, "respondsToSelector:", bool>(self, sel)
            || maybe(self.target_)->respondsToSelector(sel);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "setAlphaValue:", imp<setAlphaValue> },
            { "setFrame:", imp<setFrame> },
            { "setFrameOrigin:", imp<setFrameOrigin> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setBounds:", imp<setBounds> },
            { "setBoundsOrigin:", imp<setBoundsOrigin> },
            { "setFrame:display:", imp<setFrameDisplay> },
            { "setFrame:display:animate:", imp<setFrameDisplayAnimate> },
            { "animator", imp<animator> },
            { "forwardingTargetForSelector:", imp<forwardingTarget> },
            { "respondsToSelector:", imp<respondsToSelector> },
        });
    }
};
BRINDLE_RECORD(NSAnimator, Standing)

template <> struct NSView::Methods<struct Animating> {
    static Ref<NSObject> animator(NSView& self) { return Animators::of(self); }
    static void table(Builder& t) { t.methods({ { "animator", imp<animator> } }); }
};
BRINDLE_RECORD(NSView, Animating)

template <> struct NSWindow::Methods<struct Animating> {
    static Ref<NSObject> animator(NSWindow& self) { return Animators::of(self); }
    static void table(Builder& t) { t.methods({ { "animator", imp<animator> } }); }
};
BRINDLE_RECORD(NSWindow, Animating)

}
