// SPDX-License-Identifier: Apache-2.0
#include "NSDate.h"

#include <bit>
#include <cmath>
#include <cstdio>

#include "Clock.h"
#include "HashingPrivate.h"
#include "NSString.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr std::int64_t kDay = 86400;
    constexpr std::int64_t kReferenceDay = 730791; // 2001-01-01 as days since 0000-03-01, Gregorian
    constexpr std::int64_t kGregorianBegin = 578041; // 1582-10-15 in the same count
    constexpr NSTimeInterval kFarthestDate
        = 1e15; // seconds; beyond, a double has no more days to tell apart

    struct Day {
        std::int64_t year;
        int month;
        int day;
    };

    std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

    /// Years are counted from the 1st of March, so that the leap day is a year's last.
    Day dayFrom(std::int64_t year, std::int64_t dayOfYear)
    {
        const std::int64_t month = (5 * dayOfYear + 2) / 153;
        const std::int64_t day = dayOfYear - (153 * month + 2) / 5 + 1;
        return { year + (month >= 10 ? 1 : 0), static_cast<int>(month < 10 ? month + 3 : month - 9),
            static_cast<int>(day) };
    }

    Day gregorian(std::int64_t days)
    {
        const std::int64_t era = floorDivide(days, 146097);
        const std::int64_t inEra = days - era * 146097;
        const std::int64_t year = (inEra - inEra / 1460 + inEra / 36524 - inEra / 146096) / 365;
        return dayFrom(era * 400 + year, inEra - (365 * year + year / 4 - year / 100));
    }

    Day julian(std::int64_t days)
    {
        const std::int64_t sinceMarch
            = days + 2; // 0000-03-01 of the older calendar was two days earlier
        const std::int64_t four = floorDivide(sinceMarch, 1461);
        const std::int64_t inFour = sinceMarch - four * 1461;
        const std::int64_t year = (inFour - inFour / 1460) / 365;
        return dayFrom(four * 4 + year, inFour - 365 * year);
    }

    std::string timeText(NSTimeInterval interval)
    {
        const double bounded = std::isnan(interval) ? 0
            : interval < -kFarthestDate             ? -kFarthestDate
            : interval > kFarthestDate              ? kFarthestDate
                                                    : interval;
        const auto seconds = static_cast<std::int64_t>(std::floor(bounded));
        const std::int64_t days = floorDivide(seconds, kDay);
        const std::int64_t rest = seconds - days * kDay;
        const std::int64_t count = days + kReferenceDay;
        const Day date = count < kGregorianBegin ? julian(count) : gregorian(count);
        char text[64];
        std::snprintf(text, sizeof text, "%04lld-%02d-%02d %02d:%02d:%02d +0000",
            static_cast<long long>(date.year), date.month, date.day, static_cast<int>(rest / 3600),
            static_cast<int>(rest / 60 % 60), static_cast<int>(rest % 60));
        return text;
    }

}

// A subclass may keep the moment in its own way: it overrides `timeIntervalSinceReferenceDate`.
template <> struct NSDate::Methods<struct Time> {

    static Ref<NSDate> alloc(Class& self) { return cast<NSDate>(NSObject::Meta { &self }.alloc()); }

    static Ref<NSDate> dateSinceReference(Class& self, NSTimeInterval seconds)
    {
        if (&self != classOf<NSDate>())
            return alloc(self)->initWithTimeIntervalSinceReferenceDate(seconds);
        const Ref<NSDate> date
            = Ref<NSDate>::adopt(static_cast<NSDate*>(class_createInstance(&self)));
        date->seconds_ = seconds;
        return date;
    }
    static NSTimeInterval now(Class&) { return Clock::wall(); }
    static Ref<NSDate> date(Class& self) { return cast<NSDate>(alloc(self)->init()); }
    static Ref<NSDate> dateSinceNow(Class& self, NSTimeInterval seconds)
    {
        return alloc(self)->initWithTimeIntervalSinceNow(seconds);
    }
    static Ref<NSDate> dateSince1970(Class& self, NSTimeInterval seconds)
    {
        return alloc(self)->initWithTimeIntervalSince1970(seconds);
    }
    static Ref<NSDate> dateSinceDate(Class& self, NSTimeInterval seconds, NSDate* other)
    {
        return alloc(self)->initWithTimeInterval_sinceDate(seconds, other);
    }
    static constexpr NSTimeInterval kDistantFuture = 63113904000.0;
    static Ref<NSDate> distantPast(Class& self) { return dateSinceReference(self, -63114076800.0); }
    static Ref<NSDate> distantFuture(Class& self)
    {
        // Every loop that waits for events asks for it, and dates never change.
        static NSDate* const future = dateSinceReference(*classOf<NSDate>(), kDistantFuture).leak();
        return &self == classOf<NSDate>() ? Ref<NSDate>(future)
                                          : dateSinceReference(self, kDistantFuture);
    }

    static NSTimeInterval wall() { return NSDate::cls().timeIntervalSinceReferenceDate(); }

    static Ref<NSDate> initSinceReference(NSDate& self, NSTimeInterval seconds)
    {
        if (!super<NSDate, "init", Ref<NSObject>>(self))
            return nullptr;
        self.seconds_ = seconds;
        return &self;
    }
    static Ref<NSDate> init(NSDate& self)
    {
        return self.initWithTimeIntervalSinceReferenceDate(wall());
    }
    static Ref<NSDate> initSinceNow(NSDate& self, NSTimeInterval seconds)
    {
        return self.initWithTimeIntervalSinceReferenceDate(wall() + seconds);
    }
    static Ref<NSDate> initSince1970(NSDate& self, NSTimeInterval seconds)
    {
        return self.initWithTimeIntervalSinceReferenceDate(seconds - NSTimeIntervalSince1970);
    }
    static Ref<NSDate> initSinceDate(NSDate& self, NSTimeInterval seconds, NSDate* other)
    {
        return self.initWithTimeIntervalSinceReferenceDate(
            maybe(other)->timeIntervalSinceReferenceDate() + seconds);
    }

    static NSTimeInterval sinceReference(NSDate& self) { return self.seconds_; }
    static NSTimeInterval since1970(NSDate& self)
    {
        return self.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970;
    }
    static NSTimeInterval sinceNow(NSDate& self)
    {
        return self.timeIntervalSinceReferenceDate() - wall();
    }
    static NSTimeInterval sinceDate(NSDate& self, NSDate* other)
    {
        return self.timeIntervalSinceReferenceDate()
            - maybe(other)->timeIntervalSinceReferenceDate();
    }
    static Ref<NSDate> byAdding(NSDate& self, NSTimeInterval seconds)
    {
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            self.timeIntervalSinceReferenceDate() + seconds);
    }

    static NSComparisonResult compare(NSDate& self, NSDate* other)
    {
        if (!other)
            raise("NSInvalidArgumentException",
                std::string("*** -[") + class_getName(self.classObject())
                    + " compare:]: nil argument");
        const NSTimeInterval a = self.timeIntervalSinceReferenceDate();
        const NSTimeInterval b = other->timeIntervalSinceReferenceDate();
        return a < b ? NSOrderedAscending : a > b ? NSOrderedDescending : NSOrderedSame;
    }
    static bool isEqualToDate(NSDate& self, NSDate* other)
    {
        return other
            && self.timeIntervalSinceReferenceDate() == other->timeIntervalSinceReferenceDate();
    }
    static bool isEqual(NSDate& self, NSObject* other)
    {
        return other
            && (other == &self
                || (other->isKindOfClass(NSDate::cls())
                    && self.isEqualToDate(static_cast<NSDate*>(other))));
    }
    static std::uint64_t hash(NSDate& self)
    {
        // Adding zero makes one of the two zeros, which are equal.
        return hashing::ofWord(
            std::bit_cast<std::uint64_t>(self.timeIntervalSinceReferenceDate() + 0.0));
    }
    static Ref<NSDate> earlier(NSDate& self, NSDate* other)
    {
        if (!other)
            return nullptr;
        return self.compare(other) == NSOrderedDescending ? other : &self;
    }
    static Ref<NSDate> later(NSDate& self, NSDate* other)
    {
        if (!other)
            return nullptr;
        return self.compare(other) == NSOrderedAscending ? other : &self;
    }
    static Ref<NSObject> copyWithZone(NSDate& self, void*) { return &self; }
    static Ref<NSString> description(NSDate& self)
    {
        return stringFrom(timeText(self.timeIntervalSinceReferenceDate()));
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "date", imp<date> },
            { "dateWithTimeIntervalSinceNow:", imp<dateSinceNow> },
            { "dateWithTimeIntervalSinceReferenceDate:", imp<dateSinceReference> },
            { "dateWithTimeIntervalSince1970:", imp<dateSince1970> },
            { "dateWithTimeInterval:sinceDate:", imp<dateSinceDate> },
            { "distantPast", imp<distantPast> },
            { "distantFuture", imp<distantFuture> },
            { "timeIntervalSinceReferenceDate", imp<now> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithTimeIntervalSinceReferenceDate:", imp<initSinceReference> },
            { "initWithTimeIntervalSinceNow:", imp<initSinceNow> },
            { "initWithTimeIntervalSince1970:", imp<initSince1970> },
            { "initWithTimeInterval:sinceDate:", imp<initSinceDate> },
            { "timeIntervalSinceReferenceDate", imp<sinceReference> },
            { "timeIntervalSince1970", imp<since1970> },
            { "timeIntervalSinceNow", imp<sinceNow> },
            { "timeIntervalSinceDate:", imp<sinceDate> },
            { "dateByAddingTimeInterval:", imp<byAdding> },
            { "compare:", imp<compare> },
            { "isEqualToDate:", imp<isEqualToDate> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "earlierDate:", imp<earlier> },
            { "laterDate:", imp<later> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSDate, Time)

}
