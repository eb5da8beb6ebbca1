// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSResponder.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSView;
class NSViewController;
class NSWindow;

enum NSPopoverBehavior : NSInteger {
    NSPopoverBehaviorApplicationDefined = 0, ///< the program closes it
    NSPopoverBehaviorTransient = 1, ///< closes when it loses the keyboard
    NSPopoverBehaviorSemitransient = 2, ///< closes when the window below it gets the keyboard
};

inline constexpr StringConstant<"NSPopoverWillShowNotification"> NSPopoverWillShowNotification;
inline constexpr StringConstant<"NSPopoverDidShowNotification"> NSPopoverDidShowNotification;
inline constexpr StringConstant<"NSPopoverWillCloseNotification"> NSPopoverWillCloseNotification;
inline constexpr StringConstant<"NSPopoverDidCloseNotification"> NSPopoverDidCloseNotification;

/// A bubble beside a rectangle of a view, with an arrow that points at it.
///
/// It stands on the side that is wished for, on the opposite one where only that has room, and within the screen. While it
/// is shown it keeps itself, moves with the view's window, and has the keyboard. Escape closes it, where nothing in it wants
/// the key, unless the program alone does.
/// The delegate is asked `popoverShouldClose:` by `performClose:`, and told `popoverWillShow:`, `popoverDidShow:`,
/// `popoverWillClose:` and `popoverDidClose:`.
/// Thread: main.
class NSPopover : public NSResponder {
    BRINDLE_OBJECT(NSPopover, NSResponder)

public:
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }
    /// Answers whose `view` is shown.
    Ref<NSViewController> contentViewController() const
    {
        return send<"contentViewController", Ref<NSViewController>>();
    }
    void setContentViewController(NSViewController* controller)
    {
        send<"setContentViewController:">(controller);
    }
    /// The size of what is shown, without rim and arrow. - The zero size, as at first: that of the view.
    NSSize contentSize() const { return send<"contentSize", NSSize>(); }
    void setContentSize(NSSize size) { send<"setContentSize:">(size); }
    NSPopoverBehavior behavior() const { return send<"behavior", NSPopoverBehavior>(); }
    void setBehavior(NSPopoverBehavior behavior) { send<"setBehavior:">(behavior); }
    bool animates() const { return send<"animates", bool>(); }
    /// Says only what was set.
    void setAnimates(bool animates) { send<"setAnimates:">(animates); }
    /// The rectangle it points at, in the view's coordinates; a change moves it.
    NSRect positioningRect() const { return send<"positioningRect", NSRect>(); }
    void setPositioningRect(NSRect rect) { send<"setPositioningRect:">(rect); }
    bool isShown() const { return send<"isShown", bool>(); }

    /// Shows it, or moves it when it is shown already.
    /// - rect: in the view's coordinates; the zero rectangle is the view's bounds. - edge: of the rectangle.
    /// - Raises: `NSInvalidArgumentException` without a view in a window, and without something to show.
    void showRelativeToRect_ofView_preferredEdge(NSRect rect, NSView* view, NSRectEdge edge)
    {
        send<"showRelativeToRect:ofView:preferredEdge:">(rect, view, edge);
    }
    /// Closes it unless the delegate refuses.
    void performClose(NSObject* sender) { send<"performClose:">(sender); }
    void close() { send<"close">(); }

private:
    WeakRef<NSObject> delegate_;
    Ref<NSObject> contentViewController_; // NSViewController
    NSSize contentSize_ {};
    NSInteger behavior_ = NSPopoverBehaviorApplicationDefined;
    bool animates_ = true;
    NSRect positioningRect_ {};
    NSRectEdge edge_ = NSMinYEdge;
    WeakRef<NSView> view_;
    Ref<NSWindow> window_; // while it is shown
    Ref<NSPopover> kept_; // itself, likewise
};

}
