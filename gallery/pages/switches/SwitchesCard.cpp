// SPDX-License-Identifier: Apache-2.0
#include "SwitchesCard.h"

#include <array>
#include <cmath>

#include "appkit/NSAffineTransform.h"
#include "appkit/NSGraphicsContext.h"
#include "controls/OnOffSwitchControlCell.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kNameWidth = 92;
    constexpr double kRowHeight = 46;
    constexpr std::array kStates { NSOffState, NSMixedState, NSOnState };

    Ref<NSString> text(const char* characters)
    {
        return NSString::cls().stringWithUTF8String(characters);
    }
    double columnAt(NSRect body, std::size_t column)
    {
        const double width = std::floor((body.size.width - kNameWidth) / kStates.size());
        return body.origin.x + kNameWidth + width * static_cast<double>(column);
    }
    double rowAt(NSRect body, std::size_t row)
    {
        return body.origin.y + 28 + kRowHeight * static_cast<double>(row);
    }
    void drawHeads(NSRect body)
    {
        constexpr const char* heads[] = { "Off", "Mixed", "On" };
        for (std::size_t column = 0; column < kStates.size(); ++column)
            drawText(text(heads[column]).get(), { columnAt(body, column), body.origin.y },
                Style::caption, palette().quietText.get());
    }

}

template <> struct SwitchesCard::Methods<struct Rows> {

    struct Row {
        const char* name;
        NSSize size;
        bool enabled;
    };
    static constexpr std::array kRows {
        Row { "Regular", { 60, 22 }, true },
        Row { "Large", { 76, 28 }, true },
        Row { "Small", { 44, 16 }, true },
        Row { "Disabled", { 60, 22 }, false },
    };

    static Ref<NSView> initWithFrame(SwitchesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<SwitchesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Slide switches"_ns);
        self.setCaption("Click, drag the thumb, or press Left and Right"_ns);
        for (const Row& row : kRows) {
            for (const NSInteger state : kStates) {
                Ref<OnOffSwitchControl> control = make<OnOffSwitchControl>();
                control->setAllowsMixedState(state == NSMixedState);
                control->setState(state);
                control->setEnabled(row.enabled);
                control->setTarget(&self);
                control->setAction(selector<"changed:">);
                self.addSubview(control.get());
                self.switches_.push_back(control);
            }
        }
        return made;
    }
    static void setFrameSize(SwitchesCard& self, NSSize size)
    {
        super<SwitchesCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        for (std::size_t i = 0; i < self.switches_.size(); ++i) {
            const NSSize wanted = kRows[i / kStates.size()].size;
            self.switches_[i]->setFrame(NSMakeRect(columnAt(body, i % kStates.size()),
                rowAt(body, i / kStates.size()) + std::round((30 - wanted.height) / 2),
                wanted.width, wanted.height));
        }
    }
    static void drawBody(SwitchesCard& self, NSRect body)
    {
        drawHeads(body);
        for (std::size_t row = 0; row < kRows.size(); ++row)
            drawText(text(kRows[row].name).get(), { body.origin.x, rowAt(body, row) + 7 },
                Style::body, palette().text.get());
        const Ref<NSString> count
            = NSString::cls().stringWithFormat("Actions sent: %lu"_ns, self.actions_);
        drawText(count.get(), { body.origin.x, NSMaxY(body) - 16 }, Style::figure,
            palette().quietText.get());
    }
    static void changed(SwitchesCard& self, NSObject*)
    {
        ++self.actions_;
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "changed:", imp<changed> },
        });
    }
};
BRINDLE_RECORD(SwitchesCard, Rows)

template <> struct TintsCard::Methods<struct Rows> {

    struct Pair {
        const char* name;
        std::int32_t scheme;
    };
    static constexpr std::array kPairs {
        Pair { "1  Custom", OnOffSwitchControlCustomColors },
        Pair { "2  Blue", OnOffSwitchControlDefaultColors },
        Pair { "3  Green, red", OnOffSwitchControlGreenRedColors },
        Pair { "4  Blue, red", OnOffSwitchControlBlueRedColors },
    };

    static Ref<NSView> initWithFrame(TintsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<TintsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Tints and labels"_ns);
        self.setCaption("What a subclass draws behind the thumb"_ns);
        return made;
    }
    static void drawBody(TintsCard& self, NSRect body)
    {
        drawHeads(body);
        const Ref<OnOffSwitchControlCell> cell = make<OnOffSwitchControlCell>();
        const Ref<NSColor> orange = NSColor::cls().systemOrangeColor();
        const Ref<NSColor> purple = NSColor::cls().systemPurpleColor();
        cell->setOnOffSwitchCustomOnColor_offColor(orange.get(), purple.get());
        cell->setAllowsMixedState(true);
        for (std::size_t row = 0; row < kPairs.size(); ++row) {
            drawText(text(kPairs[row].name).get(), { body.origin.x, rowAt(body, row) + 7 },
                Style::body, palette().text.get());
            cell->setOnOffSwitchControlColors(kPairs[row].scheme);
            for (std::size_t column = 0; column < kStates.size(); ++column)
                drawOne(self, *cell, kStates[column],
                    NSMakeRect(columnAt(body, column), rowAt(body, row) + 3, 70, 24));
        }
    }
    static void drawOne(
        TintsCard& self, OnOffSwitchControlCell& cell, NSInteger state, NSRect frame)
    {
        cell.setState(state);
        const Ref<NSColor> ground
            = NSColor::cls().colorWithCalibratedWhite_alpha(isDark() ? 0.34 : 0.62, 1);
        fillRounded(frame, 2.5, ground.get());
        // As in a control of its own: there the frame begins at 0, where alone a mixed thumb is in the middle, and labels
        // end at the edges.
        const GraphicsStateGuard guard;
        NSRectClip(frame);
        const Ref<NSAffineTransform> place = NSAffineTransform::cls().transform();
        place->translateXBy_yBy(frame.origin.x, frame.origin.y);
        place->concat();
        cell.tintBackgroundWithFrame_inView(
            NSMakeRect(0, 0, frame.size.width, frame.size.height), &self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(TintsCard, Rows)

}
