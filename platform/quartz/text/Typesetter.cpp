// SPDX-License-Identifier: Apache-2.0
#include "Typesetter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Itemizer.h"
#include "LineBreaks.h"
#include "LineFiller.h"
#include "Shaper.h"

namespace brindle::text {

namespace {

    constexpr char16_t kTab = u'\t';
    constexpr std::size_t kWindowUnits = 2048;
    constexpr std::size_t kKeptStretches = 1024;

    LineHeights heightsOf(const Font& font, double raise)
    {
        return { std::round(font.ascender()) + std::ceil(std::max(raise, 0.0)),
            std::round(-font.descender()) + std::ceil(std::max(-raise, 0.0)),
            std::round(font.leading()) };
    }
    LineHeights heightsOf(const StyledRun& run)
    {
        if (!run.isBox)
            return heightsOf(run.font, run.raise);
        LineHeights heights = heightsOf(run.font, 0);
        heights.include({ std::ceil(run.boxAscent), std::ceil(run.boxDescent), 0 });
        return heights;
    }

    /// Turns shaped words into parts.
    class PartSink final : public ShapingSink {
    public:
        explicit PartSink(const LineBreaks& breaks)
            : breaks_(breaks)
        {
        }

        void addPiece(const Piece& piece) override
        {
            const double width = static_cast<double>(piece.advances.whole) * scale;
            const bool isWide = everywhere || width > room;
            if (isWide || kern != 0 || breaks_.hasInnerBreaks())
                return addDivided(piece, isWide);
            const std::size_t wordStart = offset + piece.wordStart;
            if (piece.wordStart > piece.start) {
                const double spaces = static_cast<double>(piece.advances.spaces) * scale;
                add({ wordStart, spaces, heights, Part::space, breaks_.isAllowedAt(wordStart) });
            }
            if (piece.end > piece.wordStart) {
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
        std::vector<Part> parts;
        std::size_t offset = 0; // of the stretch that is shaped
        double scale = 1; // points a unit of the face
        double kern = 0;
        double room = 0; // what is wider is divided into clusters
        bool everywhere = false; // everything is
        bool rightToLeft = false;
        std::uint32_t heights = 0;

    private:
        /// Adds a piece whose glyphs count: it may be broken inside, or has more than their room.
        void addDivided(const Piece& piece, bool isWide)
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
                = breaks_.isAllowedAt(upTo) || (everywhere && kind == Part::cluster);
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
                at = breaks_.next(at, end);
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

        const LineBreaks& breaks_;
        std::int64_t rest_ = 0; // of the piece
        std::size_t end_ = 0; // of the piece
    };

    /// Memory that paragraphs use one after the other.
    struct Scratch {
        std::vector<Part> parts;
        std::vector<LineHeights> heights;
        std::vector<FontRun> fonts;
        std::vector<Item> items;
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
            , breaks_(rules.wrapping == Wrapping::words ? text : std::u16string_view())
            , sink_(breaks_)
            , heights_(std::move(scratch.heights))
            , fonts_(std::move(scratch.fonts))
            , items_(std::move(scratch.items))
            , filler_(rules, heights_, taker)
        {
            sink_.parts = std::move(scratch.parts);
            sink_.everywhere = rules.wrapping == Wrapping::characters;
            sink_.filler = rules.mayHaveTabs ? nullptr : &filler_;
            room_ = filler_.room();
        }
        ~ParagraphBreaker()
        {
            // A paragraph of very many stretches must not leave its memory behind.
            if (std::max({ heights_.capacity(), fonts_.capacity(), items_.capacity() })
                > kKeptStretches)
                return;
            heights_.clear();
            sink_.parts.clear();
            fonts_.clear();
            scratch = { std::move(sink_.parts), std::move(heights_), std::move(fonts_),
                std::move(items_) };
        }
        ParagraphBreaker(const ParagraphBreaker&) = delete;
        ParagraphBreaker& operator=(const ParagraphBreaker&) = delete;

        bool run()
        {
            readFonts();
            itemize(text_, fonts_, rules_.direction, items_);
            auto item = items_.begin();
            for (const StyledRun& style : runs_) {
                if (style.isBox)
                    addBoxes(style);
                for (; item != items_.end() && item->start < NSMaxRange(style.range); ++item)
                    addItem(*item, style);
            }
            flush();
            filler_.finish(text_.size(),
                [&] { return runs_.empty() ? LineHeights {} : heightsOf(runs_.front()); });
            return filler_.isWanted();
        }

    private:
        void flush()
        {
            filler_.add(sink_.parts);
            sink_.parts.clear();
            room_ = filler_.room();
        }

        void readFonts()
        {
            for (const StyledRun& run : runs_) {
                if (!run.isBox)
                    fonts_.push_back({ run.range, run.font });
            }
        }

        void addBoxes(const StyledRun& style)
        {
            heights_.push_back(heightsOf(style));
            const auto heights = static_cast<std::uint32_t>(heights_.size() - 1);
            for (std::size_t at = style.range.location; at < NSMaxRange(style.range); ++at)
                sink_.add({ at + 1, style.boxWidth, heights, Part::word, true });
        }

        void addItem(const Item& item, const StyledRun& style)
        {
            heights_.push_back(heightsOf(style));
            if (item.font != style.font)
                heights_.back().include(heightsOf(item.font, style.raise));
            sink_.heights = static_cast<std::uint32_t>(heights_.size() - 1);
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
                at = shapeWords(text, at, std::min(at + kWindowUnits, text.size()), style, sink_);
                if (at < text.size())
                    flush();
            }
        }

        std::u16string_view text_;
        std::span<const StyledRun> runs_;
        const ParagraphRules& rules_;
        LineBreaks breaks_;
        PartSink sink_;
        std::vector<LineHeights> heights_;
        std::vector<FontRun> fonts_; // of letters
        std::vector<Item> items_;
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
