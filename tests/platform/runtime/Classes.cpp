// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

#include <thread>

namespace brindle {

std::string& initializations()
{
    static std::string text;
    return text;
}

class Eager : public NSObject {
    BRINDLE_OBJECT(Eager, NSObject)
};
template <> struct Eager::Methods<struct Start> {
    static void initialize(Class& self)
    {
        initializations() += std::string(class_getName(&self)) + " ";
    }
    static void table(Builder& t) { t.classMethods({ { "initialize", imp<initialize> } }); }
};
BRINDLE_RECORD(Eager, Start)

class EagerChild : public Eager {
    BRINDLE_OBJECT(EagerChild, Eager)
};
template <> struct EagerChild::Methods<struct Start> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(EagerChild, Start)

class SlowStarter : public NSObject {
    BRINDLE_OBJECT(SlowStarter, NSObject)
};
std::atomic<int> slowStarts { 0 };
std::atomic<bool> slowReady { false };
template <> struct SlowStarter::Methods<struct Start> {
    static void initialize(Class&)
    {
        ++slowStarts;
        for (int i = 0; i < 200; ++i)
            std::this_thread::yield();
        slowReady = true;
    }
    static bool ready(Class&) { return slowReady; }
    static void table(Builder& t)
    {
        t.classMethods({ { "initialize", imp<initialize> }, { "isReady", imp<ready> } });
    }
};
BRINDLE_RECORD(SlowStarter, Start)

class Faulty : public NSObject {
    BRINDLE_OBJECT(Faulty, NSObject)
};
int faultyTries = 0;
template <> struct Faulty::Methods<struct Start> {
    static void initialize(Class&)
    {
        if (++faultyTries == 1)
            raise("NSGenericException", "not yet");
    }
    static void table(Builder& t) { t.classMethods({ { "initialize", imp<initialize> } }); }
};
BRINDLE_RECORD(Faulty, Start)

namespace {

    TEST(Classes, AreFoundByName)
    {
        EXPECT_EQ(objc_getClass("Dog"), Dog::cls().object);
        EXPECT_STREQ(class_getName(Dog::cls()), "Dog");
        EXPECT_EQ(objc_getClass("Unicorn"), nullptr);
        EXPECT_EQ(objc_getClass(""), nullptr);
        EXPECT_EQ(objc_getClass(nullptr), nullptr);
    }

    TEST(Classes, AreLinkedToTheirParentsUpToTheRoot)
    {
        EXPECT_EQ(class_getSuperclass(Puppy::cls()), Dog::cls().object);
        EXPECT_EQ(Puppy::cls().superclass(), Dog::cls().object);
        EXPECT_EQ(make<Puppy>()->superclass(), Dog::cls().object);
        EXPECT_EQ(class_getSuperclass(NSObject::cls()), nullptr);
        EXPECT_EQ(NSObject::cls().superclass(), nullptr);
    }

    TEST(Classes, MetaclassesEndInTheRootMetaclassWhoseParentIsTheRoot)
    {
        Class* const rootMeta = objc_getMetaClass("NSObject");
        EXPECT_EQ(class_getSuperclass(objc_getMetaClass("Dog")), objc_getMetaClass("Animal"));
        EXPECT_EQ(class_getSuperclass(objc_getMetaClass("Animal")), rootMeta);
        EXPECT_EQ(class_getSuperclass(rootMeta), NSObject::cls().object);
        EXPECT_EQ(objc_getMetaClass("Dog")->isa_, rootMeta);
        EXPECT_TRUE(class_isMetaClass(rootMeta));
        EXPECT_FALSE(class_isMetaClass(Dog::cls()));
        EXPECT_EQ(objc_getMetaClass("Unicorn"), nullptr);
    }

    TEST(Classes, KindAndMembershipFollowTheChain)
    {
        const auto puppy = make<Puppy>();
        EXPECT_TRUE(puppy->isKindOfClass(Animal::cls()));
        EXPECT_TRUE(puppy->isKindOfClass(NSObject::cls()));
        EXPECT_FALSE(puppy->isMemberOfClass(Dog::cls()));
        EXPECT_TRUE(puppy->isMemberOfClass(Puppy::cls()));
        EXPECT_FALSE(make<Animal>()->isKindOfClass(Dog::cls()));
        EXPECT_TRUE(Puppy::cls().isSubclassOfClass(Animal::cls()));
        EXPECT_FALSE(Animal::cls().isSubclassOfClass(Puppy::cls()));
    }

    TEST(Classes, AdoptProtocolsByThemselvesThroughParentsAndThroughProtocols)
    {
        Protocol* const breathing = objc_getProtocol("Breathing");
        EXPECT_STREQ(breathing->name(), "Breathing");
        EXPECT_EQ(objc_getProtocol("Breathing"), breathing);
        EXPECT_TRUE(Animal::cls().conformsToProtocol(breathing));
        EXPECT_TRUE(make<Puppy>()->conformsToProtocol(breathing));
        EXPECT_FALSE(make<NSObject>()->conformsToProtocol(breathing));
        Protocol* const living = objc_getProtocol("Living");
        EXPECT_FALSE(Dog::cls().conformsToProtocol(living));
        protocol_addProtocol(breathing, living);
        protocol_addProtocol(living, breathing); // a circle is no trouble
        EXPECT_TRUE(Dog::cls().conformsToProtocol(living));
        EXPECT_FALSE(class_conformsToProtocol(Dog::cls(), nullptr));
    }

    TEST(Classes, AreInitializedBeforeTheirFirstMessageParentsFirstAndOnce)
    {
        initializations().clear();
        Class* const child = EagerChild::cls();
        EXPECT_EQ(initializations(), ""); // asking for the class object is no message
        (void)child->send<"new", Ref<NSObject>>();
        EXPECT_EQ(initializations(), "Eager EagerChild ");
        (void)make<Eager>();
        (void)make<EagerChild>();
        EXPECT_EQ(initializations(), "Eager EagerChild ");
    }

    TEST(Classes, InitializationIsWaitedForByOtherThreads)
    {
        std::atomic<int> early { 0 };
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] {
                if (!SlowStarter::cls().send<"isReady", bool>())
                    ++early;
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(slowStarts, 1);
        EXPECT_EQ(early, 0);
    }

    TEST(Classes, InitializationThatRaisesIsTriedAgainWithTheNextMessage)
    {
        EXPECT_EQ(raisedBy([] { (void)make<Faulty>(); }), "NSGenericException: not yet");
        EXPECT_EQ(raisedBy([] { (void)make<Faulty>(); }), "nothing raised");
        EXPECT_EQ(faultyTries, 2);
    }

    TEST(Classes, MadeAtRunTimeHaveFieldsAfterTheirParentsAndInheritEverything)
    {
        Class* const cls = objc_allocateClassPair(Dog::cls(), "Greyhound", 0);
        ASSERT_NE(cls, nullptr);
        EXPECT_TRUE(class_addIvar(cls, "_speed", sizeof(double), alignof(double), "d"));
        EXPECT_TRUE(class_addIvar(cls, "_rival", sizeof(void*), alignof(void*), "@"));
        EXPECT_FALSE(class_addIvar(cls, "_speed", 8, 8, "d"));
        EXPECT_FALSE(class_addIvar(cls, "_narrow", 1, 1, "@")); // no object fits in
        EXPECT_FALSE(class_addIvar(cls, "_endless", ~std::size_t {}, 1, "c"));
        EXPECT_EQ(objc_getClass("Greyhound"), nullptr);
        objc_registerClassPair(cls);
        EXPECT_EQ(objc_getClass("Greyhound"), cls);
        EXPECT_FALSE(class_addIvar(cls, "_late", 8, 8, "d"));

        auto dog = Ref<Dog>::adopt(static_cast<Dog*>(class_createInstance(cls)));
        EXPECT_STREQ(dog->sound(), "woof");
        const Ivar* const speed = class_getInstanceVariable(cls, "_speed");
        EXPECT_GE(ivar_getOffset(speed), static_cast<std::ptrdiff_t>(sizeof(Dog)));
        auto rival = make<Animal>();
        const WeakRef<Animal> weak(rival);
        object_setIvar(dog.get(), class_getInstanceVariable(cls, "_rival"), rival.get());
        rival = nullptr;
        EXPECT_NE(weak.get(), nullptr);
        dog = nullptr; // ends the added field too
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(Classes, MadeTwiceUnderOneNameAreRefused)
    {
        EXPECT_EQ(objc_allocateClassPair(NSObject::cls(), "Animal", 0), nullptr);
        EXPECT_EQ(objc_allocateClassPair(NSObject::cls(), "", 0), nullptr);
        EXPECT_EQ(objc_allocateClassPair(nullptr, "Orphan", 0), nullptr);
    }

    TEST(Classes, AreObjectsThatNeverEnd)
    {
        Class* const cls = Dog::cls();
        for (int i = 0; i < 1000; ++i)
            release(cls);
        EXPECT_STREQ(make<Dog>()->sound(), "woof");
        for (int i = 0; i < 1000; ++i)
            retain(cls);
    }

    TEST(ClassesDeathTest, DeclaredButImplementedNowhereEndTheProcessWithOneLine)
    {
        EXPECT_DEATH(requireClass("Phantom"),
            "brindle: no source of this program implements the class Phantom");
    }

}
}
