// SPDX-License-Identifier: Apache-2.0
#include "OnOffSwitchControlCell.h"

#include "appkit/HIMouseTracking.h"
#include "appkit/NSView.h"
#include "foundation/Pages.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct OnOffSwitchControlCell::Methods<struct Basics> {

    static bool prefersTrackingUntilMouseUp(Class&) { return true; }
    static NSFocusRingType defaultFocusRingType(Class&) { return NSFocusRingTypeExterior; }

    // ---- making

    static Ref<NSCell> initImageCell(OnOffSwitchControlCell& self, NSImage* image)
    {
        Ref<NSCell> made
            = super<OnOffSwitchControlCell, "initImageCell:", Ref<NSCell>>(self, image);
        if (made)
            self.furtherInit();
        return made;
    }
    static Ref<NSCell> initTextCell(OnOffSwitchControlCell& self, NSString* text)
    {
        Ref<NSCell> made = super<OnOffSwitchControlCell, "initTextCell:", Ref<NSCell>>(self, text);
        if (made)
            self.furtherInit();
        return made;
    }
    static Ref<NSObject> initWithCoder(OnOffSwitchControlCell& self, NSCoder* coder)
    {
        Ref<NSObject> made
            = super<OnOffSwitchControlCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (made)
            self.furtherInit();
        return made;
    }

    // The page is kept for ever: drags of a cell that is gone may still be on their way.
    static double* makeClickLimits()
    {
        constexpr std::uint32_t kStickyClick = 0x73746963;
        auto* const limits = static_cast<double*>(NSAllocateMemoryPages(3 * sizeof(double)));
        NSSize distance;
        if (!limits)
            return nullptr;
        if (HIMouseTrackingGetParameters(kStickyClick, &limits[0], &distance) != 0) {
            limits[0] = 1.0 / 3;
            distance = { 6, 6 };
        }
        limits[1] = distance.width;
        limits[2] = distance.height;
        return limits;
    }
    static void furtherInit(OnOffSwitchControlCell& self)
    {
        self.setFocusRingType(self.classObject()->send<"defaultFocusRingType", NSFocusRingType>());
        self.clickLimits_ = makeClickLimits();
        self.setShowsOnOffLabels(true);
        self.setOnOffSwitchControlColors(OnOffSwitchControlDefaultColors);
        self.setOnSwitchLabel("ON"_ns);
        self.setOffSwitchLabel("OFF"_ns);
    }
    static Ref<NSObject> copyWithZone(OnOffSwitchControlCell& self, void* zone)
    {
        const Ref<OnOffSwitchControlCell> copy = cast<OnOffSwitchControlCell>(
            super<OnOffSwitchControlCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->setShowsOnOffLabels(self.showsOnOffLabels());
        copy->setOnOffSwitchControlColors(self.onOffSwitchControlColors());
        copy->setOnOffSwitchCustomOnColor_offColor(
            self.customOnColor().get(), self.customOffColor().get());
        copy->setOnSwitchLabel(self.onSwitchLabel().get());
        copy->setOffSwitchLabel(self.offSwitchLabel().get());
        return copy;
    }
    static void setCustomColors(OnOffSwitchControlCell& self, NSColor* on, NSColor* off)
    {
        self.setCustomOffColor(off);
        self.setCustomOnColor(on);
    }

    static void table(Builder& t)
    {
        using C = OnOffSwitchControlCell;
        t.classMethods({
            { "prefersTrackingUntilMouseUp", imp<prefersTrackingUntilMouseUp> },
            { "defaultFocusRingType", imp<defaultFocusRingType> },
        });
        t.methods({
            { "initImageCell:", imp<initImageCell> },
            { "initTextCell:", imp<initTextCell> },
            { "initWithCoder:", imp<initWithCoder> },
            { "furtherInit", imp<furtherInit> },
            { "copyWithZone:", imp<copyWithZone> },
            { "setOnOffSwitchCustomOnColor:offColor:", imp<setCustomColors> },
        });
        t.ivars({
            ivar<&C::tracking_>("tracking"),
            ivar<&C::initialTrackingPoint_>("initialTrackingPoint"),
            ivar<&C::trackingPoint_>("trackingPoint"),
            ivar<&C::initialTrackingTime_>("initialTrackingTime"),
            ivar<&C::trackingTime_>("trackingTime"),
            ivar<&C::trackingCellFrame_>("trackingCellFrame"),
            ivar<&C::trackingThumbCenterX_>("trackingThumbCenterX"),
            ivar<&C::clickLimits_>("stuff"),
        });
        t.properties({
            property<&C::showsOnOffLabels_>("showsOnOffLabels"),
            property<&C::onOffSwitchControlColors_>("onOffSwitchControlColors"),
            property<&C::customOnColor_>("customOnColor"),
            property<&C::customOffColor_>("customOffColor"),
            property<&C::onSwitchLabel_>("onSwitchLabel", copied),
            property<&C::offSwitchLabel_>("offSwitchLabel", copied),
        });
    }
};
BRINDLE_RECORD(OnOffSwitchControlCell, Basics)

template <> struct OnOffSwitchControlCell::Methods<struct Geometry> {

    // Single precision on purpose: 0.38f widens to 0.3799999952..., and positions are compared to the last bit.
    static constexpr float kThumbPart = 0.38F;

    static NSRect thumbRectInFrame(OnOffSwitchControlCell& self, NSRect frame)
    {
        const NSRect inner = NSInsetRect(frame, 1, 1);
        NSRect thumb = inner;
        thumb.size.width *= static_cast<double>(kThumbPart);
        const NSCellStateValue state = self.state();
        if (state == NSOnState)
            thumb.origin.x = inner.origin.x + inner.size.width - thumb.size.width;
        else if (state == NSMixedState)
            thumb.origin.x
                = inner.size.width * 0.5 - thumb.size.width * 0.5; // the origin stays out
        return thumb;
    }
    static double centerX(OnOffSwitchControlCell& self, NSRect frame)
    {
        const NSRect thumb = self.thumbRectInFrame(frame);
        double x = thumb.origin.x;
        if (self.tracking_) {
            const double least = frame.origin.x + 1;
            const double greatest = frame.origin.x + (frame.size.width - thumb.size.width - 1);
            x += self.trackingPoint_.x - self.initialTrackingPoint_.x;
            if (x < least)
                x = least;
            if (x > greatest)
                x = greatest;
        }
        return x + thumb.size.width * 0.5;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "thumbRectInFrame:", imp<thumbRectInFrame> },
            { "centerXForThumbWithFrame:", imp<centerX> },
        });
    }
};
BRINDLE_RECORD(OnOffSwitchControlCell, Geometry)

}
