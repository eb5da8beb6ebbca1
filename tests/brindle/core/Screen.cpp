// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "appkit/NSScreen.h"
#include "core/BRGeometry.h"
#include "display/Display.h"
#include "foundation/NSArray.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    TEST(ScreenRows, ReadTheMainScreensFrameInPoints)
    {
        const HeadlessScreen screen { 1280, 800, 2 };
        EXPECT_EQ(BRUIScreen(), NSMakeRect(0, 0, 1280, 800));
        EXPECT_EQ(BRUIScreenHeight(), 800);
        EXPECT_EQ(BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(22), 36);
    }

    TEST(ScreenRows, KeepTheScreensOrigin)
    {
        const HeadlessScreen headless { 400, 300 };
        const auto screen = alloc<NSScreen>()->initWithFrame_visibleFrame_backingScaleFactor(
            NSMakeRect(-50, 60, 700, 500), NSMakeRect(-50, 60, 700, 480), 1);
        NSScreen::cls().setScreensOverride(makeArray({ screen.get() }).get());
        EXPECT_EQ(BRUIScreen(), NSMakeRect(-50, 60, 700, 500));
        NSScreen::cls().setScreensOverride(nullptr);
    }

    TEST(ScreenRows, AreZeroWithoutADisplay)
    {
        installDisplay(display::openDisplay(
            display::Choice::none, [](const char*) { return nullptr; }, [](auto) {}));
        EXPECT_EQ(BRUIScreen(), NSZeroRect);
        EXPECT_EQ(BRUIScreenHeight(), 0);
        EXPECT_EQ(BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(22), 0);
        EXPECT_TRUE(std::isnan(BRRowHeightRoundToIntegralForScreenHeight(22, BRUIScreenHeight())));
        installDisplay(nullptr);
    }

    TEST(ScreenRows, OfAZeroStandardHeightPassTheDivisionsOutcomeThrough)
    {
        const HeadlessScreen screen { 400, 300 };
        EXPECT_EQ(BRUIGetEvenNumberRowsForScreenFromUIStandardHeight(0),
            std::numeric_limits<double>::infinity());
    }

}
}
