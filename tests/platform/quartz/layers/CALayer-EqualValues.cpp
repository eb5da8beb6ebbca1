// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "quartz/layers/CAGradientLayer.h"
#include "support/VirtualClock.h"

namespace brindle {
namespace {

    using test::VirtualClock;

    Ref<CGColor> grey(double white)
    {
        return Ref<CGColor>::adopt(CGColorCreateSRGB(white, white, white, 1));
    }

    TEST(EqualValues, OfAColourMoveNothing)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBackgroundColor(grey(0.5).get());
        layer->removeAllAnimations();
        layer->setBackgroundColor(grey(0.5).get());
        EXPECT_EQ(layer->animationKeys(), nullptr);
        layer->setBackgroundColor(grey(0.75).get());
        EXPECT_TRUE(layer->animationForKey("backgroundColor"_ns));
    }

    TEST(EqualValues, OfAListMoveNothing)
    {
        VirtualClock clock;
        const Ref<CAGradientLayer> layer = make<CAGradientLayer>();
        layer->setColors(makeArray({ grey(0), grey(1) }).get());
        layer->removeAllAnimations();
        layer->setColors(makeArray({ grey(0), grey(1) }).get());
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(EqualValues, AreTheObjectThatWasGivenLast)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBackgroundColor(grey(0.5).get());
        const Ref<CGColor> second = grey(0.5);
        layer->setBackgroundColor(second.get());
        EXPECT_EQ(layer->backgroundColor(), second);
    }

    TEST(EqualValues, AreNotTheAbsentOne)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBackgroundColor(grey(0.5).get());
        layer->setBackgroundColor(nullptr);
        EXPECT_EQ(layer->backgroundColor(), nullptr);
    }

}
}
