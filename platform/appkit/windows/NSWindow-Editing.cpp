// SPDX-License-Identifier: Apache-2.0
#include "NSWindowPrivate.h"
#include "appkit/NSTextView.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"

namespace brindle {

/// What a window lends to the fields in it: an editor, and what takes changes back.
template <> struct NSWindow::Methods<struct Editing> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static Ref<NSText> sharedEditor(NSWindow& self, bool create)
    {
        Ref<NSObject>& editor = of(self).fieldEditor;
        if (!editor && create) {
            const Ref<NSTextView> made = make<NSTextView>();
            made->setFieldEditor(true);
            made->setRichText(false);
            made->setDrawsBackground(false);
            made->setAllowsUndo(true);
            editor = made;
        }
        return cast<NSText>(editor);
    }
    static Ref<NSText> fieldEditor(NSWindow& self, bool create, NSObject* client)
    {
        const Ref<NSObject> delegate = self.delegate();
        constexpr SEL asks = selector<"windowWillReturnFieldEditor:toObject:">;
        if (delegate && delegate->respondsToSelector(asks)) {
            const auto own = delegate->send<"windowWillReturnFieldEditor:toObject:", Ref<NSObject>>(
                &self, client);
            if (own && own->isKindOfClass(NSText::cls()))
                return cast<NSText>(own);
        }
        return sharedEditor(self, create);
    }
    static void endEditingFor(NSWindow& self, NSObject* client)
    {
        const Ref<NSWindow> alive(&self);
        const Ref<NSResponder> first = self.firstResponder();
        if (!first->isKindOfClass(NSText::cls()) || !cast<NSText>(first)->isFieldEditor())
            return;
        const Ref<NSText> editor = cast<NSText>(first);
        if (client && editor->delegate() != client)
            return;
        const Ref<NSObject> edited = editor->delegate();
        if (self.makeFirstResponder(nullptr) || self.firstResponder() != first
            || editor->delegate() != edited)
            return;
        editor->setDelegate(nullptr); // it would go on refusing
        self.makeFirstResponder(nullptr);
    }

    static Ref<NSUndoManager> undoManager(NSWindow& self)
    {
        const Ref<NSObject> delegate = self.delegate();
        if (delegate && delegate->respondsToSelector(selector<"windowWillReturnUndoManager:">)) {
            if (auto own
                = delegate->send<"windowWillReturnUndoManager:", Ref<NSUndoManager>>(&self))
                return own;
        }
        Ref<NSObject>& manager = of(self).undoManager;
        if (!manager)
            manager = make<NSUndoManager>();
        return cast<NSUndoManager>(manager);
    }
    static Ref<NSUndoManager> managerInUse(NSWindow& self)
    {
        return self.firstResponder()->undoManager();
    }
    static void undo(NSWindow& self, NSObject*)
    {
        const Ref<NSUndoManager> manager = managerInUse(self);
        if (maybe(manager)->canUndo())
            manager->undo();
    }
    static void redo(NSWindow& self, NSObject*)
    {
        const Ref<NSUndoManager> manager = managerInUse(self);
        if (maybe(manager)->canRedo())
            manager->redo();
    }
    static bool validate(NSWindow& self, NSObject* item)
    {
        const SEL action = maybe(item)->send<"action", SEL>();
        if (action == selector<"undo:">)
            return maybe(managerInUse(self))->canUndo();
        return action != selector<"redo:"> || maybe(managerInUse(self))->canRedo();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "fieldEditor:forObject:", imp<fieldEditor> },
            { "endEditingFor:", imp<endEditingFor> },
            { "undoManager", imp<undoManager> },
            { "undo:", imp<undo> },
            { "redo:", imp<redo> },
            { "validateMenuItem:", imp<validate> },
            { "validateUserInterfaceItem:", imp<validate> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Editing)

}
