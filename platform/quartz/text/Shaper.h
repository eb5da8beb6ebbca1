// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "Itemizer.h"

namespace brindle::text {

/// A glyph as shaping leaves it, in the face's own units, for any size.
struct ShapedGlyph {
    GlyphId glyph = 0;
    std::uint32_t cluster = 0; // units from the start of its piece
    std::int32_t advance = 0;
    std::int32_t x = 0; // moved from the pen's place
    std::int32_t y = 0;
};

/// A word that is longer is cut, and shaped part by part.
inline constexpr std::size_t kLongestSegment = 4096;

/// What shaping depends on besides the text.
struct ShapingStyle {
    const FontFace* face = nullptr;
    ScriptTag script = kLatin;
    bool rightToLeft = false;

    friend bool operator==(const ShapingStyle&, const ShapingStyle&) = default;
};

/// How far the pen moves over a piece, in the face's units.
struct Advances {
    std::int64_t spaces = 0; // before the word
    std::int64_t whole = 0;
};

/// A word with the spaces before it: what is shaped at once. Places count from the start of the stretch.
struct PieceMeasures {
    std::size_t start = 0;
    std::size_t wordStart = 0; // behind the spaces
    std::size_t end = 0;
    Advances advances;
    bool isPlain
        = false; // known to be letters, with one mark behind them at most; or no word at all
};

/// Takes the pieces of a shaped stretch, in the text's order.
class ShapingSink {
public:
    /// A piece and its glyphs, for those who want to see them.
    class Piece : public PieceMeasures {
    public:
        explicit Piece(const PieceMeasures& measures)
            : PieceMeasures(measures)
        {
        }
        /// Answers the glyphs in visual order, lent for this call; their clusters count from the piece's start.
        virtual std::span<const ShapedGlyph> glyphs() const = 0;

    protected:
        ~Piece() = default;
    };

    virtual void addPiece(const Piece& piece) = 0;

protected:
    ~ShapingSink() = default;
};

/// Shapes a stretch of one style word by word, and remembers the words, or what they are made of.
///
/// The answer is always that of each word (with the spaces before it) shaped by itself in front of
/// a space, so it does not depend on what was seen before.
/// Thread: any.
void shapeStretch(std::u16string_view text, const ShapingStyle& style, ShapingSink& sink);

/// Shapes the words that begin in a window of such a stretch, as shaping the whole would.
/// - Returns: where the next word begins, at or behind `end`.
std::size_t shapeWords(std::u16string_view text, std::size_t start, std::size_t end,
    const ShapingStyle& style, ShapingSink& sink);

/// How much the memory of words holds and has answered, for tests and measurements.
struct WordCacheState {
    std::size_t words = 0;
    std::size_t bytes = 0; // with the tables of pairs of letters
    std::uint64_t hits = 0;
    std::uint64_t misses = 0;
};

WordCacheState wordCacheState();

/// Forgets all words, for tests and measurements.
void clearWordCache();

}
