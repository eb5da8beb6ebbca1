// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSISO8601DateFormatter.h"

#include <cmath>

#include "foundation/NSTimeZone.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"

using namespace brindle;

namespace {

/// 2024-01-31 12:34:56.5 in Greenwich.
Ref<NSDate> moment() { return NSDate::cls().dateWithTimeIntervalSince1970(1706704496.5); }

std::string written(NSISO8601DateFormatOptions options)
{
    const auto formatter = make<NSISO8601DateFormatter>();
    formatter->setFormatOptions(options);
    return utf8(formatter->stringFromDate(moment().get()));
}

}

TEST(ISO8601DateFormatter, WritesTheDateAndTimeOfTheInternet)
{
    EXPECT_EQ(utf8(make<NSISO8601DateFormatter>()->stringFromDate(moment().get())),
        "2024-01-31T12:34:56Z");
}

TEST(ISO8601DateFormatter, WritesTheSameInEveryLanguage)
{
    const test::UserLanguage user("ar_EG");
    EXPECT_EQ(written(NSISO8601DateFormatWithInternetDateTime), "2024-01-31T12:34:56Z");
}

TEST(ISO8601DateFormatter, WritesThePartsThatAreAskedFor)
{
    EXPECT_EQ(written(NSISO8601DateFormatWithFullDate), "2024-01-31");
    EXPECT_EQ(written(NSISO8601DateFormatWithFullTime), "12:34:56Z");
    EXPECT_EQ(
        written(NSISO8601DateFormatWithInternetDateTime | NSISO8601DateFormatWithFractionalSeconds),
        "2024-01-31T12:34:56.500Z");
    EXPECT_EQ(written(NSISO8601DateFormatWithYear | NSISO8601DateFormatWithWeekOfYear
                  | NSISO8601DateFormatWithDay | NSISO8601DateFormatWithDashSeparatorInDate),
        "2024-W05-03");
    EXPECT_EQ(written(NSISO8601DateFormatWithYear | NSISO8601DateFormatWithDay), "2024031");
    EXPECT_EQ(written(NSISO8601DateFormatWithFullDate | NSISO8601DateFormatWithTime
                  | NSISO8601DateFormatWithSpaceBetweenDateAndTime),
        "2024-01-31 123456");
    EXPECT_EQ(written(0), "");
}

TEST(ISO8601DateFormatter, CountsInItsTimeZone)
{
    const auto formatter = make<NSISO8601DateFormatter>();
    formatter->setTimeZone(NSTimeZone::cls().timeZoneForSecondsFromGMT(19800).get());
    EXPECT_EQ(utf8(formatter->stringFromDate(moment().get())), "2024-01-31T18:04:56+05:30");
}

TEST(ISO8601DateFormatter, ReadsWhatItWrites)
{
    const auto formatter = make<NSISO8601DateFormatter>();
    const auto read = [&](NSString* text) { return textOf(formatter->dateFromString(text)); };
    EXPECT_EQ(read("2024-01-31T12:34:56Z"_ns), "2024-01-31 12:34:56 +0000");
    EXPECT_EQ(read("2024-01-31T12:34:56+01:00"_ns), "2024-01-31 11:34:56 +0000");
    EXPECT_EQ(read("2024-01-31"_ns), "(nil)");
    EXPECT_EQ(read("2024-13-31T12:34:56Z"_ns), "(nil)");
    EXPECT_EQ(read(nullptr), "(nil)");
}

TEST(ISO8601DateFormatter, NoDateGivesNil)
{
    const auto formatter = make<NSISO8601DateFormatter>();
    EXPECT_FALSE(formatter->stringFromDate(nullptr));
    EXPECT_FALSE(formatter->stringForObjectValue("x"_ns));
    EXPECT_FALSE(formatter->stringFromDate(
        NSDate::cls().dateWithTimeIntervalSinceReferenceDate(std::nan("")).get()));
}
