// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSRunLoop.h"

namespace brindle::test {

/// Stops the clock for one test; `advance` turns it and runs what becomes due on the main thread, in order.
class VirtualClock {
public:
    VirtualClock()
    {
        Clock::useVirtual();
        advance(0);
    }
    ~VirtualClock() { Clock::useSystem(); }
    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    void advance(double seconds) { NSRunLoop::cls().mainRunLoop()->advance(seconds); }
};

}
