// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "appkit/NSApplication.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "display/headless/HeadlessDisplay.h"
#include "foundation/Clock.h"

namespace brindle {

/// A screen in memory with one borderless window that covers it, a pointer, a keyboard and a clock.
///
/// Places are in points from the bottom left of the screen. A press and what follows it are only queued; the release
/// sends them all, because a control that tracks the pointer reads them in a loop of its own. Where no release
/// comes, `process` sends what is there and ends such a loop.
class HeadlessScreen {
public:
    explicit HeadlessScreen(double width = 400, double height = 300, double scale = 1)
    {
        Clock::useVirtual();
        auto made = std::make_unique<display::HeadlessDisplay>(
            std::vector { display::HeadlessDisplay::screenOfSize(width, height, scale) });
        display_ = made.get();
        display_->setTimeSource([] { return Clock::uptime(); });
        application_ = NSApplication::cls().sharedApplication();
        installDisplay(std::move(made));
        window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, width, height), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        window_->orderFrontRegardless();
        application_->activateIgnoringOtherApps(true);
        process();
    }
    ~HeadlessScreen()
    {
        window_->close();
        installDisplay(nullptr);
        Clock::useSystem();
    }
    HeadlessScreen(const HeadlessScreen&) = delete;
    HeadlessScreen& operator=(const HeadlessScreen&) = delete;

    NSApplication& application() { return *application_; }
    NSWindow& window() { return *window_; }
    display::HeadlessDisplay& display() { return *display_; }

    /// Adds a new view to the window and draws it.
    template <class View> Ref<View> add(NSRect frame)
    {
        Ref<View> view = cast<View>(alloc<View>()->initWithFrame(frame));
        window_->contentView()->addSubview(view.get());
        process();
        return view;
    }

    /// Sends all events that are there, draws and runs what is due now.
    void process() { application_->processEvents(); }
    /// Lets time pass.
    void advance(double seconds)
    {
        NSRunLoop::cls().mainRunLoop()->advance(seconds);
        process();
    }
    /// Draws and answers what the screen shows.
    display::Snapshot pixels()
    {
        process();
        return display_->snapshot();
    }

    class Pointer {
    public:
        explicit Pointer(HeadlessScreen& screen)
            : screen_(screen)
        {
        }
        void moveTo(NSPoint place)
        {
            screen_.display_->movePointer(place);
            screen_.process();
        }
        void press(NSPoint place, int button = 0)
        {
            screen_.display_->movePointer(place);
            screen_.display_->pressButton(button);
        }
        void dragTo(NSPoint place) { screen_.display_->movePointer(place); }
        void release(int button = 0)
        {
            screen_.display_->releaseButton(button);
            screen_.process();
        }
        void click(NSPoint place, int count = 1, int button = 0)
        {
            screen_.display_->click(place, count, button);
            screen_.process();
        }
        void scroll(double x, double y, bool precise = false)
        {
            screen_.display_->scroll(x, y, precise);
            screen_.process();
        }

    private:
        HeadlessScreen& screen_;
    };

    class Keyboard {
    public:
        explicit Keyboard(HeadlessScreen& screen)
            : screen_(screen)
        {
        }
        /// Types text into the key window.
        void type(std::u16string_view text)
        {
            screen_.display_->typeText(text);
            screen_.process();
        }
        /// Presses and releases one key together with modifiers.
        void press(char16_t character, NSEventModifierFlags modifiers = 0)
        {
            display::ScriptedKey key;
            key.characters = std::u16string(1, character);
            key.modifiers = modifiers;
            screen_.display_->pressKey(key);
            screen_.display_->releaseKey(key);
            screen_.process();
        }

    private:
        HeadlessScreen& screen_;
    };

    Pointer pointer() { return Pointer(*this); }
    Keyboard keyboard() { return Keyboard(*this); }

private:
    display::HeadlessDisplay* display_ = nullptr; // the application's
    Ref<NSApplication> application_;
    Ref<NSWindow> window_;
};

}
