// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableArray.h"

namespace brindle {

/// Adds an object unless an equal one is there. - Returns: whether it was added.
/// - Raises: `NSInvalidArgumentException` for nil.
inline bool addObjectOnce(To<NSMutableArray> array, NSObject* object)
{
    return array.send<"addObjectOnce:", bool>(object);
}
/// Removes every equal object and puts this one at an index, counted after the removal.
/// - Raises: `NSRangeException` for an index past the end, when the equal ones are gone already.
inline void insertObjectOnce_atIndex(To<NSMutableArray> array, NSObject* object, NSUInteger index)
{
    array.send<"insertObjectOnce:atIndex:">(object, index);
}

}
