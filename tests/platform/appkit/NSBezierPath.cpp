// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSAffineTransform.h"
#include "foundation/NSCoder.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "support/Numbers.h"
#include "support/Paths.h"
#include "support/Strings.h"

namespace brindle {

using test::newPath;
using test::pointsOf;
using test::stepsOf;

namespace {

    Ref<NSBezierPath> archived(NSBezierPath* path)
    {
        const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(path);
        return cast<NSBezierPath>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()));
    }

    /// Answers what the elements and points of a forged archive become.
    Ref<NSObject> forged(const std::vector<std::uint8_t>& elements, std::size_t points)
    {
        const auto archiver = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
        const std::vector<NSPoint> row(points, NSMakePoint(1, 2));
        archiver->encodeBytes_length_forKey(elements.data(), elements.size(), "NSElements"_ns);
        archiver->encodeBytes_length_forKey(
            row.data(), row.size() * sizeof(NSPoint), "NSPoints"_ns);
        archiver->encodeInt_forKey(9, "NSWindingRule"_ns);
        const Ref<NSData> data = archiver->encodedData();
        const auto reader = alloc<NSKeyedUnarchiver>()->initForReadingWithData(data.get());
        return alloc<NSBezierPath>()->send<"initWithCoder:", Ref<NSObject>>(
            static_cast<NSCoder*>(reader.get()));
    }

}

// ---- elements

TEST(NSBezierPath, KeepsItsElements)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 2 });
    path->lineToPoint({ 3, 4 });
    path->curveToPoint_controlPoint1_controlPoint2({ 9, 10 }, { 5, 6 }, { 7, 8 });
    path->closePath();
    EXPECT_EQ(stepsOf(path), "mlcz");
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> { { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 }, { 9, 10 } }));
    EXPECT_EQ(path->elementAtIndex(2), NSCurveToBezierPathElement);
    EXPECT_EQ(path->elementAtIndex_associatedPoints(3, nullptr), NSClosePathBezierPathElement);
}

TEST(NSBezierPath, LaterMoveReplacesTheMoveBefore)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 2 });
    path->moveToPoint({ 3, 4 });
    EXPECT_EQ(stepsOf(path), "m");
    EXPECT_EQ(path->currentPoint(), NSMakePoint(3, 4));
}

TEST(NSBezierPath, CurrentPointAfterACloseIsTheSubpathsStart)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 2 });
    path->lineToPoint({ 3, 4 });
    path->closePath();
    EXPECT_EQ(path->currentPoint(), NSMakePoint(1, 2));
    EXPECT_EQ(path->elementCount(), 3);
}

TEST(NSBezierPath, LineBehindACloseBeginsWithAMove)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 2 });
    path->lineToPoint({ 3, 4 });
    path->closePath();
    path->lineToPoint({ 5, 6 });
    EXPECT_EQ(stepsOf(path), "mlzml");
    EXPECT_EQ(pointsOf(path)[2], NSMakePoint(1, 2));
}

TEST(NSBezierPath, RelativeStepsCountFromTheCurrentPoint)
{
    const auto path = newPath();
    path->moveToPoint({ 10, 10 });
    path->relativeLineToPoint({ 1, 2 });
    path->relativeCurveToPoint_controlPoint1_controlPoint2({ 5, 5 }, { 1, 1 }, { 2, 2 });
    path->relativeMoveToPoint({ -1, 0 });
    EXPECT_EQ(pointsOf(path),
        (std::vector<NSPoint> {
            { 10, 10 }, { 11, 12 }, { 12, 13 }, { 13, 14 }, { 16, 17 }, { 15, 17 } }));
}

TEST(NSBezierPath, RaisesWithoutACurrentPoint)
{
    const std::string line = "NSGenericException: No current point for line";
    const auto path = newPath();
    EXPECT_EQ(raisedBy([&] { path->lineToPoint({ 1, 1 }); }), line);
    EXPECT_EQ(raisedBy([&] {
        path->curveToPoint_controlPoint1_controlPoint2({ 1, 1 }, { 1, 1 }, { 1, 1 });
    }),
        line);
    EXPECT_EQ(raisedBy([&] { path->relativeMoveToPoint({ 1, 1 }); }), line);
    EXPECT_EQ(raisedBy([&] { path->relativeLineToPoint({ 1, 1 }); }), line);
    EXPECT_EQ(raisedBy([&] {
        path->appendBezierPathWithArcFromPoint_toPoint_radius({ 1, 1 }, { 2, 2 }, 1);
    }),
        line);
    EXPECT_EQ(raisedBy([&] { path->appendBezierPathWithGlyph_inFont(1, nullptr); }), line);
    EXPECT_EQ(raisedBy([&] { path->currentPoint(); }), "NSGenericException: No current point");
    EXPECT_TRUE(path->isEmpty());
}

TEST(NSBezierPath, CloseOfNothingAddsNothing)
{
    const auto path = newPath();
    path->closePath();
    EXPECT_TRUE(path->isEmpty());
    path->moveToPoint({ 1, 1 });
    path->lineToPoint({ 2, 2 });
    path->closePath();
    path->closePath();
    EXPECT_EQ(stepsOf(path), "mlz");
}

TEST(NSBezierPath, RaisesForElementsThatAreNotThere)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 1 });
    const std::string past = "NSRangeException: index 1 beyond the path's 1 elements";
    EXPECT_EQ(raisedBy([&] { path->elementAtIndex(1); }), past);
    EXPECT_EQ(raisedBy([&] { path->setAssociatedPoints_atIndex(nullptr, 1); }), past);
    EXPECT_EQ(raisedBy([&] { path->elementAtIndex_associatedPoints(-1, nullptr); }),
        "NSRangeException: index -1 beyond the path's 1 elements");
}

TEST(NSBezierPath, PointsOfAnElementCanBeMoved)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->curveToPoint_controlPoint1_controlPoint2({ 3, 3 }, { 1, 1 }, { 2, 2 });
    const NSPoint curve[] = { { 4, 4 }, { 5, 5 }, { 6, 6 } };
    path->setAssociatedPoints_atIndex(curve, 1);
    EXPECT_EQ(pointsOf(path), (std::vector<NSPoint> { { 0, 0 }, { 4, 4 }, { 5, 5 }, { 6, 6 } }));
    EXPECT_EQ(path->currentPoint(), NSMakePoint(6, 6));
    path->setAssociatedPoints_atIndex(nullptr, 1);
    EXPECT_EQ(path->currentPoint(), NSMakePoint(6, 6));
}

TEST(NSBezierPath, MovedStartIsWhereTheSubpathCloses)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->lineToPoint({ 3, 3 });
    path->closePath();
    const NSPoint start { 7, 7 };
    path->setAssociatedPoints_atIndex(&start, 0);
    EXPECT_EQ(path->currentPoint(), start);
}

TEST(NSBezierPath, RemovingAllPointsLeavesTheLineAsItIs)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 1, 1));
    path->setLineWidth(3);
    path->removeAllPoints();
    EXPECT_TRUE(path->isEmpty());
    EXPECT_EQ(path->elementCount(), 0);
    EXPECT_EQ(path->lineWidth(), 3);
}

// ---- questions

TEST(NSBezierPath, BoundsAreThoseOfTheCurveNotOfItsControls)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->curveToPoint_controlPoint1_controlPoint2({ 10, 0 }, { 0, 10 }, { 10, 10 });
    EXPECT_EQ(path->bounds(), NSMakeRect(0, 0, 10, 7.5));
    EXPECT_EQ(path->controlPointBounds(), NSMakeRect(0, 0, 10, 10));
}

TEST(NSBezierPath, BoundsOfNothingAreZero)
{
    EXPECT_EQ(newPath()->bounds(), NSZeroRect);
    EXPECT_EQ(newPath()->controlPointBounds(), NSZeroRect);
}

TEST(NSBezierPath, PointsThatAreNoNumbersDoNotSpoilTheBounds)
{
    const auto path = newPath();
    path->moveToPoint({ kNaN, kNaN });
    EXPECT_EQ(path->bounds(), NSZeroRect);
    path->lineToPoint({ 1, 2 });
    path->lineToPoint({ 4, 6 });
    EXPECT_EQ(path->bounds(), NSMakeRect(1, 2, 3, 4));
    EXPECT_TRUE(std::isnan(pointsOf(path)[0].x));
}

TEST(NSBezierPath, WindingRuleDecidesWhatIsInside)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 10, 10));
    path->appendBezierPathWithRect(NSMakeRect(2, 2, 6, 6));
    EXPECT_TRUE(path->containsPoint({ 5, 5 }));
    path->setWindingRule(NSEvenOddWindingRule);
    EXPECT_FALSE(path->containsPoint({ 5, 5 }));
    EXPECT_TRUE(path->containsPoint({ 1, 1 }));
    EXPECT_FALSE(path->containsPoint({ 11, 1 }));
}

TEST(NSBezierPath, OpenPathContainsWhatItWouldFill)
{
    const auto path = newPath();
    EXPECT_FALSE(path->containsPoint({ 0, 0 }));
    path->moveToPoint({ 0, 0 });
    path->lineToPoint({ 10, 0 });
    path->lineToPoint({ 0, 10 });
    EXPECT_TRUE(path->containsPoint({ 2, 2 }));
    EXPECT_FALSE(path->containsPoint({ 6, 6 }));
    EXPECT_FALSE(path->containsPoint({ kNaN, 1 }));
}

TEST(NSBezierPath, ContainsFollowsLargeCurvesClosely)
{
    const auto path
        = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(-10000, -10000, 20000, 20000));
    const double diagonal = std::sqrt(0.5);
    EXPECT_TRUE(path->containsPoint({ 9999.9 * diagonal, 9999.9 * diagonal }));
    EXPECT_FALSE(path->containsPoint({ 10002.8 * diagonal, 10002.8 * diagonal }));
}

// ---- changed copies

TEST(NSBezierPath, FlattenedPathStaysWithinItsFlatness)
{
    const auto path = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(-50, -50, 100, 100));
    path->setFlatness(0.1);
    path->setLineWidth(7);
    const auto flat = path->bezierPathByFlatteningPath();
    EXPECT_EQ(stepsOf(flat).find('c'), std::string::npos);
    EXPECT_EQ(stepsOf(flat).back(), 'z');
    EXPECT_EQ(flat->lineWidth(), 7);
    const auto points = pointsOf(flat);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const NSPoint middle { (points[i - 1].x + points[i].x) / 2,
            (points[i - 1].y + points[i].y) / 2 };
        EXPECT_GT(std::hypot(middle.x, middle.y), 50 - 0.1);
    }
    EXPECT_EQ(stepsOf(path), "mccccz");
}

TEST(NSBezierPath, FlatnessThatMakesNoSenseStillEnds)
{
    const auto path = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(0, 0, 100, 100));
    for (const double flatness : { 0.0, -1.0, kNaN, 1e-300 }) {
        path->setFlatness(flatness);
        EXPECT_LE(path->bezierPathByFlatteningPath()->elementCount(), 4 * 1024 + 2) << flatness;
    }
    path->setFlatness(kInfinity);
    EXPECT_EQ(stepsOf(path->bezierPathByFlatteningPath()), "mllllz");
}

TEST(NSBezierPath, ReversedPathRunsBackSubpathBySubpath)
{
    const auto path = newPath();
    path->moveToPoint({ 0, 0 });
    path->lineToPoint({ 1, 0 });
    path->curveToPoint_controlPoint1_controlPoint2({ 4, 0 }, { 2, 0 }, { 3, 0 });
    path->moveToPoint({ 7, 0 });
    path->lineToPoint({ 8, 0 });
    path->lineToPoint({ 8, 8 });
    path->closePath();
    const auto back = path->bezierPathByReversingPath();
    EXPECT_EQ(stepsOf(back), "mclmllz");
    EXPECT_EQ(pointsOf(back),
        (std::vector<NSPoint> {
            { 4, 0 }, { 3, 0 }, { 2, 0 }, { 1, 0 }, { 0, 0 }, { 8, 8 }, { 8, 0 }, { 7, 0 } }));
}

TEST(NSBezierPath, ReversedTwiceIsTheSame)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 3, 2));
    path->moveToPoint({ 9, 9 });
    EXPECT_TRUE(
        path->bezierPathByReversingPath()->bezierPathByReversingPath()->isEqual(path.get()));
    EXPECT_TRUE(newPath()->bezierPathByReversingPath()->isEmpty());
}

TEST(NSBezierPath, ReversingTurnsAHoleIntoPaint)
{
    const NSRect inner = NSMakeRect(2, 2, 6, 6);
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 10, 10));
    path->appendBezierPath(
        NSBezierPath::cls().bezierPathWithRect(inner)->bezierPathByReversingPath().get());
    EXPECT_FALSE(path->containsPoint({ 5, 5 }));
    EXPECT_TRUE(path->containsPoint({ 1, 1 }));
}

TEST(NSBezierPath, TransformMovesEveryPoint)
{
    const auto path = newPath();
    path->moveToPoint({ 1, 1 });
    path->curveToPoint_controlPoint1_controlPoint2({ 4, 4 }, { 2, 2 }, { 3, 3 });
    path->closePath();
    const auto transform = NSAffineTransform::cls().transform();
    transform->translateXBy_yBy(10, 0);
    transform->scaleXBy_yBy(1, -1);
    path->transformUsingAffineTransform(transform.get());
    EXPECT_EQ(stepsOf(path), "mcz");
    EXPECT_EQ(
        pointsOf(path), (std::vector<NSPoint> { { 11, -1 }, { 12, -2 }, { 13, -3 }, { 14, -4 } }));
    path->transformUsingAffineTransform(nullptr);
    EXPECT_EQ(path->currentPoint(), NSMakePoint(11, -1));
}

TEST(NSBezierPath, CopyIsEqualAndIndependent)
{
    const auto path = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 1, 1));
    const CGFloat dashes[] = { 1, 2 };
    path->setLineDash_count_phase(dashes, 2, 3);
    path->setWindingRule(NSEvenOddWindingRule);
    path->setLineCapStyle(NSRoundLineCapStyle);
    const auto copy = cast<NSBezierPath>(path->copy());
    EXPECT_TRUE(copy->isEqual(path.get()));
    EXPECT_EQ(copy->hash(), path->hash());
    copy->lineToPoint({ 5, 5 });
    EXPECT_FALSE(copy->isEqual(path.get()));
    EXPECT_EQ(path->elementCount(), 5);
}

TEST(NSBezierPath, EqualPathsHaveEqualLines)
{
    const auto a = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 1, 1));
    const auto b = NSBezierPath::cls().bezierPathWithRect(NSMakeRect(0, 0, 1, 1));
    EXPECT_TRUE(a->isEqual(b.get()));
    b->setLineWidth(2);
    EXPECT_FALSE(a->isEqual(b.get()));
    EXPECT_FALSE(a->isEqual(nullptr));
    EXPECT_FALSE(a->isEqual("path"_ns));
}

// ---- line

TEST(NSBezierPath, LineIsPlainAtFirst)
{
    const auto path = newPath();
    EXPECT_EQ(path->lineWidth(), 1);
    EXPECT_EQ(path->lineCapStyle(), NSButtLineCapStyle);
    EXPECT_EQ(path->lineJoinStyle(), NSMiterLineJoinStyle);
    EXPECT_EQ(path->miterLimit(), 10);
    EXPECT_EQ(path->flatness(), 0.6);
    EXPECT_EQ(path->windingRule(), NSNonZeroWindingRule);
    NSInteger count = 9;
    path->getLineDash_count_phase(nullptr, &count, nullptr);
    EXPECT_EQ(count, 0);
}

TEST(NSBezierPath, NewPathsTakeTheDefaults)
{
    const auto before = newPath();
    const auto cls = NSBezierPath::cls();
    cls.setDefaultLineWidth(4);
    cls.setDefaultMiterLimit(5);
    cls.setDefaultFlatness(0.25);
    cls.setDefaultWindingRule(NSEvenOddWindingRule);
    cls.setDefaultLineCapStyle(NSSquareLineCapStyle);
    cls.setDefaultLineJoinStyle(NSBevelLineJoinStyle);
    const auto path = newPath();
    EXPECT_EQ(cls.defaultLineWidth(), 4);
    cls.setDefaultLineWidth(1);
    cls.setDefaultMiterLimit(10);
    cls.setDefaultFlatness(0.6);
    cls.setDefaultWindingRule(NSNonZeroWindingRule);
    cls.setDefaultLineCapStyle(NSButtLineCapStyle);
    cls.setDefaultLineJoinStyle(NSMiterLineJoinStyle);
    EXPECT_EQ(path->lineWidth(), 4);
    EXPECT_EQ(path->miterLimit(), 5);
    EXPECT_EQ(path->flatness(), 0.25);
    EXPECT_EQ(path->windingRule(), NSEvenOddWindingRule);
    EXPECT_EQ(path->lineCapStyle(), NSSquareLineCapStyle);
    EXPECT_EQ(path->lineJoinStyle(), NSBevelLineJoinStyle);
    EXPECT_EQ(before->lineWidth(), 1);
}

TEST(NSBezierPath, DashesAreCopied)
{
    const auto path = newPath();
    CGFloat dashes[] = { 1, 2, 3 };
    path->setLineDash_count_phase(dashes, 3, 0.5);
    dashes[0] = 9;
    CGFloat read[3] = {};
    NSInteger count = 0;
    CGFloat phase = 0;
    path->getLineDash_count_phase(read, &count, &phase);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(read[0], 1);
    EXPECT_EQ(read[2], 3);
    EXPECT_EQ(phase, 0.5);
    path->setLineDash_count_phase(nullptr, 3, 0);
    path->getLineDash_count_phase(nullptr, &count, nullptr);
    EXPECT_EQ(count, 0);
}

// ---- archives

TEST(NSBezierPath, SurvivesAnArchive)
{
    const auto path = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(0, 0, 7, 3));
    path->moveToPoint({ kInfinity, 0.1 });
    path->lineToPoint({ 3, 3 });
    const CGFloat dashes[] = { 4, 5 };
    path->setLineDash_count_phase(dashes, 2, 1);
    path->setLineWidth(2.5);
    path->setLineJoinStyle(NSRoundLineJoinStyle);
    path->setWindingRule(NSEvenOddWindingRule);
    EXPECT_TRUE(path->isEqual(archived(path.get()).get()));
    EXPECT_TRUE(newPath()->isEqual(archived(newPath().get()).get()));
}

TEST(NSBezierPath, ArchivedElementsThatMakeNoPathAreNil)
{
    EXPECT_FALSE(forged({ 1 }, 1)); // a line from nowhere
    EXPECT_FALSE(forged({ 4 }, 0)); // a close of nothing
    EXPECT_FALSE(forged({ 0, 2 }, 3)); // a quadratic curve
    EXPECT_FALSE(forged({ 0, 5 }, 9)); // no element
    EXPECT_FALSE(forged({ 0, 255 }, 300));
    EXPECT_FALSE(forged({ 0, 3 }, 3)); // a curve without its end
    EXPECT_FALSE(forged({ 0 }, 0));
}

TEST(NSBezierPath, ArchivedChoiceThatIsNoneIsTheFirst)
{
    const auto path = cast<NSBezierPath>(forged({ 0, 1, 4 }, 2));
    ASSERT_TRUE(path);
    EXPECT_EQ(stepsOf(path), "mlz");
    EXPECT_EQ(path->windingRule(), NSNonZeroWindingRule);
}

}
