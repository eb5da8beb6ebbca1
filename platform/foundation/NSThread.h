// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "Clock.h"
#include "NSGeometry.h"
#include "NSString.h"
#include "runtime/Block.h"

namespace brindle {

class NSDate;
class NSMutableDictionary;
struct ThreadState;

/// A thread as an object: one to start, or the one that runs.
class NSThread : public NSObject {
    BRINDLE_OBJECT(NSThread, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSThread> currentThread() const { return send<"currentThread", Ref<NSThread>>(); }
        /// Answers the thread that started the process.
        Ref<NSThread> mainThread() const { return send<"mainThread", Ref<NSThread>>(); }
        bool isMainThread() const { return send<"isMainThread", bool>(); }
        /// Blocks the thread. Under a virtual clock it returns at once; the main thread turns the clock.
        void sleepForTimeInterval(NSTimeInterval seconds) const
        {
            send<"sleepForTimeInterval:">(seconds);
        }
        void sleepUntilDate(NSDate* date) const { send<"sleepUntilDate:">(date); }
        void detachNewThreadWithBlock(const Block<void()>& block) const
        {
            send<"detachNewThreadWithBlock:">(block.get());
        }
        void detachNewThreadSelector_toTarget_withObject(
            SEL selector, NSObject* target, NSObject* argument) const
        {
            send<"detachNewThreadSelector:toTarget:withObject:">(selector, target, argument);
        }
    };

    Ref<NSThread> initWithBlock(const Block<void()>& block)
    {
        return send<"initWithBlock:", Ref<NSThread>>(block.get());
    }
    /// Target and argument are kept until the thread has ended.
    Ref<NSThread> initWithTarget_selector_object(NSObject* target, SEL selector, NSObject* argument)
    {
        return send<"initWithTarget:selector:object:", Ref<NSThread>>(target, selector, argument);
    }
    /// Starts it. An exception that leaves `main` ends the process.
    /// - Raises: `NSInvalidArgumentException` the second time.
    void start() { send<"start">(); }
    /// What the thread runs: its closure or its message; subclasses override it.
    void main() { send<"main">(); }
    /// Asks the thread to end; it has to look at `isCancelled` by itself.
    void cancel() { send<"cancel">(); }
    bool isCancelled() const { return send<"isCancelled", bool>(); }
    bool isExecuting() const { return send<"isExecuting", bool>(); }
    bool isFinished() const { return send<"isFinished", bool>(); }
    bool isMainThread() const { return send<"isMainThread", bool>(); }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    /// Names it, for the system too (15 bytes of it).
    void setName(NSString* name) { send<"setName:">(name); }
    /// Answers a dictionary of the thread's own, to keep things in. Thread: that thread.
    Ref<NSMutableDictionary> threadDictionary()
    {
        return send<"threadDictionary", Ref<NSMutableDictionary>>();
    }
    /// Bytes; 0 for the system's usual. Takes effect at `start`.
    NSUInteger stackSize() const { return send<"stackSize", NSUInteger>(); }
    void setStackSize(NSUInteger bytes) { send<"setStackSize:">(bytes); }

private:
    friend struct ThreadState;
    std::shared_ptr<ThreadState> state_;
    Block<void()> block_;
    Ref<NSObject> target_;
    Ref<NSObject> argument_;
    Ref<NSMutableDictionary> dictionary_;
    SEL selector_;
};

}
