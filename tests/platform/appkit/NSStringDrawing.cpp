// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSStringDrawing.h"

#include <cmath>

#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSColor.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "support/Focused.h"
#include "support/Strings.h"

namespace brindle {

using test::Focused;
using test::Rgba;

namespace {

    Ref<NSDictionary> with(NSString* name, NSObject* value)
    {
        return NSDictionary::cls().dictionaryWithObject_forKey(value, name);
    }
    Ref<NSDictionary> cut(NSLineBreakMode mode)
    {
        const auto style = make<NSMutableParagraphStyle>();
        style->setLineBreakMode(mode);
        return with(NSParagraphStyleAttributeName, style.get());
    }
    double lineHeight() { return sizeWithAttributes("x"_ns, nullptr).height; }

    /// Answers the rows that have any ink, as first and last; -1 for none.
    std::pair<int, int> inkRows(const Focused& picture, int width, int height)
    {
        std::pair<int, int> rows { -1, -1 };
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                if (picture.at(x, y).alpha == 0)
                    continue;
                rows.first = rows.first < 0 ? y : rows.first;
                rows.second = y;
            }
        }
        return rows;
    }
    int inkUpTo(const Focused& picture, int width, int height)
    {
        int last = -1;
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y)
                last = picture.at(x, y).alpha ? x : last;
        }
        return last;
    }

}

TEST(NSStringDrawing, EmptyTextIsAsHighAsALineAndHasNoWidth)
{
    EXPECT_TRUE(NSEqualSizes(sizeWithAttributes(""_ns, nullptr), NSMakeSize(0, lineHeight())));
}

TEST(NSStringDrawing, LineBreaksMakeLines)
{
    EXPECT_EQ(sizeWithAttributes("a\nb"_ns, nullptr).height, 2 * lineHeight());
    EXPECT_NEAR(sizeWithAttributes("mm\nm"_ns, nullptr).width,
        sizeWithAttributes("mm"_ns, nullptr).width, 1e-9);
}

TEST(NSStringDrawing, AttributedSizeIsThatOfThePlainText)
{
    const Ref<NSFont> font = NSFont::cls().systemFontOfSize(20);
    const auto attributes = with(NSFontAttributeName, font.get());
    const auto string
        = alloc<NSAttributedString>()->initWithString_attributes("Lamp"_ns, attributes.get());
    EXPECT_TRUE(NSEqualSizes(size(string), sizeWithAttributes("Lamp"_ns, attributes.get())));
}

TEST(NSStringDrawing, BoundingRectWrapsInItsWidth)
{
    const double width = sizeWithAttributes("one two"_ns, nullptr).width;
    const NSRect rect = boundingRectWithSize_options_attributes("one two"_ns, { width - 1, 0 },
        NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading, nullptr);
    EXPECT_EQ(rect.size.height, 2 * lineHeight());
    EXPECT_LT(rect.size.width, width);
}

TEST(NSStringDrawing, BoundingRectOfOneLineBeginsBelowItsBaseline)
{
    const NSRect rect = boundingRectWithSize_options_attributes(
        "one two"_ns, { 1, 1 }, NSStringDrawingUsesFontLeading, nullptr);
    EXPECT_LT(rect.origin.y, 0);
    EXPECT_NEAR(rect.size.width, sizeWithAttributes("one two"_ns, nullptr).width, 1e-9);
    EXPECT_EQ(rect.size.height, lineHeight());
}

TEST(NSStringDrawing, RectangleStartsAtItsTopInBothKindsOfViews)
{
    const Focused upright(60, 60);
    drawInRect_withAttributes("Lamp"_ns, NSMakeRect(5, 10, 50, 40), nullptr);
    const Focused flipped(60, 60, true);
    CGContextTranslateCTM(flipped, 0, 60);
    CGContextScaleCTM(flipped, 1, -1);
    drawInRect_withAttributes("Lamp"_ns, NSMakeRect(5, 10, 50, 40), nullptr);
    EXPECT_TRUE(test::areAlike(flipped.image().get(), upright.image().get(), 0, "rectangle"));
    const auto [first, last] = inkRows(upright, 60, 60);
    EXPECT_GE(first, 10);
    EXPECT_LE(last, 10 + static_cast<int>(lineHeight()));
}

TEST(NSStringDrawing, RectangleClipsWhatDoesNotFit)
{
    const Focused picture(60, 60);
    drawInRect_withAttributes("Mmmm\nMmmm\nMmmm"_ns, NSMakeRect(0, 40, 20, 20), nullptr);
    EXPECT_LT(inkRows(picture, 60, 60).second, 20);
    EXPECT_LT(inkUpTo(picture, 60, 60), 20);
}

TEST(NSStringDrawing, TruncationEndsWithAnEllipsisInsideTheRectangle)
{
    for (const NSLineBreakMode mode : { NSLineBreakByTruncatingHead, NSLineBreakByTruncatingTail,
             NSLineBreakByTruncatingMiddle }) {
        const Focused picture(100, 20);
        drawInRect_withAttributes("MMMMMMMMMMMMMMM"_ns, NSMakeRect(0, 0, 60, 20), cut(mode).get());
        EXPECT_GT(inkUpTo(picture, 100, 20), 30) << mode;
        EXPECT_LE(inkUpTo(picture, 100, 20), 60) << mode;
    }
}

TEST(NSStringDrawing, LastVisibleLineIsTruncatedWhenAsked)
{
    const NSString* const text = "one two three four five six seven eight"_ns;
    const NSRect rect = boundingRectWithSize_options_attributes(const_cast<NSString*>(text),
        { 60, 2.5 * lineHeight() },
        NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading
            | NSStringDrawingTruncatesLastVisibleLine,
        nullptr);
    EXPECT_EQ(rect.size.height, 2 * lineHeight());
}

TEST(NSStringDrawing, ColourOfEachStretchIsItsOwn)
{
    const auto string = cast<NSMutableAttributedString>(
        alloc<NSMutableAttributedString>()->initWithString("MM"_ns));
    string->addAttribute_value_range(NSForegroundColorAttributeName,
        NSColor::cls().colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 1).get(),
        NSMakeRange(0, 1));
    string->addAttribute_value_range(NSForegroundColorAttributeName,
        NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 0, 1, 1).get(),
        NSMakeRange(1, 1));
    const Focused picture(30, 20);
    drawAtPoint(string, NSZeroPoint);
    const int half = static_cast<int>(size(string).width / 2);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x) {
            const Rgba pixel = picture.at(x, y);
            EXPECT_TRUE(!pixel.red || x <= half) << x;
            EXPECT_TRUE(!pixel.blue || x >= half - 1) << x;
        }
    }
}

TEST(NSStringDrawing, BackgroundFillsTheLine)
{
    const auto attributes = with(NSBackgroundColorAttributeName,
        NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 1, 0, 1).get());
    const Focused picture(40, 20);
    drawAtPoint_withAttributes(" "_ns, NSZeroPoint, attributes.get());
    EXPECT_EQ(picture.at(1, 18), (Rgba { 0, 255, 0, 255 }));
    EXPECT_EQ(picture.at(30, 18).alpha, 0);
}

TEST(NSStringDrawing, UnderlineRunsBelowTheBaseline)
{
    const Ref<NSNumber> single = NSNumber::cls().numberWithInt(NSUnderlineStyleSingle);
    const Focused picture(40, 20);
    drawAtPoint_withAttributes(
        "   "_ns, NSZeroPoint, with(NSUnderlineStyleAttributeName, single.get()).get());
    const auto [first, last] = inkRows(picture, 40, 20);
    EXPECT_EQ(first, last);
    EXPECT_GT(first, 20 - lineHeight() + 9);
}

TEST(NSAttributedStringFixing, FontAttributesOfAnEmptyTextAreEmpty)
{
    EXPECT_EQ(fontAttributesInRange(make<NSAttributedString>(), NSMakeRange(0, 0))->count(), 0u);
}

TEST(NSAttributedStringFixing, FontAttributesLeaveTheParagraphOut)
{
    const auto attributes = cast<NSMutableDictionary>(cut(NSLineBreakByClipping)->mutableCopy());
    const Ref<NSColor> color = NSColor::cls().redColor();
    attributes->setObject_forKey(color.get(), NSForegroundColorAttributeName.get());
    const auto string
        = alloc<NSAttributedString>()->initWithString_attributes("Lamp"_ns, attributes.get());
    const auto found = fontAttributesInRange(string, NSMakeRange(0, 1));
    EXPECT_EQ(found->count(), 1u);
    EXPECT_EQ(found->objectForKey(NSForegroundColorAttributeName.get()), color.get());
}

TEST(NSAttributedStringFixing, RangeOutsideRaises)
{
    EXPECT_NE(
        raisedBy([] { fontAttributesInRange(make<NSAttributedString>(), NSMakeRange(0, 1)); }), "");
}

TEST(NSAttributedStringFixing, ParagraphTakesTheStyleOfItsFirstUnit)
{
    const auto string = cast<NSMutableAttributedString>(
        alloc<NSMutableAttributedString>()->initWithString("one\ntwo"_ns));
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(NSTextAlignmentRight);
    string->addAttribute_value_range(NSParagraphStyleAttributeName, style.get(), NSMakeRange(0, 2));
    fixAttributesInRange(string, NSMakeRange(0, 7));
    NSRange range {};
    string->attribute_atIndex_effectiveRange(NSParagraphStyleAttributeName, 0, &range);
    EXPECT_EQ(range, NSMakeRange(0, 4));
}

TEST(NSAttributedStringFixing, AttachmentsOnLettersGo)
{
    const auto string = cast<NSMutableAttributedString>(
        alloc<NSMutableAttributedString>()->initWithString("a\uFFFCb"_ns));
    string->addAttribute_value_range(NSAttachmentAttributeName, "odd"_ns, NSMakeRange(0, 3));
    fixAttributesInRange(string, NSMakeRange(0, 3));
    NSRange range {};
    EXPECT_TRUE(string->attribute_atIndex_effectiveRange(NSAttachmentAttributeName, 1, &range));
    EXPECT_EQ(range, NSMakeRange(1, 1));
}

}
