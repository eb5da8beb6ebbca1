// SPDX-License-Identifier: Apache-2.0
#include "ChoosingPage.h"
#include "Tour.h"

namespace gallery {

void tourChoosing(Tour& tour)
{
    tour.picture("choosing-light");
    tour.click("Segments", 270, 72);
    tour.click("Tabs", 100, 72);
    tour.type(u"\t");
    tour.settle(0.5);
    tour.picture("choosing-top");
    tour.click("Tabs", 330, 72);
    tour.settle(0.5);
    tour.darkPicture("choosing-dark");
    tour.leastPicture("choosing-least");
}

}
