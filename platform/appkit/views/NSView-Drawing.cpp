// SPDX-License-Identifier: Apache-2.0
#include "NSViewPrivate.h"
#include "PainterPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

NSRect ViewAccess::visibleInWindow(const NSView& view)
{
    NSRect visible = view.bounds_;
    for (const NSView* v = &view; v; v = v->superview_) {
        if (v->hidden_)
            return {};
        visible = toSuperview(*v).apply(NSIntersectionRect(visible, v->bounds_));
        if (NSIsEmptyRect(visible))
            return {};
    }
    return visible;
}

void ViewAccess::invalidate(NSView& view, NSRect rect)
{
    if (!view.window_)
        return;
    NSRect part = rect;
    for (NSView* v = &view; v; v = v->superview_) {
        if (v->hidden_)
            return;
        part = NSIntersectionRect(part, v->bounds_);
        if (NSIsEmptyRect(part))
            return;
        part = toSuperview(*v).apply(part);
    }
    WindowAccess::addDamage(*view.window_, part);
}

void ViewAccess::clearNeedsDisplay(NSView& view)
{
    view.needsDisplay_ = false;
    view.dirty_ = {};
    for (const Ref<NSView>& subview : view.subviews_)
        clearNeedsDisplay(*subview);
}

bool ViewAccess::anyNeedsDisplay(const NSView& view)
{
    if (view.needsDisplay_)
        return true;
    for (const Ref<NSView>& subview : view.subviews_) {
        if (anyNeedsDisplay(*subview))
            return true;
    }
    return false;
}

template <> struct NSView::Methods<struct Drawing> {

    static Ref<NSView> focusView(Class&) { return Focus::current(); }

    static void drawRect(NSView&, NSRect) { }

    static NSRect visibleRect(NSView& self)
    {
        const NSRect visible = ViewAccess::visibleInWindow(self);
        if (NSIsEmptyRect(visible))
            return {};
        return NSIntersectionRect(
            ViewAccess::toWindow(self).inverse().apply(visible), self.bounds_);
    }

    static bool needsDisplay(NSView& self) { return self.needsDisplay_; }
    static void setNeedsDisplayInRect(NSView& self, NSRect rect)
    {
        const NSRect part = NSIntersectionRect(rect, self.bounds_);
        if (NSIsEmptyRect(part))
            return;
        self.dirty_ = self.needsDisplay_ ? NSUnionRect(self.dirty_, part) : part;
        self.needsDisplay_ = true;
        ViewAccess::invalidate(self, part);
    }
    static void setNeedsDisplay(NSView& self, bool needs)
    {
        if (needs)
            self.setNeedsDisplayInRect(self.bounds());
        else
            self.needsDisplay_ = false;
    }
    static void displayRect(NSView& self, NSRect rect)
    {
        if (!self.window_)
            return;
        const Ref<NSView> alive(&self);
        ViewAccess::invalidate(self, rect);
        self.window_->displayIfNeeded();
    }
    static void display(NSView& self) { self.displayRect(self.bounds()); }
    static void displayIfNeeded(NSView& self)
    {
        if (self.window_ && ViewAccess::anyNeedsDisplay(self))
            self.window_->displayIfNeeded();
    }
    static bool canDraw(NSView& self)
    {
        return self.window_ && !self.isHiddenOrHasHiddenAncestor();
    }

    static void lockFocus(NSView& self)
    {
        if (!self.window_)
            raise("NSInternalInconsistencyException",
                "-[NSView lockFocus]: the view is in no window");
        Focus::lock(self);
    }
    static void unlockFocus(NSView& self) { Focus::unlock(self); }

    static void getRects(NSView& self, const NSRect** rects, NSInteger* count)
    {
        const std::span<const NSRect> parts = Focus::partsOf(self);
        if (rects)
            *rects = parts.data();
        if (count)
            *count = static_cast<NSInteger>(parts.size());
    }
    static bool needsToDrawRect(NSView& self, NSRect rect)
    {
        for (const NSRect& part : Focus::partsOf(self)) {
            if (NSIntersectsRect(part, rect))
                return true;
        }
        return false;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "focusView", imp<focusView> } });
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "visibleRect", imp<visibleRect> },
            { "needsDisplay", imp<needsDisplay> },
            { "setNeedsDisplay:", imp<setNeedsDisplay> },
            { "setNeedsDisplayInRect:", imp<setNeedsDisplayInRect> },
            { "display", imp<display> },
            { "displayRect:", imp<displayRect> },
            { "displayIfNeeded", imp<displayIfNeeded> },
            { "canDraw", imp<canDraw> },
            { "lockFocus", imp<lockFocus> },
            { "unlockFocus", imp<unlockFocus> },
            { "getRectsBeingDrawn:count:", imp<getRects> },
            { "needsToDrawRect:", imp<needsToDrawRect> },
        });
    }
};
BRINDLE_RECORD(NSView, Drawing)

}
