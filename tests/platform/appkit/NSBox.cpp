// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBox.h"

#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "support/Archives.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    struct BoxTest : testing::Test {
        HeadlessScreen screen { 300, 200 };
        Ref<NSBox> box = screen.add<NSBox>(NSMakeRect(50, 50, 100, 80));
    };

    TEST_F(BoxTest, ANewBoxIsTitledAndHasMargins)
    {
        EXPECT_EQ(box->boxType(), NSBoxPrimary);
        EXPECT_EQ(utf8Of(box->title().get()), "Box");
        EXPECT_EQ(box->titlePosition(), NSAtTop);
        EXPECT_EQ(box->contentViewMargins(), (NSSize { 5, 5 }));
        EXPECT_NE(box->contentView(), nullptr);
        EXPECT_EQ(box->contentView()->superview(), box);
    }
    TEST_F(BoxTest, WithoutTitleTheContentFillsTheBox)
    {
        box->setTitlePosition(NSNoTitle);
        EXPECT_EQ(box->contentView()->frame(), NSMakeRect(6, 6, 88, 68));
        EXPECT_EQ(box->titleRect(), NSRect {});
        EXPECT_EQ(box->borderRect(), NSMakeRect(0, 0, 100, 80));
    }
    TEST_F(BoxTest, ATitleTakesRoomAtItsEnd)
    {
        const CGFloat whole = box->contentView()->frame().size.height;
        EXPECT_LT(whole, 68);
        EXPECT_GE(NSMinY(box->titleRect()), NSMaxY(box->borderRect()));
        box->setTitlePosition(NSAtBottom);
        EXPECT_EQ(box->contentView()->frame().size.height, whole);
        EXPECT_LE(NSMaxY(box->titleRect()), NSMinY(box->borderRect()));
        box->setTitlePosition(NSBelowTop);
        EXPECT_LE(NSMaxY(box->titleRect()), NSMaxY(box->borderRect()));
        EXPECT_LE(NSMaxY(box->contentView()->frame()), NSMinY(box->titleRect()));
    }
    TEST_F(BoxTest, AnEmptyTitleTakesNoRoom)
    {
        box->setTitle(nullptr);
        EXPECT_EQ(utf8Of(box->title().get()), "");
        EXPECT_EQ(box->contentView()->frame().size.height, 68);
    }
    TEST_F(BoxTest, ATitleOnALineStandsAcrossIt)
    {
        box->setBoxType(NSBoxOldStyle);
        const NSRect title = box->titleRect();
        EXPECT_GT(NSMaxY(title), NSMaxY(box->borderRect()));
        EXPECT_LT(NSMinY(title), NSMaxY(box->borderRect()));
    }
    TEST_F(BoxTest, MarginsAreKept)
    {
        box->setTitlePosition(NSNoTitle);
        box->setContentViewMargins({ 10, 20 });
        EXPECT_EQ(box->contentView()->frame(), NSMakeRect(11, 21, 78, 38));
        box->setContentViewMargins({ -1, NAN });
        EXPECT_EQ(box->contentView()->frame(), NSMakeRect(1, 1, 98, 78));
    }
    TEST_F(BoxTest, ContentFollowsTheBox)
    {
        box->setTitlePosition(NSNoTitle);
        box->setFrameSize({ 200, 180 });
        EXPECT_EQ(box->contentView()->frame(), NSMakeRect(6, 6, 188, 168));
        box->setFrameSize({ 3, 3 });
        EXPECT_GE(box->contentView()->frame().size.width, 0);
    }
    TEST_F(BoxTest, WhatIsAddedGoesIntoTheContent)
    {
        const Ref<NSView> view = make<NSView>();
        box->addSubview(view.get());
        EXPECT_EQ(view->superview(), box->contentView());
    }
    TEST_F(BoxTest, AnotherContentViewTakesThePlace)
    {
        const Ref<NSView> old = box->contentView();
        const Ref<NSView> fresh = make<NSView>();
        box->setContentView(fresh.get());
        EXPECT_EQ(box->contentView(), fresh);
        EXPECT_EQ(old->superview(), nullptr);
        EXPECT_EQ(fresh->superview(), box);
        box->setContentView(nullptr);
        EXPECT_NE(box->contentView(), fresh);
        EXPECT_NE(box->contentView(), nullptr);
    }
    TEST_F(BoxTest, AContentViewThatLeavesIsForgotten)
    {
        box->contentView()->removeFromSuperview();
        EXPECT_EQ(box->contentView(), nullptr);
        box->setFrameSize({ 10, 10 });
        screen.process();
    }
    TEST_F(BoxTest, ItFitsItsContent)
    {
        box->setTitlePosition(NSNoTitle);
        box->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(20, 30, 40, 10)).get());
        box->sizeToFit();
        EXPECT_EQ(box->frame(), NSMakeRect(50, 50, 52, 22));
    }
    TEST_F(BoxTest, ItTakesAFrameAroundItsContent)
    {
        const NSRect content = NSMakeRect(70, 70, 40, 30);
        box->setFrameFromContentFrame(content);
        const NSRect inside = box->contentView()->frame();
        EXPECT_EQ(NSOffsetRect(inside, NSMinX(box->frame()), NSMinY(box->frame())), content);
    }
    TEST_F(BoxTest, ASeparatorIsALineInTheMiddle)
    {
        box->setTitlePosition(NSNoTitle);
        box->setBoxType(NSBoxSeparator);
        box->setBorderColor(NSColor::cls().redColor().get());
        box->setFrame(NSMakeRect(50, 100, 100, 5));
        const display::Snapshot picture = screen.pixels();
        EXPECT_EQ(picture.at(100, 200 - 103), 0xFFFF0000);
        EXPECT_NE(picture.at(100, 200 - 101), 0xFFFF0000);
        EXPECT_TRUE(box->contentView()->isHidden());
    }
    TEST_F(BoxTest, ACustomBoxHasItsColours)
    {
        box->setTitlePosition(NSNoTitle);
        box->setBoxType(NSBoxCustom);
        box->setFillColor(NSColor::cls().greenColor().get());
        box->setBorderColor(NSColor::cls().blueColor().get());
        box->setBorderWidth(3);
        EXPECT_EQ(screen.pixels().at(100, 200 - 90), 0xFF00FF00);
        EXPECT_EQ(screen.pixels().at(51, 200 - 90), 0xFF0000FF);
        box->setTransparent(true);
        EXPECT_NE(screen.pixels().at(100, 200 - 90), 0xFF00FF00);
    }
    TEST_F(BoxTest, OddMeasuresCountAsNothing)
    {
        box->setBoxType(NSBoxCustom);
        for (const CGFloat odd :
            { -1.0, static_cast<CGFloat>(NAN), static_cast<CGFloat>(INFINITY) }) {
            box->setBorderWidth(odd);
            box->setCornerRadius(odd);
            EXPECT_EQ(box->borderWidth(), 0);
            EXPECT_EQ(box->cornerRadius(), 0);
        }
        box->setBoxType(static_cast<NSBoxType>(77));
        box->setTitlePosition(static_cast<NSTitlePosition>(77));
        EXPECT_EQ(box->boxType(), NSBoxCustom);
        EXPECT_EQ(box->titlePosition(), NSAtTop);
        for (const CGFloat size : { 0.0, 1.0, -10.0, 1e9 }) {
            box->setFrameSize({ size, size });
            screen.process();
        }
    }
    TEST_F(BoxTest, AnArchiveKeepsItWithItsContent)
    {
        box->setTitle("Sound"_ns);
        box->setBoxType(NSBoxCustom);
        box->setBorderWidth(2);
        box->setCornerRadius(4);
        box->setFillColor(NSColor::cls().greenColor().get());
        box->setTitlePosition(NSBelowTop);
        box->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(1, 2, 3, 4)).get());
        const Ref<NSBox> back = test::archived(box);
        EXPECT_EQ(utf8Of(back->title().get()), "Sound");
        EXPECT_EQ(back->boxType(), NSBoxCustom);
        EXPECT_EQ(back->borderWidth(), 2);
        EXPECT_EQ(back->cornerRadius(), 4);
        EXPECT_EQ(back->titlePosition(), NSBelowTop);
        EXPECT_TRUE(back->fillColor()->isEqual(NSColor::cls().greenColor().get()));
        ASSERT_EQ(back->subviews()->count(), 1U);
        EXPECT_EQ(back->contentView()->subviews()->count(), 1U);
        EXPECT_EQ(back->contentView()->frame(), box->contentView()->frame());
    }

}
}
