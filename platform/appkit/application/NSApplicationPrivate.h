// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "appkit/NSApplication.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "display/Display.h"
#include "foundation/NSRunLoop.h"
#include "foundation/QueuePrivate.h"
#include "foundation/ShortVector.h"

namespace brindle {

/// One modal loop.
struct ModalSession {
    Ref<NSWindow> window;
    NSInteger code = NSRunContinuesResponse;
    NSWindowLevel level = NSNormalWindowLevel; // of the window before
};

/// Everything the application knows. It exists from the first window or event on, whether or not somebody has asked
/// for the application object.
struct ApplicationState {
    Ref<NSApplication> object;
    bool isStandIn = false; // the object gives way to one of a class that the host asks for
    WeakRef<NSObject> delegate;
    Ref<NSObject> mainMenu;

    std::unique_ptr<display::Display> display;
    bool displayOpened = false;
    Ref<NSRunLoopSource> source;
    Ref<NSRunLoopObserver> observer;
    std::optional<std::vector<display::Screen>> screenOverride;

    std::mutex queueLock; // any thread may post
    Queue<Ref<NSEvent>> queue;
    Ref<NSEvent> current;

    std::vector<NSWindow*> windows; // all that live, in the order of their making
    std::vector<NSWindow*> order; // the visible ones, front to back
    std::unordered_map<NSInteger, NSWindow*> byNumber;
    std::unordered_map<display::SurfaceId, NSWindow*> bySurface;
    NSWindow* keyWindow = nullptr;
    NSWindow* mainWindow = nullptr;
    NSWindow* lastKeyWindow = nullptr; // key before the application was deactivated
    NSWindow* pressedWindow = nullptr; // has the buttons that are down

    // Presses that belong together.
    NSInteger eventNumber = 0;
    NSInteger clickCount = 0;
    double lastPress = -1e9;
    NSPoint lastPressPlace;
    int lastButton = -1;
    NSPoint lastPlace;
    unsigned buttonsDown = 0;

    display::SurfaceId focusedSurface = 0;
    bool focusLost = false;
    bool active = false;
    bool hidden = false;
    bool running = false;
    bool launched = false;
    bool stopping = false;
    std::vector<NSWindow*> hiddenWindows; // by `hide:`, front to back
    std::vector<std::unique_ptr<ModalSession>> modal;
};

/// What the files of this folder do with the application beside sending messages.
struct ApplicationAccess {
    static ApplicationState& state();

    // The display; NSApplication-Display.cpp.
    static display::Display& display();
    static display::Display* displayOrNull() { return state().display.get(); }
    /// Reads what the display has to say: native changes are followed at once, the rest becomes events.
    /// - Returns: whether there was anything.
    static bool pump();
    /// Tells windows and everybody else that the screens are different.
    static void screensChanged();
    /// Draws what needs it and hands it to the display.
    static void draw();
    static NSPoint pointerLocation();
    static NSEventModifierFlags modifiers();
    static double now();
    /// Answers where an event happened on the screen.
    static NSPoint screenLocation(const NSEvent& event);

    // Windows.
    /// Answers a list of windows that keeps them: what one of them is told may end another.
    using Kept = ShortVector<Ref<NSWindow>, 32>;
    static Kept kept(const std::vector<NSWindow*>& windows);
    static void addWindow(NSWindow& window);
    static void removeWindow(NSWindow& window);
    static Ref<NSWindow> windowWithNumber(NSInteger number);
    static void setKeyWindow(NSWindow* window);
    static void setMainWindow(NSWindow* window);
    /// Chooses the next key and main window after one has gone.
    static void windowGone(NSWindow& window);
    static bool worksNow(const NSWindow& window); // no modal loop keeps it from events

    // Activity.
    static void setActive(bool active);
    static void post(NSEvent& event, bool atStart);
    /// Takes an event out of the queue if it is still there.
    static void withdraw(NSEvent& event);
    static void notify(NSString* name, const char* delegateSelector);
    static void lastWindowClosed();
};

/// Kinds of the events that carry news of the native windows, in `subtype` of the system's own event type.
enum class NativeNews : std::int16_t {
    pointerLeft = 1,
    focusIn,
    focusOut,
    closeRequested,
    grabLost
};

struct ScreenAccess {
    static const std::vector<display::Screen>& all();
    static Ref<NSScreen> make(const display::Screen& screen);
    /// Answers the screen that shows most of a rectangle; the primary one when none does, null without screens.
    static const display::Screen* screenFor(NSRect rect);
    static display::Screen describe(NSScreen& screen);
};

}
