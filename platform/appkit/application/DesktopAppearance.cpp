// SPDX-License-Identifier: Apache-2.0
#include "DesktopAppearancePrivate.h"

#include "NSApplicationPrivate.h"
#include "appkit/NSWorkspace.h"
#include "appkit/drawing/SystemColorsPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSString.h"
#include "foundation/NSTimer.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/desktop/ColorScheme.h"

namespace brindle {

namespace {

    // By then the first windows are shown, and neither reading defaults nor loading the bus's library delays them.
    constexpr double kSecondsAfterStart = 0.05;

    void take(bool dark)
    {
        appkit::setDesktopAppearance(dark ? appkit::Appearance::dark : appkit::Appearance::light);
    }

}

void appkit::lookChanged()
{
    for (NSWindow* window : ApplicationAccess::state().order)
        WindowAccess::damageAll(*window);
    NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(
        NSSystemColorsDidChangeNotification, nullptr);
}

void appkit::takeDesktopAppearance()
{
    const bool dark
        = NSUserDefaults::cls().standardUserDefaults()->stringForKey("AppleInterfaceStyle"_ns)
        != nullptr;
    take(dark);
}

void appkit::beginFollowingDesktop()
{
    take(desktop::filesPreferDark());
    const Ref<NSTimer> timer = NSTimer::cls().timerWithTimeInterval_repeats_block(
        kSecondsAfterStart, false, [](NSTimer*) {
            takeDesktopAppearance();
            desktop::followColorScheme(takeDesktopAppearance);
        });
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer.get(), NSRunLoopCommonModes);
}

}
