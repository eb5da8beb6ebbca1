// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/HeadlessScreen.h"
#include "support/ScrolledDocument.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::indexes;
    using test::Notes;
    using test::Table;

    // ---- what programs select

    TEST(TableSelection, ReplacesTheRows)
    {
        Table t(10);
        t.select({ 3 });
        t.select({ 5 });
        EXPECT_EQ(t.selected(), "5");
        EXPECT_EQ(t->selectedRow(), 5);
        EXPECT_TRUE(t->isRowSelected(5));
        EXPECT_FALSE(t->isRowSelected(-1));
    }

    TEST(TableSelection, ExtendsWhereSeveralMayBeSelected)
    {
        Table t(10);
        t->setAllowsMultipleSelection(true);
        t.select({ 3, 4 });
        t.select({ 1 }, true);
        EXPECT_EQ(t.selected(), "1,3,4");
        EXPECT_EQ(t->selectedRow(), 1);
        EXPECT_EQ(t->numberOfSelectedRows(), 3);
    }

    TEST(TableSelection, OfSeveralRowsTheLastOneIsTakenWhereOneMayBeSelected)
    {
        Table t(10);
        t.select({ 3, 7 });
        EXPECT_EQ(t.selected(), "7");
        t.select({ 2 }, true);
        EXPECT_EQ(t.selected(), "2");
    }

    TEST(TableSelection, TellsOnlyOfChanges)
    {
        Table t(10);
        const Notes notes(t.view.get(), { NSTableViewSelectionDidChangeNotification });
        t.select({ 3 });
        t.select({ 3 });
        EXPECT_EQ(notes.count, 1);
        EXPECT_EQ(t.host->log_, "selected ");
    }

    TEST(TableSelection, ARowThatIsNotThereRaisesAndChangesNothing)
    {
        Table t(10);
        t.select({ 3 });
        EXPECT_EQ(
            raisedBy([&] { t.select({ 10 }); }), "NSTableViewException: Row 10 out of row range");
        EXPECT_EQ(t.selected(), "3");
    }

    TEST(TableSelection, NilSelectsNothing)
    {
        Table t(10);
        t.select({ 3 });
        t->selectRowIndexes_byExtendingSelection(nullptr, true);
        EXPECT_EQ(t.selected(), "3");
        t->selectRowIndexes_byExtendingSelection(nullptr, false);
        EXPECT_EQ(t->selectedRow(), -1);
    }

    TEST(TableSelection, ProgramsDoNotAskTheDelegate)
    {
        Table t(10);
        t.host->mayBeSelected_ = [](NSInteger) { return false; };
        t.host->mayChange_ = [] { return false; };
        t.select({ 3 });
        EXPECT_EQ(t.selected(), "3");
    }

    TEST(TableSelection, ATableThatMustHaveOneKeepsOne)
    {
        Table t(10);
        t->setAllowsEmptySelection(false);
        EXPECT_EQ(t.selected(), "0");
        t.select({});
        t->deselectRow(0);
        t->deselectAll(nullptr);
        EXPECT_EQ(t.selected(), "0");
    }

    TEST(TableSelection, DeselectingLeavesTheOthers)
    {
        Table t(10);
        t->setAllowsMultipleSelection(true);
        t->selectAll(nullptr);
        EXPECT_EQ(t->numberOfSelectedRows(), 10);
        t->deselectRow(4);
        EXPECT_EQ(t.selected(), "0,1,2,3,5,6,7,8,9");
        t->deselectAll(nullptr);
        EXPECT_EQ(t.selected(), "");
    }

    TEST(TableSelection, AllIsNotSelectedWhereOneMayBe)
    {
        const Table t(10);
        t->selectAll(nullptr);
        EXPECT_EQ(t.selected(), "");
    }

    TEST(TableSelection, LoadingKeepsWhatIsStillThere)
    {
        Table t(10);
        t->setAllowsMultipleSelection(true);
        t.select({ 2, 8 });
        t.host->log_.clear();
        t.host->rows_ = 5;
        t->reloadData();
        EXPECT_EQ(t.selected(), "2");
        EXPECT_EQ(t.host->log_, "selected ");
        t->reloadData();
        EXPECT_EQ(t.host->log_, "selected ");
    }

    // ---- what a person selects

    /// A table on a screen, at its bottom left, with the keyboard.
    struct TablePointer : testing::Test {
        HeadlessScreen screen;
        Table t { 100 };

        void SetUp() override
        {
            screen.window().contentView()->addSubview(t.scroll.get());
            screen.window().makeKeyAndOrderFront(nullptr);
            screen.window().makeFirstResponder(t.view.get());
            screen.process();
        }
        static NSPoint line(int number) { return { 50, 190 - 19.0 * number - 9 }; }
        void click(int number, NSEventModifierFlags flags = 0)
        {
            screen.display().setModifiers(flags);
            screen.pointer().click(line(number));
            screen.display().setModifiers(0);
        }
        void key(char16_t key, NSEventModifierFlags flags = 0)
        {
            screen.keyboard().press(key, flags);
        }
    };

    TEST_F(TablePointer, AClickSelectsItsRow)
    {
        click(3);
        EXPECT_EQ(t.selected(), "3");
        EXPECT_EQ(t->clickedRow(), 3);
        EXPECT_EQ(t->clickedColumn(), 0);
    }

    TEST_F(TablePointer, AClickTellsOnceAtItsEnd)
    {
        screen.pointer().press(line(3));
        screen.pointer().dragTo(line(5));
        screen.pointer().release();
        EXPECT_EQ(t.selected(), "5");
        EXPECT_EQ(t.host->log_, "selecting selecting selected ");
    }

    TEST_F(TablePointer, ADragSelectsASpanWhereSeveralMayBeSelected)
    {
        t->setAllowsMultipleSelection(true);
        screen.pointer().press(line(5));
        screen.pointer().dragTo(line(2));
        screen.pointer().release();
        EXPECT_EQ(t.selected(), "2,3,4,5");
    }

    TEST_F(TablePointer, ADragPastTheEndScrolls)
    {
        t->setAllowsMultipleSelection(true);
        screen.pointer().press(line(8));
        screen.pointer().dragTo({ 50, -40 });
        screen.pointer().release();
        EXPECT_GT(t.scroll->contentView()->bounds().origin.y, 0);
        EXPECT_TRUE(t->isRowSelected(10));
    }

    TEST_F(TablePointer, EmptySpaceDeselects)
    {
        t.host->rows_ = 3;
        t->reloadData();
        t.select({ 1 });
        click(7);
        EXPECT_EQ(t.selected(), "");
        EXPECT_EQ(t->clickedRow(), -1);
        EXPECT_EQ(t->clickedColumn(), -1);
    }

    TEST_F(TablePointer, ARefusedRowIsNotSelected)
    {
        t.host->mayBeSelected_ = [](NSInteger row) { return row != 3; };
        click(2);
        click(3);
        EXPECT_EQ(t.selected(), "2");
        t.host->mayChange_ = [] { return false; };
        click(5);
        EXPECT_EQ(t.selected(), "2");
    }

    TEST_F(TablePointer, ADelegateMayProposeOtherRows)
    {
        t->setAllowsMultipleSelection(true);
        t.host->proposal_ = [](NSIndexSet*) { return indexes({ 7, 500 }); };
        click(2);
        EXPECT_EQ(t.selected(), "7");
    }

    TEST_F(TablePointer, ADisabledTableTakesNoClicks)
    {
        t->setEnabled(false);
        click(2);
        EXPECT_EQ(t.selected(), "");
    }

    // ---- keys

    TEST_F(TablePointer, ArrowsMoveTheSelection)
    {
        key(NSDownArrowFunctionKey);
        EXPECT_EQ(t.selected(), "0");
        key(NSDownArrowFunctionKey);
        EXPECT_EQ(t.selected(), "1");
        key(NSUpArrowFunctionKey);
        key(NSUpArrowFunctionKey);
        EXPECT_EQ(t.selected(), "0");
    }

    TEST_F(TablePointer, UpFromNothingSelectsTheLastRow)
    {
        key(NSUpArrowFunctionKey);
        EXPECT_EQ(t.selected(), "99");
        EXPECT_EQ(t.scroll->contentView()->bounds().origin.y, 1710);
    }

    TEST_F(TablePointer, ShiftExtendsFromWhereItBegan)
    {
        t->setAllowsMultipleSelection(true);
        click(4);
        key(NSDownArrowFunctionKey, NSShiftKeyMask);
        key(NSDownArrowFunctionKey, NSShiftKeyMask);
        EXPECT_EQ(t.selected(), "4,5,6");
        key(NSUpArrowFunctionKey, NSShiftKeyMask);
        EXPECT_EQ(t.selected(), "4,5");
        EXPECT_EQ(t->selectedRow(), 5);
    }

    TEST_F(TablePointer, PagesAndEnds)
    {
        click(0);
        key(NSPageDownFunctionKey);
        EXPECT_EQ(t.selected(), "10");
        key(NSEndFunctionKey);
        EXPECT_EQ(t.selected(), "99");
        key(NSPageUpFunctionKey);
        EXPECT_EQ(t.selected(), "89");
        key(NSHomeFunctionKey);
        EXPECT_EQ(t.selected(), "0");
    }

    TEST_F(TablePointer, ARefusedRowIsPassedOver)
    {
        t.host->mayBeSelected_ = [](NSInteger row) { return row % 3 == 0; };
        key(NSDownArrowFunctionKey);
        key(NSDownArrowFunctionKey);
        EXPECT_EQ(t.selected(), "3");
    }

    TEST_F(TablePointer, LettersChooseARow)
    {
        t.host->word_ = [](NSInteger row) -> Ref<NSString> {
            NSString* const words[] = { "apple"_ns, "bean"_ns, "beet"_ns, "cherry"_ns };
            return words[row % 4];
        };
        screen.keyboard().type(u"b");
        EXPECT_EQ(t.selected(), "1");
        screen.keyboard().type(u"ee");
        EXPECT_EQ(t.selected(), "2");
        screen.advance(2);
        screen.keyboard().type(u"b");
        EXPECT_EQ(t.selected(), "5");
        screen.advance(2);
        screen.keyboard().type(u"z");
        EXPECT_EQ(t.selected(), "5");
    }

    TEST_F(TablePointer, KeysOfATableWithoutRowsDoNothing)
    {
        t.host->rows_ = 0;
        t->reloadData();
        for (const char16_t k : { NSUpArrowFunctionKey, NSPageDownFunctionKey, NSEndFunctionKey })
            key(k);
        EXPECT_EQ(t->selectedRow(), -1);
    }

    // ---- looks

    TEST_F(TablePointer, TheSelectionIsEmphasizedWithTheKeyboard)
    {
        click(2);
        screen.process();
        const Ref<NSTableRowView> row = t->rowViewAtRow_makeIfNecessary(2, false);
        EXPECT_TRUE(row->isSelected());
        EXPECT_TRUE(row->isEmphasized());
        EXPECT_EQ(row->interiorBackgroundStyle(), NSBackgroundStyleDark);
        screen.window().makeFirstResponder(nullptr);
        screen.process();
        EXPECT_FALSE(row->isEmphasized());
        EXPECT_EQ(row->interiorBackgroundStyle(), NSBackgroundStyleLight);
    }

    TEST_F(TablePointer, CellsLearnTheGroundTheyLieOn)
    {
        t.host->view_
            = [](NSTableColumn&, NSInteger) -> Ref<NSObject> { return make<NSTableCellView>(); };
        t->reloadData();
        screen.process();
        click(2);
        screen.process();
        const Ref<NSTableCellView> cell
            = cast<NSTableCellView>(t->viewAtColumn_row_makeIfNecessary(0, 2, false));
        EXPECT_EQ(cell->backgroundStyle(), NSBackgroundStyleDark);
        click(3);
        screen.process();
        EXPECT_EQ(cell->backgroundStyle(), NSBackgroundStyleLight);
    }

}

}
