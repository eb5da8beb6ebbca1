// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSEvent.h"

namespace brindle {

/// Answers the first character of a key without case, Enter as Return and Backspace as Delete; 0 for an empty key. Keys
/// that match have the same one.
unichar foldedKey(const NSString* key);

/// Answers whether a key press is the one that a button or menu item waits for.
///
/// Letters are compared without case: an upper-case letter wants Shift, a lower-case one wants none. Other characters say by
/// themselves whether Shift was needed. Enter counts as Return.
bool matchesKeyEquivalent(NSEvent& press, NSString* key, NSEventModifierFlags modifiers);

}
