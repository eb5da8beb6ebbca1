// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

namespace {

/// A test program sees the pinned fonts and the kept pictures however it is started, and begins anew for a test of an end:
/// in a fork the threads of the tests before it are missing, and what they held looks lost. GoogleTest reads the style of
/// such tests before `main`, so this comes first.
__attribute__((constructor(101))) void pinSurroundings()
{
    ::setenv("GTEST_DEATH_TEST_STYLE", "threadsafe", 0);
    ::setenv("FONTCONFIG_FILE", BRINDLE_TESTS "/golden/fonts.conf", 1);
    ::setenv("BRINDLE_GOLDEN", BRINDLE_TESTS "/golden", 0);
}

}
