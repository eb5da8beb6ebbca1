// SPDX-License-Identifier: Apache-2.0

#include "foundation/NSBundle.h"
#include "runtime/Runtime.h"

#include <cstdio>

int main()
{
    if (!brindle::objc_getClass("NSObject")) {
        std::puts("NSObject is not registered");
        return 1;
    }
    using namespace brindle;
    if (!NSBundle::cls().bundleWithIdentifier("org.brindle.Brindle"_ns)) {
        std::puts("the framework's bundle is not beside its library");
        return 1;
    }
    std::puts("hello");
    return 0;
}
