// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <span>
#include <unordered_set>

#include "NSViewPrivate.h"
#include "appkit/NSViewController.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSArray.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

void ViewAccess::addTrackedViews(NSView& view, std::int64_t difference)
{
    for (NSView* v = &view; v; v = v->superview_)
        v->trackedViews_ += static_cast<std::uint64_t>(difference);
}

// The subviews may live on, held by others; they must not know a superview that has gone.
NSView::~NSView()
{
    for (const Ref<NSView>& view : subviews_) {
        view->superview_ = nullptr;
        view->setNextResponder(nullptr);
    }
    if (nextKeyView_)
        nextKeyView_->previousKeyView_ = nullptr;
    if (previousKeyView_)
        previousKeyView_->nextKeyView_ = nullptr;
    if (tracking_) {
        for (const Ref<NSObject>& area : tracking_->all())
            TrackingAccess::view(static_cast<NSTrackingArea&>(*area)) = nullptr;
    }
}

namespace {

    /// Views as they are now, for a walk whose hooks may change the list. A few, as in the rows of a table, take no memory.
    class ViewsNow {
    public:
        explicit ViewsNow(const std::vector<Ref<NSView>>& views)
        {
            if (views.size() > few_.size())
                many_ = views;
            else
                std::copy(views.begin(), views.end(), few_.begin());
            count_ = views.size();
        }
        std::span<const Ref<NSView>> all() const
        {
            return { count_ > few_.size() ? many_.data() : few_.data(), count_ };
        }

    private:
        std::array<Ref<NSView>, 4> few_;
        std::vector<Ref<NSView>> many_;
        std::size_t count_ = 0;
    };

}

template <> struct NSView::Methods<struct Hierarchy> {

    using Views = std::vector<Ref<NSView>>;

    static Ref<NSWindow> window(NSView& self) { return self.window_; }
    static Ref<NSView> superview(NSView& self) { return self.superview_; }
    static Ref<NSArray> subviews(NSView& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.subviews_.begin(), self.subviews_.end()));
    }

    // ---- moving to a window

    static void willMove(NSView& view, NSWindow* window)
    {
        ControllerAccess::willMove(view, window);
        view.viewWillMoveToWindow(window);
        const ViewsNow inside(view.subviews_);
        for (const Ref<NSView>& subview : inside.all())
            willMove(*subview, window);
    }
    // Every view belongs to the window before the first hook runs.
    static void link(NSView& view, NSWindow* window)
    {
        if (view.window_)
            WindowAccess::forgetView(*view.window_, view);
        view.window_ = window;
        for (const Ref<NSView>& subview : view.subviews_)
            link(*subview, window);
    }
    static void didMove(NSView& view)
    {
        view.viewDidMoveToWindow();
        ControllerAccess::didMove(view);
        const ViewsNow inside(view.subviews_);
        for (const Ref<NSView>& subview : inside.all())
            didMove(*subview);
    }

    // ---- adding and removing

    static std::size_t placeOf(const NSView& self, const NSView* view)
    {
        const auto found = std::find(self.subviews_.begin(), self.subviews_.end(), view);
        return static_cast<std::size_t>(found - self.subviews_.begin());
    }
    static void unlink(NSView& view)
    {
        NSView& parent = *view.superview_;
        ViewAccess::invalidate(parent, view.frame_);
        ViewAccess::addTrackedViews(parent, -static_cast<std::int64_t>(view.trackedViews_));
        view.superview_ = nullptr;
        view.setNextResponder(nullptr);
        const std::size_t place = placeOf(parent, &view);
        if (place < parent.subviews_.size())
            parent.subviews_.erase(parent.subviews_.begin() + static_cast<std::ptrdiff_t>(place));
    }
    static std::size_t placeFor(const NSView& self, NSWindowOrderingMode mode, const NSView* other)
    {
        const std::size_t count = self.subviews_.size();
        const std::size_t found = other ? placeOf(self, other) : count;
        if (mode == NSWindowBelow)
            return found < count ? found : 0;
        return found < count ? found + 1 : count;
    }
    static bool isInside(const NSView* view, const NSView& ancestor)
    {
        while (view && view != &ancestor)
            view = view->superview_;
        return view != nullptr;
    }

    static void add(NSView& self, NSView* lent, NSWindowOrderingMode mode, NSView* other)
    {
        if (!lent || lent == other)
            return;
        if (isInside(&self, *lent))
            raise("NSInvalidArgumentException",
                std::string("*** -[") + class_getName(self.isa_)
                    + " addSubview:]: a view cannot be put into itself");
        const Ref<NSView> alive(&self);
        const Ref<NSView> view(lent);
        const bool stays = view->superview_ == &self;
        if (!stays && view->superview_)
            view->superview_->willRemoveSubview(view.get());
        const bool changesWindow = view->window_ != self.window_;
        if (changesWindow && view->window_)
            WindowAccess::resignInside(*view->window_, *view);
        if (changesWindow)
            willMove(*view, self.window_);
        view->viewWillMoveToSuperview(&self);
        if (view->superview_)
            unlink(*view);
        view->superview_ = &self;
        const auto place = static_cast<std::ptrdiff_t>(placeFor(self, mode, other));
        self.subviews_.insert(self.subviews_.begin() + place, view);
        view->setNextResponder(&self);
        view->resizing_ = nullptr;
        ViewAccess::addTrackedViews(self, static_cast<std::int64_t>(view->trackedViews_));
        if (changesWindow) {
            link(*view, self.window_);
            didMove(*view);
        }
        ViewAccess::invalidate(self, view->frame_);
        ViewAccess::geometryChanged(*view);
        view->viewDidMoveToSuperview();
        self.didAddSubview(view.get());
    }
    static void addSubview(NSView& self, NSView* view)
    {
        self.addSubview_positioned_relativeTo(view, NSWindowAbove, nullptr);
    }
    static void remove(NSView& self)
    {
        if (!self.superview_)
            return;
        const Ref<NSView> alive(&self);
        if (self.window_)
            WindowAccess::resignInside(*self.window_, self);
        const Ref<NSView> parent(self.superview_);
        if (!parent)
            return; // who resigned has taken it away
        parent->willRemoveSubview(&self);
        const bool changesWindow = self.window_ != nullptr;
        if (changesWindow)
            willMove(self, nullptr);
        self.viewWillMoveToSuperview(nullptr);
        if (self.superview_)
            unlink(self);
        if (changesWindow) {
            ViewAccess::geometryChanged(*parent);
            link(self, nullptr);
            didMove(self);
        }
        self.viewDidMoveToSuperview();
    }
    static void replace(NSView& self, NSView* old, NSView* fresh)
    {
        if (!old || old->superview_ != &self || old == fresh)
            return;
        const Ref<NSView> alive(old);
        if (fresh)
            self.addSubview_positioned_relativeTo(fresh, NSWindowAbove, old);
        old->removeFromSuperview();
    }
    static void setSubviews(NSView& self, NSArray* views)
    {
        Views wanted;
        std::unordered_set<const NSView*> stay;
        for (NSView* view : each<NSView>(Ref<NSArray>(views))) {
            wanted.emplace_back(view);
            stay.insert(view);
        }
        const Views present = self.subviews_;
        for (const Ref<NSView>& view : present) {
            if (!stay.contains(view.get()))
                view->removeFromSuperview();
        }
        for (const Ref<NSView>& view : wanted) {
            if (view->superview_ != &self)
                self.addSubview(view.get());
        }
        order(self, wanted);
    }
    /// Puts the subviews among some views first, in the order of those.
    static void order(NSView& self, const Views& wanted)
    {
        Views ordered;
        std::unordered_set<const NSView*> placed;
        const auto place = [&](const Ref<NSView>& view) {
            if (view->superview_ == &self && placed.insert(view.get()).second)
                ordered.push_back(view);
        };
        std::for_each(wanted.begin(), wanted.end(), place);
        std::for_each(self.subviews_.begin(), self.subviews_.end(), place);
        self.subviews_.swap(ordered);
        ViewAccess::invalidate(self, self.bounds_);
    }
    // The function may raise, and change the subviews.
    static void sortSubviews(NSView& self, NSViewComparator compare, void* context)
    {
        const Ref<NSView> alive(&self);
        Views sorted = self.subviews_;
        std::stable_sort(
            sorted.begin(), sorted.end(), [&](const Ref<NSView>& a, const Ref<NSView>& b) {
                return compare(a.get(), b.get(), context) < 0;
            });
        order(self, sorted);
    }

    // ---- relations

    static bool isDescendantOf(NSView& self, NSView* other)
    {
        return other && isInside(&self, *other);
    }
    static Ref<NSView> ancestorSharedWith(NSView& self, NSView* other)
    {
        for (NSView* view = &self; view && other; view = view->superview_) {
            if (isInside(other, *view))
                return view;
        }
        return nullptr;
    }
    static Ref<NSView> opaqueAncestor(NSView& self)
    {
        NSView* view = &self;
        while (!view->isOpaque() && view->superview_)
            view = view->superview_;
        return view;
    }
    static Ref<NSView> enclosingScrollView(NSView& self)
    {
        Class* const wanted = objc_getClass("NSScrollView");
        for (NSView* view = self.superview_; view && wanted; view = view->superview_) {
            if (view->isKindOfClass(wanted))
                return view;
        }
        return nullptr;
    }
    static NSInteger tag(NSView&) { return -1; }
    static Ref<NSView> viewWithTag(NSView& self, NSInteger tag)
    {
        if (self.tag() == tag)
            return &self;
        for (const Ref<NSView>& view : self.subviews_) {
            if (Ref<NSView> found = view->viewWithTag(tag))
                return found;
        }
        return nullptr;
    }

    static void nothing(NSView&) { }
    static void nothingWithView(NSView&, NSView*) { }
    static void nothingWithWindow(NSView&, NSWindow*) { }

    static void table(Builder& t)
    {
        t.methods({
            { "window", imp<window> },
            { "superview", imp<superview> },
            { "subviews", imp<subviews> },
            { "setSubviews:", imp<setSubviews> },
            { "addSubview:", imp<addSubview> },
            { "addSubview:positioned:relativeTo:", imp<add> },
            { "removeFromSuperview", imp<remove> },
            { "removeFromSuperviewWithoutNeedingDisplay", imp<remove> },
            { "replaceSubview:with:", imp<replace> },
            { "sortSubviewsUsingFunction:context:", imp<sortSubviews> },
            { "isDescendantOf:", imp<isDescendantOf> },
            { "ancestorSharedWithView:", imp<ancestorSharedWith> },
            { "opaqueAncestor", imp<opaqueAncestor> },
            { "enclosingScrollView", imp<enclosingScrollView> },
            { "tag", imp<tag> },
            { "viewWithTag:", imp<viewWithTag> },
            { "viewWillMoveToWindow:", imp<nothingWithWindow> },
            { "viewDidMoveToWindow", imp<nothing> },
            { "viewWillMoveToSuperview:", imp<nothingWithView> },
            { "viewDidMoveToSuperview", imp<nothing> },
            { "didAddSubview:", imp<nothingWithView> },
            { "willRemoveSubview:", imp<nothingWithView> },
        });
    }
};
BRINDLE_RECORD(NSView, Hierarchy)

void ViewAccess::takeOut(NSView& view, AllServed& all)
{
    const NSView* const parent = superview(view);
    const auto remove = [&view] { view.removeFromSuperview(); };
    if (!all.serve(remove) && superview(view) == parent)
        all.serve(remove);
}

void ViewAccess::setRootOf(NSView& view, NSWindow* window)
{
    using Hooks = NSView::Methods<struct Hierarchy>;
    Hooks::willMove(view, window);
    Hooks::link(view, window);
    view.setNextResponder(window);
    Hooks::didMove(view);
}

}
