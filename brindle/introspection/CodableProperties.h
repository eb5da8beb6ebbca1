// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSDictionary.h"

namespace brindle {

/// Makes the table of the codable properties that a class itself declares.
Ref<NSDictionary> makeCodableProperties(Class& cls);

}
