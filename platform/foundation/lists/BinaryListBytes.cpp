// SPDX-License-Identifier: Apache-2.0
#include "BinaryListBytesPrivate.h"

namespace brindle::lists {

std::size_t ValueBytes::writeNatural(std::uint64_t value)
{
    if (static_cast<std::int64_t>(value) >= 0)
        return writeInteger(static_cast<std::int64_t>(value));
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(17);
    *to = 0x14;
    store(to + 1, 0, 8);
    store(to + 9, value, 8);
    bytes_.advance(17);
    return start;
}

std::size_t ValueBytes::writeLongHead(unsigned char marker, std::size_t count)
{
    const std::size_t start = bytes_.size();
    bytes_.put(static_cast<char>(marker | 15));
    writeNumber(0x10, count);
    return start;
}

std::size_t ValueBytes::writeData(std::span<const unsigned char> bytes)
{
    const std::size_t start = writeHead(0x40, bytes.size(), 1);
    bytes_.put(bytes.data(), bytes.size());
    return start;
}

std::size_t ValueBytes::writeString(strings::View text)
{
    const std::size_t count = text.size();
    if (text.isNarrow()) {
        const std::size_t start = writeHead(0x50, count, 1);
        bytes_.put(text.narrow());
        return start;
    }
    const std::size_t start = writeHead(0x60, count, 2);
    unsigned char* const to = bytes_.room(2 * count);
    const char16_t* const units = text.wide().data();
    for (std::size_t i = 0; i < count; ++i)
        storeAs<std::uint16_t>(to + 2 * i, units[i]);
    bytes_.advance(2 * count);
    return start;
}

}
