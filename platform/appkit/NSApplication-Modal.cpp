// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSApplicationPrivate.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSApplication::Methods<struct Modal> {

    static ApplicationState& app() { return ApplicationAccess::state(); }

    static NSModalSession begin(NSApplication&, NSWindow* window)
    {
        auto session = std::make_unique<ModalSession>();
        session->window = window;
        app().modal.push_back(std::move(session));
        if (window) {
            app().modal.back()->level = window->level();
            if (window->level() < NSModalPanelWindowLevel)
                window->setLevel(NSModalPanelWindowLevel);
            if (!window->isVisible())
                window->center();
            window->orderFrontRegardless();
            window->makeKeyWindow();
        }
        return app().modal.back().get();
    }
    static void end(NSApplication&, NSModalSession session)
    {
        if (session && session->window)
            Ref<NSWindow>(session->window)->setLevel(session->level);
        std::erase_if(app().modal, [&](const auto& kept) { return kept.get() == session; });
    }

    // Ends the session however the loop is left.
    struct SessionScope {
        SessionScope(NSApplication& self, NSWindow* window)
            : application(&self)
            , session(self.beginModalSessionForWindow(window))
        {
        }
        ~SessionScope() { end(*application, session); }
        SessionScope(const SessionScope&) = delete;
        SessionScope& operator=(const SessionScope&) = delete;
        NSApplication* application;
        NSModalSession session;
    };

    static NSInteger runForWindow(NSApplication& self, NSWindow* window)
    {
        const SessionScope scope(self, window);
        const Ref<NSDate> never = NSDate::cls().distantFuture();
        while (scope.session->code == NSRunContinuesResponse) {
            const Ref<NSEvent> event = self.nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, never.get(), NSModalPanelRunLoopMode, true);
            if (event)
                self.sendEvent(event.get());
            else if (app().stopping)
                scope.session->code = NSRunAbortedResponse;
        }
        return scope.session->code;
    }
    static NSInteger runSession(NSApplication& self, NSModalSession session)
    {
        if (!session)
            return NSRunAbortedResponse;
        while (session->code == NSRunContinuesResponse) {
            const Ref<NSEvent> event = self.nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, nullptr, NSModalPanelRunLoopMode, true);
            if (!event)
                break;
            self.sendEvent(event.get());
        }
        return session->code;
    }
    static void stopWithCode(NSApplication&, NSInteger code)
    {
        if (app().modal.empty())
            return;
        app().modal.back()->code = code;
        NSRunLoop::cls().mainRunLoop()->wakeUp();
    }
    static void stop(NSApplication& self) { self.stopModalWithCode(NSRunStoppedResponse); }
    static void abort(NSApplication& self) { self.stopModalWithCode(NSRunAbortedResponse); }
    static Ref<NSWindow> modalWindow(NSApplication&)
    {
        return app().modal.empty() ? Ref<NSWindow>() : app().modal.back()->window;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "beginModalSessionForWindow:", imp<begin> },
            { "endModalSession:", imp<end> },
            { "runModalForWindow:", imp<runForWindow> },
            { "runModalSession:", imp<runSession> },
            { "stopModalWithCode:", imp<stopWithCode> },
            { "stopModal", imp<stop> },
            { "abortModal", imp<abort> },
            { "modalWindow", imp<modalWindow> },
        });
    }
};
BRINDLE_RECORD(NSApplication, Modal)

}
