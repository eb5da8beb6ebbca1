// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSUserDefaults+ReviewRequest.h"

#include <limits>

#include <gtest/gtest.h>

#include "appkit/NSAlert.h"
#include "appkit/NSButton.h"
#include "appkit/ScriptedAnswers.h"
#include "core/NSObject+HXAssociatedObjects.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSURL.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    /// A user who answers requests, on an application without windows.
    class Review : public ::testing::Test {
    protected:
        Review()
        {
            defaults = NSUserDefaults::cls().standardUserDefaults();
            scripted::answerAlerts([this](NSAlert* alert) -> NSInteger {
                shown += utf8(alert->messageText()) + " ";
                return utf8(alert->messageText()) == "Thanks" ? thanksAnswer : answer;
            });
            scripted::takeOpenedURLs([this](NSURL* url) {
                opened += utf8(url->absoluteString());
                return true;
            });
        }
        ~Review() override
        {
            scripted::answerAlerts(nullptr);
            scripted::takeOpenedURLs(nullptr);
            associateValue_withKey(defaults, nullptr, JUAppStoreID);
        }
        void use(int times = 1)
        {
            for (int i = 0; i < times; ++i) {
                updateAppUsesForReviewRequestWithAppID(defaults, "7"_ns);
                NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
            }
        }
        NSInteger kept(NSString* key) const { return defaults->integerForKey(key); }
        void keep(NSString* key, NSInteger value) { defaults->setInteger_forKey(value, key); }

        test::DefaultsFolder folder;
        Ref<NSUserDefaults> defaults;
        NSInteger answer = 7; // none that counts
        NSInteger thanksAnswer = 1;
        std::string shown;
        std::string opened;
    };

    TEST_F(Review, IsNotAskedForBeforeTheEighthUse)
    {
        use(7);
        EXPECT_EQ(shown, "");
        EXPECT_EQ(kept("JUAppUses"_ns), 7);
        use();
        EXPECT_EQ(shown, "Rate the App ");
    }
    TEST_F(Review, IsAskedForAtEveryUseWithoutAnAnswer)
    {
        use(10);
        EXPECT_EQ(shown, "Rate the App Rate the App Rate the App ");
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 0);
        EXPECT_EQ(kept("JUAppRespondedAt"_ns), 0);
    }
    TEST_F(Review, LaterIsKeptWithTheCount)
    {
        answer = 0;
        use(8);
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 2);
        EXPECT_EQ(kept("JUAppRespondedAt"_ns), 8);
        EXPECT_EQ(opened, "");
    }
    TEST_F(Review, AfterLaterAtEightItIsAskedForAgainAtNineteen)
    {
        answer = 0;
        use(18);
        EXPECT_EQ(shown, "Rate the App ");
        use();
        EXPECT_EQ(shown, "Rate the App Rate the App ");
        EXPECT_EQ(kept("JUAppRespondedAt"_ns), 19);
    }
    TEST_F(Review, RateThanksAndOpensTheStore)
    {
        answer = 1;
        use(8);
        EXPECT_EQ(shown, "Rate the App Thanks ");
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 1);
        EXPECT_EQ(kept("JUAppRespondedAt"_ns), 8);
        EXPECT_TRUE(opened.starts_with("macappstore://")) << opened;
    }
    TEST_F(Review, WhateverTheThanksAnswerTheStoreOpens)
    {
        answer = 1;
        thanksAnswer = NSModalResponseAbort;
        use(8);
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 1);
        EXPECT_NE(opened, "");
    }
    TEST_F(Review, AfterRateItIsNeverAskedForAgain)
    {
        answer = 1;
        use(40);
        EXPECT_EQ(shown, "Rate the App Thanks ");
    }
    TEST_F(Review, AnAbortedAlertChangesNothing)
    {
        answer = NSModalResponseAbort;
        use(8);
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 0);
        EXPECT_EQ(opened, "");
    }
    TEST_F(Review, AStoredThreeSuppressesItLikeOne)
    {
        keep("JUAppUsesResponse"_ns, 3);
        use(20);
        EXPECT_EQ(shown, "");
    }
    TEST_F(Review, TheResponseIsComparedInItsLowHalf)
    {
        keep("JUAppUses"_ns, 20);
        keep("JUAppUsesResponse"_ns, 4294967297);
        use();
        EXPECT_EQ(shown, "");
    }
    TEST_F(Review, ANegativeCountIsAHugeOne)
    {
        keep("JUAppUses"_ns, -5);
        use();
        EXPECT_EQ(shown, "Rate the App ");
        EXPECT_EQ(kept("JUAppUses"_ns), -4);
    }
    TEST_F(Review, TheLargestCountWraps)
    {
        keep("JUAppUses"_ns, std::numeric_limits<NSInteger>::max());
        use();
        EXPECT_EQ(kept("JUAppUses"_ns), std::numeric_limits<NSInteger>::min());
        EXPECT_EQ(shown, "Rate the App ");
    }
    TEST_F(Review, AnAnswerAboveTheCountWasLongAgo)
    {
        keep("JUAppUses"_ns, 20);
        keep("JUAppUsesResponse"_ns, 2);
        keep("JUAppRespondedAt"_ns, 50);
        use();
        EXPECT_EQ(shown, "Rate the App ");
    }
    TEST_F(Review, AnAnswerAtTheCountItselfIsTooNew)
    {
        keep("JUAppUses"_ns, 20);
        keep("JUAppUsesResponse"_ns, 2);
        keep("JUAppRespondedAt"_ns, 21);
        use();
        EXPECT_EQ(shown, "");
    }
    TEST_F(Review, AnswersArePutWhereTheCountWasAsked)
    {
        answer = 0;
        keep("JUAppUses"_ns, 8);
        updateAppUsesForReviewRequestWithAppID(defaults, nullptr);
        keep("JUAppUses"_ns, 100);
        NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
        EXPECT_EQ(kept("JUAppRespondedAt"_ns), 9);
    }

    TEST_F(Review, TheURLHoldsTheIdentifier)
    {
        associateValue_withKey(defaults, "1234567890"_ns, JUAppStoreID);
        openReviewURL(defaults);
        EXPECT_EQ(opened,
            "macappstore://reviews.example.org/WebObjects/MZUserPublishing.woa/wa/addUserReview"
            "?id=1234567890&displayable-kind=30");
    }
    TEST_F(Review, WithoutAnIdentifierTheURLSaysNull)
    {
        openReviewURL(defaults);
        EXPECT_NE(opened.find("?id=(null)&displayable-kind=30"), std::string::npos) << opened;
    }
    TEST_F(Review, AnIdentifierThatMakesNoURLOpensNothing)
    {
        associateValue_withKey(defaults, "a b<>"_ns, JUAppStoreID);
        openReviewURL(defaults);
        EXPECT_EQ(opened, "");
    }

    // ---- on a screen

    Ref<NSAlert> alertOf(NSWindow& sheet) { return cast<NSAlert>(sheet.delegate()); }
    std::string titlesOf(const Ref<NSAlert>& alert)
    {
        std::string titles;
        for (NSButton* button : each<NSButton>(alert->buttons()))
            titles += utf8(button->title()) + ",";
        return titles;
    }

    TEST_F(Review, IsASheetOfTheMainWindow)
    {
        scripted::answerAlerts(nullptr);
        HeadlessScreen screen { 640, 480 };
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(50, 50, 500, 350), NSTitledWindowMask, NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        screen.process();
        use(8);
        const Ref<NSWindow> sheet = window->attachedSheet();
        ASSERT_TRUE(sheet);
        const Ref<NSAlert> alert = alertOf(*sheet);
        EXPECT_EQ(utf8(alert->informativeText()),
            "It appears you\u2019re getting use out of the app.\n"
            "Please rate the app on the App Store to support future development.");
        EXPECT_EQ(titlesOf(alert), "Rate App,Rate Later,");

        screen.keyboard().press(u'\r'); // Rate App
        const Ref<NSWindow> second = window->attachedSheet();
        ASSERT_TRUE(second);
        EXPECT_NE(second, sheet);
        EXPECT_EQ(utf8(alertOf(*second)->messageText()), "Thanks");
        EXPECT_EQ(utf8(alertOf(*second)->informativeText()), "");
        EXPECT_EQ(titlesOf(alertOf(*second)), "\u2192,");
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 0);
        screen.keyboard().press(u'\r');
        EXPECT_EQ(window->attachedSheet(), nullptr);
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 1);
        EXPECT_NE(opened, "");
        window->close();
    }
    TEST_F(Review, WithoutAMainWindowItIsShownByItself)
    {
        scripted::answerAlerts(nullptr);
        HeadlessScreen screen { 640, 480 };
        ASSERT_EQ(screen.application().mainWindow(), nullptr);
        use(8);
        EXPECT_EQ(kept("JUAppUses"_ns), 8);
        const Ref<NSWindow> window = screen.application().keyWindow();
        ASSERT_TRUE(window && window->delegate());
        EXPECT_EQ(utf8(alertOf(*window)->messageText()), "Rate the App");
        window->close();
        EXPECT_EQ(kept("JUAppUsesResponse"_ns), 0);
    }

}

}
