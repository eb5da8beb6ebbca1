// SPDX-License-Identifier: Apache-2.0
#include "BezelsCard.h"

#include <array>
#include <cmath>

#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct BezelsCard::Methods<struct Rows> {

    struct Row {
        const char* name;
        NSBezelStyle style;
        bool isDefault;
    };
    static constexpr std::array kRows {
        Row { "Push", NSRoundedBezelStyle, false },
        Row { "Default", NSRoundedBezelStyle, true },
        Row { "Square", NSRegularSquareBezelStyle, false },
        Row { "Round", NSRoundRectBezelStyle, false },
        Row { "Recessed", NSRecessedBezelStyle, false },
        Row { "Inline", NSInlineBezelStyle, false },
    };
    static constexpr std::array kStates { "At rest", "Pressed", "On", "Disabled" };
    static constexpr double kNameWidth = 74;
    static constexpr double kHeaderHeight = 24;

    static Ref<NSButton> makeButton(const Row& row, std::size_t state)
    {
        Ref<NSButton> button = make<NSButton>();
        button->setBezelStyle(row.style);
        button->setTitle("Button"_ns);
        if (state == 2)
            button->setButtonType(NSPushOnPushOffButton);
        if (row.isDefault && state != 2)
            button->setKeyEquivalent("\r"_ns);
        button->highlight(state == 1);
        button->setState(state == 2 ? NSOnState : NSOffState);
        button->setEnabled(state != 3);
        return button;
    }
    static Ref<NSView> initWithFrame(BezelsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<BezelsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Buttons"_ns);
        self.setCaption("One look in every style; Space presses the one with the ring"_ns);
        for (const Row& row : kRows) {
            for (std::size_t state = 0; state < kStates.size(); ++state) {
                self.buttons_.push_back(makeButton(row, state));
                self.addSubview(self.buttons_.back().get());
            }
        }
        return made;
    }

    static NSPoint cellOrigin(NSRect body, std::size_t row, std::size_t column)
    {
        const double width = (body.size.width - kNameWidth) / static_cast<double>(kStates.size());
        const double height
            = (body.size.height - kHeaderHeight) / static_cast<double>(kRows.size());
        return { std::round(body.origin.x + kNameWidth + width * static_cast<double>(column)),
            std::round(body.origin.y + kHeaderHeight + height * (static_cast<double>(row) + 0.5)) };
    }
    static void setFrameSize(BezelsCard& self, NSSize size)
    {
        super<BezelsCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        for (std::size_t i = 0; i < self.buttons_.size(); ++i) {
            const NSPoint at = cellOrigin(body, i / kStates.size(), i % kStates.size());
            self.buttons_[i]->sizeToFit();
            const NSSize wanted = self.buttons_[i]->frame().size;
            self.buttons_[i]->setFrameOrigin({ at.x, at.y - std::round(wanted.height / 2) });
        }
    }
    static void drawBody(BezelsCard&, NSRect body)
    {
        NSColor* const quiet = palette().quietText.get();
        for (std::size_t column = 0; column < kStates.size(); ++column)
            drawText(NSString::cls().stringWithUTF8String(kStates[column]).get(),
                { cellOrigin(body, 0, column).x + 3, body.origin.y }, Style::caption, quiet);
        for (std::size_t row = 0; row < kRows.size(); ++row)
            drawText(NSString::cls().stringWithUTF8String(kRows[row].name).get(),
                { body.origin.x, cellOrigin(body, row, 0).y - 8 }, Style::body,
                palette().text.get());
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
BRINDLE_RECORD(BezelsCard, Rows)

}
