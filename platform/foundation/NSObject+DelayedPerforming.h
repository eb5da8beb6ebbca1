// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Clock.h"
#include "runtime/NSObject.h"

/// Messages that are sent later. Selectors take an object or nothing; what they answer is dropped.

namespace brindle {

class NSArray;
class NSThread;

/// Sends a message after a delay, from the current thread's loop in the default mode.
/// Receiver and argument are kept until then. A delay of 0 or less still means a later turn; equal moments keep their
/// order.
inline void performSelector_withObject_afterDelay(
    To<NSObject> object, SEL selector, NSObject* argument, NSTimeInterval delay)
{
    object.send<"performSelector:withObject:afterDelay:">(selector, argument, delay);
}
/// The same in other modes. No modes: it is never sent.
inline void performSelector_withObject_afterDelay_inModes(
    To<NSObject> object, SEL selector, NSObject* argument, NSTimeInterval delay, NSArray* modes)
{
    object.send<"performSelector:withObject:afterDelay:inModes:">(selector, argument, delay, modes);
}
/// Takes back what waits on the current thread's loop for this very target, with this selector and an equal argument;
/// nil is equal to nil only. Sent to the target's class.
inline void cancelPreviousPerformRequestsWithTarget_selector_object(
    To<Class> cls, NSObject* target, SEL selector, NSObject* argument)
{
    cls.send<"cancelPreviousPerformRequestsWithTarget:selector:object:">(
        target, selector, argument);
}
/// Takes back everything that waits on the current thread's loop for this very target.
inline void cancelPreviousPerformRequestsWithTarget(To<Class> cls, NSObject* target)
{
    cls.send<"cancelPreviousPerformRequestsWithTarget:">(target);
}

/// Sends a message from the main thread's loop, in the common modes and in order.
/// - wait: waits until it has been sent; on the main thread it is then sent at once.
inline void performSelectorOnMainThread_withObject_waitUntilDone(
    To<NSObject> object, SEL selector, NSObject* argument, bool wait)
{
    object.send<"performSelectorOnMainThread:withObject:waitUntilDone:">(selector, argument, wait);
}
/// The same on a thread that runs its loop.
inline void performSelector_onThread_withObject_waitUntilDone(
    To<NSObject> object, SEL selector, NSThread* thread, NSObject* argument, bool wait)
{
    object.send<"performSelector:onThread:withObject:waitUntilDone:">(
        selector, thread, argument, wait);
}
/// Sends a message from a new thread.
inline void performSelectorInBackground_withObject(
    To<NSObject> object, SEL selector, NSObject* argument)
{
    object.send<"performSelectorInBackground:withObject:">(selector, argument);
}

}
