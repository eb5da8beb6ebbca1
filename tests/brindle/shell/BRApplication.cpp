// SPDX-License-Identifier: Apache-2.0
#include "shell/BRApplication.h"
#include "foundation/NSArray.h"
#include "menubar/BRCustomMenubar.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

#include <gtest/gtest.h>

namespace brindle {

/// Notes the keys it is asked about, and takes them when told to.
class AskedBar : public BRCustomMenubar {
    BRINDLE_OBJECT(AskedBar, BRCustomMenubar)
public:
    std::u16string asked_;
    bool takes_ = false;
};
template <> struct AskedBar::Methods<struct Keys> {
    static bool performKeyEquivalent(AskedBar& self, NSEvent* event)
    {
        self.asked_ += event->characters()->characterAtIndex(0);
        return self.takes_;
    }
    static void table(Builder& t)
    {
        t.methods({ { "performKeyEquivalent:", imp<performKeyEquivalent> } });
    }
};
BRINDLE_RECORD(AskedBar, Keys)

/// Notes the keys that reach it.
class KeyLogView : public NSView {
    BRINDLE_OBJECT(KeyLogView, NSView)
public:
    std::u16string keys_;
    int presses_ = 0;
};
template <> struct KeyLogView::Methods<struct Keys> {
    static bool acceptsFirstResponder(KeyLogView&) { return true; }
    static void keyDown(KeyLogView& self, NSEvent* event)
    {
        self.keys_ += event->characters()->characterAtIndex(0);
    }
    static void mouseDown(KeyLogView& self, NSEvent*) { ++self.presses_; }
    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(KeyLogView, Keys)

namespace {

    struct ApplicationUnderBar : ::testing::Test {
        ApplicationUnderBar()
        {
            screen.window().makeKeyAndOrderFront(nullptr);
            screen.window().makeFirstResponder(view.get());
        }
        void sendKey(NSEventType type, NSString* text, NSEventModifierFlags flags)
        {
            const Ref<NSEvent> event
                = NSEvent::cls()
                      .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                          type, {}, flags, 0, screen.window().windowNumber(), nullptr, text, text,
                          false, 0);
            application->sendEvent(event.get());
        }

        HeadlessScreen screen;
        Ref<KeyLogView> view = screen.add<KeyLogView>(NSMakeRect(0, 0, 400, 300));
        Ref<AskedBar> bar = make<AskedBar>();
        Ref<BRApplication> application = make<BRApplication>();
    };

    TEST_F(ApplicationUnderBar, OffersCommandKeysToTheSharedBar)
    {
        sendKey(NSKeyDown, "s"_ns, NSCommandKeyMask);
        EXPECT_EQ(bar->asked_, u"s");
    }
    TEST_F(ApplicationUnderBar, ConsumesWhatTheBarTakes)
    {
        bar->takes_ = true;
        sendKey(NSKeyDown, "s"_ns, NSCommandKeyMask);
        EXPECT_EQ(view->keys_, u"");
    }
    TEST_F(ApplicationUnderBar, HandsOnWhatTheBarDoesNotTake)
    {
        sendKey(NSKeyDown, "s"_ns, NSCommandKeyMask);
        EXPECT_EQ(view->keys_, u"s");
    }
    TEST_F(ApplicationUnderBar, DoesNotAskAboutPlainKeys)
    {
        bar->takes_ = true;
        sendKey(NSKeyDown, "a"_ns, 0);
        sendKey(NSKeyDown, "b"_ns, NSShiftKeyMask | NSAlternateKeyMask | NSControlKeyMask);
        EXPECT_EQ(bar->asked_, u"");
        EXPECT_EQ(view->keys_, u"ab");
    }
    TEST_F(ApplicationUnderBar, DoesNotAskWhenAKeyIsLetGo)
    {
        sendKey(NSKeyUp, "s"_ns, NSCommandKeyMask);
        EXPECT_EQ(bar->asked_, u"");
    }
    TEST_F(ApplicationUnderBar, HandsOnOtherEvents)
    {
        bar->takes_ = true;
        const Ref<NSEvent> press
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      NSLeftMouseDown, { 20, 20 }, NSCommandKeyMask, 0,
                      screen.window().windowNumber(), nullptr, 1, 1, 1);
        application->sendEvent(press.get());
        EXPECT_EQ(view->presses_, 1);
    }
    TEST_F(ApplicationUnderBar, IgnoresAMissingEvent)
    {
        application->sendEvent(nullptr);
        EXPECT_EQ(bar->asked_, u"");
    }
    TEST_F(ApplicationUnderBar, ShowsNoBarByAskingIt)
    {
        sendKey(NSKeyDown, "s"_ns, NSCommandKeyMask);
        EXPECT_FALSE(bar->isVisible());
        EXPECT_FALSE(screen.application().windows()->containsObject(bar.get()));
    }

}
}
