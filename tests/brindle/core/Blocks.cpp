// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "core/BRBlock.h"
#include "core/BlockAfterDelay.h"
#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/Dispatch.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSObject+DelayedPerforming.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSString.h"
#include "foundation/NSThread.h"
#include "runtime/Runtime.h"
#include "support/VirtualClock.h"

namespace brindle {

/// Counts the messages that a timeout sends.
class TimeoutTarget : public NSObject {
    BRINDLE_OBJECT(TimeoutTarget, NSObject)
public:
    int plain_ = 0;
    int withObject_ = 0;
    bool objectWasNil_ = false;
};
template <> struct TimeoutTarget::Methods<struct Counting> {
    static void plain(TimeoutTarget& self) { ++self.plain_; }
    static void withObject(TimeoutTarget& self, NSObject* object)
    {
        ++self.withObject_;
        self.objectWasNil_ = !object;
    }
    static void table(Builder& t)
    {
        t.methods({ { "plain", imp<plain> }, { "withObject:", imp<withObject> } });
    }
};
BRINDLE_RECORD(TimeoutTarget, Counting)

namespace {

    /// Every test here turns the clock by hand.
    struct Jobs : testing::Test {
        test::VirtualClock clock;

        /// Runs the main queue until something is true. Work in the background takes real time, so this looks
        /// again and again; the test program's own limit ends a wait that never does.
        template <class F> void runUntil(F&& condition)
        {
            while (!condition())
                clock.advance(0.001);
        }
    };
    struct Delays : Jobs { };
    struct Timeouts : Jobs { };
    struct JobsDeathTest : Jobs { };

    TEST_F(Jobs, AreMadeWithEmptyParametersAndRunInTheBackground)
    {
        const auto job = make<BRBlock>();
        EXPECT_TRUE(job->runInBackgroundCode());
        EXPECT_EQ(job->parameters()->count(), 0u);
        EXPECT_FALSE(job->code());
        EXPECT_FALSE(job->code_());
        EXPECT_FALSE(job->completion());
        EXPECT_TRUE(make<BRBackgroundBlock>()->runInBackgroundCode());
        EXPECT_FALSE(make<BRFunctionBlock>()->runInBackgroundCode());
    }

    TEST_F(Jobs, DeclareTheirPropertiesInOrder)
    {
        unsigned count = 0;
        objc_property_t* const list = class_copyPropertyList(BRBlock::cls(), &count);
        std::string text;
        for (unsigned i = 0; i < count; ++i)
            text += std::string(property_getName(list[i])) + " " + property_getAttributes(list[i])
                + "\n";
        releaseBuffer(list);
        EXPECT_EQ(text,
            "runInBackgroundCode TB,V_runInBackgroundCode\n"
            "code T@?,C,N,V_code\n"
            "code_ T@?,C,N,V_code_\n"
            "parameters T@\"NSMutableDictionary\",&,V_parameters\n"
            "completion T@?,C,N,V_completion\n");
    }

    TEST_F(Jobs, OnTheCallersThreadAreDoneWhenExecuteAnswers)
    {
        std::string story;
        const auto job = make<BRFunctionBlock>();
        job->setCode([&] { story += "code "; });
        job->setCompletion([&] { story += "completion"; });
        job->execute();
        EXPECT_EQ(story, "code completion");
    }

    TEST_F(Jobs, OnTheCallersThreadPreferTheCodeWithParameters)
    {
        std::string story;
        const auto job = make<BRFunctionBlock>();
        job->parameters()->setObject_forKey("world"_ns, "name"_ns);
        job->setCode([&] { story += "plain"; });
        job->setCode_([&](BRBlock* self) {
            story += "hello ";
            story += utf8Of(cast<NSString>(self->parameters()->objectForKey("name"_ns)).get());
        });
        job->execute();
        EXPECT_EQ(story, "hello world");
    }

    TEST_F(Jobs, OnTheCallersThreadWithoutCodeOnlyComplete)
    {
        int completions = 0;
        const auto job = make<BRFunctionBlock>();
        job->execute();
        job->setCompletion([&] { ++completions; });
        job->execute();
        EXPECT_EQ(completions, 1);
    }

    TEST_F(Jobs, InTheBackgroundRunOffTheMainThreadAndCompleteOnIt)
    {
        std::atomic<bool> codeOnMain { true };
        bool completionOnMain = false;
        bool done = false;
        const auto job = make<BRBlock>();
        job->setCode([&] { codeOnMain = NSThread::cls().isMainThread(); });
        job->setCompletion([&] {
            completionOnMain = NSThread::cls().isMainThread();
            done = true;
        });
        job->execute();
        EXPECT_FALSE(done);
        runUntil([&] { return done; });
        EXPECT_FALSE(codeOnMain);
        EXPECT_TRUE(completionOnMain);
    }

    TEST_F(Jobs, InTheBackgroundNeverCallTheCodeWithParameters)
    {
        std::atomic<int> calls { 0 };
        bool done = false;
        const auto job = make<BRBlock>();
        job->setCode_([&](BRBlock*) { calls += 100; });
        job->setCode([&] { calls += 1; });
        job->setCompletion([&] { done = true; });
        job->execute();
        runUntil([&] { return done; });
        EXPECT_EQ(calls, 1);
    }

    TEST_F(Jobs, InTheBackgroundNeedNoCompletion)
    {
        std::atomic<bool> ran { false };
        const auto job = make<BRBackgroundBlock>();
        job->setCode([&] { ran = true; });
        job->execute();
        runUntil([&] { return ran.load(); });
        EXPECT_TRUE(ran);
    }

    TEST_F(Jobs, OnAnotherThreadCompleteThere)
    {
        bool codeOnMain = true;
        bool completionOnMain = true;
        std::thread([&] {
            const auto job = make<BRFunctionBlock>();
            job->setCode([&] { codeOnMain = NSThread::cls().isMainThread(); });
            job->setCompletion([&] { completionOnMain = NSThread::cls().isMainThread(); });
            job->execute();
        }).join();
        EXPECT_FALSE(codeOnMain);
        EXPECT_FALSE(completionOnMain);
    }

    TEST_F(Jobs, KeepThemselvesAliveUntilTheirCompletionHasRun)
    {
        bool done = false;
        auto job = make<BRBlock>();
        const WeakRef<BRBlock> weak(job);
        job->setCode([] {});
        job->setCompletion([&] { done = weak.get() != nullptr; });
        job->execute();
        job = nullptr;
        runUntil([&] { return !weak.get(); });
        EXPECT_TRUE(done);
    }

    TEST_F(Jobs, CanRunAnyNumberOfTimes)
    {
        int runs = 0;
        const auto job = make<BRFunctionBlock>();
        job->setCode([&] { ++runs; });
        for (int i = 0; i < 5; ++i)
            job->execute();
        EXPECT_EQ(runs, 5);
    }

    TEST_F(JobsDeathTest, InTheBackgroundWithoutCodeEndTheProcess)
    {
        EXPECT_DEATH(
            {
                make<BRBlock>()->execute();
                runUntil([] { return false; });
            },
            "brindle: a null closure was called");
    }

    TEST_F(Jobs, ReturnToMainRunsInALaterTurn)
    {
        bool ran = false;
        BRBlock::cls().returnToMain([&] { ran = true; });
        EXPECT_FALSE(ran);
        clock.advance(0);
        EXPECT_TRUE(ran);
    }

    TEST_F(Jobs, ReturnToMainFromAnotherThreadRunsOnTheMainOne)
    {
        bool onMain = false;
        std::thread([&] {
            BRBlock::cls().returnToMain([&] { onMain = NSThread::cls().isMainThread(); });
        }).join();
        EXPECT_FALSE(onMain);
        clock.advance(0);
        EXPECT_TRUE(onMain);
    }

    TEST_F(JobsDeathTest, ReturnToMainOfNothingEndsTheProcess)
    {
        EXPECT_DEATH(
            {
                BRBlock::cls().returnToMain(nullptr);
                clock.advance(0);
            },
            "brindle: a null closure was called");
    }

    TEST_F(Delays, RunTheClosureWhenTheirTimeHasCome)
    {
        bool ran = false;
        blockAfterDelay(0.24, [&] { ran = true; });
        clock.advance(0.23);
        EXPECT_FALSE(ran);
        clock.advance(0.02);
        EXPECT_TRUE(ran);
    }

    TEST_F(Delays, BegunOnAnotherThreadEndOnTheMainOne)
    {
        bool onMain = false;
        std::thread([&] {
            blockAfterDelay(0.1, [&] { onMain = NSThread::cls().isMainThread(); });
        }).join();
        clock.advance(0.2);
        EXPECT_TRUE(onMain);
    }

    TEST_F(Delays, OfZeroAndLessStillRunInALaterTurn)
    {
        std::string story;
        blockAfterDelay(0, [&] { story += "zero "; });
        blockAfterDelay(-5, [&] { story += "negative"; });
        EXPECT_EQ(story, "");
        clock.advance(0);
        EXPECT_NE(story.find("zero"), std::string::npos);
        EXPECT_NE(story.find("negative"), std::string::npos);
    }

    TEST_F(Delays, AreCutToWholeNanoseconds)
    {
        bool ran = false;
        blockAfterDelay(0.0000000015, [&] { ran = true; });
        Clock::advanceTo(Clock::now() + 1);
        clock.advance(0);
        EXPECT_TRUE(ran);
    }

    TEST_F(Delays, WithoutEndNeverCome)
    {
        bool ran = false;
        blockAfterDelay(1e300, [&] { ran = true; });
        clock.advance(1e6);
        EXPECT_FALSE(ran);
    }

    TEST_F(Timeouts, RestartWithEveryCallSoThatOnlyTheLastClosureRunsOnce)
    {
        std::string story;
        const auto object = make<NSObject>();
        timeoutToBlock_afterDelay(
            object, [&] { story += "1"; }, 0.5);
        clock.advance(0.4);
        timeoutToBlock_afterDelay(
            object, [&] { story += "2"; }, 0.5);
        clock.advance(0.4);
        timeoutToBlock_afterDelay(
            object, [&] { story += "3"; }, 0.5);
        clock.advance(0.4);
        EXPECT_EQ(story, "");
        clock.advance(5);
        EXPECT_EQ(story, "3");
    }

    TEST_F(Timeouts, OfSelectorsRestartPerSelector)
    {
        const auto target = make<TimeoutTarget>();
        for (int i = 0; i < 3; ++i) {
            timeoutToSelector_afterDelay(target, selector<"plain">, 1);
            clock.advance(0.5);
        }
        timeoutToSelector_afterDelay(target, selector<"withObject:">, 1);
        clock.advance(3);
        EXPECT_EQ(target->plain_, 1);
        EXPECT_EQ(target->withObject_, 1);
        EXPECT_TRUE(target->objectWasNil_);
    }

    TEST_F(Timeouts, OfSelectorsLeavePerformsWithAnArgumentAlone)
    {
        const auto target = make<TimeoutTarget>();
        performSelector_withObject_afterDelay(target, selector<"withObject:">, "argument"_ns, 0.1);
        timeoutToSelector_afterDelay(target, selector<"withObject:">, 0.2);
        clock.advance(0.15);
        EXPECT_EQ(target->withObject_, 1);
        EXPECT_FALSE(target->objectWasNil_);
        clock.advance(0.15);
        EXPECT_EQ(target->withObject_, 2);
        EXPECT_TRUE(target->objectWasNil_);
    }

    TEST_F(Timeouts, CancelWhatWasAskedForWithoutThem)
    {
        const auto target = make<TimeoutTarget>();
        performSelector_withObject_afterDelay(target, selector<"plain">, nullptr, 0.1);
        timeoutToSelector_afterDelay(target, selector<"plain">, 0.5);
        clock.advance(5);
        EXPECT_EQ(target->plain_, 1);
    }

    TEST_F(Timeouts, FireInTheDefaultModeOnly)
    {
        const auto target = make<TimeoutTarget>();
        timeoutToSelector_afterDelay(target, selector<"plain">, 0);
        const auto loop = NSRunLoop::cls().mainRunLoop();
        loop->runUntilIdle(NSEventTrackingRunLoopMode);
        EXPECT_EQ(target->plain_, 0);
        loop->runUntilIdle(NSDefaultRunLoopMode);
        EXPECT_EQ(target->plain_, 1);
    }

    TEST_F(Timeouts, OfDifferentObjectsDoNotDisturbEachOther)
    {
        std::string story;
        const auto a = make<NSObject>();
        const auto b = make<NSObject>();
        timeoutToBlock_afterDelay(
            a, [&] { story += "a"; }, 0.1);
        timeoutToBlock_afterDelay(
            b, [&] { story += "b"; }, 0.2);
        clock.advance(1);
        EXPECT_EQ(story, "ab");
    }

    TEST_F(Timeouts, KeepTheirObjectUntilTheyFire)
    {
        auto object = make<NSObject>();
        const WeakRef<NSObject> weak(object);
        timeoutToBlock_afterDelay(
            object, [] {}, 0.1);
        object = nullptr;
        EXPECT_NE(weak.get(), nullptr);
        clock.advance(1);
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST_F(Timeouts, LeaveTheClosureWithTheObjectAfterFiring)
    {
        int runs = 0;
        const auto object = make<NSObject>();
        timeoutToBlock_afterDelay(
            object, [&] { ++runs; }, 0);
        clock.advance(0);
        EXPECT_EQ(runs, 1);
        blockTimeout(object);
        EXPECT_EQ(runs, 2);
    }

    TEST_F(JobsDeathTest, ATimeoutWithoutAClosureEndsTheProcess)
    {
        EXPECT_DEATH(blockTimeout(make<NSObject>()), "brindle: a null closure was called");
    }

}
}
