// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenu.h"
#include "menubar/BRCustomMenubar.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "shell/BRApplication.h"

using namespace brindle;

int main()
{
    const auto application = BRApplication::cls().sharedApplication();
    const auto bar = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
    bar->load();

    const auto menu = alloc<NSMenu>()->initWithTitle("File"_ns);
    menu->addItemWithTitle_action_keyEquivalent("Quit"_ns, selector<"terminate:">, "q"_ns);
    const auto button = make<BRCustomMenubarMenuButton>();
    button->setTitle("File"_ns);
    button->setMenu(menu.get());
    bar->addMenubarView(button.get());

    const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(0, 0, 320, 180), NSTitledWindowMask, NSBackingStoreBuffered, false);
    window->center();
    window->makeKeyAndOrderFront(nullptr);
    application->run();
}
