// SPDX-License-Identifier: Apache-2.0
#include "StyledPage.h"
#include "Tour.h"

namespace gallery {

void tourStyled(Tour& tour)
{
    tour.picture("styled-light");
    tour.darkPicture("styled-dark");
    tour.press("Insert");
    tour.press("Large");
    tour.press("Higher");
    tour.press("Glow");
    tour.moveTo("Tab stops", 338, 81); // the mark of the centred column
    tour.display().pressButton();
    tour.moveTo("Tab stops", 368, 81);
    tour.picture("styled-dragged");
    tour.display().releaseButton();
    tour.settle();
    tour.click("Tab stops", 628, 81);
    tour.darkPicture("styled-changed");
    tour.leastPicture("styled-least");
}

}
