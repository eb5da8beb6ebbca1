// SPDX-License-Identifier: Apache-2.0
#include "TablesPage.h"
#include "Tour.h"

namespace gallery {

namespace {

    /// Turns the wheel where the pointer is.
    void wheel(Tour& tour, double lines)
    {
        tour.display().scroll(0, lines * 10);
        tour.settle(1);
    }

}

void tourTables(Tour& tour)
{
    tour.picture("tables-light");
    tour.moveTo("Menu table", 60, 150);
    tour.picture("tables-hover");
    wheel(tour, -5);
    tour.picture("tables-hover-scrolled");
    tour.click("Menu table", 60, 200);
    tour.settle(1);
    tour.picture("tables-tapped");
    tour.click("Table", 60, 105);
    tour.settle(1);
    tour.click("Table", 60, 165);
    tour.settle(1);
    wheel(tour, -300);
    tour.picture("tables-sorted");
    tour.click("Table", 60, 72);
    tour.type(u"lund");
    tour.settle(1);
    tour.picture("tables-searched");
    tour.click("Table", 60, 184);
    tour.moveTo("Menu table", 60, 150);
    tour.darkPicture("tables-dark");
    tour.press("Choose columns");
    tour.click("Table", 260, 105);
    tour.settle(1);
    tour.picture("tables-columns");
    tour.darkPicture("tables-columns-dark");
    tour.press("Choose columns");
    tour.leastPicture("tables-least");
}

}
