// SPDX-License-Identifier: Apache-2.0
#include "LetterRules.h"

#include "CharacterMap.h"
#include "FontFile.h"
#include "LatinLookups.h"

#include <algorithm>

namespace brindle::text {

namespace {

    /// Goes through the lookups that shaping uses, and notes what they do to letters.
    class RuleReader {
    public:
        RuleReader(const std::array<GlyphId, kPlainLetters>& glyphs, LetterRules& rules)
            : letters_(glyphs)
            , rules_(rules)
        {
            // A face of capitals: what is done to one is done to both.
            rules_.isFree &= ~letters_.sharing();
        }

        // ---- tables, in this order; false where one makes no sense

        bool readMarks(const FontTable& table)
        {
            constexpr std::uint16_t kMark = 3;
            CheckedNumbers numbers(table);
            numbers_ = &numbers;
            const std::size_t definition = numbers.isEmpty() ? 0 : word(4);
            if (definition)
                rules_.isFree &= ~lettersOf(readClasses(definition), kMark);
            return !numbers.isBroken() || numbers.isEmpty();
        }

        bool readSubstitutions(const FontTable& table) { return read(table, kSubstitutions); }

        bool readPositions(const FontTable& table) { return read(table, kPositions); }

        /// Reads the table of kerning that faces had before; shaping asks it where the positions kern no Latin text.
        /// One of another form than the first is not read.
        bool readOldKerning(const FontTable& table)
        {
            CheckedNumbers numbers(table);
            if (hasKerning_ || numbers.isEmpty())
                return true;
            if (numbers.word(0) != 0)
                return false;
            constexpr std::size_t kAlong = 0x1;
            constexpr std::size_t kAcross = 0x4;
            const std::size_t count = numbers.word(2);
            std::size_t at = 4;
            for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i) {
                const std::size_t coverage = numbers.word(at + 4);
                if (coverage >> 8 != 0 || (coverage & kAcross))
                    return false;
                if ((coverage & kAlong) && !rules_.kerning.addPairs(table, at))
                    return false;
                at += numbers.word(at + 2);
            }
            return !numbers.isBroken();
        }

    private:
        /// The numbers of the kinds of lookups that are told apart, in one of the two tables.
        struct Kinds {
            std::size_t contextual;
            std::size_t chained;
            std::size_t extension; // another kind, further away
        };
        static constexpr Kinds kSubstitutions { 5, 6, 7 };
        static constexpr Kinds kPositions { 7, 8, 9 };
        static constexpr std::size_t kLigatures = 4; // of the substitutions
        static constexpr std::size_t kPairs = 2; // of the positions

        bool read(const FontTable& table, const Kinds& kinds)
        {
            CheckedNumbers numbers(table);
            if (numbers.isEmpty())
                return true;
            const bool mayChange
                = numbers.word(2) > 0 && numbers.longWord(10) != 0; // with the axes of the face
            if (numbers.word(0) != 1 || mayChange)
                return false;
            numbers_ = &numbers;
            table_ = table;
            const LatinLookups lookups = latinLookups(numbers);
            hasKerning_ = lookups.haveKerning; // the positions are read last
            const std::size_t list = numbers.word(8);
            for (const std::size_t number : lookups.used) {
                rules_.kerning.beginLookup();
                readLookup(list + numbers.word(list + 2 + 2 * number), kinds);
            }
            return !numbers.isBroken() && hasRoom_;
        }

        std::size_t word(std::size_t offset) { return numbers_->word(offset); }

        void readLookup(std::size_t lookup, const Kinds& kinds)
        {
            constexpr std::size_t kPassesOverLetters = 0x2 | 0x4;
            const std::size_t kind = word(lookup);
            const bool isOfNeighbours = (word(lookup + 2) & kPassesOverLetters) == 0;
            const std::size_t count = word(lookup + 4);
            for (std::size_t i = 0; i < count && !numbers_->isBroken(); ++i) {
                const std::size_t part = lookup + word(lookup + 6 + 2 * i);
                if (kind == kinds.extension)
                    readPart(
                        part + numbers_->longWord(part + 4), word(part + 2), kinds, isOfNeighbours);
                else
                    readPart(part, kind, kinds, isOfNeighbours);
            }
        }

        void readPart(std::size_t part, std::size_t kind, const Kinds& kinds, bool isOfNeighbours)
        {
            const bool isPosition = kinds.extension == kPositions.extension;
            const std::size_t form = word(part);
            if (isOfNeighbours && isPosition && kind == kPairs && isKerning(part))
                readKerning(part);
            else if (isOfNeighbours && !isPosition && kind == kLigatures)
                readLigatures(part);
            else if (isOfNeighbours && kind == kinds.chained && form == 2)
                readChainedClasses(part);
            else if (kind == kinds.chained && form == 3)
                readCoverages(part, readChain(part + 2, true), isOfNeighbours);
            else if (kind == kinds.contextual && form == 3)
                readCoverages(part, { 0, word(part + 2), 0, 0, part + 8, 0 }, isOfNeighbours);
            else
                rules_.isFree &= ~lettersIn(part + word(part + 2));
        }

        bool isKerning(std::size_t part)
        {
            constexpr std::size_t kAdvance = 0x4;
            return (word(part + 4) & ~kAdvance) == 0 && word(part + 6) == 0;
        }

        // ---- sets of letters

        /// Calls `visit` with each letter of a coverage and its place there.
        template <class Visit> void forEachCovered(std::size_t coverage, Visit visit)
        {
            const bool hasRanges = word(coverage) == 2;
            const std::size_t count = word(coverage + 2);
            for (std::size_t i = 0; i < count && !numbers_->isBroken(); ++i) {
                const std::size_t entry = coverage + 4 + i * (hasRanges ? 6 : 2);
                const std::size_t first = word(entry);
                const std::size_t last = hasRanges ? word(entry + 2) : first;
                const std::size_t place = hasRanges ? word(entry + 4) : i;
                letters_.forEach(first, last,
                    [&](std::size_t letter, std::size_t behind) { visit(letter, place + behind); });
            }
        }

        PlainLetters lettersIn(std::size_t coverage)
        {
            PlainLetters letters;
            forEachCovered(coverage, [&](std::size_t letter, std::size_t) { letters.set(letter); });
            return letters;
        }

        using Classes = LetterKerning::Numbers;

        Classes readClasses(std::size_t definition)
        {
            Classes classes {};
            const bool hasRanges = word(definition) == 2;
            const std::size_t count = word(definition + (hasRanges ? 2 : 4));
            for (std::size_t i = 0; i < count && !numbers_->isBroken(); ++i) {
                const std::size_t entry = definition + (hasRanges ? 4 + i * 6 : 6 + i * 2);
                const std::size_t first = hasRanges ? word(entry) : word(definition + 2) + i;
                const std::size_t last = hasRanges ? word(entry + 2) : first;
                const std::size_t number = word(entry + (hasRanges ? 4 : 0));
                letters_.forEach(first, last, [&](std::size_t letter, std::size_t) {
                    classes[letter] = static_cast<std::uint16_t>(number);
                });
            }
            return classes;
        }

        static PlainLetters lettersOf(const Classes& classes, std::size_t number)
        {
            PlainLetters letters;
            for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
                letters[letter] = classes[letter] == number;
            return letters;
        }

        // ---- rules

        void readKerning(std::size_t part)
        {
            Classes first;
            first.fill(LetterKerning::kNone);
            PlainLetters covered;
            forEachCovered(part + word(part + 2), [&](std::size_t letter, std::size_t place) {
                first[letter] = static_cast<std::uint16_t>(place);
                covered.set(letter);
            });
            if (covered.none())
                return;
            if (word(part) == 1) {
                hasRoom_ &= rules_.kerning.addLists(table_, part, first);
                return;
            }
            const Classes classes = readClasses(part + word(part + 8));
            for (std::size_t letter = 0; letter < kPlainLetters; ++letter) {
                if (covered[letter])
                    first[letter] = classes[letter];
            }
            hasRoom_ &= rules_.kerning.addClasses(
                table_, part, first, readClasses(part + word(part + 10)));
        }

        void noteFollowers(const PlainLetters& first, const PlainLetters& next)
        {
            for (std::size_t letter = 0; letter < kPlainLetters; ++letter) {
                if (first[letter])
                    rules_.acting[letter] |= next;
            }
        }

        void readLigatures(std::size_t part)
        {
            forEachCovered(part + word(part + 2), [&](std::size_t first, std::size_t place) {
                const std::size_t set = part + word(part + 6 + 2 * place);
                const std::size_t count = word(set);
                for (std::size_t i = 0; i < count && !numbers_->isBroken(); ++i) {
                    const std::size_t rule = set + word(set + 2 + 2 * i);
                    const std::size_t second = word(rule + 4);
                    if (word(rule + 2) <= 1)
                        rules_.isFree.reset(first);
                    else
                        letters_.forEach(second, second, [&](std::size_t letter, std::size_t) {
                            rules_.acting[first].set(letter);
                        });
                }
            });
        }

        /// Lists of what stands before, at and behind a place where a rule acts: how many, and where they are noted.
        struct Chain {
            std::size_t before;
            std::size_t input; // with the place itself
            std::size_t behind;
            std::size_t beforeAt;
            std::size_t inputAt; // of the second one
            std::size_t behindAt;
        };

        Chain readChain(std::size_t at, bool listsFirst)
        {
            Chain chain {};
            chain.before = word(at);
            chain.beforeAt = at + 2;
            const std::size_t input = chain.beforeAt + 2 * chain.before;
            chain.input = word(input);
            chain.inputAt = input + (listsFirst ? 4 : 2);
            const std::size_t behind = chain.inputAt + (chain.input ? 2 * (chain.input - 1) : 0);
            chain.behind = word(behind);
            chain.behindAt = behind + 2;
            return chain;
        }

        void readCoverages(std::size_t part, const Chain& chain, bool isOfNeighbours)
        {
            const auto letters = [&](std::size_t at) { return lettersIn(part + word(at)); };
            const PlainLetters first = letters(chain.inputAt - 2);
            if (first.none())
                return;
            if (isOfNeighbours && chain.input > 1)
                noteFollowers(first, letters(chain.inputAt));
            else if (isOfNeighbours && chain.behind > 0)
                noteFollowers(first, letters(chain.behindAt));
            else if (isOfNeighbours && chain.before > 0)
                noteFollowers(letters(chain.beforeAt), first);
            else
                rules_.isFree &= ~first;
        }

        void readChainedClasses(std::size_t part)
        {
            const PlainLetters covered = lettersIn(part + word(part + 2));
            if (covered.none())
                return;
            const Classes before = readClasses(part + word(part + 4));
            const Classes input = readClasses(part + word(part + 6));
            const Classes behind = readClasses(part + word(part + 8));
            const std::size_t sets = word(part + 10);
            for (std::size_t number = 0; number < sets && !numbers_->isBroken(); ++number) {
                const PlainLetters first = covered & lettersOf(input, number);
                const std::size_t set = part + word(part + 12 + 2 * number);
                const std::size_t count = set == part || first.none() ? 0 : word(set);
                for (std::size_t i = 0; i < count && !numbers_->isBroken(); ++i) {
                    const Chain chain = readChain(set + word(set + 2 + 2 * i), false);
                    if (chain.input > 1)
                        noteFollowers(first, lettersOf(input, word(chain.inputAt)));
                    else if (chain.behind > 0)
                        noteFollowers(first, lettersOf(behind, word(chain.behindAt)));
                    else if (chain.before > 0)
                        noteFollowers(lettersOf(before, word(chain.beforeAt)), first);
                    else
                        rules_.isFree &= ~first;
                }
            }
        }

        LettersByGlyph letters_;
        LetterRules& rules_;
        CheckedNumbers* numbers_ = nullptr; // of the table that is read
        FontTable table_;
        bool hasKerning_ = false;
        bool hasRoom_ = true;
    };

    /// Other shapers than that of the rules take a font over that has tables for them.
    bool isShapedByRules(const FontFile& file)
    {
        constexpr FontTag kOthers[] = { "Silf", "morx", "mort", "kerx", "trak" };
        return std::ranges::all_of(
            kOthers, [&](FontTag tag) { return file.table(tag).size() == 0; });
    }

}

LetterRules readLetterRules(const FontFile& file, const LetterGlyphs& glyphs)
{
    LetterRules rules;
    rules.kerning = LetterKerning(glyphs);
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
        rules.isFree[letter] = glyphs[letter] != 0;
    RuleReader reader(glyphs, rules);
    const bool isKnown = isShapedByRules(file) && reader.readMarks(file.table("GDEF"))
        && reader.readSubstitutions(file.table("GSUB")) && reader.readPositions(file.table("GPOS"))
        && reader.readOldKerning(file.table("kern"));
    return isKnown ? rules : LetterRules {};
}

LetterRules readLetterRules(std::span<const std::byte> file)
{
    const FontFile font({ reinterpret_cast<const unsigned char*>(file.data()), file.size() }, 0);
    const CharacterMap characters(font.table("cmap"));
    LetterGlyphs glyphs {};
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
        glyphs[letter] = characters.glyphFor(static_cast<char32_t>(letter + u' '));
    return readLetterRules(font, glyphs);
}

}
