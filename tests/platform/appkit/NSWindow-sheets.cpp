// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/RaisingOnce.h"

namespace brindle {

/// Places sheets and writes down what it is told of them.
class SheetDelegate : public NSObject {
    BRINDLE_OBJECT(SheetDelegate, NSObject)

public:
    std::string log_;
};
template <> struct SheetDelegate::Methods<struct Told> {
    static void begins(SheetDelegate& self, NSObject*) { self.log_ += "begins "; }
    static void ended(SheetDelegate& self, NSObject*) { self.log_ += "ended "; }
    static NSRect position(SheetDelegate&, NSWindow*, NSWindow*, NSRect line)
    {
        line.origin.y -= 30;
        return line;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "windowWillBeginSheet:", imp<begins> },
            { "windowDidEndSheet:", imp<ended> },
            { "window:willPositionSheet:usingRect:", imp<position> },
        });
    }
};
BRINDLE_RECORD(SheetDelegate, Told)

namespace {

    Ref<NSWindow> closableWindow(NSRect content)
    {
        return alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(content,
            NSTitledWindowMask | NSClosableWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
    }

    /// A shown window of 300 by 200 below its bar, and two that can be its sheets.
    struct Host {
        HeadlessScreen screen { 640, 480 };
        Ref<NSWindow> host = closableWindow(NSMakeRect(100, 100, 300, 200));
        Ref<NSWindow> first = closableWindow(NSMakeRect(0, 0, 100, 50));
        Ref<NSWindow> second = closableWindow(NSMakeRect(0, 0, 80, 40));
        std::string log;

        Host()
        {
            host->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~Host()
        {
            host->close();
            first->close();
            second->close();
        }
        Host(const Host&) = delete;
        Host& operator=(const Host&) = delete;
        void begin(const Ref<NSWindow>& sheet, const char* name)
        {
            host->beginSheet_completionHandler(sheet.get(), [this, name](NSModalResponse code) {
                log += std::string(name) + " " + std::to_string(code) + " ";
            });
        }
    };

    TEST(Sheets, ASheetHangsBelowTheBarInTheMiddle)
    {
        Host h;
        h.begin(h.first, "first");
        EXPECT_TRUE(h.first->isVisible());
        EXPECT_EQ(h.first->frame(), NSMakeRect(200, 250, 100, 50));
        EXPECT_EQ(h.host->attachedSheet(), h.first.get());
        EXPECT_EQ(h.first->sheetParent(), h.host.get());
        EXPECT_TRUE(h.first->isSheet());
        EXPECT_FALSE(h.host->isSheet());
    }

    TEST(Sheets, ASheetHasTheKeyboardAndGivesItBack)
    {
        Host h;
        h.begin(h.first, "first");
        EXPECT_TRUE(h.first->isKeyWindow());
        h.host->makeKeyWindow();
        EXPECT_TRUE(h.first->isKeyWindow());
        h.host->endSheet(h.first.get());
        EXPECT_TRUE(h.host->isKeyWindow());
    }

    TEST(Sheets, TheEndTellsTheCodeAfterTheSheetHasGone)
    {
        Host h;
        bool wasVisible = true;
        h.host->beginSheet_completionHandler(h.first.get(), [&](NSModalResponse code) {
            wasVisible = h.first->isVisible();
            h.log = std::to_string(code);
        });
        h.host->endSheet_returnCode(h.first.get(), 7);
        EXPECT_FALSE(wasVisible);
        EXPECT_EQ(h.log, "7");
        EXPECT_EQ(h.host->attachedSheet(), nullptr);
        EXPECT_FALSE(h.first->isSheet());
    }

    TEST(Sheets, WithoutACodeItIsTheOneForStopping)
    {
        Host h;
        h.begin(h.first, "first");
        h.host->endSheet(h.first.get());
        EXPECT_EQ(h.log, "first -1000 ");
    }

    TEST(Sheets, ANilCompletionIsNotRun)
    {
        Host h;
        h.host->beginSheet_completionHandler(h.first.get(), nullptr);
        EXPECT_NO_THROW(h.host->endSheet(h.first.get()));
        EXPECT_FALSE(h.first->isVisible());
    }

    TEST(Sheets, AnEndedSheetHasItsBarAgain)
    {
        Host h;
        h.begin(h.first, "first");
        h.host->endSheet(h.first.get());
        EXPECT_EQ(h.first->frame().size, NSMakeSize(100, 72));
        EXPECT_EQ(h.first->styleMask() & NSDocModalWindowMask, 0u);
    }

    TEST(Sheets, TheSecondWaitsForTheFirst)
    {
        Host h;
        h.begin(h.first, "first");
        h.begin(h.second, "second");
        EXPECT_FALSE(h.second->isVisible());
        EXPECT_EQ(h.host->sheets()->count(), 2u);
        h.host->endSheet_returnCode(h.first.get(), 1);
        EXPECT_TRUE(h.second->isVisible());
        h.host->endSheet_returnCode(h.second.get(), 2);
        EXPECT_EQ(h.log, "first 1 second 2 ");
    }

    TEST(Sheets, AnUrgentOneGoesBeforeThoseThatWait)
    {
        Host h;
        const Ref<NSWindow> urgent = closableWindow(NSMakeRect(0, 0, 60, 30));
        h.begin(h.first, "first");
        h.begin(h.second, "second");
        h.host->beginCriticalSheet_completionHandler(urgent.get(), nullptr);
        h.host->endSheet(h.first.get());
        EXPECT_EQ(h.host->attachedSheet(), urgent.get());
        h.host->endSheet(urgent.get());
        EXPECT_EQ(h.host->attachedSheet(), h.second.get());
    }

    TEST(Sheets, ASheetStartedInACompletionIsShownAfterTheFirstHasGone)
    {
        Host h;
        bool firstWasVisible = true;
        h.host->beginSheet_completionHandler(h.first.get(), [&](NSModalResponse) {
            h.begin(h.second, "second");
            firstWasVisible = h.first->isVisible();
        });
        h.host->endSheet(h.first.get());
        EXPECT_FALSE(firstWasVisible);
        EXPECT_TRUE(h.second->isVisible());
    }

    TEST(Sheets, TheSameWindowCanBeASheetAgain)
    {
        Host h;
        h.begin(h.first, "once");
        h.host->endSheet_returnCode(h.first.get(), 1);
        h.begin(h.first, "twice");
        h.host->endSheet_returnCode(h.first.get(), 2);
        EXPECT_EQ(h.log, "once 1 twice 2 ");
    }

    TEST(Sheets, ASheetMovesAndStaysInTheMiddleWithItsHost)
    {
        Host h;
        h.begin(h.first, "first");
        h.host->setFrame_display(NSMakeRect(50, 60, 400, 222), true);
        EXPECT_EQ(h.first->frame(), NSMakeRect(200, 210, 100, 50));
    }

    TEST(Sheets, PressesOnTheHostReachNoView)
    {
        Host h;
        h.begin(h.first, "first");
        h.screen.process();
        h.screen.pointer().click({ 100 + 16, 100 + 200 + 11 }); // its close button
        EXPECT_TRUE(h.host->isVisible());
        EXPECT_GT(h.screen.display().counters().beeps, 0u);
    }

    TEST(Sheets, TheHostCanStillBeMovedByItsBar)
    {
        Host h;
        h.begin(h.first, "first");
        h.screen.process();
        h.screen.pointer().press({ 300, 310 });
        h.screen.pointer().dragTo({ 310, 305 });
        h.screen.pointer().release();
        EXPECT_EQ(h.host->frame().origin, NSMakePoint(110, 95));
        EXPECT_EQ(h.first->frame().origin, NSMakePoint(210, 245));
    }

    TEST(Sheets, TheUserCannotCloseTheHost)
    {
        Host h;
        h.begin(h.first, "first");
        h.host->performClose(nullptr);
        EXPECT_TRUE(h.host->isVisible());
    }

    TEST(Sheets, ClosingTheHostEndsAllItsSheets)
    {
        Host h;
        h.begin(h.first, "first");
        h.begin(h.second, "second");
        h.host->close();
        EXPECT_EQ(h.log, "second -1001 first -1001 ");
        EXPECT_FALSE(h.first->isVisible());
        EXPECT_FALSE(h.second->isVisible());
    }

    TEST(Sheets, ClosingASheetEndsIt)
    {
        Host h;
        h.begin(h.first, "first");
        h.first->close();
        EXPECT_EQ(h.log, "first -1001 ");
        EXPECT_EQ(h.host->attachedSheet(), nullptr);
    }

    TEST(Sheets, EndingWhatIsNoSheetDoesNothing)
    {
        Host h;
        h.begin(h.first, "first");
        h.host->endSheet(h.second.get());
        h.host->endSheet(nullptr);
        h.second->endSheet(h.first.get());
        EXPECT_EQ(h.host->attachedSheet(), h.first.get());
        EXPECT_EQ(h.log, "");
    }

    TEST(Sheets, NilItselfAndASheetOfAnotherAreRefused)
    {
        Host h;
        EXPECT_THROW(h.host->beginSheet_completionHandler(nullptr, nullptr), Exception);
        EXPECT_THROW(h.host->beginSheet_completionHandler(h.host.get(), nullptr), Exception);
        h.begin(h.first, "first");
        EXPECT_THROW(h.second->beginSheet_completionHandler(h.first.get(), nullptr), Exception);
        EXPECT_THROW(h.first->beginSheet_completionHandler(h.host.get(), nullptr), Exception);
    }

    TEST(Sheets, ASheetOfAWindowOutOfSightIsShownByItself)
    {
        Host h;
        h.host->orderOut(nullptr);
        h.begin(h.first, "first");
        EXPECT_TRUE(h.first->isVisible());
        h.host->endSheet_returnCode(h.first.get(), 3);
        EXPECT_EQ(h.log, "first 3 ");
    }

    TEST(Sheets, TheDelegatePlacesAndIsTold)
    {
        Host h;
        const Ref<SheetDelegate> delegate = make<SheetDelegate>();
        h.host->setDelegate(delegate.get());
        h.begin(h.first, "first");
        EXPECT_EQ(h.first->frame(), NSMakeRect(200, 220, 100, 50));
        h.host->endSheet(h.first.get());
        EXPECT_EQ(delegate->log_, "begins ended ");
    }

    TEST(Sheets, ASheetBegunWhileItsHostClosesIsAnsweredWhenThatHasGone)
    {
        Host h;
        h.host->beginSheet_completionHandler(h.first.get(), [&h](NSModalResponse code) {
            h.log += "first " + std::to_string(code) + " ";
            h.begin(h.second, "second");
            h.log += "begun ";
        });
        h.host->close();
        EXPECT_EQ(h.log, "first -1001 begun ");
        EXPECT_FALSE(h.second->isVisible());
        EXPECT_FALSE(h.second->isSheet());
        h.screen.process();
        EXPECT_EQ(h.log, "first -1001 begun second -1001 ");
    }

    // ---- who is told raises

    TEST(Sheets, ASheetAnswersAndTheNextIsShownThoughWhoIsToldOfItsEndRaises)
    {
        Host h;
        h.begin(h.first, "first");
        h.begin(h.second, "second");
        const test::RaisingOnce raising(NSWindowDidEndSheetNotification);
        EXPECT_THROW(h.host->endSheet(h.first.get()), Exception);
        EXPECT_EQ(h.log, "first -1000 ");
        EXPECT_EQ(h.host->attachedSheet(), h.second);
        EXPECT_TRUE(h.second->isVisible());
    }

    TEST(Sheets, TheNextSheetIsShownThoughTheOneBeforeRaisesWhenItGoes)
    {
        Host h;
        h.begin(h.first, "first");
        h.begin(h.second, "second");
        const test::RaisingOnce raising(NSWindowDidResignKeyNotification);
        EXPECT_THROW(h.host->endSheet(h.first.get()), Exception);
        EXPECT_EQ(h.log, "first -1000 ");
        EXPECT_FALSE(h.first->isVisible());
        EXPECT_TRUE(h.second->isKeyWindow());
    }

    TEST(Sheets, ASheetAnswersThoughWhoIsToldOfItsEndRaisesWhenItsHostCloses)
    {
        Host h;
        h.begin(h.first, "first");
        const test::RaisingOnce raising(NSWindowDidEndSheetNotification);
        EXPECT_THROW(h.host->close(), Exception);
        EXPECT_EQ(h.log, "first -1001 ");
    }

}

}
