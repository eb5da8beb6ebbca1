// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSApplicationPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Runtime.h"

namespace brindle {

void ApplicationAccess::notify(NSString* name, const char* delegateSelector)
{
    ApplicationState& app = state();
    const Ref<NSNotification> note
        = NSNotification::cls().notificationWithName_object(name, app.object.get());
    const SEL sel = sel_registerName(delegateSelector);
    if (const Ref<NSObject> delegate = app.delegate.get();
        delegate && delegate->respondsToSelector(sel))
        delegate->performSelector_withObject(sel, note.get());
    NSNotificationCenter::cls().defaultCenter()->postNotification(note.get());
}

void ApplicationAccess::addWindow(NSWindow& window)
{
    static constinit NSInteger last = 0;
    ApplicationState& app = state();
    WindowAccess::state(window).number = ++last;
    app.windows.push_back(&window);
    app.byNumber[last] = &window;
}

void ApplicationAccess::removeWindow(NSWindow& window)
{
    ApplicationState& app = state();
    const WindowState& s = WindowAccess::state(window);
    std::erase(app.windows, &window);
    std::erase(app.order, &window);
    std::erase(app.hiddenWindows, &window);
    app.byNumber.erase(s.number);
    if (s.surface)
        app.bySurface.erase(s.surface->id());
    for (NSWindow** known :
        { &app.keyWindow, &app.mainWindow, &app.lastKeyWindow, &app.pressedWindow }) {
        if (*known == &window)
            *known = nullptr;
    }
}

Ref<NSWindow> ApplicationAccess::windowWithNumber(NSInteger number)
{
    const ApplicationState& app = state();
    const auto found = app.byNumber.find(number);
    return found == app.byNumber.end() ? nullptr : found->second;
}

void ApplicationAccess::setKeyWindow(NSWindow* window)
{
    ApplicationState& app = state();
    if (NSWindow* const sheet = window ? WindowAccess::attachedSheet(*window) : nullptr;
        sheet && sheet->canBecomeKeyWindow())
        return setKeyWindow(sheet);
    if (app.keyWindow == window)
        return;
    const Ref<NSWindow> old(app.keyWindow);
    const Ref<NSWindow> fresh(window);
    AllServed all;
    app.keyWindow = nullptr;
    if (old)
        all.serve([&] { old->resignKeyWindow(); });
    app.keyWindow = window;
    if (fresh)
        all.serve([&] { fresh->becomeKeyWindow(); });
    all.end();
}

void ApplicationAccess::setMainWindow(NSWindow* window)
{
    ApplicationState& app = state();
    if (app.mainWindow == window)
        return;
    const Ref<NSWindow> old(app.mainWindow);
    const Ref<NSWindow> fresh(window);
    AllServed all;
    app.mainWindow = nullptr;
    if (old)
        all.serve([&] { old->resignMainWindow(); });
    app.mainWindow = window;
    if (fresh)
        all.serve([&] { fresh->becomeMainWindow(); });
    all.end();
}

void ApplicationAccess::windowGone(NSWindow& window)
{
    ApplicationState& app = state();
    const bool wasKey = app.keyWindow == &window;
    const bool wasMain = app.mainWindow == &window;
    if (app.pressedWindow == &window)
        app.pressedWindow = nullptr;
    AllServed all;
    if (wasKey)
        all.serve([] { setKeyWindow(nullptr); });
    if (wasMain)
        all.serve([] { setMainWindow(nullptr); });
    for (const Ref<NSWindow>& next : kept(app.order)) {
        all.serve([&] {
            if (wasKey && !app.keyWindow && WindowAccess::becomesKeyUnasked(*next))
                next->makeKeyWindow();
        });
        const bool isBar = WindowAccess::state(*next).ignoresMouse
            || WindowAccess::state(*next).level >= NSMainMenuWindowLevel;
        all.serve([&] {
            if (wasMain && !app.mainWindow && !isBar && next->canBecomeMainWindow())
                setMainWindow(next.get());
        });
    }
    all.end();
}

ApplicationAccess::Kept ApplicationAccess::kept(const std::vector<NSWindow*>& windows)
{
    return Kept(windows.begin(), windows.end());
}

bool ApplicationAccess::worksNow(const NSWindow& window)
{
    const ApplicationState& app = state();
    if (app.modal.empty())
        return true;
    const NSWindow* const modal = app.modal.back()->window.get();
    for (const NSWindow* w = &window; w; w = WindowAccess::state(*w).parent) {
        if (w == modal)
            return true;
    }
    return WindowAccess::state(window).level >= NSPopUpMenuWindowLevel || window.worksWhenModal();
}

void ApplicationAccess::lastWindowClosed()
{
    ApplicationState& app = state();
    if (!app.running || !app.object)
        return;
    for (const NSWindow* window : app.windows) {
        const WindowState& s = WindowAccess::state(*window);
        if (s.wasShown && !s.closed && (s.style & NSTitledWindowMask))
            return;
    }
    const Ref<NSObject> delegate = app.delegate.get();
    if (delegate
        && delegate->respondsToSelector(
            selector<"applicationShouldTerminateAfterLastWindowClosed:">)
        && delegate->send<"applicationShouldTerminateAfterLastWindowClosed:", bool>(
            app.object.get()))
        app.object->terminate(nullptr);
}

// ---- activity

void ApplicationAccess::setActive(bool active)
{
    ApplicationState& app = state();
    if (app.active == active)
        return;
    AllServed all; // each window goes and comes though somebody raises
    if (active) {
        notify(NSApplicationWillBecomeActiveNotification, "applicationWillBecomeActive:");
        app.active = true;
        // Those that were in front come last, so that each finds its old place.
        for (const Ref<NSWindow>& window : kept(app.windows))
            all.serve([&] { WindowAccess::applicationActivated(*window); });
        if (!app.keyWindow && app.lastKeyWindow && WindowAccess::state(*app.lastKeyWindow).visible)
            all.serve([&] { setKeyWindow(app.lastKeyWindow); });
        notify(NSApplicationDidBecomeActiveNotification, "applicationDidBecomeActive:");
        return all.end();
    }
    notify(NSApplicationWillResignActiveNotification, "applicationWillResignActive:");
    app.active = false;
    const Ref<NSWindow> key(app.keyWindow);
    all.serve([] { setKeyWindow(nullptr); });
    app.lastKeyWindow = key.get();
    const Kept order = kept(app.order);
    for (std::size_t i = order.size(); i-- > 0;) {
        all.serve([&] { WindowAccess::applicationDeactivated(*order[i]); });
        if (WindowAccess::state(*order[i]).waitsForActivation) {
            // The list of windows is the order of their return.
            std::erase(app.windows, order[i].get());
            app.windows.push_back(order[i].get());
        }
    }
    notify(NSApplicationDidResignActiveNotification, "applicationDidResignActive:");
    all.end();
}

template <> struct NSApplication::Methods<struct Windows> {

    static ApplicationState& app() { return ApplicationAccess::state(); }

    // Tool tips are nobody's windows.
    static bool isListed(const NSWindow& window)
    {
        const WindowState& state = WindowAccess::state(window);
        return state.wasShown && state.level != kToolTipLevel;
    }
    static Ref<NSArray> windows(NSApplication&)
    {
        std::vector<Ref<NSObject>> shown;
        for (NSWindow* window : app().windows) {
            if (isListed(*window))
                shown.emplace_back(window);
        }
        std::sort(shown.begin(), shown.end(), [](const Ref<NSObject>& a, const Ref<NSObject>& b) {
            return WindowAccess::state(static_cast<NSWindow&>(*a)).number
                < WindowAccess::state(static_cast<NSWindow&>(*b)).number;
        });
        return makeArray(std::move(shown));
    }
    static Ref<NSArray> orderedWindows(NSApplication&)
    {
        std::vector<Ref<NSObject>> shown;
        for (NSWindow* window : app().order) {
            if (isListed(*window))
                shown.emplace_back(window);
        }
        return makeArray(std::move(shown));
    }
    static Ref<NSWindow> keyWindow(NSApplication&) { return app().keyWindow; }
    static Ref<NSWindow> mainWindow(NSApplication&) { return app().mainWindow; }
    static Ref<NSWindow> windowWithNumber(NSApplication&, NSInteger number)
    {
        return ApplicationAccess::windowWithNumber(number);
    }
    static void updateWindows(NSApplication&)
    {
        for (const Ref<NSWindow>& window : ApplicationAccess::kept(app().order))
            window->update();
    }

    static bool isActive(NSApplication&) { return app().active; }
    static void activate(NSApplication&, bool)
    {
        ApplicationAccess::setActive(true);
        Ref<NSWindow> window(app().keyWindow);
        for (const Ref<NSWindow>& next : ApplicationAccess::kept(app().order)) {
            if (!window && WindowAccess::becomesKeyUnasked(*next))
                window = next;
        }
        if (window)
            window->makeKeyWindow();
    }
    static void deactivate(NSApplication&) { ApplicationAccess::setActive(false); }

    static bool isHidden(NSApplication&) { return app().hidden; }
    static void hide(NSApplication& self, NSObject*)
    {
        if (app().hidden)
            return;
        ApplicationAccess::notify(NSApplicationWillHideNotification, "applicationWillHide:");
        app().hidden = true;
        AllServed all;
        for (const Ref<NSWindow>& window : ApplicationAccess::kept(app().order)) {
            WindowState& state = WindowAccess::state(*window);
            if (!state
                     .visible) // it goes and comes with its parent, or another one was told to close it
                continue;
            all.serve([&] { WindowAccess::orderOut(*window); });
            state.kept = window;
            app().hiddenWindows.push_back(window.get());
        }
        all.serve([&] { self.deactivate(); });
        ApplicationAccess::notify(NSApplicationDidHideNotification, "applicationDidHide:");
        all.end();
    }
    static void unhideOnly(NSApplication&)
    {
        if (!app().hidden)
            return;
        ApplicationAccess::notify(NSApplicationWillUnhideNotification, "applicationWillUnhide:");
        app().hidden = false;
        AllServed all;
        const auto windows = ApplicationAccess::kept(std::exchange(app().hiddenWindows, {}));
        for (std::size_t i = windows.size(); i-- > 0;) {
            if (!WindowAccess::state(*windows[i]).closed)
                all.serve(
                    [&] { WindowAccess::orderIn(*windows[i], NSWindowAbove, nullptr, true); });
        }
        ApplicationAccess::notify(NSApplicationDidUnhideNotification, "applicationDidUnhide:");
        all.end();
    }
    static void unhide(NSApplication& self, NSObject*)
    {
        self.unhideWithoutActivation();
        self.activateIgnoringOtherApps(true);
    }
    // No desktop lets a program hide the windows of others.
    static void hideOthers(NSApplication&, NSObject*) { }

    static void table(Builder& t)
    {
        t.methods({
            { "windows", imp<windows> },
            { "orderedWindows", imp<orderedWindows> },
            { "keyWindow", imp<keyWindow> },
            { "mainWindow", imp<mainWindow> },
            { "windowWithWindowNumber:", imp<windowWithNumber> },
            { "updateWindows", imp<updateWindows> },
            { "isActive", imp<isActive> },
            { "activateIgnoringOtherApps:", imp<activate> },
            { "deactivate", imp<deactivate> },
            { "isHidden", imp<isHidden> },
            { "hide:", imp<hide> },
            { "unhideWithoutActivation", imp<unhideOnly> },
            { "unhide:", imp<unhide> },
            { "hideOtherApplications:", imp<hideOthers> },
        });
    }
};
BRINDLE_RECORD(NSApplication, Windows)

}
