// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSTextViewPrivate.h"
#include "TextPlacesPrivate.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSBeep.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Where a command takes the caret, or how far it deletes.
    enum class Motion {
        forward,
        backward,
        left,
        right,
        wordForward,
        wordBackward,
        wordLeft,
        wordRight,
        up,
        down,
        lineStart,
        lineEnd,
        lineLeft,
        lineRight,
        paragraphStart,
        paragraphEnd,
        paragraphForward,
        paragraphBackward,
        documentStart,
        documentEnd,
        pageUp,
        pageDown,
    };

    /// Answers whether letters at an index run from the right: the next caret stands further left.
    bool runsLeft(NSTextView& view, NSUInteger index)
    {
        const Ref<NSString> text = TextViewAccess::text(view);
        const NSUInteger next = places::nextCharacter(*text, index);
        const NSUInteger first = next > index ? index : places::previousCharacter(*text, index);
        const NSRect here = TextViewAccess::caretRect(view, first);
        const NSRect there = TextViewAccess::caretRect(view, next);
        return NSMinY(here) == NSMinY(there) && NSMinX(there) < NSMinX(here);
    }

    CaretPlace lineEnd(NSTextView& view, CaretPlace place)
    {
        const Ref<NSString> text = TextViewAccess::text(view);
        const NSRange line = TextViewAccess::lineAt(view, place);
        const NSUInteger end = NSMaxRange(line);
        const NSUInteger contents = NSMaxRange(places::paragraphContentsAt(*text, line.location));
        if (contents <= end || !line.length)
            return std::min(contents, end);
        // The end of a line that was wrapped is the start of the next one as well.
        return { end, NSSelectionAffinityUpstream };
    }

    CaretPlace vertical(NSTextView& view, CaretPlace place, CGFloat distance)
    {
        TextViewState& s = TextViewAccess::of(view);
        const NSRect caret = TextViewAccess::caretRect(view, place);
        if (!s.goal)
            s.goal = NSMidX(caret);
        const CGFloat y = distance < 0 ? NSMinY(caret) + distance : NSMaxY(caret) + distance;
        const CGFloat top = NSMinY(TextViewAccess::caretRect(view, 0));
        const NSUInteger length = TextViewAccess::length(view);
        const CGFloat bottom = NSMaxY(TextViewAccess::caretRect(view, length));
        if (y < top)
            return 0;
        if (y > bottom)
            return length;
        return TextViewAccess::placeAt(view, { *s.goal, y });
    }

    CGFloat pageHeight(NSTextView& view)
    {
        const CGFloat line = TextViewAccess::caretRect(view, 0).size.height;
        return std::max(view.visibleRect().size.height - 2 * line, line);
    }

    CaretPlace target(NSTextView& view, Motion motion, CaretPlace place)
    {
        const NSUInteger index = place.index;
        const Ref<NSString> text = TextViewAccess::text(view);
        const bool words = !TextViewAccess::of(view).secretText;
        switch (motion) {
        case Motion::forward:
            return places::nextCharacter(*text, index);
        case Motion::backward:
            return places::previousCharacter(*text, index);
        case Motion::left:
            return target(view, runsLeft(view, index) ? Motion::forward : Motion::backward, index);
        case Motion::right:
            return target(view, runsLeft(view, index) ? Motion::backward : Motion::forward, index);
        case Motion::wordForward:
            return words ? places::wordEnd(*text, index) : text->length();
        case Motion::wordBackward:
            return words ? places::wordStart(*text, index) : NSUInteger { 0 };
        case Motion::wordLeft:
            return target(
                view, runsLeft(view, index) ? Motion::wordForward : Motion::wordBackward, index);
        case Motion::wordRight:
            return target(
                view, runsLeft(view, index) ? Motion::wordBackward : Motion::wordForward, index);
        case Motion::up:
            return vertical(view, place, -1);
        case Motion::down:
            return vertical(view, place, 1);
        case Motion::lineStart:
            return TextViewAccess::lineAt(view, place).location;
        case Motion::lineEnd:
            return lineEnd(view, place);
        case Motion::lineLeft:
            return target(view, runsLeft(view, index) ? Motion::lineEnd : Motion::lineStart, place);
        case Motion::lineRight:
            return target(view, runsLeft(view, index) ? Motion::lineStart : Motion::lineEnd, place);
        case Motion::paragraphStart:
            return places::paragraphContentsAt(*text, index).location;
        case Motion::paragraphEnd:
            return NSMaxRange(places::paragraphContentsAt(*text, index));
        case Motion::paragraphForward: {
            const NSUInteger end = NSMaxRange(places::paragraphContentsAt(*text, index));
            return end > index ? end
                               : NSMaxRange(places::paragraphContentsAt(
                                   *text, places::nextCharacter(*text, index)));
        }
        case Motion::paragraphBackward: {
            const NSUInteger start = places::paragraphContentsAt(*text, index).location;
            return start < index
                ? start
                : places::paragraphContentsAt(*text, places::previousCharacter(*text, index))
                      .location;
        }
        case Motion::documentStart:
            return 0;
        case Motion::documentEnd:
            return text->length();
        case Motion::pageUp:
            return vertical(view, place, -pageHeight(view));
        case Motion::pageDown:
            return vertical(view, place, pageHeight(view));
        }
        return place;
    }

    constexpr bool isVertical(Motion motion)
    {
        return motion == Motion::up || motion == Motion::down || motion == Motion::pageUp
            || motion == Motion::pageDown;
    }

    // A selection collapses to the side that one goes to.
    std::optional<NSUInteger> collapsed(NSTextView& view, Motion motion)
    {
        const NSRange range = TextViewAccess::selection(view);
        if (!range.length)
            return {};
        const NSUInteger end = NSMaxRange(range);
        switch (motion) {
        case Motion::forward:
            return end;
        case Motion::backward:
            return range.location;
        case Motion::left:
            return runsLeft(view, range.location) ? end : range.location;
        case Motion::right:
            return runsLeft(view, range.location) ? range.location : end;
        default:
            return {};
        }
    }

    CaretPlace startFor(NSTextView& view, Motion motion, bool extend)
    {
        const NSRange range = TextViewAccess::selection(view);
        if (extend || !range.length)
            return TextViewAccess::head(view);
        const bool goesBack = motion == Motion::up || motion == Motion::pageUp
            || motion == Motion::wordBackward || motion == Motion::wordLeft
            || motion == Motion::lineStart || motion == Motion::paragraphStart
            || motion == Motion::paragraphBackward;
        return goesBack ? range.location : NSMaxRange(range);
    }

    // What was deleted to a line's or paragraph's end, for `yank:`; one for all editors.
    Ref<NSAttributedString>& killed()
    {
        static auto* const text = new Ref<NSAttributedString>;
        return *text;
    }

    constexpr bool isKilling(Motion motion)
    {
        return motion == Motion::paragraphEnd || motion == Motion::paragraphStart
            || motion == Motion::lineEnd || motion == Motion::lineStart;
    }

}

template <> struct NSTextView::Methods<struct Commands> {

    template <Motion M, bool Extend> static void move(NSTextView& self, NSObject*)
    {
        if (!Extend) {
            if (const auto place = collapsed(self, M))
                return TextViewAccess::moveTo(self, *place, false);
        }
        const CaretPlace from = startFor(self, M, Extend);
        TextViewAccess::moveTo(self, target(self, M, from), Extend, isVertical(M));
    }

    template <Motion M> static void remove(NSTextView& self, NSObject*)
    {
        NSRange range = TextViewAccess::selection(self);
        if (!range.length) {
            const NSUInteger head = TextViewAccess::of(self).head;
            NSUInteger to = target(self, M, TextViewAccess::head(self)).index;
            if (isKilling(M) && to == head && M == Motion::paragraphEnd)
                to = target(self, Motion::forward, head).index; // at the end the break itself goes
            range = NSMakeRange(std::min(head, to), std::max(head, to) - std::min(head, to));
        }
        if (!range.length || !self.isEditable())
            return NSBeep();
        self.breakUndoCoalescing();
        if (isKilling(M) && !TextViewAccess::of(self).secretText)
            killed() = attributed(self, range);
        TextViewAccess::replace(self, range, ""_ns, false);
    }
    static Ref<NSAttributedString> attributed(NSTextView& self, NSRange range)
    {
        return self.textStorage()->attributedSubstringFromRange(range);
    }
    static void yank(NSTextView& self, NSObject*)
    {
        if (killed() && self.isEditable())
            self.insertText_replacementRange(killed().get(), NSMakeRange(NSNotFound, 0));
    }
    // Exchanges the characters on both sides of the caret; at a line's end the two before it.
    static void transpose(NSTextView& self, NSObject*)
    {
        const Ref<NSString> text = TextViewAccess::text(self);
        const NSRange range = TextViewAccess::selection(self);
        if (range.length || !self.isEditable())
            return NSBeep();
        NSUInteger middle = range.location;
        if (middle == NSMaxRange(places::paragraphContentsAt(*text, middle)))
            middle = places::previousCharacter(*text, middle);
        const NSUInteger first = places::previousCharacter(*text, middle);
        const NSUInteger last = places::nextCharacter(*text, middle);
        if (first == middle || last == middle
            || first < places::paragraphContentsAt(*text, middle).location)
            return NSBeep();
        const Ref<NSString> behind = text->substringWithRange(NSMakeRange(middle, last - middle));
        const Ref<NSString> before = text->substringWithRange(NSMakeRange(first, middle - first));
        TextViewAccess::replace(self, NSMakeRange(first, last - first),
            behind->stringByAppendingString(before.get()).get(), false);
    }

    // ---- keys that a field editor takes for the end of the editing

    static void insert(NSTextView& self, NSString* text)
    {
        if (!self.isEditable())
            return NSBeep();
        TextViewAccess::replace(self, TextViewAccess::selection(self), text, false);
    }
    template <NSTextMovement M> static void insertOrEnd(NSTextView& self, NSObject*)
    {
        if (self.isFieldEditor())
            return TextViewAccess::endEditing(self, M);
        if (M == NSReturnTextMovement)
            insert(self, "\n"_ns);
        else if (M == NSTabTextMovement)
            insert(self, "\t"_ns);
    }
    static void insertNewlineAnyway(NSTextView& self, NSObject*) { insert(self, "\n"_ns); }
    static void insertTabAnyway(NSTextView& self, NSObject*) { insert(self, "\t"_ns); }
    static void cancel(NSTextView& self, NSObject* sender)
    {
        const Ref<NSObject> delegate = self.delegate();
        if (self.isFieldEditor() && delegate
            && delegate->respondsToSelector(selector<"cancelEditing:">)
            && delegate->send<"cancelEditing:", bool>(static_cast<NSText*>(&self)))
            return;
        maybe(self.nextResponder())->tryToPerform_with(selector<"cancelOperation:">, sender);
    }

    template <Motion M> static constexpr auto plain = imp<move<M, false>>;
    template <Motion M> static constexpr auto extending = imp<move<M, true>>;

    static void table(Builder& t)
    {
        using enum Motion;
        t.methods({
            { "moveForward:", plain<forward> },
            { "moveBackward:", plain<backward> },
            { "moveLeft:", plain<left> },
            { "moveRight:", plain<right> },
            { "moveUp:", plain<up> },
            { "moveDown:", plain<down> },
            { "moveWordForward:", plain<wordForward> },
            { "moveWordBackward:", plain<wordBackward> },
            { "moveWordLeft:", plain<wordLeft> },
            { "moveWordRight:", plain<wordRight> },
            { "moveToBeginningOfLine:", plain<lineStart> },
            { "moveToEndOfLine:", plain<lineEnd> },
            { "moveToLeftEndOfLine:", plain<lineLeft> },
            { "moveToRightEndOfLine:", plain<lineRight> },
            { "moveToBeginningOfParagraph:", plain<paragraphStart> },
            { "moveToEndOfParagraph:", plain<paragraphEnd> },
            { "moveParagraphForward:", plain<paragraphForward> },
            { "moveParagraphBackward:", plain<paragraphBackward> },
            { "moveToBeginningOfDocument:", plain<documentStart> },
            { "moveToEndOfDocument:", plain<documentEnd> },
            { "pageUp:", plain<pageUp> },
            { "pageDown:", plain<pageDown> },
        });
        t.methods({
            { "moveForwardAndModifySelection:", extending<forward> },
            { "moveBackwardAndModifySelection:", extending<backward> },
            { "moveLeftAndModifySelection:", extending<left> },
            { "moveRightAndModifySelection:", extending<right> },
            { "moveUpAndModifySelection:", extending<up> },
            { "moveDownAndModifySelection:", extending<down> },
            { "moveWordForwardAndModifySelection:", extending<wordForward> },
            { "moveWordBackwardAndModifySelection:", extending<wordBackward> },
            { "moveWordLeftAndModifySelection:", extending<wordLeft> },
            { "moveWordRightAndModifySelection:", extending<wordRight> },
            { "moveToBeginningOfLineAndModifySelection:", extending<lineStart> },
            { "moveToEndOfLineAndModifySelection:", extending<lineEnd> },
            { "moveToLeftEndOfLineAndModifySelection:", extending<lineLeft> },
            { "moveToRightEndOfLineAndModifySelection:", extending<lineRight> },
            { "moveToBeginningOfParagraphAndModifySelection:", extending<paragraphStart> },
            { "moveToEndOfParagraphAndModifySelection:", extending<paragraphEnd> },
            { "moveParagraphForwardAndModifySelection:", extending<paragraphForward> },
            { "moveParagraphBackwardAndModifySelection:", extending<paragraphBackward> },
            { "moveToBeginningOfDocumentAndModifySelection:", extending<documentStart> },
            { "moveToEndOfDocumentAndModifySelection:", extending<documentEnd> },
            { "pageUpAndModifySelection:", extending<pageUp> },
            { "pageDownAndModifySelection:", extending<pageDown> },
        });
        t.methods({
            { "deleteForward:", imp<remove<forward>> },
            { "deleteBackward:", imp<remove<backward>> },
            { "deleteBackwardByDecomposingPreviousCharacter:", imp<remove<backward>> },
            { "deleteWordForward:", imp<remove<wordForward>> },
            { "deleteWordBackward:", imp<remove<wordBackward>> },
            { "deleteToBeginningOfLine:", imp<remove<lineStart>> },
            { "deleteToEndOfLine:", imp<remove<lineEnd>> },
            { "deleteToBeginningOfParagraph:", imp<remove<paragraphStart>> },
            { "deleteToEndOfParagraph:", imp<remove<paragraphEnd>> },
            { "yank:", imp<yank> },
            { "transpose:", imp<transpose> },
            { "insertNewline:", imp<insertOrEnd<NSReturnTextMovement>> },
            { "insertTab:", imp<insertOrEnd<NSTabTextMovement>> },
            { "insertBacktab:", imp<insertOrEnd<NSBacktabTextMovement>> },
            { "insertLineBreak:", imp<insertNewlineAnyway> },
            { "insertParagraphSeparator:", imp<insertOrEnd<NSReturnTextMovement>> },
            { "insertNewlineIgnoringFieldEditor:", imp<insertNewlineAnyway> },
            { "insertTabIgnoringFieldEditor:", imp<insertTabAnyway> },
            { "cancelOperation:", imp<cancel> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Commands)

}
