// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTabView.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Archives.h"
#include "support/EditingDesk.h"
#include "support/Strings.h"

namespace brindle {

/// Refuses one item and writes down what it is told.
class TabGuard : public NSObject {
    BRINDLE_OBJECT(TabGuard, NSObject)

public:
    Ref<NSTabViewItem> refused_;
    bool removes_ = false;
    std::string log_;
};
template <> struct TabGuard::Methods<struct Answers> {
    static bool should(TabGuard& self, NSTabView* tabs, NSTabViewItem* item)
    {
        if (self.removes_)
            tabs->removeTabViewItem(item);
        return self.refused_ != item;
    }
    static void will(TabGuard& self, NSTabView*, NSTabViewItem* item)
    {
        self.log_ += "will " + utf8Of(item->label().get()) + " ";
    }
    static void did(TabGuard& self, NSTabView*, NSTabViewItem* item)
    {
        self.log_ += "did " + utf8Of(item->label().get()) + " ";
    }
    static void count(TabGuard& self, NSTabView*) { self.log_ += "count "; }
    static void table(Builder& t)
    {
        t.methods({
            { "tabView:shouldSelectTabViewItem:", imp<should> },
            { "tabView:willSelectTabViewItem:", imp<will> },
            { "tabView:didSelectTabViewItem:", imp<did> },
            { "tabViewDidChangeNumberOfTabViewItems:", imp<count> },
        });
    }
};
BRINDLE_RECORD(TabGuard, Answers)

namespace {

    struct TabTest : testing::Test {
        EditingDesk desk;
        Ref<NSTabView> tabs = desk.add<NSTabView>(NSMakeRect(10, 10, 280, 150));
        Ref<NSTabViewItem> sound = add("Sound"_ns);
        Ref<NSTabViewItem> light = add("Light"_ns);
        Ref<NSTabViewItem> heat = add("Heat"_ns);

        Ref<NSTabViewItem> add(NSString* label)
        {
            const Ref<NSTabViewItem> item = alloc<NSTabViewItem>()->initWithIdentifier(label);
            item->setLabel(label);
            tabs->addTabViewItem(item.get());
            return item;
        }
        /// Answers a point on an item's tab.
        NSPoint tab(const Ref<NSTabViewItem>& item)
        {
            for (CGFloat x = 0; x < 280; x += 2) {
                for (const CGFloat y : { 10.0, 140.0 }) {
                    if (tabs->tabViewItemAtPoint({ x, y }) == item)
                        return { x + 8, y };
                }
            }
            ADD_FAILURE() << "no tab";
            return {};
        }
    };

    TEST_F(TabTest, TheFirstItemIsSelected)
    {
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        EXPECT_EQ(sound->tabState(), NSSelectedTab);
        EXPECT_EQ(light->tabState(), NSBackgroundTab);
        EXPECT_EQ(sound->view()->superview(), tabs);
        EXPECT_EQ(light->view()->superview(), nullptr);
        EXPECT_EQ(sound->view()->frame(), tabs->contentRect());
    }
    TEST_F(TabTest, ItemsAreFound)
    {
        EXPECT_EQ(tabs->numberOfTabViewItems(), 3);
        EXPECT_EQ(tabs->indexOfTabViewItem(light.get()), 1);
        EXPECT_EQ(tabs->tabViewItemAtIndex(2), heat);
        EXPECT_EQ(tabs->indexOfTabViewItemWithIdentifier("Heat"_ns), 2);
        EXPECT_EQ(tabs->indexOfTabViewItemWithIdentifier(nullptr), NSNotFound);
        EXPECT_EQ(tabs->indexOfTabViewItem(nullptr), NSNotFound);
        EXPECT_EQ(light->tabView(), tabs);
        EXPECT_THROW(tabs->tabViewItemAtIndex(3), Exception);
        EXPECT_THROW(tabs->tabViewItemAtIndex(-1), Exception);
    }
    TEST_F(TabTest, SelectingShowsTheOtherView)
    {
        tabs->selectTabViewItem(light.get());
        EXPECT_EQ(light->view()->superview(), tabs);
        EXPECT_EQ(sound->view()->superview(), nullptr);
        EXPECT_EQ(sound->tabState(), NSBackgroundTab);
        tabs->selectTabViewItemWithIdentifier("Heat"_ns);
        EXPECT_EQ(tabs->selectedTabViewItem(), heat);
        tabs->selectFirstTabViewItem(nullptr);
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        tabs->selectPreviousTabViewItem(nullptr);
        EXPECT_EQ(tabs->selectedTabViewItem(), sound) << "it is the first";
        tabs->selectNextTabViewItem(nullptr);
        EXPECT_EQ(tabs->selectedTabViewItem(), light);
        tabs->selectLastTabViewItem(nullptr);
        EXPECT_EQ(tabs->selectedTabViewItem(), heat);
    }
    TEST_F(TabTest, ForeignItemsRaise)
    {
        const Ref<NSTabViewItem> other = make<NSTabViewItem>();
        EXPECT_THROW(tabs->selectTabViewItem(other.get()), Exception);
        EXPECT_THROW(tabs->selectTabViewItemAtIndex(9), Exception);
        EXPECT_THROW(tabs->selectTabViewItemWithIdentifier("no"_ns), Exception);
        EXPECT_THROW(tabs->addTabViewItem(sound.get()), Exception);
        EXPECT_THROW(tabs->insertTabViewItem_atIndex(other.get(), 9), Exception);
        tabs->addTabViewItem(nullptr);
        tabs->selectTabViewItem(nullptr);
        EXPECT_EQ(tabs->numberOfTabViewItems(), 3);
    }
    TEST_F(TabTest, RemovingTheSelectedItemSelectsTheNext)
    {
        tabs->selectTabViewItem(light.get());
        tabs->removeTabViewItem(light.get());
        EXPECT_EQ(tabs->selectedTabViewItem(), heat);
        EXPECT_EQ(light->tabView(), nullptr);
        EXPECT_EQ(light->view()->superview(), nullptr);
        tabs->removeTabViewItem(heat.get());
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        tabs->removeTabViewItem(sound.get());
        EXPECT_EQ(tabs->selectedTabViewItem(), nullptr);
        tabs->removeTabViewItem(sound.get());
    }
    TEST_F(TabTest, TheDelegateIsAskedAndTold)
    {
        const Ref<TabGuard> guard = make<TabGuard>();
        guard->refused_ = heat;
        tabs->setDelegate(guard.get());
        tabs->selectTabViewItem(heat.get());
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        tabs->selectTabViewItem(light.get());
        tabs->removeTabViewItem(heat.get());
        EXPECT_EQ(guard->log_, "will Light did Light count ");
    }
    TEST_F(TabTest, AnotherViewOfTheSelectedItemIsShownAtOnce)
    {
        const Ref<NSView> old = sound->view();
        const Ref<NSView> fresh = make<NSView>();
        sound->setView(fresh.get());
        EXPECT_EQ(fresh->superview(), tabs);
        EXPECT_EQ(old->superview(), nullptr);
        EXPECT_EQ(fresh->frame(), tabs->contentRect());
    }
    TEST_F(TabTest, TheViewFollowsTheSize)
    {
        tabs->setFrameSize({ 200, 100 });
        EXPECT_EQ(sound->view()->frame(), tabs->contentRect());
        for (const CGFloat size : { 0.0, 1.0, -20.0, 1e9 }) {
            tabs->setFrameSize({ size, size });
            desk.screen.process();
        }
        EXPECT_EQ(sound->view()->frame(), tabs->contentRect());
    }
    TEST_F(TabTest, WithoutTabsTheViewHasAllTheRoom)
    {
        const CGFloat with = tabs->contentRect().size.height;
        tabs->setTabViewType(NSNoTabsBezelBorder);
        EXPECT_GT(tabs->contentRect().size.height, with);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 140, 10 }), nullptr);
        tabs->setTabViewType(NSNoTabsNoBorder);
        EXPECT_EQ(tabs->contentRect(), tabs->bounds());
        tabs->setTabViewType(static_cast<NSTabViewType>(77));
        EXPECT_EQ(tabs->tabViewType(), NSNoTabsNoBorder);
    }
    TEST_F(TabTest, TabsCanStandBelow)
    {
        tabs->setTabViewType(NSBottomTabsBezelBorder);
        EXPECT_GT(tab(light).y, 75);
    }
    TEST_F(TabTest, TabsCanStandOneUnderTheOtherAtTheLeft)
    {
        tabs->setTabViewType(NSLeftTabsBezelBorder);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 20, 15 }), sound);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 20, 60 }), heat);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 140, 75 }), nullptr);
        EXPECT_GT(NSMinX(tabs->contentRect()), 40);
        EXPECT_LT(NSMinY(tabs->contentRect()), 10);
    }
    TEST_F(TabTest, TabsCanStandOneUnderTheOtherAtTheRight)
    {
        tabs->setTabViewType(NSRightTabsBezelBorder);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 260, 15 }), sound);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 20, 15 }), nullptr);
        EXPECT_LT(NSMaxX(tabs->contentRect()), 240);
    }
    TEST_F(TabTest, TabsBesideTheBoxFollowTheArrowsUpAndDown)
    {
        tabs->setTabViewType(NSLeftTabsBezelBorder);
        desk.window->makeFirstResponder(tabs.get());
        desk.press(NSDownArrowFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), light);
        desk.press(NSUpArrowFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
    }
    TEST_F(TabTest, TooManyTabsBesideTheBoxShareItsHeight)
    {
        tabs->setTabViewType(NSLeftTabsBezelBorder);
        for (int i = 0; i < 20; ++i)
            add("More"_ns);
        EXPECT_NE(tabs->tabViewItemAtPoint({ 20, 140 }), nullptr);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 20, 149 }), nullptr);
    }
    TEST_F(TabTest, LongLabelsBesideTheBoxLeaveItHalfOfTheView)
    {
        tabs->setTabViewType(NSLeftTabsBezelBorder);
        sound->setLabel("A label that is much longer than everything else that can be seen"_ns);
        EXPECT_GT(tabs->contentRect().size.width, 100);
    }
    TEST_F(TabTest, TooManyTabsShareTheRoom)
    {
        for (int i = 0; i < 30; ++i)
            add("A label that needs some room"_ns);
        EXPECT_GT(tabs->minimumSize().width, 280);
        EXPECT_EQ(tabs->tabViewItemAtPoint({ 2, 10 }), nullptr);
        EXPECT_NE(tabs->tabViewItemAtPoint({ 270, 10 }), nullptr);
    }

    // ---- the user's hand

    TEST_F(TabTest, APressOnATabSelectsIt)
    {
        desk.click(*tabs, tab(heat));
        EXPECT_EQ(tabs->selectedTabViewItem(), heat);
    }
    TEST_F(TabTest, AReleaseElsewhereSelectsNothing)
    {
        desk.drag(*tabs, tab(heat), { 140, 100 });
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        desk.drag(*tabs, tab(heat), tab(light));
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
    }
    TEST_F(TabTest, ArrowsGoFromTabToTab)
    {
        desk.window->makeFirstResponder(tabs.get());
        desk.press(NSRightArrowFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), light);
        desk.press(NSEndFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), heat);
        desk.press(NSLeftArrowFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), light);
        desk.press(NSHomeFunctionKey);
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
    }
    TEST_F(TabTest, AnItemThatTheDelegateRemovesIsNotSelected)
    {
        const Ref<TabGuard> guard = make<TabGuard>();
        guard->removes_ = true;
        tabs->setDelegate(guard.get());
        desk.click(*tabs, tab(heat));
        EXPECT_EQ(tabs->selectedTabViewItem(), sound);
        EXPECT_EQ(tabs->numberOfTabViewItems(), 2);
    }

    TEST_F(TabTest, AnArchiveKeepsItemsAndSelection)
    {
        tabs->selectTabViewItem(light.get());
        light->view()->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(1, 2, 3, 4)).get());
        tabs->setTabViewType(NSBottomTabsBezelBorder);
        const Ref<NSTabView> back = test::archived(tabs);
        ASSERT_EQ(back->numberOfTabViewItems(), 3);
        EXPECT_EQ(back->tabViewType(), NSBottomTabsBezelBorder);
        const Ref<NSTabViewItem> item = back->tabViewItemAtIndex(1);
        EXPECT_EQ(back->selectedTabViewItem(), item);
        EXPECT_EQ(utf8Of(item->label().get()), "Light");
        EXPECT_EQ(item->view()->superview(), back);
        EXPECT_EQ(item->view()->subviews()->count(), 1U);
        EXPECT_EQ(back->subviews()->count(), 1U);
    }

}
}
