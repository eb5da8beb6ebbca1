// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

#include "NSTimer.h"
#include "RunLoopPrivate.h"

namespace brindle {

struct NSTimer::Entry : Scheduled {
    NSTimer* timer = nullptr; ///< one count of it is the loop's while `loop` is set
    RunLoopCore* loop = nullptr;
    RunLoopCore::Modes modes = 0;
    std::int64_t moment = 0; ///< when it is due next, also while it is not scheduled
    std::int64_t earliest = 0; ///< the next time, for one that a handler has set
    std::int64_t step = 0; ///< 0 for once
    bool firing = false;
    bool moved = false; ///< somebody set the next moment while it fired

    std::int64_t next() const { return std::max(moment, earliest); }
};

/// Schedules a timer on the calling thread's loop, or adds modes to it.
void addTimer(RunLoopCore& loop, NSTimer& timer, RunLoopCore::Modes modes);
/// Lets a timer that fires come once more, in the next turn.
void repeatNextTurn(NSTimer& timer);

}
