// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSCalendar.h"

#include <cmath>
#include <limits>

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSLocale.h"
#include "foundation/NSTimeZone.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"
#include "support/VirtualClock.h"

using namespace brindle;
using test::UserLanguage;
using test::VirtualClock;

namespace {

Ref<NSCalendar> calendar(NSString* zone = "GMT"_ns, NSString* locale = "en_US"_ns)
{
    auto out = make<NSCalendar>();
    out->setTimeZone(NSTimeZone::cls().timeZoneWithName(zone).get());
    out->setLocale(NSLocale::cls().localeWithLocaleIdentifier(locale).get());
    return out;
}

Ref<NSDate> date(double since1970)
{
    return NSDate::cls().dateWithTimeIntervalSince1970(since1970);
}

/// 2024-01-31 12:34:56 in Greenwich, a Wednesday.
Ref<NSDate> noon() { return date(1706704496); }

Ref<NSDateComponents> parts(
    NSInteger year, NSInteger month, NSInteger day, NSInteger hour = NSDateComponentUndefined)
{
    auto out = make<NSDateComponents>();
    out->setYear(year);
    out->setMonth(month);
    out->setDay(day);
    out->setHour(hour);
    return out;
}

std::string adding(NSCalendarUnit unit, NSInteger value, NSCalendarOptions options = 0)
{
    return textOf(
        calendar()->dateByAddingUnit_value_toDate_options(unit, value, noon().get(), options));
}

}

TEST(Calendar, TakesADateApart)
{
    const auto all = calendar()->components_fromDate(0x1fffff, noon().get());
    EXPECT_EQ(all->era(), 1);
    EXPECT_EQ(all->year(), 2024);
    EXPECT_EQ(all->month(), 1);
    EXPECT_EQ(all->day(), 31);
    EXPECT_EQ(all->hour(), 12);
    EXPECT_EQ(all->minute(), 34);
    EXPECT_EQ(all->second(), 56);
    EXPECT_EQ(all->weekday(), 4);
    EXPECT_EQ(all->weekdayOrdinal(), 5);
    EXPECT_EQ(all->quarter(), 1);
    EXPECT_EQ(all->weekOfYear(), 5);
    EXPECT_EQ(all->yearForWeekOfYear(), 2024);
    EXPECT_EQ(all->nanosecond(), 0);
}

TEST(Calendar, AnswersOnlyThePartsThatAreAskedFor)
{
    const auto some = calendar()->components_fromDate(NSCalendarUnitYear, noon().get());
    EXPECT_EQ(some->year(), 2024);
    EXPECT_EQ(some->month(), NSDateComponentUndefined);
    EXPECT_FALSE(some->calendar());
}

TEST(Calendar, NanosecondsAreThePartOfTheSecond)
{
    EXPECT_EQ(calendar()->component_fromDate(NSCalendarUnitNanosecond, date(0.5).get()), 500000000);
    EXPECT_EQ(
        calendar()->component_fromDate(NSCalendarUnitNanosecond, date(-0.25).get()), 750000000);
    EXPECT_EQ(calendar()->component_fromDate(NSCalendarUnitSecond, date(-0.25).get()), 59);
}

TEST(Calendar, CountsInItsTimeZone)
{
    EXPECT_EQ(calendar("Asia/Tokyo"_ns)->component_fromDate(NSCalendarUnitHour, noon().get()), 21);
}

TEST(Calendar, PutsADateTogether)
{
    EXPECT_EQ(textOf(calendar()->dateFromComponents(parts(2024, 2, 29, 6).get())),
        "2024-02-29 06:00:00 +0000");
    EXPECT_EQ(textOf(calendar("Asia/Tokyo"_ns)->dateFromComponents(parts(2024, 2, 29, 6).get())),
        "2024-02-28 21:00:00 +0000");
}

TEST(Calendar, PartsOutOfRangeGoOnCounting)
{
    EXPECT_EQ(textOf(calendar()->dateFromComponents(parts(2024, 1, 32).get())),
        "2024-02-01 00:00:00 +0000");
    EXPECT_EQ(textOf(calendar()->dateFromComponents(parts(2024, 0, 1).get())),
        "2023-12-01 00:00:00 +0000");
}

TEST(Calendar, PartsThatAreMissingAreTheFirstOnes)
{
    EXPECT_EQ(textOf(calendar()->dateFromComponents(make<NSDateComponents>().get())),
        "0001-01-01 00:00:00 +0000");
    EXPECT_FALSE(calendar()->dateFromComponents(nullptr));
}

TEST(Calendar, APartsOwnTimeZoneCounts)
{
    const auto some = parts(2024, 1, 1);
    some->setTimeZone(NSTimeZone::cls().timeZoneWithName("Asia/Tokyo"_ns).get());
    EXPECT_EQ(textOf(calendar()->dateFromComponents(some.get())), "2023-12-31 15:00:00 +0000");
}

TEST(Calendar, PutsWeeksTogether)
{
    const auto week = make<NSDateComponents>();
    week->setYearForWeekOfYear(2024);
    week->setWeekOfYear(5);
    week->setWeekday(4);
    EXPECT_EQ(textOf(calendar()->dateFromComponents(week.get())), "2024-01-31 00:00:00 +0000");
}

TEST(Calendar, HugePartsGiveSomeDateAndNoHarm)
{
    for (const NSInteger huge : { INT64_MAX - 1, INT64_MIN, NSInteger { 1 } << 40 }) {
        const auto all = make<NSDateComponents>();
        for (NSCalendarUnit unit = 2; unit <= NSCalendarUnitNanosecond; unit <<= 1)
            all->setValue_forComponent(huge, unit);
        EXPECT_TRUE(calendar()->dateFromComponents(all.get()));
        EXPECT_TRUE(calendar()->dateByAddingComponents_toDate_options(all.get(), noon().get(), 0));
    }
}

TEST(Calendar, AddsUnits)
{
    EXPECT_EQ(adding(NSCalendarUnitMonth, 1), "2024-02-29 12:34:56 +0000");
    EXPECT_EQ(adding(NSCalendarUnitYear, -1), "2023-01-31 12:34:56 +0000");
    EXPECT_EQ(adding(NSCalendarUnitQuarter, 1), "2024-04-30 12:34:56 +0000");
    EXPECT_EQ(adding(NSCalendarUnitWeekOfYear, 1), "2024-02-07 12:34:56 +0000");
    EXPECT_EQ(adding(NSCalendarUnitDay, 1), "2024-02-01 12:34:56 +0000");
    EXPECT_EQ(adding(NSCalendarUnitHour, 12), "2024-02-01 00:34:56 +0000");
}

TEST(Calendar, AWrappingUnitChangesNoLargerOne)
{
    EXPECT_EQ(adding(NSCalendarUnitDay, 1, NSCalendarWrapComponents), "2024-01-01 12:34:56 +0000");
}

TEST(Calendar, ADayIsOneEvenWhenTheClocksChange)
{
    const auto zurich = calendar("Europe/Zurich"_ns);
    const auto before = date(1711796400); // 2024-03-30 12:00 in Zurich
    EXPECT_EQ(textOf(zurich->dateByAddingUnit_value_toDate_options(
                  NSCalendarUnitDay, 1, before.get(), 0)),
        "2024-03-31 10:00:00 +0000");
}

TEST(Calendar, NilDatesGiveNil)
{
    EXPECT_FALSE(
        calendar()->dateByAddingUnit_value_toDate_options(NSCalendarUnitDay, 1, nullptr, 0));
    EXPECT_FALSE(calendar()->dateByAddingComponents_toDate_options(nullptr, noon().get(), 0));
    EXPECT_FALSE(calendar()->startOfDayForDate(nullptr));
    EXPECT_EQ(
        calendar()->component_fromDate(NSCalendarUnitYear, nullptr), NSDateComponentUndefined);
}

TEST(Calendar, MeasuresADistanceFromTheLargestUnitDown)
{
    const auto apart = calendar()->components_fromDate_toDate_options(
        NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay | NSCalendarUnitHour,
        date(0).get(), noon().get(), 0);
    EXPECT_EQ(apart->year(), 54);
    EXPECT_EQ(apart->month(), 0);
    EXPECT_EQ(apart->day(), 30);
    EXPECT_EQ(apart->hour(), 12);
}

TEST(Calendar, ADistanceBackIsNegative)
{
    EXPECT_EQ(calendar()
                  ->components_fromDate_toDate_options(
                      NSCalendarUnitDay, noon().get(), date(1706704496 - 86400 * 3 - 5).get(), 0)
                  ->day(),
        -3);
}

TEST(Calendar, ADistanceInSecondsIsNotCutAt32Bits)
{
    EXPECT_EQ(calendar()
                  ->components_fromDate_toDate_options(
                      NSCalendarUnitSecond, date(0).get(), date(1e10).get(), 0)
                  ->second(),
        10000000000);
}

TEST(Calendar, ADayBeginsAtTheLocalMidnight)
{
    EXPECT_EQ(textOf(calendar()->startOfDayForDate(noon().get())), "2024-01-31 00:00:00 +0000");
    EXPECT_EQ(textOf(calendar("Asia/Tokyo"_ns)->startOfDayForDate(noon().get())),
        "2024-01-30 15:00:00 +0000");
}

TEST(Calendar, UnitsBeginAndLast)
{
    Ref<NSDate> start;
    NSTimeInterval seconds = 0;
    EXPECT_TRUE(calendar()->rangeOfUnit_startDate_interval_forDate(
        NSCalendarUnitMonth, &start, &seconds, noon().get()));
    EXPECT_EQ(textOf(start), "2024-01-01 00:00:00 +0000");
    EXPECT_EQ(seconds, 31 * 86400);
    EXPECT_TRUE(calendar()->rangeOfUnit_startDate_interval_forDate(
        NSCalendarUnitWeekOfYear, &start, &seconds, noon().get()));
    EXPECT_EQ(textOf(start), "2024-01-28 00:00:00 +0000");
    EXPECT_TRUE(calendar()->rangeOfUnit_startDate_interval_forDate(
        NSCalendarUnitQuarter, &start, nullptr, date(1721001600).get()));
    EXPECT_EQ(textOf(start), "2024-07-01 00:00:00 +0000");
    EXPECT_FALSE(calendar()->rangeOfUnit_startDate_interval_forDate(
        NSCalendarUnitEra, &start, &seconds, noon().get()));
}

TEST(Calendar, AWeekBeginsByTheLocale)
{
    EXPECT_EQ(calendar("GMT"_ns, "en_US"_ns)->firstWeekday(), 1u);
    EXPECT_EQ(calendar("GMT"_ns, "de_DE"_ns)->firstWeekday(), 2u);
    EXPECT_EQ(calendar("GMT"_ns, "de_DE"_ns)->minimumDaysInFirstWeek(), 4u);
    const auto own = calendar();
    own->setFirstWeekday(7);
    EXPECT_EQ(own->firstWeekday(), 7u);
    EXPECT_EQ(calendar()->firstWeekday(), 1u);
}

TEST(Calendar, KnowsHowManyOfAUnitALargerOneHas)
{
    const auto range = [](NSCalendarUnit small, NSCalendarUnit large, double since1970) {
        return calendar()->rangeOfUnit_inUnit_forDate(small, large, date(since1970).get());
    };
    EXPECT_TRUE(NSEqualRanges(
        range(NSCalendarUnitDay, NSCalendarUnitMonth, 1707500000), NSMakeRange(1, 29)));
    EXPECT_TRUE(NSEqualRanges(
        range(NSCalendarUnitDay, NSCalendarUnitYear, 1707500000), NSMakeRange(1, 366)));
    EXPECT_TRUE(
        NSEqualRanges(range(NSCalendarUnitMonth, NSCalendarUnitYear, 0), NSMakeRange(1, 12)));
    EXPECT_TRUE(NSEqualRanges(range(NSCalendarUnitHour, NSCalendarUnitDay, 0), NSMakeRange(0, 24)));
    EXPECT_EQ(range(NSCalendarUnitYear, NSCalendarUnitDay, 0).location, NSUInteger { NSNotFound });
}

TEST(Calendar, KnowsTodayAndItsNeighbours)
{
    const VirtualClock clock; // 2026-01-01
    const auto at
        = [](double days) { return NSDate::cls().dateWithTimeIntervalSinceNow(days * 86400); };
    EXPECT_TRUE(calendar()->isDateInToday(at(0.9).get()));
    EXPECT_FALSE(calendar()->isDateInToday(at(1).get()));
    EXPECT_TRUE(calendar()->isDateInYesterday(at(-0.1).get()));
    EXPECT_TRUE(calendar()->isDateInTomorrow(at(1.5).get()));
    EXPECT_FALSE(calendar()->isDateInToday(nullptr));
}

TEST(Calendar, KnowsTheWeekend)
{
    EXPECT_FALSE(calendar()->isDateInWeekend(noon().get()));
    EXPECT_TRUE(calendar()->isDateInWeekend(date(1706704496 + 3 * 86400).get()));
    EXPECT_FALSE(calendar()->isDateInWeekend(nullptr));
}

TEST(Calendar, OtherCalendarsCountOtherYears)
{
    const auto buddhist = NSCalendar::cls().calendarWithIdentifier(NSCalendarIdentifierBuddhist);
    EXPECT_EQ(buddhist->component_fromDate(NSCalendarUnitYear, noon().get()), 2567);
    EXPECT_FALSE(NSCalendar::cls().calendarWithIdentifier("stone age"_ns));
    EXPECT_FALSE(NSCalendar::cls().calendarWithIdentifier(nullptr));
}

TEST(Calendar, TheCurrentOneIsThatOfTheUsersLocale)
{
    const UserLanguage user("th_TH");
    EXPECT_EQ(utf8(NSCalendar::cls().currentCalendar()->calendarIdentifier()), "buddhist");
}

TEST(Calendar, DatesThatAreNoDatesDoNoHarm)
{
    for (const double moment : { std::nan(""), 1e300, -std::numeric_limits<double>::infinity() }) {
        const auto odd = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(moment);
        EXPECT_NE(calendar()->component_fromDate(NSCalendarUnitYear, odd.get()),
            NSDateComponentUndefined);
        EXPECT_TRUE(calendar()->startOfDayForDate(odd.get()));
    }
}

TEST(Calendar, EqualOnesHaveEqualSettings)
{
    EXPECT_TRUE(calendar()->isEqual(calendar().get()));
    EXPECT_TRUE(calendar()->isEqual(calendar()->copy().get()));
    EXPECT_FALSE(calendar()->isEqual(calendar("Asia/Tokyo"_ns).get()));
}

TEST(DateComponents, BeginUndefined)
{
    const auto empty = make<NSDateComponents>();
    EXPECT_EQ(empty->year(), NSDateComponentUndefined);
    EXPECT_EQ(empty->nanosecond(), NSDateComponentUndefined);
    EXPECT_EQ(empty->valueForComponent(NSCalendarUnitYear | NSCalendarUnitMonth),
        NSDateComponentUndefined);
    EXPECT_EQ(empty->valueForComponent(1), NSDateComponentUndefined);
    EXPECT_EQ(empty->valueForComponent(NSUInteger { 1 } << 63), NSDateComponentUndefined);
    EXPECT_FALSE(empty->date());
}

TEST(DateComponents, KnowTheirDateInTheirCalendar)
{
    const auto some = parts(2024, 1, 31);
    some->setCalendar(calendar().get());
    EXPECT_EQ(textOf(some->date()), "2024-01-31 00:00:00 +0000");
}

TEST(DateComponents, AreComparedAndCopiedByValue)
{
    const auto some = parts(2024, 1, 31);
    const auto copy = cast<NSDateComponents>(some->copy());
    EXPECT_TRUE(some->isEqual(copy.get()));
    EXPECT_EQ(some->hash(), copy->hash());
    copy->setDay(1);
    EXPECT_FALSE(some->isEqual(copy.get()));
    EXPECT_EQ(some->day(), 31);
}

TEST(Calendar, IsArchivedWithItsSettings)
{
    const auto own = calendar("Asia/Tokyo"_ns, "de_DE"_ns);
    own->setFirstWeekday(7);
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(own.get());
    const auto again = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSCalendar::cls(), data.get(), nullptr);
    EXPECT_TRUE(own->isEqual(again.get()));
}
