// SPDX-License-Identifier: Apache-2.0
#include "LetterPairs.h"

#include <algorithm>
#include <cstdlib>

#include "FontFacePrivate.h"

namespace brindle::text {

namespace {

    // What is longer is no word of a language; it is shaped as far as it is cut.
    constexpr std::size_t kLongestPiece = 256;

}

LetterPairs::LetterPairs(const FontFace& face)
{
    static const Row nothing;
    known_.fill(&nothing);
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter) {
        glyphs_[letter] = face.glyphFor(static_cast<char32_t>(letter + u' '));
        advances_[letter] = hb_font_get_glyph_h_advance(face.handles().font.get(), glyphs_[letter]);
    }
    rules_ = readLetterRules(face, glyphs_);
}

bool LetterPairs::measure(
    std::u16string_view text, std::size_t start, PieceMeasures& measures) const
{
    measures = { start, start, start, {} };
    if (text[start] == u' ' && !measureSpaces(text, measures))
        return false;
    const std::size_t limit = std::min(text.size(), start + kLongestPiece);
    std::size_t at = measures.wordStart;
    if (at >= limit)
        return at == text.size();
    std::int64_t advance = measures.advances.whole;
    std::size_t letter = letterOf(text[at]);
    if (letter >= kPlainLetters)
        return false;
    while (++at < limit) {
        const std::size_t next = letterOf(text[at]);
        if (next >= kPlainLetters)
            return false;
        const std::int16_t step = pair(letter, next).step;
        if (step == Pair::kUnknown)
            return false;
        advance += step;
        if (next == 0)
            break;
        letter = next;
    }
    const bool isAtEnd = at == text.size();
    if (at == limit && (!isAtEnd || !isFree(letter)))
        return false;
    measures.end = at;
    measures.advances.whole = isAtEnd ? advance + advances_[letter] : advance;
    return true;
}

/// Measures the spaces before a word, and what they move the word by.
bool LetterPairs::measureSpaces(std::u16string_view text, PieceMeasures& measures) const
{
    std::size_t at = measures.start;
    while (at < text.size() && text[at] == u' ')
        ++at;
    measures.wordStart = measures.end = at;
    Advances& advances = measures.advances;
    if (const auto between = static_cast<std::int64_t>(at - measures.start - 1); between > 0) {
        if (pair(0, 0).step == Pair::kUnknown)
            return false;
        advances.whole = between * pair(0, 0).step;
    }
    if (at == text.size()) {
        advances.whole += advances_[0];
        advances.spaces = advances.whole;
        return isFree(0);
    }
    const std::size_t next = letterOf(text[at]);
    if (next >= kPlainLetters || pair(0, next).step == Pair::kUnknown)
        return false;
    advances.whole += pair(0, next).step;
    advances.spaces = advances.whole - pair(0, next).moved;
    return true;
}

void LetterPairs::set(
    std::u16string_view text, std::size_t length, std::vector<ShapedGlyph>& glyphs) const
{
    glyphs.resize(length);
    std::int32_t moved = 0;
    for (std::size_t at = 0; at < length; ++at) {
        const std::size_t letter = letterOf(text[at]);
        ShapedGlyph& glyph = glyphs[at];
        glyph = { glyphs_[letter], static_cast<std::uint32_t>(at), advances_[letter] + moved, moved,
            0 };
        if (at + 1 == text.size())
            break;
        const Pair& next = pair(letter, letterOf(text[at + 1]));
        glyph.advance = next.step - next.moved + moved;
        moved = next.moved;
    }
}

bool LetterPairs::isFree(std::size_t letter) const
{
    return letter < kPlainLetters && rules_.isFree[letter];
}

bool LetterPairs::isPlainPair(std::size_t first, std::size_t second) const
{
    return isFree(first) && isFree(second) && !rules_.acting[first][second];
}

bool LetterPairs::learn(std::u16string_view text, std::span<const ShapedGlyph> glyphs)
{
    if (glyphs.size() > kLongestPiece)
        return false;
    for (std::size_t at = 0; at < glyphs.size(); ++at) {
        const std::size_t letter = letterOf(text[at]);
        const std::int32_t moved = at + 1 < glyphs.size() ? glyphs[at + 1].x : 0;
        const bool isLast = at + 1 == text.size();
        if (isLast ? !isFree(letter)
                   : !learnPair(letter, letterOf(text[at + 1]), glyphs[at], moved))
            return false;
    }
    return true;
}

/// - glyph: of the first letter. - moved: how far the second one is.
bool LetterPairs::learnPair(
    std::size_t first, std::size_t second, const ShapedGlyph& glyph, std::int32_t moved)
{
    if (!isPlainPair(first, second) || glyph.glyph != glyphs_[first])
        return false;
    if (pair(first, second).step != Pair::kUnknown)
        return true;
    const std::int32_t step = glyph.advance - glyph.x + moved;
    const auto isSmall = [](std::int32_t value) {
        return std::abs(value) <= std::numeric_limits<std::int16_t>::max();
    };
    if (!isSmall(step) || !isSmall(moved) || !isSmall(advances_[first]))
        return false;
    if (!rows_[first])
        known_[first] = (rows_[first] = std::make_unique<Row>()).get();
    (*rows_[first])[second] = { static_cast<std::int16_t>(step), static_cast<std::int16_t>(moved) };
    return true;
}

}
