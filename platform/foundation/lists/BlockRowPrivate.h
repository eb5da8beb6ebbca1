// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "runtime/ObjectMemory.h"

namespace brindle::lists {

/// Elements by their number, needed while a list is read or written. Many of them lie in blocks as objects do: the system
/// has given the pages already, nothing moves when there are more, and nothing around them is tidied up at the end.
template <class T> class BlockRow {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    BlockRow() = default;
    /// Begins with so many elements, which say nothing yet.
    explicit BlockRow(std::size_t count)
    {
        while (capacity_ < count)
            addBlock(count - capacity_);
        size_ = count;
    }
    BlockRow(BlockRow&& other) noexcept { *this = std::move(other); }
    BlockRow& operator=(BlockRow&& other) noexcept
    {
        std::swap(blocks_, other.blocks_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
        std::swap(next_, other.next_);
        std::swap(end_, other.end_);
        return *this;
    }

    std::size_t size() const { return size_; }
    T& operator[](std::size_t index)
    {
        return static_cast<T*>(blocks_[index / kEach].get())[index % kEach];
    }
    const T& operator[](std::size_t index) const { return const_cast<BlockRow&>(*this)[index]; }
    void add(T element)
    {
        if (next_ == end_) [[unlikely]]
            goOn();
        *next_++ = element;
        ++size_;
    }
    void cutTo(std::size_t size)
    {
        size_ = size;
        next_ = end_ = nullptr;
    }
    /// Makes all bytes of all elements zero.
    void wipe()
    {
        for (std::size_t first = 0; first < size_; first += kEach)
            std::memset(&(*this)[first], 0, std::min(size_ - first, kEach) * sizeof(T));
    }

private:
    static constexpr std::size_t kEach = kObjectBlock / sizeof(T);
    static constexpr std::size_t kShort
        = kEach / 16; // a row up to here is a piece of memory like any other
    struct Giving {
        void operator()(void* block) const { giveObjectMemory(block); }
    };

    void addBlock(std::size_t count)
    {
        const bool isShort = blocks_.empty() && count <= kShort;
        blocks_.emplace_back(isShort ? std::malloc(count * sizeof(T)) : takeObjectBlock());
        if (!blocks_.back())
            throw std::bad_alloc();
        capacity_ += isShort ? count : kEach;
    }
    /// Finds where the next element belongs.
    [[gnu::noinline]] void goOn()
    {
        if (size_ == capacity_)
            grow();
        next_ = &(*this)[size_];
        end_ = next_ + std::min(kEach - size_ % kEach, capacity_ - size_);
    }
    void grow()
    {
        if (capacity_ % kEach == 0 && capacity_)
            return addBlock(kEach);
        BlockRow larger(std::max<std::size_t>(64, 2 * capacity_));
        if (size_)
            std::memcpy(&larger[0], &(*this)[0], size_ * sizeof(T));
        larger.size_ = size_;
        *this = std::move(larger);
    }

    std::vector<std::unique_ptr<void, Giving>> blocks_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
    T* next_ = nullptr; // where the next element belongs, unless that is the end
    T* end_ = nullptr;
};

}
