// SPDX-License-Identifier: Apache-2.0
#include "ReviewPage.h"
#include "Tour.h"

namespace gallery {

void tourReview(Tour& tour)
{
    tour.press("Seven times");
    tour.picture("review-seven");
    tour.press("Use once");
    tour.settle(0.3);
    tour.picture("review-request");
    tour.darkPicture("review-request-dark");
    tour.type(u"\r");
    tour.settle(0.3);
    tour.picture("review-thanks");
    tour.type(u"\r");
    tour.settle(0.3);
    tour.picture("review-rated");
    tour.darkPicture("review-dark");
    tour.leastPicture("review-least");
}

}
