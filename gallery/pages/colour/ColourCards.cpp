// SPDX-License-Identifier: Apache-2.0
#include "ColourCards.h"

#include <array>
#include <cmath>

#include "foundation/NSString.h"
#include "graphics/NSColor+ColorOnBackground.h"
#include "graphics/NSColor+DKAdditions.h"
#include "graphics/NSColor+StandardUIColors.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ColourCard::Methods<struct Colour> {

    static void setColor(ColourCard& self, NSColor* color)
    {
        self.color_ = color;
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&ColourCard::color_>("color", nonatomic) });
        t.methods({ { "setColor:", imp<setColor> } });
    }
};
BRINDLE_RECORD(ColourCard, Colour)

// ---- text and numbers

template <> struct HexCard::Methods<struct Reading> {

    static constexpr double kSwatch = 150;
    static constexpr double kGap = 20;
    static constexpr double kLineHeight = 30;

    static void setEntry(HexCard& self, NSString* entry)
    {
        self.entry_ = entry;
        self.setNeedsDisplay(true);
    }

    static void drawBody(HexCard& self, NSRect body)
    {
        const Ref<NSColor> color = self.color();
        const NSRect swatch = NSMakeRect(body.origin.x, body.origin.y, kSwatch, body.size.height);
        fillRounded(swatch, 10, color.get());
        strokeRounded(swatch, 10, palette().border.get());
        const Ref<NSString> shown
            = self.entry_ ? self.entry_->stringByAppendingString("▏"_ns) : hexString(color);
        drawCentered(
            shown.get(), swatch, Style::figure, whiteOrBlackOnBackgroundColor(color).get());
        drawNumbers(color,
            NSMakeRect(NSMaxX(swatch) + kGap, body.origin.y, body.size.width - kSwatch - kGap,
                body.size.height));
    }

    static void drawNumbers(const Ref<NSColor>& color, NSRect room)
    {
        NSPoint place = room.origin;
        const auto line = [&](NSString* label, const Ref<NSString>& text) {
            drawText(label, place, Style::caption, palette().quietText.get());
            drawFitted(text.get(), { place.x, place.y + 13 }, room.size.width, Style::code,
                palette().text.get());
            place.y += kLineHeight + 6;
        };
        const auto three = [](double a, double b, double c) {
            return NSString::cls().stringWithFormat("%.3f  %.3f  %.3f"_ns, a, b, c);
        };
        line("red, green, blue"_ns,
            three(color->redComponent(), color->greenComponent(), color->blueComponent()));
        line("hue, saturation, brightness"_ns,
            three(
                color->hueComponent(), color->saturationComponent(), color->brightnessComponent()));
        line("luminosity"_ns, NSString::cls().stringWithFormat("%.3f"_ns, luminosity(color)));
        line("inverted"_ns, hexString(invertedColor(color)));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setEntry:", imp<setEntry> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(HexCard, Reading)

// ---- grounds

template <> struct GroundsCard::Methods<struct Writing> {

    static constexpr std::size_t kColumns = 4;
    static constexpr std::size_t kRows = 3;
    static constexpr double kGap = 8;

    static std::array<Ref<NSColor>, kColumns * kRows> grounds(const Ref<NSColor>& color)
    {
        const auto colors = NSColor::cls();
        return { color, invertedColor(color), colorWithLuminosity(color),
            graySourceListSelectColor(colors), colors.redColor(), colors.greenColor(),
            colors.blueColor(), rgbGrey(colors, 0.49), colors.orangeColor(), colors.purpleColor(),
            colors.brownColor(), veryLightGrey(colors) };
    }

    static void drawBody(GroundsCard& self, NSRect body)
    {
        const double width = (body.size.width - kGap * (kColumns - 1)) / kColumns;
        const double height = (body.size.height - kGap * (kRows - 1)) / kRows;
        std::size_t i = 0;
        for (const Ref<NSColor>& ground : grounds(self.color())) {
            const std::size_t row = i / kColumns;
            const NSRect cell
                = NSMakeRect(body.origin.x + static_cast<double>(i % kColumns) * (width + kGap),
                    body.origin.y + static_cast<double>(row) * (height + kGap), width, height);
            drawGround(ground, cell);
            ++i;
        }
    }

    static void drawGround(const Ref<NSColor>& ground, NSRect cell)
    {
        fillRounded(cell, 6, ground.get());
        strokeRounded(cell, 6, palette().border.get());
        NSRect half = cell;
        half.size.width /= 2;
        drawCentered("Aa"_ns, half, Style::figure, whiteOrBlackOnBackgroundColor(ground).get());
        half.origin.x += half.size.width;
        drawCentered("Aa"_ns, half, Style::figure, contrastingColor(ground).get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(GroundsCard, Writing)

// ---- mixtures

template <> struct MixturesCard::Methods<struct Mixing> {

    static constexpr int kSteps = 10;
    static constexpr double kLabelWidth = 150;
    static constexpr double kGap = 6;

    struct Row {
        NSString* label;
        Ref<NSColor> (*mixed)(const Ref<NSColor>& color, NSColor* other, double part);
    };

    static std::array<Row, 6> rows()
    {
        using Color = const Ref<NSColor>&;
        return { Row { "interpolated"_ns,
                     [](Color color, NSColor* other, double part) {
                         return interpolatedColorToColor_atValue(color, other, part);
                     } },
            Row { "red and blue only"_ns,
                [](Color color, NSColor* other, double part) {
                    const double amounts[] { part, 0, part, 0 };
                    return colorWithRGBBlendFrom_blendingAmounts(color, other, amounts);
                } },
            Row { "by hue and saturation"_ns,
                [](Color color, NSColor* other, double part) {
                    const double amounts[] { part, part, part, part };
                    return colorWithHSBBlendFrom_blendingAmounts(color, other, amounts);
                } },
            Row { "lighter"_ns,
                [](Color color, NSColor*, double part) {
                    return lighterColorWithLevel(color, part);
                } },
            Row { "darker"_ns,
                [](Color color, NSColor*, double part) {
                    return darkerColorWithLevel(color, part);
                } },
            Row { "in other hues"_ns, [](Color color, NSColor*, double part) {
                     const auto hue
                         = NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
                             part, 1, 1, 1);
                     return colorWithHueFrom(color, hue.get());
                 } } };
    }

    static void drawBody(MixturesCard& self, NSRect body)
    {
        const auto all = rows();
        const double height = body.size.height / static_cast<double>(all.size());
        const double width = (body.size.width - kLabelWidth + kGap) / (kSteps + 1);
        const Ref<NSColor> color = self.color();
        double y = body.origin.y;
        for (const Row& row : all) {
            drawText(row.label, { body.origin.x, y + (height - kGap) / 2 - 7 }, Style::caption,
                palette().quietText.get());
            for (int i = 0; i <= kSteps; ++i) {
                const Ref<NSColor> mixed
                    = row.mixed(color, palette().accent.get(), i / double { kSteps });
                const NSRect cell = NSMakeRect(
                    body.origin.x + kLabelWidth + i * width, y, width - kGap, height - kGap);
                fillRounded(cell, 5, mixed.get());
                strokeRounded(cell, 5, palette().border.get());
            }
            y += height;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(MixturesCard, Mixing)

}
