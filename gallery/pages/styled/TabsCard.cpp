// SPDX-License-Identifier: Apache-2.0
#include "TabsCard.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSCharacterSet.h"
#include "foundation/NSLocale.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "kit/TextPane.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct TabsCard::Methods<struct Ruler> {

    static constexpr double kRuler = 34; // its height
    static constexpr double kMark = 18;
    static constexpr double kInset = 6; // of the text in its view
    static constexpr double kTick = 50;
    static constexpr double kCodeButton = 40; // at the right of the heading
    static constexpr double kChipTop = 14;

    static Ref<NSView> initWithFrame(TabsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<TabsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Tab stops"_ns);
        self.setCaption(
            "Drag a mark to move its column; click it for left, centred, right or decimal"_ns);
        const TextPane pane = addTextPane(self,
            "Lamp\tmade of\tstands\tgiven\tworth\n"
            "Desk\tbrass\tby the window\t12 March\t24.5\n"
            "Hall\tcopper and glass\ton the stair\t3 May\t108\n"
            "Night\tpaper\tbeside the bed\t21 November\t7.25"_ns);
        self.text_ = pane.text;
        self.scroll_ = pane.scroll;
        self.text_->setRichText(true);
        self.text_->setTextContainerInset({ kInset, 8 });
        self.text_->textStorage()->addAttribute_value_range(
            NSFontAttributeName, NSFont::cls().boldSystemFontOfSize(14).get(), NSMakeRange(0, 32));
        self.reset_ = addChip(&self, "As before"_ns, "b"_ns, sending<"resetStops">(&self));
        resetStops(self);
        return made;
    }
    static void resetStops(TabsCard& self)
    {
        self.stops_ = { { { 90, NSLeftTabStopType }, { 310, NSCenterTabStopType },
            { 490, NSRightTabStopType }, { 580, NSDecimalTabStopType } } };
        setTabs(self);
    }
    static Ref<NSTextTab> tabAt(const Stop& stop)
    {
        if (stop.type != NSDecimalTabStopType)
            return alloc<NSTextTab>()->initWithType_location(stop.type, stop.location);
        // The numbers of this text have points, whatever the user's have.
        const auto options = NSDictionary::cls().dictionaryWithObject_forKey(
            NSTextTab::cls().columnTerminatorsForLocale(NSLocale::cls().systemLocale().get()).get(),
            NSTabColumnTerminatorsAttributeName);
        return alloc<NSTextTab>()->initWithTextAlignment_location_options(
            NSTextAlignmentRight, stop.location, options.get());
    }
    /// Gives all paragraphs, and what is typed into an empty text, the stops of the marks.
    static void setTabs(TabsCard& self)
    {
        const Ref<NSMutableArray> tabs = make<NSMutableArray>();
        for (const Stop& stop : self.stops_)
            tabs->addObject(tabAt(stop).get());
        const Ref<NSMutableParagraphStyle> style = make<NSMutableParagraphStyle>();
        style->setTabStops(tabs.get());
        style->setLineBreakMode(NSLineBreakByClipping);
        style->setParagraphSpacing(6);
        const Ref<NSTextStorage> storage = self.text_->textStorage();
        storage->addAttribute_value_range(
            NSParagraphStyleAttributeName, style.get(), NSMakeRange(0, storage->length()));
        const auto typing
            = cast<NSMutableDictionary>(self.text_->typingAttributes()->mutableCopy());
        typing->setObject_forKey(style.get(), NSParagraphStyleAttributeName.get());
        self.text_->setTypingAttributes(typing.get());
        self.setNeedsDisplay(true);
    }

    static void setFrameSize(TabsCard& self, NSSize size)
    {
        super<TabsCard, "setFrameSize:">(self, size);
        if (!self.reset_)
            return;
        NSRect body = self.bodyRect();
        layOutChips({ self.reset_.get() },
            { NSMaxX(body) - kCodeButton - self.reset_->fittingWidth(), kChipTop });
        body.origin.y += kRuler;
        body.size.height -= kRuler;
        self.scroll_->setFrame(body);
        self.text_->setMinSize(self.scroll_->contentSize());
        self.text_->setFrameSize(self.scroll_->contentSize());
        self.text_->sizeToFit();
    }

    // ---- the marks

    /// Answers where lines of the text begin.
    static double lineStart(TabsCard& self)
    {
        const double x = kInset + self.text_->textContainer()->lineFragmentPadding();
        return self.scroll_->frame().origin.x + 1 + x;
    }
    static NSRect markOf(TabsCard& self, std::size_t stop)
    {
        return NSMakeRect(lineStart(self) + self.stops_[stop].location - kMark / 2,
            self.bodyRect().origin.y + kRuler - kMark - 4, kMark, kMark);
    }
    static bool mouseDownCanMoveWindow(TabsCard&) { return false; }
    static void mouseDown(TabsCard& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        self.wasDragged_ = false;
        self.held_ = kStops;
        for (std::size_t i = 0; i < kStops; ++i) {
            if (NSPointInRect(place, NSInsetRect(markOf(self, i), -2, -4)))
                self.held_ = i;
        }
        if (self.held_ < kStops)
            self.hold_ = place.x - self.stops_[self.held_].location;
        self.setNeedsDisplay(true);
    }
    static void mouseDragged(TabsCard& self, NSEvent* event)
    {
        if (self.held_ == kStops)
            return;
        self.wasDragged_ = true;
        const double most = self.bodyRect().size.width - 2 * kInset - kMark;
        const double x = self.convertPoint_fromView(event->locationInWindow(), nullptr).x;
        self.stops_[self.held_].location = std::clamp(std::round(x - self.hold_), 1.0, most);
        setTabs(self);
    }
    static NSTextTabType typeAfter(NSTextTabType type)
    {
        switch (type) {
        case NSLeftTabStopType:
            return NSCenterTabStopType;
        case NSCenterTabStopType:
            return NSRightTabStopType;
        case NSRightTabStopType:
            return NSDecimalTabStopType;
        default:
            return NSLeftTabStopType;
        }
    }
    static void mouseUp(TabsCard& self, NSEvent*)
    {
        if (self.held_ < kStops && !self.wasDragged_) {
            NSTextTabType& type = self.stops_[self.held_].type;
            type = typeAfter(type);
            setTabs(self);
        }
        self.held_ = kStops;
        self.setNeedsDisplay(true);
    }

    static void drawMark(TabsCard& self, std::size_t stop)
    {
        const Palette& colors = palette();
        const NSRect mark = markOf(self, stop);
        const NSTextTabType type = self.stops_[stop].type;
        const bool isHeld = stop == self.held_;
        fillRounded(mark, 5, (isHeld ? colors.accent : colors.soft).get());
        NSColor* const ink = (isHeld ? colors.accentText : colors.accent).get();
        // Lines of text as they stand at such a stop, decimal ones with their points.
        const bool isDecimal = type == NSDecimalTabStopType;
        const double room = isDecimal ? 6 : kMark - 8;
        const double share = type == NSLeftTabStopType ? 0 : type == NSCenterTabStopType ? 0.5 : 1;
        for (int i = 0; i < 3; ++i) {
            const double x = mark.origin.x + 4;
            const double y = mark.origin.y + 5 + i * 3.5;
            const double width = i == 1 ? room * 0.6 : room;
            fill(NSMakeRect(x + (room - width) * share, y, width, 1.5), ink);
            if (isDecimal)
                fill(NSMakeRect(x + room + 1.5, y, 1.5, 1.5), ink);
        }
    }
    static void drawBody(TabsCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const double foot = body.origin.y + kRuler;
        for (double x = lineStart(self); x < NSMaxX(body); x += kTick / 5) {
            const bool isLong = std::fmod(std::round(x - lineStart(self)), kTick) == 0;
            const double height = isLong ? 6 : 3;
            fill(NSMakeRect(std::round(x), foot - height, 1, height), colors.border.get());
        }
        for (std::size_t i = 0; i < kStops; ++i)
            drawMark(self, i);
    }

    static void table(Builder& t)
    {
        t.properties({ property<&TabsCard::text_>("text", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "resetStops", imp<resetStops> },
            { "setFrameSize:", imp<setFrameSize> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "mouseDown:", imp<mouseDown> },
            { "mouseDragged:", imp<mouseDragged> },
            { "mouseUp:", imp<mouseUp> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(TabsCard, Ruler)

}
