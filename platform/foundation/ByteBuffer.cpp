// SPDX-License-Identifier: Apache-2.0
#include "ByteBuffer.h"

#include <cstdlib>
#include <cstring>

#include <sys/mman.h>

namespace brindle {

ByteBuffer::~ByteBuffer()
{
    if (owner_ == Owner::allocated)
        std::free(bytes_);
    else if (owner_ == Owner::mapped && length_)
        ::munmap(bytes_, length_);
}

bool ByteBuffer::reserve(std::size_t capacity)
{
    // Half a tebibyte: a length beyond it is a mistake, and a memory checker ends the process over it.
    constexpr std::size_t kMost = std::size_t { 1 } << 39;
    if (capacity > kMost)
        return false;
    if (owner_ == Owner::allocated) {
        if (capacity <= capacity_)
            return true;
        void* const moved = std::realloc(bytes_, capacity);
        if (!moved)
            return false;
        bytes_ = static_cast<unsigned char*>(moved);
        capacity_ = capacity;
        return true;
    }
    ByteBuffer own;
    if (!own.reserve(capacity > length_ ? capacity : length_))
        return false;
    if (length_)
        std::memcpy(own.bytes_, bytes_, length_);
    own.length_ = length_;
    swap(own);
    return true;
}

bool ByteBuffer::grow(std::size_t length)
{
    if (owner_ == Owner::allocated && length <= capacity_)
        return true;
    const std::size_t half = capacity_ / 2;
    return reserve(length < capacity_ + half ? capacity_ + half : length) || reserve(length);
}

bool ByteBuffer::resize(std::size_t length)
{
    if (!grow(length))
        return false;
    if (length > length_)
        std::memset(bytes_ + length_, 0, length - length_);
    length_ = length;
    return true;
}

bool ByteBuffer::append(const void* bytes, std::size_t length)
{
    if (!length)
        return true;
    const auto* from = static_cast<const unsigned char*>(bytes);
    const bool isOwn = bytes_ && from >= bytes_ && from < bytes_ + length_;
    const std::size_t offset = isOwn ? static_cast<std::size_t>(from - bytes_) : 0;
    if (length > static_cast<std::size_t>(-1) - length_ || !grow(length_ + length))
        return false;
    std::memmove(bytes_ + length_, isOwn ? bytes_ + offset : from, length);
    length_ += length;
    return true;
}

}
