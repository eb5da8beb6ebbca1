// SPDX-License-Identifier: Apache-2.0

// What a usual program makes before its first picture: a menubar of five menus, a label, a button, a switch and a table
// of a thousand rows. With --once it ends as soon as its window is on the screen; the measurements start it so.

#include <cstring>

#include "appkit/NSButton.h"
#include "appkit/NSMenu.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"
#include "appkit/NSTextField.h"
#include "controls/OnOffSwitchControl.h"
#include "foundation/Dispatch.h"
#include "menubar/BRCustomMenubar.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "runtime/Table.h"
#include "shell/BRApplication.h"

using namespace brindle;

namespace {

constexpr NSInteger kRows = 1000;
constexpr const char* kMenus[] = { "File", "Edit", "Format", "View", "Help" };
constexpr const char* kItems[]
    = { "New", "Open", "Close", "Save", "Duplicate", "Rename", "Share", "Export", "Print", "Quit" };

constinit bool isOnce = false;

/// The application's delegate makes the scene; it is the table's data source and its window's delegate, too.
class Startup : public NSObject {
    BRINDLE_OBJECT(Startup, NSObject)

    Ref<NSWindow> window_;
};

}

template <> struct Startup::Methods<struct Scene> {

    static void applicationDidFinishLaunching(Startup& self, NSNotification*)
    {
        makeMenubar();
        makeWindow(self);
    }

    static void makeMenubar()
    {
        const auto bar = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
        bar->load();
        for (const char* name : kMenus) {
            const auto title = NSString::cls().stringWithUTF8String(name);
            const auto menu = alloc<NSMenu>()->initWithTitle(title.get());
            for (const char* item : kItems)
                menu->addItemWithTitle_action_keyEquivalent(
                    NSString::cls().stringWithUTF8String(item).get(), selector<"terminate:">,
                    ""_ns);
            const auto button = make<BRCustomMenubarMenuButton>();
            button->setTitle(title.get());
            button->setMenu(menu.get());
            bar->addMenubarView(button.get());
        }
    }

    static void makeWindow(Startup& self)
    {
        self.window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 480, 360), NSTitledWindowMask | NSClosableWindowMask,
            NSBackingStoreBuffered, true);
        self.window_->setDelegate(&self);
        const auto content = self.window_->contentView();
        const auto label = NSTextField::cls().labelWithString("A thousand rows"_ns);
        label->setFrame(NSMakeRect(20, 322, 200, 20));
        content->addSubview(label.get());
        const auto button
            = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(280, 318, 100, 28)));
        button->setTitle("Reload"_ns);
        content->addSubview(button.get());
        content->addSubview(
            alloc<OnOffSwitchControl>()->initWithFrame(NSMakeRect(400, 322, 60, 20)).get());
        content->addSubview(makeTable(self).get());
        self.window_->makeKeyAndOrderFront(&self);
    }

    static Ref<NSScrollView> makeTable(Startup& self)
    {
        const NSRect frame = NSMakeRect(20, 20, 440, 280);
        const auto table = cast<NSTableView>(alloc<NSTableView>()->initWithFrame(frame));
        const auto column
            = cast<NSTableColumn>(alloc<NSTableColumn>()->initWithIdentifier("name"_ns));
        column->setTitle("Name"_ns);
        column->setWidth(420);
        table->addTableColumn(column.get());
        table->setDataSource(&self);
        const auto scroll = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(frame));
        scroll->setHasVerticalScroller(true);
        scroll->setDocumentView(table.get());
        return scroll;
    }

    static NSInteger numberOfRows(Startup&, NSTableView*) { return kRows; }
    static Ref<NSObject> value(Startup&, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return NSString::cls().stringWithFormat(
            "Row %ld of a thousand"_ns, static_cast<long>(row + 1));
    }

    static void windowDidExpose(Startup&, NSNotification*)
    {
        if (isOnce) // a later turn: this one still shows what was painted
            dispatch_async(dispatch_get_main_queue(),
                [] { NSApplication::cls().sharedApplication()->terminate(nullptr); });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "applicationDidFinishLaunching:", imp<applicationDidFinishLaunching> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
            { "windowDidExpose:", imp<windowDidExpose> },
        });
    }
};
BRINDLE_RECORD(Startup, Scene)

int main(int count, char** values)
{
    isOnce = count > 1 && !std::strcmp(values[1], "--once");
    const auto application = BRApplication::cls().sharedApplication();
    const auto startup = make<Startup>();
    application->setDelegate(startup.get());
    application->run();
}
