// SPDX-License-Identifier: Apache-2.0
#include "foundation/Clock.h"

#include <gtest/gtest.h>

#include "support/VirtualClock.h"

using namespace brindle;

TEST(Clock, FollowsTheSystemUntilItIsTold)
{
    EXPECT_FALSE(Clock::isVirtual());
    const std::int64_t before = Clock::now();
    Clock::advance(1000);
    EXPECT_LT(Clock::now() - before, 1000'000'000'000);
}

TEST(Clock, StandsStillWhenItIsVirtual)
{
    test::VirtualClock clock;
    const std::int64_t before = Clock::now();
    EXPECT_EQ(Clock::now(), before);
    EXPECT_EQ(Clock::wall(), 788918400);
}

TEST(Clock, TurnsClockAndDateTogether)
{
    test::VirtualClock clock;
    const std::int64_t before = Clock::now();
    Clock::advance(1.5);
    EXPECT_EQ(Clock::now() - before, 1'500'000'000);
    EXPECT_EQ(Clock::wall(), 788918401.5);
}

TEST(Clock, DoesNotTurnBack)
{
    test::VirtualClock clock;
    const std::int64_t before = Clock::now();
    Clock::advance(-1);
    Clock::advanceTo(before - 5);
    EXPECT_EQ(Clock::now(), before);
}

TEST(Clock, TakesADateThatDelaysDoNotFeel)
{
    test::VirtualClock clock;
    const std::int64_t before = Clock::now();
    Clock::setWall(0.25);
    EXPECT_EQ(Clock::wall(), 0.25);
    EXPECT_EQ(Clock::now(), before);
}
