// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "foundation/Clock.h"
#include "runtime/ClassPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "support/Figures.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

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

    /// What so many lives of one class left.
    struct Left {
        std::size_t allocated = 0; // bytes
        std::size_t resident = 0;
    };

    Left leftBy(Class& cls, int times)
    {
        const auto makeAndFree = [&cls](int count) {
            for (int i = 0; i < count; ++i)
                const Ref<NSObject> object = cls.send<"alloc", Ref<NSObject>>()->init();
        };
        makeAndFree(1000); // what is made once and kept
        const std::size_t resident = test::residentBytes();
        const std::size_t allocated
            = test::allocatedBytes(); // after the file, whose buffer is kept for the next one
        makeAndFree(times);
        if (!test::growthCanBeMeasured())
            return {};
        return { test::allocatedBytes() - std::min(test::allocatedBytes(), allocated),
            test::grownSince(resident) };
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
        long measured = 0;
        std::size_t most = 0;
        for (const std::string& name : knownClassNames()) {
            Class* const cls = objc_getClass(name.c_str());
            ASSERT_TRUE(cls) << name;
            if (keepsSomething(name) || !isMadeByInit(*cls))
                continue;
            ++measured;
            const Left left = leftBy(*cls, times);
            EXPECT_LT(left.allocated, static_cast<std::size_t>(times)) << "bytes of " << name;
            EXPECT_LT(left.resident, std::size_t { 1 } << 20) << name;
            most = std::max(most, left.resident);
        }
        EXPECT_GT(measured, 50);
        test::publish({ "lives of each class: growth of one class", times,
            static_cast<double>(most) / 1024, "kB", 1024 });
    }

}
}
