// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSButtonCell.h"
#include "NSControl.h"

namespace brindle {

/// A button: push button, check box, radio button and the like.
///
/// A new one has the title "Button" and a border. Radio buttons of one superview with the same action make a group: turning
/// one on turns the others off. Space clicks the focused button; keys that are nobody's reach the button whose key
/// equivalent they are.
class NSButton : public NSControl {
    BRINDLE_OBJECT(NSButton, NSControl)

public:
    struct Meta : NSControl::Meta {
        /// Answer buttons of the size that they need.
        Ref<NSButton> buttonWithTitle_target_action(
            NSString* title, NSObject* target, SEL action) const
        {
            return send<"buttonWithTitle:target:action:", Ref<NSButton>>(title, target, action);
        }
        Ref<NSButton> buttonWithImage_target_action(
            NSImage* image, NSObject* target, SEL action) const
        {
            return send<"buttonWithImage:target:action:", Ref<NSButton>>(image, target, action);
        }
        Ref<NSButton> checkboxWithTitle_target_action(
            NSString* title, NSObject* target, SEL action) const
        {
            return send<"checkboxWithTitle:target:action:", Ref<NSButton>>(title, target, action);
        }
        Ref<NSButton> radioButtonWithTitle_target_action(
            NSString* title, NSObject* target, SEL action) const
        {
            return send<"radioButtonWithTitle:target:action:", Ref<NSButton>>(
                title, target, action);
        }
    };

    void setButtonType(NSButtonType type) { send<"setButtonType:">(type); }
    NSBezelStyle bezelStyle() const { return send<"bezelStyle", NSBezelStyle>(); }
    void setBezelStyle(NSBezelStyle style) { send<"setBezelStyle:">(style); }
    bool isBordered() const { return send<"isBordered", bool>(); }
    void setBordered(bool bordered) { send<"setBordered:">(bordered); }
    bool isTransparent() const { return send<"isTransparent", bool>(); }
    void setTransparent(bool transparent) { send<"setTransparent:">(transparent); }
    bool showsBorderOnlyWhileMouseInside() const
    {
        return send<"showsBorderOnlyWhileMouseInside", bool>();
    }
    void setShowsBorderOnlyWhileMouseInside(bool only)
    {
        send<"setShowsBorderOnlyWhileMouseInside:">(only);
    }

    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    /// - Nil: "".
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    Ref<NSString> alternateTitle() const { return send<"alternateTitle", Ref<NSString>>(); }
    void setAlternateTitle(NSString* title) { send<"setAlternateTitle:">(title); }
    Ref<NSAttributedString> attributedTitle() const
    {
        return send<"attributedTitle", Ref<NSAttributedString>>();
    }
    void setAttributedTitle(NSAttributedString* title) { send<"setAttributedTitle:">(title); }
    Ref<NSAttributedString> attributedAlternateTitle() const
    {
        return send<"attributedAlternateTitle", Ref<NSAttributedString>>();
    }
    void setAttributedAlternateTitle(NSAttributedString* title)
    {
        send<"setAttributedAlternateTitle:">(title);
    }
    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    void setImage(NSImage* image) { send<"setImage:">(image); }
    Ref<NSImage> alternateImage() const { return send<"alternateImage", Ref<NSImage>>(); }
    void setAlternateImage(NSImage* image) { send<"setAlternateImage:">(image); }
    NSCellImagePosition imagePosition() const
    {
        return send<"imagePosition", NSCellImagePosition>();
    }
    void setImagePosition(NSCellImagePosition position) { send<"setImagePosition:">(position); }
    NSImageScaling imageScaling() const { return send<"imageScaling", NSImageScaling>(); }
    void setImageScaling(NSImageScaling scaling) { send<"setImageScaling:">(scaling); }

    NSCellStateValue state() const { return send<"state", NSCellStateValue>(); }
    void setState(NSCellStateValue state) { send<"setState:">(state); }
    void setNextState() { send<"setNextState">(); }
    bool allowsMixedState() const { return send<"allowsMixedState", bool>(); }
    void setAllowsMixedState(bool allows) { send<"setAllowsMixedState:">(allows); }
    void highlight(bool highlighted) { send<"highlight:">(highlighted); }

    Ref<NSString> keyEquivalent() const { return send<"keyEquivalent", Ref<NSString>>(); }
    void setKeyEquivalent(NSString* key) { send<"setKeyEquivalent:">(key); }
    NSEventModifierFlags keyEquivalentModifierMask() const
    {
        return send<"keyEquivalentModifierMask", NSEventModifierFlags>();
    }
    void setKeyEquivalentModifierMask(NSEventModifierFlags mask)
    {
        send<"setKeyEquivalentModifierMask:">(mask);
    }
    void setPeriodicDelay_interval(float delay, float interval)
    {
        send<"setPeriodicDelay:interval:">(delay, interval);
    }
    void getPeriodicDelay_interval(float* delay, float* interval) const
    {
        send<"getPeriodicDelay:interval:">(delay, interval);
    }

private:
    friend struct ButtonAccess;

    bool hovered_ = false;
    bool focusedByPointer_ = false; // no ring then: a ring shows where the keyboard acts
};

}
