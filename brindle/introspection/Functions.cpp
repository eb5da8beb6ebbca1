// SPDX-License-Identifier: Apache-2.0

// The functions of this folder by name.

#include "introspection/PropertyQueries.h"
#include "runtime/Function.h"

namespace brindle {

BRINDLE_FUNCTION(property_getTypeString)
BRINDLE_FUNCTION(property_getGetter)
BRINDLE_FUNCTION(property_getSetter)
BRINDLE_FUNCTION(property_getRetentionMethod)

}
