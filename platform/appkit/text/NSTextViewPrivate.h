// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSTextView.h"
#include "appkit/windows/HeardWindowPrivate.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSTimer.h"

namespace brindle {

/// Typing that is undone as a whole; the registered action and the editor share it.
struct TypingRun {
    NSRange inserted; // grows with every character
    Ref<NSAttributedString> replaced;
};

/// Where a caret stands: before a character, and there perhaps still at the end of the line that was wrapped.
struct CaretPlace {
    CaretPlace(NSUInteger at, NSSelectionAffinity side = NSSelectionAffinityDownstream)
        : index(at)
        , affinity(side)
    {
    }
    bool isUpstream() const { return affinity == NSSelectionAffinityUpstream; }

    NSUInteger index;
    NSSelectionAffinity affinity;
};

/// Everything an editor is and has.
struct TextViewState {
    Ref<NSTextStorage> storage;
    Ref<NSLayoutManager> layout;
    Ref<NSTextContainer> container;
    NSSize inset {};

    NSUInteger anchor = 0; // the end of the selection that stays
    NSUInteger head = 0; // the end that moves; the caret, when both are the same
    NSSelectionAffinity affinity = NSSelectionAffinityDownstream; // of the moving end
    std::optional<CGFloat> goal; // where the caret would like to be while it moves up and down
    Ref<NSMutableString> secretText; // shown as bullets; nil where the text is no secret
    NSRange marked { NSNotFound, 0 };
    Ref<NSDictionary> typingAttributes; // nil: those of the text at the caret
    Ref<NSDictionary>
        plainAttributes; // font, colour and style of a text that looks the same all over

    HeardWindow heard;
    WeakRef<NSObject> delegate;
    Ref<NSColor> background; // nil: the ordinary one
    Ref<NSColor> caretColor; // nil: the ordinary one
    Ref<NSDictionary> selectedAttributes;

    std::shared_ptr<TypingRun> typing;
    Ref<NSTimer> blink;
    double lastEvent = 0; // when the caret was last moved; it stops blinking long after
    NSRect caret {}; // where it was drawn
    NSSize minSize {};
    NSSize maxSize { 1e7, 1e7 };

    bool caretShown = true;
    bool editable = true;
    bool selectable = true;
    bool fieldEditor = false;
    bool singleLine = false; // line breaks become spaces
    bool rich = true;
    bool allowsUndo = false;
    bool drawsBackground = true;
    bool verticallyResizable = true;
    bool horizontallyResizable = false;
    bool editing = false; // the delegate was told that it began
    bool ending = false;
    bool isFirstResponder = false;
    bool isReady = false; // it was initialised
};

/// What the files of this folder do with editors beside sending messages.
struct TextViewAccess {
    /// Answers the state; a view without `init` gets one without size.
    static TextViewState& of(NSTextView& view)
    {
        if (!view.state_) [[unlikely]] {
            prepare(view, {}, nullptr);
            view.state_->isReady = false;
        }
        return *view.state_;
    }
    static bool isReady(const NSTextView& view) { return view.state_ && view.state_->isReady; }
    static void install(NSTextView& view, std::shared_ptr<TextViewState> state)
    {
        view.state_ = std::move(state);
    }

    /// Gives a view that is being made its state; a nil container is made for the size.
    static void prepare(NSTextView& view, NSSize size, NSTextContainer* container);
    /// Ends the making: container and layout belong to the view.
    static void settle(NSTextView& view, NSSize size);

    /// Answers the text itself, also where bullets are shown in its place.
    static Ref<NSString> text(NSTextView& view);

    // Layout; NSTextView-Layout.cpp. Rectangles and points are in the view's coordinates.

    static NSUInteger length(NSTextView& view);
    /// Answers a line of no width where the caret stands.
    static NSRect caretRect(NSTextView& view, CaretPlace place);
    static CaretPlace placeAt(NSTextView& view, NSPoint point);
    /// Answers where the moving end of the selection stands, the caret.
    static CaretPlace head(NSTextView& view) { return { of(view).head, of(view).affinity }; }
    static std::vector<NSRect> rectsOf(NSTextView& view, NSRange range);
    /// Answers the characters of the line that shows a caret.
    static NSRange lineAt(NSTextView& view, CaretPlace place);
    static NSSize usedSize(NSTextView& view);
    /// Follows a change of the text, its look or the room for it.
    static void relayout(NSTextView& view);

    // Editing; NSTextView-Editing.cpp.

    static NSRange selection(NSTextView& view);
    static NSRange clamped(NSTextView& view, NSRange range);
    /// Replaces text in the storage, and in the secret; nobody is asked or told. The caret stands behind it.
    static void put(NSTextView& view, NSRange range, NSAttributedString& text);
    /// Asks, replaces, registers how to undo it, tells. The caret stands behind what came in.
    /// - Returns: false when it was refused.
    static bool replace(NSTextView& view, NSRange range, NSAttributedString* text, bool typing);
    static bool replace(NSTextView& view, NSRange range, NSString* text, bool typing);
    static Ref<NSDictionary> attributesAtCaret(NSTextView& view);
    /// Ends the editing of a field editor as the user asked, when the delegate agrees.
    static void endEditing(NSTextView& view, NSTextMovement movement);

    // Selection; NSTextView-Selection.cpp.

    /// Moves the caret, or the moving end of the selection.
    static void moveTo(NSTextView& view, CaretPlace place, bool extend, bool keepsGoal = false);
    static void select(NSTextView& view, NSUInteger anchor, CaretPlace head, bool still = false);
    static void ownPrimary(NSTextView& view);
    static void redrawSelection(NSTextView& view);

    // The caret; NSTextView-Caret.cpp.

    static void restartCaret(NSTextView& view);
    static void stopCaret(NSTextView& view);
    static bool isActive(NSTextView& view); ///< has the keyboard in the key window
};

}
