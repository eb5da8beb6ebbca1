// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSTimeZone.h"

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSLocale.h"
#include "support/LocalTime.h"
#include "support/Strings.h"

using namespace brindle;
using test::LocalTime;

namespace {

Ref<NSTimeZone> zone(const char* name)
{
    return NSTimeZone::cls().timeZoneWithName(stringFrom(name).get());
}

const auto winter
    = [] { return NSDate::cls().dateWithTimeIntervalSince1970(1705276800); }; // 2024-01-15
const auto summer
    = [] { return NSDate::cls().dateWithTimeIntervalSince1970(1721001600); }; // 2024-07-15

}

TEST(TimeZone, UnknownNamesGiveNil)
{
    EXPECT_FALSE(zone("Europe/Nowhere"));
    EXPECT_FALSE(zone(""));
    EXPECT_FALSE(zone(std::string(100000, 'A').c_str()));
    EXPECT_FALSE(NSTimeZone::cls().timeZoneWithName(nullptr));
}

TEST(TimeZone, TheDistanceFollowsTheSeason)
{
    EXPECT_EQ(zone("Europe/Zurich")->secondsFromGMTForDate(winter().get()), 3600);
    EXPECT_EQ(zone("Europe/Zurich")->secondsFromGMTForDate(summer().get()), 7200);
    EXPECT_EQ(zone("America/New_York")->secondsFromGMTForDate(winter().get()), -18000);
}

TEST(TimeZone, KnowsWhenClocksAreAhead)
{
    EXPECT_FALSE(zone("Europe/Zurich")->isDaylightSavingTimeForDate(winter().get()));
    EXPECT_TRUE(zone("Europe/Zurich")->isDaylightSavingTimeForDate(summer().get()));
    EXPECT_EQ(zone("Europe/Zurich")->daylightSavingTimeOffsetForDate(summer().get()), 3600);
    EXPECT_FALSE(zone("Asia/Tokyo")->isDaylightSavingTimeForDate(summer().get()));
}

TEST(TimeZone, KnowsWhenClocksAreChanged)
{
    EXPECT_EQ(
        textOf(zone("Europe/Zurich")->nextDaylightSavingTimeTransitionAfterDate(winter().get())),
        "2024-03-31 01:00:00 +0000");
    EXPECT_FALSE(zone("GMT")->nextDaylightSavingTimeTransitionAfterDate(winter().get()));
}

TEST(TimeZone, AFixedDistanceHasAName)
{
    const auto india = NSTimeZone::cls().timeZoneForSecondsFromGMT(19800);
    EXPECT_EQ(utf8(india->name()), "GMT+0530");
    EXPECT_EQ(india->secondsFromGMT(), 19800);
    EXPECT_EQ(utf8(NSTimeZone::cls().timeZoneForSecondsFromGMT(0)->name()), "GMT");
    EXPECT_EQ(NSTimeZone::cls().timeZoneForSecondsFromGMT(-3661)->secondsFromGMT(), -3661);
}

TEST(TimeZone, ADayIsNoDistance)
{
    EXPECT_FALSE(NSTimeZone::cls().timeZoneForSecondsFromGMT(86400));
    EXPECT_FALSE(NSTimeZone::cls().timeZoneForSecondsFromGMT(INT64_MIN));
}

TEST(TimeZone, TakesAbbreviations)
{
    EXPECT_EQ(
        utf8(NSTimeZone::cls().timeZoneWithAbbreviation("PST"_ns)->name()), "America/Los_Angeles");
    EXPECT_FALSE(NSTimeZone::cls().timeZoneWithAbbreviation("XYZ"_ns));
    EXPECT_FALSE(NSTimeZone::cls().timeZoneWithAbbreviation(nullptr));
}

TEST(TimeZone, TheDefaultOneCanBeSetAndGoesBack)
{
    const auto before = NSTimeZone::cls().defaultTimeZone();
    {
        const LocalTime local("Asia/Tokyo"_ns);
        EXPECT_EQ(utf8(NSTimeZone::cls().localTimeZone()->name()), "Asia/Tokyo");
    }
    EXPECT_TRUE(before->isEqual(NSTimeZone::cls().defaultTimeZone().get()));
    EXPECT_TRUE(NSTimeZone::cls().systemTimeZone()->isEqual(before.get()));
}

TEST(TimeZone, HasNamesForPeople)
{
    const auto english = NSLocale::cls().localeWithLocaleIdentifier("en_US"_ns);
    const auto zurich = zone("Europe/Zurich");
    EXPECT_EQ(utf8(zurich->localizedName_locale(NSTimeZoneNameStyleStandard, english.get())),
        "Central European Standard Time");
    EXPECT_EQ(
        utf8(zurich->localizedName_locale(NSTimeZoneNameStyleShortDaylightSaving, english.get())),
        "GMT+2");
}

TEST(TimeZone, IsAValue)
{
    EXPECT_TRUE(zone("Asia/Tokyo")->isEqual(zone("Asia/Tokyo").get()));
    EXPECT_EQ(zone("Asia/Tokyo")->hash(), zone("Asia/Tokyo")->hash());
    EXPECT_FALSE(zone("Asia/Tokyo")->isEqual(zone("GMT").get()));
    EXPECT_FALSE(zone("Asia/Tokyo")->isEqualToTimeZone(nullptr));
}

TEST(TimeZone, ListsWhatThereIs)
{
    EXPECT_TRUE(NSTimeZone::cls().knownTimeZoneNames()->containsObject("Europe/Zurich"_ns));
}

TEST(TimeZone, IsArchivedByItsName)
{
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(zone("Asia/Tokyo").get());
    const auto again = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSTimeZone::cls(), data.get(), nullptr);
    EXPECT_TRUE(zone("Asia/Tokyo")->isEqual(again.get()));
}
