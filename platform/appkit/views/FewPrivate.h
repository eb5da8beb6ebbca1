// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace brindle {

/// A list of at most `N` plain values that asks for no memory, for what is made anew in every frame.
template <class T, std::size_t N> class Few {
public:
    Few() = default;
    /// Takes the first `N`.
    explicit Few(std::span<const T> values)
        : size_(std::min(values.size(), N))
    {
        std::copy_n(values.begin(), size_, values_.begin());
    }

    bool isEmpty() const { return size_ == 0; }
    bool isFull() const { return size_ == N; }
    std::size_t size() const { return size_; }
    std::span<const T> all() const { return { values_.data(), size_ }; }
    const T& operator[](std::size_t i) const { return values_[i]; }

    /// - value: is left out of a full list.
    void add(const T& value)
    {
        if (!isFull())
            values_[size_++] = value;
    }
    void remove(std::size_t i)
    {
        std::copy(values_.begin() + i + 1, values_.begin() + size_, values_.begin() + i);
        --size_;
    }
    void clear() { size_ = 0; }

private:
    std::array<T, N> values_ {};
    std::size_t size_ = 0;
};

}
