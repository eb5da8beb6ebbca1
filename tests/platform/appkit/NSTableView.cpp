// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>

#include "support/Numbers.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::column;
    using test::indexes;
    using test::Table;
    using test::TableTest;

    // ---- a new table

    TEST(TableView, ANewTableIsEmpty)
    {
        const Ref<NSTableView> table = make<NSTableView>();
        EXPECT_EQ(table->numberOfRows(), 0);
        EXPECT_EQ(table->numberOfColumns(), 0);
        EXPECT_EQ(table->selectedRow(), -1);
        EXPECT_EQ(table->clickedRow(), -1);
        EXPECT_EQ(table->rowHeight(), 17);
        EXPECT_EQ(table->intercellSpacing(), NSMakeSize(3, 2));
        EXPECT_TRUE(table->allowsEmptySelection());
        EXPECT_FALSE(table->allowsMultipleSelection());
        EXPECT_TRUE(table->isFlipped());
        EXPECT_EQ(table->headerView()->tableView(), table);
    }

    TEST(TableView, IsAsLargeAsWhatShows)
    {
        const Table t(3);
        EXPECT_EQ(t->frame(), NSMakeRect(0, 0, 100, 190));
    }

    TEST(TableView, IsAsHighAsItsRows)
    {
        const Table t(100);
        EXPECT_EQ(t->frame(), NSMakeRect(0, 0, 100, 1900));
    }

    TEST(TableView, IsAsHighAsItsRowsInNoScrollViewToo)
    {
        const Ref<TableHost> host = make<TableHost>();
        host->rows_ = 10;
        const Ref<NSTableView> table
            = cast<NSTableView>(alloc<NSTableView>()->initWithFrame(NSMakeRect(5, 5, 50, 60)));
        EXPECT_EQ(table->frame(), NSMakeRect(5, 5, 50, 60));
        table->setDataSource(host.get());
        EXPECT_EQ(table->frame(), NSMakeRect(5, 5, 50, 190));
    }

    // ---- where rows and columns are

    TEST(TableView, ARowHasTheSpacingInIt)
    {
        const Table t(100);
        EXPECT_EQ(t->rectOfRow(0), NSMakeRect(0, 0, 100, 19));
        EXPECT_EQ(t->rectOfRow(2), NSMakeRect(0, 38, 100, 19));
    }

    TEST(TableView, ARowThatIsNotThereIsEmpty)
    {
        const Table t(100);
        EXPECT_EQ(t->rectOfRow(-1), NSZeroRect);
        EXPECT_EQ(t->rectOfRow(100), NSZeroRect);
        EXPECT_EQ(t->rectOfRow(std::numeric_limits<NSInteger>::max()), NSZeroRect);
        EXPECT_EQ(t->rectOfColumn(1), NSZeroRect);
        EXPECT_EQ(t->rectOfColumn(-1), NSZeroRect);
    }

    TEST(TableView, FindsTheRowAtAPoint)
    {
        const Table t(100);
        EXPECT_EQ(t->rowAtPoint({ 5, 0 }), 0);
        EXPECT_EQ(t->rowAtPoint({ 5, 18.9 }), 0);
        EXPECT_EQ(t->rowAtPoint({ 5, 19 }), 1);
        EXPECT_EQ(t->rowAtPoint({ 5, 1899 }), 99);
        EXPECT_EQ(t->rowAtPoint({ 5, 1900 }), -1);
        EXPECT_EQ(t->rowAtPoint({ 5, -0.5 }), -1);
        EXPECT_EQ(t->rowAtPoint({ 100, 5 }), -1);
        EXPECT_EQ(t->rowAtPoint({ kNaN, kNaN }), -1);
    }

    TEST(TableView, FindsTheRowsInARectangle)
    {
        const Table t(100);
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, 0, 10, 19)), NSMakeRange(0, 1));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, 18, 10, 2)), NSMakeRange(0, 2));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, 1890, 10, 500)), NSMakeRange(99, 1));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, 1900, 10, 500)), NSMakeRange(0, 0));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, -50, 10, 50)), NSMakeRange(0, 0));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, -50, 10, 51)), NSMakeRange(0, 1));
        EXPECT_EQ(t->rowsInRect(NSMakeRect(0, kNaN, 10, kNaN)), NSMakeRange(0, 0));
    }

    TEST(TableView, RowsOfTheirOwnHeightsLieOneBelowTheOther)
    {
        Table t(1000);
        t.host->height_ = [](NSInteger row) { return 10 + 0.1 * static_cast<double>(row % 3); };
        t->reloadData();
        CGFloat y = 0;
        for (NSInteger row = 0; row < 1000; ++row) {
            const NSRect rect = t->rectOfRow(row);
            EXPECT_NEAR(NSMinY(rect), y, 1e-9);
            EXPECT_EQ(rect.size.height, 10 + 0.1 * static_cast<double>(row % 3) + 2);
            EXPECT_EQ(t->rowAtPoint(rect.origin), row);
            y += rect.size.height;
        }
    }

    TEST(TableView, HeightsThatAreNoPositiveNumbersCountAsTheRowHeight)
    {
        Table t(5);
        const double heights[] = { 0, -5, kNaN, kInfinity, 30 };
        t.host->height_ = [&heights](NSInteger row) { return heights[row]; };
        t->reloadData();
        for (NSInteger row = 0; row < 4; ++row)
            EXPECT_EQ(t->rectOfRow(row).size.height, 19) << row;
        EXPECT_EQ(t->rectOfRow(4).size.height, 32);
    }

    TEST(TableView, RowsStayWithinTheirLimits)
    {
        Table t(2);
        t.host->height_ = [](NSInteger row) { return row ? 1e300 : 1e-300; };
        t->reloadData();
        EXPECT_EQ(t->rectOfRow(0).size.height, 3);
        EXPECT_EQ(t->rectOfRow(1).size.height, 100'002);
        EXPECT_EQ(raisedBy([&] { t->setRowHeight(kNaN); }),
            "NSInvalidArgumentException: *** -[NSTableView setRowHeight:]: the height is no "
            "positive number");
    }

    TEST(TableView, NewHeightsMoveTheRowsBelow)
    {
        Table t(10);
        CGFloat height = 20;
        t.host->height_ = [&height](NSInteger) { return height; };
        t->reloadData();
        height = 30;
        t->noteHeightOfRowsWithIndexesChanged(indexes({ 2, 99 }).get());
        EXPECT_EQ(t->rectOfRow(2).size.height, 32);
        EXPECT_EQ(NSMinY(t->rectOfRow(3)), 76);
        EXPECT_EQ(t->rectOfRow(3).size.height, 22);
    }

    TEST(TableView, ColumnsLieSideBySide)
    {
        const Table t(10);
        t->addTableColumn(column("other"_ns, 50).get());
        EXPECT_EQ(t->frame().size.width, 153);
        EXPECT_EQ(t->rectOfColumn(0), NSMakeRect(0, 0, 100, 190));
        EXPECT_EQ(t->rectOfColumn(1), NSMakeRect(100, 0, 53, 190));
        EXPECT_EQ(t->columnAtPoint({ 99, 5 }), 0);
        EXPECT_EQ(t->columnAtPoint({ 100, 5 }), 1);
        EXPECT_EQ(t->columnAtPoint({ 153, 5 }), -1);
        EXPECT_EQ(t->frameOfCellAtColumn_row(1, 1), NSMakeRect(101.5, 20, 50, 17));
    }

    TEST(TableView, AHiddenColumnTakesNoRoom)
    {
        const Table t(10);
        t->addTableColumn(column("other"_ns, 50).get());
        cast<NSTableColumn>(t->tableColumns()->objectAtIndex(0))->setHidden(true);
        EXPECT_EQ(t->rectOfColumn(0), NSZeroRect);
        EXPECT_EQ(NSMinX(t->rectOfColumn(1)), 0);
    }

    // ---- the number of rows

    TEST(TableView, KeepsTheNumberOfRowsUntilItIsLoadedAnew)
    {
        Table t(5);
        t.host->rows_ = 7;
        EXPECT_EQ(t->numberOfRows(), 5);
        t->reloadData();
        EXPECT_EQ(t->numberOfRows(), 7);
    }

    TEST(TableView, ANumberOfRowsBelowZeroIsNone)
    {
        const Table t(-5);
        EXPECT_EQ(t->numberOfRows(), 0);
    }

    TEST(TableView, HasRowsOnlyUpToItsLimit)
    {
        const Table t(std::numeric_limits<NSInteger>::max());
        EXPECT_EQ(t->numberOfRows(), 16'777'216);
        EXPECT_EQ(t->rowAtPoint({ 5, 19.0 * 16'777'215 }), 16'777'215);
    }

    TEST(TableView, ADataSourceThatHasGoneLeavesNoRows)
    {
        Table t(5);
        t.host = nullptr;
        EXPECT_EQ(t->dataSource(), nullptr);
        t->reloadData();
        EXPECT_EQ(t->numberOfRows(), 0);
        t.host = make<TableHost>();
    }

    TEST(TableView, ADataSourceThatRaisesChangesNothing)
    {
        Table t(5);
        t.host->count_ = []() -> NSInteger { raise("Oops", "no rows"); };
        EXPECT_EQ(raisedBy([&] { t->reloadData(); }), "Oops: no rows");
        EXPECT_EQ(t->numberOfRows(), 5);
        t.host->count_ = nullptr;
        t.host->rows_ = 6;
        t->reloadData();
        EXPECT_EQ(t->numberOfRows(), 6);
    }

    TEST(TableView, ADataSourceMayLoadTheTableWhileItIsAsked)
    {
        Table t(5);
        NSTableView* const table = t.view.get();
        t.host->count_ = [table]() -> NSInteger {
            table->reloadData();
            return 8;
        };
        t->reloadData();
        EXPECT_EQ(t->numberOfRows(), 8);
    }

    TEST(TableView, ADelegateSetWhileTheDataSourceIsAskedLeavesTheDataSource)
    {
        Table t(5);
        const Ref<TableHost> other = make<TableHost>();
        NSTableView* const table = t.view.get();
        t.host->count_ = [table, other]() -> NSInteger {
            table->setDelegate(other.get());
            return 8;
        };
        t->reloadData();
        EXPECT_EQ(t->numberOfRows(), 8);
        EXPECT_EQ(t->delegate(), other.get());
        EXPECT_EQ(t->dataSource(), t.host.get());
    }

    // ---- columns

    TEST(TableView, AColumnBelongsToOneTable)
    {
        const Table a;
        const Table b;
        const Ref<NSTableColumn> shared = column("shared"_ns, 20);
        a->addTableColumn(shared.get());
        b->addTableColumn(shared.get());
        b->removeTableColumn(shared.get());
        EXPECT_EQ(a->numberOfColumns(), 2);
        EXPECT_EQ(b->numberOfColumns(), 1);
        EXPECT_EQ(shared->tableView(), a.view);
        a->removeTableColumn(shared.get());
        EXPECT_EQ(shared->tableView(), nullptr);
    }

    TEST(TableView, FindsColumnsByIdentifier)
    {
        const Table t;
        const Ref<NSTableColumn> other = column("other"_ns, 20);
        t->addTableColumn(other.get());
        EXPECT_EQ(t->columnWithIdentifier("other"_ns), 1);
        EXPECT_EQ(t->columnWithIdentifier("none"_ns), -1);
        EXPECT_EQ(t->columnWithIdentifier(nullptr), -1);
        EXPECT_EQ(t->tableColumnWithIdentifier("other"_ns), other);
    }

    TEST(TableView, AColumnThatMovesIsTold)
    {
        const Table t;
        t->addTableColumn(column("other"_ns, 20).get());
        t->moveColumn_toColumn(0, 1);
        EXPECT_EQ(t->columnWithIdentifier("name"_ns), 1);
        EXPECT_EQ(t.host->log_, "moved ");
        EXPECT_EQ(raisedBy([&] { t->moveColumn_toColumn(0, 2); }),
            "NSTableViewException: Column 2 out of column range");
    }

    TEST(TableView, AWidthStaysWithinItsLimits)
    {
        const Table t;
        const Ref<NSTableColumn> c = column("c"_ns, 3);
        EXPECT_EQ(c->width(), 10);
        c->setMaxWidth(50);
        c->setWidth(80);
        EXPECT_EQ(c->width(), 50);
        c->setWidth(kNaN);
        EXPECT_EQ(c->width(), 50);
        c->setMinWidth(60);
        EXPECT_EQ(c->width(), 60);
    }

    TEST(TableView, AColumnThatIsResizedIsTold)
    {
        const Table t;
        cast<NSTableColumn>(t->tableColumns()->objectAtIndex(0))->setWidth(200);
        EXPECT_EQ(t.host->log_, "resized ");
        EXPECT_EQ(t->frame().size.width, 203);
    }

    TEST(TableView, TheLastColumnFollowsTheScrollView)
    {
        const Table t;
        t->addTableColumn(column("other"_ns, 20).get());
        t.scroll->setFrameSize({ 300, 190 });
        EXPECT_EQ(NSMaxX(t->rectOfColumn(1)), 300);
        EXPECT_EQ(t->rectOfColumn(0).size.width, 100);
    }

    TEST(TableView, ColumnsMayFollowTheScrollViewEvenly)
    {
        const Table t;
        const Ref<NSTableColumn> other = column("other"_ns, 97);
        other->setMaxWidth(107);
        t->addTableColumn(other.get());
        t->setColumnAutoresizingStyle(NSTableViewUniformColumnAutoresizingStyle);
        t.scroll->setFrameSize({ 300, 190 });
        EXPECT_EQ(t->rectOfColumn(0).size.width, 190);
        EXPECT_EQ(t->rectOfColumn(1).size.width, 110);
    }

    TEST(TableView, ColumnsNeedNotFollowTheScrollView)
    {
        const Table t;
        t->setColumnAutoresizingStyle(NSTableViewNoColumnAutoresizing);
        t.scroll->setFrameSize({ 300, 190 });
        EXPECT_EQ(t->rectOfColumn(0).size.width, 100);
        EXPECT_EQ(t->frame().size.width, 300);
    }

}

}
