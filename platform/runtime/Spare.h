// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Ref.h"
#include "Runtime.h"

namespace brindle {

/// Answers whether an object can begin anew under its one owner, in place of another one that is made like it.
///
/// The caller's count is the only one, nothing hangs on the object (weak references, associated values), and it is of
/// the class itself: once its fields are as those of a new one, nobody can tell the difference. What is made by the
/// hundred in a second and rarely kept, such as events, asks for no memory then.
template <class T> bool isSpare(const Ref<T>& object)
{
    return object && headerOf(object.get()).count.load(std::memory_order_acquire) == 1
        && headerOf(object.get()).extras.load(std::memory_order_relaxed) == 0
        && object_getClass(object.get()) == T::cls();
}

}
