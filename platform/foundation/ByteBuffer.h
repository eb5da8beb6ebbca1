// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

#include "runtime/Export.h"

namespace brindle {

/// Bytes in one piece with the way to give them back: grown by `realloc`, borrowed, or pages of a file.
class BRINDLE_EXPORT ByteBuffer {
public:
    enum class Owner { allocated, borrowed, mapped };

    ByteBuffer() = default;
    ByteBuffer(void* bytes, std::size_t length, Owner owner)
        : bytes_(static_cast<unsigned char*>(bytes))
        , length_(length)
        , capacity_(length)
        , owner_(owner)
    {
    }
    ByteBuffer(ByteBuffer&& other) noexcept { swap(other); }
    ByteBuffer& operator=(ByteBuffer&& other) noexcept
    {
        ByteBuffer(std::move(other)).swap(*this);
        return *this;
    }
    ~ByteBuffer();

    unsigned char* bytes() const { return bytes_; }
    std::size_t length() const { return length_; }
    void swap(ByteBuffer& other) noexcept
    {
        std::swap(bytes_, other.bytes_);
        std::swap(length_, other.length_);
        std::swap(capacity_, other.capacity_);
        std::swap(owner_, other.owner_);
    }
    /// Makes sure of room for that many bytes, which are this buffer's own afterwards.
    /// - Returns: false, and nothing changes, when there is no such memory.
    [[nodiscard]] bool reserve(std::size_t capacity);
    /// Cuts the bytes off or adds zeros.
    [[nodiscard]] bool resize(std::size_t length);
    /// Adds bytes, which may be the buffer's own.
    [[nodiscard]] bool append(const void* bytes, std::size_t length);

private:
    bool grow(std::size_t length);

    unsigned char* bytes_ = nullptr;
    std::size_t length_ = 0;
    std::size_t capacity_ = 0;
    Owner owner_ = Owner::allocated;
};

}
