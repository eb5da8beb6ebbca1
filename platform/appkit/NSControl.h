// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSView.h"

namespace brindle {

class NSText;

inline constexpr StringConstant<"NSControlTextDidBeginEditingNotification">
    NSControlTextDidBeginEditingNotification;
inline constexpr StringConstant<"NSControlTextDidEndEditingNotification">
    NSControlTextDidEndEditingNotification;
inline constexpr StringConstant<"NSControlTextDidChangeNotification">
    NSControlTextDidChangeNotification;

/// A view that a user sets something with. Its cell draws it, follows the pointer and keeps value, target and action;
/// most operations here only ask the cell and mark the control for drawing.
///
/// A press highlights the cell and lets it track; the action is sent through the application. A control may be removed,
/// disabled or let go of in its own action, and an action may raise: the control is no longer highlighted then.
/// Thread: main.
class NSControl : public NSView {
    BRINDLE_OBJECT(NSControl, NSView)

public:
    struct Meta : NSView::Meta {
        /// Answers the class of the cells that new controls of this class get: what was set for it or for its nearest ancestor.
        Class* cellClass() const { return send<"cellClass", Class*>(); }
        /// Sets it for this class and for those below that have none of their own. - Nil: what the superclass has.
        /// - Raises: `NSInvalidArgumentException` for a class that is no cell.
        void setCellClass(Class* cell) const { send<"setCellClass:">(cell); }
    };

    // ---- cell

    Ref<NSCell> cell() const { return send<"cell", Ref<NSCell>>(); }
    /// - Raises: `NSInvalidArgumentException` for an object that is no cell. - Nil: the control then draws and does nothing.
    void setCell(NSCell* cell) { send<"setCell:">(cell); }
    Ref<NSCell> selectedCell() const { return send<"selectedCell", Ref<NSCell>>(); }
    NSInteger selectedTag() const { return send<"selectedTag", NSInteger>(); }
    void selectCell(NSCell* cell) { send<"selectCell:">(cell); }
    /// Marks the control for drawing when the cell is its own.
    void updateCell(NSCell* cell) { send<"updateCell:">(cell); }
    void updateCellInside(NSCell* cell) { send<"updateCellInside:">(cell); }
    /// Draws the control before it returns when the cell is its own.
    void drawCell(NSCell* cell) { send<"drawCell:">(cell); }
    void drawCellInside(NSCell* cell) { send<"drawCellInside:">(cell); }

    // ---- target and action

    /// Not kept; nil once it has gone.
    Ref<NSObject> target() const { return send<"target", Ref<NSObject>>(); }
    /// - Nil: whoever on the responder chain takes the action.
    void setTarget(NSObject* target) { send<"setTarget:">(target); }
    SEL action() const { return send<"action", SEL>(); }
    void setAction(SEL action) { send<"setAction:">(action); }
    NSInteger tag() const { return send<"tag", NSInteger>(); }
    void setTag(NSInteger tag) { send<"setTag:">(tag); }
    /// Sends an action through the application. - Returns: whether somebody performed it.
    bool sendAction_to(SEL action, NSObject* target)
    {
        return send<"sendAction:to:", bool>(action, target);
    }
    NSInteger sendActionOn(NSEventMask mask) { return send<"sendActionOn:", NSInteger>(mask); }
    bool isContinuous() const { return send<"isContinuous", bool>(); }
    void setContinuous(bool continuous) { send<"setContinuous:">(continuous); }
    void performClick(NSObject* sender) { send<"performClick:">(sender); }
    /// Answers whether further presses of a double click go past it.
    bool ignoresMultiClick() const { return send<"ignoresMultiClick", bool>(); }
    void setIgnoresMultiClick(bool ignores) { send<"setIgnoresMultiClick:">(ignores); }

    // ---- look

    bool isEnabled() const { return send<"isEnabled", bool>(); }
    /// A disabled control is dimmed, takes no presses, and gives the keyboard focus up.
    void setEnabled(bool enabled) { send<"setEnabled:">(enabled); }
    bool isHighlighted() const { return send<"isHighlighted", bool>(); }
    void setHighlighted(bool highlighted) { send<"setHighlighted:">(highlighted); }
    NSControlSize controlSize() const { return send<"controlSize", NSControlSize>(); }
    void setControlSize(NSControlSize size) { send<"setControlSize:">(size); }
    bool refusesFirstResponder() const { return send<"refusesFirstResponder", bool>(); }
    void setRefusesFirstResponder(bool refuses) { send<"setRefusesFirstResponder:">(refuses); }
    NSFocusRingType focusRingType() const { return send<"focusRingType", NSFocusRingType>(); }
    void setFocusRingType(NSFocusRingType type) { send<"setFocusRingType:">(type); }
    Ref<NSFont> font() const { return send<"font", Ref<NSFont>>(); }
    void setFont(NSFont* font) { send<"setFont:">(font); }
    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    void setAlignment(NSTextAlignment alignment) { send<"setAlignment:">(alignment); }
    NSLineBreakMode lineBreakMode() const { return send<"lineBreakMode", NSLineBreakMode>(); }
    void setLineBreakMode(NSLineBreakMode mode) { send<"setLineBreakMode:">(mode); }
    bool usesSingleLineMode() const { return send<"usesSingleLineMode", bool>(); }
    void setUsesSingleLineMode(bool single) { send<"setUsesSingleLineMode:">(single); }
    NSWritingDirection baseWritingDirection() const
    {
        return send<"baseWritingDirection", NSWritingDirection>();
    }
    void setBaseWritingDirection(NSWritingDirection direction)
    {
        send<"setBaseWritingDirection:">(direction);
    }
    /// Gives it the size that its cell needs; the origin stays.
    void sizeToFit() { send<"sizeToFit">(); }
    NSSize sizeThatFits(NSSize size) const { return send<"sizeThatFits:", NSSize>(size); }
    NSSize intrinsicContentSize() const { return send<"intrinsicContentSize", NSSize>(); }
    void calcSize() { send<"calcSize">(); }
    using NSView::setNeedsDisplay;
    /// Marks the whole control for drawing.
    void setNeedsDisplay() { send<"setNeedsDisplay">(); }

    // ---- value, as the cell has it

    Ref<NSObject> objectValue() const { return send<"objectValue", Ref<NSObject>>(); }
    void setObjectValue(NSObject* object) { send<"setObjectValue:">(object); }
    Ref<NSString> stringValue() const { return send<"stringValue", Ref<NSString>>(); }
    void setStringValue(NSString* text) { send<"setStringValue:">(text); }
    Ref<NSAttributedString> attributedStringValue() const
    {
        return send<"attributedStringValue", Ref<NSAttributedString>>();
    }
    void setAttributedStringValue(NSAttributedString* text)
    {
        send<"setAttributedStringValue:">(text);
    }
    int intValue() const { return send<"intValue", int>(); }
    void setIntValue(int value) { send<"setIntValue:">(value); }
    NSInteger integerValue() const { return send<"integerValue", NSInteger>(); }
    void setIntegerValue(NSInteger value) { send<"setIntegerValue:">(value); }
    float floatValue() const { return send<"floatValue", float>(); }
    void setFloatValue(float value) { send<"setFloatValue:">(value); }
    double doubleValue() const { return send<"doubleValue", double>(); }
    void setDoubleValue(double value) { send<"setDoubleValue:">(value); }
    void takeObjectValueFrom(NSObject* sender) { send<"takeObjectValueFrom:">(sender); }
    void takeStringValueFrom(NSObject* sender) { send<"takeStringValueFrom:">(sender); }
    void takeIntValueFrom(NSObject* sender) { send<"takeIntValueFrom:">(sender); }
    void takeIntegerValueFrom(NSObject* sender) { send<"takeIntegerValueFrom:">(sender); }
    void takeFloatValueFrom(NSObject* sender) { send<"takeFloatValueFrom:">(sender); }
    void takeDoubleValueFrom(NSObject* sender) { send<"takeDoubleValueFrom:">(sender); }
    Ref<NSFormatter> formatter() const { return send<"formatter", Ref<NSFormatter>>(); }
    void setFormatter(NSFormatter* formatter) { send<"setFormatter:">(formatter); }

    // ---- editing; controls without text have no editor

    Ref<NSText> currentEditor() const { return send<"currentEditor", Ref<NSText>>(); }
    /// Ends editing without taking the text over. - Returns: whether there was an editor.
    bool abortEditing() { return send<"abortEditing", bool>(); }
    /// Takes over what has been typed.
    void validateEditing() { send<"validateEditing">(); }

private:
    Ref<NSCell> cell_;
    NSInteger tag_ = 0; // of a control whose cell has none
    bool ignoresMultiClick_ = false;
};

}
