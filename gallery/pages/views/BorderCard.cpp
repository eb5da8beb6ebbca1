// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "ViewCards.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct BorderCard::Methods<struct Edges> {

    static constexpr std::int32_t kEdges[]
        = { BRBorderEdgeLeft, BRBorderEdgeTop, BRBorderEdgeRight, BRBorderEdgeBottom };

    static Ref<NSView> initWithFrame(BorderCard& self, NSRect frame)
    {
        self.setHeading("Borders"_ns);
        self.setCaption("A child is kept within the lines when the view changes"_ns);
        self.bordered_ = make<BRBorderedView>();
        self.child_ = make<GWBackgroundColorView>();
        self.bordered_->addSubview(self.child_.get());
        self.bordered_->setViewKeptWithinBorderBounds(self.child_.get());
        self.bordered_->setAutosizeView(true);
        self.bordered_->setBorderEdges(BRBorderEdgeLeft | BRBorderEdgeBottom);
        self.addSubview(self.bordered_.get());
        self.edges_ = { addChip(&self, "Left"_ns, "l"_ns, sending<"toggleLeft">(&self)),
            addChip(&self, "Top"_ns, "t"_ns, sending<"toggleTop">(&self)),
            addChip(&self, "Right"_ns, "r"_ns, sending<"toggleRight">(&self)),
            addChip(&self, "Bottom"_ns, "b"_ns, sending<"toggleBottom">(&self)) };
        self.size_ = addChip(&self, "Small"_ns, nullptr, sending<"changeSize">(&self));
        showEdges(self);
        return super<BorderCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void showEdges(BorderCard& self)
    {
        for (std::size_t i = 0; i < self.edges_.size(); ++i)
            self.edges_[i]->setOn((self.bordered_->borderEdges() & kEdges[i]) != 0);
        self.bordered_->setNeedsDisplay(true);
    }
    static void toggle(BorderCard& self, std::int32_t edge)
    {
        self.bordered_->setBorderEdges(self.bordered_->borderEdges() ^ edge);
        self.bordered_->frameDidChange();
        showEdges(self);
    }
    static void toggleLeft(BorderCard& self) { toggle(self, BRBorderEdgeLeft); }
    static void toggleTop(BorderCard& self) { toggle(self, BRBorderEdgeTop); }
    static void toggleRight(BorderCard& self) { toggle(self, BRBorderEdgeRight); }
    static void toggleBottom(BorderCard& self) { toggle(self, BRBorderEdgeBottom); }
    static void changeSize(BorderCard& self)
    {
        self.small_ = !self.small_;
        self.size_->setOn(self.small_);
        layOut(self);
    }

    static void layOut(BorderCard& self)
    {
        if (!self.size_)
            return;
        const NSRect body = self.bodyRect();
        layOutChips({ self.edges_[0].get(), self.edges_[1].get(), self.edges_[2].get(),
                        self.edges_[3].get(), self.size_.get() },
            body.origin);
        const double top = kChipHeight + 16;
        const double share = self.small_ ? 0.6 : 1;
        self.bordered_->setFrame(NSMakeRect(body.origin.x, body.origin.y + top,
            std::round(body.size.width * share), std::round((body.size.height - top) * share)));
    }
    static void setFrameSize(BorderCard& self, NSSize size)
    {
        super<BorderCard, "setFrameSize:">(self, size);
        layOut(self);
    }
    static void drawRect(BorderCard& self, NSRect dirty)
    {
        self.bordered_->setBorderColor(palette().accent.get());
        self.child_->setBackgroundColor(palette().soft.get());
        super<BorderCard, "drawRect:">(self, dirty);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "toggleLeft", imp<toggleLeft> },
            { "toggleTop", imp<toggleTop> },
            { "toggleRight", imp<toggleRight> },
            { "toggleBottom", imp<toggleBottom> },
            { "changeSize", imp<changeSize> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(BorderCard, Edges)

}
