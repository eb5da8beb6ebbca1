// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextView.h"

#include <gtest/gtest.h>

#include "appkit/NSPasteboard.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"
#include "support/EditingDesk.h"

namespace brindle {

/// Writes down what an editor asks and tells, and can refuse.
class EditorWitness : public NSObject {
    BRINDLE_OBJECT(EditorWitness, NSObject)

public:
    std::string log_;
    bool refusesBegin_ = false;
    bool refusesEnd_ = false;
    std::string refusedText_ = "never";
};

template <> struct EditorWitness::Methods<struct Delegate> {
    static bool shouldBegin(EditorWitness& self, NSText*) { return !self.refusesBegin_; }
    static bool shouldEnd(EditorWitness& self, NSText*) { return !self.refusesEnd_; }
    static void didBegin(EditorWitness& self, NSObject*) { self.log_ += "begin "; }
    static void didChange(EditorWitness& self, NSObject*) { self.log_ += "change "; }
    static void didEnd(EditorWitness& self, NSObject*) { self.log_ += "end "; }
    static bool shouldChange(EditorWitness& self, NSTextView*, NSRange, NSString* text)
    {
        return utf8Of(text) != self.refusedText_;
    }
    static bool command(EditorWitness& self, NSTextView*, SEL command)
    {
        if (command != selector<"moveUp:">)
            return false;
        self.log_ += "up ";
        return true;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "textShouldBeginEditing:", imp<shouldBegin> },
            { "textShouldEndEditing:", imp<shouldEnd> },
            { "textDidBeginEditing:", imp<didBegin> },
            { "textDidChange:", imp<didChange> },
            { "textDidEndEditing:", imp<didEnd> },
            { "textView:shouldChangeTextInRange:replacementString:", imp<shouldChange> },
            { "textView:doCommandBySelector:", imp<command> },
        });
    }
};
BRINDLE_RECORD(EditorWitness, Delegate)

/// An editor that counts the windows that become key.
class EditorThatListens : public NSTextView {
    BRINDLE_OBJECT(EditorThatListens, NSTextView)

public:
    int heard_ = 0;
};
template <> struct EditorThatListens::Methods<struct Windows> {
    static void becameKey(EditorThatListens& self, NSNotification*) { ++self.heard_; }
    static void table(Builder& t) { t.methods({ { "becameKey:", imp<becameKey> } }); }
};
BRINDLE_RECORD(EditorThatListens, Windows)

namespace {

    struct NSTextViewTest : testing::Test {
        NSTextViewTest()
        {
            editor->setAllowsUndo(true);
            desk.window->makeFirstResponder(editor.get());
        }
        void set(const char* text, NSUInteger at, NSUInteger length = 0)
        {
            editor->setString(stringFrom(std::string_view(text)).get());
            editor->setSelectedRange(NSMakeRange(at, length));
        }
        std::string text() { return utf8Of(editor->string().get()); }
        std::string selection() { return EditingDesk::selection(*editor); }

        EditingDesk desk;
        Ref<NSTextView> editor = desk.add<NSTextView>(NSMakeRect(10, 10, 200, 100));
    };

    constexpr NSEventModifierFlags kShift = NSShiftKeyMask;
    constexpr NSEventModifierFlags kCommand = NSCommandKeyMask;
    constexpr NSEventModifierFlags kControl = NSControlKeyMask;

    // ---- typing

    TEST_F(NSTextViewTest, InsertsWhatIsTyped)
    {
        desk.type(u"Hello");
        EXPECT_EQ(text(), "Hello");
        EXPECT_EQ(selection(), "5+0");
    }

    TEST_F(NSTextViewTest, TypingReplacesTheSelection)
    {
        set("one two three", 4, 3);
        desk.type(u"2");
        EXPECT_EQ(text(), "one 2 three");
        EXPECT_EQ(selection(), "5+0");
    }

    TEST_F(NSTextViewTest, ReturnAndTabAreTextOutsideFields)
    {
        desk.type(u"a");
        desk.press(u'\r');
        desk.press(u'\t');
        desk.type(u"b");
        EXPECT_EQ(text(), "a\n\tb");
    }

    TEST_F(NSTextViewTest, TakesOnlySelectionsWhenItIsNotEditable)
    {
        set("fixed", 0);
        editor->setEditable(false);
        desk.type(u"x");
        desk.press(0x7F);
        EXPECT_EQ(text(), "fixed");
        desk.press(u'a', kCommand);
        EXPECT_EQ(selection(), "0+5");
    }

    TEST_F(NSTextViewTest, DropsControlCharactersAndHalvesOfPairs)
    {
        const char16_t hostile[] = { u'a', 1, 0x7F, 0xD800, u'\r', u'\n', u'b', 0 };
        editor->insertText_replacementRange(
            stringFrom(std::u16string_view(hostile, 7)).get(), NSMakeRange(NSNotFound, 0));
        EXPECT_EQ(text(), "a\xEF\xBF\xBD\nb");
    }

    // ---- moving

    struct Movement {
        const char* text;
        NSUInteger at;
        char16_t key;
        NSEventModifierFlags flags;
        const char* selection;
    };

    TEST_F(NSTextViewTest, KeysMoveTheCaret)
    {
        const Movement movements[] = {
            { "one two", 0, NSRightArrowFunctionKey, 0, "1+0" },
            { "one two", 0, NSLeftArrowFunctionKey, 0, "0+0" },
            { "one two", 7, NSRightArrowFunctionKey, 0, "7+0" },
            { "one two", 0, NSRightArrowFunctionKey, kCommand, "3+0" },
            { "one two", 7, NSLeftArrowFunctionKey, kCommand, "4+0" },
            { "one two", 3, NSEndFunctionKey, 0, "7+0" },
            { "one two", 3, NSHomeFunctionKey, 0, "0+0" },
            { "one\ntwo", 1, NSDownArrowFunctionKey, 0, "5+0" },
            { "one\ntwo", 6, NSUpArrowFunctionKey, 0, "2+0" },
            { "one\ntwo", 1, NSUpArrowFunctionKey, 0, "0+0" },
            { "one\ntwo", 5, NSDownArrowFunctionKey, 0, "7+0" },
            { "one\ntwo", 5, NSHomeFunctionKey, kCommand, "0+0" },
            { "one\ntwo", 1, NSEndFunctionKey, kCommand, "7+0" },
            { "one\ntwo", 1, NSEndFunctionKey, 0, "3+0" },
            { "one\ntwo", 5, u'a', kControl, "4+0" },
            { "one\ntwo", 1, u'e', kControl, "3+0" },
            { "one two", 3, NSRightArrowFunctionKey, kShift, "3+1" },
            { "one two", 3, NSLeftArrowFunctionKey, kShift, "2+1" },
            { "one two", 3, NSLeftArrowFunctionKey, kShift | kCommand, "0+3" },
            { "one two", 3, NSEndFunctionKey, kShift, "3+4" },
            { "one two", 3, u'a', kCommand, "0+7" },
            { "", 0, NSDownArrowFunctionKey, 0, "0+0" },
            { "a\xCC\x81z", 0, NSRightArrowFunctionKey, 0, "2+0" },
            { "\xF0\x9F\x98\x80z", 0, NSRightArrowFunctionKey, 0, "2+0" },
        };
        for (const Movement& m : movements) {
            set(m.text, m.at);
            desk.press(m.key, m.flags);
            EXPECT_EQ(selection(), m.selection) << m.text << " at " << m.at;
        }
    }

    TEST_F(NSTextViewTest, AnArrowCollapsesTheSelectionToItsSide)
    {
        set("one two", 2, 3);
        desk.press(NSLeftArrowFunctionKey);
        EXPECT_EQ(selection(), "2+0");
        set("one two", 2, 3);
        desk.press(NSRightArrowFunctionKey);
        EXPECT_EQ(selection(), "5+0");
    }

    TEST_F(NSTextViewTest, TheMovingEndGoesPastTheFixedOne)
    {
        set("abcdef", 3);
        desk.press(NSRightArrowFunctionKey, kShift);
        desk.press(NSLeftArrowFunctionKey, kShift);
        desk.press(NSLeftArrowFunctionKey, kShift);
        EXPECT_EQ(selection(), "2+1");
    }

    TEST_F(NSTextViewTest, TheCaretKeepsItsColumnOverShortLines)
    {
        set("abcdef\nx\nabcdef", 5);
        desk.press(NSDownArrowFunctionKey);
        EXPECT_EQ(selection(), "8+0");
        desk.press(NSDownArrowFunctionKey);
        EXPECT_EQ(selection(), "14+0");
    }

    TEST_F(NSTextViewTest, ArrowsFollowTheEyeInTextFromTheRight)
    {
        set("\xD7\x90\xD7\x91\xD7\x92", 0); // three Hebrew letters
        desk.press(NSLeftArrowFunctionKey);
        EXPECT_EQ(selection(), "1+0");
        desk.press(NSRightArrowFunctionKey);
        EXPECT_EQ(selection(), "0+0");
    }

    // ---- deleting

    TEST_F(NSTextViewTest, KeysDelete)
    {
        struct Deletion {
            const char* text;
            NSUInteger at;
            char16_t key;
            NSEventModifierFlags flags;
            const char* left;
        };
        const Deletion deletions[] = {
            { "one two", 3, 0x7F, 0, "on two" },
            { "one two", 3, NSDeleteFunctionKey, 0, "onetwo" },
            { "one two", 7, 0x7F, kCommand, "one " },
            { "one two", 0, NSDeleteFunctionKey, kCommand, " two" },
            { "one\ntwo", 1, u'k', kControl, "o\ntwo" },
            { "one\ntwo", 3, u'k', kControl, "onetwo" },
            { "one two", 0, 0x7F, 0, "one two" },
            { "one two", 7, NSDeleteFunctionKey, 0, "one two" },
            { "e\xCC\x81", 2, 0x7F, 0, "" },
        };
        for (const Deletion& d : deletions) {
            set(d.text, d.at);
            desk.press(d.key, d.flags);
            EXPECT_EQ(text(), d.left) << d.text << " at " << d.at;
        }
    }

    TEST_F(NSTextViewTest, YanksWhatWasKilled)
    {
        set("one two", 3);
        desk.press(u'k', kControl);
        desk.press(u'a', kControl);
        desk.press(u'y', kControl);
        EXPECT_EQ(text(), " twoone");
    }

    TEST_F(NSTextViewTest, TransposesTheCharactersAroundTheCaret)
    {
        set("teh", 2);
        desk.press(u't', kControl);
        EXPECT_EQ(text(), "the");
        set("teh", 3);
        desk.press(u't', kControl);
        EXPECT_EQ(text(), "the");
    }

    // ---- undo

    TEST_F(NSTextViewTest, UndoesTypingAsAWhole)
    {
        desk.type(u"Hello");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), "");
        desk.press(u'z', kCommand | kShift);
        EXPECT_EQ(text(), "Hello");
        EXPECT_EQ(selection(), "5+0");
    }

    TEST_F(NSTextViewTest, AMovementOfTheCaretDividesWhatIsUndone)
    {
        desk.type(u"one");
        desk.press(NSLeftArrowFunctionKey);
        desk.type(u"X");
        EXPECT_EQ(text(), "onXe");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), "one");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), "");
    }

    TEST_F(NSTextViewTest, UndoBringsBackWhatTypingReplaced)
    {
        set("one two", 0, 3);
        desk.type(u"1!");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), "one two");
    }

    TEST_F(NSTextViewTest, NamesTyping)
    {
        desk.type(u"a");
        EXPECT_EQ(utf8Of(editor->undoManager()->undoMenuItemTitle().get()), "Undo Typing");
    }

    // ---- clipboard

    TEST_F(NSTextViewTest, CopiesCutsAndPastes)
    {
        set("one two", 0, 3);
        desk.press(u'c', kCommand);
        EXPECT_EQ(text(), "one two");
        desk.press(u'x', kCommand);
        EXPECT_EQ(text(), " two");
        desk.press(NSEndFunctionKey);
        desk.press(u'v', kCommand);
        desk.press(u'v', kCommand);
        EXPECT_EQ(text(), " twooneone");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), " twoone");
    }

    TEST_F(NSTextViewTest, TheMiddleButtonPastesTheSelection)
    {
        set("one two", 0);
        desk.press(NSRightArrowFunctionKey, kCommand | kShift);
        desk.screen.pointer().click(EditingDesk::onScreen(*editor, { 190, 5 }), 1, 2);
        EXPECT_EQ(text(), "one twoone");
    }

    // ---- the pointer

    TEST_F(NSTextViewTest, ClicksPlaceTheCaretAndSelectWordsAndParagraphs)
    {
        set("one two\nthree", 0);
        desk.click(*editor, { 190, 6 });
        EXPECT_EQ(selection(), "7+0");
        desk.click(*editor, { 8, 6 }, 2);
        EXPECT_EQ(selection(), "0+3");
        desk.screen.advance(2);
        desk.click(*editor, { 8, 6 }, 3);
        EXPECT_EQ(selection(), "0+8");
    }

    TEST_F(NSTextViewTest, DragsSelect)
    {
        set("one two", 0);
        desk.drag(*editor, { 2, 6 }, { 190, 6 });
        EXPECT_EQ(selection(), "0+7");
    }

    TEST_F(NSTextViewTest, AShiftClickExtends)
    {
        set("one two", 3);
        desk.screen.display().setModifiers(NSShiftKeyMask);
        desk.click(*editor, { 190, 6 });
        desk.screen.display().setModifiers(0);
        EXPECT_EQ(selection(), "3+4");
    }

    // ---- delegate

    TEST_F(NSTextViewTest, TellsTheDelegateOfAnEditing)
    {
        const Ref<EditorWitness> witness = make<EditorWitness>();
        editor->setDelegate(witness.get());
        desk.type(u"ab");
        desk.window->makeFirstResponder(nullptr);
        EXPECT_EQ(witness->log_, "begin change change end ");
    }

    TEST_F(NSTextViewTest, TheDelegateMayRefuseToBegin)
    {
        const Ref<EditorWitness> witness = make<EditorWitness>();
        witness->refusesBegin_ = true;
        editor->setDelegate(witness.get());
        desk.type(u"ab");
        EXPECT_EQ(text(), "");
    }

    TEST_F(NSTextViewTest, TheDelegateMayRefuseAChange)
    {
        const Ref<EditorWitness> witness = make<EditorWitness>();
        witness->refusedText_ = "b";
        editor->setDelegate(witness.get());
        desk.type(u"abc");
        EXPECT_EQ(text(), "ac");
    }

    TEST_F(NSTextViewTest, TheDelegateMayKeepTheKeyboardHere)
    {
        const Ref<EditorWitness> witness = make<EditorWitness>();
        witness->refusesEnd_ = true;
        editor->setDelegate(witness.get());
        desk.type(u"a");
        EXPECT_FALSE(desk.window->makeFirstResponder(nullptr));
        EXPECT_EQ(desk.window->firstResponder(), editor.get());
    }

    TEST_F(NSTextViewTest, TheDelegateMayTakeCommands)
    {
        const Ref<EditorWitness> witness = make<EditorWitness>();
        editor->setDelegate(witness.get());
        set("one\ntwo", 5);
        desk.press(NSUpArrowFunctionKey);
        EXPECT_EQ(witness->log_, "up ");
        EXPECT_EQ(selection(), "5+0");
    }

    TEST_F(NSTextViewTest, ForgetsADelegateThatHasGone)
    {
        editor->setDelegate(make<EditorWitness>().get());
        desk.type(u"ab");
        EXPECT_EQ(text(), "ab");
    }

    // ---- the caret

    TEST_F(NSTextViewTest, TheCaretBlinksInTheKeyWindowOnly)
    {
        EXPECT_TRUE(editor->shouldDrawInsertionPoint());
        desk.window->resignKeyWindow();
        NSApplication::cls().sharedApplication()->deactivate();
        desk.screen.process();
        EXPECT_EQ(editor->shouldDrawInsertionPoint(), desk.window->isKeyWindow());
    }

    TEST_F(NSTextViewTest, ASelectionHasNoCaret)
    {
        set("abc", 0, 2);
        EXPECT_FALSE(editor->shouldDrawInsertionPoint());
    }

    TEST_F(NSTextViewTest, TheCaretStandsStillAfterTenSeconds)
    {
        desk.type(u"a");
        desk.screen.advance(11);
        const auto before = desk.screen.display().counters().presents;
        desk.screen.advance(5);
        EXPECT_EQ(desk.screen.display().counters().presents, before);
        desk.type(u"b");
        const auto typed = desk.screen.display().counters().presents;
        desk.screen.advance(0.6);
        EXPECT_GT(desk.screen.display().counters().presents, typed);
    }

    // ---- composing

    TEST_F(NSTextViewTest, ReplacesWhatIsBeingComposed)
    {
        editor->setMarkedText_selectedRange_replacementRange(
            "ka"_ns, NSMakeRange(2, 0), NSMakeRange(NSNotFound, 0));
        EXPECT_TRUE(editor->hasMarkedText());
        EXPECT_EQ(text(), "ka");
        editor->setMarkedText_selectedRange_replacementRange(
            "kan"_ns, NSMakeRange(3, 0), NSMakeRange(NSNotFound, 0));
        EXPECT_EQ(text(), "kan");
        editor->insertText_replacementRange("X"_ns, NSMakeRange(NSNotFound, 0));
        EXPECT_EQ(text(), "X");
        EXPECT_FALSE(editor->hasMarkedText());
    }

    // ---- bad input

    TEST_F(NSTextViewTest, KeepsSelectionsInTheText)
    {
        set("abc", 0);
        editor->setSelectedRange(NSMakeRange(100, 100));
        EXPECT_EQ(selection(), "3+0");
        editor->setSelectedRange(NSMakeRange(1, NSUInteger(-1)));
        EXPECT_EQ(selection(), "1+2");
        editor->textStorage()->replaceCharactersInRange_withString(NSMakeRange(0, 3), ""_ns);
        EXPECT_EQ(selection(), "0+0");
    }

    TEST_F(NSTextViewTest, SelectionsDoNotCutCharacters)
    {
        set("a\xF0\x9F\x98\x80z", 2, 0);
        EXPECT_EQ(selection(), "1+0");
    }

    TEST_F(NSTextViewTest, IgnoresWhatIsNoText)
    {
        editor->insertText_replacementRange(editor.get(), NSMakeRange(NSNotFound, 0));
        editor->insertText_replacementRange(nullptr, NSMakeRange(NSNotFound, 0));
        EXPECT_EQ(text(), "");
    }

    TEST_F(NSTextViewTest, MayGoInTheMiddleOfTyping)
    {
        desk.type(u"a");
        editor->removeFromSuperview();
        editor = nullptr;
        desk.type(u"b");
        desk.screen.advance(2);
        EXPECT_EQ(desk.window->firstResponder(), desk.window.get());
    }

    TEST_F(NSTextViewTest, GoesOnHearingOfAllWindowsWhenItMoves)
    {
        const Ref<EditorThatListens> moving = desk.add<EditorThatListens>({ {}, { 50, 50 } });
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            moving.get(), selector<"becameKey:">, NSWindowDidBecomeKeyNotification, nullptr);
        moving->removeFromSuperview();
        desk.window->contentView()->addSubview(moving.get());
        const Ref<NSWindow> other = make<NSWindow>();
        other->makeKeyAndOrderFront(nullptr);
        EXPECT_EQ(moving->heard_, 1);
        other->close();
    }

    TEST_F(NSTextViewTest, ATextObjectOfTheBaseClassIsAnEditor)
    {
        const Ref<NSText> made = make<NSText>();
        made->setString("x"_ns);
        EXPECT_EQ(utf8Of(made->string().get()), "x");
    }

}
}
