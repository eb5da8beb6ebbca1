// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSFont.h"
#include "support/Numbers.h"
#include "support/Paths.h"

namespace brindle {

using test::newPath;
using test::pointsOf;
using test::stepsOf;

namespace {

    Ref<NSBezierPath> arc(double start, double end, bool clockwise)
    {
        const auto path = newPath();
        path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(
            { 0, 0 }, 10, start, end, clockwise);
        return path;
    }

    void expectNear(NSPoint actual, NSPoint expected, double tolerance = 1e-9)
    {
        EXPECT_NEAR(actual.x, expected.x, tolerance);
        EXPECT_NEAR(actual.y, expected.y, tolerance);
    }

}

TEST(NSBezierPath, RectangleRunsAlongItsWidthFirst)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(1, 2, 3, 4));
    EXPECT_EQ(stepsOf(path), "mlllz");
    EXPECT_EQ(pointsOf(path), (std::vector<NSPoint> { { 1, 2 }, { 4, 2 }, { 4, 6 }, { 1, 6 } }));
}

TEST(NSBezierPath, NegativeRectangleRunsTheOtherWay)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(4, 6, -3, -4));
    EXPECT_EQ(pointsOf(path), (std::vector<NSPoint> { { 4, 6 }, { 1, 6 }, { 1, 2 }, { 4, 2 } }));
    EXPECT_EQ(path->bounds(), NSMakeRect(1, 2, 3, 4));
}

TEST(NSBezierPath, OvalIsFourCurves)
{
    const auto path = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(0, 0, 20, 10));
    EXPECT_EQ(stepsOf(path), "mccccz");
    const auto points = pointsOf(path);
    EXPECT_EQ(points[0], NSMakePoint(20, 5));
    EXPECT_EQ(points[3], NSMakePoint(10, 10));
    expectNear(points[1], { 20, 5 + 5 * 0.5522847498 });
    expectNear(points[2], { 10 + 10 * 0.5522847498, 10 });
    EXPECT_EQ(path->bounds(), NSMakeRect(0, 0, 20, 10));
}

TEST(NSBezierPath, RoundedRectangleHasCircularCorners)
{
    const auto path = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
        NSMakeRect(0, 0, 20, 10), 4, 2);
    EXPECT_EQ(stepsOf(path), "mlclclclcz");
    const auto points = pointsOf(path);
    EXPECT_EQ(points[0], NSMakePoint(20, 5));
    EXPECT_EQ(points[1], NSMakePoint(20, 8));
    expectNear(points[2], { 20, 8 + 2 * 0.5522847498 });
    expectNear(points[3], { 16 + 4 * 0.5522847498, 10 });
    EXPECT_EQ(points[4], NSMakePoint(16, 10));
}

TEST(NSBezierPath, RadiusIsHalfTheSideAtMost)
{
    const NSRect rect = NSMakeRect(0, 0, 20, 10);
    const auto path = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(rect, 100, 100);
    EXPECT_EQ(pointsOf(path), pointsOf(NSBezierPath::cls().bezierPathWithOvalInRect(rect)));
}

TEST(NSBezierPath, WithoutARadiusCornersAreSharp)
{
    for (const double radius : { 0.0, -3.0, kNaN }) {
        const auto path = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
            NSMakeRect(1, 2, 3, 4), radius, 1);
        EXPECT_EQ(stepsOf(path), "mlllz") << radius;
        EXPECT_EQ(path->bounds(), NSMakeRect(1, 2, 3, 4));
    }
}

TEST(NSBezierPath, NegativeRoundedRectangleIsTurnedToPositive)
{
    const auto path = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
        NSMakeRect(10, 10, -10, -10), 2, 2);
    EXPECT_EQ(path->bounds(), NSMakeRect(0, 0, 10, 10));
}

TEST(NSBezierPath, EmptyShapesHaveNoExtent)
{
    EXPECT_EQ(NSBezierPath::cls().bezierPathWithRect(NSMakeRect(1, 2, 0, 0))->bounds(),
        NSMakeRect(1, 2, 0, 0));
    EXPECT_EQ(NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(1, 2, 0, 0))->bounds(),
        NSMakeRect(1, 2, 0, 0));
    EXPECT_TRUE(NSBezierPath::cls().bezierPathWithRect(CGRectNull)->isEmpty());
}

TEST(NSBezierPath, PointsBecomeLines)
{
    const NSPoint points[] = { { 0, 0 }, { 1, 0 }, { 1, 1 } };
    const auto path = newPath();
    path->appendBezierPathWithPoints_count(points, 3);
    EXPECT_EQ(stepsOf(path), "mll");
    path->appendBezierPathWithPoints_count(points, 1);
    EXPECT_EQ(stepsOf(path), "mlll");
    path->appendBezierPathWithPoints_count(nullptr, 4);
    path->appendBezierPathWithPoints_count(points, -1);
    EXPECT_EQ(stepsOf(path), "mlll");
}

TEST(NSBezierPath, AppendedPathKeepsItsElements)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 1, 1));
    path->appendBezierPath(path.get());
    EXPECT_EQ(stepsOf(path), "mlllzmlllz");
    path->appendBezierPath(nullptr);
    EXPECT_EQ(path->elementCount(), 10);
}

TEST(NSBezierPath, QuarterArcIsOneCurve)
{
    const auto path = arc(0, 90, false);
    EXPECT_EQ(stepsOf(path), "mc");
    const auto points = pointsOf(path);
    expectNear(points[0], { 10, 0 });
    expectNear(points[1], { 10, 5.522847498 }, 1e-8);
    expectNear(points[2], { 5.522847498, 10 }, 1e-8);
    expectNear(points[3], { 0, 10 });
}

TEST(NSBezierPath, ArcTurnsTheLongWayWhereItsDirectionAsksForIt)
{
    EXPECT_EQ(stepsOf(arc(0, 90, true)), "mccc");
    EXPECT_EQ(stepsOf(arc(90, 0, true)), "mc");
    EXPECT_EQ(stepsOf(arc(90, 0, false)), "mccc");
    expectNear(arc(90, 0, false)->currentPoint(), { 10, 0 });
    expectNear(arc(350, 370, false)->currentPoint(), arc(-10, 10, false)->currentPoint());
}

TEST(NSBezierPath, ArcHasACurveForEveryQuarterAtMost)
{
    EXPECT_EQ(stepsOf(arc(0, 91, false)), "mcc");
    EXPECT_EQ(stepsOf(arc(10, 280, false)), "mccc");
}

TEST(NSBezierPath, ArcIsAFullTurnWhereItsAnglesAre360Apart)
{
    EXPECT_EQ(stepsOf(arc(0, 360, false)), "mcccc");
    EXPECT_EQ(stepsOf(arc(90, 450, false)), "mcccc");
    EXPECT_EQ(stepsOf(arc(360, 0, false)), "mcccc");
    EXPECT_EQ(stepsOf(arc(360, 0, true)), "mcccc");
    EXPECT_EQ(stepsOf(arc(0, 1000, false)), "mcccc");
}

TEST(NSBezierPath, ArcOfEqualAnglesIsAPoint)
{
    EXPECT_EQ(stepsOf(arc(30, 30, false)), "m");
    EXPECT_EQ(stepsOf(arc(30, 30, true)), "m");
}

TEST(NSBezierPath, ArcJoinsWithALine)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({ 0, 0 }, 10, 0, 90);
    EXPECT_EQ(stepsOf(path), "mlc");
    expectNear(pointsOf(path)[1], { 10, 0 });
}

TEST(NSBezierPath, ArcOfNoNumbersAddsNothing)
{
    EXPECT_TRUE(arc(kNaN, 90, false)->isEmpty());
    EXPECT_TRUE(arc(0, kInfinity, false)->isEmpty());
    const auto path = newPath();
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({ kNaN, 0 }, 1, 0, 9);
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({ 0, 0 }, kInfinity, 0, 9);
    EXPECT_TRUE(path->isEmpty());
}

TEST(NSBezierPath, ArcRoundsACorner)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->appendBezierPathWithArcFromPoint_toPoint_radius({ 10, 0 }, { 10, 10 }, 4);
    EXPECT_EQ(stepsOf(path), "mlc");
    expectNear(pointsOf(path)[1], { 6, 0 });
    expectNear(path->currentPoint(), { 10, 4 });
}

TEST(NSBezierPath, WithoutACornerTheArcIsALine)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->appendBezierPathWithArcFromPoint_toPoint_radius({ 10, 0 }, { 20, 0 }, 4);
    path->appendBezierPathWithArcFromPoint_toPoint_radius({ 10, 10 }, { 20, 0 }, 0);
    EXPECT_EQ(pointsOf(path), (std::vector<NSPoint> { { 0, 0 }, { 10, 0 }, { 10, 10 } }));
}

TEST(NSBezierPath, GlyphStandsAtTheCurrentPointAndMovesIt)
{
    const auto font = NSFont::cls().systemFontOfSize(100);
    const auto path = newPath();
    path->moveToPoint({ 50, 60 });
    const std::uint32_t glyph = 36;
    path->appendBezierPathWithGlyphs_count_inFont(&glyph, 1, font.get());
    EXPECT_EQ(path->currentPoint(), NSMakePoint(50 + font->advancementForGlyph(glyph).width, 60));
    path->appendBezierPathWithGlyph_inFont(glyph, nullptr);
    path->appendBezierPathWithGlyphs_count_inFont(nullptr, 3, font.get());
    EXPECT_EQ(path->currentPoint(), NSMakePoint(50 + font->advancementForGlyph(glyph).width, 60));
}

}
