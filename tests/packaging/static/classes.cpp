// SPDX-License-Identifier: Apache-2.0
// Refers to no class by symbol: each must have come along with the archive all the same.

#include "runtime/Runtime.h"

#include <cstdio>

namespace {

constexpr const char* kNames[] = {
    "NSObject",
    "NSString",
};

}

int main()
{
    int missing = 0;
    for (const char* name : kNames) {
        if (!brindle::objc_getClass(name)) {
            std::printf("class %s was lost\n", name);
            ++missing;
        }
    }
    return missing ? 1 : 0;
}
