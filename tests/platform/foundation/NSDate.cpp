// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSDate.h"

#include <cmath>
#include <ctime>
#include <limits>

#include "foundation/Clock.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSDate> date(double seconds)
{
    return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(seconds);
}

class VirtualTime {
public:
    VirtualTime() { Clock::useVirtual(); }
    ~VirtualTime() { Clock::useSystem(); }
};

}

TEST(NSDate, TheReferenceDateIsTheFirstMomentOf2001)
{
    EXPECT_EQ(utf8(date(0)->description()), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(date(0)->timeIntervalSince1970(), 978307200.0);
}

TEST(NSDate, DescribesItselfInUTC)
{
    EXPECT_EQ(utf8(NSDate::cls().dateWithTimeIntervalSince1970(1706704496)->description()),
        "2024-01-31 12:34:56 +0000");
}

TEST(NSDate, PartsOfASecondAreCutOff)
{
    EXPECT_EQ(utf8(date(0.999)->description()), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(utf8(date(-0.001)->description()), "2000-12-31 23:59:59 +0000");
}

TEST(NSDate, KnowsLeapDays)
{
    EXPECT_EQ(utf8(NSDate::cls().dateWithTimeIntervalSince1970(951782400)->description()),
        "2000-02-29 00:00:00 +0000");
    EXPECT_EQ(utf8(NSDate::cls().dateWithTimeIntervalSince1970(4107542400)->description()),
        "2100-03-01 00:00:00 +0000");
}

TEST(NSDate, AgreesWithTheSystemsCalendar)
{
    for (std::time_t seconds = -10000000000; seconds < 40000000000; seconds += 86400 * 97 + 3671) {
        std::tm parts {};
        ASSERT_TRUE(::gmtime_r(&seconds, &parts));
        char text[64];
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &parts);
        ASSERT_EQ(utf8(NSDate::cls()
                           .dateWithTimeIntervalSince1970(static_cast<double>(seconds))
                           ->description()),
            text);
    }
}

TEST(NSDate, TheCalendarChangedIn1582)
{
    const double change = -13197600000.0; // 1582-10-15
    EXPECT_EQ(utf8(date(change)->description()), "1582-10-15 00:00:00 +0000");
    EXPECT_EQ(utf8(date(change - 1)->description()), "1582-10-04 23:59:59 +0000");
}

TEST(NSDate, DistantDatesAreTheYears1And4001)
{
    EXPECT_EQ(utf8(NSDate::cls().distantPast()->description()), "0001-01-01 00:00:00 +0000");
    EXPECT_EQ(utf8(NSDate::cls().distantFuture()->description()), "4001-01-01 00:00:00 +0000");
}

TEST(NSDate, EndlessAndUndefinedDatesStillDescribeThemselves)
{
    for (const double seconds : { HUGE_VAL, -HUGE_VAL, std::nan(""), 1e300 })
        EXPECT_FALSE(utf8(date(seconds)->description()).empty());
}

TEST(NSDate, NowComesFromTheClock)
{
    const VirtualTime time;
    Clock::setWall(1000);
    EXPECT_EQ(NSDate::cls().timeIntervalSinceReferenceDate(), 1000);
    EXPECT_EQ(NSDate::cls().date()->timeIntervalSinceReferenceDate(), 1000);
    EXPECT_EQ(make<NSDate>()->timeIntervalSinceReferenceDate(), 1000);
    EXPECT_EQ(
        NSDate::cls().dateWithTimeIntervalSinceNow(5)->timeIntervalSinceReferenceDate(), 1005);
}

TEST(NSDate, ThePastIsANegativeIntervalSinceNow)
{
    const VirtualTime time;
    Clock::setWall(1000);
    EXPECT_EQ(date(990)->timeIntervalSinceNow(), -10);
    EXPECT_EQ(date(1010)->timeIntervalSinceNow(), 10);
}

TEST(NSDate, AnIntervalSinceADateIsReceiverMinusArgument)
{
    EXPECT_EQ(date(10)->timeIntervalSinceDate(date(4).get()), 6);
}

TEST(NSDate, ComparesByTime)
{
    EXPECT_EQ(date(1)->compare(date(2).get()), NSOrderedAscending);
    EXPECT_EQ(date(2)->compare(date(1).get()), NSOrderedDescending);
    EXPECT_EQ(date(1)->compare(date(1).get()), NSOrderedSame);
}

TEST(NSDate, ComparingWithNilRaises)
{
    EXPECT_EQ(raisedBy([] { date(1)->compare(nullptr); }),
        "NSInvalidArgumentException: *** -[NSDate compare:]: nil argument");
}

TEST(NSDate, EqualTimesAreEqualDates)
{
    EXPECT_TRUE(date(1.5)->isEqual(date(1.5).get()));
    EXPECT_FALSE(date(1.5)->isEqual(date(1.25).get()));
    EXPECT_FALSE(date(1.5)->isEqual("x"_ns));
    EXPECT_EQ(date(0.0)->hash(), date(-0.0)->hash());
}

TEST(NSDate, TheEarlierAndTheLaterAreFound)
{
    const Ref<NSDate> one = date(1);
    const Ref<NSDate> two = date(2);
    EXPECT_EQ(one->earlierDate(two.get()).get(), one.get());
    EXPECT_EQ(two->earlierDate(one.get()).get(), one.get());
    EXPECT_EQ(one->laterDate(two.get()).get(), two.get());
    EXPECT_EQ(one->laterDate(date(1).get()).get(), one.get());
}

TEST(NSDate, AddingMakesAnotherDate)
{
    EXPECT_EQ(date(1)->dateByAddingTimeInterval(2.5)->timeIntervalSinceReferenceDate(), 3.5);
    EXPECT_EQ(NSDate::cls()
                  .dateWithTimeInterval_sinceDate(3, date(1).get())
                  ->timeIntervalSinceReferenceDate(),
        4);
}

TEST(NSDate, ACopyIsItself)
{
    const Ref<NSDate> one = date(1);
    EXPECT_EQ(one->copy().get(), one.get());
}
