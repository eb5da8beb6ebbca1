// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ControlDrawingPrivate.h"
#include "NSCellPrivate.h"
#include "appkit/NSButton.h"
#include "foundation/NSAttributedString.h"

namespace brindle {

/// What a button's cell keeps beside what every cell keeps, where the contents are the title.
struct ButtonAttributes {
    Ref<NSObject> alternateTitle; // NSString or NSAttributedString
    Ref<NSImage> image;
    Ref<NSImage> alternateImage;
    Ref<NSObject> background; // NSColor
    Ref<NSString> key;
    NSEventModifierFlags keyModifiers = 0;
    NSButtonType type = NSMomentaryPushInButton;
    NSCellStyleMask highlightsBy = NSPushInCellMask | NSChangeGrayCellMask;
    NSCellStyleMask showsStateBy = NSNoCellMask;
    NSBezelStyle bezel = NSRoundedBezelStyle;
    NSGradientType gradient = NSGradientNone;
    NSCellImagePosition imagePosition = NSNoImage;
    NSImageScaling imageScaling = NSImageScaleProportionallyDown;
    float delay = 0.4F;
    float interval = 0.075F;
    bool transparent = false;
    bool imageDims = true;
    bool borderOnlyInside = false;
    bool pointerInside = false; // told by mouseEntered: and mouseExited:
};

/// What the files of buttons do with each other.
struct ButtonAccess {
    static ButtonAttributes& of(NSButtonCell& cell)
    {
        if (!cell.attributes_)
            cell.attributes_ = std::make_shared<ButtonAttributes>();
        return *cell.attributes_;
    }
    static bool isMark(NSButtonCell& cell)
    {
        const NSButtonType type = of(cell).type;
        return type == NSSwitchButton || type == NSRadioButton;
    }
    static bool isHovered(NSButton& button) { return button.hovered_; }
    static bool& focusedByPointer(NSButton& button) { return button.focusedByPointer_; }
    /// Answers the control view where it is a button.
    static NSButton* buttonOf(NSView* view)
    {
        return view && view->isKindOfClass(NSButton::cls()) ? static_cast<NSButton*>(view)
                                                            : nullptr;
    }
    /// Told by the window when the pointer comes or goes.
    static void setHovered(NSButton& button, bool hovered);
};

/// Answers the image that stands for the mark of check boxes or radio buttons; the cell draws it itself.
Ref<NSImage> markImage(NSButtonType type);

/// Accessors as those of cells.
template <auto Field> struct ButtonField;
template <class T, T ButtonAttributes::*Field> struct ButtonField<Field> {
    static T get(NSButtonCell& self) { return ButtonAccess::of(self).*Field; }
    static void set(NSButtonCell& self, typename Lent<T>::Type value)
    {
        ButtonAccess::of(self).*Field = value;
        CellAccess::changed(self);
    }
};

}
