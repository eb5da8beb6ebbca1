// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "Clock.h"
#include "runtime/Block.h"

namespace brindle {

class NSDate;
class NSInvocation;
class RunLoopCore;

/// Calls a closure or sends a message at a moment, once or again and again.
///
/// A loop keeps the timer while it is scheduled, and the timer its target until it is invalid. A repeating timer keeps
/// to its first moment: it does not drift, and moments that have been missed are left out. An interval under 0.1 ms
/// counts as 0.1 ms, the delay of one that does not repeat under 1 µs as 1 µs. A timer that a handler makes, and its own
/// when it moves that, comes 1 µs later at the earliest: those that set up their like for now leave a clock time to go on.
/// A timer is not called again while it runs.
/// - Nil: a bare `init` makes a timer that is not valid and has no `fireDate`.
/// Thread: the thread of its loop; it may be scheduled on another thread's loop.
class NSTimer : public NSObject {
    BRINDLE_OBJECT(NSTimer, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers a timer that runs on the current loop in the default mode.
        /// - selector: takes the timer or nothing. - target: kept until the timer is invalid.
        Ref<NSTimer> scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
            NSTimeInterval seconds, NSObject* target, SEL selector, NSObject* userInfo,
            bool repeats) const
        {
            return send<"scheduledTimerWithTimeInterval:target:selector:userInfo:repeats:",
                Ref<NSTimer>>(seconds, target, selector, userInfo, repeats);
        }
        Ref<NSTimer> scheduledTimerWithTimeInterval_repeats_block(
            NSTimeInterval seconds, bool repeats, const Block<void(NSTimer*)>& block) const
        {
            return send<"scheduledTimerWithTimeInterval:repeats:block:", Ref<NSTimer>>(
                seconds, repeats, block.get());
        }
        /// Answers a timer for `-[NSRunLoop addTimer:forMode:]`.
        Ref<NSTimer> timerWithTimeInterval_target_selector_userInfo_repeats(NSTimeInterval seconds,
            NSObject* target, SEL selector, NSObject* userInfo, bool repeats) const
        {
            return send<"timerWithTimeInterval:target:selector:userInfo:repeats:", Ref<NSTimer>>(
                seconds, target, selector, userInfo, repeats);
        }
        Ref<NSTimer> timerWithTimeInterval_repeats_block(
            NSTimeInterval seconds, bool repeats, const Block<void(NSTimer*)>& block) const
        {
            return send<"timerWithTimeInterval:repeats:block:", Ref<NSTimer>>(
                seconds, repeats, block.get());
        }
    };

    Ref<NSTimer> initWithFireDate_interval_target_selector_userInfo_repeats(NSDate* date,
        NSTimeInterval seconds, NSObject* target, SEL selector, NSObject* userInfo, bool repeats)
    {
        return send<"initWithFireDate:interval:target:selector:userInfo:repeats:", Ref<NSTimer>>(
            date, seconds, target, selector, userInfo, repeats);
    }
    Ref<NSTimer> initWithFireDate_interval_repeats_block(
        NSDate* date, NSTimeInterval seconds, bool repeats, const Block<void(NSTimer*)>& block)
    {
        return send<"initWithFireDate:interval:repeats:block:", Ref<NSTimer>>(
            date, seconds, repeats, block.get());
    }

    /// Runs it now; a timer that does not repeat is invalid afterwards.
    void fire() { send<"fire">(); }
    /// Answers the moment at which it is due next, or was due last.
    Ref<NSDate> fireDate() const { return send<"fireDate", Ref<NSDate>>(); }
    /// Moves the next moment; a timer that is scheduled moves in place.
    void setFireDate(NSDate* date) { send<"setFireDate:">(date); }
    /// Moves the next moment to this many seconds from now: the cheap way to restart a countdown.
    void restart(NSTimeInterval seconds) { send<"restart:">(seconds); }
    /// Answers the seconds between two moments, 0 for a timer that does not repeat.
    NSTimeInterval timeInterval() const { return send<"timeInterval", NSTimeInterval>(); }
    /// Answers how late it may come; kept for the host, a due moment is met exactly.
    NSTimeInterval tolerance() const { return send<"tolerance", NSTimeInterval>(); }
    void setTolerance(NSTimeInterval seconds) { send<"setTolerance:">(seconds); }
    /// - Nil: after `invalidate`.
    Ref<NSObject> userInfo() const { return send<"userInfo", Ref<NSObject>>(); }
    /// Takes it out of its loop for good and lets go of target, closure and `userInfo`.
    void invalidate() { send<"invalidate">(); }
    bool isValid() const { return send<"isValid", bool>(); }

    struct Entry; ///< its place in a loop

private:
    friend void addTimer(RunLoopCore&, NSTimer&, std::uint64_t);
    friend void repeatNextTurn(NSTimer&);
    std::shared_ptr<Entry> entry_;
    Ref<NSObject> target_;
    Ref<NSObject> userInfo_;
    Block<void(NSTimer*)> block_;
    SEL selector_;
    NSTimeInterval interval_ = 0;
    NSTimeInterval tolerance_ = 0;
    bool invalid_ = false;
};

}
