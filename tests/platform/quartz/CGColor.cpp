// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGColor.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace brindle {

TEST(CGColor, KeepsItsComponentsWithAlphaLast)
{
    const auto color = Ref<CGColor>::adopt(CGColorCreateGenericRGB(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(CGColorGetNumberOfComponents(color.get()), 4u);
    EXPECT_EQ(CGColorGetComponents(color.get())[2], 0.3);
    EXPECT_EQ(CGColorGetAlpha(color.get()), 0.4);
}

TEST(CGColor, IsEqualBySpaceAndNumbers)
{
    const auto a = Ref<CGColor>::adopt(CGColorCreateGenericGray(0.5, 1));
    const auto b = Ref<CGColor>::adopt(CGColorCreateGenericGray(0.5, 1));
    const auto c = Ref<CGColor>::adopt(CGColorCreateGenericRGB(0.5, 0.5, 0.5, 1));
    EXPECT_TRUE(CGColorEqualToColor(a.get(), b.get()));
    EXPECT_FALSE(CGColorEqualToColor(a.get(), c.get()));
    EXPECT_TRUE(CGColorEqualToColor(nullptr, nullptr));
    EXPECT_FALSE(CGColorEqualToColor(a.get(), nullptr));
}

TEST(CGColor, NeedsASpaceAndNumbers)
{
    const CGFloat parts[] { 1, 1, 1, 1 };
    EXPECT_EQ(CGColorCreate(nullptr, parts), nullptr);
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(CGColorCreate(space.get(), nullptr), nullptr);
}

TEST(CGColor, EqualColoursHaveOneHashWhateverTheirNumbers)
{
    const Ref<CGColor> grey = Ref<CGColor>::adopt(CGColorCreateGenericGray(-0.0, 1));
    const Ref<CGColor> same = Ref<CGColor>::adopt(CGColorCreateGenericGray(0, 1));
    EXPECT_TRUE(grey->isEqual(same.get()));
    EXPECT_EQ(grey->hash(), same->hash());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Ref<CGColor> odd = Ref<CGColor>::adopt(CGColorCreateGenericGray(nan, HUGE_VAL));
    EXPECT_EQ(odd->hash(), odd->hash());
}

TEST(CGColor, OneOfNoSpaceHasNoCopyWithAlpha)
{
    const Ref<CGColor> bare = make<CGColor>();
    EXPECT_EQ(CGColorCreateCopyWithAlpha(bare.get(), 0.5), nullptr);
    EXPECT_EQ(CGColorGetAlpha(bare.get()), 0);
}

TEST(CGColorSpace, IsFoundByName)
{
    const auto named
        = Ref<CGColorSpace>::adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericRGB));
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(named.get()), 3u);
    EXPECT_EQ(CGColorSpaceCreateWithName("nothing"_ns), nullptr);
    EXPECT_EQ(CGColorSpaceCreateWithName(nullptr), nullptr);
}

}
