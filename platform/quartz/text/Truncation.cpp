// SPDX-License-Identifier: Apache-2.0
#include "Truncation.h"

#include "Unicode.h"
#include "foundation/ShortVector.h"

#include <algorithm>

namespace brindle::text {

namespace {

    constexpr char16_t kEllipsis = 0x2026;

    /// Where characters, as a reader counts them, begin. Those of plain text are its units.
    class Characters {
    public:
        explicit Characters(std::u16string_view text)
            : count_(text.size())
        {
            if (isPlainLatin(text))
                return;
            starts_ = characterBoundaries(text);
            count_ = starts_.size() - 1;
        }
        std::size_t count() const { return count_; }
        std::size_t start(std::size_t index) const
        {
            return starts_.empty() ? index : starts_[index];
        }

    private:
        std::size_t count_;
        std::vector<std::size_t> starts_; // empty where it is plain
    };

    /// Tries shorter and shorter forms of one text.
    class Truncator {
    public:
        Truncator(std::u16string_view text, std::span<const FontRun> fonts, TruncationPlace place,
            BaseDirection direction)
            : text_(text)
            , fonts_(fonts)
            , characters_(text)
            , place_(place)
            , direction_(direction)
        {
        }

        std::size_t characterCount() const { return characters_.count(); }

        double widthKeeping(std::size_t characters)
        {
            show(removedWhenKeeping(characters));
            return measureLine(shown(), shownFonts_, direction_).width;
        }
        TruncatedLine keeping(std::size_t characters, Line memory)
        {
            const NSRange removed = removedWhenKeeping(characters);
            show(removed);
            return { shapeLine(shown(), shownFonts_, direction_, std::move(memory)), removed };
        }

    private:
        NSRange removedWhenKeeping(std::size_t characters) const
        {
            std::size_t head = characters;
            if (place_ == TruncationPlace::head)
                head = 0;
            else if (place_ == TruncationPlace::middle)
                head = characters - characters / 2;
            const std::size_t start = characters_.start(head);
            const std::size_t end = characters_.start(characterCount() - (characters - head));
            return NSMakeRange(start, end - start);
        }

        std::u16string_view shown() const { return { shown_.data(), shown_.size() }; }

        /// Puts the ellipsis in; it takes the font of the first character that it stands for.
        void show(NSRange removed)
        {
            const auto at = [this](std::size_t index) {
                return text_.begin() + static_cast<std::ptrdiff_t>(index);
            };
            shown_.assign(text_.begin(), at(removed.location));
            shown_.push_back(kEllipsis);
            shown_.insert(shown_.end(), at(NSMaxRange(removed)), text_.end());
            shownFonts_.clear();
            for (const FontRun& run : fonts_) {
                const NSUInteger start = run.range.location;
                const NSUInteger end = std::min<NSUInteger>(text_.size(), NSMaxRange(run.range));
                const NSUInteger shownStart = placeAfter(removed, start);
                const NSUInteger shownEnd = placeAfter(removed, end);
                if (shownStart < shownEnd)
                    shownFonts_.push_back(
                        { NSMakeRange(shownStart, shownEnd - shownStart), run.font });
            }
        }

        /// Where a place of the whole text is in the shown one.
        static NSUInteger placeAfter(NSRange removed, NSUInteger index)
        {
            if (index <= removed.location)
                return index;
            return index >= NSMaxRange(removed) ? index - removed.length + 1 : removed.location + 1;
        }

        std::u16string_view text_;
        std::span<const FontRun> fonts_;
        Characters characters_;
        TruncationPlace place_;
        BaseDirection direction_;
        ShortVector<char16_t, 256> shown_; // the form that is tried
        ShortVector<FontRun, 8> shownFonts_;
    };

}

TruncatedLine shapeTruncatedLine(std::u16string_view text, std::span<const FontRun> fonts,
    double width, TruncationPlace place, BaseDirection direction, Line memory)
{
    TruncatedLine whole { shapeLine(text, fonts, direction, std::move(memory)), {} };
    if (whole.line.width() <= width || text.empty())
        return whole;
    Truncator truncator(text, fonts, place, direction);
    std::size_t fits = 0;
    std::size_t tooMany = truncator.characterCount();
    // Little of a very long text fits: go up in growing steps before halving what lies between.
    for (std::size_t step = 16; fits + step < tooMany; step *= 2) {
        if (truncator.widthKeeping(fits + step) > width) {
            tooMany = fits + step;
            break;
        }
        fits += step;
    }
    while (fits + 1 < tooMany) {
        const std::size_t middle = fits + (tooMany - fits) / 2;
        if (truncator.widthKeeping(middle) <= width)
            fits = middle;
        else
            tooMany = middle;
    }
    return truncator.keeping(fits, std::move(whole.line));
}

}
