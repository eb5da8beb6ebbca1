// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "NSStringPrivate.h"
#include "PropertyListPrivate.h"

namespace brindle::lists {

/// Writes a binary property list object by object; what an object holds is added before it. Every operation answers
/// the index by which containers refer to the object.
///
/// Equal values of one kind are kept once: adding one again answers the first one's index. Containers are kept each.
/// Cost: some ten nanoseconds a value, no allocation for each.
class BinaryListWriter {
public:
    using Index = std::uint32_t;

    struct Entry {
        Index key;
        Index value;
    };

    Index boolean(bool value);
    Index integer(std::int64_t value);
    Index natural(std::uint64_t value);
    Index real(double value);
    Index single(float value);
    /// - seconds: since the reference date; readers refuse what is not finite.
    Index date(double seconds);
    Index uid(std::uint64_t value);
    Index data(std::span<const unsigned char> bytes);
    /// Readers refuse text with unpaired surrogates.
    Index string(strings::View text);
    Index string(const NSString* text) { return string(strings::Contents(text).view()); }
    Index array(std::span<const Index> elements);
    /// - entries: their keys are strings.
    Index dictionary(std::span<const Entry> entries);

    /// Answers how many objects there are.
    std::size_t count() const { return places_.size(); }
    /// Answers the whole list. The writer is empty afterwards.
    Ref<NSData> finish(Index top);

private:
    /// Where an object begins: behind so many bytes and so many references.
    struct Place {
        std::uint64_t bytes;
        std::uint64_t references;
    };
    /// A place in the table of values that are kept once.
    struct Slot {
        std::uint32_t hash = 0;
        Index indexAndOne = 0;
    };
    /// References whose size is known at the end stand at this place.
    struct Gap {
        std::uint64_t bytes;
        std::uint64_t references;
    };

    Index place(std::size_t start);
    Index number(unsigned char marker, std::uint64_t bits, std::size_t size);
    std::size_t head(unsigned char marker, std::size_t count, std::size_t unit);
    Index unique(std::size_t start);
    void growTable();
    Index beginContainer(unsigned char marker, std::size_t count);

    Output bytes_; // of all objects, without references
    std::vector<Index> references_;
    std::vector<Gap> gaps_; // each container's, in order
    std::vector<Place> places_;
    std::vector<Slot> slots_;
    std::size_t kept_ = 0;
};

}
