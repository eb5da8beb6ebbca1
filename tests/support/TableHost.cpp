// SPDX-License-Identifier: Apache-2.0
#include "support/TableHost.h"

#include "foundation/NSNotification.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct TableHost::Methods<struct Answers> {
    using H = TableHost;

    // ---- which operations there are

    template <class F> static bool lacks(SEL asked, SEL sel, const F& function)
    {
        return asked == sel && !function;
    }
    static bool responds(H& self, SEL s)
    {
        if (lacks(s, selector<"tableView:objectValueForTableColumn:row:">, self.value_)
            || lacks(s, selector<"tableView:setObjectValue:forTableColumn:row:">, self.setValue_)
            || lacks(s, selector<"tableView:viewForTableColumn:row:">, self.view_)
            || lacks(s, selector<"tableView:rowViewForRow:">, self.rowView_)
            || lacks(s, selector<"tableView:heightOfRow:">, self.height_)
            || lacks(s, selector<"tableView:shouldSelectRow:">, self.mayBeSelected_)
            || lacks(s, selector<"selectionShouldChangeInTableView:">, self.mayChange_)
            || lacks(s, selector<"tableView:selectionIndexesForProposedSelection:">, self.proposal_)
            || lacks(s, selector<"tableView:shouldEditTableColumn:row:">, self.mayEdit_)
            || lacks(s, selector<"tableView:typeSelectStringForTableColumn:row:">, self.word_)
            || lacks(s, selector<"tableView:shouldReorderColumn:toColumn:">, self.mayMove_)
            || lacks(s, selector<"tableView:didAddRowView:forRow:">, self.tellsRows_)
            || lacks(s, selector<"tableView:didRemoveRowView:forRow:">, self.tellsRows_))
            return false;
        return super<H, "respondsToSelector:", bool>(self, s);
    }

    // ---- the data source

    static NSInteger count(H& self, NSTableView*)
    {
        return self.count_ ? self.count_() : self.rows_;
    }
    static Ref<NSObject> value(H& self, NSTableView*, NSTableColumn* column, NSInteger row)
    {
        return self.value_(*column, row);
    }
    static void setValue(
        H& self, NSTableView*, NSObject* value, NSTableColumn* column, NSInteger row)
    {
        self.setValue_(value, *column, row);
    }
    static void orderChanged(H& self, NSTableView*, NSArray* old)
    {
        self.log_ += "order(" + std::to_string(old->count()) + ") ";
    }

    // ---- the delegate

    static Ref<NSView> view(H& self, NSTableView*, NSTableColumn* column, NSInteger row)
    {
        return cast<NSView>(self.view_(*column, row));
    }
    static Ref<NSTableRowView> rowView(H& self, NSTableView*, NSInteger row)
    {
        return cast<NSTableRowView>(self.rowView_(row));
    }
    static CGFloat height(H& self, NSTableView*, NSInteger row) { return self.height_(row); }
    static bool mayBeSelected(H& self, NSTableView*, NSInteger row)
    {
        return self.mayBeSelected_(row);
    }
    static bool mayChange(H& self, NSTableView*) { return self.mayChange_(); }
    static Ref<NSIndexSet> proposal(H& self, NSTableView*, NSIndexSet* rows)
    {
        return self.proposal_(rows);
    }
    static bool mayEdit(H& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return self.mayEdit_(row);
    }
    static Ref<NSString> word(H& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return self.word_(row);
    }
    static bool mayMove(H& self, NSTableView*, NSInteger from, NSInteger to)
    {
        return self.mayMove_(from, to);
    }
    static void didAdd(H& self, NSTableView*, NSTableRowView*, NSInteger row)
    {
        self.log_ += "+" + std::to_string(row) + " ";
    }
    static void didRemove(H& self, NSTableView*, NSTableRowView*, NSInteger row)
    {
        self.log_ += "-" + std::to_string(row) + " ";
        if (self.rowGone_)
            self.rowGone_();
    }
    static void selectionChanged(H& self, NSNotification*) { self.log_ += "selected "; }
    static void selectionChanges(H& self, NSNotification*) { self.log_ += "selecting "; }
    static void columnMoved(H& self, NSNotification*) { self.log_ += "moved "; }
    static void columnResized(H& self, NSNotification*) { self.log_ += "resized "; }
    static void clicked(H& self, NSTableView*, NSTableColumn* column)
    {
        self.log_ += "clicked:" + utf8(column->identifier()) + " ";
    }
    static void dragged(H& self, NSTableView*, NSTableColumn* column)
    {
        self.log_ += "dragged:" + utf8(column->identifier()) + " ";
    }

    static void table(Builder& t)
    {
        t.methods({
            { "respondsToSelector:", imp<responds> },
            { "numberOfRowsInTableView:", imp<count> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
            { "tableView:setObjectValue:forTableColumn:row:", imp<setValue> },
            { "tableView:sortDescriptorsDidChange:", imp<orderChanged> },
            { "tableView:viewForTableColumn:row:", imp<view> },
            { "tableView:rowViewForRow:", imp<rowView> },
            { "tableView:heightOfRow:", imp<height> },
            { "tableView:shouldSelectRow:", imp<mayBeSelected> },
            { "selectionShouldChangeInTableView:", imp<mayChange> },
            { "tableView:selectionIndexesForProposedSelection:", imp<proposal> },
            { "tableView:shouldEditTableColumn:row:", imp<mayEdit> },
            { "tableView:typeSelectStringForTableColumn:row:", imp<word> },
            { "tableView:shouldReorderColumn:toColumn:", imp<mayMove> },
            { "tableView:didAddRowView:forRow:", imp<didAdd> },
            { "tableView:didRemoveRowView:forRow:", imp<didRemove> },
            { "tableViewSelectionDidChange:", imp<selectionChanged> },
            { "tableViewSelectionIsChanging:", imp<selectionChanges> },
            { "tableViewColumnDidMove:", imp<columnMoved> },
            { "tableViewColumnDidResize:", imp<columnResized> },
            { "tableView:didClickTableColumn:", imp<clicked> },
            { "tableView:didDragTableColumn:", imp<dragged> },
        });
    }
};
BRINDLE_RECORD(TableHost, Answers)

namespace test {

    Ref<NSIndexSet> indexes(std::initializer_list<NSUInteger> rows)
    {
        const Ref<NSMutableIndexSet> set = make<NSMutableIndexSet>();
        for (const NSUInteger row : rows)
            set->addIndex(row);
        return set;
    }
    Ref<NSTableColumn> column(NSString* identifier, double width)
    {
        const Ref<NSTableColumn> made = alloc<NSTableColumn>()->initWithIdentifier(identifier);
        made->setWidth(width);
        return made;
    }
    std::string textOf(const Ref<NSIndexSet>& rows)
    {
        std::string text;
        rows->enumerateIndexesUsingBlock([&](NSUInteger row, bool*) {
            text += (text.empty() ? "" : ",") + std::to_string(row);
        });
        return text;
    }

    Table::Table(NSInteger rows, NSRect frame)
        : view(make<NSTableView>())
        , scroll(cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(frame)))
        , host(make<TableHost>())
    {
        host->rows_ = rows;
        view->setHeaderView(nullptr);
        view->addTableColumn(column("name"_ns, 97).get());
        scroll->setDocumentView(view.get());
        view->setDelegate(host.get());
        view->setDataSource(host.get());
        host->log_.clear();
    }
    // Hosts that answer with a table's own views would keep it.
    Table::~Table()
    {
        view->setDataSource(nullptr);
        view->setDelegate(nullptr);
        scroll->removeFromSuperview();
    }
    void Table::select(std::initializer_list<NSUInteger> rows, bool extend)
    {
        view->selectRowIndexes_byExtendingSelection(indexes(rows).get(), extend);
    }
    std::string Table::shown() const
    {
        NSInteger first = -1;
        int count = 0;
        view->enumerateAvailableRowViewsUsingBlock([&](NSTableRowView*, NSInteger row) {
            first = first < 0 ? row : first;
            ++count;
        });
        return std::to_string(first) + "+" + std::to_string(count);
    }

}

}
