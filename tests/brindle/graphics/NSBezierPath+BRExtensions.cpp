// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSBezierPath+BRExtensions.h"

#include <gtest/gtest.h>

#include "support/Paths.h"

namespace brindle {

using test::pointsOf;
using test::stepsOf;

namespace {

    std::vector<NSPoint> triangle(NSRect rect, bool bottomOrTop)
    {
        return pointsOf(
            bezierPathWithTriangleInRect_bottomOrTop(NSBezierPath::cls(), rect, bottomOrTop));
    }

}

TEST(BRExtensions, TriangleStandsOnMaxY)
{
    EXPECT_EQ(triangle(NSMakeRect(2, 3, 10, 8), true),
        (std::vector<NSPoint> { { 2, 11 }, { 7, 3 }, { 12, 11 }, { 2, 11 } }));
}

TEST(BRExtensions, TriangleStandsOnTheOriginsY)
{
    EXPECT_EQ(triangle(NSMakeRect(2, 3, 10, 8), false),
        (std::vector<NSPoint> { { 2, 3 }, { 7, 11 }, { 12, 3 }, { 2, 3 } }));
}

TEST(BRExtensions, TriangleIsClosed)
{
    const auto path = bezierPathWithTriangleInRect(NSBezierPath::cls(), NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(stepsOf(path), "mlllz");
    EXPECT_EQ(pointsOf(path), triangle(NSMakeRect(0, 0, 4, 4), true));
}

TEST(BRExtensions, ApexIsRoundedAwayFromZero)
{
    EXPECT_EQ(triangle(NSMakeRect(0, 0, 11, 10), true)[1], NSMakePoint(6, 0));
    EXPECT_EQ(triangle(NSMakeRect(-11, 0, 11, 10), true)[1], NSMakePoint(-6, 0));
}

TEST(BRExtensions, ApexIsRoundedInSinglePrecision)
{
    // 16777217 has no single of its own, and 0.49999999 is a half there.
    EXPECT_EQ(triangle(NSMakeRect(0, 0, 33554434, 1), true)[1].x, 16777216);
    EXPECT_EQ(triangle(NSMakeRect(0, 0, 0.99999999, 1), true)[1].x, 1);
}

TEST(BRExtensions, FlipLeavesEveryPoint)
{
    const auto path = bezierPathWithTriangleInRect(NSBezierPath::cls(), NSMakeRect(1, 2, 3, 4));
    const auto before = cast<NSBezierPath>(path->copy());
    flipVertical(path);
    EXPECT_TRUE(path->isEqual(before.get()));
}

}
