// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"

namespace brindle::controls {

/// Answers a text, or its longest beginning whose letters are whole and that fits a width with an ellipsis.
Ref<NSString> shortened(NSString& text, NSDictionary* attributes, CGFloat room);

}
