// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAlert.h"

#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "appkit/NSImage.h"
#include "appkit/NSTextField.h"
#include "appkit/ScriptedAnswers.h"
#include "foundation/Dispatch.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSAlert> legacy(NSString* message, NSString* button = nullptr,
        NSString* alternate = nullptr, NSString* other = nullptr)
    {
        return NSAlert::cls()
            .alertWithMessageText_defaultButton_alternateButton_otherButton_informativeTextWithFormat(
                message, button, alternate, other, ""_ns);
    }
    Ref<NSButton> buttonOf(NSAlert& alert, NSUInteger index)
    {
        const auto buttons = alert.buttons();
        return cast<NSButton>(Ref<NSObject>(buttons->objectAtIndex(index)));
    }
    std::string titles(const Ref<NSAlert>& alert)
    {
        std::string out;
        for (NSButton* button : each<NSButton>(alert->buttons()))
            out += utf8(button->title()) + "=" + std::to_string(button->tag()) + " ";
        return out;
    }

    /// A window with a bar, and what ended alerts have said.
    struct Desk {
        HeadlessScreen screen { 800, 600 };
        Ref<NSWindow> host = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 600, 400), NSTitledWindowMask | NSClosableWindowMask,
            NSBackingStoreBuffered, true);
        std::string log;

        Desk()
        {
            host->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~Desk()
        {
            scripted::answerAlerts(nullptr);
            host->close();
        }
        Desk(const Desk&) = delete;
        Desk& operator=(const Desk&) = delete;

        void begin(const Ref<NSAlert>& alert, const char* name, NSWindow* window)
        {
            alert->beginSheetModalForWindow_completionHandler(
                window, [this, name](NSModalResponse code) {
                    log += std::string(name) + " " + std::to_string(code) + " ";
                });
            screen.process();
        }
        void begin(const Ref<NSAlert>& alert, const char* name) { begin(alert, name, host.get()); }
    };

    // ---- making

    TEST(Alert, WithoutAMessageOrButtonItSaysAlertAndOK)
    {
        const auto alert = legacy(nullptr);
        EXPECT_EQ(utf8(alert->messageText()), "Alert");
        EXPECT_EQ(titles(alert), "OK=1 ");
        EXPECT_EQ(utf8(legacy(""_ns, ""_ns)->messageText()), "Alert");
        EXPECT_EQ(titles(legacy(""_ns, ""_ns)), "OK=1 ");
    }
    TEST(Alert, MadeAtOnceItsButtonsAnswerOneZeroAndMinusOne)
    {
        EXPECT_EQ(titles(legacy("m"_ns, "A"_ns, "B"_ns, "C"_ns)), "A=1 B=0 C=-1 ");
    }
    TEST(Alert, AnAbsentAlternateButtonLeavesTheOther)
    {
        EXPECT_EQ(titles(legacy("m"_ns, "A"_ns, nullptr, "C"_ns)), "A=1 C=-1 ");
    }
    TEST(Alert, TheInformativeTextIsAFormat)
    {
        const auto alert
            = NSAlert::cls()
                  .alertWithMessageText_defaultButton_alternateButton_otherButton_informativeTextWithFormat(
                      "m"_ns, nullptr, nullptr, nullptr, "%@ has %d%%"_ns, "This"_ns, 5);
        EXPECT_EQ(utf8(alert->informativeText()), "This has 5%");
    }
    TEST(Alert, ButtonsThatAreAddedAnswerFromAThousand)
    {
        const auto alert = make<NSAlert>();
        for (NSString* title : { "A"_ns, "B"_ns, "C"_ns, "D"_ns })
            alert->addButtonWithTitle(title);
        EXPECT_EQ(titles(alert), "A=1000 B=1001 C=1002 D=1003 ");
    }
    TEST(Alert, AnErrorIsShownByItsDescriptionAndSuggestion)
    {
        const auto error = NSError::cls().errorWithDomain_code_userInfo(NSCocoaErrorDomain, 4,
            NSDictionary::cls()
                .dictionaryWithObjectsAndKeys("Gone."_ns,
                    static_cast<NSString*>(NSLocalizedDescriptionKey), "Look elsewhere."_ns,
                    static_cast<NSString*>(NSLocalizedRecoverySuggestionErrorKey))
                .get());
        const auto alert = NSAlert::cls().alertWithError(error.get());
        EXPECT_EQ(utf8(alert->messageText()), "Gone.");
        EXPECT_EQ(utf8(alert->informativeText()), "Look elsewhere.");
    }
    TEST(Alert, NilTextsAreEmpty)
    {
        const auto alert = make<NSAlert>();
        alert->setMessageText(nullptr);
        alert->setInformativeText(nullptr);
        EXPECT_EQ(utf8(alert->messageText()), "");
        EXPECT_EQ(utf8(alert->informativeText()), "");
        EXPECT_NE(alert->icon(), nullptr);
    }

    // ---- keys and buttons

    TEST(Alert, ReturnPressesTheFirstButton)
    {
        Desk desk;
        desk.begin(legacy("m"_ns, "A"_ns, "B"_ns), "alert");
        desk.screen.keyboard().press(u'\r');
        EXPECT_EQ(desk.log, "alert 1 ");
    }
    TEST(Alert, EscapePressesCancel)
    {
        Desk desk;
        desk.begin(legacy("m"_ns, "A"_ns, "Cancel"_ns), "alert");
        desk.screen.keyboard().press(0x1b);
        EXPECT_EQ(desk.log, "alert 0 ");
    }
    TEST(Alert, EscapeDoesNothingWhereNoButtonIsTitledCancel)
    {
        Desk desk;
        const auto alert = legacy("m"_ns, "A"_ns, "B"_ns);
        desk.begin(alert, "alert");
        desk.screen.keyboard().press(0x1b);
        EXPECT_EQ(desk.log, "");
        buttonOf(*alert, 0)->performClick(nullptr);
        EXPECT_EQ(desk.log, "alert 1 ");
    }
    TEST(Alert, AClickOnAButtonEndsIt)
    {
        Desk desk;
        const auto alert = legacy("m"_ns, "A"_ns, "B"_ns);
        desk.begin(alert, "alert");
        const auto button = buttonOf(*alert, 1);
        const NSRect place = alert->window()->convertRectToScreen(
            button->convertRect_toView(button->bounds(), nullptr));
        desk.screen.pointer().click({ NSMidX(place), NSMidY(place) });
        EXPECT_EQ(desk.log, "alert 0 ");
    }
    TEST(Alert, AButtonAnswersATagThatWasChanged)
    {
        Desk desk;
        const auto alert = make<NSAlert>();
        alert->addButtonWithTitle("A"_ns)->setTag(77);
        desk.begin(alert, "alert");
        desk.screen.keyboard().press(u'\r');
        EXPECT_EQ(desk.log, "alert 77 ");
    }
    TEST(Alert, TheDefaultButtonStandsAtTheRight)
    {
        const auto alert = legacy("m"_ns, "A"_ns, "B"_ns);
        alert->window();
        EXPECT_GT(NSMinX(buttonOf(*alert, 0)->frame()), NSMaxX(buttonOf(*alert, 1)->frame()));
    }
    TEST(Alert, ManyLongButtonsStandBelowEachOther)
    {
        const auto alert = make<NSAlert>();
        for (int i = 0; i < 4; ++i)
            alert->addButtonWithTitle("A button with a title that is quite long indeed"_ns);
        const NSRect content = alert->window()->contentView()->bounds();
        EXPECT_EQ(NSMinX(buttonOf(*alert, 0)->frame()), NSMinX(buttonOf(*alert, 3)->frame()));
        for (NSUInteger i = 0; i < 4; ++i)
            EXPECT_TRUE(NSContainsRect(content, buttonOf(*alert, i)->frame()));
    }

    TEST(Alert, ReturnAndEscapeInItsFieldPressItsButtons)
    {
        Desk desk;
        const auto alert = legacy("m"_ns, "A"_ns, "Cancel"_ns);
        const Ref<NSTextField> field = NSTextField::cls().textFieldWithString("text"_ns);
        alert->setAccessoryView(field.get());
        desk.begin(alert, "alert");
        field->selectText(nullptr);
        desk.screen.keyboard().type(u"typed");
        desk.screen.keyboard().press(u'\r');
        EXPECT_EQ(desk.log, "alert 1 ");
        EXPECT_EQ(utf8(field->stringValue()), "typed");
        desk.begin(alert, "again");
        field->selectText(nullptr);
        desk.screen.keyboard().press(0x1b);
        EXPECT_EQ(desk.log, "alert 1 again 0 ");
    }

    // ---- sheets

    TEST(Alert, ASheetBlocksItsWindowAndGoesBeforeItsHandlerRuns)
    {
        Desk desk;
        const auto alert = legacy("m"_ns);
        bool wasShown = true;
        alert->beginSheetModalForWindow_completionHandler(
            desk.host.get(), [&](NSModalResponse) { wasShown = alert->window()->isVisible(); });
        EXPECT_EQ(desk.host->attachedSheet(), alert->window());
        buttonOf(*alert, 0)->performClick(nullptr);
        EXPECT_FALSE(wasShown);
    }
    TEST(Alert, ASecondAlertWaitsForTheFirst)
    {
        Desk desk;
        const auto first = legacy("1"_ns);
        const auto second = legacy("2"_ns);
        desk.begin(first, "first");
        desk.begin(second, "second");
        EXPECT_FALSE(second->window()->isVisible());
        buttonOf(*first, 0)->performClick(nullptr);
        EXPECT_TRUE(second->window()->isVisible());
        buttonOf(*second, 0)->performClick(nullptr);
        EXPECT_EQ(desk.log, "first 1 second 1 ");
    }
    TEST(Alert, OneThatAHandlerBeginsComesNext)
    {
        Desk desk;
        const auto first = legacy("1"_ns);
        const auto second = legacy("2"_ns);
        first->beginSheetModalForWindow_completionHandler(
            desk.host.get(), [&](NSModalResponse) { desk.begin(second, "second"); });
        buttonOf(*first, 0)->performClick(nullptr);
        EXPECT_EQ(desk.host->attachedSheet(), second->window());
        desk.screen.keyboard().press(u'\r');
        EXPECT_EQ(desk.log, "second 1 ");
    }
    TEST(Alert, ClosingTheHostEndsIt)
    {
        Desk desk;
        desk.begin(legacy("m"_ns), "alert");
        desk.host->close();
        EXPECT_EQ(desk.log, "alert -1001 ");
    }
    TEST(Alert, WithoutAWindowItIsShownByItself)
    {
        Desk desk;
        const auto alert = legacy("m"_ns);
        desk.begin(alert, "alert", nullptr);
        EXPECT_TRUE(alert->window()->isVisible());
        EXPECT_TRUE(alert->window()->isKeyWindow());
        EXPECT_EQ(desk.log, "");
        desk.screen.keyboard().press(u'\r');
        EXPECT_FALSE(alert->window()->isVisible());
        EXPECT_EQ(desk.log, "alert 1 ");
    }
    TEST(Alert, ClosingTheWindowOfOneByItselfEndsItOnce)
    {
        Desk desk;
        const auto alert = legacy("m"_ns);
        desk.begin(alert, "alert", nullptr);
        alert->window()->close();
        EXPECT_EQ(desk.log, "alert -1001 ");
    }
    TEST(Alert, LivesWhileItIsShownAndNoLonger)
    {
        Desk desk;
        auto alert = legacy("m"_ns);
        WeakRef<NSAlert> seen(alert.get());
        alert->beginSheetModalForWindow_completionHandler(desk.host.get(), nullptr);
        alert = nullptr;
        EXPECT_NE(seen.get(), nullptr);
        desk.screen.process();
        desk.screen.keyboard().press(u'\r');
        desk.screen.process();
        EXPECT_EQ(seen.get(), nullptr);
    }
    TEST(Alert, CanBeShownAgain)
    {
        Desk desk;
        const auto alert = legacy("m"_ns);
        desk.begin(alert, "once");
        desk.screen.keyboard().press(u'\r');
        alert->setMessageText("A longer message that says something else"_ns);
        desk.begin(alert, "twice");
        desk.screen.keyboard().press(u'\r');
        EXPECT_EQ(desk.log, "once 1 twice 1 ");
    }

    // ---- modal

    TEST(Alert, RunsModallyUntilAButtonIsPressed)
    {
        Desk desk;
        const auto alert = make<NSAlert>();
        alert->addButtonWithTitle("Go"_ns);
        alert->addButtonWithTitle("Cancel"_ns);
        dispatch_async(dispatch_get_main_queue(), [&] {
            EXPECT_EQ(desk.screen.application().modalWindow(), alert->window());
            buttonOf(*alert, 1)->performClick(nullptr);
        });
        EXPECT_EQ(alert->runModal(), NSAlertSecondButtonReturn);
        EXPECT_FALSE(alert->window()->isVisible());
    }
    TEST(Alert, AnExceptionOutOfItsLoopLeavesNoWindow)
    {
        Desk desk;
        const auto alert = legacy("m"_ns);
        dispatch_async(
            dispatch_get_main_queue(), [] { raise("TestException", "out of the loop"); });
        EXPECT_THROW(alert->runModal(), Exception);
        EXPECT_FALSE(alert->window()->isVisible());
        EXPECT_EQ(desk.screen.application().modalWindow(), nullptr);
    }

    // ---- content

    TEST(Alert, TheAccessoryAndTheSuppressionButtonAreShown)
    {
        const auto alert = legacy("m"_ns);
        const Ref<NSView> accessory = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 500, 30));
        alert->setAccessoryView(accessory.get());
        alert->setShowsSuppressionButton(true);
        const auto window = alert->window();
        alert->layout();
        const NSRect content = window->contentView()->bounds();
        EXPECT_EQ(accessory->window(), window);
        EXPECT_TRUE(NSContainsRect(content, accessory->frame()));
        EXPECT_EQ(alert->suppressionButton()->window(), window);
        EXPECT_EQ(alert->suppressionButton()->state(), NSOffState);
    }
    TEST(Alert, AnAccessoryThatIsTakenAwayLeavesTheWindow)
    {
        const auto alert = legacy("m"_ns);
        const Ref<NSView> accessory = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 50, 30));
        alert->setAccessoryView(accessory.get());
        alert->window();
        alert->setAccessoryView(nullptr);
        EXPECT_EQ(accessory->window(), nullptr);
    }
    TEST(Alert, AMegabyteOfTextStaysOnTheScreen)
    {
        const auto alert = legacy("m"_ns);
        const Ref<NSString> line = stringFrom(std::string(1 << 20, 'w'));
        alert->setInformativeText(line.get());
        EXPECT_LT(alert->window()->frame().size.height, 500);
    }
    TEST(Alert, EveryStyleHasAnIconAndUnknownOnesToo)
    {
        const auto alert = make<NSAlert>();
        for (const NSUInteger style : { 0u, 1u, 2u, 77u }) {
            alert->setAlertStyle(static_cast<NSAlertStyle>(style));
            EXPECT_TRUE(alert->icon()->isValid());
        }
    }
    TEST(Alert, ItsOwnIconReplacesThatOfTheStyle)
    {
        const auto alert = make<NSAlert>();
        const Ref<NSImage> icon = alloc<NSImage>()->initWithSize({ 8, 8 });
        alert->setIcon(icon.get());
        EXPECT_EQ(alert->icon(), icon.get());
        alert->setIcon(nullptr);
        EXPECT_NE(alert->icon(), icon.get());
    }

    // ---- somebody in place of the person

    TEST(Alert, AScriptedPersonAnswersAtOnceWithoutAWindow)
    {
        Desk desk;
        std::string seen;
        scripted::answerAlerts([&](NSAlert* alert) -> NSInteger {
            seen = utf8(alert->messageText());
            return 42;
        });
        EXPECT_EQ(legacy("hello"_ns)->runModal(), 42);
        EXPECT_EQ(seen, "hello");
    }
    TEST(Alert, AScriptedPersonAnswersSheetsInALaterTurn)
    {
        Desk desk;
        scripted::answerAlerts([](NSAlert*) -> NSInteger { return 5; });
        legacy("m"_ns)->beginSheetModalForWindow_completionHandler(
            desk.host.get(), [&](NSModalResponse code) { desk.log += std::to_string(code); });
        EXPECT_EQ(desk.log, "");
        desk.screen.process();
        EXPECT_EQ(desk.log, "5");
        EXPECT_EQ(desk.host->attachedSheet(), nullptr);
    }

}

}
