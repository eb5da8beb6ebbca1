// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"

#include <cmath>
#include <limits>

#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSTextTab.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    constexpr double kUnbounded = std::numeric_limits<float>::max();

    /// A storage, a manager and a container.
    struct Stack {
        explicit Stack(const std::string& text, double width = kUnbounded,
            double height = kUnbounded, NSDictionary* attributes = nullptr)
        {
            const Ref<NSAttributedString> string
                = alloc<NSAttributedString>()->initWithString_attributes(
                    stringFrom(text).get(), attributes);
            container = alloc<NSTextContainer>()->initWithContainerSize({ width, height });
            storage = cast<NSTextStorage>(
                alloc<NSTextStorage>()->initWithAttributedString(string.get()));
            manager->addTextContainer(container.get());
            storage->addLayoutManager(manager.get());
        }

        /// Writes the text of every line: "one |two".
        std::string lines() const
        {
            std::string all;
            const Ref<NSString> text = storage->string();
            manager->glyphRangeForTextContainer(container.get());
            manager->enumerateLineFragmentsForGlyphRange_usingBlock(
                NSMakeRange(0, storage->length()),
                [&](NSRect, NSRect, NSTextContainer*, NSRange range, bool*) {
                    all += (all.empty() ? "" : "|") + utf8(text->substringWithRange(range));
                });
            return all;
        }
        NSRect used() const
        {
            manager->glyphRangeForTextContainer(container.get());
            return manager->usedRectForTextContainer(container.get());
        }

        Ref<NSLayoutManager> manager = make<NSLayoutManager>();
        Ref<NSTextContainer> container;
        Ref<NSTextStorage> storage;
    };

    double widthOf(NSString* text) { return sizeWithAttributes(text, nullptr).width; }
    double lineHeight()
    {
        return make<NSLayoutManager>()->defaultLineHeightForFont(
            NSFont::cls().userFontOfSize(12).get());
    }

    template <class Change> Ref<NSDictionary> styled(Change change)
    {
        const auto style = make<NSMutableParagraphStyle>();
        change(*style);
        return NSDictionary::cls().dictionaryWithObject_forKey(
            style.get(), NSParagraphStyleAttributeName);
    }

}

TEST(NSLayoutManager, PaddingCountsAtBothEndsOfTheUsedRectangle)
{
    const Stack stack("Lamp");
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 10, 1e-9);
    EXPECT_EQ(stack.used().origin.x, 0);
}

TEST(NSLayoutManager, LinesWrapTenPointsBeforeTheWidth)
{
    const double width = widthOf("one two"_ns);
    EXPECT_EQ(Stack("one two", width + 10).lines(), "one two");
    EXPECT_EQ(Stack("one two", width + 9.5).lines(), "one |two");
}

TEST(NSLayoutManager, WidthThatWentThroughSinglePrecisionStillHoldsItsText)
{
    const auto width = static_cast<float>(widthOf("one two three"_ns) + 10);
    EXPECT_EQ(Stack("one two three", width).lines(), "one two three");
}

TEST(NSLayoutManager, OneLineIsAsHighAsTheDefaultLineHeight)
{
    EXPECT_EQ(Stack("Lamp").used().size.height, lineHeight());
    EXPECT_EQ(Stack("Lamp\nlight").used().size.height, 2 * lineHeight());
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
    const Stack stack("Lamp\n");
    EXPECT_EQ(stack.used().size.height, 2 * lineHeight());
    const NSRect extra = stack.manager->extraLineFragmentRect();
    EXPECT_EQ(extra.origin.y, lineHeight());
    EXPECT_EQ(extra.size.height, lineHeight());
    EXPECT_EQ(stack.manager->extraLineFragmentTextContainer(), stack.container.get());
}

TEST(NSLayoutManager, TextWithoutTrailingBreakHasNoExtraLine)
{
    const Stack stack("Lamp");
    EXPECT_TRUE(NSEqualRects(stack.manager->extraLineFragmentRect(), NSZeroRect));
    EXPECT_EQ(stack.manager->extraLineFragmentTextContainer(), nullptr);
}

TEST(NSLayoutManager, EmptyTextIsOneExtraLine)
{
    const Stack stack("");
    EXPECT_EQ(stack.manager->extraLineFragmentRect().size.height, lineHeight());
    EXPECT_TRUE(NSEqualSizes(stack.used().size, NSMakeSize(10, lineHeight())));
}

TEST(NSLayoutManager, OnlyLinesThatFitTheHeightAreLaidOut)
{
    const Stack stack("a\nb\nc", kUnbounded, 2.5 * lineHeight());
    EXPECT_EQ(stack.manager->glyphRangeForTextContainer(stack.container.get()), NSMakeRange(0, 4));
    EXPECT_EQ(stack.used().size.height, 2 * lineHeight());
}

TEST(NSLayoutManager, WhatFindsNoPlaceGoesIntoTheNextContainer)
{
    const Stack stack("a\nb\nc", kUnbounded, 2.5 * lineHeight());
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
    const Stack stack("one two three four", wide, lineHeight());
    const Ref<NSTextContainer> next
        = alloc<NSTextContainer>()->initWithContainerSize({ widthOf("three"_ns) + 11, 1000 });
    stack.manager->addTextContainer(next.get());
    EXPECT_EQ(stack.lines(), "one two |three |four");
}

TEST(NSLayoutManager, WordWiderThanTheLineBreaksBetweenLetters)
{
    const Stack stack("a mmmmmm", widthOf("mmm"_ns) + 10);
    EXPECT_EQ(stack.lines(), "a |mmm|mmm");
}

TEST(NSLayoutManager, NarrowestContainerTakesALetterALine)
{
    EXPECT_EQ(Stack("abc", 1).lines(), "a|b|c");
}

TEST(NSLayoutManager, ContainerWithoutWidthIsUnbounded)
{
    EXPECT_EQ(Stack("one two three", 0).lines(), "one two three");
    EXPECT_EQ(Stack("one two three", std::nan("")).lines(), "one two three");
}

TEST(NSLayoutManager, HyphensBetweenLettersAllowABreak)
{
    EXPECT_EQ(Stack("well-off", widthOf("well-"_ns) + 11).lines(), "well-|off");
}

TEST(NSLayoutManager, NumbersAndSignsStayTogether)
{
    EXPECT_EQ(Stack("cost -5.2", widthOf("cost -5."_ns) + 10).lines(), "cost |-5.2");
}

TEST(NSLayoutManager, NoBreakSpaceDoesNotBreak)
{
    EXPECT_EQ(Stack("a b\u00A0c", widthOf("a b"_ns) + 12).lines(), "a |b\u00A0c");
}

TEST(NSLayoutManager, IdeographsBreakAnywhereButBeforeClosingSigns)
{
    const double one = widthOf("漢"_ns);
    EXPECT_EQ(Stack("漢字漢。", 3 * one + 10.5).lines(), "漢字|漢。");
}

TEST(NSLayoutManager, SpacesHangOverTheEndOfAWrappedLine)
{
    const Stack stack("one     two", widthOf("one"_ns) + 10);
    EXPECT_EQ(stack.lines(), "one     |two");
    EXPECT_NEAR(stack.used().size.width, std::max(widthOf("one"_ns), widthOf("two"_ns)) + 10, 1e-9);
}

TEST(NSLayoutManager, CharacterWrappingFillsLines)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setLineBreakMode(NSLineBreakByCharWrapping); });
    EXPECT_EQ(
        Stack("mm mm", widthOf("mm m"_ns) + 10, kUnbounded, attributes.get()).lines(), "mm m|m");
}

TEST(NSLayoutManager, TruncatingModesKeepOneLine)
{
    for (const NSLineBreakMode mode : { NSLineBreakByClipping, NSLineBreakByTruncatingHead,
             NSLineBreakByTruncatingTail, NSLineBreakByTruncatingMiddle }) {
        const auto attributes
            = styled([mode](NSMutableParagraphStyle& s) { s.setLineBreakMode(mode); });
        const Stack stack("one two three four", 60, kUnbounded, attributes.get());
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
        return Stack("Lamp", 200, kUnbounded, attributes.get())
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
    const Stack stack("שלום", 200);
    EXPECT_NEAR(NSMaxX(stack.used()), 200, 1e-9);
    EXPECT_NEAR(stack.manager->insertionRectForCharacterAtIndex(0).origin.x, 195, 1e-6);
}

TEST(NSLayoutManager, AlignmentInAnUnboundedContainerStartsAtItsEdge)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setAlignment(NSTextAlignmentRight); });
    const Stack stack("Lamp", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 10, 1e-9);
    EXPECT_EQ(stack.used().origin.x, 0);
}

TEST(NSLayoutManager, JustifiedLinesFillTheirRoomButTheLast)
{
    const auto attributes
        = styled([](NSMutableParagraphStyle& s) { s.setAlignment(NSTextAlignmentJustified); });
    const Stack stack("one two three", widthOf("one two"_ns) + 30, kUnbounded, attributes.get());
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
    const Stack stack("one two", widthOf("one"_ns) + 10 + 20 + 6, kUnbounded, attributes.get());
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
    const Stack stack("one two\nx", widthOf("one"_ns) + 10.5, kUnbounded, attributes.get());
    EXPECT_EQ(stack.lines(), "one |two\n|x");
    EXPECT_EQ(stack.used().size.height, 3 * lineHeight() + 3 + 7 + 2);
}

TEST(NSLayoutManager, LineHeightStaysBetweenItsBounds)
{
    const auto heightWith = [](auto change) {
        return Stack("x", kUnbounded, kUnbounded, styled(change).get()).used().size.height;
    };
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setLineHeightMultiple(2); }),
        2 * lineHeight());
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setMinimumLineHeight(40); }), 40);
    EXPECT_EQ(heightWith([](NSMutableParagraphStyle& s) { s.setMaximumLineHeight(9); }), 9);
}

TEST(NSLayoutManager, TabsLeadToTheNextStop)
{
    const Stack stack("a\tb\tc");
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
    const Stack stack("a\tend", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(NSMaxX(stack.used()), 10 + 120, 1e-6);
}

TEST(NSLayoutManager, KerningStandsBehindEveryCharacter)
{
    const Ref<NSNumber> kern = NSNumber::cls().numberWithDouble(3);
    const auto attributes
        = NSDictionary::cls().dictionaryWithObject_forKey(kern.get(), NSKernAttributeName);
    const Stack stack("Lamp", kUnbounded, kUnbounded, attributes.get());
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns) + 4 * 3 + 10, 1e-6);
    EXPECT_NEAR(stack.manager->insertionRectForCharacterAtIndex(4).origin.x,
        5 + widthOf("Lamp"_ns) + 12, 1e-6);
}

TEST(NSLayoutManager, AttachmentsTakeTheirRoom)
{
    const Ref<NSTextAttachment> attachment = make<NSTextAttachment>();
    attachment->setBounds(NSMakeRect(0, -4, 30, 50));
    const Stack stack("ab");
    stack.storage->insertAttributedString_atIndex(
        attributedStringWithAttachment(NSAttributedString::cls(), attachment.get()).get(), 1);
    EXPECT_NEAR(stack.used().size.width, widthOf("a"_ns) + widthOf("b"_ns) + 30 + 10, 1e-6);
    EXPECT_EQ(stack.used().size.height, 46 + 4);
    EXPECT_NEAR(stack.manager->locationForGlyphAtIndex(2).x, 5 + widthOf("a"_ns) + 30, 1e-6);
}

TEST(NSLayoutManager, LargestFontOfALineSetsItsHeight)
{
    const Stack stack("small BIG");
    const Ref<NSFont> big = NSFont::cls().userFontOfSize(40);
    stack.storage->addAttribute_value_range(NSFontAttributeName, big.get(), NSMakeRange(6, 3));
    EXPECT_EQ(stack.used().size.height, stack.manager->defaultLineHeightForFont(big.get()));
}

TEST(NSLayoutManager, EveryKindOfLineBreakEndsALine)
{
    EXPECT_EQ(Stack("a\nb\rc\r\nd\u2028e\u2029f").lines(), "a\n|b\r|c\r\n|d\u2028|e\u2029|f");
}

TEST(NSLayoutManager, CaretsStandBetweenLettersAndOnTheExtraLine)
{
    const Stack stack("ab\n");
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
    const Stack stack("mm\nmm");
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
    const Stack stack("e\u0301😀");
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
    const Stack stack("one two", widthOf("one"_ns) + 11);
    EXPECT_EQ(stack.manager->insertionIndexForPoint_inTextContainer(
                  NSMakePoint(500, 3), stack.container.get()),
        3u);
}

TEST(NSLayoutManager, PointsFindTheUnitUnderThem)
{
    const Stack stack("mm");
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
    const Stack stack("mm\nmm\nmm", 200);
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
    const Stack stack("mm\nmm", 200);
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
    const Stack stack("a\nb\nc\nd");
    const double h = lineHeight();
    const auto touched = [&](double y, double height) {
        return stack.manager->glyphRangeForBoundingRect_inTextContainer(
            NSMakeRect(0, y, 10, height), stack.container.get());
    };
    EXPECT_EQ(touched(h + 1, h), NSMakeRange(2, 4));
    EXPECT_EQ(touched(h, h), NSMakeRange(2, 2));
    EXPECT_EQ(touched(100 * h, h).length, 0u);
}

TEST(NSLayoutManager, EditsGiveWhatANewLayoutWouldGive)
{
    const std::string text = "The lamp stands\non the table near\n\nthe window, and shines";
    const Stack edited(text, 90);
    edited.lines();
    struct Edit {
        NSRange range;
        const char* text;
    };
    for (const Edit& edit : { Edit { NSMakeRange(4, 4), "candle" }, Edit { NSMakeRange(17, 1), "" },
             Edit { NSMakeRange(0, 0), "\n" }, Edit { NSMakeRange(10, 20), "\r" },
             Edit { NSMakeRange(11, 0), "\n" }, Edit { NSMakeRange(12, 3), "x\ny\nz" },
             Edit { NSMakeRange(20, 0), " and many more words that wrap" } }) {
        edited.storage->replaceCharactersInRange_withString(
            edit.range, stringFrom(std::string_view(edit.text)).get());
        const Stack fresh(utf8(edited.storage->string()), 90);
        EXPECT_EQ(edited.lines(), fresh.lines()) << edit.text;
        EXPECT_TRUE(NSEqualRects(edited.used(), fresh.used())) << edit.text;
        EXPECT_TRUE(NSEqualRects(
            edited.manager->extraLineFragmentRect(), fresh.manager->extraLineFragmentRect()));
    }
}

TEST(NSLayoutManager, GroupedEditsAreToldAtOnce)
{
    const Stack stack("Lamp", 200);
    stack.lines();
    stack.storage->beginEditing();
    stack.storage->replaceCharactersInRange_withString(NSMakeRange(0, 1), "l"_ns);
    stack.storage->replaceCharactersInRange_withString(NSMakeRange(4, 0), "light"_ns);
    EXPECT_EQ(stack.storage->editedRange(), NSMakeRange(0, 9));
    EXPECT_EQ(stack.storage->changeInLength(), 5);
    stack.storage->endEditing();
    EXPECT_EQ(stack.storage->editedMask(), 0u);
    EXPECT_EQ(stack.lines(), "lamplight");
}

TEST(NSLayoutManager, ResizedContainerIsLaidOutAgain)
{
    const Stack stack("one two", 500);
    EXPECT_EQ(stack.lines(), "one two");
    stack.container->setContainerSize({ widthOf("one"_ns) + 11, 500 });
    EXPECT_EQ(stack.lines(), "one |two");
}

TEST(NSLayoutManager, IndexBehindTheTextRaises)
{
    const Stack stack("ab");
    EXPECT_EQ(raisedBy([&] {
        stack.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(2, nullptr);
    }),
        "NSRangeException: *** -[NSLayoutManager lineFragmentRectForGlyphAtIndex:effectiveRange:]: "
        "index 2 "
        "is beyond the text");
}

TEST(NSLayoutManager, WithoutTextOrContainersEverythingIsEmpty)
{
    const Ref<NSLayoutManager> manager = make<NSLayoutManager>();
    const Ref<NSTextContainer> container = make<NSTextContainer>();
    EXPECT_EQ(manager->numberOfGlyphs(), 0u);
    EXPECT_EQ(manager->glyphRangeForTextContainer(container.get()).length, 0u);
    EXPECT_TRUE(NSEqualRects(manager->usedRectForTextContainer(nullptr), NSZeroRect));
    EXPECT_TRUE(NSEqualRects(manager->insertionRectForCharacterAtIndex(3), NSZeroRect));
    EXPECT_TRUE(NSEqualRects(manager->extraLineFragmentRect(), NSZeroRect));
}

TEST(NSLayoutManager, StorageAndContainersLetGoOfEachOther)
{
    Stack stack("ab");
    stack.storage = nullptr;
    EXPECT_EQ(stack.manager->textStorage(), nullptr);
    EXPECT_EQ(stack.used().size.width, 0);
    stack.manager = nullptr;
    EXPECT_EQ(stack.container->layoutManager(), nullptr);
}

TEST(NSTextContainer, PaddingIsFiveUnlessSet)
{
    EXPECT_EQ(make<NSTextContainer>()->lineFragmentPadding(), 5);
    const Stack stack("Lamp");
    stack.container->setLineFragmentPadding(0);
    EXPECT_NEAR(stack.used().size.width, widthOf("Lamp"_ns), 1e-9);
}

TEST(NSTextContainer, LineLimitAndTruncationPutAnEllipsisOnTheLastLine)
{
    const Stack stack("one two three four", widthOf("one two"_ns) + 11);
    stack.container->setMaximumNumberOfLines(1);
    EXPECT_EQ(stack.lines(), "one two ");
    stack.container->setLineBreakMode(NSLineBreakByTruncatingTail);
    EXPECT_EQ(stack.lines(), "one two three four");
    EXPECT_EQ(stack.used().size.height, lineHeight());
}

}
