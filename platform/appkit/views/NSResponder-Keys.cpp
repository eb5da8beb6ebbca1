// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSResponder.h"
#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "runtime/Selector.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Binding {
        unichar character;
        NSEventModifierFlags flags; // of shift, control, option and command
        const char* command;
    };

    constexpr NSEventModifierFlags kShift = NSShiftKeyMask;
    constexpr NSEventModifierFlags kCommand = NSCommandKeyMask;
    constexpr NSEventModifierFlags kOption = NSAlternateKeyMask;
    constexpr NSEventModifierFlags kControl = NSControlKeyMask;
    constexpr NSEventModifierFlags kHeld
        = NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;

    constexpr Binding kBindings[] = {
        { NSLeftArrowFunctionKey, 0, "moveLeft:" },
        { NSLeftArrowFunctionKey, kShift, "moveLeftAndModifySelection:" },
        { NSLeftArrowFunctionKey, kCommand, "moveWordLeft:" },
        { NSLeftArrowFunctionKey, kCommand | kShift, "moveWordLeftAndModifySelection:" },
        { NSRightArrowFunctionKey, 0, "moveRight:" },
        { NSRightArrowFunctionKey, kShift, "moveRightAndModifySelection:" },
        { NSRightArrowFunctionKey, kCommand, "moveWordRight:" },
        { NSRightArrowFunctionKey, kCommand | kShift, "moveWordRightAndModifySelection:" },
        { NSUpArrowFunctionKey, 0, "moveUp:" },
        { NSUpArrowFunctionKey, kShift, "moveUpAndModifySelection:" },
        { NSDownArrowFunctionKey, 0, "moveDown:" },
        { NSDownArrowFunctionKey, kShift, "moveDownAndModifySelection:" },
        { NSUpArrowFunctionKey, kCommand, "moveParagraphBackward:" },
        { NSUpArrowFunctionKey, kCommand | kShift, "moveParagraphBackwardAndModifySelection:" },
        { NSDownArrowFunctionKey, kCommand, "moveParagraphForward:" },
        { NSDownArrowFunctionKey, kCommand | kShift, "moveParagraphForwardAndModifySelection:" },
        { NSLeftArrowFunctionKey, kOption, "moveWordLeft:" },
        { NSLeftArrowFunctionKey, kOption | kShift, "moveWordLeftAndModifySelection:" },
        { NSRightArrowFunctionKey, kOption, "moveWordRight:" },
        { NSRightArrowFunctionKey, kOption | kShift, "moveWordRightAndModifySelection:" },
        { NSHomeFunctionKey, 0, "moveToBeginningOfLine:" },
        { NSHomeFunctionKey, kShift, "moveToBeginningOfLineAndModifySelection:" },
        { NSHomeFunctionKey, kCommand, "moveToBeginningOfDocument:" },
        { NSHomeFunctionKey, kCommand | kShift, "moveToBeginningOfDocumentAndModifySelection:" },
        { NSEndFunctionKey, 0, "moveToEndOfLine:" },
        { NSEndFunctionKey, kShift, "moveToEndOfLineAndModifySelection:" },
        { NSEndFunctionKey, kCommand, "moveToEndOfDocument:" },
        { NSEndFunctionKey, kCommand | kShift, "moveToEndOfDocumentAndModifySelection:" },
        { NSPageUpFunctionKey, 0, "pageUp:" },
        { NSPageUpFunctionKey, kShift, "pageUpAndModifySelection:" },
        { NSPageDownFunctionKey, 0, "pageDown:" },
        { NSPageDownFunctionKey, kShift, "pageDownAndModifySelection:" },
        { NSDeleteFunctionKey, 0, "deleteForward:" },
        { NSDeleteFunctionKey, kCommand, "deleteWordForward:" },
        { 0x08, 0, "deleteBackward:" },
        { 0x08, kShift, "deleteBackward:" },
        { 0x08, kCommand, "deleteWordBackward:" },
        { 0x7F, 0, "deleteBackward:" },
        { 0x7F, kShift, "deleteBackward:" },
        { 0x7F, kCommand, "deleteWordBackward:" },
        { 0x0D, 0, "insertNewline:" },
        { 0x0A, 0, "insertNewline:" },
        { 0x03, 0, "insertNewline:" },
        { 0x0D, kShift, "insertNewline:" },
        { 0x09, 0, "insertTab:" },
        { 0x09, kShift, "insertBacktab:" },
        { 0x19, 0, "insertBacktab:" },
        { 0x19, kShift, "insertBacktab:" },
        { 0x7F, kOption, "deleteWordBackward:" },
        { 0x08, kOption, "deleteWordBackward:" },
        { NSDeleteFunctionKey, kOption, "deleteWordForward:" },
        { NSDeleteFunctionKey, kShift, "cut:" },
        { NSInsertFunctionKey, kShift, "paste:" },
        { NSInsertFunctionKey, kCommand, "copy:" },
        { 0x0D, kOption, "insertNewlineIgnoringFieldEditor:" },
        { 0x09, kOption, "insertTabIgnoringFieldEditor:" },
        { 'a', kControl, "moveToBeginningOfParagraph:" },
        { 'b', kControl, "moveBackward:" },
        { 'd', kControl, "deleteForward:" },
        { 'e', kControl, "moveToEndOfParagraph:" },
        { 'f', kControl, "moveForward:" },
        { 'h', kControl, "deleteBackward:" },
        { 'k', kControl, "deleteToEndOfParagraph:" },
        { 'n', kControl, "moveDown:" },
        { 'p', kControl, "moveUp:" },
        { 't', kControl, "transpose:" },
        { 'y', kControl, "yank:" },
        { 0x1B, 0, "cancelOperation:" },
        { 'a', kCommand, "selectAll:" },
        { 'c', kCommand, "copy:" },
        { 'x', kCommand, "cut:" },
        { 'v', kCommand, "paste:" },
        { 'y', kCommand, "redo:" },
        { 'z', kCommand, "undo:" },
        { 'Z', kCommand | kShift, "redo:" },
        { 'z', kCommand | kShift, "redo:" },
    };

    const char* commandFor(unichar character, NSEventModifierFlags flags)
    {
        for (const Binding& binding : kBindings) {
            if (binding.character == character && binding.flags == (flags & kHeld))
                return binding.command;
        }
        return nullptr;
    }

    bool typesText(unichar character, NSEventModifierFlags flags)
    {
        const bool isFunctionKey = character >= 0xF700 && character <= 0xF8FF;
        return character >= 0x20 && character != 0x7F && !isFunctionKey
            && !(flags & (NSCommandKeyMask | NSControlKeyMask));
    }

}

template <> struct NSResponder::Methods<struct KeyBindings> {

    static void interpret(NSResponder& self, NSEvent& event)
    {
        const Ref<NSString> typed = event.characters();
        const Ref<NSString> plain = event.charactersIgnoringModifiers();
        const NSEventModifierFlags flags = event.modifierFlags();
        const unichar key = maybe(plain)->length() ? plain->characterAtIndex(0) : unichar {};
        if (const char* command = commandFor(key, flags))
            self.doCommandBySelector(sel_registerName(command));
        else if (maybe(typed)->length() && typesText(typed->characterAtIndex(0), flags))
            self.insertText(typed.get());
        else if (maybe(typed)->length())
            self.doCommandBySelector(selector<"noop:">);
    }

    static void interpretKeyEvents(NSResponder& self, NSArray* events)
    {
        for (NSEvent* event : each<NSEvent>(Ref<NSArray>(events)))
            interpret(self, *event);
    }

    static void table(Builder& t)
    {
        t.methods({ { "interpretKeyEvents:", imp<interpretKeyEvents> } });
    }
};
BRINDLE_RECORD(NSResponder, KeyBindings)

}
