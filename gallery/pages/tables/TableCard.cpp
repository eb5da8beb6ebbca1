// SPDX-License-Identifier: Apache-2.0
#include "TableCard.h"

#include "appkit/NSTableHeaderView.h"
#include "appkit/NSTableView+Columns.h"
#include "appkit/NSTextFieldCell.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSSortDescriptor.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct TableCard::Methods<struct Rows> {

    static constexpr double kFieldHeight = 24;
    static constexpr double kFieldWidth = 220;

    // ---- making

    static void addColumn(TableCard& self, NSString* key, NSString* title, double width)
    {
        const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier(key);
        column->setTitle(title);
        column->setWidth(width);
        column->setSortDescriptorPrototype(
            NSSortDescriptor::cls().sortDescriptorWithKey_ascending(key, true).get());
        self.table_->addTableColumn(column.get());
    }
    static void makeTable(TableCard& self)
    {
        self.table_ = make<NSTableView>();
        self.table_->setUsesAlternatingRowBackgroundColors(true);
        self.table_->setAllowsMultipleSelection(true);
        self.table_->setAllowsTypeSelect(false); // letters are the page's
        addColumn(self, "name"_ns, "Name"_ns, 190);
        addColumn(self, "town"_ns, "Town"_ns, 120);
        addColumn(self, "born"_ns, "Born"_ns, 60);
        self.scroll_ = make<NSScrollView>();
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setBorderType(NSLineBorder);
        self.scroll_->setDocumentView(self.table_.get());
        self.addSubview(self.scroll_.get());
        setAutosaveName(self.table_, "GalleryPeople"_ns);
        setAutosaveTableColumns(self.table_, true);
        self.table_->setDataSource(&self);
    }
    /// With columns to be chosen a click on a title does both: it sorts by the column and chooses it.
    static void chooseColumns(TableCard& self)
    {
        const bool chooses = !allowsColumnSelection(self.table_);
        setAllowsColumnSelection(self.table_, chooses);
        self.columns_->setOn(chooses);
        if (!chooses)
            self.table_->deselectAll(nullptr);
    }
    static Ref<NSView> initWithFrame(TableCard& self, NSRect frame)
    {
        self.setHeading("Table"_ns);
        self.setCaption(
            "Click a title to sort, drag it to move the column, its edge to widen it"_ns);
        self.search_ = make<NSTextField>();
        maybe(self.search_->cell())
            ->send<"setPlaceholderString:">(static_cast<NSString*>("Search names and towns"_ns));
        self.search_->setDelegate(&self);
        self.addSubview(self.search_.get());
        self.columns_
            = addChip(&self, "Choose columns"_ns, "c"_ns, sending<"chooseColumns">(&self));
        makeTable(self);
        return super<TableCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(TableCard& self, NSSize size)
    {
        super<TableCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        NSRect body = self.bodyRect();
        NSRect field = takeTop(body, kFieldHeight);
        field.size.width = std::min(kFieldWidth, field.size.width);
        self.search_->setFrame(field);
        layOutChips({ self.columns_.get() },
            { NSMaxX(body) - self.columns_->fittingWidth(), field.origin.y - 2 });
        body.origin.y -= kCardGap - 8;
        body.size.height += kCardGap - 8;
        self.scroll_->setFrame(body);
    }
    static void drawBody(TableCard& self, NSRect body)
    {
        const Ref<NSString> count = NSString::cls().stringWithFormat(
            "%lu rows"_ns, static_cast<unsigned long>(self.people_.count()));
        drawText(count.get(), { body.origin.x + kFieldWidth + 12, body.origin.y + 5 },
            Style::caption, palette().quietText.get());
    }

    // ---- the data source

    static NSInteger numberOfRows(TableCard& self, NSTableView*)
    {
        return static_cast<NSInteger>(self.people_.count());
    }
    static Ref<NSObject> value(TableCard& self, NSTableView*, NSTableColumn* column, NSInteger row)
    {
        const Person& person = self.people_.at(static_cast<std::size_t>(row));
        const Ref<NSString> key = column->identifier();
        const std::string text = key->isEqual("name"_ns) ? person.name
            : key->isEqual("town"_ns)                    ? person.town
                                                         : std::to_string(person.born);
        return NSString::cls().stringWithUTF8String(text.c_str());
    }
    static void orderChanged(TableCard& self, NSTableView* table, NSArray*)
    {
        const Ref<NSArray> orders = table->sortDescriptors();
        for (NSUInteger i = orders->count(); i-- > 0;) { // what decides first is sorted last
            const Ref<NSSortDescriptor> order = cast<NSSortDescriptor>(orders->objectAtIndex(i));
            const Ref<NSString> key = order->key();
            self.people_.sortBy(key->isEqual("name"_ns) ? PersonKey::name
                    : key->isEqual("town"_ns)           ? PersonKey::town
                                                        : PersonKey::born,
                order->ascending());
        }
        table->reloadData();
    }

    // ---- the search field

    static void textChanged(TableCard& self, NSNotification*)
    {
        const Ref<NSString> text = self.search_->stringValue();
        self.people_.search(text->UTF8String());
        self.table_->reloadData();
        self.table_->scrollRowToVisible(0);
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
            { "tableView:sortDescriptorsDidChange:", imp<orderChanged> },
            { "controlTextDidChange:", imp<textChanged> },
            { "chooseColumns", imp<chooseColumns> },
        });
    }
};
BRINDLE_RECORD(TableCard, Rows)

}
