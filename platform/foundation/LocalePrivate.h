// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "NSLocale.h"
#include "NSTimeZone.h"

namespace brindle {

class NSCalendar;

/// Answers a locale's name for the Unicode library; nil means the user's. What no locale is called gives "".
std::string localeName(const NSLocale* locale);
/// Answers the locale's name with a calendar named in it.
std::string withCalendar(std::string locale, const NSCalendar& calendar);
/// Answers a time zone's name for the Unicode library; nil means the default one.
std::u16string zoneName(const NSTimeZone* zone);
/// The moments that calendars can tell apart, in seconds since the reference date: what is beyond counts as the end, and
/// what is no number as the reference date.
double boundedMoment(double seconds);

}
