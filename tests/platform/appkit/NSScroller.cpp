// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScroller.h"

#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSColor.h"
#include "support/Focused.h"
#include "support/HeadlessScreen.h"
#include "support/ScrolledDocument.h"

namespace brindle {

namespace {

    Ref<NSScroller> scrollerOf(NSSize size)
    {
        return cast<NSScroller>(alloc<NSScroller>()->initWithFrame({ NSZeroPoint, size }));
    }

    TEST(Scroller, WidthsFollowTheControlSize)
    {
        const auto cls = NSScroller::cls();
        for (const NSScrollerStyle style : { NSScrollerStyleLegacy, NSScrollerStyleOverlay }) {
            EXPECT_EQ(
                cls.scrollerWidthForControlSize_scrollerStyle(NSControlSizeRegular, style), 15);
            EXPECT_EQ(cls.scrollerWidthForControlSize_scrollerStyle(NSControlSizeSmall, style), 11);
            EXPECT_EQ(cls.scrollerWidthForControlSize_scrollerStyle(NSControlSizeMini, style), 11);
        }
        EXPECT_EQ(cls.scrollerWidth(), 15);
        EXPECT_EQ(cls.scrollerWidthForControlSize(NSControlSizeMini), 11);
    }

    TEST(Scroller, ValuesStayBetweenZeroAndOne)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 15, 100 });
        scroller->setDoubleValue(2);
        EXPECT_EQ(scroller->doubleValue(), 1);
        scroller->setFloatValue(-1);
        EXPECT_EQ(scroller->doubleValue(), 0);
        scroller->setKnobProportion(std::numeric_limits<double>::infinity());
        EXPECT_EQ(scroller->knobProportion(), 1);
    }

    TEST(Scroller, IsNotTrackedWithoutAPress)
    {
        const Ref<NSScroller> scroller = make<NSScroller>();
        scroller->trackKnob(nullptr);
        EXPECT_EQ(scroller->doubleValue(), 0);
    }

    TEST(Scroller, NaNChangesNothing)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 15, 100 });
        scroller->setDoubleValue(0.5);
        scroller->setKnobProportion(0.5);
        scroller->setDoubleValue(std::numeric_limits<double>::quiet_NaN());
        scroller->setKnobProportion(std::numeric_limits<double>::quiet_NaN());
        EXPECT_EQ(scroller->doubleValue(), 0.5);
        EXPECT_EQ(scroller->knobProportion(), 0.5);
    }

    TEST(Scroller, TheKnobIsAsLongAsWhatShows)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 15, 204 });
        scroller->setKnobProportion(0.25);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnob), NSMakeRect(0, 2, 15, 50));
        scroller->setDoubleValue(1);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnob), NSMakeRect(0, 152, 15, 50));
        EXPECT_EQ(scroller->rectForPart(NSScrollerDecrementPage), NSMakeRect(0, 2, 15, 150));
        EXPECT_EQ(scroller->rectForPart(NSScrollerIncrementPage), NSZeroRect);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnobSlot), NSMakeRect(0, 2, 15, 200));
    }

    TEST(Scroller, ALyingOneGoesFromLeftToRight)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 204, 15 });
        scroller->setKnobProportion(0.5);
        scroller->setDoubleValue(0.5);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnob), NSMakeRect(52, 0, 100, 15));
    }

    TEST(Scroller, AKnobCanAlwaysBeTaken)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 15, 204 });
        scroller->setKnobProportion(0.0001);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnob).size.height, 24);
    }

    TEST(Scroller, WithNothingToScrollOrDisabledItHasNoKnob)
    {
        const Ref<NSScroller> scroller = scrollerOf({ 15, 204 });
        scroller->setKnobProportion(1);
        EXPECT_EQ(scroller->rectForPart(NSScrollerKnob), NSZeroRect);
        scroller->setKnobProportion(0.5);
        EXPECT_EQ(scroller->usableParts(), NSAllScrollerParts);
        scroller->setEnabled(false);
        EXPECT_EQ(scroller->usableParts(), NSNoScrollerParts);
    }

    TEST(Scroller, AScrollerWithoutRoomHasNoParts)
    {
        for (const NSSize size : { NSMakeSize(0, 0), NSMakeSize(3, 5), NSMakeSize(-5, -5) }) {
            const Ref<NSScroller> scroller = scrollerOf(size);
            scroller->setKnobProportion(0.5);
            EXPECT_EQ(scroller->usableParts(), NSNoScrollerParts);
            EXPECT_EQ(scroller->rectForPart(NSScrollerKnob), NSZeroRect);
        }
    }

    TEST(Scroller, TakesNoKeyboard)
    {
        EXPECT_FALSE(scrollerOf({ 15, 100 })->acceptsFirstResponder());
    }

    TEST(Scroller, ALegacyOnePaintsItsSlotAndKnob)
    {
        test::Focused picture(15, 104, true);
        const Ref<NSScroller> scroller = scrollerOf({ 15, 104 });
        scroller->setKnobProportion(0.5);
        CGContextTranslateCTM(picture, 0, 104);
        CGContextScaleCTM(picture, 1, -1);
        scroller->drawRect(scroller->bounds());
        EXPECT_EQ(picture.at(7, 25), (test::Rgba { 0x9B, 0xA0, 0xAA, 255 }));
        EXPECT_EQ(picture.at(7, 90), (test::Rgba { 0xF2, 0xF3, 0xF5, 255 }));
    }

    TEST(Scroller, AnOverlayOnePaintsOnlyItsKnob)
    {
        test::Focused picture(15, 104, true);
        const Ref<NSScroller> scroller = scrollerOf({ 15, 104 });
        scroller->setScrollerStyle(NSScrollerStyleOverlay);
        scroller->setKnobProportion(0.5);
        CGContextTranslateCTM(picture, 0, 104);
        CGContextScaleCTM(picture, 1, -1);
        scroller->drawRect(scroller->bounds());
        EXPECT_GT(picture.at(10, 25).alpha, 100);
        EXPECT_EQ(picture.at(10, 90).alpha, 0);
        EXPECT_EQ(picture.at(2, 25).alpha, 0);
    }

}

}
