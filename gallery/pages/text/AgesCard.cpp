// SPDX-License-Identifier: Apache-2.0
#include "AgesCard.h"

#include <algorithm>
#include <cmath>

#include "foundation/NSDate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSString.h"
#include "foundation/NSTimer.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "text/NSDate+HumanInterval.h"

namespace gallery {

using namespace brindle;

template <> struct AgesCard::Methods<struct Ages> {

    static constexpr double kMinute = 60;
    static constexpr double kHour = 60 * kMinute;
    static constexpr double kDay = 24 * kHour;
    static constexpr double kAges[] = { 2, 50, 20 * kMinute, 70 * kMinute, 9 * kHour, 30 * kHour,
        4 * kDay, 12 * kDay, 40 * kDay, 800 * kDay };
    static constexpr double kBadgeWidth = 62;
    static constexpr double kBadgeHeight = 22;
    static constexpr double kMostRowHeight = 46;

    static Ref<NSView> initWithFrame(AgesCard& self, NSRect frame)
    {
        self.setHeading("Intervals"_ns);
        self.setCaption("Terse, spoken, and the day; they age while you watch"_ns);
        self.minuteChip_ = addChip(&self, "+1 m"_ns, "m"_ns, sending<"ageMinute">(&self));
        self.hourChip_ = addChip(&self, "+1 h"_ns, "h"_ns, sending<"ageHour">(&self));
        self.dayChip_ = addChip(&self, "+1 d"_ns, "y"_ns, sending<"ageDay">(&self));
        self.nowChip_ = addChip(&self, "Reset"_ns, "r"_ns, sending<"startAnew">(&self));
        startAnew(self);
        NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
            1, true, [weak = WeakRef<AgesCard>(&self)](NSTimer* timer) {
                if (const Ref<AgesCard> card = weak.get())
                    card->setNeedsDisplay(true);
                else
                    timer->invalidate();
            });
        return super<AgesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(AgesCard& self, NSSize size)
    {
        super<AgesCard, "setFrameSize:">(self, size);
        layOutChips({ self.minuteChip_.get(), self.hourChip_.get(), self.dayChip_.get(),
                        self.nowChip_.get() },
            { 16, size.height - 44 });
    }

    static void startAnew(AgesCard& self)
    {
        const auto dates = NSMutableArray::cls().array();
        for (const double age : kAges)
            dates->addObject(NSDate::cls().dateWithTimeIntervalSinceNow(-age).get());
        self.dates_ = dates;
        self.setNeedsDisplay(true);
    }

    static void age(AgesCard& self, double seconds)
    {
        const auto dates = NSMutableArray::cls().array();
        for (NSDate* date : each<NSDate>(self.dates_))
            dates->addObject(date->dateByAddingTimeInterval(-seconds).get());
        self.dates_ = dates;
        self.setNeedsDisplay(true);
    }
    static void ageMinute(AgesCard& self) { age(self, kMinute); }
    static void ageHour(AgesCard& self) { age(self, kHour); }
    static void ageDay(AgesCard& self) { age(self, kDay); }

    static void drawDate(NSDate* date, NSRect row)
    {
        const Palette& colors = palette();
        const NSRect badge = NSMakeRect(
            row.origin.x, std::round(NSMidY(row) - kBadgeHeight / 2), kBadgeWidth, kBadgeHeight);
        fillRounded(badge, 7, colors.soft.get());
        drawCentered(humanIntervalSinceNow(date).get(), badge, Style::heading, colors.accent.get());
        drawText(humanIntervalAgoSinceNow(date).get(), { NSMaxX(badge) + 12, NSMidY(row) - 8 },
            Style::body, colors.text.get());
        const Ref<NSString> day = humanDay(date);
        drawText(day.get(),
            { NSMaxX(row) - sizeOf(day.get(), Style::caption).width, NSMidY(row) - 7 },
            Style::caption, colors.quietText.get());
    }

    static void drawBody(AgesCard& self, NSRect body)
    {
        const auto count = static_cast<double>(self.dates_->count());
        const double height
            = std::min(kMostRowHeight, std::floor((body.size.height - kChipHeight - 8) / count));
        NSRect row = NSMakeRect(body.origin.x, body.origin.y, body.size.width, height);
        for (NSDate* date : each<NSDate>(self.dates_)) {
            if (row.origin.y > body.origin.y)
                fill(NSMakeRect(row.origin.x, row.origin.y, row.size.width, 1),
                    palette().grid.get());
            drawDate(date, row);
            row.origin.y += height;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "startAnew", imp<startAnew> },
            { "ageMinute", imp<ageMinute> },
            { "ageHour", imp<ageHour> },
            { "ageDay", imp<ageDay> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(AgesCard, Ages)

}
