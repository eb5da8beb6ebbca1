// SPDX-License-Identifier: Apache-2.0
#include "GroundPage.h"
#include "Tour.h"

namespace gallery {

using namespace brindle;

void tourGround(Tour& tour)
{
    tour.picture("ground-light");

    tour.moveTo("Snapped grid", 120, 130);
    tour.display().pressButton();
    tour.moveTo("Snapped grid", 290, 220);
    tour.picture("ground-grid");
    tour.display().releaseButton();
    tour.settle();

    for (int i = 0; i < 9; ++i)
        tour.type(u"\uF700"); // the Up arrow: higher rows
    tour.picture("ground-higher-rows");

    tour.press("Count primes");
    for (int i = 0; i < 400; ++i) { // pointer moves, faster than the timeout
        tour.moveTo("Debounced redraw", 50 + (i % 40) * 4, 60 + (i % 7));
        tour.settle(0.01);
    }
    tour.settle(1);
    tour.picture("ground-job-and-debounce");

    tour.type(u"x");
    tour.picture("ground-exchanged");
    tour.darkPicture("ground-dark");

    const Ref<NSWindow> window = tour.window();
    const NSRect before = window->frame();
    window->setFrame_display(NSMakeRect(40, 30, 1200, 750), true);
    tour.settle();
    tour.picture("ground-larger-window");
    window->setFrame_display(before, true);
    tour.settle();
}

}
