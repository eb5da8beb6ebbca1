// SPDX-License-Identifier: Apache-2.0
#include "NSMenuPrivate.h"
#include "appkit/controls/ActionCodingPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"

namespace brindle {

// - Shape: texts, images and the submenu under their keys; "NSIsDisabled", "NSIsHidden" and so on only where they hold.
template <> struct NSMenuItem::Methods<struct Coding> {

    struct Flag {
        NSString* key;
        bool NSMenuItem::*field;
    };
    static std::vector<Flag> flags()
    {
        return { { "NSIsHidden"_ns, &NSMenuItem::hidden_ },
            { "NSIsAlternate"_ns, &NSMenuItem::alternate_ },
            { "NSIsSeparator"_ns, &NSMenuItem::separator_ },
            { "NSKeyWhenHidden"_ns, &NSMenuItem::keyWhenHidden_ } };
    }

    static void encode(NSMenuItem& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.title_.get(), "NSTitle"_ns);
        coder->encodeObject_forKey(self.key_.get(), "NSKeyEquiv"_ns);
        coder->encodeInteger_forKey(
            static_cast<NSInteger>(self.modifiers_), "NSKeyEquivModMask"_ns);
        coder->encodeInteger_forKey(self.state_, "NSState"_ns);
        coder->encodeInteger_forKey(self.tag_, "NSTag"_ns);
        coder->encodeInteger_forKey(self.indentation_, "NSIndent"_ns);
        if (!self.enabled_)
            coder->encodeBool_forKey(true, "NSIsDisabled"_ns);
        for (const Flag& flag : flags()) {
            if (self.*flag.field)
                coder->encodeBool_forKey(true, flag.key);
        }
        coder->encodeObject_forKey(self.attributedTitle_.get(), "NSAttributedTitle"_ns);
        coder->encodeObject_forKey(self.image_.get(), "NSImage"_ns);
        coder->encodeObject_forKey(self.toolTip_.get(), "NSToolTip"_ns);
        coder->encodeObject_forKey(self.represented_.get(), "NSRepObject"_ns);
        coder->encodeObject_forKey(self.submenu_.get(), "NSSubmenu"_ns);
        encodeAction(coder, self.target_.get().get(), self.action_);
    }
    static Ref<NSObject> initWithCoder(NSMenuItem& self, NSCoder* coder)
    {
        self.initWithTitle_action_keyEquivalent(decode<NSString>(coder, "NSTitle"_ns).get(), SEL {},
            decode<NSString>(coder, "NSKeyEquiv"_ns).get());
        self.modifiers_
            = static_cast<NSEventModifierFlags>(coder->decodeIntegerForKey("NSKeyEquivModMask"_ns));
        self.setState(coder->decodeIntegerForKey("NSState"_ns));
        self.tag_ = coder->decodeIntegerForKey("NSTag"_ns);
        self.setIndentationLevel(std::max<NSInteger>(coder->decodeIntegerForKey("NSIndent"_ns), 0));
        self.enabled_ = !coder->decodeBoolForKey("NSIsDisabled"_ns);
        for (const Flag& flag : flags())
            self.*flag.field = coder->decodeBoolForKey(flag.key);
        self.setAttributedTitle(decode<NSAttributedString>(coder, "NSAttributedTitle"_ns).get());
        self.image_ = decode<NSImage>(coder, "NSImage"_ns);
        self.setToolTip(decode<NSString>(coder, "NSToolTip"_ns).get());
        self.represented_ = coder->decodeObjectForKey("NSRepObject"_ns);
        self.setTarget(coder->decodeObjectForKey("NSTarget"_ns).get());
        self.action_ = decodeAction(coder);
        self.setSubmenu(decode<NSMenu>(coder, "NSSubmenu"_ns).get());
        return &self;
    }

    /// The copy is in no menu; a submenu is copied with it.
    static Ref<NSObject> copyWithZone(NSMenuItem& self, void*)
    {
        const Ref<NSMenuItem> copy = cast<NSMenuItem>(
            self.classObject()->send<"alloc", Ref<NSObject>>()->send<"init", Ref<NSObject>>());
        if (!copy)
            return nullptr;
        copy->title_ = self.title_;
        copy->attributedTitle_ = self.attributedTitle_;
        copy->image_ = self.image_;
        copy->onImage_ = self.onImage_;
        copy->offImage_ = self.offImage_;
        copy->mixedImage_ = self.mixedImage_;
        copy->key_ = self.key_;
        copy->toolTip_ = self.toolTip_;
        copy->represented_ = self.represented_;
        copy->target_ = self.target_;
        copy->action_ = self.action_;
        copy->tag_ = self.tag_;
        copy->indentation_ = self.indentation_;
        copy->modifiers_ = self.modifiers_;
        copy->state_ = self.state_;
        copy->titleWidth_ = self.titleWidth_;
        copy->enabled_ = self.enabled_;
        copy->hidden_ = self.hidden_;
        copy->alternate_ = self.alternate_;
        copy->separator_ = self.separator_;
        copy->keyWhenHidden_ = self.keyWhenHidden_;
        copy->hasTarget_ = self.hasTarget_;
        copy->withoutOnImage_ = self.withoutOnImage_;
        copy->withoutMixedImage_ = self.withoutMixedImage_;
        if (self.submenu_)
            copy->setSubmenu(cast<NSMenu>(self.submenu_->copy()).get());
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSValidatedUserInterfaceItem" });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
        declareCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSMenuItem, Coding)

// - Shape: "NSTitle", the items under "NSMenuItems", "NSMinimumWidth", "NSNoAutoenable" and "NSNoStateColumn" where they hold.
template <> struct NSMenu::Methods<struct Coding> {

    static void encode(NSMenu& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.title_.get(), "NSTitle"_ns);
        coder->encodeObject_forKey(self.itemArray().get(), "NSMenuItems"_ns);
        coder->encodeDouble_forKey(self.minimumWidth_, "NSMinimumWidth"_ns);
        if (!self.autoenables_)
            coder->encodeBool_forKey(true, "NSNoAutoenable"_ns);
        if (!self.showsState_)
            coder->encodeBool_forKey(true, "NSNoStateColumn"_ns);
    }
    static Ref<NSObject> initWithCoder(NSMenu& self, NSCoder* coder)
    {
        self.initWithTitle(decode<NSString>(coder, "NSTitle"_ns).get());
        self.setMinimumWidth(coder->decodeDoubleForKey("NSMinimumWidth"_ns));
        self.autoenables_ = !coder->decodeBoolForKey("NSNoAutoenable"_ns);
        self.showsState_ = !coder->decodeBoolForKey("NSNoStateColumn"_ns);
        const Ref<NSSet> classes = NSSet::cls().setWithObjects(
            static_cast<Class*>(NSArray::cls()), static_cast<Class*>(NSMenuItem::cls()));
        const Ref<NSObject> items
            = coder->decodeObjectOfClasses_forKey(classes.get(), "NSMenuItems"_ns);
        if (items && items->isKindOfClass(NSArray::cls())) {
            for (NSMenuItem* item : each<NSMenuItem>(cast<NSArray>(items)))
                self.addItem(item);
        }
        return &self;
    }

    static Ref<NSObject> copyWithZone(NSMenu& self, void*)
    {
        const Ref<NSMenu> copy = cast<NSMenu>(
            self.classObject()->send<"alloc", Ref<NSObject>>()->send<"init", Ref<NSObject>>());
        if (!copy)
            return nullptr;
        copy->title_ = self.title_;
        copy->delegate_ = self.delegate_;
        copy->font_ = self.font_;
        copy->minimumWidth_ = self.minimumWidth_;
        copy->autoenables_ = self.autoenables_;
        copy->showsState_ = self.showsState_;
        for (const Ref<NSMenuItem>& item : std::vector<Ref<NSMenuItem>>(self.items_))
            copy->addItem(cast<NSMenuItem>(item->copy()).get());
        return copy;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
        declareCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSMenu, Coding)

}
