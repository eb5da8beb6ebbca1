// SPDX-License-Identifier: Apache-2.0
#include "foundation/desktop/SettingsPortalPrivate.h"

#include <gtest/gtest.h>

#include "foundation/NSNotificationCenter.h"
#include "foundation/NSString.h"
#include "foundation/NSUserDefaults.h"
#include "support/DefaultsFolder.h"
#include "support/MessageBus.h"
#include "support/Strings.h"
#include "support/Variables.h"

#include <fstream>
#include <stdexcept>
#include <vector>

using namespace brindle;
using desktop::ColorScheme;
using desktop::SettingsPortal;
using test::runUntil;
using Answers = test::SettingsDesk::Answers;

namespace {

class Portal : public testing::Test {
protected:
    void listen(const std::string& address)
    {
        portal = SettingsPortal::open(
            address, [this](ColorScheme scheme) { heard.push_back(scheme); });
    }
    bool hears(std::size_t times)
    {
        return runUntil([&] { return heard.size() >= times; });
    }
    /// Whether it hears nothing of what a desk answers, although it hears what comes after that.
    void expectDeafFor(Answers answers)
    {
        test::SettingsDesk desk(bus, answers, 1);
        listen(bus.address());
        ASSERT_TRUE(runUntil([&] { return desk.questions() > 0; }));
        desk.announce(2);
        ASSERT_TRUE(hears(1));
        EXPECT_EQ(heard, std::vector { ColorScheme::light });
    }

    test::MessageBus bus;
    std::unique_ptr<SettingsPortal> portal;
    std::vector<ColorScheme> heard;
};

class StyleOfTheDesktop : public testing::Test {
protected:
    static std::string style()
    {
        return utf8(
            NSUserDefaults::cls().standardUserDefaults()->stringForKey("AppleInterfaceStyle"_ns));
    }
    void preferDarkInFiles()
    {
        std::filesystem::create_directories(folder.path() / "gtk-3.0");
        std::ofstream(folder.path() / "gtk-3.0/settings.ini") << "gtk-theme-name=Plain-dark\n";
        folder.restart();
    }

    test::Variables plain { { "GTK_THEME", "" }, { "XDG_CURRENT_DESKTOP", "" } };
    test::DefaultsFolder folder;
};

}

TEST_F(Portal, AnswersWhatTheFirstVersionWrapsTwice)
{
    test::SettingsDesk desk(bus, Answers::firstVersion, 1);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    EXPECT_EQ(heard, std::vector { ColorScheme::dark });
    EXPECT_EQ(desk.questions(), 2);
}

TEST_F(Portal, IsAskedOnceInItsSecondVersion)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 2);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    EXPECT_EQ(heard, std::vector { ColorScheme::light });
    EXPECT_EQ(desk.questions(), 1);
}

TEST_F(Portal, IsHeardWheneverTheSettingChanges)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 0);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    desk.announce(1);
    ASSERT_TRUE(hears(2));
    desk.announce(2);
    ASSERT_TRUE(hears(3));
    EXPECT_EQ(
        heard, (std::vector { ColorScheme::noPreference, ColorScheme::dark, ColorScheme::light }));
}

TEST_F(Portal, SaysNoPreferenceWithANumberOfLaterDays)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 7);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    EXPECT_EQ(heard, std::vector { ColorScheme::noPreference });
}

TEST_F(Portal, IsNotHeardForOtherSettings)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 1);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    desk.announce(2, "org.freedesktop.appearance", "contrast");
    desk.announce(2, "org.gnome.desktop.interface", "color-scheme");
    desk.announce(1);
    ASSERT_TRUE(hears(2));
    EXPECT_EQ(heard, (std::vector { ColorScheme::dark, ColorScheme::dark }));
}

TEST_F(Portal, IsIgnoredWhileItAnnouncesWhatIsNoNumber)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 1);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    desk.announceText("light");
    desk.announce(0);
    ASSERT_TRUE(hears(2));
    EXPECT_EQ(heard, (std::vector { ColorScheme::dark, ColorScheme::noPreference }));
}

TEST_F(Portal, IsIgnoredForARefusal) { expectDeafFor(Answers::refusal); }
TEST_F(Portal, IsIgnoredForAText) { expectDeafFor(Answers::text); }
TEST_F(Portal, IsIgnoredForANumberWrappedWithoutEnd) { expectDeafFor(Answers::wrappings); }
TEST_F(Portal, IsIgnoredForAnAnswerWithNothingInIt) { expectDeafFor(Answers::nothing); }

TEST_F(Portal, SetsNoTimerWhileItIsSilent)
{
    test::SettingsDesk desk(bus, Answers::silence, 1);
    listen(bus.address());
    ASSERT_TRUE(runUntil([&] { return desk.questions() > 0; }));
    EXPECT_EQ(
        NSRunLoop::cls().mainRunLoop()->limitDateForMode(NSDefaultRunLoopMode).get(), nullptr);
    desk.announce(1);
    ASSERT_TRUE(hears(1));
}

TEST_F(Portal, IsHeardWhenItComesLaterThanTheQuestion)
{
    listen(bus.address());
    NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    test::SettingsDesk desk(bus, Answers::secondVersion, 0);
    // The bus hears the subscription at the latest when it has answered the question.
    ASSERT_TRUE(runUntil([&] {
        desk.announce(1);
        return !heard.empty();
    }));
    EXPECT_EQ(heard.back(), ColorScheme::dark);
}

TEST_F(Portal, IsClosedByTheEndOfTheBusAndNothingElseIs)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 1);
    listen(bus.address());
    ASSERT_TRUE(hears(1));
    bus.end();
    EXPECT_TRUE(runUntil([&] { return !portal->isOpen(); }));
    EXPECT_EQ(heard.size(), 1u);
    // Nothing is left that could keep the loop awake.
    EXPECT_FALSE(NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode));
}

TEST_F(Portal, LetsWhatAHostThrowsOutOfTheLoop)
{
    test::SettingsDesk desk(bus, Answers::secondVersion, 1);
    portal = SettingsPortal::open(
        bus.address(), [](ColorScheme) { throw std::runtime_error("from the host"); });
    EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
    EXPECT_TRUE(portal->isOpen());
}

TEST_F(Portal, IsNotLookedForOnOtherMachines)
{
    for (const char* const address : { "", "disabled:", "autolaunch:", "tcp:host=localhost,port=1",
             "unixexec:path=/bin/true" }) {
        listen(address);
        EXPECT_EQ(portal, nullptr) << address;
    }
}

TEST_F(Portal, IsNotThereWhereNobodyListens)
{
    for (const char* const address : { "unix:path=/nonexistent/bus", "unix:", "unix:nonsense",
             "unix:path=/nonexistent/bus;tcp:host=localhost,port=1" }) {
        listen(address);
        EXPECT_EQ(portal, nullptr) << address;
    }
}

TEST(SessionBus, IsTheOneOfTheEnvironment)
{
    const test::Variables set { { "DBUS_SESSION_BUS_ADDRESS", "unix:abstract=here" } };
    EXPECT_EQ(SettingsPortal::sessionAddress(), "unix:abstract=here");
}

TEST(SessionBus, IsTheSocketOfTheSessionsFolderOtherwise)
{
    const test::Variables set { { "DBUS_SESSION_BUS_ADDRESS", "" },
        { "XDG_RUNTIME_DIR", "/run/user/7" } };
    EXPECT_EQ(SettingsPortal::sessionAddress(), "unix:path=/run/user/7/bus");
}

TEST(SessionBus, IsNoneWithoutASession)
{
    const test::Variables set { { "DBUS_SESSION_BUS_ADDRESS", "" }, { "XDG_RUNTIME_DIR", "" } };
    EXPECT_EQ(SettingsPortal::sessionAddress(), "");
}

TEST_F(StyleOfTheDesktop, IsDarkWhereDarkIsPreferred)
{
    desktop::setColorScheme(ColorScheme::dark);
    EXPECT_EQ(style(), "Dark");
}

TEST_F(StyleOfTheDesktop, IsLightWhereLightIsPreferredWhateverItsFilesSay)
{
    preferDarkInFiles();
    ASSERT_EQ(style(), "Dark");
    desktop::setColorScheme(ColorScheme::light);
    EXPECT_EQ(style(), "(nil)");
}

TEST_F(StyleOfTheDesktop, IsThatOfItsFilesWithoutAPreference)
{
    preferDarkInFiles();
    desktop::setColorScheme(ColorScheme::light);
    desktop::setColorScheme(ColorScheme::noPreference);
    EXPECT_EQ(style(), "Dark");
}

TEST_F(StyleOfTheDesktop, PostsAChangeOnlyWhereItMakesADifference)
{
    int posts = 0;
    const Ref<NSObject> observer
        = NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSUserDefaultsDidChangeNotification, nullptr, nullptr,
            [&](NSNotification*) { ++posts; });
    desktop::setColorScheme(ColorScheme::dark);
    desktop::setColorScheme(ColorScheme::dark);
    EXPECT_EQ(posts, 1);
    desktop::setColorScheme(ColorScheme::light);
    EXPECT_EQ(posts, 2);
    desktop::setColorScheme(ColorScheme::noPreference);
    EXPECT_EQ(posts, 2);
    NSNotificationCenter::cls().defaultCenter()->removeObserver(observer.get());
}
