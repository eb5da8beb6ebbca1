// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>

#include "support/HeadlessScreen.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::column;
    using test::indexes;
    using test::Table;

    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();

    /// A table on a screen, at its bottom left.
    struct TableTest : testing::Test {
        HeadlessScreen screen;
        Table t { 100 };

        void SetUp() override { screen.window().contentView()->addSubview(t.scroll.get()); }
    };

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

    // ---- what shows

    TEST_F(TableTest, OnlyRowsThatShowHaveViews)
    {
        EXPECT_EQ(t.shown(), "0+10");
        t.scrollTo(190);
        EXPECT_EQ(t.shown(), "10+10");
        t.scrollTo(195);
        EXPECT_EQ(t.shown(), "10+11");
        t.scrollTo(1900);
        EXPECT_EQ(t.shown(), "90+10");
    }

    TEST(TableView, ATableInNoWindowHasNoViews)
    {
        const Table t(100);
        EXPECT_EQ(t.shown(), "-1+0");
    }

    TEST_F(TableTest, RowViewsLieOnTheirRows)
    {
        const Ref<NSTableRowView> row = t->rowViewAtRow_makeIfNecessary(3, true);
        EXPECT_EQ(row->frame(), t->rectOfRow(3));
        EXPECT_EQ(row->superview(), t.view);
        EXPECT_EQ(t->rowForView(row.get()), 3);
    }

    TEST_F(TableTest, CellViewsAreAskedForByRowAndColumn)
    {
        std::string asked;
        t.host->view_ = [&](NSTableColumn& c, NSInteger row) -> Ref<NSObject> {
            asked += utf8(c.identifier()) + std::to_string(row) + " ";
            return row == 1 ? nullptr : make<NSTableCellView>();
        };
        t.host->rows_ = 3;
        t->addTableColumn(column("b"_ns, 20).get());
        t->reloadData();
        screen.process();
        EXPECT_EQ(asked, "name0 b0 name1 b1 name2 b2 ");
        const Ref<NSView> cell = t->viewAtColumn_row_makeIfNecessary(1, 2, false);
        EXPECT_EQ(cell->superview(), t->rowViewAtRow_makeIfNecessary(2, false));
        EXPECT_EQ(t->rowForView(cell.get()), 2);
        EXPECT_EQ(t->columnForView(cell.get()), 1);
        EXPECT_EQ(t->viewAtColumn_row_makeIfNecessary(0, 1, true), nullptr);
    }

    TEST_F(TableTest, ACellThatIsNoViewCountsAsNone)
    {
        t.host->view_ = [](NSTableColumn&, NSInteger) -> Ref<NSObject> { return "text"_ns; };
        t->reloadData();
        EXPECT_EQ(t->viewAtColumn_row_makeIfNecessary(0, 0, true), nullptr);
    }

    TEST_F(TableTest, ARowViewThatIsNoneIsReplaced)
    {
        t.host->rowView_ = [](NSInteger row) -> Ref<NSObject> {
            return row % 2 ? Ref<NSObject>("text"_ns) : nullptr;
        };
        t->reloadData();
        EXPECT_TRUE(t->rowViewAtRow_makeIfNecessary(1, true)->isKindOfClass(NSTableRowView::cls()));
        EXPECT_EQ(t.shown(), "0+10");
    }

    TEST_F(TableTest, OneViewForAllRowsLiesOnTheLastOne)
    {
        const Ref<NSTableRowView> only = make<NSTableRowView>();
        t.host->rowView_ = [only](NSInteger) -> Ref<NSObject> { return only; };
        t->reloadData();
        screen.process();
        EXPECT_EQ(t->rowForView(only.get()), 9);
    }

    TEST_F(TableTest, TellsOfRowViewsThatComeAndGo)
    {
        t.host->tellsRows_ = true;
        t.host->rows_ = 12;
        t->reloadData();
        screen.process();
        EXPECT_EQ(t.host->log_, "+0 +1 +2 +3 +4 +5 +6 +7 +8 +9 ");
        t.host->log_.clear();
        t.scrollTo(38);
        EXPECT_EQ(t.host->log_, "-0 -1 +10 +11 ");
    }

    TEST_F(TableTest, ViewsThatNoLongerShowAreUsedAgain)
    {
        int made = 0;
        NSTableView* const table = t.view.get();
        t.host->view_ = [&made, table](NSTableColumn&, NSInteger) -> Ref<NSObject> {
            if (Ref<NSView> stored = table->makeViewWithIdentifier_owner("cell"_ns, nullptr))
                return stored;
            ++made;
            const Ref<NSTableCellView> cell = make<NSTableCellView>();
            setIdentifier(cell, "cell"_ns);
            return cell;
        };
        t->reloadData();
        screen.process();
        for (CGFloat y = 0; y < 1700; y += 19)
            t.scrollTo(y);
        EXPECT_EQ(made, 10);
    }

    TEST_F(TableTest, TheStoreHasNoViewOfAnIdentifierThatNobodyUsed)
    {
        EXPECT_EQ(t->makeViewWithIdentifier_owner("none"_ns, nullptr), nullptr);
        EXPECT_EQ(t->makeViewWithIdentifier_owner(nullptr, nullptr), nullptr);
    }

    TEST_F(TableTest, ARowThatDoesNotShowGetsAViewThatIsNotKept)
    {
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(50, false), nullptr);
        const Ref<NSTableRowView> row = t->rowViewAtRow_makeIfNecessary(50, true);
        ASSERT_TRUE(row);
        EXPECT_EQ(row->superview(), nullptr);
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(50, false), nullptr);
    }

    TEST_F(TableTest, RowMinusOneHasNoViewAndOthersOutsideRaise)
    {
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(-1, true), nullptr);
        EXPECT_EQ(raisedBy([&] { t->rowViewAtRow_makeIfNecessary(100, true); }),
            "NSTableViewException: Row 100 out of row range");
        EXPECT_EQ(raisedBy([&] { t->rowViewAtRow_makeIfNecessary(-2, true); }),
            "NSTableViewException: Row -2 out of row range");
        EXPECT_EQ(raisedBy([&] { t->viewAtColumn_row_makeIfNecessary(1, 0, true); }),
            "NSTableViewException: Column 1 out of column range");
    }

    TEST_F(TableTest, ValuesShowAsTextsWithoutADelegate)
    {
        t.host->value_ = [](NSTableColumn&, NSInteger row) -> Ref<NSObject> {
            return NSString::cls().stringWithFormat("row %ld"_ns, row);
        };
        t->reloadData();
        const Ref<NSView> cell = t->viewAtColumn_row_makeIfNecessary(0, 4, true);
        ASSERT_TRUE(cell->isKindOfClass(NSTableCellView::cls()));
        EXPECT_EQ(textOf(cast<NSTableCellView>(cell)->objectValue()), "row 4");
    }

    TEST_F(TableTest, ADelegateThatLoadsTheTableWhileItIsAskedForViewsIsServed)
    {
        NSTableView* const table = t.view.get();
        int left = 3;
        t.host->view_ = [table, &left](NSTableColumn&, NSInteger) -> Ref<NSObject> {
            if (left-- > 0)
                table->reloadData();
            return make<NSTableCellView>();
        };
        t->reloadData();
        for (int i = 0; i < 5; ++i)
            screen.process();
        EXPECT_EQ(t.shown(), "0+10");
    }

    TEST_F(TableTest, ADelegateThatRaisesLeavesTheTableUsable)
    {
        t.host->view_ = [](NSTableColumn&, NSInteger row) -> Ref<NSObject> {
            if (row == 4)
                raise("Oops", "no view");
            return make<NSTableCellView>();
        };
        t->reloadData();
        EXPECT_EQ(raisedBy([&] { t->rowViewAtRow_makeIfNecessary(5, true); }), "Oops: no view");
        t.host->view_ = nullptr;
        t->reloadData();
        EXPECT_EQ(t.shown(), "0+10");
    }

    TEST_F(TableTest, ADelegateThatHasGoneLeavesPlainRows)
    {
        t.host->view_
            = [](NSTableColumn&, NSInteger) -> Ref<NSObject> { return make<NSTableCellView>(); };
        const Ref<TableHost> source = make<TableHost>();
        source->rows_ = 20;
        t->setDataSource(source.get());
        t.host = nullptr;
        t->reloadData();
        EXPECT_EQ(t.shown(), "0+10");
        EXPECT_EQ(t->viewAtColumn_row_makeIfNecessary(0, 0, true), nullptr);
        t.host = make<TableHost>();
    }

    TEST_F(TableTest, AColumnMayGoWhileTheTableDraws)
    {
        NSTableView* const table = t.view.get();
        t.host->view_ = [table](NSTableColumn& c, NSInteger) -> Ref<NSObject> {
            const Ref<NSTableColumn> alive(&c);
            table->removeTableColumn(&c);
            return make<NSTableCellView>();
        };
        t->reloadData();
        for (int i = 0; i < 3; ++i)
            screen.process();
        EXPECT_EQ(t->numberOfColumns(), 0);
    }

    TEST_F(TableTest, ARowThatAHostTookAwayComesBack)
    {
        t->rowViewAtRow_makeIfNecessary(3, true)->removeFromSuperview();
        EXPECT_EQ(t.shown(), "0+10");
    }

    TEST_F(TableTest, RowsOfAHiddenTableComeBackWithIt)
    {
        t->setHidden(true);
        screen.process();
        t->setHidden(false);
        screen.process();
        EXPECT_EQ(t.shown(), "0+10");
    }

    TEST_F(TableTest, MoreRowsShowInALargerScrollView)
    {
        EXPECT_EQ(t.shown(), "0+10");
        t.scroll->setFrameSize({ 100, 285 });
        screen.process();
        EXPECT_EQ(t.shown(), "0+15");
    }

    // ---- rows that come, go and move

    TEST_F(TableTest, RowsThatAreInsertedPushTheOthersDown)
    {
        t.select({ 3, 50 });
        const Ref<NSTableRowView> third = t->rowViewAtRow_makeIfNecessary(3, true);
        t.host->rows_ = 102;
        t->insertRowsAtIndexes_withAnimation(indexes({ 0, 2 }).get(), 0);
        EXPECT_EQ(t->numberOfRows(), 102);
        EXPECT_EQ(t->rowForView(third.get()), 5);
        EXPECT_EQ(third->frame(), t->rectOfRow(5));
        EXPECT_EQ(t.selected(), "52");
    }

    TEST_F(TableTest, RowsThatAreRemovedLeaveTheSelection)
    {
        t->setAllowsMultipleSelection(true);
        t.select({ 3, 5, 50 });
        t.host->log_.clear();
        t.host->rows_ = 98;
        t->removeRowsAtIndexes_withAnimation(indexes({ 1, 5 }).get(), 0);
        EXPECT_EQ(t->numberOfRows(), 98);
        EXPECT_EQ(t.selected(), "2,48");
        EXPECT_EQ(t.host->log_, "selected ");
        EXPECT_EQ(raisedBy([&] { t->removeRowsAtIndexes_withAnimation(indexes({ 98 }).get(), 0); }),
            "NSTableViewException: Row 98 out of row range");
    }

    TEST_F(TableTest, RowsKeepTheirHeightsWhenOthersComeAndGo)
    {
        t.host->height_ = [](NSInteger row) { return 10.0 + static_cast<double>(row); };
        t->reloadData();
        t->insertRowsAtIndexes_withAnimation(indexes({ 1 }).get(), 0);
        EXPECT_EQ(t->rectOfRow(1).size.height, 13);
        EXPECT_EQ(t->rectOfRow(2).size.height, 13);
        EXPECT_EQ(t->rectOfRow(3).size.height, 14);
        t->removeRowsAtIndexes_withAnimation(indexes({ 0, 1 }).get(), 0);
        EXPECT_EQ(t->rectOfRow(0).size.height, 13);
        t->moveRowAtIndex_toIndex(0, 2);
        EXPECT_EQ(t->rectOfRow(0).size.height, 14);
        EXPECT_EQ(t->rectOfRow(2).size.height, 13);
    }

    TEST_F(TableTest, AMovedRowStaysSelected)
    {
        t.select({ 3 });
        t->moveRowAtIndex_toIndex(3, 7);
        EXPECT_EQ(t.selected(), "7");
        t->moveRowAtIndex_toIndex(9, 0);
        EXPECT_EQ(t.selected(), "8");
    }

    TEST_F(TableTest, TheDataSourceIsBelievedAtTheEndOfChanges)
    {
        t.host->rows_ = 40;
        t->beginUpdates();
        t->insertRowsAtIndexes_withAnimation(indexes({ 0 }).get(), 0);
        t->endUpdates();
        EXPECT_EQ(t->numberOfRows(), 40);
        t->endUpdates();
        EXPECT_EQ(t->numberOfRows(), 40);
    }

    // ---- movement

    TEST_F(TableTest, RowsMoveToTheirNewPlacesByDegrees)
    {
        CGFloat height = 17;
        t.host->height_ = [&height](NSInteger) { return height; };
        t->reloadData();
        screen.process();
        const Ref<NSTableRowView> row = t->rowViewAtRow_makeIfNecessary(5, true);
        height = 37;
        t->noteHeightOfRowsWithIndexesChanged(indexes({ 0 }).get());
        EXPECT_EQ(NSMinY(t->rectOfRow(5)), 115);
        EXPECT_EQ(NSMinY(row->frame()), 95);
        screen.advance(0.1);
        EXPECT_GT(NSMinY(row->frame()), 95);
        EXPECT_LT(NSMinY(row->frame()), 115);
        screen.advance(0.3);
        EXPECT_EQ(NSMinY(row->frame()), 115);
    }

}

}
