// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSCell.h"
#include "appkit/NSImage.h"
#include "foundation/NSFormatter.h"

namespace brindle {

class NSColor;
class NSDictionary;

/// What a cell keeps; a copy of a cell is a copy of this.
struct CellAttributes {
    Ref<NSObject> contents; // the value
    Ref<NSFont> font;
    Ref<NSImage> image;
    Ref<NSObject> menu; // NSMenu
    Ref<NSFormatter> formatter;
    Ref<NSObject> represented;
    NSCellType type = NSNullCellType;
    NSCellStateValue state = NSOffState;
    NSEventMask sendsOn = NSLeftMouseUpMask;
    NSControlSize controlSize = NSControlSizeRegular;
    NSControlTint controlTint = NSDefaultControlTint;
    NSBackgroundStyle backgroundStyle = NSBackgroundStyleLight;
    NSFocusRingType focusRingType = NSFocusRingTypeDefault;
    NSTextAlignment alignment = NSTextAlignmentNatural;
    NSWritingDirection writingDirection = NSWritingDirectionNatural;
    NSLineBreakMode lineBreakMode = NSLineBreakByWordWrapping;
    bool validContents = true;
    bool enabled = true;
    bool highlighted = false;
    bool allowsMixed = false;
    bool showsFirstResponder = false;
    bool refusesFirstResponder = false;
    bool bordered = false;
    bool bezeled = false;
    bool editable = false;
    bool selectable = false;
    bool scrollable = false;
    bool wraps = true;
    bool singleLine = false;
    bool truncatesLastLine = false;
    bool allowsUndo = true;
};

/// What the files of this folder do with cells beside sending messages.
struct CellAccess {
    static CellAttributes& of(NSCell& cell)
    {
        if (!cell.attributes_)
            cell.attributes_ = std::make_shared<CellAttributes>();
        return *cell.attributes_;
    }
    static WeakRef<NSView>& controlView(NSCell& cell) { return cell.controlView_; }
    /// Marks the control that the cell stands in for drawing.
    static void changed(NSCell& cell);
    /// Sends the action through the view that the cell is used in.
    static void sendAction(NSCell& cell, NSView* view);
};

/// Answers font, colour and paragraph style for a cell's text.
/// - color: nil is the text colour of controls, dimmed in a disabled cell, light on a dark ground.
Ref<NSDictionary> textAttributesOf(const NSCell& cell, NSColor* color = nullptr);

/// How a value is handed over: objects are lent.
template <class T> struct Lent {
    using Type = T;
};
template <class T> struct Lent<Ref<T>> {
    using Type = T*;
};

/// Accessors of one of the attributes, for tables: `imp<CellField<&CellAttributes::enabled>::get>`.
template <auto Field> struct CellField;
template <class T, T CellAttributes::*Field> struct CellField<Field> {
    static T get(NSCell& self) { return CellAccess::of(self).*Field; }
    static void set(NSCell& self, typename Lent<T>::Type value)
    {
        CellAccess::of(self).*Field = value;
        CellAccess::changed(self);
    }
};

}
