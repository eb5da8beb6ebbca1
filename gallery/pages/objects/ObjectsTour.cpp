// SPDX-License-Identifier: Apache-2.0
#include "ObjectsPage.h"
#include "Tour.h"

namespace gallery {

void tourObjects(Tour& tour)
{
    tour.picture("objects-light");
    tour.press("Archive");
    tour.press("Change");
    tour.picture("objects-changed");
    tour.press("Restore");
    tour.scroll("The archive", -3);
    tour.type(u"\uF703\uF703\uF703"); // the Right arrow: another class
    tour.picture("objects-restored");
    tour.darkPicture("objects-dark");
    tour.leastPicture("objects-least");
}

}
