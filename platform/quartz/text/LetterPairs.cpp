// SPDX-License-Identifier: Apache-2.0
#include "LetterPairs.h"

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
    const std::u16string_view seen = text.substr(0, start + kLongestPiece);
    std::size_t letter = letterAt(seen, start);
    if (letter >= kPlainLetters)
        return false;
    measures = { start, start, start, {} };
    std::int64_t advance = 0;
    std::size_t at = start;
    for (;;) {
        advance += advances_[letter];
        if (++at == seen.size())
            break;
        const std::size_t next = letterAt(seen, at);
        if (next >= kPlainLetters)
            return false;
        const Kerning kerning = (*known_[letter])[next];
        if (kerning.own == Kerning::kUnknown)
            return false;
        advance += kerning.own;
        if (letter == 0 && next != 0) {
            measures.wordStart = at;
            measures.advances.spaces = advance;
        } else if (letter != 0 && next == 0) {
            break;
        }
        advance += kerning.next;
        letter = next;
    }
    const bool isWhole = at < seen.size() || (at == text.size() && isFree(letter));
    if (letter == 0) {
        measures.wordStart = at;
        measures.advances.spaces = advance;
    }
    measures.end = at;
    measures.advances.whole = advance;
    return isWhole;
}

void LetterPairs::set(
    std::u16string_view text, std::size_t length, std::vector<ShapedGlyph>& glyphs) const
{
    glyphs.resize(length);
    std::int32_t moved = 0;
    for (std::size_t at = 0; at < length; ++at) {
        const std::size_t letter = letterAt(text, at);
        const Kerning kerning
            = at + 1 < text.size() ? (*known_[letter])[letterAt(text, at + 1)] : Kerning { 0, 0 };
        glyphs[at] = { glyphs_[letter], static_cast<std::uint32_t>(at),
            advances_[letter] + kerning.own + moved, moved, 0 };
        moved = kerning.next;
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
        const std::size_t letter = letterAt(text, at);
        const std::int32_t moved = at + 1 < glyphs.size() ? glyphs[at + 1].x : 0;
        const bool isLast = at + 1 == text.size();
        if (isLast ? !isFree(letter)
                   : !learnPair(letter, letterAt(text, at + 1), glyphs[at], moved))
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
    if ((*known_[first])[second].own != Kerning::kUnknown)
        return true;
    const std::int32_t own = glyph.advance - advances_[first] - glyph.x;
    const auto isSmall = [](std::int32_t value) {
        return std::abs(value) <= std::numeric_limits<std::int16_t>::max();
    };
    if (!isSmall(own) || !isSmall(moved))
        return false;
    if (!rows_[first])
        known_[first] = (rows_[first] = std::make_unique<Row>()).get();
    (*rows_[first])[second] = { static_cast<std::int16_t>(own), static_cast<std::int16_t>(moved) };
    return true;
}

}
