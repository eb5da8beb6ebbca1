// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "runtime/Export.h"

/// The one timer that everything moving runs by: on the main run loop in the common modes, while there is something.

namespace brindle::quartz {

/// Seconds from one picture to the next.
inline constexpr double kFrameSeconds = 1.0 / 60;

/// Something that moves.
class FrameClient {
public:
    virtual ~FrameClient() = default;
    /// Does what is due.
    /// - now: seconds, as `CACurrentMediaTime` tells.
    /// - Returns: when it wants to be called next; infinity when it is done.
    virtual double frame(double now) = 0;
};

/// Calls a client in the next turn, and then as it wishes. One that is there already is called in the next turn.
/// Thread: main.
BRINDLE_EXPORT void runFrames(std::shared_ptr<FrameClient> client);

}
