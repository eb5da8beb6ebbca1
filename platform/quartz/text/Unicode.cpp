// SPDX-License-Identifier: Apache-2.0
#include "Unicode.h"

#include "foundation/unicode/UnicodeLibrary.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>

#include <unicode/ubidi.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>

namespace brindle::text {

namespace {

    // The time for deeply nested directions grows with the square of the length. Nobody can follow
    // a nesting over so many letters, and so the levels of a very long line are found part by part.
    constexpr std::size_t kDirectionUnits = 32 * 1024;

    struct CodePointRange {
        char32_t first = 0;
        char32_t last = 0;
    };

    // The few characters among arrows, dingbats and other signs that are pictures by themselves. Signs stand in
    // nearly every menu, and asking the library about them would load it into every process.
    constexpr CodePointRange kEarlyPictures[] = { { 0x231A, 0x231B }, { 0x23E9, 0x23EC },
        { 0x23F0, 0x23F0 }, { 0x23F3, 0x23F3 }, { 0x25FD, 0x25FE }, { 0x2614, 0x2615 },
        { 0x2648, 0x2653 }, { 0x267F, 0x267F }, { 0x2693, 0x2693 }, { 0x26A1, 0x26A1 },
        { 0x26AA, 0x26AB }, { 0x26BD, 0x26BE }, { 0x26C4, 0x26C5 }, { 0x26CE, 0x26CE },
        { 0x26D4, 0x26D4 }, { 0x26EA, 0x26EA }, { 0x26F2, 0x26F3 }, { 0x26F5, 0x26F5 },
        { 0x26FA, 0x26FA }, { 0x26FD, 0x26FD }, { 0x2705, 0x2705 }, { 0x270A, 0x270B },
        { 0x2728, 0x2728 }, { 0x274C, 0x274C }, { 0x274E, 0x274E }, { 0x2753, 0x2755 },
        { 0x2757, 0x2757 }, { 0x2795, 0x2797 }, { 0x27B0, 0x27B0 }, { 0x27BF, 0x27BF },
        { 0x2B1B, 0x2B1C }, { 0x2B50, 0x2B50 }, { 0x2B55, 0x2B55 } };

    /// The functions used here, loaded by the first text that needs one.
    struct Icu {
        decltype(&::ubidi_open) openBidi = nullptr;
        decltype(&::ubidi_close) closeBidi = nullptr;
        decltype(&::ubidi_setPara) setParagraph = nullptr;
        decltype(&::ubidi_getLevels) levels = nullptr;
        decltype(&::ubidi_getParaLevel) paragraphLevel = nullptr;
        decltype(&::ubidi_reorderVisual) reorderVisual = nullptr;
        decltype(&::ubrk_open) openIterator = nullptr;
        decltype(&::ubrk_close) closeIterator = nullptr;
        decltype(&::ubrk_setText) setText = nullptr;
        decltype(&::ubrk_first) first = nullptr;
        decltype(&::ubrk_next) next = nullptr;
        decltype(&::u_hasBinaryProperty) hasProperty = nullptr;
        bool loaded = false;

        Icu()
        {
            using unicode::find;
            void* const library = unicode::openLibrary("libicuuc");
            loaded = find(library, BRINDLE_VERSIONED(ubidi_open), openBidi)
                && find(library, BRINDLE_VERSIONED(ubidi_close), closeBidi)
                && find(library, BRINDLE_VERSIONED(ubidi_setPara), setParagraph)
                && find(library, BRINDLE_VERSIONED(ubidi_getLevels), levels)
                && find(library, BRINDLE_VERSIONED(ubidi_getParaLevel), paragraphLevel)
                && find(library, BRINDLE_VERSIONED(ubidi_reorderVisual), reorderVisual)
                && find(library, BRINDLE_VERSIONED(ubrk_open), openIterator)
                && find(library, BRINDLE_VERSIONED(ubrk_close), closeIterator)
                && find(library, BRINDLE_VERSIONED(ubrk_setText), setText)
                && find(library, BRINDLE_VERSIONED(ubrk_first), first)
                && find(library, BRINDLE_VERSIONED(ubrk_next), next)
                && find(library, BRINDLE_VERSIONED(u_hasBinaryProperty), hasProperty);
        }
    };

    const Icu& icu()
    {
        static const Icu& instance = *new Icu;
        return instance;
    }

    struct IcuDeleter {
        void operator()(UBiDi* bidi) const { icu().closeBidi(bidi); }
        void operator()(UBreakIterator* iterator) const { icu().closeIterator(iterator); }
    };

    template <typename T> using Owned = std::unique_ptr<T, IcuDeleter>;

    UBiDiLevel paragraphLevel(BaseDirection direction)
    {
        switch (direction) {
        case BaseDirection::leftToRight:
            return 0;
        case BaseDirection::rightToLeft:
            return 1;
        case BaseDirection::natural:
            break;
        }
        return UBIDI_DEFAULT_LTR;
    }

    /// Appends the levels of a part of the text.
    bool addLevels(
        UBiDi* bidi, std::u16string_view part, UBiDiLevel base, std::vector<Level>& levels)
    {
        UErrorCode status = U_ZERO_ERROR;
        const auto length = static_cast<std::int32_t>(part.size());
        icu().setParagraph(bidi, part.data(), length, base, nullptr, &status);
        const UBiDiLevel* found = U_SUCCESS(status) ? icu().levels(bidi, &status) : nullptr;
        if (U_FAILURE(status) || !found)
            return false;
        levels.insert(levels.end(), found, found + length);
        return true;
    }

    bool fitsIcu(std::u16string_view text)
    {
        return text.size() <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
    }

    UBreakIterator* open(UBreakIteratorType kind)
    {
        UErrorCode status = U_ZERO_ERROR;
        UBreakIterator* const iterator
            = icu().loaded ? icu().openIterator(kind, "", nullptr, 0, &status) : nullptr;
        return U_SUCCESS(status) ? iterator : nullptr;
    }

    UBreakIterator* characterIterator()
    {
        thread_local const Owned<UBreakIterator> iterator(open(UBRK_CHARACTER));
        return iterator.get();
    }

    UBreakIterator* lineIterator()
    {
        thread_local const Owned<UBreakIterator> iterator(open(UBRK_LINE));
        return iterator.get();
    }

    bool addBoundaries(
        UBreakIterator* iterator, std::u16string_view text, std::vector<std::size_t>& boundaries)
    {
        UErrorCode status = U_ZERO_ERROR;
        icu().setText(iterator, text.data(), static_cast<std::int32_t>(text.size()), &status);
        if (U_FAILURE(status))
            return false;
        for (std::int32_t at = icu().first(iterator); at != UBRK_DONE; at = icu().next(iterator))
            boundaries.push_back(static_cast<std::size_t>(at));
        // The iterator must not go on pointing at text that its owner may free.
        icu().setText(iterator, u"", 0, &status);
        return true;
    }

    std::vector<std::size_t> unitBoundaries(std::u16string_view text)
    {
        std::vector<std::size_t> boundaries(text.size() + 1);
        std::iota(boundaries.begin(), boundaries.end(), std::size_t { 0 });
        return boundaries;
    }

}

bool isPlainLatin(std::u16string_view text)
{
    return std::ranges::all_of(text, [](char16_t unit) { return isPlainLatin(unit); });
}

bool mayRunRightToLeft(std::u16string_view text)
{
    constexpr char16_t kOnlyLeftToRight = 0x0400;
    if (bitsOf(text) < kOnlyLeftToRight)
        return false;
    return std::ranges::any_of(text, [](char16_t unit) {
        if (unit < 0x0590)
            return false;
        const bool letter = (unit >= 0x0590 && unit < 0x0900) || (unit >= 0xFB1D && unit < 0xFE00)
            || (unit >= 0xFE70 && unit < 0xFF00);
        const bool mark = unit == 0x200F || unit == 0x202B || unit == 0x202E || unit == 0x2067;
        // The first halves of the pairs from U+10800 to U+10FFF and from U+1E800 to U+1EFFF.
        const bool pair = unit == 0xD802 || unit == 0xD803 || unit == 0xD83A || unit == 0xD83B;
        return letter || mark || pair;
    });
}

Directions directionsOfText(std::u16string_view text, BaseDirection direction)
{
    Directions result;
    result.base = direction == BaseDirection::rightToLeft ? 1 : 0;
    if (text.empty() || !icu().loaded)
        return result;
    const Owned<UBiDi> bidi(icu().openBidi());
    if (!bidi)
        return result;
    result.levels.reserve(text.size());
    UBiDiLevel base = paragraphLevel(direction);
    for (std::size_t start = 0; start < text.size(); start += kDirectionUnits) {
        const std::u16string_view part = text.substr(start, kDirectionUnits);
        if (!addLevels(bidi.get(), part, base, result.levels))
            return { {}, result.base };
        if (start == 0)
            base = result.base = icu().paragraphLevel(bidi.get());
    }
    return result;
}

std::vector<std::size_t> visualOrder(const std::vector<Level>& levels)
{
    std::vector<std::int32_t> order(levels.size());
    std::iota(order.begin(), order.end(), 0);
    const bool mixed = std::ranges::any_of(levels, [](Level level) { return level != 0; });
    if (mixed && icu().loaded)
        icu().reorderVisual(levels.data(), static_cast<std::int32_t>(levels.size()), order.data());
    return { order.begin(), order.end() };
}

std::vector<std::size_t> characterBoundaries(std::u16string_view text)
{
    UBreakIterator* iterator = isPlainLatin(text) || !fitsIcu(text) ? nullptr : characterIterator();
    std::vector<std::size_t> boundaries;
    return iterator && addBoundaries(iterator, text, boundaries) ? boundaries
                                                                 : unitBoundaries(text);
}

std::vector<std::size_t> lineBoundaries(std::u16string_view text)
{
    UBreakIterator* iterator = fitsIcu(text) ? lineIterator() : nullptr;
    std::vector<std::size_t> boundaries;
    if (!iterator || !addBoundaries(iterator, text, boundaries))
        boundaries = { 0, text.size() };
    return boundaries;
}

bool isPictureByItself(char32_t codePoint)
{
    constexpr char32_t kFirstPlane = 0x1F000;
    if (codePoint >= kFirstPlane)
        return icu().loaded
            && icu().hasProperty(static_cast<UChar32>(codePoint), UCHAR_EMOJI_PRESENTATION);
    if (codePoint < kEarlyPictures[0].first || codePoint > std::end(kEarlyPictures)[-1].last)
        return false;
    return std::ranges::any_of(kEarlyPictures, [codePoint](const CodePointRange& range) {
        return codePoint >= range.first && codePoint <= range.last;
    });
}

}
