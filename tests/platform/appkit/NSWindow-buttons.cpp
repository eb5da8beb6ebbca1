// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "support/HeadlessScreen.h"

namespace brindle {

namespace {

    Ref<NSWindow> makeWindow(NSWindowStyleMask style)
    {
        Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(20, 20, 200, 100), style, NSBackingStoreBuffered, true);
        window->orderFrontRegardless();
        return window;
    }

}

TEST(NSWindowButtons, AStandardButtonIsNewAndDisabled)
{
    const Ref<NSButton> button = NSWindow::cls().standardWindowButton_forStyleMask(
        NSWindowCloseButton, NSTitledWindowMask);
    ASSERT_TRUE(button->isKindOfClass(NSButton::cls()));
    EXPECT_FALSE(button->isEnabled());
    EXPECT_EQ(button->frame().size.width, 14);
    EXPECT_EQ(button->frame().size.height, 16);
    EXPECT_EQ(NSWindow::cls().standardWindowButton_forStyleMask(
                  NSWindowToolbarButton, NSTitledWindowMask),
        nullptr);
}

TEST(NSWindowButtons, ItClosesAWindowWithoutATitleBar)
{
    HeadlessScreen screen { 300, 200 };
    const Ref<NSWindow> window = makeWindow(NSBorderlessWindowMask);
    const Ref<NSButton> button = NSWindow::cls().standardWindowButton_forStyleMask(
        NSWindowCloseButton, NSTitledWindowMask);
    button->setEnabled(true);
    window->contentView()->addSubview(button.get());
    screen.process();
    screen.pointer().click({ 27, 28 });
    EXPECT_FALSE(window->isVisible());
}

TEST(NSWindowButtons, ADisabledOneDoesNothing)
{
    HeadlessScreen screen { 300, 200 };
    const Ref<NSWindow> window = makeWindow(NSBorderlessWindowMask);
    const Ref<NSButton> button = NSWindow::cls().standardWindowButton_forStyleMask(
        NSWindowCloseButton, NSTitledWindowMask);
    window->contentView()->addSubview(button.get());
    screen.process();
    screen.pointer().click({ 27, 28 });
    EXPECT_TRUE(window->isVisible());
    window->close();
}

TEST(NSWindowButtons, TheFramesOwnFollowTheStyle)
{
    const HeadlessScreen screen { 300, 200 };
    const Ref<NSWindow> window = makeWindow(NSTitledWindowMask | NSClosableWindowMask);
    EXPECT_TRUE(window->standardWindowButton(NSWindowCloseButton)->isEnabled());
    EXPECT_FALSE(window->standardWindowButton(NSWindowZoomButton)->isEnabled());
    window->setStyleMask(NSTitledWindowMask | NSResizableWindowMask);
    EXPECT_TRUE(window->standardWindowButton(NSWindowZoomButton)->isEnabled());
    EXPECT_FALSE(window->standardWindowButton(NSWindowCloseButton)->isEnabled());
    window->close();
}

TEST(NSWindowButtons, ABorderlessFrameHasNone)
{
    const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(0, 0, 50, 50), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
    EXPECT_EQ(window->standardWindowButton(NSWindowCloseButton), nullptr);
}

}
