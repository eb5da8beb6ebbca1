// SPDX-License-Identifier: Apache-2.0
#include "controls/OnOffSwitchControl.h"

#include <gtest/gtest.h>

#include "appkit/NSCell.h"
#include "controls/OnOffSwitchControlCell.h"
#include "foundation/NSBeep.h"
#include "runtime/Table.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Lets time pass while it is tracked: behind the press, or behind each movement.
class RestingSwitchCell : public OnOffSwitchControlCell {
    BRINDLE_OBJECT(RestingSwitchCell, OnOffSwitchControlCell)

public:
    double afterPress_ = 0; // seconds
    double afterMovement_ = 0;
};
template <> struct RestingSwitchCell::Methods<struct Resting> {
    static bool start(RestingSwitchCell& self, NSPoint point, NSView* view)
    {
        const bool goesOn
            = super<RestingSwitchCell, "startTrackingAt:inView:", bool>(self, point, view);
        Clock::advance(self.afterPress_);
        return goesOn;
    }
    static bool goOn(RestingSwitchCell& self, NSPoint last, NSPoint point, NSView* view)
    {
        const bool goesOn = super<RestingSwitchCell, "continueTracking:at:inView:", bool>(
            self, last, point, view);
        Clock::advance(self.afterMovement_);
        return goesOn;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "startTrackingAt:inView:", imp<start> },
            { "continueTracking:at:inView:", imp<goOn> },
        });
    }
};
BRINDLE_RECORD(RestingSwitchCell, Resting)

/// Counts the keys that come to it.
class KeyedView : public NSView {
    BRINDLE_OBJECT(KeyedView, NSView)

public:
    int keys_ = 0;
};
template <> struct KeyedView::Methods<struct Keys> {
    static void key(KeyedView& self, NSEvent*) { ++self.keys_; }
    static void table(Builder& t)
    {
        t.methods({ { "keyDown:", imp<key> }, { "keyUp:", imp<key> } });
    }
};
BRINDLE_RECORD(KeyedView, Keys)

namespace {

    /// A switch of 60 by 20 points at (20, 20) of the screen, with a target.
    struct OnOffSwitch : testing::Test {
        OnOffSwitch()
        {
            control->setTarget(log.get());
            control->setAction(selector<"act:">);
        }
        void allowMixed(NSCellStateValue state)
        {
            control->setAllowsMixedState(true);
            control->setState(state);
        }
        /// Drags the thumb's middle to a part of the width and lets it go after a second's rest.
        void dragThumbTo(double part)
        {
            const NSPoint from { cell()->centerXForThumbWithFrame(control->bounds()), 10 };
            const NSPoint to { 60 * part, 10 };
            const Ref<OnOffSwitchControlCell> kept = cell();
            kept->startTrackingAt_inView(from, control.get());
            kept->continueTracking_at_inView(from, to, control.get());
            screen.advance(1);
            kept->stopTracking_at_inView_mouseIsUp(to, to, control.get(), true);
            kept->setNextState();
        }
        /// Puts a cell in that lets time pass.
        Ref<RestingSwitchCell> rest()
        {
            const Ref<RestingSwitchCell> resting = make<RestingSwitchCell>();
            control->setCell(resting.get());
            control->setTarget(log.get());
            control->setAction(selector<"act:">);
            return resting;
        }
        Ref<OnOffSwitchControlCell> cell() { return cast<OnOffSwitchControlCell>(control->cell()); }
        void key(unichar character)
        {
            const Ref<NSString> text = NSString::cls().stringWithCharacters_length(&character, 1);
            for (const NSEventType type : { NSKeyDown, NSKeyUp }) {
                const Ref<NSEvent> event
                    = NSEvent::cls()
                          .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                              type, {}, 0, 0, 0, nullptr, text.get(), text.get(), false, 0);
                if (type == NSKeyDown)
                    control->keyDown(event.get());
                else
                    control->keyUp(event.get());
            }
        }

        HeadlessScreen screen { 200, 100 };
        Ref<ActionLog> log = make<ActionLog>();
        Ref<OnOffSwitchControl> control
            = screen.add<OnOffSwitchControl>(NSMakeRect(20, 20, 60, 20));
    };

}

TEST_F(OnOffSwitch, ItsCellIsASwitchCell)
{
    EXPECT_TRUE(control->cell()->isKindOfClass(OnOffSwitchControlCell::cls()));
    EXPECT_NE(NSButton::cls().cellClass(), static_cast<Class*>(OnOffSwitchControlCell::cls()));
}

TEST_F(OnOffSwitch, WakingFromAnArchiveSetsTheCellClassAgain)
{
    OnOffSwitchControl::cls().setCellClass(NSButtonCell::cls());
    control->awakeFromNib();
    EXPECT_EQ(
        OnOffSwitchControl::cls().cellClass(), static_cast<Class*>(OnOffSwitchControlCell::cls()));
}

TEST_F(OnOffSwitch, AClickTurnsItOnAndOff)
{
    screen.pointer().click({ 30, 30 });
    EXPECT_EQ(control->state(), NSOnState);
    screen.pointer().click({ 30, 30 });
    EXPECT_EQ(control->state(), NSOffState);
    EXPECT_EQ(log->count_, 2);
}

TEST_F(OnOffSwitch, ClicksGoThroughThreeStates)
{
    allowMixed(NSOnState);
    std::string way;
    for (int i = 0; i < 3; ++i) {
        screen.pointer().click({ 30, 30 });
        way += std::to_string(control->state()) + " ";
    }
    EXPECT_EQ(way, "0 -1 1 ");
}

TEST_F(OnOffSwitch, AQuickReleaseOutsideIsAClickToo)
{
    screen.pointer().press({ 50, 30 });
    screen.pointer().dragTo({ 2, 30 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOnState);
    EXPECT_EQ(log->count_, 1);
}

TEST_F(OnOffSwitch, SixPointsToTheRightAreADrag)
{
    control->setState(NSOffState);
    screen.pointer().press({ 30, 30 });
    screen.pointer().dragTo({ 36, 30 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOffState) << "the thumb is nearer to the left end";
    EXPECT_EQ(log->count_, 1);
}

TEST_F(OnOffSwitch, LessThanSixPointsToTheRightAreAClick)
{
    screen.pointer().press({ 30, 30 });
    screen.pointer().dragTo({ 35, 30 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, SixPointsDownwardAreADrag)
{
    screen.pointer().press({ 30, 35 });
    screen.pointer().dragTo({ 30, 29 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOffState);
}

TEST_F(OnOffSwitch, SixPointsUpwardAreAClick)
{
    screen.pointer().press({ 30, 25 });
    screen.pointer().dragTo({ 30, 38 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, LetGoAtFortyPercentTheTwoStateSwitchIsOff)
{
    control->setState(NSOnState);
    dragThumbTo(0.4);
    EXPECT_EQ(control->state(), NSOffState);
}

TEST_F(OnOffSwitch, LetGoAtFortyPercentTheThreeStateSwitchIsMixed)
{
    allowMixed(NSOnState);
    dragThumbTo(0.4);
    EXPECT_EQ(control->state(), NSMixedState);
}

TEST_F(OnOffSwitch, LetGoInTheRightHalfTheTwoStateSwitchIsOn)
{
    dragThumbTo(0.6);
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, LetGoInTheThirdsTheThreeStateSwitchIsOffOrOn)
{
    allowMixed(NSMixedState);
    dragThumbTo(0.3);
    EXPECT_EQ(control->state(), NSOffState);
    dragThumbTo(0.7);
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, APressWithALongRestIsADrag)
{
    rest()->afterPress_ = 1;
    control->setState(NSOnState);
    screen.pointer().click({ 70, 30 });
    EXPECT_EQ(control->state(), NSOnState) << "the thumb was not moved away from the right end";
    EXPECT_EQ(log->count_, 1);
    control->setState(NSOffState);
    screen.pointer().click({ 30, 30 });
    EXPECT_EQ(control->state(), NSOffState);
}

TEST_F(OnOffSwitch, APressWithAShortRestIsAClick)
{
    rest()->afterPress_ = 0.3;
    control->setState(NSOnState);
    screen.pointer().click({ 70, 30 });
    EXPECT_EQ(control->state(), NSOffState);
}

TEST_F(OnOffSwitch, ARestBeforeTheLastMovementDoesNotCount)
{
    rest()->afterPress_ = 5;
    control->setState(NSOnState);
    screen.pointer().press({ 70, 30 });
    screen.pointer().dragTo({ 69, 30 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOffState) << "a click";
}

TEST_F(OnOffSwitch, ARestAfterTheLastMovementMakesADragOfAShortWay)
{
    rest()->afterMovement_ = 1;
    control->setState(NSOnState);
    screen.pointer().press({ 70, 30 });
    screen.pointer().dragTo({ 69, 30 });
    screen.pointer().release();
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, LetGoBeforeItWasEverDrawnItGoesTowardsOn)
{
    // Where the thumb was is not a number then, which is nearer to neither end.
    const auto letGo = [this] {
        const Ref<OnOffSwitchControlCell> fresh = make<OnOffSwitchControlCell>();
        fresh->setAllowsMixedState(control->allowsMixedState());
        fresh->startTrackingAt_inView({ 10, 10 }, control.get());
        screen.advance(1);
        fresh->stopTracking_at_inView_mouseIsUp({ 10, 10 }, { 10, 10 }, control.get(), true);
        fresh->setNextState();
        return fresh->state();
    };
    EXPECT_EQ(letGo(), NSOnState);
    control->setAllowsMixedState(true);
    EXPECT_EQ(letGo(), NSMixedState);
}

TEST_F(OnOffSwitch, AnArchiveKeepsTheStateAndTheKindOfCell)
{
    allowMixed(NSMixedState);
    control->setTag(7);
    cell()->setOnSwitchLabel("1"_ns);
    cell()->setOnOffSwitchControlColors(OnOffSwitchControlGreenRedColors);
    const Ref<OnOffSwitchControl> back = test::archived(control);
    const Ref<NSCell> restored = back->cell();
    ASSERT_TRUE(restored->isKindOfClass(OnOffSwitchControlCell::cls()));
    EXPECT_EQ(back->state(), NSMixedState);
    EXPECT_EQ(back->tag(), 7);
    EXPECT_EQ(back->frame(), control->frame());
    // What is the switch's own begins anew.
    const Ref<OnOffSwitchControlCell> fresh = cast<OnOffSwitchControlCell>(restored);
    EXPECT_EQ(utf8Of(fresh->onSwitchLabel().get()), "ON");
    EXPECT_EQ(fresh->onOffSwitchControlColors(), OnOffSwitchControlDefaultColors);
    EXPECT_EQ(fresh->focusRingType(), NSFocusRingTypeExterior);
}

TEST_F(OnOffSwitch, ARestoredSwitchIsClicked)
{
    control->removeFromSuperview();
    control = test::archived(control);
    screen.window().contentView()->addSubview(control.get());
    screen.pointer().click({ 30, 30 });
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, ADragSendsTheActionOnceAfterTheState)
{
    log->setReaction([this](NSObject*) { EXPECT_EQ(control->state(), NSOnState); });
    screen.pointer().press({ 30, 30 });
    screen.pointer().dragTo({ 75, 30 });
    screen.pointer().release();
    EXPECT_EQ(log->count_, 1);
}

TEST_F(OnOffSwitch, TheArrowsMoveTheThumbWithoutAnAction)
{
    key(NSRightArrowFunctionKey);
    EXPECT_EQ(control->state(), NSOnState);
    key(NSLeftArrowFunctionKey);
    EXPECT_EQ(control->state(), NSOffState);
    EXPECT_EQ(log->count_, 0);
}

TEST_F(OnOffSwitch, TheArrowsStopInTheMiddleOfThreeStates)
{
    allowMixed(NSOffState);
    std::string way;
    for (const unichar arrow : { NSRightArrowFunctionKey, NSRightArrowFunctionKey,
             NSLeftArrowFunctionKey, NSLeftArrowFunctionKey }) {
        key(arrow);
        way += std::to_string(control->state()) + " ";
    }
    EXPECT_EQ(way, "-1 1 -1 0 ");
}

TEST_F(OnOffSwitch, AnArrowAtItsEndBeeps)
{
    const auto before = beepCount();
    key(NSLeftArrowFunctionKey);
    EXPECT_EQ(beepCount(), before + 1);
    control->setState(NSOnState);
    key(NSRightArrowFunctionKey);
    EXPECT_EQ(beepCount(), before + 2);
    EXPECT_EQ(control->state(), NSOnState);
}

TEST_F(OnOffSwitch, ArrowsEndAtTheSwitchOtherKeysGoOn)
{
    const Ref<KeyedView> parent
        = cast<KeyedView>(alloc<KeyedView>()->initWithFrame(NSMakeRect(0, 0, 100, 100)));
    parent->addSubview(control.get());
    key(NSLeftArrowFunctionKey);
    key(NSRightArrowFunctionKey);
    EXPECT_EQ(parent->keys_, 0);
    key(u'x');
    EXPECT_EQ(parent->keys_, 2); // down and up
}

TEST_F(OnOffSwitch, SettingAPropertyOfTheCellDoesNotMarkIt)
{
    const Ref<OnOffSwitchControlCell> kept = cell();
    kept->setOnOffSwitchControlColors(4);
    kept->setOnSwitchLabel("1"_ns);
    kept->setOffSwitchLabel("0"_ns);
    kept->setShowsOnOffLabels(false);
    kept->setOnOffSwitchCustomOnColor_offColor(
        NSColor::cls().redColor().get(), NSColor::cls().blueColor().get());
    EXPECT_FALSE(control->needsDisplay());
}

TEST_F(OnOffSwitch, SpaceClicksIt)
{
    key(' ');
    EXPECT_EQ(control->state(), NSOnState);
    EXPECT_EQ(log->count_, 1);
}

TEST_F(OnOffSwitch, ADisabledSwitchStaysAsItIs)
{
    control->setEnabled(false);
    screen.pointer().click({ 30, 30 });
    EXPECT_EQ(control->state(), NSOffState);
    EXPECT_EQ(log->count_, 0);
}

TEST_F(OnOffSwitch, ItIsHitInsideItsCellOnly)
{
    const auto hit = [this](NSPoint place) {
        const Ref<NSEvent> event
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      NSLeftMouseDown, place, 0, 0, screen.window().windowNumber(), nullptr, 1, 1,
                      1);
        return cell()->hitTestForEvent_inRect_ofView(event.get(), control->bounds(), control.get());
    };
    EXPECT_EQ(hit({ 30, 30 }), 5U);
    EXPECT_EQ(hit({ 90, 30 }), 0U);
}

}
