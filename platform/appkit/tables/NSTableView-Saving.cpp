// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSTableView+Columns.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUserDefaults.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    Ref<NSUserDefaults> store() { return NSUserDefaults::cls().standardUserDefaults(); }
    Ref<NSString> keyOf(const TableState& state)
    {
        return "NSTableView Columns "_ns->stringByAppendingString(state.autosaveName.get());
    }
    bool saves(const TableState& state) { return state.autosaves && state.autosaveName; }

    template <class T> Ref<T> valueIn(NSDictionary& facts, NSString* key)
    {
        Ref<NSObject> value = facts.objectForKey(key);
        return maybe(value)->isKindOfClass(T::cls()) ? cast<T>(std::move(value)) : nullptr;
    }
    Ref<NSDictionary> factsOf(NSTableColumn& column)
    {
        const Ref<NSMutableDictionary> facts = make<NSMutableDictionary>();
        facts->setObject_forKey(column.identifier().get(), "Identifier"_ns);
        facts->setObject_forKey(NSNumber::cls().numberWithDouble(column.width()).get(), "Width"_ns);
        facts->setObject_forKey(
            NSNumber::cls().numberWithBool(column.isHidden()).get(), "Hidden"_ns);
        return facts;
    }

}

void TableAccess::saveColumns(NSTableView& table)
{
    const TableState& s = state(table);
    if (!saves(s) || s.restoring)
        return;
    const Ref<NSMutableArray> all = make<NSMutableArray>();
    for (const Ref<NSTableColumn>& column : s.columns) {
        if (column->identifier())
            all->addObject(factsOf(*column).get());
    }
    store()->setObject_forKey(all.get(), keyOf(s).get());
}

// Columns that nothing was kept of stay behind the others. What is no width, and whoever is not there any more, is passed over.
void TableAccess::restoreColumns(NSTableView& table)
{
    TableState& s = state(table);
    if (!saves(s) || s.restoring)
        return;
    const Ref<NSTableView> alive(&table);
    const FlagScope scope(s.restoring);
    NSInteger place = 0;
    for (NSObject* item : each(store()->arrayForKey(keyOf(s).get()))) {
        if (!item->isKindOfClass(NSDictionary::cls()))
            continue;
        auto& facts = static_cast<NSDictionary&>(*item);
        const Ref<NSTableColumn> column
            = table.tableColumnWithIdentifier(valueIn<NSString>(facts, "Identifier"_ns).get());
        const NSInteger from = column ? indexOf(table, *column) : -1;
        if (from < place)
            continue; // none, or named twice
        table.moveColumn_toColumn(from, place++);
        if (const Ref<NSNumber> width = valueIn<NSNumber>(facts, "Width"_ns))
            column->setWidth(width->doubleValue());
        if (const Ref<NSNumber> hidden = valueIn<NSNumber>(facts, "Hidden"_ns))
            column->setHidden(hidden->boolValue());
    }
}

template <> struct NSTableView::Methods<struct Saving> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    static Ref<NSString> name(NSTableView& self) { return of(self).autosaveName; }
    static void setName(NSTableView& self, NSString* name)
    {
        of(self).autosaveName
            = maybe(name)->length() ? cast<NSString>(name->copy()) : Ref<NSString>();
        TableAccess::restoreColumns(self);
    }
    static bool autosaves(NSTableView& self) { return of(self).autosaves; }
    static void setAutosaves(NSTableView& self, bool saves)
    {
        of(self).autosaves = saves;
        TableAccess::restoreColumns(self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "autosaveName", imp<name> },
            { "setAutosaveName:", imp<setName> },
            { "autosaveTableColumns", imp<autosaves> },
            { "setAutosaveTableColumns:", imp<setAutosaves> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Saving)

}
