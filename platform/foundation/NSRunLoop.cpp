// SPDX-License-Identifier: Apache-2.0
#include "NSRunLoop.h"

#include "DispatchPrivate.h"
#include "NSDate.h"
#include "NSTimer.h"
#include "RunLoopPrivate.h"
#include "ThreadPrivate.h"
#include "TimerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Answers the moment of a date on the loop's clock; nil is now.
    std::int64_t momentOf(NSDate* date)
    {
        if (!date)
            return Clock::now();
        return momentAfter(Clock::now(), date->timeIntervalSinceReferenceDate() - Clock::wall());
    }

}

template <> struct NSRunLoop::Methods<struct Running> {

    static Ref<NSRunLoop> currentRunLoop(Class&) { return ThreadState::current().ensureLoop(); }
    static Ref<NSRunLoop> mainRunLoop(Class&) { return ThreadState::main().ensureLoop(); }
    static Ref<NSObject> init(NSRunLoop&) { return ThreadState::current().ensureLoop(); }

    /// Answers the core, which may be over before a run is.
    static std::shared_ptr<RunLoopCore> keptCore(NSRunLoop& self)
    {
        RunLoopCore::of(self);
        return self.core_;
    }
    static Ref<NSString> currentMode(NSRunLoop& self)
    {
        return RunLoopCore::of(self).currentMode();
    }
    static void run(NSRunLoop& self)
    {
        const std::shared_ptr<RunLoopCore> core = keptCore(self);
        while (core->run(RunLoopCore::kDefault, NSDefaultRunLoopMode, kNever)) { }
    }
    static void runUntilDate(NSRunLoop& self, NSDate* date)
    {
        const std::shared_ptr<RunLoopCore> core = keptCore(self);
        const std::int64_t limit = momentOf(date);
        while (core->run(RunLoopCore::kDefault, NSDefaultRunLoopMode, limit)
            && Clock::now() < limit) { }
    }
    static bool runModeBeforeDate(NSRunLoop& self, NSString* mode, NSDate* date)
    {
        const std::shared_ptr<RunLoopCore> core = keptCore(self);
        NSString* const name = mode ? mode : NSDefaultRunLoopMode.get();
        return core->run(core->modesNamed(name), name, momentOf(date));
    }
    static bool runUntilIdle(NSRunLoop& self, NSString* mode)
    {
        const std::shared_ptr<RunLoopCore> core = keptCore(self);
        NSString* const name = mode ? mode : NSDefaultRunLoopMode.get();
        return core->runUntilIdle(core->modesNamed(name), name);
    }
    static void advance(NSRunLoop& self, NSTimeInterval seconds)
    {
        RunLoopCore::of(self).advance(seconds);
    }
    static void wakeUp(NSRunLoop& self) { RunLoopCore::of(self).inbox()->wake(Inbox::Wake::stop); }
    static NSUInteger wakeCount(NSRunLoop& self) { return RunLoopCore::of(self).wakes(); }

    static void table(Builder& t)
    {
        t.classMethods({
            { "currentRunLoop", imp<currentRunLoop> },
            { "mainRunLoop", imp<mainRunLoop> },
        });
        t.methods({
            { "init", imp<init> },
            { "currentMode", imp<currentMode> },
            { "run", imp<run> },
            { "runUntilDate:", imp<runUntilDate> },
            { "runMode:beforeDate:", imp<runModeBeforeDate> },
            { "runUntilIdle:", imp<runUntilIdle> },
            { "advance:", imp<advance> },
            { "wakeUp", imp<wakeUp> },
            { "wakeCount", imp<wakeCount> },
        });
    }
};
BRINDLE_RECORD(NSRunLoop, Running)

template <> struct NSRunLoop::Methods<struct Holding> {

    static void addTimerForMode(NSRunLoop& self, NSTimer* timer, NSString* mode)
    {
        if (!timer)
            return;
        if (RunLoopCore::of(self).isOwnThread()) {
            addTimer(RunLoopCore::of(self), *timer, RunLoopCore::of(self).modesNamed(mode));
            return;
        }
        const Ref<NSRunLoop> loop(&self);
        RunLoopCore::of(self).inbox()->postControl([loop, kept = Ref<NSTimer>(timer),
                                                       name = Ref<NSString>(mode)] {
            addTimer(RunLoopCore::of(*loop), *kept, RunLoopCore::of(*loop).modesNamed(name.get()));
        });
    }
    static void addSourceForMode(NSRunLoop& self, NSRunLoopSource* source, NSString* mode)
    {
        if (source)
            RunLoopCore::of(self).addSource(*source, RunLoopCore::of(self).modesNamed(mode));
    }
    static void removeSourceForMode(NSRunLoop& self, NSRunLoopSource* source, NSString* mode)
    {
        if (source)
            RunLoopCore::of(self).removeSource(*source, RunLoopCore::of(self).modesNamed(mode));
    }
    static void addObserverForMode(NSRunLoop& self, NSRunLoopObserver* observer, NSString* mode)
    {
        if (observer)
            RunLoopCore::of(self).addObserver(*observer, RunLoopCore::of(self).modesNamed(mode));
    }
    static void removeObserverForMode(NSRunLoop& self, NSRunLoopObserver* observer, NSString* mode)
    {
        if (observer)
            RunLoopCore::of(self).removeObserver(*observer, RunLoopCore::of(self).modesNamed(mode));
    }
    static void performBlock(NSRunLoop& self, Closure<void()>* block)
    {
        if (!block)
            fatal("a null closure was handed to a run loop");
        if (RunLoopCore::of(self).isOwnThread())
            RunLoopCore::of(self).enqueue(Block<void()>(block).leak());
        else
            RunLoopCore::of(self).inbox()->post(Block<void()>(block).leak());
    }
    static Ref<NSDate> limitDateForMode(NSRunLoop& self, NSString* mode)
    {
        const std::int64_t due
            = RunLoopCore::of(self).nextDue(RunLoopCore::of(self).modesNamed(mode));
        if (due == kNever)
            return nullptr;
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            Clock::wall() + static_cast<double>(due - Clock::now()) / 1e9);
    }
    static int embeddingDescriptor(NSRunLoop& self)
    {
        return RunLoopCore::of(self).embeddingDescriptor();
    }
    static NSTimeInterval embeddingTimeout(NSRunLoop& self)
    {
        return RunLoopCore::of(self).embeddingTimeout();
    }
    static void embeddingStep(NSRunLoop& self) { RunLoopCore::of(self).embeddingStep(); }

    static void table(Builder& t)
    {
        t.methods({
            { "addTimer:forMode:", imp<addTimerForMode> },
            { "addSource:forMode:", imp<addSourceForMode> },
            { "removeSource:forMode:", imp<removeSourceForMode> },
            { "addObserver:forMode:", imp<addObserverForMode> },
            { "removeObserver:forMode:", imp<removeObserverForMode> },
            { "performBlock:", imp<performBlock> },
            { "limitDateForMode:", imp<limitDateForMode> },
            { "embeddingDescriptor", imp<embeddingDescriptor> },
            { "embeddingTimeout", imp<embeddingTimeout> },
            { "embeddingStep", imp<embeddingStep> },
        });
    }
};
BRINDLE_RECORD(NSRunLoop, Holding)

template <> struct NSRunLoopSource::Methods<struct Descriptor> {

    static Ref<NSRunLoopSource> make(
        Class& self, int descriptor, NSUInteger events, Closure<void(NSUInteger)>* handler)
    {
        if (!handler)
            fatal("a null closure was handed to a run loop");
        auto source = cast<NSRunLoopSource>(self.send<"alloc", Ref<NSObject>>());
        source->descriptor_ = descriptor;
        source->events_ = events;
        source->handler_ = Block<void(NSUInteger)>(handler);
        return source;
    }
    static int fileDescriptor(NSRunLoopSource& self) { return self.descriptor_; }
    static NSUInteger events(NSRunLoopSource& self) { return self.events_; }
    static void setEvents(NSRunLoopSource& self, NSUInteger events)
    {
        self.events_ = events;
        if (self.loop_)
            self.loop_->sourceChanged(self);
    }
    static void invalidate(NSRunLoopSource& self)
    {
        const Ref<NSRunLoopSource> alive(&self);
        self.invalid_ = true;
        if (self.loop_)
            self.loop_->removeSource(self, ~RunLoopCore::Modes { 0 });
        self.handler_ = nullptr;
    }
    static bool isValid(NSRunLoopSource& self) { return self.handler_ && !self.invalid_; }

    static void table(Builder& t)
    {
        t.classMethods({ { "sourceWithFileDescriptor:events:handler:", imp<make> } });
        t.methods({
            { "fileDescriptor", imp<fileDescriptor> },
            { "events", imp<events> },
            { "setEvents:", imp<setEvents> },
            { "invalidate", imp<invalidate> },
            { "isValid", imp<isValid> },
        });
    }
};
BRINDLE_RECORD(NSRunLoopSource, Descriptor)

template <> struct NSRunLoopObserver::Methods<struct Observing> {

    static Ref<NSRunLoopObserver> make(Class& self, NSInteger order, Closure<void()>* handler)
    {
        if (!handler)
            fatal("a null closure was handed to a run loop");
        auto observer = cast<NSRunLoopObserver>(self.send<"alloc", Ref<NSObject>>());
        observer->order_ = order;
        observer->handler_ = Block<void()>(handler);
        return observer;
    }
    static void invalidate(NSRunLoopObserver& self)
    {
        const Ref<NSRunLoopObserver> alive(&self);
        self.invalid_ = true;
        if (self.loop_)
            self.loop_->removeObserver(self, ~RunLoopCore::Modes { 0 });
        self.handler_ = nullptr;
    }
    static bool isValid(NSRunLoopObserver& self) { return self.handler_ && !self.invalid_; }

    static void table(Builder& t)
    {
        t.classMethods({ { "observerWithOrder:handler:", imp<make> } });
        t.methods({
            { "invalidate", imp<invalidate> },
            { "isValid", imp<isValid> },
        });
    }
};
BRINDLE_RECORD(NSRunLoopObserver, Observing)

}
