// SPDX-License-Identifier: Apache-2.0
// Other programs of the desktop that do what no program should, and servers that refuse.

#include <array>
#include <cstring>
#include <fstream>
#include <random>

#include <xcb/randr.h>

#include "XDriver.h"
#include "support/DisplayLog.h"
#include "support/Figures.h"
#include "support/TemporaryFolder.h"
#include "support/Variables.h"

namespace brindle::display {
namespace {

    constexpr CGRect kHostileFrame { { 100, 200 },
        { 300, 150 } }; // 100 to 400, 130 to 280 in pixels from the top

    std::unique_ptr<Display> opened(const XServerProcess& server, std::string* complaints = nullptr)
    {
        return openX11(server.name(), {}, [complaints](std::string_view line) {
            if (complaints)
                complaints->append(line);
        });
    }

    /// Another client that sends events and writes properties at random, the same for the same seed.
    class HostileClient {
    public:
        HostileClient(XDriver& driver, xcb_window_t window, std::uint32_t seed)
            : driver_(driver)
            , window_(window)
            , random_(seed)
        {
        }
        void act()
        {
            if (random_() % 2)
                sendEvent();
            else
                writeProperty();
        }

    private:
        std::uint32_t anyWord()
        {
            constexpr std::array<std::uint32_t, 8> kWords { 0, 1, 2, 0xFFFFFFFF, 0x7FFFFFFF,
                0x80000000, 0xFFFF, 300 };
            const std::size_t choice = random_() % 12;
            return choice < kWords.size() ? kWords[choice] : static_cast<std::uint32_t>(random_());
        }
        xcb_window_t anyWindow() { return random_() % 3 ? window_ : driver_.root(); }
        xcb_atom_t anyAtom()
        {
            constexpr std::array kNames { "WM_PROTOCOLS", "WM_DELETE_WINDOW", "WM_STATE",
                "WM_HINTS", "WM_NORMAL_HINTS", "WM_CHANGE_STATE", "_NET_WM_STATE", "_NET_WM_PING",
                "_NET_SUPPORTED", "_NET_SUPPORTING_WM_CHECK", "_NET_WORKAREA", "_NET_FRAME_EXTENTS",
                "_NET_CURRENT_DESKTOP", "_NET_ACTIVE_WINDOW", "_NET_WM_MOVERESIZE",
                "_MOTIF_WM_HINTS", "_NET_WM_SYNC_REQUEST", "RESOURCE_MANAGER",
                "_XSETTINGS_SETTINGS", "_XSETTINGS_S0", "MANAGER", "INCR", "CLIPBOARD", "TARGETS",
                "MULTIPLE", "ATOM_PAIR", "_BRINDLE_CLIPBOARD", "UTF8_STRING", "CARDINAL", "ATOM",
                "WINDOW", "STRING" };
            if (atoms_.empty()) {
                for (const char* name : kNames)
                    atoms_.push_back(driver_.atom(name));
            }
            return atoms_[random_() % atoms_.size()];
        }
        void sendEvent()
        {
            std::array<std::uint32_t, 8> words {};
            for (std::uint32_t& word : words)
                word = random_() % 4 ? anyWord() : window_;
            auto* const bytes = reinterpret_cast<std::uint8_t*>(words.data());
            bytes[0] = static_cast<std::uint8_t>(2 + random_() % 120);
            if (random_() % 3 == 0) {
                bytes[0] = XCB_CLIENT_MESSAGE;
                bytes[1] = static_cast<std::uint8_t>(8 << random_() % 3);
                words[1] = window_;
                words[2] = anyAtom();
                words[3] = anyAtom();
            }
            const std::uint32_t mask = random_() % 2 ? 0 : anyWord() & 0x1FFFFFF;
            xcb_send_event(driver_.raw(), random_() % 2 != 0, anyWindow(), mask,
                reinterpret_cast<const char*>(words.data()));
        }
        void writeProperty()
        {
            std::vector<std::uint32_t> words(random_() % 40);
            for (std::uint32_t& word : words)
                word = anyWord();
            const auto format = static_cast<std::uint8_t>(8 << random_() % 3);
            const auto count = static_cast<std::uint32_t>(words.size() * 32 / format);
            xcb_change_property(driver_.raw(), XCB_PROP_MODE_REPLACE, anyWindow(), anyAtom(),
                anyAtom(), format, count, words.data());
        }

        XDriver& driver_;
        xcb_window_t window_;
        std::mt19937 random_;
        std::vector<xcb_atom_t> atoms_;
    };

    /// Answers whether a surface that is shown again hears a real click, and how soon.
    bool answersAClick(
        Display& display, Surface& surface, XDriver& driver, test::Slowest* slowest = nullptr)
    {
        drain(display);
        surface.hide();
        surface.setFrame(kHostileFrame);
        surface.show();
        if (!waitFor(display, Event::Kind::exposed, &surface))
            return false;
        bool answered = false;
        test::Slowest own;
        (slowest ? *slowest : own).of([&] {
            driver.click(200, 200);
            answered = waitFor(display, Event::Kind::pointerDown, &surface)
                && waitFor(display, Event::Kind::pointerUp, &surface);
        });
        return answered;
    }

    TEST(HostileClients, MayDoWhatTheyLikeToAWindow)
    {
        const int seeds = std::max(2, test::rounds(50));
        test::Slowest click;
        for (int seed = 0; seed < seeds; ++seed) {
            // A server each: what is written to its root window would stay for the next.
            XServerProcess server;
            XDriver driver(server.name().c_str());
            const auto display = opened(server);
            const auto surface
                = display->createSurface({ .frame = kHostileFrame, .title = "target" });
            surface->show();
            ASSERT_TRUE(waitFor(*display, Event::Kind::exposed));
            HostileClient client(driver, driver.find("target"), static_cast<std::uint32_t>(seed));
            for (int i = 0; i < 20000; ++i) {
                client.act();
                if (i % 100 == 0) {
                    driver.sync();
                    drain(*display);
                }
            }
            driver.sync();
            EXPECT_TRUE(display->isConnected()) << seed;
            EXPECT_TRUE(answersAClick(*display, *surface, driver, &click)) << seed;
        }
        test::publish({ "seeds of 20,000 hostile events and properties: a click afterwards", seeds,
            click.milliseconds(), "ms", 100 });
    }

    TEST(HostileClients, MayDestroyEveryWindowAndEveryPixmap)
    {
        XServerProcess server;
        XDriver driver(server.name().c_str());
        const auto display = opened(server);
        const auto surface = display->createSurface({ .frame = kHostileFrame, .title = "victim" });
        const int rounds = test::rounds(1000);
        for (int round = 0; round < rounds; ++round) {
            surface->show();
            ASSERT_TRUE(waitFor(*display, Event::Kind::exposed, surface.get()));
            fill(*surface, 0xFF336699);
            const xcb_window_t window = driver.find("victim");
            for (std::uint32_t id = window - 20; id < window + 20; ++id) {
                xcb_free_pixmap(driver.raw(), id);
                xcb_free_gc(driver.raw(), id);
                xcb_free_cursor(driver.raw(), id);
            }
            xcb_destroy_window(driver.raw(), window);
            driver.sync();
            fill(*surface, 0xFF993366);
            ASSERT_TRUE(waitFor(*display, Event::Kind::closeRequested, surface.get()));
        }
        EXPECT_TRUE(display->isConnected());
        EXPECT_TRUE(answersAClick(*display, *surface, driver));
        EXPECT_GT(display->counters().errors, 0u);
        test::publish({ "windows and pixmaps destroyed by another client: connections lost", rounds,
            0.0 + !display->isConnected(), "connections", 0 });
    }

    /// Makes the screen of a server so large, without a monitor where that is nothing.
    void resizeScreen(XDriver& driver, std::uint16_t width, std::uint16_t height)
    {
        const auto reply = std::unique_ptr<xcb_randr_get_screen_resources_reply_t, void (*)(void*)>(
            xcb_randr_get_screen_resources_reply(
                driver.raw(), xcb_randr_get_screen_resources(driver.raw(), driver.root()), nullptr),
            std::free);
        ASSERT_TRUE(
            reply && reply->num_crtcs > 0 && reply->num_outputs > 0 && reply->num_modes > 0);
        const xcb_randr_crtc_t crtc = *xcb_randr_get_screen_resources_crtcs(reply.get());
        const xcb_randr_output_t output = *xcb_randr_get_screen_resources_outputs(reply.get());
        const xcb_randr_mode_t mode = xcb_randr_get_screen_resources_modes(reply.get())->id;
        std::free(xcb_randr_set_crtc_config_reply(driver.raw(),
            xcb_randr_set_crtc_config(
                driver.raw(), crtc, 0, 0, 0, 0, XCB_NONE, XCB_RANDR_ROTATION_ROTATE_0, 0, nullptr),
            nullptr));
        xcb_randr_set_screen_size(driver.raw(), driver.root(), width, height, 100, 100);
        if (width > 1)
            std::free(xcb_randr_set_crtc_config_reply(driver.raw(),
                xcb_randr_set_crtc_config(
                    driver.raw(), crtc, 0, 0, 0, 0, mode, XCB_RANDR_ROTATION_ROTATE_0, 1, &output),
                nullptr));
        driver.sync();
    }

    TEST(HostileServers, MayTakeTheScreenAwayAndGiveItBack)
    {
        XServerProcess server;
        XDriver driver(server.name().c_str());
        const auto display = opened(server);
        const auto surface = display->createSurface({ .frame = kHostileFrame, .title = "stays" });
        surface->show();
        ASSERT_TRUE(waitFor(*display, Event::Kind::exposed));
        const int rounds = test::rounds(1000);
        for (int round = 0; round < rounds; ++round) {
            resizeScreen(driver, 1, 1);
            ASSERT_TRUE(waitFor(*display, Event::Kind::screensChanged));
            fill(*surface, 0xFF336699);
            surface->setFrame({ { 1.0 * round, 0 }, { 200, 100 } });
            resizeScreen(driver, 640, 480);
            drain(*display);
        }
        EXPECT_TRUE(display->isConnected());
        ASSERT_FALSE(display->screens().empty());
        EXPECT_EQ(display->screens()[0].frame, (CGRect { { 0, 0 }, { 640, 480 } }));
        EXPECT_TRUE(answersAClick(*display, *surface, driver));
        test::publish({ "screens taken away and given back: connections lost", rounds,
            0.0 + !display->isConnected(), "connections", 0 });
    }

    /// Writes an authority file with one cookie, for every address and display.
    void writeCookie(const std::filesystem::path& path, char filling)
    {
        const auto counted = [](const std::string& text) {
            const auto size = static_cast<std::uint16_t>(text.size());
            return std::string { static_cast<char>(size >> 8), static_cast<char>(size) } + text;
        };
        constexpr char kEveryFamily[] = "\xFF\xFF";
        std::ofstream(path, std::ios::binary)
            << kEveryFamily << counted("") << counted("") << counted("MIT-MAGIC-COOKIE-1")
            << counted(std::string(16, filling));
    }

    TEST(HostileServers, ThatWantAnotherCookieAreToldInOneLine)
    {
        const test::TemporaryFolder folder;
        writeCookie(folder.path() / "right", 'r');
        writeCookie(folder.path() / "wrong", 'w');
        const std::string right = folder.path() / "right";
        XServerProcess server({ "-auth", right.c_str() });
        {
            const test::Variables variables { { "XAUTHORITY", right } };
            EXPECT_EQ(opened(server)->name(), "x11");
        }
        const test::Variables variables { { "XAUTHORITY", folder.path() / "wrong" } };
        std::string complaints;
        const auto display = opened(server, &complaints);
        EXPECT_EQ(display->name(), "none");
        EXPECT_TRUE(display->screens().empty());
        EXPECT_EQ(
            complaints, "brindle: cannot connect to the display server \"" + server.name() + "\"");
    }

    TEST(HostileServers, WhoseTableIsFullAreToldInOneLine)
    {
        XServerProcess server({ "-maxclients", "64" });
        std::vector<xcb_connection_t*> others;
        do
            others.push_back(xcb_connect(server.name().c_str(), nullptr));
        while (!xcb_connection_has_error(others.back()) && others.size() < 1000);
        std::string complaints;
        EXPECT_EQ(opened(server, &complaints)->name(), "none");
        EXPECT_EQ(
            complaints, "brindle: cannot connect to the display server \"" + server.name() + "\"");
        for (xcb_connection_t* other : others)
            xcb_disconnect(other);
    }

    TEST(ManySurfaces, LeaveNoWindowOnTheServer)
    {
        XServerProcess server;
        XDriver driver(server.name().c_str());
        const auto display = opened(server);
        const auto lived = [&](int count) {
            for (int i = 0; i < count; ++i) {
                const auto surface = display->createSurface({ .frame = kHostileFrame });
                surface->show();
                fill(*surface, 0xFF336699);
            }
            display->pointerLocation();
            drain(*display);
        };
        lived(1);
        const std::size_t before = driver.stacking().size();
        const int lives = test::rounds(10000);
        lived(lives);
        test::publish({ "windows on a server: left there", lives,
            static_cast<double>(driver.stacking().size() - before), "windows", 0 });
        EXPECT_EQ(display->counters().errors, 0u);
    }

}
}
