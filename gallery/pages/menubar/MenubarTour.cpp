// SPDX-License-Identifier: Apache-2.0
#include "MenubarPage.h"
#include "Tour.h"

namespace gallery {

void tourMenubar(Tour& tour)
{
    tour.picture("menubar-light");
    tour.menuPicture("Edit", u"", "menubar-edit");
    tour.menuPicture("View", u"\uF701\uF703\uF701\uF701", "menubar-pages");
    tour.press("Gaps");
    tour.press("Shadow");
    tour.press("Add right");
    tour.picture("menubar-shadow");
    tour.press("900 wide");
    tour.picture("menubar-narrow");
    tour.press("900 wide");
    tour.press("Gaps");
    tour.press("Overlay");
    tour.picture("menubar-overlay");
    tour.press("Custom");
    tour.press("Shadow");
    tour.darkPicture("menubar-dark");
    tour.type(u"d");
    tour.menuPicture("View", u"\uF701\uF703\uF701", "menubar-pages-dark");
    tour.menuPicture("File", u"\uF701", "menubar-file-dark");
    tour.type(u"d");
    tour.contextMenuPicture("Lines of a menu", 300, 70, "menubar-lines");
    tour.leastPicture("menubar-least");
}

}
