// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

namespace {

/// A test program sees the pinned fonts and the kept pictures however it is started.
__attribute__((constructor)) void pinSurroundings()
{
    ::setenv("FONTCONFIG_FILE", BRINDLE_TESTS "/golden/fonts.conf", 1);
    ::setenv("BRINDLE_GOLDEN", BRINDLE_TESTS "/golden", 0);
}

}
