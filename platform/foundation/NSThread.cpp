// SPDX-License-Identifier: Apache-2.0
#include "NSThread.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <pthread.h>
#include <unistd.h>

#include "Exceptions.h"
#include "NSDate.h"
#include "NSMutableDictionary.h"
#include "NSObject+DelayedPerforming.h"
#include "RunLoopPrivate.h"
#include "ThreadPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    [[gnu::tls_model("initial-exec")]] constinit thread_local ThreadState* ownState = nullptr;

    // A key of the system and not a C++ thread_local: it ends after all of those, whose ends may post and schedule.
    void endThread(void* state)
    {
        const std::unique_ptr<std::shared_ptr<ThreadState>> kept(
            static_cast<std::shared_ptr<ThreadState>*>(state));
        (*kept)->end();
        if (ownState == kept->get())
            ownState = nullptr;
    }

    pthread_key_t stateKey()
    {
        static const pthread_key_t key = [] {
            pthread_key_t made {};
            if (pthread_key_create(&made, &endThread) != 0)
                fatal("no key is left for the state of threads");
            return made;
        }();
        return key;
    }

    void block(double seconds)
    {
        if (Clock::isVirtual()) {
            if (isMainThread())
                Clock::advance(seconds);
            return;
        }
        const std::int64_t until = momentAfter(Clock::now(), seconds);
        const timespec moment { until / 1'000'000'000, until % 1'000'000'000 };
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &moment, nullptr) == EINTR) { }
    }

    Ref<NSString> nameOf(ThreadState& state)
    {
        const std::lock_guard guard(state.mutex);
        return state.name;
    }

    void nameSystemThread(NSString* name)
    {
        if (name)
            pthread_setname_np(pthread_self(), utf8Of(name).substr(0, 15).c_str());
    }

    // Nobody can catch what leaves a thread, hence noexcept: it ends the process as an uncaught exception.
    void* runThread(void* argument) noexcept
    {
        const std::unique_ptr<std::shared_ptr<ThreadState>> state(
            static_cast<std::shared_ptr<ThreadState>*>(argument));
        ThreadState::adopt(*state);
        nameSystemThread(nameOf(**state).get());
        const Ref<NSThread> thread = (*state)->ensureObject();
        (*state)->executing.store(true);
        thread->main();
        return nullptr;
    }

}

constinit thread_local signed char mainThreadness = 0;

bool findMainThread()
{
    mainThreadness = gettid() == getpid() ? 1 : -1;
    return mainThreadness > 0;
}

ThreadState& ThreadState::main()
{
    static auto* const kept = [] { // for ever
        auto* const state = new std::shared_ptr<ThreadState>(std::make_shared<ThreadState>());
        (*state)->isMain = true;
        (*state)->started.store(true);
        (*state)->executing.store(true);
        return state;
    }();
    return **kept;
}

ThreadState& ThreadState::current()
{
    if (!ownState) [[unlikely]] {
        if (isMainThread())
            ownState = &main();
        else {
            const auto state = std::make_shared<ThreadState>();
            state->started.store(true);
            state->executing.store(true);
            adopt(state);
        }
    }
    return *ownState;
}

void ThreadState::adopt(const std::shared_ptr<ThreadState>& state)
{
    ownState = state.get();
    pthread_setspecific(stateKey(), new std::shared_ptr<ThreadState>(state));
}

ThreadState& ThreadState::of(NSThread& thread)
{
    if (!thread.state_) [[unlikely]]
        thread.state_ = std::make_shared<ThreadState>();
    return *thread.state_;
}

Ref<NSRunLoop> ThreadState::ensureLoop()
{
    const std::lock_guard guard(mutex);
    if (!loop) {
        loop = RunLoopCore::makeLoop(isMain);
        if (finished.load())
            RunLoopCore::of(*loop).close(); // nothing will ever run there
    }
    return loop;
}

Ref<NSThread> ThreadState::ensureObject()
{
    const std::lock_guard guard(mutex);
    if (!object) {
        object = alloc<NSThread>();
        object->state_ = shared_from_this();
    }
    return object;
}

void ThreadState::end()
{
    Ref<NSRunLoop> endedLoop;
    Ref<NSThread> endedObject;
    {
        const std::lock_guard guard(mutex);
        finished.store(true);
        executing.store(false);
        endedLoop.swap(loop);
        endedObject.swap(object);
    }
    if (endedLoop)
        RunLoopCore::of(*endedLoop).close();
}

template <> struct NSThread::Methods<struct Running> {

    static Ref<NSThread> currentThread(Class&) { return ThreadState::current().ensureObject(); }
    static Ref<NSThread> mainThread(Class&) { return ThreadState::main().ensureObject(); }
    static bool isMain(Class&) { return brindle::isMainThread(); }
    static void sleepForTimeInterval(Class&, double seconds) { block(seconds); }
    static void sleepUntilDate(Class&, NSDate* date)
    {
        if (date)
            block(date->timeIntervalSinceReferenceDate() - Clock::wall());
    }
    static void detachBlock(Class& self, Closure<void()>* closure)
    {
        const auto thread = cast<NSThread>(self.send<"alloc", Ref<NSObject>>());
        thread->initWithBlock(Block<void()>(closure))->start();
    }
    static void detachSelector(Class& self, SEL selector, NSObject* target, NSObject* argument)
    {
        const auto thread = cast<NSThread>(self.send<"alloc", Ref<NSObject>>());
        thread->initWithTarget_selector_object(target, selector, argument)->start();
    }

    static ThreadState& of(NSThread& self) { return ThreadState::of(self); }
    static Ref<NSObject> init(NSThread& self)
    {
        if (!super<NSThread, "init", Ref<NSObject>>(self))
            return nullptr;
        self.state_ = std::make_shared<ThreadState>();
        return &self;
    }
    static Ref<NSThread> initWithBlock(NSThread& self, Closure<void()>* closure)
    {
        if (!self.init())
            return nullptr;
        self.block_ = Block<void()>(closure);
        return &self;
    }
    static Ref<NSThread> initWithTarget(
        NSThread& self, NSObject* target, SEL selector, NSObject* argument)
    {
        if (!self.init())
            return nullptr;
        self.target_ = Ref<NSObject>(target);
        self.selector_ = selector;
        self.argument_ = Ref<NSObject>(argument);
        return &self;
    }

    static void start(NSThread& self)
    {
        ThreadState& state = of(self);
        if (state.started.exchange(true))
            raise("NSInvalidArgumentException",
                "*** -[NSThread start]: attempt to start the thread again");
        installUncaughtHandler();
        {
            const std::lock_guard guard(state.mutex);
            state.object = Ref<NSThread>(&self);
        }
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        if (state.stackSize)
            pthread_attr_setstacksize(&attributes, state.stackSize);
        pthread_t thread {};
        auto kept = std::make_unique<std::shared_ptr<ThreadState>>(self.state_);
        const int failure = pthread_create(&thread, &attributes, &runThread, kept.get());
        pthread_attr_destroy(&attributes);
        if (failure == 0) {
            [[maybe_unused]] auto* const givenAway = kept.release();
            return;
        }
        state.end();
        raise("NSGenericException", "*** -[NSThread start]: the system has no thread left");
    }
    static void mainBody(NSThread& self)
    {
        if (self.block_) {
            const Block<void()> closure = std::move(self.block_);
            closure();
        } else if (const Ref<NSObject> target = self.target_)
            performNow(target.get(), self.selector_, self.argument_.get());
        self.target_ = nullptr;
        self.argument_ = nullptr;
    }

    static void cancel(NSThread& self) { of(self).cancelled.store(true); }
    static bool isCancelled(NSThread& self) { return of(self).cancelled.load(); }
    static bool isExecuting(NSThread& self) { return of(self).executing.load(); }
    static bool isFinished(NSThread& self) { return of(self).finished.load(); }
    static bool isMainThread(NSThread& self) { return of(self).isMain; }
    static Ref<NSString> name(NSThread& self) { return nameOf(of(self)); }
    static void setName(NSThread& self, NSString* name)
    {
        const Ref<NSString> copy = name ? cast<NSString>(name->copy()) : nullptr;
        {
            const std::lock_guard guard(of(self).mutex);
            of(self).name = copy;
        }
        // The main thread's name is the process's, which the system shows to people.
        if (ownState == &of(self) && !of(self).isMain)
            nameSystemThread(copy.get());
    }
    static Ref<NSMutableDictionary> threadDictionary(NSThread& self)
    {
        if (!self.dictionary_)
            self.dictionary_ = make<NSMutableDictionary>();
        return self.dictionary_;
    }
    static NSUInteger stackSize(NSThread& self) { return of(self).stackSize; }
    static void setStackSize(NSThread& self, NSUInteger bytes)
    {
        constexpr NSUInteger kPage = 4096;
        const auto least = static_cast<NSUInteger>(PTHREAD_STACK_MIN);
        of(self).stackSize = bytes ? (std::max(bytes, least) + kPage - 1) / kPage * kPage : 0;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "currentThread", imp<currentThread> },
            { "mainThread", imp<mainThread> },
            { "isMainThread", imp<isMain> },
            { "sleepForTimeInterval:", imp<sleepForTimeInterval> },
            { "sleepUntilDate:", imp<sleepUntilDate> },
            { "detachNewThreadWithBlock:", imp<detachBlock> },
            { "detachNewThreadSelector:toTarget:withObject:", imp<detachSelector> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithBlock:", imp<initWithBlock> },
            { "initWithTarget:selector:object:", imp<initWithTarget> },
            { "start", imp<start> },
            { "main", imp<mainBody> },
            { "cancel", imp<cancel> },
            { "isCancelled", imp<isCancelled> },
            { "isExecuting", imp<isExecuting> },
            { "isFinished", imp<isFinished> },
            { "isMainThread", imp<isMainThread> },
            { "name", imp<name> },
            { "setName:", imp<setName> },
            { "threadDictionary", imp<threadDictionary> },
            { "stackSize", imp<stackSize> },
            { "setStackSize:", imp<setStackSize> },
        });
    }
};
BRINDLE_RECORD(NSThread, Running)

}
