// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSFormatter.h"

#include <gtest/gtest.h>

#include "foundation/NSDate.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSLocale.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "foundation/NSTimeZone.h"
#include "support/Archives.h"
#include "support/Strings.h"

namespace brindle {

using test::archived;

TEST(FormatterCoding, ANumberFormatterWritesAsBefore)
{
    const auto formatter = make<NSNumberFormatter>();
    formatter->setNumberStyle(NSNumberFormatterDecimalStyle);
    formatter->setLocale(NSLocale::cls().localeWithLocaleIdentifier("de_DE"_ns).get());
    formatter->setMinimumFractionDigits(3);
    formatter->setRoundingMode(NSNumberFormatterRoundUp);
    const auto back = archived(formatter);
    const auto number = NSNumber::cls().numberWithDouble(1234.50001);
    EXPECT_EQ(utf8Of(back->stringFromNumber(number.get())), "1.234,501");
    EXPECT_EQ(back->roundingMode(), NSNumberFormatterRoundUp);
}

TEST(FormatterCoding, ANumberFormatterKeepsItsMoney)
{
    const auto formatter = make<NSNumberFormatter>();
    formatter->setCurrencyCode("EUR"_ns);
    EXPECT_EQ(utf8Of(archived(formatter)->currencyCode()), "EUR");
}

TEST(FormatterCoding, DigitsThatWereNotSetStayThoseOfTheStyle)
{
    const auto formatter = make<NSNumberFormatter>();
    formatter->setNumberStyle(NSNumberFormatterCurrencyStyle);
    formatter->setLocale(NSLocale::cls().localeWithLocaleIdentifier("en_US"_ns).get());
    const auto back = archived(formatter);
    EXPECT_EQ(back->maximumFractionDigits(), 2U);
    back->setNumberStyle(NSNumberFormatterDecimalStyle);
    EXPECT_EQ(back->maximumFractionDigits(), 3U);
}

TEST(FormatterCoding, ADateFormatterWritesAsBefore)
{
    const auto formatter = make<NSDateFormatter>();
    formatter->setLocale(NSLocale::cls().localeWithLocaleIdentifier("en_US"_ns).get());
    formatter->setTimeZone(NSTimeZone::cls().timeZoneWithName("Asia/Tokyo"_ns).get());
    formatter->setDateFormat("yyyy-MM-dd HH:mm"_ns);
    formatter->setLenient(true);
    const auto back = archived(formatter);
    const auto date = NSDate::cls().dateWithTimeIntervalSince1970(0);
    EXPECT_EQ(utf8Of(back->stringFromDate(date.get())), "1970-01-01 09:00");
    EXPECT_TRUE(back->isLenient());
}

TEST(FormatterCoding, ADateFormatterKeepsItsStyles)
{
    const auto formatter = make<NSDateFormatter>();
    formatter->setDateStyle(NSDateFormatterShortStyle);
    formatter->setTimeStyle(NSDateFormatterFullStyle);
    formatter->setDoesRelativeDateFormatting(true);
    const auto back = archived(formatter);
    EXPECT_EQ(back->dateStyle(), NSDateFormatterShortStyle);
    EXPECT_EQ(back->timeStyle(), NSDateFormatterFullStyle);
    EXPECT_TRUE(back->doesRelativeDateFormatting());
}

}
