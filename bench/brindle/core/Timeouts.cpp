// SPDX-License-Identifier: Apache-2.0
#include "core/NSObject+SelectorAndBlockTimeout.h"

#include <ctime>

#include "foundation/NSObject+DelayedPerforming.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr double kDelay = 1000; // seconds: none of these ever fires

    void forget(NSObject* object)
    {
        cancelPreviousPerformRequestsWithTarget(NSObject::cls(), object);
    }

    void readClock(std::size_t)
    {
        timespec now {};
        clock_gettime(CLOCK_MONOTONIC, &now);
        keep(now.tv_nsec);
    }

    Pair restartBlock()
    {
        const std::shared_ptr<NSObject> host(make<NSObject>().leak(), [](NSObject* object) {
            forget(object);
            release(object);
        });
        const Block<void()> code = [] {};
        return { repeated([=](std::size_t) { timeoutToBlock_afterDelay(*host, code, kDelay); }),
            repeated(readClock) };
    }

    Pair restartSelector()
    {
        const std::shared_ptr<NSObject> host(make<NSObject>().leak(), [](NSObject* object) {
            forget(object);
            release(object);
        });
        return { repeated([=](std::size_t) {
                    timeoutToSelector_afterDelay(*host, selector<"awakeFromNib">, kDelay);
                }),
            repeated(readClock) };
    }

    Reading growth()
    {
        const Ref<NSObject> host = make<NSObject>();
        const Block<void()> code = [] {};
        for (int i = 0; i < 1000; ++i)
            timeoutToBlock_afterDelay(host, code, kDelay);
        const double before = heapInUse();
        for (int i = 0; i < 1'000'000; ++i)
            timeoutToBlock_afterDelay(host, code, kDelay);
        const double after = heapInUse();
        forget(host.get());
        return { after - before };
    }

}

void addTimeouts(Plan& plan)
{
    plan.time("timeoutToBlock restart beside one reading of the clock", timesFloor(150.0 / 24),
        restartBlock);
    plan.time("timeoutToSelector restart beside one reading of the clock", timesFloor(150.0 / 24),
        restartSelector);
    plan.read("memory growth over 1,000,000 timeoutToBlock restarts", "bytes", atMost(0), growth);
}

}
