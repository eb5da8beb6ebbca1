// SPDX-License-Identifier: Apache-2.0
#include "LetterKerning.h"

namespace brindle::text {

namespace {

    std::int32_t signedOf(std::size_t word)
    {
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(word));
    }

}

LettersByGlyph::LettersByGlyph(const LetterGlyphs& glyphs)
{
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
        letters_[letter] = { glyphs[letter], letter };
    std::ranges::sort(letters_, {}, &Letter::glyph);
}

PlainLetters LettersByGlyph::sharing() const
{
    PlainLetters letters;
    for (std::size_t i = 1; i < kPlainLetters; ++i) {
        if (letters_[i - 1].glyph == letters_[i].glyph)
            letters[letters_[i - 1].letter] = letters[letters_[i].letter] = true;
    }
    return letters;
}

/// Puts together what the parts say of one first letter.
class LetterKerning::Row {
public:
    Row(const LetterKerning& kerning, std::size_t first)
        : letters_(kerning.letters_)
        , glyph_(kerning.glyphs_[first])
        , first_(first)
    {
    }

    void beginLookup()
    {
        settled_.reset();
        perhapsSettled_.reset();
    }

    void add(const Part& part)
    {
        CheckedNumbers numbers(part.table);
        if (part.form == Form::pairs)
            addPairs(numbers, part.start);
        else if (part.first[first_] == kNone)
            return;
        else if (part.form == Form::lists)
            addList(numbers, part);
        else
            addClasses(numbers, part);
        if (numbers.isBroken()) {
            for (Kern& kern : kerns_)
                kern.isSure = false;
        }
    }

    const Kerns& kerns() const { return kerns_; }

private:
    void settle(std::size_t second, std::int32_t step)
    {
        if (settled_[second])
            return;
        settled_.set(second);
        kerns_[second].step += step;
        if (perhapsSettled_[second] && step != 0)
            kerns_[second].isSure = false;
    }

    void addList(CheckedNumbers& numbers, const Part& part)
    {
        const std::size_t bytes = numbers.word(part.start + 4) ? 4 : 2; // of a second and its move
        const std::size_t list
            = part.start + numbers.word(part.start + 10 + std::size_t { 2 } * part.first[first_]);
        const std::size_t count = numbers.word(list);
        for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i) {
            const std::size_t entry = list + 2 + i * bytes;
            const std::size_t glyph = numbers.word(entry);
            letters_.forEach(glyph, glyph, [&](std::size_t second, std::size_t) {
                settle(second, bytes == 4 ? signedOf(numbers.word(entry + 2)) : 0);
            });
        }
    }

    void addClasses(CheckedNumbers& numbers, const Part& part)
    {
        const std::size_t firsts = numbers.word(part.start + 12);
        const std::size_t seconds = numbers.word(part.start + 14);
        if (part.first[first_] >= firsts)
            return;
        const bool hasMoves = numbers.word(part.start + 4) != 0;
        const std::size_t row = part.start + 16 + 2 * part.first[first_] * seconds;
        for (std::size_t second = 0; second < kPlainLetters; ++second) {
            const std::size_t number = part.second[second];
            if (number >= seconds || settled_[second])
                continue;
            const std::int32_t step = hasMoves ? signedOf(numbers.word(row + 2 * number)) : 0;
            if (number > 0) {
                settle(second, step);
                continue;
            }
            // Later versions of the library pass letters of no class on to the next part, earlier ones did not.
            perhapsSettled_.set(second);
            if (step != 0)
                kerns_[second].isSure = false;
        }
    }

    void addPairs(CheckedNumbers& numbers, std::size_t start)
    {
        constexpr std::size_t kEntry = 6;
        const std::size_t pairs = start + 14;
        std::size_t low = 0;
        const std::size_t count = numbers.word(start + 6);
        for (std::size_t high = count; low < high;) {
            const std::size_t middle = low + (high - low) / 2;
            if (numbers.word(pairs + middle * kEntry) < glyph_)
                low = middle + 1;
            else
                high = middle;
        }
        for (; low < count && !numbers.isBroken(); ++low) {
            const std::size_t entry = pairs + low * kEntry;
            if (numbers.word(entry) != glyph_)
                break;
            const std::size_t glyph = numbers.word(entry + 2);
            const std::int32_t step = signedOf(numbers.word(entry + 4));
            letters_.forEach(glyph, glyph, [&](std::size_t second, std::size_t) {
                kerns_[second].step += step;
                kerns_[second].moved += step - (step >> 1);
            });
        }
    }

    const LettersByGlyph& letters_;
    std::size_t glyph_;
    std::size_t first_;
    Kerns kerns_ {};
    PlainLetters settled_; // by the lookup
    PlainLetters perhapsSettled_;
};

LetterKerning::Kerns LetterKerning::behind(std::size_t first) const
{
    Row row(*this, first);
    std::size_t lookup = 0;
    for (const Part& part : parts_) {
        if (part.lookup != lookup)
            row.beginLookup();
        lookup = part.lookup;
        row.add(part);
    }
    return row.kerns();
}

bool LetterKerning::add(const Part& part)
{
    constexpr std::size_t kMostParts = 64;
    if (parts_.size() == kMostParts)
        return false;
    parts_.push_back(part);
    return true;
}

}
