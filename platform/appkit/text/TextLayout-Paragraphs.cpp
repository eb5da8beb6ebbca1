// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "TextLayoutPrivate.h"

// Paragraphs become lines, and find their places.

namespace brindle::layouts {

/// Places the lines of one paragraph.
class Layout::Lines final : public text::LineTaker {
public:
    Lines(Layout& layout, const ParagraphShape& shape, const Paragraph& paragraph, bool rightToLeft)
        : layout_(layout)
        , container_(layout.containers_[layout.container_])
        , hasExclusions_(!container_.exclusions.empty())
        , shape_(shape)
        , paragraph_(paragraph)
        , rightToLeft_(rightToLeft)
        , isContinuing_(layout.isContinuing_)
    {
    }

    double headIndent(std::size_t number) const
    {
        return number == 0 && !isContinuing_ ? shape_.firstLineHeadIndent : shape_.headIndent;
    }

    double roomForLine(std::size_t number) override
    {
        const double tail = shape_.tailIndent;
        const double whole = inner();
        indent_ = headIndent(number);
        const double end = tail > 0 ? std::min(tail, whole) : whole + tail;
        left_ = rightToLeft_ && whole < kWidestAligned ? whole - end : indent_;
        double right = left_ + end - indent_;
        if (hasExclusions_) {
            nextStretch(number);
            left_ = std::max(left_, stretch_.left);
            right = std::min(right, stretch_.right - 2 * container_.padding);
        }
        room_ = right - left_;
        return room_;
    }

    bool leaveStretch() override { return hasExclusions_ && stretch_.width() < container_.width; }

    bool addLine(const text::LineBox& line) override
    {
        const NSUInteger start = paragraph_.start + line.range.location;
        Fragment fragment;
        fragment.wrapped = line.wrapped;
        const NSUInteger lineBreak = paragraph_.length - paragraph_.contentLength;
        fragment.range = NSMakeRange(start, line.range.length + (line.wrapped ? 0 : lineBreak));
        fragment.container = static_cast<std::uint32_t>(layout_.container_);
        fragment.rightToLeft = rightToLeft_;
        fragment.indent = indent_;
        fragment.room = room_;
        const double top = isInRow() ? lead_ : leadOf(start);
        const double height = heightOf(line);
        const std::size_t limit = container_.lineLimit;
        const bool isOver = layout_.y_ + top + height > container_.height + kSlack
            || (limit && !isInRow() && layout_.linesInContainer_ >= limit);
        if (isOver) {
            layout_.at_ = start;
            layout_.isContinuing_ = isContinuing_ || start > paragraph_.start;
            return false;
        }
        place(fragment, line, top, height);
        return true;
    }

    /// Goes on below what stands in the stretches of a row: they are as high as the highest.
    void endRow()
    {
        if (row_.empty())
            return;
        auto& lines = layout_.fragments_;
        if (isInRow()) {
            for (std::size_t i = rowStart_; i < lines.size(); ++i)
                lines[i].rect.size.height = rowBottom_ - layout_.y_;
            layout_.y_ = rowBottom_;
        } else {
            layout_.y_ = nextRow(container_, layout_.y_, rowHeight());
        }
        row_.clear();
    }

private:
    double inner() const { return container_.width - 2 * container_.padding; }
    /// Answers whether a line stands already in the row that is being filled.
    bool isInRow() const { return !row_.empty() && layout_.fragments_.size() > rowStart_; }

    double leadOf(NSUInteger start) const
    {
        return start == paragraph_.start && start > 0 && !isContinuing_
            ? shape_.paragraphSpacingBefore
            : 0;
    }

    double shapedHeight(double natural) const
    {
        double height = natural;
        if (const double multiple = shape_.lineHeightMultiple; multiple > 0)
            height *= multiple;
        height = std::max(height, shape_.minimumLineHeight);
        if (const double most = shape_.maximumLineHeight; most > 0)
            height = std::min(height, most);
        return height;
    }
    double heightOf(const text::LineBox& line)
    {
        const double natural
            = line.ascent + line.descent + (layout_.usesFontLeading ? line.leading : 0);
        const double height = shapedHeight(natural);
        baseline_ = line.ascent + height - natural; // what is added stands above the letters
        return height;
    }

    /// How high a row is going to be, before anything stands in it.
    double rowHeight() const
    {
        return shapedHeight(lineHeight(layout_.runs_.front().font, layout_.usesFontLeading));
    }
    /// Goes to the next stretch of the row, or to the next row.
    void nextStretch(std::size_t number)
    {
        if (place_ >= row_.size()) {
            endRow();
            const NSUInteger start = number == 0 ? paragraph_.start : paragraph_.start + 1;
            row_ = freeRow(container_, layout_.y_, leadOf(start) + rowHeight());
            if (rightToLeft_)
                std::ranges::reverse(row_);
            place_ = 0;
            rowStart_ = layout_.fragments_.size();
            rowBottom_ = layout_.y_;
        }
        stretch_ = row_[place_++];
    }

    /// Where text of a width stands in its room.
    double alignedX(double width) const
    {
        const double free = room_ - width;
        const bool isBounded = inner() < kWidestAligned;
        double share = 0;
        switch (shape_.alignment) {
        case NSTextAlignmentRight:
            share = 1;
            break;
        case NSTextAlignmentCenter:
            share = 0.5;
            break;
        case NSTextAlignmentNatural:
        case NSTextAlignmentJustified:
            share = rightToLeft_ ? 1 : 0;
            break;
        case NSTextAlignmentLeft:
            break;
        }
        return left_ + (isBounded ? std::max(free, 0.0) * share : 0);
    }

    void place(Fragment& fragment, const text::LineBox& line, double top, double height)
    {
        const NSLineBreakMode mode = shape_.lineBreakMode;
        double width = line.width;
        if (mode >= NSLineBreakByClipping && width > room_ + kSlack) {
            fragment.cut = mode;
            width = std::max(room_, 0.0);
        }
        fragment.justified = shape_.alignment == NSTextAlignmentJustified && line.wrapped
            && inner() < kWidestAligned;
        if (fragment.justified)
            width = std::max(room_, width);
        const double x = alignedX(width);
        const bool isEnd = NSMaxRange(fragment.range) >= layout_.length_;
        const double bottom = line.wrapped ? shape_.lineSpacing
            : isEnd                        ? 0
                                           : shape_.paragraphSpacing;
        const double padding = container_.padding;
        fragment.textX = padding + x;
        fragment.baseline = top + baseline_;
        fragment.rect = NSMakeRect(0, layout_.y_, container_.width, top + height + bottom);
        fragment.used = NSMakeRect(x, layout_.y_ + top, width + 2 * padding, height);
        layout_.at_ = NSMaxRange(fragment.range);
        if (hasExclusions_)
            return placeInRow(fragment, top);
        layout_.fragments_.push_back(fragment);
        layout_.y_ += fragment.rect.size.height;
        ++layout_.linesInContainer_;
    }
    void placeInRow(Fragment& fragment, double top)
    {
        fragment.rect.origin.x = stretch_.left;
        fragment.rect.size.width = stretch_.width();
        layout_.linesInContainer_ += isInRow() ? 0 : 1;
        lead_ = top;
        rowBottom_ = std::max(rowBottom_, NSMaxY(fragment.rect));
        layout_.fragments_.push_back(fragment);
        if (place_ >= row_.size())
            endRow();
    }

    Layout& layout_;
    const Container& container_;
    const bool hasExclusions_;
    const ParagraphShape& shape_;
    Paragraph paragraph_;
    bool rightToLeft_;
    bool isContinuing_;
    double indent_ = 0;
    double room_ = 0;
    double left_ = 0; // where that room begins, behind the padding
    double baseline_ = 0;

    // Where paths are kept out of, a row has several stretches, and a line in each.
    std::vector<FreeSpan> row_; // in the order in which they are filled
    std::size_t place_ = 0; // of the next stretch
    FreeSpan stretch_; // the one that is filled
    std::size_t rowStart_ = 0; // the first fragment of the row
    double rowBottom_ = 0;
    double lead_ = 0; // above the text of the row
};

namespace {

    text::Wrapping wrappingOf(NSLineBreakMode mode)
    {
        return mode == NSLineBreakByWordWrapping ? text::Wrapping::words
            : mode == NSLineBreakByCharWrapping  ? text::Wrapping::characters
                                                 : text::Wrapping::none;
    }

}

/// Lays out a paragraph, or what is left of one; false when there is nothing to do.
bool Layout::layOutNext()
{
    if (isFull() || at_ >= length_)
        return false;
    const Paragraph paragraph = paragraphAt(at_);
    const Ref<NSDictionary> attributes
        = readRuns(*text_, NSMakeRange(paragraph.start, paragraph.contentLength), runs_);
    const ParagraphShape shape = shapeIn(attributes.get());
    const std::u16string_view content = units(paragraph.start, paragraph.contentLength);
    const bool rightToLeft = paragraph.isPlain ? shape.direction == text::BaseDirection::rightToLeft
                                               : text::isRightToLeft(content, shape.direction);

    text::ParagraphRules rules;
    rules.wrapping = wrappingOf(shape.lineBreakMode);
    rules.direction
        = rightToLeft ? text::BaseDirection::rightToLeft : text::BaseDirection::leftToRight;
    rules.mayHaveTabs = paragraph.hasTabs;
    std::vector<text::TabStop> tabs;
    if (paragraph.hasTabs) {
        const Ref<NSParagraphStyle> style = paragraphStyleIn(attributes.get());
        tabs = tabsOf(*style);
    }
    rules.tabs = tabs;
    rules.tabInterval = shape.tabInterval;
    Lines lines(*this, shape, paragraph, rightToLeft);
    rules.firstIndent = lines.headIndent(0);
    rules.indent = shape.headIndent;
    const Container& container = containers_[container_];
    if (!container.exclusions.empty())
        rules.wordRoom = container.width - 2 * container.padding;
    const bool isWhole = text::breakParagraph(content, runs_, rules, lines);
    lines.endRow();
    if (isWhole) {
        isContinuing_ = false;
        return true;
    }
    // The container is full: the rest goes into the next one.
    ++container_;
    y_ = 0;
    linesInContainer_ = 0;
    return !isFull();
}

}
