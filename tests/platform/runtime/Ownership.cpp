// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Fixtures.h"

namespace brindle {

/// Writes a word when its fields end.
struct Tattler {
    std::string* story = nullptr;
    Tattler() = default;
    Tattler(const Tattler&) = delete;
    Tattler& operator=(const Tattler&) = delete;
    ~Tattler()
    {
        if (story)
            *story += "fields ";
    }
};

class Told : public Animal {
    BRINDLE_OBJECT(Told, Animal)
public:
    Tattler tattler_;
};
template <> struct Told::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(Told, Nothing)

class Link : public NSObject {
    BRINDLE_OBJECT(Link, NSObject)
public:
    Ref<Link> next_;
};
template <> struct Link::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(Link, Nothing)

/// One of two that know each other without a count and tell when they end.
class Twin : public NSObject {
    BRINDLE_OBJECT(Twin, NSObject)
public:
    Twin* other_ = nullptr;
    int* ends_ = nullptr;
};
template <> struct Twin::Methods<struct Ending> {
    static void dealloc(Twin& self)
    {
        ++*self.ends_;
        if (!self.other_)
            return;
        const Ref<Twin> alive(self.other_);
        alive->other_ = nullptr;
    }
    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(Twin, Ending)

/// A link that owns two twins.
class TwinLink : public NSObject {
    BRINDLE_OBJECT(TwinLink, NSObject)
public:
    Ref<TwinLink> next_;
    Ref<Twin> twins_[2];
};
template <> struct TwinLink::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(TwinLink, Nothing)

namespace {

    std::intptr_t countOf(const NSObject* object) { return headerOf(object).count.load(); }

    TEST(Ownership, BeginsWithOneCountAndZeroFields)
    {
        const auto animal = make<Animal>();
        EXPECT_EQ(countOf(animal.get()), 1);
        EXPECT_EQ(animal->legs_, 0);
        EXPECT_EQ(animal->friend_, nullptr);
    }

    TEST(Ownership, EndsWithDeallocThenFieldsThenAssociatedValues)
    {
        std::string story;
        auto told = make<Told>();
        told->obituary_ = &story;
        told->tattler_.story = &story;
        static const char key = 0;
        Block<void()> witness =
            [probe = std::shared_ptr<void>(nullptr, [&story](void*) { story += "associated"; })] {};
        objc_setAssociatedObject(told.get(), &key, witness.get(), OBJC_ASSOCIATION_RETAIN);
        witness = nullptr;
        told = nullptr;
        EXPECT_EQ(story, "dealloc fields associated");
    }

    TEST(Ownership, RetainsAndReleasesInsideDeallocChangeNothing)
    {
        static int ends;
        ends = 0;
        Class* const cls = objc_allocateClassPair(Animal::cls(), "Resurrection", 0);
        const auto body = +[](NSObject* self, SEL) {
            ++ends;
            const Ref<NSObject> again(self);
        };
        class_addMethod(cls, selector<"dealloc">, reinterpret_cast<IMP>(body), "v@:");
        objc_registerClassPair(cls);
        Ref<NSObject>::adopt(class_createInstance(cls));
        EXPECT_EQ(ends, 1);
    }

    TEST(Ownership, OfAVeryLongChainEndsWithoutUsingTheStackUp)
    {
        auto head = make<Link>();
        for (int i = 0; i < 1'000'000; ++i) {
            auto next = make<Link>();
            next->next_ = std::move(head);
            head = std::move(next);
        }
        head = nullptr;
        SUCCEED();
    }

    TEST(Ownership, CountsTakenOfAnObjectThatWaitsForItsEndChangeNothing)
    {
        constexpr int kLinks = 1000; // so deep that ends wait
        int ends = 0;
        Ref<TwinLink> head;
        for (int i = 0; i < kLinks; ++i) {
            auto next = make<TwinLink>();
            for (Ref<Twin>& twin : next->twins_) {
                twin = make<Twin>();
                twin->ends_ = &ends;
                const WeakRef<Twin> known(
                    twin); // who is known weakly gives its last count back for all to see
            }
            next->twins_[0]->other_ = next->twins_[1].get();
            next->twins_[1]->other_ = next->twins_[0].get();
            next->next_ = std::move(head);
            head = std::move(next);
        }
        head = nullptr;
        EXPECT_EQ(ends, 2 * kLinks);
    }

    TEST(WeakReferences, AnswerTheObjectWhileItLivesAndNilAfterwards)
    {
        auto animal = make<Animal>();
        const WeakRef<Animal> weak(animal);
        EXPECT_EQ(weak.get(), animal);
        animal = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(WeakReferences, AreNilAlreadyInsideDealloc)
    {
        static WeakRef<NSObject>* seen;
        static bool wasNil;
        wasNil = false;
        Class* const cls = objc_allocateClassPair(Animal::cls(), "WeakInDealloc", 0);
        const auto body = +[](NSObject* self, SEL) {
            wasNil = seen->get() == nullptr && WeakRef<NSObject>(self).get() == nullptr;
        };
        class_addMethod(cls, selector<"dealloc">, reinterpret_cast<IMP>(body), "v@:");
        objc_registerClassPair(cls);
        auto object = Ref<NSObject>::adopt(class_createInstance(cls));
        WeakRef<NSObject> weak(object);
        seen = &weak;
        object = nullptr;
        EXPECT_TRUE(wasNil);
    }

    TEST(WeakReferences, AreSafeToReadWhileAnotherThreadEndsTheObject)
    {
        for (int round = 0; round < 2000; ++round) {
            auto animal = make<Animal>();
            const WeakRef<Animal> weak(animal);
            std::thread reader([&] {
                if (const Ref<Animal> held = weak.get())
                    held->setLegs(3);
            });
            animal = nullptr;
            reader.join();
            EXPECT_EQ(weak.get(), nullptr);
        }
    }

    TEST(Closures, AreObjectsThatAnswerTheirClassAndCopyAsThemselves)
    {
        Block<void()> block = [] {};
        EXPECT_STREQ(class_getName(block->classObject()), "NSBlock");
        EXPECT_EQ(block->copy().get(), static_cast<NSObject*>(block.get()));
        EXPECT_STREQ(block->kind->encoding, "v@?");
    }

    TEST(Closures, KeepWhatTheyCaptureUntilTheLastCopyGoes)
    {
        auto animal = make<Animal>();
        const WeakRef<Animal> weak(animal);
        Block<std::int64_t()> block = [held = std::move(animal)] { return held->legs(); };
        auto copy = block;
        block = nullptr;
        EXPECT_EQ(copy(), 0);
        EXPECT_NE(weak.get(), nullptr);
        copy = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(Closures, WithNothingToEndStillEndWhatHangsOnThem)
    {
        static const char key = 0;
        const auto animal = make<Animal>();
        Block<void()> block = [] {};
        const WeakRef<NSObject> weak(block.get());
        objc_setAssociatedObject(block.get(), &key, animal.get(), OBJC_ASSOCIATION_RETAIN);
        EXPECT_EQ(countOf(animal.get()), 2);
        block = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
        EXPECT_EQ(countOf(animal.get()), 1);
    }

    TEST(Closures, AnswerObjectsAsOwners)
    {
        const auto animal = make<Animal>();
        const Block<Ref<NSObject>(int)> block = [&](int) { return Ref<NSObject>(animal); };
        EXPECT_EQ(block(1), animal.get());
        EXPECT_EQ(countOf(animal.get()), 1);
    }

    TEST(Closures, OfPlainFunctionsCarryTheirContextAndEndIt)
    {
        static int ended;
        ended = 0;
        int context = 42;
        const auto code
            = +[](ClosureBase* self) -> int { return *static_cast<int*>(closureContext(self)); };
        auto block = Block<int()>::adopt(static_cast<Closure<int()>*>(makeClosure(
            "i@?", reinterpret_cast<ClosureBase::Code>(code), &context, [](void*) { ++ended; })));
        EXPECT_EQ(block(), 42);
        block = nullptr;
        EXPECT_EQ(ended, 1);
    }

    TEST(ClosuresDeathTest, CalledThroughNilEndTheProcessWithOneLine)
    {
        const Block<void()> nothing;
        EXPECT_DEATH(nothing(), "brindle: a null closure was called");
    }

}
}
