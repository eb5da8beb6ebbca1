// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/Dispatch.h"
#include "foundation/NSGeometry.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSString.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/Figures.h"

namespace brindle {

/// What eight threads do everything to at once.
class Shared : public NSObject {
    BRINDLE_OBJECT(Shared, NSObject)

public:
    std::int64_t left() const { return send<"left", std::int64_t>(); }
    std::int64_t right() const { return send<"right", std::int64_t>(); }
    NSRect place() const { return send<"place", NSRect>(); }
    void setPlace(NSRect place) { send<"setPlace:">(place); }
    Ref<NSObject> partner() const { return send<"partner", Ref<NSObject>>(); }
    void setPartner(NSObject* partner) { send<"setPartner:">(partner); }

    NSRect place_ {};
    Ref<NSObject> partner_;
};

template <> struct Shared::Methods<struct Sides> {
    static std::int64_t left(Shared&) { return 1; }
    static std::int64_t right(Shared&) { return 2; }
    static void table(Builder& t)
    {
        t.methods({ { "left", imp<left> }, { "right", imp<right> } });
        t.properties(
            { property<&Shared::place_>("place"), property<&Shared::partner_>("partner") });
    }
};
BRINDLE_RECORD(Shared, Sides)

namespace {

    constexpr int kSenders = 8;

    template <class Work> void onAllThreads(Work work)
    {
        std::vector<std::thread> threads;
        for (int t = 0; t < kSenders; ++t)
            threads.emplace_back([&work, t] { work(t); });
        for (std::thread& thread : threads)
            thread.join();
    }

    const char kKeys[4] = {};

    /// One thread's part: every kind of operation in turn, all threads on the same objects. Counts what was wrong.
    class Worker {
    public:
        Worker(Shared& shared, int number)
            : shared_(shared)
            , number_(number)
        {
        }
        void step(int i)
        {
            switch ((i + number_) % 5) {
            case 0:
                return sendAndExchange(i);
            case 1:
                return associate(i);
            case 2:
                return setAndGet(i);
            case 3:
                return look();
            default:
                return keepAndLetGo();
            }
        }
        std::int64_t wrong = 0;

    private:
        void sendAndExchange(int i)
        {
            const std::int64_t left = shared_.left();
            const std::int64_t right = shared_.right();
            wrong += left < 1 || left > 2 || right < 1 || right > 2;
            if (i % 64 == 0)
                method_exchangeImplementations(
                    class_getInstanceMethod(Shared::cls(), selector<"left">),
                    class_getInstanceMethod(Shared::cls(), selector<"right">));
        }
        void associate(int i)
        {
            const void* const key = &kKeys[i % 4];
            objc_setAssociatedObject(
                &shared_, key, i % 3 ? make<Shared>().get() : nullptr, OBJC_ASSOCIATION_RETAIN);
            const Ref<NSObject> value = objc_getAssociatedObject(&shared_, &kKeys[(i + 1) % 4]);
            wrong += value && !value->isKindOfClass(Shared::cls());
        }
        void setAndGet(int i)
        {
            const double side = number_ * 1e6 + i;
            shared_.setPlace({ { side, side }, { side, side } });
            const NSRect seen = shared_.place();
            wrong += seen.origin.x != seen.origin.y || seen.size.width != seen.size.height
                || seen.origin.x != seen.size.width;
        }
        void look()
        {
            WeakRef<NSObject> weak;
            {
                const Ref<NSObject> partner = shared_.partner();
                weak = partner.get();
            }
            const Ref<NSObject> seen = weak.get(); // another thread may have ended it meanwhile
            wrong += seen && !seen->isKindOfClass(Shared::cls());
            shared_.setPartner(make<Shared>().get());
        }
        void keepAndLetGo()
        {
            const Ref<Shared> one(&shared_);
            const Ref<Shared> two = one;
            wrong += !two;
        }

        Shared& shared_;
        int number_;
    };

    TEST(EightThreads, DoAMillionOperationsEachOnTheSameObjectsWithoutHarm)
    {
        const auto shared = make<Shared>();
        const int each = test::rounds(1000000);
        std::atomic<std::int64_t> wrong { 0 };
        onAllThreads([&](int t) {
            Worker worker(*shared, t);
            for (int i = 0; i < each; ++i)
                worker.step(i);
            wrong += worker.wrong;
        });
        test::publish({ "8 threads, operations on one object: wrong answers",
            long { each } * kSenders, static_cast<double>(wrong), "answers", 0 });
        EXPECT_EQ(shared->left() + shared->right(), 3);
        EXPECT_EQ(headerOf(shared.get()).count.load(), 1);
    }

    TEST(EightThreads, GetEveryNotificationThatTheyPostThemselves)
    {
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const int each = test::rounds(100000);
        std::atomic<int> heardByAll { 0 };
        std::atomic<int> lost { 0 };
        const auto name = "EveryNotification"_ns;
        const Ref<NSObject> listener = center->addObserverForName_object_queue_usingBlock(
            name, nullptr, nullptr, [&](NSNotification*) { ++heardByAll; });
        onAllThreads([&](int) {
            const auto sender = make<Shared>();
            int heard = 0;
            for (int i = 0; i < each; ++i) {
                const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
                    name, sender.get(), nullptr, [&](NSNotification*) { ++heard; });
                center->postNotificationName_object(name, sender.get());
                center->removeObserver(token.get());
                center->postNotificationName_object(name, sender.get());
            }
            lost += heard != each;
        });
        center->removeObserver(listener.get());
        EXPECT_EQ(lost, 0);
        test::publish({ "8 threads, notifications: not heard", 2L * each * kSenders,
            2.0 * each * kSenders - heardByAll, "notifications", 0 });
    }

    TEST(EightThreads, LoseNothingInASerialQueue)
    {
        const auto queue = dispatch_queue_create("org.brindle.serial", DISPATCH_QUEUE_SERIAL);
        const int each = test::rounds(1000000) / kSenders;
        int count = 0; // of the queue
        onAllThreads([&](int) {
            for (int i = 0; i < each; ++i)
                dispatch_async(queue.get(), [&count] { ++count; });
        });
        dispatch_sync(queue.get(), [] {});
        test::publish({ "8 threads, a serial queue: closures lost", long { each } * kSenders,
            static_cast<double>(each * kSenders - count), "closures", 0 });
    }

    // The race of four: one sets, one takes away, one reads, one removes everything of an object that all hold.
    TEST(FourThreads, SetReadAndRemoveAssociatedValuesOfOneObject)
    {
        const auto host = make<Shared>();
        const int each = test::rounds(1000000);
        std::atomic<int> wrong { 0 };
        std::vector<std::thread> threads;
        threads.emplace_back([&] {
            for (int i = 0; i < each; ++i)
                objc_setAssociatedObject(
                    host.get(), &kKeys[i % 4], make<Shared>().get(), OBJC_ASSOCIATION_RETAIN);
        });
        threads.emplace_back([&] {
            for (int i = 0; i < each; ++i)
                objc_setAssociatedObject(
                    host.get(), &kKeys[i % 4], nullptr, OBJC_ASSOCIATION_RETAIN);
        });
        threads.emplace_back([&] {
            for (int i = 0; i < each; ++i) {
                const Ref<NSObject> value = objc_getAssociatedObject(host.get(), &kKeys[i % 4]);
                wrong += value && !value->isKindOfClass(Shared::cls());
            }
        });
        threads.emplace_back([&] {
            for (int i = 0; i < each / 10; ++i)
                objc_removeAssociatedObjects(host.get());
        });
        for (std::thread& thread : threads)
            thread.join();
        test::publish({ "4 threads, associated values of one object: wrong answers",
            3L * each + each / 10, static_cast<double>(wrong), "answers", 0 });
        objc_removeAssociatedObjects(host.get());
        for (const char& key : kKeys)
            EXPECT_FALSE(objc_getAssociatedObject(host.get(), &key));
    }

}
}
