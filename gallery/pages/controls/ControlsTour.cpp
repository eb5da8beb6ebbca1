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
    tour.darkPicture("controls-dark");
    tour.leastPicture("controls-least");
}

}
