// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle {

/// Answers the text with its first letter in lower case, as names of properties are written.
/// - Raises: `NSRangeException` for the empty text.
inline Ref<NSString> propertyStyleString(To<NSString> text)
{
    return text.send<"propertyStyleString", Ref<NSString>>();
}

}
