// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/URLPrivate.h"

/// Rights to files as panels give them.

namespace brindle::test {

/// Makes a URL one that the user granted.
inline void grant(NSURL& url) { URLAccess::grant(url); }

/// Answers how many accesses to a URL have begun and not ended.
inline std::intptr_t accessesTo(const NSURL& url) { return URLAccess::accesses(url); }

}
