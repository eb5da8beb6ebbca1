// SPDX-License-Identifier: Apache-2.0

#include "runtime/Runtime.h"

#include <cstdio>

int main()
{
    if (!brindle::objc_getClass("NSObject")) {
        std::puts("NSObject is not registered");
        return 1;
    }
    std::puts("hello");
    return 0;
}
