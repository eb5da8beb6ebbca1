// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

namespace brindle {

class NSColor;
class NSFont;
class NSTabView;

enum NSTabState : NSUInteger {
    NSSelectedTab = 0,
    NSBackgroundTab = 1,
    NSPressedTab = 2,
};

/// One tab of a tab view, and the view behind it. Thread: main.
class NSTabViewItem : public NSObject {
    BRINDLE_OBJECT(NSTabViewItem, NSObject)

public:
    /// - identifier: any object by which the host finds the item; may be nil.
    Ref<NSTabViewItem> initWithIdentifier(NSObject* identifier)
    {
        return send<"initWithIdentifier:", Ref<NSTabViewItem>>(identifier);
    }
    Ref<NSObject> identifier() const { return send<"identifier", Ref<NSObject>>(); }
    void setIdentifier(NSObject* identifier) { send<"setIdentifier:">(identifier); }
    Ref<NSString> label() const { return send<"label", Ref<NSString>>(); }
    /// - Nil: "".
    void setLabel(NSString* label) { send<"setLabel:">(label); }
    Ref<NSView> view() const { return send<"view", Ref<NSView>>(); }
    /// Sets what is shown while the item is selected; an empty view at first.
    void setView(NSView* view) { send<"setView:">(view); }
    /// The view that has the keyboard when the item is selected.
    Ref<NSView> initialFirstResponder() const
    {
        return send<"initialFirstResponder", Ref<NSView>>();
    }
    void setInitialFirstResponder(NSView* view) { send<"setInitialFirstResponder:">(view); }
    Ref<NSString> toolTip() const { return send<"toolTip", Ref<NSString>>(); }
    void setToolTip(NSString* text) { send<"setToolTip:">(text); }
    NSTabState tabState() const { return send<"tabState", NSTabState>(); }
    /// Answers the tab view that it belongs to, or nil.
    Ref<NSTabView> tabView() const { return send<"tabView", Ref<NSTabView>>(); }

private:
    friend struct TabAccess;

    Ref<NSObject> identifier_;
    Ref<NSString> label_;
    Ref<NSView> view_;
    Ref<NSString> toolTip_;
    WeakRef<NSView> firstResponder_;
    WeakRef<NSTabView> tabView_;
    NSTabState state_ = NSBackgroundTab;
};

}
