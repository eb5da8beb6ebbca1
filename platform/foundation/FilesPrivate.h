// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>
#include <utility>

#include <unistd.h>

#include "ByteBuffer.h"
#include "NSString.h"

/// Whole files, by paths in the file system's own bytes.

namespace brindle::files {

/// Answers bytes of the system as text. They need not be: every byte that is not ASCII then reads "?".
Ref<NSString> textFrom(std::string bytes);

/// Owns an open file; a negative number stands for none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }
    /// Answers whether the system closed it without an error, which may be the first word of a failed write.
    bool close()
    {
        const int number = std::exchange(number_, -1);
        return number < 0 || ::close(number) == 0;
    }

private:
    int number_ = -1;
};

/// Writes all of the bytes, however often the system has to be asked; false with its error in `errno`.
bool writeAll(int number, std::span<const unsigned char> bytes);
/// Answers a file's bytes; nothing on any failure (a folder cannot be read).
std::optional<ByteBuffer> read(const char* path);
/// Answers a file's pages, shared with it.
std::optional<ByteBuffer> map(const char* path);
/// Writes over a file or makes it.
bool write(const char* path, std::span<const unsigned char> bytes);
/// Writes a neighbour, brings it to the disk and gives it the file's name. The permissions stay, and where the path is
/// a symbolic link the file behind it is replaced.
bool writeAtomically(const char* path, std::span<const unsigned char> bytes);

}
