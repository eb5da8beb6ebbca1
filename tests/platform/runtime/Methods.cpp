// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

namespace brindle {
namespace {

    const char* meow(NSObject*, SEL) { return "meow"; }
    const char* moo(NSObject*, SEL) { return "moo"; }
    IMP impOf(const char* (*function)(NSObject*, SEL)) { return reinterpret_cast<IMP>(function); }

    /// A fresh subclass, so that tests do not change one another's classes.
    Class* freshClass(Class* parent)
    {
        static int number = 0;
        Class* const cls
            = objc_allocateClassPair(parent, ("Fresh" + std::to_string(++number)).c_str(), 0);
        objc_registerClassPair(cls);
        return cls;
    }
    Ref<Animal> instanceOf(Class* cls)
    {
        return Ref<Animal>::adopt(static_cast<Animal*>(class_createInstance(cls)));
    }

    const char* detailsOf(SEL sel)
    {
        return method_getDetailedTypes(class_getInstanceMethod(Animal::cls(), sel));
    }

    TEST(Methods, TellTheSignaturesOfTheirClosures)
    {
        EXPECT_STREQ(detailsOf(selector<"callWhen:times:with:">),
            "v@:@?<B@?{CGRect={CGPoint=dd}{CGSize=dd}}>q@?<v@?@>");
    }

    TEST(Methods, TellTheClassesOfTheirObjects)
    {
        EXPECT_STREQ(detailsOf(selector<"follow:named:or:">), "@\"Dog\"@:@\"Dog\"@\"NSString\"@");
    }

    TEST(Methods, OfAPropertyTellWhatItsFieldHolds)
    {
        EXPECT_STREQ(detailsOf(selector<"cry">), "@?<*@?q>@:");
        EXPECT_STREQ(detailsOf(selector<"setCry:">), "v@:@?<*@?q>");
    }

    TEST(Methods, AddedAtRunTimeTellTheirTypes)
    {
        Class* const cls = freshClass(Animal::cls());
        class_addMethod(cls, selector<"moo">, impOf(&moo), "*@:");
        EXPECT_STREQ(method_getDetailedTypes(class_getInstanceMethod(cls, selector<"moo">)), "*@:");
    }

    TEST(Methods, AreFoundInAncestorsAndNowhereElse)
    {
        EXPECT_EQ(class_getInstanceMethod(Puppy::cls(), selector<"sound">),
            class_getInstanceMethod(Dog::cls(), selector<"sound">));
        EXPECT_NE(class_getInstanceMethod(Dog::cls(), selector<"sound">),
            class_getInstanceMethod(Animal::cls(), selector<"sound">));
        EXPECT_EQ(class_getInstanceMethod(Animal::cls(), selector<"absent">), nullptr);
        EXPECT_EQ(class_getInstanceMethod(nullptr, selector<"sound">), nullptr);
    }

    TEST(Methods, OfTheMetaclassAreTheClassOperations)
    {
        EXPECT_NE(
            class_getInstanceMethod(objc_getMetaClass("Animal"), selector<"population">), nullptr);
        EXPECT_EQ(class_getClassMethod(Animal::cls(), selector<"population">),
            class_getInstanceMethod(objc_getMetaClass("Animal"), selector<"population">));
        EXPECT_EQ(class_getInstanceMethod(Animal::cls(), selector<"population">), nullptr);
    }

    TEST(Methods, KnowNameAndTypes)
    {
        const Method* method = class_getInstanceMethod(Animal::cls(), selector<"setFrame:">);
        EXPECT_EQ(method_getName(method), selector<"setFrame:">);
        EXPECT_STREQ(method_getTypeEncoding(method), "v@:{CGRect={CGPoint=dd}{CGSize=dd}}");
    }

    TEST(Methods, AreAddedOnlyWhereTheClassItselfHasNone)
    {
        Class* const cls = freshClass(Animal::cls());
        EXPECT_TRUE(class_addMethod(cls, selector<"sound">, impOf(meow), "*@:"));
        EXPECT_FALSE(class_addMethod(cls, selector<"sound">, impOf(moo), "*@:"));
        EXPECT_STREQ(instanceOf(cls)->sound(), "meow");
        EXPECT_STREQ(make<Animal>()->sound(), "...");
    }

    TEST(Methods, AddedAfterAnInheritedOneWasUsedTakeEffectAtOnce)
    {
        Class* const cls = freshClass(Animal::cls());
        Class* const child = freshClass(cls);
        const auto object = instanceOf(child);
        EXPECT_STREQ(object->sound(), "...");
        class_addMethod(cls, selector<"sound">, impOf(meow), "*@:");
        EXPECT_STREQ(object->sound(), "meow");
    }

    TEST(Methods, AddedAfterAMessageWasNotUnderstoodTakeEffectAtOnce)
    {
        Class* const cls = freshClass(Animal::cls());
        const auto object = instanceOf(cls);
        EXPECT_NE(raisedBy([&] { object->send<"purr">(); }), "nothing raised");
        class_addMethod(
            cls, selector<"purr">, reinterpret_cast<IMP>(+[](NSObject*, SEL) {}), "v@:");
        EXPECT_EQ(raisedBy([&] { object->send<"purr">(); }), "nothing raised");
    }

    TEST(Methods, AddedWithOffsetsAndClassNamesInTheirTypesAnswerPlainMessages)
    {
        Class* const cls = freshClass(Animal::cls());
        const auto body = +[](NSObject*, SEL, NSObject* other) -> NSObject* {
            retain(other);
            return other;
        };
        EXPECT_TRUE(class_addMethod(
            cls, selector<"echo:">, reinterpret_cast<IMP>(body), "@24@0:8@\"NSString\"16"));
        const auto object = instanceOf(cls);
        EXPECT_EQ((object->send<"echo:", Ref<NSObject>>(object.get())), object.get());
    }

    TEST(Methods, WithMalformedTypesAreRefused)
    {
        Class* const cls = freshClass(Animal::cls());
        EXPECT_EQ(
            raisedBy([&] { class_addMethod(cls, sel_registerName("odd"), impOf(meow), "{"); }),
            "NSInvalidArgumentException: the type string \"{\" of odd is malformed");
    }

    TEST(Methods, AreReplacedAndAnswerWhatStoodThere)
    {
        Class* const cls = freshClass(Animal::cls());
        EXPECT_EQ(class_replaceMethod(cls, selector<"sound">, impOf(meow), "*@:"), nullptr);
        const auto object = instanceOf(cls);
        EXPECT_STREQ(object->sound(), "meow");
        EXPECT_EQ(class_replaceMethod(cls, selector<"sound">, impOf(moo), "*@:"), impOf(meow));
        EXPECT_STREQ(object->sound(), "moo");
    }

    TEST(Methods, ReplacedByOtherTypesRefuseTheOldCalls)
    {
        Class* const cls = freshClass(Animal::cls());
        const auto object = instanceOf(cls);
        object->setLegs(1);
        class_replaceMethod(cls, selector<"setLegs:">,
            reinterpret_cast<IMP>(+[](NSObject*, SEL, double) {}), "v@:d");
        EXPECT_EQ(raisedBy([&] { object->setLegs(2); }),
            "NSInvalidArgumentException: -[" + std::string(class_getName(cls))
                + " setLegs:]: sent as v@:q, implemented as v@:d");
        EXPECT_EQ(raisedBy([&] { object->send<"setLegs:">(2.0); }), "nothing raised");
    }

    TEST(Methods, ExchangedRunEachOthersCodeInSubclassesToo)
    {
        Class* const cls = freshClass(Animal::cls());
        Class* const child = freshClass(cls);
        class_addMethod(cls, selector<"sound">, impOf(meow), "*@:");
        class_addMethod(cls, selector<"noise">, impOf(moo), "*@:");
        const auto object = instanceOf(child);
        EXPECT_STREQ(object->sound(), "meow");
        method_exchangeImplementations(class_getInstanceMethod(cls, selector<"sound">),
            class_getInstanceMethod(cls, selector<"noise">));
        EXPECT_STREQ(object->sound(), "moo");
        EXPECT_STREQ((object->send<"noise", const char*>()), "meow");
    }

    TEST(Methods, ExchangedOnASubclassDoNotReachTheParent)
    {
        Class* const cls = freshClass(Dog::cls());
        class_addMethod(cls, selector<"sound">, impOf(meow), "*@:");
        class_addMethod(cls, selector<"noise">, impOf(moo), "*@:");
        method_exchangeImplementations(class_getInstanceMethod(cls, selector<"sound">),
            class_getInstanceMethod(cls, selector<"noise">));
        EXPECT_STREQ(make<Dog>()->sound(), "woof");
    }

    TEST(Methods, ExchangedWithAMissingOneStayAsTheyAre)
    {
        Class* const cls = freshClass(Dog::cls());
        method_exchangeImplementations(class_getInstanceMethod(cls, selector<"sound">), nullptr);
        EXPECT_STREQ(make<Dog>()->sound(), "woof");
    }

    TEST(Methods, ImplementationsCompareEqualWhenInherited)
    {
        EXPECT_EQ(class_getMethodImplementation(Puppy::cls(), selector<"sound">),
            class_getMethodImplementation(Dog::cls(), selector<"sound">));
        EXPECT_NE(class_getMethodImplementation(Dog::cls(), selector<"sound">),
            class_getMethodImplementation(Animal::cls(), selector<"sound">));
    }

    TEST(Methods, ImplementationOfWhatNobodyAnswersIsTheForwardingOne)
    {
        const auto animal = make<Animal>();
        EXPECT_NE(forwardingImplementation(), nullptr);
        EXPECT_EQ(animal->methodForSelector(selector<"absent">), forwardingImplementation());
        EXPECT_EQ(Animal::cls().instanceMethodForSelector(selector<"absent">),
            forwardingImplementation());
        EXPECT_EQ(maybe<Animal>(nullptr)->methodForSelector(selector<"sound">), nullptr);
    }

    TEST(Methods, RespondsTestsLookAtTheRightTable)
    {
        EXPECT_TRUE(Animal::cls().instancesRespondToSelector(selector<"sound">));
        EXPECT_FALSE(Animal::cls().instancesRespondToSelector(selector<"population">));
        EXPECT_TRUE(Animal::cls().respondsToSelector(selector<"population">));
        EXPECT_FALSE(Animal::cls().respondsToSelector(selector<"sound">));
        EXPECT_TRUE(make<Puppy>()->respondsToSelector(selector<"sound">));
        EXPECT_FALSE(make<Puppy>()->respondsToSelector(selector<"setSound">));
    }

    TEST(Methods, ListsAreFreedByTheReceiver)
    {
        unsigned count = 0;
        Method** const list = class_copyMethodList(Dog::cls(), &count);
        ASSERT_EQ(count, 1u);
        EXPECT_EQ(method_getName(list[0]), selector<"sound">);
        releaseBuffer(list);
        static const char literal[] = "assign";
        releaseBuffer(const_cast<char*>(literal)); // not handed out: left alone
        EXPECT_STREQ(literal, "assign");
    }

}
}
