// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSButton.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "support/ActionLog.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    struct ButtonTest : testing::Test {
        ~ButtonTest() override { window->close(); }
        Ref<NSButton> add(NSRect frame = NSMakeRect(10, 10, 100, 26))
        {
            Ref<NSButton> button = cast<NSButton>(alloc<NSButton>()->initWithFrame(frame));
            button->setTarget(log.get());
            button->setAction(selector<"act:">);
            window->contentView()->addSubview(button.get());
            screen.process();
            return button;
        }
        Ref<NSButton> addRadio(CGFloat y)
        {
            Ref<NSButton> button = add(NSMakeRect(10, y, 100, 20));
            button->setButtonType(NSRadioButton);
            return button;
        }

        HeadlessScreen screen { 300, 200 };
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSWindow> window = makeWindow();

        // Titled, so that it can have the keyboard.
        Ref<NSWindow> makeWindow()
        {
            Ref<NSWindow> made = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(0, 0, 300, 150), NSTitledWindowMask, NSBackingStoreBuffered, true);
            made->makeKeyAndOrderFront(nullptr);
            return made;
        }
    };

    std::uint32_t colourAt(HeadlessScreen& screen, int x, int y)
    {
        return screen.pixels().at(x, y);
    }

}

TEST_F(ButtonTest, ANewButtonIsATitledPushButton)
{
    const Ref<NSButton> button = make<NSButton>();
    EXPECT_EQ(utf8Of(button->title().get()), "Button");
    EXPECT_TRUE(button->isBordered());
    EXPECT_TRUE(button->isEnabled());
    EXPECT_TRUE(button->isFlipped());
    EXPECT_EQ(button->state(), NSOffState);
    EXPECT_EQ(button->tag(), 0);
}

TEST_F(ButtonTest, AMomentaryButtonAdvancesItsStateToo)
{
    const Ref<NSButton> button = add();
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(button->state(), NSOnState);
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ButtonTest, SpaceClicksTheFocusedButton)
{
    const Ref<NSButton> button = add();
    window->makeFirstResponder(button.get());
    screen.keyboard().press(' ');
    EXPECT_EQ(log->count_, 1);
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(ButtonTest, ReturnPressesTheDefaultButton)
{
    const Ref<NSButton> button = add();
    const Ref<NSButton> other = add(NSMakeRect(10, 60, 100, 26));
    window->setDefaultButtonCell(cast<NSButtonCell>(button->cell()).get());
    window->makeFirstResponder(other.get());
    screen.keyboard().press('\r');
    EXPECT_EQ(log->count_, 1);
    EXPECT_EQ(log->sender_, button);
}

TEST_F(ButtonTest, ADisabledButtonLeavesItsKeyToTheNext)
{
    const Ref<NSButton> first = add();
    const Ref<NSButton> second = add(NSMakeRect(10, 60, 100, 26));
    first->setKeyEquivalent("k"_ns);
    second->setKeyEquivalent("k"_ns);
    for (const Ref<NSButton>& button : { first, second })
        button->setKeyEquivalentModifierMask(NSCommandKeyMask);
    screen.keyboard().press('k', NSCommandKeyMask);
    EXPECT_EQ(log->sender_, first) << "the first one wins";
    first->setEnabled(false);
    screen.keyboard().press('k', NSCommandKeyMask);
    EXPECT_EQ(log->sender_, second);
}

TEST_F(ButtonTest, AnUpperCaseKeyWantsShift)
{
    const Ref<NSButton> button = add();
    button->setKeyEquivalent("K"_ns);
    button->setKeyEquivalentModifierMask(NSCommandKeyMask);
    screen.keyboard().press('k', NSCommandKeyMask);
    EXPECT_EQ(log->count_, 0);
    screen.keyboard().press('K', NSCommandKeyMask | NSShiftKeyMask);
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ButtonTest, RadioButtonsWithOneActionAreAGroup)
{
    const Ref<NSButton> first = addRadio(10);
    const Ref<NSButton> second = addRadio(40);
    first->setState(NSOnState);
    screen.pointer().click({ 15, 50 });
    EXPECT_EQ(second->state(), NSOnState);
    EXPECT_EQ(first->state(), NSOffState);
}

TEST_F(ButtonTest, ARadioButtonThatIsOnStaysOn)
{
    const Ref<NSButton> button = addRadio(10);
    button->setState(NSOnState);
    screen.pointer().click({ 15, 20 });
    EXPECT_EQ(button->state(), NSOnState);
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ButtonTest, RadioButtonsWithAnotherActionStayAsTheyAre)
{
    const Ref<NSButton> first = addRadio(10);
    const Ref<NSButton> second = addRadio(40);
    second->setAction(selector<"other:">);
    first->setState(NSOnState);
    second->setState(NSOnState);
    EXPECT_EQ(first->state(), NSOnState);
}

TEST_F(ButtonTest, ItIsDrawnDifferentlyUnderThePointer)
{
    add();
    const std::uint32_t before = colourAt(screen, 20, 200 - 22);
    screen.pointer().moveTo({ 50, 20 });
    EXPECT_NE(colourAt(screen, 20, 200 - 22), before);
    screen.pointer().moveTo({ 250, 100 });
    EXPECT_EQ(colourAt(screen, 20, 200 - 22), before);
}

TEST_F(ButtonTest, HoveringIsNotAmongItsTrackingAreas)
{
    EXPECT_EQ(add()->trackingAreas()->count(), 0U);
}

TEST_F(ButtonTest, ItHasNoContextMenu) { EXPECT_EQ(add()->menuForEvent(nullptr), nullptr); }

TEST_F(ButtonTest, SizeToFitHoldsTheTitle)
{
    const Ref<NSButton> button = add();
    button->setTitle("A"_ns);
    button->sizeToFit();
    const CGFloat narrow = button->frame().size.width;
    button->setTitle("A much longer title"_ns);
    button->sizeToFit();
    EXPECT_GT(button->frame().size.width, narrow + 50);
    EXPECT_EQ(button->frame().size.height, 26);
}

TEST_F(ButtonTest, ACheckBoxIsLargerThanItsTitleByItsMark)
{
    const Ref<NSButton> box
        = NSButton::cls().checkboxWithTitle_target_action("Title"_ns, nullptr, {});
    const NSRect image = box->cell()->imageRectForBounds(box->bounds());
    const NSRect title = box->cell()->titleRectForBounds(box->bounds());
    EXPECT_EQ(image.size.width, 15);
    EXPECT_EQ(NSMinX(title), NSMaxX(image) + 6);
}

TEST_F(ButtonTest, ExtremeFramesDrawNothingWrong)
{
    const Ref<NSButton> button = add();
    for (const CGFloat size : { 0.0, 1.0, 3.0, -20.0, 1e9 }) {
        button->setFrame(NSMakeRect(0, 0, size, size));
        screen.process();
    }
    SUCCEED();
}

}
