// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSEvent.h"
#include "NSResponder.h"
#include "foundation/NSRunLoop.h"

namespace brindle {

class NSDate;
class NSWindow;
struct ApplicationState;

inline constexpr StringConstant<"NSApplicationWillFinishLaunchingNotification">
    NSApplicationWillFinishLaunchingNotification;
inline constexpr StringConstant<"NSApplicationDidFinishLaunchingNotification">
    NSApplicationDidFinishLaunchingNotification;
inline constexpr StringConstant<"NSApplicationWillBecomeActiveNotification">
    NSApplicationWillBecomeActiveNotification;
inline constexpr StringConstant<"NSApplicationDidBecomeActiveNotification">
    NSApplicationDidBecomeActiveNotification;
inline constexpr StringConstant<"NSApplicationWillResignActiveNotification">
    NSApplicationWillResignActiveNotification;
inline constexpr StringConstant<"NSApplicationDidResignActiveNotification">
    NSApplicationDidResignActiveNotification;
inline constexpr StringConstant<"NSApplicationWillHideNotification">
    NSApplicationWillHideNotification;
inline constexpr StringConstant<"NSApplicationDidHideNotification">
    NSApplicationDidHideNotification;
inline constexpr StringConstant<"NSApplicationWillUnhideNotification">
    NSApplicationWillUnhideNotification;
inline constexpr StringConstant<"NSApplicationDidUnhideNotification">
    NSApplicationDidUnhideNotification;
inline constexpr StringConstant<"NSApplicationWillTerminateNotification">
    NSApplicationWillTerminateNotification;
inline constexpr StringConstant<"NSApplicationDidChangeScreenParametersNotification">
    NSApplicationDidChangeScreenParametersNotification;

/// What a modal loop answers when it is ended without a code of its own.
enum : NSInteger {
    NSRunStoppedResponse = -1000,
    NSRunAbortedResponse = -1001,
    NSRunContinuesResponse = -1002,
};

enum NSApplicationTerminateReply : NSUInteger {
    NSTerminateCancel = 0,
    NSTerminateNow = 1,
    NSTerminateLater = 2,
};

struct ModalSession;
/// A modal loop that is run step by step.
using NSModalSession = ModalSession*;
template <> struct Opaque<ModalSession> {
    static constexpr const char* encoding = "{_NSModalSession=}";
};

/// The program as a whole: its windows, its events, its main loop.
///
/// There is one, made by `sharedApplication` of whichever class is asked first. Making it opens the display; without one
/// everything but showing works, and posted events are read.
///
/// An exception that an event handler throws goes on out of `run` with all state consistent; calling `run` again goes on.
/// When the display server goes, the program writes "brindle: lost the connection to the display server" and
/// ends with status 1.
/// Thread: main, except `postEvent:atStart:`.
class NSApplication : public NSResponder {
    BRINDLE_OBJECT(NSApplication, NSResponder)

public:
    struct Meta : NSResponder::Meta {
        Ref<NSApplication> sharedApplication() const
        {
            return send<"sharedApplication", Ref<NSApplication>>();
        }
    };

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept. It is told the application's notifications by name, as in `applicationDidFinishLaunching:`, and asked
    /// `applicationShouldTerminate:` and `applicationShouldTerminateAfterLastWindowClosed:`.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // The main loop.

    /// Finishes launching, then fetches and sends events until `stop:`.
    void run() { send<"run">(); }
    bool isRunning() const { return send<"isRunning", bool>(); }
    void finishLaunching() { send<"finishLaunching">(); }
    /// Ends the innermost loop, modal or main, after the present event.
    void stop(NSObject* sender) { send<"stop:">(sender); }
    /// Ends the program with status 0 unless the delegate refuses.
    void terminate(NSObject* sender) { send<"terminate:">(sender); }
    void replyToApplicationShouldTerminate(bool terminate)
    {
        send<"replyToApplicationShouldTerminate:">(terminate);
    }

    // Events.

    /// Hands an event to whom it is for. The place for a program to see every event first.
    void sendEvent(NSEvent* event) { send<"sendEvent:">(event); }
    /// Answers the first event that matches, waiting for it; windows are drawn and the main queue runs meanwhile.
    /// - date: when to give up; nil and past dates do not wait. Without a display server, whose events would have
    ///   to come from this program itself, a wait in the event tracking mode ends as soon as nothing is left to come.
    /// - mode: nil is the default mode.
    /// - dequeue: false leaves the event for the next call.
    Ref<NSEvent> nextEventMatchingMask_untilDate_inMode_dequeue(
        NSEventMask mask, NSDate* date, NSString* mode, bool dequeue)
    {
        return send<"nextEventMatchingMask:untilDate:inMode:dequeue:", Ref<NSEvent>>(
            mask, date, mode, dequeue);
    }
    /// Puts an event into the queue. Thread: any.
    void postEvent_atStart(NSEvent* event, bool atStart)
    {
        send<"postEvent:atStart:">(event, atStart);
    }
    /// Drops the waiting events that match and are older than `last`; all that match when it is nil.
    void discardEventsMatchingMask_beforeEvent(NSEventMask mask, NSEvent* last)
    {
        send<"discardEventsMatchingMask:beforeEvent:">(mask, last);
    }
    /// Answers the event that is being handled, else the one handled last.
    Ref<NSEvent> currentEvent() const { return send<"currentEvent", Ref<NSEvent>>(); }
    /// Sends all events that are there, without waiting, and draws what needs it; for tests.
    void processEvents() { send<"processEvents">(); }

    // Actions.

    /// Sends an action.
    /// - target: nil looks along the responder chain of the key window, then of the main window, then at the
    ///   application and its delegate.
    /// - Returns: whether somebody performed it.
    bool sendAction_to_from(SEL action, NSObject* target, NSObject* sender)
    {
        return send<"sendAction:to:from:", bool>(action, target, sender);
    }
    Ref<NSObject> targetForAction_to_from(SEL action, NSObject* target, NSObject* sender) const
    {
        return send<"targetForAction:to:from:", Ref<NSObject>>(action, target, sender);
    }
    Ref<NSObject> targetForAction(SEL action) const
    {
        return send<"targetForAction:", Ref<NSObject>>(action);
    }

    // Windows.

    /// Answers the open windows, in the order in which they were made; those never shown are not among them.
    Ref<NSArray> windows() const { return send<"windows", Ref<NSArray>>(); }
    /// Answers the visible windows, front to back.
    Ref<NSArray> orderedWindows() const { return send<"orderedWindows", Ref<NSArray>>(); }
    Ref<NSWindow> keyWindow() const { return send<"keyWindow", Ref<NSWindow>>(); }
    Ref<NSWindow> mainWindow() const { return send<"mainWindow", Ref<NSWindow>>(); }
    Ref<NSWindow> windowWithWindowNumber(NSInteger number) const
    {
        return send<"windowWithWindowNumber:", Ref<NSWindow>>(number);
    }
    /// Sends `update` to the windows; drawing follows by itself.
    void updateWindows() { send<"updateWindows">(); }

    // Activity.

    bool isActive() const { return send<"isActive", bool>(); }
    void activateIgnoringOtherApps(bool ignore) { send<"activateIgnoringOtherApps:">(ignore); }
    void deactivate() { send<"deactivate">(); }
    bool isHidden() const { return send<"isHidden", bool>(); }
    void hide(NSObject* sender) { send<"hide:">(sender); }
    void unhide(NSObject* sender) { send<"unhide:">(sender); }
    void unhideWithoutActivation() { send<"unhideWithoutActivation">(); }
    void hideOtherApplications(NSObject* sender) { send<"hideOtherApplications:">(sender); }

    // Modal loops.

    /// Shows a window and handles only its events until the loop is stopped.
    /// - Returns: the code of `stopModalWithCode:`, or `NSRunStoppedResponse`, `NSRunAbortedResponse`.
    /// - Raises: `NSInternalInconsistencyException` when there is no display and nothing is left that could end it.
    NSInteger runModalForWindow(NSWindow* window)
    {
        return send<"runModalForWindow:", NSInteger>(window);
    }
    void stopModal() { send<"stopModal">(); }
    void stopModalWithCode(NSInteger code) { send<"stopModalWithCode:">(code); }
    void abortModal() { send<"abortModal">(); }
    Ref<NSWindow> modalWindow() const { return send<"modalWindow", Ref<NSWindow>>(); }
    NSModalSession beginModalSessionForWindow(NSWindow* window)
    {
        return send<"beginModalSessionForWindow:", NSModalSession>(window);
    }
    NSInteger runModalSession(NSModalSession session)
    {
        return send<"runModalSession:", NSInteger>(session);
    }
    void endModalSession(NSModalSession session) { send<"endModalSession:">(session); }

    Ref<NSMenu> mainMenu() const { return send<"mainMenu", Ref<NSMenu>>(); }
    void setMainMenu(NSMenu* menu) { send<"setMainMenu:">(menu); }

private:
    friend struct ApplicationAccess;

    std::shared_ptr<ApplicationState> state_;
};

namespace display {
    class Display;
}

/// Answers the application object, or nil before `sharedApplication` was sent.
BRINDLE_EXPORT NSApplication* sharedApplicationOrNil();

/// Ends every connection of the application with its display and uses another one; windows are hidden by it.
/// Null goes back to what the environment says when a display is next needed. For tests.
/// - Owner: the application keeps it; the answer is good until the next call.
BRINDLE_EXPORT display::Display* installDisplay(std::unique_ptr<display::Display> display);

}
