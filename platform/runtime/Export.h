// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what the shared library exports; everything else stays hidden in it.
#define BRINDLE_EXPORT [[gnu::visibility("default")]]

/// Round functions with C linkage. They may answer plain structures that C++ gives initialisers: clang would
/// warn of each, although the layout and the call are those of C.
#if defined(__clang__)
#define BRINDLE_C_BEGIN                                                                            \
    _Pragma("clang diagnostic push")                                                               \
        _Pragma("clang diagnostic ignored \"-Wreturn-type-c-linkage\"") extern "C"                 \
    {
#define BRINDLE_C_END                                                                              \
    }                                                                                              \
    _Pragma("clang diagnostic pop")
#else
#define BRINDLE_C_BEGIN extern "C" {
#define BRINDLE_C_END }
#endif
