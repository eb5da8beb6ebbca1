// SPDX-License-Identifier: Apache-2.0
#include "display/headless/RandomUser.h"

#include <string>

#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"

namespace brindle::display {
namespace {

    /// What a surface is told of so many actions, in words.
    std::string told(std::uint32_t seed, int actions)
    {
        HeadlessDisplay display({ HeadlessDisplay::screenOfSize(300, 200) });
        SurfaceOptions options;
        options.frame = { { 0, 0 }, { 300, 200 } };
        const auto surface = display.createSurface(options);
        surface->show();
        RandomUser user(display, seed);
        for (int i = 0; i < actions; ++i)
            user.act();
        std::string out;
        for (Event event; display.pollEvent(event);)
            out += std::to_string(static_cast<int>(event.kind)) + " "
                + std::to_string(static_cast<int>(event.location.x)) + ","
                + std::to_string(static_cast<int>(event.location.y)) + " ";
        return out;
    }

    TEST(RandomUser, DoesTheSameForTheSameSeed) { EXPECT_EQ(told(3, 200), told(3, 200)); }
    TEST(RandomUser, DoesSomethingElseForAnotherSeed) { EXPECT_NE(told(3, 200), told(4, 200)); }

    TEST(RandomUser, HoldsEveryModifierNowAndThen)
    {
        HeadlessDisplay display;
        RandomUser user(display, 1);
        Modifiers seen = 0;
        for (int i = 0; i < 500; ++i) {
            user.act();
            seen |= display.modifiers();
        }
        EXPECT_EQ(seen, kShift | kControl | kOption | kCommand);
    }

    TEST(RandomUser, HoldsNothingDownOnceItHasGivenUp)
    {
        HeadlessDisplay display;
        RandomUser user(display, 1);
        for (int i = 0; i < 50; ++i)
            user.act();
        user.giveUp();
        EXPECT_EQ(display.modifiers(), Modifiers { 0 });
    }

}
}
