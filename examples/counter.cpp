// SPDX-License-Identifier: Apache-2.0

// An application with a controller: a window, a button with target and action, a menu that knows when its item makes sense.
// With --test it does to itself, on a screen in memory, what a user would do, and says what it saw.

#include <cstdio>
#include <cstring>

#include "appkit/HeadlessScreen.h"
#include "appkit/NSButton.h"
#include "appkit/NSMenu.h"
#include "appkit/NSTextField.h"
#include "menubar/BRCustomMenubar.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "runtime/Table.h"
#include "shell/BRApplication.h"

using namespace brindle;

namespace {

/// The application's delegate: it makes the window and counts.
class Counter : public NSObject {
    BRINDLE_OBJECT(Counter, NSObject)

public:
    NSInteger count() const { return send<"count", NSInteger>(); }
    Ref<NSWindow> window() const { return send<"window", Ref<NSWindow>>(); }

private:
    NSInteger count_ = 0;
    Ref<NSWindow> window_;
    Ref<NSTextField> label_;
};

}

template <> struct Counter::Methods<struct Counting> {

    static void applicationDidFinishLaunching(Counter& self, NSNotification*)
    {
        makeMenubar(self);
        makeWindow(self);
    }

    static void makeMenubar(Counter& self)
    {
        const auto bar = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
        bar->load();
        const auto menu = alloc<NSMenu>()->initWithTitle("Count"_ns);
        const auto reset = menu->addItemWithTitle_action_keyEquivalent(
            "Start Again"_ns, selector<"reset:">, "r"_ns);
        reset->setTarget(&self);
        menu->addItemWithTitle_action_keyEquivalent("Quit"_ns, selector<"terminate:">, "q"_ns);
        const auto button = make<BRCustomMenubarMenuButton>();
        button->setTitle("Count"_ns);
        button->setMenu(menu.get());
        bar->addMenubarView(button.get());
    }

    static void makeWindow(Counter& self)
    {
        self.window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 240, 100), NSTitledWindowMask | NSClosableWindowMask,
            NSBackingStoreBuffered, false);
        self.label_ = NSTextField::cls().labelWithString("0"_ns);
        self.label_->setFrame(NSMakeRect(20, 60, 200, 20));
        const auto button
            = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(20, 16, 100, 28)));
        button->setTitle("Count"_ns);
        button->setTarget(&self);
        button->setAction(selector<"increment:">);
        const auto content = self.window_->contentView();
        content->addSubview(self.label_.get());
        content->addSubview(button.get());
        self.window_->makeKeyAndOrderFront(&self);
    }

    static void increment(Counter& self, NSObject*) { show(self, self.count_ + 1); }
    static void reset(Counter& self, NSObject*) { show(self, 0); }
    static bool validateMenuItem(Counter& self, NSMenuItem* item)
    {
        return item->action() != selector<"reset:"> || self.count_ > 0;
    }

    static void show(Counter& self, NSInteger count)
    {
        self.count_ = count;
        self.label_->setIntegerValue(count);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&Counter::count_>("count", readonly, nonatomic),
            property<&Counter::window_>("window", readonly, nonatomic),
        });
        t.methods({
            { "applicationDidFinishLaunching:", imp<applicationDidFinishLaunching> },
            { "increment:", imp<increment> },
            { "reset:", imp<reset> },
            { "validateMenuItem:", imp<validateMenuItem> },
        });
    }
};
BRINDLE_RECORD(Counter, Counting)

namespace {

int testCounter(NSApplication& application, Counter& counter)
{
    headless::openScreen(800, 600, 1);
    application.finishLaunching();
    application.activateIgnoringOtherApps(true);
    application.processEvents();

    const auto place = counter.window()->convertRectToScreen(NSMakeRect(70, 30, 1, 1)).origin;
    headless::click(place, 1, 0);
    headless::click(place, 1, 0);
    application.processEvents();
    std::printf("after two clicks: %ld\n", static_cast<long>(counter.count()));

    headless::pressKey("r"_ns, NSCommandKeyMask);
    application.processEvents();
    std::printf("after Command-R: %ld\n", static_cast<long>(counter.count()));
    return 0;
}

}

int main(int count, char** values)
{
    const auto application = BRApplication::cls().sharedApplication();
    const auto counter = make<Counter>();
    application->setDelegate(counter.get());
    if (count > 1 && !std::strcmp(values[1], "--test"))
        return testCounter(*application, *counter);
    application->run();
}
