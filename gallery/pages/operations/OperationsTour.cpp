// SPDX-License-Identifier: Apache-2.0
#include "OperationsPage.h"
#include "Tour.h"

namespace gallery {

void tourOperations(Tour& tour)
{
    tour.picture("operations-light");
    // The slider's left end: one at a time, so the order is always the same.
    tour.click("Their queue", 316, 67);
    for (int i = 0; i < 3; ++i)
        tour.press("One more");
    tour.darkPicture("operations-dark");
    tour.press("Cancel");
    tour.picture("operations-cancelled");
    tour.press("Run");
    tour.picture("operations-ended");
    tour.leastPicture("operations-least");
}

}
