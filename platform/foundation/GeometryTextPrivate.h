// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"

namespace brindle::geometry {

/// Text forms like those of `NSStringFromRect` and its relatives, from which exactly the same values are read: archives
/// keep them.
Ref<NSString> exactText(NSPoint point);
Ref<NSString> exactText(NSSize size);
Ref<NSString> exactText(NSRect rect);

}
