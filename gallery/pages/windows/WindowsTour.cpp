// SPDX-License-Identifier: Apache-2.0
#include "Menubar.h"
#include "Tour.h"
#include "WindowsPage.h"
#include "appkit/NSApplication.h"
#include "foundation/NSMutableArray.h"
#include "inspector/BRInspector.h"

namespace gallery {

using namespace brindle;

void tourWindows(Tour& tour)
{
    tour.picture("windows-light");
    tour.press("Titled");
    tour.press("Borderless");
    tour.press("OSWindow");
    tour.press("BROSPanel");
    tour.picture("windows-open");
    tour.press("Close all");
    tour.press("Sheet");
    tour.settle(1);
    tour.picture("windows-sheet");
    tour.type(u"\r");
    tour.settle(1);
    tour.press("About");
    tour.picture("windows-about");
    maybe(NSApplication::cls().sharedApplication()->keyWindow())->close();
    tour.settle();
    tour.darkPicture("windows-dark");

    tour.leastPicture("windows-least");

    const Ref<BRInspector> inspector = BRInspector::cls().sharedInspector();
    inspector->show();
    inspector->inspectObject(menubar().bar()->menubarViews()->firstObject().get());
    tour.settle();
    tour.picture("windows-inspector");
    tour.darkPicture("windows-inspector-dark");
    inspector->close();
}

}
