// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Send.h"

namespace brindle {

/// Calls an implementation whose types are known only as text.
/// - arguments: addresses of receiver, selector and arguments. - result: room for the answer, at least 8 bytes.
/// - Raises: `NSInvalidArgumentException` for types this machine's call rules are not known for.
void callDynamically(IMP imp, const char* types, void* const* arguments, void* result);

}
