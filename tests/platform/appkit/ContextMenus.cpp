// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView+ContextMenus.h"

#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSTextField.h"
#include "support/EditingDesk.h"
#include "support/OpenMenu.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    constexpr char16_t kMenuKey = NSMenuFunctionKey;
    constexpr char16_t kF10 = NSF1FunctionKey + 9;
    constexpr char16_t kDown = NSDownArrowFunctionKey;

    struct ContextMenuTest : testing::Test {
        /// Presses the right button in a view; the script goes on in the menu.
        void pressRight(NSView& view, NSPoint point)
        {
            desk.screen.display().movePointer(EditingDesk::onScreen(view, point));
            desk.screen.display().pressButton(1);
            desk.screen.process();
            desk.screen.display().releaseButton(1);
            desk.screen.process();
        }
        Ref<NSTextView> addText(NSString* string)
        {
            const Ref<NSTextView> text = desk.add<NSTextView>(NSMakeRect(20, 20, 200, 100));
            text->setString(string);
            desk.window->makeFirstResponder(text.get());
            return text;
        }
        static Ref<NSMenuItem> itemFor(NSMenu& menu, SEL action)
        {
            const NSInteger index = menu.indexOfItemWithTarget_andAction(nullptr, action);
            return index < 0 ? nullptr : menu.itemAtIndex(index);
        }
        bool isEnabled(NSTextView& text, SEL action)
        {
            const Ref<NSMenu> menu = text.menuForEvent(nullptr);
            menu->update();
            const Ref<NSMenuItem> item = itemFor(*menu, action);
            return item && item->isEnabled();
        }

        EditingDesk desk;
        MenuScript script { desk.screen };
    };

    TEST_F(ContextMenuTest, OfTextHasTheCommandsOfEditing)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        std::string titles;
        for (NSMenuItem* item : each<NSMenuItem>(text->menuForEvent(nullptr)->itemArray()))
            titles += item->isSeparatorItem() ? "|" : utf8(item->title()) + ",";
        EXPECT_EQ(titles, "Undo,Redo,|Cut,Copy,Paste,Delete,|Select All,");
    }

    TEST_F(ContextMenuTest, OfTextIsMadeAnewEachTime)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        EXPECT_NE(text->menuForEvent(nullptr), text->menuForEvent(nullptr));
    }

    TEST_F(ContextMenuTest, OfTextIsTheOneThatTheHostHasSet)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        const Ref<NSMenu> own = make<NSMenu>();
        text->setMenu(own.get());
        EXPECT_EQ(text->menuForEvent(nullptr), own);
    }

    TEST_F(ContextMenuTest, IsNotThereForTextThatCannotBeSelected)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectable(false);
        EXPECT_EQ(text->menuForEvent(nullptr), nullptr);
    }

    TEST_F(ContextMenuTest, OffersWhatTheSelectionAllows)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(0, 0));
        EXPECT_FALSE(isEnabled(*text, selector<"cut:">));
        EXPECT_FALSE(isEnabled(*text, selector<"copy:">));
        EXPECT_TRUE(isEnabled(*text, selector<"selectAll:">));
        text->setSelectedRange(NSMakeRange(0, 3));
        EXPECT_TRUE(isEnabled(*text, selector<"cut:">));
        EXPECT_TRUE(isEnabled(*text, selector<"copy:">));
    }

    TEST_F(ContextMenuTest, OffersToSelectOnlyWhereThereIsText)
    {
        const Ref<NSTextView> text = addText(""_ns);
        EXPECT_FALSE(isEnabled(*text, selector<"selectAll:">));
    }

    TEST_F(ContextMenuTest, OffersNoChangeOfTextThatCannotBeEdited)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setEditable(false);
        text->setSelectedRange(NSMakeRange(0, 3));
        EXPECT_FALSE(isEnabled(*text, selector<"cut:">));
        EXPECT_FALSE(isEnabled(*text, selector<"paste:">));
        EXPECT_FALSE(isEnabled(*text, selector<"delete:">));
        EXPECT_TRUE(isEnabled(*text, selector<"copy:">));
    }

    TEST_F(ContextMenuTest, OffersToUndoWhatWasTyped)
    {
        const Ref<NSTextView> text = addText(""_ns);
        text->setAllowsUndo(true);
        EXPECT_FALSE(isEnabled(*text, selector<"undo:">));
        desk.type(u"a");
        EXPECT_TRUE(isEnabled(*text, selector<"undo:">));
        EXPECT_FALSE(isEnabled(*text, selector<"redo:">));
    }

    TEST_F(ContextMenuTest, SelectsTheWordUnderAPressOutsideOfTheSelection)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(4, 3));
        script.key(0x1B);
        pressRight(*text, { 8, 8 });
        EXPECT_EQ(EditingDesk::selection(*text), "0+3");
    }

    TEST_F(ContextMenuTest, KeepsTheSelectionThatIsPressedOn)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(0, 7));
        script.key(0x1B);
        pressRight(*text, { 8, 8 });
        EXPECT_EQ(EditingDesk::selection(*text), "0+7");
    }

    TEST_F(ContextMenuTest, OfAFieldBeginsEditingIt)
    {
        const Ref<NSTextField> field = desk.add<NSTextField>(NSMakeRect(20, 20, 200, 22));
        field->setStringValue("One two"_ns);
        desk.window->makeFirstResponder(nullptr);
        NSPasteboard::cls().generalPasteboard()->clearContents();
        script.type(u"Copy").key(u'\r');
        pressRight(*field, { 20, 10 });
        EXPECT_TRUE(field->currentEditor());
        EXPECT_EQ(
            utf8(NSPasteboard::cls().generalPasteboard()->stringForType(NSPasteboardTypeString)),
            "One two");
    }

    TEST_F(ContextMenuTest, OfAFieldThatIsOnlyALabelIsNotThere)
    {
        const Ref<NSTextField> field = desk.add<NSTextField>(NSMakeRect(20, 20, 200, 22));
        field->setEditable(false);
        field->setSelectable(false);
        EXPECT_EQ(field->menuForEvent(nullptr), nullptr);
    }

    // ---- tips of items

    TEST_F(ContextMenuTest, TellsTheTipOfAnItemThatThePointerRestsOn)
    {
        const Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        menu->addItemWithTitle_action_keyEquivalent("One"_ns, selector<"act:">, ""_ns)
            ->setToolTip("The first of all"_ns);
        menu->addItemWithTitle_action_keyEquivalent("Two"_ns, selector<"act:">, ""_ns);
        std::string surfaces; // two windows, the menu, the tip
        const auto look
            = [&] { surfaces += std::to_string(desk.screen.display().stackingOrder().size()); };
        const NSPoint corner { 60, 180 };
        script.move({ corner.x + 20, corner.y - 16 }).then(look).wait(1).then(look);
        script.move({ corner.x + 20, corner.y - 38 }).wait(1).then(look);
        script.move({ corner.x + 20, corner.y - 16 }).wait(1).then(look).key(kDown).then(look);
        script.key(0x1B);
        menu->popUpMenuPositioningItem_atLocation_inView(nullptr, corner, nullptr);
        look();
        EXPECT_EQ(surfaces, "343432");
    }

    // ---- by the keyboard

    TEST_F(ContextMenuTest, OpensByTheMenuKeyWithItsFirstItemThatWorks)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(0, 3));
        NSPasteboard::cls().generalPasteboard()->clearContents();
        script.key(u'\r');
        desk.press(kMenuKey);
        EXPECT_EQ(utf8(text->string()), " two");
    }

    TEST_F(ContextMenuTest, OpensByShiftAndF10)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(0, 0));
        script.type(u"Sel").key(u'\r');
        desk.press(kF10, NSShiftKeyMask);
        EXPECT_EQ(EditingDesk::selection(*text), "0+7");
    }

    TEST_F(ContextMenuTest, IsThatOfTheNearestViewAroundTheOneWithTheKeyboard)
    {
        const Ref<NSTextField> outer = desk.add<NSTextField>(NSMakeRect(20, 20, 200, 100));
        const Ref<ActionLog> log = make<ActionLog>();
        const Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        menu->addItemWithTitle_action_keyEquivalent("One"_ns, selector<"act:">, ""_ns)
            ->setTarget(log.get());
        outer->setMenu(menu.get());
        const Ref<NSView> inner = make<NSView>();
        outer->addSubview(inner.get());
        script.key(kDown).key(u'\r');
        showContextMenuForSelection(inner, nullptr);
        EXPECT_EQ(log->count_, 1);
    }

    TEST_F(ContextMenuTest, OpensBelowTheCaret)
    {
        const Ref<NSTextView> text = addText("One two"_ns);
        text->setSelectedRange(NSMakeRange(4, 0));
        const NSRect caret = selectionAnchorRect(text);
        EXPECT_GT(NSMinX(caret), 10);
        NSRect frame {};
        script.then([&] {
            for (NSWindow* window :
                each<NSWindow>(NSApplication::cls().sharedApplication()->orderedWindows()))
                if (window->level() == NSPopUpMenuWindowLevel)
                    frame = window->frame();
        });
        script.key(0x1B);
        desk.press(kMenuKey);
        const NSPoint corner = EditingDesk::onScreen(*text, { NSMinX(caret), NSMaxY(caret) });
        EXPECT_TRUE(NSPointInRect({ corner.x + 1, corner.y - 1 }, frame));
        EXPECT_FALSE(NSPointInRect({ corner.x - 20, corner.y + 20 }, frame));
    }

}
}
