// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSColor.h"
#include "support/Focused.h"
#include "support/Numbers.h"
#include "support/Paths.h"

namespace brindle {

using test::isNear;
using test::newPath;
using test::Rgba;

namespace {

    using test::kRed;

    /// A picture of 10 by 10 that is drawn into in red while the test lasts.
    class BezierPathDrawing : public testing::Test {
    protected:
        void SetUp() override
        {
            CGContextSetRGBFillColor(picture_, 1, 0, 0, 1);
            CGContextSetRGBStrokeColor(picture_, 1, 0, 0, 1);
        }

        int alphaAt(int x, int y) const { return picture_.at(x, y).alpha; }
        bool isBlank() const
        {
            const test::Picture blank(10, 10);
            return test::compare(picture_.image().get(), blank.image().get()).pixels == 0;
        }
        static Ref<NSBezierPath> rect(double x, double y, double width, double height)
        {
            return NSBezierPath::cls().bezierPathWithRect(NSMakeRect(x, y, width, height));
        }

        const test::Focused picture_ { 10, 10 };
    };

    Ref<NSBezierPath> lineAcross()
    {
        const auto path = newPath();
        path->moveToPoint({ 0, 5 });
        path->lineToPoint({ 10, 5 });
        return path;
    }

}

TEST_F(BezierPathDrawing, FillsByItsWindingRule)
{
    const auto path = rect(0, 0, 10, 10);
    path->appendBezierPathWithRect(NSMakeRect(3, 3, 4, 4));
    path->setWindingRule(NSEvenOddWindingRule);
    path->fill();
    EXPECT_EQ(picture_.at(1, 1), kRed);
    EXPECT_EQ(alphaAt(5, 5), 0);
    path->setWindingRule(NSNonZeroWindingRule);
    path->fill();
    EXPECT_EQ(picture_.at(5, 5), kRed);
}

TEST_F(BezierPathDrawing, StrokesWithItsOwnWidth)
{
    CGContextSetLineWidth(picture_, 9);
    const auto path = lineAcross();
    path->setLineWidth(4);
    path->stroke();
    EXPECT_EQ(picture_.at(5, 3), kRed);
    EXPECT_EQ(picture_.at(5, 6), kRed);
    EXPECT_EQ(alphaAt(5, 2), 0);
    EXPECT_EQ(alphaAt(5, 7), 0);
}

TEST_F(BezierPathDrawing, StrokeLeavesTheContextsLineAsItIs)
{
    CGContextSetLineWidth(picture_, 2);
    const auto path = newPath();
    path->moveToPoint({ 0, 20 });
    path->lineToPoint({ 1, 20 });
    path->setLineWidth(8);
    const CGFloat dashes[] = { 1, 1 };
    path->setLineDash_count_phase(dashes, 2, 0);
    path->stroke();
    CGContextMoveToPoint(picture_, 0, 5);
    CGContextAddLineToPoint(picture_, 10, 5);
    CGContextStrokePath(picture_);
    EXPECT_EQ(picture_.at(0, 4), kRed);
    EXPECT_EQ(picture_.at(1, 5), kRed);
    EXPECT_EQ(alphaAt(5, 3), 0);
}

TEST_F(BezierPathDrawing, PaintingLeavesTheContextsPath)
{
    CGContextMoveToPoint(picture_, 3, 4);
    lineAcross()->stroke();
    rect(0, 0, 1, 1)->fill();
    EXPECT_EQ(CGContextGetPathCurrentPoint(picture_), CGPointMake(3, 4));
}

TEST_F(BezierPathDrawing, DashesComeAndGo)
{
    const auto path = lineAcross();
    path->setLineWidth(2);
    const CGFloat dashes[] = { 2, 3 };
    path->setLineDash_count_phase(dashes, 2, 0);
    path->stroke();
    EXPECT_EQ(picture_.at(0, 5), kRed);
    EXPECT_EQ(picture_.at(1, 5), kRed);
    EXPECT_EQ(alphaAt(3, 5), 0);
    EXPECT_EQ(picture_.at(5, 5), kRed);
}

TEST_F(BezierPathDrawing, DashPhaseIsWhereThePatternStarts)
{
    const auto path = lineAcross();
    path->setLineWidth(2);
    const CGFloat dashes[] = { 2, 3 };
    path->setLineDash_count_phase(dashes, 2, 2);
    path->stroke();
    EXPECT_EQ(alphaAt(0, 5), 0);
    EXPECT_EQ(picture_.at(3, 5), kRed);
}

TEST_F(BezierPathDrawing, CapsReachPastTheEnds)
{
    const auto path = newPath();
    path->moveToPoint({ 4, 5 });
    path->lineToPoint({ 6, 5 });
    path->setLineWidth(4);
    path->stroke();
    EXPECT_EQ(alphaAt(2, 5), 0);
    path->setLineCapStyle(NSSquareLineCapStyle);
    path->stroke();
    EXPECT_EQ(picture_.at(2, 5), kRed);
    EXPECT_EQ(picture_.at(2, 3), kRed);
}

TEST_F(BezierPathDrawing, BevelledJoinHasNoCorner)
{
    const auto path = newPath();
    path->moveToPoint({ 2, 0 });
    path->lineToPoint({ 2, 8 });
    path->lineToPoint({ 10, 8 });
    path->setLineWidth(4);
    path->setLineJoinStyle(NSBevelLineJoinStyle);
    path->stroke();
    EXPECT_EQ(alphaAt(0, 0), 0);
    path->setLineJoinStyle(NSMiterLineJoinStyle);
    path->stroke();
    EXPECT_EQ(picture_.at(0, 0), kRed);
}

TEST_F(BezierPathDrawing, ClipsToItsInside)
{
    rect(0, 0, 5, 10)->addClip();
    rect(0, 0, 10, 5)->addClip();
    rect(0, 0, 10, 10)->fill();
    EXPECT_EQ(picture_.at(4, 9), kRed);
    EXPECT_EQ(alphaAt(5, 9), 0);
    EXPECT_EQ(alphaAt(4, 4), 0);
}

TEST_F(BezierPathDrawing, ClipsByItsWindingRule)
{
    const auto path = rect(0, 0, 10, 10);
    path->appendBezierPathWithRect(NSMakeRect(3, 3, 4, 4));
    path->setWindingRule(NSEvenOddWindingRule);
    path->addClip();
    rect(0, 0, 10, 10)->fill();
    EXPECT_EQ(picture_.at(1, 1), kRed);
    EXPECT_EQ(alphaAt(5, 5), 0);
}

TEST_F(BezierPathDrawing, EmptyPathClipsEverythingAway)
{
    newPath()->addClip();
    rect(0, 0, 10, 10)->fill();
    EXPECT_TRUE(isBlank());
}

TEST_F(BezierPathDrawing, SetClipReplacesTheClip)
{
    rect(0, 0, 2, 2)->addClip();
    rect(0, 0, 5, 10)->setClip();
    rect(0, 0, 10, 10)->fill();
    EXPECT_EQ(picture_.at(4, 0), kRed);
    EXPECT_EQ(alphaAt(5, 0), 0);
}

TEST_F(BezierPathDrawing, ClassPaintsRectangles)
{
    NSBezierPath::cls().fillRect(NSMakeRect(0, 0, 2, 2));
    EXPECT_EQ(picture_.at(0, 9), kRed);
    EXPECT_EQ(alphaAt(2, 9), 0);
    NSBezierPath::cls().strokeRect(NSMakeRect(4.5, 4.5, 3, 3));
    EXPECT_EQ(picture_.at(4, 5), kRed);
    EXPECT_EQ(alphaAt(5, 4), 0);
    NSBezierPath::cls().clipRect(NSMakeRect(9, 0, 1, 10));
    NSBezierPath::cls().fillRect(NSMakeRect(0, 0, 10, 10));
    EXPECT_EQ(picture_.at(9, 0), kRed);
    EXPECT_EQ(alphaAt(8, 0), 0);
}

TEST_F(BezierPathDrawing, ClassDrawsALineOfTheDefaultWidth)
{
    NSBezierPath::cls().setDefaultLineWidth(2);
    NSBezierPath::cls().strokeLineFromPoint_toPoint({ 0, 5 }, { 10, 5 });
    NSBezierPath::cls().setDefaultLineWidth(1);
    EXPECT_EQ(picture_.at(5, 4), kRed);
    EXPECT_EQ(picture_.at(5, 5), kRed);
    EXPECT_EQ(alphaAt(5, 3), 0);
}

TEST_F(BezierPathDrawing, TranslucentFillBlends)
{
    picture_.fillWhite();
    CGContextSetRGBFillColor(picture_, 1, 0, 0, 0.5);
    NSBezierPath::cls().fillRect(NSMakeRect(0, 0, 10, 10));
    EXPECT_PRED_FORMAT3(isNear, picture_.at(5, 5), (Rgba { 255, 128, 128, 255 }), 1);
}

TEST_F(BezierPathDrawing, PointsThatMakeNoSensePaintNothing)
{
    rect(kNaN, 0, 10, 10)->fill();
    EXPECT_TRUE(isBlank());
    const auto path = newPath();
    path->moveToPoint({ kNaN, kNaN });
    path->stroke();
    path->fill();
    EXPECT_TRUE(isBlank());
    rect(-kInfinity, 0, kInfinity, 10)->stroke();
    rect(0, 0, 10, 10)->fill();
    EXPECT_EQ(picture_.at(5, 5), kRed);
}

TEST_F(BezierPathDrawing, LinesThatMakeNoSenseLeaveTheContextWhole)
{
    const auto path = lineAcross();
    const CGFloat dashes[] = { kNaN, -1 };
    path->setLineDash_count_phase(dashes, 2, kInfinity);
    path->setLineWidth(kNaN);
    path->setMiterLimit(kNaN);
    path->setFlatness(-1);
    path->setLineCapStyle(static_cast<NSLineCapStyle>(77));
    path->setLineJoinStyle(static_cast<NSLineJoinStyle>(77));
    path->stroke();
    rect(0, 0, 10, 10)->fill();
    EXPECT_EQ(picture_.at(5, 5), kRed);
}

TEST(NSBezierPath, WithoutFocusPaintingDoesNothing)
{
    lineAcross()->stroke();
    lineAcross()->fill();
    lineAcross()->addClip();
    lineAcross()->setClip();
    NSBezierPath::cls().fillRect(NSMakeRect(0, 0, 1, 1));
    NSBezierPath::cls().strokeRect(NSMakeRect(0, 0, 1, 1));
    NSBezierPath::cls().clipRect(NSMakeRect(0, 0, 1, 1));
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
}

}
