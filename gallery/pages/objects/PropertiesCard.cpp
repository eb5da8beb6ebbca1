// SPDX-License-Identifier: Apache-2.0
#include "PropertiesCard.h"

#include <algorithm>
#include <cmath>

#include "Bike.h"
#include "PropertyCells.h"
#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"
#include "introspection/NSObject+EQProperties.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    struct Choice {
        const char* title;
        Class* (*cls)();
    };
    template <class T> Class* classOfType() { return T::cls(); }
    constexpr Choice kChoices[] = {
        { "Bike", classOfType<GalleryBike> },
        { "Bell", classOfType<GalleryBell> },
        { "Chip", classOfType<GalleryChip> },
        { "NSView", classOfType<NSView> },
        { "NSWindow", classOfType<NSWindow> },
    };

    constexpr double kLeastRowHeight = 17;
    constexpr double kMostRowHeight = 22;
    constexpr double kHeaderHeight = 24;
    constexpr double kTableTop = kChipHeight + 10;

    struct Column {
        NSString* title;
        double left; // of the card's width, 0 to 1
        double width;
    };
    const Column kColumns[] = {
        { "property"_ns, 0, 0.22 },
        { "type"_ns, 0.23, 0.24 },
        { "getter"_ns, 0.48, 0.14 },
        { "setter"_ns, 0.63, 0.15 },
        { "keeps"_ns, 0.79, 0.09 },
        { "archived"_ns, 0.89, 0.11 },
    };

}

template <> struct PropertiesCard::Methods<struct Listing> {

    static Ref<NSView> initWithFrame(PropertiesCard& self, NSRect frame)
    {
        self.setHeading("Properties"_ns);
        self.setCaption("Asked of the class while the program runs"_ns);
        for (NSUInteger i = 0; i < std::size(kChoices); ++i)
            self.chips_.push_back(addChip(&self, stringFrom(kChoices[i].title).get(), nullptr,
                [weak = WeakRef<PropertiesCard>(&self), i] {
                    if (const Ref<PropertiesCard> card = weak.get())
                        choose(*card, i);
                }));
        self.chips_[0]->setOn(true);
        return super<PropertiesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(PropertiesCard& self, NSSize size)
    {
        super<PropertiesCard, "setFrameSize:">(self, size);
        NSPoint place = self.bodyRect().origin;
        for (const Ref<GalleryChip>& chip : self.chips_) {
            layOutChips({ chip.get() }, place);
            place.x += chip->frame().size.width + 6;
        }
    }

    static void choose(PropertiesCard& self, NSUInteger index)
    {
        self.chips_[self.chosen_]->setOn(false);
        self.chips_[index]->setOn(true);
        self.chosen_ = index;
        self.firstRow_ = 0;
        self.setNeedsDisplay(true);
    }
    static void chooseNext(PropertiesCard& self, NSInteger places)
    {
        choose(self, placeInRing(self.chosen_, places, std::size(kChoices)));
    }

    static Ref<NSArray> names(PropertiesCard& self)
    {
        return propertyNames(kChoices[self.chosen_].cls());
    }

    static double rowsHeight(PropertiesCard& self)
    {
        return std::max(self.bodyRect().size.height - kTableTop - kHeaderHeight, 0.0);
    }
    /// Few rows have more room.
    static double rowHeight(PropertiesCard& self)
    {
        const auto count
            = static_cast<double>(std::max<NSUInteger>(maybe(names(self))->count(), 1));
        return std::clamp(std::floor(rowsHeight(self) / count), kLeastRowHeight, kMostRowHeight);
    }
    static NSUInteger shownRows(PropertiesCard& self)
    {
        return static_cast<NSUInteger>(rowsHeight(self) / rowHeight(self));
    }

    static void scrollWheel(PropertiesCard& self, NSEvent* event)
    {
        const NSUInteger count = maybe(names(self))->count();
        const NSUInteger last = count - std::min(count, shownRows(self));
        if (event->scrollingDeltaY() > 0)
            self.firstRow_ -= std::min<NSUInteger>(self.firstRow_, 1);
        else
            self.firstRow_ = std::min(self.firstRow_ + 1, last);
        self.setNeedsDisplay(true);
    }

    static void drawRow(Class* cls, NSString* name, NSRect row)
    {
        const Palette& colors = palette();
        const PropertyCells cells = cellsOf(cls, name);
        for (std::size_t i = 0; i < std::size(cells); ++i) {
            const Column& column = kColumns[i];
            drawFitted(cells[i].text.get(),
                { row.origin.x + column.left * row.size.width, NSMidY(row) - 7 },
                column.width * row.size.width, i == 1 ? Style::code : Style::caption,
                cells[i].isUsual ? colors.quietText.get() : colors.text.get());
        }
        const NSRect dot = NSMakeRect(
            row.origin.x + kColumns[5].left * row.size.width + 16, NSMidY(row) - 4, 8, 8);
        if (isArchived(cls, name))
            fillRounded(dot, 4, colors.accent.get());
        else
            strokeRounded(dot, 4, colors.quietText.get());
    }

    static void drawBody(PropertiesCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const double top = body.origin.y + kTableTop;
        for (const Column& column : kColumns)
            drawText(column.title, { body.origin.x + column.left * body.size.width, top + 2 },
                Style::caption, colors.quietText.get());
        fill(NSMakeRect(body.origin.x, top + kHeaderHeight - 4, body.size.width, 1),
            colors.grid.get());
        const Ref<NSArray> all = names(self);
        const NSUInteger count = maybe(all)->count();
        const double height = rowHeight(self);
        const NSUInteger end = std::min(count, self.firstRow_ + shownRows(self));
        if (end - self.firstRow_ < count) {
            const auto rows = NSString::cls().stringWithFormat(
                "%lu to %lu of %lu, turn the wheel"_ns, self.firstRow_ + 1, end, count);
            drawText(rows.get(),
                { NSMaxX(body) - sizeOf(rows.get(), Style::caption).width, body.origin.y - 25 },
                Style::caption, colors.quietText.get());
        }
        for (NSUInteger i = self.firstRow_; i < end; ++i)
            drawRow(kChoices[self.chosen_].cls(), cast<NSString>(all->objectAtIndex(i)).get(),
                NSMakeRect(body.origin.x,
                    top + kHeaderHeight + static_cast<double>(i - self.firstRow_) * height,
                    body.size.width, height));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "chooseNext:", imp<chooseNext> },
            { "scrollWheel:", imp<scrollWheel> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(PropertiesCard, Listing)

}
