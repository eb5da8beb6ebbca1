// SPDX-License-Identifier: Apache-2.0
#include "NSDate+HumanInterval.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "foundation/NSBundle.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSString.h"
#include "foundation/StringFormat.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr std::int64_t kMinute = 60;
    constexpr std::int64_t kHour = 60 * kMinute;
    constexpr std::int64_t kDay = 24 * kHour;
    constexpr std::int64_t kWeek = 7 * kDay;
    constexpr std::int64_t kMonth = 30 * kDay;
    constexpr std::int64_t kYear = 365 * kDay;

    /// The phrases for intervals up to `last` seconds. Where there is a unit, they are formats for the count of it.
    struct Band {
        std::int64_t last;
        NSString* shortPhrase;
        NSString* spokenPhrase;
        std::int64_t unit;
    };

    // Uneven on purpose: people round minutes down and hours up.
    const Band& bandOf(std::int64_t elapsed)
    {
        static const Band bands[] {
            { kMinute - 1, "now"_ns, "just now"_ns, 0 },
            { 2 * kMinute - 1, "1m"_ns, "a minute ago"_ns, 0 },
            { 45 * kMinute, "%um"_ns, "%u minutes ago"_ns, kMinute },
            { 90 * kMinute, "1h"_ns, "an hour ago"_ns, 0 },
            { 3 * kHour - 1, "2h"_ns, "2 hours ago"_ns, 0 },
            { 23 * kHour - 1, "%uh"_ns, "%u hours ago"_ns, kHour },
            { 36 * kHour - 1, "1d"_ns, "a day ago"_ns, 0 },
            { 3 * kDay - 1, "2d"_ns, "2 days ago"_ns, 0 },
            { 7 * kDay - 1, "%ud"_ns, "%u days ago"_ns, kDay },
            { 11 * kDay - 1, "1 wk"_ns, "a week ago"_ns, 0 },
            { 14 * kDay - 1, "2 wks"_ns, "2 weeks ago"_ns, 0 },
            { 63 * kDay - 1, "%u wks"_ns, "%u weeks ago"_ns, kWeek },
            { 570 * kDay - 1, "%u mos"_ns, "%u months ago"_ns, kMonth },
            { 730 * kDay - 1, "1 yr"_ns, "a year ago"_ns, 0 },
            { std::numeric_limits<std::int64_t>::max(), "%u yrs"_ns, "%u years ago"_ns, kYear },
        };
        const Band* band = bands;
        while (elapsed > band->last)
            ++band;
        return *band;
    }

    /// Cuts off the part of a second; what is beyond 32 bits counts as the end, and what is no number as now.
    std::int32_t wholeSeconds(double interval)
    {
        using Limits = std::numeric_limits<std::int32_t>;
        if (std::isnan(interval))
            return 0;
        if (interval <= Limits::min())
            return Limits::min();
        return interval >= Limits::max() ? Limits::max() : static_cast<std::int32_t>(interval);
    }

    struct HumanInterval {

        static Ref<NSString> phrase(NSDate& self, NSString* Band::*length)
        {
            const std::int32_t seconds = wholeSeconds(self.timeIntervalSinceNow());
            if (seconds >= 1)
                return self.description();
            const std::int64_t elapsed = -std::int64_t { seconds };
            const Band& band = bandOf(elapsed);
            const Ref<NSString> text
                = NSBundle::cls().mainBundle()->localizedStringForKey_value_table(
                    band.*length, ""_ns, nullptr);
            if (!band.unit)
                return text;
            return NSString::cls().stringWithFormat(fittingFormat(text.get(), band.*length),
                static_cast<std::uint32_t>(elapsed / band.unit));
        }
        static Ref<NSString> sinceNow(NSDate& self) { return phrase(self, &Band::shortPhrase); }
        static Ref<NSString> agoSinceNow(NSDate& self) { return phrase(self, &Band::spokenPhrase); }

        static Ref<NSString> day(NSDate& self)
        {
            const auto formatter = make<NSDateFormatter>();
            formatter->setTimeStyle(NSDateFormatterNoStyle);
            formatter->setDateStyle(NSDateFormatterMediumStyle);
            formatter->setDoesRelativeDateFormatting(true);
            return formatter->stringFromDate(&self);
        }
        static NSTimeInterval ago(NSDate& self)
        {
            return NSDate::cls().date()->timeIntervalSinceDate(&self);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "humanIntervalSinceNow", imp<sinceNow> },
                { "humanIntervalAgoSinceNow", imp<agoSinceNow> },
                { "humanDay", imp<day> },
                { "timeIntervalAgo", imp<ago> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSDate, HumanInterval)

}
