// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <unicode/ucal.h>

#include "LocalePrivate.h"
#include "NSCalendar.h"
#include "foundation/unicode/UnicodeCallsPrivate.h"

namespace brindle::unicode {

/// Lends a calendar of a locale (which may name a calendar: "de@calendar=buddhist") and a zone. Who changes its attributes
/// says for what, so that nobody else gets it.
Pool<UCalendar*>::Lease lendCalendar(
    const std::string& locale, const std::u16string& zone, const std::string& purpose = {});

/// The library counts milliseconds since 1970.
double millisecondsFrom(double secondsSinceReference);
double secondsFrom(double milliseconds);

}

namespace brindle {

/// The way to a calendar's settings for the files of this folder.
struct CalendarAccess {
    /// Lends the library's calendar with all of the settings.
    /// - zone: instead of the calendar's own.
    static unicode::Pool<UCalendar*>::Lease lend(
        const NSCalendar& calendar, const NSTimeZone* zone = nullptr);
};

}
