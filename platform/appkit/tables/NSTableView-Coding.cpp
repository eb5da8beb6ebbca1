// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSTableView+Columns.h"
#include "appkit/views/CodingPrivate.h"
#include "appkit/views/NSViewPrivate.h"

namespace brindle {

// - Shape: "NSIdentifier", "NSHeaderCell", "NSHeaderToolTip", "NSWidth", "NSMinWidth", "NSMaxWidth", and flags.
template <> struct NSTableColumn::Methods<struct Coding> {

    static void code(const NumberCoding& number, NSTableColumn& self)
    {
        number("NSMinWidth"_ns, self.minWidth_);
        number("NSMaxWidth"_ns, self.maxWidth_);
        number("NSResizingMask"_ns, self.resizingMask_);
        number("NSIsHidden"_ns, self.hidden_);
        number("NSIsEditable"_ns, self.editable_);
    }
    static void encode(NSTableColumn& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.identifier_.get(), "NSIdentifier"_ns);
        coder->encodeObject_forKey(self.headerCell_.get(), "NSHeaderCell"_ns);
        coder->encodeObject_forKey(self.headerToolTip_.get(), "NSHeaderToolTip"_ns);
        coder->encodeDouble_forKey(self.width_, "NSWidth"_ns);
        code({ coder, false }, self);
    }
    static CGFloat limit(CGFloat width, CGFloat ordinary)
    {
        return width >= 0 && std::isfinite(width) ? width : ordinary;
    }
    static Ref<NSObject> initWithCoder(NSTableColumn& self, NSCoder* coder)
    {
        const Ref<NSString> name = decode<NSString>(coder, "NSIdentifier"_ns);
        Ref<NSTableColumn> made = self.initWithIdentifier(name.get());
        if (!made)
            return nullptr;
        if (const Ref<NSCell> header = decode<NSCell>(coder, "NSHeaderCell"_ns))
            self.headerCell_ = header;
        self.headerToolTip_ = decode<NSString>(coder, "NSHeaderToolTip"_ns);
        code({ coder, true }, self);
        self.minWidth_ = limit(self.minWidth_, 10);
        self.maxWidth_ = limit(self.maxWidth_, 3.402823466e38);
        if (coder->containsValueForKey("NSWidth"_ns))
            self.setWidth(coder->decodeDoubleForKey("NSWidth"_ns));
        return made;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSTableColumn, Coding)

// - Shape: what every control writes, without the rows' views; "NSTableColumns", "NSHeaderView", colours, measures, flags.
template <> struct NSTableView::Methods<struct Coding> {

    static void code(const NumberCoding& number, TableState& s)
    {
        number("NSRowHeight"_ns, s.rowHeight);
        number("NSIntercellSpacingWidth"_ns, s.spacing.width);
        number("NSIntercellSpacingHeight"_ns, s.spacing.height);
        number("NSColumnAutoresizingStyle"_ns, s.autoresizing,
            NSTableViewFirstColumnOnlyAutoresizingStyle);
        number("NSGridStyleMask"_ns, s.gridStyle);
        number("NSAllowsMultipleSelection"_ns, s.multiple);
        number("NSAllowsEmptySelection"_ns, s.empty);
        number("NSAllowsColumnReordering"_ns, s.reorders);
        number("NSAllowsColumnResizing"_ns, s.resizes);
        number("NSAllowsTypeSelect"_ns, s.typeSelects);
        number("NSAlternatingRowBackgroundColors"_ns, s.alternates);
        number("NSAllowsColumnSelection"_ns, s.choosesColumns);
        number("NSAutosaveTableColumns"_ns, s.autosaves);
    }
    static void encode(NSTableView& self, NSCoder* coder)
    {
        TableAccess::forget(self);
        super<NSTableView, "encodeWithCoder:">(self, coder);
        TableState& s = TableAccess::state(self);
        coder->encodeObject_forKey(self.tableColumns().get(), "NSTableColumns"_ns);
        coder->encodeObject_forKey(s.header.get(), "NSHeaderView"_ns);
        coder->encodeObject_forKey(s.autosaveName.get(), "NSAutosaveName"_ns);
        coder->encodeObject_forKey(s.background.get(), "NSBackgroundColor"_ns);
        coder->encodeObject_forKey(s.grid.get(), "NSGridColor"_ns);
        coder->encodeConditionalObject_forKey(s.delegate.get().get(), "NSDelegate"_ns);
        coder->encodeConditionalObject_forKey(s.dataSource.get().get(), "NSDataSource"_ns);
        code({ coder, false }, s);
    }
    static double sane(double length, double ordinary)
    {
        return length >= 0 && length <= TableAccess::kMostHeight ? length : ordinary;
    }
    static Ref<NSObject> initWithCoder(NSTableView& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSTableView, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        TableState& s = TableAccess::state(self);
        code({ coder, true }, s);
        s.rowHeight = s.rowHeight > 0 ? sane(s.rowHeight, 17) : 17;
        s.spacing = { sane(s.spacing.width, 3), sane(s.spacing.height, 2) };
        s.background = decode<NSColor>(coder, "NSBackgroundColor"_ns);
        s.grid = decode<NSColor>(coder, "NSGridColor"_ns);
        for (const Ref<NSTableColumn>& column :
            decodeAll<NSTableColumn>(coder, "NSTableColumns"_ns))
            self.addTableColumn(column.get());
        setAutosaveName(self, decode<NSString>(coder, "NSAutosaveName"_ns).get());
        self.setHeaderView(decode<NSTableHeaderView>(coder, "NSHeaderView"_ns).get());
        self.setDelegate(coder->decodeObjectForKey("NSDelegate"_ns).get());
        self.setDataSource(coder->decodeObjectForKey("NSDataSource"_ns).get());
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSTableView, Coding)

}
