// SPDX-License-Identifier: Apache-2.0
#include "PointerPage.h"
#include "Tour.h"

namespace gallery {

void tourPointer(Tour& tour)
{
    tour.picture("pointer-light");
    tour.moveTo("Tool tips", 120, 76);
    tour.settle(2);
    tour.picture("pointer-tip");
    tour.darkPicture("pointer-tip-dark");
    tour.contextMenuPicture("A menu of its own", 120, 120, "pointer-menu");
    tour.press("Below");
    tour.settle(0.5);
    tour.picture("pointer-popover");
    tour.darkPicture("pointer-popover-dark");
    tour.type(u"\x1B");
    tour.settle(0.5);
    tour.darkPicture("pointer-dark");
    tour.leastPicture("pointer-least");
}

}
