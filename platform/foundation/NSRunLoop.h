// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "Clock.h"
#include "NSGeometry.h"
#include "StringConstant.h"
#include "runtime/Block.h"

namespace brindle {

class NSDate;
class NSRunLoop;
class NSTimer;
class RunLoopCore;

/// The mode in which a loop runs when nothing special goes on.
inline constexpr StringConstant<"NSDefaultRunLoopMode"> NSDefaultRunLoopMode;
/// The mode while a control or a menu follows the pointer.
inline constexpr StringConstant<"NSEventTrackingRunLoopMode"> NSEventTrackingRunLoopMode;
/// The mode while a modal panel is open.
inline constexpr StringConstant<"NSModalPanelRunLoopMode"> NSModalPanelRunLoopMode;
/// Stands for the three modes above wherever something is added to a mode.
inline constexpr StringConstant<"NSRunLoopCommonModes"> NSRunLoopCommonModes;

/// What a file-descriptor source waits for and reports.
enum NSRunLoopSourceEvents : NSUInteger {
    NSRunLoopSourceReadable = 1,
    NSRunLoopSourceWritable = 2,
    /// Reported only: the other end has gone or the descriptor is no good.
    NSRunLoopSourceClosed = 4,
};

/// Calls a closure on the loop's thread while a file descriptor is ready. The loop keeps it until it is removed.
class NSRunLoopSource : public NSObject {
    BRINDLE_OBJECT(NSRunLoopSource, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - descriptor: stays the caller's, who removes the source before closing it.
        /// - handler: receives the `NSRunLoopSourceEvents` that are there.
        Ref<NSRunLoopSource> sourceWithFileDescriptor_events_handler(
            int descriptor, NSUInteger events, const Block<void(NSUInteger)>& handler) const
        {
            return send<"sourceWithFileDescriptor:events:handler:", Ref<NSRunLoopSource>>(
                descriptor, events, handler.get());
        }
    };

    int fileDescriptor() const { return send<"fileDescriptor", int>(); }
    NSUInteger events() const { return send<"events", NSUInteger>(); }
    /// Changes what is waited for; 0 waits only for the other end to go.
    void setEvents(NSUInteger events) { send<"setEvents:">(events); }
    /// Takes the source out of its loop for good. Thread: the loop's.
    void invalidate() { send<"invalidate">(); }
    bool isValid() const { return send<"isValid", bool>(); }

private:
    friend class RunLoopCore;
    Block<void(NSUInteger)> handler_;
    RunLoopCore* loop_ = nullptr;
    NSUInteger events_ = 0;
    std::uint64_t modes_ = 0;
    int descriptor_ = -1;
    bool invalid_ = false;
};

/// Calls a closure at the end of each turn of a loop, before the loop waits; drawing is flushed there.
class NSRunLoopObserver : public NSObject {
    BRINDLE_OBJECT(NSRunLoopObserver, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - order: observers with smaller numbers come first; equal ones in the order in which they were added.
        Ref<NSRunLoopObserver> observerWithOrder_handler(
            NSInteger order, const Block<void()>& handler) const
        {
            return send<"observerWithOrder:handler:", Ref<NSRunLoopObserver>>(order, handler.get());
        }
    };

    /// Takes the observer out of its loop for good. Thread: the loop's.
    void invalidate() { send<"invalidate">(); }
    bool isValid() const { return send<"isValid", bool>(); }

private:
    friend class RunLoopCore;
    Block<void()> handler_;
    RunLoopCore* loop_ = nullptr;
    NSInteger order_ = 0;
    std::uint64_t modes_ = 0;
    bool invalid_ = false;
};

/// Lets a thread wait for timers, delayed performs, file descriptors and closures from other threads, and runs them.
///
/// Each thread has one, made when it is first asked for. A turn runs, in this order: what other threads handed over,
/// timers and delayed performs that are due, the main queue (main thread, the three common modes), descriptors that
/// are ready, observers. What a turn adds runs in a later turn. An idle loop sleeps until the next due moment exactly;
/// without one it sleeps until it is woken.
///
/// An exception thrown by anything a loop runs goes on out of the call that ran the loop; the loop can be used
/// afterwards, and what was left runs in the next turn.
/// Thread: the loop's own, except `wakeUp`, `performBlock:` and adding timers, which any thread may do.
class NSRunLoop : public NSObject {
    BRINDLE_OBJECT(NSRunLoop, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSRunLoop> currentRunLoop() const { return send<"currentRunLoop", Ref<NSRunLoop>>(); }
        Ref<NSRunLoop> mainRunLoop() const { return send<"mainRunLoop", Ref<NSRunLoop>>(); }
    };

    /// Answers the mode that runs now, the innermost one; nil when the loop does not run.
    Ref<NSString> currentMode() const { return send<"currentMode", Ref<NSString>>(); }

    // Running.

    /// Runs until the default mode has nothing left to wait for. The main thread's loop always has.
    void run() { send<"run">(); }
    /// Runs the default mode until the date. Nil answers at once after one turn.
    void runUntilDate(NSDate* date) { send<"runUntilDate:">(date); }
    /// Runs one mode until something other than a timer was handled, `wakeUp` was called or the date has come.
    /// - Nil: a nil mode is the default mode; a nil date and a past one run one turn without waiting.
    /// - Returns: NO, at once, when the mode has nothing to wait for.
    bool runMode_beforeDate(NSString* mode, NSDate* date)
    {
        return send<"runMode:beforeDate:", bool>(mode, date);
    }
    /// Runs turns of a mode until nothing is due now, without waiting; for tests and for shutting down. A turn of nothing
    /// but timers that timers have set up meanwhile is the last one: a chain of them would never let it return.
    /// - Returns: whether anything ran.
    bool runUntilIdle(NSString* mode) { return send<"runUntilIdle:", bool>(mode); }
    /// Turns a virtual clock forward by this many seconds, stopping at each due moment in order to run it in the
    /// default mode; runs what is due now first. Under the system clock it runs the loop for that time.
    void advance(NSTimeInterval seconds) { send<"advance:">(seconds); }
    /// Ends the wait of the loop, and the innermost `runMode:beforeDate:` after its turn. Thread: any.
    void wakeUp() { send<"wakeUp">(); }

    // What is run.

    /// Schedules a timer; once more for another mode adds that mode.
    void addTimer_forMode(NSTimer* timer, NSString* mode)
    {
        send<"addTimer:forMode:">(timer, mode);
    }
    void addSource_forMode(NSRunLoopSource* source, NSString* mode)
    {
        send<"addSource:forMode:">(source, mode);
    }
    /// Takes a source out of one mode, or out of all by `NSRunLoopCommonModes`.
    void removeSource_forMode(NSRunLoopSource* source, NSString* mode)
    {
        send<"removeSource:forMode:">(source, mode);
    }
    void addObserver_forMode(NSRunLoopObserver* observer, NSString* mode)
    {
        send<"addObserver:forMode:">(observer, mode);
    }
    void removeObserver_forMode(NSRunLoopObserver* observer, NSString* mode)
    {
        send<"removeObserver:forMode:">(observer, mode);
    }
    /// Runs a closure on the loop's thread in a later turn of any common mode, in order. Thread: any.
    void performBlock(const Block<void()>& block) { send<"performBlock:">(block.get()); }
    /// Answers when the next timer of a mode is due, or nil when there is none.
    Ref<NSDate> limitDateForMode(NSString* mode) const
    {
        return send<"limitDateForMode:", Ref<NSDate>>(mode);
    }

    // Living inside another program's loop: wait until `embeddingDescriptor` is readable or `embeddingTimeout` is
    // over, then call `embeddingStep`, again and again.

    /// Answers a descriptor that is readable when something waits for the loop (default mode). It stays the loop's.
    int embeddingDescriptor() { return send<"embeddingDescriptor", int>(); }
    /// Answers the seconds until `embeddingStep` must be called: 0 for now, negative for no such moment.
    NSTimeInterval embeddingTimeout() const { return send<"embeddingTimeout", NSTimeInterval>(); }
    /// Runs one turn of the default mode without waiting.
    void embeddingStep() { send<"embeddingStep">(); }

    /// Answers how often this loop's thread has returned from sleeping.
    NSUInteger wakeCount() const { return send<"wakeCount", NSUInteger>(); }

private:
    friend class RunLoopCore;
    std::shared_ptr<RunLoopCore> core_; // closed when the thread ends
};

}
