// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Block.h"

namespace brindle {

/// Runs a closure on the main queue after a delay, never inside the call.
/// - delay: seconds, cut to whole nanoseconds; 0 or less is a later turn.
/// - code: kept until it has run; nil ends the process when its turn comes.
extern "C" BRINDLE_EXPORT void blockAfterDelay(double delay, Closure<void()>* code);

/// The same for anything that can be called.
inline void blockAfterDelay(double delay, const Block<void()>& code)
{
    blockAfterDelay(delay, code.get());
}

}
