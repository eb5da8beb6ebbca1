// SPDX-License-Identifier: Apache-2.0
#include "MonthView.h"

#include <cmath>

#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "foundation/NSDateFormatter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MonthView::Methods<struct Month> {

    static constexpr NSInteger kWeek = 7;
    static constexpr NSInteger kRows = 8; // the name, the days of a week, and up to six weeks

    static bool isFlipped(MonthView&) { return true; }
    static bool mouseDownCanMoveWindow(MonthView&) { return false; }

    static NSRect cell(MonthView& self, NSInteger row, NSInteger column)
    {
        const NSSize size = self.bounds().size;
        const double width = size.width / kWeek;
        const double height = std::floor(size.height / kRows);
        return NSMakeRect(
            static_cast<double>(column) * width, static_cast<double>(row) * height, width, height);
    }
    static NSInteger part(MonthView& self, NSCalendarUnit unit, const Ref<NSDate>& date)
    {
        return self.calendar_->component_fromDate(unit, date.get());
    }
    static Ref<NSDate> shifted(MonthView& self, NSInteger days)
    {
        return self.calendar_->dateByAddingUnit_value_toDate_options(
            NSCalendarUnitDay, days, self.date_.get(), NSCalendarOptions {});
    }
    /// Answers in which column a day of a week stands, 1 for Sunday.
    static NSInteger columnOf(MonthView& self, NSInteger weekday)
    {
        const auto first = static_cast<NSInteger>(self.calendar_->firstWeekday());
        return (weekday - first + kWeek) % kWeek;
    }
    /// Answers how many cells of the first week are before the month.
    static NSInteger before(MonthView& self)
    {
        const Ref<NSDate> first = shifted(self, 1 - part(self, NSCalendarUnitDay, self.date_));
        return columnOf(self, part(self, NSCalendarUnitWeekday, first));
    }
    static NSInteger length(MonthView& self)
    {
        const NSRange days = self.calendar_->rangeOfUnit_inUnit_forDate(
            NSCalendarUnitDay, NSCalendarUnitMonth, self.date_.get());
        return static_cast<NSInteger>(days.length);
    }
    static NSRect cellOfDay(MonthView& self, NSInteger day)
    {
        const NSInteger place = before(self) + day - 1;
        return cell(self, 2 + place / kWeek, place % kWeek);
    }

    static void mouseDown(MonthView& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        const NSInteger today = part(self, NSCalendarUnitDay, self.date_);
        for (NSInteger day = 1; day <= length(self); ++day) {
            if (NSPointInRect(place, cellOfDay(self, day)) && self.chosen_)
                return self.chosen_(shifted(self, day - today).get());
        }
    }

    static void drawDays(MonthView& self, NSDateFormatter& formatter)
    {
        const Palette& colors = palette();
        const NSInteger chosen = part(self, NSCalendarUnitDay, self.date_);
        formatter.setDateFormat("d"_ns);
        for (NSInteger day = 1; day <= length(self); ++day) {
            const Ref<NSDate> date = shifted(self, day - chosen);
            const NSRect place = cellOfDay(self, day);
            const double width = std::min(place.size.width, 34.0);
            const NSRect mark = NSMakeRect(
                NSMidX(place) - width / 2, place.origin.y + 1, width, place.size.height - 2);
            if (day == chosen)
                fillRounded(mark, 5, colors.accent.get());
            else if (self.calendar_->isDateInToday(date.get()))
                strokeRounded(mark, 5, colors.accent.get());
            const bool isFree = self.calendar_->isDateInWeekend(date.get());
            const Ref<NSColor>& ink = day == chosen ? colors.accentText
                : isFree                            ? colors.quietText
                                                    : colors.text;
            drawCentered(
                formatter.stringFromDate(date.get()).get(), place, Style::caption, ink.get());
        }
    }
    static void drawRect(MonthView& self, NSRect)
    {
        if (!self.date_)
            return;
        const Palette& colors = palette();
        const Ref<NSDateFormatter> formatter = make<NSDateFormatter>();
        formatter->setLocale(self.calendar_->locale().get());
        formatter->setLocalizedDateFormatFromTemplate("yMMMM"_ns);
        const NSRect top = NSMakeRect(0, 0, self.bounds().size.width, cell(self, 0, 0).size.height);
        drawCentered(formatter->stringFromDate(self.date_.get()).get(), top, Style::group,
            colors.text.get());
        NSInteger weekday = 1;
        for (NSString* name : each<NSString>(formatter->shortWeekdaySymbols()))
            drawCentered(name, cell(self, 1, columnOf(self, weekday++)), Style::caption,
                colors.quietText.get());
        drawDays(self, *formatter);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "mouseDown:", imp<mouseDown> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(MonthView, Month)

void MonthView::show(NSDate* date, NSLocale* locale)
{
    date_ = date;
    calendar_ = NSCalendar::cls().calendarWithIdentifier(NSCalendarIdentifierGregorian);
    calendar_->setLocale(locale);
    setNeedsDisplay(true);
}

}
