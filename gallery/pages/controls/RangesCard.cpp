// SPDX-License-Identifier: Apache-2.0
#include "RangesCard.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct RangesCard::Methods<struct Values> {

    static constexpr double kColumnGap = 28;
    static constexpr double kRowGap = 20;

    static Ref<NSSlider> addSlider(RangesCard& self, double value)
    {
        const Ref<NSSlider> slider
            = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
                value, 0, 100, nullptr, {});
        self.addSubview(slider.get());
        return slider;
    }
    static Ref<NSProgressIndicator> addIndicator(
        RangesCard& self, NSProgressIndicatorStyle style, bool indeterminate)
    {
        const Ref<NSProgressIndicator> indicator = make<NSProgressIndicator>();
        indicator->setStyle(style);
        indicator->setIndeterminate(indeterminate);
        indicator->setDisplayedWhenStopped(true);
        indicator->startAnimation(nullptr);
        self.addSubview(indicator.get());
        return indicator;
    }
    static Ref<NSView> initWithFrame(RangesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<RangesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Sliders and progress"_ns);
        self.setCaption("The first slider leads the bar and the sector; arrows move it"_ns);
        for (const double value : { 62.0, 50.0, 30.0, 40.0 })
            self.sliders_.push_back(addSlider(self, value));
        self.sliders_[0]->setTarget(&self);
        self.sliders_[0]->setAction(selector<"valueChanged:">);
        self.sliders_[1]->setNumberOfTickMarks(5);
        self.sliders_[1]->setAllowsTickMarkValuesOnly(true);
        self.sliders_[2]->setControlSize(NSControlSizeSmall);
        self.sliders_[3]->setEnabled(false);
        self.upright_ = addSlider(self, 70);
        self.upright_->setVertical(true);
        self.dial_ = addSlider(self, 20);
        self.dial_->setSliderType(NSCircularSlider);
        self.dial_->setNumberOfTickMarks(8);
        self.bar_ = addIndicator(self, NSProgressIndicatorBarStyle, false);
        self.endless_ = addIndicator(self, NSProgressIndicatorBarStyle, true);
        self.sector_ = addIndicator(self, NSProgressIndicatorSpinningStyle, false);
        self.spinner_ = addIndicator(self, NSProgressIndicatorSpinningStyle, true);
        changed(self, nullptr);
        return made;
    }
    static void changed(RangesCard& self, NSObject*)
    {
        self.bar_->setDoubleValue(self.sliders_[0]->doubleValue());
        self.sector_->setDoubleValue(self.sliders_[0]->doubleValue());
    }

    static void putInMiddle(NSView& view, double left, double middle)
    {
        view.setFrameOrigin({ left, std::round(middle - view.frame().size.height / 2) });
    }
    static void setFrameSize(RangesCard& self, NSSize size)
    {
        super<RangesCard, "setFrameSize:">(self, size);
        if (!self.spinner_)
            return;
        const NSRect body = self.bodyRect();
        const double row = body.size.height / 4;
        const auto middle = [&](double place) { return body.origin.y + row * (place + 0.5); };
        const double uprightLeft = body.origin.x + std::round(body.size.width / 2) - 10;
        const double width = uprightLeft - body.origin.x - kColumnGap;
        for (std::size_t i = 0; i < self.sliders_.size(); ++i) {
            self.sliders_[i]->setFrameSize({ width, 10 });
            self.sliders_[i]->sizeToFit();
            putInMiddle(*self.sliders_[i], body.origin.x, middle(static_cast<double>(i)));
        }
        self.upright_->setFrame(NSMakeRect(uprightLeft, body.origin.y, 20, body.size.height));
        const double right = uprightLeft + 20 + kColumnGap;
        for (const auto& bar : { self.bar_, self.endless_ }) {
            bar->setFrameSize({ NSMaxX(body) - right, 10 });
            putInMiddle(*bar, right, middle(bar == self.bar_ ? 0 : 1));
        }
        double left = right;
        for (NSView* view :
            { static_cast<NSView*>(self.sector_.get()), static_cast<NSView*>(self.spinner_.get()),
                static_cast<NSView*>(self.dial_.get()) }) {
            view->send<"sizeToFit">();
            putInMiddle(*view, left, middle(2.6));
            left += view->frame().size.width + kRowGap;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "valueChanged:", imp<changed> },
        });
    }
};
BRINDLE_RECORD(RangesCard, Values)

}
