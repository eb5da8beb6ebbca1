// SPDX-License-Identifier: Apache-2.0
#include "ColourPage.h"
#include "Tour.h"

namespace gallery {

void tourColour(Tour& tour)
{
    tour.picture("colour-light");
    tour.type(u"#ddaa");
    tour.picture("colour-typing");
    tour.type(u"bb");
    tour.picture("colour-typed");
    tour.type(u"\uF703"); // the Right arrow: another colour
    tour.darkPicture("colour-dark");
    tour.leastPicture("colour-least");
}

}
