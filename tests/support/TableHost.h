// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "appkit/NSScrollView.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSTableHeaderView.h"
#include "appkit/NSTableView.h"
#include "foundation/NSArray.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Data source and delegate of tables in tests. It answers only those optional operations that have a function.
class TableHost : public NSObject {
    BRINDLE_OBJECT(TableHost, NSObject)

public:
    NSInteger rows_ = 0;
    std::function<NSInteger()> count_; // in place of `rows_`
    std::function<Ref<NSObject>(NSTableColumn&, NSInteger)> value_;
    std::function<void(NSObject*, NSTableColumn&, NSInteger)> setValue_;
    std::function<Ref<NSObject>(NSTableColumn&, NSInteger)> view_;
    std::function<Ref<NSObject>(NSInteger)> rowView_;
    std::function<CGFloat(NSInteger)> height_;
    std::function<bool(NSInteger)> mayBeSelected_;
    std::function<bool()> mayChange_;
    std::function<Ref<NSIndexSet>(NSIndexSet*)> proposal_;
    std::function<bool(NSInteger)> mayEdit_;
    std::function<Ref<NSString>(NSInteger)> word_;
    std::function<bool(NSInteger, NSInteger)> mayMove_;
    bool tellsRows_ = false; // views that come and go are in the log
    std::function<void()> rowGone_; // after the log
    std::string log_;
};

namespace test {

    Ref<NSIndexSet> indexes(std::initializer_list<NSUInteger> rows);
    Ref<NSTableColumn> column(NSString* identifier, double width);
    /// Answers all indexes with commas between them.
    std::string textOf(const Ref<NSIndexSet>& rows);

    /// A table of 100 by 190 in a scroll view without a border, without titles: ten rows of 19 points show.
    struct Table {
        explicit Table(NSInteger rows = 0, NSRect frame = NSMakeRect(0, 0, 100, 190));
        ~Table();
        Table(const Table&) = delete;
        Table& operator=(const Table&) = delete;

        NSTableView* operator->() const { return view.get(); }
        void select(std::initializer_list<NSUInteger> rows, bool extend = false);
        std::string selected() const { return textOf(view->selectedRowIndexes()); }
        /// Answers the first row that shows, and how many have views: "3+10".
        std::string shown() const;
        void scrollTo(CGFloat y) { scroll->contentView()->scrollToPoint({ 0, y }); }

        Ref<NSTableView> view;
        Ref<NSScrollView> scroll;
        Ref<TableHost> host;
    };

    /// A table on a screen, at its bottom left.
    struct TableTest : testing::Test {
        HeadlessScreen screen;
        Table t { 100 };

        void SetUp() override { screen.window().contentView()->addSubview(t.scroll.get()); }
    };

}

}
