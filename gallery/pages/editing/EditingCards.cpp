// SPDX-License-Identifier: Apache-2.0
#include "EditingCards.h"

#include <algorithm>

#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSUndoManager.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "kit/TextPane.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct EditorCard::Methods<struct Editing> {

    static Ref<NSView> initWithFrame(EditorCard& self, NSRect frame)
    {
        Ref<NSView> made = super<EditorCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("A text"_ns);
        self.setCaption("Double click: a word; three clicks: a paragraph"_ns);
        const TextPane pane = addTextPane(self,
            "The lamp stands near the window, where somebody left it. Type here, and take it back: "
            "what was typed in one go is undone in one go.\n\n"
            "Лампа стоит у окна. Η λάμπα στέκεται κοντά στο παράθυρο. המנורה עומדת ליד החלון. "
            "Letters of all scripts stand in one line, each caret where it belongs."_ns);
        self.text_ = pane.text;
        self.scroll_ = pane.scroll;
        self.text_->setDelegate(&self);
        self.undo_ = addChip(&self, "Undo"_ns, nullptr, sending<"undoTyping">(&self));
        self.redo_ = addChip(&self, "Redo"_ns, nullptr, sending<"redoTyping">(&self));
        return made;
    }
    static void setFrameSize(EditorCard& self, NSSize size)
    {
        super<EditorCard, "setFrameSize:">(self, size);
        if (!self.redo_)
            return;
        NSRect body = self.bodyRect();
        const NSRect chips = takeBottom(body, kChipHeight);
        layOutChips({ self.undo_.get(), self.redo_.get() }, chips.origin);
        self.scroll_->setFrame(body);
        self.text_->setMinSize(self.scroll_->contentSize());
        self.text_->setFrameSize(self.scroll_->contentSize());
        self.text_->sizeToFit();
    }
    static void drawBody(EditorCard& self, NSRect body)
    {
        const NSRange chosen = self.text_->selectedRange();
        const Ref<NSString> said
            = NSString::cls().stringWithFormat("%lu characters, %lu chosen at %lu"_ns,
                self.text_->string()->length(), chosen.length, chosen.location);
        const double width = sizeOf(said.get(), Style::caption).width;
        drawText(said.get(), { NSMaxX(body) - width, NSMaxY(body) - 20 }, Style::caption,
            palette().quietText.get());
    }
    static void changed(EditorCard& self, NSNotification*) { self.setNeedsDisplay(true); }
    static void undo(EditorCard& self) { maybe(self.text_->undoManager())->undo(); }
    static void redo(EditorCard& self) { maybe(self.text_->undoManager())->redo(); }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "textDidChange:", imp<changed> },
            { "textViewDidChangeSelection:", imp<changed> },
            { "undoTyping", imp<undo> },
            { "redoTyping", imp<redo> },
        });
    }
};
BRINDLE_RECORD(EditorCard, Editing)

template <> struct PasteboardCard::Methods<struct Board> {

    static Ref<NSPasteboard> board() { return NSPasteboard::cls().generalPasteboard(); }

    static Ref<NSView> initWithFrame(PasteboardCard& self, NSRect frame)
    {
        Ref<NSView> made = super<PasteboardCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("The pasteboard"_ns);
        self.setCaption("What was copied, here or by another program"_ns);
        self.write_ = addChip(&self, "Write"_ns, "w"_ns, sending<"writeTypes">(&self));
        self.clear_ = addChip(&self, "Clear"_ns, "c"_ns, sending<"clearBoard">(&self));
        return made;
    }
    static void setFrameSize(PasteboardCard& self, NSSize size)
    {
        super<PasteboardCard, "setFrameSize:">(self, size);
        if (self.clear_)
            layOutChips({ self.write_.get(), self.clear_.get() },
                { self.bodyRect().origin.x, NSMaxY(self.bodyRect()) - kChipHeight });
    }
    static void writeTypes(PasteboardCard& self)
    {
        const Ref<NSPasteboard> to = board();
        to->declareTypes_owner(NSArray::cls()
                                   .arrayWithObjects(static_cast<NSString*>(NSPasteboardTypeString),
                                       "org.brindle.lamp"_ns)
                                   .get(),
            nullptr);
        to->setString_forType("A lamp, as text"_ns, NSPasteboardTypeString);
        to->setPropertyList_forType(
            NSArray::cls().arrayWithObjects("lamp"_ns, "brass"_ns).get(), "org.brindle.lamp"_ns);
        self.setNeedsDisplay(true);
    }
    static void clearBoard(PasteboardCard& self)
    {
        board()->clearContents();
        self.setNeedsDisplay(true);
    }
    /// What does not fit need not be measured: a text may be pasted into itself until it is megabytes long.
    static Ref<NSString> beginning(const NSString& text)
    {
        constexpr NSUInteger kMost = 200;
        return text.substringToIndex(std::min(text.length(), kMost));
    }
    static void drawBody(PasteboardCard&, NSRect body)
    {
        const Ref<NSString> text = board()->stringForType(NSPasteboardTypeString);
        const Ref<NSString> changes
            = NSString::cls().stringWithFormat("change %ld"_ns, board()->changeCount());
        drawFigure(text ? beginning(*text).get() : "No text"_ns, changes.get(), body);
        double y = body.origin.y + kFigureHeight + 12;
        for (NSString* type : each<NSString>(board()->types())) {
            if (y + 18 > NSMaxY(body) - kChipHeight - 8)
                return;
            drawFitted(
                type, { body.origin.x, y }, body.size.width, Style::code, palette().text.get());
            y += 18;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "writeTypes", imp<writeTypes> },
            { "clearBoard", imp<clearBoard> },
        });
    }
};
BRINDLE_RECORD(PasteboardCard, Board)

template <> struct LettersCard::Methods<struct Boxes> {

    static Ref<NSView> initWithFrame(LettersCard& self, NSRect frame)
    {
        Ref<NSView> made = super<LettersCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Letter by letter"_ns);
        self.setCaption("The layout manager knows the place of each; move over them"_ns);
        self.text_
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(NSMakeRect(0, 0, 300, 100)));
        self.text_->setString("AVATAR fjord, Straße, naïve e\u0301te\u0301, שלום"_ns);
        self.text_->setFont(NSFont::cls().systemFontOfSize(40).get());
        return made;
    }
    static void updateTrackingAreas(LettersCard& self)
    {
        const Ref<NSArray> areas = self.trackingAreas();
        for (NSObject* area : *areas)
            self.removeTrackingArea(static_cast<NSTrackingArea*>(area));
        const auto area = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
            self.bounds(), NSTrackingMouseMoved | NSTrackingActiveAlways, &self, nullptr);
        self.addTrackingArea(area.get());
    }
    static void setFrameSize(LettersCard& self, NSSize size)
    {
        super<LettersCard, "setFrameSize:">(self, size);
        if (self.text_)
            self.text_->setFrameSize(self.bodyRect().size);
    }
    static NSPoint origin(LettersCard& self)
    {
        const NSPoint body = self.bodyRect().origin;
        const NSPoint inset = self.text_->textContainerOrigin();
        return { body.x + inset.x - 5, body.y + inset.y };
    }
    static NSRect boxOf(LettersCard& self, NSUInteger glyph)
    {
        const NSRect box = self.text_->layoutManager()->boundingRectForGlyphRange_inTextContainer(
            NSMakeRange(glyph, 1), self.text_->textContainer().get());
        const NSPoint start = origin(self);
        return NSMakeRect(
            start.x + box.origin.x, start.y + box.origin.y, box.size.width, box.size.height);
    }
    static void mouseMoved(LettersCard& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        NSInteger found = -1;
        for (NSUInteger i = 0; i < self.text_->layoutManager()->numberOfGlyphs(); ++i) {
            if (NSPointInRect(place, boxOf(self, i)))
                found = static_cast<NSInteger>(i);
        }
        if (found == self.letter_)
            return;
        self.letter_ = found;
        self.setNeedsDisplay(true);
    }
    static void drawBody(LettersCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const Ref<NSLayoutManager> layout = self.text_->layoutManager();
        const NSUInteger count = layout->numberOfGlyphs();
        for (NSUInteger i = 0; i < count; ++i) {
            const NSRect box = boxOf(self, i);
            if (box.size.width <= 0)
                continue;
            if (static_cast<NSInteger>(i) == self.letter_)
                fillRounded(box, 2, colors.soft.get());
            strokeRounded(box, 2, colors.grid.get());
        }
        self.text_->setTextColor(colors.text.get());
        layout->drawGlyphsForGlyphRange_atPoint(NSMakeRange(0, count), origin(self));
        if (self.letter_ < 0)
            return;
        const auto glyph = static_cast<NSUInteger>(self.letter_);
        const NSRect box = boxOf(self, glyph);
        const Ref<NSString> said
            = NSString::cls().stringWithFormat("character %lu, %.2f points wide"_ns,
                layout->characterIndexForGlyphAtIndex(glyph), box.size.width);
        drawText(
            said.get(), { body.origin.x, NSMaxY(body) - 14 }, Style::caption, colors.accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "mouseMoved:", imp<mouseMoved> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(LettersCard, Boxes)

}
