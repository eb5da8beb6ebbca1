// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/TableHost.h"
#include "viewkit/NSTableCellView+BRExtensions.h"
#include "viewkit/NSTableRowView+BRExtensions.h"
#include "viewkit/NSTableView+BRExtensions.h"
#include "viewkit/NSTableView+UICode.h"
#include "viewkit/NSView+NSTableCellView.h"

namespace brindle {

namespace {

    using test::indexes;
    using test::Table;

    // ---- a table with its scroll view

    struct TableInScrollView : testing::Test {
        test::LogSink log;
        Ref<NSScrollView> scroll;
        Ref<NSTableView> table = initIncScrollView(alloc<NSTableView>(), &scroll);
    };

    TEST_F(TableInScrollView, TheTableIsTheDocument)
    {
        ASSERT_TRUE(scroll);
        EXPECT_EQ(scroll->documentView(), table);
        EXPECT_EQ(table->enclosingScrollView(), scroll);
    }

    TEST_F(TableInScrollView, LogsBoth)
    {
        const std::string view = utf8(scroll->description());
        EXPECT_EQ(log.text(), "scrollView " + view + " enc: " + view + "\n");
    }

    TEST_F(TableInScrollView, TheTableFollowsItsSize)
    {
        EXPECT_EQ(table->autoresizingMask(), 0x12U);
        scroll->setFrame(NSMakeRect(0, 0, 200, 300));
        EXPECT_EQ(table->frame().size.width, 200);
    }

    TEST_F(TableInScrollView, HasOneColumnNamedBySpace)
    {
        ASSERT_EQ(table->numberOfColumns(), 1);
        const Ref<NSTableColumn> column
            = cast<NSTableColumn>(table->tableColumns()->objectAtIndex(0));
        EXPECT_EQ(utf8(column->identifier()), " ");
        EXPECT_EQ(column->width(), 10); // no narrower one is allowed
    }

    TEST_F(TableInScrollView, TheColumnGrowsWithTheScrollView)
    {
        scroll->setFrame(NSMakeRect(0, 0, 200, 300));
        EXPECT_EQ(NSMaxX(table->rectOfColumn(0)), 200);
    }

    TEST(TableExtensions, NobodyNeedsTheScrollView)
    {
        const test::LogSink log;
        EXPECT_TRUE(initIncScrollView(alloc<NSTableView>(), nullptr));
    }

    // ---- heights

    TEST(TableExtensions, NewHeightsShowAtOnce)
    {
        HeadlessScreen screen;
        Table t(20);
        screen.window().contentView()->addSubview(t.scroll.get());
        CGFloat height = 17;
        t.host->height_ = [&height](NSInteger) { return height; };
        t->reloadData();
        const Ref<NSTableRowView> row = t->rowViewAtRow_makeIfNecessary(3, true);
        height = 27;
        noteHeightOfRowsWithIndexesChangedWithoutAnimation(t.view, indexes({ 0, 1 }).get());
        EXPECT_EQ(NSMinY(row->frame()), 77);
    }

    TEST(TableExtensions, ADelegateThatRaisesEndsTheGroup)
    {
        Table t(20);
        t.host->height_ = [](NSInteger) { return 17.0; };
        t->reloadData();
        t.host->height_ = [](NSInteger) -> CGFloat { raise("Oops", "no height"); };
        EXPECT_EQ(raisedBy([&] {
            noteHeightOfRowsWithIndexesChangedWithoutAnimation(t.view, indexes({ 0 }).get());
        }),
            "Oops: no height");
        t.host->height_ = [](NSInteger) { return 27.0; };
        noteHeightOfRowsWithIndexesChangedWithoutAnimation(t.view, indexes({ 0 }).get());
        EXPECT_EQ(t->rectOfRow(0).size.height, 29);
    }

    // ---- cells and rows

    struct CellInTable : testing::Test {
        HeadlessScreen screen;
        Table t { 20 };

        void SetUp() override
        {
            screen.window().contentView()->addSubview(t.scroll.get());
            t.host->view_ = [](NSTableColumn&, NSInteger) -> Ref<NSObject> {
                return make<NSTableCellView>();
            };
            t->reloadData();
            screen.process();
        }
        Ref<NSTableCellView> cell(NSInteger row)
        {
            return cast<NSTableCellView>(t->viewAtColumn_row_makeIfNecessary(0, row, false));
        }
    };

    TEST_F(CellInTable, IsSelectedWithItsRow)
    {
        EXPECT_FALSE(isSelected(cell(2)));
        EXPECT_EQ(relevantBackgroundStyle(cell(2)), 0);
        t.select({ 2 });
        EXPECT_TRUE(isSelected(cell(2)));
        EXPECT_EQ(relevantBackgroundStyle(cell(2)), 1);
    }

    TEST_F(CellInTable, FindsTheTableAround)
    {
        EXPECT_EQ(superTableView(cell(2)), t.view);
        EXPECT_EQ(superTableView(t->rowViewAtRow_makeIfNecessary(2, false)), t.view);
    }

    TEST_F(CellInTable, IsFoundFromWhatLiesInIt)
    {
        const Ref<NSView> inner = make<NSView>();
        cell(2)->addSubview(inner.get());
        EXPECT_EQ(tableCellView(inner), cell(2));
    }

    TEST(TableCellExtensions, OutsideOfATableNothingIsSelected)
    {
        const Ref<NSTableCellView> cell = make<NSTableCellView>();
        EXPECT_FALSE(isSelected(cell));
        EXPECT_EQ(relevantBackgroundStyle(cell), 0);
        EXPECT_EQ(superTableView(cell), nullptr);
        EXPECT_EQ(superTableView(make<NSTableRowView>()), nullptr);
        const Ref<NSView> plain = make<NSView>();
        plain->addSubview(cell.get());
        EXPECT_FALSE(isSelected(cell));
    }

    TEST(TableCellExtensions, TextsAreWhiteOnTheDarkStyleOnly)
    {
        Class* const cells = NSTableCellView::cls();
        NSColor::Meta colors = NSColor::cls();
        EXPECT_EQ(textColorForBackgroundStyle(cells, NSBackgroundStyleDark), colors.whiteColor());
        EXPECT_EQ(textColorForBackgroundStyle(cells, NSBackgroundStyleLight), colors.blackColor());
        EXPECT_EQ(textColorForBackgroundStyle(cells, NSBackgroundStyleRaised), colors.blackColor());
    }

}

}
