// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSDateFormatter.h"

#include <cmath>
#include <limits>

#include "foundation/NSArray.h"
#include "foundation/NSCalendar.h"
#include "foundation/NSLocale.h"
#include "foundation/NSTimeZone.h"
#include "support/LocalTime.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"
#include "support/VirtualClock.h"

using namespace brindle;
using test::LocalTime;
using test::UserLanguage;
using test::VirtualClock;

namespace {

/// 2024-01-31 12:34:56 in Greenwich.
Ref<NSDate> date() { return NSDate::cls().dateWithTimeIntervalSince1970(1706704496); }

/// A formatter that depends on nothing of the machine.
Ref<NSDateFormatter> formatter(const char* locale, NSDateFormatterStyle dateStyle,
    NSDateFormatterStyle timeStyle = NSDateFormatterNoStyle)
{
    auto out = make<NSDateFormatter>();
    out->setLocale(NSLocale::cls().localeWithLocaleIdentifier(stringFrom(locale).get()).get());
    out->setTimeZone(NSTimeZone::cls().timeZoneWithName("GMT"_ns).get());
    out->setDateStyle(dateStyle);
    out->setTimeStyle(timeStyle);
    return out;
}

Ref<NSDateFormatter> patterned(NSString* pattern, const char* locale = "en_US")
{
    auto out = formatter(locale, NSDateFormatterNoStyle);
    out->setDateFormat(pattern);
    return out;
}

std::string written(const Ref<NSDateFormatter>& how)
{
    return utf8(how->stringFromDate(date().get()));
}

std::string read(const Ref<NSDateFormatter>& how, NSString* text)
{
    return textOf(how->dateFromString(text));
}

}

TEST(DateFormatter, WritesDatesInFourLengths)
{
    EXPECT_EQ(written(formatter("en_US", NSDateFormatterShortStyle)), "1/31/24");
    EXPECT_EQ(written(formatter("en_US", NSDateFormatterMediumStyle)), "Jan 31, 2024");
    EXPECT_EQ(written(formatter("en_US", NSDateFormatterLongStyle)), "January 31, 2024");
    EXPECT_EQ(written(formatter("en_US", NSDateFormatterFullStyle)), "Wednesday, January 31, 2024");
}

TEST(DateFormatter, WritesTimes)
{
    EXPECT_EQ(
        written(formatter("de_DE", NSDateFormatterNoStyle, NSDateFormatterShortStyle)), "12:34");
    EXPECT_EQ(written(formatter("de_DE", NSDateFormatterNoStyle, NSDateFormatterMediumStyle)),
        "12:34:56");
    EXPECT_EQ(written(formatter("de_DE", NSDateFormatterShortStyle, NSDateFormatterShortStyle)),
        "31.01.24, 12:34");
}

TEST(DateFormatter, WithoutStylesWritesNothing)
{
    EXPECT_EQ(written(formatter("en_US", NSDateFormatterNoStyle)), "");
}

TEST(DateFormatter, AStyleNobodyKnowsIsNone)
{
    EXPECT_EQ(written(formatter("en_US", static_cast<NSDateFormatterStyle>(77))), "");
}

TEST(DateFormatter, FollowsTheLocale)
{
    EXPECT_EQ(written(formatter("fr_FR", NSDateFormatterLongStyle)), "31 janvier 2024");
    EXPECT_EQ(written(formatter("de_DE", NSDateFormatterMediumStyle)), "31.01.2024");
}

TEST(DateFormatter, FollowsTheTimeZone)
{
    const auto tokyo = formatter("de_DE", NSDateFormatterNoStyle, NSDateFormatterShortStyle);
    tokyo->setTimeZone(NSTimeZone::cls().timeZoneWithName("Asia/Tokyo"_ns).get());
    EXPECT_EQ(written(tokyo), "21:34");
}

TEST(DateFormatter, FollowsTheUserWhereNothingIsSet)
{
    const UserLanguage user("fr_FR");
    const LocalTime local("Asia/Tokyo"_ns);
    const auto plain = make<NSDateFormatter>();
    plain->setDateFormat("d MMMM HH:mm"_ns);
    EXPECT_EQ(utf8(plain->stringFromDate(date().get())), "31 janvier 21:34");
    UserLocale::use("de_DE");
    EXPECT_EQ(utf8(plain->stringFromDate(date().get())), "31 Januar 21:34");
}

TEST(DateFormatter, WritesByAPattern)
{
    EXPECT_EQ(written(patterned("yyyy-MM-dd'T'HH:mm:ssXXX"_ns)), "2024-01-31T12:34:56Z");
    EXPECT_EQ(written(patterned("EEE d. MMM"_ns, "de_DE")), "Mi. 31. Jan.");
    EXPECT_EQ(written(patterned(""_ns)), "");
}

TEST(DateFormatter, WhatWasSetLastDecides)
{
    const auto how = patterned("yyyy"_ns);
    EXPECT_EQ(utf8(how->dateFormat()), "yyyy");
    how->setDateStyle(NSDateFormatterMediumStyle);
    EXPECT_EQ(written(how), "Jan 31, 2024");
    EXPECT_EQ(utf8(how->dateFormat()), "MMM d, y");
}

TEST(DateFormatter, TheCalendarCanBeAnother)
{
    const auto how = patterned("y"_ns);
    how->setCalendar(NSCalendar::cls().calendarWithIdentifier(NSCalendarIdentifierBuddhist).get());
    EXPECT_EQ(written(how), "2567");
}

TEST(DateFormatter, ALocaleHasItsOwnPatternForLetters)
{
    const auto german = NSLocale::cls().localeWithLocaleIdentifier("de"_ns);
    EXPECT_EQ(utf8(NSDateFormatter::cls().dateFormatFromTemplate_options_locale(
                  "MMMd"_ns, 0, german.get())),
        "d. MMM");
    const auto how = formatter("de", NSDateFormatterNoStyle);
    how->setLocalizedDateFormatFromTemplate("MMMd"_ns);
    EXPECT_EQ(written(how), "31. Jan.");
}

TEST(DateFormatter, NoDateGivesNil)
{
    EXPECT_FALSE(formatter("en_US", NSDateFormatterMediumStyle)->stringFromDate(nullptr));
    EXPECT_FALSE(formatter("en_US", NSDateFormatterMediumStyle)
                     ->stringFromDate(
                         NSDate::cls().dateWithTimeIntervalSinceReferenceDate(std::nan("")).get()));
}

TEST(DateFormatter, ADateBeyondAllCalendarsIsWrittenAsTheirEnd)
{
    const auto how = patterned("y G"_ns);
    const auto at = [&](double seconds) {
        return utf8(how->stringFromDate(
            NSDate::cls().dateWithTimeIntervalSinceReferenceDate(seconds).get()));
    };
    EXPECT_EQ(at(1e300), at(1.8e14));
    EXPECT_EQ(at(-std::numeric_limits<double>::infinity()), at(-1.8e14));
    EXPECT_NE(at(1e300), "");
}

TEST(DateFormatter, APatternThatIsTooLongIsNotUsed)
{
    const auto how = patterned(stringFrom(std::string(100000, 'y')).get());
    EXPECT_EQ(written(how), "2024-01-31 12:34:56 +0000");
    EXPECT_FALSE(how->dateFromString("2024"_ns));
}

TEST(DateFormatter, ALocaleThatIsRubbishWritesNeutrally)
{
    const std::string neutral = written(formatter("", NSDateFormatterShortStyle));
    for (const std::string& rubbish : { std::string("x@y=z@@@"), std::string(100000, 'x'),
             std::string("e7dar=hebrewy e"), std::string("de DE"), std::string("dé") })
        EXPECT_EQ(written(formatter(rubbish.c_str(), NSDateFormatterShortStyle)), neutral)
            << rubbish;
}

// ---- near days

TEST(DateFormatter, NearDaysGiveWayToWords)
{
    const VirtualClock clock; // 2026-01-01
    const auto how = formatter("en_US", NSDateFormatterMediumStyle);
    how->setDoesRelativeDateFormatting(true);
    const auto at = [&](double days) {
        return utf8(
            how->stringFromDate(NSDate::cls().dateWithTimeIntervalSinceNow(days * 86400).get()));
    };
    EXPECT_EQ(at(0), "Today");
    EXPECT_EQ(at(-1), "Yesterday");
    EXPECT_EQ(at(1), "Tomorrow");
    EXPECT_EQ(at(2), "Jan 3, 2026");
    EXPECT_EQ(at(-20000), "Mar 31, 1971");
}

TEST(DateFormatter, EveryLanguageBeginsItsWordsWithACapital)
{
    const VirtualClock clock;
    const auto today = NSDate::cls().date();
    const auto word = [&](const char* locale) {
        const auto how = formatter(locale, NSDateFormatterMediumStyle);
        how->setDoesRelativeDateFormatting(true);
        return utf8(how->stringFromDate(today.get()));
    };
    EXPECT_EQ(word("fr_FR"), "Aujourd’hui");
    EXPECT_EQ(word("es_ES"), "Hoy");
    EXPECT_EQ(word("ru_RU"), "Сегодня");
    EXPECT_EQ(word("ja_JP"), "今日");
}

TEST(DateFormatter, AWordIsFollowedByTheTime)
{
    const VirtualClock clock;
    const auto how = formatter("de_DE", NSDateFormatterMediumStyle, NSDateFormatterShortStyle);
    how->setDoesRelativeDateFormatting(true);
    EXPECT_EQ(utf8(how->stringFromDate(NSDate::cls().dateWithTimeIntervalSinceNow(60).get())),
        "Heute, 00:01");
}

TEST(DateFormatter, APatternHasNoWords)
{
    const VirtualClock clock;
    const auto how = patterned("d"_ns);
    how->setDoesRelativeDateFormatting(true);
    EXPECT_EQ(utf8(how->stringFromDate(NSDate::cls().date().get())), "1");
}

// ---- reading

TEST(DateFormatter, ReadsWhatItWrites)
{
    EXPECT_EQ(read(formatter("en_US", NSDateFormatterMediumStyle), "Jan 31, 2024"_ns),
        "2024-01-31 00:00:00 +0000");
    EXPECT_EQ(read(patterned("yyyy-MM-dd HH:mm:ss"_ns), "2024-01-31 12:34:56"_ns),
        "2024-01-31 12:34:56 +0000");
}

TEST(DateFormatter, TheWholeTextMustBeADate)
{
    EXPECT_EQ(read(patterned("yyyy-MM-dd"_ns), "2024-01-31 and more"_ns), "(nil)");
    EXPECT_EQ(read(patterned("yyyy-MM-dd"_ns), "tomorrow"_ns), "(nil)");
    EXPECT_EQ(read(patterned("yyyy-MM-dd"_ns), ""_ns), "(nil)");
    EXPECT_EQ(read(patterned("yyyy-MM-dd"_ns), nullptr), "(nil)");
    EXPECT_EQ(read(formatter("en_US", NSDateFormatterNoStyle), "2024"_ns), "(nil)");
}

TEST(DateFormatter, OnlyALenientOneReadsDaysThatAreNot)
{
    const auto how = patterned("yyyy-MM-dd"_ns);
    EXPECT_EQ(read(how, "2024-01-32"_ns), "(nil)");
    how->setLenient(true);
    EXPECT_EQ(read(how, "2024-01-32"_ns), "2024-02-01 00:00:00 +0000");
}

TEST(DateFormatter, PartsThatAreMissingComeFromTheDefaultDate)
{
    const auto how = patterned("HH:mm"_ns);
    EXPECT_EQ(read(how, "12:34"_ns), "2000-01-01 12:34:00 +0000");
    how->setDefaultDate(date().get());
    EXPECT_EQ(read(how, "01:02"_ns), "2024-01-31 01:02:56 +0000");
}

TEST(DateFormatter, SaysWhyAsAFormatter)
{
    const auto how = patterned("yyyy"_ns);
    Ref<NSObject> value;
    Ref<NSString> error;
    EXPECT_TRUE(how->getObjectValue_forString_errorDescription(&value, "2024"_ns, &error));
    EXPECT_EQ(textOf(value), "2024-01-01 00:00:00 +0000");
    EXPECT_FALSE(how->getObjectValue_forString_errorDescription(&value, "x"_ns, &error));
    EXPECT_TRUE(error);
    EXPECT_FALSE(how->getObjectValue_forString_errorDescription(nullptr, "x"_ns, nullptr));
    EXPECT_EQ(utf8(how->stringForObjectValue(date().get())), "2024");
    EXPECT_FALSE(how->stringForObjectValue("2024"_ns));
    EXPECT_FALSE(how->stringForObjectValue(nullptr));
}

TEST(DateFormatter, KnowsTheNamesOfDaysAndMonths)
{
    const auto how = formatter("en_US", NSDateFormatterNoStyle);
    ASSERT_EQ(how->weekdaySymbols()->count(), 7u);
    EXPECT_EQ(textOf(how->weekdaySymbols()->firstObject()), "Sunday");
    EXPECT_EQ(textOf(how->shortWeekdaySymbols()->lastObject()), "Sat");
    ASSERT_EQ(how->monthSymbols()->count(), 12u);
    EXPECT_EQ(textOf(how->monthSymbols()->firstObject()), "January");
    EXPECT_EQ(textOf(how->shortMonthSymbols()->lastObject()), "Dec");
    EXPECT_EQ(utf8(how->AMSymbol()), "AM");
    EXPECT_EQ(utf8(how->PMSymbol()), "PM");
}
