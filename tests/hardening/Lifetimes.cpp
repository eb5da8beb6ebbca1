// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <malloc.h>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "foundation/Clock.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"
#include "support/Rounds.h"

namespace brindle {
namespace {

    std::size_t residentBytes()
    {
        long pages = 0;
        long resident = 0;
        std::FILE* const file = std::fopen("/proc/self/statm", "r");
        if (!file || std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        if (file)
            std::fclose(file);
        return static_cast<std::size_t>(resident) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    }
    std::size_t allocatedBytes() { return mallinfo2().uordblks; }

    /// The classes whose objects anybody may make. Missing are those with one object a process or thread, and
    /// those that only others make.
    constexpr const char* kClasses[]
        = { "NSObject", "NSString", "NSMutableString", "NSArray", "NSMutableArray", "NSDictionary",
              "NSMutableDictionary", "NSSet", "NSMutableSet", "NSIndexSet", "NSMutableIndexSet",
              "NSData", "NSMutableData", "NSDate", "NSNotificationCenter", "NSOperationQueue",
              "NSView", "NSWindow", "NSPanel", "NSResponder" };

    struct LifeTimes : testing::TestWithParam<const char*> { };

    TEST_P(LifeTimes, LeaveNothingBehind)
    {
        const HeadlessScreen screen { 100, 100 };
        Class* const cls = objc_getClass(GetParam());
        ASSERT_TRUE(cls);
        const auto makeAndFree = [cls](int times) {
            for (int i = 0; i < times; ++i)
                const Ref<NSObject> object = cls->send<"alloc", Ref<NSObject>>()->init();
        };
        makeAndFree(1000); // what is made once and kept
        const std::size_t resident = residentBytes();
        const std::size_t allocated
            = allocatedBytes(); // after the file, whose buffer is kept for the next one
        const int times = test::rounds(100000);
        makeAndFree(times);
        // Not one byte an object stays.
        EXPECT_LT(allocatedBytes(), allocated + static_cast<std::size_t>(times));
        EXPECT_LT(residentBytes(), resident + (1 << 20));
    }

    INSTANTIATE_TEST_SUITE_P(Of, LifeTimes, testing::ValuesIn(kClasses),
        [](const auto& name) { return std::string(name.param); });

}
}
