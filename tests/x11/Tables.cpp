// SPDX-License-Identifier: Apache-2.0
#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "menubar/BRMenuTableView.h"
#include "support/ActionLog.h"
#include "support/LogSink.h"
#include "support/TableHost.h"

namespace brindle {
namespace {

    /// A menu table of 100 by 190 points on a server, its bottom left at 100, 200.
    struct TablesOnX : testing::Test {
        static constexpr int kScreenHeight = 800;

        TablesOnX()
            : screen(display::installX11())
            , window(alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                  NSMakeRect(100, 200, 100, 190), NSBorderlessWindowMask, NSBackingStoreBuffered,
                  true))
        {
            table->setHeaderView(nullptr);
            table->addTableColumn(test::column("item"_ns, 97).get());
            const Ref<NSScrollView> scroll = cast<NSScrollView>(
                alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, 100, 190)));
            scroll->setDocumentView(table.get());
            window->contentView()->addSubview(scroll.get());
            host->rows_ = 100;
            table->setDelegate(host.get());
            table->setDataSource(host.get());
            table->setTapTarget(taps.get());
            table->setTapAction(selector<"act:">);
            taps->setReaction([this](NSObject*) { ++tapped; });
            table->reloadData();
            driver.movePointer(1200, 20);
            NSApplication::cls().sharedApplication()->activateIgnoringOtherApps(true);
            window->makeKeyAndOrderFront(nullptr);
            becomes([this] { return window->isKeyWindow(); });
            runFor(0.3);
            log.clear();
        }
        ~TablesOnX() override
        {
            table->setTableDelegate(nullptr);
            window->close();
            display::X11Test::endInstalled(screen);
        }
        static void runFor(double seconds)
        {
            NSRunLoop::cls().mainRunLoop()->runUntilDate(
                NSDate::cls().dateWithTimeIntervalSinceNow(seconds).get());
            NSApplication::cls().sharedApplication()->processEvents();
        }
        /// Runs the loop until something is true, seconds at most.
        template <class Condition> static bool becomes(Condition&& condition)
        {
            for (int i = 0; i < 500 && !condition(); ++i)
                runFor(0.01);
            return condition();
        }
        /// Answers the middle of the n-th line that shows, in pixels from the top.
        int line(int number) const
        {
            const auto top = static_cast<int>(NSMaxY(window->frame())); // where a manager put it
            return kScreenHeight - top + 19 * number + 9;
        }
        int middle() const { return static_cast<int>(NSMidX(window->frame())); }
        bool selects(NSInteger row)
        {
            return becomes([&] { return table->selectedRow() == row; });
        }

        display::Display& screen;
        display::XDriver driver;
        test::LogSink log;
        Ref<NSWindow> window;
        Ref<BRMenuTableView> table = make<BRMenuTableView>();
        Ref<TableHost> host = make<TableHost>();
        Ref<ActionLog> taps = make<ActionLog>();
        int tapped = 0;
    };

    TEST_F(TablesOnX, TheSelectionFollowsTheRealPointer)
    {
        driver.movePointer(middle(), line(2));
        EXPECT_TRUE(selects(2));
        driver.movePointer(middle(), line(6));
        EXPECT_TRUE(selects(6));
        driver.movePointer(1200, 20);
        runFor(0.1);
        EXPECT_EQ(table->selectedRow(), 6);
        EXPECT_EQ(log.lines().back(), "hover 6");
    }

    TEST_F(TablesOnX, ARealWheelChangesTheRowUnderTheRestingPointer)
    {
        driver.movePointer(middle(), line(2));
        ASSERT_TRUE(selects(2));
        driver.button(5, true);
        driver.button(5, false);
        EXPECT_TRUE(becomes([&] { return table->selectedRow() > 2; }));
        const NSInteger row = table->rowAtPoint(table->convertPoint_fromView(
            NSMakePoint(50, kScreenHeight - NSMinY(window->frame()) - line(2)), nullptr));
        EXPECT_EQ(table->selectedRow(), row);
    }

    TEST_F(TablesOnX, ARealClickTaps)
    {
        driver.click(middle(), line(4));
        EXPECT_TRUE(becomes([&] { return tapped == 1; }));
        EXPECT_EQ(table->clickedRow(), 4);
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeTapped);
    }

}
}
