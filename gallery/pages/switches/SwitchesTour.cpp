// SPDX-License-Identifier: Apache-2.0
#include "SwitchesPage.h"
#include "Tour.h"

namespace gallery {

void tourSwitches(Tour& tour)
{
    tour.picture("switches-light");
    tour.click("Slide switches", 160, 105);
    tour.type(u"\t");
    tour.settle();
    tour.picture("switches-focused");
    tour.darkPicture("switches-dark");
    tour.leastPicture("switches-least");
}

}
