// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>

namespace brindle {

/// A list of at most `N` plain values that asks for no memory, for what is made anew in every frame.
template <class T, std::size_t N>
    requires std::is_trivially_copyable_v<T>
class Few {
public:
    Few() { } // the room stays as it is: most lists have one value
    /// Takes the first `N`.
    explicit Few(std::span<const T> values)
        : size_(std::min(values.size(), N))
    {
        std::uninitialized_copy_n(values.begin(), size_, data());
    }
    Few(const Few& other)
        : Few(other.all())
    {
    }
    Few& operator=(const Few& other)
    {
        if (this != &other) {
            size_ = other.size_;
            std::uninitialized_copy_n(other.data(), size_, data());
        }
        return *this;
    }
    ~Few() = default;

    bool isEmpty() const { return size_ == 0; }
    bool isFull() const { return size_ == N; }
    std::size_t size() const { return size_; }
    std::span<const T> all() const { return { data(), size_ }; }
    const T& operator[](std::size_t i) const { return data()[i]; }

    /// - value: is left out of a full list.
    void add(const T& value)
    {
        if (!isFull())
            std::construct_at(data() + size_++, value);
    }
    void remove(std::size_t i)
    {
        std::copy(data() + i + 1, data() + size_, data() + i);
        --size_;
    }
    void clear() { size_ = 0; }

private:
    T* data() { return reinterpret_cast<T*>(room_); }
    const T* data() const { return reinterpret_cast<const T*>(room_); }

    alignas(T) std::byte room_[N * sizeof(T)];
    std::size_t size_ = 0;
};

}
