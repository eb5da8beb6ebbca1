// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSMenuPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/application/KeyEquivalentPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

void MenuAccess::populate(NSMenu& menu)
{
    const Ref<NSMenu> alive(&menu);
    const Ref<NSObject> delegate = menu.delegate();
    if (!delegate)
        return;
    if (delegate->respondsToSelector(selector<"menuNeedsUpdate:">))
        return delegate->send<"menuNeedsUpdate:">(&menu);
    if (!delegate->respondsToSelector(selector<"numberOfItemsInMenu:">))
        return;
    constexpr NSInteger kMost = 1'000'000; // what a broken count may cost
    const NSInteger wanted
        = std::min(delegate->send<"numberOfItemsInMenu:", NSInteger>(&menu), kMost);
    if (wanted < 0)
        return;
    while (menu.numberOfItems() > wanted)
        menu.removeItemAtIndex(menu.numberOfItems() - 1);
    while (menu.numberOfItems() < wanted)
        menu.addItem(make<NSMenuItem>().get());
    constexpr SEL kUpdate = selector<"menu:updateItem:atIndex:shouldCancel:">;
    if (!delegate->respondsToSelector(kUpdate))
        return;
    for (NSInteger i = 0; i < wanted && i < menu.numberOfItems(); ++i) {
        const Ref<NSMenuItem> item = menu.itemAtIndex(i);
        if (!delegate->send<"menu:updateItem:atIndex:shouldCancel:", bool>(
                &menu, item.get(), i, false))
            return;
    }
}

void MenuAccess::perform(NSMenuItem& item)
{
    const Ref<NSMenuItem> alive(&item);
    const SEL action = item.action();
    if (!action || MenuItemAccess::targetIsGone(item))
        return;
    const Ref<NSMenu> menu = item.menu();
    const Ref<NSMenu> top = menu ? root(*menu) : nullptr;
    if (top)
        post(NSMenuWillSendActionNotification, *top, &item);
    NSApplication::cls().sharedApplication()->sendAction_to_from(
        action, item.target().get(), &item);
    if (top)
        post(NSMenuDidSendActionNotification, *top, &item);
}

template <> struct NSMenu::Methods<struct Updating> {

    // ---- enabling

    /// Finds who would perform an action; menus tend to have runs of items with one target and action.
    class Targets {
    public:
        NSObject* find(NSMenuItem& item, NSObject* target, SEL action)
        {
            if (known_ && target == target_ && action == action_)
                return found_.get();
            known_ = true;
            target_ = target;
            action_ = action;
            found_ = NSApplication::cls().sharedApplication()->targetForAction_to_from(
                action, target, &item);
            if (found_ && !found_->respondsToSelector(action))
                found_ = nullptr;
            return found_.get();
        }

    private:
        Ref<NSObject> target_;
        Ref<NSObject> found_;
        SEL action_ {};
        bool known_ = false;
    };

    static bool mayBeChosen(NSMenuItem& item, Targets& targets)
    {
        if (MenuItemAccess::submenu(item) && item.action() == selector<"submenuAction:">)
            return true;
        const SEL action = item.action();
        if (!action || MenuItemAccess::isSeparator(item) || MenuItemAccess::targetIsGone(item))
            return false;
        const Ref<NSObject> found(targets.find(item, item.target().get(), action));
        if (!found)
            return false;
        if (found->respondsToSelector(selector<"validateMenuItem:">))
            return found->send<"validateMenuItem:", bool>(&item);
        if (found->respondsToSelector(selector<"validateUserInterfaceItem:">))
            return found->send<"validateUserInterfaceItem:", bool>(&item);
        return true;
    }
    static void update(NSMenu& self)
    {
        if (!self.autoenables_)
            return;
        const Ref<NSMenu> alive(&self);
        const std::vector<Ref<NSMenuItem>> items = self.items_;
        Targets targets;
        for (const Ref<NSMenuItem>& item : items) {
            if (MenuItemAccess::menu(*item) != &self)
                continue; // whoever was asked has taken it away
            const bool may = mayBeChosen(*item, targets);
            if (may != item->isEnabled())
                item->setEnabled(may);
        }
    }

    // ---- keys

    /// The items of one menu that may be meant by a press, and the submenus, in the order of the items.
    static std::vector<std::size_t> candidates(NSMenu& self, NSEvent& press, bool& hasKey)
    {
        const MenuKeys& keys = MenuAccess::keys(self);
        std::vector<std::size_t> places = keys.submenus;
        const unichar typed = foldedKey(press.charactersIgnoringModifiers().get());
        const unichar latin = foldedKey(press.latinCharacters().get());
        for (const unichar key : { typed, latin == typed ? unichar {} : latin }) {
            auto found = std::lower_bound(
                keys.keys.begin(), keys.keys.end(), std::pair { key, std::size_t { 0 } });
            for (; key && found != keys.keys.end() && found->first == key; ++found) {
                places.push_back(found->second);
                hasKey = true;
            }
        }
        std::sort(places.begin(), places.end());
        return places;
    }
    static bool waitsFor(NSMenuItem& item, NSEvent& press)
    {
        return item.isEnabled() && (!item.isHidden() || item.allowsKeyEquivalentWhenHidden())
            && matchesKeyEquivalent(
                press, item.keyEquivalent().get(), item.keyEquivalentModifierMask());
    }
    /// Lets the delegate answer in the menu's place. - Returns: whether it did.
    static bool delegateKnows(NSMenu& self, NSEvent& press, bool& performed)
    {
        constexpr SEL kAsks = selector<"menuHasKeyEquivalent:forEvent:target:action:">;
        const Ref<NSObject> delegate = self.delegate();
        if (!delegate || !delegate->respondsToSelector(kAsks))
            return false;
        Ref<NSObject> target;
        SEL action {};
        performed = delegate->send<"menuHasKeyEquivalent:forEvent:target:action:", bool>(
            &self, &press, &target, &action);
        if (performed && action)
            NSApplication::cls().sharedApplication()->sendAction_to_from(
                action, target.get(), &self);
        return true;
    }
    /// Answers whether the delegate performed it; else the item, or nil.
    static bool find(NSMenu& self, NSEvent& press, Ref<NSMenuItem>& found)
    {
        const Ref<NSMenu> alive(&self);
        bool performed = false;
        if (delegateKnows(self, press, performed))
            return performed;
        MenuAccess::populate(self);
        bool hasKey = false;
        std::vector<std::size_t> places = candidates(self, press, hasKey);
        if (hasKey) {
            self.update();
            places = candidates(self, press, hasKey); // it may have changed the items
        }
        for (const std::size_t place : places) {
            if (place >= self.items_.size())
                continue;
            const Ref<NSMenuItem> item = self.items_[place];
            const Ref<NSMenu> submenu = MenuItemAccess::submenu(*item);
            if (submenu && item->isEnabled() && !item->isHidden()) {
                if (find(*submenu, press, found) || found)
                    return found == nullptr;
            } else if (!submenu && waitsFor(*item, press)) {
                found = item;
                return false;
            }
        }
        return false;
    }

    static bool performKeyEquivalent(NSMenu& self, NSEvent* press)
    {
        if (!press || press->type() != NSKeyDown)
            return false;
        const Ref<NSEvent> alive(press);
        Ref<NSMenuItem> item;
        if (find(self, *press, item))
            return true;
        if (!item)
            return false;
        MenuAccess::perform(*item);
        return true;
    }
    static void performActionAt(NSMenu& self, NSInteger index)
    {
        const Ref<NSMenuItem> item = self.itemAtIndex(index);
        if (item->isEnabled())
            MenuAccess::perform(*item);
    }
    static void submenuAction(NSMenu&, NSObject*) { }

    static void table(Builder& t)
    {
        t.methods({
            { "update", imp<update> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "performActionForItemAtIndex:", imp<performActionAt> },
            { "submenuAction:", imp<submenuAction> },
        });
    }
};
BRINDLE_RECORD(NSMenu, Updating)

Ref<NSMenuItem> MenuAccess::itemForKey(NSMenu& menu, NSEvent& press)
{
    Ref<NSMenuItem> item;
    NSMenu::Methods<struct Updating>::find(menu, press, item);
    return item;
}

}
