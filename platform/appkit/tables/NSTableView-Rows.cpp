// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSAnimationContext.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/PropertyMovementPrivate.h"
#include "foundation/Clock.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

// ---- the store

ViewStore::Shelf* ViewStore::shelf(const NSString& identifier)
{
    const auto found = std::ranges::find_if(shelves_, [&identifier](const Shelf& shelf) {
        return shelf.identifier == &identifier || shelf.identifier->isEqualToString(&identifier);
    });
    if (found == shelves_.end())
        return nullptr;
    std::rotate(found, found + 1, shelves_.end());
    return &shelves_.back();
}

void ViewStore::put(Ref<NSView> view)
{
    const Ref<NSString> name = identifier(view);
    if (!name)
        return;
    Shelf gone; // its views end when the store is in order again
    Shelf* place = shelf(*name);
    if (!place) {
        if (shelves_.size() == kMostShelves) {
            gone = std::move(shelves_.front());
            shelves_.erase(shelves_.begin());
        }
        place = &shelves_.emplace_back(Shelf { name, {} });
    }
    if (place->views.size() < kMost)
        place->views.push_back(std::move(view));
}

Ref<NSView> ViewStore::take(const NSString& identifier)
{
    Shelf* const place = shelf(identifier);
    if (!place || place->views.empty())
        return nullptr;
    Ref<NSView> view = std::move(place->views.back());
    place->views.pop_back();
    return view;
}

// ---- the number of rows, and their heights

void TableAccess::requireRow(const NSTableView& table, NSInteger row)
{
    if (!isRow(table, row))
        raise("NSTableViewException", "Row " + std::to_string(row) + " out of row range");
}

bool TableAccess::hasHeights(const NSTableView& table)
{
    return delegateFor<"tableView:heightOfRow:">(table) != nullptr;
}

HeightQuestion::HeightQuestion(NSTableView& table)
    : table_(table)
    , delegate_(TableAccess::delegateFor<"tableView:heightOfRow:">(table))
{
}

double HeightQuestion::operator()(NSInteger row) const
{
    const TableState& s = TableAccess::state(table_);
    double height = s.rowHeight;
    if (delegate_) {
        const auto wanted = delegate_->send<"tableView:heightOfRow:", CGFloat>(&table_, row);
        if (wanted > 0 && std::isfinite(wanted))
            height = std::clamp(wanted, TableAccess::kLeastHeight, TableAccess::kMostHeight);
    }
    return height + s.spacing.height;
}

bool TableAccess::load(NSTableView& table)
{
    TableState& s = state(table);
    if (s.asking)
        return false;
    const FlagScope scope(s.asking);
    const Ref<NSObject> source = sourceFor<"numberOfRowsInTableView:">(table);
    const NSInteger said
        = source ? source->send<"numberOfRowsInTableView:", NSInteger>(&table) : NSInteger { 0 };
    const NSInteger rows = std::clamp<NSInteger>(said, 0, kMostRows);
    RowHeights fresh;
    if (hasHeights(table)) {
        const HeightQuestion heightOf(table);
        std::vector<double> heights(static_cast<std::size_t>(rows));
        for (NSInteger row = 0; row < rows; ++row)
            heights[static_cast<std::size_t>(row)] = heightOf(row);
        fresh.set(std::move(heights));
    } else {
        fresh.setUniform(static_cast<std::size_t>(rows), s.rowHeight + s.spacing.height);
    }
    s.rows = std::move(fresh);
    return true;
}

// ---- what shows

std::vector<ShownRow>::iterator TableAccess::find(TableState& state, NSInteger row)
{
    return std::lower_bound(state.shown.begin(), state.shown.end(), row,
        [](const ShownRow& shown, NSInteger wanted) { return shown.row < wanted; });
}

ShownRow* TableAccess::shownRow(const NSTableView& table, NSInteger row)
{
    TableState& s = state(table);
    const auto found = find(s, row);
    return found != s.shown.end() && found->row == row ? &*found : nullptr;
}

namespace {

    bool hasKeyboard(NSTableView& table, NSView& view)
    {
        const Ref<NSWindow> window = table.window();
        const Ref<NSResponder> first = maybe(window)->firstResponder();
        return first && first->isKindOfClass(NSView::cls())
            && static_cast<NSView&>(*first).isDescendantOf(&view);
    }

    Ref<NSView> viewOrNil(Ref<NSObject> answer)
    {
        return answer && answer->isKindOfClass(NSView::cls()) ? cast<NSView>(answer) : nullptr;
    }

    Ref<NSColor> groundOf(NSTableView& table, NSInteger row)
    {
        return TableAccess::state(table).alternates && row % 2 != 0
            ? NSColor::cls().alternatingContentBackgroundColor()
            : table.backgroundColor();
    }

    void showState(NSTableView& table, const ShownRow& shown, bool emphasized)
    {
        const TableState& s = TableAccess::state(table);
        NSTableRowView& view = *shown.view;
        view.setSelectionHighlightStyle(s.highlight);
        view.setEmphasized(emphasized);
        view.setSelected(s.selection->containsIndex(static_cast<NSUInteger>(shown.row)));
        TableAccess::setGround(view, groundOf(table, shown.row));
    }

    bool isEmphasized(NSTableView& table)
    {
        const Ref<NSWindow> window = table.window();
        return window && window->isKeyWindow() && hasKeyboard(table, table);
    }

}

void TableAccess::showStates(NSTableView& table)
{
    const bool emphasized = isEmphasized(table);
    const std::vector<ShownRow>& rows = state(table).shown;
    for (std::size_t i = 0; i < rows.size(); ++i) { // an override may change the list
        const ShownRow shown = rows[i];
        showState(table, shown, emphasized);
    }
}

void TableAccess::putAway(NSTableView& table, const Ref<NSTableRowView>& view)
{
    ViewStore& store = state(table).store;
    AllServed all; // editing may end in them
    for (std::size_t i = 0; i < cells(*view).size(); ++i) { // removing a view may change the list
        const Ref<NSView> cell = std::exchange(cells(*view)[i], nullptr);
        if (!cell || ViewAccess::superview(*cell) != view.get())
            continue;
        ViewAccess::takeOut(*cell, all);
        store.put(cell);
    }
    if (ViewAccess::superview(*view) == &table)
        ViewAccess::takeOut(*view, all);
    store.put(view);
    all.end();
}

// The delegate is told while the cell views are still there.
void TableAccess::takeOut(NSTableView& table, const ShownRow& gone)
{
    AllServed all;
    if (const Ref<NSObject> delegate = delegateFor<"tableView:didRemoveRowView:forRow:">(table)) {
        ViewAccess::takeOut(*gone.view, all);
        all.serve([&] {
            delegate->send<"tableView:didRemoveRowView:forRow:">(&table, gone.view.get(), gone.row);
        });
    }
    all.serve([&] { putAway(table, gone.view); });
    all.end();
}

namespace {

    NSRange rowsThatShow(NSTableView& table)
    {
        return table.window() ? table.rowsInRect(table.visibleRect()) : NSRange {};
    }

    bool isIn(NSRange range, NSInteger row)
    {
        const auto number = static_cast<NSUInteger>(row);
        return number >= range.location && number - range.location < range.length;
    }

    void removeHidden(NSTableView& table, NSRange showing)
    {
        TableState& s = TableAccess::state(table);
        for (std::size_t i = 0; i < s.shown.size();) {
            if (isIn(showing, s.shown[i].row) || hasKeyboard(table, *s.shown[i].view)) {
                ++i;
                continue;
            }
            const ShownRow gone = s.shown[i];
            s.shown.erase(s.shown.begin() + static_cast<std::ptrdiff_t>(i));
            const std::size_t generation = s.generation;
            TableAccess::takeOut(table, gone);
            if (s.generation != generation)
                return;
        }
    }

    /// - Returns: NO when something was loaded anew meanwhile.
    bool addRow(NSTableView& table, NSInteger row)
    {
        TableState& s = TableAccess::state(table);
        const std::size_t generation = s.generation;
        const Ref<NSTableRowView> view = TableAccess::makeRow(table, row);
        if (s.generation != generation) {
            TableAccess::putAway(table, view);
            return false;
        }
        const ShownRow shown { row, view, table.rectOfRow(row) };
        s.shown.insert(TableAccess::find(s, row), shown);
        showState(table, shown, isEmphasized(table));
        table.addSubview(view.get());
        if (const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:didAddRowView:forRow:">(table))
            delegate->send<"tableView:didAddRowView:forRow:">(&table, view.get(), row);
        return s.generation == generation;
    }

}

void TableAccess::settle(NSTableView& table)
{
    TableState& s = state(table);
    if (s.settling || s.asking)
        return;
    const Ref<NSTableView> alive(&table);
    const FlagScope scope(s.settling);
    const NSRange showing = rowsThatShow(table);
    const std::size_t generation = s.generation;
    removeHidden(table, showing);
    for (NSUInteger row = showing.location; row < NSMaxRange(showing); ++row) {
        const auto number = static_cast<NSInteger>(row);
        if (s.generation != generation || (!shownRow(table, number) && !addRow(table, number))) {
            table.setNeedsDisplay(true); // the next drawing begins again
            return;
        }
    }
}

void TableAccess::forget(NSTableView& table)
{
    TableState& s = state(table);
    const Ref<NSTableView> alive(&table);
    ++s.generation;
    AllServed all;
    const std::vector<ShownRow> gone = std::exchange(s.shown, {});
    for (const ShownRow& shown : gone)
        all.serve([&] { takeOut(table, shown); });
    table.setNeedsDisplay(true);
    all.end();
}

// ---- making a row

namespace {

    // A view that moved when it was put away would go on moving.
    void putAt(NSTableView& table, NSView& view, NSRect frame)
    {
        if (view.frame() == frame)
            return;
        if (Clock::uptime() >= TableAccess::state(table).movingUntil)
            return view.setFrame(frame);
        inAnimationGroup([&](NSAnimationContext& context) {
            context.setDuration(0);
            view.animator()->setFrame(frame);
        });
    }

    Ref<NSTableRowView> rowView(NSTableView& table, NSInteger row)
    {
        if (const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:rowViewForRow:">(table)) {
            Ref<NSObject> made
                = delegate->send<"tableView:rowViewForRow:", Ref<NSTableRowView>>(&table, row);
            if (made && made->isKindOfClass(NSTableRowView::cls()))
                return cast<NSTableRowView>(made);
        }
        const Ref<NSView> stored
            = table.makeViewWithIdentifier_owner(NSTableViewRowViewKey, &table);
        if (stored && stored->isKindOfClass(NSTableRowView::cls()))
            return cast<NSTableRowView>(stored);
        const Ref<NSTableRowView> made = make<NSTableRowView>();
        setIdentifier(made, NSTableViewRowViewKey);
        return made;
    }

    Ref<NSObject> valueFor(NSTableView& table, NSTableColumn& column, NSInteger row)
    {
        const Ref<NSObject> source
            = TableAccess::sourceFor<"tableView:objectValueForTableColumn:row:">(table);
        return source ? source->send<"tableView:objectValueForTableColumn:row:", Ref<NSObject>>(
                   &table, &column, row)
                      : nullptr;
    }

    constexpr StringConstant<"NSTableViewTextCell"> kTextCell;
    constexpr NSRect kTextRoom { {}, { 100, 17 } }; // where margins begin

    Ref<NSTableCellView> makeTextCell(NSTableView& table)
    {
        const Ref<NSTableCellView> cell
            = cast<NSTableCellView>(alloc<NSTableCellView>()->initWithFrame(kTextRoom));
        setIdentifier(cell, kTextCell);
        const Ref<NSTextField> text = NSTextField::cls().labelWithString(""_ns);
        maybe(text->cell())->setLineBreakMode(NSLineBreakByTruncatingTail);
        const CGFloat height = text->frame().size.height;
        text->setFrame(
            NSMakeRect(0, (kTextRoom.size.height - height) / 2, kTextRoom.size.width, height));
        text->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin | NSViewMaxYMargin);
        text->setDelegate(&table);
        cell->addSubview(text.get());
        cell->setTextField(text.get());
        return cell;
    }
    // A text of the table's own, for tables whose delegate has no views.
    Ref<NSView> textCell(NSTableView& table, NSTableColumn& column)
    {
        const Ref<NSView> stored = table.makeViewWithIdentifier_owner(kTextCell, &table);
        const Ref<NSTableCellView> cell = stored && stored->isKindOfClass(NSTableCellView::cls())
            ? cast<NSTableCellView>(stored)
            : makeTextCell(table);
        const bool editable = column.isEditable()
            && TableAccess::sourceFor<"tableView:setObjectValue:forTableColumn:row:">(table);
        const Ref<NSTextField> text = cell->textField();
        maybe(text)->setEditable(editable);
        maybe(text)->setSelectable(editable);
        return cell;
    }

    Ref<NSView> cellView(NSTableView& table, NSTableColumn& column, NSInteger row)
    {
        if (const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:viewForTableColumn:row:">(table))
            return viewOrNil(delegate->send<"tableView:viewForTableColumn:row:", Ref<NSView>>(
                &table, &column, row));
        if (TableAccess::sourceFor<"tableView:objectValueForTableColumn:row:">(table))
            return textCell(table, column);
        return nullptr;
    }

}

void TableAccess::fillCell(NSTableView& table, NSTableRowView& view, NSInteger index, NSInteger row)
{
    const Ref<NSTableColumn> column = state(table).columns[static_cast<std::size_t>(index)];
    const std::size_t generation = state(table).generation;
    const Ref<NSView> cell = cellView(table, *column, row);
    if (!cell || state(table).generation != generation || view.isDescendantOf(cell.get()))
        return;
    if (cell->respondsToSelector(selector<"setObjectValue:">)) {
        if (const Ref<NSObject> value = valueFor(table, *column, row))
            cell->send<"setObjectValue:">(value.get());
    }
    view.addSubview(cell.get());
    const auto place = static_cast<std::size_t>(index);
    if (place < cells(view).size())
        cells(view)[place] = cell;
}

void TableAccess::placeCells(NSTableView& table, NSTableRowView& view, NSRect place)
{
    const NSSize space = state(table).spacing;
    CGFloat x = 0;
    for (std::size_t i = 0; i < cells(view).size() && i < state(table).columns.size(); ++i) {
        const CGFloat width = columnWidth(table, *state(table).columns[i]);
        if (const Ref<NSView> cell = cells(view)[i]) {
            const bool hidden = width <= 0;
            if (cell->isHidden() != hidden)
                cell->setHidden(hidden);
            const NSRect frame = NSMakeRect(x + space.width / 2, space.height / 2,
                std::max(0.0, width - space.width),
                std::max(0.0, place.size.height - space.height));
            if (cell->frame() != frame)
                cell->setFrame(frame);
        }
        x += width;
    }
}

Ref<NSTableRowView> TableAccess::makeRow(NSTableView& table, NSInteger row)
{
    const std::size_t generation = state(table).generation;
    const Ref<NSTableRowView> view = rowView(table, row);
    if (ViewAccess::superview(*view) == &table) { // the delegate gave one that shows already
        std::erase_if(state(table).shown, [&](const ShownRow& s) { return s.view == view; });
        putAway(table, view);
    }
    const NSRect place = table.rectOfRow(row);
    putAt(table, *view, place);
    const std::size_t columns = state(table).columns.size();
    cells(*view).assign(columns, nullptr);
    for (std::size_t i = 0; i < columns && state(table).generation == generation; ++i)
        fillCell(table, *view, static_cast<NSInteger>(i), row);
    if (state(table).generation == generation)
        placeCells(table, *view, place);
    return view;
}

// ---- places

void TableAccess::place(NSTableView& table, bool moves)
{
    TableState& s = state(table);
    const Ref<NSTableView> alive(&table);
    const double seconds = NSAnimationContext::cls().currentContext()->duration();
    const bool slowly = moves && seconds > 0 && table.window();
    const std::vector<ShownRow> rows = s.shown;
    for (const ShownRow& shown : rows) {
        const NSRect target = table.rectOfRow(shown.row);
        placeCells(table, *shown.view, target);
        ShownRow* const present = shownRow(table, shown.row);
        if (!present || present->place == target)
            continue;
        present->place = target;
        if (slowly && std::isfinite(seconds))
            shown.view->animator()->setFrame(target);
        else
            putAt(table, *shown.view, target);
    }
    if (slowly)
        s.movingUntil = std::max(s.movingUntil, Clock::uptime() + seconds);
}

}
