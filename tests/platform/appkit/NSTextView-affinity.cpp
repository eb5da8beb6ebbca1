// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSFont.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSTextView.h"
#include "runtime/Table.h"
#include "support/EditingDesk.h"
#include "support/TextStack.h"

namespace brindle {

/// An editor that writes down where it draws its caret.
class CaretWitness : public NSTextView {
    BRINDLE_OBJECT(CaretWitness, NSTextView)

public:
    NSRect drawn_ {};
};

template <> struct CaretWitness::Methods<struct Drawing> {
    static void draw(CaretWitness& self, NSRect rect, NSColor*, bool) { self.drawn_ = rect; }
    static void table(Builder& t)
    {
        t.methods({ { "drawInsertionPointInRect:color:turnedOn:", imp<draw> } });
    }
};
BRINDLE_RECORD(CaretWitness, Drawing)

namespace {

    /// "one two |three": index 8 ends the first line and begins the second one.
    struct WrappedText : testing::Test {
        WrappedText()
        {
            text->setFont(NSFont::cls().userFontOfSize(12).get());
            text->setString("one two three"_ns);
            text->setSelectedRange(NSMakeRange(2, 0));
            desk.window->makeFirstResponder(text.get());
            desk.screen.process();
        }
        void act(SEL command) { text->doCommandBySelector(command); }
        CGFloat lineOf(NSUInteger index)
        {
            return text->firstRectForCharacterRange_actualRange(NSMakeRange(index, 0), nullptr)
                .origin.y;
        }
        /// Answers the number of the line on which the caret was drawn.
        int drawnLine()
        {
            text->setNeedsDisplay(true);
            desk.screen.process();
            const CGFloat top = NSMinY(text->drawn_) - text->textContainerOrigin().y;
            return static_cast<int>(top / test::lineHeight() + 0.5);
        }
        void expectCaret(const std::string& selection, NSSelectionAffinity affinity, int line)
        {
            EXPECT_EQ(EditingDesk::selection(*text), selection);
            EXPECT_EQ(text->selectionAffinity(), affinity);
            EXPECT_EQ(drawnLine(), line);
        }

        static constexpr NSSelectionAffinity kUp = NSSelectionAffinityUpstream;
        static constexpr NSSelectionAffinity kDown = NSSelectionAffinityDownstream;

        EditingDesk desk;
        double width = test::widthOf("one two "_ns) + 12;
        Ref<CaretWitness> text = desk.add<CaretWitness>(NSMakeRect(20, 20, width, 100));
    };

    TEST_F(WrappedText, EndStandsAtTheEndOfTheLine)
    {
        act(selector<"moveToEndOfLine:">);
        expectCaret("8+0", kUp, 0);
        act(selector<"moveToEndOfLine:">);
        expectCaret("8+0", kUp, 0);
    }

    TEST_F(WrappedText, HomeGoesBackToTheStartOfThatLine)
    {
        act(selector<"moveToEndOfLine:">);
        act(selector<"moveToBeginningOfLine:">);
        expectCaret("0+0", kDown, 0);
    }

    TEST_F(WrappedText, HomeOfTheNextLineStandsBeforeIt)
    {
        text->setSelectedRange(NSMakeRange(10, 0));
        act(selector<"moveToBeginningOfLine:">);
        expectCaret("8+0", kDown, 1);
    }

    TEST_F(WrappedText, DownAndUpKeepTheColumn)
    {
        act(selector<"moveToEndOfLine:">);
        act(selector<"moveDown:">);
        expectCaret("13+0", kDown, 1);
        act(selector<"moveUp:">);
        expectCaret("8+0", kUp, 0);
    }

    TEST_F(WrappedText, ArrowsLeaveTheEndByOneCharacter)
    {
        act(selector<"moveToEndOfLine:">);
        act(selector<"moveRight:">);
        expectCaret("9+0", kDown, 1);
        act(selector<"moveToBeginningOfLine:">);
        act(selector<"moveLeft:">);
        expectCaret("7+0", kDown, 0);
        act(selector<"moveRight:">);
        expectCaret("8+0", kDown, 1);
    }

    TEST_F(WrappedText, ClickBehindTheLineStandsAtItsEnd)
    {
        desk.click(*text, NSMakePoint(width - 2, 5));
        expectCaret("8+0", kUp, 0);
    }

    TEST_F(WrappedText, ClickBeforeTheNextLineStandsThere)
    {
        desk.click(*text, NSMakePoint(2, 5 + test::lineHeight()));
        expectCaret("8+0", kDown, 1);
    }

    TEST_F(WrappedText, DragToTheEndSelectsTheLine)
    {
        desk.drag(*text, NSMakePoint(1, 5), NSMakePoint(width - 2, 5));
        EXPECT_EQ(EditingDesk::selection(*text), "0+8");
        act(selector<"moveDownAndModifySelection:">);
        EXPECT_EQ(EditingDesk::selection(*text), "0+13");
    }

    TEST_F(WrappedText, SelectingToTheEndGoesOnFromThere)
    {
        act(selector<"moveToEndOfLineAndModifySelection:">);
        EXPECT_EQ(EditingDesk::selection(*text), "2+6");
        EXPECT_EQ(text->selectionAffinity(), kUp);
        act(selector<"moveUpAndModifySelection:">);
        EXPECT_EQ(EditingDesk::selection(*text), "0+2");
    }

    TEST_F(WrappedText, TypingAtTheEndPutsTextBeforeTheNextWord)
    {
        act(selector<"moveToEndOfLine:">);
        desk.type(u"x");
        EXPECT_EQ(utf8Of(text->string()), "one two xthree");
        expectCaret("9+0", kDown, 1);
    }

    TEST_F(WrappedText, DeletingToTheEndFromTheEndDeletesNothing)
    {
        act(selector<"moveToEndOfLine:">);
        act(selector<"deleteToEndOfLine:">);
        EXPECT_EQ(utf8Of(text->string()), "one two three");
        act(selector<"deleteToBeginningOfLine:">);
        EXPECT_EQ(utf8Of(text->string()), "three");
    }

    TEST_F(WrappedText, HostsChooseTheSide)
    {
        text->setSelectedRange_affinity_stillSelecting(NSMakeRange(8, 0), kUp, false);
        expectCaret("8+0", kUp, 0);
        EXPECT_EQ(lineOf(8), lineOf(0));
        text->setSelectedRange(NSMakeRange(8, 0));
        expectCaret("8+0", kDown, 1);
        EXPECT_LT(lineOf(8), lineOf(0)) << "lower on the screen";
    }

    TEST_F(WrappedText, TheSideDoesNotMatterElsewhere)
    {
        text->setSelectedRange_affinity_stillSelecting(NSMakeRange(9, 0), kUp, false);
        EXPECT_EQ(drawnLine(), 1);
        text->setString("one\ntwo"_ns);
        text->setSelectedRange_affinity_stillSelecting(NSMakeRange(4, 0), kUp, false);
        EXPECT_EQ(drawnLine(), 1) << "a line break is no place where a line was wrapped";
        act(selector<"moveToEndOfLine:">);
        expectCaret("7+0", kDown, 1);
    }

    TEST_F(WrappedText, TheCaretFollowsWhenTheLinesChange)
    {
        act(selector<"moveToEndOfLine:">);
        text->setFrameSize(NSMakeSize(300, 100));
        EXPECT_EQ(drawnLine(), 0);
        text->setFrameSize(NSMakeSize(width, 100));
        EXPECT_EQ(drawnLine(), 0);
    }

}

TEST(NSLayoutManager, CaretAtAWrapStandsOnEitherLine)
{
    const test::TextStack stack("one two", test::widthOf("one"_ns) + 11);
    const NSRect before = stack.manager->insertionRectForCharacterAtIndex_upstream(4, false);
    EXPECT_EQ(before.origin.y, test::lineHeight());
    EXPECT_NEAR(before.origin.x, 5, 1e-9);
    const NSRect behind = stack.manager->insertionRectForCharacterAtIndex_upstream(4, true);
    EXPECT_EQ(behind.origin.y, 0);
    EXPECT_NEAR(behind.origin.x, 5 + test::widthOf("one "_ns), 1e-6);
}

TEST(NSLayoutManager, PointBehindAWrappedLineSaysThatItIsItsEnd)
{
    const test::TextStack stack("one two", test::widthOf("one"_ns) + 11);
    const auto at = [&](double x, double y, bool* upstream) {
        return stack.manager->insertionIndexForPoint_inTextContainer_upstream(
            NSMakePoint(x, y), stack.container.get(), upstream);
    };
    bool upstream = false;
    EXPECT_EQ(at(500, 3, &upstream), 4u);
    EXPECT_TRUE(upstream);
    EXPECT_EQ(at(0, test::lineHeight() + 3, &upstream), 4u);
    EXPECT_FALSE(upstream);
    EXPECT_EQ(at(500, test::lineHeight() + 3, nullptr), 7u);
}

TEST(NSLayoutManager, PointBehindAWrappedLineCutsNoCharacter)
{
    // Too narrow for two: each picture is a line.
    const test::TextStack stack("😀😀", 26);
    ASSERT_EQ(stack.lines(), "😀|😀");
    EXPECT_EQ(stack.manager->insertionIndexForPoint_inTextContainer(
                  NSMakePoint(500, 3), stack.container.get()),
        0u);
}

}
