// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDate.h"
#include "NSString.h"

namespace brindle {

class NSArray;
class NSLocale;

/// How the name of a time zone is written.
enum NSTimeZoneNameStyle : NSInteger {
    NSTimeZoneNameStyleStandard = 0, ///< "Central European Standard Time"
    NSTimeZoneNameStyleShortStandard = 1, ///< "GMT+1"
    NSTimeZoneNameStyleDaylightSaving = 2,
    NSTimeZoneNameStyleShortDaylightSaving = 3,
};

/// The clocks of a region: how far they are from Greenwich, at each moment. A value; copying answers the receiver.
///
/// Names are those of the time zone database ("Europe/Zurich"), "GMT", or fixed distances ("GMT+0530").
/// Thread: any.
class NSTimeZone : public NSObject {
    BRINDLE_OBJECT(NSTimeZone, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the machine's, by TZ or the system's setting, as it was when somebody first asked.
        Ref<NSTimeZone> systemTimeZone() const { return send<"systemTimeZone", Ref<NSTimeZone>>(); }
        /// Answers what was set, else the machine's. Dates without a zone of their own are written by it.
        Ref<NSTimeZone> defaultTimeZone() const
        {
            return send<"defaultTimeZone", Ref<NSTimeZone>>();
        }
        Ref<NSTimeZone> localTimeZone() const { return send<"localTimeZone", Ref<NSTimeZone>>(); }
        /// Sets it for the process; nil goes back to the machine's.
        void setDefaultTimeZone(NSTimeZone* zone) const { send<"setDefaultTimeZone:">(zone); }
        /// - Nil: for nil and for names that nobody knows.
        Ref<NSTimeZone> timeZoneWithName(NSString* name) const
        {
            return send<"timeZoneWithName:", Ref<NSTimeZone>>(name);
        }
        /// Takes such as "UTC", "CET" and "PST".
        Ref<NSTimeZone> timeZoneWithAbbreviation(NSString* abbreviation) const
        {
            return send<"timeZoneWithAbbreviation:", Ref<NSTimeZone>>(abbreviation);
        }
        /// - Nil: for 24 hours and more.
        Ref<NSTimeZone> timeZoneForSecondsFromGMT(NSInteger seconds) const
        {
            return send<"timeZoneForSecondsFromGMT:", Ref<NSTimeZone>>(seconds);
        }
        Ref<NSArray> knownTimeZoneNames() const
        {
            return send<"knownTimeZoneNames", Ref<NSArray>>();
        }
    };

    Ref<NSTimeZone> initWithName(NSString* name)
    {
        return send<"initWithName:", Ref<NSTimeZone>>(name);
    }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    /// Answers the distance now; east is positive.
    NSInteger secondsFromGMT() const { return send<"secondsFromGMT", NSInteger>(); }
    NSInteger secondsFromGMTForDate(NSDate* date) const
    {
        return send<"secondsFromGMTForDate:", NSInteger>(date);
    }
    Ref<NSString> abbreviation() const { return send<"abbreviation", Ref<NSString>>(); }
    /// Answers such as "GMT+2" or "EDT".
    Ref<NSString> abbreviationForDate(NSDate* date) const
    {
        return send<"abbreviationForDate:", Ref<NSString>>(date);
    }
    bool isDaylightSavingTime() const { return send<"isDaylightSavingTime", bool>(); }
    bool isDaylightSavingTimeForDate(NSDate* date) const
    {
        return send<"isDaylightSavingTimeForDate:", bool>(date);
    }
    /// Answers by how many seconds the clocks are ahead of the zone's standard time.
    NSTimeInterval daylightSavingTimeOffset() const
    {
        return send<"daylightSavingTimeOffset", NSTimeInterval>();
    }
    NSTimeInterval daylightSavingTimeOffsetForDate(NSDate* date) const
    {
        return send<"daylightSavingTimeOffsetForDate:", NSTimeInterval>(date);
    }
    /// Answers when the clocks are next changed; nil for never.
    Ref<NSDate> nextDaylightSavingTimeTransition() const
    {
        return send<"nextDaylightSavingTimeTransition", Ref<NSDate>>();
    }
    Ref<NSDate> nextDaylightSavingTimeTransitionAfterDate(NSDate* date) const
    {
        return send<"nextDaylightSavingTimeTransitionAfterDate:", Ref<NSDate>>(date);
    }
    /// Answers the zone's name in a language; a nil locale means the user's.
    Ref<NSString> localizedName_locale(NSTimeZoneNameStyle style, NSLocale* locale) const
    {
        return send<"localizedName:locale:", Ref<NSString>>(style, locale);
    }
    bool isEqualToTimeZone(const NSTimeZone* other) const
    {
        return send<"isEqualToTimeZone:", bool>(other);
    }

private:
    Ref<NSString> name_;
};

}
