// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSTextViewPrivate.h"
#include "TextPlacesPrivate.h"
#include "appkit/NSPasteboard.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSValue.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    bool equal(NSRange a, NSRange b) { return a.location == b.location && a.length == b.length; }

    NSRange asked(NSTextView& view, NSRange before, NSRange wanted)
    {
        const Ref<NSObject> delegate = view.delegate();
        constexpr SEL asks
            = selector<"textView:willChangeSelectionFromCharacterRange:toCharacterRange:">;
        if (!delegate || !delegate->respondsToSelector(asks) || equal(before, wanted))
            return wanted;
        return TextViewAccess::clamped(view,
            delegate
                ->send<"textView:willChangeSelectionFromCharacterRange:toCharacterRange:", NSRange>(
                    &view, before, wanted));
    }

    void tellSelection(NSTextView& view, NSRange before)
    {
        const Ref<NSValue> old = NSValue::cls().valueWithRange(before);
        const Ref<NSDictionary> facts
            = makeDictionary({ { "NSOldSelectedCharacterRange"_ns, old.get() } });
        const Ref<NSNotification> told = NSNotification::cls().notificationWithName_object_userInfo(
            NSTextViewDidChangeSelectionNotification, &view, facts.get());
        const Ref<NSObject> delegate = view.delegate();
        if (delegate && delegate->respondsToSelector(selector<"textViewDidChangeSelection:">))
            delegate->send<"textViewDidChangeSelection:">(told.get());
        NSNotificationCenter::cls().defaultCenter()->postNotification(told.get());
    }

}

void TextViewAccess::redrawSelection(NSTextView& view)
{
    view.setNeedsDisplayInRect(NSInsetRect(of(view).caret, -1, -1));
    const NSRange range = selection(view);
    if (!range.length)
        return;
    const NSRect visible = view.visibleRect();
    for (const NSRect& rect : rectsOf(view, range)) {
        if (NSMinY(rect) > NSMaxY(visible))
            break;
        view.setNeedsDisplayInRect(NSInsetRect(rect, -1, -1));
    }
}

void TextViewAccess::select(NSTextView& view, NSUInteger anchor, CaretPlace place, bool still)
{
    const Ref<NSTextView> alive(&view);
    TextViewState& s = of(view);
    const NSUInteger head = place.index;
    const NSRange before = selection(view);
    redrawSelection(view);
    const NSRange wanted = clamped(
        view, NSMakeRange(std::min(anchor, head), std::max(anchor, head) - std::min(anchor, head)));
    const NSRange range = asked(view, before, wanted);
    const bool backward = head < anchor;
    s.anchor = backward ? NSMaxRange(range) : range.location;
    s.head = backward ? range.location : NSMaxRange(range);
    s.affinity = s.head == head ? place.affinity : NSSelectionAffinityDownstream;
    redrawSelection(view);
    restartCaret(view);
    if (equal(before, range))
        return;
    view.breakUndoCoalescing();
    s.typingAttributes = nullptr;
    if (!still && range.length)
        ownPrimary(view);
    tellSelection(view, before);
}

void TextViewAccess::moveTo(NSTextView& view, CaretPlace place, bool extend, bool keepsGoal)
{
    const std::optional<CGFloat> goal = of(view).goal;
    view.breakUndoCoalescing();
    select(view, extend ? of(view).anchor : place.index, place);
    of(view).goal = keepsGoal ? goal : std::nullopt;
    view.scrollRangeToVisible(NSMakeRange(of(view).head, 0));
}

// What is selected can be pasted with the middle button elsewhere.
void TextViewAccess::ownPrimary(NSTextView& view)
{
    if (of(view).secretText || !isActive(view))
        return;
    const Ref<NSPasteboard> board = NSPasteboard::cls().pasteboardWithName(NSSelectionPboard);
    board->declareTypes_owner(
        NSArray::cls().arrayWithObject(NSPasteboardTypeString.get()).get(), &view);
}

template <> struct NSTextView::Methods<struct Selection> {

    static NSRange range(NSTextView& self) { return TextViewAccess::selection(self); }
    static void setRange(NSTextView& self, NSRange range)
    {
        self.setSelectedRange_affinity_stillSelecting(range, NSSelectionAffinityDownstream, false);
    }
    static void setRangeWith(
        NSTextView& self, NSRange range, NSSelectionAffinity affinity, bool still)
    {
        range = TextViewAccess::clamped(self, range);
        TextViewAccess::of(self).goal.reset();
        TextViewAccess::select(self, range.location, { NSMaxRange(range), affinity }, still);
    }
    static Ref<NSArray> ranges(NSTextView& self)
    {
        return NSArray::cls().arrayWithObject(
            NSValue::cls().valueWithRange(self.selectedRange()).get());
    }
    static void setRanges(NSTextView& self, NSArray* ranges)
    {
        const Ref<NSObject> first = maybe(ranges)->count() ? ranges->objectAtIndex(0) : nullptr;
        if (first && first->isKindOfClass(NSValue::cls()))
            self.setSelectedRange(static_cast<NSValue*>(first.get())->rangeValue());
    }
    static NSSelectionAffinity affinity(NSTextView& self)
    {
        return TextViewAccess::of(self).affinity;
    }
    static NSRange grown(NSTextView& self, NSRange range, NSSelectionGranularity granularity)
    {
        const Ref<NSString> text = TextViewAccess::text(self);
        range = TextViewAccess::clamped(self, range);
        if (granularity == NSSelectByCharacter || !text->length())
            return range;
        const bool isWord = granularity == NSSelectByWord;
        const NSUInteger last = range.length ? NSMaxRange(range) - 1 : range.location;
        if (TextViewAccess::of(self).secretText)
            return NSMakeRange(0, text->length()); // words would tell where spaces are
        const auto pieceAt = [&](NSUInteger index) {
            return isWord ? places::wordAt(*text, index) : places::paragraphAt(*text, index);
        };
        return NSUnionRange(pieceAt(range.location), pieceAt(last));
    }
    static void selectAll(NSTextView& self, NSObject*)
    {
        if (TextViewAccess::of(self).selectable)
            TextViewAccess::select(self, 0, TextViewAccess::length(self));
    }
    template <NSSelectionGranularity G> static void selectPiece(NSTextView& self, NSObject*)
    {
        self.setSelectedRange(self.selectionRangeForProposedRange_granularity(range(self), G));
    }
    static void selectLine(NSTextView& self, NSObject*)
    {
        const NSRange present = range(self);
        NSRange lines = TextViewAccess::lineAt(self, present.location);
        if (present.length)
            lines = NSUnionRange(lines, TextViewAccess::lineAt(self, NSMaxRange(present) - 1));
        self.setSelectedRange(lines);
    }
    static Ref<NSDictionary> selectedAttributes(NSTextView& self)
    {
        return TextViewAccess::of(self).selectedAttributes;
    }
    static void setSelectedAttributes(NSTextView& self, NSDictionary* attributes)
    {
        TextViewAccess::of(self).selectedAttributes
            = attributes ? cast<NSDictionary>(attributes->copy()) : Ref<NSDictionary>();
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "selectedRange", imp<range> },
            { "setSelectedRange:", imp<setRange> },
            { "setSelectedRange:affinity:stillSelecting:", imp<setRangeWith> },
            { "selectedRanges", imp<ranges> },
            { "setSelectedRanges:", imp<setRanges> },
            { "selectionAffinity", imp<affinity> },
            { "selectionRangeForProposedRange:granularity:", imp<grown> },
            { "selectAll:", imp<selectAll> },
            { "selectWord:", imp<selectPiece<NSSelectByWord>> },
            { "selectParagraph:", imp<selectPiece<NSSelectByParagraph>> },
            { "selectLine:", imp<selectLine> },
            { "selectedTextAttributes", imp<selectedAttributes> },
            { "setSelectedTextAttributes:", imp<setSelectedAttributes> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Selection)

}
