// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "appkit/NSLayoutManager.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextView.h"
#include "support/EditingDesk.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    /// A text view as wide as the scroll view that it lies in, high as its text is.
    struct ScrolledText : testing::Test {
        EditingDesk desk;
        Ref<NSScrollView> scroll = desk.add<NSScrollView>(NSMakeRect(10, 10, 200, 100));
        Ref<NSTextView> text
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame({ {}, scroll->contentSize() }));

        ScrolledText()
        {
            scroll->setHasVerticalScroller(true);
            text->setAutoresizingMask(NSViewWidthSizable);
            text->setVerticallyResizable(true);
            scroll->setDocumentView(text.get());
            desk.window->makeFirstResponder(text.get());
            desk.screen.process();
        }
        void setLines(int count)
        {
            std::string lines;
            for (int i = 0; i < count; ++i)
                lines += "line " + std::to_string(i) + "\n";
            text->setString(NSString::cls().stringWithUTF8String(lines.c_str()).get());
            text->setSelectedRange(NSMakeRange(0, 0));
            desk.screen.process();
        }
        CGFloat top() { return NSMinY(scroll->documentVisibleRect()); }
        CGFloat bottom() { return NSMaxY(scroll->documentVisibleRect()); }
        CGFloat height() { return text->frame().size.height; }
    };

    TEST_F(ScrolledText, GrowsWithItsLines)
    {
        setLines(50);
        EXPECT_GT(height(), 500);
        EXPECT_EQ(top(), 0);
        EXPECT_EQ(text->frame().size.width, scroll->contentSize().width);
        setLines(1);
        EXPECT_LE(height(), 100);
    }
    TEST_F(ScrolledText, ShowsWhereSomethingIsTyped)
    {
        setLines(50);
        text->setSelectedRange(NSMakeRange(text->string()->length(), 0));
        desk.type(u"the end");
        EXPECT_NEAR(bottom(), height(), 1);
    }
    TEST_F(ScrolledText, FollowsTheCaretDownAndUp)
    {
        setLines(50);
        for (int i = 0; i < 20; ++i)
            desk.press(NSDownArrowFunctionKey);
        EXPECT_GT(top(), 0);
        const CGFloat below = top();
        for (int i = 0; i < 20; ++i)
            desk.press(NSUpArrowFunctionKey);
        EXPECT_LT(top(), below);
        EXPECT_EQ(top(), 0);
    }
    TEST_F(ScrolledText, TurnsPages)
    {
        setLines(50);
        desk.press(NSPageDownFunctionKey); // to the last line that shows
        desk.press(NSPageDownFunctionKey);
        EXPECT_GT(top(), 50);
        desk.press(NSPageUpFunctionKey);
        desk.press(NSPageUpFunctionKey);
        EXPECT_EQ(top(), 0);
    }
    TEST_F(ScrolledText, ScrollsWithTheWheel)
    {
        setLines(50);
        desk.screen.pointer().moveTo(desk.onScreen(*scroll, { 50, 50 }));
        desk.screen.pointer().scroll(0, -40, true);
        EXPECT_EQ(top(), 40);
        EXPECT_EQ(text->selectedRange().location, 0U);
    }
    TEST_F(ScrolledText, BreaksItsLinesAnewAtAnotherWidth)
    {
        text->setString("one two three four five six seven eight nine ten eleven twelve "
                        "thirteen fourteen fifteen sixteen seventeen eighteen nineteen"_ns);
        desk.screen.process();
        const CGFloat narrow = text->layoutManager()
                                   ->usedRectForTextContainer(text->textContainer().get())
                                   .size.height;
        scroll->setFrameSize({ 280, 100 });
        desk.screen.process();
        EXPECT_EQ(text->frame().size.width, scroll->contentSize().width);
        EXPECT_LT(text->layoutManager()
                      ->usedRectForTextContainer(text->textContainer().get())
                      .size.height,
            narrow);
    }
    TEST_F(ScrolledText, APressBelowTheLastLineIsTheTexts)
    {
        setLines(2);
        desk.click(*scroll, { 50, 90 });
        EXPECT_EQ(desk.window->firstResponder(), text);
    }
    TEST_F(ScrolledText, TakesTenMegabytesFromThePasteboard)
    {
        const std::string long_(10 << 20, 'x');
        text->setString(NSString::cls().stringWithUTF8String(long_.c_str()).get());
        desk.screen.process();
        EXPECT_EQ(text->string()->length(), long_.size());
        desk.press(NSEndFunctionKey);
        desk.screen.process();
        EXPECT_LE(bottom(), height() + 1);
    }

}
}
