// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include "XDriver.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    constexpr CGRect kInputFrame { { 100, 200 },
        { 300, 150 } }; // 100 to 400, 450 to 600 in pixels from the top

    // The server's numbers of keys.
    constexpr std::uint8_t kKeyA = 38;
    constexpr std::uint8_t kKeyControl = 37;
    constexpr std::uint8_t kKeyShift = 50;
    constexpr std::uint8_t kKeySuper = 133;
    constexpr std::uint8_t kKeyLeft = 113;
    constexpr std::uint8_t kKeyReturn = 36;
    constexpr std::uint8_t kKeyBackspace = 22;
    constexpr std::uint8_t kKeyF5 = 71;
    constexpr std::uint8_t kKeyTab = 23;

    class X11Input : public X11Test {
    protected:
        void showFocused()
        {
            surface = display->createSurface({ .frame = kInputFrame });
            surface->show();
            surface->activate();
            ASSERT_TRUE(waitFor(Event::Kind::focusIn, surface.get()));
        }
        Event keyDown(std::uint8_t keycode)
        {
            driver.tap(keycode);
            return waitFor(Event::Kind::keyDown, surface.get()).value_or(Event {});
        }

        std::unique_ptr<Surface> surface;
    };

    TEST_F(X11Input, TellsAClickWhereItWas)
    {
        surface = shown({ .frame = kInputFrame });
        driver.click(110, 580);
        const auto press = waitFor(Event::Kind::pointerDown, surface.get());
        ASSERT_TRUE(press);
        EXPECT_EQ(press->button, 0);
        EXPECT_EQ(press->location, (CGPoint { 10, 20 }));
        EXPECT_EQ(press->screenLocation, (CGPoint { 110, 220 }));
        EXPECT_TRUE(waitFor(Event::Kind::pointerUp, surface.get()));
    }

    TEST_F(X11Input, StampsEventsWithTheDisplaysClock)
    {
        surface = shown({ .frame = kInputFrame });
        const double before = display->now();
        driver.click(110, 580);
        const auto press = waitFor(Event::Kind::pointerDown, surface.get());
        ASSERT_TRUE(press);
        EXPECT_GE(press->time, before - 0.002); // the server counts whole milliseconds
        EXPECT_LE(press->time, display->now());
    }

    TEST_F(X11Input, NumbersTheRightButtonBeforeTheMiddleOne)
    {
        surface = shown({ .frame = kInputFrame });
        driver.click(110, 580, 3);
        EXPECT_EQ(waitFor(Event::Kind::pointerDown, surface.get())->button, 1);
        driver.click(110, 580, 2);
        EXPECT_EQ(waitFor(Event::Kind::pointerDown, surface.get())->button, 2);
    }

    TEST_F(X11Input, EntersMovesAndLeaves)
    {
        surface = shown({ .frame = kInputFrame });
        driver.movePointer(110, 580);
        EXPECT_TRUE(waitFor(Event::Kind::pointerEntered, surface.get()));
        settle();
        driver.movePointer(120, 570);
        const auto move = waitFor(Event::Kind::pointerMoved, surface.get());
        ASSERT_TRUE(move);
        EXPECT_EQ(move->location, (CGPoint { 20, 30 }));
        EXPECT_EQ(display->pointerLocation(), (CGPoint { 120, 230 }));
        driver.movePointer(900, 100);
        EXPECT_TRUE(waitFor(Event::Kind::pointerLeft, surface.get()));
    }

    TEST_F(X11Input, KeepsADragThatLeavesTheWindow)
    {
        surface = shown({ .frame = kInputFrame });
        driver.movePointer(110, 580);
        driver.button(1, true);
        ASSERT_TRUE(waitFor(Event::Kind::pointerDown, surface.get()));
        driver.movePointer(50, 700);
        const auto move = waitFor(Event::Kind::pointerMoved, surface.get());
        ASSERT_TRUE(move);
        EXPECT_EQ(move->location, (CGPoint { -50, -100 }));
        driver.button(1, false);
        EXPECT_TRUE(waitFor(Event::Kind::pointerUp, surface.get()));
    }

    TEST_F(X11Input, KeepsOnlyTheLastOfManyWaitingMovements)
    {
        surface = shown({ .frame = kInputFrame });
        driver.movePointer(110, 580);
        settle();
        for (int x = 111; x < 160; ++x)
            driver.movePointer(x, 580);
        driver.sync();
        display->pointerLocation();
        const auto events = drain(*display);
        ASSERT_FALSE(events.empty());
        EXPECT_LT(events.size(), 49u);
        EXPECT_EQ(events.back().location.x, 59);
    }

    TEST_F(X11Input, ScrollsByTheWheel)
    {
        surface = shown({ .frame = kInputFrame });
        driver.click(110, 580, 5);
        const auto down = waitFor(Event::Kind::scroll, surface.get());
        ASSERT_TRUE(down);
        EXPECT_EQ(down->scrollY, -40);
        EXPECT_EQ(down->scrollX, 0);
        EXPECT_FALSE(down->preciseScroll);
        driver.click(110, 580, 4);
        EXPECT_EQ(waitFor(Event::Kind::scroll, surface.get())->scrollY, 40);
    }

    TEST_F(X11Input, SendsNoPressForTheWheel)
    {
        surface = shown({ .frame = kInputFrame });
        driver.click(110, 580, 4);
        for (const Event& event : settle()) {
            EXPECT_NE(event.kind, Event::Kind::pointerDown);
            EXPECT_NE(event.kind, Event::Kind::pointerUp);
        }
    }

    TEST_F(X11Input, PassesThroughASurfaceThatIgnoresIt)
    {
        const auto below = shown({ .frame = kInputFrame, .overrideRedirect = true });
        const auto above = shown({ .frame = kInputFrame, .level = 24, .overrideRedirect = true });
        above->setInputPassthrough(true);
        settle();
        driver.click(110, 580);
        EXPECT_TRUE(waitFor(Event::Kind::pointerDown, below.get()));
        above->setInputPassthrough(false);
        settle();
        driver.click(110, 580);
        EXPECT_TRUE(waitFor(Event::Kind::pointerDown, above.get()));
    }

    TEST_F(X11Input, TypesACharacter)
    {
        showFocused();
        const Event key = keyDown(kKeyA);
        EXPECT_EQ(key.characters, u"a");
        EXPECT_EQ(key.charactersIgnoringModifiers, u"a");
        EXPECT_EQ(key.latinCharacter, U'a');
        EXPECT_EQ(key.keyCode, 0);
        EXPECT_EQ(key.modifiers, 0u);
        EXPECT_FALSE(key.repeat);
        EXPECT_TRUE(waitFor(Event::Kind::keyUp, surface.get()));
    }

    TEST_F(X11Input, KeepsShiftInBothCharacters)
    {
        showFocused();
        driver.key(kKeyShift, true);
        const Event key = keyDown(kKeyA);
        driver.key(kKeyShift, false);
        EXPECT_EQ(key.characters, u"A");
        EXPECT_EQ(key.charactersIgnoringModifiers, u"A");
        EXPECT_EQ(key.modifiers, kShift);
    }

    TEST_F(X11Input, MakesControlTheCommandKey)
    {
        showFocused();
        driver.key(kKeyControl, true);
        const Event key = keyDown(kKeyA);
        driver.key(kKeyControl, false);
        EXPECT_EQ(key.modifiers, kCommand);
        EXPECT_EQ(key.characters, u"a");
    }

    TEST_F(X11Input, MakesSuperTheControlKey)
    {
        showFocused();
        driver.key(kKeySuper, true);
        const Event key = keyDown(kKeyA);
        driver.key(kKeySuper, false);
        EXPECT_EQ(key.modifiers, kControl);
        EXPECT_EQ(key.characters, u"\x01");
        EXPECT_EQ(key.charactersIgnoringModifiers, u"a");
    }

    TEST_F(X11Input, ExchangesCommandAndControlWhenTheUserWantsIt)
    {
        reopen({ { "BRINDLE_COMMAND", "super" } });
        showFocused();
        driver.key(kKeyControl, true);
        EXPECT_EQ(keyDown(kKeyA).modifiers, kControl);
        driver.key(kKeyControl, false);
        driver.key(kKeySuper, true);
        EXPECT_EQ(keyDown(kKeyA).modifiers, kCommand);
        driver.key(kKeySuper, false);
    }

    TEST_F(X11Input, TellsChangesOfModifiers)
    {
        showFocused();
        driver.key(kKeyShift, true);
        const auto pressed = waitFor(Event::Kind::modifiersChanged, surface.get());
        ASSERT_TRUE(pressed);
        EXPECT_EQ(pressed->modifiers, kShift);
        EXPECT_EQ(pressed->keyCode, 56);
        driver.key(kKeyShift, false);
        EXPECT_EQ(waitFor(Event::Kind::modifiersChanged, surface.get())->modifiers, 0u);
    }

    TEST_F(X11Input, TellsModifierKeysByNothingElse)
    {
        showFocused();
        driver.tap(kKeyShift);
        for (const Event& event : settle())
            EXPECT_NE(event.kind, Event::Kind::keyDown);
    }

    // At each change the display asks the server about the desktop, and the movement may come with an answer.
    TEST_F(X11Input, LosesNoMovementWhileTheDesktopChanges)
    {
        constexpr int kRounds = 300;
        surface = shown({ .frame = kInputFrame });
        driver.movePointer(110, 580);
        ASSERT_TRUE(waitFor(Event::Kind::pointerEntered, surface.get()));
        settle();
        std::atomic<int> seen = 0;
        const std::jthread desktop([&](const std::stop_token& stop) {
            const std::array<std::uint32_t, 1> first { 0 };
            for (int round = 1; round <= kRounds && !stop.stop_requested(); ++round) {
                driver.setProperty(driver.root(), "_NET_CURRENT_DESKTOP", "CARDINAL", first);
                const auto now = std::chrono::steady_clock::now;
                const auto later = now() + std::chrono::microseconds(round);
                while (now() < later) { }
                driver.movePointer(110 + round % 2, 580);
                while (seen < round && !stop.stop_requested())
                    std::this_thread::yield();
            }
        });
        for (int round = 1; round <= kRounds; ++round) {
            EXPECT_TRUE(waitFor(Event::Kind::pointerMoved, surface.get()));
            seen = round;
        }
    }

    TEST_F(X11Input, GivesKeysWithoutACharacterOneOfTheirOwn)
    {
        showFocused();
        const Event left = keyDown(kKeyLeft);
        EXPECT_EQ(left.characters, u"\uF702");
        EXPECT_EQ(left.modifiers, kFunction | kKeypad);
        EXPECT_EQ(left.keyCode, 123);
        const Event f5 = keyDown(kKeyF5);
        EXPECT_EQ(f5.characters, u"\uF708");
        EXPECT_EQ(f5.modifiers, kFunction);
        EXPECT_EQ(keyDown(kKeyReturn).characters, u"\r");
        EXPECT_EQ(keyDown(kKeyBackspace).characters, u"\x7F");
    }

    TEST_F(X11Input, TellsABackTabApartFromATab)
    {
        showFocused();
        EXPECT_EQ(keyDown(kKeyTab).characters, u"\t");
        driver.key(kKeyShift, true);
        const Event back = keyDown(kKeyTab);
        driver.key(kKeyShift, false);
        EXPECT_EQ(back.characters, u"\x19");
        EXPECT_EQ(back.modifiers, kShift);
    }

}
}
