// SPDX-License-Identifier: Apache-2.0
#include "pages/formats/FormatsPage.h"

#include <gtest/gtest.h>

#include "PageParts.h"
#include "foundation/NSCalendar.h"

namespace gallery {

using namespace brindle;

namespace {

    NSInteger partOf(const Ref<NSDate>& date, NSCalendarUnit unit)
    {
        return NSCalendar::cls()
            .calendarWithIdentifier(NSCalendarIdentifierGregorian)
            ->component_fromDate(unit, date.get());
    }
    /// Presses the cell of a week and a column of the month.
    void pressDay(OpenGallery& gallery, int week, int column)
    {
        const Ref<MonthView> month = part<MonthView>(gallery);
        const NSSize size = month->bounds().size;
        const NSPoint place { size.width / 7 * (column + 0.5), size.height / 8 * (2.4 + week) };
        gallery.screen.pointer().click(
            month->window()->convertPointToScreen(month->convertPoint_toView(place, nullptr)), 1);
    }

}

TEST(GalleryFormats, ADayThatIsPressedIsShownAtTheSameTime)
{
    OpenGallery gallery;
    gallery.showPage("Numbers and dates");
    const Ref<DatesCard> card = part<DatesCard>(gallery);
    const Ref<NSDate> before = card->date();
    pressDay(gallery, 2, 3); // within every month
    EXPECT_EQ(partOf(card->date(), NSCalendarUnitWeekday), 4);
    EXPECT_EQ(partOf(card->date(), NSCalendarUnitMonth), partOf(before, NSCalendarUnitMonth));
    EXPECT_EQ(partOf(card->date(), NSCalendarUnitHour), partOf(before, NSCalendarUnitHour));
}
TEST(GalleryFormats, WeeksBeginAsTheLanguageHasThem)
{
    OpenGallery gallery;
    gallery.showPage("Numbers and dates");
    press(gallery, "Deutsch");
    pressDay(gallery, 2, 3);
    EXPECT_EQ(partOf(part<DatesCard>(gallery)->date(), NSCalendarUnitWeekday), 5);
}

}
