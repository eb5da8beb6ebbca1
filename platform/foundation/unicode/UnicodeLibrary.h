// SPDX-License-Identifier: Apache-2.0
#pragma once

/// How the Unicode library is reached: it is not linked but loaded, because it costs a millisecond and some megabytes and
/// most programs that show only Latin text never need it.

/// The name of a function as the library exports it; its own headers put its version behind each name.
#define BRINDLE_VERSIONED_TEXT(name) #name
#define BRINDLE_VERSIONED(name) BRINDLE_VERSIONED_TEXT(name)

namespace brindle::unicode {

/// Answers a handle of "libicuuc" or "libicui18n", or nullptr when this machine has none of the version built against.
void* openLibrary(const char* stem);
/// Answers the address of a name in the library; nullptr for a null library and an unknown name.
void* findFunction(void* library, const char* name);

/// Reads a function of the library; false when there is none.
template <class F> bool find(void* library, const char* name, F& function)
{
    function = reinterpret_cast<F>(findFunction(library, name));
    return function != nullptr;
}

}
