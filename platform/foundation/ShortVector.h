// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory_resource>
#include <vector>

namespace brindle {

/// Room of a `ShortVector`; a base, because the vector that lives in it ends first.
template <std::size_t Bytes> struct ShortRoom {
    alignas(std::max_align_t) std::byte bytes[Bytes];
    std::pmr::monotonic_buffer_resource memory { bytes, Bytes };
};

/// A vector for the time of a call: up to `Count` elements stand in itself, and only more of them ask for memory.
template <class T, std::size_t Count>
class ShortVector : ShortRoom<Count * sizeof(T)>, public std::pmr::vector<T> {
public:
    ShortVector()
        : std::pmr::vector<T>(&this->memory)
    {
        this->reserve(Count);
    }
    template <class Iterator>
    ShortVector(Iterator first, Iterator last)
        : ShortVector()
    {
        this->assign(first, last);
    }
    ShortVector(const ShortVector&) = delete;
    ShortVector& operator=(const ShortVector&) = delete;
};

}
