// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "foundation/Clock.h"
#include "runtime/ClassPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"
#include "support/Memory.h"
#include "support/Rounds.h"

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

    /// Answers how the memory has grown over so many lives, "" where nothing stays.
    std::string growthOver(Class& cls, int times)
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
            return "";
        // Not one byte an object stays.
        const std::size_t stayed
            = test::allocatedBytes() - std::min(test::allocatedBytes(), allocated);
        const std::size_t grown = test::grownSince(resident);
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
