// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSEvent.h"

namespace brindle {

/// Answers whether a key press is the one that a button or menu item waits for.
///
/// Letters are compared without case: an upper-case letter wants Shift, a lower-case one wants none. Other characters say by
/// themselves whether Shift was needed. Enter counts as Return.
bool matchesKeyEquivalent(NSEvent& press, NSString* key, NSEventModifierFlags modifiers);

}
