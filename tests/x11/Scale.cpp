// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "menubar/BRCustomMenubar.h"
#include "support/DisplayLog.h"
#include "support/PublishedSettings.h"

namespace brindle::display {
namespace {

    constexpr CGRect kScaledFrame { { 100, 100 }, { 100, 50 } };
    constexpr int kOnce = 1024; // one dot, as settings count

    test::PublishedSettings scaled(int windows, int density = 96)
    {
        return test::PublishedSettings()
            .text("Net/ThemeName", "Plain")
            .number("Gdk/WindowScalingFactor", windows)
            .number("Gdk/UnscaledDPI", density * kOnce);
    }

    /// A program that publishes the desktop's settings.
    class SettingsProgram {
    public:
        SettingsProgram(XDriver& driver, const test::PublishedSettings& settings)
            : driver_(driver)
            , window_(xcb_generate_id(driver.raw()))
        {
            xcb_create_window(driver.raw(), 0, window_, driver.root(), -10, -10, 1, 1, 0,
                XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
            publish(settings);
            const xcb_atom_t selection = driver.atom("_XSETTINGS_S0");
            xcb_set_selection_owner(driver.raw(), window_, selection, XCB_CURRENT_TIME);
            xcb_client_message_event_t news {};
            news.response_type = XCB_CLIENT_MESSAGE;
            news.format = 32;
            news.window = driver.root();
            news.type = driver.atom("MANAGER");
            news.data.data32[1] = selection;
            news.data.data32[2] = window_;
            xcb_send_event(driver.raw(), 0, driver.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                reinterpret_cast<const char*>(&news));
            driver.sync();
        }
        ~SettingsProgram()
        {
            xcb_destroy_window(driver_.raw(), window_);
            driver_.sync();
        }
        SettingsProgram(const SettingsProgram&) = delete;
        SettingsProgram& operator=(const SettingsProgram&) = delete;

        void publish(const test::PublishedSettings& settings)
        {
            const xcb_atom_t property = driver_.atom("_XSETTINGS_SETTINGS");
            const auto size = static_cast<std::uint32_t>(settings.bytes().size());
            xcb_change_property(driver_.raw(), XCB_PROP_MODE_REPLACE, window_, property, property,
                8, size, settings.bytes().data());
            driver_.sync();
        }

    private:
        XDriver& driver_;
        xcb_window_t window_;
    };

    using X11Scale = X11Test;

    TEST_F(X11Scale, IsWhatTheDesktopsSettingsSay)
    {
        const SettingsProgram program(driver, scaled(2, 72));
        reopen({});
        EXPECT_EQ(display->screens()[0].scale, 1.5);
    }

    TEST_F(X11Scale, FollowsTheDesktopsSettingsWhileTheyChange)
    {
        const auto surface = shown({ .frame = kScaledFrame });
        SettingsProgram program(driver, scaled(2));
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(surface->scale(), 2);
        EXPECT_EQ(surface->pixelSize(), (PixelSize { 200, 100 }));
        program.publish(scaled(1, 120));
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(surface->scale(), 1.25);
        EXPECT_EQ(surface->frame(), kScaledFrame);
    }

    TEST_F(X11Scale, CountsInTheLimitsOfASizeToo)
    {
        const auto surface = shown({ .frame = kScaledFrame, .title = "limited" });
        surface->setSizeLimits({ 80, 40 }, { 0, 0 });
        const SettingsProgram program(driver, scaled(2));
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        settle();
        const auto hints = driver.property(windowOf("limited"), "WM_NORMAL_HINTS");
        ASSERT_EQ(hints.size(), 18u);
        EXPECT_EQ(hints[5], 160u);
        EXPECT_EQ(hints[6], 80u);
    }

    TEST_F(X11Scale, IsOneAgainWhenTheProgramOfTheSettingsEnds)
    {
        {
            const SettingsProgram program(driver, scaled(2));
            ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
            EXPECT_EQ(display->screens()[0].scale, 2);
        }
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(display->screens()[0].scale, 1);
    }

    TEST_F(X11Scale, IsTheUsersBeforeTheDesktops)
    {
        const SettingsProgram program(driver, scaled(2));
        reopen({ { "BRINDLE_SCALE", "1.5" } });
        EXPECT_EQ(display->screens()[0].scale, 1.5);
    }

    TEST_F(X11Scale, IsThatOfTheResourcesWhereTheSettingsSayNone)
    {
        const std::string resources = "Xft.dpi: 144\n";
        xcb_change_property(driver.raw(), XCB_PROP_MODE_REPLACE, driver.root(),
            XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(resources.size()), resources.data());
        SettingsProgram program(driver, test::PublishedSettings().text("Net/ThemeName", "Plain"));
        reopen({});
        EXPECT_EQ(display->screens()[0].scale, 1.5);
        program.publish(scaled(3));
        EXPECT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(display->screens()[0].scale, 3);
        xcb_delete_property(driver.raw(), driver.root(), XCB_ATOM_RESOURCE_MANAGER);
    }

    TEST_F(X11Scale, SurvivesSettingsThatAreNone)
    {
        SettingsProgram program(driver, scaled(2));
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        const std::array<std::uint32_t, 2> words { ~0U, ~0U };
        driver.setProperty(driver.root(), "_XSETTINGS_SETTINGS", "INTEGER", words);
        program.publish(test::PublishedSettings().number("Gdk/WindowScalingFactor", 1 << 30));
        ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(display->screens()[0].scale, 16);
    }

    /// A bar along the top, as an application has it, and what the window manager sees of it.
    class BarOfScale : public X11Test {
    protected:
        BarOfScale()
        {
            installed_ = installDisplay(std::move(display));
            bar_ = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
            bar_->setTitle("bar of scale"_ns);
            bar_->load();
            bar_->orderFrontRegardless(); // the application need not be active
            observer_ = NSNotificationCenter::cls()
                            .defaultCenter()
                            ->addObserverForName_object_queue_usingBlock(
                                NSApplicationDidChangeScreenParametersNotification, nullptr,
                                nullptr, [this](NSNotification*) { bar_->setFrame(); });
        }
        ~BarOfScale() override
        {
            NSNotificationCenter::cls().defaultCenter()->removeObserver(observer_.get());
            cast<NSWindow>(bar_->childWindows()->firstObject())->close();
            bar_->close();
            NSApplication::cls().sharedApplication()->processEvents();
            endInstalled(*installed_);
        }

        std::vector<std::uint32_t> partial()
        {
            return driver.property(windowOf("bar of scale"), "_NET_WM_STRUT_PARTIAL");
        }
        std::vector<std::uint32_t> plain()
        {
            return driver.property(windowOf("bar of scale"), "_NET_WM_STRUT");
        }
        /// Answers whether both struts, and with a manager the work area, come to keep so many pixels free.
        bool keepsFree(std::uint32_t pixels)
        {
            using Values = std::vector<std::uint32_t>;
            return becomes([&] {
                const auto area = driver.property(driver.root(), "_NET_WORKAREA");
                return partial() == Values { 0, 0, pixels, 0, 0, 0, 0, 0, 0, 1279, 0, 0 }
                && plain() == Values { 0, 0, pixels, 0 }
                && (!hasManager() || (area.size() >= 4 && area[1] == pixels));
            });
        }

        Display* installed_ = nullptr;
        Ref<BRCustomMenubar> bar_;
        Ref<NSObject> observer_; // what a host does when its screens change
    };

    TEST_F(BarOfScale, KeepsItsStripThroughChangesOfTheScale)
    {
        EXPECT_TRUE(keepsFree(22));
        SettingsProgram program(driver, scaled(2));
        EXPECT_TRUE(keepsFree(44));
        EXPECT_EQ(bar_->frame(), NSMakeRect(0, 378, 640, 22));
        program.publish(scaled(1, 120));
        EXPECT_TRUE(keepsFree(28)); // 27.5
        program.publish(scaled(1));
        EXPECT_TRUE(keepsFree(22));
        EXPECT_EQ(bar_->frame(), NSMakeRect(0, 778, 1280, 22));
    }

    TEST_F(BarOfScale, GivesItsStripBackAfterAChangeOfTheScale)
    {
        EXPECT_TRUE(keepsFree(22));
        const SettingsProgram program(driver, scaled(2));
        EXPECT_TRUE(keepsFree(44));
        bar_->orderOut(nullptr);
        EXPECT_TRUE(becomes([this] {
            const auto area = driver.property(driver.root(), "_NET_WORKAREA");
            return partial().empty() && plain().empty()
                && (!hasManager() || (area.size() >= 4 && area[1] == 0));
        }));
        bar_->orderFrontRegardless();
        EXPECT_TRUE(keepsFree(44));
    }

}
}
