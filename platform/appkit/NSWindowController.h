// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSViewController.h"
#include "NSWindow.h"

namespace brindle {

/// Owns a window and makes it when it is first asked for; stands behind it in the responder chain.
///
/// A subclass overrides `loadWindow` to make the window with `setWindow:`. A controller that was made with neither a window
/// nor a name has none until one is set.
/// Thread: main.
class NSWindowController : public NSResponder {
    BRINDLE_OBJECT(NSWindowController, NSResponder)

public:
    /// - window: taken over from whatever controller it has; nil for none.
    Ref<NSWindowController> initWithWindow(NSWindow* window)
    {
        return send<"initWithWindow:", Ref<NSWindowController>>(window);
    }
    /// - name: what the host's `loadWindow` goes by. - Raises: `NSInvalidArgumentException` for nil.
    Ref<NSWindowController> initWithWindowNibName(NSString* name)
    {
        return send<"initWithWindowNibName:", Ref<NSWindowController>>(name);
    }
    Ref<NSString> windowNibName() const { return send<"windowNibName", Ref<NSString>>(); }

    /// Answers the window. With a name it is loaded when there is none yet: `windowWillLoad`, `loadWindow`,
    /// `windowDidLoad`.
    Ref<NSWindow> window() { return send<"window", Ref<NSWindow>>(); }
    void setWindow(NSWindow* window) { send<"setWindow:">(window); }
    bool isWindowLoaded() const { return send<"isWindowLoaded", bool>(); }
    /// Hook: sets the window; a titled one that can be resized here.
    void loadWindow() { send<"loadWindow">(); }
    void windowWillLoad() { send<"windowWillLoad">(); }
    void windowDidLoad() { send<"windowDidLoad">(); }

    /// Shows the window in front and gives it the keyboard.
    void showWindow(NSObject* sender) { send<"showWindow:">(sender); }
    void close() { send<"close">(); }

    /// Whether a window that is loaded is placed below and to the right of the last one; YES at first.
    bool shouldCascadeWindows() const { return send<"shouldCascadeWindows", bool>(); }
    void setShouldCascadeWindows(bool cascades) { send<"setShouldCascadeWindows:">(cascades); }
    /// The name under which the window's frame is saved.
    Ref<NSString> windowFrameAutosaveName() const
    {
        return send<"windowFrameAutosaveName", Ref<NSString>>();
    }
    void setWindowFrameAutosaveName(NSString* name) { send<"setWindowFrameAutosaveName:">(name); }
    Ref<NSViewController> contentViewController() const
    {
        return send<"contentViewController", Ref<NSViewController>>();
    }
    void setContentViewController(NSViewController* controller)
    {
        send<"setContentViewController:">(controller);
    }
    /// Whatever the window shows; not kept.
    Ref<NSObject> document() const { return send<"document", Ref<NSObject>>(); }
    void setDocument(NSObject* document) { send<"setDocument:">(document); }
    void setDocumentEdited(bool edited) { send<"setDocumentEdited:">(edited); }

private:
    Ref<NSWindow> window_;
    Ref<NSString> nibName_;
    Ref<NSString> autosaveName_;
    WeakRef<NSObject> document_;
    bool cascades_ = true;
    bool loading_ = false;
    bool loaded_ = false;
};

/// Answers the controller that has taken the window, or nil. Not kept.
inline Ref<NSWindowController> windowController(To<NSWindow> window)
{
    return window.send<"windowController", Ref<NSWindowController>>();
}
/// - Raises: `NSInvalidArgumentException` for what is no controller.
inline void setWindowController(To<NSWindow> window, NSWindowController* controller)
{
    window.send<"setWindowController:">(controller);
}
inline Ref<NSViewController> contentViewController(To<NSWindow> window)
{
    return window.send<"contentViewController", Ref<NSViewController>>();
}
/// Takes the controller's view as content view, at the size that it has, and its title. - Nil: lets go of the controller; the
/// view stays.
inline void setContentViewController(To<NSWindow> window, NSViewController* controller)
{
    window.send<"setContentViewController:">(controller);
}

}
