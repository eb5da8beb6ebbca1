// SPDX-License-Identifier: Apache-2.0
#include "ShellTour.h"

#include "Tour.h"
#include "appkit/NSApplication.h"

namespace gallery {

using namespace brindle;

namespace {

    void command(Tour& tour, char16_t letter)
    {
        display::ScriptedKey key;
        key.characters = std::u16string(1, letter);
        key.modifiers = NSCommandKeyMask;
        tour.display().pressKey(key);
        tour.display().releaseKey(key);
        tour.settle(0.5); // the title of its menu flashes
    }
}

void tourShell(Tour& tour)
{
    command(tour, u'1');
    command(tour, u'f');
    tour.type(u"progress");
    tour.picture("shell-search");
    tour.darkPicture("shell-search-dark");
    tour.type(u"\r");
    command(tour, u'k');
    tour.settle(2); // the scrollers fade
    tour.picture("shell-code");
    tour.darkPicture("shell-code-dark");
    for (const bool dark : { false, true }) {
        controller()->setDark(dark);
        tour.settle();
        tour.menuPicture("View", u"\uF701\uF701", dark ? "shell-menu-dark" : "shell-menu");
    }
    controller()->setDark(false);
    tour.leastPicture("shell-code-least");
    const NSRect before = tour.window()->frame();
    tour.window()->setFrame_display(NSMakeRect(0, 0, 1280, 778), true);
    tour.settle(2);
    tour.picture("shell-code-large");
    tour.window()->setFrame_display(before, true);
    command(tour, u'k');

    controller()->window()->makeFirstResponder(controller()->sidebar()->list().get());
    tour.settle();
    tour.picture("shell-list");
    controller()->window()->makeFirstResponder(controller()->page().get());
    for (int i = 0; i < 2; ++i)
        tour.type(u"\t");
    tour.picture("shell-focus");
    tour.darkPicture("shell-focus-dark");
}

}
