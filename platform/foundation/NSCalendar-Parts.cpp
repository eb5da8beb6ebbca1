// SPDX-License-Identifier: Apache-2.0
#include "NSCalendar.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "CalendarPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using Lease = unicode::Pool<UCalendar*>::Lease;

namespace {

    /// A unit and what the library calls it, the larger ones first.
    struct Field {
        NSCalendarUnit unit;
        UCalendarDateFields field;
        NSInteger first; ///< what is added to the library's number
        std::int32_t times; ///< how many of the field a unit has, when units are added
    };
    constexpr Field kFields[] {
        { NSCalendarUnitEra, UCAL_ERA, 0, 1 },
        { NSCalendarUnitYear, UCAL_YEAR, 0, 1 },
        { NSCalendarUnitYearForWeekOfYear, UCAL_YEAR_WOY, 0, 1 },
        { NSCalendarUnitQuarter, UCAL_MONTH, 0, 3 },
        { NSCalendarUnitMonth, UCAL_MONTH, 1, 1 },
        { NSCalendarUnitWeekOfYear, UCAL_WEEK_OF_YEAR, 0, 1 },
        { NSCalendarUnitWeekOfMonth, UCAL_WEEK_OF_MONTH, 0, 1 },
        { NSCalendarUnitWeekdayOrdinal, UCAL_DAY_OF_WEEK_IN_MONTH, 0, 1 },
        { NSCalendarUnitDay, UCAL_DATE, 0, 1 },
        { NSCalendarUnitWeekday, UCAL_DAY_OF_WEEK, 0, 1 },
        { NSCalendarUnitHour, UCAL_HOUR_OF_DAY, 0, 1 },
        { NSCalendarUnitMinute, UCAL_MINUTE, 0, 1 },
        { NSCalendarUnitSecond, UCAL_SECOND, 0, 1 },
    };

    const Field* fieldOf(NSCalendarUnit unit)
    {
        for (const Field& field : kFields) {
            if (field.unit == unit)
                return &field;
        }
        return nullptr;
    }

    std::int32_t bounded(NSInteger value)
    {
        constexpr NSInteger kMost = 1000000000;
        return static_cast<std::int32_t>(std::clamp(value, -kMost, kMost));
    }

    /// The library counts milliseconds, so that the part of a second is kept beside it.
    double wholeSeconds(double moment) { return std::floor(boundedMoment(moment)); }

    bool placeAt(UCalendar* calendar, double wholeMoment)
    {
        UErrorCode error = U_ZERO_ERROR;
        ICU(ucal_setMillis)(calendar, unicode::millisecondsFrom(wholeMoment), &error);
        return U_SUCCESS(error);
    }

    double momentOf(UCalendar* calendar)
    {
        UErrorCode error = U_ZERO_ERROR;
        return unicode::secondsFrom(ICU(ucal_getMillis)(calendar, &error));
    }

    NSInteger valueIn(UCalendar* calendar, const Field& field)
    {
        UErrorCode error = U_ZERO_ERROR;
        const NSInteger value = ICU(ucal_get)(calendar, field.field, &error);
        return field.unit == NSCalendarUnitQuarter ? value / field.times + 1 : value + field.first;
    }

    void addTo(UCalendar* calendar, const Field& field, NSInteger value, NSCalendarOptions options)
    {
        UErrorCode error = U_ZERO_ERROR;
        const bool wraps = options & NSCalendarWrapComponents;
        (wraps ? ICU(ucal_roll) : ICU(ucal_add))(
            calendar, field.field, bounded(bounded(value) * NSInteger { field.times }), &error);
    }

    Ref<NSDate> dateAt(double moment)
    {
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(moment);
    }

    /// Answers whole units from where the calendar stands to a moment, and moves it on by them.
    NSInteger distance(UCalendar* calendar, const Field& field, double to)
    {
        const double length = field.unit == NSCalendarUnitHour ? 3600
            : field.unit == NSCalendarUnitMinute               ? 60
            : field.unit == NSCalendarUnitSecond               ? 1
                                                               : 0;
        if (length != 0) { // the library's own count ends at 32 bits
            const double from = momentOf(calendar);
            const double count = std::trunc((to - from) / length);
            placeAt(calendar, from + count * length);
            return static_cast<NSInteger>(count);
        }
        UErrorCode error = U_ZERO_ERROR;
        const NSInteger count = ICU(ucal_getFieldDifference)(
            calendar, unicode::millisecondsFrom(to), field.field, &error);
        if (U_FAILURE(error))
            return 0;
        if (field.times != 1) // the months of a quarter that is not whole are given back
            ICU(ucal_add)
        (calendar, field.field, static_cast<std::int32_t>(-(count % field.times)), &error);
        return count / field.times;
    }

    void clearTime(UCalendar* calendar, NSCalendarUnit unit)
    {
        constexpr UCalendarDateFields kTimes[] { UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND };
        const int kept = unit == NSCalendarUnitHour ? 1
            : unit == NSCalendarUnitMinute          ? 2
            : unit == NSCalendarUnitSecond          ? 3
                                                    : 0;
        for (int i = kept; i < 3; ++i)
            ICU(ucal_set)(calendar, kTimes[i], 0);
    }

    /// Moves a calendar to where the unit begins; false for units that have no length.
    bool moveToBegin(UCalendar* calendar, NSCalendarUnit unit)
    {
        UErrorCode error = U_ZERO_ERROR;
        switch (unit) {
        case NSCalendarUnitYear:
            ICU(ucal_set)(calendar, UCAL_MONTH, 0);
            ICU(ucal_set)(calendar, UCAL_DATE, 1);
            break;
        case NSCalendarUnitQuarter: {
            const std::int32_t month = ICU(ucal_get)(calendar, UCAL_MONTH, &error);
            ICU(ucal_set)(calendar, UCAL_DATE, 1);
            ICU(ucal_set)(calendar, UCAL_MONTH, month / 3 * 3);
            break;
        }
        case NSCalendarUnitMonth:
            ICU(ucal_set)(calendar, UCAL_DATE, 1);
            break;
        case NSCalendarUnitWeekOfMonth:
        case NSCalendarUnitWeekOfYear: {
            const std::int32_t first = ICU(ucal_getAttribute)(calendar, UCAL_FIRST_DAY_OF_WEEK);
            const std::int32_t day = ICU(ucal_get)(calendar, UCAL_DAY_OF_WEEK, &error);
            ICU(ucal_add)(calendar, UCAL_DATE, -((day - first + 7) % 7), &error);
            break;
        }
        case NSCalendarUnitDay:
        case NSCalendarUnitWeekday:
        case NSCalendarUnitHour:
        case NSCalendarUnitMinute:
        case NSCalendarUnitSecond:
            break;
        default:
            return false;
        }
        clearTime(calendar, unit);
        return true;
    }

    struct Span {
        double begin;
        double end;
    };

    std::optional<Span> spanOf(const NSCalendar& calendar, NSCalendarUnit unit, NSDate* date)
    {
        const Lease lease = CalendarAccess::lend(calendar);
        const Field* const field = fieldOf(unit);
        if (!date || !lease || !field
            || !placeAt(lease.get(), wholeSeconds(date->timeIntervalSinceReferenceDate()))
            || !moveToBegin(lease.get(), unit))
            return std::nullopt;
        const double begin = momentOf(lease.get());
        addTo(lease.get(), *field, 1, 0);
        return Span { begin, momentOf(lease.get()) };
    }

    /// The numbers that one field takes, for a pair of units.
    struct Limit {
        NSCalendarUnit smaller;
        NSCalendarUnit larger;
        UCalendarDateFields field;
        std::int32_t first;
    };
    constexpr Limit kLimits[] {
        { NSCalendarUnitMonth, NSCalendarUnitYear, UCAL_MONTH, 1 },
        { NSCalendarUnitDay, NSCalendarUnitMonth, UCAL_DATE, 0 },
        { NSCalendarUnitDay, NSCalendarUnitYear, UCAL_DAY_OF_YEAR, 0 },
        { NSCalendarUnitWeekOfMonth, NSCalendarUnitMonth, UCAL_WEEK_OF_MONTH, 0 },
        { NSCalendarUnitWeekOfYear, NSCalendarUnitYear, UCAL_WEEK_OF_YEAR, 0 },
        { NSCalendarUnitWeekOfYear, NSCalendarUnitYearForWeekOfYear, UCAL_WEEK_OF_YEAR, 0 },
        { NSCalendarUnitWeekday, NSCalendarUnitWeekOfMonth, UCAL_DAY_OF_WEEK, 0 },
        { NSCalendarUnitWeekday, NSCalendarUnitWeekOfYear, UCAL_DAY_OF_WEEK, 0 },
        { NSCalendarUnitHour, NSCalendarUnitDay, UCAL_HOUR_OF_DAY, 0 },
        { NSCalendarUnitMinute, NSCalendarUnitHour, UCAL_MINUTE, 0 },
        { NSCalendarUnitSecond, NSCalendarUnitMinute, UCAL_SECOND, 0 },
    };

}

template <> struct NSCalendar::Methods<struct Parts> {

    static Ref<NSDateComponents> parts(NSCalendar& self, NSCalendarUnit units, NSDate* date)
    {
        const auto out = make<NSDateComponents>();
        if (units & NSCalendarUnitCalendar)
            out->setCalendar(&self);
        if (units & NSCalendarUnitTimeZone)
            out->setTimeZone(self.timeZone().get());
        const Lease lease = CalendarAccess::lend(self);
        if (!date || !lease)
            return out;
        const double moment = boundedMoment(date->timeIntervalSinceReferenceDate());
        placeAt(lease.get(), wholeSeconds(moment));
        for (const Field& field : kFields) {
            if (units & field.unit)
                out->setValue_forComponent(valueIn(lease.get(), field), field.unit);
        }
        if (units & NSCalendarUnitNanosecond)
            out->setNanosecond(static_cast<NSInteger>((moment - wholeSeconds(moment)) * 1e9));
        return out;
    }
    static NSInteger part(NSCalendar& self, NSCalendarUnit unit, NSDate* date)
    {
        return self.components_fromDate(unit, date)->valueForComponent(unit);
    }

    static Ref<NSDate> dateFrom(NSCalendar& self, NSDateComponents* parts)
    {
        if (!parts)
            return nullptr;
        const Lease lease = CalendarAccess::lend(self, parts->timeZone().get());
        if (!lease)
            return nullptr;
        ICU(ucal_clear)(lease.get());
        if (parts->year() == NSDateComponentUndefined
            && parts->yearForWeekOfYear() == NSDateComponentUndefined)
            ICU(ucal_set)(lease.get(), UCAL_YEAR, 1);
        for (const Field& field : kFields) {
            const NSInteger value = parts->valueForComponent(field.unit);
            if (value == NSDateComponentUndefined)
                continue;
            const NSInteger number = field.unit == NSCalendarUnitQuarter
                ? (NSInteger { bounded(value) } - 1) * field.times
                : NSInteger { bounded(value) } - field.first;
            ICU(ucal_set)(lease.get(), field.field, bounded(number));
        }
        const NSInteger part = parts->nanosecond();
        const double fraction
            = part == NSDateComponentUndefined ? 0 : static_cast<double>(part) / 1e9;
        return dateAt(momentOf(lease.get()) + fraction);
    }

    static Ref<NSDate> adding(
        NSCalendar& self, NSDateComponents* parts, NSDate* date, NSCalendarOptions options)
    {
        const Lease lease = CalendarAccess::lend(self);
        if (!parts || !date || !lease)
            return nullptr;
        const double moment = boundedMoment(date->timeIntervalSinceReferenceDate());
        double fraction = moment - wholeSeconds(moment);
        placeAt(lease.get(), wholeSeconds(moment));
        for (const Field& field : kFields) {
            const NSInteger value = parts->valueForComponent(field.unit);
            if (value != NSDateComponentUndefined)
                addTo(lease.get(), field, value, options);
        }
        if (parts->nanosecond() != NSDateComponentUndefined)
            fraction += static_cast<double>(parts->nanosecond()) / 1e9;
        return dateAt(momentOf(lease.get()) + fraction);
    }
    static Ref<NSDate> addingUnit(NSCalendar& self, NSCalendarUnit unit, NSInteger value,
        NSDate* date, NSCalendarOptions options)
    {
        const auto parts = make<NSDateComponents>();
        parts->setValue_forComponent(value, unit);
        return self.dateByAddingComponents_toDate_options(parts.get(), date, options);
    }

    static Ref<NSDateComponents> between(
        NSCalendar& self, NSCalendarUnit units, NSDate* from, NSDate* to, NSCalendarOptions)
    {
        const auto out = make<NSDateComponents>();
        const Lease lease = CalendarAccess::lend(self);
        if (!from || !to || !lease)
            return out;
        // Counted from the first date as if it were a whole second: the parts of seconds differ by what is left.
        const double begin = boundedMoment(from->timeIntervalSinceReferenceDate());
        const double end = boundedMoment(to->timeIntervalSinceReferenceDate());
        const double span = std::trunc(end - begin);
        const double target = wholeSeconds(begin) + span;
        placeAt(lease.get(), wholeSeconds(begin));
        for (const Field& field : kFields) {
            if (units & field.unit)
                out->setValue_forComponent(distance(lease.get(), field, target), field.unit);
        }
        if (units & NSCalendarUnitNanosecond)
            out->setNanosecond(static_cast<NSInteger>((end - begin - span) * 1e9));
        return out;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "components:fromDate:", imp<parts> },
            { "component:fromDate:", imp<part> },
            { "dateFromComponents:", imp<dateFrom> },
            { "dateByAddingComponents:toDate:options:", imp<adding> },
            { "dateByAddingUnit:value:toDate:options:", imp<addingUnit> },
            { "components:fromDate:toDate:options:", imp<between> },
        });
    }
};
BRINDLE_RECORD(NSCalendar, Parts)

template <> struct NSCalendar::Methods<struct Questions> {

    static Ref<NSDate> startOfDay(NSCalendar& self, NSDate* date)
    {
        const auto span = spanOf(self, NSCalendarUnitDay, date);
        return span ? dateAt(span->begin) : nullptr;
    }
    static bool rangeOfUnit(NSCalendar& self, NSCalendarUnit unit, Ref<NSDate>* start,
        NSTimeInterval* interval, NSDate* date)
    {
        const auto span = spanOf(self, unit, date);
        if (!span)
            return false;
        if (start)
            *start = dateAt(span->begin);
        if (interval)
            *interval = span->end - span->begin;
        return true;
    }
    static NSRange rangeInUnit(
        NSCalendar& self, NSCalendarUnit smaller, NSCalendarUnit larger, NSDate* date)
    {
        const Lease lease = CalendarAccess::lend(self);
        for (const Limit& limit : kLimits) {
            if (limit.smaller != smaller || limit.larger != larger || !date || !lease)
                continue;
            placeAt(lease.get(), wholeSeconds(date->timeIntervalSinceReferenceDate()));
            UErrorCode error = U_ZERO_ERROR;
            const auto ask = [&](UCalendarLimitType type) {
                return ICU(ucal_getLimit)(lease.get(), limit.field, type, &error);
            };
            const std::int32_t least = ask(UCAL_ACTUAL_MINIMUM);
            const std::int32_t most = ask(UCAL_ACTUAL_MAXIMUM);
            if (U_SUCCESS(error))
                return NSMakeRange(static_cast<NSUInteger>(least + limit.first),
                    static_cast<NSUInteger>(most - least + 1));
        }
        return NSMakeRange(NSNotFound, 0);
    }
    static bool isInUnit(NSCalendar& self, NSDate* a, NSDate* b, NSCalendarUnit unit)
    {
        const auto first = spanOf(self, unit, a);
        const auto second = spanOf(self, unit, b);
        return first && second && first->begin == second->begin;
    }
    static bool isInDay(NSCalendar& self, NSDate* a, NSDate* b)
    {
        return self.isDate_equalToDate_toUnitGranularity(a, b, NSCalendarUnitDay);
    }
    static bool isInDayFromToday(NSCalendar& self, NSDate* date, NSInteger days)
    {
        const auto now = NSDate::cls().date();
        const auto day
            = self.dateByAddingUnit_value_toDate_options(NSCalendarUnitDay, days, now.get(), 0);
        return self.isDate_inSameDayAsDate(date, day.get());
    }
    static bool isToday(NSCalendar& self, NSDate* date) { return isInDayFromToday(self, date, 0); }
    static bool isYesterday(NSCalendar& self, NSDate* date)
    {
        return isInDayFromToday(self, date, -1);
    }
    static bool isTomorrow(NSCalendar& self, NSDate* date)
    {
        return isInDayFromToday(self, date, 1);
    }
    static bool isWeekend(NSCalendar& self, NSDate* date)
    {
        const Lease lease = CalendarAccess::lend(self);
        if (!date || !lease)
            return false;
        UErrorCode error = U_ZERO_ERROR;
        return ICU(ucal_isWeekend)(
            lease.get(), unicode::millisecondsFrom(date->timeIntervalSinceReferenceDate()), &error);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "startOfDayForDate:", imp<startOfDay> },
            { "rangeOfUnit:startDate:interval:forDate:", imp<rangeOfUnit> },
            { "rangeOfUnit:inUnit:forDate:", imp<rangeInUnit> },
            { "isDate:equalToDate:toUnitGranularity:", imp<isInUnit> },
            { "isDate:inSameDayAsDate:", imp<isInDay> },
            { "isDateInToday:", imp<isToday> },
            { "isDateInYesterday:", imp<isYesterday> },
            { "isDateInTomorrow:", imp<isTomorrow> },
            { "isDateInWeekend:", imp<isWeekend> },
        });
    }
};
BRINDLE_RECORD(NSCalendar, Questions)

}
