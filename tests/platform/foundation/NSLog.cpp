// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSLog.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <unistd.h>

#include "foundation/Exceptions.h"
#include "foundation/NSBeep.h"
#include "foundation/NSProcessInfo.h"
#include "support/LogSink.h"
#include "support/VirtualClock.h"

using namespace brindle;
using brindle::test::LogSink;

TEST(NSLog, HandsTheSinkJustTheText)
{
    LogSink log;
    NSLog("hover %d"_ns, 3);
    NSLog("%@ and %s"_ns, "object"_ns, "text");
    EXPECT_EQ(log.text(), "hover 3\nobject and text\n");
}

TEST(NSLog, TakesOwners)
{
    LogSink log;
    const Ref<NSString> owner = stringFrom(std::string_view("owned"));
    NSLog("%@"_ns, owner);
    EXPECT_EQ(log.text(), "owned\n");
}

TEST(NSLog, WritesOneLineWithDateProcessAndThread)
{
    test::VirtualClock clock;
    Clock::setWall(791555696.789);
    const Ref<NSProcessInfo> process = NSProcessInfo::cls().processInfo();
    const Ref<NSString> before = process->processName();
    process->setProcessName("tester"_ns);
    testing::internal::CaptureStderr();
    NSLog("text %lu"_ns, static_cast<unsigned long>(7));
    process->setProcessName(before.get());
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(line,
        "2026-01-31 12:34:56.789 tester[" + std::to_string(getpid()) + ":"
            + std::to_string(gettid()) + "] text 7\n");
}

TEST(NSBeep, IsCountedAndRung)
{
    int rung = 0;
    setBeepHook([&] { ++rung; });
    const std::uint64_t before = beepCount();
    NSBeep();
    setBeepHook(nullptr);
    NSBeep();
    EXPECT_EQ(beepCount() - before, 2u);
    EXPECT_EQ(rung, 1);
}

TEST(NSAssertFunction, RaisesWithItsReason)
{
    NSAssert(true, "fine"_ns);
    try {
        NSAssert(1 > 2, "%d is not above %d"_ns, 1, 2);
        FAIL();
    } catch (const Exception& raised) {
        EXPECT_STREQ(raised.what(), "NSInternalInconsistencyException: 1 is not above 2");
    }
}

TEST(NSExceptionFormat, RaisesByClassOperation)
{
    try {
        NSException::cls().raise_format("Name"_ns, "%@ %d"_ns, "x"_ns, 5);
        FAIL();
    } catch (const Exception& raised) {
        EXPECT_STREQ(raised.what(), "Name: x 5");
    }
}

TEST(UncaughtExceptionDeathTest, IsLoggedByNameAndReason)
{
    installUncaughtHandler();
    EXPECT_DEATH([]() noexcept { raise("Sad", "nobody there"); }(),
        "\\] \\*\\*\\* Terminating app due to uncaught exception 'Sad', reason: 'nobody there'");
}

TEST(UncaughtExceptionDeathTest, OfAnotherKindIsLoggedByItsType)
{
    installUncaughtHandler();
    const auto thrower = [] { throw std::runtime_error("plain"); };
    EXPECT_DEATH([&]() noexcept { thrower(); }(),
        "uncaught exception 'std::runtime_error', reason: 'plain'");
}

TEST(UncaughtExceptionDeathTest, IsShownToTheHandlerFirst)
{
    EXPECT_DEATH(
        {
            NSSetUncaughtExceptionHandler([](NSException*) { ::write(2, "handler\n", 8); });
            []() noexcept { raise("Sad", "r"); }();
        },
        "handler\n.*Terminating");
}
