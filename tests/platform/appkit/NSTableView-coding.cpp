// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/Archives.h"
#include "support/HeadlessScreen.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::archived;
    using test::column;
    using test::Table;

    TEST(TableCoding, KeepsAColumn)
    {
        const Ref<NSTableColumn> c = column("size"_ns, 77);
        c->setTitle("Size"_ns);
        c->setMinWidth(20);
        c->setMaxWidth(200);
        c->setEditable(false);
        const Ref<NSTableColumn> back = archived(c);
        EXPECT_EQ(utf8(back->identifier()), "size");
        EXPECT_EQ(utf8(back->title()), "Size");
        EXPECT_EQ(back->width(), 77);
        EXPECT_EQ(back->minWidth(), 20);
        EXPECT_EQ(back->maxWidth(), 200);
        EXPECT_FALSE(back->isEditable());
        EXPECT_EQ(back->tableView(), nullptr);
    }

    TEST(TableCoding, KeepsTheSettingsOfATable)
    {
        const Ref<NSTableView> table = make<NSTableView>();
        table->addTableColumn(column("a"_ns, 30).get());
        table->addTableColumn(column("b"_ns, 40).get());
        table->setRowHeight(25);
        table->setIntercellSpacing({ 4, 6 });
        table->setAllowsMultipleSelection(true);
        table->setUsesAlternatingRowBackgroundColors(true);
        table->setGridStyleMask(NSTableViewSolidVerticalGridLineMask);
        const Ref<NSTableView> back = archived(table);
        ASSERT_EQ(back->numberOfColumns(), 2);
        EXPECT_EQ(back->columnWithIdentifier("b"_ns), 1);
        EXPECT_EQ(back->rowHeight(), 25);
        EXPECT_EQ(back->intercellSpacing(), NSMakeSize(4, 6));
        EXPECT_TRUE(back->allowsMultipleSelection());
        EXPECT_TRUE(back->usesAlternatingRowBackgroundColors());
        EXPECT_EQ(back->gridStyleMask(), NSTableViewSolidVerticalGridLineMask);
        ASSERT_TRUE(back->headerView());
        EXPECT_EQ(back->headerView()->tableView(), back);
    }

    TEST(TableCoding, LeavesTheViewsOfRowsOut)
    {
        HeadlessScreen screen;
        const Table t(20);
        screen.window().contentView()->addSubview(t.scroll.get());
        EXPECT_EQ(t.shown(), "0+10");
        const Ref<NSTableView> back = archived(t.view);
        EXPECT_EQ(back->subviews()->count(), 0U);
        EXPECT_EQ(t.shown(), "0+10");
    }

}

}
