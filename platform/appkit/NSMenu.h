// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include "NSMenuItem.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSArray;
class NSWindow;
struct MenuAccess;
struct MenuKeys;

/// Posted with the root menu: before a menu opens, and when it is closed again.
inline constexpr StringConstant<"NSMenuDidBeginTrackingNotification">
    NSMenuDidBeginTrackingNotification;
inline constexpr StringConstant<"NSMenuDidEndTrackingNotification">
    NSMenuDidEndTrackingNotification;
/// Posted with the root menu around the action of a chosen item, which is "MenuItem" in the user info.
inline constexpr StringConstant<"NSMenuWillSendActionNotification">
    NSMenuWillSendActionNotification;
inline constexpr StringConstant<"NSMenuDidSendActionNotification"> NSMenuDidSendActionNotification;
/// Posted with the menu; "NSMenuItemIndex" in the user info is the place of the item.
inline constexpr StringConstant<"NSMenuDidAddItemNotification"> NSMenuDidAddItemNotification;
inline constexpr StringConstant<"NSMenuDidRemoveItemNotification"> NSMenuDidRemoveItemNotification;
inline constexpr StringConstant<"NSMenuDidChangeItemNotification"> NSMenuDidChangeItemNotification;

/// A list of commands that opens under the pointer or below a button and is closed by a choice.
///
/// While a menu is open the pointer and the keyboard are followed in the event-tracking mode: timers of that mode, the main
/// queue and drawing go on. A press, a drag and a release choose, and so do two clicks: a click shorter than a double click
/// leaves the menu open. Arrows, Home, End, Page Up and Page Down move, letters find a title, Return and Space choose, Escape closes.
/// A click elsewhere, the loss of the keyboard focus or of the pointer, and `cancelTracking` close it without a choice. The action of
/// the chosen item is sent when the menu is gone. Items may be changed, added and removed while it is open.
///
/// The delegate is asked, where it answers them: `menuNeedsUpdate:`, or `numberOfItemsInMenu:` and
/// `menu:updateItem:atIndex:shouldCancel:`, before the menu opens and before its keys are looked up; `menuWillOpen:`,
/// `menuDidClose:`, `menu:willHighlightItem:` (nil for none), and `menuHasKeyEquivalent:forEvent:target:action:`, which spares looking
/// into the menu.
///
/// A view for which a menu is opened may stand in a row of such views, as in a menu bar. Where it answers them, it is asked
/// `menuNeighbourAtPoint:` (a point of the screen, whenever the pointer is in no open menu) and `menuNeighbourInDirection:` (-1 or 1,
/// for Left and Right). A view that either answers, other than itself, takes over: the menu closes, and that view
/// gets a left press in its middle by way of the event queue, as if the user had pressed there.
/// Thread: main.
class NSMenu : public NSObject {
    BRINDLE_OBJECT(NSMenu, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Opens a menu with its top left corner where an event was, kept on that screen, and returns when it is closed and the
        /// action of the chosen item has been sent.
        /// - event: may be made by the program. Nil: where the pointer is.
        /// - view: whose menu it is; a menu that lies below it opens above it where there is more room. May be nil.
        /// - Nil: a nil menu does nothing.
        void popUpContextMenu_withEvent_forView(NSMenu* menu, NSEvent* event, NSView* view) const
        {
            send<"popUpContextMenu:withEvent:forView:">(menu, event, view);
        }
        void popUpContextMenu_withEvent_forView_withFont(
            NSMenu* menu, NSEvent* event, NSView* view, NSFont* font) const
        {
            send<"popUpContextMenu:withEvent:forView:withFont:">(menu, event, view, font);
        }
    };

    /// - title: nil is "".
    Ref<NSMenu> initWithTitle(NSString* title)
    {
        return send<"initWithTitle:", Ref<NSMenu>>(title);
    }
    Ref<NSObject> initWithCoder(NSCoder* coder)
    {
        return send<"initWithCoder:", Ref<NSObject>>(coder);
    }

    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    /// Answers the menu whose item this one opens from, or nil.
    Ref<NSMenu> supermenu() const { return send<"supermenu", Ref<NSMenu>>(); }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    // ---- items

    Ref<NSArray> itemArray() const { return send<"itemArray", Ref<NSArray>>(); }
    /// Replaces all items. - Raises: as `insertItem:atIndex:`.
    void setItemArray(NSArray* items) { send<"setItemArray:">(items); }
    NSInteger numberOfItems() const { return send<"numberOfItems", NSInteger>(); }
    /// - Raises: `NSRangeException` outside of the items; so do all operations that take an index.
    Ref<NSMenuItem> itemAtIndex(NSInteger index) const
    {
        return send<"itemAtIndex:", Ref<NSMenuItem>>(index);
    }
    /// - Raises: `NSInvalidArgumentException` for nil or another object, for an item that is in a menu already, and for one whose
    ///   submenu leads to this menu.
    void insertItem_atIndex(NSMenuItem* item, NSInteger index)
    {
        send<"insertItem:atIndex:">(item, index);
    }
    void addItem(NSMenuItem* item) { send<"addItem:">(item); }
    Ref<NSMenuItem> insertItemWithTitle_action_keyEquivalent_atIndex(
        NSString* title, SEL action, NSString* key, NSInteger index)
    {
        return send<"insertItemWithTitle:action:keyEquivalent:atIndex:", Ref<NSMenuItem>>(
            title, action, key, index);
    }
    Ref<NSMenuItem> addItemWithTitle_action_keyEquivalent(
        NSString* title, SEL action, NSString* key)
    {
        return send<"addItemWithTitle:action:keyEquivalent:", Ref<NSMenuItem>>(title, action, key);
    }
    void removeItemAtIndex(NSInteger index) { send<"removeItemAtIndex:">(index); }
    /// An item of another menu, and nil, change nothing.
    void removeItem(NSMenuItem* item) { send<"removeItem:">(item); }
    void removeAllItems() { send<"removeAllItems">(); }
    /// - Raises: as `setSubmenu:` of the item.
    void setSubmenu_forItem(NSMenu* menu, NSMenuItem* item)
    {
        send<"setSubmenu:forItem:">(menu, item);
    }

    // Answer the place of the first item that fits, or -1; the item, or nil.
    NSInteger indexOfItem(NSMenuItem* item) const { return send<"indexOfItem:", NSInteger>(item); }
    NSInteger indexOfItemWithTitle(NSString* title) const
    {
        return send<"indexOfItemWithTitle:", NSInteger>(title);
    }
    NSInteger indexOfItemWithTag(NSInteger tag) const
    {
        return send<"indexOfItemWithTag:", NSInteger>(tag);
    }
    NSInteger indexOfItemWithRepresentedObject(NSObject* object) const
    {
        return send<"indexOfItemWithRepresentedObject:", NSInteger>(object);
    }
    NSInteger indexOfItemWithSubmenu(NSMenu* menu) const
    {
        return send<"indexOfItemWithSubmenu:", NSInteger>(menu);
    }
    /// - action: null fits every action.
    NSInteger indexOfItemWithTarget_andAction(NSObject* target, SEL action) const
    {
        return send<"indexOfItemWithTarget:andAction:", NSInteger>(target, action);
    }
    Ref<NSMenuItem> itemWithTitle(NSString* title) const
    {
        return send<"itemWithTitle:", Ref<NSMenuItem>>(title);
    }
    Ref<NSMenuItem> itemWithTag(NSInteger tag) const
    {
        return send<"itemWithTag:", Ref<NSMenuItem>>(tag);
    }

    /// Told by items when they have changed: an open menu shows it, and the change is posted.
    void itemChanged(NSMenuItem* item) { send<"itemChanged:">(item); }

    // ---- enabling and performing

    bool autoenablesItems() const { return send<"autoenablesItems", bool>(); }
    /// YES enables items before they are shown: those whose action somebody performs and, where that object answers
    /// `validateMenuItem:` or `validateUserInterfaceItem:`, allows.
    void setAutoenablesItems(bool enables) { send<"setAutoenablesItems:">(enables); }
    /// Enables and disables the items now, where the menu does that by itself.
    void update() { send<"update">(); }
    /// Performs the first enabled item, of this menu or a submenu, that waits for a key press.
    /// - Returns: whether there was one. Items that are disabled or hidden do not count.
    /// - Cost: a look at each menu; only menus that have the key are updated.
    bool performKeyEquivalent(NSEvent* event) { return send<"performKeyEquivalent:", bool>(event); }
    /// Sends the item's action as if it had been chosen; nothing for one that is disabled.
    void performActionForItemAtIndex(NSInteger index)
    {
        send<"performActionForItemAtIndex:">(index);
    }
    /// The action of items with a submenu; does nothing.
    void submenuAction(NSObject* sender) { send<"submenuAction:">(sender); }

    // ---- looks

    /// The font of the titles; the menu font unless set, or that of the menu it opens from.
    Ref<NSFont> font() const { return send<"font", Ref<NSFont>>(); }
    void setFont(NSFont* font) { send<"setFont:">(font); }
    CGFloat minimumWidth() const { return send<"minimumWidth", CGFloat>(); }
    /// - width: points; 0, NaN and negative numbers are no minimum.
    void setMinimumWidth(CGFloat width) { send<"setMinimumWidth:">(width); }
    bool showsStateColumn() const { return send<"showsStateColumn", bool>(); }
    void setShowsStateColumn(bool shows) { send<"setShowsStateColumn:">(shows); }
    /// Answers the size that the menu takes up on a screen that is large enough, in points.
    NSSize size() const { return send<"size", NSSize>(); }

    // ---- opening

    /// Opens the menu and returns when it is closed and the action has been sent.
    /// - item: whose top left corner comes to lie at the location; nil is the top left corner of the menu.
    /// - location: in the view's coordinates; of the screen when the view is nil.
    /// - Returns: whether an item was chosen.
    bool popUpMenuPositioningItem_atLocation_inView(
        NSMenuItem* item, NSPoint location, NSView* view)
    {
        return send<"popUpMenuPositioningItem:atLocation:inView:", bool>(item, location, view);
    }
    /// Closes the menu, with all that opened from it, without a choice.
    void cancelTracking() { send<"cancelTracking">(); }
    void cancelTrackingWithoutAnimation() { send<"cancelTrackingWithoutAnimation">(); }
    /// Answers the item that would be chosen now; nil when there is none or the menu is not open.
    Ref<NSMenuItem> highlightedItem() const { return send<"highlightedItem", Ref<NSMenuItem>>(); }

protected:
    /// Items that live on forget the menu.
    BRINDLE_EXPORT ~NSMenu();

private:
    friend struct MenuAccess;

    Ref<NSString> title_;
    std::vector<Ref<NSMenuItem>> items_;
    NSMenuItem* parent_ = nullptr; // whose submenu this is; the item holds the menu
    WeakRef<NSObject> delegate_;
    Ref<NSFont> font_; // nil: not set
    std::shared_ptr<MenuKeys> keys_; // null: to be made anew
    CGFloat minimumWidth_ = 0;
    bool autoenables_ = true;
    bool showsState_ = true;
};

}
