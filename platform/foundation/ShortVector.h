// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace brindle {

/// Room of a `ShortVector`; a base, because the vector that lives in it ends first.
template <class T, std::size_t Count> struct ShortRoom {
    alignas(T) std::byte bytes[Count * sizeof(T)];
    bool isTaken = false;
};

/// Gives out the room of a `ShortVector`, and other memory where that is taken or too small.
template <class T, std::size_t Count> class ShortAllocator {
public:
    using value_type = T;
    template <class U> struct rebind {
        using other = ShortAllocator<U, Count>;
    };

    explicit ShortAllocator(ShortRoom<T, Count>& room)
        : room_(&room)
    {
    }
    T* allocate(std::size_t count)
    {
        if (count > Count || std::exchange(room_->isTaken, true))
            return std::allocator<T>().allocate(count);
        return reinterpret_cast<T*>(room_->bytes);
    }
    void deallocate(T* elements, std::size_t count)
    {
        if (elements == reinterpret_cast<T*>(room_->bytes))
            room_->isTaken = false;
        else
            std::allocator<T>().deallocate(elements, count);
    }
    bool operator==(const ShortAllocator&) const = default;

private:
    ShortRoom<T, Count>* room_;
};

/// A vector for the time of a call: up to `Count` elements stand in itself, and only more of them ask for memory.
template <class T, std::size_t Count>
class ShortVector : ShortRoom<T, Count>, public std::vector<T, ShortAllocator<T, Count>> {
    using Base = std::vector<T, ShortAllocator<T, Count>>;

public:
    ShortVector()
        : Base(ShortAllocator<T, Count>(*this))
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
