// SPDX-License-Identifier: Apache-2.0
#include "ChoicesCard.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ChoicesCard::Methods<struct Marks> {

    static constexpr double kRowHeight = 28;

    static Ref<NSButton> add(
        ChoicesCard& self, NSButtonType type, NSString* title, NSInteger state, bool enabled = true)
    {
        Ref<NSButton> button = make<NSButton>();
        button->setButtonType(type);
        button->setTitle(title);
        button->setAllowsMixedState(state == NSMixedState);
        button->setState(state);
        button->setEnabled(enabled);
        if (type == NSRadioButton && enabled) {
            button->setTarget(&self);
            button->setAction(selector<"choose:">);
        }
        self.addSubview(button.get());
        return button;
    }
    static Ref<NSView> initWithFrame(ChoicesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<ChoicesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Choices"_ns);
        self.setCaption("Radio buttons with one action are a group"_ns);
        self.boxes_ = {
            add(self, NSSwitchButton, "Off"_ns, NSOffState),
            add(self, NSSwitchButton, "On"_ns, NSOnState),
            add(self, NSSwitchButton, "Mixed"_ns, NSMixedState),
            add(self, NSSwitchButton, "Disabled, off"_ns, NSOffState, false),
            add(self, NSSwitchButton, "Disabled, on"_ns, NSOnState, false),
        };
        self.radios_ = {
            add(self, NSRadioButton, "Bakelite"_ns, NSOnState),
            add(self, NSRadioButton, "Walnut"_ns, NSOffState),
            add(self, NSRadioButton, "Brushed steel"_ns, NSOffState),
            add(self, NSRadioButton, "Disabled, off"_ns, NSOffState, false),
            add(self, NSRadioButton, "Disabled, on"_ns, NSOnState, false),
        };
        for (const NSControlSize size :
            { NSControlSizeMini, NSControlSizeSmall, NSControlSizeRegular, NSControlSizeLarge }) {
            Ref<NSButton> button = make<NSButton>();
            button->setTitle("Size"_ns);
            button->setControlSize(size);
            self.addSubview(button.get());
            self.sizes_.push_back(button);
        }
        return made;
    }

    static void column(const std::vector<Ref<NSButton>>& buttons, NSPoint at)
    {
        for (const Ref<NSButton>& button : buttons) {
            button->sizeToFit();
            button->setFrameOrigin(at);
            at.y += kRowHeight;
        }
    }
    static void setFrameSize(ChoicesCard& self, NSSize size)
    {
        super<ChoicesCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        column(self.boxes_, body.origin);
        column(self.radios_, { std::round(NSMidX(body)), body.origin.y });
        double left = body.origin.x - 2;
        for (const Ref<NSButton>& button : self.sizes_) {
            button->sizeToFit();
            const NSSize wanted = button->frame().size;
            button->setFrameOrigin({ left, std::round(NSMaxY(body) - 16 - wanted.height / 2) });
            left += wanted.width + 8;
        }
    }
    static void choose(ChoicesCard&, NSObject*) { }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "choose:", imp<choose> },
        });
    }
};
BRINDLE_RECORD(ChoicesCard, Marks)

}
