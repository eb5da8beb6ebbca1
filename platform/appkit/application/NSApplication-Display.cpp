// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "DesktopAppearancePrivate.h"
#include "NSApplicationPrivate.h"
#include "NSEventPrivate.h"
#include "appkit/menus/MenuSessionPrivate.h"
#include "appkit/views/CursorPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/ToolTipsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "display/OpenDisplay.h"
#include "foundation/Clock.h"
#include "foundation/NSBeep.h"
#include "quartz/text/FontFamilies.h"

namespace brindle {

ApplicationState& ApplicationAccess::state()
{
    // Never destroyed: windows may end while the process does.
    static auto* const state = new ApplicationState;
    return *state;
}

namespace {

    using display::Event;

    constexpr double kClickSeconds = 0.4;
    constexpr double kClickPoints = 4;
    constexpr NSInteger kDrawingOrder = 2000000; // after everything that may still change a view

    [[noreturn]] void endWithoutServer()
    {
        static constexpr char line[] = "brindle: lost the connection to the display server\n";
        [[maybe_unused]] const auto written = write(STDERR_FILENO, line, sizeof line - 1);
        std::fflush(nullptr);
        std::exit(1);
    }

    void removeFromLoop(ApplicationState& app)
    {
        if (app.source)
            app.source->invalidate();
        if (app.observer)
            app.observer->invalidate();
        app.source = nullptr;
        app.observer = nullptr;
    }

    void addToLoop(ApplicationState& app)
    {
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        if (const int descriptor = app.display->fileDescriptor(); descriptor >= 0) {
            app.source = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
                descriptor, NSRunLoopSourceReadable, [](NSUInteger) { ApplicationAccess::pump(); });
            loop->addSource_forMode(app.source.get(), NSRunLoopCommonModes);
        }
        app.observer = NSRunLoopObserver::cls().observerWithOrder_handler(kDrawingOrder, [] {
            ApplicationAccess::pump();
            ApplicationAccess::draw();
            // Drawing talks to the server, and what that reads along does not wake a loop that sleeps.
            if (ApplicationAccess::pump())
                NSRunLoop::cls().mainRunLoop()->wakeUp();
        });
        loop->addObserver_forMode(app.observer.get(), NSRunLoopCommonModes);
    }

    void use(std::unique_ptr<display::Display> display)
    {
        ApplicationState& app = ApplicationAccess::state();
        app.display = std::move(display);
        app.displayOpened = true;
        addToLoop(app);
        if (app.display->fileDescriptor() >= 0)
            appkit::beginFollowingDesktop();
        setBeepHook([] {
            if (display::Display* bell = ApplicationAccess::displayOrNull())
                bell->beep();
        });
    }

    // ---- from the display's events to the application's

    NSWindow* windowOf(const Event& event)
    {
        const ApplicationState& app = ApplicationAccess::state();
        const auto found = app.bySurface.find(event.surface);
        return found == app.bySurface.end() ? nullptr : found->second;
    }

    EventFields fieldsFor(const Event& event, NSEventType type)
    {
        EventFields fields;
        fields.type = type;
        fields.flags = event.modifiers;
        fields.timestamp = event.time;
        const NSWindow* window = windowOf(event);
        fields.windowNumber = window ? WindowAccess::state(*window).number : 0;
        fields.location = window ? event.location : event.screenLocation;
        fields.screenLocation = event.screenLocation;
        fields.hasScreenLocation = true;
        return fields;
    }

    void enqueue(const EventFields& fields)
    {
        const Ref<NSEvent> event = EventAccess::makeAgain(fields);
        ApplicationAccess::post(*event, false);
    }

    void countClick(ApplicationState& app, const Event& event)
    {
        const double distance = std::hypot(event.screenLocation.x - app.lastPressPlace.x,
            event.screenLocation.y - app.lastPressPlace.y);
        const bool again = event.button == app.lastButton
            && event.time - app.lastPress <= kClickSeconds && distance <= kClickPoints;
        app.clickCount = again ? app.clickCount + 1 : 1;
        app.lastPress = event.time;
        app.lastPressPlace = event.screenLocation;
        app.lastButton = event.button;
    }

    void pointerButton(const Event& event, bool down)
    {
        ApplicationState& app = ApplicationAccess::state();
        const unsigned bit = 1u << (event.button < 31 ? event.button : 31);
        if (down) {
            countClick(app, event);
            ++app.eventNumber;
            app.buttonsDown |= bit;
        } else
            app.buttonsDown &= ~bit;
        EventFields fields = fieldsFor(
            event, events::typeFor(down ? events::Phase::down : events::Phase::up, event.button));
        fields.number = app.eventNumber;
        fields.clickCount = app.clickCount;
        fields.pressure = down ? 1 : 0;
        fields.button = static_cast<std::uint8_t>(event.button);
        app.lastPlace = event.screenLocation;
        enqueue(fields);
    }

    void pointerMoved(const Event& event)
    {
        ApplicationState& app = ApplicationAccess::state();
        int button = 0;
        while (app.buttonsDown && !(app.buttonsDown >> button & 1))
            ++button;
        EventFields fields = fieldsFor(event,
            app.buttonsDown ? events::typeFor(events::Phase::dragged, button) : NSMouseMoved);
        fields.number = app.eventNumber;
        fields.clickCount = app.buttonsDown ? app.clickCount : 0;
        fields.pressure = app.buttonsDown ? 1 : 0;
        fields.button = static_cast<std::uint8_t>(button);
        fields.deltaX = event.screenLocation.x - app.lastPlace.x;
        fields.deltaY = app.lastPlace.y - event.screenLocation.y;
        app.lastPlace = event.screenLocation;
        enqueue(fields);
    }

    void scrolled(const Event& event)
    {
        EventFields fields = fieldsFor(event, NSScrollWheel);
        fields.deltaX = event.scrollX;
        fields.deltaY = event.scrollY;
        fields.precise = event.preciseScroll;
        enqueue(fields);
    }

    Ref<NSString> textOf(const std::u16string& units)
    {
        return stringFrom(std::u16string_view(units));
    }

    void key(const Event& event, NSEventType type)
    {
        EventFields fields = fieldsFor(event, type);
        fields.characters = textOf(event.characters);
        fields.unmodified = textOf(event.charactersIgnoringModifiers);
        if (event.latinCharacter && event.latinCharacter < 0x10000)
            fields.latin = textOf(std::u16string(1, static_cast<char16_t>(event.latinCharacter)));
        fields.keyCode = event.keyCode;
        fields.repeat = event.repeat;
        enqueue(fields);
    }

    void news(const Event& event, NativeNews kind)
    {
        EventFields fields = fieldsFor(event, NSAppKitDefined);
        fields.subtype = static_cast<std::int16_t>(kind);
        fields.data1 = static_cast<NSInteger>(event.surface);
        enqueue(fields);
    }

    void exposed(NSWindow* window)
    {
        if (!window)
            return;
        WindowAccess::drawIfVisible(*window);
        if (WindowAccess::state(*window).backing)
            window->flushWindow();
        WindowAccess::notify(*window, NSWindowDidExposeNotification, "windowDidExpose:");
    }

    void take(const Event& event)
    {
        const Ref<NSWindow> window(windowOf(event));
        switch (event.kind) {
        case Event::Kind::pointerDown:
            return pointerButton(event, true);
        case Event::Kind::pointerUp:
            return pointerButton(event, false);
        case Event::Kind::pointerMoved:
        case Event::Kind::pointerEntered:
            return pointerMoved(event);
        case Event::Kind::pointerLeft:
            return news(event, NativeNews::pointerLeft);
        case Event::Kind::scroll:
            return scrolled(event);
        case Event::Kind::keyDown:
            return key(event, NSKeyDown);
        case Event::Kind::keyUp:
            return key(event, NSKeyUp);
        case Event::Kind::modifiersChanged:
            return key(event, NSFlagsChanged);
        case Event::Kind::focusIn:
            return news(event, NativeNews::focusIn);
        case Event::Kind::focusOut:
            return news(event, NativeNews::focusOut);
        case Event::Kind::closeRequested:
            return news(event, NativeNews::closeRequested);
        case Event::Kind::grabLost:
            return news(event, NativeNews::grabLost);
        case Event::Kind::moveResizeEnded:
            if (window)
                WindowAccess::endLiveResize(*window);
            return;
        case Event::Kind::frameChanged:
            if (window)
                WindowAccess::frameChangedByDesktop(*window, event.frame);
            return;
        case Event::Kind::stateChanged:
            if (window)
                WindowAccess::stateChangedByDesktop(*window, event.state);
            return;
        case Event::Kind::exposed:
            return exposed(window.get());
        case Event::Kind::screensChanged:
            return ApplicationAccess::screensChanged();
        case Event::Kind::appearanceChanged:
            return appkit::lookChanged();
        case Event::Kind::disconnected:
            endWithoutServer();
        case Event::Kind::none:
            return;
        }
    }

}

display::Display& ApplicationAccess::display()
{
    ApplicationState& app = state();
    if (!app.displayOpened) {
        // While the server goes on answering, and windows are made.
        use(display::openDisplay([] { text::readFontsAhead(); }));
    }
    return *app.display;
}

bool ApplicationAccess::pump()
{
    ApplicationState& app = state();
    display::Event event;
    bool any = false;
    while (app.display && app.display->pollEvent(event)) {
        take(event);
        event = {};
        any = true;
    }
    return any;
}

namespace {

    // What one window's step does may order others in and out.
    template <class Step> void eachVisibleWindow(Step&& step)
    {
        const std::vector<NSWindow*>& now = ApplicationAccess::state().order;
        const ShortVector<NSWindow*, 32> order(now.begin(), now.end());
        for (NSWindow* lent : order) {
            if (std::find(now.begin(), now.end(), lent) != now.end())
                step(*lent);
        }
    }

}

void ApplicationAccess::screensChanged()
{
    eachVisibleWindow(WindowAccess::settleScreen);
    MenuSession::screensChanged();
    notify(NSApplicationDidChangeScreenParametersNotification,
        "applicationDidChangeScreenParameters:");
}

void ApplicationAccess::draw()
{
    eachVisibleWindow(WindowAccess::drawIfVisible);
    if (state().display)
        state().display->flush();
}

NSPoint ApplicationAccess::pointerLocation() { return display().pointerLocation(); }
NSEventModifierFlags ApplicationAccess::modifiers() { return display().modifiers(); }
double ApplicationAccess::now() { return display().now(); }

NSPoint ApplicationAccess::screenLocation(const NSEvent& event)
{
    return EventAccess::screenLocation(event);
}

display::Display* installDisplay(std::unique_ptr<display::Display> display)
{
    ApplicationState& app = ApplicationAccess::state();
    ToolTips::dismiss();
    for (const Ref<NSWindow>& window : ApplicationAccess::kept(app.windows)) {
        WindowAccess::orderOut(*window);
        WindowAccess::dropSurface(*window);
    }
    removeFromLoop(app);
    app.display.reset();
    app.displayOpened = false;
    app.focusedSurface = 0;
    app.focusLost = false;
    app.buttonsDown = 0;
    app.pressedWindow = nullptr;
    app.lastPress = -1e9;
    app.current = nullptr;
    {
        const std::lock_guard lock(app.queueLock);
        app.queue.clear();
    }
    ApplicationAccess::setActive(false);
    if (display)
        use(std::move(display));
    CursorAccess::displayChanged();
    return app.display.get();
}

}
