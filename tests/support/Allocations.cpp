// SPDX-License-Identifier: Apache-2.0
#include "support/Allocations.h"

#include "runtime/SanitizedPrivate.h"

namespace {

// Plain data, so that it can be counted before the thread has anything else.
constinit thread_local std::size_t allocations = 0;

}

#if !BRINDLE_SANITIZED

// The program's own names of these three go first; what they do is left to the C library.
extern "C" {

void* __libc_malloc(std::size_t size); // NOLINT: the C library's names
void* __libc_calloc(std::size_t count, std::size_t size); // NOLINT
void* __libc_realloc(void* memory, std::size_t size); // NOLINT

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept
{
    ++allocations;
    return __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept
{
    ++allocations;
    return __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}

#endif

namespace brindle::test {

std::size_t allocationsMade() { return allocations; }

}
