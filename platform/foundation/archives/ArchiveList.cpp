// SPDX-License-Identifier: Apache-2.0
#include "ArchiveListPrivate.h"

#include "runtime/NSException.h"

namespace brindle::lists {

namespace {

    constexpr std::string_view kHeader = "bplist00";
    constexpr std::size_t kReference = sizeof(ArchiveList::Index); // bytes of one, until the end

    /// Answers a hash of a value's ends, the same in every process: which values are shared must not depend on chance.
    /// Nobody gains by making hashes equal, for only one value of a hash is looked at.
    std::uint32_t markOf(const unsigned char* bytes, std::size_t length)
    {
        const std::uint64_t first = hashing::rest(bytes, length);
        const std::uint64_t last = length > 8 ? hashing::rest(bytes + length - 8, 8) : length;
        return static_cast<std::uint32_t>(
            hashing::mixed(first ^ hashing::kFactor, last ^ 0xe7037ed1a0b428dbu));
    }

    template <class Word>
    unsigned char* storeAll(unsigned char* to, const Pile<std::uint32_t>& offsets)
    {
        offsets.forEach([&](std::uint32_t offset) {
            storeAs<Word>(to, offset);
            to += sizeof(Word);
        });
        return to;
    }

    void storeReferences(unsigned char* to, std::span<const ArchiveList::Index> references)
    {
        for (const ArchiveList::Index reference : references) {
            storeAs<std::uint32_t>(to, reference);
            to += kReference;
        }
    }

}

ArchiveList::ArchiveList() { bytes_.put(kHeader); }

void ArchiveList::refuseSize()
{
    raise("NSInvalidArchiveOperationException",
        "*** -[NSKeyedArchiver encodeObject:forKey:]: the archive is larger than 4 GB");
}

/// Keeps the value whose bytes begin at `start`, or takes them back and answers one that was equal recently.
ArchiveList::Index ArchiveList::keep(std::size_t start)
{
    const unsigned char* const bytes = bytes_.bytes();
    const std::size_t length = bytes_.size() - start;
    const std::uint32_t hash = markOf(bytes + start, length);
    Recent& recent = recent_[hash % recent_.size()];
    // A value's bytes say how many they are, so the equal one needs no length.
    if (recent.indexAndOne && recent.hash == hash
        && std::memcmp(bytes + offsets_[recent.indexAndOne - 1], bytes + start, length) == 0) {
        bytes_.cutTo(start);
        return recent.indexAndOne - 1;
    }
    const Index index = place(start);
    recent = { hash, index + 1 };
    return index;
}

ArchiveList::Index ArchiveList::array(std::span<const Index> elements)
{
    const Index index = place(writeHead(0xa0, elements.size(), kReference));
    storeReferences(bytes_.room(elements.size() * kReference), elements);
    bytes_.advance(elements.size() * kReference);
    return index;
}

ArchiveList::Index ArchiveList::dictionary(std::span<const Entry> entries)
{
    const Index index = place(writeHead(0xd0, entries.size(), 2 * kReference));
    unsigned char* keys = bytes_.room(entries.size() * 2 * kReference);
    unsigned char* values = keys + entries.size() * kReference;
    for (const Entry& entry : entries) {
        storeAs<std::uint32_t>(keys, entry.key);
        storeAs<std::uint32_t>(values, entry.value);
        keys += kReference;
        values += kReference;
    }
    bytes_.advance(entries.size() * 2 * kReference);
    return index;
}

/// Moves everything to the front, as shorter references make room; nothing overtakes what is still to be read.
void ArchiveList::shortenReferences(std::size_t size)
{
    auto* const bytes = const_cast<unsigned char*>(bytes_.bytes());
    std::size_t to = kHeader.size();
    for (std::size_t i = 0; i < offsets_.size(); ++i) {
        const std::size_t from = offsets_[i];
        const std::size_t end = i + 1 < offsets_.size() ? offsets_[i + 1] : bytes_.size();
        const std::size_t holding = headOfContainer(bytes + from);
        const std::size_t head = holding ? holding : end - from;
        offsets_[i] = static_cast<std::uint32_t>(to);
        std::memmove(bytes + to, bytes + from, head);
        to += head;
        for (std::size_t at = from + head; at < end; at += kReference, to += size)
            std::memmove(bytes + to, bytes + at + kReference - size, size);
    }
    bytes_.cutTo(to);
}

Ref<NSData> ArchiveList::finish(Index top)
{
    constexpr std::size_t kTrailer = 32;
    const std::size_t referenceSize = sizeFor(offsets_.size() - 1);
    if (referenceSize < kReference)
        shortenReferences(referenceSize);
    const std::size_t table = bytes_.size();
    const std::size_t offsetSize = sizeFor(table - 1);
    unsigned char* to = bytes_.room(offsets_.size() * offsetSize + kTrailer);
    to = offsetSize == 1  ? storeAll<std::uint8_t>(to, offsets_)
        : offsetSize == 2 ? storeAll<std::uint16_t>(to, offsets_)
        : offsetSize == 4 ? storeAll<std::uint32_t>(to, offsets_)
                          : storeAll<std::uint64_t>(to, offsets_);
    std::memset(to, 0, kTrailer);
    to[6] = static_cast<unsigned char>(offsetSize);
    to[7] = static_cast<unsigned char>(referenceSize);
    store(to + 8, offsets_.size(), 8);
    store(to + 16, top, 8);
    store(to + 24, table, 8);
    bytes_.advance(offsets_.size() * offsetSize + kTrailer);
    return bytes_.data();
}

}
