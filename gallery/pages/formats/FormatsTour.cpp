// SPDX-License-Identifier: Apache-2.0
#include "FormatsPage.h"
#include "Tour.h"

namespace gallery {

void tourFormats(Tour& tour)
{
    tour.picture("formats-light");
    tour.press("Deutsch");
    tour.press("Day before");
    tour.click("Dates", 200, 400);
    tour.picture("formats-german");
    tour.press("हिन्दी");
    tour.darkPicture("formats-dark");
    tour.leastPicture("formats-least");
}

}
