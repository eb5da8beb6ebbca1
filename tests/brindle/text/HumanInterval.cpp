// SPDX-License-Identifier: Apache-2.0
#include "text/NSDate+HumanInterval.h"

#include <cmath>
#include <limits>
#include <ostream>

#include "support/BundleFolder.h"
#include "support/LocalTime.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"
#include "support/VirtualClock.h"

using namespace brindle;
using test::BundleFolder;
using test::LocalTime;
using test::MainBundle;
using test::UserLanguage;
using test::VirtualClock;

namespace {

Ref<NSDate> ago(double seconds) { return NSDate::cls().dateWithTimeIntervalSinceNow(-seconds); }

struct Edge {
    std::int64_t elapsed;
    const char* shortPhrase;
    const char* spokenPhrase;
};

void PrintTo(const Edge& edge, std::ostream* out) { *out << edge.elapsed << " s ago"; }

/// The first and the last second of every band.
constexpr Edge kEdges[] {
    { 0, "now", "just now" },
    { 59, "now", "just now" },
    { 60, "1m", "a minute ago" },
    { 119, "1m", "a minute ago" },
    { 120, "2m", "2 minutes ago" },
    { 179, "2m", "2 minutes ago" },
    { 180, "3m", "3 minutes ago" },
    { 2699, "44m", "44 minutes ago" },
    { 2700, "45m", "45 minutes ago" },
    { 2701, "1h", "an hour ago" },
    { 5400, "1h", "an hour ago" },
    { 5401, "2h", "2 hours ago" },
    { 10799, "2h", "2 hours ago" },
    { 10800, "3h", "3 hours ago" },
    { 14399, "3h", "3 hours ago" },
    { 14400, "4h", "4 hours ago" },
    { 82799, "22h", "22 hours ago" },
    { 82800, "1d", "a day ago" },
    { 129599, "1d", "a day ago" },
    { 129600, "2d", "2 days ago" },
    { 259199, "2d", "2 days ago" },
    { 259200, "3d", "3 days ago" },
    { 604799, "6d", "6 days ago" },
    { 604800, "1 wk", "a week ago" },
    { 950399, "1 wk", "a week ago" },
    { 950400, "2 wks", "2 weeks ago" },
    { 1209599, "2 wks", "2 weeks ago" },
    { 1209600, "2 wks", "2 weeks ago" },
    { 1814400, "3 wks", "3 weeks ago" },
    { 5443199, "8 wks", "8 weeks ago" },
    { 5443200, "2 mos", "2 months ago" },
    { 7775999, "2 mos", "2 months ago" },
    { 7776000, "3 mos", "3 months ago" },
    { 49247999, "18 mos", "18 months ago" },
    { 49248000, "1 yr", "a year ago" },
    { 63071999, "1 yr", "a year ago" },
    { 63072000, "2 yrs", "2 years ago" },
    { 94607999, "2 yrs", "2 years ago" },
    { 94608000, "3 yrs", "3 years ago" },
    { 2147483647, "68 yrs", "68 years ago" },
    { 2147483648, "68 yrs", "68 years ago" },
    { 2147483649, "68 yrs", "68 years ago" },
    { 1000000000000, "68 yrs", "68 years ago" },
};

class HumanIntervalEdge : public testing::TestWithParam<Edge> { };

}

TEST_P(HumanIntervalEdge, HasItsShortPhrase)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(static_cast<double>(GetParam().elapsed)))),
        GetParam().shortPhrase);
}

TEST_P(HumanIntervalEdge, HasItsSpokenPhrase)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(static_cast<double>(GetParam().elapsed)))),
        GetParam().spokenPhrase);
}

INSTANTIATE_TEST_SUITE_P(All, HumanIntervalEdge, testing::ValuesIn(kEdges),
    [](const auto& edge) { return std::to_string(edge.param.elapsed); });

TEST(HumanInterval, PartsOfASecondAreCutOff)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(59.9))), "now");
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(2700.9))), "45m");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(-0.9))), "just now");
}

TEST(HumanInterval, ASecondAheadIsTheDatesOwnDescription)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(-1))), "2026-01-01 00:00:01 +0000");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(-86400))), "2026-01-02 00:00:00 +0000");
}

TEST(HumanInterval, AFarFutureIsAlsoTheDescription)
{
    const VirtualClock clock;
    const auto date = NSDate::cls().distantFuture();
    EXPECT_EQ(utf8(humanIntervalSinceNow(date)), "4001-01-01 00:00:00 +0000");
    const auto never = ago(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(utf8(humanIntervalSinceNow(never)), utf8(never->description()));
}

TEST(HumanInterval, AnEndlessPastIsAsOldAsAPhraseGets)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(std::numeric_limits<double>::infinity()))), "68 yrs");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(NSDate::cls().distantPast())), "68 years ago");
}

TEST(HumanInterval, ADateThatIsNoNumberIsNow)
{
    const VirtualClock clock;
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(std::nan("")))), "now");
}

TEST(HumanInterval, OfNilIsNil)
{
    EXPECT_EQ(utf8(humanIntervalSinceNow(static_cast<NSDate*>(nullptr))), "(nil)");
}

TEST(HumanInterval, PhrasesAreTranslatedByTheMainBundle)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings", R"("just now" = "gerade eben"; "1h" = "1 Std.";)");
    const MainBundle main(folder);
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(0))), "gerade eben");
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(3600))), "1 Std.");
}

TEST(HumanInterval, ATranslatedFormatReceivesTheCount)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings", R"("%u minutes ago" = "vor %u Minuten";)");
    const MainBundle main(folder);
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(300))), "vor 5 Minuten");
}

TEST(HumanInterval, FixedAndCountedPhrasesHaveTextsOfTheirOwn)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings",
        R"("2h" = "zwei Stunden"; "%uh" = "%u Std."; "2d" = "zwei Tage"; "%ud" = "%u T.";)"
        R"("2 wks" = "zwei Wochen"; "%u wks" = "%u W."; "1 yr" = "ein Jahr"; "%u mos" = "%u M.";)"
        R"("2 hours ago" = "vor zwei Stunden"; "2 weeks ago" = "vor zwei Wochen";)"
        R"("2 days ago" = "vor zwei Tagen"; "%u weeks ago" = "vor %u W.";)");
    const MainBundle main(folder);
    const auto terse = [](double seconds) { return utf8(humanIntervalSinceNow(ago(seconds))); };
    EXPECT_EQ(terse(10799), "zwei Stunden");
    EXPECT_EQ(terse(10800), "3 Std.");
    EXPECT_EQ(terse(172800), "zwei Tage");
    EXPECT_EQ(terse(259199), "zwei Tage");
    EXPECT_EQ(terse(259200), "3 T.");
    EXPECT_EQ(terse(1209599), "zwei Wochen");
    EXPECT_EQ(terse(1209600), "2 W.");
    EXPECT_EQ(terse(49247999), "18 M.");
    EXPECT_EQ(terse(49248000), "ein Jahr");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(10799))), "vor zwei Stunden");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(259199))), "vor zwei Tagen");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(1209599))), "vor zwei Wochen");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(1209600))), "vor 2 W.");
}

TEST(HumanInterval, ATranslationThatAsksForSomethingElseIsNotUsed)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings",
        R"("%u minutes ago" = "vor %@ Minuten"; "%um" = "%u Min. %s"; "%uh" = "einige Std.";)");
    const MainBundle main(folder);
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(300))), "5 minutes ago");
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(300))), "5m");
    EXPECT_EQ(utf8(humanIntervalSinceNow(ago(7200 * 2))), "einige Std.");
}

TEST(HumanInterval, APhraseWithoutATranslationStaysEnglish)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings", R"("just now" = "gerade eben";)");
    const MainBundle main(folder);
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(3600))), "an hour ago");
    EXPECT_EQ(utf8(humanIntervalAgoSinceNow(ago(7200 * 2))), "4 hours ago");
}

TEST(HumanInterval, TheNumberIsPositiveForThePast)
{
    const VirtualClock clock;
    EXPECT_EQ(timeIntervalAgo(ago(90)), 90);
    EXPECT_EQ(timeIntervalAgo(ago(-90)), -90);
}

// ---- days

TEST(HumanDay, NearDaysHaveNamesThatBeginWithACapital)
{
    const VirtualClock clock; // 2026-01-01
    const UserLanguage user("en_US");
    const LocalTime local("GMT"_ns);
    EXPECT_EQ(utf8(humanDay(ago(0))), "Today");
    EXPECT_EQ(utf8(humanDay(ago(86400))), "Yesterday");
    EXPECT_EQ(utf8(humanDay(ago(-86400))), "Tomorrow");
}

TEST(HumanDay, OtherDaysAreDatesOfMediumLength)
{
    const VirtualClock clock;
    const UserLanguage user("en_US");
    const LocalTime local("GMT"_ns);
    EXPECT_EQ(utf8(humanDay(ago(2 * 86400))), "Dec 30, 2025");
    EXPECT_EQ(utf8(humanDay(ago(-31 * 86400))), "Feb 1, 2026");
}

TEST(HumanDay, SpeaksTheUsersLanguage)
{
    const VirtualClock clock;
    const UserLanguage user("de_DE");
    const LocalTime local("GMT"_ns);
    EXPECT_EQ(utf8(humanDay(ago(0))), "Heute");
    EXPECT_EQ(utf8(humanDay(ago(2 * 86400))), "Vorgestern");
    EXPECT_EQ(utf8(humanDay(ago(-2 * 86400))), "Übermorgen");
    EXPECT_EQ(utf8(humanDay(ago(3 * 86400))), "29.12.2025");
}

TEST(HumanDay, ChangesAtTheLocalMidnight)
{
    const VirtualClock clock; // midnight in Greenwich, one o'clock in Zurich
    const UserLanguage user("en_US");
    {
        const LocalTime local("Europe/Zurich"_ns);
        EXPECT_EQ(utf8(humanDay(ago(3600))), "Today");
        EXPECT_EQ(utf8(humanDay(ago(3601))), "Yesterday");
    }
    const LocalTime local("America/New_York"_ns); // seven in the evening of the day before
    EXPECT_EQ(utf8(humanDay(ago(3601))), "Today");
    EXPECT_EQ(utf8(humanDay(ago(-5 * 3600))), "Tomorrow");
}

TEST(HumanDay, OfADateThatIsNoNumberIsNil)
{
    EXPECT_EQ(utf8(humanDay(ago(std::nan("")))), "(nil)");
}
