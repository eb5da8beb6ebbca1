// SPDX-License-Identifier: Apache-2.0
#include "FontCards.h"

#include <algorithm>
#include <cmath>

#include "FontLists.h"
#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSMutableAttributedString.h"
#include "foundation/NSMutableDictionary.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSFontManager> manager() { return NSFontManager::cls().sharedFontManager(); }

}

template <> struct FontSampleCard::Methods<struct Conversion> {

    static constexpr double kLeastSize = 10; // points
    static constexpr double kMostSize = 64;
    static constexpr double kSlider = 150;
    static constexpr double kFacts = 24; // the line about the font

    static Ref<NSView> initWithFrame(FontSampleCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FontSampleCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("A line in it"_ns);
        self.setCaption("NSFontManager finds the relatives of a font; edit the line"_ns);
        self.line_ = NSTextField::cls().textFieldWithString("Hamburgefonts 0123 & Lamplight"_ns);
        self.line_->setBezeled(false);
        self.line_->setDrawsBackground(false);
        self.line_->setFocusRingType(NSFocusRingTypeNone);
        self.addSubview(self.line_.get());
        self.bold_ = addChip(&self, "Bold"_ns, "b"_ns, sending<"makeBold">(&self));
        self.italic_ = addChip(&self, "Italic"_ns, "i"_ns, sending<"makeItalic">(&self));
        self.heavier_ = addChip(&self, "Heavier"_ns, "h"_ns, sending<"makeHeavier">(&self));
        self.lighter_ = addChip(&self, "Lighter"_ns, "l"_ns, sending<"makeLighter">(&self));
        self.size_ = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
            kLeastSize, kLeastSize, kMostSize, &self, selector<"sizeChanged:">);
        self.addSubview(self.size_.get());
        return made;
    }
    static void setFrameSize(FontSampleCard& self, NSSize size)
    {
        super<FontSampleCard, "setFrameSize:">(self, size);
        if (!self.size_)
            return;
        NSRect body = self.bodyRect();
        const NSRect chips = takeBottom(body, kChipHeight);
        layOutChips(
            { self.bold_.get(), self.italic_.get(), self.heavier_.get(), self.lighter_.get() },
            chips.origin);
        const double left = NSMaxX(self.lighter_->frame()) + kCardGap;
        self.size_->setFrameSize({ std::min(NSMaxX(body) - left, kSlider), 10 });
        self.size_->sizeToFit();
        const NSSize slider = self.size_->frame().size;
        self.size_->setFrameOrigin(
            { NSMaxX(body) - slider.width, std::round(NSMidY(chips) - slider.height / 2) });
        placeLine(self);
    }
    /// Puts the line into the middle of its room, as high as it is.
    static void placeLine(FontSampleCard& self)
    {
        NSRect room = self.bodyRect();
        takeBottom(room, kChipHeight);
        room.size.height -= kFacts;
        const double height = std::min(self.line_->intrinsicContentSize().height, room.size.height);
        self.line_->setFrame(NSMakeRect(room.origin.x - 2,
            room.origin.y + std::max(0.0, std::floor((room.size.height - height) / 2)),
            room.size.width + 4, height));
    }

    static void setFont(FontSampleCard& self, NSFont* font)
    {
        self.font_ = font;
        self.note_ = nullptr;
        self.line_->setFont(font);
        self.size_->setDoubleValue(font->pointSize());
        placeLine(self);
        const NSFontTraitMask traits = manager()->traitsOfFont(font);
        self.bold_->setOn(traits & NSBoldFontMask);
        self.italic_->setOn(traits & NSItalicFontMask);
        self.setNeedsDisplay(true);
        self.tryToPerform_with(selector<"fontChanged:">, &self);
    }
    /// A conversion without a face for its answer gives the font back.
    static void convert(FontSampleCard& self, const Ref<NSFont>& converted)
    {
        const bool isSame = converted->isEqual(self.font_.get());
        self.setFont(converted.get());
        if (isSame)
            self.note_ = NSString::cls().stringWithFormat(
                "%@ has no such face"_ns, self.font_->familyName().get());
    }
    static void toggle(FontSampleCard& self, NSFontTraitMask trait)
    {
        const bool has = manager()->traitsOfFont(self.font_.get()) & trait;
        convert(self,
            has ? manager()->convertFont_toNotHaveTrait(self.font_.get(), trait)
                : manager()->convertFont_toHaveTrait(self.font_.get(), trait));
    }
    static void makeBold(FontSampleCard& self) { toggle(self, NSBoldFontMask); }
    static void makeItalic(FontSampleCard& self) { toggle(self, NSItalicFontMask); }
    static void makeHeavier(FontSampleCard& self)
    {
        convert(self, manager()->convertWeight_ofFont(true, self.font_.get()));
    }
    static void makeLighter(FontSampleCard& self)
    {
        convert(self, manager()->convertWeight_ofFont(false, self.font_.get()));
    }
    static void sizeChanged(FontSampleCard& self, NSObject*)
    {
        const double size = std::round(self.size_->doubleValue());
        self.setFont(manager()->convertFont_toSize(self.font_.get(), size).get());
    }

    static void drawBody(FontSampleCard& self, NSRect body)
    {
        if (!self.font_)
            return;
        const Palette& colors = palette();
        takeBottom(body, kChipHeight);
        const double y = NSMaxY(body) - kFacts + 4;
        const Ref<NSString> facts
            = NSString::cls().stringWithFormat("%@   weight %ld   %@   %g points"_ns,
                self.font_->fontName().get(), manager()->weightOfFont(self.font_.get()),
                wordsOf(manager()->traitsOfFont(self.font_.get())).get(), self.font_->pointSize());
        const double note = self.note_ ? sizeOf(self.note_.get(), Style::caption).width : 0;
        drawFitted(facts.get(), { body.origin.x, y }, body.size.width - note - kCardGap,
            Style::caption, colors.quietText.get());
        if (self.note_)
            drawText(
                self.note_.get(), { NSMaxX(body) - note, y }, Style::caption, colors.accent.get());
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&FontSampleCard::font_>("font", nonatomic),
            property<&FontSampleCard::note_>("note", readonly, nonatomic),
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setFont:", imp<setFont> },
            { "makeBold", imp<makeBold> },
            { "makeItalic", imp<makeItalic> },
            { "makeHeavier", imp<makeHeavier> },
            { "makeLighter", imp<makeLighter> },
            { "sizeChanged:", imp<sizeChanged> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(FontSampleCard, Conversion)

template <> struct FallbackCard::Methods<struct Scripts> {

    static constexpr double kRow = 27;
    static constexpr double kNames = 92;

    static Ref<NSView> initWithFrame(FallbackCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FallbackCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("What it lacks"_ns);
        self.setCaption("Found by fixFontAttributeInRange:"_ns);
        return made;
    }
    /// Answers a word in the card's font, or in the one that stands in for it.
    static Ref<NSMutableAttributedString> shown(FallbackCard& self, NSString* word)
    {
        const auto attributes = make<NSMutableDictionary>();
        attributes->setObject_forKey(
            manager()->convertFont_toSize(self.font_.get(), 16).get(), NSFontAttributeName.get());
        attributes->setObject_forKey(palette().text.get(), NSForegroundColorAttributeName.get());
        Ref<NSMutableAttributedString> text = cast<NSMutableAttributedString>(
            alloc<NSMutableAttributedString>()->initWithString_attributes(word, attributes.get()));
        fixFontAttributeInRange(text, NSMakeRange(0, text->length()));
        return text;
    }
    static void drawBody(FallbackCard& self, NSRect body)
    {
        if (!self.font_)
            return;
        const Palette& colors = palette();
        const double width = body.size.width - kNames;
        double y = body.origin.y;
        for (NSString* word : { "Lamp"_ns, "Лампа"_ns, "λάμπα"_ns, "מנורה"_ns, "مصباح"_ns,
                 "दीपक"_ns, "ランプ"_ns, "★ ☂ ♫"_ns }) {
            if (y + kRow > NSMaxY(body))
                return;
            const Ref<NSMutableAttributedString> text = shown(self, word);
            const auto font = cast<NSFont>(
                text->attribute_atIndex_effectiveRange(NSFontAttributeName, 0, nullptr));
            const bool isItself = font->familyName()->isEqual(self.font_->familyName().get());
            drawAtPoint(text, { body.origin.x, y + 22 - font->ascender() - 6 });
            drawFitted(font->familyName().get(), { body.origin.x + kNames, y + 5 }, width,
                Style::caption, (isItself ? colors.quietText : colors.accent).get());
            y += kRow;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(FallbackCard, Scripts)

void FallbackCard::show(NSFont* font)
{
    font_ = font;
    setNeedsDisplay(true);
}

}
