// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"
#include "support/TextStack.h"

namespace brindle {

using test::lineHeight;
using test::TextStack;
using test::widthOf;

TEST(NSLayoutManager, CaretsStandBetweenLettersAndOnTheExtraLine)
{
    const TextStack stack("ab\n");
    const auto caret
        = [&](NSUInteger index) { return stack.manager->insertionRectForCharacterAtIndex(index); };
    EXPECT_NEAR(caret(0).origin.x, 5, 1e-9);
    EXPECT_NEAR(caret(1).origin.x, 5 + widthOf("a"_ns), 1e-6);
    EXPECT_NEAR(caret(2).origin.x, 5 + widthOf("ab"_ns), 1e-6);
    EXPECT_NEAR(caret(3).origin.x, 5, 1e-9);
    EXPECT_EQ(caret(3).origin.y, lineHeight());
    EXPECT_EQ(caret(3).size.height, lineHeight());
    EXPECT_EQ(caret(99).origin.y, lineHeight());
}

TEST(NSLayoutManager, PointsFindTheNearestCaret)
{
    const TextStack stack("mm\nmm");
    const double m = widthOf("m"_ns);
    const auto at = [&](double x, double y) {
        return stack.manager->insertionIndexForPoint_inTextContainer(
            NSMakePoint(x, y), stack.container.get());
    };
    EXPECT_EQ(at(5 + m * 0.4, 3), 0u);
    EXPECT_EQ(at(5 + m * 0.6, 3), 1u);
    EXPECT_EQ(at(500, 3), 2u);
    EXPECT_EQ(at(-50, lineHeight() + 3), 3u);
    EXPECT_EQ(at(500, 5000), 5u);
    EXPECT_EQ(at(500, -5000), 2u);
}

TEST(NSLayoutManager, CaretsStayOffTheMiddleOfACharacter)
{
    const TextStack stack("e\u0301😀");
    const auto at = [&](double x) {
        return stack.manager->insertionIndexForPoint_inTextContainer(
            NSMakePoint(x, 3), stack.container.get());
    };
    for (double x = 0; x < 60; x += 0.5) {
        const NSUInteger index = at(x);
        EXPECT_TRUE(index == 0 || index == 2 || index == 4) << x << " " << index;
    }
}

TEST(NSLayoutManager, PointBehindAWrappedLineStaysOnIt)
{
    const TextStack stack("one two", widthOf("one"_ns) + 11);
    EXPECT_EQ(stack.manager->insertionIndexForPoint_inTextContainer(
                  NSMakePoint(500, 3), stack.container.get()),
        3u);
}

TEST(NSLayoutManager, PointsFindTheUnitUnderThem)
{
    const TextStack stack("mm");
    const double m = widthOf("m"_ns);
    CGFloat fraction = 9;
    EXPECT_EQ(stack.manager->glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(
                  NSMakePoint(5 + m * 1.75, 3), stack.container.get(), &fraction),
        1u);
    EXPECT_NEAR(fraction, 0.75, 1e-6);
    EXPECT_EQ(stack.manager->glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(
                  NSMakePoint(900, 3), stack.container.get(), &fraction),
        1u);
    EXPECT_EQ(fraction, 1);
}

TEST(NSLayoutManager, SelectionCoversLinesItLeavesToTheirEnd)
{
    const TextStack stack("mm\nmm\nmm", 200);
    NSUInteger count = 0;
    const NSRange range = NSMakeRange(1, 6);
    const NSRect* rects
        = stack.manager
              ->rectArrayForCharacterRange_withinSelectedCharacterRange_inTextContainer_rectCount(
                  range, range, stack.container.get(), &count);
    double area = 0;
    for (NSUInteger i = 0; i < count; ++i)
        area += rects[i].size.width;
    const double m = widthOf("m"_ns);
    EXPECT_NEAR(area, (195 - m) + 200 + m, 1e-6);
}

TEST(NSLayoutManager, RectanglesOfLettersAloneEndWithThem)
{
    const TextStack stack("mm\nmm", 200);
    NSUInteger count = 0;
    stack.manager
        ->rectArrayForCharacterRange_withinSelectedCharacterRange_inTextContainer_rectCount(
            NSMakeRange(1, 4), NSMakeRange(NSNotFound, 0), stack.container.get(), &count);
    EXPECT_EQ(count, 2u);
    const NSRect bounds = stack.manager->boundingRectForGlyphRange_inTextContainer(
        NSMakeRange(1, 1), stack.container.get());
    EXPECT_NEAR(bounds.origin.x, 5 + widthOf("m"_ns), 1e-6);
    EXPECT_NEAR(bounds.size.width, widthOf("m"_ns), 1e-6);
}

TEST(NSLayoutManager, RectangleFindsTheLinesItTouches)
{
    const TextStack stack("a\nb\nc\nd");
    const double h = lineHeight();
    const auto touched = [&](double y, double height) {
        return stack.manager->glyphRangeForBoundingRect_inTextContainer(
            NSMakeRect(0, y, 10, height), stack.container.get());
    };
    EXPECT_EQ(touched(h + 1, h), NSMakeRange(2, 4));
    EXPECT_EQ(touched(h, h), NSMakeRange(2, 2));
    EXPECT_EQ(touched(100 * h, h).length, 0u);
}

TEST(NSLayoutManager, IndexBehindTheTextRaises)
{
    const TextStack stack("ab");
    EXPECT_EQ(raisedBy([&] {
        stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(2, nullptr);
    }),
        "NSRangeException: *** -[NSLayoutManager lineFragmentRectForGlyphAtIndex:effectiveRange:]: "
        "index 2 "
        "is beyond the text");
}

}
