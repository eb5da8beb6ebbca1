// SPDX-License-Identifier: Apache-2.0
#include "ScrollCards.h"
#include "foundation/NSString.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "viewkit/NSScrollView+GWExtensions.h"

namespace gallery {

using namespace brindle;

template <> struct LinesView::Methods<struct Drawing> {

    static constexpr double kLine = 25;

    static bool isFlipped(LinesView&) { return true; }
    static void drawRect(LinesView& self, NSRect rect)
    {
        fill(rect, palette().card.get());
        for (int i = static_cast<int>(NSMinY(rect) / kLine); i * kLine < NSMaxY(rect); ++i) {
            const NSRect line = NSMakeRect(0, i * kLine, self.bounds().size.width, kLine);
            if (i % 2)
                fill(line, palette().soft.get());
            drawText(NSString::cls().stringWithFormat("y %d"_ns, static_cast<int>(i * kLine)).get(),
                { 12, i * kLine + 5 }, Style::body, palette().text.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({ { "isFlipped", imp<isFlipped> }, { "drawRect:", imp<drawRect> } });
    }
};
BRINDLE_RECORD(LinesView, Drawing)

template <> struct PositionCard::Methods<struct Position> {

    static constexpr double kReadoutHeight = 58;

    static WeakRef<PositionCard>& present()
    {
        static auto* const card = new WeakRef<PositionCard>;
        return *card;
    }
    // What follows a scroll view lasts as long as the process and keeps the view, so there is one for all cards.
    static Ref<NSScrollView> followed()
    {
        static const auto* const view = new Ref<NSScrollView>(makeFollowed());
        return *view;
    }
    static Ref<NSScrollView> makeFollowed()
    {
        const Ref<NSScrollView> scroll = make<NSScrollView>();
        scroll->setHasVerticalScroller(true);
        scroll->setBorderType(NSLineBorder);
        const Ref<NSView> lines = alloc<LinesView>()->initWithFrame(NSMakeRect(0, 0, 100, 1000));
        lines->setAutoresizingMask(NSViewWidthSizable);
        scroll->setDocumentView(lines.get());
        setScrollingBlock(scroll, [](NSRect visible) {
            if (const Ref<PositionCard> card = present().get()) {
                card->live_ = visible;
                ++card->steps_;
                card->setNeedsDisplay(true);
            }
        });
        setDidScrollBlock(scroll, [](double portion) {
            if (const Ref<PositionCard> card = present().get()) {
                card->settled_ = portion;
                ++card->rests_;
                card->setNeedsDisplay(true);
            }
        });
        return scroll;
    }
    static Ref<NSView> initWithFrame(PositionCard& self, NSRect frame)
    {
        self.setHeading("Position"_ns);
        self.setCaption("1.0 is where the middle of what shows is the middle of the document"_ns);
        self.scroll_ = followed();
        scrollToTop(self.scroll_);
        present() = &self;
        self.addSubview(self.scroll_.get());
        self.chips_ = {
            addChip(&self, "Top"_ns, "T"_ns, [scroll = self.scroll_] { scrollToTop(scroll); }),
            addChip(&self, "Portion 1.0"_ns, "P"_ns,
                [scroll = self.scroll_] { setScrollPortionY(scroll, 1); }),
            addChip(
                &self, "Bottom"_ns, "B"_ns, [scroll = self.scroll_] { scrollToBottom(scroll); }),
        };
        return super<PositionCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(PositionCard& self, NSSize size)
    {
        super<PositionCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        NSRect body = self.bodyRect();
        layOutChips({ self.chips_[0].get(), self.chips_[1].get(), self.chips_[2].get() },
            takeTop(body, kChipHeight).origin);
        takeBottom(body, kReadoutHeight);
        self.scroll_->setFrame(body);
    }
    static void drawBody(PositionCard& self, NSRect body)
    {
        NSPoint at { body.origin.x, NSMaxY(body) - kReadoutHeight };
        const auto say = [&](const Ref<NSString>& text) {
            drawText(text.get(), at, Style::code, palette().text.get());
            at.y += 20;
        };
        NSString::Meta strings = NSString::cls();
        say(strings.stringWithFormat("now      %.3f"_ns, scrollPortionY(self.scroll_)));
        say(strings.stringWithFormat(
            "steps    %d, last at y %.0f"_ns, self.steps_, self.live_.origin.y));
        say(strings.stringWithFormat("rests    %d, last at %.3f"_ns, self.rests_, self.settled_));
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
BRINDLE_RECORD(PositionCard, Position)

}
