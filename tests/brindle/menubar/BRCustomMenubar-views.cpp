// SPDX-License-Identifier: Apache-2.0
#include "MenubarHosts.h"

#include "foundation/NSMutableArray.h"
#include "foundation/NSUserDefaults.h"
#include "support/DefaultsFolder.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

    using test::BarDesk;
    using test::buttonTitled;
    using test::commandKey;
    using test::menuWithKey;
    using test::viewOfWidth;

    // ---- at the left

    TEST(MenubarViews, BeginAtTheLeftEndInBothSpacings)
    {
        for (const BRMenubarSpacing spacing : { BRMenubarSpacingStandard, BRMenubarSpacingNone }) {
            BarDesk desk;
            desk.make(BRMenubarThemeCustom, spacing).load();
            EXPECT_EQ(desk.add(40)->frame(), NSMakeRect(0, 0, 40, 22));
        }
    }
    TEST(MenubarViews, StandInARowWithStandardGaps)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        EXPECT_EQ(desk.add(40)->frame().origin.x, 0);
        EXPECT_EQ(desk.add(50)->frame().origin.x, 57);
        EXPECT_EQ(desk.add(60)->frame().origin.x, 124);
    }
    TEST(MenubarViews, StandInARowWithoutGaps)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom, BRMenubarSpacingNone).load();
        EXPECT_EQ(desk.add(40)->frame().origin.x, 0);
        EXPECT_EQ(desk.add(50)->frame().origin.x, 40);
        EXPECT_EQ(desk.add(60)->frame().origin.x, 90);
    }
    TEST(MenubarViews, LieInTheViewsWindow)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        EXPECT_EQ(desk.add(40)->superview(), desk.viewsWindow()->contentView());
        EXPECT_EQ(desk.bar->menubarViews()->count(), 1u);
    }
    TEST(MenubarViews, StandAtTheLeftWithAnyOtherAlignment)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        EXPECT_EQ(desk.add(40, static_cast<BRMenubarViewAlignment>(5))->frame().origin.x, 0);
        EXPECT_EQ(desk.rightOffset(), 0);
    }

    // ---- at the right

    TEST(MenubarViews, GatherAtTheRightEnd)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.viewsWindow()->setContentSize({ 500, 22 });
        EXPECT_EQ(desk.add(30, BRMenubarViewAlignmentRight)->frame().origin.x, 450);
        EXPECT_EQ(desk.add(40, BRMenubarViewAlignmentRight)->frame().origin.x, 398);
        EXPECT_EQ(desk.rightOffset(), 94);
    }
    TEST(MenubarViews, KeepTheirHeightAtTheRightEnd)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        EXPECT_EQ(desk.add(30, BRMenubarViewAlignmentRight)->frame().origin.y, 3);
    }
    TEST(MenubarViews, FollowTheLastOneEvenWhereThatIsAtTheRight)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const Ref<NSView> right = desk.add(30, BRMenubarViewAlignmentRight);
        EXPECT_EQ(desk.add(40)->frame().origin.x, NSMaxX(right->frame()) + 17);
    }
    TEST(MenubarViews, MoveToTheRightEndWhenTheyDoNotFit)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const Ref<NSView> fits = desk.add(100);
        const Ref<NSView> moved = desk.add(700);
        const Ref<NSView> right = desk.add(30, BRMenubarViewAlignmentRight);
        desk.viewsWindow()->setContentSize({ 800, 22 });
        right->setFrame(NSMakeRect(750, 3, 30, 22));
        desk.bar->updateMenubarViewsToCustom();
        EXPECT_EQ(fits->frame().origin.x, 0);
        EXPECT_EQ(right->frame().origin.x, 750);
        EXPECT_EQ(moved->frame().origin.x, 800 - 20 - 42 - 700);
        EXPECT_EQ(desk.rightOffset(), 42 + 712);
    }
    TEST(MenubarViews, StayWhereTheyJustFit)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.viewsWindow()->setContentSize({ 500, 22 });
        const Ref<NSView> view = desk.add(500);
        desk.bar->updateMenubarViewsToCustom();
        EXPECT_EQ(view->frame().origin.x, 0);
    }
    TEST(MenubarViews, MoveWithACustomSize)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.add(200);
        const Ref<NSView> last = desk.add(300);
        desk.bar->setCustomScreenSize(NSMakeRect(0, 0, 600, 0));
        desk.bar->setFrame();
        const double end = desk.viewsWindow()->frame().size.width;
        EXPECT_EQ(last->frame().origin.x, end - 20 - 300);
    }

    // ---- before the bar is built, and otherwise wrong

    TEST(MenubarViews, AreNotedBeforeTheBarIsBuilt)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom);
        const Ref<NSView> left = desk.add(40);
        EXPECT_EQ(left->frame().origin, NSMakePoint(0, 0));
        EXPECT_EQ(left->superview(), nullptr);
        EXPECT_EQ(desk.add(30, BRMenubarViewAlignmentRight)->frame().origin.x, -50);
        EXPECT_EQ(desk.bar->menubarViews()->count(), 2u);
    }
    TEST(MenubarViews, HaveNowhereToMoveBeforeTheBarIsBuilt)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom);
        const Ref<NSView> view = desk.add(40);
        desk.bar->updateMenubarViewsToCustom();
        EXPECT_EQ(view->frame().origin.x, -20 - 40);
    }
    TEST(MenubarViews, MustBeViews)
    {
        const Ref<BRCustomMenubar> bar = make<BRCustomMenubar>();
        const std::string reason = "NSInvalidArgumentException: *** -[BRCustomMenubar "
                                   "addMenubarView:alignment:]: not a view";
        EXPECT_EQ(raisedBy([&] { bar->addMenubarView(nullptr); }), reason);
        EXPECT_EQ(
            raisedBy([&] { bar->send<"addMenubarView:">(static_cast<NSObject*>("text"_ns)); }),
            reason);
        EXPECT_EQ(bar->menubarViews(), nullptr);
    }
    TEST(MenubarViews, StartAnewInAnEmptiedList)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.add(40);
        const Ref<NSMutableArray> before = desk.bar->menubarViews();
        before->removeAllObjects();
        EXPECT_EQ(desk.add(50)->frame().origin.x, 0);
        EXPECT_NE(desk.bar->menubarViews(), before);
    }

    // ---- dark

    TEST(MenubarViews, AreDarkWhereverTheDefaultsHaveAStyle)
    {
        const test::DefaultsFolder folder;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const Ref<BRCustomMenubarMenuButton> before = buttonTitled("A"_ns, nullptr);
        const Ref<BRCustomMenubarMenuButton> after = buttonTitled("B"_ns, nullptr);
        desk.bar->addMenubarView(before.get());
        NSUserDefaults::cls().standardUserDefaults()->setObject_forKey(
            "whatever"_ns, "AppleInterfaceStyle"_ns);
        desk.bar->addMenubarView(after.get());
        EXPECT_FALSE(before->darkMode());
        EXPECT_TRUE(after->darkMode());
    }

    // ---- keys

    struct MenubarKeys : ::testing::Test {
        Ref<BRCustomMenubar> bar = make<BRCustomMenubar>();
        Ref<ActionLog> first = make<ActionLog>();
        Ref<ActionLog> second = make<ActionLog>();
        HeadlessScreen screen;

        void add(NSString* title, NSMenu* menu)
        {
            bar->addMenubarView(buttonTitled(title, menu).get());
        }
    };
    TEST_F(MenubarKeys, GoToTheButtonThatWasAddedFirst)
    {
        add("A"_ns, menuWithKey("A"_ns, "s"_ns, first.get()).get());
        add("B"_ns, menuWithKey("B"_ns, "s"_ns, second.get()).get());
        EXPECT_TRUE(bar->performKeyEquivalent(commandKey("s"_ns).get()));
        EXPECT_EQ(first->count_, 1);
        EXPECT_EQ(second->count_, 0);
    }
    TEST_F(MenubarKeys, PassOverButtonsWithoutAMenuAndOtherViews)
    {
        bar->addMenubarView(viewOfWidth(10).get());
        add("A"_ns, nullptr);
        add("B"_ns, menuWithKey("B"_ns, "s"_ns, second.get()).get());
        EXPECT_TRUE(bar->performKeyEquivalent(commandKey("s"_ns).get()));
        EXPECT_EQ(second->count_, 1);
    }
    TEST_F(MenubarKeys, AreRefusedWhenNoMenuHasThem)
    {
        add("A"_ns, menuWithKey("A"_ns, "s"_ns, first.get()).get());
        EXPECT_FALSE(bar->performKeyEquivalent(commandKey("x"_ns).get()));
        EXPECT_FALSE(bar->performKeyEquivalent(nullptr));
        EXPECT_FALSE(make<BRCustomMenubar>()->performKeyEquivalent(commandKey("s"_ns).get()));
    }
    TEST_F(MenubarKeys, MayChangeTheBar)
    {
        first->setReaction([&](NSObject*) { bar->menubarViews()->removeAllObjects(); });
        add("A"_ns, menuWithKey("A"_ns, "s"_ns, first.get()).get());
        add("B"_ns, menuWithKey("B"_ns, "s"_ns, second.get()).get());
        EXPECT_TRUE(bar->performKeyEquivalent(commandKey("s"_ns).get()));
        EXPECT_EQ(bar->menubarViews()->count(), 0u);
    }

}
}
