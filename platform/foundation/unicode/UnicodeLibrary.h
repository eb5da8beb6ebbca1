// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/LateLibrary.h"

/// How the Unicode library is reached: it is not linked but loaded, because it costs a millisecond and some megabytes and
/// most programs that show only Latin text never need it.

/// The name of a function as the library exports it; its own headers put its version behind each name.
#define BRINDLE_VERSIONED_TEXT(name) #name
#define BRINDLE_VERSIONED(name) BRINDLE_VERSIONED_TEXT(name)

namespace brindle::unicode {

using late::find;

/// Answers a handle of "libicuuc" or "libicui18n", or nullptr when this machine has none of the version built against.
void* openLibrary(const char* stem);

}
