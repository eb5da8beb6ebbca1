// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSNumber.h"
#include "quartz/layers/CALayer.h"
#include "quartz/layers/CAPropertyAnimation.h"

// What tests of movements start from.

namespace brindle::test {

inline Ref<NSNumber> number(double value) { return NSNumber::cls().numberWithDouble(value); }

inline Ref<CABasicAnimation> fade(double from, double to, double duration = 1)
{
    Ref<CABasicAnimation> animation = CABasicAnimation::cls().animationWithKeyPath("opacity"_ns);
    animation->setFromValue(number(from).get());
    animation->setToValue(number(to).get());
    animation->setDuration(duration);
    return animation;
}

inline double shownOpacity(const Ref<CALayer>& layer)
{
    return static_cast<double>(layer->presentationLayer()->opacity());
}

}
