// SPDX-License-Identifier: Apache-2.0
#include "UniqueObjects.h"

#include "runtime/Runtime.h"

namespace brindle {

Protocol* uniqueObjectsProtocol() { return objc_getProtocol("UniqueObjects"); }

}
