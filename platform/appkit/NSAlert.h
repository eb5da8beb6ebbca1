// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSWindow.h"
#include "foundation/NSString.h"

namespace brindle {

class NSError;
class NSImage;

enum NSAlertStyle : NSUInteger {
    NSAlertStyleWarning = 0,
    NSAlertStyleInformational = 1,
    NSAlertStyleCritical = 2,
    NSWarningAlertStyle = NSAlertStyleWarning,
    NSInformationalAlertStyle = NSAlertStyleInformational,
    NSCriticalAlertStyle = NSAlertStyleCritical,
};

/// What the buttons of `addButtonWithTitle:` answer; further ones count on.
enum : NSModalResponse {
    NSAlertFirstButtonReturn = 1000,
    NSAlertSecondButtonReturn = 1001,
    NSAlertThirdButtonReturn = 1002,
};
/// What the buttons of an alert answer that was made with all its buttons at once.
enum : NSModalResponse {
    NSAlertDefaultReturn = 1,
    NSAlertAlternateReturn = 0,
    NSAlertOtherReturn = -1,
};

/// A message with buttons, as a window that everything else waits for or as a sheet of one window.
///
/// Return presses the first button, Escape the one titled "Cancel", Command-D the one titled "Don’t Save". A button answers
/// its tag, which may be changed. An alert without buttons has "OK".
///
/// The icon is the application's; informational and critical alerts show a sign of their style.
///
/// The alert lives while it is shown. One can be shown again after it has ended.
/// Thread: main.
class NSAlert : public NSObject {
    BRINDLE_OBJECT(NSAlert, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers an alert with up to three buttons that answer 1, 0 and -1.
        /// - message: "Alert" when it is nil or empty. - button: "OK" when it is nil or empty.
        /// - alternate, other: nil for no such button.
        /// - format: the text below the message, with its arguments.
        template <class... A>
        Ref<NSAlert>
        alertWithMessageText_defaultButton_alternateButton_otherButton_informativeTextWithFormat(
            NSString* message, NSString* button, NSString* alternate, NSString* other,
            NSString* format, A... arguments) const
        {
            constexpr SEL kMake = selector<"alertWithMessageText:defaultButton:alternateButton:"
                                           "otherButton:informativeTextWithFormat:">;
            using Function = NSObject* (*)(const NSObject*, SEL, NSString*, NSString*, NSString*,
                NSString*, NSString*, ...);
            const auto function
                = reinterpret_cast<Function>(strings::variadicImplementation(object, kMake));
            return cast<NSAlert>(Ref<NSObject>::adopt(function(object, kMake, message, button,
                alternate, other, format, strings::passed(arguments)...)));
        }
        /// Answers an alert that shows an error's description and what it suggests.
        Ref<NSAlert> alertWithError(NSError* error) const
        {
            return send<"alertWithError:", Ref<NSAlert>>(error);
        }
    };

    // ---- what it says

    Ref<NSString> messageText() const { return send<"messageText", Ref<NSString>>(); }
    /// - Nil: "".
    void setMessageText(NSString* text) { send<"setMessageText:">(text); }
    Ref<NSString> informativeText() const { return send<"informativeText", Ref<NSString>>(); }
    /// Sets the smaller text below the message; line feeds break lines. - Nil: "".
    void setInformativeText(NSString* text) { send<"setInformativeText:">(text); }
    NSAlertStyle alertStyle() const { return send<"alertStyle", NSAlertStyle>(); }
    void setAlertStyle(NSAlertStyle style) { send<"setAlertStyle:">(style); }
    /// Never nil.
    Ref<NSImage> icon() const { return send<"icon", Ref<NSImage>>(); }
    /// - Nil: the one that the style has.
    void setIcon(NSImage* icon) { send<"setIcon:">(icon); }
    Ref<NSView> accessoryView() const { return send<"accessoryView", Ref<NSView>>(); }
    /// Sets a view below the texts; its frame's size counts.
    void setAccessoryView(NSView* view) { send<"setAccessoryView:">(view); }
    bool showsSuppressionButton() const { return send<"showsSuppressionButton", bool>(); }
    void setShowsSuppressionButton(bool shows) { send<"setShowsSuppressionButton:">(shows); }
    /// Answers the check box "Don’t show this message again"; never nil. Its state is read after the alert.
    Ref<NSButton> suppressionButton() const { return send<"suppressionButton", Ref<NSButton>>(); }

    // ---- buttons

    /// Adds a button left of those that are there and answers it.
    Ref<NSButton> addButtonWithTitle(NSString* title)
    {
        return send<"addButtonWithTitle:", Ref<NSButton>>(title);
    }
    /// Answers the buttons in the order in which they were added, the default one first.
    Ref<NSArray> buttons() const { return send<"buttons", Ref<NSArray>>(); }

    // ---- showing

    /// Answers the window that shows it; never nil.
    Ref<NSWindow> window() const { return send<"window", Ref<NSWindow>>(); }
    /// Arranges the window's content for what has been set; done before each showing.
    void layout() { send<"layout">(); }
    /// Shows the alert and waits for a button.
    /// - Returns: the button's tag; `NSModalResponseAbort` or `NSModalResponseStop` when somebody else ended it.
    /// - Raises: as `runModalForWindow:` of the application does without a display.
    NSModalResponse runModal() { return send<"runModal", NSModalResponse>(); }
    /// Shows the alert as a sheet and answers at once.
    /// - window: nil shows it as a window of its own that nothing waits for.
    /// - handler: run once, on the main thread, after the alert has gone; may be nil. A sheet that it begins, or that was
    ///   begun meanwhile, comes next.
    void beginSheetModalForWindow_completionHandler(
        NSWindow* window, const Block<void(NSModalResponse)>& handler)
    {
        send<"beginSheetModalForWindow:completionHandler:">(window, handler.get());
    }

private:
    friend struct AlertAccess;

    Ref<NSString> message_;
    Ref<NSString> information_;
    Ref<NSImage> icon_; // nil is that of the style
    Ref<NSView> accessory_;
    Ref<NSButton> suppression_; // none before somebody asks
    std::vector<Ref<NSButton>> buttons_;
    Ref<NSWindow> window_; // none before somebody asks
    Ref<NSAlert> kept_; // itself, while it is a window of its own
    Block<void(NSModalResponse)> handler_; // of that time
    NSAlertStyle style_ = NSAlertStyleWarning;
    bool showsSuppression_ = false;
};

}
