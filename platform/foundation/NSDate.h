// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

enum NSComparisonResult : NSInteger;

/// A span of time, in seconds.
using NSTimeInterval = double;

/// The reference date, 2001-01-01 00:00:00 UTC, in seconds since 1970.
inline constexpr NSTimeInterval NSTimeIntervalSince1970 = 978307200.0;

/// A point in time: seconds since the reference date. There are no leap seconds.
/// Thread: any.
class NSDate : public NSObject {
    BRINDLE_OBJECT(NSDate, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers now.
        Ref<NSDate> date() const { return send<"date", Ref<NSDate>>(); }
        Ref<NSDate> dateWithTimeIntervalSinceNow(NSTimeInterval seconds) const
        {
            return send<"dateWithTimeIntervalSinceNow:", Ref<NSDate>>(seconds);
        }
        Ref<NSDate> dateWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds) const
        {
            return send<"dateWithTimeIntervalSinceReferenceDate:", Ref<NSDate>>(seconds);
        }
        Ref<NSDate> dateWithTimeIntervalSince1970(NSTimeInterval seconds) const
        {
            return send<"dateWithTimeIntervalSince1970:", Ref<NSDate>>(seconds);
        }
        Ref<NSDate> dateWithTimeInterval_sinceDate(NSTimeInterval seconds, const NSDate* date) const
        {
            return send<"dateWithTimeInterval:sinceDate:", Ref<NSDate>>(seconds, date);
        }
        /// Answers the first moment of the year 1.
        Ref<NSDate> distantPast() const { return send<"distantPast", Ref<NSDate>>(); }
        /// Answers the first moment of the year 4001.
        Ref<NSDate> distantFuture() const { return send<"distantFuture", Ref<NSDate>>(); }
        /// Answers now, in seconds since the reference date.
        NSTimeInterval timeIntervalSinceReferenceDate() const
        {
            return send<"timeIntervalSinceReferenceDate", NSTimeInterval>();
        }
    };

    Ref<NSDate> initWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds)
    {
        return send<"initWithTimeIntervalSinceReferenceDate:", Ref<NSDate>>(seconds);
    }
    Ref<NSDate> initWithTimeIntervalSinceNow(NSTimeInterval seconds)
    {
        return send<"initWithTimeIntervalSinceNow:", Ref<NSDate>>(seconds);
    }
    Ref<NSDate> initWithTimeIntervalSince1970(NSTimeInterval seconds)
    {
        return send<"initWithTimeIntervalSince1970:", Ref<NSDate>>(seconds);
    }
    Ref<NSDate> initWithTimeInterval_sinceDate(NSTimeInterval seconds, const NSDate* date)
    {
        return send<"initWithTimeInterval:sinceDate:", Ref<NSDate>>(seconds, date);
    }

    NSTimeInterval timeIntervalSinceReferenceDate() const
    {
        return send<"timeIntervalSinceReferenceDate", NSTimeInterval>();
    }
    NSTimeInterval timeIntervalSince1970() const
    {
        return send<"timeIntervalSince1970", NSTimeInterval>();
    }
    /// Answers the receiver minus now: negative for the past.
    NSTimeInterval timeIntervalSinceNow() const
    {
        return send<"timeIntervalSinceNow", NSTimeInterval>();
    }
    /// Answers the receiver minus the argument; nil counts as the reference date.
    NSTimeInterval timeIntervalSinceDate(const NSDate* other) const
    {
        return send<"timeIntervalSinceDate:", NSTimeInterval>(other);
    }
    Ref<NSDate> dateByAddingTimeInterval(NSTimeInterval seconds) const
    {
        return send<"dateByAddingTimeInterval:", Ref<NSDate>>(seconds);
    }
    /// - Raises: `NSInvalidArgumentException` for nil, "*** -[NSDate compare:]: nil argument".
    NSComparisonResult compare(const NSDate* other) const
    {
        return send<"compare:", NSComparisonResult>(other);
    }
    bool isEqualToDate(const NSDate* other) const { return send<"isEqualToDate:", bool>(other); }
    /// Answers the one that is earlier; the receiver when they are equal. Nil gives nil.
    Ref<NSDate> earlierDate(const NSDate* other) const
    {
        return send<"earlierDate:", Ref<NSDate>>(other);
    }
    /// Answers the one that is later; the receiver when they are equal. Nil gives nil.
    Ref<NSDate> laterDate(const NSDate* other) const
    {
        return send<"laterDate:", Ref<NSDate>>(other);
    }
    /// Answers "2024-01-31 12:34:56 +0000", always in UTC; days before 1582-10-15 by the Julian calendar.
    Ref<NSString> description() const { return send<"description", Ref<NSString>>(); }

private:
    NSTimeInterval seconds_ = 0;
};

}
