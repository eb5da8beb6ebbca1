// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "appkit/controls/NSButtonPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/ShortVector.h"
#include "quartz/layers/AllServedPrivate.h"

namespace brindle {

namespace {

    using Areas = ShortVector<Ref<NSTrackingArea>, 16>;

    bool isActive(NSTrackingArea& area, NSWindow& window)
    {
        const NSTrackingAreaOptions options = TrackingAccess::options(area);
        if (options & NSTrackingActiveAlways)
            return true;
        const ApplicationState& app = ApplicationAccess::state();
        if (options & NSTrackingActiveInActiveApp)
            return app.active;
        if (app.keyWindow != &window)
            return false;
        return (options & NSTrackingActiveInKeyWindow)
            || WindowAccess::state(window).firstResponder.get() == TrackingAccess::view(area);
    }

    // The areas at a point, outermost views first. A view that is hidden or cut off there counts for nothing.
    void collect(NSView& view, NSPoint outer, Areas& found)
    {
        if (!ViewAccess::hasTrackedViews(view) || ViewAccess::isHidden(view))
            return;
        const NSPoint point = ViewAccess::toSuperview(view).inverse().apply(outer);
        const NSRect bounds = ViewAccess::bounds(view);
        if (!(point.x >= NSMinX(bounds) && point.x < NSMaxX(bounds) && point.y >= NSMinY(bounds)
                && point.y < NSMaxY(bounds)))
            return;
        if (TrackingIndex* index = ViewAccess::tracking(view))
            index->at(point, [&](NSTrackingArea& area) { found.emplace_back(&area); });
        for (const Ref<NSView>& subview : ViewAccess::subviews(view))
            collect(*subview, point, found);
    }

    Ref<NSEvent> crossing(NSEventType type, NSWindow& window, NSTrackingArea& area, NSEvent* cause)
    {
        const WindowState& state = WindowAccess::state(window);
        return EventAccess::makeAgain({ .type = type,
            .flags = cause ? cause->modifierFlags() : ApplicationAccess::modifiers(),
            .timestamp = cause ? cause->timestamp() : ApplicationAccess::now(),
            .windowNumber = state.number,
            .location = cause ? cause->locationInWindow() : state.pointer,
            .number = static_cast<NSInteger>(TrackingAccess::number(area)) + 1,
            .area = &area,
            .userData = TrackingAccess::userInfo(area) });
    }

    template <Text S> void tell(NSTrackingArea& area, NSEvent* event)
    {
        const Ref<NSObject> owner = area.owner();
        if (owner && owner->respondsToSelector(selector<S>))
            owner->send<S>(event);
    }

    template <Text S>
    void tellCrossing(NSEventType type, NSWindow& window, NSTrackingArea& area, NSEvent* cause)
    {
        Ref<NSEvent> event = crossing(type, window, area, cause);
        tell<S>(area, event.get());
        EventAccess::retire(std::move(event));
    }

    /// Tells a button whether the pointer is over it. Answers false for areas of others.
    bool toldButton(NSTrackingArea& area, bool inside)
    {
        if (!TrackingAccess::isHover(area))
            return false;
        const Ref<NSObject> button = area.owner();
        if (button)
            ButtonAccess::setHovered(static_cast<NSButton&>(*button), inside);
        return true;
    }

    void exit(NSWindow& window, NSTrackingArea& area, NSEvent* cause)
    {
        if (!std::exchange(TrackingAccess::isInside(area), false) || toldButton(area, false))
            return;
        if (TrackingAccess::options(area) & NSTrackingMouseEnteredAndExited)
            tellCrossing<"mouseExited:">(NSMouseExited, window, area, cause);
    }

    void enter(NSWindow& window, NSTrackingArea& area, NSEvent* cause)
    {
        if (std::exchange(TrackingAccess::isInside(area), true))
            return;
        WindowAccess::state(window).inside.emplace_back(&area);
        if (std::exchange(TrackingAccess::isSilent(area), false) || toldButton(area, true))
            return;
        const NSTrackingAreaOptions options = TrackingAccess::options(area);
        if (options & NSTrackingMouseEnteredAndExited)
            tellCrossing<"mouseEntered:">(NSMouseEntered, window, area, cause);
        if (options & NSTrackingCursorUpdate)
            tellCrossing<"cursorUpdate:">(NSCursorUpdate, window, area, cause);
    }

    bool contains(const Areas& areas, const NSTrackingArea* area)
    {
        return std::find(areas.begin(), areas.end(), area) != areas.end();
    }

    bool isStillThere(NSTrackingArea& area, NSWindow& window)
    {
        auto* const view = static_cast<NSView*>(TrackingAccess::view(area));
        return view && ViewAccess::window(*view) == &window;
    }

}

void WindowAccess::trackingAreaAdded(NSWindow& window, NSView& view, NSTrackingArea& area)
{
    WindowState& s = state(window);
    bool inside = false;
    if (s.pointerInside && !view.isHiddenOrHasHiddenAncestor()) {
        const NSPoint point = ViewAccess::toWindow(view).inverse().apply(s.pointer);
        const NSRect rect = (TrackingAccess::options(area) & NSTrackingInVisibleRect)
            ? view.visibleRect()
            : NSIntersectionRect(TrackingAccess::rect(area), view.visibleRect());
        inside = NSPointInRect(point, rect);
    }
    // Under a resting pointer nothing is reported: the first news is the exit.
    TrackingAccess::isInside(area) = inside;
    TrackingAccess::isSilent(area)
        = !inside && (TrackingAccess::options(area) & NSTrackingAssumeInside);
    if (inside)
        s.inside.emplace_back(&area);
}

void WindowAccess::settleTracking(NSWindow& window)
{
    WindowState& s = state(window);
    // What an update changes itself is settled before the next event.
    if (!std::exchange(s.viewsMoved, false))
        return;
    s.cursorRectsValid = false;
    ViewAccess::updateTrackingAreas(frameView(window));
}

void WindowAccess::trackPointer(NSWindow& window, NSEvent& event, bool dragging)
{
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    settleTracking(window);
    s.pointer = event.locationInWindow();
    s.pointerInside = NSPointInRect(s.pointer, { {}, s.frame.size }) && !s.ignoresMouse;
    Areas now;
    if (s.pointerInside)
        collect(frameView(window), s.pointer, now);
    std::erase_if(now, [&](const Ref<NSTrackingArea>& area) { return !isActive(*area, window); });
    const auto silenced = [dragging](NSTrackingArea& area) {
        return dragging && !(TrackingAccess::options(area) & NSTrackingEnabledDuringMouseDrag);
    };
    const Areas before(s.inside.begin(), s.inside.end());
    std::erase_if(s.inside, [&](const Ref<NSTrackingArea>& area) {
        return !contains(now, area.get()) && !silenced(*area);
    });
    for (std::size_t i = before.size(); i-- > 0;) { // the innermost first
        if (!contains(now, before[i].get()) && !silenced(*before[i])
            && isStillThere(*before[i], window))
            exit(window, *before[i], &event);
    }
    for (const Ref<NSTrackingArea>& area : now) {
        if (silenced(*area) || !isStillThere(*area, window))
            continue;
        enter(window, *area, &event);
        if (event.type() == NSMouseMoved && (TrackingAccess::options(*area) & NSTrackingMouseMoved))
            tell<"mouseMoved:">(*area, &event);
    }
}

void WindowAccess::pointerLeft(NSWindow& window, NSEvent* event)
{
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    s.pointerInside = false;
    const Areas before(s.inside.begin(), s.inside.end());
    s.inside.clear();
    AllServed all;
    for (std::size_t i = before.size(); i-- > 0;) {
        if (isStillThere(*before[i], window))
            all.serve([&] { exit(window, *before[i], event); });
    }
    all.end();
}

}
