// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

/// Exchanging and aliasing methods. A kind of '+' means class operations, any other character instance operations.
/// Thread: done once, while loading or starting, before other threads use the class.

namespace brindle {
extern "C" {

/// Exchanges what two selectors of a class run. Inherited methods become the class's own first, so that its
/// parents keep theirs.
/// - Returns: false, with nothing changed, when either is missing.
BRINDLE_EXPORT bool XUISwizzleMethod(Class* cls, char kind, SEL target, SEL alternate);

/// Gives a method a second name.
/// - Returns: false when the method is missing or the class itself has the alias already; nothing is changed then.
BRINDLE_EXPORT bool XUIAliasMethod(Class* cls, char kind, SEL target, SEL alias);

/// Makes the target selector run the replacement's code, and the replacement selector the code that was the target's.
/// Both must exist.
BRINDLE_EXPORT void JU_swizzleInstanceMethod(Class* cls, SEL target, SEL replacement);
}

}
