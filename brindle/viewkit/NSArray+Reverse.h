// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"

namespace brindle {

/// Answers a new array with the elements from last to first.
inline Ref<NSArray> reversedArray(To<NSArray> array)
{
    return array.send<"reversedArray", Ref<NSArray>>();
}

}
