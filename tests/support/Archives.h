// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"

namespace brindle::test {

/// Answers what comes back when an object is archived and read.
template <class T> Ref<T> archived(const Ref<T>& object)
{
    const Ref<NSData> data = NSKeyedArchiver::cls().archivedDataWithRootObject(object.get());
    return cast<T>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()));
}

}
