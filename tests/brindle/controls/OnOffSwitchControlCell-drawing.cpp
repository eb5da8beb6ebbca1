// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSView.h"
#include "controls/OnOffSwitchControl.h"
#include "controls/OnOffSwitchControlCell.h"
#include "support/Focused.h"
#include "support/HeadlessScreen.h"
#include "support/Pixels.h"
#include "support/Variables.h"

namespace brindle {

namespace {

    constexpr NSRect kFrame { { 0, 0 }, { 60, 20 } };

    /// Draws in a white picture of 60 by 20 points, as an unflipped view would.
    template <class Draw> test::Picture pictureOf(Draw draw)
    {
        const test::Picture picture(60, 20);
        picture.fillWhite();
        const GraphicsStateGuard saved;
        NSGraphicsContext::cls().setCurrentContext(
            NSGraphicsContext::cls().graphicsContextWithCGContext_flipped(picture, false).get());
        draw();
        return picture;
    }
    test::Picture switchPicture(NSCellStateValue state, bool enabled = true)
    {
        return pictureOf([=] {
            const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
            cell->setAllowsMixedState(true);
            cell->setState(state);
            cell->setEnabled(enabled);
            cell->drawWithFrame_inView(kFrame, make<NSView>().get());
        });
    }
    bool isThumb(const test::Rgba& pixel) { return pixel.red > 222; }

}

TEST(OnOffSwitchDrawing, TheThumbStandsWhereTheStateSays)
{
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_TRUE(isThumb(off.at(10, 10)));
    EXPECT_FALSE(isThumb(off.at(30, 10)));
    EXPECT_FALSE(isThumb(off.at(50, 10)));
    const test::Picture on = switchPicture(NSOnState);
    EXPECT_FALSE(isThumb(on.at(10, 10)));
    EXPECT_TRUE(isThumb(on.at(50, 10)));
    const test::Picture mixed = switchPicture(NSMixedState);
    EXPECT_FALSE(isThumb(mixed.at(10, 10)));
    EXPECT_TRUE(isThumb(mixed.at(30, 10)));
}

TEST(OnOffSwitchDrawing, TheTrackGetsLighterDownward)
{
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_LT(off.at(40, 8).red, off.at(40, 18).red + 1);
    EXPECT_LT(off.at(40, 2).red, off.at(40, 8).red) << "the inner shadow lies along the top";
}

TEST(OnOffSwitchDrawing, TheThumbGetsDarkerDownward)
{
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_GT(off.at(10, 3).red, off.at(10, 17).red);
}

TEST(OnOffSwitchDrawing, ADisabledSwitchIsWashedOut)
{
    EXPECT_GT(switchPicture(NSOffState, false).at(40, 10).red,
        switchPicture(NSOffState).at(40, 10).red + 40);
}

TEST(OnOffSwitchDrawing, TheTrackGoesFromOneGreyToTheOther)
{
    const test::Picture off = switchPicture(NSOffState);
    const auto grey = [](double y) { // of the track's 18 points from the top
        const double from = static_cast<double>(0.62F);
        const int level = static_cast<int>(255 * (from + (2.0 / 3 - from) * (y - 1) / 18));
        return test::Rgba { level, level, level, 255 };
    };
    for (const int y : { 6, 10, 14, 17 })
        EXPECT_PRED_FORMAT3(test::isNear, off.at(45, y), grey(y + 0.5), 2) << y;
}

TEST(OnOffSwitchDrawing, AShadowOfFourPointsLiesAlongTheTop)
{
    const test::Picture off = switchPicture(NSOffState);
    const double track = 255 * static_cast<double>(0.62F);
    // Black of 0.38 at the very top, none four points below.
    for (const int y : { 2, 3 }) {
        const double dark = static_cast<double>(0.38F) * (1 - (y + 0.5) / 4);
        EXPECT_NEAR(off.at(45, y).red, track * (1 - dark), 4) << y;
    }
    EXPECT_NEAR(off.at(45, 5).red, track, 4);
}

TEST(OnOffSwitchDrawing, TheThumbGoesFromWhiteToALightGrey)
{
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_NEAR(off.at(10, 2).red, 255, 3);
    EXPECT_NEAR(off.at(10, 10).red, 255 * 0.95, 3);
    EXPECT_NEAR(off.at(10, 17).red, 255 * 0.91, 3);
}

TEST(OnOffSwitchDrawing, TheThumbCastsAShadowOnTheTrack)
{
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_LT(off.at(24, 10).red, off.at(45, 10).red - 10);
    EXPECT_LT(off.at(24, 10).red, off.at(25, 10).red);
    EXPECT_NEAR(off.at(28, 10).red, off.at(45, 10).red, 1) << "three points reach no further";
}

TEST(OnOffSwitchDrawing, TheOutlineIsDark)
{
    // A line of one point lies half on each side of the track's edge.
    const test::Picture off = switchPicture(NSOffState);
    EXPECT_NEAR(off.at(45, 19).red, (255 + 255 * 0.125) / 2, 10);
}

TEST(OnOffSwitchDrawing, DisabledEveryColourIsTwoThirdsOfTheWayToWhite)
{
    const test::Picture on = switchPicture(NSOffState);
    const test::Picture off = switchPicture(NSOffState, false);
    for (const int x : { 10, 30, 45 }) {
        const int before = on.at(x, 10).red;
        EXPECT_NEAR(off.at(x, 10).red, before + (255 - before) * 2.0 / 3, 2) << x;
    }
}

TEST(OnOffSwitchDrawing, TheWashCoversTheWholeFrame)
{
    const test::Focused picture(62, 22);
    const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
    cell->setEnabled(false);
    cell->drawWithFrame_inView(NSMakeRect(1, 1, 60, 20), make<NSView>().get());
    EXPECT_PRED_FORMAT3(test::isNear, picture.at(1, 1), (test::Rgba { 170, 170, 170, 170 }), 4);
    EXPECT_EQ(picture.at(0, 0).alpha, 0);
}

TEST(OnOffSwitchDrawing, AFocusedThumbHasARingUnlessThereShallBeNone)
{
    const auto picture = [](bool focused, NSFocusRingType type) {
        return pictureOf([=] {
            const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
            cell->setAllowsMixedState(true);
            cell->setState(NSMixedState);
            cell->setShowsFirstResponder(focused);
            cell->setFocusRingType(type);
            cell->drawWithFrame_inView(kFrame, make<NSView>().get());
        });
    };
    const test::Picture plain = picture(false, NSFocusRingTypeExterior);
    const test::Picture focused = picture(true, NSFocusRingTypeExterior);
    EXPECT_GT(test::distance(plain.at(16, 10), focused.at(16, 10)), 20) << "beside the thumb";
    EXPECT_EQ(plain.at(30, 10), focused.at(30, 10)) << "the ring lies below the thumb";
    EXPECT_EQ(plain.at(16, 10), picture(true, NSFocusRingTypeNone).at(16, 10));
}

TEST(OnOffSwitchDrawing, ATintColoursBothSidesOfTheThumb)
{
    const test::Picture picture = pictureOf([] {
        const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        cell->setAllowsMixedState(true);
        cell->setState(NSMixedState);
        cell->setShowsOnOffLabels(false);
        cell->setOnOffSwitchControlColors(OnOffSwitchControlGreenRedColors);
        cell->tintBackgroundWithFrame_inView(kFrame, make<NSView>().get());
    });
    EXPECT_GT(picture.at(10, 10).green, picture.at(10, 10).red + 50);
    EXPECT_GT(picture.at(50, 10).red, picture.at(50, 10).green + 50);
}

TEST(OnOffSwitchDrawing, ATintIsDividedAtTheThumbWhereverTheFrameIs)
{
    const test::Focused picture(100, 20);
    picture.fillWhite();
    const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
    cell->setShowsOnOffLabels(false);
    cell->setOnOffSwitchControlColors(OnOffSwitchControlGreenRedColors);
    cell->tintBackgroundWithFrame_inView(NSMakeRect(30, 0, 60, 20), make<NSView>().get());
    EXPECT_GT(picture.at(36, 10).green, picture.at(36, 10).red + 50); // up to 42
    EXPECT_GT(picture.at(48, 10).red, picture.at(48, 10).green + 50);
}

/// A scheme and what it makes of white on both sides of the thumb.
struct Tint {
    int scheme;
    test::Rgba on;
    test::Rgba off;
};
class OnOffSwitchTint : public testing::TestWithParam<Tint> { };

TEST_P(OnOffSwitchTint, FillsWithItsPair)
{
    const Tint tint = GetParam();
    const test::Picture picture = pictureOf([&] {
        const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        cell->setAllowsMixedState(true);
        cell->setState(NSMixedState);
        cell->setShowsOnOffLabels(false);
        cell->setOnOffSwitchCustomOnColor_offColor(
            NSColor::cls().greenColor().get(), NSColor::cls().blueColor().get());
        cell->setOnOffSwitchControlColors(tint.scheme);
        cell->tintBackgroundWithFrame_inView(kFrame, make<NSView>().get());
    });
    EXPECT_PRED_FORMAT3(test::isNear, picture.at(10, 10), tint.on, 1);
    EXPECT_PRED_FORMAT3(test::isNear, picture.at(50, 10), tint.off, 1);
}

constexpr test::Rgba kBlueOnWhite { 102, 148, 255, 255 };
constexpr test::Rgba kGreenOnWhite { 102, 209, 102, 255 };
constexpr test::Rgba kRedOnWhite { 209, 102, 102, 255 };
INSTANTIATE_TEST_SUITE_P(Schemes, OnOffSwitchTint,
    testing::Values(Tint { OnOffSwitchControlCustomColors, { 0, 255, 0, 255 }, { 0, 0, 255, 255 } },
        Tint { OnOffSwitchControlDefaultColors, kBlueOnWhite, test::kWhite },
        Tint { OnOffSwitchControlGreenRedColors, kGreenOnWhite, kRedOnWhite },
        Tint { OnOffSwitchControlBlueRedColors, kBlueOnWhite, kRedOnWhite },
        Tint { 0, test::kWhite, test::kWhite }, Tint { 5, test::kWhite, test::kWhite },
        Tint { -1, test::kWhite, test::kWhite }));

/// Draws a switch while its thumb is held.
test::Picture heldPicture(bool mixed, bool tracks = true)
{
    return pictureOf([=] {
        const Ref<OnOffSwitchControl> control = make<OnOffSwitchControl>();
        const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        cell->setAllowsMixedState(mixed);
        if (tracks)
            cell->startTrackingAt_inView({ 10, 10 }, control.get());
        NSColor::cls().redColor()->setStroke();
        cell->drawWithFrame_inView(kFrame, make<NSView>().get());
    });
}

TEST(OnOffSwitchDrawing, AVariableShowsWhereTheDecisionTurns)
{
    const test::Picture plain = heldPicture(false);
    const test::Variables variables { { "KNTOnOffButtonCellDebug", "1" } };
    const test::Picture marked = heldPicture(false);
    EXPECT_GT(test::distance(plain.at(30, 5), marked.at(30, 5)), 20) << "the middle";
    EXPECT_EQ(plain.at(45, 5), marked.at(45, 5));
    EXPECT_GT(test::distance(plain.at(12, 10), marked.at(12, 10)), 20) << "of the thumb, too";
    EXPECT_EQ(plain.at(12, 4), marked.at(12, 4)) << "the thumb's line is shorter";
}

TEST(OnOffSwitchDrawing, ThreeStatesTurnAtTheThirds)
{
    const test::Picture plain = heldPicture(true);
    const test::Variables variables { { "KNTOnOffButtonCellDebug", "0" } };
    const test::Picture marked = heldPicture(true);
    const auto differs
        = [&](int x) { return test::distance(plain.at(x, 5), marked.at(x, 5)) > 20; };
    EXPECT_TRUE(differs(20));
    EXPECT_TRUE(differs(39));
    EXPECT_FALSE(differs(30));
}

TEST(OnOffSwitchDrawing, AtRestTheVariableShowsNothing)
{
    const test::Picture plain = heldPicture(false, false);
    const test::Variables variables { { "KNTOnOffButtonCellDebug", "1" } };
    EXPECT_TRUE(test::areAlike(
        heldPicture(false, false).image().get(), plain.image().get(), 0, "switch-at-rest"));
}

TEST(OnOffSwitchDrawing, WithoutACustomColourThereIsNoTint)
{
    const test::Picture picture = pictureOf([] {
        const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        cell->setShowsOnOffLabels(false);
        cell->setOnOffSwitchControlColors(OnOffSwitchControlCustomColors);
        cell->setCustomOnColor(NSColor::cls().redColor().get());
        cell->tintBackgroundWithFrame_inView(kFrame, make<NSView>().get());
    });
    EXPECT_EQ(picture.at(10, 10), (test::Rgba { 255, 255, 255, 255 }));
}

TEST(OnOffSwitchDrawing, ASwitchInAWindowLooksLikeOneInAPicture)
{
    HeadlessScreen screen { 100, 60 };
    const Ref<OnOffSwitchControl> control
        = screen.add<OnOffSwitchControl>(NSMakeRect(20, 20, 60, 20));
    const auto pixels = screen.pixels();
    const auto redAt = [&](int x, int y) { return static_cast<int>(pixels.at(x, y) >> 16 & 0xFF); };
    EXPECT_GT(redAt(30, 30), 222);
    EXPECT_LT(redAt(60, 30), 222);
    EXPECT_LT(redAt(60, 22), redAt(60, 28)) << "upright in a flipped view";
}

}
