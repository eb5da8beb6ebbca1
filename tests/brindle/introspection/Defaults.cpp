// SPDX-License-Identifier: Apache-2.0
#include <fstream>

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSBundle.h"
#include "foundation/NSData.h"
#include "foundation/NSNumber.h"
#include "introspection/NSDictionary+DefaultsDictionary.h"
#include "introspection/NSUserDefaults+Archive.h"
#include "introspection/NSUserDefaults+DefaultsFromSettingsBundle.h"
#include "support/DefaultsFolder.h"
#include "support/LogSink.h"
#include "support/Strings.h"
#include "support/VirtualClock.h"

using namespace brindle;

namespace {

class SettingsBundle : public testing::Test {
protected:
    ~SettingsBundle() override { setMainBundlePath(nullptr); }
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }
    /// Makes an application whose settings bundle has this root, registers its defaults and answers what was logged.
    std::string registering(const std::string& root)
    {
        std::filesystem::create_directories(application.path() / "Settings.bundle");
        std::ofstream(application.path() / "Settings.bundle/Root.plist") << root;
        return registering();
    }
    std::string registering()
    {
        setMainBundlePath(stringFrom(application.path().string()).get());
        folder.restart();
        const test::LogSink log;
        registerDefaultsFromSettingsBundle(defaults());
        return log.text();
    }
    static std::string registered()
    {
        return textOf(defaults()->volatileDomainForName(NSRegistrationDomain));
    }
    static Ref<NSObject> converted(NSObject* value)
    {
        return defaultValueForSettingsBundleDefaultValue(NSUserDefaults::cls(), value);
    }

    test::VirtualClock clock;
    test::DefaultsFolder folder;
    test::TemporaryFolder application;
};

class DefaultsArchive : public testing::Test {
protected:
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }

    test::VirtualClock clock;
    test::DefaultsFolder folder;
};

}

TEST_F(SettingsBundle, RegistersItsDefaults)
{
    EXPECT_EQ(registering("{ PreferenceSpecifiers = ("
                          "{ Type = Group; Title = General; },"
                          "{ Key = sound; DefaultValue = YES; },"
                          "{ Key = name; DefaultValue = nobody; } ); }"),
        "register: {\n    name = nobody;\n    sound = 1;\n}\nregisterDefaults\n");
    EXPECT_TRUE(defaults()->boolForKey("sound"_ns));
    EXPECT_EQ(utf8(defaults()->stringForKey("name"_ns)), "nobody");
}

TEST_F(SettingsBundle, RegistersTheLaterOfTwoDefaultsOfOneKey)
{
    registering("{ PreferenceSpecifiers = ("
                "{ Key = a; DefaultValue = 1; }, { Key = a; DefaultValue = 2; } ); }");
    EXPECT_EQ(defaults()->integerForKey("a"_ns), 2);
}

TEST_F(SettingsBundle, NeverCoversWhatTheUserSet)
{
    registering("{ PreferenceSpecifiers = ( { Key = a; DefaultValue = 1; } ); }");
    defaults()->setInteger_forKey(7, "a"_ns);
    registering();
    EXPECT_EQ(defaults()->integerForKey("a"_ns), 7);
}

TEST_F(SettingsBundle, LogsOneLineWhenNothingHasADefault)
{
    EXPECT_EQ(registering("{ PreferenceSpecifiers = ( { Key = a; }, { Type = Group; } ); }"),
        "registerDefaults\n");
    EXPECT_EQ(registered(), "{\n}");
}

TEST_F(SettingsBundle, LogsOneLineWithoutSpecifiers)
{
    EXPECT_EQ(registering("{ Title = Root; }"), "registerDefaults\n");
}

TEST_F(SettingsBundle, PassesOverSpecifiersOfAnotherKind)
{
    EXPECT_EQ(registering("{ PreferenceSpecifiers = text; }"), "registerDefaults\n");
    EXPECT_EQ(registering("{ PreferenceSpecifiers = ( text, ( list ) ); }"), "registerDefaults\n");
}

TEST_F(SettingsBundle, LogsNothingWhereThereIsNone) { EXPECT_EQ(registering(), ""); }

TEST_F(SettingsBundle, LogsNothingWithoutARoot)
{
    std::filesystem::create_directories(application.path() / "Settings.bundle");
    EXPECT_EQ(registering(), "");
}

TEST_F(SettingsBundle, LogsNothingWhenTheRootIsNoDictionary)
{
    EXPECT_EQ(registering("( a, b )"), "");
    EXPECT_EQ(registering("{ rubbish"), "");
}

TEST_F(SettingsBundle, RefusesADefaultWithoutAKey)
{
    EXPECT_EQ(raisedBy([this] {
        registering("{ PreferenceSpecifiers = ( { DefaultValue = 1; } ); }");
    }).substr(0, 28),
        "NSInvalidArgumentException: ");
}

TEST_F(SettingsBundle, ReadsTheWordsInCapitalsAsBooleans)
{
    EXPECT_STREQ(cast<NSNumber>(converted("YES"_ns))->objCType(), "B");
    EXPECT_TRUE(cast<NSNumber>(converted("YES"_ns))->boolValue());
    EXPECT_FALSE(cast<NSNumber>(converted("NO"_ns))->boolValue());
}

TEST_F(SettingsBundle, LeavesOtherValuesAsTheyAre)
{
    for (NSString* text : { "yes"_ns, "No"_ns, "YES "_ns, ""_ns })
        EXPECT_EQ(converted(text), text);
    const auto number = NSNumber::cls().numberWithInteger(1);
    EXPECT_EQ(converted(number.get()), number);
    EXPECT_FALSE(converted(nullptr));
}

TEST(DefaultsDictionary, ReadsNumbersOutOfValues)
{
    const auto values = makeDictionary({ { "text"_ns, "42"_ns }, { "yes"_ns, "YES"_ns },
        { "number"_ns, NSNumber::cls().numberWithDouble(1.5).get() } });
    EXPECT_EQ(integerForKey(values, "text"_ns), 42);
    EXPECT_EQ(floatForKey(values, "text"_ns), 42.0F);
    EXPECT_TRUE(boolForKey(values, "yes"_ns));
    EXPECT_EQ(integerForKey(values, "number"_ns), 1);
    EXPECT_EQ(floatForKey(values, "number"_ns), 1.5F);
    EXPECT_TRUE(boolForKey(values, "number"_ns));
}

TEST(DefaultsDictionary, AnswersZeroForAnAbsentKey)
{
    const auto values = NSDictionary::cls().dictionary();
    EXPECT_EQ(integerForKey(values, "key"_ns), 0);
    EXPECT_EQ(floatForKey(values, "key"_ns), 0);
    EXPECT_FALSE(boolForKey(values, "key"_ns));
    EXPECT_FALSE(stringForKey(values, "key"_ns));
    EXPECT_FALSE(arrayForKey(values, "key"_ns));
}

TEST(DefaultsDictionary, AnswersTextAndListsUnchecked)
{
    const auto number = NSNumber::cls().numberWithInteger(1);
    const auto values = makeDictionary({ { "key"_ns, number.get() } });
    EXPECT_EQ(Ref<NSObject>(stringForKey(values, "key"_ns)), number.get());
    EXPECT_EQ(Ref<NSObject>(arrayForKey(values, "key"_ns)), number.get());
}

TEST(DefaultsDictionary, StoresNumbers)
{
    const auto values = NSMutableDictionary::cls().dictionary();
    setInteger_forKey(values, INT64_MIN, "integer"_ns);
    setFloat_forKey(values, 0.1F, "float"_ns);
    setBool_forKey(values, true, "bool"_ns);
    EXPECT_EQ(integerForKey(values, "integer"_ns), INT64_MIN);
    EXPECT_STREQ(cast<NSNumber>(values->objectForKey("integer"_ns))->objCType(), "q");
    EXPECT_EQ(floatForKey(values, "float"_ns), 0.1F);
    EXPECT_STREQ(cast<NSNumber>(values->objectForKey("float"_ns))->objCType(), "f");
    EXPECT_STREQ(cast<NSNumber>(values->objectForKey("bool"_ns))->objCType(), "B");
}

TEST_F(DefaultsArchive, KeepsAnyObject)
{
    const auto list = NSArray::cls().arrayWithObjects("a"_ns, "b"_ns);
    archiveObject_forKey(defaults(), list.get(), "key"_ns);
    folder.restart();
    EXPECT_TRUE(defaults()->objectForKey("key"_ns)->isKindOfClass(NSData::cls()));
    EXPECT_TRUE(unarchiveObjectForKey(defaults(), "key"_ns)->isEqual(list.get()));
}

TEST_F(DefaultsArchive, KeepsTheOldValueForNil)
{
    archiveObject_forKey(defaults(), "old"_ns, "key"_ns);
    archiveObject_forKey(defaults(), nullptr, "key"_ns);
    EXPECT_EQ(textOf(unarchiveObjectForKey(defaults(), "key"_ns)), "old");
    const auto values = NSMutableDictionary::cls().dictionary();
    archiveObject_forKey(values, "old"_ns, "key"_ns);
    archiveObject_forKey(values, nullptr, "key"_ns);
    EXPECT_EQ(textOf(unarchiveObjectForKey(values, "key"_ns)), "old");
}

TEST_F(DefaultsArchive, AnswersNothingForAnAbsentKey)
{
    EXPECT_FALSE(unarchiveObjectForKey(defaults(), "key"_ns));
    EXPECT_FALSE(unarchiveObjectForKey(NSDictionary::cls().dictionary(), "key"_ns));
}

TEST_F(DefaultsArchive, RefusesAValueThatIsNoArchive)
{
    const unsigned char rubbish[] { 'r', 'u', 'b', 'b', 'i', 's', 'h', '!', '!' };
    const auto values
        = makeDictionary({ { "data"_ns, dataFrom(rubbish).get() }, { "text"_ns, "text"_ns } });
    constexpr std::string_view kReason
        = "NSInvalidArgumentException: *** -[NSKeyedUnarchiver initForReadingWithData:]: "
          "incomprehensible archive (";
    for (NSString* key : { "data"_ns, "text"_ns })
        EXPECT_TRUE(raisedBy([&] { unarchiveObjectForKey(values, key); }).starts_with(kReason));
    defaults()->setObject_forKey("text"_ns, "key"_ns);
    EXPECT_TRUE(raisedBy([] { unarchiveObjectForKey(defaults(), "key"_ns); }).starts_with(kReason));
}
