// SPDX-License-Identifier: Apache-2.0
#include "Line.h"

#include "Itemizer.h"
#include "Shaper.h"

#include <algorithm>

namespace brindle::text {

namespace {

    constexpr std::size_t kMostKept = 1024; // of what is kept for the next line

    /// Makes a list empty without giving its memory away, unless that is much.
    template <class List> void makeEmpty(List& list)
    {
        if (list.capacity() > kMostKept)
            list = List();
        else
            list.clear();
    }

    void include(LineMetrics& metrics, const Font& font)
    {
        metrics.ascent = std::max(metrics.ascent, font.ascender());
        metrics.descent = std::max(metrics.descent, -font.descender());
        metrics.leading = std::max(metrics.leading, font.leading());
    }

    double widthOf(std::int64_t advance, const Font& font)
    {
        return static_cast<double>(advance) * font.size / font.face->unitsPerEm();
    }

    ShapingStyle styleOf(const Item& item)
    {
        return { item.font.face, item.script, item.isRightToLeft() };
    }

    struct AdvanceSink final : ShapingSink {
        void addPiece(const Piece& piece) override { total += piece.advances.whole; }

        std::int64_t total = 0;
    };

    /// Keeps an item's glyphs until the whole item is known: a right-to-left item is laid from its
    /// end.
    struct GlyphSink final : ShapingSink {
        struct Part {
            std::size_t firstGlyph = 0;
            std::size_t glyphCount = 0;
        };

        /// Answers one with nothing in it, in the memory of the last one of this thread.
        static GlyphSink& emptied()
        {
            static thread_local GlyphSink sink;
            makeEmpty(sink.glyphs);
            makeEmpty(sink.parts);
            sink.total = 0;
            return sink;
        }

        void addPiece(const Piece& piece) override
        {
            const std::span<const ShapedGlyph> added = piece.glyphs();
            total += piece.advances.whole;
            parts.push_back({ glyphs.size(), added.size() });
            for (const ShapedGlyph& glyph : added) {
                glyphs.push_back(glyph);
                glyphs.back().cluster += static_cast<std::uint32_t>(piece.start);
            }
        }

        std::vector<ShapedGlyph> glyphs;
        std::vector<Part> parts;
        std::int64_t total = 0;
    };

    double measureItem(std::u16string_view text, const Item& item)
    {
        AdvanceSink sink;
        shapeStretch(text.substr(item.start, item.length), styleOf(item), sink);
        return widthOf(sink.total, item.font);
    }

    /// Answers the items of a text, in the memory of the last ones of this thread.
    const std::vector<Item>& itemsOf(
        std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction)
    {
        static thread_local std::vector<Item> items;
        makeEmpty(items);
        itemize(text, fonts, direction, items);
        return items;
    }

    /// Runs a step for each item, leftmost first.
    template <class Step> void inVisualOrder(const std::vector<Item>& items, const Step& step)
    {
        const bool isOneWay = items.size() <= 1
            || std::ranges::none_of(items, [](const Item& item) { return item.level != 0; });
        if (isOneWay) {
            for (const Item& item : items)
                step(item);
            return;
        }
        std::vector<Level> levels(items.size());
        std::ranges::transform(items, levels.begin(), &Item::level);
        for (const std::size_t index : visualOrder(levels))
            step(items[index]);
    }

}

/// Puts shaped items together into a line.
class LineBuilder {
public:
    /// - memory: what the line is made in.
    explicit LineBuilder(Line memory)
        : line_(std::move(memory))
    {
        line_.clear();
    }

    Line build(std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction)
    {
        line_.text_ = text;
        line_.glyphs_.reserve(text.size());
        for (const FontRun& run : fonts)
            include(line_.metrics_, run.font);
        inVisualOrder(itemsOf(text, fonts, direction), [this](const Item& item) { addItem(item); });
        return std::move(line_);
    }

private:
    void addItem(const Item& item)
    {
        GlyphSink& sink = GlyphSink::emptied();
        shapeStretch(
            std::u16string_view(line_.text_).substr(item.start, item.length), styleOf(item), sink);
        LineRun run { item.font, NSMakeRange(item.start, item.length), line_.glyphs_.size(),
            sink.glyphs.size(), line_.metrics_.width, widthOf(sink.total, item.font),
            item.isRightToLeft() };
        std::int64_t pen = 0;
        if (run.rightToLeft)
            std::ranges::reverse(sink.parts);
        for (const GlyphSink::Part& part : sink.parts)
            addGlyphs(std::span(sink.glyphs).subspan(part.firstGlyph, part.glyphCount), run, pen);
        include(line_.metrics_, item.font);
        line_.metrics_.width += run.width;
        line_.runs_.push_back(run);
    }

    /// The pen counts in the face's units, so that rounding does not add up along the line.
    void addGlyphs(std::span<const ShapedGlyph> glyphs, const LineRun& run, std::int64_t& pen)
    {
        const auto start = static_cast<std::uint32_t>(run.range.location);
        for (const ShapedGlyph& glyph : glyphs) {
            line_.glyphs_.push_back(
                { glyph.glyph, start + glyph.cluster, run.x + widthOf(pen + glyph.x, run.font),
                    widthOf(glyph.y, run.font), widthOf(glyph.advance, run.font) });
            pen += glyph.advance;
        }
    }

    Line line_;
};

Line Line::partFor(NSRange range) const
{
    Line part;
    part.text_ = text_;
    part.metrics_ = metrics_;
    for (const LineRun& run : runs_) {
        LineRun kept = run;
        kept.firstGlyph = part.glyphs_.size();
        for (const LineGlyph& glyph : glyphs(run)) {
            if (NSLocationInRange(glyph.cluster, range))
                part.glyphs_.push_back(glyph);
        }
        kept.glyphCount = part.glyphs_.size() - kept.firstGlyph;
        if (kept.glyphCount)
            part.runs_.push_back(kept);
    }
    return part;
}

void Line::clear()
{
    makeEmpty(text_);
    makeEmpty(runs_);
    makeEmpty(glyphs_);
    metrics_ = {};
}

void Line::addRoom(std::span<const double> room)
{
    double shift = 0;
    for (LineRun& run : runs_) {
        const double before = shift;
        run.x += shift;
        for (std::size_t i = 0; i < run.glyphCount; ++i) {
            LineGlyph& glyph = glyphs_[run.firstGlyph + i];
            glyph.x += shift;
            const bool isLast = i + 1 == run.glyphCount || (&glyph)[1].cluster != glyph.cluster;
            const double added = isLast && glyph.cluster < room.size() ? room[glyph.cluster] : 0;
            glyph.advance += added;
            shift += added;
        }
        run.width += shift - before;
    }
    metrics_.width += shift;
}

Line shapeLine(
    std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction, Line memory)
{
    return LineBuilder(std::move(memory)).build(text, fonts, direction);
}

Line shapeLine(std::u16string_view text, const Font& font, BaseDirection direction)
{
    const FontRun run { NSMakeRange(0, text.size()), font };
    return shapeLine(text, std::span(&run, 1), direction);
}

LineMetrics measureLine(
    std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction)
{
    LineMetrics metrics;
    for (const FontRun& run : fonts)
        include(metrics, run.font);
    inVisualOrder(itemsOf(text, fonts, direction), [&](const Item& item) {
        include(metrics, item.font);
        metrics.width += measureItem(text, item);
    });
    return metrics;
}

LineMetrics measureLine(std::u16string_view text, const Font& font)
{
    LineMetrics metrics;
    include(metrics, font);
    if (!font.face || text.empty())
        return metrics;
    if (isSingleItem(text, font)) {
        metrics.width = measureItem(text, { 0, text.size(), font, kLatin, 0 });
        return metrics;
    }
    const FontRun run { NSMakeRange(0, text.size()), font };
    return measureLine(text, std::span(&run, 1));
}

}
