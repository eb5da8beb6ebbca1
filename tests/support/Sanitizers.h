// SPDX-License-Identifier: Apache-2.0
#pragma once

// Which sanitizer this program was built for.

namespace brindle::test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool addressesAreWatched = true;
#else
inline constexpr bool addressesAreWatched = false;
#endif

#if defined(__SANITIZE_THREAD__)
inline constexpr bool threadsAreWatched = true;
#else
inline constexpr bool threadsAreWatched = false;
#endif

/// Each object then has a piece of the system's memory of its own.
inline constexpr bool memoryIsWatched = addressesAreWatched || threadsAreWatched;

}
