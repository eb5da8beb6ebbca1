// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextField.h"

#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSParagraphStyle.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSSecureTextField.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/Exceptions.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"
#include "support/EditingDesk.h"

namespace brindle {

/// Writes down what a field asks and tells, and counts actions.
class FieldWitness : public NSObject {
    BRINDLE_OBJECT(FieldWitness, NSObject)

public:
    std::string log_;
    NSTextField* field_ = nullptr;
    bool refusesEnd_ = false;
    bool takesReturn_ = false;
    bool removesField_ = false;
    int actions_ = 0;
};

template <> struct FieldWitness::Methods<struct Delegate> {
    static void didBegin(FieldWitness& self, NSObject*) { self.log_ += "begin "; }
    static void didChange(FieldWitness& self, NSObject*)
    {
        self.log_ += "change:" + utf8Of(self.field_->stringValue().get()) + " ";
        if (self.removesField_)
            self.field_->removeFromSuperview();
    }
    static void didEnd(FieldWitness& self, NSObject* notification)
    {
        const auto facts = notification->send<"userInfo", Ref<NSDictionary>>();
        const auto movement = cast<NSNumber>(facts->objectForKey("NSTextMovement"_ns));
        self.log_ += "end:" + std::to_string(movement->integerValue()) + " ";
    }
    static bool shouldEnd(FieldWitness& self, NSControl*, NSText*) { return !self.refusesEnd_; }
    static bool command(FieldWitness& self, NSControl*, NSText*, SEL command)
    {
        if (command != selector<"insertNewline:"> || !self.takesReturn_)
            return false;
        self.log_ += "return ";
        return true;
    }
    static void act(FieldWitness& self, NSObject*) { ++self.actions_; }
    static void table(Builder& t)
    {
        t.methods({
            { "controlTextDidBeginEditing:", imp<didBegin> },
            { "controlTextDidChange:", imp<didChange> },
            { "controlTextDidEndEditing:", imp<didEnd> },
            { "control:textShouldEndEditing:", imp<shouldEnd> },
            { "control:textView:doCommandBySelector:", imp<command> },
            { "act:", imp<act> },
        });
    }
};
BRINDLE_RECORD(FieldWitness, Delegate)

namespace {

    constexpr NSEventModifierFlags kCommand = NSCommandKeyMask;
    constexpr NSEventModifierFlags kShift = NSShiftKeyMask;

    struct NSTextFieldTest : testing::Test {
        NSTextFieldTest()
        {
            witness->field_ = first.get();
            first->setNextKeyView(second.get());
            second->setNextKeyView(first.get());
        }
        std::string text(NSTextField& field) { return utf8Of(field.stringValue().get()); }
        std::string text() { return text(*first); }
        void watch()
        {
            first->setDelegate(witness.get());
            first->setTarget(witness.get());
            first->setAction(selector<"act:">);
        }
        std::string selection()
        {
            const Ref<NSText> editor = first->currentEditor();
            return editor ? EditingDesk::selection(*editor) : "no editor";
        }

        EditingDesk desk;
        Ref<NSTextField> first = desk.add<NSTextField>(NSMakeRect(10, 100, 100, 22));
        Ref<NSTextField> second = desk.add<NSTextField>(NSMakeRect(10, 50, 100, 22));
        Ref<FieldWitness> witness = make<FieldWitness>();
    };

    // ---- as made

    TEST_F(NSTextFieldTest, BeginsAsAFieldOfOneLine)
    {
        EXPECT_TRUE(first->isEditable());
        EXPECT_TRUE(first->isSelectable());
        EXPECT_TRUE(first->isBezeled());
        EXPECT_FALSE(first->isBordered());
        EXPECT_TRUE(first->drawsBackground());
        EXPECT_TRUE(first->backgroundColor()->isEqual(NSColor::cls().textBackgroundColor().get()));
        EXPECT_EQ(first->alignment(), NSTextAlignmentNatural);
        EXPECT_EQ(first->font()->pointSize(), 13);
        EXPECT_TRUE(first->cell()->isScrollable());
        EXPECT_FALSE(first->cell()->wraps());
        EXPECT_EQ(text(), "");
        EXPECT_TRUE(first->cell()->isMemberOfClass(NSTextFieldCell::cls()));
    }

    TEST_F(NSTextFieldTest, ATextThatSomebodyKeepsStaysWhenTheFieldIsDrawnWithAnother)
    {
        first->setStringValue("before"_ns);
        const Ref<NSAttributedString> kept = first->attributedStringValue();
        desk.screen.process();
        first->setStringValue("after"_ns);
        desk.screen.process();
        EXPECT_EQ(utf8Of(kept->string().get()), "before");
        EXPECT_EQ(utf8Of(first->attributedStringValue()->string().get()), "after");
    }

    TEST_F(NSTextFieldTest, RefusesANilText)
    {
        EXPECT_THROW(first->setStringValue(nullptr), Exception);
    }

    TEST_F(NSTextFieldTest, IgnoresANilFont)
    {
        first->setFont(NSFont::cls().systemFontOfSize(20).get());
        first->setFont(nullptr);
        EXPECT_EQ(first->font()->pointSize(), 20);
    }

    TEST_F(NSTextFieldTest, StylesItsText)
    {
        first->setStringValue("x"_ns);
        first->setTextColor(NSColor::cls().redColor().get());
        first->setAlignment(NSTextAlignmentRight);
        const auto attributes
            = first->attributedStringValue()->attributesAtIndex_effectiveRange(0, nullptr);
        EXPECT_TRUE(attributes->objectForKey(NSFontAttributeName)->isEqual(first->font().get()));
        EXPECT_TRUE(attributes->objectForKey(NSForegroundColorAttributeName)
                        ->isEqual(NSColor::cls().redColor().get()));
        const auto style
            = cast<NSParagraphStyle>(attributes->objectForKey(NSParagraphStyleAttributeName));
        EXPECT_EQ(style->alignment(), NSTextAlignmentRight);
    }

    TEST_F(NSTextFieldTest, ALabelIsAsLargeAsItsText)
    {
        const Ref<NSTextField> label = NSTextField::cls().labelWithString("Some words"_ns);
        EXPECT_FALSE(label->isEditable());
        EXPECT_FALSE(label->isSelectable());
        EXPECT_FALSE(label->drawsBackground());
        const Ref<NSString> text = label->stringValue();
        const Ref<NSDictionary> attributes
            = makeDictionary({ { NSFontAttributeName, label->font().get() } });
        const NSSize size = sizeWithAttributes(text, attributes.get());
        EXPECT_EQ(label->frame().size.width, std::ceil(size.width) + 4);
        EXPECT_EQ(label->frame().size.height,
            make<NSLayoutManager>()->defaultLineHeightForFont(label->font().get()));
    }

    TEST_F(NSTextFieldTest, SizingKeepsTheOrigin)
    {
        first->setStringValue("Some longer words than fit"_ns);
        first->sizeToFit();
        EXPECT_EQ(first->frame().origin.x, 10);
        EXPECT_EQ(first->frame().origin.y, 100);
        EXPECT_GT(first->frame().size.width, 100);
    }

    TEST_F(NSTextFieldTest, SizesForSeveralLines)
    {
        const Ref<NSTextField> label = NSTextField::cls().labelWithString("a"_ns);
        const CGFloat line = label->frame().size.height;
        label->setStringValue("a\nb\nc"_ns);
        label->sizeToFit();
        EXPECT_EQ(label->frame().size.height, 3 * line);
    }

    TEST_F(NSTextFieldTest, WrapsAtTheWidthItIsAskedFor)
    {
        const Ref<NSTextField> label
            = NSTextField::cls().wrappingLabelWithString("one two three four five six"_ns);
        const CGFloat line = label->frame().size.height;
        label->setPreferredMaxLayoutWidth(60);
        label->sizeToFit();
        EXPECT_LE(label->frame().size.width, 60);
        EXPECT_GE(label->frame().size.height, 3 * line);
    }

    TEST_F(NSTextFieldTest, CopiesOfCellsHaveTheirLook)
    {
        first->setTextColor(NSColor::cls().redColor().get());
        first->setPlaceholderString("Name"_ns);
        const auto copy = cast<NSTextFieldCell>(first->cell()->copy());
        EXPECT_TRUE(copy->textColor()->isEqual(NSColor::cls().redColor().get()));
        EXPECT_EQ(utf8Of(copy->placeholderString().get()), "Name");
    }

    TEST_F(NSTextFieldTest, AnArchiveKeepsTheLookOfACell)
    {
        const Ref<NSTextFieldCell> cell = make<NSTextFieldCell>();
        cell->setStringValue("x"_ns);
        cell->setTextColor(NSColor::cls().redColor().get());
        cell->setPlaceholderString("Name"_ns);
        cell->setBezelStyle(NSTextFieldRoundedBezel);
        cell->setDrawsBackground(true);
        const Ref<NSData> archive = NSKeyedArchiver::cls().archivedDataWithRootObject(cell.get());
        const Ref<NSTextFieldCell> back = cast<NSTextFieldCell>(
            NSKeyedUnarchiver::cls().unarchiveObjectWithData(archive.get()));
        EXPECT_EQ(utf8Of(back->stringValue().get()), "x");
        EXPECT_TRUE(back->textColor()->isEqual(NSColor::cls().redColor().get()));
        EXPECT_EQ(utf8Of(back->placeholderString().get()), "Name");
        EXPECT_EQ(back->bezelStyle(), NSTextFieldRoundedBezel);
        EXPECT_TRUE(back->drawsBackground());
    }

    // ---- typing

    TEST_F(NSTextFieldTest, IsTypedIn)
    {
        first->selectText(nullptr);
        desk.type(u"Hello");
        EXPECT_EQ(text(), "Hello");
        EXPECT_TRUE(first->currentEditor());
        desk.window->makeFirstResponder(nullptr);
        EXPECT_FALSE(first->currentEditor());
        EXPECT_EQ(text(), "Hello");
    }

    TEST_F(NSTextFieldTest, FocusingSelectsEverything)
    {
        first->setStringValue("Hello"_ns);
        desk.window->makeFirstResponder(first.get());
        EXPECT_EQ(selection(), "0+5");
        desk.type(u"x");
        EXPECT_EQ(text(), "x");
    }

    TEST_F(NSTextFieldTest, AClickPlacesTheCaret)
    {
        first->setStringValue("Hello"_ns);
        desk.click(*first, { 95, 11 });
        EXPECT_EQ(selection(), "5+0");
        desk.type(u"!");
        EXPECT_EQ(text(), "Hello!");
        desk.click(*first, { 3, 11 });
        EXPECT_EQ(selection(), "0+0");
    }

    TEST_F(NSTextFieldTest, ADoubleClickSelectsAWord)
    {
        first->setStringValue("one two"_ns);
        desk.click(*first, { 8, 11 }, 2);
        EXPECT_EQ(selection(), "0+3");
    }

    TEST_F(NSTextFieldTest, TabGoesOnAndShiftTabBack)
    {
        first->selectText(nullptr);
        desk.type(u"a");
        desk.press(u'\t');
        EXPECT_FALSE(first->currentEditor());
        EXPECT_TRUE(second->currentEditor());
        desk.type(u"b");
        desk.press(u'\t', kShift);
        EXPECT_TRUE(first->currentEditor());
        EXPECT_EQ(text(), "a");
        EXPECT_EQ(text(*second), "b");
    }

    TEST_F(NSTextFieldTest, ReturnSendsTheActionAndSelectsEverything)
    {
        watch();
        first->selectText(nullptr);
        desk.type(u"ab");
        desk.press(u'\r');
        EXPECT_EQ(witness->actions_, 1);
        EXPECT_EQ(witness->log_, "begin change:a change:ab end:16 ");
        EXPECT_EQ(selection(), "0+2");
    }

    TEST_F(NSTextFieldTest, EscapePutsBackWhatWasThere)
    {
        first->setStringValue("old"_ns);
        first->selectText(nullptr);
        desk.type(u"new");
        desk.press(0x1B);
        EXPECT_EQ(text(), "old");
        EXPECT_EQ(selection(), "0+3");
    }

    TEST_F(NSTextFieldTest, TheDelegateMayTakeCommands)
    {
        watch();
        witness->takesReturn_ = true;
        first->selectText(nullptr);
        desk.press(u'\r');
        EXPECT_EQ(witness->log_, "return ");
        EXPECT_EQ(witness->actions_, 0);
    }

    TEST_F(NSTextFieldTest, TheDelegateMayKeepTheEditing)
    {
        watch();
        witness->refusesEnd_ = true;
        first->selectText(nullptr);
        desk.type(u"a");
        EXPECT_FALSE(desk.window->makeFirstResponder(second.get()));
        EXPECT_TRUE(first->currentEditor());
        desk.window->endEditingFor(nullptr);
        EXPECT_NE(desk.window->firstResponder(), first->currentEditor().get());
        witness->refusesEnd_ = false;
    }

    TEST_F(NSTextFieldTest, APressElsewhereEndsTheEditing)
    {
        watch();
        first->selectText(nullptr);
        desk.type(u"a");
        desk.click(*second, { 50, 11 });
        EXPECT_EQ(witness->log_, "begin change:a end:0 ");
        EXPECT_TRUE(second->currentEditor());
        EXPECT_EQ(text(), "a");
    }

    TEST_F(NSTextFieldTest, PastedLinesBecomeOne)
    {
        const auto board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        board->setString_forType("one\ntwo"_ns, NSPasteboardTypeString);
        first->selectText(nullptr);
        desk.press(u'v', kCommand);
        EXPECT_EQ(text(), "one two");
    }

    TEST_F(NSTextFieldTest, UndoesWhileItIsEdited)
    {
        first->setStringValue("old"_ns);
        first->selectText(nullptr);
        desk.type(u"new");
        desk.press(u'z', kCommand);
        EXPECT_EQ(text(), "old");
        desk.window->makeFirstResponder(nullptr);
        EXPECT_FALSE(desk.window->undoManager()->canRedo());
    }

    TEST_F(NSTextFieldTest, SettingTheValueReplacesWhatIsTyped)
    {
        first->selectText(nullptr);
        desk.type(u"typed");
        first->setStringValue("set"_ns);
        EXPECT_EQ(utf8Of(first->currentEditor()->string().get()), "set");
        desk.window->makeFirstResponder(nullptr);
        EXPECT_EQ(text(), "set");
    }

    TEST_F(NSTextFieldTest, LongTextScrollsWithTheCaret)
    {
        first->selectText(nullptr);
        desk.type(u"A text that is much longer than the field is wide");
        const Ref<NSView> clip = first->currentEditor()->superview();
        EXPECT_GT(clip->bounds().origin.x, 100);
        desk.press(NSHomeFunctionKey);
        EXPECT_EQ(clip->bounds().origin.x, 0);
    }

    TEST_F(NSTextFieldTest, TypesAtTheRightWhereTheTextStandsThere)
    {
        first->setAlignment(NSTextAlignmentRight);
        first->selectText(nullptr);
        desk.type(u"ab");
        const Ref<NSText> editor = first->currentEditor();
        EXPECT_LE(editor->frame().size.width, 100);
        const NSRect caret = cast<NSTextView>(editor)->firstRectForCharacterRange_actualRange(
            NSMakeRange(2, 0), nullptr);
        EXPECT_NEAR(caret.origin.x, 50 + 10 + 100 - 5, 2);
        desk.type(u" and much more than fits into the field");
        const CGFloat end
            = editor->superview()->bounds().origin.x + editor->superview()->bounds().size.width;
        EXPECT_NEAR(end, editor->frame().size.width, 1);
    }

    TEST_F(NSTextFieldTest, ReadsNumbersWithItsFormatter)
    {
        first->setFormatter(make<NSNumberFormatter>().get());
        first->selectText(nullptr);
        desk.type(u"12");
        EXPECT_TRUE(desk.window->makeFirstResponder(second.get()));
        EXPECT_EQ(first->integerValue(), 12);
        first->selectText(nullptr);
        desk.type(u"twelve");
        EXPECT_FALSE(desk.window->makeFirstResponder(second.get()));
        EXPECT_TRUE(first->currentEditor());
    }

    // ---- who may edit

    TEST_F(NSTextFieldTest, SelectTextDoesNothingWhereNothingCanBeSelected)
    {
        first->setSelectable(false);
        first->selectText(nullptr);
        EXPECT_FALSE(first->currentEditor());
        const Ref<NSTextField> loose = make<NSTextField>();
        loose->selectText(nullptr);
        EXPECT_FALSE(loose->currentEditor());
    }

    TEST_F(NSTextFieldTest, ASelectableTextCannotBeTyped)
    {
        first->setStringValue("fixed"_ns);
        first->setEditable(false);
        first->setSelectable(true);
        first->selectText(nullptr);
        desk.type(u"x");
        desk.press(u'c', kCommand);
        EXPECT_EQ(text(), "fixed");
        EXPECT_EQ(utf8Of(NSPasteboard::cls()
                             .generalPasteboard()
                             ->stringForType(NSPasteboardTypeString)
                             .get()),
            "fixed");
    }

    TEST_F(NSTextFieldTest, DisablingEndsTheEditing)
    {
        first->selectText(nullptr);
        first->setEnabled(false);
        EXPECT_FALSE(first->currentEditor());
        EXPECT_FALSE(first->acceptsFirstResponder());
    }

    TEST_F(NSTextFieldTest, RemovingTheFieldEndsTheEditing)
    {
        first->selectText(nullptr);
        desk.type(u"a");
        first->removeFromSuperview();
        EXPECT_FALSE(first->currentEditor());
        EXPECT_EQ(desk.window->firstResponder(), desk.window.get());
        second->selectText(nullptr);
        desk.type(u"b");
        EXPECT_EQ(text(*second), "b");
    }

    TEST_F(NSTextFieldTest, MayBeRemovedWhileItTellsOfAChange)
    {
        watch();
        witness->removesField_ = true;
        first->selectText(nullptr);
        desk.type(u"abc");
        EXPECT_FALSE(first->superview());
        EXPECT_FALSE(first->currentEditor());
    }

    TEST_F(NSTextFieldTest, ForgetsADelegateThatHasGone)
    {
        first->setDelegate(make<FieldWitness>().get());
        first->selectText(nullptr);
        desk.type(u"ab");
        EXPECT_EQ(text(), "ab");
    }

    TEST_F(NSTextFieldTest, TheWindowMayCloseWhileItIsEdited)
    {
        first->selectText(nullptr);
        desk.type(u"a");
        desk.window->close();
        desk.screen.advance(3);
        EXPECT_EQ(text(), "a");
    }

    // ---- drawing

    TEST_F(NSTextFieldTest, DrawsGroundAndText)
    {
        const auto inkAround = [&] {
            const auto pixels = desk.screen.pixels();
            int dark = 0;
            for (int y = 300 - 172; y < 300 - 150; ++y)
                for (int x = 60; x < 160; ++x)
                    dark += (pixels.at(x, y) & 0xFF) < 0x60;
            return dark;
        };
        EXPECT_EQ(inkAround(), 0);
        first->setStringValue("MMMM"_ns);
        EXPECT_GT(inkAround(), 50);
    }

    TEST_F(NSTextFieldTest, ThePlaceholderGoesWithTheFirstLetter)
    {
        first->setPlaceholderString("Name"_ns);
        const auto empty = desk.screen.pixels().words;
        first->setStringValue("x"_ns);
        EXPECT_NE(desk.screen.pixels().words, empty);
        first->setStringValue(""_ns);
        EXPECT_EQ(desk.screen.pixels().words, empty);
        EXPECT_EQ(text(), "");
    }

    // ---- secrets

    TEST_F(NSTextFieldTest, ASecretIsNeitherShownNorGivenAway)
    {
        const auto field = desk.add<NSSecureTextField>(NSMakeRect(120, 100, 100, 22));
        field->selectText(nullptr);
        desk.type(u"pass word");
        EXPECT_EQ(text(*field), "pass word");
        EXPECT_EQ(
            utf8Of(field->attributedStringValue()->string().get()).find("pass"), std::string::npos);
        const auto board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        desk.press(u'a', kCommand);
        desk.press(u'c', kCommand);
        EXPECT_FALSE(board->stringForType(NSPasteboardTypeString));
        desk.press(NSEndFunctionKey);
        desk.press(0x7F);
        EXPECT_EQ(text(*field), "pass wor");
        desk.window->makeFirstResponder(nullptr);
        EXPECT_EQ(text(*field), "pass wor");
    }

}
}
