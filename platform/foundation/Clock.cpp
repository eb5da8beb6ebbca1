// SPDX-License-Identifier: Apache-2.0
#include "Clock.h"

#include "DispatchPrivate.h"
#include "RunLoopPrivate.h"

#include <atomic>
#include <cmath>
#include <ctime>
#include <mutex>

namespace brindle {

namespace {

    constexpr double kReferenceDate = 978307200; // 2001-01-01, seconds since 1970
    constexpr double kVirtualDate = 788918400; // 2026-01-01, seconds since 2001

    constinit std::atomic<bool> isTurnedByHand { false };
    constinit std::atomic<std::int64_t> virtualNow { 0 };

    // A date that was set goes on from where the clock stood then.
    constinit std::mutex dateMutex;
    constinit std::atomic<bool> hasDate { false };
    constinit double dateThen = 0;
    constinit std::int64_t clockThen = 0;

    std::int64_t systemNow()
    {
        timespec time {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return std::int64_t { time.tv_sec } * 1'000'000'000 + time.tv_nsec;
    }

}

std::int64_t Clock::now()
{
    return isTurnedByHand.load(std::memory_order_acquire)
        ? virtualNow.load(std::memory_order_acquire)
        : systemNow();
}

double Clock::wall()
{
    if (!hasDate.load(std::memory_order_acquire)) {
        timespec time {};
        clock_gettime(CLOCK_REALTIME, &time);
        return static_cast<double>(time.tv_sec) - kReferenceDate
            + static_cast<double>(time.tv_nsec) / 1e9;
    }
    const std::int64_t at = now();
    const std::lock_guard guard(dateMutex);
    return dateThen + static_cast<double>(at - clockThen) / 1e9;
}

void Clock::setWall(double seconds)
{
    const std::int64_t at = now();
    const std::lock_guard guard(dateMutex);
    dateThen = seconds;
    clockThen = at;
    hasDate.store(true, std::memory_order_release);
}

void Clock::useVirtual()
{
    if (!isVirtual()) {
        // Goes on from the system's time, so that what is scheduled already keeps its distance.
        virtualNow.store(systemNow(), std::memory_order_release);
        isTurnedByHand.store(true, std::memory_order_release);
    }
    setWall(kVirtualDate);
    wakeEveryLoop();
}

void Clock::useSystem()
{
    isTurnedByHand.store(false, std::memory_order_release);
    hasDate.store(false, std::memory_order_release);
    wakeEveryLoop();
    queues::watchDelayed();
}

bool Clock::isVirtual() { return isTurnedByHand.load(std::memory_order_acquire); }

void Clock::advance(double seconds)
{
    if (seconds > 0)
        advanceTo(momentAfter(now(), seconds));
}

void Clock::advanceTo(std::int64_t nanoseconds)
{
    if (!isVirtual())
        return;
    std::int64_t before = virtualNow.load(std::memory_order_acquire);
    while (before < nanoseconds && !virtualNow.compare_exchange_weak(before, nanoseconds)) { }
    wakeEveryLoop();
}

}
