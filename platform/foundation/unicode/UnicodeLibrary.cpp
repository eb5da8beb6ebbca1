// SPDX-License-Identifier: Apache-2.0
#include "UnicodeLibrary.h"

#include <unicode/uversion.h>

namespace brindle::unicode {

void* openLibrary(const char* stem)
{
    return late::openLibrary(std::string(stem) + ".so." + std::to_string(U_ICU_VERSION_MAJOR_NUM));
}

}
