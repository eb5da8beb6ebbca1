// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "support/Strings.h"
#include "text/NSAttributedString+Geometrics.h"
#include "viewkit/NSTextField+GWExtensions.h"
#include "viewkit/NSTextField+NSTableCellView.h"

namespace brindle {
namespace {

    Ref<NSTextField> fieldWith(NSString* text)
    {
        auto field
            = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(NSMakeRect(3, 4, 100, 30)));
        field->setStringValue(text);
        return field;
    }
    double widthOf(const Ref<NSTextField>& field)
    {
        const auto attributes
            = field->attributedStringValue()->attributesAtIndex_effectiveRange(0, nullptr);
        return sizeWithAttributes(field->stringValue(), attributes.get()).width;
    }

    TEST(TextFieldSizes, AWideTextGetsTenPointsMore)
    {
        const Ref<NSTextField> field = fieldWith("a rather long text"_ns);
        sizeToFitNewWidth(*field);
        EXPECT_EQ(field->frame(), NSMakeRect(3, 4, widthOf(field) + 10, 30));
        EXPECT_GT(field->frame().size.width, 60);
        EXPECT_TRUE(field->drawsBackground());
    }

    TEST(TextFieldSizes, ANarrowTextGetsTheLeastWidth)
    {
        const Ref<NSTextField> field = fieldWith("i"_ns);
        ASSERT_LT(widthOf(field), 12);
        sizeToFitNewWidth(*field);
        EXPECT_EQ(field->frame().size, NSMakeSize(22, 30));
        EXPECT_TRUE(field->drawsBackground());
    }

    TEST(TextFieldSizes, AnEmptyFieldHasTheLeastWidthAndNoGround)
    {
        const Ref<NSTextField> field = fieldWith(""_ns);
        field->setDrawsBackground(true);
        sizeToFitNewWidth(*field);
        EXPECT_EQ(field->frame().size, NSMakeSize(22, 30));
        EXPECT_FALSE(field->drawsBackground());
    }

    TEST(TextFieldSizes, TheHeightIsThatOfTheTextAtTheWidth)
    {
        const Ref<NSTextField> field
            = fieldWith("several words that do not fit into one line of this width"_ns);
        field->cell()->setLineBreakMode(NSLineBreakByWordWrapping);
        const float wanted = heightForWidth(field->attributedStringValue(), 100);
        sizeHeightToFitWidth(*field);
        EXPECT_EQ(field->frame(), NSMakeRect(3, 4, 100, static_cast<double>(wanted)));
        EXPECT_GT(wanted, 40);
    }

    TEST(TextFieldSizes, TheHeightOfAnEmptyFieldIsZero)
    {
        const Ref<NSTextField> field = fieldWith(""_ns);
        sizeHeightToFitWidth(*field);
        EXPECT_EQ(field->frame().size.height, 0);
    }

    TEST(TextFieldCells, TheBackgroundStyleIsThatOfTheCell)
    {
        const Ref<NSTextField> field = fieldWith("text"_ns);
        EXPECT_EQ(textFieldCell(*field), field->cell());
        setBackgroundStyle(*field, NSBackgroundStyleDark);
        EXPECT_EQ(field->cell()->backgroundStyle(), NSBackgroundStyleDark);
        EXPECT_EQ(backgroundStyle(*field), NSBackgroundStyleDark);
    }

    TEST(TextFieldCells, WithoutACellTheStyleIsLight)
    {
        const Ref<NSTextField> field = fieldWith("text"_ns);
        field->setCell(nullptr);
        EXPECT_EQ(textFieldCell(*field), nullptr);
        EXPECT_EQ(backgroundStyle(*field), NSBackgroundStyleLight);
        EXPECT_NO_THROW(setBackgroundStyle(*field, NSBackgroundStyleDark));
    }

}
}
