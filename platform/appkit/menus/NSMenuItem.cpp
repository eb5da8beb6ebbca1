// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenuItem.h"

#include <algorithm>

#include "MenuSessionPrivate.h"
#include "NSMenuPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    template <class T> void require(T* object, const char* operation)
    {
        if (object && !object->isKindOfClass(T::cls()))
            raise("NSInvalidArgumentException",
                std::string("*** -[NSMenuItem ") + operation
                    + "]: the argument is of another kind");
    }

}

NSMenuItem::~NSMenuItem()
{
    if (submenu_)
        MenuAccess::parent(*submenu_) = nullptr;
}

Ref<NSString> menuText(NSString* text, const char* operation)
{
    if (text && !text->isKindOfClass(NSString::cls()))
        raise("NSInvalidArgumentException",
            std::string("*** -[") + operation + "]: the text is of another kind");
    return text ? cast<NSString>(text->copy()) : Ref<NSString>(""_ns);
}

template <> struct NSMenuItem::Methods<struct Basics> {

    // ---- making

    static Ref<NSMenuItem> initWith(NSMenuItem& self, NSString* title, SEL action, NSString* key)
    {
        if (!super<NSMenuItem, "init", Ref<NSObject>>(self))
            return nullptr;
        self.title_ = menuText(title, "NSMenuItem initWithTitle:action:keyEquivalent:");
        self.key_ = menuText(key, "NSMenuItem initWithTitle:action:keyEquivalent:");
        self.action_ = action;
        return &self;
    }
    static Ref<NSObject> init(NSMenuItem& self)
    {
        return self.initWithTitle_action_keyEquivalent(nullptr, SEL {}, nullptr);
    }
    static Ref<NSMenuItem> separatorItem(Class& self)
    {
        Ref<NSMenuItem> item = cast<NSMenuItem>(self.send<"alloc", Ref<NSObject>>()->init());
        item->separator_ = true;
        item->enabled_ = false;
        return item;
    }
    static void changed(NSMenuItem& self)
    {
        if (self.menu_)
            Ref<NSMenu>(self.menu_)->itemChanged(&self);
    }

    /// Accessors of fields.
    template <auto Field> struct Access;
    template <class T, T NSMenuItem::*Field> struct Access<Field> {
        static T get(NSMenuItem& self) { return self.*Field; }
        static void set(NSMenuItem& self, T value)
        {
            if (self.*Field == value)
                return;
            self.*Field = value;
            changed(self);
        }
    };
    template <auto Field> struct Object;
    template <class T, Ref<T> NSMenuItem::*Field> struct Object<Field> {
        static Ref<T> get(NSMenuItem& self) { return self.*Field; }
        template <Text S> static void set(NSMenuItem& self, T* value)
        {
            require(value, S.characters);
            if (self.*Field == value)
                return;
            self.*Field = value;
            changed(self);
        }
    };

    // ---- its place

    static Ref<NSMenu> menu(NSMenuItem& self) { return self.menu_; }
    static bool hasSubmenu(NSMenuItem& self) { return self.submenu_ != nullptr; }
    static void setSubmenu(NSMenuItem& self, NSMenu* menu)
    {
        if (self.submenu_ == menu)
            return;
        require(menu, "setSubmenu:");
        if (menu && MenuAccess::parent(*menu))
            raise("NSInvalidArgumentException",
                "*** -[NSMenuItem setSubmenu:]: the menu is the submenu of another item");
        if (menu && self.menu_)
            MenuAccess::refuseCycle(*self.menu_, *menu, "NSMenuItem setSubmenu:");
        const Ref<NSMenu> old = std::exchange(self.submenu_, menu);
        if (old)
            MenuAccess::parent(*old) = nullptr;
        if (menu) {
            MenuAccess::parent(*menu) = &self;
            if (!self.action_)
                self.action_ = selector<"submenuAction:">;
        } else if (self.action_ == selector<"submenuAction:">)
            self.action_ = SEL {};
        if (old)
            MenuSession::menuGone(*old);
        if (self.menu_)
            MenuAccess::forgetKeys(*self.menu_);
        changed(self);
    }
    static Ref<NSMenuItem> parentItem(NSMenuItem& self)
    {
        return self.menu_ ? MenuAccess::parent(*self.menu_) : nullptr;
    }

    // ---- what it shows

    static void setTitle(NSMenuItem& self, NSString* title)
    {
        self.title_ = menuText(title, "NSMenuItem setTitle:");
        self.titleWidth_ = -1;
        changed(self);
    }
    static void setAttributedTitle(NSMenuItem& self, NSAttributedString* title)
    {
        require(title, "setAttributedTitle:");
        self.attributedTitle_ = title ? cast<NSAttributedString>(title->copy()) : nullptr;
        changed(self);
    }
    static void setState(NSMenuItem& self, NSCellStateValue state)
    {
        const NSCellStateValue kept = state > 0 ? NSOnState : state < 0 ? NSMixedState : NSOffState;
        if (std::exchange(self.state_, kept) != kept)
            changed(self);
    }
    static Ref<NSImage> onImage(NSMenuItem& self)
    {
        return self.onImage_ || self.withoutOnImage_
            ? self.onImage_
            : NSImage::cls().imageNamed(NSImageNameMenuOnStateTemplate);
    }
    static void setOnImage(NSMenuItem& self, NSImage* image)
    {
        require(image, "setOnStateImage:");
        self.onImage_ = image;
        self.withoutOnImage_ = !image;
        changed(self);
    }
    static Ref<NSImage> mixedImage(NSMenuItem& self)
    {
        return self.mixedImage_ || self.withoutMixedImage_
            ? self.mixedImage_
            : NSImage::cls().imageNamed(NSImageNameMenuMixedStateTemplate);
    }
    static void setMixedImage(NSMenuItem& self, NSImage* image)
    {
        require(image, "setMixedStateImage:");
        self.mixedImage_ = image;
        self.withoutMixedImage_ = !image;
        changed(self);
    }
    static void setIndentation(NSMenuItem& self, NSInteger level)
    {
        constexpr NSInteger kDeepest = 15;
        if (level < 0)
            raise("NSInvalidArgumentException",
                "*** -[NSMenuItem setIndentationLevel:]: the level is negative");
        self.indentation_ = std::min(level, kDeepest);
        changed(self);
    }
    static void setToolTip(NSMenuItem& self, NSString* text)
    {
        self.toolTip_ = text ? menuText(text, "NSMenuItem setToolTip:") : nullptr;
    }
    static bool isHiddenAnywhere(NSMenuItem& self)
    {
        for (const NSMenuItem* item = &self; item;
             item = item->menu_ ? MenuAccess::parent(*item->menu_) : nullptr) {
            if (item->hidden_)
                return true;
        }
        return false;
    }
    static bool isHighlighted(NSMenuItem& self)
    {
        return self.menu_ && MenuSession::highlightedItem(*self.menu_) == &self;
    }

    // ---- what it does

    static Ref<NSObject> target(NSMenuItem& self) { return self.target_.get(); }
    static void setTarget(NSMenuItem& self, NSObject* target)
    {
        self.target_ = target;
        self.hasTarget_ = target != nullptr;
    }
    static void setKey(NSMenuItem& self, NSString* key)
    {
        self.key_ = menuText(key, "NSMenuItem setKeyEquivalent:");
        if (self.menu_)
            MenuAccess::forgetKeys(*self.menu_);
        changed(self);
    }

    static void table(Builder& t)
    {
        using I = NSMenuItem;
        t.classMethods({ { "separatorItem", imp<separatorItem> } });
        t.methods({
            { "init", imp<init> },
            { "initWithTitle:action:keyEquivalent:", imp<initWith> },
            { "menu", imp<menu> },
            { "isSeparatorItem", imp<Access<&I::separator_>::get> },
            { "hasSubmenu", imp<hasSubmenu> },
            { "submenu", imp<Object<&I::submenu_>::get> },
            { "setSubmenu:", imp<setSubmenu> },
            { "parentItem", imp<parentItem> },
            { "title", imp<Object<&I::title_>::get> },
            { "setTitle:", imp<setTitle> },
            { "attributedTitle", imp<Object<&I::attributedTitle_>::get> },
            { "setAttributedTitle:", imp<setAttributedTitle> },
            { "image", imp<Object<&I::image_>::get> },
            { "setImage:", imp<Object<&I::image_>::set<"setImage:">> },
            { "state", imp<Access<&I::state_>::get> },
            { "setState:", imp<setState> },
            { "onStateImage", imp<onImage> },
            { "setOnStateImage:", imp<setOnImage> },
            { "offStateImage", imp<Object<&I::offImage_>::get> },
            { "setOffStateImage:", imp<Object<&I::offImage_>::set<"setOffStateImage:">> },
            { "mixedStateImage", imp<mixedImage> },
            { "setMixedStateImage:", imp<setMixedImage> },
            { "indentationLevel", imp<Access<&I::indentation_>::get> },
            { "setIndentationLevel:", imp<setIndentation> },
            { "toolTip", imp<Object<&I::toolTip_>::get> },
            { "setToolTip:", imp<setToolTip> },
            { "view", imp<Object<&I::view_>::get> },
            { "setView:", imp<Object<&I::view_>::set<"setView:">> },
        });
        t.methods({
            { "isHidden", imp<Access<&I::hidden_>::get> },
            { "setHidden:", imp<Access<&I::hidden_>::set> },
            { "isHiddenOrHasHiddenAncestor", imp<isHiddenAnywhere> },
            { "isHighlighted", imp<isHighlighted> },
            { "isAlternate", imp<Access<&I::alternate_>::get> },
            { "setAlternate:", imp<Access<&I::alternate_>::set> },
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "action", imp<Access<&I::action_>::get> },
            { "setAction:", imp<Access<&I::action_>::set> },
            { "isEnabled", imp<Access<&I::enabled_>::get> },
            { "setEnabled:", imp<Access<&I::enabled_>::set> },
            { "tag", imp<Access<&I::tag_>::get> },
            { "setTag:", imp<Access<&I::tag_>::set> },
            { "representedObject", imp<Object<&I::represented_>::get> },
            { "setRepresentedObject:",
                imp<Object<&I::represented_>::set<"setRepresentedObject:">> },
            { "keyEquivalent", imp<Object<&I::key_>::get> },
            { "setKeyEquivalent:", imp<setKey> },
            { "keyEquivalentModifierMask", imp<Access<&I::modifiers_>::get> },
            { "setKeyEquivalentModifierMask:", imp<Access<&I::modifiers_>::set> },
            { "allowsKeyEquivalentWhenHidden", imp<Access<&I::keyWhenHidden_>::get> },
            { "setAllowsKeyEquivalentWhenHidden:", imp<Access<&I::keyWhenHidden_>::set> },
        });
    }
};
BRINDLE_RECORD(NSMenuItem, Basics)

}
