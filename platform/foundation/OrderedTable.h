// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "runtime/NSObject.h"
#include "runtime/ObjectMemory.h"

namespace brindle {

/// What hashed collections keep for an element; a removed one leaves an entry without a key until the next tidying.
struct TableEntry {
    std::uint64_t hash = 0;
    Ref<NSObject> key;
};

/// What dictionaries keep.
struct PairEntry : TableEntry {
    Ref<NSObject> value;
};

/// Ends a search whose `isEqual:` changed the very collection: raises `NSGenericException`.
[[noreturn]] BRINDLE_EXPORT void raiseChangedWhileSearching();

/// The storage of sets and dictionaries: entries in the order of insertion and, from nine entries on, a table of
/// their places, found by the keys' own `hash` and `isEqual:`.
///
/// Those two are foreign code: nothing here is half done while one of them runs.
template <class Entry> class OrderedTable {
public:
    using Entries = std::vector<Entry, ObjectAllocator<Entry>>;
    static constexpr std::size_t kNowhere = ~std::size_t {};

    std::size_t count() const { return live_; }
    /// The number of entries, removed ones included: the bound of places.
    std::size_t places() const { return entries_.size(); }
    const Entry& at(std::size_t place) const { return entries_[place]; }
    Entry& at(std::size_t place) { return entries_[place]; }
    std::uint64_t changes() const { return changes_; }
    void noteChange() { ++changes_; }

    /// Answers the first place from `place` on that holds an entry, or `places()`.
    std::size_t skip(std::size_t place) const
    {
        while (place < entries_.size() && !entries_[place].key)
            ++place;
        return place;
    }

    std::size_t find(const NSObject* key) const
    {
        return live_ ? find(key, key->hash()) : kNowhere;
    }

    std::size_t find(const NSObject* key, std::uint64_t hash) const
    {
        if (slots_.empty()) {
            for (std::size_t place = 0; place < entries_.size(); ++place) {
                if (matches(place, key, hash))
                    return place;
            }
            return kNowhere;
        }
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = start(hash); slots_[at]; at = (at + 1) & mask) {
            if (matches(slots_[at] - 1, key, hash))
                return slots_[at] - 1;
        }
        return kNowhere;
    }

    /// Adds an entry whose key is not there yet.
    void append(Entry&& entry)
    {
        ++changes_;
        if (entries_.size() >= limit())
            tidy(live_ + 1);
        entries_.push_back(std::move(entry));
        ++live_;
        if (!slots_.empty())
            enter(entries_.back().hash, entries_.size());
    }

    /// Takes an entry out and answers it, so that it ends when the table is in order again.
    [[nodiscard]] Entry take(std::size_t place)
    {
        ++changes_;
        Entry gone = std::move(entries_[place]);
        entries_[place] = Entry();
        --live_;
        while (slots_.empty() && !entries_.empty() && !entries_.back().key)
            entries_.pop_back();
        if (entries_.size() > 2 * live_ + kShort)
            tidy(live_);
        return gone;
    }

    /// Empties the table and answers what was in it.
    [[nodiscard]] Entries takeAll()
    {
        ++changes_;
        slots_.clear();
        live_ = 0;
        return std::exchange(entries_, {});
    }

    /// Makes room for that many entries in all.
    void reserve(std::size_t count)
    {
        if (count <= kMostReserved)
            tidy(count > live_ ? count : live_);
    }

private:
    static constexpr std::size_t kShort = 8; // that many are compared one by one, without a table
    static constexpr std::size_t kMostReserved = std::size_t { 1 }
        << 24; // beyond, hints are not believed

    bool matches(std::size_t place, const NSObject* key, std::uint64_t hash) const
    {
        const Entry& entry = entries_[place];
        NSObject* const candidate = entry.key.get();
        if (entry.hash != hash || !candidate)
            return false;
        if (candidate == key)
            return true;
        const std::uint64_t before = changes_;
        const bool equal = candidate->isEqual(key);
        if (changes_ != before)
            raiseChangedWhileSearching();
        return equal;
    }

    std::size_t limit() const { return slots_.empty() ? kShort : slots_.size() / 4 * 3; }

    std::size_t start(std::uint64_t hash) const
    {
        // Addresses and small numbers differ in few bits: the product spreads them over the upper ones.
        return static_cast<std::size_t>((hash * 0x9e3779b97f4a7c15u) >> 32) & (slots_.size() - 1);
    }

    void enter(std::uint64_t hash, std::size_t placeAndOne)
    {
        std::size_t at = start(hash);
        while (slots_[at])
            at = (at + 1) & (slots_.size() - 1);
        slots_[at] = static_cast<std::uint32_t>(placeAndOne);
    }

    /// Drops removed entries and makes room for `wanted` ones in all.
    void tidy(std::size_t wanted)
    {
        std::erase_if(entries_, [](const Entry& entry) { return !entry.key; });
        if (wanted <= kShort) {
            entries_.reserve(wanted);
            slots_.clear();
            return;
        }
        std::size_t size = 16;
        while (size / 2 < wanted)
            size *= 2;
        entries_.reserve(size / 4 * 3);
        slots_.assign(size, 0);
        for (std::size_t place = 0; place < entries_.size(); ++place)
            enter(entries_[place].hash, place + 1);
    }

    Entries entries_;
    std::vector<std::uint32_t> slots_; // 0, or a place and one; the size is a power of two
    std::size_t live_ = 0;
    std::uint64_t changes_ = 0;
};

}
