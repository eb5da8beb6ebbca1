// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "foundation/ByteBuffer.h"

namespace brindle::text {

/// The name of a font's table, as the file spells it.
struct FontTag {
    // NOLINTNEXTLINE(google-explicit-constructor): a name in quotes is a tag
    consteval FontTag(const char (&name)[5])
    {
        for (int i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(name[i]);
    }
    std::uint32_t value = 0;
};

/// The big-endian numbers of a font's table. What lies outside of it reads 0.
class FontTable {
public:
    FontTable() = default;
    explicit FontTable(std::span<const unsigned char> bytes)
        : bytes_(bytes)
    {
    }

    std::size_t size() const { return bytes_.size(); }
    bool has(std::size_t offset, std::size_t length) const
    {
        return offset <= bytes_.size() && length <= bytes_.size() - offset;
    }
    std::size_t word(std::size_t offset) const
    {
        return has(offset, 2) ? static_cast<std::size_t>(bytes_[offset] << 8 | bytes_[offset + 1])
                              : 0;
    }
    std::size_t longWord(std::size_t offset) const { return word(offset) << 16 | word(offset + 2); }
    int signedWord(std::size_t offset) const
    {
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(word(offset)));
    }

private:
    std::span<const unsigned char> bytes_;
};

/// The numbers of a table that may be damaged: what was read outside of it is noted.
///
/// So is a table that leads to the same places over and over: what is installed makes us read some thousand numbers,
/// and a few kilobytes could make us read for hours.
class CheckedNumbers {
public:
    explicit CheckedNumbers(const FontTable& table)
        : table_(table)
    {
    }

    bool isEmpty() const { return table_.size() == 0; }
    bool isBroken() const { return isBroken_; }
    std::size_t word(std::size_t offset)
    {
        if (!table_.has(offset, 2) || ++reads_ > kMostReads)
            isBroken_ = true;
        return isBroken_ ? 0 : table_.word(offset);
    }
    std::size_t longWord(std::size_t offset) { return word(offset) << 16 | word(offset + 2); }

private:
    static constexpr std::size_t kMostReads = 1 << 17;

    FontTable table_;
    std::size_t reads_ = 0;
    bool isBroken_ = false;
};

/// A font's file in memory, and where its tables lie. Whatever the file says, tables stay within it.
/// Thread: any, once it is open.
class FontFile {
public:
    /// Maps a file. - index: of the face, in a file of several.
    /// - Nil: nothing when it cannot be read.
    static std::optional<FontFile> open(const std::string& path, unsigned index);

    /// Bytes that are lent.
    FontFile(std::span<const unsigned char> bytes, unsigned index);

    std::span<const unsigned char> bytes() const { return bytes_; }
    /// Answers a table, empty when the font has none of that name.
    FontTable table(FontTag tag) const;

private:
    ByteBuffer memory_;
    std::span<const unsigned char> bytes_;
    std::size_t directory_ = 0;
};

}
