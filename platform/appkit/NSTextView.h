// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSText.h"

namespace brindle {

class NSDictionary;
class NSLayoutManager;
class NSTextContainer;
class NSTextStorage;
class NSUndoManager;

inline constexpr StringConstant<"NSTextViewDidChangeSelectionNotification">
    NSTextViewDidChangeSelectionNotification;

/// What a selection keeps to while it grows.
enum NSSelectionGranularity : NSUInteger {
    NSSelectByCharacter = 0,
    NSSelectByWord = 1,
    NSSelectByParagraph = 2,
};

/// On which side of a line's end the caret stands.
enum NSSelectionAffinity : NSUInteger {
    NSSelectionAffinityUpstream = 0,
    NSSelectionAffinityDownstream = 1,
};

/// The editor: shows the text of a storage, and lets the user select and change it.
///
/// Everything a key does is a message with a name (`moveWordLeft:`, `deleteToEndOfParagraph:`, `insertNewline:`), sent by
/// `doCommandBySelector:`, which asks the delegate's `textView:doCommandBySelector:` first. What the user changes goes through
/// `shouldChangeTextInRange:replacementString:` and `didChangeText`, can be undone, and is told; typing is undone as
/// a whole up to the next movement of the caret. `selectedRange` counts UTF-16 units and never cuts a character.
///
/// Besides what `NSText` names the delegate is asked `textView:shouldChangeTextInRange:replacementString:`,
/// `textView:willChangeSelectionFromCharacterRange:toCharacterRange:`, `undoManagerForTextView:`, and told
/// `textViewDidChangeSelection:`.
///
/// The caret blinks in the key window only, and stands still after ten seconds without an event.
/// Thread: main.
class NSTextView : public NSText {
    BRINDLE_OBJECT(NSTextView, NSText)

public:
    /// Shows a container that already belongs to a layout manager. `initWithFrame:` makes storage, manager and container.
    /// - Nil: for nil a container as wide as the frame is made.
    Ref<NSTextView> initWithFrame_textContainer(NSRect frame, NSTextContainer* container)
    {
        return send<"initWithFrame:textContainer:", Ref<NSTextView>>(frame, container);
    }
    Ref<NSTextContainer> textContainer() const
    {
        return send<"textContainer", Ref<NSTextContainer>>();
    }
    Ref<NSLayoutManager> layoutManager() const
    {
        return send<"layoutManager", Ref<NSLayoutManager>>();
    }
    Ref<NSTextStorage> textStorage() const { return send<"textStorage", Ref<NSTextStorage>>(); }
    /// The room between the view's edges and the container, in points.
    NSSize textContainerInset() const { return send<"textContainerInset", NSSize>(); }
    void setTextContainerInset(NSSize inset) { send<"setTextContainerInset:">(inset); }
    NSPoint textContainerOrigin() const { return send<"textContainerOrigin", NSPoint>(); }

    // ---- changing text as the user does

    /// Inserts typed text in place of a range; `NSNotFound` stands for the selection.
    /// - text: an NSString or NSAttributedString; anything else is ignored.
    void insertText_replacementRange(NSObject* text, NSRange range)
    {
        send<"insertText:replacementRange:">(text, range);
    }
    /// Asks whether the user may change a range, and begins the editing when it is the first change.
    /// - text: nil when only attributes change.
    bool shouldChangeTextInRange_replacementString(NSRange range, NSString* text)
    {
        return send<"shouldChangeTextInRange:replacementString:", bool>(range, text);
    }
    /// Tells that the user has changed the text; sent after each change that was allowed.
    void didChangeText() { send<"didChangeText">(); }
    /// Ends the typing that is undone as a whole.
    void breakUndoCoalescing() { send<"breakUndoCoalescing">(); }
    bool allowsUndo() const { return send<"allowsUndo", bool>(); }
    void setAllowsUndo(bool allows) { send<"setAllowsUndo:">(allows); }
    Ref<NSUndoManager> undoManager() const { return send<"undoManager", Ref<NSUndoManager>>(); }
    /// The attributes of what is typed next.
    Ref<NSDictionary> typingAttributes() const
    {
        return send<"typingAttributes", Ref<NSDictionary>>();
    }
    void setTypingAttributes(NSDictionary* attributes) { send<"setTypingAttributes:">(attributes); }

    // ---- text being composed by an input method

    void setMarkedText_selectedRange_replacementRange(
        NSObject* text, NSRange selected, NSRange range)
    {
        send<"setMarkedText:selectedRange:replacementRange:">(text, selected, range);
    }
    void unmarkText() { send<"unmarkText">(); }
    bool hasMarkedText() const { return send<"hasMarkedText", bool>(); }
    /// - Returns: `NSNotFound` and 0 when nothing is being composed.
    NSRange markedRange() const { return send<"markedRange", NSRange>(); }
    /// Answers the rectangle of a range's first line in screen coordinates.
    NSRect firstRectForCharacterRange_actualRange(NSRange range, NSRange* actual) const
    {
        return send<"firstRectForCharacterRange:actualRange:", NSRect>(range, actual);
    }
    /// Answers the character nearest to a point of the screen.
    NSUInteger characterIndexForPoint(NSPoint point) const
    {
        return send<"characterIndexForPoint:", NSUInteger>(point);
    }
    /// Answers the place between characters nearest to a point of the view.
    NSUInteger characterIndexForInsertionAtPoint(NSPoint point) const
    {
        return send<"characterIndexForInsertionAtPoint:", NSUInteger>(point);
    }

    // ---- selection

    /// Answers the selection as an array of one NSValue with a range.
    Ref<NSArray> selectedRanges() const { return send<"selectedRanges", Ref<NSArray>>(); }
    void setSelectedRange_affinity_stillSelecting(
        NSRange range, NSSelectionAffinity affinity, bool stillSelecting)
    {
        send<"setSelectedRange:affinity:stillSelecting:">(range, affinity, stillSelecting);
    }
    NSSelectionAffinity selectionAffinity() const
    {
        return send<"selectionAffinity", NSSelectionAffinity>();
    }
    /// Answers a proposed selection grown to whole characters, words or paragraphs.
    NSRange selectionRangeForProposedRange_granularity(
        NSRange range, NSSelectionGranularity granularity) const
    {
        return send<"selectionRangeForProposedRange:granularity:", NSRange>(range, granularity);
    }
    /// Sets how selected text looks; only the background colour is followed.
    void setSelectedTextAttributes(NSDictionary* attributes)
    {
        send<"setSelectedTextAttributes:">(attributes);
    }
    Ref<NSDictionary> selectedTextAttributes() const
    {
        return send<"selectedTextAttributes", Ref<NSDictionary>>();
    }

    // ---- the caret

    Ref<NSColor> insertionPointColor() const { return send<"insertionPointColor", Ref<NSColor>>(); }
    void setInsertionPointColor(NSColor* color) { send<"setInsertionPointColor:">(color); }
    bool shouldDrawInsertionPoint() const { return send<"shouldDrawInsertionPoint", bool>(); }
    /// Draws the caret. - on: NO draws nothing; the ground is drawn again by then.
    void drawInsertionPointInRect_color_turnedOn(NSRect rect, NSColor* color, bool on)
    {
        send<"drawInsertionPointInRect:color:turnedOn:">(rect, color, on);
    }
    /// Shows the caret at once and begins to blink anew; stops it where there is nothing to show.
    void updateInsertionPointStateAndRestartTimer(bool restart)
    {
        send<"updateInsertionPointStateAndRestartTimer:">(restart);
    }

private:
    friend struct TextViewAccess;
    std::shared_ptr<struct TextViewState> state_;
};

}
