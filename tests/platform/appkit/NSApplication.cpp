// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication.h"

#include <iostream>

#include <gtest/gtest.h>

#include "appkit/NSEvent.h"
#include "appkit/NSScreen.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "foundation/NSNotification.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// A delegate that answers an action.
class ActionDelegate : public NSObject {
    BRINDLE_OBJECT(ActionDelegate, NSObject)

public:
    int actions_ = 0;
};
template <> struct ActionDelegate::Methods<struct Acting> {
    static void act(ActionDelegate& self, NSObject*) { ++self.actions_; }
    static void fail(ActionDelegate&, NSObject*) { raise("Fault", "on purpose"); }
    static void table(Builder& t) { t.methods({ { "act:", imp<act> }, { "fail:", imp<fail> } }); }
};
BRINDLE_RECORD(ActionDelegate, Acting)

/// A delegate that is asked whether the application may end, and writes down what it hears.
class QuittingDelegate : public NSObject {
    BRINDLE_OBJECT(QuittingDelegate, NSObject)

public:
    NSApplicationTerminateReply reply_ = NSTerminateNow;
};
template <> struct QuittingDelegate::Methods<struct Quitting> {
    static NSApplicationTerminateReply ask(QuittingDelegate& self, NSApplication*)
    {
        std::cerr << "asked ";
        return self.reply_;
    }
    static void tell(QuittingDelegate&, NSNotification*) { std::cerr << "told "; }
    static void table(Builder& t)
    {
        t.methods({
            { "applicationShouldTerminate:", imp<ask> },
            { "applicationWillTerminate:", imp<tell> },
        });
    }
};
BRINDLE_RECORD(QuittingDelegate, Quitting)

namespace {

    Ref<NSEvent> custom(NSInteger data)
    {
        return NSEvent::cls()
            .otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
                NSApplicationDefined, {}, 0, 0, 0, nullptr, 0, data, 0);
    }
    Ref<NSEvent> next(NSApplication& app, NSEventMask mask, bool dequeue = true)
    {
        return app.nextEventMatchingMask_untilDate_inMode_dequeue(mask, nullptr, nullptr, dequeue);
    }

}

TEST(NSApplication, ThereIsOne)
{
    EXPECT_EQ(NSApplication::cls().sharedApplication(), NSApplication::cls().sharedApplication());
}

TEST(NSApplication, PostedEventsComeInTheirOrder)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    app.postEvent_atStart(custom(1).get(), false);
    app.postEvent_atStart(custom(2).get(), false);
    app.postEvent_atStart(custom(3).get(), true);
    EXPECT_EQ(next(app, NSApplicationDefinedMask)->data1(), 3);
    EXPECT_EQ(next(app, NSApplicationDefinedMask, false)->data1(), 1);
    EXPECT_EQ(next(app, NSApplicationDefinedMask)->data1(), 1);
    EXPECT_EQ(next(app, NSKeyDownMask), nullptr);
    EXPECT_EQ(next(app, NSApplicationDefinedMask)->data1(), 2);
}

TEST(NSApplication, ADisplayThatEndsTakesTheCurrentEventAlong)
{
    {
        HeadlessScreen screen;
        screen.window().makeKeyAndOrderFront(nullptr);
        screen.keyboard().press(u'a');
        EXPECT_TRUE(screen.application().currentEvent());
    }
    EXPECT_FALSE(NSApplication::cls().sharedApplication()->currentEvent());
}

TEST(NSApplication, AnEventThatSomebodyKeepsStaysAsItWas)
{
    HeadlessScreen screen;
    screen.pointer().moveTo({ 10, 20 });
    const Ref<NSEvent> kept = screen.application().currentEvent();
    for (int i = 0; i < 20; ++i)
        screen.pointer().moveTo({ 100.0 + i, 50 });
    EXPECT_EQ(kept->locationInWindow(), NSMakePoint(10, 20));
    EXPECT_FALSE(screen.application().currentEvent() == kept);
    EXPECT_EQ(screen.application().currentEvent()->locationInWindow(), NSMakePoint(119, 50));
}

TEST(NSApplication, StopEndsRun)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    NSRunLoop::cls().mainRunLoop()->performBlock([&] { app.stop(nullptr); });
    app.run();
    EXPECT_FALSE(app.isRunning());
}

TEST(NSApplication, AModalLoopAnswersTheCodeItIsStoppedWith)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    NSRunLoop::cls().mainRunLoop()->performBlock([&] { app.stopModalWithCode(7); });
    EXPECT_EQ(app.runModalForWindow(&screen.window()), 7);
    EXPECT_EQ(app.modalWindow(), nullptr);
}

TEST(NSApplication, AModalLoopThatNothingCanEndRaises)
{
    HeadlessScreen screen;
    EXPECT_THROW(screen.application().runModalForWindow(&screen.window()), Exception);
    EXPECT_EQ(screen.application().modalWindow(), nullptr);
}

TEST(NSApplication, AnActionWithoutTargetReachesTheDelegate)
{
    HeadlessScreen screen;
    const Ref<ActionDelegate> delegate = make<ActionDelegate>();
    screen.application().setDelegate(delegate.get());
    EXPECT_TRUE(screen.application().sendAction_to_from(selector<"act:">, nullptr, nullptr));
    EXPECT_FALSE(screen.application().sendAction_to_from(selector<"nobody:">, nullptr, nullptr));
    EXPECT_EQ(delegate->actions_, 1);
}

TEST(NSApplication, AnExceptionLeavesRunAndTheApplicationUsable)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    const Ref<ActionDelegate> delegate = make<ActionDelegate>();
    NSRunLoop::cls().mainRunLoop()->performBlock(
        [&] { app.sendAction_to_from(selector<"fail:">, delegate.get(), nullptr); });
    EXPECT_THROW(app.run(), Exception);
    EXPECT_FALSE(app.isRunning());
    app.postEvent_atStart(custom(5).get(), false);
    EXPECT_EQ(next(app, NSApplicationDefinedMask)->data1(), 5);
}

TEST(NSApplication, TheLostServerEndsTheProgramWithOneLine)
{
    EXPECT_EXIT(
        {
            HeadlessScreen screen;
            screen.display().disconnect();
            screen.process();
        },
        testing::ExitedWithCode(1), "^brindle: lost the connection to the display server\n$");
}

TEST(NSApplication, TerminatingTellsAndEndsTheProgram)
{
    EXPECT_EXIT(
        {
            HeadlessScreen screen;
            const auto delegate = make<QuittingDelegate>();
            screen.application().setDelegate(delegate.get());
            screen.application().terminate(nullptr);
        },
        testing::ExitedWithCode(0), "asked told ");
}

TEST(NSApplication, ADelegateMayRefuseToTerminateAndMayAgreeLater)
{
    EXPECT_EXIT(
        {
            HeadlessScreen screen;
            NSApplication& app = screen.application();
            const auto delegate = make<QuittingDelegate>();
            app.setDelegate(delegate.get());
            delegate->reply_ = NSTerminateCancel;
            app.terminate(nullptr);
            delegate->reply_ = NSTerminateLater;
            app.terminate(nullptr);
            app.replyToApplicationShouldTerminate(false);
            std::cerr << "later ";
            app.replyToApplicationShouldTerminate(true);
        },
        testing::ExitedWithCode(0), "asked asked later told ");
}

TEST(NSApplication, HidingAndShowingKeepsTheOrder)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    const Ref<NSArray> before = app.orderedWindows();
    app.hide(nullptr);
    EXPECT_EQ(app.orderedWindows()->count(), 0u);
    app.unhide(nullptr);
    EXPECT_TRUE(app.orderedWindows()->isEqualToArray(before.get()));
}

TEST(NSApplication, WindowsThatAreClosedWhileItIsHiddenStayClosed)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    const auto shown = [](NSRect frame) {
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            frame, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->orderFrontRegardless();
        return window;
    };
    const Ref<NSWindow> closed = shown(NSMakeRect(0, 0, 50, 50));
    const Ref<NSWindow> away = shown(NSMakeRect(0, 0, 60, 60));
    const Ref<NSWindow> child = shown(NSMakeRect(0, 0, 20, 20));
    const Ref<NSWindow> parent = shown(NSMakeRect(0, 0, 70, 70));
    parent->addChildWindow_ordered(child.get(), NSWindowBelow);
    app.hide(nullptr);
    closed->close();
    away->orderOut(nullptr);
    app.unhide(nullptr);
    EXPECT_FALSE(closed->isVisible());
    EXPECT_FALSE(away->isVisible());
    EXPECT_TRUE(parent->isVisible());
    EXPECT_TRUE(child->isVisible());
    app.hide(nullptr);
    parent->close();
    app.unhide(nullptr);
    EXPECT_FALSE(parent->isVisible());
    EXPECT_FALSE(child->isVisible());
}

TEST(NSApplication, AModalSessionMayEndWhileItRuns)
{
    HeadlessScreen screen;
    NSApplication& app = screen.application();
    const NSModalSession session = app.beginModalSessionForWindow(&screen.window());
    bool ended = false;
    NSRunLoop::cls().mainRunLoop()->performBlock([&] {
        if (!std::exchange(ended, true)) {
            app.stopModalWithCode(7);
            app.endModalSession(session);
        }
    });
    NSInteger code = NSRunContinuesResponse;
    for (int i = 0; i < 9 && code == NSRunContinuesResponse; ++i)
        code = app.runModalSession(session);
    EXPECT_TRUE(ended);
    EXPECT_EQ(code, 7);
    EXPECT_EQ(app.modalWindow(), nullptr);
    EXPECT_EQ(screen.window().level(), NSNormalWindowLevel);
    screen.window().setLevel(NSFloatingWindowLevel);
    app.endModalSession(session); // again
    EXPECT_EQ(screen.window().level(), NSFloatingWindowLevel);
    EXPECT_EQ(app.runModalSession(session), NSRunAbortedResponse);
}

TEST(NSScreen, WithoutADisplayThereIsNoMainScreen)
{
    NSApplication::cls().sharedApplication();
    installDisplay(std::make_unique<display::HeadlessDisplay>(std::vector<display::Screen>()));
    EXPECT_EQ(NSScreen::cls().mainScreen(), nullptr);
    EXPECT_EQ(NSScreen::cls().screens()->count(), 0u);
    installDisplay(nullptr);
}

TEST(NSScreen, AnOverrideReplacesTheScreens)
{
    HeadlessScreen screen(400, 300);
    EXPECT_EQ(NSScreen::cls().mainScreen()->frame(), NSMakeRect(0, 0, 400, 300));
    const Ref<NSScreen> other = alloc<NSScreen>()->initWithFrame_visibleFrame_backingScaleFactor(
        NSMakeRect(0, 0, 1000, 900), NSMakeRect(0, 0, 1000, 870), 2);
    NSScreen::cls().setScreensOverride(makeArray({ other.get() }).get());
    EXPECT_EQ(NSScreen::cls().mainScreen()->visibleFrame(), NSMakeRect(0, 0, 1000, 870));
    NSScreen::cls().setScreensOverride(nullptr);
    EXPECT_EQ(NSScreen::cls().mainScreen()->frame(), NSMakeRect(0, 0, 400, 300));
}

}
