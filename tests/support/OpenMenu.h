// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "appkit/NSMenu.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSTimer.h"
#include "support/ActionLog.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Does one thing after another while pointers are tracked, each some time after the one before.
class MenuScript {
public:
    explicit MenuScript(HeadlessScreen& screen)
        : screen_(screen)
    {
    }
    ~MenuScript()
    {
        for (const Ref<NSTimer>& timer : timers_)
            timer->invalidate();
    }
    MenuScript(const MenuScript&) = delete;
    MenuScript& operator=(const MenuScript&) = delete;

    MenuScript& then(std::function<void()> step, double seconds = 0.05)
    {
        due_ += seconds;
        timers_.push_back(NSTimer::cls().timerWithTimeInterval_repeats_block(
            due_, false, [step = std::move(step)](NSTimer*) { step(); }));
        NSRunLoop::cls().mainRunLoop()->addTimer_forMode(
            timers_.back().get(), NSEventTrackingRunLoopMode);
        return *this;
    }
    MenuScript& wait(double seconds)
    {
        due_ += seconds;
        return *this;
    }
    MenuScript& move(NSPoint place)
    {
        return then([this, place] { screen_.display().movePointer(place); });
    }
    MenuScript& press(NSPoint place, int button = 0)
    {
        return then([this, place, button] {
            screen_.display().movePointer(place);
            screen_.display().pressButton(button);
        });
    }
    MenuScript& release(int button = 0)
    {
        return then([this, button] { screen_.display().releaseButton(button); });
    }
    MenuScript& click(NSPoint place) { return press(place).release(); }
    MenuScript& scroll(double y)
    {
        return then([this, y] { screen_.display().scroll(0, y); });
    }
    MenuScript& key(char16_t character, NSEventModifierFlags modifiers = 0)
    {
        return then([this, character, modifiers] {
            display::ScriptedKey key;
            key.characters = std::u16string(1, character);
            key.modifiers = modifiers;
            screen_.display().pressKey(key);
            screen_.display().releaseKey(key);
        });
    }
    MenuScript& type(std::u16string_view text)
    {
        for (const char16_t letter : text)
            key(letter);
        return *this;
    }

private:
    HeadlessScreen& screen_;
    std::vector<Ref<NSTimer>> timers_;
    double due_ = 0;
};

/// Answers the windows of the menus that are open, the deepest first.
inline std::vector<Ref<NSWindow>> menuWindows()
{
    std::vector<Ref<NSWindow>> found;
    for (NSWindow* window :
        each<NSWindow>(NSApplication::cls().sharedApplication()->orderedWindows())) {
        if (window->level() >= NSPopUpMenuWindowLevel)
            found.emplace_back(window);
    }
    return found;
}

/// Answers the rectangle of an open menu on the screen, without its shadow.
inline NSRect menuFrame(std::size_t level)
{
    constexpr CGFloat kShadowRoom = 14;
    const std::vector<Ref<NSWindow>> windows = menuWindows();
    if (level >= windows.size())
        return NSZeroRect;
    return NSInsetRect(windows[windows.size() - 1 - level]->frame(), kShadowRoom, kShadowRoom);
}

/// Answers the titles of the items that are highlighted from the root down, as "File > Open".
inline std::string highlighted(NSMenu& root)
{
    std::string path;
    for (Ref<NSMenuItem> item = root.highlightedItem(); item;) {
        path += (path.empty() ? "" : " > ") + utf8(item->title());
        const Ref<NSMenu> submenu = item->submenu();
        item = maybe(submenu)->highlightedItem();
    }
    return path;
}

/// A screen of 800 by 600 points, and a menu of five items whose actions are counted: "One", "Two" (disabled), a
/// separator, "More" with "Inner" and "Outer", "Last". Rows are 22 points high.
struct MenuDesk {
    MenuDesk()
    {
        menu->setAutoenablesItems(false);
        submenu->setAutoenablesItems(false);
        one = add(*menu, "One"_ns);
        two = add(*menu, "Two"_ns);
        two->setEnabled(false);
        menu->addItem(NSMenuItem::cls().separatorItem().get());
        more = add(*menu, "More"_ns);
        last = add(*menu, "Last"_ns);
        inner = add(*submenu, "Inner"_ns);
        outer = add(*submenu, "Outer"_ns);
        more->setSubmenu(submenu.get());
    }

    Ref<NSMenuItem> add(NSMenu& into, NSString* title, NSString* key = nullptr)
    {
        Ref<NSMenuItem> item
            = into.addItemWithTitle_action_keyEquivalent(title, selector<"act:">, key);
        item->setTarget(log.get());
        return item;
    }
    /// Answers the middle of a row of the menu while its top left corner is where `open` puts it.
    NSPoint middleOf(NSInteger row, CGFloat x = 30) const
    {
        CGFloat y = corner.y - 5;
        for (NSInteger i = 0; i < row; ++i)
            y -= menu->itemAtIndex(i)->isSeparatorItem() ? 11 : rowHeight();
        return { corner.x + x, y - rowHeight() / 2 };
    }
    CGFloat rowHeight() const { return rowHeight_; }
    /// Shows a window that has the keyboard.
    Ref<NSWindow> showKeyWindow()
    {
        Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 300, 100), NSTitledWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->makeKeyAndOrderFront(nullptr);
        screen.process();
        return window;
    }
    /// Opens the menu without an event, runs the script in it and answers whether something was chosen.
    bool open()
    {
        return menu->popUpMenuPositioningItem_atLocation_inView(nullptr, corner, nullptr);
    }
    /// Answers the title of the item whose action came last.
    std::string chosen() const
    {
        return log->sender_ ? utf8(cast<NSMenuItem>(log->sender_.get())->title()) : "";
    }

    HeadlessScreen screen { 800, 600 };
    MenuScript script { screen };
    Ref<ActionLog> log = make<ActionLog>();
    Ref<NSMenu> menu = make<NSMenu>();
    Ref<NSMenu> submenu = make<NSMenu>();
    Ref<NSMenuItem> one;
    Ref<NSMenuItem> two;
    Ref<NSMenuItem> more;
    Ref<NSMenuItem> last;
    Ref<NSMenuItem> inner;
    Ref<NSMenuItem> outer;
    NSPoint corner { 100, 500 };

private:
    static CGFloat measuredRow()
    {
        const Ref<NSMenu> empty = make<NSMenu>();
        const CGFloat rim = empty->size().height;
        empty->addItemWithTitle_action_keyEquivalent("A"_ns, SEL {}, nullptr);
        return empty->size().height - rim;
    }
    CGFloat rowHeight_ = measuredRow();
};

}
