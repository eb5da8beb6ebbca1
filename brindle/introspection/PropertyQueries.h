// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Runtime.h"

/// What the attribute string of a declared property says. A nil property answers nullptr or the zero selector.

namespace brindle {
BRINDLE_C_BEGIN

/// Answers the property's type as it stands in its attribute string, the "T" included: `T@"NSString"`, `Ti`.
///
/// The text lies in one buffer of the process, which the next call overwrites: copy it, and call from one thread at a
/// time. Ends the process with one line for a type of more than 255 bytes.
/// - Nil: nullptr for an attribute string without a comma.
BRINDLE_EXPORT const char* property_getTypeString(objc_property_t property);

/// Answers the getter that the property names, the zero selector where it has the usual one.
BRINDLE_EXPORT SEL property_getGetter(objc_property_t property);
/// Answers the setter that the property names, the zero selector where it has the usual one.
BRINDLE_EXPORT SEL property_getSetter(objc_property_t property);

/// Answers how the property keeps its value: the literal "retain", "copy" or "assign".
///
/// Only attribute strings without a comma, and those whose first attribute after the type is "&" or "C", may be asked
/// about: for any other, such as `Ti,N,V_count`, it never returns. A type that begins with "C" reads "copy".
BRINDLE_EXPORT const char* property_getRetentionMethod(objc_property_t property);

BRINDLE_C_END
}
