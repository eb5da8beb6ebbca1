// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSGeometry.h"

#include <cmath>

#include "support/Strings.h"

using namespace brindle;

namespace {

constexpr NSRect kRect = NSMakeRect(10, 20, 30, 40);

struct Cut {
    NSRect slice;
    NSRect remainder;
};
Cut divide(NSRect rect, CGFloat amount, NSRectEdge edge)
{
    Cut cut;
    NSDivideRect(rect, &cut.slice, &cut.remainder, amount, edge);
    return cut;
}

}

TEST(NSGeometry, InsettingMovesAllFourEdges)
{
    EXPECT_EQ(NSInsetRect(kRect, 1, 2), NSMakeRect(11, 22, 28, 36));
    EXPECT_EQ(NSInsetRect(kRect, 20, 0).size.width, -10);
}

TEST(NSGeometry, OffsettingMovesTheOrigin)
{
    EXPECT_EQ(NSOffsetRect(kRect, 1, -2), NSMakeRect(11, 18, 30, 40));
}

TEST(NSGeometry, LeastEdgesAreInsideAndGreatestOutside)
{
    EXPECT_TRUE(NSPointInRect({ 10, 20 }, kRect));
    EXPECT_FALSE(NSPointInRect({ 40, 20 }, kRect));
    EXPECT_FALSE(NSPointInRect({ 10, 60 }, kRect));
    EXPECT_FALSE(NSPointInRect({ 9.99, 20 }, kRect));
}

TEST(NSGeometry, AnEmptyRectContainsNoPoint)
{
    EXPECT_FALSE(NSPointInRect({ 1, 1 }, NSMakeRect(1, 1, 0, 5)));
}

TEST(NSGeometry, ThePointersUpperEdgeDependsOnFlipping)
{
    EXPECT_TRUE(NSMouseInRect({ 10, 60 }, kRect, false));
    EXPECT_FALSE(NSMouseInRect({ 10, 20 }, kRect, false));
    EXPECT_TRUE(NSMouseInRect({ 10, 20 }, kRect, true));
    EXPECT_FALSE(NSMouseInRect({ 10, 60 }, kRect, true));
}

TEST(NSGeometry, RectsThatOnlyTouchDoNotIntersect)
{
    EXPECT_FALSE(NSIntersectsRect(NSMakeRect(0, 0, 10, 10), NSMakeRect(10, 0, 10, 10)));
    EXPECT_TRUE(NSIntersectsRect(NSMakeRect(0, 0, 10, 10), NSMakeRect(9.5, 0, 10, 10)));
}

TEST(NSGeometry, AnEmptyRectIntersectsNothing)
{
    EXPECT_FALSE(NSIntersectsRect(kRect, NSMakeRect(15, 25, 0, 5)));
    EXPECT_FALSE(NSIntersectsRect(NSMakeRect(15, 25, 5, -5), kRect));
}

TEST(NSGeometry, TheIntersectionIsWhatBothHave)
{
    EXPECT_EQ(NSIntersectionRect(NSMakeRect(0, 0, 10, 10), NSMakeRect(5, 6, 10, 10)),
        NSMakeRect(5, 6, 5, 4));
    EXPECT_EQ(NSIntersectionRect(NSMakeRect(1, 1, 9, 9), NSMakeRect(10, 1, 5, 5)), NSZeroRect);
}

TEST(NSGeometry, TheUnionIgnoresEmptyRects)
{
    EXPECT_EQ(NSUnionRect(NSMakeRect(0, 0, 1, 1), NSMakeRect(5, 6, 1, 1)), NSMakeRect(0, 0, 6, 7));
    EXPECT_EQ(NSUnionRect(NSMakeRect(0, 0, 0, 9), kRect), kRect);
    EXPECT_EQ(NSUnionRect(NSMakeRect(3, 3, 0, 9), NSMakeRect(1, 1, 0, 0)), NSZeroRect);
}

TEST(NSGeometry, ContainingIncludesTheEdges)
{
    EXPECT_TRUE(NSContainsRect(kRect, kRect));
    EXPECT_FALSE(NSContainsRect(kRect, NSInsetRect(kRect, -1, 0)));
    EXPECT_FALSE(NSContainsRect(kRect, NSMakeRect(15, 25, 0, 0)));
}

TEST(NSGeometry, ARectWithoutAreaIsEmpty)
{
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(0, 0, 0, 1)));
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(0, 0, -1, 1)));
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(0, 0, std::nan(""), 1)));
    EXPECT_FALSE(NSIsEmptyRect(kRect));
}

TEST(NSGeometry, AnIntegralRectGrowsToWholeEdges)
{
    EXPECT_EQ(NSIntegralRect(NSMakeRect(0.5, -0.5, 1, 1)), NSMakeRect(0, -1, 2, 2));
    EXPECT_EQ(NSIntegralRect(NSMakeRect(0.5, 0.5, 0, 1)), NSZeroRect);
}

TEST(NSGeometry, DividesAtEachEdge)
{
    EXPECT_EQ(divide(kRect, 10, NSMinXEdge).slice, NSMakeRect(10, 20, 10, 40));
    EXPECT_EQ(divide(kRect, 10, NSMinXEdge).remainder, NSMakeRect(20, 20, 20, 40));
    EXPECT_EQ(divide(kRect, 10, NSMaxXEdge).slice, NSMakeRect(30, 20, 10, 40));
    EXPECT_EQ(divide(kRect, 10, NSMaxXEdge).remainder, NSMakeRect(10, 20, 20, 40));
    EXPECT_EQ(divide(kRect, 10, NSMinYEdge).slice, NSMakeRect(10, 20, 30, 10));
    EXPECT_EQ(divide(kRect, 10, NSMinYEdge).remainder, NSMakeRect(10, 30, 30, 30));
    EXPECT_EQ(divide(kRect, 10, NSMaxYEdge).slice, NSMakeRect(10, 50, 30, 10));
    EXPECT_EQ(divide(kRect, 10, NSMaxYEdge).remainder, NSMakeRect(10, 20, 30, 30));
}

TEST(NSGeometry, DividingByLessThanNothingCutsNothing)
{
    EXPECT_EQ(divide(kRect, -5, NSMinXEdge).slice, NSMakeRect(10, 20, 0, 40));
    EXPECT_EQ(divide(kRect, -5, NSMinXEdge).remainder, kRect);
}

TEST(NSGeometry, DividingByMoreThanThereIsCutsAll)
{
    EXPECT_EQ(divide(kRect, 50, NSMinXEdge).slice, kRect);
    EXPECT_EQ(divide(kRect, 50, NSMinXEdge).remainder, NSMakeRect(40, 20, 0, 40));
    EXPECT_EQ(divide(kRect, 50, NSMaxXEdge).remainder, NSMakeRect(10, 20, 0, 40));
}

TEST(NSGeometry, DividingAnEmptyRectGivesZeroRects)
{
    EXPECT_EQ(divide(NSMakeRect(5, 5, 0, 9), 1, NSMinXEdge).slice, NSZeroRect);
    EXPECT_EQ(divide(NSMakeRect(5, 5, 0, 9), 1, NSMinXEdge).remainder, NSZeroRect);
}

TEST(NSGeometry, DividingWithoutAWantedResultWorks)
{
    NSDivideRect(kRect, nullptr, nullptr, 1, NSMaxYEdge);
}

TEST(NSGeometry, RangesIntersectAndUnite)
{
    EXPECT_EQ(NSIntersectionRange({ 2, 5 }, { 4, 9 }), NSMakeRange(4, 3));
    EXPECT_EQ(NSIntersectionRange({ 2, 2 }, { 4, 9 }), NSMakeRange(0, 0));
    EXPECT_EQ(NSUnionRange({ 2, 2 }, { 8, 1 }), NSMakeRange(2, 7));
}

TEST(NSGeometry, WritesNumbersShortly)
{
    EXPECT_EQ(utf8(NSStringFromRect(NSMakeRect(1, -2.5, 1e10, 0.1))), "{{1, -2.5}, {1e+10, 0.1}}");
    EXPECT_EQ(utf8(NSStringFromPoint({ 1.0 / 3, 0 })), "{0.333333, 0}");
    EXPECT_EQ(utf8(NSStringFromSize({ 3, 4 })), "{3, 4}");
    EXPECT_EQ(utf8(NSStringFromRange({ 3, 4 })), "{3, 4}");
}

TEST(NSGeometry, ReadsItsOwnTexts)
{
    EXPECT_EQ(NSRectFromString("{{1, -2.5}, {1e+10, 0.1}}"_ns), NSMakeRect(1, -2.5, 1e10, 0.1));
    EXPECT_EQ(NSPointFromString("{1,2}"_ns), NSMakePoint(1, 2));
    EXPECT_EQ(NSSizeFromString(" { 3 , 4 } "_ns), NSMakeSize(3, 4));
    EXPECT_EQ(NSRangeFromString("{18446744073709551615, 7}"_ns), NSMakeRange(~NSUInteger { 0 }, 7));
}

TEST(NSGeometry, WhatATextDoesNotSayIsZero)
{
    EXPECT_EQ(NSRectFromString("{{1, 2}"_ns), NSMakeRect(1, 2, 0, 0));
    EXPECT_EQ(NSRectFromString("nothing"_ns), NSZeroRect);
    EXPECT_EQ(NSRectFromString(nullptr), NSZeroRect);
}
