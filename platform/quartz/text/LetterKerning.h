// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "FontFace.h"
#include "FontFile.h"

namespace brindle::text {

/// The letters and signs of ASCII that show, and the space, counted from the space.
inline constexpr std::size_t kPlainLetters = 0x7F - 0x20;

using PlainLetters = std::bitset<kPlainLetters>;
using LetterGlyphs = std::array<GlyphId, kPlainLetters>;

/// The plain letters of a face, found by their glyphs.
class LettersByGlyph {
public:
    LettersByGlyph() = default;
    explicit LettersByGlyph(const LetterGlyphs& glyphs);

    /// Calls `visit` with each letter among a range of glyphs, and its place there.
    template <class Visit> void forEach(std::size_t first, std::size_t last, Visit visit) const
    {
        auto at = std::ranges::lower_bound(letters_, first, {}, &Letter::glyph);
        for (; at != letters_.end() && at->glyph <= last; ++at)
            visit(at->letter, at->glyph - first);
    }

    /// Answers the letters that have no glyph to themselves.
    PlainLetters sharing() const;

private:
    struct Letter {
        std::size_t glyph = 0;
        std::size_t letter = 0;
    };
    std::array<Letter, kPlainLetters> letters_;
};

/// How far a face moves plain letters that stand side by side, as shaping Latin text does.
///
/// It looks into the face's tables where it is asked; they must stay in memory. Thread: any, once it is filled.
class LetterKerning {
public:
    /// What is done to a pair of letters.
    struct Kern {
        std::int32_t step = 0; // to the way from the first to the second
        std::int32_t moved = 0; // how much of that belongs to the second one
        bool isSure = true; // false where versions of the shaping library differ
    };
    using Kerns = std::array<Kern, kPlainLetters>;

    /// What a coverage or a definition of classes says of each letter.
    using Numbers = std::array<std::uint16_t, kPlainLetters>;
    static constexpr std::uint16_t kNone = 0xFFFF; // the letter is not covered

    LetterKerning() = default;
    explicit LetterKerning(const LetterGlyphs& glyphs)
        : letters_(glyphs)
        , glyphs_(glyphs)
    {
    }

    /// Answers what is done to a letter with each of the others behind it.
    Kerns behind(std::size_t first) const;

    std::size_t byteCount() const { return parts_.capacity() * sizeof(Part); }

    // ---- filling

    /// Begins with what acts together: the first of its parts that has something to say on a pair settles it.
    void beginLookup() { ++lookup_; }

    /// Adds a part with a list of seconds for each first letter. - places: of the lists.
    /// - Returns: false when there are too many parts.
    bool addLists(const FontTable& table, std::size_t start, const Numbers& places)
    {
        return add({ Form::lists, lookup_, table, start, places, {} });
    }

    /// Adds a part that divides letters into classes.
    bool addClasses(
        const FontTable& table, std::size_t start, const Numbers& first, const Numbers& second)
    {
        return add({ Form::classes, lookup_, table, start, first, second });
    }

    /// Adds a sorted list of pairs of the old kind, half of whose moves belongs to each letter.
    bool addPairs(const FontTable& table, std::size_t start)
    {
        return add({ Form::pairs, lookup_, table, start, {}, {} });
    }

private:
    enum class Form { lists, classes, pairs };
    struct Part {
        Form form = Form::lists;
        std::size_t lookup = 0;
        FontTable table;
        std::size_t start = 0;
        Numbers first {};
        Numbers second {};
    };
    class Row;

    bool add(const Part& part);

    LettersByGlyph letters_;
    LetterGlyphs glyphs_ {};
    std::vector<Part> parts_;
    std::size_t lookup_ = 0;
};

}
