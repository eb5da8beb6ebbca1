// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenu.h"

#include <gtest/gtest.h>

#include <limits>

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObjCRuntime.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSMenu> menuOf(std::initializer_list<NSString*> titles)
    {
        Ref<NSMenu> menu = make<NSMenu>();
        for (NSString* title : titles)
            menu->addItemWithTitle_action_keyEquivalent(title, SEL {}, nullptr);
        return menu;
    }
    std::string titlesOf(NSMenu& menu)
    {
        std::string text;
        for (NSMenuItem* item : each<NSMenuItem>(menu.itemArray()))
            text += (text.empty() ? "" : " ") + utf8(item->title());
        return text;
    }
    Ref<NSObject> archived(NSObject& object)
    {
        return NSKeyedUnarchiver::cls().unarchiveObjectWithData(
            NSKeyedArchiver::cls().archivedDataWithRootObject(&object).get());
    }

    TEST(Menu, ANewOneIsEmptyAndEnablesItsItems)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        EXPECT_EQ(utf8(menu->title()), "");
        EXPECT_EQ(menu->numberOfItems(), 0);
        EXPECT_TRUE(menu->autoenablesItems());
        EXPECT_FALSE(menu->supermenu());
        EXPECT_FALSE(menu->highlightedItem());
    }

    TEST(Menu, KeepsTheOrderOfItsItems)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "c"_ns });
        menu->insertItemWithTitle_action_keyEquivalent_atIndex("b"_ns, SEL {}, nullptr, 1);
        EXPECT_EQ(titlesOf(*menu), "a b c");
        menu->removeItemAtIndex(0);
        EXPECT_EQ(titlesOf(*menu), "b c");
        menu->removeAllItems();
        EXPECT_EQ(menu->numberOfItems(), 0);
    }

    TEST(Menu, AnItemKnowsItsMenuUntilItIsRemoved)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const Ref<NSMenuItem> item = menu->itemAtIndex(0);
        EXPECT_EQ(item->menu(), menu.get());
        menu->removeItem(item.get());
        EXPECT_FALSE(item->menu());
    }

    TEST(Menu, AnItemKnowsNoMenuThatHasGone)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        {
            const Ref<NSMenu> menu = make<NSMenu>();
            menu->addItem(item.get());
        }
        EXPECT_FALSE(item->menu());
    }

    TEST(Menu, RemovingAForeignItemChangesNothing)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        menu->removeItem(make<NSMenuItem>().get());
        menu->removeItem(nullptr);
        EXPECT_EQ(menu->numberOfItems(), 1);
    }

    TEST(Menu, RefusesAnItemThatIsInAMenu)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const Ref<NSMenuItem> item = menu->itemAtIndex(0);
        EXPECT_EQ(raisedBy([&] { make<NSMenu>()->addItem(item.get()); }),
            "NSInvalidArgumentException: *** -[NSMenu insertItem:atIndex:]: the item is in a menu "
            "already");
    }

    TEST(Menu, RefusesNoItem)
    {
        EXPECT_EQ(raisedBy([] { make<NSMenu>()->addItem(nullptr); }),
            "NSInvalidArgumentException: *** -[NSMenu insertItem:atIndex:]: there is no item");
    }

    TEST(Menu, RaisesForPlacesOutsideOfItsItems)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        EXPECT_EQ(raisedBy([&] { menu->itemAtIndex(1); }),
            "NSRangeException: *** -[NSMenu itemAtIndex:]: index 1 is outside of 1 items");
        EXPECT_EQ(raisedBy([&] { menu->removeItemAtIndex(-1); }),
            "NSRangeException: *** -[NSMenu removeItemAtIndex:]: index -1 is outside of 1 items");
        EXPECT_NE(raisedBy([&] { menu->insertItem_atIndex(make<NSMenuItem>().get(), 2); }), "");
        EXPECT_NE(raisedBy([&] { menu->performActionForItemAtIndex(1); }), "");
    }

    TEST(Menu, FindsItems)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "b"_ns, "c"_ns });
        const Ref<NSMenuItem> item = menu->itemAtIndex(1);
        const Ref<NSMenu> submenu = make<NSMenu>();
        item->setTag(7);
        item->setRepresentedObject("thing"_ns);
        item->setTarget(menu.get());
        item->setAction(selector<"cut:">);
        menu->itemAtIndex(2)->setSubmenu(submenu.get());
        EXPECT_EQ(menu->indexOfItem(item.get()), 1);
        EXPECT_EQ(menu->indexOfItemWithTitle("b"_ns), 1);
        EXPECT_EQ(menu->indexOfItemWithTag(7), 1);
        EXPECT_EQ(menu->indexOfItemWithRepresentedObject("thing"_ns), 1);
        EXPECT_EQ(menu->indexOfItemWithTarget_andAction(menu.get(), SEL {}), 1);
        EXPECT_EQ(menu->indexOfItemWithTarget_andAction(menu.get(), selector<"copy:">), -1);
        EXPECT_EQ(menu->indexOfItemWithSubmenu(submenu.get()), 2);
        EXPECT_EQ(menu->itemWithTitle("b"_ns), item.get());
        EXPECT_EQ(menu->itemWithTag(7), item.get());
    }

    TEST(Menu, AnswersMinusOneForWhatItDoesNotHave)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        EXPECT_EQ(menu->indexOfItem(nullptr), -1);
        EXPECT_EQ(menu->indexOfItemWithTitle("z"_ns), -1);
        EXPECT_EQ(menu->indexOfItemWithTitle(nullptr), -1);
        EXPECT_EQ(menu->indexOfItemWithTag(5), -1);
        EXPECT_FALSE(menu->itemWithTitle("z"_ns));
    }

    TEST(Menu, ASubmenuKnowsWhereItOpensFrom)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const Ref<NSMenu> submenu = menuOf({ "b"_ns });
        menu->setSubmenu_forItem(submenu.get(), menu->itemAtIndex(0).get());
        EXPECT_EQ(submenu->supermenu(), menu.get());
        EXPECT_EQ(submenu->itemAtIndex(0)->parentItem(), menu->itemAtIndex(0).get());
        EXPECT_TRUE(menu->itemAtIndex(0)->hasSubmenu());
        EXPECT_EQ(menu->itemAtIndex(0)->action(), selector<"submenuAction:">);
        menu->removeItemAtIndex(0);
        EXPECT_FALSE(submenu->supermenu());
    }

    TEST(Menu, RefusesASubmenuOfAnotherItem)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "b"_ns });
        const Ref<NSMenu> submenu = make<NSMenu>();
        menu->itemAtIndex(0)->setSubmenu(submenu.get());
        EXPECT_EQ(raisedBy([&] { menu->itemAtIndex(1)->setSubmenu(submenu.get()); }),
            "NSInvalidArgumentException: *** -[NSMenuItem setSubmenu:]: the menu is the submenu of "
            "another item");
    }

    TEST(Menu, RefusesToContainItself)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const std::string text
            = "NSInvalidArgumentException: *** -[NSMenuItem setSubmenu:]: the menu would contain "
              "itself";
        EXPECT_EQ(raisedBy([&] { menu->itemAtIndex(0)->setSubmenu(menu.get()); }), text);
        const Ref<NSMenu> submenu = menuOf({ "b"_ns });
        menu->itemAtIndex(0)->setSubmenu(submenu.get());
        EXPECT_EQ(raisedBy([&] { submenu->itemAtIndex(0)->setSubmenu(menu.get()); }), text);
    }

    TEST(Menu, RefusesAnItemThatLeadsToIt)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        item->setSubmenu(menu.get());
        EXPECT_EQ(raisedBy([&] { menu->addItem(item.get()); }),
            "NSInvalidArgumentException: *** -[NSMenu insertItem:atIndex:]: the menu would contain "
            "itself");
    }

    TEST(Menu, PostsWhereItsItemsChange)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "b"_ns });
        std::string log;
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
            nullptr, menu.get(), nullptr, [&](NSNotification* note) {
                const Ref<NSObject> index = note->userInfo()->objectForKey("NSMenuItemIndex"_ns);
                log += utf8(note->name()) + " " + textOf(index) + "\n";
            });
        menu->insertItem_atIndex(make<NSMenuItem>().get(), 1);
        menu->itemAtIndex(2)->setTitle("c"_ns);
        menu->removeItemAtIndex(0);
        center->removeObserver(token.get());
        EXPECT_EQ(log,
            "NSMenuDidAddItemNotification 1\nNSMenuDidChangeItemNotification 2\n"
            "NSMenuDidRemoveItemNotification 0\n");
    }

    TEST(Menu, ACopyHasCopiesOfItemsAndSubmenus)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "b"_ns });
        menu->setTitle("Menu"_ns);
        menu->itemAtIndex(1)->setSubmenu(menuOf({ "c"_ns }).get());
        const Ref<NSMenu> copy = cast<NSMenu>(menu->copy());
        EXPECT_EQ(titlesOf(*copy), "a b");
        EXPECT_EQ(utf8(copy->title()), "Menu");
        EXPECT_NE(copy->itemAtIndex(0), menu->itemAtIndex(0));
        EXPECT_EQ(titlesOf(*copy->itemAtIndex(1)->submenu().get()), "c");
        EXPECT_EQ(copy->itemAtIndex(1)->submenu()->supermenu(), copy.get());
    }

    TEST(Menu, ComesBackFromAnArchive)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        menu->setTitle("Menu"_ns);
        menu->setMinimumWidth(120);
        menu->setAutoenablesItems(false);
        menu->addItem(NSMenuItem::cls().separatorItem().get());
        const Ref<NSMenuItem> item = menu->addItemWithTitle_action_keyEquivalent(
            "b"_ns, NSSelectorFromString("cut:"_ns), "x"_ns);
        item->setKeyEquivalentModifierMask(NSControlKeyMask);
        item->setState(NSMixedState);
        item->setTag(9);
        item->setIndentationLevel(3);
        item->setEnabled(false);
        item->setSubmenu(menuOf({ "c"_ns }).get());
        const Ref<NSMenu> read = cast<NSMenu>(archived(*menu));
        EXPECT_EQ(titlesOf(*read), "a  b");
        EXPECT_EQ(read->minimumWidth(), 120);
        EXPECT_FALSE(read->autoenablesItems());
        EXPECT_TRUE(read->itemAtIndex(1)->isSeparatorItem());
        const Ref<NSMenuItem> again = read->itemAtIndex(2);
        EXPECT_EQ(again->action(), selector<"cut:">);
        EXPECT_EQ(utf8(again->keyEquivalent()), "x");
        EXPECT_EQ(again->keyEquivalentModifierMask(), NSControlKeyMask);
        EXPECT_EQ(again->state(), NSMixedState);
        EXPECT_EQ(again->tag(), 9);
        EXPECT_EQ(again->indentationLevel(), 3);
        EXPECT_FALSE(again->isEnabled());
        EXPECT_EQ(titlesOf(*again->submenu().get()), "c");
    }

    TEST(Menu, OddMinimumWidthsAreNone)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        menu->setMinimumWidth(std::numeric_limits<double>::quiet_NaN());
        EXPECT_EQ(menu->minimumWidth(), 0);
        menu->setMinimumWidth(-5);
        EXPECT_EQ(menu->minimumWidth(), 0);
    }

    TEST(Menu, ItsSizeGrowsWithItsItems)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const NSSize one = menu->size();
        menu->addItemWithTitle_action_keyEquivalent("a longer title"_ns, SEL {}, "k"_ns);
        EXPECT_GT(menu->size().width, one.width);
        EXPECT_GT(menu->size().height, one.height);
    }

    TEST(Menu, HiddenItemsTakeNoRoom)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns, "a long title"_ns });
        const NSSize both = menu->size();
        menu->itemAtIndex(1)->setHidden(true);
        EXPECT_LT(menu->size().width, both.width);
        EXPECT_LT(menu->size().height, both.height);
    }

    TEST(Menu, ATitleOfFiveThousandLettersStaysOnTheScreen)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        const std::string title(5000, 'w');
        menu->addItemWithTitle_action_keyEquivalent(stringFrom(title).get(), SEL {}, nullptr);
        EXPECT_LE(menu->size().width, 600);
    }

    TEST(MenuItem, ANewOneHasNothingButCommandAsModifier)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        EXPECT_EQ(utf8(item->title()), "");
        EXPECT_EQ(utf8(item->keyEquivalent()), "");
        EXPECT_EQ(item->keyEquivalentModifierMask(), NSCommandKeyMask);
        EXPECT_TRUE(item->isEnabled());
        EXPECT_EQ(item->state(), NSOffState);
        EXPECT_FALSE(item->isSeparatorItem());
        EXPECT_TRUE(item->onStateImage());
        EXPECT_TRUE(item->mixedStateImage());
        EXPECT_FALSE(item->offStateImage());
    }

    TEST(MenuItem, ASeparatorCannotBeChosen)
    {
        const Ref<NSMenuItem> item = NSMenuItem::cls().separatorItem();
        EXPECT_TRUE(item->isSeparatorItem());
        EXPECT_FALSE(item->isEnabled());
    }

    TEST(MenuItem, StatesAreOnOffAndMixed)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        item->setState(5);
        EXPECT_EQ(item->state(), NSOnState);
        item->setState(-7);
        EXPECT_EQ(item->state(), NSMixedState);
    }

    TEST(MenuItem, IndentationEndsAtFifteen)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        item->setIndentationLevel(99);
        EXPECT_EQ(item->indentationLevel(), 15);
        EXPECT_EQ(raisedBy([&] { item->setIndentationLevel(-1); }),
            "NSInvalidArgumentException: *** -[NSMenuItem setIndentationLevel:]: the level is "
            "negative");
    }

    TEST(MenuItem, ForgetsATargetThatHasGone)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        item->setTarget(make<NSObject>().get());
        EXPECT_FALSE(item->target());
    }

    TEST(MenuItem, KnowsOfHiddenAncestors)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const Ref<NSMenu> submenu = menuOf({ "b"_ns });
        menu->itemAtIndex(0)->setSubmenu(submenu.get());
        EXPECT_FALSE(submenu->itemAtIndex(0)->isHiddenOrHasHiddenAncestor());
        menu->itemAtIndex(0)->setHidden(true);
        EXPECT_TRUE(submenu->itemAtIndex(0)->isHiddenOrHasHiddenAncestor());
        EXPECT_FALSE(submenu->itemAtIndex(0)->isHidden());
    }

    TEST(MenuItem, ACopyIsInNoMenu)
    {
        const Ref<NSMenu> menu = menuOf({ "a"_ns });
        const Ref<NSMenuItem> item = menu->itemAtIndex(0);
        item->setTag(4);
        item->setState(NSOnState);
        const Ref<NSMenuItem> copy = cast<NSMenuItem>(item->copy());
        EXPECT_FALSE(copy->menu());
        EXPECT_EQ(copy->tag(), 4);
        EXPECT_EQ(copy->state(), NSOnState);
        EXPECT_EQ(utf8(copy->title()), "a");
    }

    TEST(MenuItem, MarksCanBeTakenAway)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        item->setOnStateImage(nullptr);
        EXPECT_FALSE(item->onStateImage());
    }

    TEST(MenuItem, RefusesTextsThatAreNone)
    {
        const Ref<NSMenuItem> item = make<NSMenuItem>();
        const Ref<NSNumber> number = NSNumber::cls().numberWithInteger(1);
        EXPECT_EQ(raisedBy([&] { item->send<"setTitle:">(static_cast<NSObject*>(number.get())); }),
            "NSInvalidArgumentException: *** -[NSMenuItem setTitle:]: the text is of another kind");
        EXPECT_NE(
            raisedBy([&] { item->send<"setSubmenu:">(static_cast<NSObject*>(number.get())); }), "");
    }

}

}
