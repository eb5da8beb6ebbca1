// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "NSString.h"

namespace brindle {

class NSCalendar;
class NSDate;
class NSTimeZone;

/// What a part of a date answers that was not set.
inline constexpr NSInteger NSDateComponentUndefined = 0x7fffffffffffffff;

/// Parts of a calendar; bits that are added together.
using NSCalendarUnit = NSUInteger;
enum : NSUInteger {
    NSCalendarUnitEra = 1 << 1,
    NSCalendarUnitYear = 1 << 2,
    NSCalendarUnitMonth = 1 << 3,
    NSCalendarUnitDay = 1 << 4,
    NSCalendarUnitHour = 1 << 5,
    NSCalendarUnitMinute = 1 << 6,
    NSCalendarUnitSecond = 1 << 7,
    NSCalendarUnitWeekday = 1 << 9, ///< 1 is Sunday
    NSCalendarUnitWeekdayOrdinal = 1 << 10, ///< the second Monday of a month has 2
    NSCalendarUnitQuarter = 1 << 11,
    NSCalendarUnitWeekOfMonth = 1 << 12,
    NSCalendarUnitWeekOfYear = 1 << 13,
    NSCalendarUnitYearForWeekOfYear = 1 << 14,
    NSCalendarUnitNanosecond = 1 << 15,
    NSCalendarUnitCalendar = 1 << 20,
    NSCalendarUnitTimeZone = 1 << 21,
};

/// A date or a distance in the parts of a calendar; each is a number or `NSDateComponentUndefined`.
class NSDateComponents : public NSObject {
    BRINDLE_OBJECT(NSDateComponents, NSObject)

public:
    NSInteger era() const { return send<"era", NSInteger>(); }
    void setEra(NSInteger value) { send<"setEra:">(value); }
    NSInteger year() const { return send<"year", NSInteger>(); }
    void setYear(NSInteger value) { send<"setYear:">(value); }
    /// 1 is January.
    NSInteger month() const { return send<"month", NSInteger>(); }
    void setMonth(NSInteger value) { send<"setMonth:">(value); }
    NSInteger day() const { return send<"day", NSInteger>(); }
    void setDay(NSInteger value) { send<"setDay:">(value); }
    NSInteger hour() const { return send<"hour", NSInteger>(); }
    void setHour(NSInteger value) { send<"setHour:">(value); }
    NSInteger minute() const { return send<"minute", NSInteger>(); }
    void setMinute(NSInteger value) { send<"setMinute:">(value); }
    NSInteger second() const { return send<"second", NSInteger>(); }
    void setSecond(NSInteger value) { send<"setSecond:">(value); }
    NSInteger nanosecond() const { return send<"nanosecond", NSInteger>(); }
    void setNanosecond(NSInteger value) { send<"setNanosecond:">(value); }
    NSInteger weekday() const { return send<"weekday", NSInteger>(); }
    void setWeekday(NSInteger value) { send<"setWeekday:">(value); }
    NSInteger weekdayOrdinal() const { return send<"weekdayOrdinal", NSInteger>(); }
    void setWeekdayOrdinal(NSInteger value) { send<"setWeekdayOrdinal:">(value); }
    NSInteger quarter() const { return send<"quarter", NSInteger>(); }
    void setQuarter(NSInteger value) { send<"setQuarter:">(value); }
    NSInteger weekOfMonth() const { return send<"weekOfMonth", NSInteger>(); }
    void setWeekOfMonth(NSInteger value) { send<"setWeekOfMonth:">(value); }
    NSInteger weekOfYear() const { return send<"weekOfYear", NSInteger>(); }
    void setWeekOfYear(NSInteger value) { send<"setWeekOfYear:">(value); }
    NSInteger yearForWeekOfYear() const { return send<"yearForWeekOfYear", NSInteger>(); }
    void setYearForWeekOfYear(NSInteger value) { send<"setYearForWeekOfYear:">(value); }

    /// Answers the value of one unit, by its bit; `NSDateComponentUndefined` for anything else.
    NSInteger valueForComponent(NSCalendarUnit unit) const
    {
        return send<"valueForComponent:", NSInteger>(unit);
    }
    void setValue_forComponent(NSInteger value, NSCalendarUnit unit)
    {
        send<"setValue:forComponent:">(value, unit);
    }

    Ref<NSCalendar> calendar() const { return send<"calendar", Ref<NSCalendar>>(); }
    void setCalendar(NSCalendar* calendar) { send<"setCalendar:">(calendar); }
    Ref<NSTimeZone> timeZone() const { return send<"timeZone", Ref<NSTimeZone>>(); }
    void setTimeZone(NSTimeZone* zone) { send<"setTimeZone:">(zone); }
    /// Answers the date in its own calendar; nil without one.
    Ref<NSDate> date() const { return send<"date", Ref<NSDate>>(); }

private:
    static constexpr std::size_t kUnits = 15; // by the number of the unit's bit, less one

    NSInteger values_[kUnits]
        = { NSDateComponentUndefined, NSDateComponentUndefined, NSDateComponentUndefined,
              NSDateComponentUndefined, NSDateComponentUndefined, NSDateComponentUndefined,
              NSDateComponentUndefined, NSDateComponentUndefined, NSDateComponentUndefined,
              NSDateComponentUndefined, NSDateComponentUndefined, NSDateComponentUndefined,
              NSDateComponentUndefined, NSDateComponentUndefined, NSDateComponentUndefined };
    Ref<NSCalendar> calendar_;
    Ref<NSTimeZone> timeZone_;
};

}
