// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Fixtures.h"

namespace brindle {
namespace {

    constexpr int kThreads = 8;
#ifdef BRINDLE_REDUCED_COUNTS
    constexpr int kRounds = 500;
#else
    constexpr int kRounds = 5000;
#endif

    const char* one(NSObject*, SEL) { return "one"; }
    const char* two(NSObject*, SEL) { return "two"; }

    TEST(Threads, SendExchangeAndAddAtOnceAndEverySendRunsOneOfTheTwo)
    {
        Class* const cls = objc_allocateClassPair(Dog::cls(), "Contested", 0);
        class_addMethod(cls, selector<"sound">, reinterpret_cast<IMP>(&one), "*@:");
        class_addMethod(cls, selector<"noise">, reinterpret_cast<IMP>(&two), "*@:");
        objc_registerClassPair(cls);
        Class* const child = objc_allocateClassPair(cls, "ContestedChild", 0);
        objc_registerClassPair(child);

        std::atomic<int> wrong { 0 };
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([&, t] {
                const auto object = Ref<Animal>::adopt(
                    static_cast<Animal*>(class_createInstance(t % 2 ? cls : child)));
                for (int i = 0; i < kRounds; ++i) {
                    if (t < 2 && i % 10 == 0)
                        method_exchangeImplementations(
                            class_getInstanceMethod(cls, selector<"sound">),
                            class_getInstanceMethod(cls, selector<"noise">));
                    if (t == 2 && i % 10 == 0)
                        class_addMethod(child,
                            sel_registerName(("extra" + std::to_string(i)).c_str()),
                            reinterpret_cast<IMP>(&one), "*@:");
                    const char* const heard = object->sound();
                    const char* const other = object->send<"noise", const char*>();
                    const auto known = [](const char* text) {
                        return std::strcmp(text, "one") == 0 || std::strcmp(text, "two") == 0;
                    };
                    wrong += !known(heard) || !known(other);
                    object->setLegs(i);
                    wrong += object->legs() != i;
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(wrong, 0);
    }

    TEST(Threads, BeginClassesOfOneNameAndOnlyOneSucceeds)
    {
        for (int round = 0; round < 50; ++round) {
            const std::string name = "Raced" + std::to_string(round);
            std::atomic<int> made { 0 };
            std::vector<std::thread> threads;
            for (int t = 0; t < kThreads; ++t)
                threads.emplace_back([&] {
                    if (Class* const cls = objc_allocateClassPair(Animal::cls(), name.c_str(), 0)) {
                        objc_registerClassPair(cls);
                        ++made;
                    }
                });
            for (std::thread& thread : threads)
                thread.join();
            EXPECT_EQ(made, 1);
            ASSERT_NE(objc_getClass(name.c_str()), nullptr);
        }
    }

    TEST(Threads, CountOneObjectTogetherWithoutLosingAny)
    {
        const auto shared = make<Animal>();
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < kRounds; ++i)
                    const Ref<Animal> held = shared;
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(headerOf(shared.get()).count.load(), 1);
    }

}
}
