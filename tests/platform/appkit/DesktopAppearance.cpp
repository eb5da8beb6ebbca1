// SPDX-License-Identifier: Apache-2.0
#include "appkit/application/DesktopAppearancePrivate.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSWorkspace.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSString.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    using appkit::Appearance;

    class DesktopAppearance : public testing::Test {
    protected:
        DesktopAppearance() { appkit::followDesktopAppearance(); }
        ~DesktopAppearance() override
        {
            appkit::followDesktopAppearance();
            choose(nullptr);
            appkit::takeDesktopAppearance();
        }
        static void choose(NSString* style)
        {
            const auto defaults = NSUserDefaults::cls().standardUserDefaults();
            if (style)
                defaults->setObject_forKey(style, "AppleInterfaceStyle"_ns);
            else
                defaults->removeObjectForKey("AppleInterfaceStyle"_ns);
        }
        static Appearance taken()
        {
            appkit::takeDesktopAppearance();
            return appkit::appearance();
        }

        test::DefaultsFolder folder;
    };

    TEST_F(DesktopAppearance, IsDarkWhileTheDefaultsHaveAStyle)
    {
        EXPECT_EQ(taken(), Appearance::light);
        choose("Whatever"_ns);
        EXPECT_EQ(taken(), Appearance::dark);
        choose(nullptr);
        EXPECT_EQ(taken(), Appearance::light);
    }

    TEST_F(DesktopAppearance, GivesWayToWhatTheHostHasChosen)
    {
        choose("Dark"_ns);
        appkit::setAppearance(Appearance::light);
        EXPECT_EQ(taken(), Appearance::light);
        appkit::followDesktopAppearance();
        EXPECT_EQ(appkit::appearance(), Appearance::dark);
    }

    TEST_F(DesktopAppearance, DrawsWindowsAnewOnlyWhenItChanges)
    {
        HeadlessScreen screen;
        choose("Dark"_ns);
        appkit::takeDesktopAppearance();
        EXPECT_TRUE(screen.window().viewsNeedDisplay());
        screen.process();
        appkit::takeDesktopAppearance();
        EXPECT_FALSE(screen.window().viewsNeedDisplay());
    }

    TEST_F(DesktopAppearance, DrawsWindowsAnewWhenTheHostChoosesAnother)
    {
        HeadlessScreen screen;
        screen.process();
        appkit::setAppearance(Appearance::light);
        EXPECT_FALSE(screen.window().viewsNeedDisplay());
        appkit::setAppearance(Appearance::dark);
        EXPECT_TRUE(screen.window().viewsNeedDisplay());
    }

    TEST_F(DesktopAppearance, TellsThatSystemColorsAreOthersWheneverItChanges)
    {
        std::vector<Appearance> told;
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> observer = center->addObserverForName_object_queue_usingBlock(
            NSSystemColorsDidChangeNotification, nullptr, nullptr,
            [&](NSNotification*) { told.push_back(appkit::appearance()); });
        appkit::setAppearance(Appearance::light); // what it was
        appkit::setAppearance(Appearance::dark);
        appkit::followDesktopAppearance();
        choose("Dark"_ns);
        appkit::takeDesktopAppearance();
        center->removeObserver(observer.get());
        EXPECT_EQ(told,
            (std::vector<Appearance> { Appearance::dark, Appearance::light, Appearance::dark }));
    }

    TEST_F(DesktopAppearance, IsNotAskedForInMemory)
    {
        choose("Dark"_ns);
        HeadlessScreen screen;
        EXPECT_EQ(appkit::appearance(), Appearance::light);
    }

}
}
