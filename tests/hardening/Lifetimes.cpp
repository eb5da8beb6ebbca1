// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "foundation/Clock.h"
#include "runtime/ClassPrivate.h"
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

    /// Growth of memory that stays. The sanitizers keep what was freed for a while and find what is lost by themselves.
    constexpr bool growthCanBeMeasured()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }

    /// Answers whether an object of the class comes from alloc and init alone.
    bool isMadeByInit(Class& cls)
    {
        try {
            return cls.send<"alloc", Ref<NSObject>>()->init() != nullptr;
        } catch (const Exception&) {
            return false;
        }
    }

    /// Answers whether the process keeps something of every object by contract: there is one application, and the
    /// page with a switch's limits of a click outlives its cell.
    bool keepsSomething(const std::string& name)
    {
        return name == "NSApplication" || name.starts_with("OnOffSwitchControl");
    }

    /// Answers how the memory has grown over so many lives, "" where nothing stays.
    std::string growthOver(Class& cls, int times)
    {
        const auto makeAndFree = [&cls](int count) {
            for (int i = 0; i < count; ++i)
                const Ref<NSObject> object = cls.send<"alloc", Ref<NSObject>>()->init();
        };
        makeAndFree(1000); // what is made once and kept
        const std::size_t resident = residentBytes();
        const std::size_t allocated
            = allocatedBytes(); // after the file, whose buffer is kept for the next one
        makeAndFree(times);
        if (!growthCanBeMeasured())
            return "";
        // Not one byte an object stays.
        const std::size_t stayed = allocatedBytes() - std::min(allocatedBytes(), allocated);
        const std::size_t grown = residentBytes() - std::min(residentBytes(), resident);
        if (stayed < static_cast<std::size_t>(times) && grown < (1 << 20))
            return "";
        return std::to_string(stayed) + " bytes stayed, " + std::to_string(grown) + " resident";
    }

    TEST(LifeTimes, OfEveryViewLetItsSubviewsGo)
    {
        for (const std::string& name : knownClassNames()) {
            Class* const cls = objc_getClass(name.c_str());
            const Ref<NSView> inside = make<NSView>();
            if (!NSObject::Meta { cls }.isSubclassOfClass(NSView::cls()) || !isMadeByInit(*cls))
                continue;
            cast<NSView>(cls->send<"alloc", Ref<NSObject>>()->init())->addSubview(inside.get());
            EXPECT_FALSE(inside->superview()) << name;
            EXPECT_FALSE(inside->nextResponder()) << name;
        }
    }

    TEST(LifeTimes, OfEveryClassLeaveNothingBehind)
    {
        const HeadlessScreen screen { 100, 100 };
        const int times = std::max(10000, test::rounds(100000));
        int measured = 0;
        for (const std::string& name : knownClassNames()) {
            Class* const cls = objc_getClass(name.c_str());
            ASSERT_TRUE(cls) << name;
            if (keepsSomething(name) || !isMadeByInit(*cls))
                continue;
            ++measured;
            EXPECT_EQ(growthOver(*cls, times), "") << name;
        }
        EXPECT_GT(measured, 50);
    }

}
}
