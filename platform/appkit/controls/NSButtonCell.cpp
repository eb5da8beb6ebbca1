// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSButtonCell.h"

#include "NSButtonPrivate.h"
#include "appkit/NSColor.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

#include <algorithm>

namespace brindle {

template <> struct NSButtonCell::Methods<struct Basics> {

    static ButtonAttributes& of(NSButtonCell& self) { return ButtonAccess::of(self); }
    static CellAttributes& base(NSButtonCell& self) { return CellAccess::of(self); }

    // ---- making

    static Ref<NSObject> init(NSButtonCell& self) { return self.initTextCell("Button"_ns); }
    static Ref<NSCell> initTextCell(NSButtonCell& self, NSString* text)
    {
        Ref<NSCell> made = super<NSButtonCell, "initTextCell:", Ref<NSCell>>(self, text);
        base(self).bordered = true;
        base(self).alignment = NSTextAlignmentCenter;
        return made;
    }
    static Ref<NSCell> initImageCell(NSButtonCell& self, NSImage* image)
    {
        Ref<NSCell> made = super<NSButtonCell, "initImageCell:", Ref<NSCell>>(self, image);
        base(self).bordered = true;
        base(self).alignment = NSTextAlignmentCenter;
        return made;
    }
    static Ref<NSObject> copyWithZone(NSButtonCell& self, void* zone)
    {
        const Ref<NSButtonCell> copy
            = cast<NSButtonCell>(super<NSButtonCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (copy)
            of(*copy) = of(self);
        return copy;
    }

    // ---- kind

    struct Kind {
        NSCellStyleMask highlights;
        NSCellStyleMask shows;
    };
    static constexpr Kind kKinds[] {
        { NSChangeBackgroundCellMask, NSNoCellMask },
        { NSPushInCellMask | NSChangeGrayCellMask, NSChangeBackgroundCellMask },
        { NSPushInCellMask | NSContentsCellMask, NSContentsCellMask },
        { NSContentsCellMask, NSContentsCellMask },
        { NSContentsCellMask, NSContentsCellMask },
        { NSContentsCellMask, NSNoCellMask },
        { NSChangeBackgroundCellMask, NSChangeBackgroundCellMask },
        { NSPushInCellMask | NSChangeGrayCellMask, NSNoCellMask },
    };
    static void setButtonType(NSButtonCell& self, NSButtonType type)
    {
        if (type > NSMomentaryPushInButton)
            return;
        ButtonAttributes& attributes = of(self);
        const bool hadMark
            = ButtonAccess::isMark(self) && attributes.image == markImage(attributes.type);
        attributes.type = type;
        attributes.highlightsBy = kKinds[type].highlights;
        attributes.showsStateBy = kKinds[type].shows;
        if (ButtonAccess::isMark(self)) {
            attributes.image = markImage(type);
            attributes.imagePosition = NSImageLeft;
            base(self).bordered = false;
            base(self).alignment = NSTextAlignmentLeft;
        } else if (hadMark) {
            attributes.image = nullptr;
            attributes.imagePosition = NSNoImage;
        }
        CellAccess::changed(self);
    }
    static void mouseEntered(NSButtonCell& self, NSEvent*)
    {
        of(self).pointerInside = true;
        CellAccess::changed(self);
    }
    static void mouseExited(NSButtonCell& self, NSEvent*)
    {
        of(self).pointerInside = false;
        CellAccess::changed(self);
    }
    static bool isOpaque(NSButtonCell&) { return false; }

    // ---- titles

    static Ref<NSString> plain(const Ref<NSObject>& title)
    {
        if (title && title->isKindOfClass(NSAttributedString::cls()))
            return cast<NSAttributedString>(title)->string();
        const bool isText = title && title->isKindOfClass(NSString::cls());
        return isText ? cast<NSString>(title) : Ref<NSString>(""_ns);
    }
    static Ref<NSAttributedString> attributed(NSButtonCell& self, const Ref<NSObject>& title)
    {
        if (title && title->isKindOfClass(NSAttributedString::cls()))
            return cast<NSAttributedString>(title);
        return alloc<NSAttributedString>()->initWithString_attributes(
            plain(title).get(), textAttributesOf(self).get());
    }
    template <class T> static Ref<NSObject> checked(T* title, const char* selector)
    {
        if (title && !title->isKindOfClass(T::cls()))
            raise("NSInvalidArgumentException",
                std::string("*** -[NSButtonCell ") + selector + "]: the title is of another kind");
        return title ? title->copy() : Ref<NSObject>(""_ns);
    }
    static Ref<NSString> title(NSButtonCell& self) { return plain(base(self).contents); }
    static void setTitle(NSButtonCell& self, NSString* title)
    {
        base(self).contents = checked(title, "setTitle:");
        CellAccess::changed(self);
    }
    static Ref<NSAttributedString> attributedTitle(NSButtonCell& self)
    {
        return attributed(self, base(self).contents);
    }
    static void setAttributedTitle(NSButtonCell& self, NSAttributedString* title)
    {
        base(self).contents = checked(title, "setAttributedTitle:");
        CellAccess::changed(self);
    }
    static Ref<NSString> alternateTitle(NSButtonCell& self)
    {
        return plain(of(self).alternateTitle);
    }
    static void setAlternateTitle(NSButtonCell& self, NSString* title)
    {
        of(self).alternateTitle = checked(title, "setAlternateTitle:");
        CellAccess::changed(self);
    }
    static Ref<NSAttributedString> attributedAlternateTitle(NSButtonCell& self)
    {
        return attributed(self, of(self).alternateTitle);
    }
    static void setAttributedAlternateTitle(NSButtonCell& self, NSAttributedString* title)
    {
        of(self).alternateTitle = checked(title, "setAttributedAlternateTitle:");
        CellAccess::changed(self);
    }

    // ---- images

    static void setImage(NSButtonCell& self, NSImage* image)
    {
        ButtonAttributes& attributes = of(self);
        attributes.image = image;
        if (image && attributes.imagePosition == NSNoImage)
            attributes.imagePosition = NSImageOnly;
        CellAccess::changed(self);
    }

    // ---- the value of a button is its state

    static Ref<NSObject> objectValue(NSButtonCell& self)
    {
        return NSNumber::cls().numberWithInteger(self.state());
    }
    static void setObjectValue(NSButtonCell& self, NSObject* value)
    {
        const bool answers = value && value->respondsToSelector(selector<"integerValue">);
        self.setState(answers ? value->send<"integerValue", NSInteger>() : NSOffState);
    }
    static Ref<NSString> stringValue(NSButtonCell& self)
    {
        return NSNumber::cls().numberWithInteger(self.state())->stringValue();
    }
    static void setStringValue(NSButtonCell& self, NSString* text) { setObjectValue(self, text); }

    // A radio button that is on stays on, and turns those off that stand beside it with the same action.
    static NSCellStateValue nextState(NSButtonCell& self)
    {
        if (of(self).type == NSRadioButton && self.state() == NSOnState)
            return NSOnState;
        return super<NSButtonCell, "nextState", NSCellStateValue>(self);
    }
    static void turnOthersOff(NSButton& button)
    {
        const SEL action = button.action();
        const Ref<NSView> superview = button.superview();
        if (!action || !superview)
            return;
        for (NSView* view : each<NSView>(superview->subviews())) {
            NSButton* const other = ButtonAccess::buttonOf(view);
            if (!other || other == &button || other->action() != action)
                continue;
            const Ref<NSCell> cell = other->cell();
            if (cell && cell->isKindOfClass(NSButtonCell::cls())
                && of(static_cast<NSButtonCell&>(*cell)).type == NSRadioButton)
                other->setState(NSOffState);
        }
    }
    static void setState(NSButtonCell& self, NSCellStateValue state)
    {
        super<NSButtonCell, "setState:">(self, state);
        if (of(self).type != NSRadioButton || self.state() != NSOnState)
            return;
        const Ref<NSView> view = self.controlView();
        if (NSButton* const button = ButtonAccess::buttonOf(view.get()))
            turnOthersOff(*button);
    }

    // ---- keyboard and time

    static Ref<NSString> keyEquivalent(NSButtonCell& self)
    {
        return of(self).key ? of(self).key : Ref<NSString>(""_ns);
    }
    static void setKeyEquivalent(NSButtonCell& self, NSString* key)
    {
        of(self).key = cast<NSString>(checked(key, "setKeyEquivalent:"));
        CellAccess::changed(self);
    }
    static void setPeriodicDelay(NSButtonCell& self, float delay, float interval)
    {
        of(self).delay = delay > 0 ? std::min(delay, 60.0F) : 0;
        of(self).interval = interval > 0 ? std::min(interval, 60.0F) : 0;
    }
    static void getPeriodicDelay(NSButtonCell& self, float* delay, float* interval)
    {
        if (delay)
            *delay = of(self).delay;
        if (interval)
            *interval = of(self).interval;
    }

    static void table(Builder& t)
    {
        using A = ButtonAttributes;
        t.methods({
            { "init", imp<init> },
            { "initTextCell:", imp<initTextCell> },
            { "initImageCell:", imp<initImageCell> },
            { "copyWithZone:", imp<copyWithZone> },
            { "setButtonType:", imp<setButtonType> },
            { "highlightsBy", imp<ButtonField<&A::highlightsBy>::get> },
            { "setHighlightsBy:", imp<ButtonField<&A::highlightsBy>::set> },
            { "showsStateBy", imp<ButtonField<&A::showsStateBy>::get> },
            { "setShowsStateBy:", imp<ButtonField<&A::showsStateBy>::set> },
            { "bezelStyle", imp<ButtonField<&A::bezel>::get> },
            { "setBezelStyle:", imp<ButtonField<&A::bezel>::set> },
            { "gradientType", imp<ButtonField<&A::gradient>::get> },
            { "setGradientType:", imp<ButtonField<&A::gradient>::set> },
            { "isTransparent", imp<ButtonField<&A::transparent>::get> },
            { "setTransparent:", imp<ButtonField<&A::transparent>::set> },
            { "imageDimsWhenDisabled", imp<ButtonField<&A::imageDims>::get> },
            { "setImageDimsWhenDisabled:", imp<ButtonField<&A::imageDims>::set> },
            { "showsBorderOnlyWhileMouseInside", imp<ButtonField<&A::borderOnlyInside>::get> },
            { "setShowsBorderOnlyWhileMouseInside:", imp<ButtonField<&A::borderOnlyInside>::set> },
            { "backgroundColor", imp<ButtonField<&A::background>::get> },
            { "setBackgroundColor:", imp<ButtonField<&A::background>::set> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "isOpaque", imp<isOpaque> },
        });
        t.methods({
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "attributedTitle", imp<attributedTitle> },
            { "setAttributedTitle:", imp<setAttributedTitle> },
            { "alternateTitle", imp<alternateTitle> },
            { "setAlternateTitle:", imp<setAlternateTitle> },
            { "attributedAlternateTitle", imp<attributedAlternateTitle> },
            { "setAttributedAlternateTitle:", imp<setAttributedAlternateTitle> },
            { "image", imp<ButtonField<&A::image>::get> },
            { "setImage:", imp<setImage> },
            { "alternateImage", imp<ButtonField<&A::alternateImage>::get> },
            { "setAlternateImage:", imp<ButtonField<&A::alternateImage>::set> },
            { "imagePosition", imp<ButtonField<&A::imagePosition>::get> },
            { "setImagePosition:", imp<ButtonField<&A::imagePosition>::set> },
            { "imageScaling", imp<ButtonField<&A::imageScaling>::get> },
            { "setImageScaling:", imp<ButtonField<&A::imageScaling>::set> },
            { "objectValue", imp<objectValue> },
            { "setObjectValue:", imp<setObjectValue> },
            { "stringValue", imp<stringValue> },
            { "setStringValue:", imp<setStringValue> },
            { "nextState", imp<nextState> },
            { "setState:", imp<setState> },
            { "keyEquivalent", imp<keyEquivalent> },
            { "setKeyEquivalent:", imp<setKeyEquivalent> },
            { "keyEquivalentModifierMask", imp<ButtonField<&A::keyModifiers>::get> },
            { "setKeyEquivalentModifierMask:", imp<ButtonField<&A::keyModifiers>::set> },
            { "setPeriodicDelay:interval:", imp<setPeriodicDelay> },
            { "getPeriodicDelay:interval:", imp<getPeriodicDelay> },
        });
    }
};
BRINDLE_RECORD(NSButtonCell, Basics)

}
