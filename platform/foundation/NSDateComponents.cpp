// SPDX-License-Identifier: Apache-2.0
#include "NSDateComponents.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "NSCalendar.h"
#include "NSDate.h"
#include "NSTimeZone.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSDateComponents::Methods<struct Values> {

    static NSInteger* place(NSDateComponents& self, NSCalendarUnit unit)
    {
        constexpr NSCalendarUnit kNumbers = 0xfffe & ~NSCalendarUnit { 1 << 8 };
        return std::has_single_bit(unit) && (unit & kNumbers)
            ? &self.values_[std::countr_zero(unit) - 1]
            : nullptr;
    }
    static NSInteger value(NSDateComponents& self, NSCalendarUnit unit)
    {
        const NSInteger* const found = place(self, unit);
        return found ? *found : NSDateComponentUndefined;
    }
    static void setValue(NSDateComponents& self, NSInteger value, NSCalendarUnit unit)
    {
        if (NSInteger* const found = place(self, unit))
            *found = value;
    }
    template <NSCalendarUnit Unit> static NSInteger get(NSDateComponents& self)
    {
        return *place(self, Unit);
    }
    template <NSCalendarUnit Unit> static void set(NSDateComponents& self, NSInteger value)
    {
        *place(self, Unit) = value;
    }

    static Ref<NSDate> date(NSDateComponents& self)
    {
        return maybe(self.calendar())->dateFromComponents(&self);
    }
    static bool isEqual(NSDateComponents& self, NSObject* other)
    {
        if (!other || !other->isKindOfClass(NSDateComponents::cls()))
            return false;
        const auto& that = *static_cast<NSDateComponents*>(other);
        const auto same
            = [](const NSObject* a, const NSObject* b) { return a == b || (a && a->isEqual(b)); };
        return std::equal(
                   std::begin(self.values_), std::end(self.values_), std::begin(that.values_))
            && same(self.calendar_.get(), that.calendar_.get())
            && same(self.timeZone_.get(), that.timeZone_.get());
    }
    static std::uint64_t hash(NSDateComponents& self)
    {
        std::uint64_t mixed = 0;
        for (const NSInteger value : self.values_)
            mixed = mixed * 31 + static_cast<std::uint64_t>(value);
        return mixed;
    }
    static Ref<NSObject> copyWithZone(NSDateComponents& self, void*)
    {
        const auto copy = make<NSDateComponents>();
        std::copy(std::begin(self.values_), std::end(self.values_), std::begin(copy->values_));
        copy->calendar_ = self.calendar_;
        copy->timeZone_ = self.timeZone_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "era", imp<get<NSCalendarUnitEra>> },
            { "setEra:", imp<set<NSCalendarUnitEra>> },
            { "year", imp<get<NSCalendarUnitYear>> },
            { "setYear:", imp<set<NSCalendarUnitYear>> },
            { "month", imp<get<NSCalendarUnitMonth>> },
            { "setMonth:", imp<set<NSCalendarUnitMonth>> },
            { "day", imp<get<NSCalendarUnitDay>> },
            { "setDay:", imp<set<NSCalendarUnitDay>> },
            { "hour", imp<get<NSCalendarUnitHour>> },
            { "setHour:", imp<set<NSCalendarUnitHour>> },
            { "minute", imp<get<NSCalendarUnitMinute>> },
            { "setMinute:", imp<set<NSCalendarUnitMinute>> },
            { "second", imp<get<NSCalendarUnitSecond>> },
            { "setSecond:", imp<set<NSCalendarUnitSecond>> },
            { "nanosecond", imp<get<NSCalendarUnitNanosecond>> },
            { "setNanosecond:", imp<set<NSCalendarUnitNanosecond>> },
            { "weekday", imp<get<NSCalendarUnitWeekday>> },
            { "setWeekday:", imp<set<NSCalendarUnitWeekday>> },
            { "weekdayOrdinal", imp<get<NSCalendarUnitWeekdayOrdinal>> },
            { "setWeekdayOrdinal:", imp<set<NSCalendarUnitWeekdayOrdinal>> },
            { "quarter", imp<get<NSCalendarUnitQuarter>> },
            { "setQuarter:", imp<set<NSCalendarUnitQuarter>> },
            { "weekOfMonth", imp<get<NSCalendarUnitWeekOfMonth>> },
            { "setWeekOfMonth:", imp<set<NSCalendarUnitWeekOfMonth>> },
            { "weekOfYear", imp<get<NSCalendarUnitWeekOfYear>> },
            { "setWeekOfYear:", imp<set<NSCalendarUnitWeekOfYear>> },
            { "yearForWeekOfYear", imp<get<NSCalendarUnitYearForWeekOfYear>> },
            { "setYearForWeekOfYear:", imp<set<NSCalendarUnitYearForWeekOfYear>> },
            { "valueForComponent:", imp<value> },
            { "setValue:forComponent:", imp<setValue> },
            { "date", imp<date> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({
            property<&NSDateComponents::calendar_>("calendar", nonatomic),
            property<&NSDateComponents::timeZone_>("timeZone", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSDateComponents, Values)

}
