// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "MenuSessionPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "appkit/views/ToolTipsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"

namespace brindle {

namespace {

    constexpr double kSubmenuSeconds
        = 0.16; // that the pointer rests on an item before its submenu opens
    constexpr double kGraceSeconds = 0.32; // that a pointer may take on its way to a submenu
    constexpr double kScrollSeconds = 0.03; // between two steps
    constexpr CGFloat kScrollStep = 8; // points
    constexpr CGFloat kStill = 4; // points that a click may wander

    // The neighbours of a view are a host's to know.
    template <Text S, class A> Ref<NSView> askForNeighbour(const Ref<NSView>& view, A argument)
    {
        if (!view || !view->respondsToSelector(selector<S>))
            return nullptr;
        Ref<NSView> found = view->send<S, Ref<NSView>>(argument);
        const bool isOther
            = found && found != view && found->isKindOfClass(NSView::cls()) && found->window();
        return isOther ? found : nullptr;
    }

}

std::size_t MenuSession::panelAt(NSPoint place) const
{
    for (std::size_t level = panels_.size(); level-- > 0;) {
        if (panels_[level]->contains(place))
            return level;
    }
    return panels_.size();
}

Ref<NSView> MenuSession::neighbourAt(NSPoint place) const
{
    return askForNeighbour<"menuNeighbourAtPoint:">(opening_.view, place);
}
Ref<NSView> MenuSession::neighbourToward(NSInteger direction) const
{
    return askForNeighbour<"menuNeighbourInDirection:">(opening_.view, direction);
}

// ---- movements

void MenuSession::pointerAt(NSPoint place)
{
    pointer_ = place;
    const std::size_t level = panelAt(place);
    if (level < panels_.size()) {
        const Ref<NSWindow> window(&panels_[level]->window());
        pointerInPanel(level, place);
        ToolTips::pointerMoved(*window, window->convertPointFromScreen(place));
    } else {
        ToolTips::dismiss();
        pointerOutside(place);
    }
}

void MenuSession::pointerInPanel(std::size_t level, NSPoint place)
{
    MenuPanel& panel = *panels_[level];
    const NSInteger row = panel.rowAt(place);
    const bool leads = level + 1 < panels_.size();
    followStrip(level, place);
    if (leads && row == panel.highlighted()) {
        apex_ = place;
        grace_.stop();
        closeFrom(level + 2);
        if (level + 1 < panels_.size())
            panels_[level + 1]->setHighlighted(-1);
        return;
    }
    if (leads && headsFor(apex_, place, panels_[level + 1]->frame())) {
        if (!grace_.isRunning())
            grace_.start(kGraceSeconds, false, [this] {
                apex_ = pointer_; // no longer on its way
                pointerAt(pointer_);
            });
        return;
    }
    grace_.stop();
    apex_ = place;
    highlight(level, row);
}

void MenuSession::pointerOutside(NSPoint place)
{
    grace_.stop();
    hover_.stop();
    followStrip(panels_.size() - 1, place);
    deepest().setHighlighted(-1);
    if ((next_ = neighbourAt(place)))
        end();
}

void MenuSession::highlight(std::size_t level, NSInteger row)
{
    MenuPanel& panel = *panels_[level];
    const NSInteger live = panel.isLive(row) ? row : -1;
    if (live != panel.highlighted()) {
        closeFrom(level + 1);
        if (level < panels_.size())
            panel.setHighlighted(live);
    }
    if (level >= panels_.size()) // by whom the panels told
        return;
    const NSMenuItem* item = panel.itemAt(live);
    if (!item || !MenuItemAccess::submenu(*item) || level + 1 < panels_.size())
        return hover_.stop();
    hover_.start(kSubmenuSeconds, false, [this, level] { openSubmenu(level, false); });
}

void MenuSession::followStrip(std::size_t level, NSPoint place)
{
    if (!panels_[level]->scrollsAt(place))
        return scrolling_.stop();
    if (scrolling_.isRunning())
        return;
    scrolling_.start(kScrollSeconds, true, [this, level] {
        const int direction = level < panels_.size() ? panels_[level]->scrollsAt(pointer_) : 0;
        if (!direction || !panels_[level]->scrollBy(direction * kScrollStep))
            return scrolling_.stop();
        closeFrom(level + 1);
    });
}

void MenuSession::wheel(NSEvent& event)
{
    const NSPoint place = EventAccess::screenLocation(event);
    const std::size_t level = panelAt(place);
    if (level >= panels_.size() || !panels_[level]->scrollBy(-event.scrollingDeltaY()))
        return;
    closeFrom(level + 1);
    apex_ = place;
    pointerAt(place);
}

// ---- buttons

/// A view in an item gets what happens over it.
bool MenuSession::forwardToView(NSEvent& event, NSPoint place)
{
    const std::size_t level = panelAt(place);
    if (level >= panels_.size())
        return false;
    MenuPanel& panel = *panels_[level];
    const NSMenuItem* item = panel.itemAt(panel.rowAt(place));
    if (!item || !MenuItemAccess::view(*item) || event.window() != &panel.window())
        return false;
    const Ref<NSWindow> window(&panel.window());
    highlight(level, -1);
    window->sendEvent(&event);
    return true;
}

void MenuSession::press(NSEvent& event)
{
    const NSPoint place = EventAccess::screenLocation(event);
    held_ = true;
    isFirstPress_ = false;
    pressTime_ = event.timestamp();
    pressPlace_ = place;
    if (forwardToView(event, place))
        return;
    pointer_ = place;
    const std::size_t level = panelAt(place);
    if (level >= panels_.size()) {
        next_ = neighbourAt(place);
        return end();
    }
    grace_.stop();
    apex_ = place;
    followStrip(level, place);
    highlight(level, panels_[level]->rowAt(place));
    openSubmenu(level, false);
}

// A click opens a menu for good; what is held longer or goes somewhere chooses where it ends.
bool MenuSession::opensByShortClick(NSEvent& event, NSPoint place)
{
    if (!isFirstPress_ || event.timestamp() - pressTime_ > NSEvent::cls().doubleClickInterval())
        return false;
    const bool isStill = std::hypot(place.x - pressPlace_.x, place.y - pressPlace_.y) <= kStill;
    return isStill || panelAt(place) >= panels_.size();
}

void MenuSession::release(NSEvent& event)
{
    const NSPoint place = EventAccess::screenLocation(event);
    const bool stays = opensByShortClick(event, place);
    const bool wasFirst = std::exchange(isFirstPress_, false);
    if (!std::exchange(held_, false) || stays || forwardToView(event, place))
        return;
    const std::size_t level = panelAt(place);
    if (level >= panels_.size())
        return end();
    MenuPanel& panel = *panels_[level];
    const NSInteger row = panel.rowAt(place);
    const Ref<NSMenuItem> item(panel.itemAt(row));
    if (!panel.isLive(row)) {
        if (wasFirst && !panel.scrollsAt(place))
            end();
        return;
    }
    if (!MenuItemAccess::submenu(*item))
        return choose(*item);
    highlight(level, row);
    openSubmenu(level, false);
}

}
