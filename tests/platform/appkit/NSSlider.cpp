// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSlider.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSColor.h"
#include "foundation/NSNumber.h"
#include "runtime/NSException.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/EditingDesk.h"

namespace brindle {
namespace {

    /// A slider from 0 to 100 whose knob's middle goes from 10 to 210.
    struct SliderTest : testing::Test {
        EditingDesk desk;
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSSlider> slider = add(NSMakeRect(20, 50, 220, 20));

        Ref<NSSlider> add(NSRect frame)
        {
            const Ref<NSSlider> made = desk.add<NSSlider>(frame);
            made->setMaxValue(100);
            made->setTarget(log.get());
            made->setAction(selector<"act:">);
            return made;
        }
        double value() { return slider->doubleValue(); }
    };

    // ---- values

    TEST_F(SliderTest, ANewSliderGoesFromNothingToOne)
    {
        const Ref<NSSlider> fresh = make<NSSlider>();
        EXPECT_EQ(fresh->minValue(), 0);
        EXPECT_EQ(fresh->maxValue(), 1);
        EXPECT_EQ(fresh->doubleValue(), 0);
        EXPECT_TRUE(fresh->isContinuous());
        EXPECT_EQ(fresh->numberOfTickMarks(), 0);
    }
    TEST_F(SliderTest, TheValueStaysBetweenTheEnds)
    {
        slider->setDoubleValue(500);
        EXPECT_EQ(value(), 100);
        slider->setDoubleValue(-500);
        EXPECT_EQ(value(), 0);
        slider->setIntegerValue(30);
        EXPECT_EQ(slider->integerValue(), 30);
        slider->setStringValue("45.5"_ns);
        EXPECT_EQ(value(), 45.5);
    }
    TEST_F(SliderTest, AnEndTakesTheValueAlong)
    {
        slider->setDoubleValue(50);
        slider->setMaxValue(40);
        EXPECT_EQ(value(), 40);
        slider->setMinValue(45);
        EXPECT_EQ(value(), 45) << "the ends lie the wrong way round";
    }
    TEST_F(SliderTest, WhatIsNoNumberIsIgnored)
    {
        slider->setDoubleValue(50);
        slider->setDoubleValue(NAN);
        slider->setMinValue(NAN);
        slider->setMaxValue(INFINITY);
        slider->setAltIncrementValue(NAN);
        EXPECT_EQ(value(), 50);
        EXPECT_EQ(slider->maxValue(), 100);
        EXPECT_EQ(slider->altIncrementValue(), 0);
    }
    TEST_F(SliderTest, NilAndOtherObjectsCountAsNothing)
    {
        slider->setDoubleValue(50);
        slider->setObjectValue(nullptr);
        EXPECT_EQ(value(), 0);
    }
    TEST_F(SliderTest, TheFarthestEndsWork)
    {
        slider->setMinValue(-1.7e308);
        slider->setMaxValue(1.7e308);
        slider->setDoubleValue(0);
        const NSRect knob = cast<NSSliderCell>(slider->cell())->knobRectFlipped(true);
        EXPECT_NEAR(NSMidX(knob), 110, 1e-9);
    }

    // ---- the pointer

    TEST_F(SliderTest, APressBringsTheKnob)
    {
        desk.click(*slider, { 110, 10 });
        EXPECT_EQ(value(), 50);
        EXPECT_GE(log->count_, 1);
    }
    TEST_F(SliderTest, APressOnTheKnobLeavesItWhereItIs)
    {
        slider->setDoubleValue(50);
        desk.click(*slider, { 114, 10 });
        EXPECT_EQ(value(), 50);
    }
    TEST_F(SliderTest, ADragTakesTheKnobAlong)
    {
        slider->setDoubleValue(50);
        desk.drag(*slider, { 114, 10 }, { 134, 10 });
        EXPECT_EQ(value(), 60);
    }
    TEST_F(SliderTest, ADragStopsAtTheEnds)
    {
        desk.drag(*slider, { 110, 10 }, { 1000, 10 });
        EXPECT_EQ(value(), 100);
        desk.drag(*slider, { 110, 10 }, { -1000, 10 });
        EXPECT_EQ(value(), 0);
    }
    TEST_F(SliderTest, ADragOutsideGoesOn)
    {
        desk.drag(*slider, { 110, 10 }, { 160, 90 });
        EXPECT_EQ(value(), 75);
    }
    TEST_F(SliderTest, EveryStepOfADragSendsTheAction)
    {
        std::string seen;
        log->setReaction([&](NSObject*) { seen += std::to_string(slider->integerValue()) + " "; });
        desk.screen.pointer().press(desk.onScreen(*slider, { 10, 10 }));
        desk.screen.pointer().dragTo(desk.onScreen(*slider, { 30, 10 }));
        desk.screen.pointer().dragTo(desk.onScreen(*slider, { 50, 10 }));
        desk.screen.pointer().release();
        EXPECT_EQ(seen, "0 10 20 20 ");
    }
    TEST_F(SliderTest, AKnobThatIsHeldSendsNothing)
    {
        desk.screen.pointer().press(desk.onScreen(*slider, { 10, 10 }));
        desk.screen.process(); // no release comes
        EXPECT_EQ(log->count_, 1) << "the press itself";
    }
    TEST_F(SliderTest, OneThatIsNotContinuousSendsItOnceAtTheEnd)
    {
        slider->setContinuous(false);
        EXPECT_FALSE(slider->isContinuous());
        desk.drag(*slider, { 10, 10 }, { 50, 10 });
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(value(), 20);
    }
    TEST_F(SliderTest, ADisabledSliderIsNotMoved)
    {
        slider->setEnabled(false);
        desk.click(*slider, { 110, 10 });
        EXPECT_EQ(value(), 0);
        EXPECT_EQ(log->count_, 0);
    }
    TEST_F(SliderTest, AnUprightSliderGrowsUpward)
    {
        slider = add(NSMakeRect(250, 10, 20, 120));
        EXPECT_TRUE(slider->isVertical());
        desk.click(*slider, { 10, 10 });
        EXPECT_EQ(value(), 100);
        desk.click(*slider, { 10, 110 });
        EXPECT_EQ(value(), 0);
        desk.click(*slider, { 10, 85 });
        EXPECT_EQ(value(), 25);
    }
    TEST_F(SliderTest, TheDirectionCanBeSet)
    {
        EXPECT_FALSE(slider->isVertical());
        slider->setVertical(true);
        EXPECT_TRUE(slider->isVertical());
    }
    TEST_F(SliderTest, ADialGrowsClockwiseFromTheTop)
    {
        slider = add(NSMakeRect(250, 10, 40, 40));
        slider->setSliderType(NSCircularSlider);
        desk.click(*slider, { 30, 20 });
        EXPECT_NEAR(value(), 25, 1e-9);
        desk.click(*slider, { 20, 30 });
        EXPECT_NEAR(value(), 50, 1e-9);
        desk.click(*slider, { 10, 20 });
        EXPECT_NEAR(value(), 75, 1e-9);
    }
    TEST_F(SliderTest, ASliderWithoutRoomDoesNothingWrong)
    {
        for (const CGFloat size : { 0.0, 1.0, 5.0, -20.0, 1e9 }) {
            slider->setFrame(NSMakeRect(0, 0, size, size));
            slider->setNumberOfTickMarks(3);
            desk.screen.process();
            slider->setSliderType(NSCircularSlider);
            desk.screen.process();
            slider->setSliderType(NSLinearSlider);
        }
        EXPECT_EQ(value(), 0);
    }

    // ---- marks

    TEST_F(SliderTest, MarksDivideTheWayEvenly)
    {
        slider->setNumberOfTickMarks(5);
        EXPECT_EQ(slider->tickMarkValueAtIndex(0), 0);
        EXPECT_EQ(slider->tickMarkValueAtIndex(1), 25);
        EXPECT_EQ(slider->tickMarkValueAtIndex(4), 100);
        EXPECT_EQ(slider->tickMarkValueAtIndex(-1), 0);
        EXPECT_EQ(slider->tickMarkValueAtIndex(99), 100);
        EXPECT_EQ(slider->closestTickMarkValueToValue(36), 25);
        EXPECT_EQ(slider->closestTickMarkValueToValue(38), 50);
    }
    TEST_F(SliderTest, OneMarkStandsInTheMiddle)
    {
        slider->setNumberOfTickMarks(1);
        EXPECT_EQ(slider->tickMarkValueAtIndex(0), 50);
        EXPECT_EQ(NSMidX(slider->rectOfTickMarkAtIndex(0)), 110);
    }
    TEST_F(SliderTest, MarksStandBelowOrAbove)
    {
        slider->setFrame(NSMakeRect(20, 50, 220, 27));
        slider->setNumberOfTickMarks(3);
        const NSRect knob = cast<NSSliderCell>(slider->cell())->knobRectFlipped(true);
        EXPECT_GE(NSMinY(slider->rectOfTickMarkAtIndex(1)), NSMaxY(knob));
        slider->setTickMarkPosition(NSTickMarkAbove);
        const NSRect moved = cast<NSSliderCell>(slider->cell())->knobRectFlipped(true);
        EXPECT_LE(NSMaxY(slider->rectOfTickMarkAtIndex(1)), NSMinY(moved));
        EXPECT_EQ(NSMidX(slider->rectOfTickMarkAtIndex(2)), 210);
    }
    TEST_F(SliderTest, AMarkIsFoundAtAPoint)
    {
        slider->setNumberOfTickMarks(3);
        const NSRect mark = slider->rectOfTickMarkAtIndex(1);
        EXPECT_EQ(slider->indexOfTickMarkAtPoint({ NSMidX(mark) + 1, NSMidY(mark) }), 1);
        EXPECT_EQ(slider->indexOfTickMarkAtPoint({ NSMidX(mark) + 50, NSMidY(mark) }), NSNotFound);
    }
    TEST_F(SliderTest, AMarkThatIsNotThereRaises)
    {
        slider->setNumberOfTickMarks(3);
        EXPECT_THROW(slider->rectOfTickMarkAtIndex(3), Exception);
        EXPECT_THROW(slider->rectOfTickMarkAtIndex(-1), Exception);
    }
    TEST_F(SliderTest, ASliderOfMarksSettlesOnThem)
    {
        slider->setNumberOfTickMarks(5);
        slider->setAllowsTickMarkValuesOnly(true);
        desk.click(*slider, { 85, 10 });
        EXPECT_EQ(value(), 50);
        slider->setDoubleValue(33);
        EXPECT_EQ(value(), 33) << "the host is free";
    }
    TEST_F(SliderTest, ThereAreNotMoreMarksThanAnybodySees)
    {
        slider->setNumberOfTickMarks(-5);
        EXPECT_EQ(slider->numberOfTickMarks(), 0);
        slider->setNumberOfTickMarks(std::numeric_limits<NSInteger>::max());
        EXPECT_EQ(slider->numberOfTickMarks(), 10000);
    }

    // ---- keys

    TEST_F(SliderTest, ArrowsGoATwentiethOfTheWay)
    {
        desk.window->makeFirstResponder(slider.get());
        desk.press(NSRightArrowFunctionKey);
        EXPECT_EQ(value(), 5);
        desk.press(NSUpArrowFunctionKey);
        EXPECT_EQ(value(), 10);
        desk.press(NSLeftArrowFunctionKey);
        desk.press(NSDownArrowFunctionKey);
        EXPECT_EQ(value(), 0);
        EXPECT_EQ(log->count_, 4);
        desk.press(NSLeftArrowFunctionKey);
        EXPECT_EQ(log->count_, 4) << "nothing changed at the end";
    }
    TEST_F(SliderTest, PagesAndEndsHaveKeys)
    {
        desk.window->makeFirstResponder(slider.get());
        desk.press(NSPageUpFunctionKey);
        EXPECT_EQ(value(), 20);
        desk.press(NSEndFunctionKey);
        EXPECT_EQ(value(), 100);
        desk.press(NSPageDownFunctionKey);
        EXPECT_EQ(value(), 80);
        desk.press(NSHomeFunctionKey);
        EXPECT_EQ(value(), 0);
    }
    TEST_F(SliderTest, ArrowsGoFromMarkToMark)
    {
        slider->setNumberOfTickMarks(5);
        slider->setAllowsTickMarkValuesOnly(true);
        desk.window->makeFirstResponder(slider.get());
        desk.press(NSRightArrowFunctionKey);
        EXPECT_EQ(value(), 25);
    }
    TEST_F(SliderTest, OptionHasAStepOfItsOwn)
    {
        slider->setAltIncrementValue(1);
        desk.window->makeFirstResponder(slider.get());
        desk.press(NSRightArrowFunctionKey, NSAlternateKeyMask);
        EXPECT_EQ(value(), 1);
    }

    // ---- the rest

    TEST_F(SliderTest, ItFitsItsKnobAndMarks)
    {
        slider->sizeToFit();
        EXPECT_EQ(slider->frame().size, (NSSize { 220, 20 }));
        slider->setNumberOfTickMarks(3);
        slider->sizeToFit();
        EXPECT_EQ(slider->frame().size, (NSSize { 220, 27 }));
        slider->setControlSize(NSControlSizeSmall);
        slider->sizeToFit();
        EXPECT_EQ(slider->frame().size, (NSSize { 220, 24 }));
    }
    TEST_F(SliderTest, ItIsMadeInOneStep)
    {
        const Ref<NSSlider> made = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
            5, 1, 9, log.get(), selector<"act:">);
        EXPECT_EQ(made->doubleValue(), 5);
        EXPECT_EQ(made->minValue(), 1);
        EXPECT_EQ(made->maxValue(), 9);
        EXPECT_EQ(made->target(), log);
        EXPECT_EQ(made->frame().size.height, 20);
    }
    TEST_F(SliderTest, AnArchiveKeepsEverything)
    {
        slider->setMinValue(-10);
        slider->setDoubleValue(42);
        slider->setNumberOfTickMarks(3);
        slider->setTickMarkPosition(NSTickMarkAbove);
        slider->setAllowsTickMarkValuesOnly(true);
        slider->setAltIncrementValue(2);
        slider->setContinuous(false);
        slider->setTrackFillColor(NSColor::cls().redColor().get());
        const Ref<NSSlider> back = test::archived(slider);
        EXPECT_EQ(back->minValue(), -10);
        EXPECT_EQ(back->maxValue(), 100);
        EXPECT_EQ(back->doubleValue(), 42);
        EXPECT_EQ(back->numberOfTickMarks(), 3);
        EXPECT_EQ(back->tickMarkPosition(), NSTickMarkAbove);
        EXPECT_TRUE(back->allowsTickMarkValuesOnly());
        EXPECT_EQ(back->altIncrementValue(), 2);
        EXPECT_FALSE(back->isContinuous());
        EXPECT_TRUE(back->trackFillColor()->isEqual(NSColor::cls().redColor().get()));
    }
    TEST_F(SliderTest, AReleasedSliderInItsOwnActionDoesNoHarm)
    {
        log->setReaction([&](NSObject*) {
            slider->removeFromSuperview();
            slider = nullptr;
            log->setReaction(nullptr);
        });
        const NSPoint from = desk.onScreen(*slider, { 10, 10 });
        desk.screen.pointer().press(from);
        desk.screen.pointer().dragTo({ from.x + 50, from.y });
        desk.screen.pointer().release();
        EXPECT_EQ(slider, nullptr);
    }

}
}
