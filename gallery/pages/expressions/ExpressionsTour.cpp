// SPDX-License-Identifier: Apache-2.0
#include "ExpressionsPage.h"
#include "Tour.h"

namespace gallery {

void tourExpressions(Tour& tour)
{
    tour.picture("expressions-light");
    tour.press("Any case");
    tour.darkPicture("expressions-dark");
    tour.click("Pattern", 300, 72);
    tour.type(u"|(\\d");
    tour.picture("expressions-wrong");
    tour.type(u"+)|\\.");
    tour.click("Replacement", 200, 72);
    tour.type(u" [$0]");
    tour.picture("expressions-typed");
    tour.leastPicture("expressions-least");
}

}
