// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSButtonCell.h"
#include "foundation/NSGeometry.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSArray;
class NSMenuItem;

/// Where the mark at the right stands; `NSPopUpNoArrow` shows none.
enum NSPopUpArrowPosition : NSUInteger {
    NSPopUpNoArrow = 0,
    NSPopUpArrowAtCenter = 1,
    NSPopUpArrowAtBottom = 2,
};

/// Posted with the control, or the cell without one, before its menu opens.
inline constexpr StringConstant<"NSPopUpButtonCellWillPopUpNotification">
    NSPopUpButtonCellWillPopUpNotification;

/// Shows the selected item of a menu and opens the menu over it.
///
/// A cell that pulls down shows its first item as its title for good and opens the others below it.
/// Its menu is a new one from the start. Titles are unique among the items added by title: adding one again moves it to the
/// end. The selected item has the state on, as long as `altersStateOfSelectedItem`.
class NSPopUpButtonCell : public NSButtonCell {
    BRINDLE_OBJECT(NSPopUpButtonCell, NSButtonCell)

public:
    Ref<NSPopUpButtonCell> initTextCell_pullsDown(NSString* text, bool pullsDown)
    {
        return send<"initTextCell:pullsDown:", Ref<NSPopUpButtonCell>>(text, pullsDown);
    }
    bool pullsDown() const { return send<"pullsDown", bool>(); }
    void setPullsDown(bool pullsDown) { send<"setPullsDown:">(pullsDown); }
    bool autoenablesItems() const { return send<"autoenablesItems", bool>(); }
    void setAutoenablesItems(bool enables) { send<"setAutoenablesItems:">(enables); }
    /// Kept for those who draw by themselves; a menu that is pulled down opens below, or above where there is more room.
    NSRectEdge preferredEdge() const { return send<"preferredEdge", NSRectEdge>(); }
    void setPreferredEdge(NSRectEdge edge) { send<"setPreferredEdge:">(edge); }
    bool usesItemFromMenu() const { return send<"usesItemFromMenu", bool>(); }
    /// NO shows the cell's own title whatever is selected.
    void setUsesItemFromMenu(bool uses) { send<"setUsesItemFromMenu:">(uses); }
    bool altersStateOfSelectedItem() const { return send<"altersStateOfSelectedItem", bool>(); }
    void setAltersStateOfSelectedItem(bool alters)
    {
        send<"setAltersStateOfSelectedItem:">(alters);
    }
    NSPopUpArrowPosition arrowPosition() const
    {
        return send<"arrowPosition", NSPopUpArrowPosition>();
    }
    void setArrowPosition(NSPopUpArrowPosition position) { send<"setArrowPosition:">(position); }

    // ---- items; those that end in an index raise `NSRangeException` outside of the items

    /// - title: nil is "".
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

    // ---- selection; nil, -1 and unknown titles select nothing

    void selectItem(NSMenuItem* item) { send<"selectItem:">(item); }
    void selectItemAtIndex(NSInteger index) { send<"selectItemAtIndex:">(index); }
    void selectItemWithTitle(NSString* title) { send<"selectItemWithTitle:">(title); }
    /// - Returns: whether an item has that tag; without one the selection stays.
    bool selectItemWithTag(NSInteger tag) { return send<"selectItemWithTag:", bool>(tag); }
    Ref<NSMenuItem> selectedItem() const { return send<"selectedItem", Ref<NSMenuItem>>(); }
    NSInteger indexOfSelectedItem() const { return send<"indexOfSelectedItem", NSInteger>(); }
    Ref<NSString> titleOfSelectedItem() const
    {
        return send<"titleOfSelectedItem", Ref<NSString>>();
    }
    void synchronizeTitleAndSelectedItem() { send<"synchronizeTitleAndSelectedItem">(); }

    /// Opens the menu over the selected item, or below the cell; nothing without a view. Returns when it is closed.
    void performClickWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"performClickWithFrame:inView:">(frame, view);
    }
    void attachPopUpWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"attachPopUpWithFrame:inView:">(frame, view);
    }
    void dismissPopUp() { send<"dismissPopUp">(); }

private:
    Ref<NSMenuItem> selected_;
    NSRectEdge edge_ = NSMaxYEdge;
    NSPopUpArrowPosition arrow_ = NSPopUpArrowAtCenter;
    bool pullsDown_ = false;
    bool usesItem_ = true;
    bool altersState_ = true;
};

}
