// SPDX-License-Identifier: Apache-2.0
#include "Typesetter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "Itemizer.h"
#include "LineBreaks.h"
#include "LineFiller.h"
#include "Shaper.h"

namespace brindle::text {

namespace {

    constexpr std::size_t kRunUnits = 2048;
    constexpr std::size_t kKeptStretches = 1024;

    LineHeights heightsOf(const Font& font)
    {
        // Most lines are of one font.
        thread_local constinit Font last;
        thread_local constinit LineHeights heights;
        if (font != last || !font.face) {
            heights = { std::round(font.ascender()), std::round(-font.descender()),
                std::round(font.leading()) };
            last = font;
        }
        return heights;
    }
    LineHeights heightsOf(const Font& font, double raise)
    {
        LineHeights heights = heightsOf(font);
        if (raise != 0) {
            heights.ascent += std::ceil(std::max(raise, 0.0));
            heights.descent += std::ceil(std::max(-raise, 0.0));
        }
        return heights;
    }
    LineHeights heightsOf(const StyledRun& run)
    {
        if (!run.isBox)
            return heightsOf(run.font, run.raise);
        LineHeights heights = heightsOf(run.font);
        heights.include({ std::ceil(run.boxAscent), std::ceil(run.boxDescent), 0 });
        return heights;
    }

    /// Turns shaped words into parts.
    class PartSink final : public ShapingSink {
    public:
        /// - text: the paragraph, to look for breaks between its words; empty where nobody asks for them.
        /// - waiting: takes the parts while no filler does.
        PartSink(std::u16string_view text, std::vector<Part>& waiting)
            : parts(waiting)
            , text_(text)
        {
        }

        void addPiece(const Piece& piece) override
        {
            const double width = static_cast<double>(piece.advances.whole) * scale;
            const bool isWide = everywhere || width > room;
            const bool isPlain = isPlainSoFar(piece);
            if (isWide || kern != 0 || (!isPlain && breaks().hasInnerBreaks()))
                return addDivided(piece, isWide);
            const std::size_t wordStart = offset + piece.wordStart;
            const bool hasWord = piece.end > piece.wordStart;
            if (piece.wordStart > piece.start) {
                const double spaces = static_cast<double>(piece.advances.spaces) * scale;
                const bool mayBreak
                    = isPlain ? hasWord && !text_.empty() : breaks().isAllowedAt(wordStart);
                add({ wordStart, spaces, heights, Part::space, mayBreak });
            }
            if (hasWord) {
                const std::int64_t word = piece.advances.whole - piece.advances.spaces;
                add({ offset + piece.end, static_cast<double>(word) * scale, heights, Part::word,
                    false });
            }
        }

        [[gnu::always_inline]] void add(const Part& part)
        {
            if (filler)
                filler->add(part);
            else
                parts.push_back(part);
        }

        LineFiller* filler = nullptr; // takes the parts at once where no tab measures what follows
        std::vector<Part>& parts;
        std::size_t offset = 0; // of the stretch that is shaped
        double scale = 1; // points a unit of the face
        double kern = 0;
        double room = 0; // what is wider is divided into clusters
        bool everywhere = false; // everything is
        bool rightToLeft = false;
        std::uint32_t heights = 0;

    private:
        /// Answers whether all words up to a piece's own are plain ones between spaces: lines may begin before each, and
        /// nowhere inside.
        bool isPlainSoFar(const Piece& piece) const
        {
            const std::size_t end = offset + piece.end;
            return piece.isPlain && !breaks_ && (end >= text_.size() || text_[end] == u' ');
        }
        const LineBreaks& breaks()
        {
            if (!breaks_)
                breaks_.emplace(text_);
            return *breaks_;
        }

        /// Adds a piece whose glyphs count: it may be broken inside, or has more than their room. Most pieces are others, and
        /// must not pay for what it needs.
        [[gnu::noinline]] void addDivided(const Piece& piece, bool isWide)
        {
            const std::size_t first = offset + piece.start;
            const std::size_t wordStart = offset + piece.wordStart;
            rest_ = piece.advances.whole;
            end_ = offset + piece.end;
            const std::span<const ShapedGlyph> glyphs = piece.glyphs();
            if (rightToLeft)
                divide(first, wordStart, end_, isWide, glyphs.rbegin(), glyphs.rend());
            else
                divide(first, wordStart, end_, isWide, glyphs.begin(), glyphs.end());
        }

        /// Adds what stands before an index, with its glyphs in the text's order.
        template <class Iterator>
        void take(
            std::size_t first, std::size_t upTo, Part::Kind kind, Iterator& glyph, Iterator last)
        {
            std::int64_t advance = 0;
            double clusters = 0;
            std::uint32_t cluster = ~0u;
            // What is left of a piece needs no look at its glyphs.
            const bool isKnown = kern == 0 && upTo == end_;
            for (; !isKnown && glyph != last && first + glyph->cluster < upTo; ++glyph) {
                advance += glyph->advance;
                clusters += glyph->cluster != cluster;
                cluster = glyph->cluster;
            }
            if (isKnown)
                advance = rest_;
            rest_ -= advance;
            const double width = static_cast<double>(advance) * scale + clusters * kern;
            const bool breakAfter
                = breaks().isAllowedAt(upTo) || (everywhere && kind == Part::cluster);
            add({ upTo, width, heights, kind, breakAfter });
        }

        template <class Iterator>
        void divide(std::size_t first, std::size_t wordStart, std::size_t end, bool isWide,
            Iterator glyph, Iterator last)
        {
            std::size_t at = wordStart;
            if (wordStart > first)
                take(first, wordStart, Part::space, glyph, last);
            while (at < end && !isWide) {
                at = breaks().next(at, end);
                take(first, at, Part::word, glyph, last);
            }
            while (at < end) {
                const std::uint32_t cluster = glyph == last ? 0 : glyph->cluster;
                Iterator next = glyph;
                while (next != last && next->cluster == cluster)
                    ++next;
                at = next == last ? end : std::max(at + 1, first + next->cluster);
                take(first, at, Part::cluster, glyph, last);
            }
        }

        std::u16string_view text_;
        std::optional<LineBreaks> breaks_; // since they were asked for
        std::int64_t rest_ = 0; // of the piece
        std::size_t end_ = 0; // of the piece
    };

    /// Memory that paragraphs use one after the other.
    struct Scratch {
        std::vector<Part> parts;
        std::vector<LineHeights> heights;
        std::vector<FontRun> fonts; // of letters
        std::vector<Item> items;

        void forget()
        {
            // A paragraph of very many stretches must not leave its memory behind.
            if (std::max({ heights.capacity(), fonts.capacity(), items.capacity() })
                > kKeptStretches)
                *this = {};
            parts.clear();
            heights.clear();
            fonts.clear();
        }
    };
    thread_local Scratch scratch;

    /// Breaks one paragraph.
    class ParagraphBreaker {
    public:
        ParagraphBreaker(std::u16string_view text, std::span<const StyledRun> runs,
            const ParagraphRules& rules, LineTaker& taker)
            : text_(text)
            , runs_(runs)
            , rules_(rules)
            , memory_(scratch)
            , sink_(rules.wrapping == Wrapping::words ? text : std::u16string_view(), memory_.parts)
            , filler_(text, runs, rules, memory_.heights, taker)
        {
            sink_.everywhere = rules.wrapping == Wrapping::characters;
            sink_.filler = rules.mayHaveTabs ? nullptr : &filler_;
            room_ = wordRoom();
        }
        ~ParagraphBreaker() { memory_.forget(); }
        ParagraphBreaker(const ParagraphBreaker&) = delete;
        ParagraphBreaker& operator=(const ParagraphBreaker&) = delete;

        bool run()
        {
            readFonts();
            std::vector<Item>& items = memory_.items;
            itemize(text_, memory_.fonts, rules_.direction, items);
            auto item = items.begin();
            for (const StyledRun& style : runs_) {
                if (style.isBox)
                    addBoxes(style);
                for (; item != items.end() && item->start < NSMaxRange(style.range); ++item)
                    addItem(*item, style);
            }
            flush();
            filler_.finish(text_.size(),
                [&] { return runs_.empty() ? LineHeights {} : heightsOf(runs_.front()); });
            return filler_.isWanted();
        }

    private:
        double wordRoom() const { return rules_.wordRoom > 0 ? rules_.wordRoom : filler_.room(); }
        void flush()
        {
            filler_.add(sink_.parts);
            sink_.parts.clear();
            room_ = wordRoom();
        }

        void readFonts()
        {
            for (const StyledRun& run : runs_) {
                if (!run.isBox)
                    memory_.fonts.push_back({ run.range, run.font });
            }
        }

        void addBoxes(const StyledRun& style)
        {
            memory_.heights.push_back(heightsOf(style));
            const auto heights = static_cast<std::uint32_t>(memory_.heights.size() - 1);
            for (std::size_t at = style.range.location; at < NSMaxRange(style.range); ++at)
                sink_.add({ at + 1, style.boxWidth, heights, Part::word, true });
        }

        void addItem(const Item& item, const StyledRun& style)
        {
            memory_.heights.push_back(heightsOf(style));
            if (item.font != style.font)
                memory_.heights.back().include(heightsOf(item.font, style.raise));
            sink_.heights = static_cast<std::uint32_t>(memory_.heights.size() - 1);
            sink_.scale = item.font.size / item.font.face->unitsPerEm();
            sink_.kern = style.kern;
            sink_.rightToLeft = item.isRightToLeft();
            const ShapingStyle shaping { item.font.face, item.script, item.isRightToLeft() };
            const std::u16string_view text = text_.substr(item.start, item.length);
            if (!rules_.mayHaveTabs)
                return addStretch(text, item.start, shaping);
            for (std::size_t at = 0; at < text.size() && filler_.isWanted();) {
                const std::size_t end = std::min(text.find(kTab, at), text.size());
                addStretch(text.substr(at, end - at), item.start + at, shaping);
                if (end < text.size())
                    sink_.parts.push_back(
                        { item.start + end + 1, 0, sink_.heights, Part::tab, true });
                at = end + 1;
            }
        }

        void addStretch(std::u16string_view text, std::size_t start, const ShapingStyle& style)
        {
            sink_.offset = start;
            sink_.room = filler_.wraps() ? room_ : std::numeric_limits<double>::infinity();
            for (std::size_t at = 0; at < text.size() && filler_.isWanted();) {
                at = shapeWords(text, at, std::min(at + kRunUnits, text.size()), style, sink_);
                if (at < text.size())
                    flush();
            }
        }

        std::u16string_view text_;
        std::span<const StyledRun> runs_;
        const ParagraphRules& rules_;
        Scratch& memory_;
        PartSink sink_;
        LineFiller filler_;
        double room_ = 0; // of the line where the window began
    };

}

bool breakParagraph(std::u16string_view text, std::span<const StyledRun> runs,
    const ParagraphRules& rules, LineTaker& taker)
{
    return ParagraphBreaker(text, runs, rules, taker).run();
}

bool isRightToLeft(std::u16string_view text, BaseDirection direction)
{
    constexpr std::size_t kUnits
        = 1024; // the first letter with a direction decides, and comes soon
    if (direction != BaseDirection::natural)
        return direction == BaseDirection::rightToLeft;
    const std::u16string_view start = text.substr(0, kUnits);
    return mayRunRightToLeft(start) && directionsOfText(start, direction).base % 2 != 0;
}

}
