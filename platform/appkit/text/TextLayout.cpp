// SPDX-License-Identifier: Apache-2.0
#include "TextLayoutPrivate.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace brindle::layouts {

namespace {

    constexpr NSUInteger kWindow = 4096; // units of the text that are read at a time
    double boundedOrNone(double length)
    {
        return length > 0 ? length : std::numeric_limits<double>::max();
    }

    /// Answers how many units at the beginning of a text are letters and signs of ASCII, in steps of a few.
    std::size_t plainUnits(std::u16string_view text)
    {
        constexpr std::uint64_t kSpaces = 0x0020'0020'0020'0020;
        constexpr std::uint64_t kNoAscii = 0xFF80'FF80'FF80'FF80;
        constexpr std::size_t kStep = sizeof kSpaces / sizeof(char16_t);
        std::size_t passed = 0;
        for (; passed + kStep <= text.size(); passed += kStep) {
            std::uint64_t units = 0;
            std::memcpy(&units, text.data() + passed, sizeof units);
            if (((units - kSpaces) | units) & kNoAscii)
                break; // a control character makes the difference negative
        }
        return passed;
    }

    bool isPlainUnit(char16_t unit) { return unit >= u' ' && unit < 0x80; }

    bool endsLine(char16_t unit)
    {
        const bool isPlain = unit > u'\r' && unit < 0x85;
        return !isPlain
            && (unit == u'\n' || unit == u'\r' || unit == 0x85 || unit == 0x2028 || unit == 0x2029);
    }

}

namespace {

    // Layouts often live for one call: the last one that ended serves again, with its memory.
    thread_local std::unique_ptr<Layout> spare;

}

LayoutOwner takeLayout()
{
    Layout* const layout = spare.release();
    return LayoutOwner(layout ? layout : new Layout);
}

void LayoutEnd::operator()(Layout* layout) const
{
    if (spare || !layout->rest())
        delete layout;
    else
        spare.reset(layout);
}

/// Becomes as a new one is. - Returns: false where a long text would leave its memory behind.
bool Layout::rest()
{
    constexpr std::size_t kKept = kWindow / 16;
    if (buffer_.capacity() > 4 * kWindow
        || std::max({ runs_.capacity(), fragments_.capacity(), containers_.capacity() }) > kKept)
        return false;
    text_ = nullptr;
    removeContainers();
    runs_.clear();
    usesFontLeading = true;
    lastLineTruncates_ = false;
    return true;
}

void Layout::setText(NSAttributedString* text)
{
    text_ = text;
    invalidate();
}

void Layout::removeContainers()
{
    containers_.clear();
    invalidate();
}

void Layout::addContainer(Container container)
{
    container.width = boundedOrNone(container.width);
    container.height = boundedOrNone(container.height);
    containers_.push_back(std::move(container));
}

void Layout::invalidate()
{
    fragments_.clear();
    clear();
    at_ = 0;
    container_ = 0;
    y_ = 0;
    linesInContainer_ = 0;
    isContinuing_ = false;
}

/// Forgets what depends on the text as it was.
void Layout::clear()
{
    forgetGlyphs();
    string_ = nullptr;
    length_ = 0;
    buffer_.clear();
    isComplete_ = false;
    hasExtraLine_ = false;
}

/// Looks at the text as it is now.
void Layout::read()
{
    if (string_ || !text_)
        return;
    string_ = text_->string();
    length_ = string_ ? string_->length() : 0;
}

void Layout::noteEdit(NSRange range, NSInteger delta)
{
    const NSUInteger oldEnd = NSMaxRange(range) - static_cast<NSUInteger>(delta);
    const bool canKeep = containers_.size() == 1 && containers_[0].height >= kWidestAligned
        && !containers_[0].lineLimit && containers_[0].exclusions.empty() && !fragments_.empty()
        && range.location <= at_;
    if (!canKeep)
        return invalidate();
    clear();
    read();
    // From the paragraph of the letter before the edit: a line break may have been torn apart or joined.
    std::size_t first = fragmentAt(range.location > 0 ? range.location - 1 : 0);
    while (first > 0 && fragments_[first - 1].wrapped)
        --first;
    std::size_t rest = first;
    while (rest < fragments_.size()
        && (fragments_[rest].range.location <= oldEnd || fragments_[rest - 1].wrapped))
        ++rest;
    std::vector<Fragment> kept(
        fragments_.begin() + static_cast<std::ptrdiff_t>(rest), fragments_.end());
    const NSUInteger oldAt = at_;
    const double oldY = kept.empty() ? 0 : NSMinY(kept.front().rect);
    at_ = fragments_[first].range.location;
    y_ = NSMinY(fragments_[first].rect);
    container_ = 0;
    isContinuing_ = false;
    fragments_.resize(first);
    if (kept.empty())
        return;
    const NSUInteger next = kept.front().range.location + static_cast<NSUInteger>(delta);
    while (at_ < next && layOutNext()) { }
    if (at_ != next)
        return; // the lines behind will be laid out when somebody asks
    const double moved = y_ - oldY;
    for (Fragment& fragment : kept) {
        fragment.range.location += static_cast<NSUInteger>(delta);
        fragment.rect.origin.y += moved;
        fragment.used.origin.y += moved;
        fragments_.push_back(fragment);
    }
    at_ = oldAt + static_cast<NSUInteger>(delta);
    y_ = NSMaxY(fragments_.back().rect);
}

// ---- the text

void Layout::load(NSUInteger start, NSUInteger count)
{
    count = std::min(count, length_ - start);
    buffer_.resize(count);
    bufferStart_ = start;
    string_->getCharacters_range(buffer_.data(), NSMakeRange(start, count));
}

std::u16string_view Layout::units(NSUInteger start, NSUInteger length) const
{
    return std::u16string_view(buffer_).substr(start - bufferStart_, length);
}

Layout::Paragraph Layout::paragraphAt(NSUInteger start)
{
    NSUInteger window = kWindow;
    const bool isInside = start >= bufferStart_ && start < bufferStart_ + buffer_.size();
    if (!isInside)
        load(start, window);
    NSUInteger at = start;
    bool hasTabs = false;
    bool isPlain = true;
    for (;;) {
        const NSUInteger end = bufferStart_ + buffer_.size();
        const std::u16string_view rest = units(at, end - at);
        std::size_t passed = plainUnits(rest);
        for (; passed < rest.size() && !endsLine(rest[passed]); ++passed) {
            isPlain = isPlain && isPlainUnit(rest[passed]);
            hasTabs = hasTabs || rest[passed] == u'\t';
        }
        at += passed;
        // A carriage return at the very end of the window may have its line feed behind it.
        if (at + 1 < end || (end == length_ && bufferStart_ <= start))
            break;
        window *= 2;
        load(start, window);
        at = std::min(at, bufferStart_ + buffer_.size());
    }
    NSUInteger length = at - start;
    const NSUInteger content = length;
    if (at < length_) {
        const bool isPair = buffer_[at - bufferStart_] == u'\r' && at + 1 < length_
            && buffer_[at + 1 - bufferStart_] == u'\n';
        length += isPair ? 2 : 1;
    }
    return { start, content, length, hasTabs, isPlain };
}

// ---- laying out

void Layout::ensureIndex(NSUInteger index)
{
    read();
    while (at_ <= index && layOutNext()) { }
    if (at_ >= length_ || isFull())
        finish();
}

void Layout::ensureAll() { ensureIndex(std::numeric_limits<NSUInteger>::max()); }

void Layout::ensurePoint(std::size_t container, double y)
{
    read();
    while ((container_ < container || (container_ == container && y_ <= y)) && layOutNext()) { }
    if (at_ >= length_ || isFull())
        finish();
}

/// Adds what stands behind the last line.
void Layout::finish()
{
    if (isComplete_)
        return;
    isComplete_ = true;
    if (isFull()) {
        truncateLast();
        return;
    }
    if (!text_ || (length_ > 0 && !endsLine(string_->characterAtIndex(length_ - 1))))
        return;
    std::vector<text::StyledRun> runs;
    readRuns(*text_, NSMakeRange(length_, 0), runs);
    const double height = lineHeight(runs.front().font, usesFontLeading);
    const Container& container = containers_[container_];
    const FreeSpan span = freeRow(container, y_, height).front();
    if (y_ + height > container.height + kSlack
        || (container.lineLimit && linesInContainer_ >= container.lineLimit))
        return;
    hasExtraLine_ = true;
    extraLine_ = {};
    extraLine_.range = NSMakeRange(length_, 0);
    extraLine_.container = static_cast<std::uint32_t>(container_);
    extraLine_.rect = NSMakeRect(span.left, y_, span.width(), height);
    extraLine_.used = NSMakeRect(span.left, y_, 2 * container.padding, height);
    extraLine_.textX = span.left + container.padding;
    extraLine_.baseline = std::round(runs.front().font.ascender());
}

/// Lets an ellipsis stand for all text that found no place.
void Layout::truncateLast()
{
    if (!lastLineTruncates_ || fragments_.empty() || at_ >= length_)
        return;
    Fragment& last = fragments_.back();
    if (!last.wrapped)
        return; // a whole paragraph ends there
    const Paragraph rest = paragraphAt(at_);
    last.cut = NSLineBreakByTruncatingTail;
    last.range.length = rest.start + rest.contentLength - last.range.location;
    last.wrapped = false;
    last.justified = false;
    last.used.size.width = last.room + 2 * containers_[last.container].padding;
    at_ = NSMaxRange(last.range);
}

}
