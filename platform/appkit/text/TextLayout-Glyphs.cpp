// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "TextLayoutPrivate.h"
#include "quartz/text/Truncation.h"

namespace brindle::layouts {

namespace {

    constexpr std::size_t kKeptLines = 512;
    constexpr std::size_t kSpareLines = 4;

    // The caret of the extra line, and that of an index that has no line.
    constexpr std::size_t kNoFragment = ~std::size_t {};

    text::TruncationPlace placeOf(NSLineBreakMode mode)
    {
        return mode == NSLineBreakByTruncatingHead  ? text::TruncationPlace::head
            : mode == NSLineBreakByTruncatingMiddle ? text::TruncationPlace::middle
                                                    : text::TruncationPlace::tail;
    }

    /// Spreads free room over the spaces of a line, but those at its end.
    void justify(text::Line& line, double room)
    {
        const std::u16string_view text = line.text();
        const std::size_t end = text.find_last_not_of(u' ') + 1;
        const double hanging = line.width() - line.caretOffset(end);
        const double free = room - (line.width() - std::max(hanging, 0.0));
        const auto spaces
            = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), u' ');
        if (!(free > 0) || spaces == 0)
            return;
        std::vector<double> added(text.size());
        for (std::size_t i = 0; i < end; ++i)
            added[i] = text[i] == u' ' ? free / static_cast<double>(spaces) : 0;
        line.addRoom(added);
    }

}

NSUInteger GlyphLine::toLine(NSUInteger index, NSUInteger start) const
{
    if (!removed.length || index <= removed.location)
        return index - start;
    const NSUInteger behind = NSMaxRange(removed);
    return index >= behind ? index - removed.length + 1 - start : removed.location - start;
}

NSUInteger GlyphLine::toText(NSUInteger index, NSUInteger start) const
{
    const NSUInteger whole = start + index;
    return removed.length && whole > removed.location ? whole + removed.length - 1 : whole;
}

void Layout::makeGlyphs(const Fragment& fragment, GlyphLine& made)
{
    const Paragraph paragraph = paragraphAt(fragment.range.location);
    const NSUInteger start = fragment.range.location;
    const NSUInteger length = std::min(fragment.range.length, paragraph.contentLength);
    readRuns(*text_, NSMakeRange(start, length), glyphRuns_);
    const std::u16string_view content = units(start, length);
    text::ParagraphRules rules;
    rules.direction = fragment.rightToLeft ? text::BaseDirection::rightToLeft
                                           : text::BaseDirection::leftToRight;
    if (fragment.cut >= NSLineBreakByTruncatingHead) {
        text::TruncatedLine cut = text::shapeTruncatedLine(content, text::FontRuns(glyphRuns_),
            std::max(fragment.room, 0.0), placeOf(fragment.cut), rules.direction,
            std::move(made.line));
        if (cut.removed.length)
            cut.removed.location += start;
        made = { std::move(cut.line), cut.removed };
        return;
    }
    std::vector<text::TabStop> tabs;
    if (content.find(u'\t') != content.npos) {
        const Ref<NSDictionary> attributes
            = text_->attributesAtIndex_effectiveRange(start, nullptr);
        const Ref<NSParagraphStyle> style = paragraphStyleIn(attributes.get());
        tabs = tabsOf(*style);
        rules.tabInterval = style->defaultTabInterval();
    }
    rules.tabs = tabs;
    rules.firstIndent = fragment.indent;
    made = { text::setLine(content, glyphRuns_, rules, std::move(made.line)), {} };
    if (fragment.justified)
        justify(made.line, fragment.room);
}

void Layout::forgetGlyphs()
{
    for (KnownGlyphs& known : glyphs_) {
        if (spareLines_.size() >= kSpareLines)
            break;
        known.line->line.clear();
        spareLines_.push_back(std::move(known.line));
    }
    glyphs_.clear();
}

const GlyphLine& Layout::glyphsOf(std::size_t fragment)
{
    const auto place
        = [&] { return std::ranges::lower_bound(glyphs_, fragment, {}, &KnownGlyphs::fragment); };
    if (const auto known = place(); known != glyphs_.end() && known->fragment == fragment)
        return *known->line;
    if (glyphs_.size() >= kKeptLines)
        forgetGlyphs();
    std::unique_ptr<GlyphLine> line;
    if (spareLines_.empty()) {
        line = std::make_unique<GlyphLine>();
    } else {
        line = std::move(spareLines_.back());
        spareLines_.pop_back();
    }
    makeGlyphs(fragments_[fragment], *line);
    return *glyphs_.insert(place(), { fragment, std::move(line) })->line;
}

double Layout::caretX(NSUInteger index, const Fragment** found, bool upstream)
{
    ensureIndex(index);
    std::size_t at = hasExtraLine_ && index >= length_ ? kNoFragment : fragmentAt(index);
    if (at >= fragments_.size()) {
        *found = hasExtraLine_ ? &extraLine_ : nullptr;
        return hasExtraLine_ ? extraLine_.textX : 0;
    }
    if (upstream && at > 0 && index == fragments_[at].range.location && fragments_[at - 1].wrapped)
        --at;
    const Fragment& fragment = fragments_[at];
    *found = &fragment;
    const GlyphLine& glyphs = glyphsOf(at);
    const NSUInteger place
        = glyphs.toLine(std::clamp(index, fragment.range.location, NSMaxRange(fragment.range)),
            fragment.range.location);
    return fragment.textX + glyphs.line.caretOffset(place);
}

NSUInteger Layout::indexNear(std::size_t container, NSPoint point, bool* upstream)
{
    *upstream = false;
    ensurePoint(container, point.y);
    const bool isBehind = hasExtraLine_ && extraLine_.container == container
        && (point.y >= NSMinY(extraLine_.rect) || fragments_.empty());
    const std::size_t at = isBehind ? kNoFragment : fragmentNear(container, point);
    if (at >= fragments_.size())
        return isBehind ? length_ : laidOutTo();
    const Fragment& fragment = fragments_[at];
    const GlyphLine& glyphs = glyphsOf(at);
    const NSUInteger index
        = glyphs.toText(glyphs.line.indexAt(point.x - fragment.textX), fragment.range.location);
    *upstream = fragment.wrapped && index >= NSMaxRange(fragment.range);
    return index;
}

std::vector<NSRect> Layout::rectsFor(NSRange range, std::size_t container, bool isSelection)
{
    std::vector<NSRect> rects;
    if (range.length)
        ensureIndex(NSMaxRange(range) - 1);
    const auto [first, end] = fragmentsIn(container);
    for (std::size_t i = std::max(first, fragmentAt(range.location));
         i < end && fragments_[i].range.location < NSMaxRange(range); ++i) {
        const Fragment& fragment = fragments_[i];
        const NSRange part = NSIntersectionRange(range, fragment.range);
        if (!part.length)
            continue;
        const bool goesOn = NSMaxRange(range) >= NSMaxRange(fragment.range)
            && (NSMaxRange(range) > NSMaxRange(fragment.range) || i + 1 < end);
        const double y = NSMinY(fragment.rect);
        const double height = fragment.rect.size.height;
        const double padding = containers_[container].padding;
        const bool isWhole = part.length == fragment.range.length;
        if (isWhole && !(isSelection && goesOn)) {
            rects.push_back(
                NSMakeRect(fragment.textX, y, NSWidth(fragment.used) - 2 * padding, height));
            continue;
        }
        if (isSelection && isWhole && goesOn) {
            rects.push_back(fragment.rect);
            continue;
        }
        const GlyphLine& glyphs = glyphsOf(i);
        const NSUInteger from = glyphs.toLine(part.location, fragment.range.location);
        const NSUInteger to = glyphs.toLine(NSMaxRange(part), fragment.range.location);
        for (const text::LineSpan span : glyphs.line.spansOf(NSMakeRange(from, to - from)))
            rects.push_back(NSMakeRect(fragment.textX + span.x, y, span.width, height));
        if (isSelection && goesOn) {
            const double x = rects.empty() || NSMinY(rects.back()) != y
                ? NSMaxX(fragment.used) - padding
                : NSMaxX(rects.back());
            const double rest = NSMaxX(fragment.rect) - x;
            if (rest > 0 && !fragment.rightToLeft)
                rects.push_back(NSMakeRect(x, y, rest, height));
        }
    }
    return rects;
}

}
