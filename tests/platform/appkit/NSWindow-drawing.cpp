// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSControl.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Draws and prepares to draw as a test says.
class ScriptedView : public NSView {
    BRINDLE_OBJECT(ScriptedView, NSView)

public:
    std::function<void()> draw_;
    std::function<void()> prepare_;
};

template <> struct ScriptedView::Methods<struct Script> {
    static void drawRect(ScriptedView& self, NSRect)
    {
        if (self.draw_)
            self.draw_();
    }
    static void viewWillDraw(ScriptedView& self)
    {
        if (self.prepare_)
            self.prepare_();
    }
    static void table(Builder& t)
    {
        t.methods({ { "drawRect:", imp<drawRect> }, { "viewWillDraw", imp<viewWillDraw> } });
    }
};
BRINDLE_RECORD(ScriptedView, Script)

/// Does as a test says when it is asked whether it is opaque, and when it is marked.
class AskedControl : public NSControl {
    BRINDLE_OBJECT(AskedControl, NSControl)

public:
    std::function<void()> asked_;
    std::function<void()> marked_;
};

template <> struct AskedControl::Methods<struct Script> {
    static bool isOpaque(AskedControl& self)
    {
        if (self.asked_)
            self.asked_();
        return true;
    }
    static void setNeedsDisplay(AskedControl& self, bool needs)
    {
        super<AskedControl, "setNeedsDisplay:">(self, needs);
        if (self.marked_)
            self.marked_();
    }
    static void table(Builder& t)
    {
        t.methods({ { "isOpaque", imp<isOpaque> }, { "setNeedsDisplay:", imp<setNeedsDisplay> } });
    }
};
BRINDLE_RECORD(AskedControl, Script)

namespace {

    constexpr std::uint32_t kRedSeen = 0xFFFF0000;

    [[noreturn]] void fail() { raise("Fault", "on purpose"); }

    void fillRed()
    {
        NSColor::cls().redColor()->set();
        NSRectFill(NSMakeRect(0, 0, 1000, 1000));
    }

    /// Answers a window without a frame that is not shown yet, with a view as its content.
    Ref<NSWindow> borderlessWindow(NSView& view)
    {
        Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->setContentView(&view);
        return window;
    }

    /// A view that does as it likes, and after it one beside it that is red.
    struct WildAndRed {
        HeadlessScreen screen { 200, 100 };
        Ref<ScriptedView> wild = screen.add<ScriptedView>(NSMakeRect(0, 0, 100, 100));
        Ref<ScriptedView> red = screen.add<ScriptedView>(NSMakeRect(100, 0, 100, 100));

        WildAndRed() { red->draw_ = fillRed; }
        /// Draws both in one pass.
        void draw(std::function<void()> step)
        {
            wild->draw_ = std::move(step);
            screen.window().contentView()->setNeedsDisplay(true);
            screen.process();
        }
        std::uint32_t leftPixel() { return screen.display().snapshot().at(50, 50); }
        std::uint32_t rightPixel() { return screen.display().snapshot().at(150, 50); }
        /// Whether the whole right half is red.
        bool rightIsRed()
        {
            const display::Snapshot seen = screen.display().snapshot();
            return seen.at(101, 1) == kRedSeen && seen.at(198, 1) == kRedSeen
                && seen.at(101, 98) == kRedSeen && seen.at(198, 98) == kRedSeen;
        }
    };

    TEST(NSWindowDrawing, AViewThatRaisesDoesNotKeepOthersFromTheScreen)
    {
        WildAndRed pair;
        EXPECT_THROW(pair.draw(fail), Exception);
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, TheFirstOfSeveralExceptionsLeavesThePass)
    {
        WildAndRed pair;
        pair.red->draw_ = [] { raise("Second", "on purpose"); };
        try {
            pair.draw(fail);
            FAIL() << "nothing was raised";
        } catch (const Exception& raised) {
            EXPECT_EQ(utf8Of(raised->name().get()), "Fault");
        }
    }

    TEST(NSWindowDrawing, APassThatRaisedIsOver)
    {
        WildAndRed pair;
        EXPECT_THROW(pair.draw(fail), Exception);
        EXPECT_FALSE(pair.screen.window().viewsNeedDisplay());
        EXPECT_NO_THROW(pair.screen.process());
    }

    TEST(NSWindowDrawing, AWindowWhoseViewRaisedDrawsTheNextTime)
    {
        WildAndRed pair;
        EXPECT_THROW(pair.draw(fail), Exception);
        pair.draw(fillRed);
        EXPECT_EQ(pair.leftPixel(), kRedSeen);
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, AViewThatRaisesBeforeItDrawsDoesNotKeepOthersFromTheScreen)
    {
        WildAndRed pair;
        pair.wild->prepare_ = fail;
        pair.wild->setNeedsDisplay(true);
        pair.red->setNeedsDisplay(true);
        EXPECT_THROW(pair.screen.process(), Exception);
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, AStateThatWasSavedAndNeverRestoredEndsWithItsView)
    {
        WildAndRed pair;
        pair.draw([] {
            NSGraphicsContext::cls().saveGraphicsState();
            CGContextTranslateCTM(currentCGContext().get(), 30, 30);
            NSRectClip(NSMakeRect(0, 0, 5, 5));
        });
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, AStateThatWasRememberedAndNeverTakenBackIsForgotten)
    {
        WildAndRed pair;
        pair.draw([] { NSGraphicsContext::cls().saveGraphicsState(); });
        NSGraphicsContext::cls().restoreGraphicsState();
        EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
    }

    TEST(NSWindowDrawing, ARestoreTooManyChangesNothing)
    {
        WildAndRed pair;
        pair.draw([] {
            for (int i = 0; i < 5; ++i) {
                NSGraphicsContext::cls().restoreGraphicsState();
                CGContextRestoreGState(currentCGContext().get());
            }
            fillRed();
        });
        EXPECT_EQ(pair.leftPixel(), kRedSeen);
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, AGroupThatWasNeverEndedEndsWithItsView)
    {
        WildAndRed pair;
        pair.draw([] {
            CGContextBeginTransparencyLayer(currentCGContext().get(), nullptr);
            fillRed();
        });
        EXPECT_EQ(pair.leftPixel(), kRedSeen);
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, TheGroupOfAFadedViewCannotBeEndedByTheView)
    {
        WildAndRed pair;
        pair.wild->setAlphaValue(0);
        pair.screen.process();
        const std::uint32_t behind = pair.leftPixel();
        pair.wild->setAlphaValue(0.01);
        pair.draw([] {
            CGContextEndTransparencyLayer(currentCGContext().get());
            fillRed();
        });
        EXPECT_NE(pair.leftPixel(), kRedSeen);
        EXPECT_NEAR(pair.leftPixel() >> 16 & 0xFF, behind >> 16 & 0xFF, 4);
    }

    TEST(NSWindowDrawing, APathThatWasBegunEndsWithItsView)
    {
        WildAndRed pair;
        pair.red->draw_ = [] {
            NSColor::cls().redColor()->set();
            CGContextFillPath(currentCGContext().get());
        };
        pair.draw([] { CGContextAddRect(currentCGContext().get(), CGRectMake(0, 0, 200, 100)); });
        EXPECT_NE(pair.rightPixel(), kRedSeen);
    }

    TEST(NSWindowDrawing, AFocusThatWasLockedWhileDrawingEndsWithTheView)
    {
        WildAndRed pair;
        EXPECT_THROW(pair.draw([&pair] {
            pair.red->lockFocus();
            fail();
        }),
            Exception);
        EXPECT_FALSE(NSView::cls().focusView());
        EXPECT_TRUE(pair.rightIsRed());
    }

    TEST(NSWindowDrawing, AViewMayCloseItsWindowWhileItDraws)
    {
        WildAndRed pair;
        int drawn = 0;
        pair.red->draw_ = [&] {
            fillRed();
            ++drawn;
        };
        pair.draw([&] {
            pair.screen.window().close();
            fillRed();
        });
        EXPECT_EQ(drawn, 1);
        EXPECT_FALSE(pair.screen.window().isVisible());
    }

    TEST(NSWindowDrawing, AViewMayCloseItsWindowBeforeItDraws)
    {
        WildAndRed pair;
        int drawn = 0;
        pair.red->draw_ = [&] { ++drawn; };
        pair.wild->prepare_ = [&] { pair.screen.window().close(); };
        pair.wild->setNeedsDisplay(true);
        pair.draw([&] { ++drawn; });
        EXPECT_EQ(drawn, 0);
        EXPECT_FALSE(pair.screen.window().isVisible());
    }

    TEST(NSWindowDrawing, AViewMayCloseItsWindowInItsFirstPicture)
    {
        HeadlessScreen screen { 200, 100 };
        const auto view = make<ScriptedView>();
        const Ref<NSWindow> window = borderlessWindow(*view);
        view->draw_ = [&] { window->close(); };
        window->orderFrontRegardless();
        EXPECT_FALSE(window->isVisible());
        view->draw_ = fillRed;
        window->orderFrontRegardless();
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(screen.pixels().at(50, 50), kRedSeen);
        window->close();
    }

    TEST(NSWindowDrawing, AWindowIsShownThoughItsFirstPictureRaises)
    {
        HeadlessScreen screen { 200, 100 };
        const auto view = make<ScriptedView>();
        const Ref<NSWindow> window = borderlessWindow(*view);
        view->draw_ = [] {
            fillRed();
            fail();
        };
        EXPECT_THROW(window->orderFrontRegardless(), Exception);
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(screen.pixels().at(50, 50), kRedSeen);
        window->close();
    }

    TEST(NSWindowDrawing, ANewFrameIsDrawnOnlyWhereTheWindowIsSeen)
    {
        HeadlessScreen screen { 200, 100 };
        const auto view = make<ScriptedView>();
        const Ref<NSWindow> window = borderlessWindow(*view);
        int drawn = 0;
        view->draw_ = [&drawn] { ++drawn; };
        window->setFrame_display(NSMakeRect(0, 0, 120, 100), true);
        EXPECT_EQ(drawn, 0);
        window->orderFrontRegardless();
        EXPECT_EQ(drawn, 1);
        window->setFrame_display(NSMakeRect(0, 0, 140, 100), true);
        EXPECT_EQ(drawn, 2);
        window->close();
    }

    TEST(NSWindowDrawing, WhatAViewLocksOutlivesItsWindow)
    {
        WildAndRed pair;
        pair.wild->lockFocus();
        const Ref<NSGraphicsContext> context = pair.screen.window().graphicsContext();
        pair.screen.window().close();
        fillRed();
        pair.wild->unlockFocus();
        NSGraphicsContext::cls().setCurrentContext(context.get());
        fillRed();
        NSGraphicsContext::cls().setCurrentContext(nullptr);
    }

    TEST(NSWindowDrawing, AViewIsDrawnInItsPlaceWhileAnotherIsLocked)
    {
        WildAndRed pair;
        pair.wild->lockFocus();
        pair.draw({});
        EXPECT_TRUE(pair.rightIsRed());
        pair.wild->unlockFocus();
    }

}
TEST(NSWindowDrawing, AViewThatTakesItsSiblingsAwayWhenItIsAskedHarmsNobody)
{
    HeadlessScreen screen { 100, 100 };
    const auto below = screen.add<ScriptedView>(NSMakeRect(0, 0, 100, 100));
    below->draw_ = fillRed;
    for (int i = 0; i < 8; ++i)
        screen.add<AskedControl>(NSMakeRect(0, 0, 100, 100));
    const auto asked = screen.add<AskedControl>(NSMakeRect(0, 0, 100, 100));
    NSView* const content = screen.window().contentView().get();
    bool wasAsked = false;
    asked->asked_ = [&] {
        if (std::exchange(wasAsked, true))
            return;
        content->setSubviews(NSArray::cls().arrayWithObject(below.get()).get());
    };
    content->setNeedsDisplay(true);
    screen.process();
    screen.process();
    EXPECT_TRUE(wasAsked);
    EXPECT_EQ(screen.pixels().at(50, 50), kRedSeen);
}

TEST(NSWindowDrawing, AControlMayTakeOthersAwayWhenTheKeyWindowChanges)
{
    HeadlessScreen screen { 100, 100 };
    std::vector<Ref<AskedControl>> controls;
    for (int i = 0; i < 8; ++i)
        controls.push_back(screen.add<AskedControl>(NSMakeRect(i * 10, 0, 10, 10)));
    screen.window().makeKeyAndOrderFront(nullptr);
    screen.process();
    int marks = 0;
    controls.front()->marked_ = [&] {
        for (const Ref<AskedControl>& control : controls)
            control->removeFromSuperview();
        controls.resize(1);
        ++marks;
    };
    screen.window().resignKeyWindow();
    EXPECT_GE(marks, 1);
    EXPECT_EQ(screen.window().contentView()->subviews()->count(), 0u);
}

}
