// SPDX-License-Identifier: Apache-2.0
#include "BinaryListBytesPrivate.h"

namespace brindle::lists {

std::size_t ValueBytes::writeNumber(unsigned char marker, std::uint64_t bits, std::size_t size)
{
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(9);
    *to = marker;
    store(to + 1, bits, size);
    bytes_.advance(1 + size);
    return start;
}

std::size_t ValueBytes::writeBoolean(bool value)
{
    const std::size_t start = bytes_.size();
    bytes_.put(value ? '\x09' : '\x08');
    return start;
}

std::size_t ValueBytes::writeInteger(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    const std::size_t size = sizeFor(bits); // negative ones take eight bytes
    return writeNumber(static_cast<unsigned char>(0x10 | std::countr_zero(size)), bits, size);
}

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

std::size_t ValueBytes::writeReal(double value)
{
    return writeNumber(0x23, std::bit_cast<std::uint64_t>(value), 8);
}

std::size_t ValueBytes::writeSingle(float value)
{
    return writeNumber(0x22, std::bit_cast<std::uint32_t>(value), 4);
}

std::size_t ValueBytes::writeDate(double seconds)
{
    return writeNumber(0x33, std::bit_cast<std::uint64_t>(seconds), 8);
}

std::size_t ValueBytes::writeUid(std::uint64_t value)
{
    const std::size_t size = sizeFor(value);
    return writeNumber(static_cast<unsigned char>(0x80 | (size - 1)), value, size);
}

std::size_t ValueBytes::writeHead(unsigned char marker, std::size_t count, std::size_t unit)
{
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(10 + count * unit);
    if (count < 15) {
        *to = static_cast<unsigned char>(marker | count);
        bytes_.advance(1);
        return start;
    }
    const std::size_t size = sizeFor(count);
    to[0] = marker | 15;
    to[1] = static_cast<unsigned char>(0x10 | std::countr_zero(size));
    store(to + 2, count, size);
    bytes_.advance(2 + size);
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
