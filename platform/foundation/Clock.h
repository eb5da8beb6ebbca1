// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "runtime/Export.h"

namespace brindle {

/// Seconds.
using NSTimeInterval = double;

/// Where all time of the process comes from: timers, delays, dates, animations and events.
///
/// It follows the system until `useVirtual`; from then on it stands still and is turned by hand, for tests and for
/// pictures that must come out the same each time. A run loop of the main thread that would wait under a virtual
/// clock turns the clock to the next due moment instead, as soon as no background work is left: nothing sleeps.
/// Thread: any.
class BRINDLE_EXPORT Clock {
public:
    /// Answers nanoseconds since some fixed moment; they never run backwards and no clock setting changes them.
    static std::int64_t now();
    /// Answers the date and time as seconds since 2001-01-01 00:00:00 UTC.
    static double wall();
    /// Answers seconds since the system started, of the same clock as `now`.
    static double uptime() { return static_cast<double>(now()) / 1e9; }

    /// Stops the clock and puts the date to 2026-01-01 00:00:00 UTC. Calling it again puts the date back to that.
    static void useVirtual();
    /// Follows the system again, date included.
    static void useSystem();
    static bool isVirtual();

    /// Turns a virtual clock and its date forward. Runs nothing: `NSRunLoop` does that (see `advance` there).
    /// A system clock, a negative number and NaN change nothing.
    static void advance(double seconds);
    /// The same in nanoseconds.
    static void advanceTo(std::int64_t nanoseconds);
    /// Sets the date, seconds since 2001-01-01 UTC; it goes on from there at the pace of the clock. Delays and
    /// timers do not feel it. `useSystem` ends it.
    static void setWall(double seconds);
};

}
