// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "NSApplicationPrivate.h"
#include "appkit/NSApplication+Sheets.h"
#include "appkit/NSWindow.h"
#include "foundation/Exceptions.h"
#include "foundation/NSDate.h"
#include "runtime/NSInvocation.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

#include <string_view>

namespace brindle {

template <> struct NSApplication::Methods<struct Modal> {

    static ApplicationState& app() { return ApplicationAccess::state(); }

    // ---- sessions may end while a loop runs, theirs or another's

    struct Loops {
        std::size_t running = 0;
        std::vector<std::unique_ptr<ModalSession>> ended; // while they ran
    };
    static Loops& loops()
    {
        static auto* const loops = new Loops; // for the process: a loop may run while it ends
        return *loops;
    }
    struct LoopScope {
        LoopScope() { ++loops().running; }
        ~LoopScope()
        {
            if (--loops().running == 0)
                std::exchange(loops().ended, {}).clear();
        }
        LoopScope(const LoopScope&) = delete;
        LoopScope& operator=(const LoopScope&) = delete;
    };

    static auto place(const ModalSession* session)
    {
        return std::find_if(app().modal.begin(), app().modal.end(),
            [&](const auto& kept) { return kept.get() == session; });
    }
    static bool isPresent(const ModalSession* session)
    {
        return place(session) != app().modal.end();
    }

    static NSModalSession begin(NSApplication& self, NSWindow* window)
    {
        ModalSession* const session
            = app().modal.emplace_back(std::make_unique<ModalSession>()).get();
        session->window = window;
        if (!window)
            return session;
        session->level = window->level();
        try {
            if (window->level() < NSModalPanelWindowLevel)
                window->setLevel(NSModalPanelWindowLevel);
            if (!window->isVisible())
                window->center();
            window->orderFrontRegardless();
            window->makeKeyWindow();
        } catch (...) {
            end(self, session);
            throw;
        }
        return session;
    }
    static void end(NSApplication&, NSModalSession session)
    {
        const auto found = place(session);
        if (found == app().modal.end())
            return;
        std::unique_ptr<ModalSession> ended = std::move(*found);
        app().modal.erase(found);
        if (ended->code == NSRunContinuesResponse)
            ended->code = NSRunAbortedResponse;
        const Ref<NSWindow> window = ended->window;
        const NSWindowLevel level = ended->level;
        if (loops().running > 0) // which may be its own
            loops().ended.push_back(std::move(ended));
        maybe(window)->setLevel(level);
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
        const LoopScope loop;
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
        const LoopScope loop;
        if (!isPresent(session))
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

    // ---- sheets

    /// Tells a delegate the end of a sheet by an operation whose name only it knows.
    static void tellEnd(
        NSObject& delegate, SEL didEnd, NSWindow* sheet, NSInteger code, void* context)
    {
        const Ref<NSMethodSignature> signature = delegate.methodSignatureForSelector(didEnd);
        constexpr std::string_view kTypes[] { "@", ":", "@", "q", "^v" };
        bool fits = signature && signature->numberOfArguments() == std::size(kTypes);
        for (std::size_t i = 2; fits && i < std::size(kTypes); ++i)
            fits = signature->getArgumentTypeAtIndex(i) == kTypes[i];
        if (!fits)
            raise("NSInvalidArgumentException",
                std::string("*** -[NSApplication beginSheet:]: ") + sel_getName(didEnd)
                    + " does not take a window, a code and a pointer");
        const Ref<NSInvocation> message
            = NSInvocation::cls().invocationWithMethodSignature(signature.get());
        message->setSelector(didEnd);
        message->setArgument_atIndex(&sheet, 2);
        message->setArgument_atIndex(&code, 3);
        message->setArgument_atIndex(&context, 4);
        message->invokeWithTarget(&delegate);
    }
    static void beginSheet(NSApplication&, NSWindow* sheet, NSWindow* window, NSObject* lent,
        SEL didEnd, void* context)
    {
        if (!sheet)
            raise("NSInvalidArgumentException",
                "*** -[NSApplication beginSheet:modalForWindow:modalDelegate:didEndSelector:"
                "contextInfo:]: nil sheet");
        if (!window)
            return sheet->makeKeyAndOrderFront(nullptr);
        const Ref<NSObject> delegate(lent);
        const Ref<NSWindow> kept(sheet);
        window->beginSheet_completionHandler(sheet, [=](NSModalResponse code) {
            if (didEnd && delegate && delegate->respondsToSelector(didEnd))
                tellEnd(*delegate, didEnd, kept.get(), code, context);
        });
    }
    static void endSheetWithCode(NSApplication&, NSWindow* sheet, NSInteger code)
    {
        maybe(maybe(sheet)->sheetParent())->endSheet_returnCode(sheet, code);
    }
    static void endSheet(NSApplication& self, NSWindow* sheet)
    {
        endSheet_returnCode(self, sheet, 0);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "beginSheet:modalForWindow:modalDelegate:didEndSelector:contextInfo:",
                imp<beginSheet> },
            { "endSheet:", imp<endSheet> },
            { "endSheet:returnCode:", imp<endSheetWithCode> },
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
