// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "foundation/NSMutableString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableView::Methods<struct Keys> {

    static constexpr double kTypingSeconds = 1; // after which letters begin a new word

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    // ---- the keyboard comes and goes

    static bool accepts(NSTableView& self)
    {
        return self.isEnabled() && !self.refusesFirstResponder();
    }
    template <Text S> static bool changes(NSTableView& self)
    {
        self.setNeedsDisplay(true); // the selection has another colour then
        return super<NSTableView, S, bool>(self);
    }

    // ---- moving the selection

    static Ref<NSIndexSet> rowsTo(NSTableView& self, NSInteger row, bool extend)
    {
        const NSInteger anchor = of(self).anchor;
        const NSInteger other
            = extend && of(self).multiple && TableAccess::isRow(self, anchor) ? anchor : row;
        return TableAccess::span(other, row);
    }
    // A row that the delegate refuses is passed over, in the direction of the movement.
    static void moveTo(NSTableView& self, NSInteger row, NSInteger further, bool extend)
    {
        const NSInteger count = TableAccess::count(self);
        if (!count)
            return;
        for (row = std::clamp<NSInteger>(row, 0, count - 1); TableAccess::isRow(self, row);
             row += further) {
            const bool taken
                = TableAccess::userSelects(self, *rowsTo(self, row, extend).get(), row);
            if (taken && (!extend || !of(self).multiple || of(self).anchor < 0))
                of(self).anchor = row;
            if (taken)
                return self.scrollRowToVisible(row);
        }
    }
    static NSInteger from(NSTableView& self, NSInteger further)
    {
        const NSInteger row
            = TableAccess::isRow(self, of(self).lead) ? of(self).lead : self.selectedRow();
        return row >= 0 ? row : further > 0 ? -1 : TableAccess::count(self);
    }
    static void step(NSTableView& self, NSInteger further, bool extend)
    {
        const NSInteger next = from(self, further) + further;
        if (TableAccess::isRow(self, next))
            moveTo(self, next, further, extend);
        else
            self.scrollRowToVisible(next - further);
    }
    static void turnPage(NSTableView& self, NSInteger further, bool extend)
    {
        const NSRect shown = self.visibleRect();
        const NSInteger row = from(self, further);
        const NSRect present = self.rectOfRow(row);
        const CGFloat y = further > 0 ? NSMaxY(present) + shown.size.height
                                      : NSMinY(present) - shown.size.height;
        const RowHeights& rows = of(self).rows;
        NSInteger next = static_cast<NSInteger>(rows.rowAt(y)) - (further > 0 ? 1 : 0);
        if (next == row)
            next += further;
        moveTo(self, next, further, extend);
    }
    static bool moves(NSTableView& self, unichar key, bool extend)
    {
        switch (key) {
        case NSUpArrowFunctionKey:
            return step(self, -1, extend), true;
        case NSDownArrowFunctionKey:
            return step(self, 1, extend), true;
        case NSPageUpFunctionKey:
            return turnPage(self, -1, extend), true;
        case NSPageDownFunctionKey:
            return turnPage(self, 1, extend), true;
        case NSHomeFunctionKey:
            return moveTo(self, 0, 1, extend), true;
        case NSEndFunctionKey:
            return moveTo(self, TableAccess::count(self) - 1, -1, extend), true;
        default:
            return false;
        }
    }

    // ---- choosing by letters

    static Ref<NSString> textOf(const Ref<NSObject>& value)
    {
        if (!value)
            return nullptr;
        return value->isKindOfClass(NSString::cls()) ? cast<NSString>(value) : value->description();
    }
    /// Answers what a row is found by: what the delegate says, else the values, else the texts that show.
    static Ref<NSString> wordOf(NSTableView& self, NSInteger column, NSInteger row)
    {
        NSTableColumn* const wanted = of(self).columns[static_cast<std::size_t>(column)].get();
        if (const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:typeSelectStringForTableColumn:row:">(self))
            return delegate->send<"tableView:typeSelectStringForTableColumn:row:", Ref<NSString>>(
                &self, wanted, row);
        if (const Ref<NSObject> source
            = TableAccess::sourceFor<"tableView:objectValueForTableColumn:row:">(self))
            return textOf(source->send<"tableView:objectValueForTableColumn:row:", Ref<NSObject>>(
                &self, wanted, row));
        const Ref<NSView> cell = self.viewAtColumn_row_makeIfNecessary(column, row, false);
        if (cell && cell->isKindOfClass(NSTableCellView::cls()))
            return maybe(static_cast<NSTableCellView&>(*cell).textField())->stringValue();
        return cell && cell->isKindOfClass(NSTextField::cls())
            ? static_cast<NSTextField&>(*cell).stringValue()
            : nullptr;
    }
    static bool begins(NSTableView& self, NSInteger row, const NSString& letters)
    {
        for (NSInteger column = 0; column < self.numberOfColumns(); ++column) {
            const Ref<NSString> word = wordOf(self, column, row);
            if (word && word->isKindOfClass(NSString::cls())
                && word->rangeOfString_options(&letters, NSCaseInsensitiveSearch | NSAnchoredSearch)
                        .location
                    == 0)
                return true;
        }
        return false;
    }
    // A first letter goes on from the next row, further ones may stay where they are.
    static void findRow(NSTableView& self, const NSString& letters, bool fresh)
    {
        const NSInteger count = TableAccess::count(self);
        const NSInteger present = self.selectedRow();
        const NSInteger start = present < 0 ? 0 : present + (fresh ? 1 : 0);
        for (NSInteger i = 0; i < count; ++i) {
            const NSInteger row = (start + i) % count;
            if (begins(self, row, letters)) {
                moveTo(self, row, 1, false);
                return;
            }
            if (TableAccess::count(self) != count)
                return;
        }
    }
    static bool isLetter(unichar c)
    {
        return c > ' ' && c != 0x7F && !(c >= 0xF700 && c <= 0xF8FF);
    }
    static bool chooses(NSTableView& self, NSEvent& event, const NSString& typed)
    {
        TableState& s = of(self);
        const bool goesOn
            = s.typed && s.typed->length() && event.timestamp() - s.typedAt < kTypingSeconds;
        const unichar first = typed.characterAtIndex(0);
        if (!s.typeSelects || !TableAccess::count(self)
            || !(isLetter(first) || (first == ' ' && goesOn)))
            return false;
        if (!goesOn)
            s.typed = make<NSMutableString>();
        s.typed->appendString(&typed);
        s.typedAt = event.timestamp();
        const Ref<NSString> letters = cast<NSString>(s.typed->copy());
        findRow(self, *letters, !goesOn);
        return true;
    }

    // ---- keys

    static bool edits(NSTableView& self)
    {
        const NSInteger row = self.selectedRow();
        for (NSInteger column = 0; row >= 0 && column < self.numberOfColumns(); ++column) {
            self.editColumn_row_withEvent_select(column, row, nullptr, true);
            if (self.editedRow() >= 0)
                return true;
        }
        return false;
    }
    static bool handles(NSTableView& self, NSEvent& event)
    {
        const Ref<NSString> typed = event.charactersIgnoringModifiers();
        const NSEventModifierFlags flags = event.modifierFlags();
        if (!typed || !typed->length() || !self.isEnabled()
            || (flags & (NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask)))
            return false;
        const unichar key = typed->characterAtIndex(0);
        if (moves(self, key, flags & NSShiftKeyMask))
            return true;
        if (key == '\r' || key == 3)
            return edits(self);
        return chooses(self, event, *typed);
    }
    static void keyDown(NSTableView& self, NSEvent* event)
    {
        const Ref<NSTableView> alive(&self);
        const Ref<NSEvent> present(event);
        if (!event || !handles(self, *event))
            super<NSTableView, "keyDown:">(self, event);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<accepts> },
            { "becomeFirstResponder", imp<changes<"becomeFirstResponder">> },
            { "resignFirstResponder", imp<changes<"resignFirstResponder">> },
            { "keyDown:", imp<keyDown> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Keys)

}
