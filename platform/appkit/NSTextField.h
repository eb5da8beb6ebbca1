// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"
#include "NSTextFieldCell.h"

namespace brindle {

class NSNotification;

/// A text that can be read, selected or typed, in one line or several.
///
/// A new field can be edited, has a bezel and a ground. While it is edited the window's shared editor lies in it
/// (`currentEditor`), and asking for the value takes over what has been typed. Editing ends by Return, which sends the
/// action and selects everything, by Tab and Shift-Tab, which go on to the next field, and by a press elsewhere. Escape
/// puts back what was there before; when nothing was typed it goes on along the responder chain.
///
/// The delegate, which is not kept, is asked and told by name: `control:textShouldBeginEditing:`,
/// `control:textShouldEndEditing:`, `control:didFailToFormatString:errorDescription:`, `control:isValidObject:`,
/// `control:textView:doCommandBySelector:`, `controlTextDidBeginEditing:`, `controlTextDidChange:` and
/// `controlTextDidEndEditing:`. The last three are notifications too; "NSFieldEditor" in their user info is the editor,
/// and "NSTextMovement" at the end tells what ended the editing.
/// Thread: main.
class NSTextField : public NSControl {
    BRINDLE_OBJECT(NSTextField, NSControl)

public:
    struct Meta : NSControl::Meta {
        /// Answers a text without ground or border that can be neither edited nor selected, as large as its text.
        Ref<NSTextField> labelWithString(NSString* text) const
        {
            return send<"labelWithString:", Ref<NSTextField>>(text);
        }
        /// The same; its text breaks into lines and can be selected.
        Ref<NSTextField> wrappingLabelWithString(NSString* text) const
        {
            return send<"wrappingLabelWithString:", Ref<NSTextField>>(text);
        }
        Ref<NSTextField> labelWithAttributedString(NSAttributedString* text) const
        {
            return send<"labelWithAttributedString:", Ref<NSTextField>>(text);
        }
        /// Answers a field of one line that can be edited.
        Ref<NSTextField> textFieldWithString(NSString* text) const
        {
            return send<"textFieldWithString:", Ref<NSTextField>>(text);
        }
    };

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept; nil once it has gone.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // ---- look

    Ref<NSColor> textColor() const { return send<"textColor", Ref<NSColor>>(); }
    void setTextColor(NSColor* color) { send<"setTextColor:">(color); }
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    bool isBordered() const { return send<"isBordered", bool>(); }
    /// YES takes a bezel away, and the other way round.
    void setBordered(bool bordered) { send<"setBordered:">(bordered); }
    bool isBezeled() const { return send<"isBezeled", bool>(); }
    void setBezeled(bool bezeled) { send<"setBezeled:">(bezeled); }
    NSTextFieldBezelStyle bezelStyle() const { return send<"bezelStyle", NSTextFieldBezelStyle>(); }
    void setBezelStyle(NSTextFieldBezelStyle style) { send<"setBezelStyle:">(style); }
    Ref<NSString> placeholderString() const { return send<"placeholderString", Ref<NSString>>(); }
    void setPlaceholderString(NSString* text) { send<"setPlaceholderString:">(text); }
    Ref<NSAttributedString> placeholderAttributedString() const
    {
        return send<"placeholderAttributedString", Ref<NSAttributedString>>();
    }
    void setPlaceholderAttributedString(NSAttributedString* text)
    {
        send<"setPlaceholderAttributedString:">(text);
    }
    NSInteger maximumNumberOfLines() const { return send<"maximumNumberOfLines", NSInteger>(); }
    void setMaximumNumberOfLines(NSInteger lines) { send<"setMaximumNumberOfLines:">(lines); }
    /// The width that a wrapping field's size is asked for at, in points; 0 for its own.
    CGFloat preferredMaxLayoutWidth() const { return send<"preferredMaxLayoutWidth", CGFloat>(); }
    void setPreferredMaxLayoutWidth(CGFloat width) { send<"setPreferredMaxLayoutWidth:">(width); }

    // ---- editing

    bool isEditable() const { return send<"isEditable", bool>(); }
    /// YES makes it selectable too.
    void setEditable(bool editable) { send<"setEditable:">(editable); }
    bool isSelectable() const { return send<"isSelectable", bool>(); }
    /// NO makes it not editable either.
    void setSelectable(bool selectable) { send<"setSelectable:">(selectable); }
    bool allowsEditingTextAttributes() const { return send<"allowsEditingTextAttributes", bool>(); }
    void setAllowsEditingTextAttributes(bool allows)
    {
        send<"setAllowsEditingTextAttributes:">(allows);
    }
    /// Begins editing with all of the text selected. Nothing happens in a field that is in no window or cannot be selected.
    void selectText(NSObject* sender) { send<"selectText:">(sender); }

    // ---- hooks: the editor asks and tells its field, which asks and tells the delegate

    bool textShouldBeginEditing(NSText* editor)
    {
        return send<"textShouldBeginEditing:", bool>(editor);
    }
    bool textShouldEndEditing(NSText* editor)
    {
        return send<"textShouldEndEditing:", bool>(editor);
    }
    void textDidBeginEditing(NSNotification* notification)
    {
        send<"textDidBeginEditing:">(notification);
    }
    void textDidChange(NSNotification* notification) { send<"textDidChange:">(notification); }
    void textDidEndEditing(NSNotification* notification)
    {
        send<"textDidEndEditing:">(notification);
    }

private:
    WeakRef<NSObject> delegate_;
    Ref<NSText> editor_; // while the window's editor lies here
    Ref<NSObject> original_; // the value before this editing
    CGFloat preferredWidth_ = 0;
    bool editsAttributes_ = false;
    bool hasTyped_ = false; // what the cell does not know yet
    bool hasChanged_ = false; // in this editing
};

}
