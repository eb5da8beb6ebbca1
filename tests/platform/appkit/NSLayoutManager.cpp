// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"

#include <cmath>

#include "support/TextStack.h"

namespace brindle {

using test::kUnbounded;
using test::lineHeight;
using test::TextStack;
using test::widthOf;

TEST(NSLayoutManager, PaddingCountsAtBothEndsOfTheUsedRectangle)
{
    const TextStack stack("Lamp");
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 10, 1e-9);
    EXPECT_EQ(stack.used().origin.x, 0);
}

TEST(NSLayoutManager, LinesWrapTenPointsBeforeTheWidth)
{
    const double width = widthOf("one two"_ns);
    EXPECT_EQ(TextStack("one two", width + 10).lines(), "one two");
    EXPECT_EQ(TextStack("one two", width + 9.5).lines(), "one |two");
}

TEST(NSLayoutManager, WidthThatWentThroughSinglePrecisionStillHoldsItsText)
{
    const auto width = static_cast<float>(widthOf("one two three"_ns) + 10);
    EXPECT_EQ(TextStack("one two three", width).lines(), "one two three");
}

TEST(NSLayoutManager, OneLineIsAsHighAsTheDefaultLineHeight)
{
    EXPECT_EQ(TextStack("Lamp").used().size.height, lineHeight());
    EXPECT_EQ(TextStack("Lamp\nlight").used().size.height, 2 * lineHeight());
}

TEST(NSLayoutManager, DefaultLineHeightRoundsEachMeasure)
{
    const Ref<NSFont> font = NSFont::cls().systemFontOfSize(17.3);
    EXPECT_EQ(make<NSLayoutManager>()->defaultLineHeightForFont(font.get()),
        std::round(font->ascender()) + std::round(-font->descender())
            + std::round(font->leading()));
}

TEST(NSLayoutManager, DefaultLineHeightOfNilIsZero)
{
    EXPECT_EQ(make<NSLayoutManager>()->defaultLineHeightForFont(nullptr), 0);
}

TEST(NSLayoutManager, TrailingBreakAddsAnExtraLine)
{
    const TextStack stack("Lamp\n");
    EXPECT_EQ(stack.used().size.height, 2 * lineHeight());
    const NSRect extra = stack.manager->extraLineFragmentRect();
    EXPECT_EQ(extra.origin.y, lineHeight());
    EXPECT_EQ(extra.size.height, lineHeight());
    EXPECT_EQ(stack.manager->extraLineFragmentTextContainer(), stack.container.get());
}

TEST(NSLayoutManager, TextWithoutTrailingBreakHasNoExtraLine)
{
    const TextStack stack("Lamp");
    EXPECT_TRUE(NSEqualRects(stack.manager->extraLineFragmentRect(), NSZeroRect));
    EXPECT_EQ(stack.manager->extraLineFragmentTextContainer(), nullptr);
}

TEST(NSLayoutManager, EmptyTextIsOneExtraLine)
{
    const TextStack stack("");
    EXPECT_EQ(stack.manager->extraLineFragmentRect().size.height, lineHeight());
    EXPECT_TRUE(NSEqualSizes(stack.used().size, NSMakeSize(10, lineHeight())));
}

TEST(NSLayoutManager, OnlyLinesThatFitTheHeightAreLaidOut)
{
    const TextStack stack("a\nb\nc", kUnbounded, 2.5 * lineHeight());
    EXPECT_EQ(stack.manager->glyphRangeForTextContainer(stack.container.get()), NSMakeRange(0, 4));
    EXPECT_EQ(stack.used().size.height, 2 * lineHeight());
}

TEST(NSLayoutManager, WhatFindsNoPlaceGoesIntoTheNextContainer)
{
    const TextStack stack("a\nb\nc", kUnbounded, 2.5 * lineHeight());
    const Ref<NSTextContainer> next = alloc<NSTextContainer>()->initWithContainerSize({ 100, 100 });
    stack.manager->addTextContainer(next.get());
    EXPECT_EQ(stack.manager->glyphRangeForTextContainer(next.get()), NSMakeRange(4, 1));
    EXPECT_EQ(stack.manager->textContainerForGlyphAtIndex_effectiveRange(4, nullptr), next.get());
    EXPECT_EQ(
        stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(4, nullptr).origin.y, 0);
}

TEST(NSLayoutManager, ParagraphGoesOnInANarrowerContainer)
{
    const double wide = widthOf("one two"_ns) + 11;
    const TextStack stack("one two three four", wide, lineHeight());
    const Ref<NSTextContainer> next
        = alloc<NSTextContainer>()->initWithContainerSize({ widthOf("three"_ns) + 11, 1000 });
    stack.manager->addTextContainer(next.get());
    EXPECT_EQ(stack.lines(), "one two |three |four");
}

TEST(NSLayoutManager, WordWiderThanTheLineBreaksBetweenLetters)
{
    const TextStack stack("a mmmmmm", widthOf("mmm"_ns) + 10);
    EXPECT_EQ(stack.lines(), "a |mmm|mmm");
}

TEST(NSLayoutManager, NarrowestContainerTakesALetterALine)
{
    EXPECT_EQ(TextStack("abc", 1).lines(), "a|b|c");
}

TEST(NSLayoutManager, ContainerWithoutWidthIsUnbounded)
{
    EXPECT_EQ(TextStack("one two three", 0).lines(), "one two three");
    EXPECT_EQ(TextStack("one two three", std::nan("")).lines(), "one two three");
}

TEST(NSLayoutManager, HyphensBetweenLettersAllowABreak)
{
    EXPECT_EQ(TextStack("well-off", widthOf("well-"_ns) + 11).lines(), "well-|off");
}

TEST(NSLayoutManager, NumbersAndSignsStayTogether)
{
    EXPECT_EQ(TextStack("cost -5.2", widthOf("cost -5."_ns) + 10).lines(), "cost |-5.2");
}

TEST(NSLayoutManager, NoBreakSpaceDoesNotBreak)
{
    EXPECT_EQ(TextStack("a b\u00A0c", widthOf("a b"_ns) + 12).lines(), "a |b\u00A0c");
}

TEST(NSLayoutManager, IdeographsBreakAnywhereButBeforeClosingSigns)
{
    const double one = widthOf("漢"_ns);
    EXPECT_EQ(TextStack("漢字漢。", 3 * one + 10.5).lines(), "漢字|漢。");
}

TEST(NSLayoutManager, SpacesHangOverTheEndOfAWrappedLine)
{
    const TextStack stack("one     two", widthOf("one"_ns) + 10);
    EXPECT_EQ(stack.lines(), "one     |two");
    EXPECT_NEAR(stack.used().size.width, std::max(widthOf("one"_ns), widthOf("two"_ns)) + 10, 1e-9);
}

TEST(NSLayoutManager, EveryKindOfLineBreakEndsALine)
{
    EXPECT_EQ(TextStack("a\nb\rc\r\nd\u2028e\u2029f").lines(), "a\n|b\r|c\r\n|d\u2028|e\u2029|f");
}

}
