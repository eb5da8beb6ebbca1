// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include "appkit/NSApplication.h"
#include "appkit/NSMenu.h"
#include "appkit/NSWindow.h"
#include "display/headless/HeadlessDisplay.h"
#include "foundation/NSArray.h"
#include "support/Measure.h"
#include "support/Topics.h"

// Menus on the display in memory: from the press to the first picture, and the way of a key to its item.

namespace brindle::bench {

namespace {

    Ref<NSMenu> menuOf(int count, const std::string& name)
    {
        Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        for (int i = 0; i < count; ++i)
            menu->addItemWithTitle_action_keyEquivalent(
                stringFrom(name + std::to_string(i)).get(), selector<"terminate:">, nullptr);
        return menu;
    }

    /// Opens a menu, lets it be drawn and shown, and closes it again: nothing is left that could come.
    void openAndClose(NSMenu& menu)
    {
        menu.popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 700 }, nullptr);
    }

    void useMemory()
    {
        static const bool once = [] {
            installDisplay(std::make_unique<display::HeadlessDisplay>());
            NSApplication::cls().sharedApplication();
            return true;
        }();
        keep(once);
    }

    /// A bare window of the same size: what shows nothing and follows nobody.
    void showWindow(NSSize size)
    {
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            { { 100, 100 }, size }, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->orderFrontRegardless();
        window->orderOut(nullptr);
    }

    Pair opening(int count)
    {
        useMemory();
        const auto menu = menuOf(count, "An item of this menu, number ");
        const NSSize size { menu->size().width, std::min(menu->size().height, 700.0) };
        return { repeated([menu](std::size_t) { openAndClose(*menu); }),
            repeated([size](std::size_t) { showWindow(size); }) };
    }

    /// 50 menus of 100 items each, every twentieth with a key.
    Pair keys(bool hit)
    {
        const auto root = make<NSMenu>();
        root->setAutoenablesItems(false);
        for (int m = 0; m < 50; ++m) {
            const auto menu = menuOf(100, "Item ");
            for (int i = 0; i < 100; i += 20)
                menu->itemAtIndex(i)->setKeyEquivalent(
                    "abcde"_ns->substringWithRange(NSMakeRange(static_cast<NSUInteger>(i / 20), 1))
                        .get());
            const auto item = root->addItemWithTitle_action_keyEquivalent("M"_ns, SEL {}, nullptr);
            item->setSubmenu(menu.get());
        }
        const auto last = root->itemAtIndex(49)->submenu()->itemAtIndex(99);
        last->setKeyEquivalent("z"_ns);
        last->setAction(selector<"submenuAction:">);
        last->setTarget(root.get());
        const auto text = hit ? "z"_ns : "y"_ns;
        const auto event
            = NSEvent::cls()
                  .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                      NSKeyDown, {}, NSCommandKeyMask, 0, 0, nullptr, text, text, false, 0);
        return { repeated(
                     [root, event](std::size_t) { keep(root->performKeyEquivalent(event.get())); }),
            {} };
    }

}

void addMenus(Plan& plan)
{
    plan.time("menu: open and close, 10 items", kNoBudget, [] { return opening(10); });
    plan.time("menu: open and close, 20 items", atMost(800e3), [] { return opening(20); });
    plan.time("menu: open and close, 100 items", kNoBudget, [] { return opening(100); });
    plan.time("menu: open and close, 10,000 items", kNoBudget, [] { return opening(10000); });
    plan.time("menu: key of the last of 5,000 items", atMost(20e3), [] { return keys(true); });
    plan.time("menu: key that nothing waits for", atMost(20e3), [] { return keys(false); });
}

}
