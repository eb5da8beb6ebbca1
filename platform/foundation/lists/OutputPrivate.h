// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "foundation/NSData.h"

// Memory that writers of property lists fill from the front.

namespace brindle::lists {

/// Answers memory with what was in it, and more room behind it; what is large lies in large pages.
/// - Raises: `std::bad_alloc`; nothing has changed then.
void* enlarged(void* memory, std::size_t capacity);
/// Answers memory full of zeros, to be freed.
void* zeros(std::size_t size);

/// Elements that are added one after the other. They are moved by the system, not one by one.
template <class T> class Row {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    Row() = default;
    /// Begins with so many elements of zero bytes.
    explicit Row(std::size_t count)
        : first_(static_cast<T*>(zeros(count * sizeof(T))))
        , size_(count)
        , capacity_(count)
    {
    }
    Row(Row&& other) noexcept { *this = std::move(other); }
    Row& operator=(Row&& other) noexcept
    {
        std::swap(first_, other.first_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
        return *this;
    }
    ~Row() { std::free(first_); }

    std::size_t size() const { return size_; }
    const T* data() const { return first_; }
    T* data() { return first_; }
    const T& operator[](std::size_t index) const { return first_[index]; }
    T& operator[](std::size_t index) { return first_[index]; }
    T& last() { return first_[size_ - 1]; }
    /// Answers the elements from one on, good until others are added.
    std::span<const T> from(std::size_t index) const { return { first_ + index, size_ - index }; }
    const T* begin() const { return first_; }
    const T* end() const { return first_ + size_; }
    T* begin() { return first_; }
    T* end() { return first_ + size_; }

    /// Answers where at most `count` elements may be written, to be confirmed by `advance`.
    T* room(std::size_t count)
    {
        if (capacity_ - size_ < count) [[unlikely]]
            makeRoom(count);
        return first_ + size_;
    }
    void advance(std::size_t count) { size_ += count; }
    /// Answers how many elements there is room for already.
    std::size_t spare() const { return capacity_ - size_; }
    void reserve(std::size_t capacity)
    {
        first_ = static_cast<T*>(enlarged(first_, capacity * sizeof(T)));
        capacity_ = capacity;
    }
    void add(T element)
    {
        *room(1) = element;
        ++size_;
    }
    void add(std::span<const T> elements)
    {
        if (elements.empty())
            return;
        std::memcpy(room(elements.size()), elements.data(), elements.size_bytes());
        size_ += elements.size();
    }
    void cutTo(std::size_t size) { size_ = size; }
    /// Gives the memory away, to be freed.
    T* release()
    {
        size_ = capacity_ = 0;
        return std::exchange(first_, nullptr);
    }

private:
    [[gnu::noinline]] void makeRoom(std::size_t count) { reserve(roomier(size_ + count)); }
    /// Past some megabytes, room costs nothing before it is used, and growing does.
    std::size_t roomier(std::size_t needed) const
    {
        constexpr std::size_t kLong = (std::size_t { 2 } << 20) / sizeof(T);
        constexpr std::size_t kMuch = (std::size_t { 64 } << 20) / sizeof(T);
        const std::size_t least = needed > kLong ? kMuch : 256 / sizeof(T);
        return std::max({ needed, capacity_ * 2, least });
    }

    T* first_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// Elements that are added one after the other and stay where they are: each block has twice the room of the one before.
template <class T> class Pile {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    Pile() = default;
    ~Pile()
    {
        for (T* block : blocks_)
            std::free(block);
    }
    Pile(const Pile&) = delete;
    Pile& operator=(const Pile&) = delete;

    std::size_t size() const { return size_; }
    T& operator[](std::size_t index) { return at(index); }
    const T& operator[](std::size_t index) const { return at(index); }
    void add(const T& element)
    {
        if (next_ == end_) [[unlikely]]
            addBlock();
        *next_++ = element;
        ++size_;
    }
    /// Calls `body` with every element, from the first to the last.
    template <class F> void forEach(F body) const
    {
        std::size_t left = size_;
        for (std::size_t block = 0; left; ++block) {
            const std::size_t count = std::min(left, kFirst << block);
            for (std::size_t i = 0; i < count; ++i)
                body(blocks_[block][i]);
            left -= count;
        }
    }

private:
    static constexpr std::size_t kFirst
        = std::bit_ceil(256 / sizeof(T) + 1); // elements of the first block

    T& at(std::size_t index) const
    {
        const std::size_t place = index + kFirst;
        const auto block = static_cast<std::size_t>(std::bit_width(place / kFirst) - 1);
        return blocks_[block][place - (kFirst << block)];
    }
    void addBlock()
    {
        const auto block = static_cast<std::size_t>(std::bit_width(size_ / kFirst + 1) - 1);
        const std::size_t count = kFirst << block;
        next_ = blocks_[block] = static_cast<T*>(enlarged(nullptr, count * sizeof(T)));
        end_ = next_ + count;
    }

    std::array<T*, 48> blocks_ {};
    T* next_ = nullptr;
    T* end_ = nullptr;
    std::size_t size_ = 0;
};

/// Bytes that are written one after the other.
class Output : public Row<unsigned char> {
public:
    const unsigned char* bytes() const { return Row::data(); }
    void put(const void* bytes, std::size_t count)
    {
        add({ static_cast<const unsigned char*>(bytes), count });
    }
    void put(std::string_view text) { put(text.data(), text.size()); }
    void put(char c) { add(static_cast<unsigned char>(c)); }
    /// Gives the bytes away.
    Ref<NSData> data()
    {
        constexpr std::size_t kMuch = std::size_t { 1 } << 20;
        const std::size_t size = this->size();
        if (spare() > kMuch)
            reserve(size);
        return NSData::cls().dataWithBytesNoCopy_length(release(), size);
    }
};

}
