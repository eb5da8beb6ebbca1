// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSButton.h"
#include "NSPopUpButtonCell.h"

namespace brindle {

/// A button that shows one of several choices and opens a menu of them, or, pulling down, a menu of commands under its title.
///
/// The action of the button is sent after a choice, unless the chosen item has an action of its own. Space, Up and Down open the menu
/// of the focused button. Everything about the items goes to the cell.
class NSPopUpButton : public NSButton {
    BRINDLE_OBJECT(NSPopUpButton, NSButton)

public:
    Ref<NSPopUpButton> initWithFrame_pullsDown(NSRect frame, bool pullsDown)
    {
        return send<"initWithFrame:pullsDown:", Ref<NSPopUpButton>>(frame, pullsDown);
    }
    bool pullsDown() const { return send<"pullsDown", bool>(); }
    void setPullsDown(bool pullsDown) { send<"setPullsDown:">(pullsDown); }
    bool autoenablesItems() const { return send<"autoenablesItems", bool>(); }
    void setAutoenablesItems(bool enables) { send<"setAutoenablesItems:">(enables); }
    NSRectEdge preferredEdge() const { return send<"preferredEdge", NSRectEdge>(); }
    void setPreferredEdge(NSRectEdge edge) { send<"setPreferredEdge:">(edge); }

    void addItemWithTitle(NSString* title) { send<"addItemWithTitle:">(title); }
    void addItemsWithTitles(NSArray* titles) { send<"addItemsWithTitles:">(titles); }
    void insertItemWithTitle_atIndex(NSString* title, NSInteger index)
    {
        send<"insertItemWithTitle:atIndex:">(title, index);
    }
    void removeItemWithTitle(NSString* title) { send<"removeItemWithTitle:">(title); }
    void removeItemAtIndex(NSInteger index) { send<"removeItemAtIndex:">(index); }
    void removeAllItems() { send<"removeAllItems">(); }

    Ref<NSArray> itemArray() const { return send<"itemArray", Ref<NSArray>>(); }
    NSInteger numberOfItems() const { return send<"numberOfItems", NSInteger>(); }
    Ref<NSArray> itemTitles() const { return send<"itemTitles", Ref<NSArray>>(); }
    Ref<NSString> itemTitleAtIndex(NSInteger index) const
    {
        return send<"itemTitleAtIndex:", Ref<NSString>>(index);
    }
    Ref<NSMenuItem> itemAtIndex(NSInteger index) const
    {
        return send<"itemAtIndex:", Ref<NSMenuItem>>(index);
    }
    Ref<NSMenuItem> itemWithTitle(NSString* title) const
    {
        return send<"itemWithTitle:", Ref<NSMenuItem>>(title);
    }
    Ref<NSMenuItem> lastItem() const { return send<"lastItem", Ref<NSMenuItem>>(); }
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
    NSInteger indexOfItemWithTarget_andAction(NSObject* target, SEL action) const
    {
        return send<"indexOfItemWithTarget:andAction:", NSInteger>(target, action);
    }

    void selectItem(NSMenuItem* item) { send<"selectItem:">(item); }
    void selectItemAtIndex(NSInteger index) { send<"selectItemAtIndex:">(index); }
    void selectItemWithTitle(NSString* title) { send<"selectItemWithTitle:">(title); }
    bool selectItemWithTag(NSInteger tag) { return send<"selectItemWithTag:", bool>(tag); }
    Ref<NSMenuItem> selectedItem() const { return send<"selectedItem", Ref<NSMenuItem>>(); }
    NSInteger indexOfSelectedItem() const { return send<"indexOfSelectedItem", NSInteger>(); }
    /// Answers the tag of the selected item; -1 without one.
    NSInteger selectedTag() const { return send<"selectedTag", NSInteger>(); }
    Ref<NSString> titleOfSelectedItem() const
    {
        return send<"titleOfSelectedItem", Ref<NSString>>();
    }
    void synchronizeTitleAndSelectedItem() { send<"synchronizeTitleAndSelectedItem">(); }
};

}
