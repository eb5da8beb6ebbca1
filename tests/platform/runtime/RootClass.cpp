// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"
#include "foundation/NSString.h"

namespace brindle {
namespace {

    std::string addressOf(const void* pointer)
    {
        char text[32];
        std::snprintf(text, sizeof text, "%p", pointer);
        return text;
    }

    TEST(RootClass, DescribesObjectsByClassAndAddress)
    {
        const auto object = make<Animal>();
        const std::string expected = "<Animal: " + addressOf(object.get()) + ">";
        EXPECT_EQ(utf8Of(object->description().get()), expected);
        EXPECT_EQ(utf8Of(object->debugDescription().get()), expected);
    }

    TEST(RootClass, DescribesClassObjectsByName)
    {
        EXPECT_EQ(utf8Of(Animal::cls().description().get()), "Animal");
    }

    TEST(RootClass, DebugDescriptionFollowsAnOverriddenDescription)
    {
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "Chatty", 0);
        class_addMethod(cls, selector<"description">, reinterpret_cast<IMP>(+[](NSObject*, SEL) {
            return Ref<NSString>("chatty"_ns).leak();
        }),
            "@@:");
        objc_registerClassPair(cls);
        const auto object = Ref<NSObject>::adopt(class_createInstance(cls));
        EXPECT_EQ(utf8Of(object->debugDescription().get()), "chatty");
    }

    TEST(RootClass, ObjectsAreEqualToThemselvesOnlyAndHashAccordingly)
    {
        const auto a = make<NSObject>();
        const auto b = make<NSObject>();
        EXPECT_TRUE(a->isEqual(a.get()));
        EXPECT_FALSE(a->isEqual(b.get()));
        EXPECT_FALSE(a->isEqual(nullptr));
        EXPECT_EQ(a->hash(), a->hash());
    }

    TEST(RootClass, CopyIsNilAndMutableCopyRaisesWhereTheClassHasNone)
    {
        const auto animal = make<Animal>();
        EXPECT_EQ(animal->copy(), nullptr);
        EXPECT_NE(
            raisedBy([&] { (void)animal->mutableCopy(); }).find("-[Animal mutableCopyWithZone:]"),
            std::string::npos);
    }

    TEST(RootClass, ClassObjectsCopyAsThemselves)
    {
        EXPECT_EQ(Animal::cls()->copy(), Animal::cls().object);
    }

    TEST(RootClass, AwakeFromNibDoesNothing) { make<Animal>()->awakeFromNib(); }

    TEST(RootClass, NewIsAllocAndInit)
    {
        static int inits;
        inits = 0;
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "CountsInits", 0);
        class_addMethod(cls, selector<"init">, reinterpret_cast<IMP>(+[](NSObject* self, SEL) {
            ++inits;
            return Ref<NSObject>(self).leak();
        }),
            "@@:");
        objc_registerClassPair(cls);
        EXPECT_NE((cls->send<"new", Ref<NSObject>>()), nullptr);
        EXPECT_EQ(inits, 1);
    }

    TEST(RootClass, AnInitThatAnswersNilEndsTheObject)
    {
        static int ends;
        ends = 0;
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "NeverMade", 0);
        class_addMethod(cls, selector<"init">,
            reinterpret_cast<IMP>(+[](NSObject*, SEL) { return static_cast<NSObject*>(nullptr); }),
            "@@:");
        class_addMethod(cls, selector<"dealloc">,
            reinterpret_cast<IMP>(+[](NSObject*, SEL) { ++ends; }), "v@:");
        objc_registerClassPair(cls);
        EXPECT_EQ((cls->send<"new", Ref<NSObject>>()), nullptr);
        EXPECT_EQ(ends, 1);
    }

    TEST(RootClass, RetainAndReleaseAreMessagesToo)
    {
        const auto object = make<NSObject>();
        (void)object->send<"retain", Ref<NSObject>>().leak(); // the count of the message itself
        EXPECT_EQ((object->send<"retainCount", std::uint64_t>()), 3u);
        object->send<"release">();
        object->send<"release">();
        EXPECT_EQ((object->send<"retainCount", std::uint64_t>()), 1u);
    }

    TEST(Exceptions, CarryNameReasonAndTheObjectItself)
    {
        const auto exception
            = NSException::cls().exceptionWithName_reason_userInfo("Odd"_ns, "because"_ns, nullptr);
        try {
            exception->raise();
        } catch (const Exception& caught) {
            EXPECT_EQ(caught.get(), exception.get());
            EXPECT_EQ(utf8Of(caught->name().get()), "Odd");
            EXPECT_EQ(utf8Of(caught->reason().get()), "because");
            EXPECT_EQ(caught->userInfo(), nullptr);
            EXPECT_STREQ(caught.what(), "Odd: because");
            return;
        }
        FAIL();
    }

    TEST(Exceptions, WithoutReasonSayNull)
    {
        EXPECT_EQ(raisedBy([] {
            NSException::cls()
                .exceptionWithName_reason_userInfo("Odd"_ns, nullptr, nullptr)
                ->raise();
        }),
            "Odd: (null)");
    }

    TEST(Exceptions, EndWithTheLastWhoHoldsThem)
    {
        WeakRef<NSException> weak;
        try {
            raise("NSGenericException", "x");
        } catch (const Exception& caught) {
            weak = WeakRef<NSException>(caught.get());
            EXPECT_NE(weak.get(), nullptr);
        }
        EXPECT_EQ(weak.get(), nullptr);
    }

}
}
