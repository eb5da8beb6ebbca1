// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSegmentedControl.h"

#include <gtest/gtest.h>

#include "appkit/NSImage.h"
#include "appkit/NSText.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Counts who asks for its size.
class AskedImage : public NSImage {
    BRINDLE_OBJECT(AskedImage, NSImage)

public:
    int asked_ = 0;
};
template <> struct AskedImage::Methods<struct Counting> {
    static NSSize size(AskedImage& self)
    {
        ++self.asked_;
        return { 4, 4 };
    }
    static void table(Builder& t) { t.methods({ { "size", imp<size> } }); }
};
BRINDLE_RECORD(AskedImage, Counting)

namespace {

    /// Three segments of 60 points in a control of 184 by 26.
    struct SegmentedControl : testing::Test {
        HeadlessScreen screen { 300, 100 };
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSSegmentedControl> bar = screen.add<NSSegmentedControl>(NSMakeRect(10, 10, 184, 26));

        void SetUp() override
        {
            bar->setSegmentCount(3);
            for (NSInteger i = 0; i < 3; ++i)
                bar->setWidth_forSegment(60, i);
            bar->setTarget(log.get());
            bar->setAction(selector<"act:">);
            screen.window().makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        static NSPoint on(int segment) { return { 12 + 60.0 * segment + 30, 23 }; }
        void click(int segment) { screen.pointer().click(on(segment)); }
        std::string chosen() const
        {
            std::string text;
            for (NSInteger i = 0; i < bar->segmentCount(); ++i)
                text += bar->isSelectedForSegment(i) ? '1' : '0';
            return text;
        }
    };

}

TEST_F(SegmentedControl, NoneIsChosenAtFirst)
{
    EXPECT_EQ(bar->selectedSegment(), -1);
    EXPECT_EQ(chosen(), "000");
    EXPECT_EQ(utf8Of(bar->labelForSegment(0)), "");
}
TEST_F(SegmentedControl, AClickChoosesOneAloneAndSendsTheAction)
{
    click(0);
    click(2);
    EXPECT_EQ(chosen(), "001");
    EXPECT_EQ(bar->selectedSegment(), 2);
    EXPECT_EQ(log->count_, 2);
}
TEST_F(SegmentedControl, WhereAnyMayBeChosenAClickTurnsOnAndOff)
{
    bar->setTrackingMode(NSSegmentSwitchTrackingSelectAny);
    click(0);
    click(2);
    EXPECT_EQ(chosen(), "101");
    click(0);
    EXPECT_EQ(chosen(), "001");
}
TEST_F(SegmentedControl, AMomentaryOneOnlySaysWhichWasPressed)
{
    bar->setTrackingMode(NSSegmentSwitchTrackingMomentary);
    click(1);
    EXPECT_EQ(chosen(), "000");
    EXPECT_EQ(bar->selectedSegment(), 1);
    EXPECT_EQ(log->count_, 1);
}
TEST_F(SegmentedControl, AReleaseElsewhereDoesNothing)
{
    screen.pointer().press(on(0));
    screen.pointer().dragTo(on(1));
    screen.pointer().release();
    EXPECT_EQ(chosen(), "000");
    EXPECT_EQ(log->count_, 0);
}
TEST_F(SegmentedControl, OneThatIsNotEnabledIsNotPressed)
{
    bar->setEnabled_forSegment(false, 1);
    click(1);
    EXPECT_EQ(chosen(), "000");
    EXPECT_EQ(log->count_, 0);
}
TEST_F(SegmentedControl, ArrowsChooseTheNextThatIsEnabled)
{
    bar->setEnabled_forSegment(false, 1);
    bar->setSelectedSegment(0);
    screen.window().makeFirstResponder(bar.get());
    screen.keyboard().press(NSRightArrowFunctionKey);
    EXPECT_EQ(chosen(), "001");
    screen.keyboard().press(NSRightArrowFunctionKey);
    EXPECT_EQ(chosen(), "001");
    screen.keyboard().press(NSLeftArrowFunctionKey);
    EXPECT_EQ(chosen(), "100");
    EXPECT_EQ(log->count_, 2);
}
TEST_F(SegmentedControl, SpacePressesTheOneWithTheKeyboard)
{
    bar->setTrackingMode(NSSegmentSwitchTrackingSelectAny);
    screen.window().makeFirstResponder(bar.get());
    screen.keyboard().press(NSRightArrowFunctionKey);
    screen.keyboard().press(u' ');
    EXPECT_EQ(chosen(), "010");
}
TEST_F(SegmentedControl, TheDisabledControlTakesNoClicks)
{
    bar->setEnabled(false);
    click(1);
    EXPECT_EQ(chosen(), "000");
}
TEST_F(SegmentedControl, ATagChoosesItsSegment)
{
    bar->setTag_forSegment(42, 1);
    EXPECT_TRUE(bar->selectSegmentWithTag(42));
    EXPECT_EQ(chosen(), "010");
    EXPECT_FALSE(bar->selectSegmentWithTag(43));
}
TEST_F(SegmentedControl, ThoseOutsideRaise)
{
    EXPECT_THROW(bar->setSelectedSegment(3), Exception);
    EXPECT_THROW(bar->labelForSegment(-1), Exception);
    bar->setSelectedSegment(-1);
    EXPECT_EQ(bar->selectedSegment(), -1);
}
TEST_F(SegmentedControl, FewerForgetWhatWasChosenBeyond)
{
    bar->setSelectedSegment(2);
    bar->setSegmentCount(2);
    EXPECT_EQ(bar->selectedSegment(), -1);
    bar->setSegmentCount(-5);
    EXPECT_EQ(bar->segmentCount(), 0);
    screen.process();
}
TEST_F(SegmentedControl, TheChosenOneLooksOtherwise)
{
    const std::uint32_t before = screen.pixels().at(20, 77);
    bar->setSelectedSegment(0);
    EXPECT_NE(screen.pixels().at(20, 77), before);
}
TEST_F(SegmentedControl, AnArchiveKeepsThem)
{
    bar->setLabel_forSegment("Left"_ns, 0);
    bar->setSelectedSegment(1);
    bar->setEnabled_forSegment(false, 2);
    bar->setTag_forSegment(7, 2);
    const Ref<NSSegmentedControl> back = test::archived(bar);
    EXPECT_EQ(back->segmentCount(), 3);
    EXPECT_EQ(utf8Of(back->labelForSegment(0)), "Left");
    EXPECT_EQ(back->selectedSegment(), 1);
    EXPECT_TRUE(back->isSelectedForSegment(1));
    EXPECT_FALSE(back->isEnabledForSegment(2));
    EXPECT_EQ(back->tagForSegment(2), 7);
    EXPECT_EQ(back->widthForSegment(0), 60);
}
TEST_F(SegmentedControl, TipsGoWithTheirSegments)
{
    const auto hasTip = [this](int x) {
        screen.pointer().moveTo({ 290, 90 });
        screen.process();
        screen.pointer().moveTo({ 10.0 + x, 23 });
        screen.advance(1);
        return screen.display().stackingOrder().size() == 2;
    };
    bar->setToolTip_forSegment("The first"_ns, 0);
    EXPECT_TRUE(hasTip(50));
    bar->setWidth_forSegment(20, 0);
    EXPECT_FALSE(hasTip(50));
    EXPECT_TRUE(hasTip(15));
    const Ref<NSSegmentedControl> back = test::archived(bar);
    bar->removeFromSuperview();
    EXPECT_FALSE(hasTip(15));
    screen.window().contentView()->addSubview(back.get());
    EXPECT_TRUE(hasTip(15));
}
TEST_F(SegmentedControl, ReadyMadeOnesAreAsWideAsTheirLabels)
{
    const Ref<NSSegmentedControl> made
        = NSSegmentedControl::cls().segmentedControlWithLabels_trackingMode_target_action(
            makeArray({ Ref<NSObject>("One"_ns), Ref<NSObject>("A longer one"_ns) }).get(),
            NSSegmentSwitchTrackingSelectAny, nullptr, SEL {});
    EXPECT_EQ(made->segmentCount(), 2);
    EXPECT_EQ(made->trackingMode(), NSSegmentSwitchTrackingSelectAny);
    EXPECT_GT(made->frame().size.width, 60);
    EXPECT_GT(made->frame().size.height, 20);
}

// Measuring asks for the picture's size once a segment, and drawing a few times more.
TEST_F(SegmentedControl, MeasuresEachOfManySegmentsAFewTimes)
{
    const auto image = make<AskedImage>();
    bar->setSegmentCount(64);
    for (NSInteger i = 0; i < 64; ++i) {
        bar->setWidth_forSegment(0, i);
        bar->setImage_forSegment(image.get(), i);
    }
    screen.process();
    image->asked_ = 0;
    bar->setNeedsDisplay(true);
    screen.process();
    EXPECT_GE(image->asked_, 64);
    EXPECT_LE(image->asked_, 64 * 8);
}

}
