// SPDX-License-Identifier: Apache-2.0
#include "TablesPage.h"
#include "Tour.h"

namespace gallery {

void tourTables(Tour& tour)
{
    tour.picture("tables-light");
    tour.moveTo("Menu table", 60, 150);
    tour.picture("tables-hover");
    tour.scroll("Menu table", -4);
    tour.picture("tables-hover-scrolled");
    tour.click("Menu table", 60, 200);
    tour.settle(1);
    tour.picture("tables-tapped");
    tour.click("Table", 60, 105);
    tour.settle(1);
    tour.click("Table", 60, 165);
    tour.settle(1);
    tour.scroll("Table", -30);
    tour.picture("tables-sorted");
    tour.click("Table", 60, 72);
    tour.type(u"lund");
    tour.settle(1);
    tour.picture("tables-searched");
    tour.moveTo("Menu table", 60, 150);
    tour.darkPicture("tables-dark");
    tour.leastPicture("tables-least");
}

}
