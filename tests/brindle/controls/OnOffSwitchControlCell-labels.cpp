// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSControl.h"
#include "appkit/NSStringDrawing.h"
#include "controls/OnOffSwitchControlCell.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"
#include "support/Focused.h"
#include "support/Strings.h"

namespace brindle {

/// Writes down its labels instead of drawing them.
class LabelLogCell : public OnOffSwitchControlCell {
    BRINDLE_OBJECT(LabelLogCell, OnOffSwitchControlCell)

public:
    std::vector<std::string> texts_;
    std::vector<NSRect> frames_;
};
template <> struct LabelLogCell::Methods<struct Labels> {
    static void drawText(LabelLogCell& self, NSString* text, NSRect frame)
    {
        self.texts_.push_back(utf8(text));
        self.frames_.push_back(frame);
    }
    static void table(Builder& t) { t.methods({ { "drawText:withFrame:", imp<drawText> } }); }
};
BRINDLE_RECORD(LabelLogCell, Labels)

namespace {

    constexpr NSRect kLabelledFrame { { 0, 3 }, { 60, 20 } };
    const double kThumbWidth = 58 * static_cast<double>(0.38F);
    const double kRoom = 60 - kThumbWidth;

    void tint(OnOffSwitchControlCell& cell)
    {
        const test::Focused picture(60, 26);
        cell.tintBackgroundWithFrame_inView(kLabelledFrame, make<NSView>().get());
    }

    TEST(OnOffSwitchLabels, StandOnBothSidesOfTheThumb)
    {
        const auto cell = make<LabelLogCell>();
        cell->setState(NSOnState);
        tint(*cell);
        ASSERT_EQ(cell->texts_, (std::vector<std::string> { "ON", "OFF" }));
        const double thumb = 1 + 58 - kThumbWidth;
        EXPECT_EQ(cell->frames_[0], NSMakeRect(thumb - kRoom + 2, 3, kRoom - 2, 20));
        EXPECT_EQ(cell->frames_[1], NSMakeRect(thumb + kThumbWidth + 1, 3, kRoom - 2, 20));
    }

    TEST(OnOffSwitchLabels, FollowTheThumbInADrag)
    {
        const auto control = make<NSControl>();
        const auto cell = make<LabelLogCell>();
        cell->startTrackingAt_inView({ 10, 10 }, control.get());
        cell->continueTracking_at_inView({ 10, 10 }, { 15, 10 }, control.get());
        tint(*cell);
        const double center = 6 + kThumbWidth * 0.5;
        ASSERT_EQ(cell->frames_.size(), 2u);
        EXPECT_EQ(cell->frames_[0].origin.x, center - kThumbWidth * 0.5 - kRoom + 2);
        EXPECT_EQ(cell->frames_[1].origin.x, center + kThumbWidth * 0.5 + 1);
    }

    TEST(OnOffSwitchLabels, AreThoseOfTheCell)
    {
        const auto cell = make<LabelLogCell>();
        cell->setOnSwitchLabel("JA"_ns);
        cell->setOffSwitchLabel("NEIN"_ns);
        tint(*cell);
        EXPECT_EQ(cell->texts_, (std::vector<std::string> { "JA", "NEIN" }));
    }

    TEST(OnOffSwitchLabels, AreLeftOutOnRequest)
    {
        const auto cell = make<LabelLogCell>();
        cell->setShowsOnOffLabels(false);
        tint(*cell);
        EXPECT_TRUE(cell->texts_.empty());
    }

    TEST(OnOffSwitchLabels, AreNotDrawnByTheCellItself)
    {
        const auto cell = make<LabelLogCell>();
        const test::Focused picture(60, 26);
        cell->drawWithFrame_inView(kLabelledFrame, make<NSView>().get());
        EXPECT_TRUE(cell->texts_.empty());
    }

    TEST(OnOffSwitchLabels, AreBoldWhiteTextInTheMiddle)
    {
        constexpr NSRect kArea { { 10.3, 5.6 }, { 70, 30 } };
        const auto cell = make<OnOffSwitchControlCell>();
        const test::Focused actual(100, 50);
        cell->drawText_withFrame("ON"_ns, kArea);

        const test::Focused expected(100, 50);
        const auto font = NSFont::cls().boldSystemFontOfSize(
            NSFont::cls().systemFontSizeForControlSize(cell->controlSize()));
        const auto attributes = makeDictionary({ { NSFontAttributeName, font.get() },
            { NSForegroundColorAttributeName, NSColor::cls().whiteColor().get() } });
        const NSSize size = sizeWithAttributes("ON"_ns, attributes.get());
        drawInRect_withAttributes("ON"_ns,
            { { 10.3 + (70 - size.width) * 0.5, 5.6 + (30 - size.height) * 0.5 }, size },
            attributes.get());
        EXPECT_TRUE(test::areAlike(
            actual.image().get(), expected.image().get(), 0, "switch-label-in-the-middle"));
        EXPECT_GT(
            test::compare(actual.image().get(), test::Picture(100, 50).image().get()).pixels, 20u);
    }

}
}
