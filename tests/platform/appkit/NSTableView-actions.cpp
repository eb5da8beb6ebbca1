// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <map>

#include "appkit/NSText.h"
#include "appkit/NSTextField.h"
#include "foundation/NSSortDescriptor.h"
#include "support/ActionLog.h"
#include "support/EndOfEditing.h"
#include "support/HeadlessScreen.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::column;
    using test::Table;

    /// A table of 200 by 214 with titles of 24 points: ten rows show below them. Two columns of 97 points.
    struct TableActions : testing::Test {
        HeadlessScreen screen;
        Table t { 100, NSMakeRect(0, 0, 200, 214) };
        Ref<ActionLog> log = make<ActionLog>();

        void SetUp() override
        {
            const Ref<NSView> header
                = alloc<NSTableHeaderView>()->initWithFrame(NSMakeRect(0, 0, 200, 24));
            t->setHeaderView(cast<NSTableHeaderView>(header).get());
            t->addTableColumn(column("other"_ns, 97).get());
            for (NSInteger i = 0; i < 2; ++i)
                at(i)->setWidth(97);
            screen.window().contentView()->addSubview(t.scroll.get());
            screen.window().makeKeyAndOrderFront(nullptr);
            t->setTarget(log.get());
            t->setAction(selector<"act:">);
            screen.process();
            t.host->log_.clear();
        }
        NSTableColumn* at(NSInteger index)
        {
            const Ref<NSArray> columns = t->tableColumns();
            return static_cast<NSTableColumn*>(
                columns->objectAtIndex(static_cast<NSUInteger>(index)).get());
        }
        static NSPoint line(int number, double x = 50) { return { x, 190 - 19.0 * number - 9 }; }
        static NSPoint title(double x) { return { x, 202 }; }
        void drag(NSPoint from, NSPoint to)
        {
            screen.pointer().press(from);
            screen.pointer().dragTo(to);
            screen.pointer().release();
        }
    };

    // ---- actions

    TEST_F(TableActions, AClickSendsTheActionWithTheRowSelected)
    {
        NSInteger row = -1;
        log->setReaction([&](NSObject*) { row = t->selectedRow(); });
        screen.pointer().click(line(4, 150));
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(log->sender_, t.view);
        EXPECT_EQ(row, 4);
        EXPECT_EQ(t->clickedRow(), 4);
        EXPECT_EQ(t->clickedColumn(), 1);
    }

    TEST_F(TableActions, ADoubleClickSendsTheDoubleAction)
    {
        t->setAction({});
        t->setDoubleAction(selector<"act:">);
        screen.pointer().click(line(4));
        EXPECT_EQ(log->count_, 0);
        screen.advance(5);
        screen.pointer().click(line(4), 2);
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(t->clickedRow(), 4);
    }

    TEST_F(TableActions, WithoutADoubleActionBothClicksSendTheAction)
    {
        screen.pointer().click(line(4), 2);
        EXPECT_EQ(log->count_, 2);
    }

    TEST_F(TableActions, EmptySpaceSendsTheActionToo)
    {
        t.host->rows_ = 2;
        t->reloadData();
        screen.pointer().click(line(6));
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(t->clickedRow(), -1);
    }

    TEST_F(TableActions, TheTableMayGoInItsAction)
    {
        log->setReaction([this](NSObject*) { t.scroll->removeFromSuperview(); });
        screen.pointer().click(line(4));
        EXPECT_EQ(log->count_, 1);
    }

    // ---- titles

    TEST_F(TableActions, TheTitlesLieAboveTheRows)
    {
        EXPECT_EQ(t.scroll->contentView()->frame(), NSMakeRect(0, 24, 200, 190));
        EXPECT_EQ(t->headerView()->headerRectOfColumn(1), NSMakeRect(100, 0, 100, 24));
        EXPECT_EQ(t->headerView()->headerRectOfColumn(2), NSZeroRect);
        EXPECT_EQ(t->headerView()->columnAtPoint({ 150, 5 }), 1);
    }

    TEST_F(TableActions, AClickOnATitleSorts)
    {
        at(0)->setSortDescriptorPrototype(
            NSSortDescriptor::cls().sortDescriptorWithKey_ascending("name"_ns, true).get());
        screen.pointer().click(title(50));
        ASSERT_EQ(t->sortDescriptors()->count(), 1U);
        EXPECT_EQ(t.host->log_, "order(0) clicked:name ");
        screen.pointer().click(title(50));
        const Ref<NSSortDescriptor> first
            = cast<NSSortDescriptor>(t->sortDescriptors()->objectAtIndex(0));
        EXPECT_FALSE(first->ascending());
        EXPECT_EQ(t->sortDescriptors()->count(), 1U);
    }

    TEST_F(TableActions, TheOrderBeforeDecidesAmongEquals)
    {
        at(0)->setSortDescriptorPrototype(
            NSSortDescriptor::cls().sortDescriptorWithKey_ascending("name"_ns, true).get());
        at(1)->setSortDescriptorPrototype(
            NSSortDescriptor::cls().sortDescriptorWithKey_ascending("size"_ns, true).get());
        screen.pointer().click(title(50));
        screen.pointer().click(title(150));
        ASSERT_EQ(t->sortDescriptors()->count(), 2U);
        EXPECT_EQ(
            utf8(cast<NSSortDescriptor>(t->sortDescriptors()->objectAtIndex(0))->key()), "size");
    }

    TEST_F(TableActions, ATitleWithoutAnOrderOnlyTells)
    {
        screen.pointer().click(title(150));
        EXPECT_EQ(t->sortDescriptors()->count(), 0U);
        EXPECT_EQ(t.host->log_, "clicked:other ");
    }

    TEST_F(TableActions, ADragOfAnEdgeWidensTheColumn)
    {
        drag(title(99), title(129));
        EXPECT_EQ(at(0)->width(), 127);
        EXPECT_EQ(t->headerView()->resizedColumn(), -1);
    }

    TEST_F(TableActions, ADragOfATitleMovesTheColumn)
    {
        drag(title(50), title(160));
        EXPECT_EQ(t->columnWithIdentifier("name"_ns), 1);
        EXPECT_EQ(t.host->log_, "moved dragged:name ");
    }

    TEST_F(TableActions, ADelegateMayKeepAColumnInItsPlace)
    {
        t.host->mayMove_ = [](NSInteger, NSInteger) { return false; };
        drag(title(50), title(160));
        EXPECT_EQ(t->columnWithIdentifier("name"_ns), 0);
    }

    TEST_F(TableActions, ColumnsStayWhereReorderingAndResizingAreOff)
    {
        t->setAllowsColumnReordering(false);
        t->setAllowsColumnResizing(false);
        drag(title(50), title(160));
        drag(title(99), title(129));
        EXPECT_EQ(t->columnWithIdentifier("name"_ns), 0);
        EXPECT_EQ(at(0)->width(), 97);
    }

    // ---- editing

    struct TableEditing : TableActions {
        std::map<NSInteger, std::string> values;

        void SetUp() override
        {
            TableActions::SetUp();
            t.host->value_ = [this](NSTableColumn&, NSInteger row) -> Ref<NSObject> {
                return NSString::cls().stringWithUTF8String(values[row].c_str());
            };
            t.host->setValue_ = [this](NSObject* value, NSTableColumn&, NSInteger row) {
                values[row] = textOf(Ref<NSObject>(value));
            };
            t->reloadData();
            screen.process();
        }
        Ref<NSView> cell(NSInteger row)
        {
            return t->viewAtColumn_row_makeIfNecessary(0, row, false);
        }
        std::string word(NSInteger row)
        {
            return utf8(cast<NSTableCellView>(cell(row))->textField()->stringValue());
        }
        void loadRow(NSUInteger row)
        {
            t->reloadDataForRowIndexes_columnIndexes(
                test::indexes({ row }).get(), test::indexes({ 0 }).get());
        }
        /// Answers the rows whose values are asked for while a body runs.
        template <class Body> std::set<NSInteger> rowsAskedFor(const Body& body)
        {
            std::set<NSInteger> asked;
            const auto value = t.host->value_;
            t.host->value_ = [&](NSTableColumn& c, NSInteger row) {
                asked.insert(row);
                return value(c, row);
            };
            body();
            t.host->value_ = value;
            return asked;
        }
    };

    TEST_F(TableEditing, ADoubleClickLetsTheUserType)
    {
        screen.pointer().click(line(2), 2);
        EXPECT_EQ(t->editedRow(), 2);
        EXPECT_EQ(t->editedColumn(), 0);
        screen.keyboard().type(u"pear");
        screen.keyboard().press('\r');
        EXPECT_EQ(values[2], "pear");
        EXPECT_EQ(t->editedRow(), -1);
    }

    TEST_F(TableEditing, AClickElsewhereKeepsWhatWasTyped)
    {
        screen.pointer().click(line(2), 2);
        screen.keyboard().type(u"plum");
        screen.advance(5);
        screen.pointer().click(line(5));
        EXPECT_EQ(values[2], "plum");
        EXPECT_EQ(t.selected(), "5");
    }

    TEST_F(TableEditing, WhatWasNotChangedIsNotStored)
    {
        int stored = 0;
        t.host->setValue_ = [&](NSObject*, NSTableColumn&, NSInteger) { ++stored; };
        screen.pointer().click(line(2), 2);
        screen.keyboard().press('\r');
        EXPECT_EQ(stored, 0);
    }

    TEST_F(TableEditing, ReturnEditsTheSelectedRow)
    {
        screen.window().makeFirstResponder(t.view.get());
        t.select({ 3 });
        screen.keyboard().press('\r');
        EXPECT_EQ(t->editedRow(), 3);
    }

    TEST_F(TableEditing, ARowThatIsEditedStaysWhenItScrollsAway)
    {
        t->editColumn_row_withEvent_select(0, 1, nullptr, true);
        screen.keyboard().type(u"fig");
        t.scrollTo(900);
        screen.process();
        EXPECT_EQ(t->editedRow(), 1);
        screen.keyboard().press('\r');
        EXPECT_EQ(values[1], "fig");
    }

    TEST_F(TableEditing, EditingScrollsToTheRow)
    {
        t->editColumn_row_withEvent_select(1, 60, nullptr, false);
        EXPECT_EQ(t->editedRow(), 60);
        EXPECT_EQ(t->editedColumn(), 1);
    }

    TEST_F(TableEditing, ADelegateMayRefuseToEdit)
    {
        t.host->mayEdit_ = [](NSInteger) { return false; };
        t->editColumn_row_withEvent_select(0, 1, nullptr, true);
        EXPECT_EQ(t->editedRow(), -1);
    }

    TEST_F(TableEditing, AColumnThatIsNotEditableIsNotEdited)
    {
        at(0)->setEditable(false);
        t->reloadData();
        t->editColumn_row_withEvent_select(0, 1, nullptr, true);
        EXPECT_EQ(t->editedRow(), -1);
    }

    TEST_F(TableEditing, RowsThatAreNotThereCannotBeEdited)
    {
        EXPECT_EQ(raisedBy([&] { t->editColumn_row_withEvent_select(0, 100, nullptr, true); }),
            "NSTableViewException: Row 100 out of row range");
    }

    TEST_F(TableEditing, LoadingEndsEditing)
    {
        t->editColumn_row_withEvent_select(0, 1, nullptr, true);
        t->reloadData();
        EXPECT_EQ(t->editedRow(), -1);
    }

    TEST_F(TableEditing, ItsEndMayLoadTheTableWhileItsRowIsRemoved)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        const test::AtTheEndOfEditing loads([this] {
            values[0] = "new";
            t->reloadData();
            t->rowViewAtRow_makeIfNecessary(0, true);
        });
        t.host->rows_ = 99;
        t->removeRowsAtIndexes_withAnimation(test::indexes({ 3 }).get(), 0);
        ASSERT_TRUE(loads.happened());
        screen.process();
        EXPECT_EQ(t.shown(), "0+10");
        EXPECT_EQ(t->subviews()->count(), 10U);
        EXPECT_EQ(word(0), "new");
    }

    TEST_F(TableEditing, ItsEndMayLoadTheTableWhileItsRowIsLoaded)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        t.host->setValue_ = [this](NSObject*, NSTableColumn&, NSInteger) {
            t.host->rows_ = 2;
            t->reloadData();
        };
        EXPECT_EQ(rowsAskedFor([this] { loadRow(3); }), std::set<NSInteger>());
        screen.process();
        EXPECT_EQ(t.shown(), "0+2");
        EXPECT_NE(cell(0), cell(1));
    }

    TEST_F(TableEditing, ItsEndMayRemoveTheRowThatIsLoaded)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        t.host->setValue_ = [this](NSObject*, NSTableColumn&, NSInteger) {
            t.host->rows_ = 99;
            t->removeRowsAtIndexes_withAnimation(test::indexes({ 3 }).get(), 0);
        };
        EXPECT_FALSE(rowsAskedFor([this] { loadRow(3); }).contains(3));
        screen.process();
        EXPECT_EQ(t->subviews()->count(), 10U);
    }

    TEST_F(TableEditing, EachEndMayEditTheNextRowAndLoadTheTable)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        constexpr int kMost = 10;
        int ends = 0;
        const test::AtEachEndOfEditing edits([&] {
            if (++ends > kMost)
                return;
            t->editColumn_row_withEvent_select(0, 5, nullptr, true);
            t->reloadData();
        });
        screen.window().makeFirstResponder(nullptr);
        EXPECT_LE(ends, kMost);
        screen.process();
        EXPECT_EQ(t->subviews()->count(), 10U);
    }

    TEST_F(TableEditing, ItsEndMayMoveTheRowThatIsLoaded)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        t.host->setValue_ = [this](NSObject*, NSTableColumn&, NSInteger) {
            t->moveRowAtIndex_toIndex(3, 0);
            values[0] = "fig";
        };
        loadRow(3);
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(0, false)->subviews()->count(), 2U);
        EXPECT_EQ(word(0), "fig");
    }

    TEST_F(TableEditing, ItsEndMayInsertRowsWhileOthersAreLoadedToo)
    {
        t->editColumn_row_withEvent_select(0, 3, nullptr, true);
        screen.keyboard().type(u"fig");
        t.host->setValue_ = [this](NSObject*, NSTableColumn&, NSInteger) {
            t.host->rows_ = 101;
            t->insertRowsAtIndexes_withAnimation(test::indexes({ 0 }).get(), 0);
            values[5] = "new";
        };
        t->reloadDataForRowIndexes_columnIndexes(
            test::indexes({ 3, 4 }).get(), test::indexes({ 0 }).get());
        EXPECT_EQ(t->rowViewAtRow_makeIfNecessary(4, false)->subviews()->count(), 2U);
        EXPECT_EQ(word(5), "new");
    }

}

}
