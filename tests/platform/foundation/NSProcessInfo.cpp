// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSProcessInfo.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"

using namespace brindle;

namespace {

Ref<NSProcessInfo> info() { return NSProcessInfo::cls().processInfo(); }

}

TEST(NSProcessInfo, IsOne) { EXPECT_EQ(info(), info()); }

TEST(NSProcessInfo, KnowsTheProcess)
{
    EXPECT_EQ(info()->processIdentifier(), getpid());
    EXPECT_GE(info()->arguments()->count(), 1u);
    EXPECT_GE(info()->processorCount(), 1u);
}

TEST(NSProcessInfo, ShowsTheEnvironmentAsItIsNow)
{
    setenv("BRINDLE_TEST_VALUE", "a=b", 1);
    EXPECT_TRUE(info()->environment()->objectForKey("BRINDLE_TEST_VALUE"_ns)->isEqual("a=b"_ns));
    unsetenv("BRINDLE_TEST_VALUE");
}

TEST(NSProcessInfo, ReadsBytesThatAreNoTextAsQuestionMarks)
{
    setenv("BRINDLE_TEST_VALUE", "x\xff", 1);
    EXPECT_TRUE(info()->environment()->objectForKey("BRINDLE_TEST_VALUE"_ns)->isEqual("x?"_ns));
    unsetenv("BRINDLE_TEST_VALUE");
}

TEST(NSProcessInfo, NeverRepeatsAUniqueText)
{
    EXPECT_FALSE(info()->globallyUniqueString()->isEqual(info()->globallyUniqueString().get()));
}

TEST(NSProcessInfo, TakesAnotherName)
{
    const auto before = info()->processName();
    info()->setProcessName("other"_ns);
    EXPECT_TRUE(info()->processName()->isEqual("other"_ns));
    info()->setProcessName(before.get());
}
