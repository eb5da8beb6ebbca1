// SPDX-License-Identifier: Apache-2.0
#include "NSString+Enumeration.h"

#include <algorithm>

#include "NSStringPrivate.h"
#include "foundation/unicode/UnicodeBreaks.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace {

    enum class Lines { lines, paragraphs };

    /// A piece, and with it what stands around it up to its neighbours.
    struct Piece {
        NSRange range;
        NSRange enclosing;
    };

    bool endsLine(char16_t unit, Lines lines)
    {
        return unit == u'\n' || unit == u'\r' || unit == 0x2029
            || (lines == Lines::lines && (unit == 0x85 || unit == 0x2028));
    }
    bool isInsidePair(View text, std::size_t at)
    {
        return at > 0 && at < text.size() && text[at] == u'\n' && text[at - 1] == u'\r';
    }
    std::size_t lineBegin(View text, std::size_t at, Lines lines)
    {
        if (isInsidePair(text, at))
            --at;
        while (at > 0 && !endsLine(text[at - 1], lines))
            --at;
        return at;
    }
    /// Answers where the content of the line ends that covers a place.
    std::size_t contentsEnd(View text, std::size_t at, Lines lines)
    {
        if (isInsidePair(text, at))
            --at;
        while (at < text.size() && !endsLine(text[at], lines))
            ++at;
        return at;
    }
    std::size_t behindLineEnd(View text, std::size_t end)
    {
        if (end == text.size())
            return end;
        return isInsidePair(text, end + 1) ? end + 2 : end + 1;
    }

    struct LinePlaces {
        NSUInteger start;
        NSUInteger contentsEnd;
        NSUInteger end;
    };
    LinePlaces linesAround(View text, NSRange range, Lines lines)
    {
        // The last line is the one of the range's last unit; an empty range has the one it stands in.
        const std::size_t last = NSMaxRange(range) - (range.length > 0 ? 1 : 0);
        const std::size_t end = contentsEnd(text, last, lines);
        return { lineBegin(text, range.location, lines), end, behindLineEnd(text, end) };
    }

    // ---- pieces of a range

    std::vector<Piece> linesIn(View text, NSRange range, Lines lines)
    {
        std::vector<Piece> out;
        const View part = text.part(range);
        for (std::size_t at = 0; at < part.size();) {
            const std::size_t end = contentsEnd(part, at, lines);
            const std::size_t next = behindLineEnd(part, end);
            out.push_back(
                { { range.location + at, end - at }, { range.location + at, next - at } });
            at = next;
        }
        return out;
    }
    std::vector<Piece> lettersIn(NSString& self, NSRange range)
    {
        std::vector<Piece> out;
        for (std::size_t at = range.location; at < NSMaxRange(range);) {
            const std::size_t end = std::min(
                NSMaxRange(self.rangeOfComposedCharacterSequenceAtIndex(at)), NSMaxRange(range));
            out.push_back({ { at, end - at }, { at, end - at } });
            at = end;
        }
        return out;
    }
    std::vector<Piece> stretchesIn(View text, NSRange range, unicode::Cut cut)
    {
        std::vector<Piece> out;
        std::size_t done = range.location;
        for (const unicode::Stretch& stretch : unicode::stretches(text.part(range).units(), cut)) {
            const std::size_t end = range.location + stretch.end;
            if (stretch.isWord) {
                const std::size_t begin = range.location + stretch.begin;
                const std::size_t from = out.empty() ? done : begin;
                out.push_back({ { begin, end - begin }, { from, end - from } });
            } else if (!out.empty()) {
                out.back().enclosing.length = end - out.back().enclosing.location;
            }
        }
        return out;
    }

    std::vector<Piece> piecesIn(NSString& self, View text, NSRange range, NSUInteger kind)
    {
        switch (kind) {
        case NSStringEnumerationByParagraphs:
            return linesIn(text, range, Lines::paragraphs);
        case NSStringEnumerationByComposedCharacterSequences:
            return lettersIn(self, range);
        case NSStringEnumerationByWords:
            return stretchesIn(text, range, unicode::Cut::words);
        case NSStringEnumerationBySentences:
            return stretchesIn(text, range, unicode::Cut::sentences);
        default:
            return linesIn(text, range, Lines::lines);
        }
    }

    struct Enumeration {

        /// Runs over a copy of the text, so that the closure may change the string.
        static void enumerate(NSString& self, NSRange range, NSStringEnumerationOptions options,
            Closure<void(NSString*, NSRange, NSRange, bool*)>* visitor)
        {
            const NSSubstringVisitor visit(visitor);
            const Ref<NSString> copy = cast<NSString>(self.copy());
            const Contents text(copy.get());
            strings::checkRange(
                self, "enumerateSubstringsInRange:options:usingBlock:", range, text->size());
            std::vector<Piece> pieces = piecesIn(*copy.get(), text, range, options & 0xff);
            if (options & NSStringEnumerationReverse)
                std::reverse(pieces.begin(), pieces.end());
            const bool wantsText = !(options & NSStringEnumerationSubstringNotRequired);
            bool stop = false;
            for (const Piece& piece : pieces) {
                const Ref<NSString> substring
                    = wantsText ? strings::plain(text->part(piece.range)) : nullptr;
                visit(substring.get(), piece.range, piece.enclosing, &stop);
                if (stop)
                    break;
            }
        }
        static void enumerateLines(NSString& self, Closure<void(NSString*, bool*)>* visitor)
        {
            const Block<void(NSString*, bool*)> visit(visitor);
            enumerateSubstringsInRange_options_usingBlock(self, { 0, self.length() },
                NSStringEnumerationByLines,
                [&](NSString* line, NSRange, NSRange, bool* stop) { visit(line, stop); });
        }

        template <Lines Kind>
        static void getPlaces(NSString& self, NSUInteger* start, NSUInteger* end,
            NSUInteger* contentsEnd, NSRange range)
        {
            const Contents text(&self);
            strings::checkRange(
                self, "getLineStart:end:contentsEnd:forRange:", range, text->size());
            const LinePlaces places = linesAround(text, range, Kind);
            if (start)
                *start = places.start;
            if (end)
                *end = places.end;
            if (contentsEnd)
                *contentsEnd = places.contentsEnd;
        }
        template <Lines Kind> static NSRange rangeFor(NSString& self, NSRange range)
        {
            NSUInteger start = 0;
            NSUInteger end = 0;
            getPlaces<Kind>(self, &start, &end, nullptr, range);
            return { start, end - start };
        }

        static void table(Builder& t)
        {
            t.methods({
                { "enumerateSubstringsInRange:options:usingBlock:", imp<enumerate> },
                { "enumerateLinesUsingBlock:", imp<enumerateLines> },
                { "getLineStart:end:contentsEnd:forRange:", imp<getPlaces<Lines::lines>> },
                { "getParagraphStart:end:contentsEnd:forRange:",
                    imp<getPlaces<Lines::paragraphs>> },
                { "lineRangeForRange:", imp<rangeFor<Lines::lines>> },
                { "paragraphRangeForRange:", imp<rangeFor<Lines::paragraphs>> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSString, Enumeration)

}
