// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSParagraphStyle.h"
#include "NSView.h"

namespace brindle {

class NSAttributedString;
class NSColor;
class NSFont;
class NSNotification;

inline constexpr StringConstant<"NSTextDidBeginEditingNotification">
    NSTextDidBeginEditingNotification;
inline constexpr StringConstant<"NSTextDidEndEditingNotification"> NSTextDidEndEditingNotification;
inline constexpr StringConstant<"NSTextDidChangeNotification"> NSTextDidChangeNotification;

/// What ended an editing: "NSTextMovement" in the user info of `NSTextDidEndEditingNotification`, an NSNumber.
enum NSTextMovement : NSInteger {
    NSIllegalTextMovement = 0, ///< something else, such as a press elsewhere
    NSReturnTextMovement = 16,
    NSTabTextMovement = 17,
    NSBacktabTextMovement = 18,
    NSLeftTextMovement = 19,
    NSRightTextMovement = 20,
    NSUpTextMovement = 21,
    NSDownTextMovement = 22,
    NSCancelTextMovement = 23,
};

/// A view with text to be read, selected and edited. What is made of this class itself is an `NSTextView`.
///
/// As a field editor it ends its editing by Return, Tab and Escape instead of inserting them. The delegate, which is not
/// kept, is asked and told by name: `textShouldBeginEditing:`, `textShouldEndEditing:`, `textDidBeginEditing:`,
/// `textDidChange:` and `textDidEndEditing:`; the last three are notifications too.
/// Thread: main.
class NSText : public NSView {
    BRINDLE_OBJECT(NSText, NSView)

public:
    // ---- text

    /// Answers the text as it is now.
    Ref<NSString> string() const { return send<"string", Ref<NSString>>(); }
    /// Replaces everything, without asking, telling or anything to undo. Nil counts as "".
    void setString(NSString* text) { send<"setString:">(text); }
    /// Replaces a part, likewise. - Raises: `NSRangeException` when the range leaves the text.
    void replaceCharactersInRange_withString(NSRange range, NSString* text)
    {
        send<"replaceCharactersInRange:withString:">(range, text);
    }
    NSRange selectedRange() const { return send<"selectedRange", NSRange>(); }
    /// - range: kept within the text, and moved so that no character is cut.
    void setSelectedRange(NSRange range) { send<"setSelectedRange:">(range); }
    void scrollRangeToVisible(NSRange range) { send<"scrollRangeToVisible:">(range); }

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // ---- kind

    bool isEditable() const { return send<"isEditable", bool>(); }
    /// YES makes it selectable too.
    void setEditable(bool editable) { send<"setEditable:">(editable); }
    bool isSelectable() const { return send<"isSelectable", bool>(); }
    /// NO makes it not editable either.
    void setSelectable(bool selectable) { send<"setSelectable:">(selectable); }
    bool isFieldEditor() const { return send<"isFieldEditor", bool>(); }
    void setFieldEditor(bool isEditor) { send<"setFieldEditor:">(isEditor); }
    /// Answers whether parts of the text may look different from others.
    bool isRichText() const { return send<"isRichText", bool>(); }
    void setRichText(bool rich) { send<"setRichText:">(rich); }

    // ---- look

    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    /// The font of the first character, or of what will be typed.
    Ref<NSFont> font() const { return send<"font", Ref<NSFont>>(); }
    /// Gives all text a font; nil changes nothing. The same for the next three.
    void setFont(NSFont* font) { send<"setFont:">(font); }
    Ref<NSColor> textColor() const { return send<"textColor", Ref<NSColor>>(); }
    void setTextColor(NSColor* color) { send<"setTextColor:">(color); }
    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    void setAlignment(NSTextAlignment alignment) { send<"setAlignment:">(alignment); }
    NSWritingDirection baseWritingDirection() const
    {
        return send<"baseWritingDirection", NSWritingDirection>();
    }
    void setBaseWritingDirection(NSWritingDirection direction)
    {
        send<"setBaseWritingDirection:">(direction);
    }

    // ---- size

    /// Whether the view becomes higher or wider with its text, between `minSize` and `maxSize`.
    bool isVerticallyResizable() const { return send<"isVerticallyResizable", bool>(); }
    void setVerticallyResizable(bool resizable) { send<"setVerticallyResizable:">(resizable); }
    bool isHorizontallyResizable() const { return send<"isHorizontallyResizable", bool>(); }
    void setHorizontallyResizable(bool resizable) { send<"setHorizontallyResizable:">(resizable); }
    NSSize minSize() const { return send<"minSize", NSSize>(); }
    void setMinSize(NSSize size) { send<"setMinSize:">(size); }
    NSSize maxSize() const { return send<"maxSize", NSSize>(); }
    void setMaxSize(NSSize size) { send<"setMaxSize:">(size); }
    /// Gives it the size of its text in the directions in which it may be resized.
    void sizeToFit() { send<"sizeToFit">(); }

    // ---- commands of menus; deletions of an empty selection do nothing

    void selectAll(NSObject* sender) { send<"selectAll:">(sender); }
    using NSObject::copy;
    void copy(NSObject* sender) { send<"copy:">(sender); }
    void cut(NSObject* sender) { send<"cut:">(sender); }
    void paste(NSObject* sender) { send<"paste:">(sender); }
    void deleteSelection(NSObject* sender) { send<"delete:">(sender); }
};

}
