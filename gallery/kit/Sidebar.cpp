// SPDX-License-Identifier: Apache-2.0
#include "Sidebar.h"

#include "Drawing.h"
#include "Palette.h"
#include "SidebarRows.h"
#include "appkit/NSText.h"
#include "appkit/NSWindow.h"
#include "foundation/NSNotification.h"
#include "pages/PageSearch.h"
#include "pages/Pages.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GallerySidebar::Methods<struct List> {

    static constexpr double kMargin = 14;
    static constexpr double kTop = 102; // the list's
    static constexpr double kRowHeight = 26;
    static constexpr double kHeadingHeight = 30;
    static constexpr double kFoundHeight = 42;

    static bool isFlipped(GallerySidebar&) { return true; }
    static bool isOpaque(GallerySidebar&) { return true; }

    // ---- making

    static Ref<NSView> initWithFrame(GallerySidebar& self, NSRect frame)
    {
        Ref<NSView> made = super<GallerySidebar, "initWithFrame:", Ref<NSView>>(self, frame);
        self.searchField_ = make<NSSearchField>();
        self.searchField_->setPlaceholderString("Search"_ns);
        self.searchField_->setSendsSearchStringImmediately(true);
        self.searchField_->setTarget(&self);
        self.searchField_->setAction(selector<"search:">);
        self.searchField_->setDelegate(&self);
        self.addSubview(self.searchField_.get());

        self.list_ = Ref<NSTableView>(make<SidebarList>());
        self.list_->setHeaderView(nullptr);
        self.list_->setIntercellSpacing(NSZeroSize);
        self.list_->setBackgroundColor(NSColor::cls().clearColor().get());
        const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier("page"_ns);
        self.list_->addTableColumn(column.get());
        self.scroll_ = make<NSScrollView>();
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setScrollerStyle(NSScrollerStyleOverlay);
        self.scroll_->setBorderType(NSNoBorder);
        self.scroll_->setDrawsBackground(false);
        self.scroll_->setDocumentView(self.list_.get());
        self.addSubview(self.scroll_.get());
        self.list_->setDataSource(&self);
        self.list_->setDelegate(&self);
        showAll(self);
        self.list_->setTarget(&self);
        self.list_->setAction(selector<"enter">);
        layOut(self);
        return made;
    }
    static void dealloc(GallerySidebar& self)
    {
        self.list_->setDataSource(nullptr);
        self.list_->setDelegate(nullptr);
        super<GallerySidebar, "dealloc">(self);
    }
    static void setFrameSize(GallerySidebar& self, NSSize size)
    {
        super<GallerySidebar, "setFrameSize:">(self, size);
        if (self.scroll_)
            layOut(self);
    }
    static void layOut(GallerySidebar& self)
    {
        const NSSize size = self.bounds().size;
        self.searchField_->setFrame(NSMakeRect(kMargin, 62, size.width - 2 * kMargin - 1, 26));
        self.scroll_->setFrame(NSMakeRect(0, kTop, size.width - 1, size.height - kTop));
        self.list_->sizeLastColumnToFit();
    }
    static void drawRect(GallerySidebar& self, NSRect)
    {
        const Palette& colors = palette();
        const NSRect b = self.bounds();
        fill(b, colors.sidebar.get());
        fill(NSMakeRect(b.size.width - 1, 0, 1, b.size.height), colors.border.get());
        drawText("Brindle"_ns, { 22, 22 }, Style::figure, colors.text.get());
    }

    // ---- what is listed

    static void showAll(GallerySidebar& self)
    {
        self.rows_.clear();
        const char* group = nullptr;
        for (std::size_t page = 0; page < pages().size(); ++page) {
            if (group != pages()[page].group)
                self.rows_.push_back({ group = pages()[page].group, {}, -1 });
            self.rows_.push_back({ pages()[page].name, {}, static_cast<NSInteger>(page) });
        }
        reload(self);
    }
    static void reload(GallerySidebar& self)
    {
        self.showing_ = true;
        self.list_->reloadData();
        self.showing_ = false;
        select(self, rowOf(self, self.selection_));
    }
    static NSInteger rowOf(GallerySidebar& self, NSUInteger page)
    {
        for (std::size_t row = 0; row < self.rows_.size(); ++row) {
            if (self.rows_[row].page == static_cast<NSInteger>(page))
                return static_cast<NSInteger>(row);
        }
        return -1;
    }
    static void select(GallerySidebar& self, NSInteger row)
    {
        self.showing_ = true;
        if (row < 0)
            self.list_->deselectAll(nullptr);
        else
            self.list_->selectRowIndexes_byExtendingSelection(
                NSIndexSet::cls().indexSetWithIndex(static_cast<NSUInteger>(row)).get(), false);
        self.showing_ = false;
        show(self, row);
    }
    /// Scrolls to a row, and to the heading above it where that is its first.
    static void show(GallerySidebar& self, NSInteger row)
    {
        if (row > 0 && at(self, row - 1).page < 0)
            self.list_->scrollRowToVisible(row - 1);
        if (row >= 0)
            self.list_->scrollRowToVisible(row);
    }
    static void setSelection(GallerySidebar& self, NSUInteger index)
    {
        self.selection_ = index;
        const NSInteger row = rowOf(self, index);
        if (row != self.list_->selectedRow())
            select(self, row);
    }

    // ---- the table's data source and delegate

    static NSInteger numberOfRows(GallerySidebar& self, NSTableView*)
    {
        return static_cast<NSInteger>(self.rows_.size());
    }
    static const SidebarRow& at(GallerySidebar& self, NSInteger row)
    {
        return self.rows_[static_cast<std::size_t>(row)];
    }
    static CGFloat heightOfRow(GallerySidebar& self, NSTableView*, NSInteger row)
    {
        return at(self, row).page < 0    ? kHeadingHeight
            : at(self, row).note.empty() ? kRowHeight
                                         : kFoundHeight;
    }
    static Ref<NSView> viewFor(GallerySidebar& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        const Ref<SidebarCell> cell = make<SidebarCell>();
        cell->row_ = at(self, row);
        return cell;
    }
    static Ref<NSView> rowViewFor(GallerySidebar&, NSTableView*, NSInteger)
    {
        return make<SidebarRowView>();
    }
    static bool shouldSelect(GallerySidebar& self, NSTableView*, NSInteger row)
    {
        return at(self, row).page >= 0;
    }
    static Ref<NSString> typeSelectString(
        GallerySidebar& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return at(self, row).page < 0 ? nullptr : stringFrom(at(self, row).name);
    }
    static void selectionChanged(GallerySidebar& self, NSNotification*)
    {
        const NSInteger row = self.list_->selectedRow();
        if (!self.showing_ && row >= 0 && self.chosen_)
            self.chosen_(static_cast<NSUInteger>(at(self, row).page));
    }

    // ---- searching

    static void search(GallerySidebar& self, NSObject*)
    {
        const Ref<NSString> text = self.searchField_->stringValue();
        const std::vector<PageHit> hits = findPages(text->UTF8String());
        if (text->length() == 0)
            return showAll(self);
        self.rows_.clear();
        for (const PageHit& hit : hits)
            self.rows_.push_back(
                { pages()[hit.page].name, hit.match, static_cast<NSInteger>(hit.page) });
        if (hits.empty())
            self.rows_.push_back({ "No page says that", {}, -1 });
        reload(self);
        select(self, hits.empty() ? -1 : 0);
    }
    static void step(GallerySidebar& self, NSInteger further)
    {
        const NSInteger row = self.list_->selectedRow() + further;
        if (row < 0 || row >= self.list_->numberOfRows() || at(self, row).page < 0)
            return;
        self.list_->selectRowIndexes_byExtendingSelection(
            NSIndexSet::cls().indexSetWithIndex(static_cast<NSUInteger>(row)).get(), false);
        self.list_->scrollRowToVisible(row);
    }
    static bool command(GallerySidebar& self, NSControl*, NSText*, SEL command)
    {
        if (command == selector<"moveDown:">)
            step(self, 1);
        else if (command == selector<"moveUp:">)
            step(self, -1);
        else if (command == selector<"insertNewline:">)
            open(self);
        else if (command == selector<"cancelOperation:">)
            self.send<"endSearch">();
        else
            return false;
        return true;
    }
    /// Shows the page that is chosen, and goes there.
    static void enter(GallerySidebar& self)
    {
        selectionChanged(self, nullptr);
        if (self.list_->selectedRow() >= 0 && self.entered_)
            self.entered_();
    }
    /// What was found is opened, and the search is over.
    static void open(GallerySidebar& self)
    {
        if (self.list_->selectedRow() < 0)
            return;
        selectionChanged(self, nullptr);
        endSearch(self);
    }
    static void endSearch(GallerySidebar& self)
    {
        self.searchField_->abortEditing();
        self.searchField_->setStringValue(""_ns);
        showAll(self);
        if (self.entered_)
            self.entered_();
    }
    static void beginSearch(GallerySidebar& self) { self.searchField_->selectText(&self); }
    static bool hasKeyboard(GallerySidebar& self)
    {
        const Ref<NSResponder> first = maybe(self.window())->firstResponder();
        return first && first->isKindOfClass(NSView::cls())
            && static_cast<NSView&>(*first).isDescendantOf(&self);
    }
    static void setChosen(
        GallerySidebar& self, Closure<void(NSUInteger)>* chosen, Closure<void()>* entered)
    {
        self.chosen_ = Block<void(NSUInteger)>(chosen);
        self.entered_ = Block<void()>(entered);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GallerySidebar::selection_>("selection", nonatomic),
            property<&GallerySidebar::searchField_>("searchField", readonly, nonatomic),
            property<&GallerySidebar::list_>("list", readonly, nonatomic),
        });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "initWithFrame:", imp<initWithFrame> },
            { "dealloc", imp<dealloc> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawRect:", imp<drawRect> },
            { "setSelection:", imp<setSelection> },
            { "setChosen:entered:", imp<setChosen> },
            { "beginSearch", imp<beginSearch> },
            { "endSearch", imp<endSearch> },
            { "hasKeyboard", imp<hasKeyboard> },
            { "enter", imp<enter> },
            { "search:", imp<search> },
            { "control:textView:doCommandBySelector:", imp<command> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:heightOfRow:", imp<heightOfRow> },
            { "tableView:viewForTableColumn:row:", imp<viewFor> },
            { "tableView:rowViewForRow:", imp<rowViewFor> },
            { "tableView:shouldSelectRow:", imp<shouldSelect> },
            { "tableView:typeSelectStringForTableColumn:row:", imp<typeSelectString> },
            { "tableViewSelectionDidChange:", imp<selectionChanged> },
        });
    }
};
BRINDLE_RECORD(GallerySidebar, List)

}
