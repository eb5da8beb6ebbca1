// SPDX-License-Identifier: Apache-2.0
#include "UnicodeLibrary.h"

#include <string>

#include <dlfcn.h>
#include <unicode/uversion.h>

namespace brindle::unicode {

void* openLibrary(const char* stem)
{
    const std::string file = std::string(stem) + ".so." + std::to_string(U_ICU_VERSION_MAJOR_NUM);
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* findFunction(void* library, const char* name)
{
    return library ? dlsym(library, name) : nullptr;
}

}
