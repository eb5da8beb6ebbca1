// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableColumn.h"

#include <cmath>

#include "NSTableViewPrivate.h"
#include "foundation/NSSortDescriptor.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableColumn::Methods<struct Basics> {

    static Ref<NSObject> init(NSTableColumn& self) { return self.initWithIdentifier(""_ns); }
    static Ref<NSTableColumn> initWithIdentifier(NSTableColumn& self, NSString* identifier)
    {
        if (!super<NSTableColumn, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setIdentifier(identifier);
        self.headerCell_ = cast<NSCell>(alloc<NSTableHeaderCell>()->initTextCell(""_ns));
        return &self;
    }
    static void setIdentifier(NSTableColumn& self, NSString* identifier)
    {
        if (identifier && !identifier->isKindOfClass(NSString::cls()))
            raise(
                "NSInvalidArgumentException", "*** -[NSTableColumn setIdentifier:]: not a string");
        self.identifier_ = identifier ? cast<NSString>(identifier->copy()) : nullptr;
    }
    static Ref<NSTableView> tableView(NSTableColumn& self) { return self.tableView_; }

    // ---- width

    static CGFloat fitting(NSTableColumn& self, CGFloat width)
    {
        return std::max(std::min(width, self.maxWidth_), self.minWidth_);
    }
    static void setWidth(NSTableColumn& self, CGFloat width)
    {
        if (std::isnan(width))
            return;
        const CGFloat before = std::exchange(self.width_, fitting(self, width));
        if (self.width_ != before)
            TableAccess::columnResized(self, before);
    }
    template <auto Limit> static void setLimit(NSTableColumn& self, CGFloat width)
    {
        if (std::isnan(width))
            return;
        self.*Limit
            = std::clamp(width, 0.0, static_cast<double>(std::numeric_limits<float>::max()));
        self.setWidth(self.width_);
    }
    static void sizeToFit(NSTableColumn& self)
    {
        self.setWidth(std::ceil(maybe(self.headerCell())->cellSize().width));
    }
    static void setHidden(NSTableColumn& self, bool hidden)
    {
        if (self.hidden_ == hidden)
            return;
        self.hidden_ = hidden;
        const Ref<NSTableView> table = self.tableView_;
        if (!table)
            return;
        TableAccess::columnsChanged(*table);
        TableAccess::saveColumns(*table);
    }

    // ---- header

    static void headerChanged(NSTableColumn& self)
    {
        const Ref<NSTableView> table = self.tableView_;
        maybe(maybe(table)->headerView())->setNeedsDisplay(true);
    }
    static Ref<NSTableHeaderCell> headerCell(NSTableColumn& self)
    {
        return cast<NSTableHeaderCell>(self.headerCell_);
    }
    static void setHeaderCell(NSTableColumn& self, NSCell* cell)
    {
        if (!cell)
            return;
        if (!cell->isKindOfClass(NSCell::cls()))
            raise("NSInvalidArgumentException", "*** -[NSTableColumn setHeaderCell:]: not a cell");
        self.headerCell_ = cell;
        headerChanged(self);
    }
    static Ref<NSString> title(NSTableColumn& self)
    {
        return maybe(self.headerCell_)->stringValue();
    }
    static void setTitle(NSTableColumn& self, NSString* title)
    {
        maybe(self.headerCell_)->setStringValue(title ? title : ""_ns);
        headerChanged(self);
    }
    static void setPrototype(NSTableColumn& self, NSSortDescriptor* descriptor)
    {
        if (descriptor && !descriptor->isKindOfClass(NSSortDescriptor::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableColumn setSortDescriptorPrototype:]: not a sort descriptor");
        self.sortDescriptorPrototype_ = descriptor;
        headerChanged(self);
    }

    static void table(Builder& t)
    {
        using C = NSTableColumn;
        t.methods({
            { "init", imp<init> },
            { "initWithIdentifier:", imp<initWithIdentifier> },
            { "setIdentifier:", imp<setIdentifier> },
            { "tableView", imp<tableView> },
            { "setWidth:", imp<setWidth> },
            { "setMinWidth:", imp<setLimit<&C::minWidth_>> },
            { "setMaxWidth:", imp<setLimit<&C::maxWidth_>> },
            { "sizeToFit", imp<sizeToFit> },
            { "setHidden:", imp<setHidden> },
            { "headerCell", imp<headerCell> },
            { "setHeaderCell:", imp<setHeaderCell> },
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "setSortDescriptorPrototype:", imp<setPrototype> },
        });
        t.properties({
            property<&C::identifier_>("identifier", nonatomic, copied),
            property<&C::width_>("width", nonatomic),
            property<&C::minWidth_>("minWidth", nonatomic),
            property<&C::maxWidth_>("maxWidth", nonatomic),
            property<&C::resizingMask_>("resizingMask", nonatomic),
            property<&C::hidden_>("hidden", nonatomic, getter("isHidden")),
            property<&C::editable_>("editable", nonatomic, getter("isEditable")),
            property<&C::headerCell_>("headerCell", nonatomic),
            property<&C::headerToolTip_>("headerToolTip", nonatomic, copied),
            property<&C::sortDescriptorPrototype_>("sortDescriptorPrototype", nonatomic, copied),
            computed<Ref<NSString>>("title", nonatomic, copied),
        });
        t.conformsTo({ "NSUserInterfaceItemIdentification" });
    }
};
BRINDLE_RECORD(NSTableColumn, Basics)

}
