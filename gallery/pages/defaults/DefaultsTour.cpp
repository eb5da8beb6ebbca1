// SPDX-License-Identifier: Apache-2.0
#include "DefaultsPage.h"
#include "Tour.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUserDefaults.h"

namespace gallery {

using namespace brindle;

void tourDefaults(Tour& tour)
{
    tour.picture("defaults-light");

    const auto all = NSDictionary::cls().dictionaryWithObject_forKey(
        NSNumber::cls().numberWithDouble(3).get(), "Speed"_ns);
    NSUserDefaults::cls().standardUserDefaults()->setPersistentDomain_forName(
        all.get(), NSGlobalDomain);
    tour.press("Register");
    tour.picture("defaults-registered");

    tour.type(u"c\uF701\uF703c"); // the framed cell, then the one below to the right
    tour.type(u"\uF702\uF702c");
    tour.click("Search list", 280, 300);
    tour.press("Write 1,000 times");
    tour.picture("defaults-burst");
    tour.darkPicture("defaults-dark");
    tour.leastPicture("defaults-least");
}

}
