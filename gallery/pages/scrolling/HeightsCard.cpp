// SPDX-License-Identifier: Apache-2.0
#include "ScrollCards.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"
#include "viewkit/NSTableView+BRExtensions.h"

namespace gallery {

using namespace brindle;

template <> struct HeightsCard::Methods<struct Heights> {

    static constexpr NSInteger kRows = 60;

    static Ref<NSView> initWithFrame(HeightsCard& self, NSRect frame)
    {
        self.setHeading("Row heights"_ns);
        self.setCaption("Every third row grows, by degrees or at once"_ns);
        self.table_ = make<NSTableView>();
        self.table_->setHeaderView(nullptr);
        self.table_->setUsesAlternatingRowBackgroundColors(true);
        const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier("row"_ns);
        self.table_->addTableColumn(column.get());
        self.scroll_ = make<NSScrollView>();
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setBorderType(NSLineBorder);
        self.scroll_->setDocumentView(self.table_.get());
        self.addSubview(self.scroll_.get());
        self.table_->setDelegate(&self);
        self.table_->setDataSource(&self);
        self.chips_ = {
            addChip(&self, "By degrees"_ns, "G"_ns, sending<"growSlowly">(&self)),
            addChip(&self, "At once"_ns, "O"_ns, sending<"growAtOnce">(&self)),
        };
        return super<HeightsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(HeightsCard& self, NSSize size)
    {
        super<HeightsCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        NSRect body = self.bodyRect();
        layOutChips(
            { self.chips_[0].get(), self.chips_[1].get() }, takeTop(body, kChipHeight).origin);
        self.scroll_->setFrame(body);
    }

    static Ref<NSIndexSet> everyRow()
    {
        return NSIndexSet::cls().indexSetWithIndexesInRange({ 0, kRows });
    }
    static void growSlowly(HeightsCard& self)
    {
        self.grown_ = !self.grown_;
        self.table_->noteHeightOfRowsWithIndexesChanged(everyRow().get());
    }
    static void growAtOnce(HeightsCard& self)
    {
        self.grown_ = !self.grown_;
        noteHeightOfRowsWithIndexesChangedWithoutAnimation(self.table_, everyRow().get());
    }

    static NSInteger numberOfRows(HeightsCard&, NSTableView*) { return kRows; }
    static CGFloat heightOf(HeightsCard& self, NSTableView*, NSInteger row)
    {
        return self.grown_ && row % 3 == 0 ? 44 : 20;
    }
    static Ref<NSObject> value(HeightsCard&, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return NSString::cls().stringWithFormat("Row %ld"_ns, static_cast<long>(row));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "growSlowly", imp<growSlowly> },
            { "growAtOnce", imp<growAtOnce> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:heightOfRow:", imp<heightOf> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
        });
    }
};
BRINDLE_RECORD(HeightsCard, Heights)

}
