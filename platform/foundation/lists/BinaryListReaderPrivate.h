// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "PropertyListPrivate.h"

namespace brindle::lists {

/// Answers a number of 1 to 8 bytes, the highest first. Eight bytes from `at` on must be readable.
inline std::uint64_t loadBig(const unsigned char* at, std::size_t size)
{
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::little)
        word = __builtin_bswap64(word);
    return word >> (64 - 8 * size);
}

/// A binary property list: a flat table of objects, which refer to each other by index. Nothing is copied or built
/// until it is asked for; the bytes must outlive the reader.
///
/// `open` checks every object of the table once, so that all questions afterwards are safe and cheap, for the kind of
/// object that the question is about. What it does not see is how containers hold each other: who follows references
/// to any depth asks `childrenFirst` before.
/// Thread: any number at once, after `open`.
class BinaryListReader {
public:
    using Index = std::size_t;

    /// Indexes that a container holds.
    class References {
    public:
        References(const unsigned char* at, std::size_t count, std::size_t size)
            : at_(at)
            , count_(count)
            , size_(size)
        {
        }
        std::size_t size() const { return count_; }
        Index operator[](std::size_t i) const { return loadBig(at_ + i * size_, size_); }
        References first(std::size_t count) const { return { at_, count, size_ }; }
        /// - other: of the same list.
        bool operator==(const References& other) const
        {
            return count_ == other.count_ && std::memcmp(at_, other.at_, count_ * size_) == 0;
        }

    private:
        const unsigned char* at_;
        std::size_t count_;
        std::size_t size_;
    };

    /// Answers whether bytes begin as a binary list does: "bplist0" and one more.
    static bool isBinary(std::span<const unsigned char> bytes);

    /// Reads the table and checks every object.
    /// - Returns: false, with the offset of the culprit, for what is no binary list.
    bool open(std::span<const unsigned char> bytes, Failure& failure);

    Index top() const { return top_; }
    Index count() const { return count_; }
    Kind kind(Index index) const { return kKinds[*at(index)]; }
    /// Answers where an object begins, for messages.
    std::size_t offset(Index index) const
    {
        return static_cast<std::size_t>(at(index) - bytes_.data());
    }

    bool boolean(Index index) const { return *at(index) == 0x09; }
    /// Answers an integer's low 64 bits; they are unsigned when `isNatural`.
    std::int64_t integer(Index index) const;
    /// Answers whether an integer is above the largest signed one.
    bool isNatural(Index index) const;
    double real(Index index) const;
    /// Answers whether a real number was kept in single precision.
    bool isSingle(Index index) const { return *at(index) == 0x22; }
    /// Answers seconds since the reference date, a finite number.
    double date(Index index) const;
    std::uint64_t uid(Index index) const
    {
        const unsigned char* const start = at(index);
        return loadBig(start + 1, (*start & 7) + 1u);
    }
    /// Answers the length of a string in units, of data in bytes, of a container in elements or entries.
    std::size_t length(Index index) const { return contentAt(at(index)).count; }
    std::span<const unsigned char> data(Index index) const;

    /// Answers a string's bytes when it is kept as ASCII, else a view without data.
    std::string_view ascii(Index index) const
    {
        const unsigned char* const start = at(index);
        if (*start >> 4 != 5)
            return {};
        const Content content = contentAt(start);
        return { reinterpret_cast<const char*>(content.first), content.count };
    }
    Ref<NSString> string(Index index) const;

    /// Answers an array's elements, or a dictionary's keys and values, which are as many.
    References elements(Index array) const
    {
        const Content content = contentAt(at(array));
        return { content.first, content.count, referenceSize_ };
    }
    References keys(Index dictionary) const { return elements(dictionary); }
    References values(Index dictionary) const
    {
        const Content content = contentAt(at(dictionary));
        return { content.first + content.count * referenceSize_, content.count, referenceSize_ };
    }
    /// Answers the first entry with this ASCII key, or `count()`.
    Index find(Index dictionary, std::string_view key) const;

    /// Answers the object that stands for a value of any kind but array and dictionary.
    Ref<NSObject> leaf(Index index) const;

    /// What the top object reaches, each object once and behind everything that it holds.
    struct Order {
        std::vector<std::uint32_t> indexes;
        /// By index: how many references lead to an object, one more for the top.
        std::vector<std::uint32_t> uses;
    };
    /// - Returns: false for a container that contains itself, and for more than `kDeepest` in each other.
    bool childrenFirst(Order& order, Failure& failure) const;

private:
    /// What stands in strings, data and containers.
    struct Content {
        std::size_t count; ///< bytes of data, units of a string, elements or entries
        const unsigned char* first;
    };
    struct Shape {
        Kind kind = Kind::none;
        Content content {}; ///< of numbers and the like: their bytes
    };

    /// The kinds by the bytes with which objects begin; no object begins with the rest.
    static constexpr std::array<Kind, 256> makeKinds()
    {
        std::array<Kind, 256> kinds {};
        const auto set = [&](unsigned first, unsigned last, Kind kind) {
            for (unsigned marker = first; marker <= last; ++marker)
                kinds[marker] = kind;
        };
        set(0x08, 0x09, Kind::boolean);
        set(0x10, 0x14, Kind::integer);
        set(0x22, 0x23, Kind::real);
        set(0x33, 0x33, Kind::date);
        set(0x40, 0x4f, Kind::data);
        set(0x50, 0x6f, Kind::string);
        set(0x80, 0x87, Kind::uid);
        set(0xa0, 0xaf, Kind::array);
        set(0xd0, 0xdf, Kind::dictionary);
        return kinds;
    }
    static const std::array<Kind, 256> kKinds;

    /// - at: where an object that has content begins, whose count was checked.
    static Content contentAt(const unsigned char* at)
    {
        const unsigned low = *at & 15;
        if (low < 15)
            return { low, at + 1 };
        const std::size_t size = std::size_t { 1 } << (at[1] & 3);
        return { static_cast<std::size_t>(loadBig(at + 2, size)), at + 2 + size };
    }
    static Shape shapeAt(const unsigned char* at);
    const unsigned char* at(Index index) const
    {
        return bytes_.data() + loadBig(table_ + index * offsetSize_, offsetSize_);
    }
    bool readTrailer(Failure& failure);
    bool check(Index index, std::size_t& length, References& goodKeys, Failure& failure) const;
    bool checkReferences(
        std::size_t start, const Shape& shape, References& goodKeys, Failure& failure) const;
    bool checkKeys(
        std::size_t start, const References& keys, References& goodKeys, Failure& failure) const;
    bool areInTable(const References& all) const;
    References children(Index container) const;
    bool areInOrder(Order& order) const;
    bool walk(Order& order, Failure& failure) const;

    std::span<const unsigned char> bytes_;
    const unsigned char* table_ = nullptr;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    Index count_ = 0;
    Index top_ = 0;
};

inline constexpr std::array<Kind, 256> BinaryListReader::kKinds = makeKinds();

}
