// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSTextViewPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSBeep.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kScrollSeconds = 0.05; // between two steps while the pointer is outside

    /// Follows the pointer from a press to its release.
    class Selecting {
    public:
        Selecting(NSTextView& view, NSEvent& press)
            : view_(&view)
            , granularity_(press.clickCount() > 2 ? NSSelectByParagraph
                      : press.clickCount() == 2   ? NSSelectByWord
                                                  : NSSelectByCharacter)
        {
            const CaretPlace place = placeOf(press);
            const NSUInteger anchor = TextViewAccess::of(view).anchor;
            extends_ = (press.modifierFlags() & NSShiftKeyMask) != 0;
            first_ = extends_ ? NSMakeRange(anchor, 0) : pieceAt(place.index);
            select(place);
        }
        ~Selecting() { stopScrolling(); }
        Selecting(const Selecting&) = delete;
        Selecting& operator=(const Selecting&) = delete;

        void track()
        {
            const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
            const Ref<NSDate> forever = NSDate::cls().distantFuture();
            while (view_->window()) {
                const Ref<NSEvent> event
                    = application->nextEventMatchingMask_untilDate_inMode_dequeue(
                        NSLeftMouseDraggedMask | NSLeftMouseUpMask, forever.get(),
                        NSEventTrackingRunLoopMode, true);
                if (!event || event->type() == NSLeftMouseUp)
                    break;
                follow(*event);
            }
            const NSRange range = TextViewAccess::selection(*view_);
            if (range.length)
                TextViewAccess::ownPrimary(*view_);
        }

    private:
        NSPoint pointOf(NSEvent& event) const
        {
            return view_->convertPoint_fromView(event.locationInWindow(), nullptr);
        }
        CaretPlace placeOf(NSEvent& event) const
        {
            return TextViewAccess::placeAt(*view_, pointOf(event));
        }
        NSRange pieceAt(NSUInteger index) const
        {
            return view_->selectionRangeForProposedRange_granularity(
                NSMakeRange(index, 0), granularity_);
        }
        void select(CaretPlace place)
        {
            if (granularity_ == NSSelectByCharacter)
                return TextViewAccess::select(*view_, first_.location, place, true);
            const NSRange piece = pieceAt(place.index);
            const NSRange all = NSUnionRange(first_, piece);
            if (piece.location < first_.location)
                TextViewAccess::select(*view_, NSMaxRange(all), all.location, true);
            else
                TextViewAccess::select(*view_, all.location, NSMaxRange(all), true);
        }
        void follow(NSEvent& event)
        {
            last_ = event.locationInWindow();
            selectAtPointer();
            if (NSPointInRect(pointOf(event), view_->visibleRect()))
                stopScrolling();
            else
                startScrolling();
        }
        void selectAtPointer()
        {
            select(TextViewAccess::placeAt(*view_, view_->convertPoint_fromView(last_, nullptr)));
            view_->scrollRangeToVisible(NSMakeRange(TextViewAccess::of(*view_).head, 0));
        }
        // The pointer may rest outside: what it stands over changes as the text scrolls by.
        void startScrolling()
        {
            if (timer_)
                return;
            timer_ = NSTimer::cls().timerWithTimeInterval_repeats_block(
                kScrollSeconds, true, [this](NSTimer*) { selectAtPointer(); });
            NSRunLoop::cls().currentRunLoop()->addTimer_forMode(
                timer_.get(), NSEventTrackingRunLoopMode);
        }
        void stopScrolling()
        {
            if (const Ref<NSTimer> timer = std::exchange(timer_, nullptr))
                timer->invalidate();
        }

        Ref<NSTextView> view_;
        NSSelectionGranularity granularity_;
        NSRange first_ {}; // what the press selected; stays selected
        NSPoint last_; // in the window
        Ref<NSTimer> timer_;
        bool extends_ = false;
    };

}

template <> struct NSTextView::Methods<struct Mouse> {

    static void mouseDown(NSTextView& self, NSEvent* press)
    {
        if (!press || !TextViewAccess::of(self).selectable)
            return super<NSTextView, "mouseDown:">(self, press);
        const Ref<NSTextView> alive(&self);
        const Ref<NSEvent> kept(press);
        self.unmarkText();
        self.breakUndoCoalescing();
        TextViewAccess::of(self).goal.reset();
        Selecting(self, *press).track();
    }
    // The middle button pastes what is selected, here or elsewhere.
    static void otherMouseDown(NSTextView& self, NSEvent* press)
    {
        if (!press || press->buttonNumber() != 2 || !self.isEditable())
            return super<NSTextView, "otherMouseDown:">(self, press);
        const Ref<NSTextView> alive(&self);
        const Ref<NSString> text = NSPasteboard::cls()
                                       .pasteboardWithName(NSSelectionPboard)
                                       ->stringForType(NSPasteboardTypeString);
        const Ref<NSWindow> window = self.window();
        if (window && window->firstResponder() != &self)
            window->makeFirstResponder(&self);
        const NSUInteger index = TextViewAccess::placeAt(
            self, self.convertPoint_fromView(press->locationInWindow(), nullptr))
                                     .index;
        if (!maybe(text)->length())
            return;
        self.breakUndoCoalescing();
        self.insertText_replacementRange(text.get(), NSMakeRange(index, 0));
        self.breakUndoCoalescing();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "mouseDown:", imp<mouseDown> },
            { "otherMouseDown:", imp<otherMouseDown> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Mouse)

template <> struct NSTextView::Methods<struct Clipboard> {

    static bool canGive(NSTextView& self)
    {
        return TextViewAccess::selection(self).length && !TextViewAccess::of(self).secretText;
    }
    static Ref<NSString> selected(NSTextView& self)
    {
        return TextViewAccess::text(self)->substringWithRange(TextViewAccess::selection(self));
    }
    static void copy(NSTextView& self, NSObject*)
    {
        if (!canGive(self))
            return NSBeep();
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        board->setString_forType(selected(self).get(), NSPasteboardTypeString);
    }
    static void cut(NSTextView& self, NSObject* sender)
    {
        if (!canGive(self) || !self.isEditable())
            return NSBeep();
        self.copy(sender);
        remove(self, sender);
    }
    static void remove(NSTextView& self, NSObject*)
    {
        const NSRange range = TextViewAccess::selection(self);
        if (!range.length || !self.isEditable())
            return;
        self.breakUndoCoalescing();
        TextViewAccess::replace(self, range, ""_ns, false);
    }
    static void paste(NSTextView& self, NSObject*)
    {
        const Ref<NSString> text
            = NSPasteboard::cls().generalPasteboard()->stringForType(NSPasteboardTypeString);
        if (!text || !self.isEditable())
            return NSBeep();
        self.breakUndoCoalescing();
        self.insertText_replacementRange(text.get(), NSMakeRange(NSNotFound, 0));
        self.breakUndoCoalescing();
    }
    /// Gives the selection to whoever pastes it with the middle button.
    static void provide(NSTextView& self, NSPasteboard* board, NSString* type)
    {
        if (canGive(self))
            maybe(board)->setString_forType(selected(self).get(), type);
    }
    static bool validate(NSTextView& self, NSObject* item)
    {
        const SEL action = maybe(item)->send<"action", SEL>();
        if (action == selector<"copy:">)
            return canGive(self);
        if (action == selector<"cut:"> || action == selector<"delete:">)
            return self.isEditable() && TextViewAccess::selection(self).length
                && (action == selector<"delete:"> || canGive(self));
        if (action == selector<"paste:">)
            return self.isEditable()
                && NSPasteboard::cls().generalPasteboard()->availableTypeFromArray(
                    NSArray::cls().arrayWithObject(NSPasteboardTypeString.get()).get());
        return action != selector<"selectAll:"> || TextViewAccess::length(self) > 0;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "copy:", imp<copy> },
            { "cut:", imp<cut> },
            { "delete:", imp<remove> },
            { "paste:", imp<paste> },
            { "pasteAsPlainText:", imp<paste> },
            { "pasteboard:provideDataForType:", imp<provide> },
            { "validateMenuItem:", imp<validate> },
            { "validateUserInterfaceItem:", imp<validate> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Clipboard)

}
