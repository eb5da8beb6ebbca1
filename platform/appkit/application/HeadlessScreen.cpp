// SPDX-License-Identifier: Apache-2.0
#include "appkit/HeadlessScreen.h"

#include "NSApplicationPrivate.h"
#include "display/headless/HeadlessDisplay.h"
#include "display/headless/RandomUser.h"
#include "foundation/Clock.h"
#include "foundation/NSBeep.h"
#include "foundation/NSData.h"
#include "foundation/NSLog.h"
#include "foundation/NSString.h"
#include "quartz/CGImage.h"
#include "runtime/Function.h"

namespace brindle {

namespace headless {

    namespace {

        /// The application's screen where it is one in memory.
        display::HeadlessDisplay* screen()
        {
            return sharedApplicationOrNil()
                ? dynamic_cast<display::HeadlessDisplay*>(ApplicationAccess::displayOrNull())
                : nullptr;
        }

    }

    void openScreen(CGFloat width, CGFloat height, CGFloat scale)
    {
        Clock::useVirtual();
        auto made = std::make_unique<display::HeadlessDisplay>(
            std::vector { display::HeadlessDisplay::screenOfSize(width, height, scale) });
        made->setTimeSource([] { return Clock::uptime(); });
        const bool isFirst = !sharedApplicationOrNil();
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        ApplicationAccess::state().isStandIn |= isFirst;
        installDisplay(std::move(made));
        application->activateIgnoringOtherApps(true);
    }

    void closeScreen()
    {
        if (!screen())
            return;
        installDisplay(nullptr);
        Clock::useSystem();
    }

    bool isScreenOpen() { return screen() != nullptr; }

    void movePointer(NSPoint place)
    {
        if (auto* const display = screen())
            display->movePointer(place);
    }

    void pressButton(NSInteger button)
    {
        if (auto* const display = screen())
            display->pressButton(static_cast<int>(button));
    }

    void releaseButton(NSInteger button)
    {
        if (auto* const display = screen())
            display->releaseButton(static_cast<int>(button));
    }

    void click(NSPoint place, NSInteger count, NSInteger button)
    {
        if (auto* const display = screen())
            display->click(place, static_cast<int>(count), static_cast<int>(button));
    }

    void drag(NSPoint from, NSPoint to, NSInteger steps, NSInteger button)
    {
        if (auto* const display = screen())
            display->drag(from, to, static_cast<int>(steps), static_cast<int>(button));
    }

    void scroll(CGFloat x, CGFloat y, bool precise)
    {
        if (auto* const display = screen())
            display->scroll(x, y, precise);
    }

    void typeText(NSString* text)
    {
        if (auto* const display = screen())
            display->typeText(utf16Of(text));
    }

    void pressKey(NSString* characters, NSEventModifierFlags modifiers)
    {
        auto* const display = screen();
        if (!display)
            return;
        display::ScriptedKey key;
        key.characters = utf16Of(characters);
        key.modifiers = static_cast<display::Modifiers>(modifiers);
        display->pressKey(key);
        display->releaseKey(key);
    }

    void doAnything(std::uint32_t seed, NSInteger times)
    {
        auto* const display = screen();
        if (!display)
            return;
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        display::RandomUser user(*display, seed);
        for (NSInteger i = 0; i < times && screen() == display; ++i) {
            user.act();
            application->processEvents();
        }
        if (screen() != display)
            return;
        user.giveUp();
        application->processEvents();
    }

    Ref<NSData> screenshot()
    {
        auto* const display = screen();
        if (!display)
            return nullptr;
        const display::Snapshot shot = display->snapshot();
        const Ref<CGImage> image
            = quartz::imageFromPixels(shot.words.data(), static_cast<std::size_t>(shot.width),
                static_cast<std::size_t>(shot.height), shot.width * 4);
        const std::string png = quartz::encodePNG(image.get());
        return NSData::cls().dataWithBytes_length(png.data(), png.size());
    }

    std::uint32_t pixelAt(NSInteger x, NSInteger y)
    {
        auto* const display = screen();
        if (!display)
            return 0;
        const display::Snapshot shot = display->snapshot();
        if (x < 0 || y < 0 || x >= shot.width || y >= shot.height)
            return 0;
        return shot.at(static_cast<int>(x), static_cast<int>(y));
    }

}

namespace {

    void useVirtualClock(bool isVirtual) { isVirtual ? Clock::useVirtual() : Clock::useSystem(); }
    double wallClock() { return Clock::wall(); }

}

BRINDLE_FUNCTION_AS(brindleOpenScreen, &headless::openScreen)
BRINDLE_FUNCTION_AS(brindleCloseScreen, &headless::closeScreen)
BRINDLE_FUNCTION_AS(brindleIsScreenOpen, &headless::isScreenOpen)
BRINDLE_FUNCTION_AS(brindleMovePointer, &headless::movePointer)
BRINDLE_FUNCTION_AS(brindlePressButton, &headless::pressButton)
BRINDLE_FUNCTION_AS(brindleReleaseButton, &headless::releaseButton)
BRINDLE_FUNCTION_AS(brindleClick, &headless::click)
BRINDLE_FUNCTION_AS(brindleDrag, &headless::drag)
BRINDLE_FUNCTION_AS(brindleScroll, &headless::scroll)
BRINDLE_FUNCTION_AS(brindleTypeText, &headless::typeText)
BRINDLE_FUNCTION_AS(brindlePressKey, &headless::pressKey)
BRINDLE_FUNCTION_AS(brindleScreenshot, &headless::screenshot)
BRINDLE_FUNCTION_AS(brindlePixelAt, &headless::pixelAt)
BRINDLE_FUNCTION_AS(brindleSetLogSink, &setLogSink)
BRINDLE_FUNCTION_AS(brindleBeepCount, &beepCount)
BRINDLE_FUNCTION_AS(brindleUseVirtualClock, &useVirtualClock)
BRINDLE_FUNCTION_AS(brindleWallClock, &wallClock)

}
