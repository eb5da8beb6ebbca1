// SPDX-License-Identifier: Apache-2.0
#include "Pages.h"

#include <bit>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace brindle {

NSUInteger NSPageSize()
{
    static const auto size = static_cast<NSUInteger>(sysconf(_SC_PAGESIZE));
    return size;
}

NSUInteger NSLogPageSize() { return static_cast<NSUInteger>(std::countr_zero(NSPageSize())); }

NSUInteger NSRoundDownToMultipleOfPageSize(NSUInteger bytes) { return bytes & ~(NSPageSize() - 1); }

NSUInteger NSRoundUpToMultipleOfPageSize(NSUInteger bytes)
{
    return NSRoundDownToMultipleOfPageSize(bytes + NSPageSize() - 1);
}

void* NSAllocateMemoryPages(NSUInteger bytes)
{
    const NSUInteger size = NSRoundUpToMultipleOfPageSize(bytes ? bytes : 1);
    if (size < bytes)
        return nullptr; // rounding up went past the largest number
    void* const pages
        = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

void NSDeallocateMemoryPages(void* pages, NSUInteger bytes)
{
    if (pages)
        munmap(pages, NSRoundUpToMultipleOfPageSize(bytes ? bytes : 1));
}

void NSCopyMemoryPages(const void* source, void* destination, NSUInteger bytes)
{
    std::memmove(destination, source, bytes);
}

}
