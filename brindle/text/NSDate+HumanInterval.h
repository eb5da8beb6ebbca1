// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSDate.h"

namespace brindle {

// How far a date is from now, as people say it. The phrases are keys of the main bundle's "Localizable" table; a phrase with
// a number in it is a format that receives the number as an unsigned 32-bit `%u`. Seconds are cut off.
//
// | elapsed         | short            | spoken                              |
// |-----------------|------------------|-------------------------------------|
// | a second ahead  | the date's own description                             |
// | under a minute  | now              | just now                            |
// | to 2 minutes    | 1m               | a minute ago                        |
// | to 45 minutes   | %um              | %u minutes ago                      |
// | to 90 minutes   | 1h               | an hour ago                         |
// | to 3 hours      | 2h               | 2 hours ago                         |
// | to 23 hours     | %uh              | %u hours ago                        |
// | to 36 hours     | 1d               | a day ago                           |
// | to 3 days       | 2d               | 2 days ago                          |
// | to 7 days       | %ud              | %u days ago                         |
// | to 11 days      | 1 wk             | a week ago                          |
// | to 14 days      | 2 wks            | 2 weeks ago                         |
// | to 9 weeks      | %u wks           | %u weeks ago                        |
// | to 570 days     | %u mos           | %u months ago, of 30 days           |
// | to 730 days     | 1 yr             | a year ago                          |
// | more            | %u yrs           | %u years ago, of 365 days           |
//
// The end of 45 minutes and of 90 minutes belongs to its row, every other end to the next one.
// Thread: any.

/// Answers the short phrase, for narrow places. A date more than 2^31 seconds ago counts as that long ago.
inline Ref<NSString> humanIntervalSinceNow(To<NSDate> date)
{
    return date.send<"humanIntervalSinceNow", Ref<NSString>>();
}
/// Answers the spoken phrase.
inline Ref<NSString> humanIntervalAgoSinceNow(To<NSDate> date)
{
    return date.send<"humanIntervalAgoSinceNow", Ref<NSString>>();
}
/// Answers "Today", "Yesterday" and what else the user's language has for near days, else the date in medium length.
inline Ref<NSString> humanDay(To<NSDate> date) { return date.send<"humanDay", Ref<NSString>>(); }
/// Answers the seconds since the date, negative for one ahead.
inline NSTimeInterval timeIntervalAgo(To<NSDate> date)
{
    return date.send<"timeIntervalAgo", NSTimeInterval>();
}

}
