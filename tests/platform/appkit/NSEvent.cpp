// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSEvent.h"

#include <gtest/gtest.h>

#include "appkit/NSTrackingArea.h"
#include "appkit/NSWindow.h"
#include "runtime/NSException.h"

namespace brindle {

namespace {

    Ref<NSEvent> press(NSInteger window)
    {
        return NSEvent::cls()
            .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                NSLeftMouseDown, { 3, 4 }, NSCommandKeyMask, 1.5, window, nullptr, 7, 2, 0.5f);
    }
    Ref<NSEvent> key()
    {
        return NSEvent::cls()
            .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                NSKeyDown, {}, 0, 0, 0, nullptr, "A"_ns, "a"_ns, true, 38);
    }

}

TEST(NSEvent, AMouseEventKeepsWhatItWasMadeOf)
{
    const Ref<NSEvent> event = press(0);
    EXPECT_EQ(event->type(), NSLeftMouseDown);
    EXPECT_EQ(event->locationInWindow(), NSMakePoint(3, 4));
    EXPECT_EQ(event->modifierFlags(), NSCommandKeyMask);
    EXPECT_EQ(event->timestamp(), 1.5);
    EXPECT_EQ(event->eventNumber(), 7);
    EXPECT_EQ(event->clickCount(), 2);
    EXPECT_EQ(event->pressure(), 0.5f);
}

TEST(NSEvent, AMouseEventBelongsToTheWindowOfItsNumber)
{
    const Ref<NSWindow> window = cast<NSWindow>(alloc<NSWindow>()->init());
    EXPECT_EQ(press(window->windowNumber())->window(), window.get());
    EXPECT_EQ(press(0)->window(), nullptr);
}

TEST(NSEvent, AKeyEventHasNoEventNumber)
{
    try {
        key()->eventNumber();
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(utf8Of(e->name().get()), "NSInternalInconsistencyException");
    }
}

TEST(NSEvent, AMouseEventHasNoCharacters) { EXPECT_THROW(press(0)->characters(), Exception); }

TEST(NSEvent, AKeyEventKeepsItsText)
{
    EXPECT_EQ(utf8Of(key()->characters().get()), "A");
    EXPECT_EQ(utf8Of(key()->charactersIgnoringModifiers().get()), "a");
    EXPECT_TRUE(key()->isARepeat());
    EXPECT_EQ(key()->keyCode(), 38);
}

TEST(NSEvent, AKeyTypeIsNoMouseEvent)
{
    EXPECT_THROW(
        NSEvent::cls()
            .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                NSKeyDown, {}, 0, 0, 0, nullptr, 0, 0, 0),
        Exception);
}

TEST(NSEvent, ATrackingAreaNeedsExactlyOneActiveOption)
{
    const auto area = [](NSTrackingAreaOptions options) {
        return alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
            {}, options, nullptr, nullptr);
    };
    EXPECT_NO_THROW(area(0x41));
    EXPECT_THROW(area(0x01), Exception);
    EXPECT_THROW(area(0xC1), Exception);
    EXPECT_THROW(area(0x80), Exception);
}

}
