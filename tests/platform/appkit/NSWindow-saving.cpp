// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    constexpr NSWindowStyleMask kFixed = NSTitledWindowMask;
    constexpr NSWindowStyleMask kResizable = NSTitledWindowMask | NSResizableWindowMask;

    struct SavedFrames : testing::Test {
        test::DefaultsFolder folder;
        HeadlessScreen screen { 800, 600 };

        static Ref<NSWindow> windowAt(NSRect frame, NSWindowStyleMask style = kResizable)
        {
            Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                {}, style, NSBackingStoreBuffered, true);
            window->setFrame_display(frame, false);
            return window;
        }
    };

    TEST_F(SavedFrames, AFrameComesBackUnderItsName)
    {
        windowAt(NSMakeRect(10.5, 20, 300, 200))->saveFrameUsingName("main"_ns);
        const Ref<NSWindow> other = windowAt(NSMakeRect(0, 0, 100, 100));
        EXPECT_TRUE(other->setFrameUsingName("main"_ns));
        EXPECT_EQ(other->frame(), NSMakeRect(10.5, 20, 300, 200));
    }

    TEST_F(SavedFrames, AnUnknownNameChangesNothing)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(1, 2, 100, 100));
        for (NSString* name : { static_cast<NSString*>("nothing"_ns), static_cast<NSString*>(""_ns),
                 static_cast<NSString*>(nullptr) })
            EXPECT_FALSE(window->setFrameUsingName(name));
        EXPECT_EQ(window->frame(), NSMakeRect(1, 2, 100, 100));
    }

    TEST_F(SavedFrames, AWindowOfFixedSizeTakesOnlyThePlaceOfTheTop)
    {
        windowAt(NSMakeRect(10, 20, 300, 200))->saveFrameUsingName("main"_ns);
        const Ref<NSWindow> fixed = windowAt(NSMakeRect(0, 0, 100, 100), kFixed);
        fixed->setFrameUsingName("main"_ns);
        EXPECT_EQ(fixed->frame(), NSMakeRect(10, 120, 100, 100));
        fixed->setFrameUsingName_force("main"_ns, true);
        EXPECT_EQ(fixed->frame(), NSMakeRect(10, 20, 300, 200));
    }

    TEST_F(SavedFrames, ARemovedNameIsUnknown)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(10, 20, 300, 200));
        window->saveFrameUsingName("main"_ns);
        NSWindow::cls().removeFrameUsingName("main"_ns);
        EXPECT_FALSE(window->setFrameUsingName("main"_ns));
    }

    TEST_F(SavedFrames, WithAnAutosaveNameEveryChangeIsSaved)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(10, 20, 300, 200));
        EXPECT_TRUE(window->setFrameAutosaveName("main"_ns));
        EXPECT_EQ(utf8Of(window->frameAutosaveName().get()), "main");
        window->setFrameOrigin({ 40, 50 });
        const Ref<NSWindow> other = windowAt(NSMakeRect(0, 0, 100, 100));
        other->setFrameUsingName("main"_ns);
        EXPECT_EQ(other->frame(), NSMakeRect(40, 50, 300, 200));
    }

    TEST_F(SavedFrames, AnAutosaveNameBringsTheFrameOfTheLastRun)
    {
        windowAt(NSMakeRect(10, 20, 300, 200))->saveFrameUsingName("main"_ns);
        folder.restart();
        const Ref<NSWindow> window = windowAt(NSMakeRect(0, 0, 100, 100));
        window->setFrameAutosaveName("main"_ns);
        EXPECT_EQ(window->frame(), NSMakeRect(10, 20, 300, 200));
    }

    TEST_F(SavedFrames, ANameBelongsToOneWindow)
    {
        const Ref<NSWindow> first = windowAt(NSMakeRect(10, 20, 300, 200));
        const Ref<NSWindow> second = windowAt(NSMakeRect(10, 20, 300, 200));
        EXPECT_TRUE(first->setFrameAutosaveName("main"_ns));
        EXPECT_TRUE(first->setFrameAutosaveName("main"_ns));
        EXPECT_FALSE(second->setFrameAutosaveName("main"_ns));
        EXPECT_EQ(utf8Of(second->frameAutosaveName().get()), "");
        EXPECT_TRUE(first->setFrameAutosaveName(nullptr));
        EXPECT_TRUE(second->setFrameAutosaveName("main"_ns));
    }

    TEST_F(SavedFrames, TheTextHasTheFrameAndTheScreen)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(10.5, 20, 300, 200));
        EXPECT_EQ(utf8Of(window->stringWithSavedFrame().get()), "10.5 20 300 200 0 0 800 600 ");
    }

    TEST_F(SavedFrames, TextsThatAreNoFramesChangeNothing)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(1, 2, 100, 100));
        for (const char* text : { "", "1 2 3", "1 2 nan 4", "1 2 inf 4", "1 2 -3 4", "1e99 2 3 4",
                 "one two three four", "1,2,3,4" })
            window->setFrameFromString(NSString::cls().stringWithUTF8String(text).get());
        window->setFrameFromString(nullptr);
        EXPECT_EQ(window->frame(), NSMakeRect(1, 2, 100, 100));
    }

    TEST_F(SavedFrames, TheLimitsOfTheWindowHold)
    {
        const Ref<NSWindow> window = windowAt(NSMakeRect(1, 2, 100, 100));
        window->setMinSize({ 150, 160 });
        window->setMaxSize({ 400, 200 });
        window->setFrameFromString("0 0 50 500 "_ns);
        EXPECT_EQ(window->frame().size, NSMakeSize(150, 200));
    }

}
}
