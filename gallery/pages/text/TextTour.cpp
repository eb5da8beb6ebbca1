// SPDX-License-Identifier: Apache-2.0
#include "TextPage.h"
#include "Tour.h"

namespace gallery {

void tourText(Tour& tour)
{
    tour.picture("text-light");

    tour.settle(10); // the second date becomes a minute old
    tour.press("“key”");
    tour.settle(0.5);
    tour.picture("text-aged-10-seconds");

    tour.press("+1 h");
    tour.press("+1 d");
    tour.type(u"\uF703"); // the Right arrow: another address
    tour.settle(2);
    tour.picture("text-aged-a-day");

    tour.type(u"\uF703\uF703n");
    tour.settle(2);
    tour.darkPicture("text-dark");
    tour.leastPicture("text-least");
}

}
