// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "runtime/Table.h"
#include "support/OpenMenu.h"

namespace brindle {

/// A view in a row of such views, each with a menu that it opens below itself.
class MenuTitle : public NSView {
    BRINDLE_OBJECT(MenuTitle, NSView)

public:
    Ref<NSView> left_;
    Ref<NSView> right_;
    int presses_ = 0;
};

template <> struct MenuTitle::Methods<struct Bar> {

    static void mouseDown(MenuTitle& self, NSEvent* event)
    {
        ++self.presses_;
        const NSPoint below = self.convertPoint_toView({ 0, -5 }, nullptr);
        const Ref<NSEvent> moved
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      event->type(), below, event->modifierFlags(), event->timestamp(),
                      event->windowNumber(), nullptr, event->eventNumber(), 1, 1);
        NSMenu::cls().popUpContextMenu_withEvent_forView(self.menu().get(), moved.get(), &self);
    }
    static Ref<NSView> atPoint(MenuTitle& self, NSPoint place)
    {
        const NSPoint inWindow = self.window()->convertPointFromScreen(place);
        for (const Ref<NSView>& view : { self.left_, self.right_ }) {
            if (view && NSPointInRect(inWindow, view->frame()))
                return view;
        }
        return nullptr;
    }
    static Ref<NSView> toward(MenuTitle& self, NSInteger direction)
    {
        return direction < 0 ? self.left_ : self.right_;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "mouseDown:", imp<mouseDown> },
            { "menuNeighbourAtPoint:", imp<atPoint> },
            { "menuNeighbourInDirection:", imp<toward> },
        });
    }
};
BRINDLE_RECORD(MenuTitle, Bar)

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
        EXPECT_EQ(file->presses_, 501);
        EXPECT_EQ(edit->presses_, 500);
    }

}

}
