// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Block.h"

/// A restartable timeout for every object: of the calls within a stretch shorter than the delay only the last fires,
/// once. It fires on the run loop of the thread that called, in the default mode; until then the object is kept.

namespace brindle {

/// Sends the selector after the delay, with nil where it takes an object; an earlier pending one is taken back.
/// - delay: seconds.
inline void timeoutToSelector_afterDelay(To<NSObject> object, SEL selector, double delay)
{
    object.send<"timeoutToSelector:afterDelay:">(selector, delay);
}
/// Runs a closure after the delay; an earlier pending one of this object is dropped. The closure stays with the
/// object until it is replaced or the object goes.
inline void timeoutToBlock_afterDelay(To<NSObject> object, const Block<void()>& code, double delay)
{
    object.send<"timeoutToBlock:afterDelay:">(code.get(), delay);
}
/// Runs the closure now that `timeoutToBlock_afterDelay` left with the object. None at all ends the process.
inline void blockTimeout(To<NSObject> object) { object.send<"blockTimeout">(); }

}
