// SPDX-License-Identifier: Apache-2.0
#include "Typesetter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Itemizer.h"
#include "LineBreaks.h"
#include "Shaper.h"

namespace brindle::text {

namespace {

    constexpr char16_t kTab = u'\t';
    constexpr std::size_t kWindowUnits = 2048;

    // Widths were added up in another order, or went through single precision, since somebody measured them.
    constexpr double kSlack = 0.001;
    constexpr double kRelativeSlack = 1e-6;

    double slackFor(double room) { return kSlack + std::min(room, 1e6) * kRelativeSlack; }

    struct Metrics {
        double ascent = 0;
        double descent = 0;
        double leading = 0;

        void include(const Metrics& other)
        {
            ascent = std::max(ascent, other.ascent);
            descent = std::max(descent, other.descent);
            leading = std::max(leading, other.leading);
        }
    };

    Metrics metricsOf(const Font& font, double raise)
    {
        return { std::round(font.ascender()) + std::ceil(std::max(raise, 0.0)),
            std::round(-font.descender()) + std::ceil(std::max(-raise, 0.0)),
            std::round(font.leading()) };
    }
    Metrics metricsOf(const StyledRun& run)
    {
        if (!run.isBox)
            return metricsOf(run.font, run.raise);
        Metrics metrics = metricsOf(run.font, 0);
        metrics.include({ std::ceil(run.boxAscent), std::ceil(run.boxDescent), 0 });
        return metrics;
    }

    /// A part of a paragraph that is not divided any further.
    struct Part {
        enum Kind : std::uint8_t { space, word, cluster, tab };
        std::size_t end = 0;
        double width = 0;
        std::uint32_t metrics = 0;
        Kind kind = word;
        bool breakAfter = false;
    };

    /// The next stop behind a position, and how wide a tab is that leads to it.
    double tabWidth(const ParagraphRules& rules, double position, double following)
    {
        constexpr double kLeast = 0.01;
        for (const TabStop& stop : rules.tabs) {
            if (stop.location > position + kLeast)
                return std::max(stop.location - following * stop.share - position, 0.0);
        }
        if (rules.tabInterval < 1)
            return 0;
        const double last = rules.tabs.empty() ? 0 : rules.tabs.back().location;
        const double steps = std::floor((position + kLeast - last) / rules.tabInterval) + 1;
        return std::max(last + steps * rules.tabInterval - position, 0.0);
    }

    /// Turns shaped words into parts.
    class PartSink final : public ShapingSink {
    public:
        PartSink(std::u16string_view text, const LineBreaks& breaks)
            : text_(text)
            , breaks_(breaks)
        {
        }

        void addPiece(std::size_t start, std::size_t end, std::int64_t advance,
            std::span<const ShapedGlyph> glyphs) override
        {
            const std::size_t first = offset + start;
            const std::size_t wordEnd = offset + end;
            std::size_t wordStart = first;
            while (wordStart < wordEnd && text_[wordStart] == u' ')
                ++wordStart;
            const bool isWide = everywhere || static_cast<double>(advance) * scale > room;
            if (rightToLeft)
                divide(first, wordStart, wordEnd, isWide, glyphs.rbegin(), glyphs.rend());
            else
                divide(first, wordStart, wordEnd, isWide, glyphs.begin(), glyphs.end());
        }

        std::vector<Part> parts;
        std::size_t offset = 0; // of the stretch that is shaped
        double scale = 1; // points a unit of the face
        double kern = 0;
        double room = 0; // what is wider is divided into clusters
        bool everywhere = false; // everything is
        bool rightToLeft = false;
        std::uint32_t metrics = 0;

    private:
        /// Adds what stands before an index, with its glyphs in the text's order.
        template <class Iterator>
        void take(
            std::size_t first, std::size_t upTo, Part::Kind kind, Iterator& glyph, Iterator last)
        {
            std::int64_t advance = 0;
            double clusters = 0;
            std::uint32_t cluster = ~0u;
            for (; glyph != last && first + glyph->cluster < upTo; ++glyph) {
                advance += glyph->advance;
                clusters += glyph->cluster != cluster;
                cluster = glyph->cluster;
            }
            const double width = static_cast<double>(advance) * scale + clusters * kern;
            const bool breakAfter
                = breaks_.isAllowedAt(upTo) || (everywhere && kind == Part::cluster);
            parts.push_back({ upTo, width, metrics, kind, breakAfter });
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

        std::u16string_view text_;
        const LineBreaks& breaks_;
    };

    /// Fills lines with parts, as many as fit.
    class Filler {
    public:
        Filler(const ParagraphRules& rules, const std::vector<Metrics>& metrics, LineTaker& taker)
            : rules_(rules)
            , metrics_(metrics)
            , taker_(taker)
        {
            askForRoom();
        }

        double room() const { return room_; }
        bool wraps() const { return rules_.wrapping != Wrapping::none; }
        bool isWanted() const { return wanted_; }

        void add(std::span<const Part> parts)
        {
            for (std::size_t i = 0; i < parts.size() && wanted_; ++i) {
                if (parts[i].kind == Part::tab)
                    addTab(parts[i], parts.subspan(i + 1));
                else
                    addPart(parts[i]);
            }
        }

        void finish(std::size_t end, const Metrics& whenEmpty)
        {
            if (!wanted_)
                return;
            at_ = end;
            commit();
            if (end == 0 || (isEmpty(committed_) && start_ < end))
                committed_.include(whenEmpty);
            // What stands at the end of a paragraph counts as far as there is room for it.
            emit(end, std::max(visible_, std::min(total_, room_)), false);
        }

    private:
        static bool isEmpty(const Metrics& m) { return m.ascent == 0 && m.descent == 0; }
        bool fits(double width) const { return !wraps() || total_ + width <= room_ + slack_; }

        double indent() const { return number_ == 0 ? rules_.firstIndent : rules_.indent; }

        void askForRoom()
        {
            room_ = std::max(taker_.roomForLine(number_), 0.0);
            slack_ = slackFor(room_);
        }

        void addPart(const Part& part)
        {
            if (part.kind != Part::space)
                makeRoom(part);
            if (!wanted_)
                return;
            total_ += part.width;
            if (part.kind != Part::space)
                visible_ = total_;
            at_ = part.end;
            pending_.include(metrics_[part.metrics]);
            if (part.breakAfter)
                commit();
        }

        void makeRoom(const Part& part)
        {
            if (!fits(part.width) && break_ > start_)
                wrap();
            if (fits(part.width) || at_ <= start_)
                return;
            // Even alone the word is too wide: it is broken where it is full.
            commit();
            wrap();
        }

        void addTab(const Part& part, std::span<const Part> following)
        {
            double width = 0;
            for (const Part& next : following) {
                if (next.kind == Part::tab)
                    break;
                width += next.width;
            }
            Part tab = part;
            tab.width = tabWidth(rules_, indent() + total_, width);
            if (wraps() && total_ > 0 && total_ + tab.width > room_ + slack_) {
                commit();
                wrap();
                tab.width = tabWidth(rules_, indent() + total_, width);
            }
            tab.kind = Part::word;
            tab.breakAfter = true;
            addPart(tab);
        }

        void commit()
        {
            break_ = at_;
            totalAtBreak_ = total_;
            visibleAtBreak_ = visible_;
            committed_.include(pending_);
            pending_ = {};
        }

        void wrap()
        {
            const double rest = total_ - totalAtBreak_;
            emit(break_, visibleAtBreak_, true);
            start_ = break_;
            total_ = visible_ = rest;
            totalAtBreak_ = visibleAtBreak_ = 0;
            ++number_;
            if (wanted_)
                askForRoom();
        }

        void emit(std::size_t end, double width, bool wrapped)
        {
            wanted_ = taker_.addLine({ NSMakeRange(start_, end - start_), width, committed_.ascent,
                committed_.descent, committed_.leading, wrapped });
            committed_ = {};
        }

        const ParagraphRules& rules_;
        const std::vector<Metrics>& metrics_;
        LineTaker& taker_;
        double room_ = 0;
        double slack_ = 0;
        bool wanted_ = true;
        std::size_t number_ = 0;
        std::size_t start_ = 0;
        std::size_t break_ = 0; // the last place where the line may end
        std::size_t at_ = 0;
        double total_ = 0;
        double visible_ = 0; // without white space at the end
        double totalAtBreak_ = 0;
        double visibleAtBreak_ = 0;
        Metrics committed_;
        Metrics pending_; // behind the last place
    };

    /// The text that is shaped: boxes stand as no-break spaces, which nothing draws.
    std::u16string withoutBoxes(std::u16string_view text, std::span<const StyledRun> runs)
    {
        constexpr char16_t kBlank = 0x00A0;
        std::u16string shaped(text);
        for (const StyledRun& run : runs) {
            if (run.isBox)
                std::fill_n(shaped.begin() + static_cast<std::ptrdiff_t>(run.range.location),
                    run.range.length, kBlank);
        }
        return shaped;
    }

    std::vector<FontRun> fontsOf(std::span<const StyledRun> runs)
    {
        std::vector<FontRun> fonts;
        fonts.reserve(runs.size());
        for (const StyledRun& run : runs)
            fonts.push_back({ run.range, run.font });
        return fonts;
    }

    /// Memory that paragraphs use one after the other.
    struct Scratch {
        std::vector<Part> parts;
        std::vector<Metrics> metrics;
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
            , sink_(text, breaks_)
            , metrics_(std::move(scratch.metrics))
            , filler_(rules, metrics_, taker)
        {
            sink_.parts = std::move(scratch.parts);
            sink_.everywhere = rules.wrapping == Wrapping::characters;
        }
        ~ParagraphBreaker()
        {
            metrics_.clear();
            sink_.parts.clear();
            scratch = { std::move(sink_.parts), std::move(metrics_) };
        }
        ParagraphBreaker(const ParagraphBreaker&) = delete;
        ParagraphBreaker& operator=(const ParagraphBreaker&) = delete;

        bool run()
        {
            const std::vector<Item> items = itemize(text_, letterFonts(), rules_.direction);
            auto item = items.begin();
            for (const StyledRun& style : runs_) {
                if (style.isBox)
                    addBoxes(style);
                for (; item != items.end() && item->start < NSMaxRange(style.range); ++item)
                    addItem(*item, style);
            }
            flush();
            filler_.finish(text_.size(), runs_.empty() ? Metrics {} : metricsOf(runs_.front()));
            return filler_.isWanted();
        }

    private:
        void flush()
        {
            filler_.add(sink_.parts);
            sink_.parts.clear();
        }

        std::vector<FontRun> letterFonts() const
        {
            std::vector<FontRun> fonts;
            fonts.reserve(runs_.size());
            for (const StyledRun& run : runs_) {
                if (!run.isBox)
                    fonts.push_back({ run.range, run.font });
            }
            return fonts;
        }

        void addBoxes(const StyledRun& style)
        {
            metrics_.push_back(metricsOf(style));
            const auto metrics = static_cast<std::uint32_t>(metrics_.size() - 1);
            for (std::size_t at = style.range.location; at < NSMaxRange(style.range); ++at)
                sink_.parts.push_back({ at + 1, style.boxWidth, metrics, Part::word, true });
        }

        void addItem(const Item& item, const StyledRun& style)
        {
            metrics_.push_back(metricsOf(style));
            metrics_.back().include(metricsOf(item.font, style.raise));
            sink_.metrics = static_cast<std::uint32_t>(metrics_.size() - 1);
            sink_.scale = item.font.size / item.font.face->unitsPerEm();
            sink_.kern = style.kern;
            sink_.rightToLeft = item.isRightToLeft();
            const ShapingStyle shaping { item.font.face, item.script, item.isRightToLeft() };
            const std::u16string_view text = text_.substr(item.start, item.length);
            for (std::size_t at = 0; at < text.size() && filler_.isWanted();) {
                const std::size_t end = std::min(text.find(kTab, at), text.size());
                addStretch(text.substr(at, end - at), item.start + at, shaping);
                if (end < text.size())
                    sink_.parts.push_back(
                        { item.start + end + 1, 0, sink_.metrics, Part::tab, true });
                at = end + 1;
            }
        }

        void addStretch(std::u16string_view text, std::size_t start, const ShapingStyle& style)
        {
            sink_.offset = start;
            sink_.room = filler_.wraps() ? filler_.room() : std::numeric_limits<double>::infinity();
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
        std::vector<Metrics> metrics_;
        Filler filler_;
    };

    /// Room that stands behind the characters of a line beside their own.
    class RoomFinder {
    public:
        RoomFinder(const Line& line, std::u16string_view text, std::span<const StyledRun> runs)
            : text_(text)
            , own_(text.size())
            , room_(text.size())
            , isCluster_(text.size())
        {
            for (const LineGlyph& glyph : line.glyphs()) {
                own_[glyph.cluster] += glyph.advance;
                isCluster_[glyph.cluster] = true;
            }
            for (const StyledRun& run : runs)
                addRun(run);
        }

        std::span<const double> find(const ParagraphRules& rules)
        {
            double position = rules.firstIndent;
            for (std::size_t at = 0; at < text_.size(); ++at) {
                if (text_[at] == kTab)
                    room_[at] = tabWidth(rules, position, widthUpToTab(at + 1)) - own_[at];
                position += own_[at] + room_[at];
            }
            return room_;
        }

    private:
        void addRun(const StyledRun& run)
        {
            for (std::size_t at = run.range.location; at < NSMaxRange(run.range); ++at) {
                if (run.isBox)
                    room_[at] = run.boxWidth - own_[at];
                else if (isCluster_[at])
                    room_[at] = run.kern;
            }
        }
        double widthUpToTab(std::size_t at) const
        {
            double width = 0;
            for (; at < text_.size() && text_[at] != kTab; ++at)
                width += own_[at] + room_[at];
            return width;
        }

        std::u16string_view text_;
        std::vector<double> own_;
        std::vector<double> room_;
        std::vector<bool> isCluster_;
    };

}

bool breakParagraph(std::u16string_view text, std::span<const StyledRun> runs,
    const ParagraphRules& rules, LineTaker& taker)
{
    return ParagraphBreaker(text, runs, rules, taker).run();
}

Line setLine(std::u16string_view text, std::span<const StyledRun> runs, const ParagraphRules& rules)
{
    const bool hasBoxes = std::ranges::any_of(runs, &StyledRun::isBox);
    const bool isKerned
        = std::ranges::any_of(runs, [](const StyledRun& run) { return run.kern != 0; });
    const std::vector<FontRun> fonts = fontsOf(runs);
    Line line = hasBoxes ? shapeLine(withoutBoxes(text, runs), fonts, rules.direction)
                         : shapeLine(text, fonts, rules.direction);
    if (hasBoxes || isKerned || text.find(kTab) != text.npos)
        line.addRoom(RoomFinder(line, text, runs).find(rules));
    return line;
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
