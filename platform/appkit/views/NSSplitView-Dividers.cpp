// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSSplitView.h"
#include "appkit/NSView+CursorRects.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSplitView::Methods<struct Dividers> {

    static constexpr CGFloat kReach = 3; // a thin divider is taken this far beside it

    // ---- places. A divider stands between two views that are not hidden

    using Views = std::vector<Ref<NSView>>;
    static Views shown(NSSplitView& self)
    {
        Views all;
        for (NSView* view : each<NSView>(self.subviews())) {
            if (!view->isHidden())
                all.emplace_back(view);
        }
        return all;
    }
    static CGFloat start(NSSplitView& self, NSRect rect)
    {
        return self.isVertical() ? NSMinX(rect) : NSMinY(rect);
    }
    static CGFloat end(NSSplitView& self, NSRect rect)
    {
        return self.isVertical() ? NSMaxX(rect) : NSMaxY(rect);
    }
    static NSRect across(NSSplitView& self, CGFloat from, CGFloat length)
    {
        const NSRect b = self.bounds();
        return self.isVertical() ? NSMakeRect(from, NSMinY(b), length, b.size.height)
                                 : NSMakeRect(NSMinX(b), from, b.size.width, length);
    }
    static std::size_t count(const Views& views) { return views.empty() ? 0 : views.size() - 1; }
    static NSRect rectOf(NSSplitView& self, const Views& views, std::size_t index)
    {
        return across(self, end(self, views[index]->frame()), self.dividerThickness());
    }
    /// Where a divider is taken hold of.
    static NSRect handleOf(NSSplitView& self, const Views& views, std::size_t index)
    {
        const NSRect drawn = rectOf(self, views, index);
        const CGFloat more = self.dividerThickness() < 5 ? kReach : 0;
        NSRect handle
            = self.isVertical() ? NSInsetRect(drawn, -more, 0) : NSInsetRect(drawn, 0, -more);
        constexpr SEL asks = selector<"splitView:effectiveRect:forDrawnRect:ofDividerAtIndex:">;
        const Ref<NSObject> delegate = self.delegate();
        if (delegate && delegate->respondsToSelector(asks))
            handle
                = delegate->send<"splitView:effectiveRect:forDrawnRect:ofDividerAtIndex:", NSRect>(
                    &self, handle, drawn, static_cast<NSInteger>(index));
        return handle;
    }
    static std::size_t dividerAt(NSSplitView& self, const Views& views, NSPoint point)
    {
        for (std::size_t i = 0; i < count(views); ++i) {
            if (NSPointInRect(point, handleOf(self, views, i)))
                return i;
        }
        return views.size();
    }
    // A thin divider is wider for the hand than for the eye.
    static Ref<NSView> hitTest(NSSplitView& self, NSPoint point)
    {
        const Ref<NSView> found = super<NSSplitView, "hitTest:", Ref<NSView>>(self, point);
        if (!found || found == &self)
            return found;
        const NSPoint inside = self.convertPoint_fromView(point, self.superview().get());
        const Views views = shown(self);
        return dividerAt(self, views, inside) < views.size() ? Ref<NSView>(&self) : found;
    }

    // ---- how far a divider may go

    static CGFloat leastOf(NSSplitView& self, const Views& views, std::size_t index)
    {
        return start(self, views[index]->frame());
    }
    static CGFloat mostOf(NSSplitView& self, const Views& views, std::size_t index)
    {
        return end(self, views[index + 1]->frame()) - self.dividerThickness();
    }
    static bool isThere(const Views& views, NSInteger index)
    {
        return index >= 0 && static_cast<std::size_t>(index) < count(views);
    }
    static CGFloat minPossible(NSSplitView& self, NSInteger index)
    {
        const Views views = shown(self);
        return isThere(views, index) ? leastOf(self, views, static_cast<std::size_t>(index)) : 0;
    }
    static CGFloat maxPossible(NSSplitView& self, NSInteger index)
    {
        const Views views = shown(self);
        return isThere(views, index) ? mostOf(self, views, static_cast<std::size_t>(index)) : 0;
    }
    template <Text S> static CGFloat ask(NSSplitView& self, CGFloat proposed, NSInteger index)
    {
        const Ref<NSObject> delegate = self.delegate();
        if (!delegate || !delegate->respondsToSelector(selector<S>))
            return proposed;
        const CGFloat answer = delegate->send<S, CGFloat>(&self, proposed, index);
        return std::isnan(answer) ? proposed : answer;
    }
    static bool canCollapse(NSSplitView& self, NSView* view)
    {
        const Ref<NSObject> delegate = self.delegate();
        return delegate && delegate->respondsToSelector(selector<"splitView:canCollapseSubview:">)
            && delegate->send<"splitView:canCollapseSubview:", bool>(&self, view);
    }
    static void setCollapsed(NSSplitView& self, NSView* view, bool collapsed)
    {
        const auto isIt = [view](const auto& entry) { return entry.first == view; };
        const auto known = std::find_if(self.collapsed_.begin(), self.collapsed_.end(), isIt);
        if (collapsed && known == self.collapsed_.end())
            self.collapsed_.emplace_back(
                view, end(self, view->bounds()) - start(self, view->bounds()));
        else if (!collapsed)
            std::erase_if(self.collapsed_, isIt);
    }

    // ---- moving one

    static void give(NSSplitView& self, NSView& view, CGFloat from, CGFloat to)
    {
        view.setFrame(across(self, from, std::max(to - from, 0.0)));
    }
    static void put(NSSplitView& self, const Views& views, std::size_t index, CGFloat place)
    {
        const CGFloat from = leastOf(self, views, index);
        const CGFloat to = end(self, views[index + 1]->frame());
        give(self, *views[index], from, place);
        give(self, *views[index + 1], place + self.dividerThickness(), to);
        self.adjustSubviews();
    }
    // A view that is asked to be less than half of its least size collapses where it may.
    static void move(NSSplitView& self, CGFloat wanted, NSInteger number)
    {
        const Views views = shown(self);
        if (!isThere(views, number) || std::isnan(wanted))
            return;
        const auto index = static_cast<std::size_t>(number);
        const Ref<NSSplitView> alive(&self);
        const CGFloat first = leastOf(self, views, index);
        const CGFloat last = std::max(mostOf(self, views, index), first);
        const CGFloat least = std::max(
            ask<"splitView:constrainMinCoordinate:ofSubviewAt:">(self, first, number), first);
        const CGFloat most = std::min(
            ask<"splitView:constrainMaxCoordinate:ofSubviewAt:">(self, last, number), last);
        CGFloat place = ask<"splitView:constrainSplitPosition:ofSubviewAt:">(self, wanted, number);
        NSView* const before = views[index].get();
        NSView* const after = views[index + 1].get();
        const bool dropsBefore = place < first + (least - first) / 2 && canCollapse(self, before);
        const bool dropsAfter
            = !dropsBefore && place > last - (last - most) / 2 && canCollapse(self, after);
        place = dropsBefore ? first
            : dropsAfter    ? last
                            : std::clamp(place, std::min(least, most), std::max(least, most));
        setCollapsed(self, before, dropsBefore && least > first);
        setCollapsed(self, after, dropsAfter && most < last);
        put(self, views, index, std::round(place));
    }

    // ---- the pointer

    static void follow(NSSplitView& self, NSInteger index, CGFloat grip)
    {
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSDate> never = NSDate::cls().distantFuture();
        while (self.window()) {
            const Ref<NSEvent> event = application->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, never.get(), NSEventTrackingRunLoopMode,
                true);
            if (!event || event->type() == NSLeftMouseUp)
                return;
            const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
            self.setPosition_ofDividerAtIndex(
                (self.isVertical() ? point.x : point.y) - grip, index);
        }
    }
    /// Collapses a view beside a divider, or shows it again at the size it had.
    static void toggle(NSSplitView& self, const Views& views, std::size_t index)
    {
        const Ref<NSObject> delegate = self.delegate();
        constexpr SEL asks
            = selector<"splitView:shouldCollapseSubview:forDoubleClickOnDividerAtIndex:">;
        if (!delegate || !delegate->respondsToSelector(asks))
            return;
        for (const std::size_t side : { index, index + 1 }) {
            NSView* const view = views[side].get();
            if (!delegate->send<"splitView:shouldCollapseSubview:forDoubleClickOnDividerAtIndex:",
                    bool>(&self, view, static_cast<NSInteger>(index))
                || !canCollapse(self, view))
                continue;
            const bool first = side == index;
            const CGFloat from = leastOf(self, views, index);
            const CGFloat to = mostOf(self, views, index);
            const auto known = std::find_if(self.collapsed_.begin(), self.collapsed_.end(),
                [view](const auto& entry) { return entry.first == view; });
            const bool shows = known != self.collapsed_.end();
            const CGFloat size = shows ? known->second : 0;
            setCollapsed(self, view, !shows);
            return put(self, views, index,
                std::clamp(first ? from + size : to - size, from, std::max(from, to)));
        }
    }
    static void mouseDown(NSSplitView& self, NSEvent* press)
    {
        if (!press)
            return;
        const Ref<NSSplitView> alive(&self);
        const Ref<NSEvent> event(press);
        const NSPoint point = self.convertPoint_fromView(press->locationInWindow(), nullptr);
        const Views views = shown(self);
        const std::size_t index = dividerAt(self, views, point);
        if (index >= count(views))
            return super<NSSplitView, "mouseDown:">(self, press);
        if (press->clickCount() == 2)
            return toggle(self, views, index);
        const CGFloat at = self.isVertical() ? point.x : point.y;
        follow(self, static_cast<NSInteger>(index), at - start(self, rectOf(self, views, index)));
    }
    static bool yes(NSSplitView&, NSEvent*) { return true; }
    static bool no(NSSplitView&) { return false; }
    static void resetCursors(NSSplitView& self)
    {
        const Ref<NSCursor> cursor = self.isVertical() ? NSCursor::cls().resizeLeftRightCursor()
                                                       : NSCursor::cls().resizeUpDownCursor();
        const Views views = shown(self);
        for (std::size_t i = 0; i < count(views); ++i)
            addCursorRect_cursor(self, handleOf(self, views, i), cursor.get());
    }

    // ---- drawing

    static Ref<NSColor> color(NSSplitView& self)
    {
        return self.dividerStyle() == NSSplitViewDividerStyleThin ? NSColor::cls().separatorColor()
                                                                  : NSColor::cls().clearColor();
    }
    static void drawDivider(NSSplitView& self, NSRect rect)
    {
        const NSRect bar = controls::onPixels(rect);
        controls::fillRounded(bar, 0, controls::shadeOf(self.dividerColor()));
        if (self.dividerStyle() == NSSplitViewDividerStyleThin)
            return;
        const controls::Shade line = controls::shadeOf(NSColor::cls().separatorColor());
        if (self.dividerStyle() == NSSplitViewDividerStylePaneSplitter) {
            const CGFloat hair = controls::pixel();
            NSRect edge = bar;
            (self.isVertical() ? edge.size.width : edge.size.height) = hair;
            controls::fillRounded(edge, 0, line);
            (self.isVertical() ? edge.origin.x : edge.origin.y)
                += (self.isVertical() ? bar.size.width : bar.size.height) - hair;
            controls::fillRounded(edge, 0, line);
        }
        constexpr CGFloat kLong = 24;
        constexpr CGFloat kShort = 3;
        const NSSize grip = self.isVertical() ? NSSize { kShort, kLong } : NSSize { kLong, kShort };
        if (grip.width <= bar.size.width && grip.height <= bar.size.height)
            controls::fillRounded(controls::onPixels(NSMakeRect(NSMidX(bar) - grip.width / 2,
                                      NSMidY(bar) - grip.height / 2, grip.width, grip.height)),
                kShort / 2, controls::shadeOf(NSColor::cls().tertiaryLabelColor()));
    }
    static void drawRect(NSSplitView& self, NSRect)
    {
        const Views views = shown(self);
        for (std::size_t i = 0; i < count(views); ++i)
            self.drawDividerInRect(rectOf(self, views, i));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "hitTest:", imp<hitTest> },
            { "minPossiblePositionOfDividerAtIndex:", imp<minPossible> },
            { "maxPossiblePositionOfDividerAtIndex:", imp<maxPossible> },
            { "setPosition:ofDividerAtIndex:", imp<move> },
            { "mouseDown:", imp<mouseDown> },
            { "acceptsFirstMouse:", imp<yes> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "resetCursorRects", imp<resetCursors> },
            { "dividerColor", imp<color> },
            { "drawDividerInRect:", imp<drawDivider> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(NSSplitView, Dividers)

}
