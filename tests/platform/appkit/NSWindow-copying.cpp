// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/HeadlessScreen.h"
#include "support/ScrolledDocument.h"

namespace brindle {

namespace {

    // What scrolling moves and what it draws must be one picture with what is drawn anew as a whole.
    struct CopyingTest : testing::Test {
        HeadlessScreen screen { 200, 240 };
        test::Scrolled s { NSMakeRect(20, 20, 100, 200), { 300, 1000 } };

        void SetUp() override
        {
            screen.window().contentView()->addSubview(s.view.get());
            screen.process();
            s.document->drawings_ = 0;
            s.document->drawn_ = {};
        }
        void scrollTo(NSPoint point)
        {
            s.view->contentView()->scrollToPoint(point);
            screen.process();
        }
        void expectWhatIsDrawnAnew()
        {
            const auto moved = screen.pixels().words;
            screen.window().display();
            const auto anew = screen.pixels().words;
            std::size_t apart = 0;
            for (std::size_t i = 0; i < anew.size(); ++i) {
                if (moved[i] != anew[i] && apart++ < 5)
                    ADD_FAILURE() << i % 200 << ", " << i / 200 << std::hex << ": " << moved[i]
                                  << " instead of " << anew[i];
            }
            EXPECT_EQ(apart, 0u);
        }
    };

    TEST_F(CopyingTest, DownwardsOnlyWhatComesIntoViewIsDrawn)
    {
        scrollTo({ 0, 30 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 200, 100, 30));
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, UpwardsOnlyWhatComesIntoViewIsDrawn)
    {
        scrollTo({ 0, 300 });
        scrollTo({ 0, 290 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 290, 100, 10));
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, SidewaysOnlyWhatComesIntoViewIsDrawn)
    {
        scrollTo({ 30, 0 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(100, 0, 30, 200));
        expectWhatIsDrawnAnew();
        scrollTo({ 10, 0 });
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, AskewBothEdgesAreDrawn)
    {
        scrollTo({ 20, 40 });
        expectWhatIsDrawnAnew();
        scrollTo({ 5, 10 });
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, SeveralStepsBeforeADrawing)
    {
        s.view->contentView()->scrollToPoint({ 0, 15 });
        s.view->contentView()->scrollToPoint({ 10, 45 });
        s.view->contentView()->scrollToPoint({ 0, 20 });
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, APageThatLeavesNothingIsDrawnWhole)
    {
        scrollTo({ 0, 400 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 400, 100, 200));
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, MarksMoveWithTheContent)
    {
        s.document->setNeedsDisplayInRect(NSMakeRect(0, 100, 100, 5));
        s.document->upright_ = false;
        scrollTo({ 0, 30 });
        EXPECT_LE(NSMinY(s.document->drawn_), 100);
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, PartsOfAPixelAreDrawnWhole)
    {
        scrollTo({ 0, 30.5 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 30.5, 100, 200));
    }

    TEST_F(CopyingTest, ContentThatAsksNotToBeMovedIsDrawnWhole)
    {
        s.view->contentView()->setCopiesOnScroll(false);
        scrollTo({ 0, 30 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 30, 100, 200));
    }

    TEST_F(CopyingTest, AGroundThatShowsThroughIsDrawnWhole)
    {
        s.view->setDrawsBackground(false);
        s.document->setFrameSize({ 60, 1000 });
        screen.process();
        scrollTo({ 0, 30 });
        EXPECT_EQ(s.document->drawn_.size.height, 200);
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, FadedContentIsDrawnWhole)
    {
        s.view->setAlphaValue(0.5);
        screen.process();
        scrollTo({ 0, 30 });
        EXPECT_EQ(s.document->drawn_.size.height, 200);
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, WhatLiesAboveStaysInPlace)
    {
        const auto above = cast<ScrolledDocument>(
            alloc<ScrolledDocument>()->initWithFrame(NSMakeRect(60, 100, 30, 30)));
        screen.window().contentView()->addSubview(above.get());
        s.view->setHasVerticalScroller(true);
        s.view->setHasHorizontalScroller(true);
        screen.process();
        scrollTo({ 0, 30 });
        expectWhatIsDrawnAnew();
        scrollTo({ 40, 10 });
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, AContentPartlyOutsideOfTheWindow)
    {
        s.view->setFrame(NSMakeRect(-30, -50, 100, 200));
        screen.process();
        scrollTo({ 0, 30 });
        expectWhatIsDrawnAnew();
        scrollTo({ 25, 0 });
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, AnUprightDocument)
    {
        s.document->upright_ = true;
        screen.window().display();
        scrollTo({ 0, 30 });
        EXPECT_EQ(s.document->drawn_, NSMakeRect(0, 200, 100, 30));
        expectWhatIsDrawnAnew();
    }

    TEST_F(CopyingTest, AScreenWithTwoPixelsAPoint)
    {
        HeadlessScreen fine(200, 240, 2);
        test::Scrolled other(NSMakeRect(20, 20, 100, 200));
        fine.window().contentView()->addSubview(other.view.get());
        fine.process();
        other.view->contentView()->scrollToPoint({ 0, 30.5 });
        fine.process();
        EXPECT_EQ(other.document->drawn_, NSMakeRect(0, 200, 100, 30.5));
        const auto moved = fine.pixels().words;
        fine.window().display();
        EXPECT_EQ(moved, fine.pixels().words);
    }

}

}
