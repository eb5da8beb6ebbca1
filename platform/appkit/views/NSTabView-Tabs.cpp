// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "TabPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTabView::Methods<struct Tabs> {

    static constexpr CGFloat kPadding = 12; // beside a label
    static constexpr CGFloat kMargin = 8; // from the box's side to the first tab, at least
    static constexpr CGFloat kBorder = 1;
    static constexpr CGFloat kInset = 6; // from the border to the views
    static constexpr CGFloat kRadius = 6;

    // ---- places; y goes down

    static bool hasTabs(NSTabView& self) { return self.type_ <= NSRightTabsBezelBorder; }
    static bool hasBox(NSTabView& self) { return self.type_ <= NSNoTabsLineBorder; }
    static bool tabsBelow(NSTabView& self) { return self.type_ == NSBottomTabsBezelBorder; }
    /// Answers whether the tabs lie one under the other, beside the box.
    static bool tabsBeside(NSTabView& self)
    {
        return self.type_ == NSLeftTabsBezelBorder || self.type_ == NSRightTabsBezelBorder;
    }
    static CGFloat barHeight(NSTabView& self) { return controls::metricsFor(self.size_).height; }
    static NSRect less(NSRect rect, CGFloat top, CGFloat bottom, CGFloat sides)
    {
        return NSMakeRect(NSMinX(rect) + sides, NSMinY(rect) + top,
            std::max(0.0, rect.size.width - 2 * sides),
            std::max(0.0, rect.size.height - top - bottom));
    }
    /// Tabs above or below lie across the edge of the box, half of them inside; those at a side lie outside.
    static NSRect boxRect(NSTabView& self)
    {
        if (tabsBeside(self)) {
            NSRect box = self.bounds();
            const CGFloat taken = std::min(columnWidth(self) + kInset, box.size.width);
            box.size.width -= taken;
            box.origin.x += self.type_ == NSLeftTabsBezelBorder ? taken : 0;
            return box;
        }
        const CGFloat half
            = hasTabs(self) ? std::floor(barHeight(self) / 2) + controls::kRingRoom : 0;
        return tabsBelow(self) ? less(self.bounds(), 0, half, 0) : less(self.bounds(), half, 0, 0);
    }
    static NSRect contentRect(NSTabView& self)
    {
        if (!hasBox(self))
            return self.bounds();
        const NSRect box = boxRect(self);
        const CGFloat edge = kBorder + (self.type_ == NSNoTabsLineBorder ? 0 : kInset);
        const CGFloat tabs = hasTabs(self) && !tabsBeside(self)
            ? std::ceil(barHeight(self) / 2) + controls::kRingRoom
            : 0;
        return tabsBelow(self) ? less(box, edge, edge + tabs, edge)
                               : less(box, edge + tabs, edge, edge);
    }
    static Ref<NSAttributedString> styled(NSTabView& self, NSTabViewItem& item)
    {
        const bool chosen = self.selected_ == &item;
        const auto ink = chosen && controls::isActive(&self)
            ? NSColor::cls().alternateSelectedControlTextColor()
            : NSColor::cls().controlTextColor();
        const Ref<NSDictionary> look = makeDictionary({ { NSFontAttributeName, self.font().get() },
            { NSForegroundColorAttributeName, ink.get() } });
        return alloc<NSAttributedString>()->initWithString_attributes(
            item.label().get(), look.get());
    }
    static CGFloat widthOf(NSTabView& self, NSTabViewItem& item)
    {
        return controls::sizeOf(styled(self, item).get()).width + 2 * kPadding;
    }
    static CGFloat widestOf(NSTabView& self)
    {
        CGFloat widest = 0;
        for (const Ref<NSTabViewItem>& item : self.items_)
            widest = std::max(widest, widthOf(self, *item));
        return std::ceil(widest);
    }
    /// Answers the width of tabs at a side with the room for their ring: that of the widest, half of the view at most.
    static CGFloat columnWidth(NSTabView& self)
    {
        return std::min(widestOf(self), std::floor(self.bounds().size.width / 2))
            + 2 * controls::kRingRoom;
    }
    /// Tabs at a side begin at the top; too many share the room.
    static std::vector<NSRect> sideTabs(NSTabView& self)
    {
        std::vector<NSRect> rects;
        const NSRect bounds = self.bounds();
        const CGFloat width = columnWidth(self);
        const CGFloat left
            = self.type_ == NSLeftTabsBezelBorder ? NSMinX(bounds) : NSMaxX(bounds) - width;
        const auto count = static_cast<CGFloat>(self.items_.size());
        const CGFloat room = std::max(0.0, bounds.size.height - 2 * kMargin);
        const CGFloat height = std::min(barHeight(self), count > 0 ? room / count : 0);
        for (CGFloat i = 0; i < count; ++i) {
            const CGFloat top = std::round(NSMinY(bounds) + kMargin + i * height);
            const CGFloat end = std::round(NSMinY(bounds) + kMargin + (i + 1) * height);
            rects.push_back(NSMakeRect(left + controls::kRingRoom, top,
                std::max(0.0, width - 2 * controls::kRingRoom), end - top));
        }
        return rects;
    }
    /// Answers where the tabs lie, in the middle; too many share the room.
    static std::vector<NSRect> tabs(NSTabView& self)
    {
        if (tabsBeside(self))
            return sideTabs(self);
        std::vector<NSRect> rects;
        if (!hasTabs(self))
            return rects;
        std::vector<CGFloat> widths;
        CGFloat all = 0;
        for (const Ref<NSTabViewItem>& item : self.items_) {
            widths.push_back(widthOf(self, *item));
            all += widths.back();
        }
        const NSRect bounds = self.bounds();
        const CGFloat room = std::max(0.0, bounds.size.width - 2 * kMargin);
        const CGFloat part = all > room && all > 0 ? room / all : 1;
        const CGFloat height = barHeight(self);
        const CGFloat top = tabsBelow(self) ? NSMaxY(bounds) - height - controls::kRingRoom
                                            : NSMinY(bounds) + controls::kRingRoom;
        CGFloat x = std::round(NSMidX(bounds) - all * part / 2);
        CGFloat exact = x;
        for (const CGFloat width : widths) {
            exact += width * part;
            const CGFloat end = std::round(exact);
            rects.push_back(NSMakeRect(x, top, end - x, height));
            x = end;
        }
        return rects;
    }
    static Ref<NSTabViewItem> itemAtPoint(NSTabView& self, NSPoint point)
    {
        const std::vector<NSRect> rects = tabs(self);
        for (std::size_t i = 0; i < rects.size() && i < self.items_.size(); ++i) {
            if (NSPointInRect(point, rects[i]))
                return self.items_[i];
        }
        return nullptr;
    }
    static NSSize minimumSize(NSTabView& self)
    {
        if (tabsBeside(self))
            return { 2 * widestOf(self),
                static_cast<CGFloat>(self.items_.size()) * barHeight(self) + 2 * kMargin };
        CGFloat width = 2 * kMargin;
        for (const Ref<NSTabViewItem>& item : self.items_)
            width += hasTabs(self) ? widthOf(self, *item) : 0;
        const NSRect content = contentRect(self);
        return { width, self.bounds().size.height - content.size.height };
    }

    // ---- drawing

    static controls::Shade groundShade()
    {
        const double level = controls::isDark() ? 1 : 0;
        return { level, level, level, controls::isDark() ? 0.045 : 0.035 };
    }
    /// Answers the line between a tab and the one before it.
    static NSRect separator(NSTabView& self, NSRect tab)
    {
        constexpr CGFloat kShort = 5; // of the tab's side, at both ends
        const CGFloat hair = controls::pixel();
        return tabsBeside(self)
            ? NSMakeRect(NSMinX(tab) + kShort, NSMinY(tab), tab.size.width - 2 * kShort, hair)
            : NSMakeRect(NSMinX(tab), NSMinY(tab) + kShort, hair, tab.size.height - 2 * kShort);
    }
    static void drawTabs(NSTabView& self)
    {
        const std::vector<NSRect> rects = tabs(self);
        if (rects.empty())
            return;
        const NSRect bar = controls::onPixels(NSUnionRect(rects.front(), rects.back()));
        const CGFloat radius = controls::metricsFor(self.size_).radius;
        const bool active = controls::isActive(&self);
        controls::fillRounded(
            bar, radius, controls::shadeOf(NSColor::cls().windowBackgroundColor()));
        controls::drawBezel(bar, radius, { .active = active });
        const controls::Shade line = controls::shadeOf(NSColor::cls().separatorColor());
        for (std::size_t i = 0; i < rects.size(); ++i) {
            NSTabViewItem& item = *self.items_[i];
            const NSRect tab = controls::onPixels(rects[i]);
            const bool chosen = self.selected_ == &item;
            if (chosen || self.pressed_ == &item)
                controls::drawBezel(tab, radius,
                    { .pressed = self.pressed_ == &item, .accented = chosen, .active = active });
            else if (i > 0 && self.selected_ != self.items_[i - 1])
                controls::fillRounded(separator(self, tab), 0, line);
            controls::drawText(styled(self, item).get(),
                NSInsetRect(tab, std::min(kPadding, tab.size.width / 4), 0), NSTextAlignmentCenter);
        }
        const Ref<NSWindow> window = self.window();
        if (window && window->isKeyWindow() && window->firstResponder() == &self
            && !self.focusedByPointer_)
            controls::drawRing(bar, radius);
    }
    static void drawRect(NSTabView& self, NSRect)
    {
        if (hasBox(self)) {
            const NSRect box = controls::onPixels(boxRect(self));
            const bool line = self.type_ == NSNoTabsLineBorder;
            if (self.drawsBackground_ && !line)
                controls::fillRounded(box, kRadius, groundShade());
            controls::frameRounded(box, line ? 0 : kRadius, controls::pixel(),
                controls::shadeOf(NSColor::cls().separatorColor()));
        }
        drawTabs(self);
    }

    // ---- the user's hand

    static void press(NSTabView& self, const Ref<NSTabViewItem>& item)
    {
        self.pressed_ = item;
        self.setNeedsDisplay(true);
    }
    static void mouseDown(NSTabView& self, NSEvent* event)
    {
        const NSPoint place = maybe(event)->locationInWindow();
        const Ref<NSTabViewItem> item
            = event ? self.tabViewItemAtPoint(self.convertPoint_fromView(place, nullptr)) : nullptr;
        if (!item)
            return super<NSTabView, "mouseDown:">(self, event);
        const Ref<NSTabView> alive(&self);
        press(self, item);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        Ref<NSTabViewItem> under = item;
        for (;;) {
            const Ref<NSEvent> next = application->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, NSDate::cls().distantFuture().get(),
                NSEventTrackingRunLoopMode, true);
            if (!next)
                under = nullptr;
            else
                under = self.tabViewItemAtPoint(
                    self.convertPoint_fromView(next->locationInWindow(), nullptr));
            if (!next || next->type() == NSLeftMouseUp)
                break;
            press(self, under == item ? item : nullptr);
        }
        press(self, nullptr);
        if (under == item && item->tabView() == &self)
            self.selectTabViewItem(item.get());
    }
    static bool acceptsFirstResponder(NSTabView& self)
    {
        return hasTabs(self) && self.items_.size() > 1;
    }
    static bool becomeFirstResponder(NSTabView& self)
    {
        const Ref<NSEvent> cause = NSApplication::cls().sharedApplication()->currentEvent();
        self.focusedByPointer_ = cause && cause->type() == NSLeftMouseDown;
        self.setNeedsDisplay(true);
        return true;
    }
    static bool resignFirstResponder(NSTabView& self)
    {
        self.setNeedsDisplay(true);
        return true;
    }
    static void keyDown(NSTabView& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        const unichar previous = tabsBeside(self) ? NSUpArrowFunctionKey : NSLeftArrowFunctionKey;
        const unichar next = tabsBeside(self) ? NSDownArrowFunctionKey : NSRightArrowFunctionKey;
        const bool ours
            = key == previous || key == next || key == NSHomeFunctionKey || key == NSEndFunctionKey;
        if (ours && std::exchange(self.focusedByPointer_, false))
            self.setNeedsDisplay(true);
        if (key == previous)
            return self.selectPreviousTabViewItem(&self);
        if (key == next)
            return self.selectNextTabViewItem(&self);
        switch (key) {
        case NSHomeFunctionKey:
            return self.selectFirstTabViewItem(&self);
        case NSEndFunctionKey:
            return self.selectLastTabViewItem(&self);
        default:
            super<NSTabView, "keyDown:">(self, event);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "contentRect", imp<contentRect> },
            { "minimumSize", imp<minimumSize> },
            { "tabViewItemAtPoint:", imp<itemAtPoint> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "resignFirstResponder", imp<resignFirstResponder> },
            { "keyDown:", imp<keyDown> },
        });
    }
};
BRINDLE_RECORD(NSTabView, Tabs)

void TabAccess::placeTips(NSTabView& view)
{
    for (const NSToolTipTag tag : std::exchange(view.tips_, {}))
        removeToolTip(view, tag);
    const std::vector<NSRect> rects = NSTabView::Methods<struct Tabs>::tabs(view);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        if (const Ref<NSString> tip = view.items_[i]->toolTip())
            view.tips_.push_back(addToolTipRect_owner_userData(view, rects[i], tip.get(), nullptr));
    }
}

}
