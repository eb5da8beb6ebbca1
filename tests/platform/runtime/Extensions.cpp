// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

namespace brindle {

class Extended : public NSObject {
    BRINDLE_OBJECT(Extended, NSObject)
};
class ExtendedChild : public Extended {
    BRINDLE_OBJECT(ExtendedChild, Extended)
};
template <> struct Extended::Methods<struct Own> {
    static int original(Extended&) { return 1; }
    static int replaced(Extended&) { return 1; }
    static void table(Builder& t)
    {
        t.methods({ { "original", imp<original> }, { "replaced", imp<replaced> },
            { "overridden", imp<original> } });
    }
};
template <> struct ExtendedChild::Methods<struct Own> {
    static int overridden(ExtendedChild&) { return 3; }
    static void table(Builder& t) { t.methods({ { "overridden", imp<overridden> } }); }
};

namespace {

    constinit int loadsBeforeMain = 0;

    struct Replacing {
        static int replaced(Extended&) { return 2; }
        static int added(Extended&) { return 4; }
        static int addedToClass(Class&) { return 5; }
        static void load(Class& cls)
        {
            loadsBeforeMain += std::string(class_getName(&cls)) == "Extended";
        }
        static void table(Builder& t)
        {
            t.methods({ { "replaced", imp<replaced> }, { "overridden", imp<replaced> },
                { "added", imp<added> } });
            t.classMethods({ { "addedToClass", imp<addedToClass> } });
        }
    };
    struct RootLoaderOne {
        static void load(Class&) { loadsBeforeMain += 10; }
        static int ofEverything(NSObject&) { return 6; }
        static void table(Builder& t) { t.methods({ { "ofEverything", imp<ofEverything> } }); }
    };
    struct RootLoaderTwo {
        static void load(Class&) { loadsBeforeMain += 100; }
        static void table(Builder&) { }
    };

}

// The extension stands before the class on purpose: the order of records must not matter.
BRINDLE_EXTENSION(Extended, Replacing)
BRINDLE_EXTENSION(NSObject, RootLoaderOne)
BRINDLE_EXTENSION(NSObject, RootLoaderTwo)
BRINDLE_RECORD(ExtendedChild, Own)
BRINDLE_RECORD(Extended, Own)

namespace {

    TEST(Extensions, ReplaceWhatTheClassItselfDefines)
    {
        EXPECT_EQ((make<Extended>()->send<"replaced", int>()), 2);
        EXPECT_EQ((make<Extended>()->send<"original", int>()), 1);
    }

    TEST(Extensions, LoseToASubclassesOwnOverride)
    {
        EXPECT_EQ((make<Extended>()->send<"overridden", int>()), 2);
        EXPECT_EQ((make<ExtendedChild>()->send<"overridden", int>()), 3);
    }

    TEST(Extensions, AddOperationsThatSubclassesInherit)
    {
        EXPECT_EQ((make<ExtendedChild>()->send<"added", int>()), 4);
        EXPECT_EQ((ExtendedChild::cls().send<"addedToClass", int>()), 5);
    }

    TEST(Extensions, OfTheRootReachEveryObjectAndEveryClass)
    {
        EXPECT_EQ((make<Dog>()->send<"ofEverything", int>()), 6);
        EXPECT_EQ((Dog::cls().send<"ofEverything", int>()), 6);
    }

    TEST(Extensions, AllReceiveLoadBeforeTheProgramStarts) { EXPECT_EQ(loadsBeforeMain, 111); }

    struct Late {
        static int late(Extended&) { return 7; }
        static void table(Builder& t) { t.methods({ { "late", imp<late> } }); }
    };

    TEST(Extensions, AnnouncedAfterTheClassWasUsedTakeEffectAtOnce)
    {
        const auto object = make<ExtendedChild>();
        EXPECT_FALSE(object->respondsToSelector(selector<"late">));
        static constexpr Record record { "Extended", nullptr, "Late", &Late::table, nullptr, 0,
            nullptr, nullptr };
        static const Record* const entries[] = { &record };
        announceRecords(entries, entries + 1);
        EXPECT_EQ((object->send<"late", int>()), 7);
    }

    struct Contender {
        static int added(Extended&) { return 8; }
        static void table(Builder& t) { t.methods({ { "added", imp<added> } }); }
    };

    TEST(ExtensionsDeathTest, ThatBothAddOneSelectorEndTheProcessWithBothNames)
    {
        static constexpr Record record { "Extended", nullptr, "Contender", &Contender::table,
            nullptr, 0, nullptr, nullptr };
        static const Record* const entries[] = { &record };
        (void)make<Extended>();
        EXPECT_DEATH(announceRecords(entries, entries + 1),
            "brindle: the extensions Replacing and Contender of Extended both define added");
    }

    TEST(ExtensionsDeathTest, AndTwoClassesOfOneNameEndTheProcess)
    {
        static constexpr Record record { "Extended", "Animal", "Other", &Contender::table, nullptr,
            4, nullptr, nullptr };
        static const Record* const entries[] = { &record };
        EXPECT_DEATH(
            announceRecords(entries, entries + 1), "brindle: two classes are named Extended");
    }

    TEST(Extensions, FunctionsTakeReferencesPointersOwnersAndClassObjects)
    {
        const auto added = [](To<Extended> object) { return object.send<"added", int>(); };
        const auto object = make<ExtendedChild>();
        EXPECT_EQ(added(*object), 4);
        EXPECT_EQ(added(object.get()), 4);
        EXPECT_EQ(added(object), 4);
        EXPECT_EQ(added(nullptr), 0);
        const auto ofClass = [](To<Class> cls) { return cls.send<"addedToClass", int>(); };
        EXPECT_EQ(ofClass(Extended::cls()), 5);
        const auto ofAnything = [](To<NSObject> any) { return any.send<"ofEverything", int>(); };
        EXPECT_EQ(ofAnything(object), 6);
        EXPECT_EQ(ofAnything(Dog::cls()), 6);
    }

}
}
