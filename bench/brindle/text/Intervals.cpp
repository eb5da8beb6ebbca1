// SPDX-License-Identifier: Apache-2.0
#include "text/NSDate+HumanInterval.h"

#include <unicode/udat.h>

#include "foundation/Clock.h"
#include "foundation/NSString.h"
#include "foundation/unicode/UnicodeCallsPrivate.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr double kHour = 3600; // an interval whose phrase holds no number
    constexpr double kFiveMinutes = 300; // one whose phrase does

    /// The same decision on a number, answering a string that is there.
    NSString* bareBand(double interval)
    {
        static constexpr std::int32_t kEnds[] { 59, 119, 2700, 5400, 10799, 82799, 129599, 259199,
            604799, 950399, 1209599, 5443199, 49247999, 63071999, INT32_MAX };
        static NSString* const phrases[] { "now"_ns, "1m"_ns, "%um"_ns, "1h"_ns, "2h"_ns, "%uh"_ns,
            "1d"_ns, "2d"_ns, "%ud"_ns, "1 wk"_ns, "2 wks"_ns, "%u wks"_ns, "%u mos"_ns, "1 yr"_ns,
            "%u yrs"_ns };
        const auto elapsed = static_cast<std::int32_t>(interval);
        std::size_t band = 0;
        while (elapsed > kEnds[band])
            ++band;
        return phrases[band];
    }

    Pair phrase(double elapsed)
    {
        const Ref<NSDate> date = NSDate::cls().dateWithTimeIntervalSinceNow(-elapsed);
        const double then = date->timeIntervalSinceReferenceDate();
        // The clock is read in both: without it there is no distance.
        return { repeated([=](std::size_t) { keep(humanIntervalSinceNow(date).get()); }),
            repeated(
                [=](std::size_t) { keep(Ref<NSString>(bareBand(Clock::wall() - then)).get()); }) };
    }

    /// The Unicode library alone, with a format that is open already.
    Pair day()
    {
        const Ref<NSDate> date = NSDate::cls().dateWithTimeIntervalSinceNow(-1000 * 86400.0);
        UErrorCode error = U_ZERO_ERROR;
        const std::shared_ptr<UDateFormat> format(
            ICU(udat_open)(UDAT_NONE, UDAT_MEDIUM, "en_US", u"GMT", 3, nullptr, 0, &error),
            ICU(udat_close));
        const double moment = date->timeIntervalSince1970() * 1000;
        return { repeated([=](std::size_t) { keep(humanDay(date).get()); }),
            repeated([=](std::size_t) {
                UChar text[64];
                UErrorCode failure = U_ZERO_ERROR;
                keep(ICU(udat_format)(format.get(), moment, text, 64, nullptr, &failure));
            }) };
    }

}

void addIntervals(Plan& plan)
{
    plan.time("humanIntervalSinceNow without a number beside the same table on a double",
        timesFloor(3.5), [] { return phrase(kHour); });
    plan.time("humanIntervalSinceNow with a number beside the same table on a double",
        timesFloor(20), [] { return phrase(kFiveMinutes); });
    plan.time("humanDay of a far day beside the library's bare formatting", timesFloor(3.5), day);
}

}
