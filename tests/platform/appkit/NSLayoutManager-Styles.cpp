// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextTab.h"
#include "foundation/NSArray.h"
#include "foundation/NSCharacterSet.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "support/TextStack.h"

namespace brindle {

using test::kUnbounded;
using test::lineHeight;
using test::styled;
using test::TextStack;
using test::widthOf;

TEST(NSLayoutManager, CharacterWrappingFillsLines)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setLineBreakMode(NSLineBreakByCharWrapping); });
    EXPECT_EQ(TextStack("mm mm", widthOf("mm m"_ns) + 10, kUnbounded, attributes.get()).lines(),
        "mm m|m");
}

TEST(NSLayoutManager, TruncatingModesKeepOneLine)
{
    for (const NSLineBreakMode mode : { NSLineBreakByClipping, NSLineBreakByTruncatingHead,
             NSLineBreakByTruncatingTail, NSLineBreakByTruncatingMiddle }) {
        const auto attributes
            = styled([mode](NSMutableParagraphStyle& s) { s.setLineBreakMode(mode); });
        const TextStack stack("one two three four", 60, kUnbounded, attributes.get());
        EXPECT_EQ(stack.lines(), "one two three four");
        EXPECT_EQ(stack.used().size.width, 60);
    }
}

TEST(NSLayoutManager, AlignmentMovesLinesInTheirRoom)
{
    const double width = widthOf("Lamp"_ns);
    const auto startWith = [](NSTextAlignment alignment) {
        const auto attributes
            = styled([=](NSMutableParagraphStyle& s) { s.setAlignment(alignment); });
        return TextStack("Lamp", 200, kUnbounded, attributes.get())
            .manager->locationForGlyphAtIndex(0)
            .x;
    };
    EXPECT_NEAR(startWith(NSTextAlignmentLeft), 5, 1e-9);
    EXPECT_NEAR(startWith(NSTextAlignmentRight), 195 - width, 1e-9);
    EXPECT_NEAR(startWith(NSTextAlignmentCenter), 100 - width / 2, 1e-9);
    EXPECT_NEAR(startWith(NSTextAlignmentNatural), 5, 1e-9);
}

TEST(NSLayoutManager, NaturalTextFromTheRightStandsAtTheRight)
{
    const TextStack stack("שלום", 200);
    EXPECT_NEAR(NSMaxX(stack.used()), 200, 1e-9);
    EXPECT_NEAR(stack.manager->insertionRectForCharacterAtIndex(0).origin.x, 195, 1e-6);
}

TEST(NSLayoutManager, AlignmentInAnUnboundedContainerStartsAtItsEdge)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setAlignment(NSTextAlignmentRight); });
    const TextStack stack("Lamp", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 10, 1e-9);
    EXPECT_EQ(stack.used().origin.x, 0);
}

TEST(NSLayoutManager, JustifiedLinesFillTheirRoomButTheLast)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setAlignment(NSTextAlignmentJustified); });
    const TextStack stack(
        "one two three", widthOf("one two"_ns) + 30, kUnbounded, attributes.get());
    const Ref<NSTextContainer>& container = stack.container;
    EXPECT_EQ(stack.lines(), "one two |three");
    EXPECT_NEAR(NSMaxX(stack.manager->boundingRectForGlyphRange_inTextContainer(
                    NSMakeRange(4, 3), container.get())),
        widthOf("one two"_ns) + 25, 1e-6);
    EXPECT_NEAR(NSMinX(stack.manager->boundingRectForGlyphRange_inTextContainer(
                    NSMakeRange(8, 5), container.get())),
        5, 1e-9);
}

TEST(NSLayoutManager, IndentsMoveLinesAndTakeTheirRoom)
{
    const auto attributes = styled([](NSMutableParagraphStyle& s) {
        s.setFirstLineHeadIndent(20);
        s.setHeadIndent(8);
        s.setTailIndent(-6);
    });
    const TextStack stack("one two", widthOf("one"_ns) + 10 + 20 + 6, kUnbounded, attributes.get());
    EXPECT_EQ(stack.lines(), "one |two");
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(0).x, 25, 1e-9);
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(4).x, 13, 1e-9);
}

TEST(NSLayoutManager, SpacingStandsBetweenLinesAndParagraphsOnly)
{
    const auto attributes = styled([](NSMutableParagraphStyle& s) {
        s.setLineSpacing(3);
        s.setParagraphSpacing(7);
        s.setParagraphSpacingBefore(2);
    });
    const TextStack stack("one two\nx", widthOf("one"_ns) + 10.5, kUnbounded, attributes.get());
    EXPECT_EQ(stack.lines(), "one |two\n|x");
    EXPECT_EQ(stack.used().size.height, 3 * lineHeight() + 3 + 7 + 2);
}

TEST(NSLayoutManager, LineHeightStaysBetweenItsBounds)
{
    const auto heightWith = [](auto change) {
        return TextStack("x", kUnbounded, kUnbounded, styled(change).get()).used().size.height;
    };
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setLineHeightMultiple(2); }),
        2 * lineHeight());
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setMinimumLineHeight(40); }), 40);
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setMaximumLineHeight(9); }), 9);
}

TEST(NSLayoutManager, TabsLeadToTheNextStop)
{
    const TextStack stack("a\tb\tc");
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(2).x, 5 + 28, 1e-6);
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(4).x, 5 + 56, 1e-6);
    EXPECT_NEAR(stack.used().size.width, 10 + 56 + widthOf("c"_ns), 1e-6);
}

TEST(NSLayoutManager, RightTabEndsItsTextAtTheStop)
{
    const auto attributes = styled([](NSMutableParagraphStyle& s) {
        const Ref<NSTextTab> tab
            = alloc<NSTextTab>()->initWithType_location(NSRightTabStopType, 120);
        s.setTabStops(NSArray::cls().arrayWithObject(tab.get()).get());
    });
    const TextStack stack("a\tend", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(NSMaxX(stack.used()), 10 + 120, 1e-6);
}

namespace {

    /// Answers the attributes of a style with one stop, at 120, whose column ends at these characters.
    Ref<NSDictionary> withColumnsEndingAt(NSString* letters)
    {
        const Ref<NSCharacterSet> ends
            = NSCharacterSet::cls().characterSetWithCharactersInString(letters);
        const auto options = NSDictionary::cls().dictionaryWithObject_forKey(
            ends.get(), NSTabColumnTerminatorsAttributeName);
        const auto tab = alloc<NSTextTab>()->initWithTextAlignment_location_options(
            NSTextAlignmentRight, 120, options.get());
        return styled([&](NSMutableParagraphStyle& s) {
            s.setTabStops(NSArray::cls().arrayWithObject(tab.get()).get());
        });
    }
    double placeOf(std::size_t letter, const char* text, NSDictionary* attributes)
    {
        const TextStack stack(text, kUnbounded, kUnbounded, attributes);
        return stack.manager->locationForGlyphAtIndex(letter).x - 5;
    }

}

TEST(NSLayoutManager, DecimalTabStandsWithItsSeparatorAtTheStop)
{
    const auto attributes = withColumnsEndingAt("."_ns);
    EXPECT_NEAR(placeOf(4, "a\t24.50", attributes.get()), 120, 1e-6);
    EXPECT_NEAR(placeOf(5, "a\t108.125", attributes.get()), 120, 1e-6);
    EXPECT_NEAR(placeOf(2, "a\t.5", attributes.get()), 120, 1e-6);
}

TEST(NSLayoutManager, DecimalTabEndsNumbersWithoutASeparatorAtTheStop)
{
    const auto attributes = withColumnsEndingAt("."_ns);
    EXPECT_NEAR(placeOf(5, "a\t108\tb.", attributes.get()), 120, 1e-6);
    EXPECT_NEAR(placeOf(2, "a\t108", attributes.get()), 120 - widthOf("108"_ns), 1e-6);
}

TEST(NSLayoutManager, FirstOfSeveralCharactersEndsTheColumn)
{
    const auto attributes = withColumnsEndingAt(",;"_ns);
    EXPECT_NEAR(placeOf(4, "a\t24;50,5", attributes.get()), 120, 1e-6);
}

TEST(NSLayoutManager, TextWithADecimalTabIsAsWideAsItIsDrawn)
{
    const auto attributes = withColumnsEndingAt("."_ns);
    const TextStack stack("a\t24.50", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.used().size.width, 10 + 120 + widthOf(".50"_ns), 1e-3);
    EXPECT_NEAR(stack.manager->insertionRectForCharacterAtIndex(4).origin.x, 125, 1e-6);
}

TEST(NSLayoutManager, DecimalTabCountsTheKerningOfItsColumn)
{
    const auto attributes = cast<NSMutableDictionary>(withColumnsEndingAt("."_ns)->mutableCopy());
    attributes->setObject_forKey(NSNumber::cls().numberWithDouble(3).get(), NSKernAttributeName);
    const TextStack stack("a\t24.50", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(4).x, 125, 1e-6);
    EXPECT_NEAR(stack.used().size.width, 10 + 120 + widthOf(".50"_ns) + 9, 1e-3);
}

TEST(NSLayoutManager, KerningStandsBehindEveryCharacter)
{
    const Ref<NSNumber> kern = NSNumber::cls().numberWithDouble(3);
    const auto attributes
        = NSDictionary::cls().dictionaryWithObject_forKey(kern.get(), NSKernAttributeName);
    const TextStack stack("Lamp", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 4 * 3 + 10, 1e-6);
    EXPECT_NEAR(stack.manager->insertionRectForCharacterAtIndex(4).origin.x,
        5 + widthOf("Lamp"_ns) + 12, 1e-6);
}

TEST(NSLayoutManager, AttachmentsTakeTheirRoom)
{
    const Ref<NSTextAttachment> attachment = make<NSTextAttachment>();
    attachment->setBounds(NSMakeRect(0, -4, 30, 50));
    const TextStack stack("ab");
    stack.storage->insertAttributedString_atIndex(
        attributedStringWithAttachment(NSAttributedString::cls(), attachment.get()).get(), 1);
    EXPECT_NEAR(stack.used().size.width, widthOf("a"_ns) + widthOf("b"_ns) + 30 + 10, 1e-6);
    EXPECT_EQ(stack.used().size.height, 46 + 4);
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(2).x, 5 + widthOf("a"_ns) + 30, 1e-6);
}

TEST(NSLayoutManager, LargestFontOfALineSetsItsHeight)
{
    const TextStack stack("small BIG");
    const Ref<NSFont> big = NSFont::cls().userFontOfSize(40);
    stack.storage->addAttribute_value_range(NSFontAttributeName, big.get(), NSMakeRange(6, 3));
    EXPECT_EQ(stack.used().size.height, stack.manager->defaultLineHeightForFont(big.get()));
}

}
