// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSView.h"

namespace brindle {

class NSTimer;

enum NSProgressIndicatorStyle : NSUInteger {
    NSProgressIndicatorBarStyle = 0,
    NSProgressIndicatorSpinningStyle = 1,
};

/// Shows how far something has come, or that it goes on.
///
/// A new one is a bar that only says that something goes on, from 0 to 100 once `setIndeterminate:` NO. What goes on moves
/// after `startAnimation:`, while the view is in a window that can be seen. A spinning one
/// that is determinate shows a growing sector. NaN is ignored.
/// Thread: main; `usesThreadedAnimation` is kept for the host. Cost: thirty small drawings a second while it moves.
class NSProgressIndicator : public NSView {
    BRINDLE_OBJECT(NSProgressIndicator, NSView)

public:
    bool isIndeterminate() const { return send<"isIndeterminate", bool>(); }
    void setIndeterminate(bool indeterminate) { send<"setIndeterminate:">(indeterminate); }
    double doubleValue() const { return send<"doubleValue", double>(); }
    /// - value: kept as it is; what is drawn stays between the ends.
    void setDoubleValue(double value) { send<"setDoubleValue:">(value); }
    void incrementBy(double difference) { send<"incrementBy:">(difference); }
    double minValue() const { return send<"minValue", double>(); }
    void setMinValue(double value) { send<"setMinValue:">(value); }
    double maxValue() const { return send<"maxValue", double>(); }
    void setMaxValue(double value) { send<"setMaxValue:">(value); }

    NSProgressIndicatorStyle style() const { return send<"style", NSProgressIndicatorStyle>(); }
    /// Unknown values are ignored. Spinning ones are not displayed when stopped, unless they are told otherwise afterwards.
    void setStyle(NSProgressIndicatorStyle style) { send<"setStyle:">(style); }
    NSControlSize controlSize() const { return send<"controlSize", NSControlSize>(); }
    void setControlSize(NSControlSize size) { send<"setControlSize:">(size); }
    NSControlTint controlTint() const { return send<"controlTint", NSControlTint>(); }
    void setControlTint(NSControlTint tint) { send<"setControlTint:">(tint); }
    bool isBezeled() const { return send<"isBezeled", bool>(); }
    void setBezeled(bool bezeled) { send<"setBezeled:">(bezeled); }
    /// Whether an indeterminate one is drawn while it does not move; YES at first.
    bool isDisplayedWhenStopped() const { return send<"isDisplayedWhenStopped", bool>(); }
    void setDisplayedWhenStopped(bool displayed) { send<"setDisplayedWhenStopped:">(displayed); }
    bool usesThreadedAnimation() const { return send<"usesThreadedAnimation", bool>(); }
    void setUsesThreadedAnimation(bool threaded) { send<"setUsesThreadedAnimation:">(threaded); }
    void sizeToFit() { send<"sizeToFit">(); }

    void startAnimation(NSObject* sender) { send<"startAnimation:">(sender); }
    void stopAnimation(NSObject* sender) { send<"stopAnimation:">(sender); }

private:
    double min_ = 0;
    double max_ = 100;
    double value_ = 0;
    Ref<NSTimer> timer_; // while it moves and can be seen
    double start_ = 0; // of the movement, on the clock of animations
    NSProgressIndicatorStyle style_ = NSProgressIndicatorBarStyle;
    NSControlSize size_ = NSControlSizeRegular;
    NSControlTint tint_ = NSDefaultControlTint;
    bool indeterminate_ = true;
    bool bezeled_ = true;
    bool displayedWhenStopped_ = true;
    bool threaded_ = true;
    bool moves_ = false;
};

}
