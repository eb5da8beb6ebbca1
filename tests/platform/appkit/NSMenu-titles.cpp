// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/MenuTitle.h"
#include "support/OpenMenu.h"

namespace brindle {

namespace {

    struct MenuBarTest : testing::Test, MenuDesk {
        MenuBarTest()
        {
            file->setMenu(menu.get());
            edit->setMenu(editMenu.get());
            file->right_ = edit;
            edit->left_ = file;
            editMenu->setAutoenablesItems(false);
            add(*editMenu, "Undo"_ns);
        }
        ~MenuBarTest() override
        {
            file->right_ = nullptr;
            edit->left_ = nullptr;
        }
        void lookAtBoth()
        {
            script.then([this] {
                seen.push_back((menu->highlightedItem() ? "file " : "")
                    + std::to_string(menuWindows().size()) + " at "
                    + std::to_string(static_cast<int>(NSMinX(menuFrame(0)))));
            });
        }
        std::vector<std::string> seen;
        Ref<MenuTitle> file = screen.add<MenuTitle>(NSMakeRect(100, 505, 60, 22));
        Ref<MenuTitle> edit = screen.add<MenuTitle>(NSMakeRect(160, 505, 60, 22));
        Ref<NSMenu> editMenu = make<NSMenu>();
    };

    using Seen = std::vector<std::string>;

    TEST_F(MenuBarTest, TheMenuOfTheTitleUnderThePointerOpens)
    {
        screen.pointer().press({ 110, 510 });
        script.release();
        lookAtBoth();
        script.move({ 170, 510 });
        lookAtBoth();
        script.move({ 110, 510 });
        lookAtBoth();
        script.key(0x1B);
        screen.process();
        EXPECT_EQ(seen, (Seen { "1 at 100", "1 at 160", "1 at 100" }));
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuBarTest, ADragAcrossTitlesEndsInTheMenuOfTheLast)
    {
        screen.pointer().press({ 110, 510 });
        script.wait(0.6).move({ 170, 510 }).wait(0.6).move({ 180, 484 }).release();
        screen.process();
        EXPECT_EQ(chosen(), "Undo");
    }

    TEST_F(MenuBarTest, LeftAndRightGoToTheNeighbours)
    {
        screen.pointer().press({ 110, 510 });
        script.release().key(NSRightArrowFunctionKey);
        lookAtBoth();
        script.key(NSLeftArrowFunctionKey);
        lookAtBoth();
        script.key(NSLeftArrowFunctionKey); // no neighbour there
        lookAtBoth();
        script.key(0x1B);
        screen.process();
        EXPECT_EQ(seen, (Seen { "1 at 160", "1 at 100", "1 at 100" }));
    }

    TEST_F(MenuBarTest, AThousandSwitchesDoNotNest)
    {
        screen.pointer().press({ 110, 510 });
        script.release();
        for (int i = 0; i < 500; ++i)
            script.move({ 170, 510 }).move({ 110, 510 });
        script.key(0x1B);
        screen.process();
        EXPECT_EQ(file->presses(), 501);
        EXPECT_EQ(edit->presses(), 500);
    }

}

}
