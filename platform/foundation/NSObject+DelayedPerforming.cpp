// SPDX-License-Identifier: Apache-2.0
#include "NSObject+DelayedPerforming.h"

#include <condition_variable>
#include <cstring>

#include "DispatchPrivate.h"
#include "NSArray.h"
#include "NSThread.h"
#include "RunLoopPrivate.h"
#include "ThreadPrivate.h"
#include "runtime/Runtime.h"

namespace brindle {

void performNow(NSObject* target, SEL selector, NSObject* argument)
{
    const Ref<NSObject> alive(target);
    Class* const cls = target->isa_;
    // Nearly everything sent this way takes an object or nothing and answers nothing.
    if (!class_isMetaClass(cls)) {
        if (const Method* const method = class_getInstanceMethod(cls, selector)) {
            const char* const types = method_getTypeEncoding(method);
            const IMP imp = method_getImplementation(method);
            if (std::strcmp(types, "v@:@") == 0) {
                reinterpret_cast<void (*)(NSObject*, SEL, NSObject*)>(imp)(
                    target, selector, argument);
                return;
            }
            if (std::strcmp(types, "v@:") == 0) {
                reinterpret_cast<void (*)(NSObject*, SEL)>(imp)(target, selector);
                return;
            }
        }
    }
    target->performSelector_withObject(selector, argument);
}

// ---- the table of what waits

PerformTable::~PerformTable()
{
    while (free_)
        delete std::exchange(free_, free_->next);
}

void PerformTable::grow()
{
    std::vector<Perform*> old(buckets_.empty() ? 16 : buckets_.size() * 2);
    old.swap(buckets_);
    for (Perform* perform : old) {
        while (perform) {
            Perform* const next = perform->next;
            Perform*& bucket = buckets_[bucketOf(perform->target.get())];
            perform->next = bucket;
            bucket = perform;
            perform = next;
        }
    }
}

Perform* PerformTable::make(NSObject* target, SEL selector, NSObject* argument)
{
    if (count_ >= buckets_.size())
        grow();
    Perform* perform = free_;
    if (perform) {
        free_ = perform->next;
        --freeCount_;
    } else
        perform = new Perform;
    perform->target = Ref<NSObject>(target);
    perform->argument = Ref<NSObject>(argument);
    perform->selector = selector;
    Perform*& bucket = buckets_[bucketOf(target)];
    perform->next = bucket;
    bucket = perform;
    ++count_;
    return perform;
}

void PerformTable::unlink(Perform* perform)
{
    Perform** link = &buckets_[bucketOf(perform->target.get())];
    while (*link != perform)
        link = &(*link)->next;
    *link = perform->next;
    --count_;
}

void PerformTable::recycle(Perform* perform)
{
    // Out of the entry first: what they let go of may come back to this table.
    const Ref<NSObject> target = std::move(perform->target);
    const Ref<NSObject> argument = std::move(perform->argument);
    if (freeCount_ >= 256) {
        delete perform;
        return;
    }
    perform->next = free_;
    free_ = perform;
    ++freeCount_;
}

Perform* PerformTable::find(NSObject* target, SEL selector, NSObject* argument) const
{
    if (count_ == 0)
        return nullptr;
    for (Perform* perform = buckets_[bucketOf(target)]; perform; perform = perform->next) {
        if (perform->target.get() != target)
            continue;
        if (!selector)
            return perform;
        if (perform->selector != selector)
            continue;
        NSObject* const its = perform->argument.get();
        if (its == argument || (its && argument && its->isEqual(argument)))
            return perform;
    }
    return nullptr;
}

namespace {

    void firePerform(Scheduled* scheduled)
    {
        auto* const perform = static_cast<Perform*>(scheduled);
        PerformTable& table = perform->loop->performs();
        table.unlink(perform);
        const Ref<NSObject> target = perform->target;
        const Ref<NSObject> argument = perform->argument;
        const SEL selector = perform->selector;
        table.recycle(perform);
        performNow(target.get(), selector, argument.get());
    }

    void dropPerform(Scheduled* scheduled)
    {
        auto* const perform = static_cast<Perform*>(scheduled);
        perform->loop->performs().unlink(perform);
        perform->loop->performs().recycle(perform);
    }

    void schedulePerform(
        NSObject& self, SEL selector, NSObject* argument, double delay, RunLoopCore::Modes modes)
    {
        RunLoopCore& loop = RunLoopCore::current();
        Perform* const perform = loop.performs().make(&self, selector, argument);
        perform->loop = &loop;
        perform->fire = &firePerform;
        perform->drop = &dropPerform;
        loop.schedule(*perform, modes, momentAfter(Clock::now(), delay));
    }

    void cancelPerforms(NSObject* target, SEL selector, NSObject* argument)
    {
        RunLoopCore& loop = RunLoopCore::current();
        const Ref<NSObject> alive(target); // the last perform may be its last owner
        while (Perform* const perform = loop.performs().find(target, selector, argument)) {
            loop.unschedule(*perform);
            dropPerform(perform);
        }
    }

    void performOn(
        const Ref<NSRunLoop>& loop, NSObject& self, SEL selector, NSObject* argument, bool wait)
    {
        RunLoopCore& core = RunLoopCore::of(*loop);
        if (wait && core.isOwnThread()) {
            performNow(&self, selector, argument);
            return;
        }
        const Block<void()> work
            = [target = Ref<NSObject>(&self), selector, kept = Ref<NSObject>(argument)] {
                  performNow(target.get(), selector, kept.get());
              };
        if (!wait) {
            loop->performBlock(work);
            return;
        }
        queues::runAndWait(
            [&loop](const Block<void()>& block) { loop->performBlock(block); }, work);
    }

}

template <> struct NSObject::Methods<struct DelayedPerforming> {

    static void performAfterDelay(NSObject& self, SEL selector, NSObject* argument, double delay)
    {
        schedulePerform(self, selector, argument, delay, RunLoopCore::kDefault);
    }
    static void performAfterDelayInModes(
        NSObject& self, SEL selector, NSObject* argument, double delay, NSArray* modes)
    {
        RunLoopCore::Modes all = 0;
        const NSUInteger count = modes ? modes->count() : 0;
        for (NSUInteger i = 0; i < count; ++i)
            all |= RunLoopCore::current().modesNamed(cast<NSString>(modes->objectAtIndex(i)).get());
        if (all)
            schedulePerform(self, selector, argument, delay, all);
    }
    static void cancelSelector(Class&, NSObject* target, SEL selector, NSObject* argument)
    {
        if (target && selector)
            cancelPerforms(target, selector, argument);
    }
    static void cancelAll(Class&, NSObject* target)
    {
        if (target)
            cancelPerforms(target, SEL {}, nullptr);
    }
    static void performOnMainThread(NSObject& self, SEL selector, NSObject* argument, bool wait)
    {
        performOn(ThreadState::main().ensureLoop(), self, selector, argument, wait);
    }
    static void performOnThread(
        NSObject& self, SEL selector, NSThread* thread, NSObject* argument, bool wait)
    {
        if (thread)
            performOn(ThreadState::loopOf(*thread), self, selector, argument, wait);
    }
    static void performInBackground(NSObject& self, SEL selector, NSObject* argument)
    {
        NSThread::cls().detachNewThreadSelector_toTarget_withObject(selector, &self, argument);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "performSelector:withObject:afterDelay:", imp<performAfterDelay> },
            { "performSelector:withObject:afterDelay:inModes:", imp<performAfterDelayInModes> },
            { "performSelectorOnMainThread:withObject:waitUntilDone:", imp<performOnMainThread> },
            { "performSelector:onThread:withObject:waitUntilDone:", imp<performOnThread> },
            { "performSelectorInBackground:withObject:", imp<performInBackground> },
        });
        t.classMethods({
            { "cancelPreviousPerformRequestsWithTarget:selector:object:", imp<cancelSelector> },
            { "cancelPreviousPerformRequestsWithTarget:", imp<cancelAll> },
        });
    }
};
BRINDLE_RECORD(NSObject, DelayedPerforming)

}
