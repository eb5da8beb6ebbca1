// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <functional>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSScreen.h"
#include "display/Display.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

/// Fills itself with blue and counts presses.
class BlueView : public NSView {
    BRINDLE_OBJECT(BlueView, NSView)

public:
    int presses_ = 0;
};

template <> struct BlueView::Methods<struct Painting> {
    static void drawRect(BlueView&, NSRect rect)
    {
        NSColor::cls().colorWithSRGBRed_green_blue_alpha(0, 0, 1, 1)->set();
        NSRectFill(rect);
    }
    static void mouseDown(BlueView& self, NSEvent*) { ++self.presses_; }
    static bool yes(BlueView&, NSEvent*) { return true; }
    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "acceptsFirstMouse:", imp<yes> },
        });
    }
};
BRINDLE_RECORD(BlueView, Painting)

namespace {

    /// A borderless window of 100 x 80 points, filled by one view, on the real server.
    class NativeWindow : public display::X11Test {
    protected:
        void SetUp() override
        {
            app_ = NSApplication::cls().sharedApplication();
            installed_ = &display::installX11();
        }
        void TearDown() override
        {
            window_ = nullptr;
            endInstalled(*installed_);
        }

        void show(NSWindowStyleMask style)
        {
            window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(60, 90, 100, 80), style, NSBackingStoreBuffered, true);
            view_ = cast<BlueView>(alloc<BlueView>()->initWithFrame(NSMakeRect(0, 0, 100, 80)));
            window_->setTitle("native"_ns);
            window_->setContentView(view_.get());
            window_->makeKeyAndOrderFront(nullptr);
        }
        // What the server has to do first takes its own time.
        bool becomes(const std::function<bool()>& condition)
        {
            for (int i = 0; i < 100; ++i) {
                app_->processEvents();
                if (condition())
                    return true;
                const Ref<NSDate> soon = NSDate::cls().dateWithTimeIntervalSinceNow(0.02);
                NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(nullptr, soon.get());
            }
            return false;
        }
        // The middle of the content, in the pixels of the screen.
        std::pair<int, int> middle()
        {
            const NSPoint m = window_->convertPointToScreen({ 50, 40 });
            const NSRect screen = NSScreen::cls().mainScreen()->frame();
            const double scale = NSScreen::cls().mainScreen()->backingScaleFactor();
            return { static_cast<int>(m.x * scale),
                static_cast<int>((screen.size.height - m.y) * scale) };
        }

        Ref<NSApplication> app_;
        display::Display* installed_ = nullptr;
        Ref<NSWindow> window_;
        Ref<BlueView> view_;
    };

}

TEST_F(NativeWindow, ShowsWhatItsViewDraws)
{
    show(NSBorderlessWindowMask);
    EXPECT_TRUE(becomes([&] {
        driver.sync();
        return (driver.pixel(middle().first, middle().second) & 0xFFFFFF) == 0x0000FF;
    }));
    window_->close();
}

TEST_F(NativeWindow, ATitledWindowShowsItsContentToo)
{
    show(NSTitledWindowMask | NSClosableWindowMask | NSResizableWindowMask);
    EXPECT_TRUE(becomes([&] {
        driver.sync();
        return (driver.pixel(middle().first, middle().second) & 0xFFFFFF) == 0x0000FF;
    }));
    window_->close();
}

TEST_F(NativeWindow, ARealPressReachesTheView)
{
    show(NSTitledWindowMask | NSClosableWindowMask);
    ASSERT_TRUE(becomes([&] {
        driver.sync();
        return (driver.pixel(middle().first, middle().second) & 0xFFFFFF) == 0x0000FF;
    }));
    driver.click(middle().first, middle().second);
    EXPECT_TRUE(becomes([&] { return view_->presses_ == 1; }));
    window_->close();
}

TEST_F(NativeWindow, ClosingTakesTheNativeWindowAway)
{
    show(NSTitledWindowMask | NSClosableWindowMask);
    ASSERT_TRUE(becomes([&] { return driver.find("native") != 0; }));
    window_->close();
    EXPECT_TRUE(becomes([&] { return driver.find("native") == 0; }));
}

TEST_F(NativeWindow, TheDesktopsRequestClosesIt)
{
    show(NSTitledWindowMask | NSClosableWindowMask);
    ASSERT_TRUE(becomes([&] { return driver.find("native") != 0; }));
    driver.sendProtocol(driver.find("native"), "WM_DELETE_WINDOW");
    EXPECT_TRUE(becomes([&] { return !window_->isVisible(); }));
}

}
