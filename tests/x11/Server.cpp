// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

#include "XDriver.h"
#include "display/OpenDisplay.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    constexpr CGRect kServerFrame { { 10, 10 }, { 300, 200 } };

    TEST(X11Server, SaysThatAScreenIsFoundOnce)
    {
        XServerProcess server;
        int calls = 0;
        openDisplay(
            Choice::x11, environmentOf({ { "DISPLAY", server.name() } }), [](std::string_view) {},
            [&] { ++calls; });
        EXPECT_EQ(calls, 1);
    }

    TEST(X11Server, EndsWithOneEventWhenItIsKilled)
    {
        XServerProcess server;
        const auto display = openX11(server.name());
        ASSERT_EQ(display->name(), "x11");
        const auto surface = display->createSurface({ .frame = kServerFrame });
        surface->show();
        ASSERT_TRUE(waitFor(*display, Event::Kind::exposed));
        server.kill();
        EXPECT_TRUE(waitFor(*display, Event::Kind::disconnected));
        EXPECT_FALSE(display->isConnected());
        EXPECT_TRUE(drain(*display).empty());
        EXPECT_EQ(display->fileDescriptor(), -1);
    }

    TEST(X11Server, MayDieAtAnyMoment)
    {
        XServerProcess server;
        const auto display = openX11(server.name());
        const auto surface = display->createSurface({ .frame = kServerFrame });
        surface->show();
        ASSERT_TRUE(waitFor(*display, Event::Kind::exposed));
        server.kill();
        // Nothing has been read yet, so all of this goes to a server that is not there.
        for (int i = 0; i < 3; ++i) {
            fill(*surface, 0xFF336699);
            surface->setTitle(std::string(100000, 'x'));
            surface->setFrame({ { 1.0 * i, 2 }, { 30, 40 } });
            surface->raise();
            surface->activate();
            surface->setZoomed(true);
            surface->setOpaque(false);
            surface->setCursor(Cursor::wait);
            display->flush();
        }
        EXPECT_FALSE(display->grab(*surface));
        EXPECT_FALSE(surface->beginMove({ 0, 0 }));
        display->pointerLocation();
        const auto late = display->createSurface({ .frame = kServerFrame });
        late->show();
        const auto events = drain(*display);
        ASSERT_FALSE(events.empty());
        EXPECT_EQ(events.back().kind, Event::Kind::disconnected);
    }

    TEST(X11Server, TypesTheLayoutAndKeepsTheLatinCharacterForShortcuts)
    {
        XServerProcess server;
        ASSERT_EQ(
            std::system(("setxkbmap -display " + server.name() + " -layout us,ru,de").c_str()), 0);
        const auto display = openX11(server.name());
        XDriver driver(server.name().c_str());
        const auto surface = display->createSurface({ .frame = kServerFrame });
        surface->show();
        surface->activate();
        ASSERT_TRUE(waitFor(*display, Event::Kind::focusIn));
        ASSERT_EQ(std::system(("setxkbmap -display " + server.name() + " -layout ru").c_str()), 0);
        drain(*display);
        driver.tap(38);
        const auto key = waitFor(*display, Event::Kind::keyDown);
        ASSERT_TRUE(key);
        EXPECT_EQ(key->characters, u"ф");
        EXPECT_EQ(key->latinCharacter, U'a');
    }

    TEST(X11Server, ComposesADeadKeyWithTheNextOne)
    {
        XServerProcess server;
        ASSERT_EQ(std::system(("setxkbmap -display " + server.name() + " -layout de").c_str()), 0);
        setenv("LC_ALL", "en_US.UTF-8", 1);
        const auto display = openX11(server.name());
        XDriver driver(server.name().c_str());
        const auto surface = display->createSurface({ .frame = kServerFrame });
        surface->show();
        surface->activate();
        ASSERT_TRUE(waitFor(*display, Event::Kind::focusIn));
        driver.tap(21); // the dead acute accent
        driver.tap(26); // e
        const auto dead = waitFor(*display, Event::Kind::keyDown);
        const auto letter = waitFor(*display, Event::Kind::keyDown);
        ASSERT_TRUE(dead && letter);
        EXPECT_EQ(dead->characters, u"");
        EXPECT_EQ(letter->characters, u"é");
    }

    TEST(X11Server, OpensWithoutAnythingButTheCoreProtocol)
    {
        // What the extensions are needed for is lost, nothing else.
        XServerProcess server { { "-extension", "MIT-SHM", "-extension", "RANDR", "-extension",
            "XFIXES" } };
        const auto display = openX11(server.name());
        ASSERT_EQ(display->name(), "x11");
        EXPECT_EQ(display->screens().at(0).frame, (CGRect { { 0, 0 }, { 640, 480 } }));
        const auto surface = display->createSurface({ .frame = kServerFrame });
        surface->setInputPassthrough(true);
        surface->show();
        ASSERT_TRUE(waitFor(*display, Event::Kind::exposed));
        fill(*surface, 0xFF336699);
        display->pointerLocation();
        XDriver driver(server.name().c_str());
        EXPECT_EQ(driver.pixel(10, 480 - 210), 0x336699u);
        EXPECT_EQ(driver.pixel(309, 480 - 11), 0x336699u);
        EXPECT_EQ(display->counters().errors, 0u);
    }

    // On a server without a window manager, which would have its own idea of where the focus belongs.
    TEST(X11Server, TellsTheModifiersThatWerePressedElsewhereWhenTheFocusComes)
    {
        XServerProcess server;
        const auto display = openX11(server.name());
        XDriver driver(server.name().c_str());
        const auto surface = display->createSurface({ .frame = kServerFrame, .title = "focused" });
        surface->show();
        surface->activate();
        ASSERT_TRUE(waitFor(*display, Event::Kind::focusIn));
        driver.stealFocus();
        ASSERT_TRUE(waitFor(*display, Event::Kind::focusOut));
        drain(*display);
        display->pointerLocation(); // the server knows that we do not listen any more
        constexpr std::uint8_t kShiftKey = 50;
        driver.key(kShiftKey, true);
        drain(*display);
        EXPECT_EQ(display->modifiers(), 0u);
        driver.giveFocus(driver.find("focused"));
        ASSERT_TRUE(waitFor(*display, Event::Kind::focusIn));
        EXPECT_EQ(display->modifiers(), kShift);
        driver.key(kShiftKey, false);
        while (display->modifiers())
            ASSERT_TRUE(waitFor(*display, Event::Kind::modifiersChanged));
    }

}
}
