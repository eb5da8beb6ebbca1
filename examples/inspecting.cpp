// SPDX-License-Identifier: Apache-2.0

// Looks into a running application without a person: which views a window has, what one of them declares, who is asked when it
// does not answer.

#include <cstdio>

#include "appkit/HeadlessScreen.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSWindow.h"
#include "inspector/BRInspector.h"

using namespace brindle;

int main()
{
    headless::openScreen(800, 600, 1);
    const auto application = NSApplication::cls().sharedApplication();
    application->finishLaunching();

    const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(0, 0, 200, 100), NSTitledWindowMask, NSBackingStoreBuffered, false);
    const auto button
        = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(20, 20, 80, 24)));
    button->setTitle("Press"_ns);
    button->setKeyEquivalent("\r"_ns);
    window->contentView()->addSubview(button.get());
    window->makeKeyAndOrderFront(nullptr);

    const auto inspector = BRInspector::cls().sharedInspector();
    inspector->inspectObject(button.get());
    std::fputs(inspector->treeDescription()->UTF8String(), stdout);
    std::fputs(inspector->detailDescription()->UTF8String(), stdout);
    std::printf("enabled: %s\n", inspector->isEnabled() ? "yes" : "no");
    return 0;
}
