// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSBezierPath+XUIKitAdditions.h"

#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSColor.h"
#include "foundation/NSString.h"
#include "runtime/Runtime.h"
#include "support/Focused.h"
#include "support/Paths.h"
#include "support/Strings.h"

namespace brindle {

using test::Focused;
using test::isNear;
using test::newPath;
using test::pointsOf;
using test::Rgba;
using test::stepsOf;

namespace {

    Ref<CGPath> newCGPath() { return Ref<CGPath>::adopt(CGPathCreateMutable()); }

    Ref<NSBezierPath> corners(NSUInteger mask, NSRect rect = NSMakeRect(10, 20, 100, 50))
    {
        return bezierPathWithRoundedRect_byRoundingCorners_cornerRadii(
            NSBezierPath::cls(), rect, mask, NSMakeSize(8, 6));
    }

    Ref<NSBezierPath> openLine()
    {
        const auto path = newPath();
        path->moveToPoint({ 1, 2 });
        path->lineToPoint({ 3, 4 });
        path->lineToPoint({ 5, 6 });
        return path;
    }

}

// ---- to Quartz paths

TEST(XUIKitAdditions, OpenPathIsClosedAsAQuartzPath)
{
    const auto path = openLine();
    const auto quartz = quartzPath(path);
    EXPECT_EQ(stepsOf(quartz.get()), "mllz");
    EXPECT_EQ(pointsOf(quartz.get()), (std::vector<NSPoint> { { 1, 2 }, { 3, 4 }, { 5, 6 } }));
    EXPECT_EQ(stepsOf(path), "mll");
}

TEST(XUIKitAdditions, ClosedPathGetsNoSecondClose)
{
    const auto path = openLine();
    path->closePath();
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mllz");
}

TEST(XUIKitAdditions, MoveBehindACloseIsNotClosed)
{
    const auto path = openLine();
    path->closePath();
    path->moveToPoint({ 9, 9 });
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mllzm");
}

TEST(XUIKitAdditions, MoveBehindAnOpenSubpathIsClosed)
{
    const auto path = openLine();
    path->moveToPoint({ 9, 9 });
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mllmz");
}

TEST(XUIKitAdditions, MoveAloneIsClosed)
{
    const auto path = newPath();
    path->moveToPoint({ 9, 9 });
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mz");
}

TEST(XUIKitAdditions, OnlyTheLastSubpathIsClosed)
{
    const auto path = openLine();
    path->moveToPoint({ 7, 7 });
    path->lineToPoint({ 8, 8 });
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mllmlz");
}

TEST(XUIKitAdditions, PathWithoutElementsIsAnEmptyQuartzPath)
{
    const auto quartz = quartzPath(newPath());
    ASSERT_TRUE(quartz);
    EXPECT_TRUE(CGPathIsEmpty(quartz.get()));
}

TEST(XUIKitAdditions, CurveKeepsTheOrderOfItsPoints)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->curveToPoint_controlPoint1_controlPoint2({ 3, 3 }, { 1, 1 }, { 2, 2 });
    const auto quartz = quartzPath(path);
    EXPECT_EQ(stepsOf(quartz.get()), "mcz");
    EXPECT_EQ(
        pointsOf(quartz.get()), (std::vector<NSPoint> { { 0, 0 }, { 1, 1 }, { 2, 2 }, { 3, 3 } }));
}

TEST(XUIKitAdditions, QuartzPathIsMadeAnewEachTime)
{
    const auto path = openLine();
    const auto first = quartzPath(path);
    path->lineToPoint({ 7, 8 });
    const auto second = quartzPath(path);
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(stepsOf(first.get()), "mllz");
    EXPECT_EQ(stepsOf(second.get()), "mlllz");
}

TEST(XUIKitAdditions, PathKeepsTheQuartzPathItAnsweredLast)
{
    const auto path = openLine();
    WeakRef<CGPath> first = quartzPath(path).get();
    EXPECT_TRUE(first.get());
    const auto second = quartzPath(path);
    EXPECT_FALSE(first.get());
}

TEST(XUIKitAdditions, QuartzPathGoesWithThePath)
{
    WeakRef<CGPath> kept;
    {
        const auto path = openLine();
        kept = quartzPath(path).get();
        EXPECT_TRUE(kept.get());
    }
    EXPECT_FALSE(kept.get());
}

TEST(XUIKitAdditions, ReadsElementsBySendingMessages)
{
    // An override of the element query decides what is converted.
    struct Class* const cls = objc_allocateClassPair(NSBezierPath::cls(), "StraightBezierPath", 0);
    ASSERT_TRUE(cls);
    const auto count = [](NSObject*, SEL) -> NSInteger { return 1; };
    class_addMethod(cls, sel_registerName("elementCount"), reinterpret_cast<IMP>(+count), "q@:");
    objc_registerClassPair(cls);
    const auto path = cls->send<"bezierPath", Ref<NSBezierPath>>();
    path->moveToPoint({ 1, 2 });
    path->lineToPoint({ 3, 4 });
    EXPECT_EQ(stepsOf(quartzPath(path).get()), "mz");
}

// ---- from Quartz paths

TEST(XUIKitAdditions, TakesAQuartzPathsElements)
{
    const auto quartz = newCGPath();
    CGPathMoveToPoint(quartz.get(), nullptr, 1, 2);
    CGPathAddLineToPoint(quartz.get(), nullptr, 3, 4);
    CGPathAddCurveToPoint(quartz.get(), nullptr, 5, 6, 7, 8, 9, 10);
    CGPathCloseSubpath(quartz.get());
    const auto path = bezierPathWithCGPath(NSBezierPath::cls(), quartz.get());
    EXPECT_EQ(stepsOf(path), "mlcz");
    EXPECT_EQ(pointsOf(path), pointsOf(quartz.get()));
}

TEST(XUIKitAdditions, QuadraticCurveBecomesTheCubicOfItsShape)
{
    const auto quartz = newCGPath();
    CGPathMoveToPoint(quartz.get(), nullptr, 0, 0);
    CGPathAddQuadCurveToPoint(quartz.get(), nullptr, 30, 60, 90, 0);
    const auto back = quartzPath(bezierPathWithCGPath(NSBezierPath::cls(), quartz.get()));
    EXPECT_EQ(stepsOf(back.get()), "mcz");
    const auto points = pointsOf(back.get());
    const double f = 0.6666666666666666;
    EXPECT_EQ(points[1], NSMakePoint(f * 30, f * 60));
    EXPECT_EQ(points[2], NSMakePoint(90 + f * (30 - 90), 0 + f * 60));
    EXPECT_EQ(points[3], NSMakePoint(90, 0));
}

TEST(XUIKitAdditions, QuartzPathReplacesWhatWasThere)
{
    const auto path = openLine();
    const auto quartz = newCGPath();
    CGPathAddRect(quartz.get(), nullptr, CGRectMake(0, 0, 1, 1));
    setCGPath(path, quartz.get());
    EXPECT_EQ(stepsOf(path), "mlllz");
}

TEST(XUIKitAdditions, NULLAndEmptyQuartzPathsLeaveNothing)
{
    const auto path = openLine();
    setCGPath(path, newCGPath().get());
    EXPECT_TRUE(path->isEmpty());
    const auto other = openLine();
    setCGPath(other, nullptr);
    EXPECT_TRUE(other->isEmpty());
    EXPECT_TRUE(bezierPathWithCGPath(NSBezierPath::cls(), nullptr)->isEmpty());
}

TEST(XUIKitAdditions, ClosedPathIsTheSameThereAndBack)
{
    const auto path = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(1, 2, 3, 4));
    path->appendBezierPathWithRect(NSMakeRect(5, 6, 7, 8));
    const auto back = bezierPathWithCGPath(NSBezierPath::cls(), quartzPath(path).get());
    EXPECT_TRUE(back->isEqual(path.get()));
}

TEST(XUIKitAdditions, OwnQuartzPathCanBeSetAgain)
{
    const auto path = openLine();
    setCGPath(path, quartzPath(path).get());
    EXPECT_EQ(stepsOf(path), "mllz");
}

TEST(XUIKitAdditions, NumbersThatMakeNoSenseAreCarried)
{
    const auto path = newPath();
    const double far = std::numeric_limits<double>::infinity();
    path->moveToPoint({ far, -far });
    path->lineToPoint({ 1, 1 });
    EXPECT_EQ(pointsOf(quartzPath(path).get()), pointsOf(path));
}

// ---- rounded rectangles

TEST(XUIKitAdditions, OneRadiusIsThePlatformsRoundedRectangle)
{
    const NSRect rect = NSMakeRect(1, 2, 30, 40);
    EXPECT_TRUE(
        bezierPathWithRoundedRect_cornerRadius(NSBezierPath::cls(), rect, 5)
            ->isEqual(
                NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(rect, 5, 5).get()));
}

TEST(XUIKitAdditions, WithoutRoundCornersItIsAPlainRectangle)
{
    const auto path = corners(0);
    EXPECT_EQ(stepsOf(path), "mllllz");
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> { { 10, 20 }, { 110, 20 }, { 110, 70 }, { 10, 70 }, { 10, 20 } }));
}

TEST(XUIKitAdditions, EveryCornerIsRoundWithAllBits)
{
    const auto path = corners(BRRectCornerAll);
    EXPECT_EQ(stepsOf(path), "mlclclclcz");
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> { { 18, 20 }, //
            { 102, 20 }, { 110, 20 }, { 110, 26 }, { 110, 26 }, //
            { 110, 64 }, { 110, 70 }, { 102, 70 }, { 102, 70 }, //
            { 18, 70 }, { 10, 70 }, { 10, 64 }, { 10, 64 }, //
            { 10, 26 }, { 10, 20 }, { 18, 20 }, { 18, 20 } }));
}

TEST(XUIKitAdditions, FirstBitRoundsTheOrigin)
{
    EXPECT_EQ(pointsOf(corners(1)),
        (std::vector<NSPoint> { { 18, 20 }, { 110, 20 }, { 110, 70 }, { 10, 70 }, { 10, 26 },
            { 10, 20 }, { 18, 20 }, { 18, 20 } }));
}

TEST(XUIKitAdditions, SecondBitRoundsMaxXMinY)
{
    EXPECT_EQ(pointsOf(corners(2)),
        (std::vector<NSPoint> { { 10, 20 }, { 102, 20 }, { 110, 20 }, { 110, 26 }, { 110, 26 },
            { 110, 70 }, { 10, 70 }, { 10, 20 } }));
}

TEST(XUIKitAdditions, ThirdBitRoundsMinXMaxY)
{
    EXPECT_EQ(pointsOf(corners(4)),
        (std::vector<NSPoint> { { 10, 20 }, { 110, 20 }, { 110, 70 }, { 18, 70 }, { 10, 70 },
            { 10, 64 }, { 10, 64 }, { 10, 20 } }));
}

TEST(XUIKitAdditions, FourthBitRoundsMaxXMaxY)
{
    EXPECT_EQ(pointsOf(corners(8)),
        (std::vector<NSPoint> { { 10, 20 }, { 110, 20 }, { 110, 64 }, { 110, 70 }, { 102, 70 },
            { 102, 70 }, { 10, 70 }, { 10, 20 } }));
}

TEST(XUIKitAdditions, OtherBitsCountForNothing)
{
    EXPECT_TRUE(corners(0xF0)->isEqual(corners(0).get()));
    EXPECT_TRUE(corners(0xFFFFFFFFFFFFFFFF)->isEqual(corners(15).get()));
}

TEST(XUIKitAdditions, RadiiAreTakenAsTheyAre)
{
    const auto path = corners(2, NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(pointsOf(path)[1], NSMakePoint(-4, 0));
    EXPECT_EQ(pointsOf(path)[3], NSMakePoint(4, 6));
}

TEST(XUIKitAdditions, NegativeRectangleHasItsExtremesFolded)
{
    const auto path = corners(0, NSMakeRect(10, 10, -4, -6));
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> { { 10, 10 }, { 10, 4 }, { 10, 10 }, { 6, 10 }, { 10, 10 } }));
}

// ---- arcs, curves, transforms

TEST(XUIKitAdditions, ArcTakesDegrees)
{
    const auto expected = newPath();
    expected->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
        { 1, 2 }, 10, 0, 90, true);
    const auto made = bezierPathWithArcCenter_radius_startAngle_endAngle_clockwise(
        NSBezierPath::cls(), { 1, 2 }, 10, 0, 90, true);
    const auto added = newPath();
    addArcWithCenter_radius_startAngle_endAngle_clockwise(added, { 1, 2 }, 10, 0, 90, true);
    EXPECT_EQ(stepsOf(made), "mccc");
    EXPECT_TRUE(made->isEqual(expected.get()));
    EXPECT_TRUE(added->isEqual(expected.get()));
}

TEST(XUIKitAdditions, QuadraticCurveStartsAtTheCurrentPoint)
{
    const auto path = newPath();
    path->moveToPoint({ 3, 6 });
    addQuadCurveToPoint_controlPoint(path, { 9, 0 }, { 6, 12 });
    const double f = 0.6666666666666666;
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> {
            { 3, 6 }, { 3 + f * 3, 6 + f * 6 }, { 9 + f * -3, 0 + f * 12 }, { 9, 0 } }));
}

TEST(XUIKitAdditions, QuadraticCurveNeedsACurrentPoint)
{
    EXPECT_EQ(raisedBy([] {
        addQuadCurveToPoint_controlPoint(newPath(), { 1, 1 }, { 2, 2 });
    }),
        "NSGenericException: No current point");
}

TEST(XUIKitAdditions, TransformMovesEveryPoint)
{
    const auto path = openLine();
    applyTransform(path, { 1, 2, 3, 4, 5, 6 });
    EXPECT_EQ(pointsOf(path), (std::vector<NSPoint> { { 12, 16 }, { 20, 28 }, { 28, 40 } }));
}

TEST(XUIKitAdditions, EvenOddIsTheOtherWindingRule)
{
    const auto path = newPath();
    EXPECT_FALSE(usesEvenOddFillRule(path));
    setUsesEvenOddFillRule(path, true);
    EXPECT_EQ(path->windingRule(), NSEvenOddWindingRule);
    EXPECT_TRUE(usesEvenOddFillRule(path));
    setUsesEvenOddFillRule(path, false);
    EXPECT_EQ(path->windingRule(), NSNonZeroWindingRule);
}

// ---- painting

TEST(XUIKitAdditions, FillsWithABlendModeAndAlpha)
{
    const Focused picture(4, 4);
    picture.fillWhite();
    NSColor::cls().colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 1)->set();
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 2, 4));
    fillWithBlendMode_alpha(path, kCGBlendModeMultiply, 0.5);
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 0), (Rgba { 255, 128, 128, 255 }), 1);
    EXPECT_EQ(picture.at(3, 0), (Rgba { 255, 255, 255, 255 }));
    path->fill();
    EXPECT_EQ(picture.at(0, 0), (Rgba { 255, 0, 0, 255 }));
}

TEST(XUIKitAdditions, StrokesWithABlendModeAndAlpha)
{
    const Focused picture(4, 4);
    NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 0, 1, 1)->set();
    const auto path = newPath();
    path->moveToPoint({ 0, 2 });
    path->lineToPoint({ 4, 2 });
    path->setLineWidth(2);
    strokeWithBlendMode_alpha(path, kCGBlendModeNormal, 0.5);
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 1), (Rgba { 0, 0, 128, 128 }), 1);
    EXPECT_EQ(picture.at(1, 0).alpha, 0);
}

TEST(XUIKitAdditions, WithoutFocusPaintingDoesNothing)
{
    fillWithBlendMode_alpha(openLine(), kCGBlendModeMultiply, 0.5);
    strokeWithBlendMode_alpha(openLine(), kCGBlendModeMultiply, 0.5);
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
}

}
