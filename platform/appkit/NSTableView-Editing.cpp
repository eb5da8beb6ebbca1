// SPDX-License-Identifier: Apache-2.0
#include "NSEvent.h"
#include "NSTableCellView.h"
#include "NSTableViewPrivate.h"
#include "NSText.h"
#include "NSTextField.h"
#include "NSWindow.h"
#include "foundation/Each.h"
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

    // The action of the texts that a table makes itself.
    static void textWasEdited(NSTableView& self, NSObject* sender)
    {
        if (!sender || !sender->isKindOfClass(NSTextField::cls()))
            return;
        const Ref<NSTableView> alive(&self);
        auto& field = static_cast<NSTextField&>(*sender);
        const NSInteger row = self.rowForView(&field);
        const NSInteger column = self.columnForView(&field);
        const Ref<NSObject> source
            = TableAccess::sourceFor<"tableView:setObjectValue:forTableColumn:row:">(self);
        if (!source || row < 0 || column < 0)
            return;
        const Ref<NSTableColumn> wanted
            = TableAccess::state(self).columns[static_cast<std::size_t>(column)];
        source->send<"tableView:setObjectValue:forTableColumn:row:">(
            &self, field.objectValue().get(), wanted.get(), row);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "editColumn:row:withEvent:select:", imp<edit> },
            { "editedRow", imp<editedRow> },
            { "editedColumn", imp<editedColumn> },
            { "cellTextWasEdited:", imp<textWasEdited> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Editing)

}
