// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSURL.h"

namespace brindle {

/// Answers the parameters behind the first "?": "a=1&b=x%20y" gives a: "1", b: "x y".
///
/// A value ends at "&" only, so a fragment belongs to the last one. Keys keep their escapes. A later value takes the
/// place of an earlier one of the same key. What is not one key, "=" and one value is left out, and so is a value
/// whose escapes are malformed.
/// - Shape: NSString to NSString, empty without parameters; new and the caller's to change.
inline Ref<NSMutableDictionary> parameterDictionary(To<NSURL> url)
{
    return url.send<"parameterDictionary", Ref<NSMutableDictionary>>();
}

}
