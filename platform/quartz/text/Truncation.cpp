// SPDX-License-Identifier: Apache-2.0
#include "Truncation.h"

#include "Unicode.h"

#include <algorithm>

namespace brindle::text {

namespace {

    constexpr char16_t kEllipsis = 0x2026;

    /// Tries shorter and shorter forms of one text.
    class Truncator {
    public:
        Truncator(std::u16string_view text, std::span<const FontRun> fonts, TruncationPlace place,
            BaseDirection direction)
            : text_(text)
            , fonts_(fonts)
            , bounds_(characterBoundaries(text))
            , place_(place)
            , direction_(direction)
        {
        }

        std::size_t characterCount() const { return bounds_.empty() ? 0 : bounds_.size() - 1; }

        TruncatedLine keeping(std::size_t characters) const
        {
            const NSRange removed = removedWhenKeeping(characters);
            std::u16string shown(text_.substr(0, removed.location));
            shown += kEllipsis;
            shown += text_.substr(NSMaxRange(removed));
            return { shapeLine(shown, fontsAround(removed), direction_), removed };
        }

    private:
        NSRange removedWhenKeeping(std::size_t characters) const
        {
            const std::size_t count = characterCount();
            std::size_t head = characters;
            if (place_ == TruncationPlace::head)
                head = 0;
            else if (place_ == TruncationPlace::middle)
                head = characters - characters / 2;
            const std::size_t start = bounds_[head];
            return NSMakeRange(start, bounds_[count - (characters - head)] - start);
        }

        /// The fonts of what is shown; the ellipsis takes the font of the first character it stands
        /// for.
        std::vector<FontRun> fontsAround(NSRange removed) const
        {
            std::vector<FontRun> fonts;
            for (const FontRun& run : fonts_) {
                const NSUInteger start = run.range.location;
                const NSUInteger end = std::min<NSUInteger>(text_.size(), NSMaxRange(run.range));
                const NSUInteger shownStart = placeAfter(removed, start);
                const NSUInteger shownEnd = placeAfter(removed, end);
                if (shownStart < shownEnd)
                    fonts.push_back({ NSMakeRange(shownStart, shownEnd - shownStart), run.font });
            }
            return fonts;
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
        std::vector<std::size_t> bounds_;
        TruncationPlace place_;
        BaseDirection direction_;
    };

}

TruncatedLine shapeTruncatedLine(std::u16string_view text, std::span<const FontRun> fonts,
    double width, TruncationPlace place, BaseDirection direction)
{
    TruncatedLine whole { shapeLine(text, fonts, direction), {} };
    if (whole.line.width() <= width || text.empty())
        return whole;
    const Truncator truncator(text, fonts, place, direction);
    TruncatedLine best = truncator.keeping(0);
    std::size_t fits = 0;
    std::size_t tooMany = truncator.characterCount();
    // Little of a very long text fits: go up in growing steps before halving what lies between.
    for (std::size_t step = 16; fits + step < tooMany; step *= 2) {
        TruncatedLine attempt = truncator.keeping(fits + step);
        if (attempt.line.width() > width) {
            tooMany = fits + step;
            break;
        }
        best = std::move(attempt);
        fits += step;
    }
    while (fits + 1 < tooMany) {
        const std::size_t middle = fits + (tooMany - fits) / 2;
        TruncatedLine attempt = truncator.keeping(middle);
        if (attempt.line.width() <= width) {
            best = std::move(attempt);
            fits = middle;
        } else {
            tooMany = middle;
        }
    }
    return best;
}

}
