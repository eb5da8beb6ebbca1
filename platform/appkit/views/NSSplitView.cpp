// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSplitView.h"

#include <algorithm>
#include <cmath>

#include "CodingPrivate.h"
#include "SplitPrivate.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUserDefaults.h"

namespace brindle {

template <> struct NSSplitView::Methods<struct Panes> {

    static constexpr float kPriority = 250;

    // ---- settings

    static bool yes(NSSplitView&) { return true; }
    static bool isVertical(NSSplitView& self) { return self.vertical_; }
    static void setVertical(NSSplitView& self, bool vertical)
    {
        if (std::exchange(self.vertical_, vertical) != vertical)
            self.adjustSubviews();
    }
    static NSSplitViewDividerStyle style(NSSplitView& self) { return self.style_; }
    static void setStyle(NSSplitView& self, NSSplitViewDividerStyle style)
    {
        if (style < NSSplitViewDividerStyleThick || style > NSSplitViewDividerStylePaneSplitter)
            return;
        self.style_ = style;
        self.adjustSubviews();
    }
    static CGFloat thickness(NSSplitView& self)
    {
        return self.style_ == NSSplitViewDividerStyleThin ? 1
            : self.style_ == NSSplitViewDividerStyleThick ? 9
                                                          : 10;
    }
    static Ref<NSObject> delegate(NSSplitView& self) { return self.delegate_.get(); }
    static void setDelegate(NSSplitView& self, NSObject* delegate) { self.delegate_ = delegate; }

    // ---- measures along the split view

    static CGFloat length(NSSplitView& self, NSSize size)
    {
        return self.isVertical() ? size.width : size.height;
    }
    static CGFloat lengthOf(NSSplitView& self, NSView& view)
    {
        const CGFloat size = length(self, view.frame().size);
        return std::isfinite(size) && size > 0 ? size : 0;
    }
    static bool hasRoom(NSSplitView& self, NSView& view)
    {
        return !view.isHidden() && !self.isSubviewCollapsed(&view);
    }
    static std::vector<Ref<NSView>> views(NSSplitView& self)
    {
        std::vector<Ref<NSView>> all;
        for (NSView* view : each<NSView>(self.subviews()))
            all.emplace_back(view);
        return all;
    }
    static bool asksFor(NSSplitView& self, SEL question)
    {
        const Ref<NSObject> delegate = self.delegate();
        return delegate && delegate->respondsToSelector(question);
    }

    // ---- laying out

    static void notify(NSSplitView& self, NSString* name, SEL told)
    {
        const Ref<NSNotification> note
            = NSNotification::cls().notificationWithName_object(name, &self);
        if (asksFor(self, told))
            self.delegate()->performSelector_withObject(told, note.get());
        NSNotificationCenter::cls().defaultCenter()->postNotification(note.get());
    }
    /// Gives each view its frame; sizes are along the split view, in the order of the subviews.
    static void place(NSSplitView& self, const std::vector<CGFloat>& sizes)
    {
        const Ref<NSSplitView> alive(&self);
        notify(self, NSSplitViewWillResizeSubviewsNotification,
            selector<"splitViewWillResizeSubviews:">);
        const std::vector<Ref<NSView>> all = views(self);
        const NSRect bounds = self.bounds();
        CGFloat at = 0;
        bool first = true;
        for (std::size_t i = 0; i < std::min(all.size(), sizes.size()); ++i) {
            if (all[i]->isHidden())
                continue;
            if (!std::exchange(first, false))
                at += self.dividerThickness();
            all[i]->setFrame(self.isVertical()
                    ? NSMakeRect(NSMinX(bounds) + at, NSMinY(bounds), sizes[i], bounds.size.height)
                    : NSMakeRect(NSMinX(bounds), NSMinY(bounds) + at, bounds.size.width, sizes[i]));
            at += sizes[i];
        }
        self.setNeedsDisplay(true);
        save(self);
        notify(self, NSSplitViewDidResizeSubviewsNotification,
            selector<"splitViewDidResizeSubviews:">);
    }
    static float priorityOf(NSSplitView& self, const NSView* view)
    {
        for (const auto& [known, priority] : self.priorities_) {
            if (known == view)
                return priority;
        }
        return kPriority;
    }
    static void adjust(NSSplitView& self)
    {
        if (self.adjusting_)
            return;
        self.adjusting_ = true;
        struct Done {
            bool& flag;
            ~Done() { flag = false; }
        } done { self.adjusting_ };
        const Ref<NSSplitView> alive(&self);
        const std::vector<Ref<NSView>> all = views(self);
        std::vector<splits::Pane> panes;
        CGFloat dividers = -self.dividerThickness();
        for (const Ref<NSView>& view : all) {
            if (!view->isHidden())
                dividers += self.dividerThickness();
            if (!hasRoom(self, *view))
                continue;
            bool fixed = false;
            if (asksFor(self, selector<"splitView:shouldAdjustSizeOfSubview:">))
                fixed = !self.delegate()->send<"splitView:shouldAdjustSizeOfSubview:", bool>(
                    &self, view.get());
            panes.push_back({ lengthOf(self, *view), priorityOf(self, view.get()), fixed });
        }
        splits::share(panes, length(self, self.bounds().size) - std::max(dividers, 0.0));
        std::vector<CGFloat> sizes;
        std::size_t next = 0;
        for (const Ref<NSView>& view : all)
            sizes.push_back(hasRoom(self, *view) && next < panes.size() ? panes[next++].size : 0);
        place(self, sizes);
    }
    static void resizeSubviews(NSSplitView& self, NSSize old)
    {
        if (asksFor(self, selector<"splitView:resizeSubviewsWithOldSize:">))
            self.delegate()->send<"splitView:resizeSubviewsWithOldSize:">(&self, old);
        else
            self.adjustSubviews();
        self.setNeedsDisplay(true);
    }
    static void didAddSubview(NSSplitView& self, NSView* view)
    {
        super<NSSplitView, "didAddSubview:">(self, view);
        self.adjustSubviews();
    }
    static void willRemoveSubview(NSSplitView& self, NSView* view)
    {
        super<NSSplitView, "willRemoveSubview:">(self, view);
        const auto isIt = [view](const auto& entry) { return entry.first == view; };
        std::erase_if(self.priorities_, isIt);
        std::erase_if(self.collapsed_, isIt);
    }

    // ---- collapsing

    static bool isCollapsed(NSSplitView& self, NSView* view)
    {
        return view
            && std::any_of(self.collapsed_.begin(), self.collapsed_.end(),
                [view](const auto& entry) { return entry.first == view; });
    }
    static void setCollapsed(NSSplitView& self, NSView& view, bool collapsed)
    {
        if (self.isSubviewCollapsed(&view) == collapsed)
            return;
        if (collapsed) {
            self.collapsed_.emplace_back(&view, lengthOf(self, view));
            return;
        }
        std::erase_if(self.collapsed_, [&view](const auto& entry) { return entry.first == &view; });
    }

    // ---- saved sizes: a number for each view, -1 for a collapsed one

    static Ref<NSString> key(NSSplitView& self)
    {
        return "NSSplitView Subview Sizes "_ns->stringByAppendingString(self.autosaveName_.get());
    }
    static bool saves(NSSplitView& self) { return maybe(self.autosaveName_)->length() > 0; }
    static void save(NSSplitView& self)
    {
        if (!saves(self))
            return;
        std::vector<Ref<NSObject>> sizes;
        for (const Ref<NSView>& view : views(self))
            sizes.emplace_back(NSNumber::cls().numberWithDouble(
                self.isSubviewCollapsed(view.get()) ? -1 : lengthOf(self, *view)));
        NSUserDefaults::cls().standardUserDefaults()->setObject_forKey(
            makeArray(std::move(sizes)).get(), key(self).get());
    }
    static Ref<NSString> autosaveName(NSSplitView& self) { return self.autosaveName_; }
    static void setAutosaveName(NSSplitView& self, NSString* name)
    {
        self.autosaveName_ = name ? cast<NSString>(name->copy()) : nullptr;
        if (!saves(self))
            return;
        const Ref<NSArray> saved
            = NSUserDefaults::cls().standardUserDefaults()->arrayForKey(key(self).get());
        const std::vector<Ref<NSView>> all = views(self);
        if (!saved || saved->count() != all.size())
            return;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const Ref<NSObject> item = saved->objectAtIndex(i);
            const double size = item->respondsToSelector(selector<"doubleValue">)
                ? item->send<"doubleValue", double>()
                : 0;
            setCollapsed(self, *all[i], size < 0);
            if (size >= 0 && std::isfinite(size))
                all[i]->setFrameSize(self.isVertical()
                        ? NSSize { size, all[i]->frame().size.height }
                        : NSSize { all[i]->frame().size.width, size });
        }
        self.adjustSubviews();
    }

    // ---- holding

    static float holding(NSSplitView& self, NSInteger index)
    {
        const std::vector<Ref<NSView>> all = views(self);
        const auto place = static_cast<std::size_t>(index);
        return index >= 0 && place < all.size() ? priorityOf(self, all[place].get()) : 0;
    }
    static void setHolding(NSSplitView& self, float priority, NSInteger index)
    {
        const std::vector<Ref<NSView>> all = views(self);
        const auto place = static_cast<std::size_t>(index);
        if (index < 0 || place >= all.size() || !std::isfinite(priority))
            return;
        NSView* const view = all[place].get();
        std::erase_if(self.priorities_, [view](const auto& entry) { return entry.first == view; });
        self.priorities_.emplace_back(view, priority);
    }

    // ---- archives

    static void code(const NumberCoding& number, NSSplitView& self)
    {
        number("NSIsVertical"_ns, self.vertical_);
        number("NSDividerStyle"_ns, self.style_, NSSplitViewDividerStylePaneSplitter);
        if (self.style_ < NSSplitViewDividerStyleThick)
            self.style_ = NSSplitViewDividerStyleThick;
    }
    static void encode(NSSplitView& self, NSCoder* coder)
    {
        super<NSSplitView, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.autosaveName_.get(), "NSAutosaveName"_ns);
        coder->encodeConditionalObject_forKey(self.delegate_.get().get(), "NSDelegate"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSSplitView& self, NSCoder* coder)
    {
        self.adjusting_ = true; // until all views are there
        Ref<NSObject> made = super<NSSplitView, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.adjusting_ = false;
        code({ coder, true }, self);
        self.delegate_ = coder->decodeObjectForKey("NSDelegate"_ns);
        self.setAutosaveName(decode<NSString>(coder, "NSAutosaveName"_ns).get());
        return made;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "isVertical", imp<isVertical> },
            { "setVertical:", imp<setVertical> },
            { "dividerStyle", imp<style> },
            { "setDividerStyle:", imp<setStyle> },
            { "dividerThickness", imp<thickness> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "adjustSubviews", imp<adjust> },
            { "isSubviewCollapsed:", imp<isCollapsed> },
            { "resizeSubviewsWithOldSize:", imp<resizeSubviews> },
            { "didAddSubview:", imp<didAddSubview> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "autosaveName", imp<autosaveName> },
            { "setAutosaveName:", imp<setAutosaveName> },
            { "holdingPriorityForSubviewAtIndex:", imp<holding> },
            { "setHoldingPriority:forSubviewAtIndex:", imp<setHolding> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSSplitView, Panes)

}
