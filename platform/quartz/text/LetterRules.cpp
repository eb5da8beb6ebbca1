// SPDX-License-Identifier: Apache-2.0
#include "LetterRules.h"

#include "FontFacePrivate.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>

#include <hb-aat.h>
#include <hb-ot.h>

namespace brindle::text {

namespace {

    /// Big-endian numbers of a font's table. What lies outside reads 0, and is noted.
    ///
    /// So is a table that leads to the same places over and over: what is installed makes us read some thousand numbers,
    /// and a few kilobytes could make us read for hours.
    class Numbers {
    public:
        Numbers(hb_face_t* face, hb_tag_t tag)
            : blob_(hb_face_reference_table(face, tag))
        {
            unsigned length = 0;
            const char* const data = hb_blob_get_data(blob_.get(), &length);
            bytes_ = { reinterpret_cast<const unsigned char*>(data), length };
        }

        bool isEmpty() const { return bytes_.empty(); }
        bool isBroken() const { return isBroken_; }
        std::size_t word(std::size_t offset)
        {
            if (offset + 2 > bytes_.size() || ++reads_ > kMostReads) {
                isBroken_ = true;
                return 0;
            }
            return static_cast<std::size_t>(bytes_[offset] << 8 | bytes_[offset + 1]);
        }
        std::size_t longWord(std::size_t offset) { return word(offset) << 16 | word(offset + 2); }

    private:
        static constexpr std::size_t kMostReads = 1 << 17;

        HarfBuzz<hb_blob_t> blob_;
        std::span<const unsigned char> bytes_;
        std::size_t reads_ = 0;
        bool isBroken_ = false;
    };

    struct SetDeleter {
        void operator()(hb_set_t* set) const { hb_set_destroy(set); }
    };
    struct PlanDeleter {
        void operator()(hb_shape_plan_t* plan) const { hb_shape_plan_destroy(plan); }
    };
    using Plan = std::unique_ptr<hb_shape_plan_t, PlanDeleter>;

    /// Answers the lookups that can act on plain letters: those of fractions wait for a fraction slash.
    std::unique_ptr<hb_set_t, SetDeleter> actingLookups(
        hb_face_t* face, hb_shape_plan_t* plan, hb_tag_t table, Numbers& numbers)
    {
        std::array<hb_tag_t, 512> tags {};
        unsigned count = tags.size() - 1;
        const unsigned total
            = hb_ot_layout_table_get_feature_tags(face, table, 0, &count, tags.data());
        const auto isFraction = [](hb_tag_t tag) {
            return tag == HB_TAG('f', 'r', 'a', 'c') || tag == HB_TAG('n', 'u', 'm', 'r')
                || tag == HB_TAG('d', 'n', 'o', 'm');
        };
        std::unique_ptr<hb_set_t, SetDeleter> used(hb_set_create());
        hb_ot_shape_plan_collect_lookups(plan, table, used.get());
        const bool mayChange
            = numbers.word(2) > 0 && numbers.longWord(10) != 0; // with the axes of the face
        if (total > count || mayChange)
            return used;
        *std::remove_if(tags.begin(), tags.begin() + count, isFraction) = 0;
        const std::unique_ptr<hb_set_t, SetDeleter> others(hb_set_create());
        hb_ot_layout_collect_lookups(face, table, nullptr, nullptr, tags.data(), others.get());
        hb_set_intersect(used.get(), others.get());
        return used;
    }

    /// Goes through the lookups that shaping uses, and notes what they do to letters.
    class RuleReader {
    public:
        RuleReader(const std::array<GlyphId, kPlainLetters>& glyphs, LetterRules& rules)
            : rules_(rules)
        {
            for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
                letters_[letter] = { glyphs[letter], letter };
            std::ranges::sort(letters_, {}, &Letter::glyph);
            for (std::size_t i = 1; i < kPlainLetters; ++i) {
                // A face of capitals: what is done to one is done to both.
                if (letters_[i - 1].glyph == letters_[i].glyph)
                    rules_.isFree[letters_[i - 1].letter] = rules_.isFree[letters_[i].letter]
                        = false;
            }
        }

        /// - Returns: false where the table makes no sense.
        bool read(hb_face_t* face, hb_shape_plan_t* plan, hb_tag_t tag)
        {
            Numbers numbers(face, tag);
            if (numbers.isEmpty())
                return true;
            numbers_ = &numbers;
            const auto lookups = actingLookups(face, plan, tag, numbers);
            const std::size_t list = numbers.word(8);
            for (hb_codepoint_t index = HB_SET_VALUE_INVALID; hb_set_next(lookups.get(), &index);)
                readLookup(list + numbers.word(list + 2 + 2 * index),
                    tag == HB_OT_TAG_GPOS ? kPositions : kSubstitutions);
            return !numbers.isBroken();
        }

    private:
        struct Letter {
            std::size_t glyph = 0;
            std::size_t letter = 0;
        };

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
                return;
            if (isOfNeighbours && !isPosition && kind == kLigatures)
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

        /// Calls `visit` with each letter among a range of glyphs, and its place there.
        template <class Visit> void forEachLetter(std::size_t first, std::size_t last, Visit visit)
        {
            auto at = std::ranges::lower_bound(letters_, first, {}, &Letter::glyph);
            for (; at != letters_.end() && at->glyph <= last; ++at)
                visit(at->letter, at->glyph - first);
        }

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
                forEachLetter(first, last,
                    [&](std::size_t letter, std::size_t behind) { visit(letter, place + behind); });
            }
        }

        PlainLetters lettersIn(std::size_t coverage)
        {
            PlainLetters letters;
            forEachCovered(coverage, [&](std::size_t letter, std::size_t) { letters.set(letter); });
            return letters;
        }

        using Classes = std::array<std::size_t, kPlainLetters>;

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
                forEachLetter(first, last,
                    [&](std::size_t letter, std::size_t) { classes[letter] = number; });
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
                        forEachLetter(second, second, [&](std::size_t letter, std::size_t) {
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

        std::array<Letter, kPlainLetters> letters_; // by glyph
        LetterRules& rules_;
        Numbers* numbers_ = nullptr;
    };

    /// The old table of kerning: its first form, along the line, moves neighbours only.
    bool kernsNeighboursOnly(hb_face_t* face)
    {
        constexpr std::size_t kAcross = 0x4;
        Numbers numbers(face, HB_TAG('k', 'e', 'r', 'n'));
        if (numbers.isEmpty())
            return true;
        if (numbers.word(0) != 0)
            return false;
        const std::size_t count = numbers.word(2);
        std::size_t at = 4;
        for (std::size_t i = 0; i < count && !numbers.isBroken(); ++i) {
            const std::size_t coverage = numbers.word(at + 4);
            const std::size_t form = coverage >> 8;
            if ((form != 0 && form != 2) || (coverage & kAcross))
                return false;
            at += numbers.word(at + 2);
        }
        return !numbers.isBroken();
    }

    Plan planForLatin(hb_face_t* face)
    {
        hb_segment_properties_t properties = HB_SEGMENT_PROPERTIES_DEFAULT;
        properties.direction = HB_DIRECTION_LTR;
        properties.script = HB_SCRIPT_LATIN;
        return Plan(hb_shape_plan_create_cached(face, &properties, nullptr, 0, nullptr));
    }

    bool isShapedByOpenType(hb_face_t* face, hb_shape_plan_t* plan)
    {
        const char* const shaper = hb_shape_plan_get_shaper(plan);
        return shaper && std::string_view(shaper) == "ot" && !hb_aat_layout_has_substitution(face)
            && !hb_aat_layout_has_positioning(face) && !hb_aat_layout_has_tracking(face);
    }

}

LetterRules readLetterRules(hb_face_t* handle, const std::array<GlyphId, kPlainLetters>& glyphs)
{
    const Plan plan = planForLatin(handle);
    LetterRules rules;
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
        rules.isFree[letter] = glyphs[letter] != 0
            && hb_ot_layout_get_glyph_class(handle, glyphs[letter])
                != HB_OT_LAYOUT_GLYPH_CLASS_MARK;
    RuleReader reader(glyphs, rules);
    const bool isKnown = isShapedByOpenType(handle, plan.get()) && kernsNeighboursOnly(handle)
        && reader.read(handle, plan.get(), HB_OT_TAG_GSUB)
        && reader.read(handle, plan.get(), HB_OT_TAG_GPOS);
    return isKnown ? rules : LetterRules {};
}

LetterRules readLetterRules(std::span<const std::byte> file)
{
    const HarfBuzz<hb_blob_t> blob(hb_blob_create(reinterpret_cast<const char*>(file.data()),
        static_cast<unsigned>(file.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr));
    const HarfBuzz<hb_face_t> face(hb_face_create(blob.get(), 0));
    const HarfBuzz<hb_font_t> font(hb_font_create(face.get()));
    std::array<GlyphId, kPlainLetters> glyphs {};
    for (std::size_t letter = 0; letter < kPlainLetters; ++letter)
        hb_font_get_nominal_glyph(
            font.get(), static_cast<hb_codepoint_t>(letter + u' '), &glyphs[letter]);
    return readLetterRules(face.get(), glyphs);
}

}
