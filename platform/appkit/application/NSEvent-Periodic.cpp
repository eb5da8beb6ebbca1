// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSEvent.h"
#include "NSApplicationPrivate.h"
#include "foundation/NSDate.h"
#include "foundation/NSTimer.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

#include <algorithm>

namespace brindle {

template <> struct NSEvent::Methods<struct Periodic> {

    static Ref<NSTimer>& timer()
    {
        static Ref<NSTimer> kept;
        return kept;
    }
    static void post()
    {
        const Ref<NSEvent> event
            = NSEvent::cls()
                  .otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
                      NSPeriodic, {}, 0, ApplicationAccess::now(), 0, nullptr, 0, 0, 0);
        ApplicationAccess::post(*event, false);
    }
    static void start(Class&, double delay, double period)
    {
        if (timer())
            raise("NSInternalInconsistencyException",
                "*** +[NSEvent startPeriodicEventsAfterDelay:withPeriod:]: Periodic events are "
                "already being generated");
        constexpr double kShortest = 0.001; // a clock that never rests would starve the loop
        const double first = std::max(delay > 0 ? delay : 0, kShortest);
        timer() = alloc<NSTimer>()->initWithFireDate_interval_repeats_block(
            NSDate::cls().dateWithTimeIntervalSinceNow(first).get(),
            period > kShortest ? period : kShortest, true, [](NSTimer*) { post(); });
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        loop->addTimer_forMode(timer().get(), NSDefaultRunLoopMode);
        loop->addTimer_forMode(timer().get(), NSEventTrackingRunLoopMode);
    }
    static void stop(Class&)
    {
        const Ref<NSTimer> ended = std::exchange(timer(), nullptr);
        if (!ended)
            return;
        ended->invalidate();
        NSApplication::cls().sharedApplication()->discardEventsMatchingMask_beforeEvent(
            NSPeriodicMask, nullptr);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "startPeriodicEventsAfterDelay:withPeriod:", imp<start> },
            { "stopPeriodicEvents", imp<stop> },
        });
    }
};
BRINDLE_RECORD(NSEvent, Periodic)

}
