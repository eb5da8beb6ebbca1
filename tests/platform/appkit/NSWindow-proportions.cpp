// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSApplication+Sheets.h"
#include "appkit/NSWindow+Proportions.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Is told the end of a sheet.
class SheetEnd : public NSObject {
    BRINDLE_OBJECT(SheetEnd, NSObject)

public:
    Ref<NSObject> sheet_;
    NSInteger code_ = -1;
    void* context_ = nullptr;
};
template <> struct SheetEnd::Methods<struct Told> {
    static void didEnd(SheetEnd& self, NSWindow* sheet, NSInteger code, void* context)
    {
        self.sheet_ = sheet;
        self.code_ = code;
        self.context_ = context;
    }
    static void wrong(SheetEnd&) { }
    static void table(Builder& t)
    {
        t.methods({
            { "sheetDidEnd:returnCode:contextInfo:", imp<didEnd> },
            { "wrong", imp<wrong> },
        });
    }
};
BRINDLE_RECORD(SheetEnd, Told)

namespace {

    Ref<NSWindow> resizableWindow(NSRect content)
    {
        return alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            content, NSTitledWindowMask | NSResizableWindowMask, NSBackingStoreBuffered, true);
    }

    /// A window of 200 by 100 and its bar, pulled at its edges.
    struct ProportionTest : testing::Test {
        HeadlessScreen screen { 1000, 800 };
        Ref<NSWindow> window = resizableWindow(NSMakeRect(300, 300, 200, 100));

        ProportionTest()
        {
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~ProportionTest() override { window->close(); }
        NSSize pull(NSPoint from, NSPoint by)
        {
            screen.pointer().press(from);
            screen.pointer().dragTo({ from.x + by.x, from.y + by.y });
            screen.pointer().release();
            return window->frame().size;
        }
    };

    TEST_F(ProportionTest, NothingIsKeptAtFirst)
    {
        EXPECT_EQ(aspectRatio(window), NSSize {});
        EXPECT_EQ(contentAspectRatio(window), NSSize {});
        EXPECT_EQ(resizeIncrements(window), (NSSize { 1, 1 }));
        EXPECT_EQ(pull({ 499, 350 }, { 31, 0 }), (NSSize { 231, 122 }));
    }
    TEST_F(ProportionTest, AProportionChangesNothingByItself)
    {
        setAspectRatio(window, { 1, 1 });
        EXPECT_EQ(window->frame().size, (NSSize { 200, 122 }));
    }
    TEST_F(ProportionTest, ASideBringsTheOtherAlong)
    {
        setAspectRatio(window, { 2, 1 });
        EXPECT_EQ(pull({ 499, 350 }, { 100, 0 }), (NSSize { 300, 150 }));
    }
    TEST_F(ProportionTest, TheTopBringsTheWidthAlong)
    {
        setAspectRatio(window, { 2, 1 });
        EXPECT_EQ(pull({ 400, 421 }, { 0, 28 }), (NSSize { 300, 150 }));
    }
    TEST_F(ProportionTest, AtACornerTheFurtherPullCounts)
    {
        setAspectRatio(window, { 2, 1 });
        EXPECT_EQ(pull({ 499, 301 }, { 200, -10 }), (NSSize { 400, 200 }));
    }
    TEST_F(ProportionTest, AProportionOfTheContentLeavesTheBarOut)
    {
        setContentAspectRatio(window, { 2, 1 });
        EXPECT_EQ(contentAspectRatio(window), (NSSize { 2, 1 }));
        EXPECT_EQ(aspectRatio(window), NSSize {});
        EXPECT_EQ(pull({ 499, 350 }, { 100, 0 }), (NSSize { 300, 172 }));
    }
    TEST_F(ProportionTest, StepsAreWhole)
    {
        setResizeIncrements(window, { 30, 10 });
        EXPECT_EQ(pull({ 499, 301 }, { 70, -14 }), (NSSize { 260, 132 }));
    }
    TEST_F(ProportionTest, StepsTakeAProportionAway)
    {
        setAspectRatio(window, { 2, 1 });
        setResizeIncrements(window, { 30, 10 });
        EXPECT_EQ(aspectRatio(window), NSSize {});
        setAspectRatio(window, { 2, 1 });
        EXPECT_EQ(resizeIncrements(window), (NSSize { 1, 1 }));
    }
    TEST_F(ProportionTest, LimitsCountMoreThanAProportion)
    {
        setAspectRatio(window, { 2, 1 });
        window->setMaxSize({ 250, 1000 });
        EXPECT_EQ(pull({ 499, 350 }, { 100, 0 }).width, 250);
    }
    TEST_F(ProportionTest, OddProportionsAreNone)
    {
        for (const NSSize odd :
            { NSSize { -1, 2 }, NSSize { NAN, 1 }, NSSize { 1, INFINITY }, NSSize { 0, 3 } }) {
            setAspectRatio(window, odd);
            setResizeIncrements(window, { odd.width, odd.height });
            const CGFloat width = window->frame().size.width;
            const NSRect frame = window->frame();
            EXPECT_EQ(pull({ NSMaxX(frame) - 1, 350 }, { 10, 0 }).width, width + 10);
        }
    }

    // ---- frames by degrees

    TEST_F(ProportionTest, AnAnimatedFrameComesByDegrees)
    {
        const NSRect start = window->frame();
        const NSRect end = NSOffsetRect(start, 150, 0);
        EXPECT_DOUBLE_EQ(animationResizeTime(window, end), 0.2);
        window->setFrame_display_animate(end, true, true);
        EXPECT_EQ(window->frame(), start);
        screen.advance(0.1);
        EXPECT_GT(NSMinX(window->frame()), NSMinX(start));
        EXPECT_LT(NSMinX(window->frame()), NSMinX(end));
        screen.advance(0.2);
        EXPECT_EQ(window->frame(), end);
    }
    TEST_F(ProportionTest, WithoutAnimationTheFrameIsThereAtOnce)
    {
        const NSRect end = NSOffsetRect(window->frame(), 50, 0);
        window->setFrame_display_animate(end, true, false);
        EXPECT_EQ(window->frame(), end);
    }
    TEST_F(ProportionTest, AFrameWithoutAnimationEndsOneByDegrees)
    {
        const NSRect start = window->frame();
        window->setFrame_display_animate(NSOffsetRect(start, 300, 0), true, true);
        screen.advance(0.1);
        window->setFrame_display_animate(NSOffsetRect(start, 10, 0), true, false);
        screen.advance(1);
        EXPECT_EQ(window->frame(), NSOffsetRect(start, 10, 0));
    }
    TEST_F(ProportionTest, AWindowOutOfSightIsThereAtOnce)
    {
        window->orderOut(nullptr);
        const NSRect end = NSOffsetRect(window->frame(), 50, 0);
        window->setFrame_display_animate(end, true, true);
        EXPECT_EQ(window->frame(), end);
    }
    TEST_F(ProportionTest, NoWayTakesMoreThanASecond)
    {
        EXPECT_EQ(animationResizeTime(window, NSMakeRect(1e9, 0, 1, 1)), 1);
        EXPECT_EQ(animationResizeTime(window, NSMakeRect(NAN, 0, 1, 1)), 0);
        EXPECT_EQ(animationResizeTime(window, window->frame()), 0);
    }

    // ---- sheets by the application

    TEST_F(ProportionTest, TheApplicationShowsASheetAndTellsItsEnd)
    {
        const Ref<NSWindow> sheet = resizableWindow(NSMakeRect(0, 0, 100, 50));
        const Ref<SheetEnd> end = make<SheetEnd>();
        NSApplication& app = screen.application();
        beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(app, sheet.get(),
            window.get(), end.get(), selector<"sheetDidEnd:returnCode:contextInfo:">, this);
        EXPECT_EQ(window->attachedSheet(), sheet);
        endSheet_returnCode(app, sheet.get(), 7);
        EXPECT_EQ(window->attachedSheet(), nullptr);
        EXPECT_EQ(end->sheet_, sheet);
        EXPECT_EQ(end->code_, 7);
        EXPECT_EQ(end->context_, this);
    }
    TEST_F(ProportionTest, ASheetOfTheApplicationNeedsNoDelegate)
    {
        const Ref<NSWindow> sheet = resizableWindow(NSMakeRect(0, 0, 100, 50));
        NSApplication& app = screen.application();
        beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(
            app, sheet.get(), window.get(), nullptr, {}, nullptr);
        endSheet(app, sheet.get());
        EXPECT_FALSE(sheet->isSheet());
        endSheet(app, sheet.get());
        endSheet(app, nullptr);
    }
    TEST_F(ProportionTest, AnOperationThatTakesSomethingElseIsRefused)
    {
        const Ref<NSWindow> sheet = resizableWindow(NSMakeRect(0, 0, 100, 50));
        const Ref<SheetEnd> end = make<SheetEnd>();
        NSApplication& app = screen.application();
        beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(
            app, sheet.get(), window.get(), end.get(), selector<"wrong">, nullptr);
        EXPECT_THROW(endSheet(app, sheet.get()), Exception);
        EXPECT_EQ(window->attachedSheet(), nullptr);
    }
    TEST_F(ProportionTest, ASheetForNoWindowIsAWindow)
    {
        const Ref<NSWindow> sheet = resizableWindow(NSMakeRect(0, 0, 100, 50));
        beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(
            screen.application(), sheet.get(), nullptr, nullptr, {}, nullptr);
        EXPECT_TRUE(sheet->isVisible());
        EXPECT_FALSE(sheet->isSheet());
        sheet->close();
        EXPECT_THROW(beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(
                         screen.application(), nullptr, window.get(), nullptr, {}, nullptr),
            Exception);
    }

}
}
