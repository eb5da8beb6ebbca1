// SPDX-License-Identifier: Apache-2.0
#include "AttachmentsCard.h"

#include <algorithm>

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextStorage.h"
#include "kit/Drawing.h"
#include "kit/TextPane.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSColor> shade(double hue, double brightness)
    {
        return NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
            hue, 0.6, brightness, 1);
    }
    /// Draws a lit bead, as large as the text wants it.
    Ref<NSImage> bead(double hue)
    {
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            { 18, 18 }, false, [hue](NSRect all) {
                const auto oval
                    = [](NSRect r) { return NSBezierPath::cls().bezierPathWithOvalInRect(r); };
                const double side = all.size.width;
                shade(hue, 0.85)->setFill();
                oval(inset(all, side / 20))->fill();
                NSColor::cls().colorWithWhite_alpha(1, 0.75)->setFill();
                oval(NSMakeRect(all.origin.x + side * 0.25, all.origin.y + side * 0.52, side * 0.26,
                         side * 0.26))
                    ->fill();
                return true;
            });
    }

}

template <> struct AttachmentsCard::Methods<struct Pictures> {

    static constexpr double kSmall = 18; // points
    static constexpr double kLarge = 32;
    static constexpr double kStep = 3;
    static constexpr double kMostRise = 15;

    static Ref<NSView> initWithFrame(AttachmentsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<AttachmentsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Pictures in text"_ns);
        self.setCaption("NSTextAttachment: a picture goes with its line, is chosen and deleted"_ns);
        self.rise_ = -kStep;
        self.side_ = kSmall;
        makeText(self);
        self.insert_ = addChip(&self, "Insert"_ns, "i"_ns, sending<"insertPicture">(&self));
        self.raise_ = addChip(&self, "Higher"_ns, "h"_ns, sending<"raise">(&self));
        self.lower_ = addChip(&self, "Lower"_ns, "l"_ns, sending<"lower">(&self));
        self.enlarge_ = addChip(&self, "Large"_ns, "g"_ns, sending<"enlarge">(&self));
        return made;
    }
    static void makeText(AttachmentsCard& self)
    {
        const TextPane pane = addTextPane(self,
            "Glass beads:  Each is one character, so the arrows step over it "
            "and Backspace takes it away. A line grows with what stands in it."_ns,
            16);
        self.text_ = pane.text;
        self.scroll_ = pane.scroll;
        self.text_->setRichText(true);
        self.text_->setSelectedRange(NSMakeRange(13, 0));
        for (int i = 0; i < 3; ++i)
            put(self, picture(self), self.text_->selectedRange());
    }
    static void setFrameSize(AttachmentsCard& self, NSSize size)
    {
        super<AttachmentsCard, "setFrameSize:">(self, size);
        if (!self.enlarge_)
            return;
        NSRect body = self.bodyRect();
        const NSRect chips = takeBottom(body, kChipHeight);
        layOutChips(
            { self.insert_.get(), self.raise_.get(), self.lower_.get(), self.enlarge_.get() },
            chips.origin);
        self.scroll_->setFrame(body);
        self.text_->setMinSize(self.scroll_->contentSize());
        self.text_->setFrameSize(self.scroll_->contentSize());
        self.text_->sizeToFit();
    }

    // ---- the pictures

    static NSRect bounds(AttachmentsCard& self)
    {
        return NSMakeRect(0, self.rise_, self.side_, self.side_);
    }
    /// Answers a text of one picture that looks like what is typed otherwise.
    static Ref<NSMutableAttributedString> picture(AttachmentsCard& self)
    {
        const Ref<NSTextAttachment> attachment = make<NSTextAttachment>();
        const double hue = 0.05 + 0.17 * static_cast<double>(self.inserted_++ % 6);
        attachment->setImage(bead(hue).get());
        attachment->setBounds(bounds(self));
        Ref<NSMutableAttributedString> text = cast<NSMutableAttributedString>(
            attributedStringWithAttachment(NSAttributedString::cls(), attachment.get())
                ->mutableCopy());
        text->addAttributes_range(
            self.text_->typingAttributes().get(), NSMakeRange(0, text->length()));
        return text;
    }
    static void put(
        AttachmentsCard& self, const Ref<NSMutableAttributedString>& text, NSRange place)
    {
        self.text_->insertText_replacementRange(text.get(), place);
    }
    static void insertPicture(AttachmentsCard& self)
    {
        put(self, picture(self), self.text_->selectedRange());
    }

    template <class Visit> static void visit(AttachmentsCard& self, const Visit& visitor)
    {
        const Ref<NSTextStorage> storage = self.text_->textStorage();
        NSRange run {};
        for (NSUInteger at = 0; at < storage->length(); at = NSMaxRange(run)) {
            const Ref<NSObject> found
                = storage->attribute_atIndex_effectiveRange(NSAttachmentAttributeName, at, &run);
            if (found)
                visitor(static_cast<NSTextAttachment&>(*found), run);
        }
    }
    /// Another attachment takes the place of each: text takes no notice of one that changes.
    static void place(AttachmentsCard& self)
    {
        const Ref<NSTextStorage> storage = self.text_->textStorage();
        storage->beginEditing();
        visit(self, [&](const NSTextAttachment& old, NSRange range) {
            const Ref<NSTextAttachment> attachment = make<NSTextAttachment>();
            attachment->setImage(old.image().get());
            attachment->setBounds(bounds(self));
            storage->addAttribute_value_range(NSAttachmentAttributeName, attachment.get(), range);
        });
        storage->endEditing();
    }
    static void raiseBy(AttachmentsCard& self, double points)
    {
        self.rise_ = std::clamp(self.rise_ + points, -kMostRise, kMostRise);
        place(self);
    }
    static void raise(AttachmentsCard& self) { raiseBy(self, kStep); }
    static void lower(AttachmentsCard& self) { raiseBy(self, -kStep); }
    static void enlarge(AttachmentsCard& self)
    {
        self.side_ = self.side_ == kSmall ? kLarge : kSmall;
        self.enlarge_->setOn(self.side_ == kLarge);
        place(self);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&AttachmentsCard::text_>("text", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "insertPicture", imp<insertPicture> },
            { "raise", imp<raise> },
            { "lower", imp<lower> },
            { "enlarge", imp<enlarge> },
        });
    }
};
BRINDLE_RECORD(AttachmentsCard, Pictures)

}
