// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSObject+EQProperties.h"

#include "PropertyHosts.h"
#include "introspection/NSObject+PropertiesBR.h"
#include "introspection/NSString+EQPropertyKVC.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<PropertyHost> host() { return make<PropertyHost>(); }

}

TEST(PropertyQueries, OnlyTheClassItselfCountsForHavingProperties)
{
    EXPECT_TRUE(hasProperties(PropertyHost::cls()));
    EXPECT_FALSE(hasProperties(PlainPropertyHost::cls()));
}
TEST(PropertyQueries, NamesOfAncestorsAreFound)
{
    EXPECT_TRUE(hasPropertyNamed(PlainPropertyHost::cls(), "title"_ns));
    EXPECT_FALSE(hasPropertyNamed(PlainPropertyHost::cls(), "nobody"_ns));
    EXPECT_FALSE(hasPropertyNamed(PropertyHost::cls(), nullptr));
}
TEST(PropertyQueries, ObjectsAskTheirClass)
{
    EXPECT_TRUE(hasProperties(host()));
    EXPECT_TRUE(hasPropertyNamed(host(), "title"_ns));
    EXPECT_TRUE(hasPropertyNamed_ofType(host(), "count"_ns, "Ti"));
    EXPECT_TRUE(hasPropertyForKVCKey(host(), "Title"_ns));
    EXPECT_STREQ(typeOfPropertyNamed(host(), "count"_ns), "Ti");
    EXPECT_EQ(getterForPropertyNamed(host(), "title"_ns), selector<"title">);
    EXPECT_EQ(setterForPropertyNamed(host(), "on"_ns), selector<"setOn:">);
    EXPECT_EQ(utf8(retentionMethodOfPropertyNamed(host(), "title"_ns)), "retain");
    EXPECT_EQ(propertyNames(host())->count(), 10u);
}
TEST(PropertyQueries, TypesMatchWithTheirLetterT)
{
    EXPECT_TRUE(hasPropertyNamed_ofType(PropertyHost::cls(), "title"_ns, "T@\"NSString\""));
    EXPECT_FALSE(hasPropertyNamed_ofType(PropertyHost::cls(), "title"_ns, "@\"NSString\""));
    EXPECT_FALSE(hasPropertyNamed_ofType(PropertyHost::cls(), "nobody"_ns, "Ti"));
}
TEST(PropertyQueries, KeysFindNamesInPropertyStyle)
{
    EXPECT_TRUE(hasPropertyForKVCKey(PropertyHost::cls(), "Title"_ns));
    EXPECT_TRUE(hasPropertyForKVCKey(PropertyHost::cls(), "title"_ns));
    EXPECT_FALSE(hasPropertyForKVCKey(PropertyHost::cls(), "TITLE"_ns));
}
TEST(PropertyQueries, TypeIsTextOfTheAttributes)
{
    EXPECT_STREQ(typeOfPropertyNamed(PropertyHost::cls(), "title"_ns), "T@\"NSString\"");
    EXPECT_EQ(typeOfPropertyNamed(PropertyHost::cls(), "nobody"_ns), nullptr);
}
TEST(PropertyQueries, NamesStandInTheirOrder)
{
    EXPECT_EQ(textOf(propertyNames(PropertyHost::cls())),
        "(\n    title,\n    copiedTitle,\n    code,\n    count,\n    byte,\n    on,\n    "
        "controller,\n    shouted,\n    missing,\n    unset\n)");
}
TEST(PropertyQueries, NamesAreNilForAClassThatDeclaresNone)
{
    EXPECT_FALSE(propertyNames(PlainPropertyHost::cls()));
}

TEST(PropertyQueries, DefaultGetterIsTheName)
{
    EXPECT_EQ(getterForPropertyNamed(PropertyHost::cls(), "count"_ns), selector<"count">);
}
TEST(PropertyQueries, CustomGetterIsNotAnswered)
{
    EXPECT_FALSE(getterForPropertyNamed(PropertyHost::cls(), "on"_ns));
}
TEST(PropertyQueries, UnknownNameHasNoAccessors)
{
    EXPECT_FALSE(getterForPropertyNamed(PropertyHost::cls(), "nobody"_ns));
    EXPECT_FALSE(setterForPropertyNamed(PropertyHost::cls(), "nobody"_ns));
}
TEST(PropertyQueries, MissingGetterIsRaised)
{
    EXPECT_EQ(raisedBy([] { getterForPropertyNamed(PropertyHost::cls(), "missing"_ns); }),
        "NSInternalInconsistencyException: PropertyHost has property 'missing' with no custom "
        "getter, but does not respond to the default getter");
}
TEST(PropertyQueries, CustomSetterIsAnswered)
{
    EXPECT_EQ(setterForPropertyNamed(PropertyHost::cls(), "on"_ns), selector<"setOn:">);
}
TEST(PropertyQueries, DefaultSetterHasNoColon)
{
    EXPECT_EQ(setterForPropertyNamed(PropertyHost::cls(), "unset"_ns), selector<"setUnset">);
}
TEST(PropertyQueries, DefaultSetterOfANameOfOneLetterIsThatLetter)
{
    Class* const cls = objc_allocateClassPair(NSObject::cls(), "OneLetterHost", 0);
    class_addProperty(cls, "x", "Ti,N,V_x");
    const auto set = +[](NSObject*, SEL) {};
    class_addMethod(cls, sel_registerName("setX"), reinterpret_cast<IMP>(set), "v@:");
    objc_registerClassPair(cls);
    EXPECT_STREQ(sel_getName(setterForPropertyNamed(cls, "x"_ns)), "setX");
}
TEST(PropertyQueries, SetterWithAColonIsNotTheDefaultOne)
{
    EXPECT_EQ(raisedBy([] { setterForPropertyNamed(PropertyHost::cls(), "title"_ns); }),
        "NSInternalInconsistencyException: PropertyHost has property 'setTitle' with no custom "
        "setter, but does not respond to the default setter");
}
TEST(PropertyQueries, RetentionMethodIsText)
{
    EXPECT_EQ(utf8(retentionMethodOfPropertyNamed(PropertyHost::cls(), "copiedTitle"_ns)), "copy");
    EXPECT_EQ(utf8(retentionMethodOfPropertyNamed(PropertyHost::cls(), "byte"_ns)), "copy");
    EXPECT_FALSE(retentionMethodOfPropertyNamed(PropertyHost::cls(), "nobody"_ns));
}
TEST(PropertyQueries, RetentionMethodMayBeAskedForTwice)
{
    retentionMethodOfPropertyNamed(PropertyHost::cls(), "title"_ns);
    EXPECT_EQ(utf8(retentionMethodOfPropertyNamed(PropertyHost::cls(), "title"_ns)), "retain");
}

TEST(PropertyTypeText, IsTheTypeOfTheProperty)
{
    EXPECT_EQ(utf8(propertyTypeOfProperty(host(), "title"_ns)), "T@\"NSString\"");
}
TEST(PropertyTypeText, UnknownNameIsRefused)
{
    EXPECT_TRUE(raisedBy([] {
        propertyTypeOfProperty(host(), "nobody"_ns);
    }).starts_with("NSInvalidArgumentException: "));
}
TEST(PropertyTypeText, ClassIsFoundInside)
{
    EXPECT_TRUE(property_isOfClass(host(), "title"_ns, NSString::cls()));
    EXPECT_FALSE(property_isOfClass(host(), "title"_ns, NSArray::cls()));
    EXPECT_TRUE(property_isOfClass(host(), "controller"_ns, NSArray::cls()));
}

TEST(PropertyTypeText, ClassIsFoundInAnyCase)
{
    EXPECT_TRUE(property_isOfClass(host(), "shouted"_ns, NSArray::cls()));
}

TEST(PropertyStyle, LowersTheFirstLetterOnly)
{
    EXPECT_EQ(utf8(propertyStyleString("TitleText"_ns)), "titleText");
    EXPECT_EQ(utf8(propertyStyleString("X"_ns)), "x");
    EXPECT_EQ(utf8(propertyStyleString("title"_ns)), "title");
}
TEST(PropertyStyle, EmptyTextIsRefused)
{
    EXPECT_TRUE(raisedBy([] { propertyStyleString(""_ns); }).starts_with("NSRangeException: "));
}

}
