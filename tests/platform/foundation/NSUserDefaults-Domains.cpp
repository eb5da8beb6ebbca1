// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSNull.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/UserLocale.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "support/DefaultsFolder.h"
#include "support/Strings.h"
#include "support/VirtualClock.h"

using namespace brindle;

namespace {

/// Gives an environment variable a value, or none, while it lives.
class Variable {
public:
    Variable(const char* name, const char* value)
        : name_(name)
    {
        if (const char* const old = std::getenv(name))
            old_ = old;
        set(value);
    }
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value)
    {
        if (value)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> old_;
};

class DefaultsDomains : public testing::Test {
protected:
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }
    static Ref<NSUserDefaults> suite(NSString* name)
    {
        return alloc<NSUserDefaults>()->initWithSuiteName(name);
    }
    static Ref<NSDictionary> one(NSString* key, NSObject* value)
    {
        return makeDictionary({ { key, value } });
    }
    static std::string text(NSString* key) { return utf8(defaults()->stringForKey(key)); }
    void desktop(const std::string& file, const std::string& contents)
    {
        std::filesystem::create_directories((folder.path() / file).parent_path());
        std::ofstream(folder.path() / file) << contents;
        folder.restart();
    }
    std::string style() { return text("AppleInterfaceStyle"_ns); }

    Variable theme { "GTK_THEME", nullptr };
    Variable kind { "XDG_CURRENT_DESKTOP", nullptr };
    test::VirtualClock clock;
    test::DefaultsFolder folder;
};

}

TEST_F(DefaultsDomains, AreSearchedFromTheCommandLineToTheRegisteredValues)
{
    const auto object = defaults();
    object->registerDefaults(one("key"_ns, "registered"_ns).get());
    EXPECT_EQ(text("key"_ns), "registered");
    object->setPersistentDomain_forName(one("key"_ns, "global"_ns).get(), NSGlobalDomain);
    EXPECT_EQ(text("key"_ns), "global");
    suite("org.example.Suite"_ns)->setObject_forKey("suite"_ns, "key"_ns);
    object->addSuiteNamed("org.example.Suite"_ns);
    EXPECT_EQ(text("key"_ns), "suite");
    object->setObject_forKey("own"_ns, "key"_ns);
    EXPECT_EQ(text("key"_ns), "own");
    object->setVolatileDomain_forName(one("key"_ns, "argument"_ns).get(), NSArgumentDomain);
    EXPECT_EQ(text("key"_ns), "argument");
    EXPECT_EQ(textOf(object->dictionaryRepresentation()->objectForKey("key"_ns)), "argument");
    object->removeSuiteNamed("org.example.Suite"_ns);
}

TEST_F(DefaultsDomains, SearchTheSuiteThatWasAddedLastFirst)
{
    suite("A"_ns)->setObject_forKey("a"_ns, "key"_ns);
    suite("B"_ns)->setObject_forKey("b"_ns, "key"_ns);
    const auto object = make<NSUserDefaults>();
    object->addSuiteNamed("A"_ns);
    object->addSuiteNamed("B"_ns);
    EXPECT_EQ(utf8(object->stringForKey("key"_ns)), "b");
    object->addSuiteNamed("A"_ns);
    EXPECT_EQ(utf8(object->stringForKey("key"_ns)), "a");
    object->removeSuiteNamed("A"_ns);
    EXPECT_EQ(utf8(object->stringForKey("key"_ns)), "b");
    object->removeSuiteNamed("B"_ns);
    EXPECT_FALSE(object->objectForKey("key"_ns));
}

TEST_F(DefaultsDomains, KeepASuiteApartFromTheApplication)
{
    suite("org.example.Suite"_ns)->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
    EXPECT_EQ(utf8(suite("org.example.Suite"_ns)->stringForKey("key"_ns)), "value");
}

TEST_F(DefaultsDomains, KeepASuiteInAFileOfItsName)
{
    suite("org.example.Suite"_ns)->setObject_forKey("value"_ns, "key"_ns);
    suite("org.example.Suite"_ns)->synchronize();
    EXPECT_TRUE(std::filesystem::exists(folder.file("org.example.Suite")));
}

TEST_F(DefaultsDomains, NeverLeaveTheFolderByTheirName)
{
    for (NSString* name : { "../outside"_ns, "/outside"_ns, ".."_ns, "."_ns }) {
        suite(name)->setObject_forKey("value"_ns, "key"_ns);
        EXPECT_TRUE(suite(name)->synchronize());
    }
    EXPECT_TRUE(std::filesystem::exists(folder.file("%2E.%2Foutside")));
    EXPECT_TRUE(std::filesystem::exists(folder.file("%2Foutside")));
    EXPECT_TRUE(std::filesystem::exists(folder.file("%2E.")));
    EXPECT_TRUE(std::filesystem::exists(folder.file("%2E")));
}

TEST_F(DefaultsDomains, AreInMemoryWhereTheNameIsTooLongForAFile)
{
    const auto object = suite(stringFrom(std::string(4096, 'x')).get());
    object->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_FALSE(object->synchronize());
    EXPECT_EQ(utf8(object->stringForKey("key"_ns)), "value");
}

TEST_F(DefaultsDomains, HaveNoSuiteWithoutAName)
{
    EXPECT_FALSE(suite(""_ns));
    EXPECT_FALSE(suite(NSGlobalDomain));
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_EQ(utf8(suite(nullptr)->stringForKey("key"_ns)), "value");
    defaults()->addSuiteNamed(nullptr);
    defaults()->removeSuiteNamed(nullptr);
}

TEST_F(DefaultsDomains, AnswerTheValuesOfAPersistentDomain)
{
    EXPECT_FALSE(defaults()->persistentDomainForName("D"_ns));
    defaults()->setPersistentDomain_forName(one("key"_ns, "value"_ns).get(), "D"_ns);
    EXPECT_TRUE(
        defaults()->persistentDomainForName("D"_ns)->isEqual(one("key"_ns, "value"_ns).get()));
}

TEST_F(DefaultsDomains, ReplaceAllOfAPersistentDomain)
{
    defaults()->setPersistentDomain_forName(one("old"_ns, "value"_ns).get(), "D"_ns);
    folder.restart();
    defaults()->setPersistentDomain_forName(one("new"_ns, "value"_ns).get(), "D"_ns);
    folder.restart();
    EXPECT_TRUE(
        defaults()->persistentDomainForName("D"_ns)->isEqual(one("new"_ns, "value"_ns).get()));
}

TEST_F(DefaultsDomains, AreGoneAfterARemoval)
{
    defaults()->setPersistentDomain_forName(one("key"_ns, "value"_ns).get(), "D"_ns);
    folder.restart();
    defaults()->removePersistentDomainForName("D"_ns);
    folder.restart();
    EXPECT_FALSE(defaults()->persistentDomainForName("D"_ns));
}

TEST_F(DefaultsDomains, RefuseToPersistWhatIsNoPropertyList)
{
    EXPECT_NE(raisedBy([] {
        defaults()->setPersistentDomain_forName(
            one("key"_ns, NSNull::cls().null().get()).get(), "D"_ns);
    }),
        "");
}

TEST_F(DefaultsDomains, AnswerAVolatileDomain)
{
    defaults()->setVolatileDomain_forName(one("key"_ns, "value"_ns).get(), "V"_ns);
    EXPECT_TRUE(defaults()->volatileDomainNames()->containsObject("V"_ns));
    EXPECT_TRUE(
        defaults()->volatileDomainForName("V"_ns)->isEqual(one("key"_ns, "value"_ns).get()));
    defaults()->removeVolatileDomainForName("V"_ns);
    EXPECT_FALSE(defaults()->volatileDomainForName("V"_ns));
    EXPECT_FALSE(defaults()->volatileDomainNames()->containsObject("V"_ns));
}

TEST_F(DefaultsDomains, RefuseASecondVolatileDomainOfAName)
{
    defaults()->setVolatileDomain_forName(one("key"_ns, "value"_ns).get(), "V"_ns);
    EXPECT_EQ(raisedBy([] {
        defaults()->setVolatileDomain_forName(one("key"_ns, "other"_ns).get(), "V"_ns);
    }),
        "NSInvalidArgumentException: a volatile domain named V already exists");
    defaults()->removeVolatileDomainForName("V"_ns);
}

TEST_F(DefaultsDomains, AnswerTheRegisteredValuesAsADomain)
{
    defaults()->registerDefaults(one("key"_ns, "value"_ns).get());
    EXPECT_EQ(
        textOf(defaults()->volatileDomainForName(NSRegistrationDomain)->objectForKey("key"_ns)),
        "value");
    defaults()->removeVolatileDomainForName(NSRegistrationDomain);
    EXPECT_FALSE(defaults()->objectForKey("key"_ns));
    defaults()->setVolatileDomain_forName(one("key"_ns, "again"_ns).get(), NSRegistrationDomain);
    EXPECT_EQ(text("key"_ns), "again");
}

TEST_F(DefaultsDomains, HoldTheLanguagesOfTheSession)
{
    UserLocale::use("de_CH", { "de-CH", "fr" });
    folder.restart();
    EXPECT_TRUE(defaults()
                    ->arrayForKey("AppleLanguages"_ns)
                    ->isEqual(NSArray::cls().arrayWithObjects("de-CH"_ns, "fr"_ns).get()));
    EXPECT_EQ(text("AppleLocale"_ns), "de_CH");
    UserLocale::useSystem();
}

TEST_F(DefaultsDomains, ReadTheCommandLine)
{
    using defaults::valuesOfArguments;
    EXPECT_EQ(textOf(valuesOfArguments({ "program", "-Key", "value" })), "{\n    Key = value;\n}");
    EXPECT_TRUE(valuesOfArguments({ "program", "-Offset", "-5" })
                    ->isEqual(one("Offset"_ns, "-5"_ns).get()));
    EXPECT_TRUE(valuesOfArguments({ "program", "-A", "1", "-B", "2" })
                    ->isEqual(makeDictionary({ { "A"_ns, "1"_ns }, { "B"_ns, "2"_ns } }).get()));
}

TEST_F(DefaultsDomains, ReadPropertyListsOnTheCommandLine)
{
    const auto values = defaults::valuesOfArguments({ "program", "-List", "(a, b)", "-Odd", "(a" });
    EXPECT_TRUE(values->objectForKey("List"_ns)->isEqual(
        NSArray::cls().arrayWithObjects("a"_ns, "b"_ns).get()));
    EXPECT_EQ(textOf(values->objectForKey("Odd"_ns)), "(a");
}

TEST_F(DefaultsDomains, PassOverOtherArguments)
{
    using defaults::valuesOfArguments;
    EXPECT_EQ(valuesOfArguments({})->count(), 0U);
    EXPECT_EQ(valuesOfArguments({ "-program", "file" })->count(), 0U);
    EXPECT_EQ(valuesOfArguments({ "program", "--long", "value" })->count(), 0U);
    EXPECT_EQ(valuesOfArguments({ "program", "-", "value" })->count(), 0U);
    EXPECT_EQ(valuesOfArguments({ "program", "-last" })->count(), 0U);
    EXPECT_EQ(valuesOfArguments({ "program", "-5", "value" })->count(), 0U);
    EXPECT_TRUE(valuesOfArguments({ "program", "-a", "-b", "value" })
                    ->isEqual(one("b"_ns, "value"_ns).get()));
}

TEST_F(DefaultsDomains, HaveNoInterfaceStyleOnALightDesktop)
{
    EXPECT_EQ(style(), "(nil)");
    desktop("gtk-3.0/settings.ini", "[Settings]\ngtk-theme-name=Plain\n");
    EXPECT_EQ(style(), "(nil)");
}

TEST_F(DefaultsDomains, AreDarkWhereTheDesktopAsksForIt)
{
    desktop("gtk-4.0/settings.ini", "[Settings]\ngtk-application-prefer-dark-theme = true\n");
    EXPECT_EQ(style(), "Dark");
}

TEST_F(DefaultsDomains, AreDarkUnderADarkTheme)
{
    desktop("gtk-3.0/settings.ini", "[Settings]\ngtk-theme-name=Plain-Dark");
    EXPECT_EQ(style(), "Dark");
}

TEST_F(DefaultsDomains, AreDarkUnderADarkColourScheme)
{
    const Variable kde("XDG_CURRENT_DESKTOP", "KDE");
    desktop("kdeglobals", "[General]\nColorScheme=PlainDark\n");
    EXPECT_EQ(style(), "Dark");
}

TEST_F(DefaultsDomains, PreferTheThemeOfTheEnvironment)
{
    const Variable dark("GTK_THEME", "Plain:dark");
    folder.restart();
    EXPECT_EQ(style(), "Dark");
    const Variable light("GTK_THEME", "Plain");
    desktop("gtk-3.0/settings.ini", "gtk-theme-name=Plain-dark\n");
    EXPECT_EQ(style(), "(nil)");
}

TEST_F(DefaultsDomains, FollowTheDesktopAfterASecond)
{
    EXPECT_EQ(style(), "(nil)");
    std::filesystem::create_directories(folder.path() / "gtk-3.0");
    std::ofstream(folder.path() / "gtk-3.0/settings.ini") << "gtk-theme-name=Plain-dark\n";
    EXPECT_EQ(style(), "(nil)");
    clock.advance(1);
    EXPECT_EQ(style(), "Dark");
}

TEST_F(DefaultsDomains, NeverWaitForAPipeInPlaceOfTheDesktopsFile)
{
    std::filesystem::create_directories(folder.path() / "gtk-3.0");
    ASSERT_EQ(::mkfifo((folder.path() / "gtk-3.0/settings.ini").c_str(), 0600), 0);
    folder.restart();
    EXPECT_EQ(style(), "(nil)");
}

TEST_F(DefaultsDomains, PreferTheUsersOwnInterfaceStyle)
{
    desktop("gtk-3.0/settings.ini", "gtk-theme-name=Plain-dark\n");
    defaults()->setPersistentDomain_forName(
        one("AppleInterfaceStyle"_ns, "Mine"_ns).get(), NSGlobalDomain);
    EXPECT_EQ(style(), "Mine");
}

TEST_F(DefaultsDomains, LieInTheConfigurationFolder)
{
    const std::string path = folder.path().string();
    const Variable config("XDG_CONFIG_HOME", path.c_str());
    setDefaultsFolder(nullptr);
    EXPECT_EQ(defaults::Store::root(), path);
}

TEST_F(DefaultsDomains, LieInTheHomeFolderWithoutAConfigurationFolder)
{
    const Variable home("HOME", "/somewhere");
    for (const char* const none : { static_cast<const char*>(nullptr), "", "relative" }) {
        const Variable config("XDG_CONFIG_HOME", none);
        setDefaultsFolder(nullptr);
        EXPECT_EQ(defaults::Store::root(), "/somewhere/.config");
    }
}

TEST_F(DefaultsDomains, AreInMemoryWithoutAHomeFolder)
{
    const Variable home("HOME", nullptr);
    const Variable config("XDG_CONFIG_HOME", nullptr);
    setDefaultsFolder(nullptr);
    defaults()->registerDefaults(one("registered"_ns, "value"_ns).get());
    EXPECT_EQ(text("registered"_ns), "value");
    defaults()->setObject_forKey("value"_ns, "key"_ns);
    EXPECT_EQ(text("key"_ns), "value");
    EXPECT_FALSE(defaults()->synchronize());
    EXPECT_EQ(text("key"_ns), "value");
}
