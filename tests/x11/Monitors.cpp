// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdlib>

#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSMenu.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "menubar/BRCustomMenubar.h"
#include "support/DisplayLog.h"
#include "support/OpenMenu.h"

namespace brindle::display {
namespace {

    using Values = std::vector<std::uint32_t>;

    constexpr int kWidth = 1600;
    constexpr int kHeight = 1200;

    /// What the server is to show as one monitor: pixels, y down.
    struct Monitor {
        const char* name;
        PixelRect frame;
        bool primary = false;
    };

    constexpr Monitor kLeft { "left", { 0, 0, 800, 1200 }, true };
    constexpr Monitor kRight { "right", { 800, 0, 1600, 1200 }, false };

    /// A server of its own whose one picture is divided into monitors.
    class MonitorsOnX : public testing::Test {
    protected:
        ~MonitorsOnX() override { installDisplay(nullptr); }

        void plug(const Monitor& monitor, bool takesTheOutput = false)
        {
            struct {
                xcb_randr_set_monitor_request_t head {};
                xcb_randr_monitor_info_t info {};
                xcb_randr_output_t output = 0;
            } request;
            request.head.window = driver_.root();
            request.info.name = driver_.atom(monitor.name);
            request.info.primary = monitor.primary;
            request.info.nOutput = takesTheOutput ? 1 : 0;
            request.info.x = static_cast<std::int16_t>(monitor.frame.left);
            request.info.y = static_cast<std::int16_t>(monitor.frame.top);
            request.info.width = static_cast<std::uint16_t>(monitor.frame.width());
            request.info.height = static_cast<std::uint16_t>(monitor.frame.height());
            request.output = takesTheOutput ? output() : 0;
            send(XCB_RANDR_SET_MONITOR, &request, sizeof request - (takesTheOutput ? 0 : 4));
        }
        /// Divides the picture; the first monitor takes the server's only output.
        void divide(const Monitor& first, const Monitor& second)
        {
            plug(first, true);
            plug(second);
        }
        void unplug(const Monitor& monitor)
        {
            xcb_randr_delete_monitor(driver_.raw(), driver_.root(), driver_.atom(monitor.name));
            driver_.sync();
        }

        Display& open(Variables variables = {})
        {
            return installX11(server_, std::move(variables));
        }
        /// Shows a bar along the top of a monitor and answers both struts that it sets.
        std::pair<Values, Values> strutsOnTopOf(const Screen& screen, Display& display)
        {
            const CGRect frame = NSMakeRect(
                NSMinX(screen.frame), NSMaxY(screen.frame) - 22, screen.frame.size.width, 22);
            const auto bar = display.createSurface(
                { .frame = frame, .kind = SurfaceKind::dock, .level = 26, .title = "bar" });
            bar->setStrut(Strut { Strut::Edge::top, 22, NSMinX(frame), NSMaxX(frame) });
            bar->show();
            waitFor(display, Event::Kind::exposed, bar.get());
            display.pointerLocation(); // an answer: the server has heard all
            const xcb_window_t window = driver_.find("bar");
            return { driver_.property(window, "_NET_WM_STRUT_PARTIAL"),
                driver_.property(window, "_NET_WM_STRUT") };
        }
        /// Answers where a window's upper left corner is in the picture.
        std::pair<int, int> placeOf(const std::string& title)
        {
            auto* const reply = xcb_translate_coordinates_reply(driver_.raw(),
                xcb_translate_coordinates(driver_.raw(), driver_.find(title), driver_.root(), 0, 0),
                nullptr);
            const std::pair<int, int> place
                = reply ? std::pair<int, int> { reply->dst_x, reply->dst_y } : std::pair { -1, -1 };
            std::free(reply);
            return place;
        }
        static Ref<NSMenu> menuOfOne()
        {
            Ref<NSMenu> menu = make<NSMenu>();
            menu->setAutoenablesItems(false);
            menu->addItemWithTitle_action_keyEquivalent("One"_ns, selector<"act:">, nullptr);
            return menu;
        }

        XServerProcess server_ { { "-screen", "0", "1600x1200x24" } };
        XDriver driver_ { server_.name().c_str() };
        WhileTracking tracking_;

    private:
        // The library's own function for this request reads past what it was given.
        void send(std::uint8_t request, void* bytes, std::size_t size)
        {
            std::array<iovec, 4> parts {}; // the library writes before the first one
            parts[2] = { bytes, size };
            const xcb_protocol_request_t protocol { 1, &xcb_randr_id, request, 1 };
            xcb_send_request(driver_.raw(), 0, &parts[2], &protocol);
            driver_.sync();
        }
        xcb_randr_output_t output()
        {
            auto* const reply = xcb_randr_get_screen_resources_current_reply(driver_.raw(),
                xcb_randr_get_screen_resources_current(driver_.raw(), driver_.root()), nullptr);
            const xcb_randr_output_t first
                = reply ? xcb_randr_get_screen_resources_current_outputs(reply)[0] : 0;
            std::free(reply);
            return first;
        }
    };

    TEST_F(MonitorsOnX, GiveRoomToThePanelsBesideThemOnly)
    {
        divide(kLeft, kRight);
        const xcb_window_t windows[]
            = { xcb_generate_id(driver_.raw()), xcb_generate_id(driver_.raw()) };
        for (const xcb_window_t window : windows)
            xcb_create_window(driver_.raw(), 0, window, driver_.root(), 0, 0, 1, 1, 0,
                XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const auto set = [&](xcb_window_t window, const char* name, const char* type,
                             Values values) { driver_.setProperty(window, name, type, values); };
        const auto [manager, panel] = windows;
        set(manager, "_NET_SUPPORTING_WM_CHECK", "WINDOW", { manager });
        set(panel, "_NET_WM_STRUT_PARTIAL", "CARDINAL", { 0, 0, 30, 0, 0, 0, 0, 0, 0, 799, 0, 0 });
        set(driver_.root(), "_NET_CLIENT_LIST", "WINDOW", { panel });
        set(driver_.root(), "_NET_WORKAREA", "CARDINAL", { 0, 30, 1600, 1170 });
        set(driver_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", { manager });
        Display& display = open();
        ASSERT_EQ(display.screens().size(), 2u);
        EXPECT_EQ(display.screens()[0].visibleFrame.size.height, 1170);
        EXPECT_EQ(display.screens()[1].visibleFrame, display.screens()[1].frame);
        set(driver_.root(), "_NET_CLIENT_LIST", "WINDOW", {});
        waitFor(display, Event::Kind::screensChanged, nullptr);
        EXPECT_EQ(display.screens()[1].visibleFrame.size.height, 1170);
    }

    TEST_F(MonitorsOnX, CountFromThePrimaryOne)
    {
        Monitor left = kLeft;
        Monitor right = kRight;
        std::swap(left.primary, right.primary);
        divide(left, right);
        const std::vector<Screen> screens = open().screens();
        ASSERT_EQ(screens.size(), 2u);
        EXPECT_EQ(screens[0].name, "right");
        EXPECT_EQ(screens[0].frame, NSMakeRect(0, 0, 800, 1200));
        EXPECT_EQ(screens[1].frame, NSMakeRect(-800, 0, 800, 1200));
    }

    TEST_F(MonitorsOnX, HaveStrutsOverTheirOwnWidthOnly)
    {
        divide(kLeft, kRight);
        Display& display = open();
        EXPECT_EQ(strutsOnTopOf(display.screens()[0], display),
            std::pair(Values({ 0, 0, 22, 0, 0, 0, 0, 0, 0, 799, 0, 0 }), Values({ 0, 0, 22, 0 })));
        EXPECT_EQ(strutsOnTopOf(display.screens()[1], display),
            std::pair(
                Values({ 0, 0, 22, 0, 0, 0, 0, 0, 800, 1599, 0, 0 }), Values({ 0, 0, 22, 0 })));
    }

    TEST_F(MonitorsOnX, HaveStrutsFromTheEdgeOfThePicture)
    {
        Monitor lower = kRight;
        lower.frame.top = 300;
        divide(kLeft, lower);
        Display& display = open();
        EXPECT_EQ(strutsOnTopOf(display.screens()[1], display),
            std::pair(
                Values({ 0, 0, 322, 0, 0, 0, 0, 0, 800, 1599, 0, 0 }), Values({ 0, 0, 322, 0 })));
    }

    TEST_F(MonitorsOnX, HaveStrutsInDevicePixels)
    {
        divide(kLeft, kRight);
        Display& display = open({ { "BRINDLE_SCALE", "2" } });
        EXPECT_EQ(strutsOnTopOf(display.screens()[1], display).first,
            Values({ 0, 0, 44, 0, 0, 0, 0, 0, 800, 1599, 0, 0 }));
    }

    TEST_F(MonitorsOnX, HaveNoStrutsBelowOneAnother)
    {
        divide({ "upper", { 0, 0, kWidth, 600 } }, { "lower", { 0, 600, kWidth, kHeight }, true });
        Display& display = open();
        EXPECT_EQ(strutsOnTopOf(display.screens()[0], display), std::pair(Values(), Values()));
    }

    TEST_F(MonitorsOnX, AreNoticedWhenTheyComeAndGo)
    {
        open();
        EXPECT_EQ(NSScreen::cls().screens()->count(), 1u);
        divide(kLeft, kRight);
        EXPECT_TRUE(becomes([] { return NSScreen::cls().screens()->count() == 2; }));
        unplug(kRight);
        EXPECT_TRUE(becomes([] { return NSScreen::cls().screens()->count() == 1; }));
    }

    TEST_F(MonitorsOnX, ShowAWindowWhereItsFrameIs)
    {
        divide(kLeft, kRight);
        open();
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(1000, 500, 200, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->setTitle("placed"_ns);
        window->orderFrontRegardless();
        EXPECT_EQ(NSMinX(window->screen()->frame()), 800);
        EXPECT_TRUE(becomes([&] { return driver_.find("placed") != XCB_NONE; }));
        EXPECT_EQ(placeOf("placed"), (std::pair { 1000, 600 }));
        window->close();
    }

    /// A bar as an application has it.
    struct BarOnMonitors : MonitorsOnX {
        BarOnMonitors()
        {
            Monitor left = kLeft;
            Monitor right = kRight;
            std::swap(left.primary, right.primary);
            divide(right, left); // the primary one shows the output
            open();
            bar->setTitle("bar"_ns);
            bar->load();
            bar->orderFrontRegardless(); // the application need not be active
            observer = NSNotificationCenter::cls()
                           .defaultCenter()
                           ->addObserverForName_object_queue_usingBlock(
                               NSApplicationDidChangeScreenParametersNotification, nullptr, nullptr,
                               [this](NSNotification*) { bar->setFrame(); });
        }
        ~BarOnMonitors() override
        {
            NSNotificationCenter::cls().defaultCenter()->removeObserver(observer.get());
            cast<NSWindow>(bar->childWindows()->firstObject())->close();
            bar->close();
        }
        /// Answers whether the bar comes to stand at a place of the picture and to keep a span of its top free.
        bool standsAt(int left, std::uint32_t start, std::uint32_t end)
        {
            return becomes([&] {
                return placeOf("bar") == std::pair { left, 0 }
                && driver_.property(driver_.find("bar"), "_NET_WM_STRUT_PARTIAL")
                    == Values { 0, 0, 22, 0, 0, 0, 0, 0, start, end, 0, 0 };
            });
        }

        Ref<BRCustomMenubar> bar
            = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
        Ref<NSObject> observer; // what a host does when its screens change
    };

    TEST_F(BarOnMonitors, StandsOnThePrimaryOne)
    {
        EXPECT_EQ(bar->frame(), NSMakeRect(0, 1178, 800, 22));
        EXPECT_EQ(NSMinX(bar->screen()->frame()), 0);
        EXPECT_TRUE(standsAt(800, 800, 1599));
    }

    TEST_F(BarOnMonitors, GoesToAnotherOneThatIsMadeThePrimaryOne)
    {
        ASSERT_TRUE(standsAt(800, 800, 1599));
        unplug(kLeft);
        unplug(kRight);
        plug(kLeft);
        plug(kRight, true);
        EXPECT_TRUE(standsAt(0, 0, 799));
        EXPECT_EQ(bar->frame(), NSMakeRect(0, 1178, 800, 22));
    }

    TEST_F(MonitorsOnX, KeepTheirMenus)
    {
        divide(kLeft, kRight);
        open();
        const Ref<NSMenu> menu = menuOfOne();
        for (const double edge : { 800.0, 1600.0 }) {
            NSRect frame {};
            tracking_.at(0.2, [&] {
                frame = menuWindows().front()->frame(); // without a shadow: nobody blends windows
                menu->cancelTracking();
            });
            menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { edge - 5, 500 }, nullptr);
            EXPECT_EQ(NSMaxX(frame), edge);
        }
    }

    TEST_F(MonitorsOnX, CloseTheirMenusWhenTheyGo)
    {
        divide(kLeft, kRight);
        open();
        const Ref<NSMenu> menu = menuOfOne();
        bool late = false;
        tracking_.at(0.2, [&] { unplug(kRight); });
        tracking_.at(5, [&] {
            late = true;
            menu->cancelTracking();
        });
        menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 1200, 500 }, nullptr);
        EXPECT_FALSE(late);
        EXPECT_TRUE(menuWindows().empty());
    }

}
}
