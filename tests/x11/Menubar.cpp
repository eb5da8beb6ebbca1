// SPDX-License-Identifier: Apache-2.0
#include "menubar/BRCustomMenubar.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow+ScreenEdge.h"
#include "foundation/NSArray.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "shell/OSWindow.h"
#include "support/ActionLog.h"

namespace brindle {
namespace {

    using display::becomes;

    /// A bar with one menu and an ordinary window, on the server of the environment, which another client watches.
    class X11Menubar : public display::X11Test {
    protected:
        X11Menubar()
        {
            application = NSApplication::cls().sharedApplication();
            log->setReaction([this](NSObject*) { ++chosen; });
            installed_ = installDisplay(std::move(display));
            window = alloc<OSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(300, 200, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true);
            window->setReleasedWhenClosed(false);
            window->makeKeyAndOrderFront(nullptr);
            EXPECT_TRUE(becomes([&] { return application->isActive(); }));
        }
        ~X11Menubar() override
        {
            if (bar) {
                views()->close();
                bar->close();
            }
            window->close();
            application->processEvents();
            endInstalled(*installed_);
        }

        void load()
        {
            bar = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
            bar->load();
            const Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle("File"_ns);
            menu->addItemWithTitle_action_keyEquivalent("Act"_ns, selector<"act:">, ""_ns)
                ->setTarget(log.get());
            button->setTitle("File"_ns);
            button->setMenu(menu.get());
            button->sizeToFit();
            bar->addMenubarView(button.get());
            settle();
        }
        Ref<NSWindow> views() const { return cast<NSWindow>(bar->childWindows()->firstObject()); }
        void settle()
        {
            becomes([] { return false; }, 30);
        }

        // Pixels of the screen, y down, of a place in the bar's row as it is shown.
        int xOfButton() const
        {
            const NSRect rect = button->window()->convertRectToScreen(
                button->convertRect_toView(button->bounds(), nullptr));
            return static_cast<int>(NSMidX(rect));
        }

        /// Answers the upper edge of the highest window on the screen, pixels from the top.
        int topOfHighest()
        {
            auto* const reply = xcb_get_geometry_reply(
                driver.raw(), xcb_get_geometry(driver.raw(), driver.stacking().back()), nullptr);
            const int top = reply ? reply->y : -1;
            std::free(reply);
            return top;
        }
        /// Answers whether the window manager tells others of a window.
        bool isListed(xcb_window_t other)
        {
            const auto all = driver.property(driver.root(), "_NET_CLIENT_LIST");
            return std::find(all.begin(), all.end(), other) != all.end();
        }
        std::uint32_t workAreaTop()
        {
            const auto area = driver.property(driver.root(), "_NET_WORKAREA");
            return area.size() >= 4 ? area[1] : 0;
        }

        display::Display* installed_ = nullptr; // the application's
        Ref<NSApplication> application;
        Ref<NSWindow> window;
        Ref<BRCustomMenubar> bar;
        Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
        Ref<ActionLog> log = make<ActionLog>();
        display::WhileTracking tracking;
        int chosen = 0;
    };

    constexpr std::uint8_t kDown = 116;
    constexpr std::uint8_t kReturn = 36;
    constexpr std::uint8_t kEscape = 9;

    TEST_F(X11Menubar, SendsWhatIsChosenFromTheMenuOfAClickedButton)
    {
        load();
        tracking.at(0.5, [this] { driver.tap(kDown); });
        tracking.at(0.8, [this] { driver.tap(kReturn); });
        tracking.at(4, [this] { button->menu()->cancelTracking(); });
        driver.click(xOfButton(), 11);
        EXPECT_TRUE(becomes([this] { return chosen == 1; }));
        EXPECT_TRUE(window->isKeyWindow());
    }

    TEST_F(X11Menubar, OpensItsMenuAboveEverythingFivePixelsLower)
    {
        load();
        int top = 0;
        tracking.at(0.5, [&] { top = topOfHighest(); });
        tracking.at(0.7, [this] { driver.tap(kEscape); });
        tracking.at(4, [this] { button->menu()->cancelTracking(); });
        driver.click(xOfButton(), 11);
        EXPECT_TRUE(becomes([&] { return top > 0; }));
        EXPECT_EQ(top, 27);
    }

    TEST_F(X11Menubar, OpensItsMenuBelowTheBarWhereThatStandsBelowAPanel)
    {
        if (!hasManager())
            return;
        const xcb_window_t panel = xcb_generate_id(driver.raw());
        xcb_create_window(driver.raw(), XCB_COPY_FROM_PARENT, panel, driver.root(), 0, 0, 1280, 24,
            0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        const std::array<std::uint32_t, 1> dock { driver.atom("_NET_WM_WINDOW_TYPE_DOCK") };
        driver.setProperty(panel, "_NET_WM_WINDOW_TYPE", "ATOM", dock);
        const std::array<std::uint32_t, 18> place { 1 }; // where the user wants it
        driver.setProperty(panel, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", place);
        const std::array<std::uint32_t, 4> strut { 0, 0, 24, 0 };
        driver.setProperty(panel, "_NET_WM_STRUT", "CARDINAL", strut);
        xcb_map_window(driver.raw(), panel);
        driver.sync();
        // Some managers keep the other windows away only where a panel names the part of the edge too.
        EXPECT_TRUE(becomes([&] { return isListed(panel); }));
        load();
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeBelowPanel);
        EXPECT_EQ(NSMaxY(bar->frame()), 800);
        int top = 0;
        tracking.at(0.5, [&] { top = topOfHighest(); });
        tracking.at(0.7, [this] { driver.tap(kEscape); });
        tracking.at(4, [this] { button->menu()->cancelTracking(); });
        driver.click(xOfButton(), 24 + 11);
        EXPECT_TRUE(becomes([&] { return top > 0; }));
        EXPECT_EQ(top, 24 + 27);
        xcb_destroy_window(driver.raw(), panel);
        driver.sync();
    }

    TEST_F(X11Menubar, KeepsItsStripWhileAnotherProgramIsActive)
    {
        if (!hasManager())
            return;
        load();
        EXPECT_TRUE(becomes([this] { return workAreaTop() == 22; }));
        driver.stealFocus();
        EXPECT_TRUE(becomes([this] { return !bar->isVisible(); }));
        settle();
        EXPECT_EQ(workAreaTop(), 22u);
    }

    TEST_F(X11Menubar, GivesItsStripBackWhenItIsClosed)
    {
        if (!hasManager())
            return;
        load();
        EXPECT_TRUE(becomes([this] { return workAreaTop() == 22; }));
        views()->close();
        bar->close();
        EXPECT_TRUE(becomes([this] { return workAreaTop() == 0; }));
        bar = nullptr;
    }

}
}
