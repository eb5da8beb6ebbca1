// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "LetterRules.h"
#include "Shaper.h"

namespace brindle::text {

/// How a face sets plain letters (ASCII) one behind the other, from left to right.
///
/// Most faces do no more to such letters than to kern them by pairs, and those are read from the face's tables. Words are
/// then set without shaping, and come out as shaping would set them. Letters that a face has other rules for, such as
/// ligatures, are left to it. Thread: one at a time.
class LetterPairs {
public:
    explicit LetterPairs(const FontFace& face);

    /// Measures the spaces and the word that begin at an index.
    /// - Returns: false where shaping must be asked.
    bool measure(std::u16string_view text, std::size_t start, PieceMeasures& measures);

    /// Sets a piece that was measured.
    /// - text: that of the piece, and what follows it.
    void set(std::u16string_view text, std::size_t length, std::vector<ShapedGlyph>& glyphs) const;

    std::size_t byteCount() const
    {
        return sizeof *this + rowCount_ * sizeof(Row) + rules_.kerning.byteCount();
    }

private:
    struct Pair {
        static constexpr std::int16_t kUnknown = std::numeric_limits<std::int16_t>::min();
        std::int16_t step = kUnknown; // from the place of the first letter to that of the second
        std::int16_t moved = 0; // how much of that belongs to the second one
    };
    using Row = std::array<Pair, kPlainLetters>;

    static std::size_t letterOf(char16_t unit) { return static_cast<std::size_t>(unit) - u' '; }
    const Pair& pair(std::size_t first, std::size_t second) const
    {
        return (*known_[first])[second];
    }
    /// Answers how far a letter stands from the one before it; kUnknown for two that are left to shaping.
    std::int16_t step(std::size_t first, std::size_t second)
    {
        const std::int16_t known = pair(first, second).step;
        return known == Pair::kUnknown && !rows_[first] ? readRow(first)[second].step : known;
    }
    const Row& readRow(std::size_t first);
    bool measureSpaces(std::u16string_view text, PieceMeasures& measures);
    bool measureEnd(std::u16string_view text, std::size_t letter, PieceMeasures& measures);
    bool isFree(std::size_t letter) const;

    LetterGlyphs glyphs_ {};
    std::array<std::int32_t, kPlainLetters> advances_ {};
    LetterRules rules_;
    std::array<const Row*, kPlainLetters> known_ {}; // by first letter; never null
    std::array<std::unique_ptr<Row>, kPlainLetters> rows_; // those that were read
    std::size_t rowCount_ = 0;
};

/// What is known of faces, in bounded memory: when it is too much, all is forgotten and learned again as text comes.
///
/// Thread: one at a time.
class LetterTables {
public:
    /// - mostBytes: together with what one face more may take, some forty kilobytes.
    explicit LetterTables(std::size_t mostBytes)
        : mostBytes_(mostBytes)
    {
    }

    /// Answers what is known of a face, good until the next call.
    LetterPairs& of(const FontFace& face);

    void clear();
    std::size_t byteCount() const { return otherBytes_ + (current_ ? current_->byteCount() : 0); }

private:
    std::unordered_map<const FontFace*, LetterPairs> tables_;
    const FontFace* face_ = nullptr; // the last one that was asked for, …
    LetterPairs* current_ = nullptr; // … whose table may still grow
    std::size_t otherBytes_ = 0;
    std::size_t mostBytes_;
};

}
