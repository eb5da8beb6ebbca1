// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSView.h"
#include "foundation/NSAttributedString.h"

namespace brindle {

/// What is needed of a menu to find the items that wait for a key without looking at all of them.
struct MenuKeys {
    std::vector<std::pair<unichar, std::size_t>> keys; // folded first character, place; sorted
    std::vector<std::size_t> submenus; // places of the items that have one
};

/// What the files of this folder do with items beside sending messages.
struct MenuItemAccess {
    static NSMenu*& menu(NSMenuItem& item) { return item.menu_; }
    static const Ref<NSMenu>& submenu(const NSMenuItem& item) { return item.submenu_; }
    static bool isSeparator(const NSMenuItem& item) { return item.separator_; }
    static bool isHidden(const NSMenuItem& item) { return item.hidden_; }
    static bool isEnabled(const NSMenuItem& item) { return item.enabled_; }
    static bool isAlternate(const NSMenuItem& item) { return item.alternate_; }
    static NSEventModifierFlags modifiers(const NSMenuItem& item) { return item.modifiers_; }
    static NSInteger indentation(const NSMenuItem& item) { return item.indentation_; }
    static const Ref<NSString>& key(const NSMenuItem& item) { return item.key_; }
    static const Ref<NSString>& title(const NSMenuItem& item) { return item.title_; }
    static const Ref<NSAttributedString>& attributed(const NSMenuItem& item)
    {
        return item.attributedTitle_;
    }
    static const Ref<NSImage>& image(const NSMenuItem& item) { return item.image_; }
    static const Ref<NSView>& view(const NSMenuItem& item) { return item.view_; }
    static CGFloat& titleWidth(NSMenuItem& item) { return item.titleWidth_; }
    static SEL action(const NSMenuItem& item) { return item.action_; }
    /// Answers whether a target was set that lives no more.
    static bool targetIsGone(const NSMenuItem& item)
    {
        return item.hasTarget_ && !item.target_.get();
    }
    /// Answers whether it can be chosen: it is enabled and leads to an action or a submenu.
    static bool canBeChosen(const NSMenuItem& item)
    {
        return item.enabled_ && !item.separator_ && !item.hidden_;
    }
};

/// What the files of this folder do with menus beside sending messages.
struct MenuAccess {
    static const std::vector<Ref<NSMenuItem>>& items(const NSMenu& menu) { return menu.items_; }
    static NSMenuItem*& parent(NSMenu& menu) { return menu.parent_; }
    static const Ref<NSFont>& font(const NSMenu& menu) { return menu.font_; }
    static CGFloat minimumWidth(const NSMenu& menu) { return menu.minimumWidth_; }
    static bool showsState(const NSMenu& menu) { return menu.showsState_; }
    static NSMenu* supermenu(const NSMenu& menu)
    {
        return menu.parent_ ? MenuItemAccess::menu(*menu.parent_) : nullptr;
    }
    static Ref<NSMenu> root(NSMenu& menu);
    /// Answers the item as one of the menu's, or -1.
    static NSInteger indexOf(const NSMenu& menu, const NSMenuItem* item);
    /// - Raises: `NSInvalidArgumentException` when a menu would contain itself by this submenu.
    static void refuseCycle(const NSMenu& menu, const NSMenu& submenu, const char* operation);
    static void forgetKeys(NSMenu& menu) { menu.keys_ = nullptr; }
    static const MenuKeys& keys(NSMenu& menu);

    /// Lets the delegate fill the menu; NSMenu-Updating.cpp.
    static void populate(NSMenu& menu);
    /// Answers the item that a key press is for, or nil; menus that have one are updated.
    static Ref<NSMenuItem> itemForKey(NSMenu& menu, NSEvent& press);
    /// Sends the item's action, with the notifications around it.
    static void perform(NSMenuItem& item);
    template <Text S, class... A> static void tellDelegate(NSMenu& menu, A... arguments)
    {
        const Ref<NSObject> delegate = menu.delegate();
        if (delegate && delegate->respondsToSelector(selector<S>))
            delegate->send<S>(&menu, arguments...);
    }
    static void post(NSString* name, NSMenu& menu, NSObject* item = nullptr);
    static void postChange(NSString* name, NSMenu& menu, NSInteger index);
};

/// Text that is an object of that kind, copied; "" for nil.
/// - Raises: `NSInvalidArgumentException` for another object.
Ref<NSString> menuText(NSString* text, const char* operation);

}
