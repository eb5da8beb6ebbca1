// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication.h"

#include <cstdlib>

#include "NSApplicationPrivate.h"
#include "NSEventPrivate.h"
#include "appkit/NSMenu.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "display/Clipboard.h"
#include "foundation/NSDate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

NSApplication* sharedApplicationOrNil() { return ApplicationAccess::state().object.get(); }

void ApplicationAccess::post(NSEvent& event, bool atStart)
{
    ApplicationState& app = state();
    {
        const std::lock_guard lock(app.queueLock);
        if (atStart)
            app.queue.emplace_front(&event);
        else
            app.queue.emplace_back(&event);
    }
    NSRunLoop::cls().mainRunLoop()->wakeUp();
}

void ApplicationAccess::withdraw(NSEvent& event)
{
    const std::lock_guard lock(state().queueLock);
    state().queue.eraseIf([&event](const Ref<NSEvent>& waiting) { return waiting == &event; });
}

template <> struct NSApplication::Methods<struct Running> {

    static ApplicationState& app() { return ApplicationAccess::state(); }

    static Ref<NSApplication> sharedApplication(Class& self)
    {
        const bool givesWay = app().isStandIn && &self != classOf<NSApplication>();
        if (app().object && !givesWay)
            return app().object;
        app().isStandIn = false;
        app().object = cast<NSApplication>(self.send<"alloc", Ref<NSObject>>());
        app().object = cast<NSApplication>(app().object->init());
        ApplicationAccess::display();
        return app().object;
    }
    static Ref<NSApplication> init(NSApplication& self)
    {
        return cast<NSApplication>(super<NSApplication, "init", Ref<NSObject>>(self));
    }

    static Ref<NSObject> delegate(NSApplication&) { return app().delegate.get(); }
    static void setDelegate(NSApplication&, NSObject* delegate) { app().delegate = delegate; }
    static Ref<NSMenu> mainMenu(NSApplication&) { return cast<NSMenu>(app().mainMenu); }
    static void setMainMenu(NSApplication&, NSMenu* menu)
    {
        if (menu && !menu->isKindOfClass(NSMenu::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSApplication setMainMenu:]: the menu is of another kind");
        app().mainMenu = menu;
    }

    // ---- the main loop

    static void finishLaunching(NSApplication&)
    {
        if (std::exchange(app().launched, true))
            return;
        app().isStandIn = false;
        ApplicationAccess::notify(
            NSApplicationWillFinishLaunchingNotification, "applicationWillFinishLaunching:");
        ApplicationAccess::notify(
            NSApplicationDidFinishLaunchingNotification, "applicationDidFinishLaunching:");
    }

    struct RunningScope {
        RunningScope()
            : before(std::exchange(app().running, true))
        {
            app().stopping = false;
        }
        ~RunningScope()
        {
            app().running = before;
            app().stopping = false;
        }
        RunningScope(const RunningScope&) = delete;
        RunningScope& operator=(const RunningScope&) = delete;
        bool before;
    };

    static void run(NSApplication& self)
    {
        const RunningScope scope;
        self.finishLaunching();
        const Ref<NSDate> never = NSDate::cls().distantFuture();
        while (!app().stopping) {
            const Ref<NSEvent> event = self.nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, never.get(), NSDefaultRunLoopMode, true);
            if (event)
                self.sendEvent(event.get());
        }
    }
    static bool isRunning(NSApplication&) { return app().running; }
    static void stop(NSApplication& self, NSObject*)
    {
        if (!app().modal.empty())
            return self.stopModal();
        app().stopping = true;
        NSRunLoop::cls().mainRunLoop()->wakeUp();
    }
    [[noreturn]] static void end()
    {
        ApplicationAccess::notify(
            NSApplicationWillTerminateNotification, "applicationWillTerminate:");
        display::Display* const display = ApplicationAccess::displayOrNull();
        if (display && display->clipboard())
            display->clipboard()->handOver();
        std::exit(0);
    }
    static void terminate(NSApplication& self, NSObject*)
    {
        const Ref<NSObject> delegate = self.delegate();
        NSApplicationTerminateReply reply = NSTerminateNow;
        if (delegate && delegate->respondsToSelector(selector<"applicationShouldTerminate:">))
            reply
                = delegate->send<"applicationShouldTerminate:", NSApplicationTerminateReply>(&self);
        if (reply == NSTerminateNow)
            end();
    }
    static void replyToTerminate(NSApplication&, bool terminate)
    {
        if (terminate)
            end();
    }

    // ---- fetching events

    static Ref<NSEvent> takeMatching(NSEventMask mask, bool dequeue)
    {
        const std::lock_guard lock(app().queueLock);
        Queue<Ref<NSEvent>>& queue = app().queue;
        for (auto at = queue.begin(); at != queue.end(); ++at) {
            if (!events::isIn((*at)->type(), mask))
                continue;
            Ref<NSEvent> event = *at;
            if (dequeue)
                queue.erase(at);
            return event;
        }
        return nullptr;
    }

    static void setCurrent(const Ref<NSEvent>& event)
    {
        EventAccess::retire(std::exchange(app().current, event));
    }

    static bool isOver(NSDate* date) { return !date || date->timeIntervalSinceNow() <= 0; }

    static constexpr double kRounding = 1e-6; // a date is less exact than the clock of timers

    // Without a display server nothing but this program itself can make an event. The main loop may wait for other
    // threads; a modal loop that nobody can end is a mistake, and a gesture without an end is over. Where a timer is left
    // the question is asked again when it has fired, because it may have been the last one.
    /// - Nil: nothing will come.
    static Ref<NSDate> waitingEnd(NSString* mode, const Ref<NSDate>& date)
    {
        const bool modal = mode->isEqual(NSModalPanelRunLoopMode);
        const bool tracking = mode->isEqual(NSEventTrackingRunLoopMode);
        if (ApplicationAccess::display().fileDescriptor() >= 0 || (!modal && !tracking))
            return date;
        const Ref<NSDate> timer = NSRunLoop::cls().mainRunLoop()->limitDateForMode(mode);
        if (timer)
            return timer->dateByAddingTimeInterval(kRounding);
        if (tracking)
            return nullptr;
        raise("NSInternalInconsistencyException",
            "A modal loop was started without a display, and nothing is left that could end it");
    }

    static Ref<NSEvent> nextEvent(
        NSApplication&, NSEventMask mask, NSDate* date, NSString* wantedMode, bool dequeue)
    {
        const Ref<NSString> mode(wantedMode ? wantedMode : NSDefaultRunLoopMode.get());
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        const Ref<NSDate> limit(date);
        ApplicationAccess::display();
        for (;;) {
            ApplicationAccess::pump();
            if (Ref<NSEvent> event = takeMatching(mask, dequeue)) {
                if (dequeue)
                    setCurrent(event);
                return event;
            }
            ApplicationAccess::draw();
            if (app().stopping
                || (!app().modal.empty() && app().modal.back()->code != NSRunContinuesResponse))
                return nullptr;
            if (isOver(date)) {
                if (!loop->runUntilIdle(mode.get()))
                    return nullptr;
                ApplicationAccess::pump();
                Ref<NSEvent> event = takeMatching(mask, dequeue);
                if (event && dequeue)
                    setCurrent(event);
                return event;
            }
            if (date->timeIntervalSinceNow() > 1e9) {
                loop->runUntilIdle(mode.get());
                ApplicationAccess::pump();
                if (takeMatching(mask, false) || app().stopping)
                    continue;
                if (!app().modal.empty() && app().modal.back()->code != NSRunContinuesResponse)
                    continue;
                const Ref<NSDate> end = waitingEnd(mode.get(), limit);
                if (!end)
                    return nullptr;
                loop->runMode_beforeDate(mode.get(), end.get());
                continue;
            }
            loop->runMode_beforeDate(mode.get(), date);
        }
    }
    static void postEvent(NSApplication&, NSEvent* event, bool atStart)
    {
        if (event)
            ApplicationAccess::post(*event, atStart);
    }
    static void discard(NSApplication&, NSEventMask mask, NSEvent* last)
    {
        const std::lock_guard lock(app().queueLock);
        Queue<Ref<NSEvent>>& queue = app().queue;
        for (auto at = queue.begin(); at != queue.end();) {
            if (*at == last)
                return;
            at = events::isIn((*at)->type(), mask) ? queue.erase(at) : at + 1;
        }
    }
    static Ref<NSEvent> currentEvent(NSApplication&) { return app().current; }
    static void processEvents(NSApplication& self)
    {
        const Ref<NSApplication> alive(&self);
        while (const Ref<NSEvent> event = self.nextEventMatchingMask_untilDate_inMode_dequeue(
                   NSAnyEventMask, nullptr, NSDefaultRunLoopMode, true))
            self.sendEvent(event.get());
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "sharedApplication", imp<sharedApplication> } });
        t.methods({
            { "init", imp<init> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "mainMenu", imp<mainMenu> },
            { "setMainMenu:", imp<setMainMenu> },
            { "finishLaunching", imp<finishLaunching> },
            { "run", imp<run> },
            { "isRunning", imp<isRunning> },
            { "stop:", imp<stop> },
            { "terminate:", imp<terminate> },
            { "replyToApplicationShouldTerminate:", imp<replyToTerminate> },
            { "nextEventMatchingMask:untilDate:inMode:dequeue:", imp<nextEvent> },
            { "postEvent:atStart:", imp<postEvent> },
            { "discardEventsMatchingMask:beforeEvent:", imp<discard> },
            { "currentEvent", imp<currentEvent> },
            { "processEvents", imp<processEvents> },
        });
    }
};
BRINDLE_RECORD(NSApplication, Running)

}
