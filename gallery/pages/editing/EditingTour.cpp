// SPDX-License-Identifier: Apache-2.0
#include "EditingPage.h"
#include "Tour.h"

namespace gallery {

void tourEditing(Tour& tour)
{
    tour.press("Write");
    tour.picture("editing-light");
    tour.click("A text", 120, 90);
    tour.type(u" small brass");
    tour.moveTo("Letter by letter", 60, 90);
    tour.settle(0.5);
    tour.picture("editing-typed");
    tour.contextMenuPicture("A text", 200, 90, "editing-menu");
    tour.press("Undo");
    tour.darkPicture("editing-dark");
    tour.leastPicture("editing-least");
}

}
