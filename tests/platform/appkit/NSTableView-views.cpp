// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "SmallWindow.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Memory.h"
#include "support/TableHost.h"

namespace brindle {

/// A table that counts the windows that become key.
class TableThatListens : public NSTableView {
    BRINDLE_OBJECT(TableThatListens, NSTableView)

public:
    int heard_ = 0;
};
template <> struct TableThatListens::Methods<struct Windows> {
    static void becameKey(TableThatListens& self, NSNotification*) { ++self.heard_; }
    static void table(Builder& t) { t.methods({ { "becameKey:", imp<becameKey> } }); }
};
BRINDLE_RECORD(TableThatListens, Windows)

/// A cell that leaves its row when it likes.
class CellThatStays : public NSTableCellView {
    BRINDLE_OBJECT(CellThatStays, NSTableCellView)

public:
    bool stays_ = false;
};
template <> struct CellThatStays::Methods<struct Leaving> {
    static void remove(CellThatStays& self)
    {
        if (!self.stays_)
            super<CellThatStays, "removeFromSuperview">(self);
    }
    static void table(Builder& t) { t.methods({ { "removeFromSuperview", imp<remove> } }); }
};
BRINDLE_RECORD(CellThatStays, Leaving)

namespace {

    using test::column;
    using test::indexes;
    using test::Table;
    using test::TableTest;

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

    TEST_F(TableTest, OfManyIdentifiersTheStoreKeepsThoseThatWereUsedLast)
    {
        const auto name
            = [](NSInteger row) { return NSString::cls().stringWithFormat("row %ld"_ns, row); };
        t.host->view_ = [&name](NSTableColumn&, NSInteger row) -> Ref<NSObject> {
            const Ref<NSTableCellView> cell = make<NSTableCellView>();
            setIdentifier(cell, name(row).get());
            return cell;
        };
        t.host->rows_ = 1000;
        t->reloadData();
        screen.process();
        for (CGFloat y = 0; y < 18000; y += 190) {
            t.scrollTo(y);
            screen.process();
        }
        EXPECT_EQ(t->makeViewWithIdentifier_owner(name(0).get(), nullptr), nullptr);
        EXPECT_NE(t->makeViewWithIdentifier_owner(name(930).get(), nullptr), nullptr);
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

    TEST_F(TableTest, OutlivesWindowsWithoutHoldingMoreAndMore)
    {
        const auto outliveWindows = [this](int count) {
            for (int i = 0; i < count; ++i) {
                const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 100, 190));
                window->contentView()->addSubview(t.scroll.get());
            }
        };
        outliveWindows(100);
        const std::size_t before = test::allocatedBytes();
        outliveWindows(1000);
        if (test::growthCanBeMeasured()) {
            EXPECT_LT(test::allocatedBytes(), before + 100'000);
        }
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

    // ---- who is told or asked

    TEST_F(TableTest, WindowsThatBecomeKeyAreStillHeardByATableThatMoves)
    {
        const Ref<TableThatListens> table = make<TableThatListens>();
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            table.get(), selector<"becameKey:">, NSWindowDidBecomeKeyNotification, nullptr);
        screen.window().contentView()->addSubview(table.get());
        table->removeFromSuperview();
        const Ref<NSWindow> other = windowOf(NSMakeRect(0, 0, 50, 50), kOrdinary);
        other->makeKeyAndOrderFront(nullptr);
        EXPECT_EQ(table->heard_, 1);
        other->close();
    }

    TEST_F(TableTest, ACellThatLeavesLaterIsLoadedAllTheSame)
    {
        t.host->view_
            = [](NSTableColumn&, NSInteger) -> Ref<NSObject> { return make<CellThatStays>(); };
        t->reloadData();
        screen.process();
        const Ref<NSView> old = t->viewAtColumn_row_makeIfNecessary(0, 2, false);
        static_cast<CellThatStays&>(*old).stays_ = true;
        t->reloadDataForRowIndexes_columnIndexes(indexes({ 2 }).get(), indexes({ 0 }).get());
        EXPECT_NE(t->viewAtColumn_row_makeIfNecessary(0, 2, false), old);
        static_cast<CellThatStays&>(*old).stays_ = false;
    }

    struct RaisingHost : TableTest {
        void SetUp() override
        {
            TableTest::SetUp();
            t.host->tellsRows_ = true;
            t->reloadData();
            screen.process();
            t.host->rowGone_ = [this] {
                t.host->rowGone_ = nullptr;
                raise("Fault", "on purpose");
            };
        }
    };

    TEST_F(RaisingHost, LeavesNoOldRowsWhenItIsLoaded)
    {
        EXPECT_THROW(t->reloadData(), Exception);
        screen.process();
        EXPECT_EQ(t->subviews()->count(), 10U);
    }

    TEST_F(RaisingHost, LeavesRowsInTheirPlacesWhenOthersAreRemoved)
    {
        EXPECT_THROW(
            t->removeRowsAtIndexes_withAnimation(indexes({ 1, 2, 3 }).get(), 0), Exception);
        screen.process();
        EXPECT_EQ(t->subviews()->count(), 10U);
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(1, true)->frame(), t->rectOfRow(1));
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
