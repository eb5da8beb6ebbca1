// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSBundle.h"

namespace brindle {

/// Answers the main bundle's translation of an English phrase, the phrase itself without one.
inline Ref<NSString> phrase(NSString* english)
{
    return NSBundle::cls().mainBundle()->localizedStringForKey_value_table(english, ""_ns, nullptr);
}

}
