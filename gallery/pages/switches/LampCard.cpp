// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "SwitchesCard.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSGradient.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct LampCard::Methods<struct Light> {

    static constexpr NSSize kSwitch { 112, 40 };

    static Ref<NSView> initWithFrame(LampCard& self, NSRect frame)
    {
        Ref<NSView> made = super<LampCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("A lamp"_ns);
        self.setCaption("Off, dimmed or on: drag the thumb, or press Left and Right"_ns);
        self.switch_ = make<OnOffSwitchControl>();
        self.switch_->setAllowsMixedState(true);
        self.switch_->setState(NSMixedState);
        self.switch_->setTarget(&self);
        self.switch_->setAction(selector<"turn:">);
        self.addSubview(self.switch_.get());
        return made;
    }
    static void setFrameSize(LampCard& self, NSSize size)
    {
        super<LampCard, "setFrameSize:">(self, size);
        const NSPoint corner = self.bodyRect().origin;
        maybe(self.switch_)
            ->setFrame(
                NSMakeRect(corner.x, corner.y + kFigureHeight + 12, kSwitch.width, kSwitch.height));
    }
    static void turn(LampCard& self, NSObject*) { self.setNeedsDisplay(true); }

    static double brightness(LampCard& self)
    {
        const NSInteger state = self.switch_->state();
        return state == NSOnState ? 1 : state == NSMixedState ? 0.45 : 0;
    }
    static void drawLight(NSPoint center, double radius, double brightness)
    {
        const auto light = [](double alpha) {
            return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(1, 0.78, 0.3, alpha);
        };
        const Ref<NSGradient> glow = alloc<NSGradient>()->initWithStartingColor_endingColor(
            light(brightness).get(), light(0).get());
        const Ref<NSBezierPath> disc = NSBezierPath::cls().bezierPathWithOvalInRect(
            NSMakeRect(center.x - radius, center.y - radius, 2 * radius, 2 * radius));
        glow->drawInBezierPath_relativeCenterPosition(disc.get(), {});
    }
    static void drawLamp(NSPoint center, double brightness)
    {
        const Palette& colors = palette();
        const NSRect bulb = NSMakeRect(center.x - 17, center.y - 19, 34, 34);
        const double warmth = 0.25 + 0.75 * brightness;
        const Ref<NSColor> glass = NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            1, 0.86, 0.45, brightness > 0 ? warmth : 0.12);
        fillRounded(bulb, 17, glass.get());
        strokeRounded(bulb, 17, colors.quietText.get());
        fillRounded(NSMakeRect(center.x - 8, NSMaxY(bulb) - 1, 16, 12), 3, colors.quietText.get());
    }
    static void drawBody(LampCard& self, NSRect body)
    {
        static constexpr const char* kNames[] = { "Dimmed", "Off", "On" };
        const NSInteger state = self.switch_->state();
        drawFigure(stringFrom(kNames[state + 1]).get(), "the switch’s state"_ns, body);
        const double room = body.size.width - kSwitch.width;
        const NSPoint center { body.origin.x + kSwitch.width + room / 2, NSMidY(body) };
        const double light = brightness(self);
        if (light > 0)
            drawLight(center, std::min(body.size.height / 2 + 8, room / 2), light);
        drawLamp(center, light);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "turn:", imp<turn> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(LampCard, Light)

}
