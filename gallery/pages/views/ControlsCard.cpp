// SPDX-License-Identifier: Apache-2.0
#include "ViewCards.h"
#include "foundation/NSString.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "viewkit/NSView+DisableSubviews.h"

namespace gallery {

using namespace brindle;

template <> struct ControlsCard::Methods<struct Enabling> {

    static constexpr NSInteger kButtons = 6;

    static Ref<NSView> initWithFrame(ControlsCard& self, NSRect frame)
    {
        self.setHeading("Trees of controls"_ns);
        self.setCaption("Boxes in boxes, six buttons with the tags 1 to 6"_ns);
        self.root_ = make<NSView>();
        self.addSubview(self.root_.get());
        Ref<NSView> box = self.root_;
        for (NSInteger tag = 1; tag <= kButtons; ++tag) {
            const Ref<NSButton> button = make<NSButton>();
            button->setTitle(NSString::cls().stringWithFormat("Tag %ld"_ns, tag).get());
            button->setTag(tag);
            if (tag % 2 == 0)
                button->setButtonType(NSSwitchButton);
            box->addSubview(button.get());
            self.buttons_.push_back(button);
            const Ref<NSView> inner = make<NSView>();
            box->addSubview_positioned_relativeTo(inner.get(), NSWindowBelow, nullptr);
            box = inner;
        }
        self.chips_ = { addChip(&self, "Tags 3 to 5 off"_ns, "g"_ns, sending<"turnTagsOff">(&self)),
            addChip(&self, "Buttons off"_ns, "o"_ns, sending<"turnOff">(&self)),
            addChip(&self, "All on"_ns, "a"_ns, sending<"turnOn">(&self)) };
        return super<ControlsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void turnTagsOff(ControlsCard& self)
    {
        disableSubviews(*self.root_, false);
        disableSubviews_startTag_endTag(*self.root_, true, 3, 5);
    }
    static void turnOff(ControlsCard& self)
    {
        disableSubviews_ofType(*self.root_, true, NSButton::cls());
    }
    static void turnOn(ControlsCard& self) { disableSubviews(*self.root_, false); }

    static void setFrameSize(ControlsCard& self, NSSize size)
    {
        super<ControlsCard, "setFrameSize:">(self, size);
        if (!self.chips_.back())
            return;
        const NSRect body = self.bodyRect();
        layOutChips(
            { self.chips_[0].get(), self.chips_[1].get(), self.chips_[2].get() }, body.origin);
        // Each box lies over the whole of the one it is in.
        const NSRect room = NSMakeRect(body.origin.x, body.origin.y + kChipHeight + 16,
            body.size.width, body.size.height - kChipHeight - 16);
        self.root_->setFrame(room);
        const double width = (room.size.width - 2 * kCardGap) / 3;
        for (std::size_t i = 0; i < self.buttons_.size(); ++i) {
            const Ref<NSView> box = self.buttons_[i]->superview();
            if (i > 0)
                box->setFrame({ {}, room.size });
            const double x = static_cast<double>(i % 3) * (width + kCardGap);
            const double y = room.size.height - 32 - static_cast<double>(i / 3) * 44;
            self.buttons_[i]->setFrame(NSMakeRect(x, y, width, 28));
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "turnTagsOff", imp<turnTagsOff> },
            { "turnOff", imp<turnOff> },
            { "turnOn", imp<turnOn> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(ControlsCard, Enabling)

}
