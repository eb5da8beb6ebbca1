// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/NSWindow.h"
#include "display/Display.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSRunLoop.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Steps.h"

// A menu on a real server: until it is seen, and until the server has taken it away.

namespace brindle::bench {

namespace {

    constexpr int kItems = 20;
    constexpr int kWarm = 200;
    constexpr double kWarmTime = 0.3e9; // ns: what is read beside the start has been read then
    constexpr int kRounds = 2000;

    Ref<NSMenu> menuOfTwenty()
    {
        Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        for (int i = 0; i < kItems; ++i)
            menu->addItemWithTitle_action_keyEquivalent(
                stringFrom("An item of this menu, number " + std::to_string(i)).get(),
                selector<"terminate:">, nullptr);
        return menu;
    }

    /// - Returns: nanoseconds on the wall's clock.
    double openAndClose(NSMenu& menu)
    {
        const Stopwatch watch(Stopwatch::Kind::wall);
        menu.popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 700 }, nullptr);
        keep(NSEvent::cls().mouseLocation()); // an answer: the server has done everything
        return watch.elapsed();
    }

}

void measureMenusOnScreen(std::vector<Line>& lines)
{
    installDisplay(display::openDisplay(
        display::Choice::x11, display::processEnvironment(), [](std::string_view) {}));
    NSApplication::cls().sharedApplication();
    const Ref<NSMenu> menu = menuOfTwenty();
    const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
    // Told when the server asked for the picture and got it.
    const Ref<NSObject> observer
        = center->addObserverForName_object_queue_usingBlock(NSWindowDidExposeNotification, nullptr,
            nullptr, [&](NSNotification*) { menu->cancelTracking(); });
    const Stopwatch warming(Stopwatch::Kind::wall);
    for (int i = 0; i < kWarm || warming.elapsed() < kWarmTime; ++i)
        openAndClose(*menu);
    std::vector<double> times;
    times.reserve(kRounds);
    const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
    loop->runUntilIdle(NSDefaultRunLoopMode); // what the last one left to be done counts for none
    const double before = heapInUse();
    for (int i = 0; i < kRounds; ++i)
        times.push_back(openAndClose(*menu));
    loop->runUntilIdle(NSDefaultRunLoopMode);
    const double grown = heapInUse() - before;
    center->removeObserver(observer.get());
    installDisplay(nullptr);

    const Row time { "menu: open and close, 20 items, on a screen", "ns", atMost(800e3), {}, {},
        {} };
    lines.push_back(lineFor(time, median(times), 0, 0));
    const Row memory { "menu: growth over 2,000 openings, on a screen", "bytes", atMost(0), {}, {},
        {} };
    lines.push_back(lineFor(memory, grown, 0, 0));
}

}
