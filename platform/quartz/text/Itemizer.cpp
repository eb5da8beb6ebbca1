// SPDX-License-Identifier: Apache-2.0
#include "Itemizer.h"

#include "FontLibraryPrivate.h"

#include <algorithm>

namespace brindle::text {

namespace {

    constexpr char32_t kJoiner = 0x200D;
    constexpr char16_t kAsciiEnd = 0x80;

    bool isWeakScript(hb_script_t script)
    {
        return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED
            || script == HB_SCRIPT_UNKNOWN || script == HB_SCRIPT_INVALID;
    }

    hb_script_t scriptOf(char32_t codePoint)
    {
        if (!harfBuzz())
            return HB_SCRIPT_LATIN;
        return BRINDLE_HARFBUZZ(hb_unicode_script)(
            BRINDLE_HARFBUZZ(hb_unicode_funcs_get_default)(), codePoint);
    }

    /// Characters that are drawn with whatever face stands around them.
    bool followsItsNeighbours(char32_t codePoint)
    {
        const bool joiner = codePoint == 0x200C || codePoint == kJoiner || codePoint == 0x034F;
        const bool direction = (codePoint >= 0x200E && codePoint <= 0x200F)
            || (codePoint >= 0x202A && codePoint <= 0x202E)
            || (codePoint >= 0x2066 && codePoint <= 0x2069);
        const bool selector = (codePoint >= 0xFE00 && codePoint <= 0xFE0F)
            || (codePoint >= 0xE0000 && codePoint <= 0xE0FFF);
        const bool invisible = codePoint == 0x00AD || codePoint == 0x200B || codePoint == 0x2060
            || codePoint == 0xFEFF;
        const bool control = codePoint == 0x09
            || (codePoint < 0x10000 && isHiddenControl(static_cast<char16_t>(codePoint)));
        return joiner || direction || selector || invisible || control;
    }

    /// Goes through one stretch of one font and hands out its items.
    class StretchItemizer {
    public:
        StretchItemizer(
            std::u16string_view text, const Directions& directions, std::vector<Item>& items)
            : text_(text)
            , directions_(directions)
            , items_(items)
        {
        }

        void add(std::size_t start, std::size_t end, const Font& font)
        {
            hb_script_t script = HB_SCRIPT_LATIN;
            const FontFace* face = font.face;
            const std::size_t firstItem = items_.size();
            bool afterJoiner = false;
            lastIsWeak_ = false;
            for (std::size_t index = start; index < end;) {
                const std::size_t at = index;
                const char32_t codePoint = nextCodePoint(text_.substr(0, end), index);
                const hb_script_t own = scriptOf(codePoint);
                const bool isWeak = isWeakScript(own);
                if (!isWeak)
                    script = own;
                const char16_t next = index < end ? text_[index] : u'\0';
                face = faceFor({ codePoint, own, next, afterJoiner }, *font.face, face);
                afterJoiner = codePoint == kJoiner;
                const Item item { at, index - at, { face, font.size }, script, levelAt(at) };
                if (items_.size() == firstItem || !join(items_.back(), item)) {
                    items_.push_back(item);
                    lastIsWeak_ = true;
                }
                lastIsWeak_ = lastIsWeak_ && isWeak;
            }
        }

    private:
        Level levelAt(std::size_t index) const
        {
            return directions_.levels.empty() ? directions_.base : directions_.levels[index];
        }

        /// Lengthens the last item if the next character can be shaped with it. Signs and spaces
        /// that belong to no script take that of the letters before them, or else of those after
        /// them.
        bool join(Item& last, const Item& next) const
        {
            if (last.font.face != next.font.face || last.level != next.level)
                return false;
            if (last.script != next.script && !lastIsWeak_)
                return false;
            last.script = next.script;
            last.length += next.length;
            return true;
        }

        /// A character and what decides beside it about its face.
        struct Place {
            char32_t codePoint = 0;
            hb_script_t script = HB_SCRIPT_LATIN;
            char16_t next = 0;
            bool afterJoiner = false;

            /// A selector behind a character settles how it is shown.
            bool wantsPicture() const
            {
                constexpr char16_t kSign = 0xFE0E;
                constexpr char16_t kPicture = 0xFE0F;
                return next == kPicture || (next != kSign && isPictureByItself(codePoint));
            }
        };

        /// A mark stays with the face of its base, or the two could not be joined; so do the parts of one picture.
        static const FontFace* faceFor(
            const Place& place, const FontFace& wanted, const FontFace* current)
        {
            const char32_t codePoint = place.codePoint;
            if (followsItsNeighbours(codePoint))
                return current;
            const bool joins = place.script == HB_SCRIPT_INHERITED
                || (place.afterJoiner && current->isColored());
            if (joins && current->covers(codePoint))
                return current;
            FontLibrary& library = FontLibrary::shared();
            if (place.wantsPicture() && !wanted.isColored()) {
                if (const FontFace* face
                    = library.fallbackFor(wanted, codePoint, Presentation::picture))
                    return face;
            }
            if (wanted.covers(codePoint))
                return &wanted;
            if (current != &wanted && !current->isColored() && current->covers(codePoint))
                return current;
            const FontFace* other = library.fallbackFor(wanted, codePoint);
            return other ? other : &wanted;
        }

        std::u16string_view text_;
        const Directions& directions_;
        std::vector<Item>& items_;
        bool lastIsWeak_ = false; // the last item has no letter of a script yet
    };

    /// The part of a font run that lies on the text and after what was taken already.
    std::pair<std::size_t, std::size_t> clampedRange(
        const FontRun& run, std::size_t from, std::size_t length)
    {
        const std::size_t start = std::clamp<std::size_t>(run.range.location, from, length);
        const std::size_t room = length - start;
        return { start, start + std::min<std::size_t>(run.range.length, room) };
    }

}

bool isSingleItem(std::u16string_view text, const Font& font)
{
    const FontFace& face = *font.face;
    if (face.handles().coversAscii && bitsOf(text) < kAsciiEnd)
        return true;
    return std::ranges::all_of(text, [&face](char16_t unit) {
        return isPlainLatin(unit) && (face.covers(unit) || isHiddenControl(unit) || unit == 0x09);
    });
}

void itemize(std::u16string_view text, std::span<const FontRun> fonts, BaseDirection direction,
    std::vector<Item>& items)
{
    items.clear();
    const bool isAscii = bitsOf(text) < kAsciiEnd;
    const bool leftToRight
        = direction != BaseDirection::rightToLeft && (isAscii || !mayRunRightToLeft(text));
    const Directions directions = leftToRight ? Directions {} : directionsOfText(text, direction);
    StretchItemizer itemizer(text, directions, items);
    std::size_t from = 0;
    for (const FontRun& run : fonts) {
        const auto [start, end] = clampedRange(run, from, text.size());
        from = std::max(from, end);
        if (start == end || !run.font.face)
            continue;
        const std::u16string_view stretch = text.substr(start, end - start);
        const bool isCovered = isAscii && run.font.face->handles().coversAscii;
        if (leftToRight && (isCovered || isSingleItem(stretch, run.font)))
            items.push_back({ start, end - start, run.font, kLatin, 0 });
        else
            itemizer.add(start, end, run.font);
    }
}

}
