// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

namespace brindle {
namespace {

    TEST(Messages, ReachTheClassOfTheReceiver)
    {
        EXPECT_STREQ(make<Animal>()->sound(), "...");
        EXPECT_STREQ(make<Dog>()->sound(), "woof");
        EXPECT_STREQ(make<Puppy>()->sound(), "woof");
    }

    TEST(Messages, CarryStructuresBothWays)
    {
        const auto animal = make<Animal>();
        animal->setFrame(NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ(animal->frame(), NSMakeRect(1, 2, 3, 4));
    }

    TEST(Messages, ToSuperStartAtTheParentOfTheCodesClass)
    {
        const auto puppy = make<Puppy>();
        puppy->setLegs(4);
        EXPECT_EQ(puppy->legs(), 104);
    }

    TEST(Messages, ToSuperInAClassOperationKeepTheReceiver)
    {
        EXPECT_EQ(Animal::cls().population(), 7);
        EXPECT_EQ(Dog::cls().population(), 70);
        EXPECT_EQ(Puppy::cls().population(), 70);
    }

    TEST(Messages, NobodyAnswersRaiseWithClassSelectorAndAddress)
    {
        const auto animal = make<Animal>();
        char address[32];
        std::snprintf(address, sizeof address, "%p", static_cast<void*>(animal.get()));
        EXPECT_EQ(raisedBy([&] { animal->send<"fly">(); }),
            std::string("NSInvalidArgumentException: -[Animal fly]: unrecognized selector sent to "
                        "instance ")
                + address);
    }

    TEST(Messages, NobodyAnswersRaiseForClassObjectsToo)
    {
        Class* const cls = Animal::cls();
        char address[32];
        std::snprintf(address, sizeof address, "%p", static_cast<void*>(cls));
        EXPECT_EQ(raisedBy([&] { cls->send<"fly">(); }),
            std::string("NSInvalidArgumentException: +[Animal fly]: unrecognized selector sent to "
                        "class ")
                + address);
    }

    TEST(Messages, OfAnotherSignatureRaiseAndNameBothEncodings)
    {
        const auto animal = make<Animal>();
        EXPECT_EQ(raisedBy([&] { animal->send<"setFrame:">(1.0); }),
            "NSInvalidArgumentException: -[Animal setFrame:]: sent as v@:d, implemented as "
            "v@:{CGRect={CGPoint=dd}{CGSize=dd}}");
    }

    TEST(Messages, OfAnotherSignatureRaiseAlsoAfterARightOneWasKept)
    {
        const auto animal = make<Animal>();
        for (int i = 0; i < 3; ++i) {
            animal->setLegs(4);
            EXPECT_NE(raisedBy([&] { animal->send<"setLegs:">(4.0); }), "nothing raised");
            EXPECT_NE(raisedBy([&] { (void)animal->send<"legs", double>(); }), "nothing raised");
        }
    }

    TEST(Messages, ToNilAnswerZeroOfEveryKind)
    {
        Animal* const nobody = nullptr;
        EXPECT_EQ(maybe(nobody)->legs(), 0);
        EXPECT_EQ(maybe(nobody)->frame(), NSZeroRect);
        EXPECT_EQ(maybe(nobody)->friendOfMine(), nullptr);
        EXPECT_EQ((maybe(nobody)->send<"weight", double>()), 0.0);
        EXPECT_EQ((maybe(nobody)->send<"classObject", Class*>()), nullptr);
        EXPECT_FALSE((maybe(nobody)->send<"isAnything:", bool>(3.5f)));
        maybe(nobody)->setFrame(NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ(maybe(nobody)->frame(), NSZeroRect);
    }

    TEST(Messages, ToAnAbsentOwnerAnswerZero)
    {
        const auto animal = make<Animal>();
        EXPECT_FALSE(maybe(animal->friendOfMine())->isEqual(animal.get()));
    }

    TEST(Messages, AnswerOwnersWithOneCountForTheCaller)
    {
        const auto animal = make<Animal>();
        const auto other = make<Animal>();
        animal->setFriendOfMine(other.get());
        const auto before = headerOf(other.get()).count.load();
        {
            const Ref<NSObject> held = animal->friendOfMine();
            EXPECT_EQ(headerOf(other.get()).count.load(), before + 1);
        }
        EXPECT_EQ(headerOf(other.get()).count.load(), before);
    }

    TEST(Messages, ToClassObjectsReachRootInstanceOperations)
    {
        Class* const cls = Dog::cls();
        EXPECT_TRUE(cls->isEqual(cls));
        EXPECT_EQ(cls->classObject(), cls);
        EXPECT_EQ(cls->superclass(), Animal::cls().object);
        EXPECT_TRUE(cls->respondsToSelector(selector<"population">));
        EXPECT_TRUE(cls->respondsToSelector(selector<"description">));
        EXPECT_FALSE(cls->respondsToSelector(selector<"sound">));
    }

    TEST(Messages, OfManySelectorsToOneClassKeepAnsweringRightWhileTablesGrow)
    {
        Class* const cls = objc_allocateClassPair(Animal::cls(), "ManyOperations", 0);
        constexpr int kMany = 600;
        const auto body = +[](NSObject*, SEL sel) -> std::uint64_t { return sel.value; };
        for (int i = 0; i < kMany; ++i)
            ASSERT_TRUE(class_addMethod(cls, sel_registerName(("op" + std::to_string(i)).c_str()),
                reinterpret_cast<IMP>(body), "Q@:"));
        objc_registerClassPair(cls);
        const Ref<NSObject> object = Ref<NSObject>::adopt(class_createInstance(cls));
        for (int round = 0; round < 3; ++round) {
            EXPECT_EQ((object->send<"op0", std::uint64_t>()), selector<"op0">.value);
            EXPECT_EQ((object->send<"op1", std::uint64_t>()), selector<"op1">.value);
            EXPECT_EQ((object->send<"op77", std::uint64_t>()), selector<"op77">.value);
            EXPECT_EQ((object->send<"op599", std::uint64_t>()), selector<"op599">.value);
        }
    }

}
}
