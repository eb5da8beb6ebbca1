// SPDX-License-Identifier: Apache-2.0
#include "CodingHosts.h"
#include "introspection/NSObject+AutoCoding.h"
#include "introspection/UniqueObjects.h"
#include "support/LogSink.h"
#include "support/Strings.h"

namespace brindle {

/// Has an identity; one of its properties refers to another such object.
class IdentifiedCodingHost : public NSObject {
    BRINDLE_OBJECT(IdentifiedCodingHost, NSObject)

public:
    Ref<NSString> name_;
    Ref<CodingHost> reference_;
};

template <> struct IdentifiedCodingHost::Methods<struct Declared> {
    static Ref<NSArray> identities(Class&) { return makeArray({ "reference"_ns }); }
    static void table(Builder& t)
    {
        t.conformsTo({ "UniqueObjects" });
        t.properties({
            property<&IdentifiedCodingHost::name_>("name", nonatomic),
            property<&IdentifiedCodingHost::reference_>("reference", nonatomic),
        });
        t.classMethods({ { "UUIDProperties", imp<identities> } });
    }
};
BRINDLE_RECORD(IdentifiedCodingHost, Declared)

namespace {

    /// Answers "name Class, ..." in the table's order.
    std::string shown(const Ref<NSDictionary>& table)
    {
        std::string text;
        for (NSObject* name : *table)
            text += (text.empty() ? "" : ", ") + textOf(name) + " "
                + textOf(table->objectForKey(name));
        return text;
    }

    /// Answers what one property of this type is coded as, "" for one that is not codable.
    std::string codedAs(const std::string& type, const std::string& rest = ",N,V_asked")
    {
        static int number = 0;
        Class* const cls = objc_allocateClassPair(
            NSObject::cls(), ("TypedCodingHost" + std::to_string(number++)).c_str(), 0);
        objc_registerClassPair(cls);
        class_addProperty(cls, "asked", ("T" + type + rest).c_str());
        const auto value = codableProperties(cls)->objectForKey("asked"_ns);
        return value ? textOf(value) : "";
    }

}

TEST(CodableTypes, AreNumbersOfElevenKinds)
{
    for (const char* const type : { "B", "C", "I", "S", "c", "d", "f", "i", "l", "q", "s" })
        EXPECT_EQ(codedAs(type), "NSNumber") << type;
}
TEST(CodableTypes, AreNotUnsignedLongs)
{
    EXPECT_EQ(codedAs("L"), "");
    EXPECT_EQ(codedAs("Q"), "");
}
TEST(CodableTypes, AreStructures) { EXPECT_EQ(codedAs("{CGPoint=dd}"), "NSValue"); }
TEST(CodableTypes, AreObjectsOfANamedClass) { EXPECT_EQ(codedAs("@\"NSDate\""), "NSDate"); }
TEST(CodableTypes, DropProtocols)
{
    EXPECT_EQ(codedAs("@\"NSDate<NSCopying>\""), "NSDate");
    EXPECT_EQ(codedAs("@\"NSObject<NSCopying>\""), "NSObject");
}
TEST(CodableTypes, AreTheRootForAProtocolAlone)
{
    EXPECT_EQ(codedAs("@\"<NSCopying>\""), "NSObject");
}
TEST(CodableTypes, AreTheRootForAnUnknownClass)
{
    EXPECT_EQ(codedAs("@\"NobodyDeclaredThisClass\""), "NSObject");
}
TEST(CodableTypes, AreTheRootForAnEmptyName) { EXPECT_EQ(codedAs("@\"\""), "NSObject"); }
TEST(CodableTypes, AreNotUntypedObjectsAndClosures)
{
    EXPECT_EQ(codedAs("@"), "");
    EXPECT_EQ(codedAs("@?"), "");
}
TEST(CodableTypes, AreNotPointersAndTheLike)
{
    for (const char* const type : { "^i", "*", ":", "#", "[4i]", "(u=id)", "b3", "v" })
        EXPECT_EQ(codedAs(type), "") << type;
}
TEST(CodableTypes, NeedAField) { EXPECT_EQ(codedAs("i", ",N"), ""); }
TEST(CodableTypes, NeedAFieldOfTheNameWhenReadOnly)
{
    EXPECT_EQ(codedAs("i", ",R,N,V_asked"), "NSNumber");
    EXPECT_EQ(codedAs("i", ",R,N,Vasked"), "NSNumber");
    EXPECT_EQ(codedAs("i", ",R,N,V_other"), "");
    EXPECT_EQ(codedAs("i", ",R,N"), "");
}
TEST(CodableTypes, MayHaveAFieldOfAnotherNameWhenWritable)
{
    EXPECT_EQ(codedAs("i", ",N,V_other"), "NSNumber");
}

TEST(CodableProperties, OfAClassAreItsOwnInTheirOrder)
{
    EXPECT_EQ(shown(codableProperties(PartlyCodingHost::cls())),
        "kept NSString, renamed NSString, copying NSObject, unknown NSObject");
    EXPECT_EQ(shown(codableProperties(NamesakeCodingHost::cls())), "own NSString, text NSNumber");
}
TEST(CodableProperties, OfAClassWithoutAnyAreAnEmptyTable)
{
    EXPECT_EQ(codableProperties(OwnCodingHost::cls())->count(), 0u);
    EXPECT_EQ(codableProperties(make<NSObject>())->count(), 0u);
}
TEST(CodableProperties, OfAnObjectAreThoseOfAllItsClasses)
{
    const auto table = codableProperties(make<NamesakeCodingHost>());
    EXPECT_EQ(table->count(), 22u);
    EXPECT_EQ(textOf(table->objectForKey("own"_ns)), "NSString");
    EXPECT_EQ(textOf(table->objectForKey("rect"_ns)), "NSValue");
}
TEST(CodableProperties, ClassNearestTheRootDecidesForOneName)
{
    EXPECT_EQ(
        textOf(codableProperties(make<NamesakeCodingHost>())->objectForKey("text"_ns)), "NSString");
}
TEST(CodableProperties, AreMadeOnce)
{
    EXPECT_EQ(codableProperties(CodingHost::cls()), codableProperties(CodingHost::cls()));
    EXPECT_EQ(codableProperties(make<CodingHost>()), codableProperties(make<CodingHost>()));
}
TEST(CodableProperties, CannotBeChanged)
{
    EXPECT_FALSE(codableProperties(CodingHost::cls())->isKindOfClass(NSMutableDictionary::cls()));
    EXPECT_FALSE(codableProperties(make<CodingHost>())->isKindOfClass(NSMutableDictionary::cls()));
}
TEST(CodableProperties, OfIdentifiedObjectsBeginWithTheIdentityAndLeaveReferencesOut)
{
    EXPECT_EQ(shown(codableProperties(IdentifiedCodingHost::cls())), "UUID NSUUID, name NSString");
}
TEST(CodableProperties, OldMethodsAreWarnedAboutOnce)
{
    Class* const cls = objc_allocateClassPair(NSObject::cls(), "OldCodingHost", 0);
    const auto answer = +[](NSObject*, SEL) -> NSObject* { return nullptr; };
    class_addMethod(cls, selector<"codableKeys">, reinterpret_cast<IMP>(answer), "@@:");
    class_addMethod(cls->isa_, selector<"uncodableKeys">, reinterpret_cast<IMP>(answer), "@@:");
    objc_registerClassPair(cls);
    const test::LogSink log;
    codableProperties(cls);
    codableProperties(cls);
    EXPECT_EQ(log.text(),
        "AutoCoding Warning: codableKeys method is no longer supported. Use codableProperties "
        "instead.\n"
        "AutoCoding Warning: uncodableKeys method is no longer supported. Use "
        "uncodableProperties instead.\n");
}
TEST(CodableProperties, RootLeavesNothingOutAndChecksClasses)
{
    EXPECT_FALSE(uncodableProperties(CodingHost::cls()));
    EXPECT_FALSE(UUIDProperties(CodingHost::cls()));
    EXPECT_TRUE(supportsSecureCoding(CodingHost::cls()));
}

}
