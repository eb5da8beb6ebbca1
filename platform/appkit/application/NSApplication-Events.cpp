// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSApplicationPrivate.h"
#include "NSEventPrivate.h"
#include "appkit/NSMenu.h"
#include "appkit/views/CursorPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/ToolTipsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSBeep.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSApplication::Methods<struct Sending> {

    static ApplicationState& app() { return ApplicationAccess::state(); }

    // ---- news of the native windows

    static void focusIn(NSWindow* window, const NSEvent& event)
    {
        app().focusedSurface = static_cast<display::SurfaceId>(event.data1());
        app().focusLost = false;
        const Ref<NSWindow> alive(window);
        AllServed all;
        all.serve([] { ApplicationAccess::setActive(true); });
        if (window && !window->isKeyWindow() && window->canBecomeKeyWindow()
            && ApplicationAccess::worksNow(*window)) {
            all.serve([&] { ApplicationAccess::setKeyWindow(window); });
            all.serve([&] { window->makeMainWindow(); });
        }
        all.end();
    }
    static void focusOut(const NSEvent& event)
    {
        if (app().focusedSurface != static_cast<display::SurfaceId>(event.data1()))
            return;
        app().focusedSurface = 0;
        // Another window of ours may have got it: its news is behind this one.
        ApplicationAccess::pump();
        const std::lock_guard lock(app().queueLock);
        app().focusLost
            = std::none_of(app().queue.begin(), app().queue.end(), [](const auto& waiting) {
                  return EventAccess::isNews(
                      *waiting, static_cast<std::int16_t>(NativeNews::focusIn));
              });
    }
    static void news(NSWindow* window, NSEvent& event)
    {
        switch (static_cast<NativeNews>(event.subtype())) {
        case NativeNews::pointerLeft:
            if (window && !app().buttonsDown) {
                CursorAccess::enter(nullptr);
                ToolTips::dismiss();
                WindowAccess::pointerLeft(*window, &event);
            }
            return;
        case NativeNews::focusIn:
            return focusIn(window, event);
        case NativeNews::focusOut:
            focusOut(event);
            if (app().focusLost)
                ApplicationAccess::setActive(false);
            return;
        case NativeNews::closeRequested:
            if (window && ApplicationAccess::worksNow(*window))
                window->performClose(nullptr);
            return;
        case NativeNews::grabLost:
            return;
        }
    }

    // ---- keys

    static bool performKeyEquivalent(NSWindow* window, NSEvent& event)
    {
        if (window && window->performKeyEquivalent(&event))
            return true;
        const Ref<NSMenu> menu = cast<NSMenu>(app().mainMenu);
        return maybe(menu)->performKeyEquivalent(&event);
    }
    // Posted keys may name a window that is not key; those of the display go to the key window.
    static Ref<NSWindow> keyTarget(NSEvent& event)
    {
        Ref<NSWindow> window = app().keyWindow ? Ref<NSWindow>(app().keyWindow) : event.window();
        if (window && !ApplicationAccess::worksNow(*window))
            return app().modal.back()->window;
        return window;
    }
    static void key(NSEvent& event)
    {
        const Ref<NSWindow> window = keyTarget(event);
        if (event.type() == NSKeyDown && (event.modifierFlags() & NSCommandKeyMask)
            && performKeyEquivalent(window.get(), event))
            return;
        if (window)
            window->sendEvent(&event);
    }

    // ---- the pointer

    // Drags and releases belong to the window that got the press.
    static Ref<NSWindow> pointerTarget(NSEvent& event)
    {
        const NSEventType type = event.type();
        const Ref<NSWindow> window = event.window();
        if (events::isIn(type, events::kDowns))
            app().pressedWindow = window.get();
        if (!events::isIn(type, events::kUps | events::kDrags) || !app().pressedWindow)
            return window;
        const Ref<NSWindow> pressed(app().pressedWindow);
        if (events::isIn(type, events::kUps) && app().buttonsDown == 0)
            app().pressedWindow = nullptr;
        return pressed;
    }
    static void pointer(NSEvent& event)
    {
        const Ref<NSWindow> window = pointerTarget(event);
        const bool down = events::isIn(event.type(), events::kDowns);
        if (!window)
            return;
        if (!ApplicationAccess::worksNow(*window)) {
            if (down)
                NSBeep();
            return;
        }
        const bool dragging = events::isIn(event.type(), events::kDrags);
        const bool up = events::isIn(event.type(), events::kUps);
        if (event.type() == NSMouseMoved || (up && app().buttonsDown == 0))
            WindowAccess::updateCursor(*window, event.locationInWindow());
        if (event.type() == NSMouseMoved)
            ToolTips::pointerMoved(*window, event.locationInWindow());
        if (dragging || event.type() == NSMouseMoved || up)
            WindowAccess::trackPointer(*window, event, dragging);
        if (down && !app().active && event.type() == NSLeftMouseDown
            && window->canBecomeKeyWindow())
            ApplicationAccess::setActive(true);
        window->sendEvent(&event);
        if (event.type() == NSScrollWheel)
            contentMoved(*window, event);
    }
    // Under the pointer, which rests, something else may lie now.
    static void contentMoved(NSWindow& window, NSEvent& event)
    {
        WindowAccess::settleTracking(window);
        WindowAccess::trackPointer(window, event, app().buttonsDown != 0);
    }

    static void sendEvent(NSApplication&, NSEvent* lent)
    {
        if (!lent)
            return;
        const Ref<NSEvent> event(lent);
        const NSEventType type = event->type();
        app().current = event;
        if (events::isIn(type, events::kDowns | NSScrollWheelMask | NSKeyDownMask))
            ToolTips::dismiss();
        for (const Ref<NSWindow>& window : ApplicationAccess::kept(app().order))
            WindowAccess::settleTracking(*window);
        if (type == NSAppKitDefined)
            news(event->window().get(), *event);
        else if (events::isIn(type, events::kKeys | NSFlagsChangedMask))
            key(*event);
        else if (events::isIn(type, events::kPointer)) {
            CursorAccess::pointerMoved();
            pointer(*event);
        } else if (const Ref<NSWindow> window = event->window())
            window->sendEvent(lent);
    }

    // ---- actions

    static Ref<NSObject> targetAlong(NSWindow* window, SEL action)
    {
        if (!window)
            return nullptr;
        for (Ref<NSResponder> next = window->firstResponder(); next; next = next->nextResponder()) {
            if (next->respondsToSelector(action))
                return next;
        }
        if (window->respondsToSelector(action))
            return window;
        const Ref<NSObject> delegate = window->delegate();
        return delegate && delegate->respondsToSelector(action) ? delegate : Ref<NSObject>();
    }
    static Ref<NSObject> targetFor(NSApplication& self, SEL action, NSObject* target, NSObject*)
    {
        if (target)
            return target;
        if (Ref<NSObject> found = targetAlong(app().keyWindow, action))
            return found;
        if (app().mainWindow != app().keyWindow && app().modal.empty()) {
            if (Ref<NSObject> found = targetAlong(app().mainWindow, action))
                return found;
        }
        if (self.respondsToSelector(action))
            return &self;
        const Ref<NSObject> delegate = self.delegate();
        return delegate && delegate->respondsToSelector(action) ? delegate : Ref<NSObject>();
    }
    static Ref<NSObject> targetForAction(NSApplication& self, SEL action)
    {
        return self.targetForAction_to_from(action, nullptr, nullptr);
    }
    static bool sendAction(NSApplication& self, SEL action, NSObject* target, NSObject* sender)
    {
        if (!action)
            return false;
        const Ref<NSObject> found = self.targetForAction_to_from(action, target, sender);
        if (!found || !found->respondsToSelector(action))
            return false;
        const Ref<NSObject> alive(sender);
        found->performSelector_withObject(action, sender);
        return true;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "sendEvent:", imp<sendEvent> },
            { "targetForAction:to:from:", imp<targetFor> },
            { "targetForAction:", imp<targetForAction> },
            { "sendAction:to:from:", imp<sendAction> },
        });
    }
};
BRINDLE_RECORD(NSApplication, Sending)

}
