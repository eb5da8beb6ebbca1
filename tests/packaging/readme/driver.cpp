// SPDX-License-Identifier: Apache-2.0

// Runs a host's main, compiled as hello_main, on a screen in memory where somebody presses the key of Quit.

#include "appkit/HeadlessScreen.h"
#include "foundation/NSOperationQueue.h"
#include "foundation/NSString.h"
#include "shell/BRApplication.h"

int hello_main();

int main()
{
    using namespace brindle;
    BRApplication::cls()
        .sharedApplication(); // before the screen, which would make an NSApplication
    headless::openScreen(800, 600, 1);
    NSOperationQueue::cls().mainQueue()->addOperationWithBlock(
        [] { headless::pressKey("q"_ns, NSCommandKeyMask); });
    return hello_main();
}
