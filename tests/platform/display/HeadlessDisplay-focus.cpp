// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    struct HeadlessFocus : testing::Test {
        HeadlessDisplay display;
        std::unique_ptr<Surface> a = display.createSurface({ .frame = { { 0, 0 }, { 100, 100 } } });
        std::unique_ptr<Surface> b
            = display.createSurface({ .frame = { { 200, 50 }, { 100, 100 } } });

        HeadlessFocus()
        {
            a->show();
            b->show();
            drain(display);
        }
        std::string log() { return drainToText(display, { a.get(), b.get() }); }
    };

    TEST_F(HeadlessFocus, IsNotGivenByShowing) { EXPECT_EQ(display.focusedSurface(), 0u); }

    TEST_F(HeadlessFocus, FollowsActivation)
    {
        a->activate();
        b->activate();
        EXPECT_EQ(log(), "focusIn 1, focusOut 1, focusIn 2");
    }

    TEST_F(HeadlessFocus, IsGivenBeforeTheClickThatBringsIt)
    {
        display.movePointer({ 10, 10 });
        log();
        display.pressButton();
        EXPECT_EQ(log(), "focusIn 1, pointerDown 1");
        EXPECT_EQ(display.stackingOrder().back(), a->id());
    }

    TEST_F(HeadlessFocus, IsNotGivenToASurfaceThatDoesNotAcceptIt)
    {
        a->setAcceptsFocus(false);
        a->activate();
        display.click({ 10, 10 });
        EXPECT_EQ(display.focusedSurface(), 0u);
    }

    TEST_F(HeadlessFocus, IsNotTakenByAClickIntoAPopUp)
    {
        b->activate();
        a->setOverrideRedirect(true);
        display.click({ 10, 10 });
        EXPECT_EQ(display.focusedSurface(), b->id());
    }

    TEST_F(HeadlessFocus, IsLostByHidingAndByMinimising)
    {
        a->activate();
        a->hide();
        b->activate();
        b->minimise();
        EXPECT_EQ(log(), "focusIn 1, focusOut 1, focusIn 2, stateChanged 2, focusOut 2");
    }

    TEST_F(HeadlessFocus, ReceivesKeys)
    {
        b->activate();
        log();
        display.typeText(u"ab");
        EXPECT_EQ(log(), "keyDown 2, keyUp 2, keyDown 2, keyUp 2");
    }

    TEST_F(HeadlessFocus, ReceivesNoKeysWithoutAFocusedSurface)
    {
        display.typeText(u"ab");
        EXPECT_EQ(log(), "");
    }

    TEST_F(HeadlessFocus, TypesACharacterOutsideTheBasicPlaneWithOneKey)
    {
        a->activate();
        drain(display);
        display.typeText(u"\U0001F600");
        const auto events = drain(display);
        ASSERT_EQ(events.size(), 2u);
        EXPECT_EQ(events[0].characters, u"\U0001F600");
    }

    TEST_F(HeadlessFocus, FillsInWhatAScriptedKeyLeavesOut)
    {
        a->activate();
        drain(display);
        display.pressKey({ .characters = u"q", .keyCode = 12, .modifiers = kCommand });
        const Event key = drain(display).at(0);
        EXPECT_EQ(key.keyCode, 12);
        EXPECT_EQ(key.modifiers, kCommand);
        EXPECT_EQ(key.charactersIgnoringModifiers, u"q");
        EXPECT_EQ(key.latinCharacter, U'q');
    }

    TEST_F(HeadlessFocus, KeepsACyrillicCharacterApartFromItsLatinOne)
    {
        a->activate();
        drain(display);
        display.pressKey({ .characters = u"ф", .latinCharacter = U'a' });
        const Event key = drain(display).at(0);
        EXPECT_EQ(key.characters, u"ф");
        EXPECT_EQ(key.latinCharacter, U'a');
    }

    TEST_F(HeadlessFocus, TellsModifiersOnceForEachChange)
    {
        a->activate();
        log();
        display.setModifiers(kShift);
        display.setModifiers(kShift);
        EXPECT_EQ(log(), "modifiersChanged 1");
        EXPECT_EQ(display.modifiers(), kShift);
        display.movePointer({ 10, 10 });
        EXPECT_EQ(drain(display).back().modifiers, kShift);
    }

    TEST_F(HeadlessFocus, SendsKeysToTheGrabbingSurface)
    {
        a->activate();
        ASSERT_TRUE(display.grab(*b));
        log();
        display.typeText(u"x");
        EXPECT_EQ(log(), "keyDown 2, keyUp 2");
    }

}
}
