// SPDX-License-Identifier: Apache-2.0
#include "StripPage.h"
#include "Tour.h"

namespace gallery {

void tourStrip(Tour& tour)
{
    tour.settle(0.1);
    tour.picture("strip-light");
    tour.moveTo("Widgets", 150, 110);
    tour.settle(0.12);
    tour.picture("strip-fading");
    tour.settle(0.3);
    tour.moveTo("Overlay", 150, 110);
    tour.settle(0.3);
    tour.picture("strip-overlay");
    tour.darkPicture("strip-dark");
    tour.moveTo("Overlay", 20, 20);
    tour.settle(0.3);
    tour.leastPicture("strip-least");
}

}
