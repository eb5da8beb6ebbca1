// SPDX-License-Identifier: Apache-2.0
#include "FormattersCard.h"

#include <cmath>

#include "controls/GWEditTextField.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FormattersCard::Methods<struct Reading> {

    static constexpr double kFieldHeight = 24;
    static constexpr double kGap = 20;
    static constexpr std::array<const char*, kFields> kNames { "Number", "Money", "Percent",
        "Date" };

    static Ref<NSFormatter> formatter(NSNumberFormatterStyle style)
    {
        const Ref<NSNumberFormatter> made = make<NSNumberFormatter>();
        made->setNumberStyle(style);
        return made;
    }
    static Ref<NSFormatter> dayFormatter()
    {
        const Ref<NSDateFormatter> made = make<NSDateFormatter>();
        made->setDateStyle(NSDateFormatterMediumStyle);
        return made;
    }
    static void add(FormattersCard& self, std::size_t index, const Ref<NSFormatter>& formatter,
        const Ref<NSObject>& value)
    {
        const auto field = cast<NSTextField>(make<GWEditTextField>()); // selects all of its text
        field->setFormatter(formatter.get());
        field->setObjectValue(value.get());
        field->setDelegate(&self);
        self.fields_[index] = field;
        self.addSubview(field.get());
    }
    static Ref<NSView> initWithFrame(FormattersCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FormattersCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("With formatters"_ns);
        self.setCaption(
            "What is no number, or no date, is not taken; Tab selects all of the next"_ns);
        const auto number = [](double value) { return NSNumber::cls().numberWithDouble(value); };
        add(self, 0, formatter(NSNumberFormatterDecimalStyle), number(12345.5));
        add(self, 1, formatter(NSNumberFormatterCurrencyStyle), number(249.9));
        add(self, 2, formatter(NSNumberFormatterPercentStyle), number(0.4));
        add(self, 3, dayFormatter(), NSDate::cls().date());
        return made;
    }

    static NSRect cellAt(NSRect body, std::size_t index)
    {
        const double width = (body.size.width - (kFields - 1) * kGap) / kFields;
        return NSMakeRect(body.origin.x + static_cast<double>(index) * (width + kGap),
            body.origin.y, width, kFieldHeight);
    }
    static double nameWidth(std::size_t index)
    {
        return std::ceil(sizeOf(stringFrom(kNames[index]).get(), Style::body).width) + 10;
    }
    static void setFrameSize(FormattersCard& self, NSSize size)
    {
        super<FormattersCard, "setFrameSize:">(self, size);
        for (std::size_t i = 0; i < kFields; ++i) {
            NSRect place = cellAt(self.bodyRect(), i);
            place.origin.x += nameWidth(i);
            place.size.width -= nameWidth(i);
            maybe(self.fields_[i])->setFrame(place);
        }
    }

    // ---- what was typed

    static bool didFail(FormattersCard& self, NSControl*, NSString* text, NSString*)
    {
        self.refused_ = text;
        self.setNeedsDisplay(true);
        return false; // the text stays until it is right, or Escape puts the old one back
    }
    static void didEnd(FormattersCard& self, NSNotification*)
    {
        self.refused_ = nullptr;
        self.setNeedsDisplay(true);
    }
    static void drawBody(FormattersCard& self, NSRect body)
    {
        const Palette& colors = palette();
        for (std::size_t i = 0; i < kFields; ++i) {
            const NSPoint corner = cellAt(body, i).origin;
            drawText(stringFrom(kNames[i]).get(), { corner.x, corner.y + 4 }, Style::body,
                colors.text.get());
        }
        if (!self.refused_)
            return;
        const auto said = NSString::cls().stringWithFormat(
            "“%@” is not taken; Escape puts back what was there"_ns, self.refused_.get());
        drawFitted(said.get(), { body.origin.x, body.origin.y + kFieldHeight + 8 }, body.size.width,
            Style::caption, colors.accent.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "control:didFailToFormatString:errorDescription:", imp<didFail> },
            { "controlTextDidEndEditing:", imp<didEnd> },
        });
    }
};
BRINDLE_RECORD(FormattersCard, Reading)

}
