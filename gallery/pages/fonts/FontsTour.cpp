// SPDX-License-Identifier: Apache-2.0
#include "FontsPage.h"
#include "Tour.h"

namespace gallery {

void tourFonts(Tour& tour)
{
    tour.picture("fonts-light");
    tour.press("Bold");
    tour.press("Italic");
    tour.darkPicture("fonts-dark");
    tour.click("Families", 60, 145);
    tour.press("Italic");
    tour.press("Heavier");
    tour.press("Heavier"); // there may be no such face
    tour.picture("fonts-other");
    tour.leastPicture("fonts-least");
}

}
