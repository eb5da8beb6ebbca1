// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "runtime/Block.h"

/// Queues of closures. A queue holds a closure until it has run.
///
/// - The main queue is serial and is drained by the main thread's run loop in all common modes: also while a menu or a
///   control tracks, while a modal panel is open, and while one of its own items is running such a loop.
/// - Global queues run closures side by side on threads that are started when they are needed. When all of them
///   are blocked, more are started.
/// - An exception that leaves a closure goes on out of the run-loop call on the main queue; on any other queue nobody
///   can catch it and it ends the process as an uncaught one.
/// - A null closure, queue, group or semaphore ends the process with a line that says which.

namespace brindle {

class DispatchQueue;
class DispatchGroup;
class DispatchSemaphore;

using dispatch_queue_t = DispatchQueue*;
using dispatch_group_t = DispatchGroup*;
using dispatch_semaphore_t = DispatchSemaphore*;
using dispatch_block_t = Block<void()>;
/// Nanoseconds on the clock of `Clock::now`; 0 is now, all bits set is never.
using dispatch_time_t = std::uint64_t;

inline constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;
inline constexpr dispatch_time_t DISPATCH_TIME_FOREVER = ~dispatch_time_t { 0 };
inline constexpr std::uint64_t NSEC_PER_SEC = 1'000'000'000;
inline constexpr std::uint64_t NSEC_PER_MSEC = 1'000'000;
inline constexpr std::uint64_t NSEC_PER_USEC = 1'000;

inline constexpr long DISPATCH_QUEUE_PRIORITY_HIGH = 2;
inline constexpr long DISPATCH_QUEUE_PRIORITY_DEFAULT = 0;
inline constexpr long DISPATCH_QUEUE_PRIORITY_LOW = -2;
inline constexpr long DISPATCH_QUEUE_PRIORITY_BACKGROUND = -32768;

/// How a made queue runs its closures: one after another, or side by side.
enum dispatch_queue_attr_t : std::int64_t {
    DISPATCH_QUEUE_SERIAL = 0,
    DISPATCH_QUEUE_CONCURRENT = 1
};

/// Answers a number as a 64-bit integer: cut towards zero, the nearest limit when it is too large, 0 for NaN.
inline std::int64_t saturatingInteger(double value)
{
    constexpr double kLimit = 9223372036854775808.0; // 2 to the 63rd
    if (std::isnan(value))
        return 0;
    if (value >= kLimit)
        return std::numeric_limits<std::int64_t>::max();
    if (value < -kLimit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

/// Answers a moment `delta` nanoseconds after another; `DISPATCH_TIME_NOW` reads the clock.
/// - Returns: never when it would be past all moments, and for never; a negative delta can give a past moment.
BRINDLE_EXPORT dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta);

BRINDLE_EXPORT dispatch_queue_t dispatch_get_main_queue();
/// Answers the shared queue of a priority; nullptr for a number that is none of the four, or flags.
BRINDLE_EXPORT dispatch_queue_t dispatch_get_global_queue(
    std::intptr_t priority, std::uintptr_t flags);
/// Answers a new queue of the default priority. - label: for debugging; copied, may be nullptr.
BRINDLE_EXPORT Ref<DispatchQueue> dispatch_queue_create(
    const char* label, dispatch_queue_attr_t attribute);
/// Answers the label, readable while the queue lives; "" when there is none.
BRINDLE_EXPORT const char* dispatch_queue_get_label(dispatch_queue_t queue);

/// Adds a closure to a queue and answers at once.
BRINDLE_EXPORT void dispatch_async(dispatch_queue_t queue, const Block<void()>& block);
/// The same for a closure that is handed over.
BRINDLE_EXPORT void dispatch_async(dispatch_queue_t queue, Block<void()>&& block);
/// Runs a closure on a queue and waits for it.
///
/// Waiting for the queue on which the caller runs can never end: it ends the process with the line
/// "brindle: dispatch_sync was called on the queue that it would wait for".
BRINDLE_EXPORT void dispatch_sync(dispatch_queue_t queue, const Block<void()>& block);
/// Adds a closure at a moment, a past one in a later turn, never inside the call; equal moments keep their order.
/// Never drops the closure at once.
BRINDLE_EXPORT void dispatch_after(
    dispatch_time_t when, dispatch_queue_t queue, const Block<void()>& block);
/// Adds a closure that on a concurrent queue of one's own runs alone: after all earlier ones, before all later ones.
BRINDLE_EXPORT void dispatch_barrier_async(dispatch_queue_t queue, const Block<void()>& block);
BRINDLE_EXPORT void dispatch_barrier_sync(dispatch_queue_t queue, const Block<void()>& block);
/// Runs a closure with 0, 1, ... count - 1, side by side where the queue allows it, and waits for all.
/// What the queue does not run beside its caller, in a barrier for instance, the caller runs itself.
BRINDLE_EXPORT void dispatch_apply(
    std::size_t count, dispatch_queue_t queue, const Block<void(std::size_t)>& block);

/// Zero before, set by `dispatch_once`.
using dispatch_once_t = std::intptr_t;
/// Runs the closure the first time; later calls wait for that one to end. An exception leaves it not run.
BRINDLE_EXPORT void dispatch_once(dispatch_once_t* predicate, const Block<void()>& block);

BRINDLE_EXPORT Ref<DispatchGroup> dispatch_group_create();
BRINDLE_EXPORT void dispatch_group_async(
    dispatch_group_t group, dispatch_queue_t queue, const Block<void()>& block);
BRINDLE_EXPORT void dispatch_group_enter(dispatch_group_t group);
/// Leaving more often than entering ends the process.
BRINDLE_EXPORT void dispatch_group_leave(dispatch_group_t group);
/// Adds the closure to the queue once the group is empty; at once when it is empty now.
BRINDLE_EXPORT void dispatch_group_notify(
    dispatch_group_t group, dispatch_queue_t queue, const Block<void()>& block);
/// Waits until the group is empty. - Returns: 0, or another number when the moment came first.
BRINDLE_EXPORT std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t limit);

/// - Returns: nil for a negative value.
BRINDLE_EXPORT Ref<DispatchSemaphore> dispatch_semaphore_create(std::intptr_t value);
/// Takes one, waiting for it. - Returns: 0, or another number when the moment came first.
BRINDLE_EXPORT std::intptr_t dispatch_semaphore_wait(
    dispatch_semaphore_t semaphore, dispatch_time_t limit);
/// Gives one. - Returns: whether somebody may have been waiting.
BRINDLE_EXPORT std::intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore);

}
