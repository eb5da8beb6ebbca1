// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "PropertyListPrivate.h"
#include "foundation/SameBytesPrivate.h"

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
/// to any depth asks `childrenFirst` before. Who takes the objects in the order of the table checks each of them
/// as it comes, after `begin`.
/// Thread: any number at once, after `open`.
class BinaryListReader {
public:
    using Index = std::size_t;

    /// Indexes that a container holds.
    class References {
    public:
        References() = default;
        References(const unsigned char* at, std::size_t count, std::size_t size)
            : at_(at)
            , count_(count)
            , size_(size)
        {
        }
        std::size_t size() const { return count_; }
        /// Answers a number above all of them; 0 when there are none.
        Index bound() const;
        Index operator[](std::size_t i) const { return loadBig(at_ + i * size_, size_); }
        References first(std::size_t count) const { return { at_, count, size_ }; }
        /// - other: of the same list.
        bool operator==(const References& other) const
        {
            return count_ == other.count_ && sameBytes(at_, other.at_, count_ * size_);
        }

    private:
        const unsigned char* at_ = nullptr;
        std::size_t count_ = 0;
        std::size_t size_ = 1;
    };

    /// Answers whether bytes begin as a binary list does: "bplist0" and one more.
    static bool isBinary(std::span<const unsigned char> bytes);

    /// What stands in strings, data and containers.
    struct Content {
        std::size_t count; ///< bytes of data, units of a string, elements or entries
        const unsigned char* first;
    };
    /// An object that was found in the list.
    struct Shape {
        Kind kind = Kind::none;
        unsigned char marker = 0; ///< its first byte
        Content content {}; ///< of numbers and the like: their bytes
    };
    /// What `check` keeps from one object to the next.
    struct Checks {
        std::size_t left; ///< so many bytes may be in the objects that follow
        /// Of a dictionary that was checked: records of one kind have them too.
        References goodKeys;
        Index keyBound = 0; ///< above all of those
    };

    /// Reads the table and checks every object.
    /// - Returns: false, with the offset of the culprit, for what is no binary list.
    bool open(std::span<const unsigned char> bytes, Failure& failure)
    {
        return begin(bytes, failure) && checkAll(failure);
    }
    /// Finds the table. Nothing else may be asked of an object before it was checked.
    bool begin(std::span<const unsigned char> bytes, Failure& failure);
    /// Checks the objects of a list that was begun.
    bool checkAll(Failure& failure) const;
    Checks checks() const;
    /// Checks one object, each in its turn from the first on.
    /// - shape: set to what the object is.
    /// - bound: set to a number above all references in a container.
    bool check(
        Index index, Checks& checks, Shape& shape, std::size_t& bound, Failure& failure) const;
    /// Answers what a small container seems to hold, before it was checked: any indexes, or none.
    References valuesAhead(Index container) const
    {
        if (container < count_) {
            const std::uint64_t start = loadBig(table_ + container * offsetSize_, offsetSize_);
            // 15 is the mark of larger ones.
            if (start < end_ && bytes_[start] >= 0xa0 && (bytes_[start] & 15) < 15) {
                const std::size_t count = bytes_[start] & 15;
                const std::size_t keys = bytes_[start] >= 0xd0 ? count : 0;
                if (end_ - start > (keys + count) * referenceSize_)
                    return { bytes_.data() + start + 1 + keys * referenceSize_, count,
                        referenceSize_ };
            }
        }
        return {};
    }
    /// Answers whether everything in the table may be held by something that stands behind it.
    bool mayBeInOrder() const;

    Index top() const { return top_; }
    Index count() const { return count_; }
    Kind kind(Index index) const { return kForms[*at(index)].kind; }
    /// Answers where an object begins, for messages.
    std::size_t offset(Index index) const
    {
        return static_cast<std::size_t>(at(index) - bytes_.data());
    }

    bool boolean(Index index) const { return *at(index) == 0x09; }
    /// Answers an integer's low 64 bits; they are unsigned when `isNatural`.
    std::int64_t integer(Index index) const;
    /// Answers whether an integer is above the largest signed one.
    bool isNatural(Index index) const { return *at(index) == 0x14 && integer(index) < 0; }
    double real(Index index) const;
    /// Answers whether a real number was kept in single precision.
    bool isSingle(Index index) const { return *at(index) == 0x22; }
    /// Answers seconds since the reference date, a finite number.
    double date(Index index) const { return real(index); }
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
    Ref<NSString> string(Index index) const { return string(shape(index)); }

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
    Ref<NSObject> leaf(Index index) const { return leaf(shape(index)); }

    /// Answers what an object is; the questions by shape are those above.
    Shape shape(Index index) const { return shapeAt(at(index)); }
    References elements(const Shape& array) const
    {
        return { array.content.first, array.content.count, referenceSize_ };
    }
    References keys(const Shape& dictionary) const { return elements(dictionary); }
    References values(const Shape& dictionary) const
    {
        const Content& content = dictionary.content;
        return { content.first + content.count * referenceSize_, content.count, referenceSize_ };
    }
    Ref<NSString> string(const Shape& shape) const;
    Ref<NSObject> leaf(const Shape& shape) const;

    /// Finds what the top object reaches, each object once and behind everything that it holds.
    /// - Returns: false for a container that contains itself, and for more than `kDeepest` in each other.
    bool childrenFirst(std::vector<std::uint32_t>& order, Failure& failure) const;

private:
    enum class Unit : unsigned char { byte, wide, reference, pair };
    /// What an object's first byte says.
    struct Form {
        Kind kind = Kind::none; ///< no object begins with such a byte
        Unit unit = Unit::byte; ///< of its content
        bool isLong = false; ///< how much content there is stands behind
        unsigned char count = 0;
    };
    static constexpr std::array<Form, 256> makeForms()
    {
        std::array<Form, 256> forms {};
        const auto counted = [&](unsigned first, Kind kind, Unit unit) {
            for (unsigned low = 0; low < 15; ++low)
                forms[first + low] = { kind, unit, false, static_cast<unsigned char>(low) };
            forms[first + 15] = { kind, unit, true, 0 };
        };
        forms[0x08] = forms[0x09] = { Kind::boolean };
        for (unsigned low = 0; low <= 4; ++low)
            forms[0x10 + low]
                = { Kind::integer, Unit::byte, false, static_cast<unsigned char>(1u << low) };
        forms[0x22] = { Kind::real, Unit::byte, false, 4 };
        forms[0x23] = { Kind::real, Unit::byte, false, 8 };
        forms[0x33] = { Kind::date, Unit::byte, false, 8 };
        for (unsigned low = 0; low <= 7; ++low)
            forms[0x80 + low]
                = { Kind::uid, Unit::byte, false, static_cast<unsigned char>(low + 1) };
        counted(0x40, Kind::data, Unit::byte);
        counted(0x50, Kind::string, Unit::byte);
        counted(0x60, Kind::string, Unit::wide);
        counted(0xa0, Kind::array, Unit::reference);
        counted(0xd0, Kind::dictionary, Unit::pair);
        return forms;
    }
    static const std::array<Form, 256> kForms;

    /// - at: where an object that has content begins, whose count was checked.
    static Content contentAt(const unsigned char* at)
    {
        const unsigned low = *at & 15;
        if (low < 15)
            return { low, at + 1 };
        const std::size_t size = std::size_t { 1 } << (at[1] & 3);
        return { static_cast<std::size_t>(loadBig(at + 2, size)), at + 2 + size };
    }
    /// - at: in front of the trailer, so that what a first byte announces can be read before it is believed.
    static Shape shapeAt(const unsigned char* at)
    {
        const Form form = kForms[*at];
        if (!form.isLong) [[likely]]
            return { form.kind, *at, { form.count, at + 1 } };
        if (at[1] < 0x10 || at[1] > 0x13)
            return {};
        return { form.kind, *at, contentAt(at) };
    }
    const unsigned char* at(Index index) const
    {
        return bytes_.data() + loadBig(table_ + index * offsetSize_, offsetSize_);
    }
    bool readTrailer(Failure& failure);
    bool checkContent(const Shape& shape, std::size_t start, Failure& failure) const;
    bool checkContainer(const Shape& shape, std::size_t start, Checks& checks, std::size_t& bound,
        Failure& failure) const;
    bool checkKeys(std::size_t start, const References& keys, Failure& failure) const;
    References held(const Shape& container) const
    {
        const std::size_t each = container.kind == Kind::dictionary ? 2 : 1;
        return { container.content.first, container.content.count * each, referenceSize_ };
    }

    std::span<const unsigned char> bytes_;
    const unsigned char* table_ = nullptr; // behind the objects
    std::size_t end_ = 0; // of the objects
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    Index count_ = 0;
    Index top_ = 0;
};

inline constexpr std::array<BinaryListReader::Form, 256> BinaryListReader::kForms = makeForms();

}
