// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSTabViewItem.h"
#include "NSView+ToolTips.h"

namespace brindle {

enum NSTabViewType : NSUInteger {
    NSTopTabsBezelBorder = 0,
    NSLeftTabsBezelBorder = 1, ///< one under the other, with upright labels
    NSBottomTabsBezelBorder = 2,
    NSRightTabsBezelBorder = 3, ///< the same at the other side
    NSNoTabsBezelBorder = 4,
    NSNoTabsLineBorder = 5,
    NSNoTabsNoBorder = 6,
};

/// Shows one of several views, which the user chooses by tabs.
///
/// A press on a tab selects it, and so do the arrow keys along the tabs while they have the keyboard. The first item that is added is
/// selected. The delegate, which is not kept, is asked and told by name: `tabView:shouldSelectTabViewItem:`,
/// `tabView:willSelectTabViewItem:`, `tabView:didSelectTabViewItem:`, `tabViewDidChangeNumberOfTabViewItems:`.
/// Thread: main.
class NSTabView : public NSView {
    BRINDLE_OBJECT(NSTabView, NSView)

public:
    // ---- items

    /// - Nil: ignored. - Raises: `NSInvalidArgumentException` for an item of another tab view.
    void addTabViewItem(NSTabViewItem* item) { send<"addTabViewItem:">(item); }
    /// - Raises: `NSRangeException` past the end.
    void insertTabViewItem_atIndex(NSTabViewItem* item, NSInteger index)
    {
        send<"insertTabViewItem:atIndex:">(item, index);
    }
    /// Removes an item; where it was selected the next one is, or else the one before.
    void removeTabViewItem(NSTabViewItem* item) { send<"removeTabViewItem:">(item); }
    NSInteger numberOfTabViewItems() const { return send<"numberOfTabViewItems", NSInteger>(); }
    Ref<NSArray> tabViewItems() const { return send<"tabViewItems", Ref<NSArray>>(); }
    /// - Raises: `NSRangeException` outside.
    Ref<NSTabViewItem> tabViewItemAtIndex(NSInteger index) const
    {
        return send<"tabViewItemAtIndex:", Ref<NSTabViewItem>>(index);
    }
    /// Answers `NSNotFound` for what is no item of this view.
    NSInteger indexOfTabViewItem(NSTabViewItem* item) const
    {
        return send<"indexOfTabViewItem:", NSInteger>(item);
    }
    NSInteger indexOfTabViewItemWithIdentifier(NSObject* identifier) const
    {
        return send<"indexOfTabViewItemWithIdentifier:", NSInteger>(identifier);
    }
    /// Answers the item whose tab lies at a point of the view, or nil.
    Ref<NSTabViewItem> tabViewItemAtPoint(NSPoint point) const
    {
        return send<"tabViewItemAtPoint:", Ref<NSTabViewItem>>(point);
    }

    // ---- selecting

    Ref<NSTabViewItem> selectedTabViewItem() const
    {
        return send<"selectedTabViewItem", Ref<NSTabViewItem>>();
    }
    /// - Raises: `NSInvalidArgumentException` for an item of another tab view; nil is ignored.
    void selectTabViewItem(NSTabViewItem* item) { send<"selectTabViewItem:">(item); }
    /// - Raises: `NSRangeException` outside.
    void selectTabViewItemAtIndex(NSInteger index) { send<"selectTabViewItemAtIndex:">(index); }
    /// - Raises: `NSRangeException` when no item has the identifier.
    void selectTabViewItemWithIdentifier(NSObject* identifier)
    {
        send<"selectTabViewItemWithIdentifier:">(identifier);
    }
    void selectFirstTabViewItem(NSObject* sender) { send<"selectFirstTabViewItem:">(sender); }
    void selectLastTabViewItem(NSObject* sender) { send<"selectLastTabViewItem:">(sender); }
    void selectNextTabViewItem(NSObject* sender) { send<"selectNextTabViewItem:">(sender); }
    void selectPreviousTabViewItem(NSObject* sender) { send<"selectPreviousTabViewItem:">(sender); }

    // ---- look

    NSTabViewType tabViewType() const { return send<"tabViewType", NSTabViewType>(); }
    void setTabViewType(NSTabViewType type) { send<"setTabViewType:">(type); }
    Ref<NSFont> font() const { return send<"font", Ref<NSFont>>(); }
    void setFont(NSFont* font) { send<"setFont:">(font); }
    NSControlSize controlSize() const { return send<"controlSize", NSControlSize>(); }
    void setControlSize(NSControlSize size) { send<"setControlSize:">(size); }
    bool allowsTruncatedLabels() const { return send<"allowsTruncatedLabels", bool>(); }
    void setAllowsTruncatedLabels(bool allows) { send<"setAllowsTruncatedLabels:">(allows); }
    bool drawsBackground() const { return send<"drawsBackground", bool>(); }
    void setDrawsBackground(bool draws) { send<"setDrawsBackground:">(draws); }
    /// Answers where the views of the items lie.
    NSRect contentRect() const { return send<"contentRect", NSRect>(); }
    /// Answers the least size that shows all tabs whole.
    NSSize minimumSize() const { return send<"minimumSize", NSSize>(); }

    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

protected:
    /// Items that live on forget the tab view.
    BRINDLE_EXPORT ~NSTabView();

private:
    friend struct TabAccess;

    std::vector<Ref<NSTabViewItem>> items_;
    Ref<NSTabViewItem> selected_;
    Ref<NSTabViewItem> pressed_; // under the button that is down
    std::vector<NSToolTipTag> tips_; // of the tabs
    Ref<NSFont> font_;
    WeakRef<NSObject> delegate_;
    NSTabViewType type_ = NSTopTabsBezelBorder;
    NSControlSize size_ = NSControlSizeRegular;
    bool truncates_ = false;
    bool drawsBackground_ = true;
    bool focusedByPointer_ = false; // no ring then: a ring shows where the keyboard acts
};

}
