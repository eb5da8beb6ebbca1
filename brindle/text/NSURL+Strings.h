// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSURL.h"

namespace brindle {

/// Answers the last two labels of the host: "three.four" of "one.two.three.four"; a host of one label as it is.
/// - Nil: without a host.
inline Ref<NSString> domain(To<NSURL> url) { return url.send<"domain", Ref<NSString>>(); }

}
