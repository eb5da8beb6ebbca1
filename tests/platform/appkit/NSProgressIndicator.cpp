// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSProgressIndicator.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/Archives.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    struct ProgressTest : testing::Test {
        HeadlessScreen screen { 300, 200 };
        Ref<NSProgressIndicator> bar = screen.add<NSProgressIndicator>(NSMakeRect(50, 90, 200, 20));

        /// Answers how many points of the bar's middle line are filled, by their difference from the end of the track.
        int filled()
        {
            const display::Snapshot picture = screen.pixels();
            const std::uint32_t empty = picture.at(246, 100);
            int count = 0;
            for (int x = 50; x < 246; ++x)
                count += picture.at(x, 100) != empty;
            return count;
        }
    };

    TEST_F(ProgressTest, ANewOneOnlySaysThatSomethingGoesOn)
    {
        EXPECT_TRUE(bar->isIndeterminate());
        EXPECT_EQ(bar->minValue(), 0);
        EXPECT_EQ(bar->maxValue(), 100);
        EXPECT_EQ(bar->doubleValue(), 0);
        EXPECT_EQ(bar->style(), NSProgressIndicatorBarStyle);
        EXPECT_TRUE(bar->isDisplayedWhenStopped());
    }
    TEST_F(ProgressTest, TheBarIsFilledUpToTheValue)
    {
        bar->setIndeterminate(false);
        bar->setDoubleValue(50);
        EXPECT_NEAR(filled(), 100, 6);
        bar->incrementBy(25);
        EXPECT_EQ(bar->doubleValue(), 75);
        EXPECT_NEAR(filled(), 150, 6);
    }
    TEST_F(ProgressTest, WhatIsDrawnStaysBetweenTheEnds)
    {
        bar->setIndeterminate(false);
        bar->setDoubleValue(-50);
        EXPECT_NEAR(filled(), 0, 4);
        bar->setDoubleValue(NAN);
        EXPECT_EQ(bar->doubleValue(), -50);
        bar->setMinValue(100);
        bar->setDoubleValue(500);
        screen.process();
    }
    TEST_F(ProgressTest, ItMovesOnlyWhileItIsStarted)
    {
        screen.process();
        const std::uint64_t still = screen.display().counters().presents;
        screen.advance(1);
        EXPECT_EQ(screen.display().counters().presents, still);
        bar->startAnimation(nullptr);
        screen.advance(1);
        const std::uint64_t moved = screen.display().counters().presents;
        EXPECT_GT(moved, still);
        bar->stopAnimation(nullptr);
        screen.process();
        const std::uint64_t stopped = screen.display().counters().presents;
        screen.advance(1);
        EXPECT_EQ(screen.display().counters().presents, stopped);
    }
    TEST_F(ProgressTest, ItDoesNotMoveOutsideAWindow)
    {
        bar->startAnimation(nullptr);
        bar->removeFromSuperview();
        screen.process();
        const std::uint64_t still = screen.display().counters().presents;
        screen.advance(1);
        EXPECT_EQ(screen.display().counters().presents, still);
        screen.window().contentView()->addSubview(bar.get());
        screen.advance(1);
        EXPECT_GT(screen.display().counters().presents, still);
    }
    TEST_F(ProgressTest, OneThatHasAValueDoesNotMove)
    {
        bar->setIndeterminate(false);
        bar->startAnimation(nullptr);
        screen.process();
        const std::uint64_t still = screen.display().counters().presents;
        screen.advance(1);
        EXPECT_EQ(screen.display().counters().presents, still);
    }
    TEST_F(ProgressTest, OneThatMovesCanGo)
    {
        bar->startAnimation(nullptr);
        bar->removeFromSuperview();
        const WeakRef<NSProgressIndicator> weak(bar.get());
        bar = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
        screen.advance(1);
    }
    TEST_F(ProgressTest, ASpinnerIsNotSeenWhileItRests)
    {
        bar->setStyle(NSProgressIndicatorSpinningStyle);
        EXPECT_FALSE(bar->isDisplayedWhenStopped());
        const auto plain = [&] {
            const display::Snapshot picture = screen.pixels();
            const std::uint32_t ground = picture.at(10, 10);
            for (int y = 90; y < 110; ++y)
                for (int x = 50; x < 250; ++x)
                    if (picture.at(x, y) != ground)
                        return false;
            return true;
        };
        EXPECT_TRUE(plain());
        bar->startAnimation(nullptr);
        EXPECT_FALSE(plain());
        bar->stopAnimation(nullptr);
        EXPECT_TRUE(plain());
        bar->setDisplayedWhenStopped(true);
        EXPECT_FALSE(plain());
    }
    TEST_F(ProgressTest, ItHasASizeOfItsOwn)
    {
        bar->sizeToFit();
        EXPECT_EQ(bar->frame().size, (NSSize { 200, 10 }));
        bar->setStyle(NSProgressIndicatorSpinningStyle);
        bar->sizeToFit();
        EXPECT_EQ(bar->frame().size, (NSSize { 32, 32 }));
        bar->setControlSize(NSControlSizeSmall);
        bar->sizeToFit();
        EXPECT_EQ(bar->frame().size, (NSSize { 16, 16 }));
    }
    TEST_F(ProgressTest, ExtremeFramesDrawNothingWrong)
    {
        bar->startAnimation(nullptr);
        for (const auto style : { NSProgressIndicatorBarStyle, NSProgressIndicatorSpinningStyle }) {
            bar->setStyle(style);
            for (const CGFloat size : { 0.0, 1.0, -20.0, 1e9 }) {
                bar->setFrame(NSMakeRect(0, 0, size, size));
                screen.process();
            }
        }
    }
    TEST_F(ProgressTest, AnArchiveKeepsIt)
    {
        bar->setIndeterminate(false);
        bar->setMaxValue(7);
        bar->setDoubleValue(3);
        bar->setStyle(NSProgressIndicatorSpinningStyle);
        const Ref<NSProgressIndicator> back = test::archived(bar);
        EXPECT_FALSE(back->isIndeterminate());
        EXPECT_EQ(back->maxValue(), 7);
        EXPECT_EQ(back->doubleValue(), 3);
        EXPECT_EQ(back->style(), NSProgressIndicatorSpinningStyle);
        EXPECT_FALSE(back->isDisplayedWhenStopped());
    }

}
}
