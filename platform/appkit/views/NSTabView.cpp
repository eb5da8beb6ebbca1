// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTabView.h"

#include <algorithm>

#include "CodingPrivate.h"
#include "NSViewPrivate.h"
#include "TabPrivate.h"
#include "appkit/NSFont.h"
#include "appkit/NSWindow.h"
#include "foundation/Exceptions.h"
#include "quartz/layers/AllServedPrivate.h"

namespace brindle {

NSTabView::~NSTabView()
{
    for (const Ref<NSTabViewItem>& item : items_)
        TabAccess::setTabView(*item, nullptr);
}

template <> struct NSTabView::Methods<struct Items> {

    static bool yes(NSTabView&) { return true; }

    // ---- the delegate

    template <Text S> static bool answers(NSTabView& self)
    {
        const Ref<NSObject> delegate = self.delegate();
        return delegate && delegate->respondsToSelector(selector<S>);
    }
    static Ref<NSObject> delegate(NSTabView& self) { return self.delegate_.get(); }
    static void setDelegate(NSTabView& self, NSObject* delegate) { self.delegate_ = delegate; }
    static void countChanged(NSTabView& self)
    {
        tile(self);
        if (answers<"tabViewDidChangeNumberOfTabViewItems:">(self))
            self.delegate()->send<"tabViewDidChangeNumberOfTabViewItems:">(&self);
    }

    // ---- items

    static NSInteger count(NSTabView& self) { return static_cast<NSInteger>(self.items_.size()); }
    static Ref<NSArray> items(NSTabView& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.items_.begin(), self.items_.end()));
    }
    static NSInteger indexOf(NSTabView& self, NSTabViewItem* item)
    {
        const auto found = std::find(self.items_.begin(), self.items_.end(), item);
        return found == self.items_.end() ? NSNotFound : found - self.items_.begin();
    }
    static NSInteger indexOfIdentifier(NSTabView& self, NSObject* identifier)
    {
        for (std::size_t i = 0; identifier && i < self.items_.size(); ++i) {
            const Ref<NSObject> own = self.items_[i]->identifier();
            if (own && own->isEqual(identifier))
                return static_cast<NSInteger>(i);
        }
        return NSNotFound;
    }
    static Ref<NSTabViewItem> itemAt(NSTabView& self, NSInteger index)
    {
        if (index < 0 || index >= count(self))
            raise("NSRangeException", "*** -[NSTabView tabViewItemAtIndex:]: index out of bounds");
        return self.items_[static_cast<std::size_t>(index)];
    }
    static void insert(NSTabView& self, NSTabViewItem* lent, NSInteger index)
    {
        if (!lent)
            return;
        if (!lent->isKindOfClass(NSTabViewItem::cls()) || lent->tabView())
            raise("NSInvalidArgumentException",
                "*** -[NSTabView insertTabViewItem:atIndex:]: not an item that is free");
        if (index < 0 || index > count(self))
            raise("NSRangeException",
                "*** -[NSTabView insertTabViewItem:atIndex:]: index out of bounds");
        const Ref<NSTabViewItem> item(lent);
        self.items_.insert(self.items_.begin() + index, item);
        TabAccess::setTabView(*item, &self);
        if (!self.selected_)
            show(self, item);
        countChanged(self);
    }
    static void add(NSTabView& self, NSTabViewItem* item)
    {
        self.insertTabViewItem_atIndex(item, count(self));
    }
    static void remove(NSTabView& self, NSTabViewItem* lent)
    {
        const NSInteger index = indexOf(self, lent);
        if (index == NSNotFound)
            return;
        const Ref<NSTabView> alive(&self);
        const Ref<NSTabViewItem> item(lent);
        self.items_.erase(self.items_.begin() + index);
        TabAccess::setTabView(*item, nullptr);
        if (self.selected_ == item) {
            const auto next = static_cast<std::size_t>(std::min(index, count(self) - 1));
            show(self, self.items_.empty() ? nullptr : self.items_[next]);
        }
        countChanged(self);
    }

    // ---- selecting

    static Ref<NSTabViewItem> selected(NSTabView& self) { return self.selected_; }
    /// Puts an item's view in the place of the one before.
    static void show(NSTabView& self, const Ref<NSTabViewItem>& item)
    {
        const Ref<NSTabViewItem> old = std::exchange(self.selected_, item);
        AllServed all;
        if (old) {
            TabAccess::setState(*old, NSBackgroundTab);
            const Ref<NSView> view = old->view();
            if (view->superview() == &self)
                ViewAccess::takeOut(*view, all);
        }
        if (item && self.selected_ == item) // or the end of editing in the old one has chosen
            TabAccess::setState(*item, NSSelectedTab);
        tile(self);
        all.end();
    }
    static void select(NSTabView& self, NSTabViewItem* lent)
    {
        if (!lent || self.selected_ == lent)
            return;
        if (indexOf(self, lent) == NSNotFound)
            raise("NSInvalidArgumentException",
                "*** -[NSTabView selectTabViewItem:]: not an item of this view");
        const Ref<NSTabView> alive(&self);
        const Ref<NSTabViewItem> item(lent);
        if (answers<"tabView:shouldSelectTabViewItem:">(self)
            && !self.delegate()->send<"tabView:shouldSelectTabViewItem:", bool>(&self, lent))
            return;
        if (indexOf(self, lent) == NSNotFound)
            return; // the delegate has removed it
        if (answers<"tabView:willSelectTabViewItem:">(self))
            self.delegate()->send<"tabView:willSelectTabViewItem:">(&self, lent);
        if (indexOf(self, lent) == NSNotFound)
            return;
        const Ref<NSWindow> window = self.window();
        const Ref<NSResponder> focus = maybe(window)->firstResponder();
        const bool hadFocus = self.selected_ && focus && focus->isKindOfClass(NSView::cls())
            && cast<NSView>(focus)->isDescendantOf(self.selected_->view().get());
        show(self, item);
        if (self.selected_ != item)
            return;
        if (const Ref<NSView> first = item->initialFirstResponder(); first && hadFocus)
            window->makeFirstResponder(first.get());
        if (answers<"tabView:didSelectTabViewItem:">(self))
            self.delegate()->send<"tabView:didSelectTabViewItem:">(&self, lent);
    }
    static void selectAt(NSTabView& self, NSInteger index)
    {
        self.selectTabViewItem(self.tabViewItemAtIndex(index).get());
    }
    static void selectIdentifier(NSTabView& self, NSObject* identifier)
    {
        const NSInteger index = indexOfIdentifier(self, identifier);
        if (index == NSNotFound)
            raise("NSRangeException",
                "*** -[NSTabView selectTabViewItemWithIdentifier:]: no item has it");
        selectAt(self, index);
    }
    static void selectNear(NSTabView& self, NSInteger index)
    {
        if (index >= 0 && index < count(self))
            selectAt(self, index);
    }
    static void selectFirst(NSTabView& self, NSObject*) { selectNear(self, 0); }
    static void selectLast(NSTabView& self, NSObject*) { selectNear(self, count(self) - 1); }
    static void selectNext(NSTabView& self, NSObject*)
    {
        if (self.selected_)
            selectNear(self, indexOf(self, self.selected_.get()) + 1);
    }
    static void selectPrevious(NSTabView& self, NSObject*)
    {
        if (self.selected_)
            selectNear(self, indexOf(self, self.selected_.get()) - 1);
    }

    // ---- laying out

    static void tile(NSTabView& self)
    {
        self.setNeedsDisplay(true);
        TabAccess::placeTips(self);
        if (!self.selected_)
            return;
        const Ref<NSView> view = self.selected_->view();
        view->setFrame(self.contentRect());
        if (view->superview() != &self)
            self.addSubview(view.get());
    }
    static void resizeSubviews(NSTabView& self, NSSize) { tile(self); }

    // ---- settings

    template <class T, T NSTabView::*Field> static T get(NSTabView& self) { return self.*Field; }
    template <class T, T NSTabView::*Field, T Last> static void set(NSTabView& self, T value)
    {
        if (value > Last || self.*Field == value)
            return;
        self.*Field = value;
        tile(self);
    }
    static Ref<NSFont> font(NSTabView& self)
    {
        if (self.font_)
            return self.font_;
        return NSFont::cls().systemFontOfSize(
            NSFont::cls().systemFontSizeForControlSize(self.size_));
    }
    static void setFont(NSTabView& self, NSFont* font)
    {
        if (font && !font->isKindOfClass(NSFont::cls()))
            raise("NSInvalidArgumentException", "*** -[NSTabView setFont:]: not a font");
        self.font_ = font;
        tile(self);
    }

    // ---- archives

    static void code(const NumberCoding& number, NSTabView& self)
    {
        number("NSTvType"_ns, self.type_, NSNoTabsNoBorder);
        number("NSControlSize"_ns, self.size_, NSControlSizeLarge);
        number("NSAllowTruncatedLabels"_ns, self.truncates_);
        number("NSDrawsBackground"_ns, self.drawsBackground_);
    }
    static void encode(NSTabView& self, NSCoder* coder)
    {
        super<NSTabView, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(items(self).get(), "NSTabViewItems"_ns);
        coder->encodeObject_forKey(self.selected_.get(), "NSSelectedTabViewItem"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSTabView& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSTabView, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        code({ coder, true }, self);
        for (const auto& item : decodeAll<NSTabViewItem>(coder, "NSTabViewItems"_ns)) {
            if (!item->tabView())
                self.addTabViewItem(item.get());
        }
        const Ref<NSTabViewItem> chosen = decode<NSTabViewItem>(coder, "NSSelectedTabViewItem"_ns);
        if (chosen && chosen->tabView() == &self)
            self.selectTabViewItem(chosen.get());
        return made;
    }

    static void table(Builder& t)
    {
        using V = NSTabView;
        t.methods({
            { "isFlipped", imp<yes> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "numberOfTabViewItems", imp<count> },
            { "tabViewItems", imp<items> },
            { "indexOfTabViewItem:", imp<indexOf> },
            { "indexOfTabViewItemWithIdentifier:", imp<indexOfIdentifier> },
            { "tabViewItemAtIndex:", imp<itemAt> },
            { "addTabViewItem:", imp<add> },
            { "insertTabViewItem:atIndex:", imp<insert> },
            { "removeTabViewItem:", imp<remove> },
            { "selectedTabViewItem", imp<selected> },
            { "selectTabViewItem:", imp<select> },
            { "selectTabViewItemAtIndex:", imp<selectAt> },
            { "selectTabViewItemWithIdentifier:", imp<selectIdentifier> },
            { "selectFirstTabViewItem:", imp<selectFirst> },
            { "selectLastTabViewItem:", imp<selectLast> },
            { "selectNextTabViewItem:", imp<selectNext> },
            { "selectPreviousTabViewItem:", imp<selectPrevious> },
            { "resizeSubviewsWithOldSize:", imp<resizeSubviews> },
            { "tabViewType", imp<get<NSTabViewType, &V::type_>> },
            { "setTabViewType:", imp<set<NSTabViewType, &V::type_, NSNoTabsNoBorder>> },
            { "font", imp<font> },
            { "setFont:", imp<setFont> },
            { "controlSize", imp<get<NSControlSize, &V::size_>> },
            { "setControlSize:", imp<set<NSControlSize, &V::size_, NSControlSizeLarge>> },
            { "allowsTruncatedLabels", imp<get<bool, &V::truncates_>> },
            { "setAllowsTruncatedLabels:", imp<set<bool, &V::truncates_, true>> },
            { "drawsBackground", imp<get<bool, &V::drawsBackground_>> },
            { "setDrawsBackground:", imp<set<bool, &V::drawsBackground_, true>> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSTabView, Items)

void TabAccess::itemChanged(NSTabView& view) { NSTabView::Methods<struct Items>::tile(view); }

}
