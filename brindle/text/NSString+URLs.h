// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSURL.h"

/// Together with this extension `containsString:` ignores case, for every string of the process.

namespace brindle {

/// Answers what a user typed as the address of a web page: "http://" stands in front unless the text begins with it
/// or with "https://", in any case.
/// - Nil: for text with a space, and for text that is no URL.
inline Ref<NSURL> URLValue(To<NSString> text) { return text.send<"URLValue", Ref<NSURL>>(); }

}
