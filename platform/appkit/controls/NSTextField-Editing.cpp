// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextField.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/NSText.h"
#include "appkit/NSWindow.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSFormatter.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextField::Methods<struct Editing> {

    // ---- beginning

    static Ref<NSTextFieldCell> fieldCell(NSTextField& self)
    {
        const Ref<NSCell> cell = self.cell();
        return cell && cell->isKindOfClass(NSTextFieldCell::cls()) ? cast<NSTextFieldCell>(cell)
                                                                   : nullptr;
    }
    static bool acceptsFirstResponder(NSTextField& self)
    {
        return self.isSelectable() && super<NSTextField, "acceptsFirstResponder", bool>(self);
    }
    static bool canBecomeKeyView(NSTextField& self)
    {
        return self.isEditable() && super<NSTextField, "canBecomeKeyView", bool>(self);
    }
    static bool becomeFirstResponder(NSTextField& self)
    {
        const Ref<NSTextField> alive(&self);
        const Ref<NSWindow> window = self.window();
        const Ref<NSTextFieldCell> cell = fieldCell(self);
        if (!window || !cell || !self.isSelectable() || !self.isEnabled())
            return super<NSTextField, "becomeFirstResponder", bool>(self);
        Ref<NSText> editor = cell->fieldEditorForView(&self);
        if (!editor)
            editor = window->fieldEditor_forObject(true, &self);
        if (!editor)
            return false;
        self.original_ = self.objectValue();
        self.hasTyped_ = self.hasChanged_ = false;
        self.editor_ = editor;
        const auto length = static_cast<NSInteger>(self.stringValue()->length());
        cell->selectWithFrame_inView_editor_delegate_start_length(
            self.bounds(), &self, editor.get(), &self, 0, length);
        self.setNeedsDisplay(true);
        return true;
    }
    static void selectText(NSTextField& self, NSObject*)
    {
        const Ref<NSWindow> window = self.window();
        if (!window || !self.isSelectable() || !self.isEnabled())
            return;
        if (self.editor_)
            self.editor_->selectAll(&self);
        else
            window->makeFirstResponder(&self);
    }
    // The press that made the field first responder also places the caret.
    static void mouseDown(NSTextField& self, NSEvent* press)
    {
        const Ref<NSTextField> alive(&self);
        if (const Ref<NSText> editor = self.editor_)
            editor->mouseDown(press);
        else
            super<NSControl, "mouseDown:">(static_cast<NSControl&>(self), press);
    }
    static Ref<NSText> currentEditor(NSTextField& self) { return self.editor_; }
    // A field without a menu of its own has the editor's, which can work only once it is there.
    static Ref<NSMenu> menuForEvent(NSTextField& self, NSEvent* event)
    {
        const Ref<NSMenu> own = super<NSTextField, "menuForEvent:", Ref<NSMenu>>(self, event);
        const Ref<NSWindow> window = self.window();
        if (own || !window || !self.isSelectable() || !self.isEnabled())
            return own;
        if (!window->isKeyWindow())
            window->makeKeyWindow(); // or the menu would act on somebody else's text
        if (!self.editor_)
            window->makeFirstResponder(&self);
        return maybe(self.editor_)->menuForEvent(event);
    }

    // ---- taking over

    static void validateEditing(NSTextField& self)
    {
        if (!self.editor_ || !self.hasTyped_)
            return;
        self.hasTyped_ = false;
        const Ref<NSString> text = self.editor_->string();
        maybe(self.cell())->setStringValue(text.get());
    }
    static void detach(NSTextField& self)
    {
        const Ref<NSText> editor = std::exchange(self.editor_, nullptr);
        self.hasTyped_ = self.hasChanged_ = false;
        if (const Ref<NSTextFieldCell> cell = fieldCell(self))
            cell->endEditing(editor.get());
        self.setNeedsDisplay(true);
    }
    static bool abortEditing(NSTextField& self)
    {
        if (!self.editor_)
            return false;
        detach(self);
        return true;
    }
    template <Text S, class R> static R read(NSTextField& self)
    {
        self.validateEditing();
        return super<NSTextField, S, R>(self);
    }
    // A value that is set while somebody types there replaces what was typed.
    template <Text S, class T> static void write(NSTextField& self, T value)
    {
        super<NSTextField, S>(self, value);
        self.hasTyped_ = false;
        const Ref<NSText> editor = self.editor_;
        if (!editor)
            return;
        const Ref<NSString> text = maybe(self.cell())->stringValue();
        editor->setString(text.get());
        editor->setSelectedRange(NSMakeRange(text->length(), 0));
    }

    // ---- what the editor asks and tells

    template <Text S, class... A> static bool agrees(NSTextField& self, A... arguments)
    {
        const Ref<NSObject> delegate = self.delegate();
        return !delegate || !delegate->respondsToSelector(selector<S>)
            || delegate->send<S, bool>(arguments...);
    }
    static bool shouldBegin(NSTextField& self, NSText* editor)
    {
        return agrees<"control:textShouldBeginEditing:", NSControl*, NSText*>(self, &self, editor);
    }
    /// Answers whether what was typed can be read, or the delegate takes it all the same.
    static bool isReadable(NSTextField& self, NSText& editor)
    {
        const Ref<NSFormatter> formatter = self.formatter();
        if (!formatter)
            return true;
        const Ref<NSString> text = editor.string();
        Ref<NSObject> value;
        Ref<NSString> error;
        if (formatter->getObjectValue_forString_errorDescription(&value, text.get(), &error))
            return agrees<"control:isValidObject:", NSControl*, NSObject*>(
                self, &self, value.get());
        const Ref<NSObject> delegate = self.delegate();
        constexpr SEL asks = selector<"control:didFailToFormatString:errorDescription:">;
        return delegate && delegate->respondsToSelector(asks)
            && delegate->send<"control:didFailToFormatString:errorDescription:", bool>(
                static_cast<NSControl*>(&self), text.get(), error.get());
    }
    static bool shouldEnd(NSTextField& self, NSText* editor)
    {
        if (editor && self.hasChanged_ && !isReadable(self, *editor))
            return false;
        return agrees<"control:textShouldEndEditing:", NSControl*, NSText*>(self, &self, editor);
    }
    static void post(
        NSTextField& self, NSString* name, SEL told, NSText* editor, NSNumber* movement = nullptr)
    {
        const Ref<NSMutableDictionary> facts = make<NSMutableDictionary>();
        if (editor)
            facts->setObject_forKey(editor, "NSFieldEditor"_ns);
        if (movement)
            facts->setObject_forKey(movement, "NSTextMovement"_ns);
        const Ref<NSNotification> notification
            = NSNotification::cls().notificationWithName_object_userInfo(name, &self, facts.get());
        const Ref<NSObject> delegate = self.delegate();
        if (delegate && delegate->respondsToSelector(told))
            delegate->performSelector_withObject(told, notification.get());
        NSNotificationCenter::cls().defaultCenter()->postNotification(notification.get());
    }
    static void didBegin(NSTextField& self, NSNotification*)
    {
        post(self, NSControlTextDidBeginEditingNotification,
            selector<"controlTextDidBeginEditing:">, self.editor_.get());
    }
    static void didChange(NSTextField& self, NSNotification*)
    {
        const Ref<NSTextField> alive(&self);
        self.hasTyped_ = self.hasChanged_ = true;
        post(self, NSControlTextDidChangeNotification, selector<"controlTextDidChange:">,
            self.editor_.get());
        if (self.isContinuous())
            self.sendAction_to(self.action(), self.target().get());
    }
    static void didEnd(NSTextField& self, NSNotification* notification)
    {
        const Ref<NSTextField> alive(&self);
        const Ref<NSText> editor = self.editor_;
        const Ref<NSObject> number
            = maybe(maybe(notification)->userInfo())->objectForKey("NSTextMovement"_ns);
        const Ref<NSNumber> movement = number && number->isKindOfClass(NSNumber::cls())
            ? cast<NSNumber>(number)
            : NSNumber::cls().numberWithInteger(NSIllegalTextMovement);
        self.validateEditing();
        detach(self);
        post(self, NSControlTextDidEndEditingNotification, selector<"controlTextDidEndEditing:">,
            editor.get(), movement.get());
        goOn(self, static_cast<NSTextMovement>(movement->integerValue()));
    }
    static void goOn(NSTextField& self, NSTextMovement movement)
    {
        if (movement == NSReturnTextMovement && self.action().value)
            self.sendAction_to(self.action(), self.target().get());
        const Ref<NSWindow> window = self.window();
        if (!window || window->firstResponder() != window.get())
            return; // somebody has moved the focus already
        Ref<NSView> next;
        if (movement == NSTabTextMovement)
            next = self.nextValidKeyView();
        else if (movement == NSBacktabTextMovement)
            next = self.previousValidKeyView();
        const bool stays = movement == NSReturnTextMovement || movement == NSTabTextMovement
            || movement == NSBacktabTextMovement;
        if (next && next != &self)
            window->makeFirstResponder(next.get());
        else if (stays)
            self.selectText(&self);
        if (movement == NSReturnTextMovement && !self.action().value)
            pressDefaultButton(*window);
    }
    /// Return in a field that does nothing itself is for the button that waits for it.
    static void pressDefaultButton(NSWindow& window)
    {
        const Ref<NSEvent> event = maybe(sharedApplicationOrNil())->currentEvent();
        if (maybe(event)->type() == NSKeyDown)
            window.performKeyEquivalent(event.get());
    }
    static bool command(NSTextField& self, NSText* editor, SEL command)
    {
        const Ref<NSObject> delegate = self.delegate();
        constexpr SEL asks = selector<"control:textView:doCommandBySelector:">;
        return delegate && delegate->respondsToSelector(asks)
            && delegate->send<"control:textView:doCommandBySelector:", bool>(
                static_cast<NSControl*>(&self), editor, command);
    }
    static bool cancel(NSTextField& self, NSText* editor)
    {
        if (!editor || !self.hasChanged_)
            return false;
        const Ref<NSObject> original = self.original_;
        if (const Ref<NSCell> cell = self.cell())
            cell->setObjectValue(original.get());
        editor->setString(maybe(self.cell())->stringValue().get());
        editor->selectAll(&self);
        post(self, NSControlTextDidChangeNotification, selector<"controlTextDidChange:">, editor);
        self.hasTyped_ = self.hasChanged_ = false;
        return true;
    }

    // ---- places

    static void viewWillMoveToWindow(NSTextField& self, NSWindow* window)
    {
        if (self.editor_ && self.window() != window)
            self.abortEditing();
        super<NSTextField, "viewWillMoveToWindow:">(self, window);
    }
    static void setFrameSize(NSTextField& self, NSSize size)
    {
        super<NSTextField, "setFrameSize:">(self, size);
        const Ref<NSText> editor = self.editor_;
        const Ref<NSView> clip = maybe(editor)->superview();
        if (clip && clip->superview() == &self)
            clip->setFrame(maybe(self.cell())->drawingRectForBounds(self.bounds()));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "canBecomeKeyView", imp<canBecomeKeyView> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "selectText:", imp<selectText> },
            { "mouseDown:", imp<mouseDown> },
            { "currentEditor", imp<currentEditor> },
            { "menuForEvent:", imp<menuForEvent> },
            { "validateEditing", imp<validateEditing> },
            { "abortEditing", imp<abortEditing> },
            { "textShouldBeginEditing:", imp<shouldBegin> },
            { "textShouldEndEditing:", imp<shouldEnd> },
            { "textDidBeginEditing:", imp<didBegin> },
            { "textDidChange:", imp<didChange> },
            { "textDidEndEditing:", imp<didEnd> },
            { "textView:doCommandBySelector:", imp<command> },
            { "cancelEditing:", imp<cancel> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
            { "setFrameSize:", imp<setFrameSize> },
        });
        t.methods({
            { "objectValue", imp<read<"objectValue", Ref<NSObject>>> },
            { "stringValue", imp<read<"stringValue", Ref<NSString>>> },
            { "attributedStringValue",
                imp<read<"attributedStringValue", Ref<NSAttributedString>>> },
            { "intValue", imp<read<"intValue", int>> },
            { "integerValue", imp<read<"integerValue", NSInteger>> },
            { "floatValue", imp<read<"floatValue", float>> },
            { "doubleValue", imp<read<"doubleValue", double>> },
            { "setObjectValue:", imp<write<"setObjectValue:", NSObject*>> },
            { "setStringValue:", imp<write<"setStringValue:", NSString*>> },
            { "setAttributedStringValue:",
                imp<write<"setAttributedStringValue:", NSAttributedString*>> },
            { "setIntValue:", imp<write<"setIntValue:", int>> },
            { "setIntegerValue:", imp<write<"setIntegerValue:", NSInteger>> },
            { "setFloatValue:", imp<write<"setFloatValue:", float>> },
            { "setDoubleValue:", imp<write<"setDoubleValue:", double>> },
        });
    }
};
BRINDLE_RECORD(NSTextField, Editing)

}
