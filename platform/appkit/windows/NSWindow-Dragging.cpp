// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using display::ResizeEdge;

    bool pullsLeft(ResizeEdge e)
    {
        return e == ResizeEdge::left || e == ResizeEdge::topLeft || e == ResizeEdge::bottomLeft;
    }
    bool pullsRight(ResizeEdge e)
    {
        return e == ResizeEdge::right || e == ResizeEdge::topRight || e == ResizeEdge::bottomRight;
    }
    bool pullsTop(ResizeEdge e)
    {
        return e == ResizeEdge::top || e == ResizeEdge::topLeft || e == ResizeEdge::topRight;
    }
    bool pullsBottom(ResizeEdge e)
    {
        return e == ResizeEdge::bottom || e == ResizeEdge::bottomLeft
            || e == ResizeEdge::bottomRight;
    }

    NSSize pulledSize(NSRect frame, ResizeEdge edge, NSPoint by)
    {
        NSSize size = frame.size;
        size.width += pullsRight(edge) ? by.x : pullsLeft(edge) ? -by.x : 0;
        size.height += pullsTop(edge) ? by.y : pullsBottom(edge) ? -by.y : 0;
        return size;
    }

    // The opposite edge stays where it is.
    NSRect resized(NSRect frame, ResizeEdge edge, NSSize size)
    {
        const NSRect old = frame;
        frame.size = size;
        if (pullsLeft(edge))
            frame.origin.x = NSMaxX(old) - size.width;
        if (pullsBottom(edge))
            frame.origin.y = NSMaxY(old) - size.height;
        return frame;
    }

    /// Calls `move(distance from the press, screen points)` for each movement until the button is let go.
    template <class Move> void follow(const NSEvent& press, Move&& move)
    {
        const NSPoint start = ApplicationAccess::screenLocation(press);
        const Ref<NSApplication> app = NSApplication::cls().sharedApplication();
        const Ref<NSDate> never = NSDate::cls().distantFuture();
        for (;;) {
            const Ref<NSEvent> event = app->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, never.get(), NSEventTrackingRunLoopMode,
                true);
            if (!event)
                return; // nothing can come any more
            const NSPoint place = ApplicationAccess::screenLocation(*event);
            move(NSPoint { place.x - start.x, place.y - start.y });
            if (event->type() == NSLeftMouseUp)
                return;
        }
    }

    struct LiveResize {
        explicit LiveResize(NSWindow& resizedWindow)
            : window(&resizedWindow)
        {
            WindowAccess::beginLiveResize(*window);
        }
        ~LiveResize()
        {
            try {
                WindowAccess::endLiveResize(*window);
            } catch (...) {
                // Another exception may be on its way already; the resize has ended either way.
                WindowAccess::state(*window).liveResize = false;
            }
        }
        LiveResize(const LiveResize&) = delete;
        LiveResize& operator=(const LiveResize&) = delete;
        Ref<NSWindow> window;
    };

}

void WindowAccess::dragWindow(NSWindow& window, NSEvent& press)
{
    const Ref<NSWindow> alive(&window);
    const WindowState& s = state(window);
    notify(window, NSWindowWillMoveNotification, "windowWillMove:");
    if (s.surface && s.surface->beginMove(ApplicationAccess::screenLocation(press))) {
        ApplicationAccess::state().buttonsDown = 0; // no release will come
        return;
    }
    const NSPoint origin = s.frame.origin;
    follow(press, [&](NSPoint by) {
        if (by == NSPoint {} && state(window).frame.origin == origin)
            return;
        window.setFrame_display(
            { { origin.x + by.x, origin.y + by.y }, state(window).frame.size }, false);
    });
}

void WindowAccess::resizeWindow(NSWindow& window, ResizeEdge edge, NSEvent& press)
{
    const Ref<NSWindow> alive(&window);
    WindowState& s = state(window);
    // The desktop knows nothing of proportions.
    const bool byDesktop = s.surface && !keepsProportions(window)
        && s.surface->beginResize(edge, ApplicationAccess::screenLocation(press));
    if (byDesktop) {
        ApplicationAccess::state().buttonsDown = 0;
        return beginLiveResize(window); // the display tells the end
    }
    const LiveResize scope(window);
    const NSRect start = s.frame;
    follow(press, [&](NSPoint by) {
        NSSize size
            = limited(window, proportioned(window, start.size, pulledSize(start, edge, by), edge));
        if (const Ref<NSObject> delegate = window.delegate();
            delegate && delegate->respondsToSelector(selector<"windowWillResize:toSize:">))
            size = delegate->send<"windowWillResize:toSize:", NSSize>(&window, size);
        const NSRect frame = resized(start, edge, size);
        if (frame != state(window).frame)
            applyFrame(window, frame, true);
    });
}

bool WindowAccess::resizeEdgeAt(const NSWindow& window, NSPoint p, ResizeEdge& edge)
{
    const WindowState& s = state(window);
    if (!(s.style & NSResizableWindowMask) || s.zoomed || s.fullScreen)
        return false;
    const NSSize size = s.frame.size;
    constexpr CGFloat kCorner = 12; // along the edge; corners are easier to hit that way
    const bool left = p.x < kResizeEdge;
    const bool right = p.x >= size.width - kResizeEdge;
    const bool bottom = p.y < kResizeEdge;
    const bool top = p.y >= size.height - kResizeEdge;
    if (!left && !right && !bottom && !top)
        return false;
    const bool nearLeft = p.x < kCorner;
    const bool nearRight = p.x >= size.width - kCorner;
    const bool nearBottom = p.y < kCorner;
    const bool nearTop = p.y >= size.height - kCorner;
    if (nearTop && nearLeft)
        edge = ResizeEdge::topLeft;
    else if (nearTop && nearRight)
        edge = ResizeEdge::topRight;
    else if (nearBottom && nearLeft)
        edge = ResizeEdge::bottomLeft;
    else if (nearBottom && nearRight)
        edge = ResizeEdge::bottomRight;
    else
        edge = left  ? ResizeEdge::left
            : right  ? ResizeEdge::right
            : bottom ? ResizeEdge::bottom
                     : ResizeEdge::top;
    return true;
}

template <> struct NSWindow::Methods<struct Dragging> {

    static void performDrag(NSWindow& self, NSEvent* event)
    {
        if (event)
            WindowAccess::dragWindow(self, *event);
    }
    static void table(Builder& t)
    {
        t.methods({ { "performWindowDragWithEvent:", imp<performDrag> } });
    }
};
BRINDLE_RECORD(NSWindow, Dragging)

}
