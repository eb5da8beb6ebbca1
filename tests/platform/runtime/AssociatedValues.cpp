// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Fixtures.h"

namespace brindle {
namespace {

    const char keys[64] = {};

    std::intptr_t countOf(const NSObject* object) { return headerOf(object).count.load(); }

    TEST(AssociatedValues, AreNilUntilSetAndAgainWhenSetToNil)
    {
        const auto host = make<Animal>();
        const auto value = make<Animal>();
        EXPECT_EQ(objc_getAssociatedObject(host.get(), keys), nullptr);
        objc_setAssociatedObject(host.get(), keys, value.get(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(host.get(), keys), value.get());
        objc_setAssociatedObject(host.get(), keys, nullptr, OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(host.get(), keys), nullptr);
        EXPECT_EQ(countOf(value.get()), 1);
    }

    TEST(AssociatedValues, AreKeptByBothRetainPolicies)
    {
        for (const objc_AssociationPolicy policy :
            { OBJC_ASSOCIATION_RETAIN_NONATOMIC, OBJC_ASSOCIATION_RETAIN }) {
            auto host = make<Animal>();
            const auto value = make<Animal>();
            objc_setAssociatedObject(host.get(), keys, value.get(), policy);
            EXPECT_EQ(countOf(value.get()), 2);
            host = nullptr;
            EXPECT_EQ(countOf(value.get()), 1);
        }
    }

    TEST(AssociatedValues, AreNotKeptByAssign)
    {
        const auto host = make<Animal>();
        const auto value = make<Animal>();
        objc_setAssociatedObject(host.get(), keys, value.get(), OBJC_ASSOCIATION_ASSIGN);
        EXPECT_EQ(countOf(value.get()), 1);
        EXPECT_EQ(objc_borrowAssociatedObject(host.get(), keys), value.get());
    }

    TEST(AssociatedValues, AreCopiedByBothCopyPolicies)
    {
        const Block<void()> block = [] {};
        for (const objc_AssociationPolicy policy :
            { OBJC_ASSOCIATION_COPY_NONATOMIC, OBJC_ASSOCIATION_COPY }) {
            const auto host = make<Animal>();
            const auto animal = make<Animal>();
            objc_setAssociatedObject(host.get(), keys, block.get(), policy);
            EXPECT_EQ(objc_getAssociatedObject(host.get(), keys), block.get());
            // An animal does not copy, so nothing is kept of it.
            objc_setAssociatedObject(host.get(), keys, animal.get(), policy);
            EXPECT_EQ(objc_getAssociatedObject(host.get(), keys), nullptr);
        }
    }

    TEST(AssociatedValues, StandUnderDistinctKeysMadeByAddingToOne)
    {
        const auto host = make<Animal>();
        std::vector<Ref<Animal>> values;
        for (int i = 0; i < 64; ++i) {
            values.push_back(make<Animal>());
            objc_setAssociatedObject(
                host.get(), keys + i, values.back().get(), OBJC_ASSOCIATION_RETAIN);
        }
        for (int i = 0; i < 64; ++i)
            EXPECT_EQ(objc_getAssociatedObject(host.get(), keys + i),
                values[static_cast<std::size_t>(i)].get());
    }

    TEST(AssociatedValues, StandUnderSelectorsToo)
    {
        const auto host = make<Animal>();
        const auto value = make<Animal>();
        const void* key = selector<"blockTimeout">.key();
        objc_setAssociatedObject(host.get(), key, value.get(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(host.get(), sel_registerName("blockTimeout").key()),
            value.get());
    }

    TEST(AssociatedValues, ReplacingAValueKeepsTheNewBeforeItReleasesTheOld)
    {
        static const NSObject* host;
        static bool sawTheNewOne;
        const auto owner = make<Animal>();
        host = owner.get();
        Class* const cls = objc_allocateClassPair(Animal::cls(), "LastWord", 0);
        class_addMethod(cls, selector<"dealloc">, reinterpret_cast<IMP>(+[](NSObject* self, SEL) {
            NSObject* const now = objc_borrowAssociatedObject(host, keys);
            sawTheNewOne = now && now != self;
        }),
            "v@:");
        objc_registerClassPair(cls);
        objc_setAssociatedObject(owner.get(), keys,
            Ref<NSObject>::adopt(class_createInstance(cls)).get(), OBJC_ASSOCIATION_RETAIN);
        objc_setAssociatedObject(owner.get(), keys, make<Animal>().get(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_TRUE(sawTheNewOne);
    }

    TEST(AssociatedValues, ReplacedByTheSameValueSurvives)
    {
        const auto host = make<Animal>();
        auto value = make<Animal>();
        Animal* const bare = value.get();
        objc_setAssociatedObject(host.get(), keys, bare, OBJC_ASSOCIATION_RETAIN);
        value = nullptr;
        objc_setAssociatedObject(host.get(), keys, bare, OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(countOf(bare), 1);
    }

    TEST(AssociatedValues, MayReplaceTheirOwnKeyWhenTheyEnd)
    {
        static NSObject* host;
        const auto owner = make<Animal>();
        host = owner.get();
        Class* const cls = objc_allocateClassPair(Animal::cls(), "Meddler", 0);
        class_addMethod(cls, selector<"dealloc">, reinterpret_cast<IMP>(+[](NSObject*, SEL) {
            objc_setAssociatedObject(host, keys + 1, nullptr, OBJC_ASSOCIATION_RETAIN);
        }),
            "v@:");
        objc_registerClassPair(cls);
        objc_setAssociatedObject(host, keys + 1, make<Animal>().get(), OBJC_ASSOCIATION_RETAIN);
        objc_setAssociatedObject(host, keys, Ref<NSObject>::adopt(class_createInstance(cls)).get(),
            OBJC_ASSOCIATION_RETAIN);
        objc_setAssociatedObject(host, keys, nullptr, OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(host, keys + 1), nullptr);
    }

    TEST(AssociatedValues, MayBeClassObjectsAndHangOnClassObjects)
    {
        Class* const cls = Dog::cls();
        objc_setAssociatedObject(cls, keys, Puppy::cls(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(cls, keys), Puppy::cls().object);
        objc_setAssociatedObject(cls, keys, nullptr, OBJC_ASSOCIATION_RETAIN);
    }

    TEST(AssociatedValues, OfNilDoNothingAndAnswerNil)
    {
        const auto value = make<Animal>();
        objc_setAssociatedObject(nullptr, keys, value.get(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(objc_getAssociatedObject(nullptr, keys), nullptr);
    }

    TEST(AssociatedValues, SetAndRemovedUnderEverNewKeysDoNotPileUp)
    {
        const auto host = make<Animal>();
        const auto value = make<Animal>();
        for (std::uintptr_t i = 1; i <= 100000; ++i) {
            const void* const key = reinterpret_cast<const void*>(i * 16);
            objc_setAssociatedObject(host.get(), key, value.get(), OBJC_ASSOCIATION_RETAIN);
            objc_setAssociatedObject(host.get(), key, nullptr, OBJC_ASSOCIATION_RETAIN);
        }
        EXPECT_EQ(countOf(value.get()), 1);
    }

    TEST(AssociatedValues, AreAllRemovedTogetherOnRequest)
    {
        const auto host = make<Animal>();
        const auto value = make<Animal>();
        const WeakRef<Animal> weak(host);
        for (int i = 0; i < 20; ++i)
            objc_setAssociatedObject(host.get(), keys + i, value.get(), OBJC_ASSOCIATION_RETAIN);
        objc_removeAssociatedObjects(host.get());
        EXPECT_EQ(countOf(value.get()), 1);
        EXPECT_EQ(weak.get(), host);
    }

    TEST(AssociatedValues, WithAtomicPolicyAreReadBesideWriters)
    {
        const auto host = make<Animal>();
        std::atomic<bool> stop { false };
        std::vector<std::thread> writers;
        for (int i = 0; i < 3; ++i)
            writers.emplace_back([&] {
                while (!stop)
                    objc_setAssociatedObject(
                        host.get(), keys, make<Animal>().get(), OBJC_ASSOCIATION_RETAIN);
            });
        for (int i = 0; i < 50000; ++i) {
            if (const auto value = objc_getAssociatedObject(host.get(), keys)) {
                ASSERT_EQ(static_cast<Animal*>(value.get())->legs(), 0);
            }
        }
        stop = true;
        for (std::thread& writer : writers)
            writer.join();
    }

    TEST(ObjectLocks, AreRecursiveAndReleasedWhenAnExceptionPasses)
    {
        const auto object = make<Animal>();
        EXPECT_EQ(raisedBy([&] {
            const Synchronized outer(object.get());
            const Synchronized inner(object.get());
            raise("NSGenericException", "inside");
        }),
            "NSGenericException: inside");
        std::thread other([&] { const Synchronized lock(object.get()); });
        other.join();
    }

    TEST(ObjectLocks, OfNilLockNothing)
    {
        const Synchronized lock(nullptr);
        std::thread other([] { const Synchronized again(nullptr); });
        other.join();
    }

    TEST(ObjectLocks, ExcludeOtherThreads)
    {
        Class* const shared = Dog::cls(); // class objects can be locked as well
        int value = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int j = 0; j < 20000; ++j) {
                    const Synchronized lock(shared);
                    ++value;
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(value, 80000);
    }

}
}
