// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSParagraphStyle.h"
#include "appkit/NSText.h"
#include "controls/GWBackgroundColorView.h"
#include "controls/GWEditTextField.h"
#include "controls/GWLabel.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Counts the presses it gets.
class PressedView : public NSView {
    BRINDLE_OBJECT(PressedView, NSView)

public:
    int presses_ = 0;
};
template <> struct PressedView::Methods<struct Presses> {
    static void mouseDown(PressedView& self, NSEvent*) { ++self.presses_; }
    static void table(Builder& t) { t.methods({ { "mouseDown:", imp<mouseDown> } }); }
};
BRINDLE_RECORD(PressedView, Presses)

namespace {

    void expectLabel(GWLabel& label)
    {
        EXPECT_FALSE(label.isBordered());
        EXPECT_FALSE(label.isBezeled());
        EXPECT_FALSE(label.isEditable());
        EXPECT_FALSE(label.isSelectable());
        const Ref<NSCell> cell = label.cell();
        EXPECT_FALSE(cell->isScrollable());
        EXPECT_FALSE(cell->usesSingleLineMode());
        EXPECT_EQ(cell->lineBreakMode(), NSLineBreakByWordWrapping);
        EXPECT_TRUE(cell->wraps());
        EXPECT_TRUE(cell->truncatesLastVisibleLine());
    }

    TEST(GWLabel, ANewOneWrapsAndCannotBeEdited)
    {
        const Ref<GWLabel> label = make<GWLabel>();
        expectLabel(*label);
        EXPECT_TRUE(label->isOpaque());
    }

    TEST(GWLabel, FromAnInterfaceFileItIsMadeALabel)
    {
        const Ref<GWLabel> label = make<GWLabel>();
        label->setBezeled(true);
        label->setEditable(true);
        label->cell()->setScrollable(true);
        label->awakeFromNib();
        expectLabel(*label);
    }

    TEST(GWLabel, AClickReachesTheViewBeneath)
    {
        HeadlessScreen screen;
        const auto below = screen.add<PressedView>(NSMakeRect(0, 0, 100, 50));
        const auto label = screen.add<GWLabel>(NSMakeRect(0, 0, 100, 50));
        label->setStringValue("text"_ns);
        screen.pointer().click({ 20, 20 });
        EXPECT_EQ(below->presses_, 1);
    }

    TEST(GWLabel, WhatIsInItIsSkippedToo)
    {
        const Ref<NSView> parent = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 100, 50));
        const Ref<NSView> label = alloc<GWLabel>()->initWithFrame(NSMakeRect(0, 0, 100, 50));
        const Ref<NSView> inside = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 100, 50));
        parent->addSubview(label.get());
        label->addSubview(inside.get());
        EXPECT_EQ(parent->hitTest({ 20, 20 }), parent.get());
    }

    TEST(GWLabel, WithoutAGroundOfItsOwnItClearsWhatItShowedBefore)
    {
        HeadlessScreen screen { 100, 60 };
        const auto ground = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 60));
        ground->setBackgroundColor(NSColor::cls().redColor().get());
        ground->setNeedsDisplay(true);
        const Ref<GWLabel> label
            = cast<GWLabel>(alloc<GWLabel>()->initWithFrame(NSMakeRect(0, 0, 100, 40)));
        label->setDrawsBackground(false);
        ground->addSubview(label.get());
        const auto empty = screen.pixels().words;
        label->setStringValue("MMMM"_ns);
        EXPECT_NE(screen.pixels().words, empty);
        label->setStringValue(""_ns);
        const display::Snapshot seen = screen.pixels();
        EXPECT_EQ(seen.words, empty);
        EXPECT_EQ(seen.at(50, 40), 0xFFFF0000) << "the ground behind";
    }

    /// A field and another in a window that can have the keyboard.
    struct Editing {
        HeadlessScreen screen { 400, 300 };
        Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(50, 50, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true);
        Ref<GWEditTextField> field = cast<GWEditTextField>(
            alloc<GWEditTextField>()->initWithFrame(NSMakeRect(10, 10, 200, 24)));

        Editing()
        {
            field->setStringValue("all of it"_ns);
            window->contentView()->addSubview(field.get());
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~Editing() { window->close(); }
        Editing(const Editing&) = delete;
        Editing& operator=(const Editing&) = delete;
        NSRange selection() { return maybe(field->currentEditor())->selectedRange(); }
    };

    TEST(GWEditTextField, FocusSelectsAllOfItsText)
    {
        Editing e;
        EXPECT_TRUE(e.window->makeFirstResponder(e.field.get()));
        e.screen.process();
        EXPECT_EQ(e.selection(), (NSRange { 0, 9 }));
    }

    TEST(GWEditTextField, AClickSelectsAllOfItsText)
    {
        Editing e;
        e.screen.pointer().click({ 50 + 10 + 30, 50 + 10 + 12 });
        e.screen.process();
        EXPECT_EQ(e.selection(), (NSRange { 0, 9 }));
    }

    TEST(GWEditTextField, WhatIsTypedTakesTheTextsPlace)
    {
        Editing e;
        e.window->makeFirstResponder(e.field.get());
        e.screen.process();
        e.screen.keyboard().type(u"new");
        EXPECT_EQ(utf8Of(e.field->stringValue().get()), "new");
    }

    TEST(GWEditTextField, AFieldMayGoBeforeTheSelectionIsMade)
    {
        Editing e;
        e.window->makeFirstResponder(e.field.get());
        e.field->removeFromSuperview();
        EXPECT_NO_THROW(e.screen.process());
        EXPECT_EQ(e.field->window(), nullptr);
    }

}
}
