// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "runtime/Export.h"

/// The one timer that everything moving runs by: on the main run loop in the common modes, while there is something.

namespace brindle::quartz {

/// Seconds from one picture to the next.
inline constexpr double kFrameSeconds = 1.0 / 60;

/// Answers when the picture after the one of now is due, for what ends at a moment. The last one comes at the end itself,
/// and none so shortly before it that a timer could not tell them apart.
constexpr double nextFrame(double now, double end)
{
    return end < now + kFrameSeconds + 0.001 ? end : now + kFrameSeconds;
}

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
