// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "MenuSessionPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSView+ToolTips.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using namespace menus;

namespace {

    constexpr CGFloat kShadowRoom = 14; // points around a menu

}

/// A window that never has the keyboard, whatever windows are said to do.
class NSMenuWindow : public NSWindow {
    BRINDLE_OBJECT(NSMenuWindow, NSWindow)
};

template <> struct NSMenuWindow::Methods<struct Keyboard> {

    static bool no(NSMenuWindow&) { return false; }
    static bool yes(NSMenuWindow&) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "canBecomeKeyWindow", imp<no> },
            { "canBecomeMainWindow", imp<no> },
            { "worksWhenModal", imp<yes> },
        });
    }
};
BRINDLE_RECORD(NSMenuWindow, Keyboard)

template <> struct NSMenuView::Methods<struct Drawing> {

    static bool isFlipped(NSMenuView&) { return true; }
    static void drawRect(NSMenuView& self, NSRect rect)
    {
        if (self.panel_)
            self.panel_->draw(rect);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(NSMenuView, Drawing)

MenuPanel::MenuPanel(
    NSMenu& menu, NSFont* font, NSEventModifierFlags modifiers, NSRect screen, CGFloat minimumWidth)
    : menu_(&menu)
    , layout_(layOut(menu, font, modifiers))
    , screen_(screen)
    , minimumWidth_(minimumWidth)
{
    layout_.size.width = std::max(layout_.size.width, minimumWidth_);
}

MenuPanel::~MenuPanel()
{
    if (!view_)
        return;
    view_->panel_ = nullptr;
    for (const MenuRow& row : layout_.rows) {
        const Ref<NSView>& view = MenuItemAccess::view(*row.item);
        if (view && view->superview() == view_.get())
            view->removeFromSuperview();
    }
    window_->orderOut(nullptr);
}

// ---- the window

void MenuPanel::show(NSRect frame, CGFloat scroll, NSWindowLevel level, NSWindow* anchor)
{
    const bool blends = ApplicationAccess::display().blends();
    margin_ = blends ? kShadowRoom : 0;
    window_ = alloc<NSMenuWindow>()->initWithContentRect_styleMask_backing_defer(
        NSInsetRect(frame, -margin_, -margin_), NSBorderlessWindowMask, NSBackingStoreBuffered,
        true);
    window_->setOpaque(!blends);
    window_->setBackgroundColor(NSColor::cls().clearColor().get());
    window_->setLevel(level);
    WindowAccess::setAnchor(*window_, anchor);
    window_->setReleasedWhenClosed(false);
    view_ = cast<NSMenuView>(alloc<NSMenuView>()->initWithFrame(
        { {}, { frame.size.width + 2 * margin_, frame.size.height + 2 * margin_ } }));
    view_->panel_ = this;
    window_->setContentView(view_.get());
    frame_ = frame;
    scroll_ = std::clamp(scroll, 0.0, mostScroll());
    placeViews();
    window_->orderFrontRegardless();
}

void MenuPanel::setFrame(NSRect frame)
{
    frame_ = frame;
    scroll_ = std::clamp(scroll_, 0.0, mostScroll());
    window_->setFrame_display(NSInsetRect(frame, -margin_, -margin_), false);
    placeViews();
    view_->setNeedsDisplay(true);
}

void MenuPanel::layOutAnew(NSEventModifierFlags modifiers)
{
    const Ref<NSMenuItem> item(itemAt(highlighted_));
    for (const MenuRow& row : layout_.rows) {
        const Ref<NSView>& view = MenuItemAccess::view(*row.item);
        if (view && MenuItemAccess::menu(*row.item) != menu_.get()
            && view->superview() == view_.get())
            view->removeFromSuperview();
    }
    const Ref<NSFont> font = layout_.font;
    layout_ = layOut(*menu_, font.get(), modifiers);
    layout_.size.width = std::max(layout_.size.width, minimumWidth_);
    highlighted_ = layout_.rowOf(item.get());
    if (!isLive(highlighted_))
        highlighted_ = -1;
    setFrame(placeAtPoint(size(), { NSMinX(frame_), NSMaxY(frame_) }, screen_));
    if (item && highlighted_ < 0)
        MenuAccess::tellDelegate<"menu:willHighlightItem:">(
            *menu_, static_cast<NSMenuItem*>(nullptr));
}

void MenuPanel::placeViews()
{
    for (std::size_t i = 0; i < layout_.rows.size(); ++i) {
        const Ref<NSView>& view = MenuItemAccess::view(*layout_.rows[i].item);
        if (!view)
            continue;
        if (view->superview() != view_.get())
            view_->addSubview(view.get());
        const NSRect place = rectInView(static_cast<NSInteger>(i));
        view->setFrame(NSMakeRect(margin_, NSMinY(place), frame_.size.width, place.size.height));
    }
    placeToolTips();
}

void MenuPanel::placeToolTips()
{
    removeAllToolTips(view_);
    const NSRect body { { margin_, margin_ }, frame_.size };
    for (std::size_t i = 0; i < layout_.rows.size(); ++i) {
        if (const Ref<NSString> text = layout_.rows[i].item->toolTip(); maybe(text)->length())
            addToolTipRect_owner_userData(view_,
                NSIntersectionRect(body, rectInView(static_cast<NSInteger>(i))), text.get(),
                nullptr);
    }
}

// ---- rows

NSRect MenuPanel::rectInView(NSInteger index) const
{
    if (index < 0 || index >= static_cast<NSInteger>(layout_.rows.size()))
        return NSZeroRect;
    const MenuRow& row = layout_.rows[static_cast<std::size_t>(index)];
    return NSMakeRect(margin_, margin_ + row.top - scroll_, frame_.size.width, row.height);
}

NSRect MenuPanel::rectOfRow(NSInteger row) const
{
    const NSRect inView = rectInView(row);
    const CGFloat top = NSMaxY(frame_) - (NSMinY(inView) - margin_);
    return NSMakeRect(
        NSMinX(frame_), top - inView.size.height, frame_.size.width, inView.size.height);
}

NSInteger MenuPanel::rowAt(NSPoint place) const
{
    if (!contains(place) || scrollsAt(place))
        return -1;
    return layout_.rowAt(NSMaxY(frame_) - place.y + scroll_);
}

NSMenuItem* MenuPanel::itemAt(NSInteger row) const
{
    if (row < 0 || row >= static_cast<NSInteger>(layout_.rows.size()))
        return nullptr;
    return layout_.rows[static_cast<std::size_t>(row)].item.get();
}

bool MenuPanel::isLive(NSInteger row) const
{
    const NSMenuItem* item = itemAt(row);
    return item && MenuItemAccess::menu(const_cast<NSMenuItem&>(*item)) == menu_.get()
        && MenuItemAccess::canBeChosen(*item) && !MenuItemAccess::view(*item);
}

NSInteger MenuPanel::liveRowFrom(NSInteger row, int direction, bool wraps) const
{
    const auto count = static_cast<NSInteger>(layout_.rows.size());
    NSInteger next = row < 0 && direction < 0 ? count : row;
    for (NSInteger step = 0; step < count; ++step) {
        next += direction;
        if (next < 0 || next >= count) {
            if (!wraps)
                return -1;
            next = direction > 0 ? 0 : count - 1;
        }
        if (isLive(next))
            return next;
    }
    return -1;
}

void MenuPanel::markRow(NSInteger row)
{
    if (row >= 0)
        view_->setNeedsDisplayInRect(rectInView(row));
}

void MenuPanel::setHighlighted(NSInteger row)
{
    if (row == highlighted_)
        return;
    markRow(highlighted_);
    highlighted_ = row;
    markRow(row);
    MenuAccess::tellDelegate<"menu:willHighlightItem:">(*menu_, itemAt(row));
}

// ---- scrolling

CGFloat MenuPanel::mostScroll() const
{
    return std::max(0.0, layout_.size.height - frame_.size.height);
}

bool MenuPanel::showsStrip(int direction) const
{
    return direction < 0 ? scroll_ > 0 : scroll_ < mostScroll();
}

int MenuPanel::scrollsAt(NSPoint place) const
{
    if (place.x < NSMinX(frame_) || place.x > NSMaxX(frame_))
        return 0;
    if (showsStrip(-1) && place.y > NSMaxY(frame_) - kScrollStrip)
        return -1;
    if (showsStrip(1) && place.y < NSMinY(frame_) + kScrollStrip)
        return 1;
    return 0;
}

bool MenuPanel::scrollBy(CGFloat points)
{
    const CGFloat wanted
        = std::clamp(scroll_ + (std::isfinite(points) ? points : 0), 0.0, mostScroll());
    if (std::exchange(scroll_, wanted) == wanted)
        return false;
    placeViews();
    view_->setNeedsDisplay(true);
    return true;
}

void MenuPanel::reveal(NSInteger row)
{
    const NSRect rect = rectOfRow(row);
    const CGFloat above = NSMaxY(rect) - (NSMaxY(frame_) - kScrollStrip);
    const CGFloat below = NSMinY(frame_) + kScrollStrip - NSMinY(rect);
    if (above > 0)
        scrollBy(-above);
    else if (below > 0)
        scrollBy(below);
}

}
