// SPDX-License-Identifier: Apache-2.0
#include "LayersPage.h"
#include "Tour.h"

namespace gallery {

void tourLayers(Tour& tour)
{
    tour.picture("layers-light");
    tour.press("Run");
    tour.press("Turn");
    tour.settle(0.4);
    tour.picture("layers-moving");
    tour.settle(0.4);
    tour.picture("layers-later");
    tour.settle(1);
    tour.darkPicture("layers-dark");
    tour.leastPicture("layers-least");
}

}
