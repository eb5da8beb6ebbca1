// SPDX-License-Identifier: Apache-2.0
#include "OutputPrivate.h"

#include <new>

#include <sys/mman.h>

#include "foundation/Pages.h"

namespace brindle::lists {

namespace {

    /// Asks for large pages before the memory is touched: for many megabytes, taking page after page from the system
    /// costs as much as writing them.
    void* inLargePages(void* memory, std::size_t size)
    {
        constexpr std::size_t kLarge = std::size_t { 8 } << 20;
        if (!memory)
            throw std::bad_alloc();
        if (size < kLarge)
            return memory;
        const auto start = reinterpret_cast<std::uintptr_t>(memory);
        const std::uintptr_t first = NSRoundUpToMultipleOfPageSize(start);
        const std::uintptr_t end = NSRoundDownToMultipleOfPageSize(start + size);
        ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE); // or as it was
        return memory;
    }

}

void* enlarged(void* memory, std::size_t capacity)
{
    return inLargePages(std::realloc(memory, capacity), capacity);
}

void* zeros(std::size_t size) { return inLargePages(std::calloc(size ? size : 1, 1), size); }

}
