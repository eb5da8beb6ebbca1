// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSButton.h"

#include "NSButtonPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/application/KeyEquivalentPrivate.h"
#include "appkit/views/TrackingIndexPrivate.h"
#include "foundation/NSCoder.h"
#include "runtime/Table.h"

namespace brindle {

Ref<NSImage> markImage(NSButtonType type)
{
    // A picture of the mark that is off, for whoever draws it elsewhere; the cell knows it by its identity.
    const auto picture = [](double roundness) {
        const CGFloat side = controls::metricsFor(NSControlSizeRegular).mark;
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            { side, side }, true, [roundness](NSRect rect) {
                controls::drawMarkBody(rect, rect.size.height * roundness, {});
                return true;
            });
    };
    static const Ref<NSImage> box = picture(0.25);
    static const Ref<NSImage> disc = picture(0.5);
    return type == NSRadioButton ? disc : box;
}

void ButtonAccess::setHovered(NSButton& button, bool hovered)
{
    if (std::exchange(button.hovered_, hovered) != hovered && button.isEnabled())
        button.setNeedsDisplay(true);
}

template <> struct NSButton::Methods<struct Basics> {

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSButton::cls()))
            NSButton::cls().setCellClass(NSButtonCell::cls());
    }

    static Ref<NSView> initWithFrame(NSButton& self, NSRect frame)
    {
        Ref<NSView> made = super<NSButton, "initWithFrame:", Ref<NSView>>(self, frame);
        if (made)
            feelPointer(self);
        return made;
    }
    static Ref<NSObject> initWithCoder(NSButton& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSButton, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (made)
            feelPointer(self);
        return made;
    }
    static void feelPointer(NSButton& self)
    {
        const Ref<NSTrackingArea> area
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo({},
                NSTrackingMouseEnteredAndExited | NSTrackingActiveInActiveApp
                    | NSTrackingInVisibleRect,
                &self, nullptr);
        TrackingAccess::isHover(*area) = true;
        super<NSButton, "addTrackingArea:">(self, area.get());
    }

    // ---- ready-made

    static Ref<NSButton> with(Class& self, NSString* title, NSObject* target, SEL action,
        NSButtonType type = NSMomentaryPushInButton)
    {
        Ref<NSButton> button = cast<NSButton>(self.send<"alloc", Ref<NSObject>>()->init());
        button->setButtonType(type);
        button->setTitle(title);
        button->setTarget(target);
        button->setAction(action);
        button->sizeToFit();
        return button;
    }
    static Ref<NSButton> titled(Class& self, NSString* title, NSObject* target, SEL action)
    {
        return with(self, title, target, action);
    }
    static Ref<NSButton> imaged(Class& self, NSImage* image, NSObject* target, SEL action)
    {
        Ref<NSButton> button = with(self, nullptr, target, action);
        button->setImage(image);
        button->sizeToFit();
        return button;
    }
    static Ref<NSButton> checkbox(Class& self, NSString* title, NSObject* target, SEL action)
    {
        return with(self, title, target, action, NSSwitchButton);
    }
    static Ref<NSButton> radio(Class& self, NSString* title, NSObject* target, SEL action)
    {
        return with(self, title, target, action, NSRadioButton);
    }

    // ---- what the cell does

    template <Text S, class R> static R ask(NSButton& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class T> static void tell(NSButton& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        self.setNeedsDisplay(true);
    }
    static void setNextState(NSButton& self)
    {
        maybe(self.cell())->setNextState();
        self.setNeedsDisplay(true);
    }
    static void highlight(NSButton& self, bool highlighted)
    {
        maybe(self.cell())->highlight_withFrame_inView(highlighted, self.bounds(), &self);
    }
    static void setPeriodicDelay(NSButton& self, float delay, float interval)
    {
        maybe(self.cell())->send<"setPeriodicDelay:interval:">(delay, interval);
    }
    static void getPeriodicDelay(NSButton& self, float* delay, float* interval)
    {
        maybe(self.cell())->getPeriodicDelay_interval(delay, interval);
    }

    // ---- keyboard

    static bool becomeFirstResponder(NSButton& self)
    {
        const Ref<NSEvent> cause = NSApplication::cls().sharedApplication()->currentEvent();
        self.focusedByPointer_ = cause && cause->type() == NSLeftMouseDown;
        return super<NSButton, "becomeFirstResponder", bool>(self);
    }
    static bool isSpace(NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->characters();
        return typed && typed->isEqualToString(" "_ns);
    }
    static void keyDown(NSButton& self, NSEvent* event)
    {
        if (!isSpace(event))
            return super<NSButton, "keyDown:">(self, event);
        self.focusedByPointer_ = false;
        if (!event->isARepeat())
            self.performClick(&self);
    }
    static void keyUp(NSButton& self, NSEvent* event)
    {
        if (!isSpace(event))
            super<NSButton, "keyUp:">(self, event);
    }
    static bool performKeyEquivalent(NSButton& self, NSEvent* event)
    {
        if (event && self.isEnabled() && event->type() == NSKeyDown
            && matchesKeyEquivalent(
                *event, self.keyEquivalent().get(), self.keyEquivalentModifierMask())) {
            self.performClick(&self);
            return true;
        }
        return super<NSButton, "performKeyEquivalent:", bool>(self, event);
    }
    static Ref<NSMenu> menuForEvent(NSButton&, NSEvent*) { return nullptr; }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "buttonWithTitle:target:action:", imp<titled> },
            { "buttonWithImage:target:action:", imp<imaged> },
            { "checkboxWithTitle:target:action:", imp<checkbox> },
            { "radioButtonWithTitle:target:action:", imp<radio> },
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
            { "setButtonType:", imp<tell<"setButtonType:", NSButtonType>> },
            { "bezelStyle", imp<ask<"bezelStyle", NSBezelStyle>> },
            { "setBezelStyle:", imp<tell<"setBezelStyle:", NSBezelStyle>> },
            { "isBordered", imp<ask<"isBordered", bool>> },
            { "setBordered:", imp<tell<"setBordered:", bool>> },
            { "isTransparent", imp<ask<"isTransparent", bool>> },
            { "setTransparent:", imp<tell<"setTransparent:", bool>> },
            { "showsBorderOnlyWhileMouseInside",
                imp<ask<"showsBorderOnlyWhileMouseInside", bool>> },
            { "setShowsBorderOnlyWhileMouseInside:",
                imp<tell<"setShowsBorderOnlyWhileMouseInside:", bool>> },
            { "title", imp<ask<"title", Ref<NSString>>> },
            { "setTitle:", imp<tell<"setTitle:", NSString*>> },
            { "alternateTitle", imp<ask<"alternateTitle", Ref<NSString>>> },
            { "setAlternateTitle:", imp<tell<"setAlternateTitle:", NSString*>> },
            { "attributedTitle", imp<ask<"attributedTitle", Ref<NSAttributedString>>> },
            { "setAttributedTitle:", imp<tell<"setAttributedTitle:", NSAttributedString*>> },
            { "attributedAlternateTitle",
                imp<ask<"attributedAlternateTitle", Ref<NSAttributedString>>> },
            { "setAttributedAlternateTitle:",
                imp<tell<"setAttributedAlternateTitle:", NSAttributedString*>> },
            { "image", imp<ask<"image", Ref<NSImage>>> },
            { "setImage:", imp<tell<"setImage:", NSImage*>> },
            { "alternateImage", imp<ask<"alternateImage", Ref<NSImage>>> },
            { "setAlternateImage:", imp<tell<"setAlternateImage:", NSImage*>> },
            { "imagePosition", imp<ask<"imagePosition", NSCellImagePosition>> },
            { "setImagePosition:", imp<tell<"setImagePosition:", NSCellImagePosition>> },
            { "imageScaling", imp<ask<"imageScaling", NSImageScaling>> },
            { "setImageScaling:", imp<tell<"setImageScaling:", NSImageScaling>> },
        });
        t.methods({
            { "state", imp<ask<"state", NSCellStateValue>> },
            { "setState:", imp<tell<"setState:", NSCellStateValue>> },
            { "setNextState", imp<setNextState> },
            { "allowsMixedState", imp<ask<"allowsMixedState", bool>> },
            { "setAllowsMixedState:", imp<tell<"setAllowsMixedState:", bool>> },
            { "highlight:", imp<highlight> },
            { "keyEquivalent", imp<ask<"keyEquivalent", Ref<NSString>>> },
            { "setKeyEquivalent:", imp<tell<"setKeyEquivalent:", NSString*>> },
            { "keyEquivalentModifierMask",
                imp<ask<"keyEquivalentModifierMask", NSEventModifierFlags>> },
            { "setKeyEquivalentModifierMask:",
                imp<tell<"setKeyEquivalentModifierMask:", NSEventModifierFlags>> },
            { "setPeriodicDelay:interval:", imp<setPeriodicDelay> },
            { "getPeriodicDelay:interval:", imp<getPeriodicDelay> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "keyUp:", imp<keyUp> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "menuForEvent:", imp<menuForEvent> },
        });
    }
};
BRINDLE_RECORD(NSButton, Basics)

}
