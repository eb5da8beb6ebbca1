// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSText.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableView::Methods<struct Editing> {

    /// Answers the text of a cell that may be typed in, or nil.
    static Ref<NSTextField> editableText(const Ref<NSView>& cell)
    {
        Ref<NSView> text = cell;
        if (cell && cell->isKindOfClass(NSTableCellView::cls()))
            text = static_cast<NSTableCellView&>(*cell).textField();
        if (!text || !text->isKindOfClass(NSTextField::cls()))
            return nullptr;
        Ref<NSTextField> field = cast<NSTextField>(text);
        return field->isEditable() && field->isEnabled() ? field : nullptr;
    }
    static bool mayEdit(NSTableView& self, NSInteger column, NSInteger row)
    {
        const Ref<NSTableColumn>& wanted
            = TableAccess::state(self).columns[static_cast<std::size_t>(column)];
        const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:shouldEditTableColumn:row:">(self);
        return !delegate
            || delegate->send<"tableView:shouldEditTableColumn:row:", bool>(
                &self, wanted.get(), row);
    }
    static void edit(NSTableView& self, NSInteger column, NSInteger row, NSEvent*, bool selects)
    {
        TableAccess::requireRow(self, row);
        TableAccess::requireColumn(self, column);
        const Ref<NSTableView> alive(&self);
        if (!self.window())
            return;
        self.scrollRowToVisible(row);
        self.scrollColumnToVisible(column);
        TableAccess::settle(self);
        if (!TableAccess::isRow(self, row) || !TableAccess::isColumn(self, column))
            return;
        const Ref<NSTextField> text
            = editableText(self.viewAtColumn_row_makeIfNecessary(column, row, false));
        if (!text || !mayEdit(self, column, row))
            return;
        text->selectText(&self);
        const Ref<NSText> editor = text->currentEditor();
        if (editor && !selects)
            editor->setSelectedRange({ text->stringValue()->length(), 0 });
    }

    /// Answers the field that is being typed in, or nil.
    static Ref<NSView> editedText(NSTableView& self)
    {
        const Ref<NSResponder> first = maybe(self.window())->firstResponder();
        if (!first || !first->isKindOfClass(NSView::cls()))
            return nullptr;
        for (Ref<NSView> view = cast<NSView>(Ref<NSResponder>(first)); view && view.get() != &self;
             view = view->superview()) {
            if (view->isKindOfClass(NSTextField::cls()))
                return view;
        }
        return nullptr;
    }
    static NSInteger editedRow(NSTableView& self)
    {
        return self.rowForView(editedText(self).get());
    }
    static NSInteger editedColumn(NSTableView& self)
    {
        return self.columnForView(editedText(self).get());
    }

    // ---- texts of the table's own tell it what was typed

    static bool wasReturn(NSNotification& news)
    {
        const Ref<NSObject> movement = maybe(news.userInfo())->objectForKey("NSTextMovement"_ns);
        return movement && movement->isKindOfClass(NSNumber::cls())
            && static_cast<NSNumber&>(*movement).integerValue() == NSReturnTextMovement;
    }
    static void store(NSTableView& self, NSTextField& field)
    {
        const NSInteger row = self.rowForView(&field);
        const NSInteger column = self.columnForView(&field);
        const Ref<NSObject> source
            = TableAccess::sourceFor<"tableView:setObjectValue:forTableColumn:row:">(self);
        const Ref<NSView> cell = field.superview();
        if (!source || row < 0 || column < 0 || !cell->isKindOfClass(NSTableCellView::cls()))
            return;
        auto& owner = static_cast<NSTableCellView&>(*cell);
        const Ref<NSObject> value = field.objectValue();
        if (value && value->isEqual(owner.objectValue().get()))
            return;
        const Ref<NSTableColumn> wanted
            = TableAccess::state(self).columns[static_cast<std::size_t>(column)];
        source->send<"tableView:setObjectValue:forTableColumn:row:">(
            &self, value.get(), wanted.get(), row);
        owner.setObjectValue(value.get());
    }
    static void didEndEditing(NSTableView& self, NSNotification* news)
    {
        const Ref<NSObject> sender = maybe(news)->object();
        if (!sender || !sender->isKindOfClass(NSTextField::cls()))
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSWindow> window = self.window();
        const bool isOver = window && window->firstResponder() == window.get();
        store(self, static_cast<NSTextField&>(*sender));
        if (isOver && wasReturn(*news))
            window->makeFirstResponder(&self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "editColumn:row:withEvent:select:", imp<edit> },
            { "editedRow", imp<editedRow> },
            { "editedColumn", imp<editedColumn> },
            { "controlTextDidEndEditing:", imp<didEndEditing> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Editing)

}
