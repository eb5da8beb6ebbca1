// SPDX-License-Identifier: Apache-2.0
#include "ControlsPage.h"
#include "Tour.h"

namespace gallery {

void tourControls(Tour& tour)
{
    tour.picture("controls-light");
    tour.moveTo("Buttons", 130, 105);
    tour.type(u"\t");
    tour.settle();
    tour.picture("controls-hovered");
    tour.click("What holds views", 250, 72);
    tour.settle(0.4);
    tour.picture("controls-tabs");
    tour.darkPicture("controls-dark");
    tour.leastPicture("controls-least");
}

}
