// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSBezierPath.h"
#include "appkit/NSFont.h"
#include "foundation/NSArray.h"
#include "support/TextStack.h"

namespace brindle {

using test::TextStack;

namespace {

    constexpr double kLetter = 6.001; // of Liberation Mono 10, rounded up
    constexpr double kPadding = 5;

    Ref<NSDictionary> monospaced()
    {
        return NSDictionary::cls().dictionaryWithObject_forKey(
            NSFont::cls().fontWithName_size("LiberationMono"_ns, 10).get(), NSFontAttributeName);
    }
    double monospacedHeight()
    {
        return make<NSLayoutManager>()->defaultLineHeightForFont(
            NSFont::cls().fontWithName_size("LiberationMono"_ns, 10).get());
    }

    Ref<NSBezierPath> rectangle(double x, double y, double width, double height)
    {
        return NSBezierPath::cls().bezierPathWithRect(NSMakeRect(x, y, width, height));
    }
    void keepOut(const TextStack& stack, NSBezierPath* path)
    {
        stack.container->setExclusionPaths(NSArray::cls().arrayWithObject(path).get());
    }

    /// The container's width that has room for so many letters in a row.
    constexpr double widthFor(double letters) { return letters * kLetter + 2 * kPadding; }

    /// Two stretches, for 9 and 8 letters, 50 points apart and 100 points down.
    struct TwoStretches : TextStack {
        explicit TwoStretches(const std::string& text, NSDictionary* attributes)
            : TextStack(text, kSecond + widthFor(8), test::kUnbounded, attributes)
        {
            keepOut(*this, rectangle(kFirst, 0, 50, 100).get());
        }
        explicit TwoStretches(const std::string& text)
            : TwoStretches(text, monospaced().get())
        {
        }
        NSRect line(NSUInteger index) const
        {
            return manager->lineFragmentRectForGlyphAtIndex_effectiveRange(index, nullptr);
        }
        NSUInteger at(double x, double y) const
        {
            return manager->insertionIndexForPoint_inTextContainer({ x, y }, container.get());
        }

        static constexpr double kFirst = widthFor(9);
        static constexpr double kSecond = kFirst + 50;
    };

    TEST(ExclusionPaths, ARowGoesOnBehindTheArea)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        EXPECT_EQ(stack.lines(), "aaaa bbbb |cccc |dddd");
        EXPECT_TRUE(
            NSEqualRects(stack.line(0), NSMakeRect(0, 0, stack.kFirst, monospacedHeight())));
        EXPECT_EQ(NSMinX(stack.line(10)), stack.kSecond);
        EXPECT_EQ(NSMinY(stack.line(10)), 0);
        EXPECT_EQ(NSMinX(stack.line(15)), 0);
        EXPECT_EQ(NSMinY(stack.line(15)), monospacedHeight());
        EXPECT_NEAR(
            stack.manager->insertionRectForCharacterAtIndex(10).origin.x, stack.kSecond + 5, 1e-9);
    }

    TEST(ExclusionPaths, LinesBelowTheAreaAreWhole)
    {
        const TextStack stack(
            "aa bb cc dd ee ff", widthFor(20), test::kUnbounded, monospaced().get());
        keepOut(stack, rectangle(widthFor(2), 0, 500, monospacedHeight()).get());
        EXPECT_EQ(stack.lines(), "aa |bb cc dd ee ff");
    }

    TEST(ExclusionPaths, AnAreaAcrossPushesTextDown)
    {
        const TextStack stack("aa", 200, test::kUnbounded, monospaced().get());
        keepOut(stack, rectangle(-10, -10, 500, 50).get());
        const double top = stack.used().origin.y;
        EXPECT_GE(top, 40);
        EXPECT_LE(top, 42);
    }

    TEST(ExclusionPaths, ANewParagraphBeginsANewRow)
    {
        const TwoStretches stack("aa\nbb\ncccc cccc dddd");
        EXPECT_EQ(stack.lines(), "aa\n|bb\n|cccc cccc |dddd");
        EXPECT_EQ(NSMinX(stack.line(3)), 0);
        EXPECT_EQ(NSMinY(stack.line(3)), monospacedHeight());
        EXPECT_EQ(NSMinX(stack.line(16)), stack.kSecond);
    }

    TEST(ExclusionPaths, AWordGoesToTheStretchThatHasRoom)
    {
        const TextStack stack("aaaa bb", widthFor(20), test::kUnbounded, monospaced().get());
        keepOut(stack, rectangle(widthFor(3), 0, 20, 30).get());
        EXPECT_EQ(stack.lines(), "aaaa bb");
        EXPECT_EQ(NSMinX(stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(0, nullptr)),
            widthFor(3) + 20);
    }

    TEST(ExclusionPaths, AWordThatNoStretchHasRoomForGoesBelow)
    {
        const TwoStretches stack("aaaaaaaaaaaa b");
        EXPECT_EQ(stack.lines(), "aaaaaaaaaaaa b");
        EXPECT_GE(NSMinY(stack.line(0)), 100 - monospacedHeight());
        EXPECT_EQ(NSWidth(stack.line(0)), stack.kSecond + widthFor(8));
    }

    TEST(ExclusionPaths, RightToLeftTextBeginsInTheStretchAtTheRight)
    {
        const TwoStretches stack("שלום שלום שלום", nullptr);
        ASSERT_FALSE(stack.lines().empty());
        EXPECT_EQ(NSMinX(stack.line(0)), stack.kSecond);
        EXPECT_EQ(NSMinY(stack.line(0)), 0);
    }

    TEST(ExclusionPaths, RoundAreasLeaveMoreRoomBesideTheirEnds)
    {
        std::string text;
        for (int i = 0; i < 60; ++i)
            text += "a ";
        const TextStack stack(text, 200, test::kUnbounded, monospaced().get());
        keepOut(
            stack, NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(60, 0, 80, 80)).get());
        stack.lines();
        const auto roomAt = [&](double y) {
            const NSUInteger index = stack.manager->glyphIndexForPoint_inTextContainer(
                NSMakePoint(10, y), stack.container.get());
            return NSWidth(
                stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(index, nullptr));
        };
        EXPECT_NEAR(roomAt(40), 60, 2);
        EXPECT_GT(roomAt(3), roomAt(40) + 5);
    }

    TEST(ExclusionPaths, TheInsideOfARingIsFree)
    {
        const auto ring = rectangle(0, 0, 200, 100);
        ring->appendBezierPathWithRect(NSMakeRect(60, 0, 80, 100));
        ring->setWindingRule(NSEvenOddWindingRule);
        const TextStack stack("aa", 200, test::kUnbounded, monospaced().get());
        keepOut(stack, ring.get());
        stack.lines();
        const NSRect line
            = stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(0, nullptr);
        EXPECT_NEAR(NSMinX(line), 60, 1e-6);
        EXPECT_NEAR(NSWidth(line), 80, 1e-6);
    }

    TEST(ExclusionPaths, LinesOfARowAreAsHighAsTheHighest)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        stack.storage->addAttribute_value_range(NSFontAttributeName,
            NSFont::cls().fontWithName_size("LiberationMono"_ns, 12).get(), NSMakeRange(11, 1));
        EXPECT_GT(NSHeight(stack.line(10)), monospacedHeight());
        EXPECT_EQ(NSHeight(stack.line(0)), NSHeight(stack.line(10)));
        EXPECT_EQ(NSMinY(stack.line(15)), NSHeight(stack.line(10)));
    }

    TEST(ExclusionPaths, PointsFindTheStretchThatTheyAreIn)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        EXPECT_EQ(stack.at(1, 3), 0u);
        EXPECT_EQ(stack.at(stack.kFirst + 2, 3), 9u) << "nearest to the first";
        EXPECT_EQ(stack.at(stack.kSecond - 2, 3), 10u) << "nearest to the second";
        EXPECT_EQ(stack.at(stack.kSecond + kPadding + 2 * kLetter, 3), 12u);
        EXPECT_EQ(stack.at(1, monospacedHeight() + 3), 15u);
    }

    TEST(ExclusionPaths, SelectionsStayOutOfTheArea)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd eeee");
        stack.lines();
        NSUInteger count = 0;
        const NSRange all = NSMakeRange(0, 24);
        const NSRect* const rects
            = stack.manager
                  ->rectArrayForCharacterRange_withinSelectedCharacterRange_inTextContainer_rectCount(
                      all, all, stack.container.get(), &count);
        ASSERT_EQ(count, 3u);
        for (NSUInteger i = 0; i < count; ++i)
            EXPECT_FALSE(NSIntersectsRect(rects[i], NSMakeRect(stack.kFirst, 0, 50, 100)));
    }

    TEST(ExclusionPaths, RangesOfRectanglesHoldWholeRows)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd eeee");
        stack.lines();
        const NSRange range = stack.manager->glyphRangeForBoundingRect_inTextContainer(
            NSMakeRect(0, 0, 10, 5), stack.container.get());
        EXPECT_EQ(range.location, 0u);
        EXPECT_EQ(range.length, 15u);
    }

    TEST(ExclusionPaths, WhatIsLeftGoesIntoTheNextContainer)
    {
        TwoStretches stack("aaaa bbbb cccc dddd");
        stack.container->setContainerSize({ stack.kSecond + widthFor(8), monospacedHeight() + 2 });
        const auto next = alloc<NSTextContainer>()->initWithContainerSize({ 500, 500 });
        stack.manager->addTextContainer(next.get());
        const NSRange range = stack.manager->glyphRangeForTextContainer(next.get());
        EXPECT_EQ(range.location, 15u);
        EXPECT_EQ(range.length, 4u);
    }

    TEST(ExclusionPaths, LinesAreCountedByRows)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        stack.container->setMaximumNumberOfLines(1);
        EXPECT_EQ(stack.lines(), "aaaa bbbb |cccc ");
    }

    TEST(ExclusionPaths, EditsLayTheTextOutAnew)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        stack.lines();
        stack.storage->replaceCharactersInRange_withString(NSMakeRange(0, 5), ""_ns);
        EXPECT_EQ(stack.lines(), "bbbb cccc |dddd");
    }

    TEST(ExclusionPaths, AreCopiedAndMayBeTakenAway)
    {
        const TwoStretches stack("aaaa bbbb cccc dddd");
        const auto path = rectangle(0, 0, 0, 0);
        keepOut(stack, path.get());
        path->appendBezierPathWithRect(NSMakeRect(0, 0, 500, 500));
        EXPECT_EQ(NSMinY(stack.line(0)), 0);
        EXPECT_EQ(stack.container->exclusionPaths()->count(), 1u);
        stack.container->setExclusionPaths(nullptr);
        EXPECT_EQ(stack.container->exclusionPaths()->count(), 0u);
        EXPECT_TRUE(stack.container->isSimpleRectangularTextContainer());
        EXPECT_EQ(stack.lines(), "aaaa bbbb cccc dddd");
    }

    TEST(ExclusionPaths, ContainersSayWhereTextMayStand)
    {
        const TwoStretches stack("");
        EXPECT_FALSE(stack.container->isSimpleRectangularTextContainer());
        stack.container->setContainerSize({ 300, 300 });
        EXPECT_TRUE(stack.container->containsPoint({ 5, 5 }));
        EXPECT_FALSE(stack.container->containsPoint({ stack.kFirst + 5, 5 }));
        EXPECT_FALSE(stack.container->containsPoint({ 400, 5 }));
    }

    TEST(ExclusionPaths, WhatIsNoPathIsPassedOver)
    {
        const TextStack stack("aa", 200, test::kUnbounded, monospaced().get());
        stack.container->setExclusionPaths(NSArray::cls().arrayWithObject("path"_ns).get());
        EXPECT_EQ(stack.container->exclusionPaths()->count(), 0u);
        EXPECT_EQ(stack.lines(), "aa");
    }

    TEST(ExclusionPaths, TheExtraLineKeepsOutToo)
    {
        const TextStack stack("aa\n", 200, test::kUnbounded, monospaced().get());
        keepOut(stack, rectangle(0, monospacedHeight(), 60, 100).get());
        stack.lines();
        EXPECT_EQ(NSMinX(stack.manager->extraLineFragmentRect()), 60);
    }

    TEST(ExclusionPaths, AreasWithoutEndAndPlacesThatAreNoNumbersDoNoHarm)
    {
        std::string text;
        for (int i = 0; i < 100; ++i)
            text += "word ";
        const TextStack stack(text, 200, test::kUnbounded, monospaced().get());
        keepOut(stack, rectangle(30, 0, 500, 1e30).get());
        EXPECT_FALSE(stack.lines().empty());
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const auto strange = make<NSBezierPath>();
        strange->moveToPoint({ nan, 0 });
        strange->lineToPoint({ 10, nan });
        strange->lineToPoint({ 10, 300 });
        keepOut(stack, strange.get());
        EXPECT_EQ(
            NSMinY(stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(0, nullptr)), 0);
    }

}

}
