// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSNotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/NSDictionary.h"
#include "foundation/NSOperationQueue.h"
#include "foundation/NSRunLoop.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Allocations.h"
#include "support/Memory.h"

namespace brindle {

class NotificationListener : public NSObject {
    BRINDLE_OBJECT(NotificationListener, NSObject)

public:
    std::string* log = nullptr;
    std::string name;
};

template <> struct NotificationListener::Methods<struct Listening> {
    static void changed(NotificationListener& self) { *self.log += self.name + " "; }
    static void took(NotificationListener& self, NSNotification* notification)
    {
        *self.log += self.name + ":" + utf8Of(notification->name()) + " ";
    }
    static void table(Builder& t)
    {
        t.methods({ { "changed", imp<changed> }, { "took:", imp<took> } });
    }
};
BRINDLE_RECORD(NotificationListener, Listening)

/// Posts "Ending" in its dealloc.
class EndingPoster : public NSObject {
    BRINDLE_OBJECT(EndingPoster, NSObject)

public:
    NSNotificationCenter* center = nullptr;
};

template <> struct EndingPoster::Methods<struct Ending> {
    static void dealloc(EndingPoster& self)
    {
        if (self.center)
            self.center->postNotificationName_object("Ending"_ns, &self);
    }
    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(EndingPoster, Ending)

/// Counts those of its kind that ended on another thread than their own.
class ThreadBoundSender : public NSObject {
    BRINDLE_OBJECT(ThreadBoundSender, NSObject)

public:
    std::thread::id own = std::this_thread::get_id();
    static inline std::atomic<int> endedElsewhere { 0 };
};

template <> struct ThreadBoundSender::Methods<struct Ending> {
    static void dealloc(ThreadBoundSender& self)
    {
        if (std::this_thread::get_id() != self.own)
            ++ThreadBoundSender::endedElsewhere;
    }
    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(ThreadBoundSender, Ending)

namespace {

    class NotificationCenter : public testing::Test {
    protected:
        Ref<NotificationListener> listener(const char* name)
        {
            auto made = make<NotificationListener>();
            made->log = &log;
            made->name = name;
            return made;
        }
        void post(NSString* name, NSObject* object = nullptr)
        {
            center->postNotificationName_object(name, object);
        }
        void observe(NotificationListener* who, NSString* name, NSObject* object = nullptr)
        {
            center->addObserver_selector_name_object(who, selector<"changed">, name, object);
        }

        std::string log;
        Ref<NSNotificationCenter> center = make<NSNotificationCenter>();
        Ref<NSObject> sender = make<NSObject>();
        Ref<NSObject> stranger = make<NSObject>();
    };

}

TEST_F(NotificationCenter, IsOneByDefault)
{
    EXPECT_EQ(
        NSNotificationCenter::cls().defaultCenter(), NSNotificationCenter::cls().defaultCenter());
}

TEST_F(NotificationCenter, SendsASelectorWithoutParameter)
{
    const auto a = listener("a");
    observe(a.get(), "N"_ns);
    post("N"_ns);
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, SendsTheNotificationToASelectorWithAParameter)
{
    const auto a = listener("a");
    center->addObserver_selector_name_object(a.get(), selector<"took:">, "N"_ns, nullptr);
    post("N"_ns);
    EXPECT_EQ(log, "a:N ");
}

TEST_F(NotificationCenter, CallsInTheOrderOfRegistrationAcrossWildcards)
{
    const auto a = listener("a");
    const auto b = listener("b");
    const auto c = listener("c");
    const auto d = listener("d");
    observe(a.get(), nullptr);
    observe(b.get(), "N"_ns, sender.get());
    observe(c.get(), "N"_ns);
    observe(d.get(), nullptr, sender.get());
    post("N"_ns, sender.get());
    EXPECT_EQ(log, "a b c d ");
}

TEST_F(NotificationCenter, MatchesTheSenderByIdentity)
{
    const auto a = listener("a");
    observe(a.get(), "N"_ns, sender.get());
    post("N"_ns, stranger.get());
    post("N"_ns);
    EXPECT_EQ(log, "");
}

TEST_F(NotificationCenter, MatchesTheNameByValue)
{
    const auto a = listener("a");
    observe(a.get(), stringFrom(std::string_view("Name")).get());
    post("Name"_ns);
    post("Other"_ns);
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, CallsTwiceWhoWasAddedTwice)
{
    const auto a = listener("a");
    observe(a.get(), "N"_ns);
    observe(a.get(), "N"_ns);
    post("N"_ns);
    EXPECT_EQ(log, "a a ");
}

TEST_F(NotificationCenter, DoesNotKeepAnObserver)
{
    auto a = listener("a");
    const WeakRef<NotificationListener> weak(a);
    observe(a.get(), "N"_ns);
    a = nullptr;
    EXPECT_FALSE(weak.get());
    post("N"_ns);
    EXPECT_EQ(log, "");
}

TEST_F(NotificationCenter, DoesNotKeepASender)
{
    const auto a = listener("a");
    const WeakRef<NSObject> weak(sender);
    observe(a.get(), "N"_ns, sender.get());
    sender = nullptr;
    EXPECT_FALSE(weak.get());
}

TEST_F(NotificationCenter, KeepsAClosureWhoseTokenWasDropped)
{
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification* n) { log += utf8Of(n->name()); });
    post("N"_ns);
    EXPECT_EQ(log, "N");
}

TEST_F(NotificationCenter, LetsGoOfAClosureWhenItsTokenIsRemoved)
{
    const auto probe = std::make_shared<int>(0);
    const auto token = center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [probe](NSNotification*) {});
    center->removeObserver(token.get());
    EXPECT_EQ(probe.use_count(), 1);
}

TEST_F(NotificationCenter, HandsOverSenderAndFacts)
{
    Ref<NSObject> from;
    Ref<NSDictionary> facts;
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification* notification) {
            from = notification->object();
            facts = notification->userInfo();
        });
    const auto info = makeDictionary({ { "key"_ns, "value"_ns } });
    center->postNotificationName_object_userInfo("N"_ns, sender.get(), info.get());
    EXPECT_EQ(from, sender);
    EXPECT_EQ(facts, info);
}

TEST_F(NotificationCenter, DoesNotCallWhoWasRemovedMeanwhile)
{
    const auto b = listener("b");
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification*) { center->removeObserver(b.get()); });
    observe(b.get(), "N"_ns);
    post("N"_ns);
    EXPECT_EQ(log, "");
}

TEST_F(NotificationCenter, DoesNotCallWhoWasAddedMeanwhile)
{
    const auto b = listener("b");
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification*) { observe(b.get(), "N"_ns); });
    post("N"_ns);
    EXPECT_EQ(log, "");
    post("N"_ns);
    EXPECT_EQ(log, "b ");
}

TEST_F(NotificationCenter, RemovesByNameAndObject)
{
    const auto a = listener("a");
    observe(a.get(), "N"_ns, sender.get());
    observe(a.get(), "N"_ns);
    observe(a.get(), "M"_ns);
    center->removeObserver_name_object(a.get(), "N"_ns, sender.get());
    post("N"_ns, sender.get());
    post("M"_ns);
    EXPECT_EQ(log, "a a ");
    center->removeObserver_name_object(a.get(), nullptr, nullptr);
    post("M"_ns);
    EXPECT_EQ(log, "a a ");
}

TEST_F(NotificationCenter, RaisesForANilName) { EXPECT_THROW(post(nullptr), Exception); }

TEST_F(NotificationCenter, LetsAnExceptionThroughAndGoesOnAfterwards)
{
    bool throwing = true;
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification*) {
            if (throwing)
                raise("Test", "thrown");
        });
    const auto b = listener("b");
    observe(b.get(), "N"_ns);
    EXPECT_THROW(post("N"_ns), Exception);
    throwing = false;
    post("N"_ns);
    EXPECT_EQ(log, "b ");
}

TEST_F(NotificationCenter, RunsOnTheMainQueueForAPostingOfAnotherThread)
{
    center->addObserverForName_object_queue_usingBlock("N"_ns, nullptr,
        NSOperationQueue::cls().mainQueue().get(), [&](NSNotification*) { log += "m"; });
    std::thread([&] { post("N"_ns); }).join();
    EXPECT_EQ(log, "");
    NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(log, "m");
    post("N"_ns);
    EXPECT_EQ(log, "mm");
}

TEST_F(NotificationCenter, ForgetsObserversThatDiedWithoutBeingAsked)
{
    for (int i = 0; i < 10000; ++i)
        observe(listener("x").get(), "N"_ns);
    const auto a = listener("a");
    observe(a.get(), "N"_ns);
    post("N"_ns);
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, ForgetsWhatWasAskedAboutObjectsThatDied)
{
    const auto a = listener("a");
    const auto probe = std::make_shared<int>(0);
    const std::size_t before = test::allocatedBytes();
    for (int i = 0; i < 10000; ++i) {
        const Ref<NSObject> window = make<NSObject>();
        observe(a.get(), "N"_ns, window.get());
        center->addObserverForName_object_queue_usingBlock(
            "N"_ns, window.get(), nullptr, [probe](NSNotification*) {});
    }
    EXPECT_LT(probe.use_count(), 200);
    EXPECT_TRUE(test::allocatedBytes() < before + 200'000 || !test::growthCanBeMeasured());
    observe(a.get(), "N"_ns, sender.get());
    post("N"_ns, sender.get());
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, DeliversWhatAnObjectPostsInItsDealloc)
{
    const auto a = listener("a");
    auto leaving = make<EndingPoster>();
    leaving->center = center.get();
    observe(a.get(), "Ending"_ns, leaving.get());
    leaving = nullptr;
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, AQueueGetsNoObjectThatHasEndedByThen)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setSuspended(true);
    auto leaving = make<EndingPoster>();
    leaving->center = center.get();
    int heard = 0;
    Ref<NSObject> object = sender;
    for (NSObject* const whose :
        { static_cast<NSObject*>(leaving.get()), static_cast<NSObject*>(nullptr) })
        center->addObserverForName_object_queue_usingBlock(
            "Ending"_ns, whose, queue.get(), [&](NSNotification* news) {
                ++heard;
                object = news->object();
            });
    leaving = nullptr;
    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(heard, 2);
    EXPECT_FALSE(object);
}

TEST_F(NotificationCenter, NeverEndsTheObjectsThatItLooksAt)
{
    // Another thread's additions look at all senders while this thread lets go of them.
    std::atomic<bool> done { false };
    std::thread other([&] {
        const auto b = make<NSObject>();
        while (!done) {
            for (int i = 0; i < 200; ++i)
                center->addObserver_selector_name_object(
                    b.get(), selector<"hash">, "Other"_ns, nullptr);
            center->removeObserver(b.get());
        }
    });
    const auto a = listener("a");
    ThreadBoundSender::endedElsewhere = 0;
    for (int i = 0; i < 20'000; ++i) {
        const auto passing = make<ThreadBoundSender>();
        observe(a.get(), "N"_ns, passing.get());
    }
    done = true;
    other.join();
    EXPECT_EQ(ThreadBoundSender::endedElsewhere, 0);
}

TEST_F(NotificationCenter, ObserversOfOneNameLeaveInAnyOrder)
{
    std::vector<Ref<NotificationListener>> all;
    for (int i = 0; i < 100; ++i) {
        all.push_back(listener(std::to_string(i).c_str()));
        observe(all.back().get(), "N"_ns);
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i * 37 % 100 >= 3)
            center->removeObserver(all[i * 37 % 100].get());
    }
    observe(all[7].get(), "N"_ns);
    post("N"_ns);
    EXPECT_EQ(log, "0 1 2 7 ");
}

TEST_F(NotificationCenter, AnyNumberOfObserversOfOneNameLeaveOneByOne)
{
    // A hundred times as many may take a hundred times as long, and not ten thousand times.
    const auto secondsFor = [&](int count) {
        std::vector<Ref<NSObject>> tokens;
        for (int i = 0; i < count; ++i)
            tokens.push_back(center->addObserverForName_object_queue_usingBlock(
                "N"_ns, nullptr, nullptr, [](NSNotification*) {}));
        const auto begin = std::chrono::steady_clock::now();
        for (const auto& token : tokens)
            center->removeObserver(token.get());
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    secondsFor(1000);
    const double few = std::max(secondsFor(1000), 1e-5);
    EXPECT_LT(secondsFor(100'000), few * 3000);
}

TEST_F(NotificationCenter, OneWithoutInitCanBeUsed)
{
    const Ref<NSNotificationCenter> bare = alloc<NSNotificationCenter>();
    const auto a = listener("a");
    bare->postNotificationName_object("N"_ns, nullptr);
    bare->removeObserver(a.get());
    bare->addObserver_selector_name_object(a.get(), selector<"changed">, "N"_ns, nullptr);
    bare->postNotificationName_object("N"_ns, nullptr);
    EXPECT_EQ(log, "a ");
}

TEST_F(NotificationCenter, CanBeUsedFromManyThreadsAtOnce)
{
    std::atomic<int> heard { 0 };
    center->addObserverForName_object_queue_usingBlock(
        "N"_ns, nullptr, nullptr, [&](NSNotification*) { ++heard; });
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                const auto mine = make<NSObject>();
                center->addObserver_selector_name_object(
                    mine.get(), selector<"hash">, "Other"_ns, nullptr);
                post("N"_ns);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(heard, 800);
}

TEST_F(NotificationCenter, ANotificationThatSomebodyKeepsStaysAsItWas)
{
    Ref<NSNotification> kept;
    const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
        "first"_ns, nullptr, nullptr, [&](NSNotification* news) { kept = news; });
    post("first"_ns, sender.get());
    post("second"_ns, stranger.get());
    center->removeObserver(token.get());
    post("third"_ns, stranger.get());
    ASSERT_TRUE(kept);
    EXPECT_EQ(utf8Of(kept->name()), "first");
    EXPECT_EQ(kept->object(), sender);
}

TEST_F(NotificationCenter, ANotificationThatIsKnownWeaklyEndsWithItsPosting)
{
    WeakRef<NSNotification> known;
    const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock("first"_ns,
        nullptr, nullptr, [&](NSNotification* news) { known = WeakRef<NSNotification>(news); });
    post("first"_ns);
    EXPECT_FALSE(known.get());
    center->removeObserver(token.get());
}

TEST_F(NotificationCenter, AfterAPostingNothingOfItIsKept)
{
    const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
        "first"_ns, nullptr, nullptr, [](NSNotification*) {});
    const WeakRef<NSObject> gone(sender);
    post("first"_ns, std::exchange(sender, nullptr).get());
    EXPECT_FALSE(gone.get());
    center->removeObserver(token.get());
}

TEST_F(NotificationCenter, APostingInAPostingHasANotificationOfItsOwn)
{
    std::string names;
    const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
        nullptr, nullptr, nullptr, [&](NSNotification* news) {
            if (news->name()->isEqualToString("outer"_ns))
                post("inner"_ns);
            names += utf8Of(news->name()) + " ";
        });
    post("outer"_ns);
    post("outer"_ns);
    center->removeObserver(token.get());
    EXPECT_EQ(names, "inner outer inner outer ");
}

TEST_F(NotificationCenter, APostingAsksForNoMemory)
{
    const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
        "news"_ns, nullptr, nullptr, [](NSNotification*) {});
    const std::size_t most = test::mostAllocationsIn(
        10, [](int) {}, [&] { post("news"_ns, sender.get()); });
    EXPECT_EQ(most, 0u);
    center->removeObserver(token.get());
}

}
