// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenu.h"

#include <algorithm>
#include <functional>

#include "MenuSessionPrivate.h"
#include "NSMenuPrivate.h"
#include "appkit/application/KeyEquivalentPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

NSMenu::~NSMenu()
{
    for (const Ref<NSMenuItem>& item : items_)
        MenuItemAccess::menu(*item) = nullptr;
}

Ref<NSMenu> MenuAccess::root(NSMenu& menu)
{
    NSMenu* found = &menu;
    while (NSMenu* const above = supermenu(*found))
        found = above;
    return found;
}

NSInteger MenuAccess::indexOf(const NSMenu& menu, const NSMenuItem* item)
{
    const auto found = std::find(menu.items_.begin(), menu.items_.end(), item);
    return found == menu.items_.end() ? -1 : found - menu.items_.begin();
}

void MenuAccess::refuseCycle(const NSMenu& menu, const NSMenu& submenu, const char* operation)
{
    for (const NSMenu* above = &menu; above; above = supermenu(*above)) {
        if (above == &submenu)
            raise("NSInvalidArgumentException",
                std::string("*** -[") + operation + "]: the menu would contain itself");
    }
}

const MenuKeys& MenuAccess::keys(NSMenu& menu)
{
    if (menu.keys_)
        return *menu.keys_;
    auto made = std::make_shared<MenuKeys>();
    for (std::size_t i = 0; i < menu.items_.size(); ++i) {
        const NSMenuItem& item = *menu.items_[i];
        if (const Ref<NSString>& key = MenuItemAccess::key(item); key && key->length())
            made->keys.emplace_back(foldedKey(key.get()), i);
        if (MenuItemAccess::submenu(item))
            made->submenus.push_back(i);
    }
    std::sort(made->keys.begin(), made->keys.end());
    menu.keys_ = std::move(made);
    return *menu.keys_;
}

void MenuAccess::post(NSString* name, NSMenu& menu, NSObject* item)
{
    const Ref<NSDictionary> info
        = item ? NSDictionary::cls().dictionaryWithObject_forKey(item, "MenuItem"_ns) : nullptr;
    NSNotificationCenter::cls().defaultCenter()->postNotificationName_object_userInfo(
        name, &menu, info.get());
}

void MenuAccess::postChange(NSString* name, NSMenu& menu, NSInteger index)
{
    const Ref<NSDictionary> info = NSDictionary::cls().dictionaryWithObject_forKey(
        NSNumber::cls().numberWithInteger(index).get(), "NSMenuItemIndex"_ns);
    NSNotificationCenter::cls().defaultCenter()->postNotificationName_object_userInfo(
        name, &menu, info.get());
}

template <> struct NSMenu::Methods<struct Basics> {

    static Ref<NSMenu> initWithTitle(NSMenu& self, NSString* title)
    {
        if (!super<NSMenu, "init", Ref<NSObject>>(self))
            return nullptr;
        self.title_ = menuText(title, "NSMenu initWithTitle:");
        return &self;
    }
    static Ref<NSObject> init(NSMenu& self) { return self.initWithTitle(nullptr); }
    static Ref<NSString> title(NSMenu& self) { return self.title_; }
    static void setTitle(NSMenu& self, NSString* title)
    {
        self.title_ = menuText(title, "NSMenu setTitle:");
    }
    static Ref<NSMenu> supermenu(NSMenu& self) { return MenuAccess::supermenu(self); }
    static Ref<NSObject> delegate(NSMenu& self) { return self.delegate_.get(); }
    static void setDelegate(NSMenu& self, NSObject* delegate) { self.delegate_ = delegate; }

    // ---- items

    static std::size_t checked(
        const NSMenu& self, NSInteger index, const char* operation, NSInteger beyond = 0)
    {
        const auto count = static_cast<NSInteger>(self.items_.size()) + beyond;
        if (index < 0 || index >= count)
            raise("NSRangeException",
                std::string("*** -[NSMenu ") + operation + "]: index " + std::to_string(index)
                    + " is outside of " + std::to_string(self.items_.size()) + " items");
        return static_cast<std::size_t>(index);
    }
    static Ref<NSArray> itemArray(NSMenu& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.items_.begin(), self.items_.end()));
    }
    static void setItemArray(NSMenu& self, NSArray* items)
    {
        const Ref<NSMenu> alive(&self);
        const Ref<NSArray> kept(items);
        self.removeAllItems();
        for (NSMenuItem* item : each<NSMenuItem>(kept))
            self.addItem(item);
    }
    static NSInteger numberOfItems(NSMenu& self)
    {
        return static_cast<NSInteger>(self.items_.size());
    }
    static Ref<NSMenuItem> itemAtIndex(NSMenu& self, NSInteger index)
    {
        return self.items_[checked(self, index, "itemAtIndex:")];
    }
    static void itemsChanged(NSMenu& self)
    {
        MenuAccess::forgetKeys(self);
        MenuSession::menuChanged(self);
    }
    static void insert(NSMenu& self, NSMenuItem* item, NSInteger index)
    {
        constexpr const char* kOperation = "NSMenu insertItem:atIndex:";
        const auto refuse = [&](const char* why) {
            raise("NSInvalidArgumentException", std::string("*** -[") + kOperation + "]: " + why);
        };
        if (!item || !item->isKindOfClass(NSMenuItem::cls()))
            refuse("there is no item");
        if (MenuItemAccess::menu(*item))
            refuse("the item is in a menu already");
        if (const Ref<NSMenu>& submenu = MenuItemAccess::submenu(*item))
            MenuAccess::refuseCycle(self, *submenu, kOperation);
        const std::size_t place = checked(self, index, "insertItem:atIndex:", 1);
        const Ref<NSMenu> alive(&self);
        self.items_.insert(self.items_.begin() + static_cast<std::ptrdiff_t>(place), item);
        MenuItemAccess::menu(*item) = &self;
        itemsChanged(self);
        MenuAccess::postChange(NSMenuDidAddItemNotification, self, index);
    }
    static void add(NSMenu& self, NSMenuItem* item)
    {
        self.insertItem_atIndex(item, self.numberOfItems());
    }
    static Ref<NSMenuItem> insertTitled(
        NSMenu& self, NSString* title, SEL action, NSString* key, NSInteger index)
    {
        Ref<NSMenuItem> item
            = alloc<NSMenuItem>()->initWithTitle_action_keyEquivalent(title, action, key);
        self.insertItem_atIndex(item.get(), index);
        return item;
    }
    static Ref<NSMenuItem> addTitled(NSMenu& self, NSString* title, SEL action, NSString* key)
    {
        return self.insertItemWithTitle_action_keyEquivalent_atIndex(
            title, action, key, self.numberOfItems());
    }
    static void removeAt(NSMenu& self, NSInteger index)
    {
        const std::size_t place = checked(self, index, "removeItemAtIndex:");
        const Ref<NSMenu> alive(&self);
        const Ref<NSMenuItem> item = self.items_[place];
        self.items_.erase(self.items_.begin() + static_cast<std::ptrdiff_t>(place));
        MenuItemAccess::menu(*item) = nullptr;
        if (const Ref<NSMenu>& submenu = MenuItemAccess::submenu(*item))
            MenuSession::menuGone(*submenu);
        itemsChanged(self);
        MenuAccess::postChange(NSMenuDidRemoveItemNotification, self, index);
    }
    static void remove(NSMenu& self, NSMenuItem* item)
    {
        if (const NSInteger index = MenuAccess::indexOf(self, item); index >= 0)
            self.removeItemAtIndex(index);
    }
    static void removeAll(NSMenu& self)
    {
        const Ref<NSMenu> alive(&self);
        while (!self.items_.empty())
            self.removeItemAtIndex(self.numberOfItems() - 1);
    }
    static void setSubmenu(NSMenu&, NSMenu* menu, NSMenuItem* item)
    {
        if (item && !item->isKindOfClass(NSMenuItem::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSMenu setSubmenu:forItem:]: the item is of another kind");
        maybe(item)->setSubmenu(menu);
    }

    // ---- finding

    template <class Test> static NSInteger find(const NSMenu& self, const Test& fits)
    {
        for (std::size_t i = 0; i < self.items_.size(); ++i) {
            if (fits(*self.items_[i]))
                return static_cast<NSInteger>(i);
        }
        return -1;
    }
    static Ref<NSMenuItem> itemAt(const NSMenu& self, NSInteger index)
    {
        return index < 0 ? Ref<NSMenuItem>() : self.items_[static_cast<std::size_t>(index)];
    }
    static NSInteger indexOfItem(NSMenu& self, NSMenuItem* item)
    {
        return MenuAccess::indexOf(self, item);
    }
    static NSInteger indexOfTitle(NSMenu& self, NSString* title)
    {
        return find(self, [&](NSMenuItem& item) { return item.title()->isEqual(title); });
    }
    static NSInteger indexOfTag(NSMenu& self, NSInteger tag)
    {
        return find(self, [&](NSMenuItem& item) { return item.tag() == tag; });
    }
    static NSInteger indexOfRepresented(NSMenu& self, NSObject* object)
    {
        return find(self, [&](NSMenuItem& item) {
            const Ref<NSObject> represented = item.representedObject();
            return represented == object || (represented && represented->isEqual(object));
        });
    }
    static NSInteger indexOfSubmenu(NSMenu& self, NSMenu* menu)
    {
        return find(self, [&](NSMenuItem& item) { return item.submenu() == menu; });
    }
    static NSInteger indexOfTarget(NSMenu& self, NSObject* target, SEL action)
    {
        return find(self, [&](NSMenuItem& item) {
            return item.target() == target && (!action || item.action() == action);
        });
    }
    static Ref<NSMenuItem> itemWithTitle(NSMenu& self, NSString* title)
    {
        return itemAt(self, self.indexOfItemWithTitle(title));
    }
    static Ref<NSMenuItem> itemWithTag(NSMenu& self, NSInteger tag)
    {
        return itemAt(self, self.indexOfItemWithTag(tag));
    }

    static void itemChanged(NSMenu& self, NSMenuItem* item)
    {
        const NSInteger index = MenuAccess::indexOf(self, item);
        if (index < 0)
            return;
        const Ref<NSMenu> alive(&self);
        MenuSession::menuChanged(self);
        MenuAccess::postChange(NSMenuDidChangeItemNotification, self, index);
    }

    // ---- looks

    static Ref<NSFont> font(NSMenu& self)
    {
        for (NSMenu* menu = &self; menu; menu = MenuAccess::supermenu(*menu)) {
            if (menu->font_)
                return menu->font_;
        }
        return NSFont::cls().menuFontOfSize(0);
    }
    static void setFont(NSMenu& self, NSFont* font)
    {
        if (font && !font->isKindOfClass(NSFont::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSMenu setFont:]: the font is of another kind");
        self.font_ = font;
        MenuSession::menuChanged(self);
    }
    static CGFloat minimumWidth(NSMenu& self) { return self.minimumWidth_; }
    static void setMinimumWidth(NSMenu& self, CGFloat width)
    {
        self.minimumWidth_ = width > 0 ? width : 0;
        MenuSession::menuChanged(self);
    }
    static bool showsState(NSMenu& self) { return self.showsState_; }
    static void setShowsState(NSMenu& self, bool shows)
    {
        self.showsState_ = shows;
        MenuSession::menuChanged(self);
    }
    static bool autoenables(NSMenu& self) { return self.autoenables_; }
    static void setAutoenables(NSMenu& self, bool enables) { self.autoenables_ = enables; }

    static void table(Builder& t)
    {
        t.methods({
            { "init", imp<init> },
            { "initWithTitle:", imp<initWithTitle> },
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "supermenu", imp<supermenu> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "itemArray", imp<itemArray> },
            { "setItemArray:", imp<setItemArray> },
            { "numberOfItems", imp<numberOfItems> },
            { "itemAtIndex:", imp<itemAtIndex> },
            { "insertItem:atIndex:", imp<insert> },
            { "addItem:", imp<add> },
            { "insertItemWithTitle:action:keyEquivalent:atIndex:", imp<insertTitled> },
            { "addItemWithTitle:action:keyEquivalent:", imp<addTitled> },
            { "removeItemAtIndex:", imp<removeAt> },
            { "removeItem:", imp<remove> },
            { "removeAllItems", imp<removeAll> },
            { "setSubmenu:forItem:", imp<setSubmenu> },
        });
        t.methods({
            { "indexOfItem:", imp<indexOfItem> },
            { "indexOfItemWithTitle:", imp<indexOfTitle> },
            { "indexOfItemWithTag:", imp<indexOfTag> },
            { "indexOfItemWithRepresentedObject:", imp<indexOfRepresented> },
            { "indexOfItemWithSubmenu:", imp<indexOfSubmenu> },
            { "indexOfItemWithTarget:andAction:", imp<indexOfTarget> },
            { "itemWithTitle:", imp<itemWithTitle> },
            { "itemWithTag:", imp<itemWithTag> },
            { "itemChanged:", imp<itemChanged> },
            { "font", imp<font> },
            { "setFont:", imp<setFont> },
            { "minimumWidth", imp<minimumWidth> },
            { "setMinimumWidth:", imp<setMinimumWidth> },
            { "showsStateColumn", imp<showsState> },
            { "setShowsStateColumn:", imp<setShowsState> },
            { "autoenablesItems", imp<autoenables> },
            { "setAutoenablesItems:", imp<setAutoenables> },
        });
    }
};
BRINDLE_RECORD(NSMenu, Basics)

}
