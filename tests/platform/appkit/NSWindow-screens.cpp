// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Counts how often it was told that its backing is different, and sees the scale of then.
class BackingView : public NSView {
    BRINDLE_OBJECT(BackingView, NSView)

public:
    int told_ = 0;
    CGFloat scale_ = 0;
};

template <> struct BackingView::Methods<struct Backing> {
    static void changed(BackingView& self)
    {
        ++self.told_;
        self.scale_ = self.window()->backingScaleFactor();
    }
    static void table(Builder& t)
    {
        t.methods({ { "viewDidChangeBackingProperties", imp<changed> } });
    }
};
BRINDLE_RECORD(BackingView, Backing)

namespace {

    /// Writes down which of the two notifications a window posts.
    class Log {
    public:
        explicit Log(NSWindow& window)
        {
            listen(window, NSWindowDidChangeScreenNotification, "screen ");
            listen(window, NSWindowDidChangeBackingPropertiesNotification, "backing ");
        }
        ~Log()
        {
            for (const Ref<NSObject>& token : tokens_)
                center()->removeObserver(token.get());
        }
        Log(const Log&) = delete;
        Log& operator=(const Log&) = delete;

        std::string text;

    private:
        static Ref<NSNotificationCenter> center()
        {
            return NSNotificationCenter::cls().defaultCenter();
        }
        void listen(NSWindow& window, NSString* name, const char* word)
        {
            tokens_.push_back(center()->addObserverForName_object_queue_usingBlock(
                name, &window, nullptr, [this, word](NSNotification*) { text += word; }));
        }
        std::vector<Ref<NSObject>> tokens_;
    };

    display::Screen at(double x, double scale)
    {
        display::Screen screen = display::HeadlessDisplay::screenOfSize(400, 300, scale);
        screen.frame.origin.x = x;
        screen.visibleFrame.origin.x = x;
        screen.primary = x == 0;
        return screen;
    }

    /// A window on the left one of two screens; the right one has its own scale.
    struct TwoScreens {
        explicit TwoScreens(double rightScale)
        {
            screen.display().setScreens({ at(0, 1), at(400, rightScale) });
            window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(50, 50, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
            view = cast<BackingView>(alloc<BackingView>()->initWithFrame(NSMakeRect(0, 0, 10, 10)));
            window->contentView()->addSubview(view.get());
            window->orderFrontRegardless();
            screen.process();
        }
        ~TwoScreens() { window->close(); }
        TwoScreens(const TwoScreens&) = delete;
        TwoScreens& operator=(const TwoScreens&) = delete;

        HeadlessScreen screen { 400, 300 };
        Ref<NSWindow> window;
        Ref<BackingView> view;
    };

    TEST(NSWindowScreens, AWindowThatGoesToAnotherScreenTellsIt)
    {
        TwoScreens two(1);
        const Log log(*two.window);
        two.window->setFrameOrigin(NSMakePoint(500, 50));
        EXPECT_EQ(log.text, "screen ");
    }

    TEST(NSWindowScreens, AWindowThatStaysOnItsScreenTellsNothing)
    {
        TwoScreens two(2);
        const Log log(*two.window);
        two.window->setFrameOrigin(NSMakePoint(60, 70));
        EXPECT_EQ(log.text, "");
        EXPECT_EQ(two.view->told_, 0);
    }

    TEST(NSWindowScreens, ViewsAreToldOfTheScaleOfTheNewScreen)
    {
        TwoScreens two(2);
        const Log log(*two.window);
        two.window->setFrameOrigin(NSMakePoint(500, 50));
        EXPECT_EQ(log.text, "backing screen ");
        EXPECT_EQ(two.view->told_, 1);
        EXPECT_EQ(two.view->scale_, 2);
    }

    TEST(NSWindowScreens, ViewsAreToldWhenTheirScreenGetsAnotherScale)
    {
        TwoScreens two(1);
        const Log log(*two.window);
        two.screen.display().setScreens({ at(0, 1.5) });
        two.screen.process();
        EXPECT_EQ(log.text, "backing ");
        EXPECT_EQ(two.view->scale_, 1.5);
    }

    TEST(NSWindowScreens, ScreensThatChangeElsewhereAreNotTheWindowsAffair)
    {
        TwoScreens two(1);
        const Log log(*two.window);
        two.screen.display().setScreens({ at(0, 1), at(400, 3) });
        two.screen.process();
        EXPECT_EQ(log.text, "");
        EXPECT_EQ(two.view->told_, 0);
    }

    TEST(NSWindowScreens, AWindowMovedOutOfSightTellsWhenItIsShownAgain)
    {
        TwoScreens two(2);
        const Log log(*two.window);
        two.window->orderOut(nullptr);
        two.window->setFrameOrigin(NSMakePoint(500, 50));
        EXPECT_EQ(log.text, "");
        two.window->orderFrontRegardless();
        EXPECT_EQ(log.text, "backing screen ");
    }

    TEST(NSWindowScreens, TheFirstShowingIsNoChange)
    {
        HeadlessScreen screen { 400, 300, 2 };
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(50, 50, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        const Log log(*window);
        window->orderFrontRegardless();
        screen.process();
        EXPECT_EQ(log.text, "");
        window->close();
    }

}
}
