// SPDX-License-Identifier: Apache-2.0
#include "MenuSessionPrivate.h"

#include <algorithm>

#include "appkit/NSWindow+ScreenEdge.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "appkit/views/ToolTipsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSDate.h"

namespace brindle {

MenuSession* MenuSession::current_ = nullptr;

namespace {

    constexpr NSInteger kLayoutOrder = 1000; // before windows are drawn
    constexpr double kIdleSeconds = 60; // then others may have the pointer, a screen lock above all

    /// The press that a bar's neighbour got from an earlier session, and whether a button was really down.
    struct Handover {
        Ref<NSEvent> press;
        bool held = false;
    };
    Handover& handover()
    {
        static auto* const value = new Handover; // outlives everything that may still open a menu
        return *value;
    }

}

void MenuTimer::start(double seconds, bool repeats, std::function<void()> call)
{
    stop();
    timer_ = NSTimer::cls().timerWithTimeInterval_repeats_block(
        seconds, repeats, [this, repeats, call = std::move(call)](NSTimer*) {
            const std::function<void()> now = call; // it may stop this timer
            if (!repeats)
                stop();
            now();
        });
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer_.get(), NSEventTrackingRunLoopMode);
}
void MenuTimer::stop()
{
    if (const Ref<NSTimer> timer = std::exchange(timer_, nullptr))
        timer->invalidate();
}

MenuSession::MenuSession(MenuOpening opening)
    : outer_(std::exchange(current_, this))
    , opening_(std::move(opening))
{
    const ApplicationState& app = ApplicationAccess::state();
    pointer_ = apex_ = ApplicationAccess::pointerLocation();
    modifiers_ = opening_.event ? opening_.event->modifierFlags() : ApplicationAccess::modifiers();
    wasActive_ = app.active;
    anchorWasVisible_ = opening_.view && maybe(opening_.view->window())->isVisible();
    // The event may have been moved below a button; the one that is handled says where the pointer is.
    const Ref<NSEvent> cause = app.current && opening_.event ? app.current : opening_.event;
    if (opening_.event && events::isIn(opening_.event->type(), events::kDowns)) {
        held_ = isFirstPress_ = true;
        pressTime_ = opening_.event->timestamp();
        pressPlace_ = EventAccess::screenLocation(*cause);
    }
    if (handover().press && app.current == handover().press)
        held_ = isFirstPress_ = handover().held;
    handover() = {};
}

MenuSession::~MenuSession()
{
    current_ = outer_;
    maybe(observer_)->invalidate();
    if (waking_)
        ApplicationAccess::withdraw(*waking_);
    if (grabbed_)
        ApplicationAccess::display().ungrab();
}

Ref<NSMenuItem> MenuSession::run(MenuOpening opening)
{
    if (!opening.menu)
        return nullptr;
    for (const MenuSession* open = current_; open; open = open->outer_) {
        if (open->levelOf(*opening.menu) < open->panels_.size())
            return nullptr;
    }
    if (current_) { // two menus cannot follow one pointer
        current_->end();
        current_->wake();
    }
    const Ref<NSMenu> root = MenuAccess::root(*opening.menu);
    MenuSession session(std::move(opening));
    MenuAccess::post(NSMenuDidBeginTrackingNotification, *root);
    // However it ends, everybody who was told of the beginning is told of the end.
    try {
        session.openRoot();
        session.loop();
        session.closeFrom(0);
    } catch (...) {
        try {
            session.closeFrom(0);
            MenuAccess::post(NSMenuDidEndTrackingNotification, *root);
        } catch (...) { // the first one goes on
        }
        throw;
    }
    MenuAccess::post(NSMenuDidEndTrackingNotification, *root);
    if (session.next_)
        session.switchTo(*session.next_);
    return session.chosen_;
}

// ---- panels

std::size_t MenuSession::levelOf(const NSMenu& menu) const
{
    std::size_t level = 0;
    while (level < panels_.size() && &panels_[level]->menu() != &menu)
        ++level;
    return level;
}

namespace {

    const display::Screen* screenAt(NSPoint place)
    {
        return ScreenAccess::screenFor(NSMakeRect(place.x, place.y - 1, 1, 1));
    }

}

NSRect MenuSession::screenAround(NSPoint place) const
{
    const display::Screen* screen = screenAt(place);
    constexpr CGFloat kAnywhere = 1e6;
    if (!screen)
        return NSMakeRect(-kAnywhere, -kAnywhere, 2 * kAnywhere, 2 * kAnywhere);
    // Counted as the window that the menu opens from counts, which may be shown lower than its frame.
    const Ref<NSWindow> anchor = maybe(opening_.view)->window();
    return NSOffsetRect(screen->visibleFrame, 0, anchor ? screenEdgeOffset(anchor) : 0);
}

namespace {

    NSWindowLevel levelAbove(NSView* view)
    {
        const NSWindowLevel below = maybe(maybe(view)->window())->level();
        return below < NSPopUpMenuWindowLevel ? NSWindowLevel { NSPopUpMenuWindowLevel }
                                              : below + 1;
    }

    /// Answers the rectangle of a view above whose lower edge the place is not; empty for a place in or beside it.
    NSRect anchorFor(const MenuOpening& opening)
    {
        const Ref<NSWindow> window = maybe(opening.view)->window();
        if (!window)
            return NSZeroRect;
        const NSRect view = window->convertRectToScreen(
            opening.view->convertRect_toView(opening.view->bounds(), nullptr));
        const CGFloat gap = NSMinY(view) - opening.location.y;
        constexpr CGFloat kNear = 40; // farther away it has nothing to do with the view
        if (gap < 0 || gap > kNear || opening.location.x < NSMinX(view) - 1
            || opening.location.x > NSMaxX(view))
            return NSZeroRect;
        return NSMakeRect(
            NSMinX(view), opening.location.y, view.size.width, view.size.height + 2 * gap);
    }

    struct Placement {
        NSRect frame;
        CGFloat scroll = 0;
    };
    Placement placementFor(const MenuOpening& opening, const MenuPanel& panel, NSRect screen)
    {
        const NSSize size = panel.size();
        const NSInteger row
            = opening.positioned ? panel.layout().rowOf(opening.positioned.get()) : -1;
        if (row < 0) {
            const NSRect anchor = anchorFor(opening);
            return { NSIsEmptyRect(anchor) ? placeAtPoint(size, opening.location, screen)
                                           : placeBelow(size, anchor, opening.location.x, screen) };
        }
        const MenuRow& positioned = panel.layout().rows[static_cast<std::size_t>(row)];
        NSPoint corner { opening.location.x, opening.location.y + positioned.top };
        if (opening.alignsTitle) {
            corner.x -= panel.layout().titleLeft;
            corner.y += positioned.height / 2;
        }
        const NSRect near = placeAtPoint(size, { corner.x, NSMaxY(screen) }, screen);
        Placement placement { near };
        if (size.height <= screen.size.height)
            placement.frame.origin.y
                = std::clamp(corner.y - size.height, NSMinY(screen), NSMaxY(screen) - size.height);
        else
            placement.scroll = corner.y - NSMaxY(screen);
        return placement;
    }

}

void MenuSession::openRoot()
{
    NSMenu& menu = *opening_.menu;
    MenuAccess::populate(menu);
    menu.update();
    MenuAccess::tellDelegate<"menuWillOpen:">(menu);
    told_.emplace_back(&menu);
    const NSRect screen = screenAround(opening_.location);
    if (const display::Screen* const opensOn = screenAt(opening_.location))
        screen_ = *opensOn;
    const Ref<NSFont> font = opening_.font ? opening_.font : menu.font();
    panels_.push_back(
        std::make_unique<MenuPanel>(menu, font.get(), modifiers_, screen, opening_.minimumWidth));
    MenuPanel& panel = *panels_.back();
    const Placement placement = placementFor(opening_, panel, screen);
    const NSInteger row
        = opening_.positioned ? panel.layout().rowOf(opening_.positioned.get()) : -1;
    const Ref<NSWindow> anchor = maybe(opening_.view)->window();
    panel.show(placement.frame, placement.scroll, levelAbove(opening_.view.get()), anchor.get());
    observer_
        = NSRunLoopObserver::cls().observerWithOrder_handler(kLayoutOrder, [this] { settle(); });
    NSRunLoop::cls().mainRunLoop()->addObserver_forMode(
        observer_.get(), NSEventTrackingRunLoopMode);
    const bool byKey = maybe(opening_.event)->type() == NSKeyDown;
    if (panel.isLive(row))
        panel.setHighlighted(row);
    else if (byKey)
        panel.setHighlighted(panel.liveRowFrom(-1, 1));
    grab();
}

void MenuSession::openSubmenu(std::size_t level, bool highlightsFirst)
{
    hover_.stop();
    if (level >= panels_.size())
        return;
    const NSInteger row = panels_[level]->highlighted();
    const Ref<NSMenuItem> item(panels_[level]->itemAt(row));
    const Ref<NSMenu> submenu = item ? MenuItemAccess::submenu(*item) : nullptr;
    if (!submenu || !panels_[level]->isLive(row))
        return;
    if (levelOf(*submenu) == panels_.size()) {
        closeFrom(level + 1);
        MenuAccess::populate(*submenu);
        submenu->update();
        MenuAccess::tellDelegate<"menuWillOpen:">(*submenu);
        told_.emplace_back(submenu.get());
        if (done_ || level >= panels_.size() || panels_[level]->itemAt(row) != item.get())
            return; // the delegate thought otherwise
        MenuPanel& parent = *panels_[level];
        const NSRect beside = parent.rectOfRow(row);
        const NSRect screen = screenAround({ NSMidX(beside), NSMidY(beside) });
        const Ref<NSFont>& own = MenuAccess::font(*submenu);
        const Ref<NSFont> font = own ? own : parent.layout().font;
        auto panel = std::make_unique<MenuPanel>(*submenu, font.get(), modifiers_, screen, 0);
        panel->show(placeBeside(panel->size(), beside, parent.frame(), screen), 0,
            parent.window().level(), &parent.window());
        panels_.push_back(std::move(panel));
    }
    if (highlightsFirst)
        deepest().setHighlighted(deepest().liveRowFrom(-1, 1));
}

void MenuSession::closeFrom(std::size_t level)
{
    hover_.stop();
    grace_.stop();
    if (level == 0 && std::exchange(grabbed_, false))
        ApplicationAccess::display().ungrab();
    while (panels_.size() > level) {
        const std::unique_ptr<MenuPanel> panel = std::move(panels_.back());
        panels_.pop_back();
        panel->setHighlighted(-1); // whom it tells may close others
        ToolTips::dismiss();
    }
    while (told_.size() > level) {
        const Ref<NSMenu> menu = cast<NSMenu>(told_.back());
        told_.pop_back();
        MenuAccess::tellDelegate<"menuDidClose:">(*menu);
    }
}

// ---- the loop

void MenuSession::loop()
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
    const Ref<NSDate> never = NSDate::cls().distantFuture();
    watchIdle();
    while (!done_) {
        // What waits on the main queue goes on although the pointer may be faster than it.
        loop->runUntilIdle(NSEventTrackingRunLoopMode);
        if (done_)
            break;
        const Ref<NSEvent> event = application->nextEventMatchingMask_untilDate_inMode_dequeue(
            NSAnyEventMask, never.get(), NSEventTrackingRunLoopMode, true);
        if (!event)
            break;
        handle(*event);
        if (anchorWasVisible_ && !maybe(maybe(opening_.view)->window())->isVisible())
            end();
    }
}

void MenuSession::handle(NSEvent& event)
{
    const NSEventType type = event.type();
    const bool isInput = events::isIn(type, events::kPointer | events::kKeys | NSFlagsChangedMask);
    if (isInput) {
        settle();
        watchIdle();
        modifiers_ = event.modifierFlags();
    }
    if (events::isIn(type, events::kDowns | NSScrollWheelMask | NSKeyDownMask))
        ToolTips::dismiss();
    if (panels_.empty())
        return end();
    if (events::isIn(type, events::kDowns))
        press(event);
    else if (events::isIn(type, events::kUps))
        release(event);
    else if (events::isIn(type, events::kDrags | NSMouseMovedMask)) {
        // A window that comes or goes below a pointer at rest is no movement: the keyboard may be at work.
        const NSPoint place = EventAccess::screenLocation(event);
        if (place != pointer_ && !forwardToView(event, place))
            pointerAt(place);
    } else if (type == NSScrollWheel)
        wheel(event);
    else if (type == NSKeyDown)
        key(event);
    else if (type == NSFlagsChanged)
        changed_ = true; // alternates come and go
    else if (type == NSAppKitDefined)
        handleNews(event);
    else if (type != NSKeyUp)
        NSApplication::cls().sharedApplication()->sendEvent(&event);
}

void MenuSession::handleNews(NSEvent& event)
{
    NSApplication::cls().sharedApplication()->sendEvent(&event);
    const bool lostGrab
        = EventAccess::isNews(event, static_cast<std::int16_t>(NativeNews::grabLost));
    if (lostGrab)
        grabbed_ = false;
    if (lostGrab || (wasActive_ && !ApplicationAccess::state().active))
        end();
}

// The loop may be waiting for an event while a timer or the main queue ends it.
void MenuSession::wake()
{
    if (waking_)
        return;
    EventFields fields;
    fields.type = NSAppKitDefined;
    waking_ = EventAccess::make(fields);
    ApplicationAccess::post(*waking_, true);
}

void MenuSession::settle()
{
    if (!std::exchange(changed_, false))
        return;
    for (std::size_t level = 0; level < panels_.size(); ++level) {
        MenuPanel& panel = *panels_[level];
        panel.layOutAnew(modifiers_);
        if (level >= panels_.size())
            return;
        const NSMenuItem* leads = panel.itemAt(panel.highlighted());
        const bool hasNext = level + 1 < panels_.size();
        if (hasNext
            && (!leads || MenuItemAccess::submenu(*leads) != &panels_[level + 1]->menu()
                || !panel.isLive(panel.highlighted())))
            closeFrom(level + 1);
    }
}

void MenuSession::grab()
{
    if (!panels_.empty())
        grabbed_
            = ApplicationAccess::display().grab(WindowAccess::surface(panels_.front()->window()));
}

// An open menu that nobody touches must not keep the screen from being locked.
void MenuSession::watchIdle()
{
    if (ApplicationAccess::display().fileDescriptor() < 0)
        return;
    if (std::exchange(restsIdle_, false))
        grab();
    if (!grabbed_)
        return;
    idle_.start(kIdleSeconds, false, [this] {
        restsIdle_ = std::exchange(grabbed_, false);
        if (restsIdle_)
            ApplicationAccess::display().ungrab();
    });
}

void MenuSession::choose(NSMenuItem& item)
{
    chosen_ = &item;
    end();
}

void MenuSession::switchTo(NSView& neighbour)
{
    const Ref<NSWindow> window = neighbour.window();
    if (!window)
        return;
    const NSRect bounds = neighbour.bounds();
    EventFields fields;
    fields.type = NSLeftMouseDown;
    fields.flags = modifiers_ & NSDeviceIndependentModifierFlagsMask;
    fields.timestamp = ApplicationAccess::now();
    fields.windowNumber = window->windowNumber();
    fields.location = neighbour.convertPoint_toView({ NSMidX(bounds), NSMidY(bounds) }, nullptr);
    fields.number = ApplicationAccess::state().eventNumber;
    fields.clickCount = 1;
    fields.pressure = 1;
    handover() = { EventAccess::make(fields), held_ };
    ApplicationAccess::post(*handover().press, true);
}

// ---- told from outside

void MenuSession::menuChanged(NSMenu& menu)
{
    for (MenuSession* session = current_; session; session = session->outer_) {
        if (session->levelOf(menu) < session->panels_.size())
            session->changed_ = true;
    }
}
void MenuSession::menuGone(NSMenu& menu)
{
    for (MenuSession* session = current_; session; session = session->outer_) {
        const std::size_t level = session->levelOf(menu);
        if (level > 0 && level < session->panels_.size())
            session->closeFrom(level);
    }
}
Ref<NSMenuItem> MenuSession::highlightedItem(NSMenu& menu)
{
    for (const MenuSession* session = current_; session; session = session->outer_) {
        const std::size_t level = session->levelOf(menu);
        if (level < session->panels_.size())
            return session->panels_[level]->itemAt(session->panels_[level]->highlighted());
    }
    return nullptr;
}
// A menu would be left where nobody sees it, or with another size than it was laid out for.
void MenuSession::screensChanged()
{
    for (MenuSession* session = current_; session; session = session->outer_) {
        const display::Screen* const now = screenAt(session->opening_.location);
        const display::Screen& then = session->screen_;
        if (now && now->frame == then.frame && now->scale == then.scale)
            continue;
        session->end();
        session->wake();
    }
}
void MenuSession::cancel(NSMenu& menu)
{
    for (MenuSession* session = current_; session; session = session->outer_) {
        if (session->levelOf(menu) < session->panels_.size()) {
            session->end();
            session->wake();
        }
    }
}

}
