// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView.h"

#include "NSViewPrivate.h"
#include "SubviewsPrivate.h"
#include "ViewLayerPrivate.h"
#include "appkit/windows/KeyViewsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSView::Methods<struct Basics> {

    static Ref<NSView> initWithFrame(NSView& self, NSRect frame)
    {
        if (!super<NSView, "init", Ref<NSObject>>(self))
            return nullptr;
        self.frame_ = frame;
        self.bounds_.size = frame.size;
        return &self;
    }
    static Ref<NSView> init(NSView& self) { return self.initWithFrame(NSZeroRect); }

    // ---- showing

    static bool isHidden(NSView& self) { return self.hidden_; }

    static void tellHidden(NSView& view, bool hidden)
    {
        if (hidden)
            view.viewDidHide();
        else
            view.viewDidUnhide();
        forSubviews(view, [hidden](NSView& subview) {
            if (!subview.hidden_)
                tellHidden(subview, hidden);
        });
    }
    static void setHidden(NSView& self, bool hidden)
    {
        if (self.hidden_ == hidden)
            return;
        const Ref<NSView> alive(&self);
        self.hidden_ = hidden;
        if (self.superview_)
            ViewAccess::invalidate(*self.superview_, self.frame_);
        ViewAccess::geometryChanged(self);
        if (hidden && self.window_)
            WindowAccess::resignInside(*self.window_, self);
        if (!self.superview_ || !self.superview_->isHiddenOrHasHiddenAncestor())
            tellHidden(self, hidden);
    }
    static bool isHiddenOrHasHiddenAncestor(NSView& self)
    {
        const NSView* view = &self;
        while (view && !view->hidden_)
            view = view->superview_;
        return view != nullptr;
    }
    static CGFloat alphaValue(NSView& self) { return self.alpha_; }
    static void setAlphaValue(NSView& self, CGFloat alpha)
    {
        const CGFloat clamped = alpha >= 1 ? 1 : alpha > 0 ? alpha : 0;
        if (clamped == self.alpha_)
            return;
        self.alpha_ = clamped;
        if (self.layer_)
            self.layer_->followView();
        if (self.superview_)
            ViewAccess::invalidate(*self.superview_, self.frame_);
        else
            ViewAccess::invalidate(self, self.bounds_);
    }
    static bool no(NSView&) { return false; }
    static void nothing(NSView&) { }

    static bool inLiveResize(NSView& self) { return maybe(self.window_)->inLiveResize(); }

    // ---- the order of Tab

    static Ref<NSView> nextKeyView(NSView& self) { return self.nextKeyView_; }
    static Ref<NSView> previousKeyView(NSView& self) { return self.previousKeyView_; }
    static void setNextKeyView(NSView& self, NSView* next)
    {
        if (next == &self)
            next = nullptr;
        if (self.nextKeyView_)
            self.nextKeyView_->previousKeyView_ = nullptr;
        self.nextKeyView_ = next;
        if (!next)
            return;
        if (next->previousKeyView_)
            next->previousKeyView_->nextKeyView_ = nullptr;
        next->previousKeyView_ = &self;
    }
    static bool canBecomeKeyView(NSView& self)
    {
        return self.acceptsFirstResponder() && self.window_ && !self.isHiddenOrHasHiddenAncestor();
    }
    // A loop of views that comes back anywhere ends the search: the links may form any figure.
    template <class Step> static Ref<NSView> search(NSView& self, Step step)
    {
        NSView* slow = &self;
        bool moveSlow = false;
        for (NSView* view = step(&self); view && view != &self; view = step(view)) {
            if (view->canBecomeKeyView())
                return view;
            if (moveSlow)
                slow = step(slow);
            moveSlow = !moveSlow;
            if (view == slow)
                break;
        }
        return self.canBecomeKeyView() ? Ref<NSView>(&self) : Ref<NSView>();
    }
    static bool hasOwnOrder(NSView& self)
    {
        return self.window_ && !keyviews::hasLoop(*self.window_);
    }
    static Ref<NSView> nextValidKeyView(NSView& self)
    {
        if (hasOwnOrder(self))
            return keyviews::inReading(*self.window_, &self, keyviews::Step::on);
        return search(self, [](NSView* view) { return view->nextKeyView_; });
    }
    static Ref<NSView> previousValidKeyView(NSView& self)
    {
        if (hasOwnOrder(self))
            return keyviews::inReading(*self.window_, &self, keyviews::Step::back);
        return search(self, [](NSView* view) { return view->previousKeyView_; });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "init", imp<init> },
            { "isHidden", imp<isHidden> },
            { "setHidden:", imp<setHidden> },
            { "isHiddenOrHasHiddenAncestor", imp<isHiddenOrHasHiddenAncestor> },
            { "alphaValue", imp<alphaValue> },
            { "setAlphaValue:", imp<setAlphaValue> },
            { "isOpaque", imp<no> },
            { "inLiveResize", imp<inLiveResize> },
            { "viewDidHide", imp<nothing> },
            { "viewDidUnhide", imp<nothing> },
            { "viewWillStartLiveResize", imp<nothing> },
            { "viewDidEndLiveResize", imp<nothing> },
            { "viewDidChangeBackingProperties", imp<nothing> },
            { "viewWillDraw", imp<nothing> },
            { "nextKeyView", imp<nextKeyView> },
            { "previousKeyView", imp<previousKeyView> },
            { "setNextKeyView:", imp<setNextKeyView> },
            { "nextValidKeyView", imp<nextValidKeyView> },
            { "previousValidKeyView", imp<previousValidKeyView> },
            { "canBecomeKeyView", imp<canBecomeKeyView> },
        });
        t.properties({
            computed<bool>("hidden", nonatomic, getter("isHidden")),
            computed<CGFloat>("alphaValue", nonatomic),
            property<&NSView::toolTip_>("toolTip", copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(NSView, Basics)

}
