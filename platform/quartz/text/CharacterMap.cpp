// SPDX-License-Identifier: Apache-2.0
#include "CharacterMap.h"

#include <utility>

namespace brindle::text {

namespace {

    constexpr std::size_t kSegments = 4; // characters of 16 bits
    constexpr std::size_t kGroups = 12; // all characters

    /// Answers where the part for a platform and one of its encodings begins; 0 without one.
    std::size_t partFor(const FontTable& table, std::size_t platform, std::size_t encoding)
    {
        const std::size_t count = table.word(2);
        for (std::size_t i = 0; i < count && table.has(4 + 8 * i, 8); ++i) {
            const std::size_t entry = 4 + 8 * i;
            if (table.word(entry) == platform && table.word(entry + 2) == encoding)
                return table.longWord(entry + 4);
        }
        return 0;
    }

    /// Answers the first of some sorted entries that a test says yes to.
    template <class Test> std::size_t firstWith(std::size_t count, Test test)
    {
        std::size_t low = 0;
        for (std::size_t high = count; low < high;) {
            const std::size_t middle = low + (high - low) / 2;
            if (test(middle))
                high = middle;
            else
                low = middle + 1;
        }
        return low;
    }

}

CharacterMap::CharacterMap(const FontTable& characters)
    : table_(characters)
{
    if (partFor(table_, 3, 0)) // symbols go before all others
        return;
    // The order in which the shaping library chooses, too.
    constexpr std::pair<std::size_t, std::size_t> kUnicode[]
        = { { 3, 10 }, { 0, 6 }, { 0, 4 }, { 3, 1 }, { 0, 3 }, { 0, 2 }, { 0, 1 }, { 0, 0 } };
    for (const auto& [platform, encoding] : kUnicode) {
        start_ = partFor(table_, platform, encoding);
        if (!start_)
            continue;
        const std::size_t form = table_.word(start_);
        if (form == kSegments || form == kGroups)
            form_ = form;
        return;
    }
}

std::uint32_t CharacterMap::glyphFor(char32_t codePoint) const
{
    if (form_ == kGroups)
        return glyphInGroups(codePoint);
    return form_ == kSegments && codePoint < 0x10000 ? glyphInSegments(codePoint) : 0;
}

std::uint32_t CharacterMap::glyphInGroups(std::size_t codePoint) const
{
    constexpr std::size_t kEntry = 12;
    const std::size_t groups = start_ + 16;
    const std::size_t count = table_.longWord(start_ + 12);
    const std::size_t found = firstWith(count, [&](std::size_t i) {
        return !table_.has(groups + i * kEntry, kEntry)
            || table_.longWord(groups + i * kEntry + 4) >= codePoint;
    });
    const std::size_t group = groups + found * kEntry;
    if (found == count || !table_.has(group, kEntry) || table_.longWord(group) > codePoint)
        return 0;
    return static_cast<std::uint32_t>(
        table_.longWord(group + 8) + codePoint - table_.longWord(group));
}

std::uint32_t CharacterMap::glyphInSegments(std::size_t codePoint) const
{
    const std::size_t size = table_.word(start_ + 6) & ~std::size_t { 1 }; // of each of four lists
    const std::size_t ends = start_ + 14;
    const std::size_t starts = ends + size + 2;
    const std::size_t found = firstWith(
        size / 2, [&](std::size_t i) { return table_.word(ends + 2 * i) >= codePoint; });
    const std::size_t first = table_.word(starts + 2 * found);
    const std::size_t offsetAt = starts + 2 * size + 2 * found;
    if (found == size / 2 || first > codePoint || !table_.has(offsetAt, 2))
        return 0;
    const std::size_t delta = table_.word(starts + size + 2 * found);
    const std::size_t offset = table_.word(offsetAt);
    std::size_t glyph = codePoint;
    if (offset != 0) {
        glyph = table_.word(offsetAt + offset + 2 * (codePoint - first));
        if (glyph == 0)
            return 0;
    }
    return static_cast<std::uint32_t>(glyph + delta) & 0xFFFF;
}

}
