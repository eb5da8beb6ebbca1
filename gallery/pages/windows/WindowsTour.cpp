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
    tour.press("Titled");
    tour.press("Borderless");
    tour.press("OSWindow");
    tour.press("BROSPanel");
    tour.picture("windows-light");
    tour.press("Close all");
    tour.press("About");
    tour.picture("windows-about");
    maybe(NSApplication::cls().sharedApplication()->keyWindow())->close();
    tour.settle();
    tour.darkPicture("windows-dark");

    const Ref<BRInspector> inspector = BRInspector::cls().sharedInspector();
    inspector->show();
    inspector->inspectObject(menubar().bar()->menubarViews()->firstObject().get());
    tour.settle();
    tour.picture("windows-inspector");
    tour.darkPicture("windows-inspector-dark");
    inspector->close();
}

}
