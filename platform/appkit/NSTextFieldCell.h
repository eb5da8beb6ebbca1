// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSActionCell.h"

namespace brindle {

class NSColor;
class NSText;

/// The shape of a text field that has a bezel.
enum NSTextFieldBezelStyle : NSUInteger {
    NSTextFieldSquareBezel = 0,
    NSTextFieldRoundedBezel = 1,
};

/// Draws a text in a field, and lends its place to the window's editor while somebody types there.
///
/// The text stands 2 points from the left and right of `drawingRectForBounds:`, from the top on. What does not fit is
/// clipped, wrapped or shortened as the line settings say. A cell of its own draws neither ground nor border.
/// Thread: main.
class NSTextFieldCell : public NSActionCell {
    BRINDLE_OBJECT(NSTextFieldCell, NSActionCell)

public:
    /// Answers the colour of the text; `controlTextColor` at first. Disabled cells draw it faintly.
    Ref<NSColor> textColor() const { return send<"textColor", Ref<NSColor>>(); }
    /// - Nil: the colour of the beginning.
    void setTextColor(NSColor* color) { send<"setTextColor:">(color); }
    /// Answers the colour of the ground; `textBackgroundColor` at first.
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    NSTextFieldBezelStyle bezelStyle() const { return send<"bezelStyle", NSTextFieldBezelStyle>(); }
    void setBezelStyle(NSTextFieldBezelStyle style) { send<"setBezelStyle:">(style); }

    /// What is shown, faintly, in place of an empty text. Setting one of the two takes the other away.
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
    /// The number of lines that are shown at most; 0 for as many as fit.
    NSInteger maximumNumberOfLines() const { return send<"maximumNumberOfLines", NSInteger>(); }
    void setMaximumNumberOfLines(NSInteger lines) { send<"setMaximumNumberOfLines:">(lines); }

    // ---- editing

    /// Gives an editor the font, colours and alignment of the cell, and answers it. Override to change them.
    Ref<NSText> setUpFieldEditorAttributes(NSText* editor)
    {
        return send<"setUpFieldEditorAttributes:", Ref<NSText>>(editor);
    }
    /// Answers an editor of the cell's own for a view, or nil for the window's shared one.
    Ref<NSText> fieldEditorForView(NSView* view) const
    {
        return send<"fieldEditorForView:", Ref<NSText>>(view);
    }
    /// Puts the editor into the view and hands it the press that began the editing.
    void editWithFrame_inView_editor_delegate_event(
        NSRect frame, NSView* view, NSText* editor, NSObject* delegate, NSEvent* event)
    {
        send<"editWithFrame:inView:editor:delegate:event:">(frame, view, editor, delegate, event);
    }
    /// Puts the editor into the view and selects a part of the text.
    void selectWithFrame_inView_editor_delegate_start_length(NSRect frame, NSView* view,
        NSText* editor, NSObject* delegate, NSInteger start, NSInteger length)
    {
        send<"selectWithFrame:inView:editor:delegate:start:length:">(
            frame, view, editor, delegate, start, length);
    }
    /// Takes the editor out of the view it is in. What was typed is not taken over.
    void endEditing(NSText* editor) { send<"endEditing:">(editor); }

private:
    Ref<NSColor> textColor_; // nil: the ordinary one
    Ref<NSColor> backgroundColor_; // nil: the ordinary one
    Ref<NSString> placeholder_;
    Ref<NSAttributedString> attributedPlaceholder_;
    NSInteger maximumNumberOfLines_ = 0;
    NSTextFieldBezelStyle bezelStyle_ = NSTextFieldSquareBezel;
    bool drawsBackground_ = false;
};

}
