// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include "appkit/NSLayoutManager.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSMutableAttributedString.h"
#include "foundation/NSMutableString.h"
#include "support/LogSink.h"
#include "support/Strings.h"
#include "text/NSAttributedString+Geometrics.h"
#include "text/NSAttributedString+SizeDown.h"
#include "text/NSFont+FontHeight.h"
#include "text/NSString+Geometrics.h"

namespace brindle {

namespace {

    constexpr float kUnbounded = std::numeric_limits<float>::max();
    constexpr float kPadding = 5;

    Ref<NSFont> font() { return NSFont::cls().systemFontOfSize(13); }
    Ref<NSDictionary> inFont()
    {
        return NSDictionary::cls().dictionaryWithObject_forKey(font().get(), NSFontAttributeName);
    }
    Ref<NSAttributedString> attributed(NSString* text)
    {
        return alloc<NSAttributedString>()->initWithString_attributes(text, inFont().get());
    }
    double lineHeight() { return make<NSLayoutManager>()->defaultLineHeightForFont(font().get()); }
    double widthOf(NSString* text) { return sizeWithAttributes(text, inFont().get()).width; }

}

TEST(Geometrics, EmptyTextMeasuresZeroWhateverTheBox)
{
    for (const float length : { 0.0f, 1.0f, 200.0f, -7.0f, kUnbounded }) {
        EXPECT_TRUE(
            NSEqualSizes(sizeForWidth_height(attributed(""_ns), length, length), NSZeroSize));
        EXPECT_TRUE(NSEqualSizes(
            sizeForWidth_height_font(""_ns, length, length, font().get()), NSZeroSize));
    }
}

TEST(Geometrics, TextMeasuresItsWidthAndThePaddingAtBothEnds)
{
    const NSSize size = sizeForWidth_height(attributed("Lamp"_ns), kUnbounded, kUnbounded);
    EXPECT_NEAR(size.width, widthOf("Lamp"_ns) + 2 * kPadding, 1e-9);
    EXPECT_EQ(size.height, lineHeight());
}

TEST(Geometrics, TextWrapsTenPointsBeforeTheWidth)
{
    const auto whole = static_cast<float>(widthOf("one two"_ns)) + 2 * kPadding;
    EXPECT_EQ(
        heightForWidth(attributed("one two"_ns), whole + 0.1f), static_cast<float>(lineHeight()));
    EXPECT_EQ(heightForWidth(attributed("one two"_ns), whole - 0.1f),
        static_cast<float>(2 * lineHeight()));
}

TEST(Geometrics, MeasuredWidthHoldsTheTextAgain)
{
    const float width = widthForHeight(attributed("one two three"_ns), kUnbounded);
    EXPECT_EQ(
        heightForWidth(attributed("one two three"_ns), width), static_cast<float>(lineHeight()));
}

TEST(Geometrics, LineBreakAtTheEndAddsNoHeight)
{
    EXPECT_EQ(
        heightForWidth(attributed("Lamp\n"_ns), 200), heightForWidth(attributed("Lamp"_ns), 200));
    EXPECT_EQ(heightForWidth_font("Lamp\r\n"_ns, 200, font().get()),
        heightForWidth_font("Lamp"_ns, 200, font().get()));
}

TEST(Geometrics, OnlyTheLastOfSeveralLineBreaksAddsNoHeight)
{
    EXPECT_EQ(heightForWidth(attributed("Lamp\n\n"_ns), 200), static_cast<float>(2 * lineHeight()));
}

TEST(Geometrics, LineBreakAloneIsOneLineHigh)
{
    const NSSize size = sizeForWidth_height(attributed("\n"_ns), 200, kUnbounded);
    EXPECT_EQ(size.height, lineHeight());
    EXPECT_EQ(size.width, 2 * kPadding);
}

TEST(Geometrics, HeightLimitsTheLinesThatCount)
{
    const auto height = static_cast<float>(2.5 * lineHeight());
    const NSSize size = sizeForWidth_height(attributed("a\nb\nmmmm"_ns), kUnbounded, height);
    EXPECT_EQ(size.height, 2 * lineHeight());
    EXPECT_NEAR(size.width, std::max(widthOf("a"_ns), widthOf("b"_ns)) + 2 * kPadding, 1e-9);
}

TEST(Geometrics, WidthForHeightLeavesTheWidthUnbounded)
{
    EXPECT_EQ(widthForHeight(attributed("one two"_ns), 500),
        static_cast<float>(widthOf("one two"_ns) + 2 * kPadding));
}

TEST(Geometrics, PlainTextMeasuresAsAttributedTextDoes)
{
    NSString* const text = "The lamp stands near the window"_ns;
    const NSSize expected = sizeForWidth_height(attributed(text), 100, 300);
    EXPECT_TRUE(
        NSEqualSizes(sizeForWidth_height_attributes(text, 100, 300, inFont().get()), expected));
    EXPECT_TRUE(NSEqualSizes(sizeForWidth_height_font(text, 100, 300, font().get()), expected));
    EXPECT_EQ(heightForWidth_attributes(text, 100, inFont().get()),
        heightForWidth(attributed(text), 100));
    EXPECT_EQ(
        widthForHeight_attributes(text, 30, inFont().get()), widthForHeight(attributed(text), 30));
    EXPECT_EQ(heightForWidth_font(text, 100, font().get()), heightForWidth(attributed(text), 100));
    EXPECT_EQ(widthForHeight_font(text, 30, font().get()), widthForHeight(attributed(text), 30));
}

TEST(Geometrics, NilAttributesMeasureInHelvetica12)
{
    const Ref<NSFont> helvetica = NSFont::cls().fontWithName_size("Helvetica"_ns, 12);
    EXPECT_TRUE(NSEqualSizes(sizeForWidth_height_attributes("Lamp"_ns, 100, 100, nullptr),
        sizeForWidth_height_font("Lamp"_ns, 100, 100, helvetica.get())));
}

TEST(Geometrics, NilFontLogsAndMeasuresZero)
{
    const test::LogSink log;
    EXPECT_TRUE(NSEqualSizes(sizeForWidth_height_font("Lamp"_ns, 100, 100, nullptr), NSZeroSize));
    EXPECT_EQ(
        log.text(), "[NSString sizeForWidth:height:font:]: Internal Error 561-3810: Nil font\n");
}

TEST(Geometrics, NilFontOfOneDimensionNamesTheOperationThatFoundIt)
{
    const test::LogSink log;
    const Ref<NSMutableString> text = make<NSMutableString>();
    EXPECT_EQ(heightForWidth_font(text, 100, nullptr), 0);
    EXPECT_EQ(widthForHeight_font(text, 100, nullptr), 0);
    const std::string line
        = "[NSMutableString sizeForWidth:height:font:]: Internal Error 561-3810: Nil font\n";
    EXPECT_EQ(log.text(), line + line);
}

TEST(Geometrics, ChangingTextMeasuresAsItIsNow)
{
    const auto text = cast<NSMutableAttributedString>(attributed("Lamp"_ns)->mutableCopy());
    text->deleteCharactersInRange(NSMakeRange(0, 3));
    EXPECT_EQ(widthForHeight(text, kUnbounded), static_cast<float>(widthOf("p"_ns) + 2 * kPadding));
}

TEST(FontHeight, IsOnePointMoreThanTheDefaultLineHeight)
{
    for (const double size : { 9.0, 11.0, 12.0, 13.0, 17.3, 48.0 }) {
        const Ref<NSFont> some = NSFont::cls().boldSystemFontOfSize(size);
        const double height = make<NSLayoutManager>()->defaultLineHeightForFont(some.get());
        EXPECT_EQ(fontHeight(some), height + 1.0);
        const auto text = alloc<NSAttributedString>()->initWithString_attributes("Lamp"_ns,
            NSDictionary::cls().dictionaryWithObject_forKey(some.get(), NSFontAttributeName).get());
        EXPECT_EQ(heightForWidth(text, 500), static_cast<float>(height));
    }
}

TEST(SizeDown, AnswersZeroAndChangesNothing)
{
    const auto text = cast<NSMutableAttributedString>(attributed("Lamp"_ns)->mutableCopy());
    NSRect bounds = NSMakeRect(1, 2, 3, 4);
    EXPECT_EQ(sizeDownFontToFitIn_textBounds(text, NSMakeSize(1, 1), &bounds), 0);
    EXPECT_TRUE(text->isEqual(attributed("Lamp"_ns).get()));
    EXPECT_TRUE(NSEqualRects(bounds, NSMakeRect(1, 2, 3, 4)));
    EXPECT_EQ(sizeDownFontToFitIn_textBounds(text, NSZeroSize, nullptr), 0);
}

}
