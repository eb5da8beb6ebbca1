// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "quartz/CGPath.h"
#include "support/Numbers.h"
#include "support/Pixels.h"

using namespace brindle;
using test::Picture;

namespace {

constexpr double kPi = std::numbers::pi;

Ref<CGPath> newPath() { return Ref<CGPath>::adopt(CGPathCreateMutable()); }

/// Answers a path's elements with their points rounded: "M 0 0 L 10 0 Z".
std::string textOf(const CGPath& path)
{
    std::string text;
    path.data().each([&text](CGPathElementType type, const CGPoint* points) {
        text += text.empty() ? "" : " ";
        text += "MLQCZ"[type];
        for (std::size_t i = 0; i < quartz::PathData::pointsOf(type); ++i)
            text += " " + std::to_string(std::lrint(points[i].x)) + " "
                + std::to_string(std::lrint(points[i].y));
    });
    return text;
}

Ref<CGPath> openBend()
{
    const auto path = newPath();
    const CGPoint points[] = { { 10, 10 }, { 30, 10 }, { 30, 25 } };
    CGPathAddLines(path.get(), nullptr, points, 3);
    return path;
}

Ref<CGPath> loop()
{
    const auto path = newPath();
    CGPathMoveToPoint(path.get(), nullptr, 12, 12);
    CGPathAddCurveToPoint(path.get(), nullptr, 25, 4, 42, 12, 35, 30);
    CGPathAddLineToPoint(path.get(), nullptr, 8, 32);
    CGPathCloseSubpath(path.get());
    return path;
}

/// Strokes with the pen, and fills the outline that stroking answers.
void expectTwins(const Ref<CGPath>& path, CGLineCap cap, CGLineJoin join, const char* name)
{
    const Picture pen(44, 44);
    CGContextSetLineWidth(pen, 5);
    CGContextSetLineCap(pen, cap);
    CGContextSetLineJoin(pen, join);
    CGContextAddPath(pen, path.get());
    CGContextStrokePath(pen);
    const Picture filled(44, 44);
    const auto outline
        = Ref<CGPath>::adopt(CGPathCreateCopyByStrokingPath(path.get(), nullptr, 5, cap, join, 10));
    CGContextAddPath(filled, outline.get());
    CGContextFillPath(filled);
    // The pen follows curves by lines of its own, which shows at sharp bends.
    EXPECT_TRUE(test::areAlike(filled.image().get(), pen.image().get(), 32, name));
}

}

TEST(CGPathStroking, OutlineOfOpenLinesLooksLikeTheLine)
{
    expectTwins(openBend(), kCGLineCapButt, kCGLineJoinMiter, "stroke-butt-miter");
    expectTwins(openBend(), kCGLineCapRound, kCGLineJoinRound, "stroke-round-round");
    expectTwins(openBend(), kCGLineCapSquare, kCGLineJoinBevel, "stroke-square-bevel");
}

TEST(CGPathStroking, OutlineOfClosedCurvesLooksLikeTheLine)
{
    expectTwins(loop(), kCGLineCapButt, kCGLineJoinMiter, "stroke-loop-miter");
    expectTwins(loop(), kCGLineCapButt, kCGLineJoinRound, "stroke-loop-round");
}

TEST(CGPathStroking, MiterBeyondItsLimitIsABevel)
{
    const auto path = openBend();
    const auto box = [&](double limit) {
        const auto outline = Ref<CGPath>::adopt(CGPathCreateCopyByStrokingPath(
            path.get(), nullptr, 4, kCGLineCapButt, kCGLineJoinMiter, limit));
        return CGPathContainsPoint(outline.get(), nullptr, { 31.9, 8.1 }, false);
    };
    EXPECT_TRUE(box(1.5)); // a right angle's miter is the root of two long
    EXPECT_FALSE(box(1.4));
}

TEST(CGPathStroking, SubpathWithoutLengthIsADotOfItsCap)
{
    const auto path = newPath();
    CGPathMoveToPoint(path.get(), nullptr, 10, 10);
    CGPathAddLineToPoint(path.get(), nullptr, 10, 10);
    const auto box = [&](CGLineCap cap) {
        const auto dot = Ref<CGPath>::adopt(
            CGPathCreateCopyByStrokingPath(path.get(), nullptr, 4, cap, kCGLineJoinMiter, 10));
        return CGPathGetPathBoundingBox(dot.get());
    };
    EXPECT_TRUE(CGRectIsNull(box(kCGLineCapButt)));
    EXPECT_EQ(box(kCGLineCapSquare), CGRectMake(8, 8, 4, 4));
    EXPECT_EQ(box(kCGLineCapRound), CGRectMake(8, 8, 4, 4));
}

TEST(CGPathStroking, NumbersThatMakeNoSenseHaveNoOutline)
{
    const auto path = openBend();
    for (const double width : { 0.0, -1.0, kNaN, HUGE_VAL }) {
        const auto outline = Ref<CGPath>::adopt(CGPathCreateCopyByStrokingPath(
            path.get(), nullptr, width, kCGLineCapButt, kCGLineJoinMiter, 10));
        EXPECT_TRUE(CGPathIsEmpty(outline.get())) << width;
    }
    CGPathAddLineToPoint(path.get(), nullptr, kNaN, 3);
    const auto outline = Ref<CGPath>::adopt(CGPathCreateCopyByStrokingPath(
        path.get(), nullptr, 2, kCGLineCapButt, kCGLineJoinMiter, 10));
    EXPECT_TRUE(CGPathIsEmpty(outline.get()));
    EXPECT_FALSE(
        CGPathCreateCopyByStrokingPath(nullptr, nullptr, 2, kCGLineCapButt, kCGLineJoinMiter, 10));
}

// ---- dashes

namespace {

std::string dashes(const Ref<CGPath>& path, double phase, std::vector<CGFloat> lengths)
{
    const auto dashed = Ref<CGPath>::adopt(
        CGPathCreateCopyByDashingPath(path.get(), nullptr, phase, lengths.data(), lengths.size()));
    return textOf(*dashed);
}

}

TEST(CGPathDashing, DashesGoRoundCorners)
{
    EXPECT_EQ(dashes(openBend(), 0, { 15, 2 }),
        "M 10 10 L 25 10 M 27 10 L 30 10 L 30 22 M 30 24 L 30 25");
}

TEST(CGPathDashing, PhaseSaysWhereToBegin)
{
    EXPECT_EQ(dashes(openBend(), 16, { 15, 2 }), "M 11 10 L 26 10 M 28 10 L 30 10 L 30 23");
    EXPECT_EQ(dashes(openBend(), -1, { 40, 2 }), "M 11 10 L 30 10 L 30 25");
}

TEST(CGPathDashing, OddNumberOfLengthsTakesTurns)
{
    EXPECT_EQ(dashes(openBend(), 0, { 10 }), "M 10 10 L 20 10 M 30 10 L 30 20");
}

TEST(CGPathDashing, LengthsThatMakeNoDashesLeaveThePath)
{
    for (const std::vector<CGFloat>& lengths : std::vector<std::vector<CGFloat>> {
             {}, { 0, 0 }, { -1, 2 }, { kNaN }, { 1e-300, 1e-300 }, { HUGE_VAL, 1 } })
        EXPECT_EQ(dashes(openBend(), 0, lengths), "M 10 10 L 30 10 L 30 25");
}

// ---- flattening, reversing

TEST(CGPathData, FlattenedCurvesStayWithinTheFlatness)
{
    const double flatness = 0.1;
    const auto path = newPath();
    CGPathAddEllipseInRect(path.get(), nullptr, CGRectMake(-50, -50, 100, 100));
    std::size_t lines = 0;
    path->data().flattened(flatness).each([&](CGPathElementType type, const CGPoint* points) {
        EXPECT_NE(type, kCGPathElementAddCurveToPoint);
        if (type != kCGPathElementAddLineToPoint)
            return;
        ++lines;
        EXPECT_NEAR(std::hypot(points->x, points->y), 50, flatness);
    });
    EXPECT_GT(lines, 16U);
    EXPECT_LT(lines, 200U);
}

TEST(CGPathData, FlattenedLinesStayAsTheyAre)
{
    EXPECT_EQ(openBend()->data().flattened(1), openBend()->data());
}

TEST(CGPathData, ReversedSubpathsRunFromTheirEnds)
{
    const auto path = openBend();
    CGPathAddRect(path.get(), nullptr, CGRectMake(0, 0, 5, 6));
    const auto turned = newPath();
    turned->data() = path->data().reversed();
    EXPECT_EQ(turned->data().reversed().controlBox(), path->data().controlBox());
    EXPECT_TRUE(CGPathContainsPoint(turned.get(), nullptr, { 2, 2 }, false));
    EXPECT_EQ(textOf(*turned).substr(0, 26), "M 30 25 L 30 10 L 10 10 M ");
}

TEST(CGPathData, ReversedTwiceIsThePathAgain)
{
    EXPECT_EQ(openBend()->data().reversed().reversed(), openBend()->data());
}

// ---- shapes

TEST(CGPath, RelativeArcGoesByItsDelta)
{
    const auto path = newPath();
    CGPathAddRelativeArc(path.get(), nullptr, 0, 0, 10, 0, kPi / 2);
    EXPECT_NEAR(CGPathGetCurrentPoint(path.get()).y, 10, 1e-9);
    CGPathAddRelativeArc(path.get(), nullptr, 0, 0, 10, kPi / 2, -kPi);
    EXPECT_NEAR(CGPathGetCurrentPoint(path.get()).y, -10, 1e-9);
    EXPECT_NEAR(CGPathGetPathBoundingBox(path.get()).size.width, 10, 1e-9); // by way of the right
}

TEST(CGPath, TellsRectangles)
{
    const auto path = newPath();
    EXPECT_FALSE(CGPathIsRect(path.get(), nullptr));
    const CGRect rects[] = { CGRectMake(1, 2, 3, 4), CGRectMake(5, 6, 7, 8) };
    CGPathAddRects(path.get(), nullptr, rects, 1);
    CGRect found;
    EXPECT_TRUE(CGPathIsRect(path.get(), &found));
    EXPECT_EQ(found, rects[0]);
    CGPathAddRects(path.get(), nullptr, rects + 1, 1);
    EXPECT_FALSE(CGPathIsRect(path.get(), &found));
    EXPECT_FALSE(CGPathIsRect(nullptr, &found));
}
