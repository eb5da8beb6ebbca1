// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <new>

#include "Export.h"

namespace brindle {

/// As long as one lives, the objects that its thread makes stand side by side in large blocks, but for the largest.
/// Objects that are made by the ten thousand and end together, as those of a list that is read, cost a fraction then
/// of what they do one by one, and fill fewer cache lines.
///
/// A block is free again as a whole when its last object has ended, on whichever thread: one object that stays keeps
/// two megabytes. Checkers of memory get a piece of the system's for each object. Runs may stand in each other.
/// Thread: the one that made it.
class BRINDLE_EXPORT ObjectRun {
public:
    ObjectRun();
    ~ObjectRun();
    ObjectRun(const ObjectRun&) = delete;
    ObjectRun& operator=(const ObjectRun&) = delete;
};

/// Answers memory for an object with its header, or for what it holds, aligned to 16 bytes; nullptr when there is none.
BRINDLE_EXPORT void* takeObjectMemory(std::size_t size);
BRINDLE_EXPORT void giveObjectMemory(void* memory);

/// Has containers stand beside the objects that hold them.
template <class T> struct ObjectAllocator {
    using value_type = T;
    ObjectAllocator() = default;
    template <class U> constexpr ObjectAllocator(const ObjectAllocator<U>&) noexcept { }

    T* allocate(std::size_t count)
    {
        if (count > static_cast<std::size_t>(-1) / sizeof(T))
            throw std::bad_array_new_length();
        if (void* const memory = takeObjectMemory(count * sizeof(T)))
            return static_cast<T*>(memory);
        throw std::bad_alloc();
    }
    void deallocate(T* memory, std::size_t) noexcept { giveObjectMemory(memory); }
    bool operator==(const ObjectAllocator&) const = default;
};

/// Answers a whole block for what is needed while objects are made, with anything in it; nullptr when there is none. It
/// is given like an object's memory, and waits with its pages for the next run.
void* takeObjectBlock();
inline constexpr std::size_t kObjectBlock = std::size_t { 2 } << 20; ///< bytes of one, a large page
/// Gives free blocks back to the system, but for one. They wait for the next run until then, because pages cost more
/// than the objects that stand in them; a loop does it when it has nothing else to do.
void trimObjectMemory();
/// Answers whether there is something to trim.
bool hasSpareObjectMemory();

}
