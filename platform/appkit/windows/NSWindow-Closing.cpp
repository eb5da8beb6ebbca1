// SPDX-License-Identifier: Apache-2.0
#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "foundation/NSBeep.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

void WindowAccess::stateChangedByDesktop(NSWindow& window, display::SurfaceState now)
{
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    s.zoomed = now.zoomed;
    if (std::exchange(s.miniaturized, now.minimised) != now.minimised) {
        if (now.minimised)
            notify(window, NSWindowDidMiniaturizeNotification, "windowDidMiniaturize:");
        else
            notify(window, NSWindowDidDeminiaturizeNotification, "windowDidDeminiaturize:");
    }
    if (std::exchange(s.fullScreen, now.fullScreen) == now.fullScreen)
        return;
    window.setStyleMask(
        now.fullScreen ? s.style | NSFullScreenWindowMask : s.style & ~NSFullScreenWindowMask);
    if (now.fullScreen)
        notify(window, NSWindowDidEnterFullScreenNotification, "windowDidEnterFullScreen:");
    else
        notify(window, NSWindowDidExitFullScreenNotification, "windowDidExitFullScreen:");
}

namespace {

    bool agrees(NSWindow& window)
    {
        if (const Ref<NSObject> delegate = window.delegate();
            delegate && delegate->respondsToSelector(selector<"windowShouldClose:">))
            return delegate->send<"windowShouldClose:", bool>(&window);
        if (window.respondsToSelector(selector<"windowShouldClose:">))
            return window.send<"windowShouldClose:", bool>(&window);
        return true;
    }

}

void WindowAccess::closeIfAgreed(NSWindow& window)
{
    const Ref<NSWindow> alive(&window);
    if (agrees(window))
        window.close();
}

template <> struct NSWindow::Methods<struct Closing> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static void close(NSWindow& self)
    {
        WindowState& state = of(self);
        if (std::exchange(state.closed, true))
            return;
        const Ref<NSWindow> alive(&self);
        AllServed all; // it closes though somebody raises
        all.serve([&] { WindowAccess::abortSheets(self); });
        all.serve(
            [&] { WindowAccess::notify(self, NSWindowWillCloseNotification, "windowWillClose:"); });
        if (const Ref<NSWindow> parent = state.parent)
            all.serve([&] { parent->removeChildWindow(&self); });
        const bool counts = state.wasShown;
        all.serve([&] { WindowAccess::orderOut(self); });
        if (state.closed) { // or somebody showed it again meanwhile
            state.wasShown = false;
            all.serve([&] { WindowAccess::dropSurface(self); });
            if (counts)
                all.serve([] { ApplicationAccess::lastWindowClosed(); });
        }
        all.end();
    }
    static void performClose(NSWindow& self, NSObject*)
    {
        if (!(of(self).style & NSClosableWindowMask) || WindowAccess::attachedSheet(self))
            return NSBeep();
        WindowAccess::closeIfAgreed(self);
    }

    static void miniaturize(NSWindow& self, NSObject*)
    {
        WindowState& state = of(self);
        if (state.miniaturized || !state.visible)
            return;
        WindowAccess::notify(self, NSWindowWillMiniaturizeNotification, "windowWillMiniaturize:");
        WindowAccess::surface(self).minimise();
        ApplicationAccess::pump(); // a desktop in this process has done it already
    }
    static void deminiaturize(NSWindow& self, NSObject*)
    {
        if (!of(self).miniaturized)
            return;
        WindowAccess::surface(self).show();
        ApplicationAccess::pump();
    }
    static void performMiniaturize(NSWindow& self, NSObject* sender)
    {
        if (!(of(self).style & NSMiniaturizableWindowMask))
            return NSBeep();
        self.miniaturize(sender);
    }
    static bool isMiniaturized(NSWindow& self) { return of(self).miniaturized; }

    static bool mayZoom(NSWindow& self)
    {
        const WindowState& state = of(self);
        const Ref<NSObject> delegate = self.delegate();
        if (!delegate || !delegate->respondsToSelector(selector<"windowShouldZoom:toFrame:">))
            return true;
        const display::Screen* screen = ScreenAccess::screenFor(state.frame);
        const NSRect large = screen ? screen->visibleFrame : state.frame;
        return delegate->send<"windowShouldZoom:toFrame:", bool>(
            &self, state.zoomed ? state.restoredFrame : large);
    }
    static void zoom(NSWindow& self, NSObject*)
    {
        const Ref<NSWindow> alive(&self);
        if (!mayZoom(self))
            return;
        WindowState& state = of(self);
        if (!state.surface || !state.surface->isShown())
            return;
        if (!state.zoomed)
            state.restoredFrame = state.frame;
        state.surface->setZoomed(!state.zoomed);
        ApplicationAccess::pump();
    }
    static void performZoom(NSWindow& self, NSObject* sender)
    {
        if (!(of(self).style & NSResizableWindowMask))
            return NSBeep();
        self.zoom(sender);
    }
    static bool isZoomed(NSWindow& self) { return of(self).zoomed; }

    static void toggleFullScreen(NSWindow& self, NSObject*)
    {
        const Ref<NSWindow> alive(&self);
        const bool enters = !of(self).fullScreen;
        if (enters)
            WindowAccess::notify(
                self, NSWindowWillEnterFullScreenNotification, "windowWillEnterFullScreen:");
        else
            WindowAccess::notify(
                self, NSWindowWillExitFullScreenNotification, "windowWillExitFullScreen:");
        WindowAccess::surface(self).setFullScreen(enters);
        ApplicationAccess::pump();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "close", imp<close> },
            { "performClose:", imp<performClose> },
            { "miniaturize:", imp<miniaturize> },
            { "deminiaturize:", imp<deminiaturize> },
            { "performMiniaturize:", imp<performMiniaturize> },
            { "isMiniaturized", imp<isMiniaturized> },
            { "zoom:", imp<zoom> },
            { "performZoom:", imp<performZoom> },
            { "isZoomed", imp<isZoomed> },
            { "toggleFullScreen:", imp<toggleFullScreen> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Closing)

}
