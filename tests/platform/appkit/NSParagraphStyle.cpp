// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSParagraphStyle.h"

#include <cmath>

#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSTextTab.h"
#include "foundation/NSArray.h"
#include "foundation/NSCharacterSet.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSLocale.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"

namespace brindle {

namespace {

    Ref<NSTextTab> tabAt(CGFloat location)
    {
        return alloc<NSTextTab>()->initWithType_location(NSLeftTabStopType, location);
    }

}

TEST(NSParagraphStyle, DefaultIsNaturalAndWrapsAtWords)
{
    const Ref<NSParagraphStyle> style = NSParagraphStyle::cls().defaultParagraphStyle();
    EXPECT_EQ(style->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(style->lineBreakMode(), NSLineBreakByWordWrapping);
    EXPECT_EQ(style->baseWritingDirection(), NSWritingDirectionNatural);
    EXPECT_EQ(style->hyphenationFactor(), 0);
    EXPECT_EQ(style->tabStops()->count(), 12u);
}

TEST(NSParagraphStyle, CustomaryTabsStandEvery28Points)
{
    const auto tabs = NSParagraphStyle::cls().defaultParagraphStyle()->tabStops();
    EXPECT_EQ(cast<NSTextTab>(tabs->objectAtIndex(0))->location(), 28);
    EXPECT_EQ(cast<NSTextTab>(tabs->objectAtIndex(11))->location(), 336);
}

TEST(NSParagraphStyle, MutableCopyChangesAlone)
{
    const auto style = cast<NSMutableParagraphStyle>(
        NSParagraphStyle::cls().defaultParagraphStyle()->mutableCopy());
    style->setAlignment(NSTextAlignmentCenter);
    style->setHeadIndent(12);
    const auto copy = cast<NSParagraphStyle>(style->copy());
    style->setHeadIndent(20);
    EXPECT_EQ(copy->headIndent(), 12);
    EXPECT_EQ(copy->alignment(), NSTextAlignmentCenter);
    EXPECT_EQ(NSParagraphStyle::cls().defaultParagraphStyle()->alignment(), NSTextAlignmentNatural);
}

TEST(NSParagraphStyle, EqualByValue)
{
    const auto one = make<NSMutableParagraphStyle>();
    const auto other = make<NSMutableParagraphStyle>();
    EXPECT_TRUE(one->isEqual(other.get()));
    EXPECT_EQ(one->hash(), other->hash());
    other->addTabStop(tabAt(500).get());
    EXPECT_FALSE(one->isEqual(other.get()));
    other->removeTabStop(tabAt(500).get());
    EXPECT_TRUE(one->isEqual(other.get()));
}

TEST(NSParagraphStyle, TabStopsAreKeptInOrder)
{
    const auto style = make<NSMutableParagraphStyle>();
    const Ref<NSTextTab> far = tabAt(90);
    const Ref<NSTextTab> near = tabAt(30);
    NSObject* const list[] = { far.get(), near.get() };
    style->setTabStops(NSArray::cls().arrayWithObjects_count(list, 2).get());
    EXPECT_EQ(style->tabStops()->objectAtIndex(0), near.get());
}

TEST(NSTextTab, DecimalStopTakesTheSeparatorOfTheUser)
{
    const test::UserLanguage user("de_DE", { "de" });
    const auto tab = alloc<NSTextTab>()->initWithType_location(NSDecimalTabStopType, 90);
    EXPECT_EQ(tab->tabStopType(), NSDecimalTabStopType);
    EXPECT_EQ(tab->alignment(), NSTextAlignmentRight);
    const auto ends
        = cast<NSCharacterSet>(tab->options()->objectForKey(NSTabColumnTerminatorsAttributeName));
    EXPECT_TRUE(ends->characterIsMember(u','));
    EXPECT_FALSE(ends->characterIsMember(u'.'));
}

TEST(NSTextTab, SeparatorOfALocaleEndsItsColumns)
{
    const Ref<NSLocale> locale = NSLocale::cls().localeWithLocaleIdentifier("en_US"_ns);
    EXPECT_TRUE(NSTextTab::cls().columnTerminatorsForLocale(locale.get())->characterIsMember(u'.'));
}

TEST(NSTextTab, StopsWithOtherOptionsAreNotEqual)
{
    const auto decimal = alloc<NSTextTab>()->initWithType_location(NSDecimalTabStopType, 90);
    const auto right = alloc<NSTextTab>()->initWithType_location(NSRightTabStopType, 90);
    EXPECT_FALSE(decimal->isEqual(right.get()));
    EXPECT_FALSE(right->isEqual(decimal.get()));
    const auto same = alloc<NSTextTab>()->initWithType_location(NSDecimalTabStopType, 90);
    EXPECT_TRUE(decimal->isEqual(same.get()));
}

TEST(NSTextTab, DecimalStopComesBackFromAnArchive)
{
    const auto tab = alloc<NSTextTab>()->initWithType_location(NSDecimalTabStopType, 90);
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(tab.get());
    EXPECT_TRUE(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get())->isEqual(tab.get()));
}

TEST(NSParagraphStyle, AnotherKindOfTabRaises)
{
    const auto style = make<NSMutableParagraphStyle>();
    const Ref<NSArray> wrong = NSArray::cls().arrayWithObject("tab"_ns);
    EXPECT_NE(raisedBy([&] { style->setTabStops(wrong.get()); }), "");
    EXPECT_EQ(style->tabStops()->count(), 12u);
}

TEST(NSParagraphStyle, NumbersThatMakeNoSenseCountAsZero)
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setLineSpacing(-3);
    style->setHeadIndent(std::nan(""));
    style->setTailIndent(-3);
    style->setMinimumLineHeight(INFINITY);
    EXPECT_EQ(style->lineSpacing(), 0);
    EXPECT_EQ(style->headIndent(), 0);
    EXPECT_EQ(style->tailIndent(), -3);
    EXPECT_EQ(style->minimumLineHeight(), 0);
}

TEST(NSParagraphStyle, UnknownConstantsReadAsTheNaturalOnes)
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(static_cast<NSTextAlignment>(77));
    style->setLineBreakMode(static_cast<NSLineBreakMode>(77));
    style->setBaseWritingDirection(static_cast<NSWritingDirection>(77));
    EXPECT_EQ(style->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(style->lineBreakMode(), NSLineBreakByWordWrapping);
    EXPECT_EQ(style->baseWritingDirection(), NSWritingDirectionNatural);
}

TEST(NSParagraphStyle, EverythingComesBackFromAnArchive)
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(NSTextAlignmentRight);
    style->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    style->setBaseWritingDirection(NSWritingDirectionRightToLeft);
    style->setTailIndent(-8);
    style->setLineSpacing(2.5);
    style->addTabStop(tabAt(400).get());
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(style.get());
    const auto back = NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_TRUE(style->isEqual(back.get()));
}

}
