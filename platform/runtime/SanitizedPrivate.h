// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define BRINDLE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define BRINDLE_SANITIZED 1
#endif
#endif
#ifndef BRINDLE_SANITIZED
#define BRINDLE_SANITIZED 0
#endif

namespace brindle {

/// Whether a checker of memory watches: it wants a piece of the system's memory for each thing.
inline constexpr bool isSanitized = BRINDLE_SANITIZED;

}
