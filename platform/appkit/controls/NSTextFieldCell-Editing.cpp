// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextFieldCell.h"
#include "FieldEditorClipPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSWindow.h"
#include "appkit/text/NSTextViewPrivate.h"
#include "foundation/NSFormatter.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextFieldCell::Methods<struct Editing> {

    static constexpr CGFloat kUnbounded = 1e7;
    static constexpr CGFloat kPadding = 2;

    static Ref<NSText> setUpEditor(NSTextFieldCell& self, NSText* editor)
    {
        if (!editor)
            return nullptr;
        editor->setFont(self.font().get());
        editor->setTextColor(self.textColor().get());
        editor->setAlignment(self.alignment());
        editor->setBaseWritingDirection(self.baseWritingDirection());
        editor->setEditable(self.isEditable());
        editor->setSelectable(self.isSelectable());
        return editor;
    }
    static Ref<NSText> fieldEditor(NSTextFieldCell&, NSView*) { return nullptr; }

    /// Answers what the user edits: the value as its formatter writes it for that.
    static Ref<NSString> editedText(NSTextFieldCell& self)
    {
        const Ref<NSFormatter> formatter = self.formatter();
        const Ref<NSObject> value = self.objectValue();
        if (formatter && value) {
            if (Ref<NSString> text = formatter->editingStringForObjectValue(value.get()))
                return text;
        }
        return self.stringValue();
    }
    // A line that cannot wrap is as long as it likes; the clip shows a part of it.
    static void shape(NSTextFieldCell& self, NSTextView& editor, NSSize room)
    {
        TextViewState& s = TextViewAccess::of(editor);
        const bool wraps = self.wraps();
        s.singleLine = !wraps;
        s.inset = {};
        s.container->setLineFragmentPadding(kPadding);
        s.container->setWidthTracksTextView(wraps);
        s.container->setContainerSize({ wraps ? room.width : kUnbounded, kUnbounded });
        s.horizontallyResizable = !wraps;
        s.verticallyResizable = wraps;
        s.minSize = room;
        s.maxSize = { kUnbounded, kUnbounded };
    }
    static void begin(
        NSTextFieldCell& self, NSRect frame, NSView& view, NSText& lent, NSObject* delegate)
    {
        const Ref<NSText> editor = self.setUpFieldEditorAttributes(&lent);
        const NSRect room = self.drawingRectForBounds(frame);
        FieldEditorClip::install(self, room, view, *editor);
        if (editor->isKindOfClass(NSTextView::cls()))
            shape(self, static_cast<NSTextView&>(*editor), room.size);
        editor->setString(editedText(self).get());
        editor->setDelegate(delegate);
        editor->sizeToFit();
        view.setNeedsDisplay(true);
        maybe(view.window())->makeFirstResponder(editor.get());
    }
    static void edit(NSTextFieldCell& self, NSRect frame, NSView* view, NSText* editor,
        NSObject* delegate, NSEvent* event)
    {
        if (!view || !editor || !self.isSelectable())
            return;
        const Ref<NSText> alive(editor);
        begin(self, frame, *view, *editor, delegate);
        editor->setSelectedRange(NSMakeRange(0, 0));
        if (event && event->type() == NSLeftMouseDown)
            editor->mouseDown(event);
    }
    static void select(NSTextFieldCell& self, NSRect frame, NSView* view, NSText* editor,
        NSObject* delegate, NSInteger start, NSInteger length)
    {
        if (!view || !editor || !self.isSelectable())
            return;
        const Ref<NSText> alive(editor);
        begin(self, frame, *view, *editor, delegate);
        editor->setSelectedRange(NSMakeRange(static_cast<NSUInteger>(std::max<NSInteger>(start, 0)),
            static_cast<NSUInteger>(std::max<NSInteger>(length, 0))));
    }
    static void endEditing(NSTextFieldCell&, NSText* lent)
    {
        if (!lent)
            return;
        const Ref<NSText> editor(lent);
        const Ref<NSView> shown = maybe(editor->superview())->superview();
        const Ref<NSUndoManager> manager = editor->undoManager();
        editor->setDelegate(nullptr);
        maybe(manager)->removeAllActionsWithTarget(editor.get());
        if (editor->isKindOfClass(NSTextView::cls()))
            TextViewAccess::of(static_cast<NSTextView&>(*editor)).editing = false;
        FieldEditorClip::remove(*editor);
        maybe(shown)->setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setUpFieldEditorAttributes:", imp<setUpEditor> },
            { "fieldEditorForView:", imp<fieldEditor> },
            { "editWithFrame:inView:editor:delegate:event:", imp<edit> },
            { "selectWithFrame:inView:editor:delegate:start:length:", imp<select> },
            { "endEditing:", imp<endEditing> },
        });
    }
};
BRINDLE_RECORD(NSTextFieldCell, Editing)

}
