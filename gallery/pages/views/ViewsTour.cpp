// SPDX-License-Identifier: Apache-2.0
#include "Tour.h"
#include "ViewsPage.h"

namespace gallery {

void tourViews(Tour& tour)
{
    tour.picture("views-light");
    tour.press("Top");
    tour.press("Small");
    tour.press("Tags 3 to 5 off");
    tour.picture("views-changed");
    tour.press("Buttons off");
    tour.darkPicture("views-dark");
    tour.leastPicture("views-least");
}

}
