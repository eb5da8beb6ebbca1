// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSTextViewPrivate.h"
#include "TextPlacesPrivate.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSWindow.h"
#include "appkit/views/FlagScopePrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSBeep.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Posts one of the editor's notifications; the delegate hears of it first.
    void notify(NSTextView& view, NSString* name, SEL told, NSDictionary* facts = nullptr)
    {
        const Ref<NSNotification> notification
            = NSNotification::cls().notificationWithName_object_userInfo(name, &view, facts);
        const Ref<NSObject> delegate = view.delegate();
        if (delegate && delegate->respondsToSelector(told))
            delegate->performSelector_withObject(told, notification.get());
        NSNotificationCenter::cls().defaultCenter()->postNotification(notification.get());
    }

    template <Text S, class... A> bool agrees(NSTextView& view, A... arguments)
    {
        const Ref<NSObject> delegate = view.delegate();
        return !delegate || !delegate->respondsToSelector(selector<S>)
            || delegate->send<S, bool>(arguments...);
    }

    /// Answers the text as it is kept: that of a secret is not what is shown.
    Ref<NSAttributedString> kept(NSTextView& view, NSRange range)
    {
        return TextViewAccess::of(view).storage->attributedSubstringFromRange(range);
    }

}

NSRange TextViewAccess::selection(NSTextView& view)
{
    const TextViewState& s = of(view);
    const NSUInteger start = std::min(s.anchor, s.head);
    return NSMakeRange(start, std::max(s.anchor, s.head) - start);
}

NSRange TextViewAccess::clamped(NSTextView& view, NSRange range)
{
    const Ref<NSString> all = text(view);
    return places::wholeCharacters(*all, range);
}

namespace {

    /// What is typed beside a picture is no picture.
    Ref<NSDictionary> attributesOfLetters(Ref<NSDictionary> attributes)
    {
        if (!attributes->objectForKey(NSAttachmentAttributeName))
            return attributes;
        const auto rest = cast<NSMutableDictionary>(attributes->mutableCopy());
        rest->removeObjectForKey(NSAttachmentAttributeName);
        return Ref<NSDictionary>(rest);
    }

}

Ref<NSDictionary> TextViewAccess::attributesAtCaret(NSTextView& view)
{
    const TextViewState& s = of(view);
    if (s.typingAttributes)
        return s.typingAttributes;
    const NSUInteger length = s.storage->length();
    if (!s.rich || !length)
        return s.plainAttributes;
    const NSRange range = selection(view);
    const NSUInteger place = range.length || !range.location ? range.location : range.location - 1;
    return attributesOfLetters(
        s.storage->attributesAtIndex_effectiveRange(std::min(place, length - 1), nullptr));
}

void TextViewAccess::put(NSTextView& view, NSRange range, NSAttributedString& text)
{
    TextViewState& s = of(view);
    if (s.secretText) {
        s.secretText->replaceCharactersInRange_withString(range, text.string().get());
        const Ref<NSString> shown = places::bullets(*s.secretText);
        const auto all = alloc<NSAttributedString>()->initWithString_attributes(
            shown.get(), s.plainAttributes.get());
        s.storage->replaceCharactersInRange_withAttributedString(
            NSMakeRange(0, s.storage->length()), all.get());
    } else {
        s.storage->replaceCharactersInRange_withAttributedString(range, &text);
    }
    s.anchor = s.head = range.location + text.length();
    s.affinity = NSSelectionAffinityDownstream;
    s.goal.reset();
    relayout(view);
}

namespace {

    void registerUndo(NSTextView& view, const std::shared_ptr<TypingRun>& run);

    // What takes a change back is a change like any other, and so can be made again.
    void takeBack(NSTextView& view, const TypingRun& run)
    {
        const NSUInteger length = TextViewAccess::length(view);
        NSRange range = run.inserted;
        range.location = std::min(range.location, length);
        range.length = std::min(range.length, length - range.location);
        const Ref<NSAttributedString> text = run.replaced;
        if (!view.shouldChangeTextInRange_replacementString(range, text->string().get()))
            return;
        view.breakUndoCoalescing();
        const auto back = std::make_shared<TypingRun>();
        back->inserted = NSMakeRange(range.location, text->length());
        back->replaced = kept(view, range);
        registerUndo(view, back);
        TextViewAccess::put(view, range, *text);
        TextViewAccess::select(
            view, range.location + text->length(), range.location + text->length());
        view.didChangeText();
        view.scrollRangeToVisible(view.selectedRange());
    }

    void registerUndo(NSTextView& view, const std::shared_ptr<TypingRun>& run)
    {
        const Ref<NSUndoManager> manager = view.undoManager();
        if (!manager || !view.allowsUndo() || TextViewAccess::of(view).secretText)
            return;
        manager->registerUndoWithTarget_handler(
            &view, [run](NSObject* target) { takeBack(*static_cast<NSTextView*>(target), *run); });
        if (!manager->isUndoing() && !manager->isRedoing())
            manager->setActionName("Typing"_ns);
    }

    bool continues(const TextViewState& s, NSRange range)
    {
        return s.typing && !range.length && range.location == NSMaxRange(s.typing->inserted);
    }

}

bool TextViewAccess::replace(NSTextView& view, NSRange range, NSAttributedString* text, bool typing)
{
    const Ref<NSTextView> alive(&view);
    const Ref<NSAttributedString> fresh(text);
    range = clamped(view, range);
    if (!range.length && !fresh->length())
        return true;
    if (!view.shouldChangeTextInRange_replacementString(range, fresh->string().get()))
        return false;
    range = clamped(view, range); // whoever was asked may have changed the text
    TextViewState& s = of(view);
    if (typing && continues(s, range)) {
        s.typing->inserted.length += fresh->length();
    } else {
        const auto run = std::make_shared<TypingRun>();
        run->inserted = NSMakeRange(range.location, fresh->length());
        run->replaced = kept(view, range);
        registerUndo(view, run);
        s.typing = typing ? run : nullptr;
    }
    const std::shared_ptr<TypingRun> run = s.typing;
    const Ref<NSDictionary> typingAttributes = s.typingAttributes;
    put(view, range, *fresh);
    select(view, s.head, s.head);
    s.typing = run; // a caret that was only pushed along ends no typing
    s.typingAttributes = typingAttributes;
    view.didChangeText();
    view.scrollRangeToVisible(view.selectedRange());
    return true;
}

bool TextViewAccess::replace(NSTextView& view, NSRange range, NSString* text, bool typing)
{
    const auto fresh = alloc<NSAttributedString>()->initWithString_attributes(
        text, attributesAtCaret(view).get());
    return replace(view, range, fresh.get(), typing);
}

namespace {

    /// Asks the delegate, which may raise, whether editing may end. Until it has answered it is not asked again.
    bool mayEnd(NSTextView& view)
    {
        const FlagScope asking(TextViewAccess::of(view).ending);
        return agrees<"textShouldEndEditing:", NSText*>(view, &view);
    }

}

void TextViewAccess::endEditing(NSTextView& view, NSTextMovement movement)
{
    const Ref<NSTextView> alive(&view);
    TextViewState& s = of(view);
    if (s.ending)
        return;
    if (!mayEnd(view))
        return NSBeep();
    s.editing = false;
    const Ref<NSNumber> number = NSNumber::cls().numberWithInteger(movement);
    const Ref<NSDictionary> facts = makeDictionary({ { "NSTextMovement"_ns, number.get() } });
    notify(view, NSTextDidEndEditingNotification, selector<"textDidEndEditing:">, facts.get());
}

template <> struct NSTextView::Methods<struct Editing> {

    static TextViewState& of(NSTextView& self) { return TextViewAccess::of(self); }

    // ---- asking and telling

    static bool shouldChange(NSTextView& self, NSRange range, NSString* text)
    {
        TextViewState& s = of(self);
        if (!s.editable)
            return false;
        if (!s.editing) {
            if (!agrees<"textShouldBeginEditing:", NSText*>(self, &self))
                return false;
            s.editing = true;
            notify(self, NSTextDidBeginEditingNotification, selector<"textDidBeginEditing:">);
        }
        return agrees<"textView:shouldChangeTextInRange:replacementString:", NSTextView*, NSRange,
            NSString*>(self, &self, range, text);
    }
    static void didChange(NSTextView& self)
    {
        const Ref<NSTextView> alive(&self);
        notify(self, NSTextDidChangeNotification, selector<"textDidChange:">);
        self.updateInsertionPointStateAndRestartTimer(true);
    }
    static void breakCoalescing(NSTextView& self) { of(self).typing = nullptr; }
    static Ref<NSUndoManager> undoManager(NSTextView& self)
    {
        const Ref<NSObject> delegate = self.delegate();
        if (delegate && delegate->respondsToSelector(selector<"undoManagerForTextView:">)) {
            if (auto own = delegate->send<"undoManagerForTextView:", Ref<NSUndoManager>>(&self))
                return own;
        }
        return super<NSTextView, "undoManager", Ref<NSUndoManager>>(self);
    }
    static Ref<NSDictionary> typingAttributes(NSTextView& self)
    {
        return TextViewAccess::attributesAtCaret(self);
    }
    static void setTypingAttributes(NSTextView& self, NSDictionary* attributes)
    {
        of(self).typingAttributes
            = attributes ? cast<NSDictionary>(attributes->copy()) : Ref<NSDictionary>();
    }

    // ---- inserting

    static NSRange target(NSTextView& self, NSRange range)
    {
        const NSRange marked = of(self).marked;
        if (range.location != NSUInteger { NSNotFound })
            return range;
        return marked.location != NSUInteger { NSNotFound } ? marked
                                                            : TextViewAccess::selection(self);
    }
    static Ref<NSAttributedString> taken(NSTextView& self, NSObject* text)
    {
        if (text && text->isKindOfClass(NSAttributedString::cls())) {
            if (of(self).rich)
                return static_cast<NSAttributedString*>(text);
            return taken(self, static_cast<NSAttributedString*>(text)->string().get());
        }
        if (!text || !text->isKindOfClass(NSString::cls()))
            return nullptr;
        const Ref<NSString> clean
            = places::cleaned(*static_cast<NSString*>(text), of(self).singleLine);
        return alloc<NSAttributedString>()->initWithString_attributes(
            clean.get(), TextViewAccess::attributesAtCaret(self).get());
    }
    static void insertTextInRange(NSTextView& self, NSObject* text, NSRange range)
    {
        const Ref<NSAttributedString> fresh = taken(self, text);
        if (!fresh)
            return;
        const NSRange place = target(self, range);
        of(self).marked = { NSNotFound, 0 };
        if (!of(self).editable)
            return NSBeep();
        TextViewAccess::replace(self, place, fresh.get(), true);
    }
    static void insertText(NSTextView& self, NSObject* text)
    {
        self.insertText_replacementRange(text, NSMakeRange(NSNotFound, 0));
    }

    // ---- text being composed

    static void setMarked(NSTextView& self, NSObject* text, NSRange selected, NSRange range)
    {
        const Ref<NSAttributedString> fresh = taken(self, text);
        if (!fresh || !of(self).editable)
            return;
        const NSRange place = TextViewAccess::clamped(self, target(self, range));
        if (!TextViewAccess::replace(self, place, fresh.get(), true))
            return;
        const NSUInteger length = fresh->length();
        of(self).marked = length ? NSMakeRange(place.location, length) : NSRange { NSNotFound, 0 };
        const NSUInteger caret = place.location + std::min(NSMaxRange(selected), length);
        const auto run = of(self).typing;
        TextViewAccess::select(self, caret, caret);
        of(self).typing = run;
        self.setNeedsDisplay(true);
    }
    static void unmark(NSTextView& self)
    {
        of(self).marked = { NSNotFound, 0 };
        self.setNeedsDisplay(true);
    }
    static bool hasMarked(NSTextView& self)
    {
        return of(self).marked.location != NSUInteger { NSNotFound };
    }
    static NSRange marked(NSTextView& self) { return of(self).marked; }

    // ---- the keyboard

    static bool acceptsFirstResponder(NSTextView& self) { return of(self).selectable; }
    static bool becomeFirstResponder(NSTextView& self)
    {
        of(self).isFirstResponder = true;
        self.setNeedsDisplay(true);
        TextViewAccess::restartCaret(self);
        return true;
    }
    static bool resignFirstResponder(NSTextView& self)
    {
        const Ref<NSTextView> alive(&self);
        TextViewState& s = of(self);
        if ((s.editing || s.fieldEditor) && self.delegate() && !s.ending) {
            if (!mayEnd(self))
                return false;
        }
        s.isFirstResponder = false;
        self.unmarkText();
        self.breakUndoCoalescing();
        TextViewAccess::stopCaret(self);
        self.setNeedsDisplay(true);
        if (std::exchange(s.editing, false) || (s.fieldEditor && self.delegate())) {
            const auto number = NSNumber::cls().numberWithInteger(NSIllegalTextMovement);
            const auto facts = makeDictionary({ { "NSTextMovement"_ns, number.get() } });
            notify(
                self, NSTextDidEndEditingNotification, selector<"textDidEndEditing:">, facts.get());
        }
        return true;
    }
    static void keyDown(NSTextView& self, NSEvent* event)
    {
        const Ref<NSTextView> alive(&self);
        if (!event || !of(self).selectable)
            return super<NSTextView, "keyDown:">(self, event);
        self.interpretKeyEvents(NSArray::cls().arrayWithObject(event).get());
    }
    static void doCommand(NSTextView& self, SEL command)
    {
        const Ref<NSTextView> alive(&self);
        const Ref<NSObject> delegate = self.delegate();
        constexpr SEL asks = selector<"textView:doCommandBySelector:">;
        if (delegate && delegate->respondsToSelector(asks)
            && delegate->send<"textView:doCommandBySelector:", bool>(&self, command))
            return;
        if (self.respondsToSelector(command))
            self.performSelector_withObject(command, &self);
        else if (command != selector<"noop:">)
            maybe(self.nextResponder())->doCommandBySelector(command);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "shouldChangeTextInRange:replacementString:", imp<shouldChange> },
            { "didChangeText", imp<didChange> },
            { "breakUndoCoalescing", imp<breakCoalescing> },
            { "undoManager", imp<undoManager> },
            { "typingAttributes", imp<typingAttributes> },
            { "setTypingAttributes:", imp<setTypingAttributes> },
            { "insertText:replacementRange:", imp<insertTextInRange> },
            { "insertText:", imp<insertText> },
            { "setMarkedText:selectedRange:replacementRange:", imp<setMarked> },
            { "unmarkText", imp<unmark> },
            { "hasMarkedText", imp<hasMarked> },
            { "markedRange", imp<marked> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "resignFirstResponder", imp<resignFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "doCommandBySelector:", imp<doCommand> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Editing)

}
