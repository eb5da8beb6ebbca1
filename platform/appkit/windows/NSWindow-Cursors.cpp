// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSWindowPrivate.h"
#include "appkit/NSControl.h"
#include "appkit/NSTextView.h"
#include "appkit/NSView+CursorRects.h"
#include "appkit/views/CursorPrivate.h"
#include "appkit/views/SubviewsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    display::Cursor cursorFor(display::ResizeEdge edge)
    {
        using display::Cursor;
        using display::ResizeEdge;
        switch (edge) {
        case ResizeEdge::left:
        case ResizeEdge::right:
            return Cursor::resizeLeftRight;
        case ResizeEdge::top:
        case ResizeEdge::bottom:
            return Cursor::resizeUpDown;
        case ResizeEdge::topLeft:
        case ResizeEdge::bottomRight:
            return Cursor::resizeTopLeftBottomRight;
        default:
            return Cursor::resizeTopRightBottomLeft;
        }
    }

    // A rectangle counts where the view in front at the point is its own or one in it.
    Ref<NSCursor> cursorAt(const WindowState& s, NSPoint point)
    {
        Ref<NSView> front;
        for (std::size_t i = s.cursorRects.size(); i-- > 0;) {
            const CursorRect& place = s.cursorRects[i];
            if (!NSPointInRect(point, place.visible))
                continue;
            const Ref<NSCursor> cursor = place.cursor;
            const Ref<NSView> owner(place.view);
            if (!front)
                front = s.frameView->hitTest(point);
            if (front && front->isDescendantOf(owner.get()))
                return cursor;
            if (i > s.cursorRects.size())
                break; // an override has changed the list
        }
        return nullptr;
    }

    void askForRects(NSView& view)
    {
        if (view.isHidden())
            return;
        resetCursorRects(view);
        forSubviews(view, [](NSView& subview) { askForRects(subview); });
    }

}

void WindowAccess::updateCursor(NSWindow& window, NSPoint point)
{
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    settleTracking(window);
    if (!s.cursorRectsEnabled)
        return;
    if (!std::exchange(s.cursorRectsValid, true))
        window.send<"resetCursorRects">();
    display::ResizeEdge edge {};
    if (resizeEdgeAt(window, point, edge))
        CursorAccess::enter(CursorAccess::standard(cursorFor(edge)).get());
    else
        CursorAccess::enter(cursorAt(s, point).get());
}

template <> struct NSWindow::Methods<struct Cursors> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static void invalidate(NSWindow& self, NSView*) { of(self).cursorRectsValid = false; }
    static void reset(NSWindow& self)
    {
        self.send<"discardCursorRects">();
        of(self).cursorRectsValid = true;
        askForRects(WindowAccess::frameView(self));
    }
    static void discard(NSWindow& self) { of(self).cursorRects.clear(); }
    static bool areEnabled(NSWindow& self) { return of(self).cursorRectsEnabled; }
    static void enable(NSWindow& self) { of(self).cursorRectsEnabled = true; }
    static void disable(NSWindow& self) { of(self).cursorRectsEnabled = false; }

    static void table(Builder& t)
    {
        t.methods({
            { "invalidateCursorRectsForView:", imp<invalidate> },
            { "resetCursorRects", imp<reset> },
            { "discardCursorRects", imp<discard> },
            { "areCursorRectsEnabled", imp<areEnabled> },
            { "enableCursorRects", imp<enable> },
            { "disableCursorRects", imp<disable> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Cursors)

template <> struct NSView::Methods<struct Cursors> {

    static void reset(NSView&) { }
    static void add(NSView& self, NSRect rect, NSCursor* cursor)
    {
        if (!cursor || !self.window_ || !cursor->isKindOfClass(NSCursor::cls()))
            return;
        const NSRect shown = NSIntersectionRect(rect, self.visibleRect());
        if (NSIsEmptyRect(shown))
            return;
        WindowAccess::state(*self.window_)
            .cursorRects.push_back(
                { &self, rect, ViewAccess::toWindow(self).apply(shown), Ref<NSCursor>(cursor) });
    }
    static void remove(NSView& self, NSRect rect, NSCursor* cursor)
    {
        if (!self.window_)
            return;
        std::erase_if(WindowAccess::state(*self.window_).cursorRects, [&](const CursorRect& place) {
            return place.view == &self && place.rect == rect && place.cursor == cursor;
        });
    }
    static void discard(NSView& self)
    {
        if (!self.window_)
            return;
        std::erase_if(WindowAccess::state(*self.window_).cursorRects,
            [&](const CursorRect& place) { return place.view == &self; });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "resetCursorRects", imp<reset> },
            { "addCursorRect:cursor:", imp<add> },
            { "removeCursorRect:cursor:", imp<remove> },
            { "discardCursorRects", imp<discard> },
        });
    }
};
BRINDLE_RECORD(NSView, Cursors)

template <> struct NSCell::Methods<struct Cursors> {

    static void reset(NSCell& self, NSRect frame, NSView* view)
    {
        if (self.type() == NSTextCellType && self.isSelectable() && self.isEnabled())
            addCursorRect_cursor(maybe(view), frame, NSCursor::cls().IBeamCursor().get());
    }
    static void table(Builder& t) { t.methods({ { "resetCursorRect:inView:", imp<reset> } }); }
};
BRINDLE_RECORD(NSCell, Cursors)

template <> struct NSControl::Methods<struct Cursors> {

    static void reset(NSControl& self)
    {
        resetCursorRect_inView(maybe(self.cell()), self.bounds(), &self);
    }
    static void table(Builder& t) { t.methods({ { "resetCursorRects", imp<reset> } }); }
};
BRINDLE_RECORD(NSControl, Cursors)

template <> struct NSTextView::Methods<struct Cursors> {

    static void reset(NSTextView& self)
    {
        if (self.isSelectable())
            addCursorRect_cursor(self, self.visibleRect(), NSCursor::cls().IBeamCursor().get());
    }
    static void table(Builder& t) { t.methods({ { "resetCursorRects", imp<reset> } }); }
};
BRINDLE_RECORD(NSTextView, Cursors)

}
