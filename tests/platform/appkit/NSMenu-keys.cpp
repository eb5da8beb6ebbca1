// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"
#include "support/OpenMenu.h"

namespace brindle {

namespace {

    Ref<NSEvent> press(const char* key, NSEventModifierFlags flags = NSCommandKeyMask)
    {
        const Ref<NSString> text = stringFrom(std::string(key));
        return NSEvent::cls()
            .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                NSKeyDown, {}, flags, 0, 0, nullptr, text.get(), text.get(), false, 0);
    }

}

/// A target that decides which of its items may be chosen, and a delegate that fills menus.
class MenuJudge : public NSObject {
    BRINDLE_OBJECT(MenuJudge, NSObject)

public:
    bool allows_ = true;
    int asked_ = 0;
    int performed_ = 0;
    int updates_ = 0;
    NSInteger count_ = 0;
};

template <> struct MenuJudge::Methods<struct Judging> {

    static bool validate(MenuJudge& self, NSObject*)
    {
        ++self.asked_;
        return self.allows_;
    }
    static void act(MenuJudge& self, NSObject*) { ++self.performed_; }
    static NSInteger count(MenuJudge& self, NSMenu*) { return self.count_; }
    static bool updateItem(MenuJudge& self, NSMenu*, NSMenuItem* item, NSInteger index, bool)
    {
        ++self.updates_;
        item->setTag(index);
        item->setKeyEquivalent(index == 2 ? "j"_ns : ""_ns);
        item->setAction(selector<"act:">);
        item->setTarget(&self);
        return true;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "validateMenuItem:", imp<validate> },
            { "act:", imp<act> },
            { "numberOfItemsInMenu:", imp<count> },
            { "menu:updateItem:atIndex:shouldCancel:", imp<updateItem> },
        });
    }
};
BRINDLE_RECORD(MenuJudge, Judging)

namespace {

    struct MenuKeysTest : testing::Test, MenuDesk { };

    TEST_F(MenuKeysTest, APressPerformsTheItemThatWaitsForIt)
    {
        add(*menu, "Open"_ns, "o"_ns);
        EXPECT_TRUE(menu->performKeyEquivalent(press("o").get()));
        EXPECT_EQ(chosen(), "Open");
    }

    TEST_F(MenuKeysTest, OtherPressesAreNotHandled)
    {
        add(*menu, "Open"_ns, "o"_ns);
        EXPECT_FALSE(menu->performKeyEquivalent(press("p").get()));
        EXPECT_FALSE(menu->performKeyEquivalent(press("o", 0).get()));
        EXPECT_FALSE(
            menu->performKeyEquivalent(press("o", NSCommandKeyMask | NSAlternateKeyMask).get()));
        EXPECT_FALSE(menu->performKeyEquivalent(nullptr));
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuKeysTest, AnUpperCaseKeyWantsShift)
    {
        add(*menu, "Save"_ns, "s"_ns);
        add(*menu, "Save As"_ns, "S"_ns);
        menu->performKeyEquivalent(press("s").get());
        EXPECT_EQ(chosen(), "Save");
        menu->performKeyEquivalent(press("S", NSCommandKeyMask | NSShiftKeyMask).get());
        EXPECT_EQ(chosen(), "Save As");
    }

    TEST_F(MenuKeysTest, AnAlternateHasAKeyOfItsOwnWithoutBeingShown)
    {
        add(*menu, "Close"_ns, "w"_ns);
        const Ref<NSMenuItem> all = add(*menu, "Close All"_ns, "w"_ns);
        all->setAlternate(true);
        all->setKeyEquivalentModifierMask(NSCommandKeyMask | NSAlternateKeyMask);
        menu->performKeyEquivalent(press("w", NSCommandKeyMask | NSAlternateKeyMask).get());
        EXPECT_EQ(chosen(), "Close All");
        menu->performKeyEquivalent(press("w").get());
        EXPECT_EQ(chosen(), "Close");
    }

    TEST_F(MenuKeysTest, TheMaskMayNameOtherModifiers)
    {
        add(*menu, "Minimise"_ns, "m"_ns)
            ->setKeyEquivalentModifierMask(NSControlKeyMask | NSAlternateKeyMask);
        EXPECT_TRUE(
            menu->performKeyEquivalent(press("m", NSControlKeyMask | NSAlternateKeyMask).get()));
        EXPECT_FALSE(menu->performKeyEquivalent(press("m").get()));
    }

    TEST_F(MenuKeysTest, CapsLockAndKeypadDoNotCount)
    {
        add(*menu, "Open"_ns, "o"_ns);
        EXPECT_TRUE(menu->performKeyEquivalent(
            press("o", NSCommandKeyMask | NSAlphaShiftKeyMask | NSNumericPadKeyMask).get()));
    }

    TEST_F(MenuKeysTest, DisabledItemsAreNotPerformed)
    {
        add(*menu, "Open"_ns, "o"_ns)->setEnabled(false);
        EXPECT_FALSE(menu->performKeyEquivalent(press("o").get()));
    }

    TEST_F(MenuKeysTest, HiddenItemsArePerformedOnlyWhereTheyAllowIt)
    {
        const Ref<NSMenuItem> item = add(*menu, "Open"_ns, "o"_ns);
        item->setHidden(true);
        EXPECT_FALSE(menu->performKeyEquivalent(press("o").get()));
        item->setAllowsKeyEquivalentWhenHidden(true);
        EXPECT_TRUE(menu->performKeyEquivalent(press("o").get()));
    }

    TEST_F(MenuKeysTest, SubmenusAreSearchedToo)
    {
        outer->setKeyEquivalent("u"_ns);
        EXPECT_TRUE(menu->performKeyEquivalent(press("u").get()));
        EXPECT_EQ(chosen(), "Outer");
    }

    TEST_F(MenuKeysTest, SubmenusThatCannotBeOpenedAreNot)
    {
        outer->setKeyEquivalent("u"_ns);
        more->setEnabled(false);
        EXPECT_FALSE(menu->performKeyEquivalent(press("u").get()));
        more->setEnabled(true);
        more->setHidden(true);
        EXPECT_FALSE(menu->performKeyEquivalent(press("u").get()));
    }

    TEST_F(MenuKeysTest, TheFirstOfTwoThatWaitForOneKeyWins)
    {
        inner->setKeyEquivalent("k"_ns);
        last->setKeyEquivalent("k"_ns);
        menu->performKeyEquivalent(press("k").get());
        EXPECT_EQ(chosen(), "Inner");
        inner->setEnabled(false);
        menu->performKeyEquivalent(press("k").get());
        EXPECT_EQ(chosen(), "Last");
    }

    TEST_F(MenuKeysTest, AChangedKeyIsFoundAtOnce)
    {
        one->setKeyEquivalent("k"_ns);
        EXPECT_TRUE(menu->performKeyEquivalent(press("k").get()));
        one->setKeyEquivalent("j"_ns);
        EXPECT_FALSE(menu->performKeyEquivalent(press("k").get()));
        EXPECT_TRUE(menu->performKeyEquivalent(press("j").get()));
        menu->removeItem(one.get());
        EXPECT_FALSE(menu->performKeyEquivalent(press("j").get()));
    }

    TEST_F(MenuKeysTest, ANonLatinLayoutUsesTheLatinLetterOfTheKey)
    {
        add(*menu, "Save"_ns, "s"_ns);
        const Ref<NSWindow> window = showKeyWindow();
        screen.application().setMainMenu(menu.get());
        display::ScriptedKey key;
        key.characters = u"\u0451";
        key.latinCharacter = 's';
        key.modifiers = display::kCommand;
        screen.display().pressKey(key);
        screen.process();
        screen.application().setMainMenu(nullptr);
        window->close();
        EXPECT_EQ(chosen(), "Save");
    }

    TEST_F(MenuKeysTest, BackspaceAndReturnMatchTheirKeys)
    {
        add(*menu, "Delete"_ns, "\x08"_ns);
        add(*menu, "Run"_ns, "\r"_ns);
        EXPECT_TRUE(menu->performKeyEquivalent(press("\x7F").get()));
        EXPECT_EQ(chosen(), "Delete");
        EXPECT_TRUE(menu->performKeyEquivalent(press("\x03").get()));
        EXPECT_EQ(chosen(), "Run");
    }

    TEST_F(MenuKeysTest, TheMainMenuGetsWhatNoViewTakes)
    {
        add(*menu, "Open"_ns, "o"_ns);
        const Ref<NSWindow> window = showKeyWindow();
        screen.application().setMainMenu(menu.get());
        screen.keyboard().press('o', NSCommandKeyMask);
        screen.application().setMainMenu(nullptr);
        window->close();
        EXPECT_EQ(log->count_, 1);
    }

    TEST_F(MenuKeysTest, TheMenuIsUpdatedBeforeItIsSearched)
    {
        const Ref<MenuJudge> judge = make<MenuJudge>();
        menu->setAutoenablesItems(true);
        const Ref<NSMenuItem> item = add(*menu, "Open"_ns, "o"_ns);
        item->setTarget(judge.get());
        judge->allows_ = false;
        EXPECT_FALSE(menu->performKeyEquivalent(press("o").get()));
        EXPECT_FALSE(item->isEnabled());
        judge->allows_ = true;
        EXPECT_TRUE(menu->performKeyEquivalent(press("o").get()));
        EXPECT_EQ(judge->performed_, 1);
    }

    TEST_F(MenuKeysTest, ADelegateFillsTheMenuBeforeItIsSearched)
    {
        const Ref<MenuJudge> judge = make<MenuJudge>();
        judge->count_ = 4;
        const Ref<NSMenu> filled = make<NSMenu>();
        filled->setDelegate(judge.get());
        EXPECT_TRUE(filled->performKeyEquivalent(press("j").get()));
        EXPECT_EQ(filled->numberOfItems(), 4);
        EXPECT_EQ(judge->performed_, 1);
        judge->count_ = 1;
        EXPECT_FALSE(filled->performKeyEquivalent(press("j").get()));
        EXPECT_EQ(filled->numberOfItems(), 1);
    }

    TEST_F(MenuKeysTest, AnItemWithoutAPerformerIsDisabled)
    {
        menu->setAutoenablesItems(true);
        one->setTarget(nullptr);
        one->setAction(selector<"nobodyPerformsThis:">);
        menu->update();
        EXPECT_FALSE(one->isEnabled());
        EXPECT_TRUE(last->isEnabled());
        EXPECT_TRUE(more->isEnabled());
    }

    TEST_F(MenuKeysTest, AnItemWithoutAnActionIsDisabled)
    {
        menu->setAutoenablesItems(true);
        one->setAction(SEL {});
        menu->update();
        EXPECT_FALSE(one->isEnabled());
    }

    TEST_F(MenuKeysTest, AnItemWithoutATargetIsForTheResponderChain)
    {
        menu->setAutoenablesItems(true);
        one->setTarget(nullptr);
        one->setAction(selector<"orderFrontRegardless">);
        screen.window().makeKeyWindow();
        menu->update();
        EXPECT_EQ(one->isEnabled(), screen.application().targetForAction(one->action()) != nullptr);
    }

    TEST_F(MenuKeysTest, AnItemWhoseTargetHasGoneDoesNothing)
    {
        menu->setAutoenablesItems(true);
        one->setTarget(make<ActionLog>().get());
        menu->update();
        EXPECT_FALSE(one->isEnabled());
        one->setEnabled(true);
        menu->performActionForItemAtIndex(0);
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuKeysTest, WithoutAutoenablingItemsStayAsTheyAre)
    {
        one->setAction(SEL {});
        menu->update();
        EXPECT_TRUE(one->isEnabled());
    }

    TEST_F(MenuKeysTest, TheActionIsAnnouncedWithTheRootMenu)
    {
        std::string text;
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
            nullptr, menu.get(), nullptr, [&](NSNotification* note) {
                text += utf8(note->name()) + " " + std::to_string(log->count_) + "\n";
            });
        submenu->performActionForItemAtIndex(0);
        center->removeObserver(token.get());
        EXPECT_EQ(text, "NSMenuWillSendActionNotification 0\nNSMenuDidSendActionNotification 1\n");
    }

    TEST_F(MenuKeysTest, PerformingADisabledItemDoesNothing)
    {
        menu->performActionForItemAtIndex(1);
        EXPECT_EQ(log->count_, 0);
        menu->performActionForItemAtIndex(0);
        EXPECT_EQ(log->count_, 1);
    }

    TEST_F(MenuKeysTest, AViewIsAskedBeforeTheMainMenu)
    {
        const Ref<ActionLog> other = make<ActionLog>();
        add(*menu, "Open"_ns, "o"_ns);
        const Ref<NSButton> button = screen.add<NSButton>(NSMakeRect(0, 0, 80, 26));
        button->setKeyEquivalent("o"_ns);
        button->setKeyEquivalentModifierMask(NSCommandKeyMask);
        button->setTarget(other.get());
        button->setAction(selector<"act:">);
        screen.application().setMainMenu(menu.get());
        const Ref<NSEvent> event = press("o");
        screen.window().performKeyEquivalent(event.get());
        screen.application().setMainMenu(nullptr);
        EXPECT_EQ(other->count_, 1);
        EXPECT_EQ(log->count_, 0);
    }

}

}
