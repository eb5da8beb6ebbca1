// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSEvent.h"

namespace brindle {

struct MenuItemAccess;

/// One line of a menu: a title with an action, the way to a submenu, or a separator.
///
/// An item belongs to one menu at a time. Its keyboard equivalent works while its menu can be reached from the main menu or from a
/// menu that is asked by `performKeyEquivalent:`, without the menu being open.
/// In a menu that enables its items by itself (`autoenablesItems`) `setEnabled:` lasts until the menu is next updated.
/// Thread: main.
class NSMenuItem : public NSObject {
    BRINDLE_OBJECT(NSMenuItem, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers a new line that parts groups of items; it cannot be chosen.
        Ref<NSMenuItem> separatorItem() const { return send<"separatorItem", Ref<NSMenuItem>>(); }
    };

    /// - title, key: nil is "". The modifiers of the key are Command alone.
    Ref<NSMenuItem> initWithTitle_action_keyEquivalent(NSString* title, SEL action, NSString* key)
    {
        return send<"initWithTitle:action:keyEquivalent:", Ref<NSMenuItem>>(title, action, key);
    }
    Ref<NSObject> initWithCoder(NSCoder* coder)
    {
        return send<"initWithCoder:", Ref<NSObject>>(coder);
    }

    // ---- its place

    /// Answers the menu it belongs to, or nil.
    Ref<NSMenu> menu() const { return send<"menu", Ref<NSMenu>>(); }
    bool isSeparatorItem() const { return send<"isSeparatorItem", bool>(); }
    bool hasSubmenu() const { return send<"hasSubmenu", bool>(); }
    Ref<NSMenu> submenu() const { return send<"submenu", Ref<NSMenu>>(); }
    /// Gives the item a submenu; an item without an action then gets `submenuAction:`. - Nil: takes it away.
    /// - Raises: `NSInvalidArgumentException` for a menu that is the submenu of another item, or that would contain itself.
    void setSubmenu(NSMenu* menu) { send<"setSubmenu:">(menu); }
    /// Answers the item whose submenu holds this one, or nil.
    Ref<NSMenuItem> parentItem() const { return send<"parentItem", Ref<NSMenuItem>>(); }

    // ---- what it shows

    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    Ref<NSAttributedString> attributedTitle() const
    {
        return send<"attributedTitle", Ref<NSAttributedString>>();
    }
    /// Draws this in place of the title. - Nil: the title.
    void setAttributedTitle(NSAttributedString* title) { send<"setAttributedTitle:">(title); }
    Ref<NSImage> image() const { return send<"image", Ref<NSImage>>(); }
    void setImage(NSImage* image) { send<"setImage:">(image); }
    /// - state: any positive number is on, any negative one mixed.
    void setState(NSCellStateValue state) { send<"setState:">(state); }
    NSCellStateValue state() const { return send<"state", NSCellStateValue>(); }
    /// The marks of the states: a tick, a dash, nothing. - Nil: no mark for that state.
    Ref<NSImage> onStateImage() const { return send<"onStateImage", Ref<NSImage>>(); }
    void setOnStateImage(NSImage* image) { send<"setOnStateImage:">(image); }
    Ref<NSImage> offStateImage() const { return send<"offStateImage", Ref<NSImage>>(); }
    void setOffStateImage(NSImage* image) { send<"setOffStateImage:">(image); }
    Ref<NSImage> mixedStateImage() const { return send<"mixedStateImage", Ref<NSImage>>(); }
    void setMixedStateImage(NSImage* image) { send<"setMixedStateImage:">(image); }
    NSInteger indentationLevel() const { return send<"indentationLevel", NSInteger>(); }
    /// - level: 0 to 15, larger ones count as 15. - Raises: `NSInvalidArgumentException` for a negative one.
    void setIndentationLevel(NSInteger level) { send<"setIndentationLevel:">(level); }
    Ref<NSString> toolTip() const { return send<"toolTip", Ref<NSString>>(); }
    void setToolTip(NSString* text) { send<"setToolTip:">(text); }
    Ref<NSView> view() const { return send<"view", Ref<NSView>>(); }
    /// Shows a view in place of everything else; it gets the events of the pointer over it.
    void setView(NSView* view) { send<"setView:">(view); }
    bool isHidden() const { return send<"isHidden", bool>(); }
    /// A hidden item takes no room, and its key does nothing unless `allowsKeyEquivalentWhenHidden`.
    void setHidden(bool hidden) { send<"setHidden:">(hidden); }
    bool isHiddenOrHasHiddenAncestor() const { return send<"isHiddenOrHasHiddenAncestor", bool>(); }
    /// Answers whether the open menu shows it as the one that would be chosen.
    bool isHighlighted() const { return send<"isHighlighted", bool>(); }
    bool isAlternate() const { return send<"isAlternate", bool>(); }
    /// An alternate takes the place of the item before it while its modifiers are down, where both have the same key
    /// equivalent and different modifiers.
    void setAlternate(bool alternate) { send<"setAlternate:">(alternate); }

    // ---- what it does

    Ref<NSObject> target() const { return send<"target", Ref<NSObject>>(); }
    /// Not kept. - Nil: whoever along the responder chain performs the action. An item whose target has gone is disabled.
    void setTarget(NSObject* target) { send<"setTarget:">(target); }
    SEL action() const { return send<"action", SEL>(); }
    void setAction(SEL action) { send<"setAction:">(action); }
    bool isEnabled() const { return send<"isEnabled", bool>(); }
    void setEnabled(bool enabled) { send<"setEnabled:">(enabled); }
    NSInteger tag() const { return send<"tag", NSInteger>(); }
    void setTag(NSInteger tag) { send<"setTag:">(tag); }
    Ref<NSObject> representedObject() const { return send<"representedObject", Ref<NSObject>>(); }
    void setRepresentedObject(NSObject* object) { send<"setRepresentedObject:">(object); }

    // ---- its key

    Ref<NSString> keyEquivalent() const { return send<"keyEquivalent", Ref<NSString>>(); }
    /// - key: one character; an upper-case letter stands for the letter with Shift. "" and nil are none.
    void setKeyEquivalent(NSString* key) { send<"setKeyEquivalent:">(key); }
    NSEventModifierFlags keyEquivalentModifierMask() const
    {
        return send<"keyEquivalentModifierMask", NSEventModifierFlags>();
    }
    void setKeyEquivalentModifierMask(NSEventModifierFlags mask)
    {
        send<"setKeyEquivalentModifierMask:">(mask);
    }
    bool allowsKeyEquivalentWhenHidden() const
    {
        return send<"allowsKeyEquivalentWhenHidden", bool>();
    }
    void setAllowsKeyEquivalentWhenHidden(bool allows)
    {
        send<"setAllowsKeyEquivalentWhenHidden:">(allows);
    }

protected:
    /// A submenu that lives on forgets the item.
    BRINDLE_EXPORT ~NSMenuItem();

private:
    friend struct MenuItemAccess;

    Ref<NSString> title_;
    Ref<NSAttributedString> attributedTitle_;
    Ref<NSImage> image_;
    Ref<NSImage> onImage_; // nil is the ordinary mark
    Ref<NSImage> offImage_;
    Ref<NSImage> mixedImage_; // nil is the ordinary mark
    Ref<NSString> key_;
    Ref<NSString> toolTip_;
    Ref<NSObject> represented_;
    Ref<NSMenu> submenu_;
    Ref<NSView> view_;
    WeakRef<NSObject> target_;
    NSMenu* menu_ = nullptr; // the menu holds the item
    SEL action_ {};
    NSInteger tag_ = 0;
    NSInteger indentation_ = 0;
    NSEventModifierFlags modifiers_ = NSCommandKeyMask;
    NSCellStateValue state_ = NSOffState;
    CGFloat titleWidth_ = -1; // points, as the menu measured it last; negative: not yet
    bool enabled_ = true;
    bool hidden_ = false;
    bool alternate_ = false;
    bool separator_ = false;
    bool keyWhenHidden_ = false;
    bool hasTarget_ = false; // one was set, alive or not
    bool withoutOnImage_ = false; // nil was set
    bool withoutMixedImage_ = false;
};

}
