// SPDX-License-Identifier: Apache-2.0
#include "Tour.h"
#include "UniquePage.h"

namespace gallery {

void tourUnique(Tour& tour)
{
    tour.picture("unique-light");
    tour.press("Save");
    tour.press("Read");
    tour.picture("unique-read");
    tour.press("Resolve");
    tour.type(u"\uF703"); // the Right arrow: the next list
    tour.picture("unique-resolved");
    tour.darkPicture("unique-dark");
    tour.leastPicture("unique-least");
}

}
