// SPDX-License-Identifier: Apache-2.0
#include "ImageFilesPrivate.h"

#include <algorithm>
#include <array>

namespace brindle::quartz {

namespace {

    /// Hands codes of changing width out.
    class CodeReader {
    public:
        CodeReader(std::span<const std::byte> bytes, CodeOrder order)
            : bytes_(bytes)
            , order_(order)
        {
        }
        /// Answers the next code; nothing at the end.
        std::optional<unsigned> next(unsigned width)
        {
            while (held_ < width) {
                if (at_ == bytes_.size())
                    return std::nullopt;
                const auto byte = std::to_integer<std::uint32_t>(bytes_[at_++]);
                if (order_ == CodeOrder::lowBitsFirst)
                    bits_ |= byte << held_;
                else
                    bits_ = bits_ << 8 | byte;
                held_ += 8;
            }
            held_ -= width;
            const std::uint32_t mask = (1u << width) - 1;
            if (order_ == CodeOrder::highBitsFirst)
                return bits_ >> held_ & mask;
            const unsigned code = bits_ & mask;
            bits_ >>= width;
            return code;
        }

    private:
        std::span<const std::byte> bytes_;
        CodeOrder order_;
        std::size_t at_ = 0;
        std::uint32_t bits_ = 0;
        unsigned held_ = 0;
    };

    /// The strings seen so far: each is another one with a byte behind it.
    struct CodeTable {
        static constexpr unsigned kMost = 4096;
        std::array<std::uint16_t, kMost> prefix {};
        std::array<std::uint8_t, kMost> last {};
        std::array<std::uint16_t, kMost> length {};

        /// Writes a string's bytes, as many as there is room for, and answers its first one.
        std::uint8_t write(std::vector<std::uint8_t>& out, unsigned code, std::size_t count) const
        {
            const std::size_t from = out.size();
            const std::size_t size = length[code];
            out.resize(std::min(count, from + size));
            for (std::size_t i = size; i-- > 1; code = prefix[code]) {
                if (from + i < out.size())
                    out[from + i] = last[code];
            }
            if (from < out.size())
                out[from] = last[code];
            return last[code];
        }
    };

}

// T. Welch, "A Technique for High-Performance Data Compression" (1984); GIF 89a appendix F; TIFF 6.0 section 13.
std::vector<std::uint8_t> unpackCodes(
    std::span<const std::byte> codes, unsigned bits, CodeOrder order, std::size_t count)
{
    const unsigned clear = 1u << bits;
    const unsigned end = clear + 1;
    const unsigned early = order == CodeOrder::highBitsFirst ? 1 : 0;
    CodeTable table;
    for (unsigned i = 0; i < clear; ++i) {
        table.last[i] = static_cast<std::uint8_t>(i);
        table.length[i] = 1;
    }
    CodeReader reader(codes, order);
    std::vector<std::uint8_t> out;
    unsigned next = end + 1;
    unsigned width = bits + 1;
    constexpr unsigned kNone = CodeTable::kMost;
    unsigned former = kNone;
    while (out.size() < count) {
        const std::optional<unsigned> code = reader.next(width);
        if (!code || *code == end)
            break;
        if (*code == clear) {
            next = end + 1;
            width = bits + 1;
            former = kNone;
            continue;
        }
        if (*code > next || (*code == next && former == kNone))
            break;
        const bool isNew = *code == next; // the string of before with its own first byte
        const std::uint8_t first = table.write(out, isNew ? former : *code, count);
        if (isNew && out.size() < count)
            out.push_back(first);
        if (former != kNone && next < CodeTable::kMost) {
            table.prefix[next] = static_cast<std::uint16_t>(former);
            table.last[next] = first;
            table.length[next] = static_cast<std::uint16_t>(table.length[former] + 1);
            ++next;
            if (next + early == 1u << width && width < 12)
                ++width;
        } else if (isNew)
            break;
        former = *code;
    }
    return out;
}

}
