// SPDX-License-Identifier: Apache-2.0
#include "LetterPairs.h"

#include <algorithm>
#include <cstdlib>

#include "FontFacePrivate.h"

namespace brindle::text {

namespace {

    enum Kind : std::uint8_t { kOfWords = 1, kBehindWords = 2, kOfNoWord = 4 };

    constexpr std::array<Kind, kPlainLetters> makeKinds()
    {
        std::array<Kind, kPlainLetters> kinds {};
        for (std::size_t i = 0; i < kPlainLetters; ++i) {
            const auto letter = static_cast<char>(i + ' ');
            const bool isLetter = (letter | 0x20) >= 'a' && (letter | 0x20) <= 'z';
            const bool isMark = std::string_view(".,;:!?").find(letter) != std::string_view::npos;
            kinds[i] = isLetter ? kOfWords : isMark ? kBehindWords : kOfNoWord;
        }
        return kinds;
    }

    constexpr std::array<Kind, kPlainLetters> kKinds = makeKinds();

    /// - before: the kinds of all letters of a word but the last.
    constexpr bool isPlainWord(unsigned before, Kind last)
    {
        return last == kOfWords ? before <= kOfWords : last == kBehindWords && before == kOfWords;
    }

}

LetterPairs::LetterPairs(const FontFace& face)
{
    static const Row nothing;
    known_.fill(&nothing);
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter) {
        glyphs_[letter] = face.glyphFor(static_cast<char32_t>(letter + u' '));
        advances_[letter] = face.handles().advances.of(glyphs_[letter]);
    }
    rules_ = readLetterRules(face.handles().file, glyphs_);
}

/// Measures the spaces before a word, and what they move the word by.
inline bool LetterPairs::measureSpaces(std::u16string_view text, PieceMeasures& measures)
{
    std::size_t at = measures.start + 1;
    while (at < text.size() && text[at] == u' ')
        ++at;
    measures.wordStart = measures.end = at;
    Advances& advances = measures.advances;
    advances.whole = 0;
    if (const auto between = static_cast<std::int64_t>(at - measures.start - 1); between > 0) {
        const std::int16_t step = this->step(0, 0);
        if (step == Pair::kUnknown)
            return false;
        advances.whole = between * step;
    }
    if (at == text.size()) {
        measures.isPlain = true;
        advances.whole += advances_[0];
        advances.spaces = advances.whole;
        return isFree(0);
    }
    const std::size_t next = letterOf(text[at]);
    if (next >= kPlainLetters || step(0, next) == Pair::kUnknown)
        return false;
    advances.whole += pair(0, next).step;
    advances.spaces = advances.whole - pair(0, next).moved;
    return true;
}

bool LetterPairs::measure(std::u16string_view text, std::size_t start, PieceMeasures& measures)
{
    measures.start = start;
    std::size_t at = start;
    std::int64_t advance = 0;
    if (text[start] == u' ') {
        if (!measureSpaces(text, measures))
            return false;
        at = measures.wordStart;
        if (at == text.size())
            return true;
        advance = measures.advances.whole;
    } else {
        measures.wordStart = start;
        measures.advances.spaces = 0;
    }
    const std::size_t limit = std::min(text.size(), at + kLongestSegment);
    unsigned before = 0;
    std::size_t letter = letterOf(text[at]);
    if (letter >= kPlainLetters)
        return false;
    while (++at < limit) {
        const std::size_t next = letterOf(text[at]);
        if (next >= kPlainLetters)
            return false;
        const std::int16_t step = this->step(letter, next);
        if (step == Pair::kUnknown)
            return false;
        advance += step;
        if (next == 0)
            break;
        before |= kKinds[letter];
        letter = next;
    }
    measures.end = at;
    measures.isPlain = isPlainWord(before, kKinds[letter]);
    measures.advances.whole = advance;
    if (at < limit) [[likely]]
        return true;
    return measureEnd(text, letter, measures);
}

/// Adds the last letter of a piece that ends with the text, or that is cut because it is longer than any word.
bool LetterPairs::measureEnd(std::u16string_view text, std::size_t letter, PieceMeasures& measures)
{
    if (measures.end == text.size()) {
        measures.advances.whole += advances_[letter];
        return isFree(letter);
    }
    const std::size_t next = letterOf(text[measures.end]);
    if (next >= kPlainLetters || step(letter, next) == Pair::kUnknown)
        return false;
    measures.isPlain = measures.isPlain && next == 0;
    // What belongs to the letter behind the cut is not moved: it begins a piece.
    measures.advances.whole += pair(letter, next).step - pair(letter, next).moved;
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

/// Reads what the face does to a letter with each of the others behind it.
const LetterPairs::Row& LetterPairs::readRow(std::size_t first)
{
    const auto isSmall = [](std::int32_t value) {
        return std::abs(value) <= std::numeric_limits<std::int16_t>::max();
    };
    auto row = std::make_unique<Row>();
    if (isFree(first)) {
        const LetterKerning::Kerns kerns = rules_.kerning.behind(first);
        for (std::size_t second = 0; second < kPlainLetters; ++second) {
            const LetterKerning::Kern& kern = kerns[second];
            const std::int32_t step = advances_[first] + kern.step;
            if (isFree(second) && !rules_.acting[first][second] && kern.isSure && isSmall(step)
                && isSmall(kern.moved))
                (*row)[second]
                    = { static_cast<std::int16_t>(step), static_cast<std::int16_t>(kern.moved) };
        }
    }
    ++rowCount_;
    return *(known_[first] = (rows_[first] = std::move(row)).get());
}

LetterPairs& LetterTables::of(const FontFace& face)
{
    if (current_ && face_ == &face)
        return *current_;
    if (current_)
        otherBytes_ += current_->byteCount();
    if (otherBytes_ > mostBytes_)
        clear();
    const auto [place, isNew] = tables_.try_emplace(&face, face);
    current_ = &place->second;
    face_ = &face;
    if (!isNew)
        otherBytes_ -= current_->byteCount();
    return *current_;
}

void LetterTables::clear()
{
    tables_.clear();
    current_ = nullptr;
    otherBytes_ = 0;
}

}
