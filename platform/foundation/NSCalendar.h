// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDate.h"
#include "NSDateComponents.h"
#include "StringConstant.h"

namespace brindle {

class NSLocale;

inline constexpr StringConstant<"gregorian"> NSCalendarIdentifierGregorian;
inline constexpr StringConstant<"buddhist"> NSCalendarIdentifierBuddhist;
inline constexpr StringConstant<"chinese"> NSCalendarIdentifierChinese;
inline constexpr StringConstant<"coptic"> NSCalendarIdentifierCoptic;
inline constexpr StringConstant<"hebrew"> NSCalendarIdentifierHebrew;
inline constexpr StringConstant<"iso8601"> NSCalendarIdentifierISO8601;
inline constexpr StringConstant<"indian"> NSCalendarIdentifierIndian;
inline constexpr StringConstant<"islamic"> NSCalendarIdentifierIslamic;
inline constexpr StringConstant<"japanese"> NSCalendarIdentifierJapanese;
inline constexpr StringConstant<"persian"> NSCalendarIdentifierPersian;
inline constexpr StringConstant<"roc"> NSCalendarIdentifierRepublicOfChina;

/// How dates are computed; bits that are added together.
using NSCalendarOptions = NSUInteger;
enum : NSUInteger {
    NSCalendarWrapComponents = 1, ///< a part that overflows starts again and changes no larger one
};

/// Counts years, months and days: takes dates apart, puts them together, adds to them, in one time zone.
///
/// What is not set follows the user when the calendar is used: `NSLocale`'s current one, `NSTimeZone`'s default one. Parts that
/// are out of range go on counting: the 32nd of January is the 1st of February.
/// - Nil: a nil date gives nil, NO, or no parts. Dates beyond some six million years count as that far, parts beyond a thousand
///   million as that many.
/// Thread: any, as long as nobody changes it meanwhile.
class NSCalendar : public NSObject {
    BRINDLE_OBJECT(NSCalendar, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the calendar of the user's locale.
        Ref<NSCalendar> currentCalendar() const
        {
            return send<"currentCalendar", Ref<NSCalendar>>();
        }
        Ref<NSCalendar> autoupdatingCurrentCalendar() const
        {
            return send<"autoupdatingCurrentCalendar", Ref<NSCalendar>>();
        }
        /// - Nil: for identifiers that are not listed above.
        Ref<NSCalendar> calendarWithIdentifier(NSString* identifier) const
        {
            return send<"calendarWithIdentifier:", Ref<NSCalendar>>(identifier);
        }
    };

    Ref<NSCalendar> initWithCalendarIdentifier(NSString* identifier)
    {
        return send<"initWithCalendarIdentifier:", Ref<NSCalendar>>(identifier);
    }
    Ref<NSString> calendarIdentifier() const { return send<"calendarIdentifier", Ref<NSString>>(); }
    Ref<NSLocale> locale() const { return send<"locale", Ref<NSLocale>>(); }
    void setLocale(NSLocale* locale) { send<"setLocale:">(locale); }
    Ref<NSTimeZone> timeZone() const { return send<"timeZone", Ref<NSTimeZone>>(); }
    void setTimeZone(NSTimeZone* zone) { send<"setTimeZone:">(zone); }
    /// Answers the day that a week begins with, 1 for Sunday; the locale's until it is set.
    NSUInteger firstWeekday() const { return send<"firstWeekday", NSUInteger>(); }
    void setFirstWeekday(NSUInteger day) { send<"setFirstWeekday:">(day); }
    NSUInteger minimumDaysInFirstWeek() const
    {
        return send<"minimumDaysInFirstWeek", NSUInteger>();
    }
    void setMinimumDaysInFirstWeek(NSUInteger days) { send<"setMinimumDaysInFirstWeek:">(days); }

    // ---- taking apart and putting together
    Ref<NSDateComponents> components_fromDate(NSCalendarUnit units, NSDate* date) const
    {
        return send<"components:fromDate:", Ref<NSDateComponents>>(units, date);
    }
    NSInteger component_fromDate(NSCalendarUnit unit, NSDate* date) const
    {
        return send<"component:fromDate:", NSInteger>(unit, date);
    }
    /// Parts that are not set are those of the first moment of the year 1; the parts' own time zone counts.
    Ref<NSDate> dateFromComponents(NSDateComponents* components) const
    {
        return send<"dateFromComponents:", Ref<NSDate>>(components);
    }

    // ---- computing
    Ref<NSDate> dateByAddingComponents_toDate_options(
        NSDateComponents* components, NSDate* date, NSCalendarOptions options) const
    {
        return send<"dateByAddingComponents:toDate:options:", Ref<NSDate>>(
            components, date, options);
    }
    Ref<NSDate> dateByAddingUnit_value_toDate_options(
        NSCalendarUnit unit, NSInteger value, NSDate* date, NSCalendarOptions options) const
    {
        return send<"dateByAddingUnit:value:toDate:options:", Ref<NSDate>>(
            unit, value, date, options);
    }
    /// Answers the distance in whole units, the largest first: what is left of it counts for the next.
    Ref<NSDateComponents> components_fromDate_toDate_options(
        NSCalendarUnit units, NSDate* from, NSDate* to, NSCalendarOptions options) const
    {
        return send<"components:fromDate:toDate:options:", Ref<NSDateComponents>>(
            units, from, to, options);
    }

    // ---- questions
    /// Answers the first moment of the day in the calendar's time zone.
    Ref<NSDate> startOfDayForDate(NSDate* date) const
    {
        return send<"startOfDayForDate:", Ref<NSDate>>(date);
    }
    /// Answers where the unit round a date begins and how many seconds it lasts; the places may be nullptr.
    /// - Returns: NO for units that have no length: all but years, quarters, months, weeks, days, hours, minutes, seconds.
    bool rangeOfUnit_startDate_interval_forDate(
        NSCalendarUnit unit, Ref<NSDate>* start, NSTimeInterval* interval, NSDate* date) const
    {
        return send<"rangeOfUnit:startDate:interval:forDate:", bool>(unit, start, interval, date);
    }
    /// Answers which numbers a smaller unit takes within the larger one round a date: days in February {1, 28}. A location
    /// of `NSNotFound` for pairs that have no answer.
    NSRange rangeOfUnit_inUnit_forDate(
        NSCalendarUnit smaller, NSCalendarUnit larger, NSDate* date) const
    {
        return send<"rangeOfUnit:inUnit:forDate:", NSRange>(smaller, larger, date);
    }
    bool isDate_inSameDayAsDate(NSDate* a, NSDate* b) const
    {
        return send<"isDate:inSameDayAsDate:", bool>(a, b);
    }
    bool isDate_equalToDate_toUnitGranularity(NSDate* a, NSDate* b, NSCalendarUnit unit) const
    {
        return send<"isDate:equalToDate:toUnitGranularity:", bool>(a, b, unit);
    }
    bool isDateInToday(NSDate* date) const { return send<"isDateInToday:", bool>(date); }
    bool isDateInYesterday(NSDate* date) const { return send<"isDateInYesterday:", bool>(date); }
    bool isDateInTomorrow(NSDate* date) const { return send<"isDateInTomorrow:", bool>(date); }
    /// By the custom of the locale.
    bool isDateInWeekend(NSDate* date) const { return send<"isDateInWeekend:", bool>(date); }

private:
    friend struct CalendarAccess;

    Ref<NSString> identifier_;
    Ref<NSLocale> locale_;
    Ref<NSTimeZone> timeZone_;
    NSUInteger firstWeekday_ = 0; // 0: the locale's
    NSUInteger minimumDays_ = 0;
};

}
