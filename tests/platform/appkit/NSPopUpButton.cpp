// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPopUpButton.h"

#include <gtest/gtest.h>

#include "foundation/Exceptions.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "runtime/NSException.h"
#include "support/OpenMenu.h"

namespace brindle {

namespace {

    struct PopUpButtonTest : testing::Test {
        Ref<NSPopUpButton> add(bool pullsDown = false)
        {
            Ref<NSPopUpButton> made = alloc<NSPopUpButton>()->initWithFrame_pullsDown(
                NSMakeRect(100, 300, 120, 26), pullsDown);
            for (NSString* title : { "Red"_ns, "Green"_ns, "Blue"_ns })
                made->addItemWithTitle(title);
            made->setTarget(log.get());
            made->setAction(selector<"act:">);
            screen.window().contentView()->addSubview(made.get());
            screen.process();
            return made;
        }
        void press() { screen.pointer().press({ 150, 313 }); }

        HeadlessScreen screen { 400, 500 };
        MenuScript script { screen };
        Ref<ActionLog> log = make<ActionLog>();
    };

    TEST_F(PopUpButtonTest, AnItemIsNotLostWhenItCannotBeMoved)
    {
        const Ref<NSPopUpButton> button = add();
        button->removeAllItems();
        button->addItemWithTitle("One"_ns);
        button->addItemWithTitle("Two"_ns);
        EXPECT_THROW(button->insertItemWithTitle_atIndex("One"_ns, -1), Exception);
        ASSERT_EQ(button->numberOfItems(), 2);
        EXPECT_EQ(utf8Of(button->itemTitleAtIndex(0)), "One");
        button->insertItemWithTitle_atIndex("One"_ns, 2);
        EXPECT_EQ(utf8Of(button->itemTitleAtIndex(1)), "One");
    }
    TEST_F(PopUpButtonTest, ShowsItsFirstItemFirst)
    {
        const Ref<NSPopUpButton> button = add();
        EXPECT_EQ(button->numberOfItems(), 3);
        EXPECT_EQ(button->indexOfSelectedItem(), 0);
        EXPECT_EQ(utf8(button->title()), "Red");
        EXPECT_EQ(button->itemAtIndex(0)->state(), NSOnState);
    }

    TEST_F(PopUpButtonTest, SelectingMovesTheMark)
    {
        const Ref<NSPopUpButton> button = add();
        button->selectItemWithTitle("Blue"_ns);
        EXPECT_EQ(button->indexOfSelectedItem(), 2);
        EXPECT_EQ(button->itemAtIndex(0)->state(), NSOffState);
        EXPECT_EQ(button->itemAtIndex(2)->state(), NSOnState);
        EXPECT_EQ(utf8(button->titleOfSelectedItem()), "Blue");
    }

    TEST_F(PopUpButtonTest, WhatIsUnknownSelectsNothing)
    {
        const Ref<NSPopUpButton> button = add();
        button->selectItemWithTitle("Grey"_ns);
        EXPECT_EQ(button->indexOfSelectedItem(), -1);
        EXPECT_EQ(button->selectedTag(), -1);
        EXPECT_EQ(utf8(button->title()), "");
        EXPECT_FALSE(button->selectItemWithTag(77));
        EXPECT_NE(raisedBy([&] { button->selectItemAtIndex(3); }), "");
    }

    TEST_F(PopUpButtonTest, ATitleAddedAgainMovesToTheEnd)
    {
        const Ref<NSPopUpButton> button = add();
        button->addItemWithTitle("Red"_ns);
        EXPECT_EQ(button->numberOfItems(), 3);
        EXPECT_EQ(button->indexOfItemWithTitle("Red"_ns), 2);
    }

    TEST_F(PopUpButtonTest, RemovingTheSelectedItemSelectsTheFirst)
    {
        const Ref<NSPopUpButton> button = add();
        button->selectItemAtIndex(1);
        button->removeItemAtIndex(1);
        EXPECT_EQ(button->indexOfSelectedItem(), 0);
        button->removeAllItems();
        EXPECT_EQ(button->indexOfSelectedItem(), -1);
        EXPECT_FALSE(button->selectedItem());
        EXPECT_FALSE(button->lastItem());
    }

    TEST_F(PopUpButtonTest, AChoiceSelectsAndSendsTheAction)
    {
        const Ref<NSPopUpButton> button = add();
        press();
        script.release().key(NSDownArrowFunctionKey).key('\r');
        screen.process();
        EXPECT_EQ(utf8(button->title()), "Green");
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(log->sender_, button.get());
        EXPECT_FALSE(button->isHighlighted());
    }

    TEST_F(PopUpButtonTest, ADragToAnItemChoosesIt)
    {
        const Ref<NSPopUpButton> button = add();
        press();
        script.wait(0.5).move({ 150, 313 - 44 }).release();
        screen.process();
        EXPECT_EQ(utf8(button->title()), "Blue");
    }

    TEST_F(PopUpButtonTest, TheSelectedItemLiesOverItsTitle)
    {
        const Ref<NSPopUpButton> button = add();
        button->selectItemAtIndex(1);
        NSRect frame {};
        std::string under;
        press();
        script.release().then([&] {
            frame = menuFrame(0);
            under = highlighted(*button->menu().get());
        });
        script.key(0x1B);
        screen.process();
        EXPECT_EQ(under, "Green");
        EXPECT_NEAR(NSMidY(frame), 313, 1);
        EXPECT_GE(frame.size.width, 116);
    }

    TEST_F(PopUpButtonTest, EscapeKeepsTheSelection)
    {
        const Ref<NSPopUpButton> button = add();
        press();
        script.release().key(NSDownArrowFunctionKey).key(0x1B);
        screen.process();
        EXPECT_EQ(button->indexOfSelectedItem(), 0);
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(PopUpButtonTest, AnItemWithAnActionSendsThatInstead)
    {
        const Ref<NSPopUpButton> button = add();
        const Ref<ActionLog> own = make<ActionLog>();
        button->itemAtIndex(1)->setTarget(own.get());
        button->itemAtIndex(1)->setAction(selector<"act:">);
        press();
        script.release().key(NSDownArrowFunctionKey).key('\r');
        screen.process();
        EXPECT_EQ(own->count_, 1);
        EXPECT_EQ(log->count_, 0);
        EXPECT_EQ(button->indexOfSelectedItem(), 1);
    }

    TEST_F(PopUpButtonTest, ADisabledOneDoesNotOpen)
    {
        const Ref<NSPopUpButton> button = add();
        button->setEnabled(false);
        screen.pointer().click({ 150, 313 });
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(PopUpButtonTest, PullingDownKeepsItsTitleAndOpensBelow)
    {
        const Ref<NSPopUpButton> button = add(true);
        NSRect frame {};
        press();
        script.release().then([&] { frame = menuFrame(0); });
        script.key(NSDownArrowFunctionKey).key('\r');
        screen.process();
        EXPECT_EQ(utf8(button->title()), "Red");
        EXPECT_EQ(utf8(button->titleOfSelectedItem()), "Green");
        EXPECT_LT(NSMaxY(frame), 302);
        EXPECT_EQ(log->count_, 1);
        EXPECT_FALSE(button->itemAtIndex(0)->isHidden());
    }

    TEST_F(PopUpButtonTest, NearTheBottomItOpensAboveItself)
    {
        const Ref<NSPopUpButton> button = add(true);
        button->setFrame(NSMakeRect(100, 4, 120, 26));
        NSRect frame {};
        screen.pointer().press({ 150, 17 });
        script.release().then([&] { frame = menuFrame(0); }).key(0x1B);
        screen.process();
        EXPECT_GE(NSMinY(frame), 28);
    }

    TEST_F(PopUpButtonTest, ItsSizeFitsTheWidestTitle)
    {
        const Ref<NSPopUpButton> button = add();
        button->sizeToFit();
        const CGFloat before = button->frame().size.width;
        button->addItemWithTitle("A very much longer title"_ns);
        button->sizeToFit();
        EXPECT_GT(button->frame().size.width, before);
        EXPECT_EQ(button->frame().size.height, 26);
    }

    TEST_F(PopUpButtonTest, ItsValueIsThePlaceOfTheSelection)
    {
        const Ref<NSPopUpButton> button = add();
        button->setIntegerValue(2);
        EXPECT_EQ(button->indexOfSelectedItem(), 2);
        EXPECT_EQ(button->integerValue(), 2);
        button->setIntegerValue(99);
        EXPECT_EQ(button->indexOfSelectedItem(), -1);
    }

    TEST_F(PopUpButtonTest, ComesBackFromAnArchive)
    {
        const Ref<NSPopUpButtonCell> cell = cast<NSPopUpButtonCell>(add()->cell());
        cell->selectItemAtIndex(2);
        const Ref<NSPopUpButtonCell> read
            = cast<NSPopUpButtonCell>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(
                NSKeyedArchiver::cls().archivedDataWithRootObject(cell.get()).get()));
        EXPECT_EQ(read->numberOfItems(), 3);
        EXPECT_EQ(utf8(read->titleOfSelectedItem()), "Blue");
    }

    TEST_F(PopUpButtonTest, ACopyHasAMenuOfItsOwn)
    {
        const Ref<NSPopUpButtonCell> cell = cast<NSPopUpButtonCell>(add()->cell());
        cell->selectItemAtIndex(1);
        const Ref<NSPopUpButtonCell> copy = cast<NSPopUpButtonCell>(cell->copy());
        copy->removeItemAtIndex(0);
        EXPECT_EQ(cell->numberOfItems(), 3);
        EXPECT_EQ(utf8(copy->titleOfSelectedItem()), "Green");
    }

}

}
