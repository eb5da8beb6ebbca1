// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "core/MethodPatching.h"
#include "core/NSObject+HXAssociatedObjects.h"
#include "core/NSObject+Inheritance.h"
#include "runtime/Runtime.h"

namespace brindle {
namespace {

    int one(NSObject*, SEL) { return 1; }
    int two(NSObject*, SEL) { return 2; }

    using Body = int (*)(NSObject*, SEL);
    void define(Class* cls, const char* name, Body body)
    {
        class_addMethod(cls, sel_registerName(name), reinterpret_cast<IMP>(body), "i@:");
    }

    /// A parent that answers `first` with 1 and `second` with 2, as instance and class operations, and its child.
    struct Family {
        Class* parent;
        Class* child;

        Family()
        {
            static int number = 0;
            const std::string name = "PatchedParent" + std::to_string(++number);
            parent = objc_allocateClassPair(NSObject::cls(), name.c_str(), 0);
            for (Class* const table : { parent, parent->isa_ }) {
                define(table, "first", one);
                define(table, "second", two);
            }
            objc_registerClassPair(parent);
            child = objc_allocateClassPair(parent, (name + "Child").c_str(), 0);
            objc_registerClassPair(child);
        }
    };

    int first(Class* cls)
    {
        return Ref<NSObject>::adopt(class_createInstance(cls))->send<"first", int>();
    }
    int second(Class* cls)
    {
        return Ref<NSObject>::adopt(class_createInstance(cls))->send<"second", int>();
    }
    constexpr SEL kFirst = selector<"first">;
    constexpr SEL kSecond = selector<"second">;

    TEST(MethodPatching, SwizzlingExchangesTwoMethods)
    {
        const Family family;
        EXPECT_TRUE(XUISwizzleMethod(family.parent, '-', kFirst, kSecond));
        EXPECT_EQ(first(family.parent), 2);
        EXPECT_EQ(second(family.parent), 1);
        EXPECT_EQ(first(family.child), 2);
    }

    TEST(MethodPatching, SwizzlingInheritedMethodsLeavesTheParentAlone)
    {
        const Family family;
        EXPECT_TRUE(XUISwizzleMethod(family.child, '-', kFirst, kSecond));
        EXPECT_EQ(first(family.child), 2);
        EXPECT_EQ(second(family.child), 1);
        EXPECT_EQ(first(family.parent), 1);
        EXPECT_EQ(second(family.parent), 2);
    }

    TEST(MethodPatching, SwizzlingWithAMissingMethodChangesNothing)
    {
        const Family family;
        EXPECT_FALSE(XUISwizzleMethod(family.child, '-', kFirst, sel_registerName("missing")));
        EXPECT_FALSE(XUISwizzleMethod(family.child, '-', sel_registerName("missing"), kSecond));
        EXPECT_EQ(first(family.child), 1);
        unsigned count = 0;
        EXPECT_EQ(class_copyMethodList(family.child, &count), nullptr);
    }

    TEST(MethodPatching, SwizzlingWithPlusExchangesClassMethodsOnly)
    {
        const Family family;
        EXPECT_TRUE(XUISwizzleMethod(family.child, '+', kFirst, kSecond));
        EXPECT_EQ((family.child->send<"first", int>()), 2);
        EXPECT_EQ((family.parent->send<"first", int>()), 1);
        EXPECT_EQ(first(family.child), 1);
    }

    TEST(MethodPatching, SwizzlingOfNoClassIsFalse)
    {
        EXPECT_FALSE(XUISwizzleMethod(nullptr, '-', kFirst, kSecond));
        EXPECT_FALSE(XUISwizzleMethod(nullptr, '+', kFirst, kSecond));
        EXPECT_FALSE(XUIAliasMethod(nullptr, '-', kFirst, kSecond));
    }

    TEST(MethodPatching, AnAliasRunsTheSameCode)
    {
        const Family family;
        EXPECT_TRUE(XUIAliasMethod(family.child, '-', kFirst, sel_registerName("alias")));
        EXPECT_EQ(
            (Ref<NSObject>::adopt(class_createInstance(family.child))->send<"alias", int>()), 1);
        EXPECT_FALSE(class_respondsToSelector(family.parent, sel_registerName("alias")));
    }

    TEST(MethodPatching, AnAliasWithPlusIsAClassMethod)
    {
        const Family family;
        EXPECT_TRUE(XUIAliasMethod(family.parent, '+', kSecond, sel_registerName("alias")));
        EXPECT_EQ((family.child->send<"alias", int>()), 2);
        EXPECT_FALSE(class_respondsToSelector(family.parent, sel_registerName("alias")));
    }

    TEST(MethodPatching, AnAliasOfAMissingMethodIsRefused)
    {
        const Family family;
        EXPECT_FALSE(XUIAliasMethod(
            family.parent, '-', sel_registerName("missing"), sel_registerName("alias")));
    }

    TEST(MethodPatching, AnAliasThatTheClassItselfDefinesStaysAsItIs)
    {
        const Family family;
        EXPECT_FALSE(XUIAliasMethod(family.parent, '-', kFirst, kSecond));
        EXPECT_EQ(second(family.parent), 2);
        EXPECT_TRUE(XUIAliasMethod(family.child, '-', kFirst, kSecond)); // only inherited there
        EXPECT_EQ(second(family.child), 1);
    }

    TEST(MethodPatching, TheLoadTimeSwizzleExchangesWhatTheClassDefines)
    {
        const Family family;
        JU_swizzleInstanceMethod(family.parent, kFirst, kSecond);
        EXPECT_EQ(first(family.parent), 2);
        EXPECT_EQ(second(family.parent), 1);
    }

    TEST(MethodPatching, TheLoadTimeSwizzleOfAnInheritedTargetLeavesTheParentAlone)
    {
        const Family family;
        define(family.child, "second", [](NSObject*, SEL) { return 3; });
        JU_swizzleInstanceMethod(family.child, kFirst, kSecond);
        EXPECT_EQ(first(family.child), 3);
        EXPECT_EQ(second(family.child), 1);
        EXPECT_EQ(first(family.parent), 1);
        EXPECT_EQ(second(family.parent), 2);
    }

    TEST(MethodPatching, TheLoadTimeSwizzleOfTwoInheritedMethodsLeavesTheParentAlone)
    {
        const Family family;
        JU_swizzleInstanceMethod(family.child, kFirst, kSecond);
        EXPECT_EQ(first(family.child), 2);
        EXPECT_EQ(second(family.child), 1);
        EXPECT_EQ(first(family.parent), 1);
        EXPECT_EQ(second(family.parent), 2);
    }

    TEST(MethodPatching, AnAliasHasTheTypesOfItsTarget)
    {
        const Family family;
        const SEL alias = sel_registerName("alias");
        ASSERT_TRUE(XUIAliasMethod(family.parent, '-', kFirst, alias));
        EXPECT_STREQ(method_getTypeEncoding(class_getInstanceMethod(family.parent, alias)), "i@:");
    }

    TEST(MethodPatching, AnyKindButPlusMeansInstances)
    {
        const Family family;
        EXPECT_TRUE(XUISwizzleMethod(family.parent, 'x', kFirst, kSecond));
        EXPECT_EQ(first(family.parent), 2);
        EXPECT_EQ((family.parent->send<"first", int>()), 1);
    }

    TEST(Inheritance, TheBaseClassIsTheHighestThatAnswers)
    {
        const Family family;
        EXPECT_EQ(baseClassForSelector(family.child, kFirst), family.parent);
        EXPECT_EQ(baseClassForSelector(family.parent, kFirst), family.parent);
        EXPECT_EQ(
            baseClassForSelector(family.child, selector<"description">), NSObject::cls().object);
        EXPECT_EQ(baseClassForSelector(family.child, sel_registerName("missing")), nullptr);
    }

    TEST(Inheritance, AnInheritedMethodIsNotOverridden)
    {
        const Family family;
        const auto child = Ref<NSObject>::adopt(class_createInstance(family.child));
        const auto parent = Ref<NSObject>::adopt(class_createInstance(family.parent));
        EXPECT_FALSE(isMethodOverridden(child, kFirst));
        EXPECT_FALSE(isMethodOverridden(parent, kFirst));
    }

    TEST(Inheritance, AReplacedMethodIsOverridden)
    {
        const Family family;
        define(family.child, "first", two);
        const auto child = Ref<NSObject>::adopt(class_createInstance(family.child));
        EXPECT_TRUE(isMethodOverridden(child, kFirst));
        EXPECT_FALSE(isMethodOverridden(child, kSecond));
    }

    TEST(Inheritance, AMethodThatNobodyAnswersCountsAsOverridden)
    {
        EXPECT_TRUE(isMethodOverridden(make<NSObject>(), sel_registerName("missing")));
    }

    TEST(AssociatedObjects, AreKeptUnderTheAddressOfAVariable)
    {
        static const char key = 0;
        static const char other = 0;
        const auto object = make<NSObject>();
        auto value = make<NSObject>();
        const WeakRef<NSObject> weak(value);
        associateValue_withKey(object, value.get(), &key);
        value = nullptr;
        EXPECT_NE(weak.get(), nullptr);
        EXPECT_EQ(associatedValueForKey(object, &key), weak.get());
        EXPECT_EQ(associatedValueForKey(object, &other), nullptr);
        associateValue_withKey(object, nullptr, &key);
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(AssociatedObjects, AreNotKeptWhenAttachedWeakly)
    {
        static const char key = 0;
        const auto object = make<NSObject>();
        auto value = make<NSObject>();
        const WeakRef<NSObject> weak(value);
        weaklyAssociateValue_withKey(object, value.get(), &key);
        EXPECT_EQ(associatedValueForKey(object, &key), value);
        weaklyAssociateValue_withKey(object, nullptr, &key);
        value = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(AssociatedObjects, AreNotAttachedWeaklyWithoutAKey)
    {
        const auto object = make<NSObject>();
        const auto value = make<NSObject>();
        weaklyAssociateValue_withKey(object, value.get(), nullptr);
        EXPECT_EQ(associatedValueForKey(object, nullptr), nullptr);
    }

}
}
