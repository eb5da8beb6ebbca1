// SPDX-License-Identifier: Apache-2.0
#include "appkit/HeadlessScreen.h"

#include <gtest/gtest.h>

#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    TEST(HeadlessHands, ThatDoAnythingDoItAtOnceAndLetGo)
    {
        HeadlessScreen screen;
        const auto field = screen.add<NSTextField>(NSMakeRect(0, 0, 400, 300));
        headless::doAnything(5, 300);
        EXPECT_GT(field->stringValue()->length(), 0u) << "somebody typed";
        EXPECT_EQ(screen.display().modifiers(), 0u);
        EXPECT_TRUE(screen.window().isVisible());
    }
    TEST(HeadlessHands, DoNothingWithoutAScreen)
    {
        NSApplication::cls().sharedApplication();
        installDisplay(nullptr);
        headless::doAnything(5, 300);
        EXPECT_FALSE(headless::isScreenOpen());
    }

}
}
