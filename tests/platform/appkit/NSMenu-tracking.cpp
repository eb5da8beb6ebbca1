// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "foundation/Dispatch.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"
#include "support/MenuTitle.h"
#include "support/OpenMenu.h"

namespace brindle {

/// Writes down what a menu tells its delegate.
class MenuListener : public NSObject {
    BRINDLE_OBJECT(MenuListener, NSObject)

public:
    std::string text_;
    Ref<NSMenuItem> takesAway_; // its submenu, when nothing is highlighted
};

template <> struct MenuListener::Methods<struct Listening> {

    static void note(MenuListener& self, const char* what, NSMenu* menu)
    {
        self.text_ += std::string(what) + " " + utf8(menu->title()) + "\n";
    }
    static void needsUpdate(MenuListener& self, NSMenu* menu) { note(self, "update", menu); }
    static void willOpen(MenuListener& self, NSMenu* menu) { note(self, "open", menu); }
    static void didClose(MenuListener& self, NSMenu* menu) { note(self, "close", menu); }
    static void willHighlight(MenuListener& self, NSMenu*, NSMenuItem* item)
    {
        self.text_ += "highlight " + (item ? utf8(item->title()) : "nothing") + "\n";
        if (!item && self.takesAway_)
            self.takesAway_->setSubmenu(nullptr);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "menuNeedsUpdate:", imp<needsUpdate> },
            { "menuWillOpen:", imp<willOpen> },
            { "menuDidClose:", imp<didClose> },
            { "menu:willHighlightItem:", imp<willHighlight> },
        });
    }
};
BRINDLE_RECORD(MenuListener, Listening)

namespace {

    struct MenuTrackingTest : testing::Test, MenuDesk {
        /// Presses a title that opens the menu, and keeps the button down.
        Ref<MenuTitle> pressTitle()
        {
            Ref<MenuTitle> title = screen.add<MenuTitle>(NSMakeRect(100, 505, 60, 22));
            title->setMenu(menu.get());
            screen.pointer().press({ 110, 510 });
            return title;
        }
        /// Adds a step that writes down what is highlighted.
        void look()
        {
            script.then([this] { seen.push_back(highlighted(*menu)); });
        }
        std::vector<std::string> seen;
    };
    using Seen = std::vector<std::string>;

    // ---- with the pointer

    TEST_F(MenuTrackingTest, TwoClicksChoose)
    {
        const Ref<MenuTitle> title = pressTitle();
        script.wait(0.05).release().click(middleOf(0));
        screen.process();
        EXPECT_EQ(chosen(), "One");
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuTrackingTest, APressADragAndAReleaseChoose)
    {
        const Ref<MenuTitle> title = pressTitle();
        script.move(middleOf(0)).move(middleOf(4)).release();
        screen.process();
        EXPECT_EQ(chosen(), "Last");
        EXPECT_EQ(title->presses_, 1);
    }

    TEST_F(MenuTrackingTest, AQuickDragToAnItemChoosesIt)
    {
        const Ref<MenuTitle> title = pressTitle();
        screen.pointer().dragTo(middleOf(4));
        screen.pointer().release();
        EXPECT_EQ(chosen(), "Last");
    }

    TEST_F(MenuTrackingTest, ALongPressThatEndsOutsideChoosesNothing)
    {
        const Ref<MenuTitle> title = pressTitle();
        script.wait(1).release().then([] { EXPECT_TRUE(menuWindows().empty()); });
        screen.process();
        EXPECT_TRUE(menuWindows().empty());
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, AShortClickLeavesTheMenuOpen)
    {
        const Ref<MenuTitle> title = pressTitle();
        std::size_t open = 0;
        script.wait(0.1).release().wait(2).then([&] { open = menuWindows().size(); }).key(0x1B);
        screen.process();
        EXPECT_EQ(open, 1u);
    }

    TEST_F(MenuTrackingTest, AClickElsewhereClosesAndDoesNothingElse)
    {
        const Ref<NSButton> button = screen.add<NSButton>(NSMakeRect(600, 100, 100, 26));
        button->setTarget(log.get());
        button->setAction(selector<"act:">);
        script.click({ 620, 112 });
        EXPECT_FALSE(open());
        screen.process();
        EXPECT_EQ(log->count_, 0);
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuTrackingTest, AClickOnADisabledItemOrSeparatorChoosesNothing)
    {
        script.click(middleOf(1)).then([] { EXPECT_EQ(menuWindows().size(), 1u); }).key(0x1B);
        EXPECT_FALSE(open());
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, TheItemUnderThePointerIsHighlighted)
    {
        script.move(middleOf(0));
        look();
        script.move(middleOf(1));
        look();
        script.move(middleOf(4));
        look();
        script.move({ 700, 100 });
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "One", "", "Last", "" }));
    }

    TEST_F(MenuTrackingTest, ASubmenuOpensAfterAMoment)
    {
        std::size_t soon = 0;
        std::size_t later = 0;
        script.move(middleOf(3)).then([&] { soon = menuWindows().size(); });
        script.wait(0.3).then([&] { later = menuWindows().size(); }).key(0x1B);
        open();
        EXPECT_EQ(soon, 1u);
        EXPECT_EQ(later, 2u);
    }

    TEST_F(MenuTrackingTest, AClickOpensASubmenuAtOnce)
    {
        script.click(middleOf(3)).then([] { EXPECT_EQ(menuWindows().size(), 2u); }).key(0x1B);
        open();
    }

    TEST_F(MenuTrackingTest, AnItemOfASubmenuIsChosenByTheSameDrag)
    {
        script.press(middleOf(3)).then([this] {
            const NSRect frame = menuFrame(1);
            screen.display().movePointer({ NSMidX(frame), NSMaxY(frame) - 5 - rowHeight() * 1.5 });
        });
        look();
        script.release();
        EXPECT_TRUE(open());
        EXPECT_EQ(seen, (Seen { "More > Outer" }));
        EXPECT_EQ(chosen(), "Outer");
    }

    TEST_F(MenuTrackingTest, ThePathToASubmenuMayCrossOtherItems)
    {
        script.click(middleOf(3)).move(middleOf(3, 60)).then([this] {
            const NSRect child = menuFrame(1);
            const NSPoint from = middleOf(3, 60);
            const NSPoint to { NSMinX(child) + 5, NSMinY(child) + 8 };
            screen.display().movePointer({ (from.x + to.x) / 2, (from.y + to.y) / 2 });
        });
        look();
        script.then([this] {
            const NSRect child = menuFrame(1);
            screen.display().movePointer({ NSMinX(child) + 8, NSMinY(child) + 10 });
        });
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "More", "More > Outer" }));
    }

    TEST_F(MenuTrackingTest, APointerThatStopsOnTheWayTakesTheItemUnderIt)
    {
        script.click(middleOf(3)).move(middleOf(3, 20)).move({ corner.x + 24, middleOf(4).y + 6 });
        script.wait(0.6);
        look();
        script.then([&] { seen.push_back(std::to_string(menuWindows().size())); }).key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "Last", "1" }));
    }

    TEST_F(MenuTrackingTest, AnItemAboveClosesTheSubmenuAtOnce)
    {
        script.click(middleOf(3)).move(middleOf(3, 60)).move(middleOf(0, 20));
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "One" }));
    }

    // ---- with the keyboard

    TEST_F(MenuTrackingTest, ArrowsSkipWhatCannotBeChosenAndGoRound)
    {
        for (int i = 0; i < 4; ++i) {
            script.key(NSDownArrowFunctionKey);
            look();
        }
        script.key(NSUpArrowFunctionKey);
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "One", "More", "Last", "One", "Last" }));
    }

    TEST_F(MenuTrackingTest, HomeAndEndGoToTheEnds)
    {
        script.key(NSEndFunctionKey);
        look();
        script.key(NSHomeFunctionKey);
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "Last", "One" }));
    }

    TEST_F(MenuTrackingTest, RightOpensASubmenuAndLeftClosesIt)
    {
        script.key(NSDownArrowFunctionKey).key(NSDownArrowFunctionKey).key(NSRightArrowFunctionKey);
        look();
        script.key(NSLeftArrowFunctionKey);
        look();
        script.then([&] { seen.push_back(std::to_string(menuWindows().size())); }).key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "More > Inner", "More", "1" }));
    }

    TEST_F(MenuTrackingTest, ReturnAndSpaceChoose)
    {
        script.key(NSDownArrowFunctionKey).key('\r');
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "One");
        MenuScript again(screen);
        again.key(NSUpArrowFunctionKey).key(' ');
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "Last");
    }

    TEST_F(MenuTrackingTest, EscapeClosesEverything)
    {
        script.click(middleOf(3)).key(0x1B);
        EXPECT_FALSE(open());
        EXPECT_TRUE(menuWindows().empty());
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, CommandPeriodClosesToo)
    {
        script.key('.', NSCommandKeyMask);
        EXPECT_FALSE(open());
    }

    TEST_F(MenuTrackingTest, LettersFindATitle)
    {
        add(*menu, "Lemon"_ns);
        add(*menu, "\xC3\x89tude"_ns);
        script.type(u"le");
        look();
        script.wait(2).type(u"etu");
        look();
        script.wait(2).type(u"zz");
        look();
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "Lemon", "\xC3\x89tude", "\xC3\x89tude" }));
    }

    TEST_F(MenuTrackingTest, TheSameLetterGoesOnToTheNextTitle)
    {
        add(*menu, "Lemon"_ns);
        for (int i = 0; i < 3; ++i) {
            script.wait(2).key('l');
            look();
        }
        script.key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "Last", "Lemon", "Last" }));
    }

    TEST_F(MenuTrackingTest, ACommandKeyChoosesTheItemThatWaitsForIt)
    {
        last->setKeyEquivalent("l"_ns);
        script.key('l', NSCommandKeyMask);
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "Last");
    }

    TEST_F(MenuTrackingTest, KeysDoNotReachTheWindowBelow)
    {
        const Ref<NSButton> button = screen.add<NSButton>(NSMakeRect(600, 100, 100, 26));
        button->setTarget(log.get());
        button->setAction(selector<"act:">);
        screen.window().makeFirstResponder(button.get());
        script.key('x').key(0x1B);
        open();
        screen.process();
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, AlternatesComeWithTheirModifiers)
    {
        one->setKeyEquivalent("k"_ns);
        const Ref<NSMenuItem> other = menu->insertItemWithTitle_action_keyEquivalent_atIndex(
            "Other"_ns, selector<"act:">, "k"_ns, 1);
        other->setTarget(log.get());
        other->setAlternate(true);
        other->setKeyEquivalentModifierMask(NSCommandKeyMask | NSAlternateKeyMask);
        script.move(middleOf(0));
        look();
        script.then(
            [this] { screen.display().setModifiers(display::kCommand | display::kOption); });
        script.move(middleOf(0, 40));
        look();
        script.then([this] { screen.display().setModifiers(0); }).key(0x1B);
        open();
        EXPECT_EQ(seen, (Seen { "One", "Other" }));
    }

    // ---- beginning and end

    TEST_F(MenuTrackingTest, EverybodyIsTold)
    {
        const Ref<MenuListener> listener = make<MenuListener>();
        menu->setTitle("Root"_ns);
        submenu->setTitle("Sub"_ns);
        menu->setDelegate(listener.get());
        submenu->setDelegate(listener.get());
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
            nullptr, menu.get(), nullptr, [&](NSNotification* note) {
                listener->text_ += utf8(note->name()->substringFromIndex(6)) + "\n";
            });
        script.key(NSUpArrowFunctionKey).key(NSUpArrowFunctionKey).key('\r').key('\r');
        open();
        center->removeObserver(token.get());
        EXPECT_EQ(listener->text_,
            "DidBeginTrackingNotification\nupdate Root\nopen Root\nhighlight Last\nhighlight More\n"
            "update Sub\nopen Sub\nhighlight Inner\nhighlight nothing\nhighlight nothing\n"
            "close Sub\nclose Root\nDidEndTrackingNotification\nWillSendActionNotification\n"
            "DidSendActionNotification\n");
    }

    TEST_F(MenuTrackingTest, TheActionIsSentWhenTheMenuHasGone)
    {
        std::size_t open = 99;
        log->setReaction([&](NSObject*) { open = menuWindows().size(); });
        script.click(middleOf(0));
        this->open();
        EXPECT_EQ(open, 0u);
    }

    TEST_F(MenuTrackingTest, ANilMenuDoesNothing)
    {
        NSMenu::cls().popUpContextMenu_withEvent_forView(nullptr, nullptr, nullptr);
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuTrackingTest, WithNothingThatCouldComeTheMenuCloses)
    {
        EXPECT_FALSE(open());
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuTrackingTest, MainQueueAndTimersGoOn)
    {
        bool ran = false;
        bool fired = false;
        script.then([&] { dispatch_async(dispatch_get_main_queue(), [&] { ran = true; }); });
        script.then([&] { fired = ran; }).key(0x1B);
        open();
        EXPECT_TRUE(fired);
    }

    TEST_F(MenuTrackingTest, TheFocusOfAnotherProgramClosesIt)
    {
        bool late = false;
        const Ref<NSWindow> window = showKeyWindow();
        script.then([this] { screen.display().focus(nullptr); });
        script.wait(1).then([&] { late = !menuWindows().empty(); });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
        window->close();
    }

    TEST_F(MenuTrackingTest, TheLossOfTheGrabClosesIt)
    {
        bool late = false;
        script.then([this] { screen.display().setAllowsGrabs(false); });
        script.wait(1).then([&] { late = !menuWindows().empty(); });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
        screen.display().setAllowsGrabs(true);
    }

    TEST_F(MenuTrackingTest, WithoutAGrabItWorks)
    {
        screen.display().setAllowsGrabs(false);
        script.click(middleOf(0));
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "One");
        screen.display().setAllowsGrabs(true);
    }

    TEST_F(MenuTrackingTest, TheGrabEndsWithTheMenu)
    {
        bool grabbed = false;
        script.then([&] { grabbed = screen.display().grabbingSurface() != 0; }).key(0x1B);
        open();
        EXPECT_TRUE(grabbed);
        EXPECT_EQ(screen.display().grabbingSurface(), 0u);
    }

    TEST_F(MenuTrackingTest, CancellingClosesIt)
    {
        bool late = false;
        script.then([this] { menu->cancelTracking(); }).wait(1).then([&] {
            late = !menuWindows().empty();
        });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
    }

    TEST_F(MenuTrackingTest, CancellingLeavesNoEventBehind)
    {
        script.then([this] { menu->cancelTracking(); });
        EXPECT_FALSE(open());
        EXPECT_EQ(screen.application().nextEventMatchingMask_untilDate_inMode_dequeue(
                      NSEventMaskFromType(NSAppKitDefined), nullptr, nullptr, true),
            nullptr);
    }

    TEST_F(MenuTrackingTest, AnExceptionClosesItAndGoesOn)
    {
        script.then([] { raise("Odd", "thrown in a menu"); });
        EXPECT_EQ(raisedBy([this] { open(); }), "Odd: thrown in a menu");
        EXPECT_TRUE(menuWindows().empty());
        EXPECT_EQ(screen.display().grabbingSurface(), 0u);
        MenuScript again(screen);
        again.click(middleOf(0));
        EXPECT_TRUE(open());
    }

    TEST_F(MenuTrackingTest, AMenuIsNotOpenedTwice)
    {
        bool second = true;
        script.then([&] { second = open(); }).click(middleOf(0));
        EXPECT_TRUE(open());
        EXPECT_FALSE(second);
    }

    TEST_F(MenuTrackingTest, AnotherMenuTakesThePlaceOfAnOpenOne)
    {
        const Ref<NSMenu> other = make<NSMenu>();
        other->setAutoenablesItems(false);
        add(*other, "Fresh"_ns);
        bool fromOther = false;
        script.then([&] {
            fromOther
                = other->popUpMenuPositioningItem_atLocation_inView(nullptr, { 400, 400 }, nullptr);
        });
        script.click({ 430, 384 });
        EXPECT_FALSE(open());
        EXPECT_TRUE(fromOther);
        EXPECT_EQ(chosen(), "Fresh");
    }

    TEST_F(MenuTrackingTest, MenusNeverHaveTheKeyboard)
    {
        Ref<NSWindow> key;
        const Ref<NSWindow> window = showKeyWindow();
        script.click(middleOf(1)).then([&] { key = screen.application().keyWindow(); }).key(0x1B);
        open();
        EXPECT_EQ(key, window);
        window->close();
    }

    // ---- what hosts do while a menu is open

    TEST_F(MenuTrackingTest, ItemsMayBeAddedWhileItIsOpen)
    {
        NSRect before {};
        NSRect after {};
        script.then([&] { before = menuFrame(0); }).then([this] { add(*menu, "Fresh"_ns); });
        script.then([&] { after = menuFrame(0); }).key(NSEndFunctionKey);
        look();
        script.key('\r');
        EXPECT_TRUE(open());
        EXPECT_EQ(seen, (Seen { "Fresh" }));
        EXPECT_EQ(after.size.height, before.size.height + rowHeight());
        EXPECT_EQ(NSMaxY(after), NSMaxY(before));
    }

    TEST_F(MenuTrackingTest, AnEmptiedMenuChoosesNothing)
    {
        script.move(middleOf(0)).then([this] { menu->removeAllItems(); }).key('\r');
        EXPECT_FALSE(open());
    }

    TEST_F(MenuTrackingTest, AnItemThatGoesTakesItsSubmenuWithIt)
    {
        std::size_t left = 0;
        script.click(middleOf(3)).then([this] { menu->removeItem(more.get()); });
        script.then([&] { left = menuWindows().size(); }).key(0x1B);
        open();
        EXPECT_EQ(left, 1u);
    }

    TEST_F(MenuTrackingTest, WhoIsToldThatAnItemIsLeftMayTakeTheSubmenuAway)
    {
        const Ref<MenuListener> listener = make<MenuListener>();
        listener->takesAway_ = more;
        submenu->setDelegate(listener.get());
        std::size_t left = 0;
        script.click(middleOf(3)).key(NSDownArrowFunctionKey).key(NSLeftArrowFunctionKey);
        script.then([&] { left = menuWindows().size(); }).key(0x1B);
        open();
        EXPECT_EQ(left, 1u);
        EXPECT_TRUE(menuWindows().empty());
    }

    TEST_F(MenuTrackingTest, AnItemThatIsDisabledWhileHighlightedIsNotChosen)
    {
        script.key(NSDownArrowFunctionKey).then([this] { one->setEnabled(false); }).key('\r');
        EXPECT_FALSE(open());
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, AReleasedMenuStaysUntilItIsClosed)
    {
        script.then([this] {
            more = last = inner = outer = nullptr;
            submenu = nullptr;
            menu = nullptr;
        });
        script.key(NSDownArrowFunctionKey).key('\r');
        Ref<NSMenu> lent = menu;
        NSMenu* const bare = lent.get();
        lent = nullptr;
        EXPECT_TRUE(bare->popUpMenuPositioningItem_atLocation_inView(nullptr, corner, nullptr));
        EXPECT_EQ(log->count_, 1);
    }

    TEST_F(MenuTrackingTest, ATargetThatGoesWhileItIsOpenIsNotSentTo)
    {
        Ref<ActionLog> gone = make<ActionLog>();
        one->setTarget(gone.get());
        script.then([&] { gone = nullptr; }).click(middleOf(0));
        open();
        EXPECT_EQ(log->count_, 0);
    }

    TEST_F(MenuTrackingTest, AnItemMayShowAView)
    {
        const Ref<NSButton> button
            = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(0, 0, 120, 40)));
        button->setTarget(log.get());
        button->setAction(selector<"act:">);
        const Ref<NSMenuItem> item
            = menu->insertItemWithTitle_action_keyEquivalent_atIndex(""_ns, SEL {}, nullptr, 0);
        item->setView(button.get());
        const NSPoint middle { corner.x + 60, corner.y - 25 };
        script.click(middle).key(0x1B);
        open();
        EXPECT_EQ(log->count_, 1);
        EXPECT_FALSE(button->superview());
    }

}

}
