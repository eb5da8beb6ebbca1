// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Libraries of the system that few programs need. They are not linked but opened by the first who needs them, because each
/// one costs every start time and memory. Why: docs/decisions/libraries-opened-late.md. Thread: any.

/// A function of such a library, looked up once: `BRINDLE_LATE(library(), jpeg_start_compress)(…)`. The library must have it.
#define BRINDLE_LATE(library, name) BRINDLE_LATE_AS(library, name, #name)

/// The same for a function that is exported under another name.
#define BRINDLE_LATE_AS(library, name, exported)                                                   \
    ([] {                                                                                          \
        static const auto function = reinterpret_cast<decltype(&::name)>(                          \
            ::brindle::late::findFunction(library, exported));                                     \
        return function;                                                                           \
    }())

namespace brindle::late {

/// Answers a handle of a library by its file's name, as "libjpeg.so.62", or nullptr where the machine has none. It stays open.
void* openLibrary(const std::string& file);

/// Answers the address of a name in a library; nullptr for no library and for an unknown name.
void* findFunction(void* library, const char* name);

/// Reads a function of a library; false when there is none.
template <class F> bool find(void* library, const char* name, F& function)
{
    function = reinterpret_cast<F>(findFunction(library, name));
    return function != nullptr;
}

}
