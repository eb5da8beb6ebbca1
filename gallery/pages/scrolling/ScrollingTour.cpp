// SPDX-License-Identifier: Apache-2.0
#include "ScrollingPage.h"
#include "Tour.h"

namespace gallery {

void tourScrolling(Tour& tour)
{
    tour.picture("scrolling-light");
    tour.moveTo("Position", 60, 200);
    for (int step = 0; step < 3; ++step) {
        tour.display().scroll(0, -50);
        tour.settle(0.1);
    }
    tour.picture("scrolling-live");
    tour.settle(1);
    tour.press("Portion 1.0");
    tour.settle(1);
    tour.press("By degrees");
    tour.settle(0.1);
    tour.picture("scrolling-moving");
    tour.settle(1);
    tour.picture("scrolling-grown");
    tour.press("At once");
    tour.press("Bottom");
    tour.settle(1);
    tour.darkPicture("scrolling-dark");
    tour.leastPicture("scrolling-least");
}

}
