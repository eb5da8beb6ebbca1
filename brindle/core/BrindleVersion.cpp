// SPDX-License-Identifier: Apache-2.0
#include "BrindleVersion.h"

namespace brindle {

const double BrindleVersionNumber = 1.0;
const unsigned char BrindleVersionString[] = "@(#)PROGRAM:Brindle  PROJECT:Brindle-1\n";

}
