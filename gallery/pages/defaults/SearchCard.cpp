// SPDX-License-Identifier: Apache-2.0
#include "SearchCard.h"

#include <algorithm>
#include <cmath>

#include "Layers.h"
#include "appkit/NSEvent.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct SearchCard::Methods<struct Table> {

    static constexpr double kKeyWidth = 96;
    static constexpr double kAnswerWidth = 124;
    static constexpr double kGap = 8;
    static constexpr double kHeaderHeight = 26;
    static constexpr double kMostRowHeight = 74;

    static Ref<NSView> initWithFrame(SearchCard& self, NSRect frame)
    {
        self.setHeading("Search list"_ns);
        self.setCaption(
            "The first layer with a value answers. Click a cell to set it or take it out"_ns);
        self.column_ = 1;
        NSUserDefaults::cls().standardUserDefaults()->addSuiteNamed(kSuiteName);
        return super<SearchCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static NSRect cellRect(SearchCard& self, NSUInteger row, NSUInteger column)
    {
        const NSRect body = self.bodyRect();
        const double height = std::min(kMostRowHeight,
            std::floor(
                (body.size.height - kHeaderHeight) / static_cast<double>(sampleKeys().size())));
        const double width = std::floor((body.size.width - kKeyWidth - kAnswerWidth) / kLayerCount);
        return NSMakeRect(body.origin.x + kKeyWidth + static_cast<double>(column) * width,
            body.origin.y + kHeaderHeight + static_cast<double>(row) * height, width - kGap,
            height - kGap);
    }

    static void toggle(SearchCard& self)
    {
        gallery::toggle(static_cast<Layer>(self.column_), sampleKeys()[self.row_]);
        self.setNeedsDisplay(true);
    }

    static void moveBy(SearchCard& self, NSInteger right, NSInteger down)
    {
        self.column_ = placeInRing(self.column_, right, kLayerCount);
        self.row_ = placeInRing(self.row_, down, sampleKeys().size());
        self.setNeedsDisplay(true);
    }

    static void mouseDown(SearchCard& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (NSUInteger row = 0; row < sampleKeys().size(); ++row)
            for (NSUInteger column = 0; column < kLayerCount; ++column)
                if (NSPointInRect(place, cellRect(self, row, column))) {
                    self.row_ = row;
                    self.column_ = column;
                    return self.toggle();
                }
    }

    static void drawCell(SearchCard& self, NSUInteger row, NSUInteger column, bool isAnswer)
    {
        const Palette& colors = palette();
        const auto layer = static_cast<Layer>(column);
        const NSRect cell = cellRect(self, row, column);
        const Ref<NSObject> value = valueIn(layer, sampleKeys()[row].key);
        if (isAnswer)
            fillRounded(cell, 7, colors.accent.get());
        else if (value)
            fillRounded(cell, 7, colors.soft.get());
        else
            strokeRounded(cell, 7, colors.grid.get());
        if (row == self.row_ && column == self.column_)
            strokeRounded(inset(cell, -3), 10, colors.accent.get());
        if (value)
            drawCentered(textOf(value.get(), sampleKeys()[row]).get(), cell, Style::body,
                isAnswer ? colors.accentText.get() : colors.text.get());
    }

    static void drawRow(SearchCard& self, NSUInteger row)
    {
        const Palette& colors = palette();
        const SampleKey& sample = sampleKeys()[row];
        const NSRect first = cellRect(self, row, 0);
        const double left = self.bodyRect().origin.x;
        drawText(sample.key, { left, NSMidY(first) - 8 }, Style::heading, colors.text.get());
        bool isAnswered = false;
        for (NSUInteger column = 0; column < kLayerCount; ++column) {
            const bool hasValue
                = static_cast<bool>(valueIn(static_cast<Layer>(column), sample.key));
            drawCell(self, row, column, hasValue && !isAnswered);
            isAnswered = isAnswered || hasValue;
        }
        const double right = NSMaxX(cellRect(self, row, kLayerCount - 1)) + 2 * kGap;
        drawText(answerOf(sample).get(), { right, NSMidY(first) - 18 }, Style::figure,
            isAnswered ? colors.accent.get() : colors.quietText.get());
        drawText(
            sample.typed, { right, NSMidY(first) + 6 }, Style::caption, colors.quietText.get());
    }

    static void drawBody(SearchCard& self, NSRect body)
    {
        NSString* const titles[kLayerCount] = { "1  Arguments"_ns, "2  Application"_ns,
            "3  Suite"_ns, "4  Global"_ns, "5  Registered"_ns };
        for (NSUInteger column = 0; column < kLayerCount; ++column)
            drawText(titles[column], { cellRect(self, 0, column).origin.x, body.origin.y },
                Style::caption, palette().quietText.get());
        for (NSUInteger row = 0; row < sampleKeys().size(); ++row)
            drawRow(self, row);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "toggle", imp<toggle> },
            { "moveBy:down:", imp<moveBy> },
            { "mouseDown:", imp<mouseDown> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(SearchCard, Table)

}
