// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSMenu.h"
#include "support/Figures.h"
#include "support/HeadlessScreen.h"
#include "support/Memory.h"

namespace brindle {
namespace {

    TEST(Menus, OpeningsLeaveNothingBehind)
    {
        HeadlessScreen screen { 800, 600 };
        const Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        for (int i = 0; i < 20; ++i)
            menu->addItemWithTitle_action_keyEquivalent("Item"_ns, selector<"act:">, nullptr);
        const auto open = [&](int times) {
            for (int i = 0; i < times; ++i)
                menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 500 }, nullptr);
            screen.process();
        };
        open(1000); // what is made once and kept
        const std::size_t before = test::allocatedBytes();
        const int openings = test::rounds(100'000);
        open(openings);
        const std::size_t after = test::allocatedBytes();
        if (test::growthCanBeMeasured())
            test::publish({ "openings of a menu of 20: growth", openings,
                (static_cast<double>(after) - static_cast<double>(before)) / 1024, "kB", 1024 });
        EXPECT_EQ(screen.display().stackingOrder().size(), 1U);
        EXPECT_EQ(screen.display().grabbingSurface(), 0U);
    }

}
}
