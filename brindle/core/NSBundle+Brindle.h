// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSBundle.h"

namespace brindle {

/// Answers the framework's own bundle, which holds its pictures; nil where it was not installed.
inline Ref<NSBundle> BrindleFrameworkBundle(To<Class> cls)
{
    return cls.send<"BrindleFrameworkBundle", Ref<NSBundle>>();
}

}
