// SPDX-License-Identifier: Apache-2.0
#include "LateLibrary.h"

#include <dlfcn.h>

namespace brindle::late {

void* openLibrary(const std::string& file) { return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); }

void* findFunction(void* library, const char* name)
{
    return library ? dlsym(library, name) : nullptr;
}

}
