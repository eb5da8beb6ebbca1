// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"

namespace brindle {

/// The grey behind the selected row of a source list, white 0.86; the same in every appearance.
inline Ref<NSColor> graySourceListSelectColor(To<Class> cls)
{
    return cls.send<"graySourceListSelectColor", Ref<NSColor>>();
}

}
