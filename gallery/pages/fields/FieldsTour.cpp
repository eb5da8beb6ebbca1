// SPDX-License-Identifier: Apache-2.0
#include "FieldsPage.h"
#include "Tour.h"

namespace gallery {

void tourFields(Tour& tour)
{
    tour.picture("fields-light");
    tour.click("A bike to edit", 200, 74);
    tour.type(u" with rain");
    tour.settle();
    tour.picture("fields-typing");
    tour.type(u"\r");
    tour.click("A bike to edit", 110, 234);
    tour.settle();
    tour.picture("fields-edited");
    tour.click("With formatters", 130, 72);
    tour.type(u"many\t");
    tour.picture("fields-refused");
    tour.type(u"\x1B");
    tour.darkPicture("fields-dark");
    tour.leastPicture("fields-least");
}

}
