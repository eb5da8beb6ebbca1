// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSClipView.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "foundation/NSRunLoop.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableView::Methods<struct Mouse> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    // ---- who gets a press

    // Texts in cells are chosen with their row; only one that is being edited gets presses of its own.
    static Ref<NSView> hitTest(NSTableView& self, NSPoint point)
    {
        TableAccess::settle(self);
        Ref<NSView> found = super<NSTableView, "hitTest:", Ref<NSView>>(self, point);
        if (found && found->isKindOfClass(NSTextField::cls())
            && !static_cast<NSTextField&>(*found).currentEditor())
            return &self;
        return found;
    }
    static Ref<NSMenu> menuForEvent(NSTableView& self, NSEvent* event)
    {
        if (event)
            setClicked(self, placeOf(self, *event));
        return super<NSTableView, "menuForEvent:", Ref<NSMenu>>(self, event);
    }
    static NSRect anchor(NSTableView& self)
    {
        const NSInteger row = self.selectedRow();
        return row < 0 ? super<NSTableView, "selectionAnchorRect", NSRect>(self)
                       : self.rectOfRow(row);
    }
    static NSPoint placeOf(NSTableView& self, NSEvent& event)
    {
        return self.convertPoint_fromView(event.locationInWindow(), nullptr);
    }
    static void setClicked(NSTableView& self, NSPoint point)
    {
        of(self).clickedRow = self.rowAtPoint(point);
        of(self).clickedColumn = of(self).clickedRow < 0 ? -1 : self.columnAtPoint(point);
    }

    // ---- choosing rows

    static void choose(NSTableView& self, NSInteger row)
    {
        if (TableAccess::userSelects(self, *TableAccess::span(row, row).get(), row))
            of(self).anchor = row;
    }
    static void extendTo(NSTableView& self, NSInteger row)
    {
        const NSInteger anchor = of(self).anchor;
        if (!of(self).multiple || !TableAccess::isRow(self, anchor))
            return choose(self, row);
        TableAccess::userSelects(self, *TableAccess::span(anchor, row).get(), row);
    }
    static void toggle(NSTableView& self, NSInteger row)
    {
        const bool was = self.isRowSelected(row);
        const Ref<NSMutableIndexSet> rows = of(self).multiple
            ? cast<NSMutableIndexSet>(of(self).selection->mutableCopy())
            : make<NSMutableIndexSet>();
        if (was)
            rows->removeIndex(static_cast<NSUInteger>(row));
        else
            rows->addIndex(static_cast<NSUInteger>(row));
        if (TableAccess::userSelects(self, *rows, was ? -1 : row))
            of(self).anchor = row;
    }
    static void press(NSTableView& self, NSInteger row, NSEventModifierFlags held)
    {
        if (row < 0) {
            if (!(held & (NSShiftKeyMask | NSCommandKeyMask)))
                self.deselectAll(nullptr);
        } else if (held & NSShiftKeyMask) {
            extendTo(self, row);
        } else if (held & NSCommandKeyMask) {
            toggle(self, row);
        } else {
            choose(self, row);
        }
    }

    // ---- following the pointer

    /// Tells of the selection once, when the button is up again.
    class Tracking {
    public:
        explicit Tracking(NSTableView& table)
            : table_(&table)
            , before_(table.selectedRowIndexes())
            , scope_(of(table).tracking)
        {
        }
        /// Ends it. - Returns: nothing; raises what observers raise.
        void end()
        {
            of(*table_).tracking = false;
            if (!before_->isEqualToIndexSet(of(*table_).selection.get()))
                TableAccess::postSelection(*table_);
        }

    private:
        Ref<NSTableView> table_;
        Ref<NSIndexSet> before_;
        FlagScope scope_;
    };
    /// Sends `NSPeriodic` events while the pointer is held outside of what shows.
    class Scrolling {
    public:
        Scrolling() = default;
        ~Scrolling() { set(false); }
        Scrolling(const Scrolling&) = delete;
        Scrolling& operator=(const Scrolling&) = delete;
        void set(bool on)
        {
            if (on == on_)
                return;
            on_ = on;
            if (on)
                NSEvent::cls().startPeriodicEventsAfterDelay_withPeriod(kPeriod, kPeriod);
            else
                NSEvent::cls().stopPeriodicEvents();
        }

    private:
        static constexpr double kPeriod = 0.05;
        bool on_ = false;
    };

    static Ref<NSEvent> nextEvent()
    {
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask | NSPeriodicMask,
                NSDate::cls().distantFuture().get(), NSEventTrackingRunLoopMode, true);
    }
    /// Answers the row nearest to a place, or -1 without rows.
    static NSInteger nearestRow(NSTableView& self, CGFloat y)
    {
        const auto row = static_cast<NSInteger>(of(self).rows.rowAt(y));
        return std::min(row, TableAccess::count(self) - 1);
    }
    static void dragTo(NSTableView& self, NSEvent& event)
    {
        const NSInteger row = nearestRow(self, placeOf(self, event).y);
        if (row < 0)
            return;
        if (of(self).multiple)
            extendTo(self, row);
        else
            choose(self, row);
    }
    static void follow(NSTableView& self, bool extends)
    {
        Scrolling scrolling;
        Ref<NSEvent> drag;
        while (const Ref<NSEvent> event = nextEvent()) {
            if (event->type() == NSLeftMouseUp)
                return;
            if (event->type() != NSPeriodic)
                drag = event;
            if (!drag || !extends)
                continue;
            const bool moved = autoscroll(&self, drag.get());
            scrolling.set(moved && !NSPointInRect(placeOf(self, *drag), self.visibleRect()));
            dragTo(self, *drag);
        }
    }

    static void mouseDown(NSTableView& self, NSEvent* lent)
    {
        if (!lent || !self.isEnabled())
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSEvent> event(lent);
        maybe(self.window())->makeFirstResponder(&self);
        setClicked(self, placeOf(self, *event));
        const NSInteger row = of(self).clickedRow;
        {
            Tracking tracking(self);
            press(self, row, event->modifierFlags());
            follow(self, row >= 0 && !(event->modifierFlags() & NSCommandKeyMask));
            tracking.end();
        }
        clicked(self, *event);
    }
    static void clicked(NSTableView& self, NSEvent& event)
    {
        const bool twice = event.clickCount() == 2;
        if (twice && of(self).doubleAction) {
            self.sendAction_to(of(self).doubleAction, self.target().get());
            return;
        }
        if (twice && of(self).clickedRow >= 0 && of(self).clickedColumn >= 0)
            self.editColumn_row_withEvent_select(
                of(self).clickedColumn, of(self).clickedRow, &event, true);
        self.sendAction_to(self.action(), self.target().get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "hitTest:", imp<hitTest> },
            { "menuForEvent:", imp<menuForEvent> },
            { "selectionAnchorRect", imp<anchor> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Mouse)

}
