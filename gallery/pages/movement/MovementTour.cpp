// SPDX-License-Identifier: Apache-2.0
#include "MovementPage.h"
#include "Tour.h"

namespace gallery {

void tourMovement(Tour& tour)
{
    tour.picture("movement-light");
    tour.press("Slowly");
    tour.press("Move");
    tour.press("Go round");
    tour.settle(0.8);
    tour.picture("movement-halfway");
    tour.settle(1);
    tour.press("Fade");
    tour.press("Go round");
    tour.settle(2);
    tour.darkPicture("movement-dark");
    tour.press("Move");
    tour.settle(2);
    tour.leastPicture("movement-least");
}

}
