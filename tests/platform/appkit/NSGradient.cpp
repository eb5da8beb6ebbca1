// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGradient.h"

#include "appkit/NSBezierPath.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "runtime/NSException.h"
#include "support/Colors.h"
#include "support/Focused.h"
#include "support/Numbers.h"

#include <limits>

using namespace brindle;
using test::isNear;
using test::Rgba;

namespace {

using test::kBlack;
using test::kWhite;

/// From black to white.
Ref<NSGradient> ramp()
{
    return make<NSGradient>()->initWithStartingColor_endingColor(
        NSColor::cls().blackColor().get(), NSColor::cls().whiteColor().get());
}

Ref<NSGradient> threeColors()
{
    return make<NSGradient>()->initWithColorsAndLocations(
        { { rgb(1, 0, 0).get(), 0 }, { rgb(0, 1, 0).get(), 0.25 }, { rgb(0, 0, 1).get(), 1 } });
}

/// The darkness of a picture's pixel after drawing at an angle.
int redAt(const test::Picture& picture, int x, int y) { return picture.at(x, y).red; }

}

TEST(NSGradient, RunsFromLeftToRightAtAngleZero)
{
    const test::Focused picture(10, 10);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 10, 10), 0);
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 5), (Rgba { 13, 13, 13, 255 }), 1);
    EXPECT_PRED_FORMAT3(isNear, picture.at(9, 5), (Rgba { 242, 242, 242, 255 }), 1);
}

TEST(NSGradient, RunsFromLeastYToGreatestAtNinetyDegrees)
{
    const test::Focused picture(10, 10);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 10, 10), 90);
    EXPECT_LT(redAt(picture, 5, 9), redAt(picture, 5, 0)); // rows of pixels count from the top
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 10, 10), 270);
    EXPECT_GT(redAt(picture, 5, 9), redAt(picture, 5, 0));
}

TEST(NSGradient, NinetyDegreesRunDownwardInAFlippedSpace)
{
    const test::Focused picture(10, 10, true);
    CGContextConcatCTM(picture, { 1, 0, 0, -1, 0, 10 });
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 10, 10), 90);
    EXPECT_LT(redAt(picture, 5, 0), redAt(picture, 5, 9));
}

TEST(NSGradient, CornersHaveTheEndColoursAtAnyAngle)
{
    for (const double angle : { 30.0, 45.0, 60.0 }) {
        const test::Focused picture(200, 100);
        ramp()->drawInRect_angle(NSMakeRect(0, 0, 200, 100), angle);
        EXPECT_PRED_FORMAT3(isNear, picture.at(0, 99), kBlack, 2) << angle;
        EXPECT_PRED_FORMAT3(isNear, picture.at(199, 0), kWhite, 2) << angle;
    }
}

TEST(NSGradient, StaysInsideItsRectangle)
{
    const test::Focused picture(10, 10);
    for (const double angle : { 0.0, 33.0 })
        ramp()->drawInRect_angle(NSMakeRect(2, 2, 6, 6), angle);
    EXPECT_EQ(picture.at(1, 5).alpha, 0);
    EXPECT_EQ(picture.at(2, 5).alpha, 255);
    EXPECT_EQ(picture.at(8, 5).alpha, 0);
    EXPECT_EQ(picture.at(5, 8).alpha, 0);
}

TEST(NSGradient, FillsAPathByItsWindingRule)
{
    const test::Focused picture(10, 10);
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 10, 10));
    path->appendBezierPathWithRect(NSMakeRect(3, 3, 4, 4));
    path->setWindingRule(NSEvenOddWindingRule);
    ramp()->drawInBezierPath_angle(path.get(), 0);
    EXPECT_EQ(picture.at(1, 1).alpha, 255);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_GT(redAt(picture, 8, 5), redAt(picture, 1, 5));
}

TEST(NSGradient, OddRectanglesAndAnglesDrawNothing)
{
    const test::Focused picture(10, 10);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 0, 10), 0);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 10, 10), kNaN);
    ramp()->drawInRect_angle(NSMakeRect(kNaN, 0, 10, 10), 0);
    ramp()->drawInBezierPath_angle(nullptr, 0);
    ramp()->drawInBezierPath_angle(NSBezierPath::cls().bezierPath().get(), 0);
    ramp()->drawInRect_relativeCenterPosition(NSMakeRect(0, 0, 10, 10), { kNaN, 0 });
    EXPECT_EQ(test::compare(picture.image().get(), test::Picture(10, 10).image().get()).pixels, 0U);
}

TEST(NSGradient, CastsNoShadow)
{
    const test::Focused picture(10, 10);
    CGContextSetShadow(picture, { 5, 0 }, 0);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 4, 10), 30);
    ramp()->drawInRect_angle(NSMakeRect(0, 0, 4, 10), 0);
    EXPECT_EQ(picture.at(6, 5).alpha, 0);
}

TEST(NSGradient, CirclesRunFromThePointToTheCorners)
{
    const test::Focused picture(20, 20);
    ramp()->drawInRect_relativeCenterPosition(NSMakeRect(0, 0, 20, 20), { 0, 0 });
    EXPECT_LT(redAt(picture, 10, 10), 20);
    EXPECT_GT(redAt(picture, 0, 0), 240);
    EXPECT_LT(redAt(picture, 0, 10), redAt(picture, 0, 0));
}

TEST(NSGradient, BeyondItsPointsItPaintsOnlyWhenAsked)
{
    const test::Focused picture(30, 10);
    ramp()->drawFromPoint_toPoint_options({ 10, 0 }, { 20, 0 }, NSGradientDrawsAfterEndingLocation);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_EQ(picture.at(15, 5).alpha, 255);
    EXPECT_EQ(picture.at(25, 5), kWhite);
}

TEST(NSGradient, CirclesPaintBeyondTheirEndsOnlyWhenAsked)
{
    const test::Focused picture(40, 40);
    ramp()->drawFromCenter_radius_toCenter_radius_options({ 20, 20 }, 5, { 20, 20 }, 10, 0);
    EXPECT_EQ(picture.at(20, 20).alpha, 0);
    EXPECT_EQ(picture.at(27, 20).alpha, 255);
    EXPECT_EQ(picture.at(33, 20).alpha, 0);
    ramp()->drawFromCenter_radius_toCenter_radius_options(
        { 20, 20 }, 5, { 20, 20 }, 10, NSGradientDrawsBeforeStartingLocation);
    EXPECT_EQ(picture.at(20, 20), kBlack);
    EXPECT_EQ(picture.at(33, 20).alpha, 0);
}

TEST(NSGradient, MixesTheColoursAroundAPlace)
{
    const auto gradient = threeColors();
    EXPECT_EQ(rgbaText(gradient->interpolatedColorAtLocation(0.125)), "0.5 0.5 0 1");
    EXPECT_EQ(rgbaText(gradient->interpolatedColorAtLocation(0.625)), "0 0.5 0.5 1");
    EXPECT_EQ(rgbaText(gradient->interpolatedColorAtLocation(-1)), "1 0 0 1");
    EXPECT_EQ(rgbaText(gradient->interpolatedColorAtLocation(7)), "0 0 1 1");
}

TEST(NSGradient, TellsItsColoursAndPlaces)
{
    const auto gradient = threeColors();
    Ref<NSColor> color;
    CGFloat location = 0;
    gradient->getColor_location_atIndex(&color, &location, 1);
    EXPECT_EQ(gradient->numberOfColorStops(), 3);
    EXPECT_EQ(rgbaText(color), "0 1 0 1");
    EXPECT_EQ(location, 0.25);
    EXPECT_THROW(gradient->getColor_location_atIndex(&color, &location, 3), Exception);
}

TEST(NSGradient, NilColoursMakeNilGradients)
{
    const auto red = rgb(1, 0, 0);
    EXPECT_FALSE(make<NSGradient>()->initWithStartingColor_endingColor(red.get(), nullptr));
    EXPECT_FALSE(make<NSGradient>()->initWithStartingColor_endingColor(nullptr, red.get()));
    EXPECT_FALSE(make<NSGradient>()->initWithColors(nullptr));
    EXPECT_FALSE(make<NSGradient>()->initWithColors(NSArray::cls().array().get()));
}

TEST(NSGradient, ArrayOfSomethingElseMakesNone)
{
    const auto wrong = NSArray::cls().arrayWithObject(NSArray::cls().array().get());
    EXPECT_FALSE(make<NSGradient>()->initWithColors(wrong.get()));
}

TEST(NSGradient, BareOneDrawsNothing)
{
    const test::Focused picture(10, 10);
    const auto bare = cast<NSGradient>(NSGradient::cls().send<"new", Ref<NSObject>>());
    bare->drawInRect_angle(NSMakeRect(0, 0, 10, 10), 0);
    bare->drawInRect_relativeCenterPosition(NSMakeRect(0, 0, 10, 10), { 0, 0 });
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_FALSE(bare->interpolatedColorAtLocation(0.5));
}

TEST(NSGradient, ComesBackFromAnArchive)
{
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(threeColors().get());
    const auto back = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSGradient::cls(), data.get(), nullptr);
    EXPECT_TRUE(threeColors()->isEqual(back.get()));
}
