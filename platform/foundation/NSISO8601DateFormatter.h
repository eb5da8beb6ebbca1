// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDate.h"
#include "NSFormatter.h"

namespace brindle {

class NSTimeZone;

/// What of a date is written, and how; bits that are added together.
using NSISO8601DateFormatOptions = NSUInteger;
enum : NSUInteger {
    NSISO8601DateFormatWithYear = 1 << 0,
    NSISO8601DateFormatWithMonth = 1 << 1,
    NSISO8601DateFormatWithWeekOfYear = 1
        << 2, ///< "W05" in place of the month; the day is then that of the week
    NSISO8601DateFormatWithDay = 1 << 4, ///< that of the year when there is no month
    NSISO8601DateFormatWithTime = 1 << 5,
    NSISO8601DateFormatWithTimeZone = 1 << 6,
    NSISO8601DateFormatWithSpaceBetweenDateAndTime = 1 << 7,
    NSISO8601DateFormatWithDashSeparatorInDate = 1 << 8,
    NSISO8601DateFormatWithColonSeparatorInTime = 1 << 9,
    NSISO8601DateFormatWithColonSeparatorInTimeZone = 1 << 10,
    NSISO8601DateFormatWithFractionalSeconds = 1 << 11,
    NSISO8601DateFormatWithFullDate = 0x113, ///< "2024-01-31"
    NSISO8601DateFormatWithFullTime = 0x660, ///< "12:34:56Z"
    NSISO8601DateFormatWithInternetDateTime = 0x773, ///< "2024-01-31T12:34:56Z"
};

/// Writes and reads dates as programs exchange them, the same in every language.
/// - Nil: as with `NSDateFormatter`; text must have all of the parts and nothing else.
class NSISO8601DateFormatter : public NSFormatter {
    BRINDLE_OBJECT(NSISO8601DateFormatter, NSFormatter)

public:
    NSISO8601DateFormatOptions formatOptions() const
    {
        return send<"formatOptions", NSISO8601DateFormatOptions>();
    }
    /// `NSISO8601DateFormatWithInternetDateTime` until it is set.
    void setFormatOptions(NSISO8601DateFormatOptions options)
    {
        send<"setFormatOptions:">(options);
    }
    /// Greenwich until it is set, and for nil.
    Ref<NSTimeZone> timeZone() const { return send<"timeZone", Ref<NSTimeZone>>(); }
    void setTimeZone(NSTimeZone* zone) { send<"setTimeZone:">(zone); }

    Ref<NSString> stringFromDate(NSDate* date) const
    {
        return send<"stringFromDate:", Ref<NSString>>(date);
    }
    Ref<NSDate> dateFromString(NSString* string) const
    {
        return send<"dateFromString:", Ref<NSDate>>(string);
    }

private:
    NSISO8601DateFormatOptions options_ = NSISO8601DateFormatWithInternetDateTime;
    Ref<NSTimeZone> timeZone_;
};

}
