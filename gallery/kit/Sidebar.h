// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "appkit/NSScrollView.h"
#include "appkit/NSSearchField.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSTableView.h"
#include "runtime/Block.h"

namespace gallery {

/// A row of the sidebar: a page, or the name of several below it.
struct SidebarRow {
    std::string name;
    std::string note; ///< what is shown below the name, or nothing
    brindle::NSInteger page = -1; ///< -1 for a heading
};

/// The list of pages at the window's left, in groups, and a field above that searches them. Flipped.
///
/// In the list the arrows, Home, End and letters choose, Return and Right go to the page. In the field Down and Up choose
/// among what was found, Return opens it, Escape ends the search.
class GallerySidebar : public brindle::NSView {
    BRINDLE_OBJECT(GallerySidebar, brindle::NSView)

public:
    /// Shows all pages. - chosen: called with the index of one that is chosen by the pointer or by keys.
    /// - entered: called when the keyboard is to go to the page.
    void setChosen_entered(const brindle::Block<void(brindle::NSUInteger)>& chosen,
        const brindle::Block<void()>& entered)
    {
        send<"setChosen:entered:">(chosen.get(), entered.get());
    }
    brindle::NSUInteger selection() const { return send<"selection", brindle::NSUInteger>(); }
    void setSelection(brindle::NSUInteger index) { send<"setSelection:">(index); }
    brindle::Ref<brindle::NSSearchField> searchField() const
    {
        return send<"searchField", brindle::Ref<brindle::NSSearchField>>();
    }
    brindle::Ref<brindle::NSTableView> list() const
    {
        return send<"list", brindle::Ref<brindle::NSTableView>>();
    }
    /// Whether the keyboard is in the field or in the list.
    bool hasKeyboard() const { return send<"hasKeyboard", bool>(); }
    /// Gives the keyboard to the field.
    void beginSearch() { send<"beginSearch">(); }

private:
    brindle::Ref<brindle::NSSearchField> searchField_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTableView> list_;
    brindle::Block<void(brindle::NSUInteger)> chosen_;
    brindle::Block<void()> entered_;
    std::vector<SidebarRow> rows_;
    brindle::NSUInteger selection_ = 0;
    bool showing_ = false; // rows are being chosen by the program
};

}
