// SPDX-License-Identifier: Apache-2.0
#include "ShadowsCard.h"

#include <cmath>
#include <numbers>

#include "appkit/NSBezierPath.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSMutableDictionary.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ShadowsCard::Methods<struct Shadows> {

    static constexpr double kDial = 34;
    static constexpr double kControls = 46; // the height of their row
    static constexpr double kLabel = 16;

    static Ref<NSSlider> addSlider(ShadowsCard& self, double value, double most)
    {
        Ref<NSSlider> slider = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
            value, 0, most, &self, selector<"shadowChanged:">);
        self.addSubview(slider.get());
        return slider;
    }
    static Ref<NSView> initWithFrame(ShadowsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<ShadowsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Shadows"_ns);
        self.setCaption("NSShadow: of text, or set for what is drawn"_ns);
        self.direction_ = addSlider(self, 150, 360);
        self.direction_->setSliderType(NSCircularSlider);
        self.distance_ = addSlider(self, 5, 16);
        self.softness_ = addSlider(self, 5, 16);
        self.glow_ = addChip(&self, "Glow"_ns, "o"_ns, sending<"glow">(&self));
        return made;
    }
    static void changed(ShadowsCard& self, NSObject*) { self.setNeedsDisplay(true); }
    static void glow(ShadowsCard& self)
    {
        self.glow_->setOn(!self.glow_->isOn());
        self.setNeedsDisplay(true);
    }
    static Ref<NSShadow> shadow(ShadowsCard& self)
    {
        const double angle = self.direction_->doubleValue() * std::numbers::pi / 180;
        const double distance = self.distance_->doubleValue();
        Ref<NSShadow> made = make<NSShadow>();
        made->setShadowOffset({ distance * std::sin(angle), distance * std::cos(angle) });
        made->setShadowBlurRadius(self.softness_->doubleValue());
        const Ref<NSColor> black = NSColor::cls().colorWithWhite_alpha(0, isDark() ? 0.9 : 0.45);
        made->setShadowColor((self.glow_->isOn() ? palette().accent : black).get());
        return made;
    }

    /// Answers the row of controls: the dial at the left, two sliders with the room between them.
    struct Row {
        NSRect dial, distance, softness;
    };
    static Row controls(ShadowsCard& self)
    {
        const NSRect body = self.bodyRect();
        const double y = NSMaxY(body) - kControls;
        const double left = body.origin.x + kDial + kCardGap;
        const double chip = self.glow_->fittingWidth() + kCardGap;
        const double width = (NSMaxX(body) - chip - left - kCardGap) / 2;
        return { NSMakeRect(body.origin.x, y + (kControls - kDial) / 2, kDial, kDial),
            NSMakeRect(left, y + kLabel, width, kControls - kLabel),
            NSMakeRect(left + width + kCardGap, y + kLabel, width, kControls - kLabel) };
    }
    static void putInMiddle(const Ref<NSSlider>& slider, NSRect room)
    {
        slider->setFrameSize({ room.size.width, 10 });
        slider->sizeToFit();
        slider->setFrameOrigin(
            { room.origin.x, std::round(NSMidY(room) - slider->frame().size.height / 2) });
    }
    static void setFrameSize(ShadowsCard& self, NSSize size)
    {
        super<ShadowsCard, "setFrameSize:">(self, size);
        if (!self.glow_)
            return;
        const Row row = controls(self);
        self.direction_->setFrame(row.dial);
        putInMiddle(self.distance_, row.distance);
        putInMiddle(self.softness_, row.softness);
        const NSRect body = self.bodyRect();
        layOutChips({ self.glow_.get() },
            { NSMaxX(body) - self.glow_->fittingWidth(), NSMaxY(body) - kChipHeight - 1 });
    }

    static void drawLetters(const Ref<NSShadow>& shadow, NSRect room)
    {
        const auto attributes = make<NSMutableDictionary>();
        attributes->setObject_forKey(
            NSFont::cls().boldSystemFontOfSize(38).get(), NSFontAttributeName.get());
        attributes->setObject_forKey(palette().text.get(), NSForegroundColorAttributeName.get());
        attributes->setObject_forKey(shadow.get(), NSShadowAttributeName.get());
        const NSSize size = sizeWithAttributes("Lamplight"_ns, attributes.get());
        drawAtPoint_withAttributes(
            "Lamplight"_ns, { room.origin.x, NSMidY(room) - size.height / 2 }, attributes.get());
    }
    static void drawShapes(const Ref<NSShadow>& shadow, NSRect room)
    {
        const Palette& colors = palette();
        const double side = std::min(room.size.height - 24, 64.0);
        const NSRect first = NSMakeRect(room.origin.x + 4, NSMidY(room) - side / 2, side, side);
        const NSRect second = NSOffsetRect(first, side + 36, 0);
        const NSRect third = NSOffsetRect(second, side + 36, 0);
        GraphicsStateGuard saved;
        shadow->set();
        colors.accent->setFill();
        NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(first, 10, 10)->fill();
        colors.codeClass->setFill();
        NSBezierPath::cls().bezierPathWithOvalInRect(second)->fill();
        const Ref<NSBezierPath> ring
            = NSBezierPath::cls().bezierPathWithOvalInRect(inset(third, 4));
        ring->setLineWidth(8);
        colors.codeText->setStroke();
        ring->stroke();
    }
    static void drawBody(ShadowsCard& self, NSRect body)
    {
        const Row row = controls(self);
        const Ref<NSColor>& quiet = palette().quietText;
        drawText("Away"_ns, { row.distance.origin.x, row.distance.origin.y - kLabel },
            Style::caption, quiet.get());
        drawText("Soft"_ns, { row.softness.origin.x, row.softness.origin.y - kLabel },
            Style::caption, quiet.get());
        body.size.height -= kControls + kCardGap;
        const Ref<NSShadow> shadow = self.shadow();
        drawLetters(shadow, takeTop(body, (body.size.height - kCardGap) / 2));
        drawShapes(shadow, body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "shadowChanged:", imp<changed> },
            { "glow", imp<glow> },
            { "shadow", imp<shadow> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ShadowsCard, Shadows)

}
