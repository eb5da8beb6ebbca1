// SPDX-License-Identifier: Apache-2.0
#include "KindsCard.h"

#include <array>
#include <cmath>

#include "appkit/NSSearchField.h"
#include "appkit/NSSecureTextField.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct KindsCard::Methods<struct Kinds> {

    static constexpr double kRow = 40;
    static constexpr double kNames = 84;
    static constexpr std::array kRows { "Plain", "Empty", "Rounded", "Search", "Secret", "Bordered",
        "Disabled", "Label", "Wrapping" };

    static Ref<NSTextField> field(NSString* text)
    {
        const Ref<NSTextField> made = make<NSTextField>();
        made->setStringValue(text);
        return made;
    }
    static void addFields(KindsCard& self)
    {
        self.fields_ = { field("Walnut and brushed steel"_ns), field(""_ns), field("Rounded"_ns),
            cast<NSTextField>(make<NSSearchField>()), cast<NSTextField>(make<NSSecureTextField>()),
            field("One line around it"_ns), field("Not to be changed"_ns),
            NSTextField::cls().labelWithString("A label"_ns),
            NSTextField::cls().wrappingLabelWithString(
                "A label that breaks into lines, and whose text can be selected and copied"_ns) };
        self.fields_[1]->setPlaceholderString("A placeholder"_ns);
        self.fields_[2]->setBezelStyle(NSTextFieldRoundedBezel);
        self.fields_[3]->setStringValue("walnut"_ns);
        self.fields_[4]->setStringValue("secret"_ns);
        self.fields_[5]->setBordered(true);
        self.fields_[5]->setUsesSingleLineMode(true);
        self.fields_[6]->setEnabled(false);
    }
    static Ref<NSView> initWithFrame(KindsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<KindsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Fields"_ns);
        self.setCaption("Texts that are typed, selected or only read"_ns);
        addFields(self);
        for (const auto& text : self.fields_)
            self.addSubview(text.get());
        return made;
    }
    static double rowAt(NSRect body, std::size_t row)
    {
        const double height = std::min(kRow, body.size.height / kRows.size());
        return body.origin.y + height * static_cast<double>(row);
    }
    static void setFrameSize(KindsCard& self, NSSize size)
    {
        super<KindsCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        for (std::size_t row = 0; row < self.fields_.size(); ++row) {
            const bool wraps = row + 1 == self.fields_.size();
            const bool label = row + 2 >= self.fields_.size();
            const double height = wraps ? 36 : label ? 18 : 24;
            self.fields_[row]->setFrame(NSMakeRect(body.origin.x + kNames,
                rowAt(body, row) + (label ? 5 : 2), body.size.width - kNames, height));
        }
    }
    static void drawBody(KindsCard&, NSRect body)
    {
        for (std::size_t row = 0; row < kRows.size(); ++row)
            drawText(NSString::cls().stringWithUTF8String(kRows[row]).get(),
                { body.origin.x, rowAt(body, row) + 6 }, Style::body, palette().text.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(KindsCard, Kinds)

}
