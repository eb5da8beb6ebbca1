// SPDX-License-Identifier: Apache-2.0
#include "ColourPage.h"

#include <cmath>

#include "appkit/NSEvent.h"
#include "foundation/NSString.h"
#include "graphics/NSColor+DKAdditions.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ColourPage::Methods<struct Cards> {

    static constexpr double kTopHeight = 226;
    static constexpr double kHexShare = 0.46;

    static void addCards(ColourPage& self)
    {
        self.hex_ = addCard<HexCard>(self, "As text"_ns, "Type # and six letters from a to f"_ns);
        self.grounds_ = addCard<GroundsCard>(self, "On a ground"_ns,
            "Text by brightness at the left, by luminosity at the right"_ns);
        self.mixtures_ = addCard<MixturesCard>(
            self, "Mixtures"_ns, "With the accent colour, from nothing to all of it"_ns);
        self.chooseNext(0);
    }

    static Ref<NSString> pageTitle(ColourPage&) { return "Colour"_ns; }
    static Ref<NSString> pageCaption(ColourPage&)
    {
        return "Parsed, mixed, made lighter, written on.  Left, Right: another colour"_ns;
    }

    static void layOutIn(ColourPage& self, NSRect room)
    {
        NSRect top = takeTop(room, kTopHeight);
        self.hex_->setFrame(takeLeft(top, std::round(room.size.width * kHexShare)));
        self.grounds_->setFrame(top);
        self.mixtures_->setFrame(room);
    }

    static void setColor(ColourPage& self, NSColor* color)
    {
        self.hex_->setColor(color);
        self.grounds_->setColor(color);
        self.mixtures_->setColor(color);
    }

    static void chooseNext(ColourPage& self, NSInteger places)
    {
        // Hue, saturation and brightness.
        constexpr double kChoices[][3] { { 0.56, 0.75, 0.8 }, { 0, 0.7, 0.85 }, { 0.14, 0.8, 0.95 },
            { 0.36, 0.6, 0.55 }, { 0.75, 0.45, 0.6 } };
        constexpr NSInteger kCount = std::size(kChoices);
        self.choice_ = ((self.choice_ + places) % kCount + kCount) % kCount;
        const auto& [hue, saturation, brightness] = kChoices[self.choice_];
        self.setColor(
            NSColor::cls()
                .colorWithCalibratedHue_saturation_brightness_alpha(hue, saturation, brightness, 1)
                .get());
    }

    static void setEntry(ColourPage& self, NSString* entry)
    {
        self.entry_ = entry;
        self.hex_->setEntry(entry);
    }

    static void keyDown(ColourPage& self, NSEvent* event)
    {
        constexpr NSUInteger kWhole = 7;
        const Ref<NSString> typed = event->characters();
        const unichar key = maybe(typed)->length() == 1 ? typed->characterAtIndex(0) : 0;
        const bool isVisible = key > u' ' && key < 0x7F;
        if (key == u'#')
            return self.setEntry(typed.get());
        if (!self.entry_ || !isVisible) {
            self.setEntry(nullptr);
            return super<ColourPage, "keyDown:">(self, event);
        }
        const Ref<NSString> entry = self.entry_->stringByAppendingString(typed.get());
        if (entry->length() < kWhole)
            return self.setEntry(entry.get());
        self.setEntry(nullptr);
        self.setColor(colorWithHexString(NSColor::cls(), entry.get()).get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
            { "chooseNext:", imp<chooseNext> },
            { "setColor:", imp<setColor> },
            { "setEntry:", imp<setEntry> },
            { "keyDown:", imp<keyDown> },
        });
    }
};
BRINDLE_RECORD(ColourPage, Cards)

}
