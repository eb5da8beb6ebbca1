// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <algorithm>
#include <vector>

#include "NSStringPrivate.h"
#include "RegularExpressionPrivate.h"
#include "foundation/unicode/Unicode.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace strings {

    namespace {

        constexpr NSStringCompareOptions kFolding
            = NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch | NSWidthInsensitiveSearch;
        constexpr char16_t kFirstCombining = 0x300;

        char16_t asciiFolded(char16_t unit)
        {
            return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
        }

        /// Answers whether every unit stands for itself: no mark, nothing that another spelling equals.
        bool isSimple(View text)
        {
            if (text.isNarrow())
                return true;
            return std::none_of(text.wide().begin(), text.wide().end(),
                [](char16_t unit) { return unit >= kFirstCombining; });
        }

        std::u16string withoutWidth(std::u16string_view text)
        {
            std::u16string out;
            for (const char16_t unit : text) {
                const bool isForm = (unit >= 0xff00 && unit <= 0xffef) || unit == 0x3000;
                if (isForm)
                    out += unicode::normalize({ &unit, 1 }, unicode::Form::compatiblyDecomposed);
                else
                    out += unit;
            }
            return out;
        }

        void removeMarks(std::u16string& text)
        {
            const View view { std::u16string_view(text) };
            std::u16string out;
            std::size_t units = 0;
            for (std::size_t at = 0; at < view.size(); at += units) {
                if (!unicode::isCombining(view.codePoint(at, units)))
                    out.append(text, at, units);
            }
            text = std::move(out);
        }

        /// Answers what is compared of a letter or a text. Case is folded between two decompositions, because
        /// folding makes letters that decompose, and the other way round.
        std::u16string folded(std::u16string text, NSStringCompareOptions options)
        {
            const bool isExact
                = options & NSLiteralSearch && !(options & NSDiacriticInsensitiveSearch);
            if (options & NSWidthInsensitiveSearch)
                text = withoutWidth(text);
            if (!isExact)
                text = unicode::normalize(text, unicode::Form::decomposed);
            if (options & NSCaseInsensitiveSearch) {
                text = unicode::foldCase(text);
                if (!isExact)
                    text = unicode::normalize(text, unicode::Form::decomposed);
            }
            if (options & NSDiacriticInsensitiveSearch)
                removeMarks(text);
            return text;
        }

        /// A text as it is compared, and where its letters begin in the original.
        struct Folding {
            std::u16string text;
            /// For each unit of `text` and its end: the place in the original when a letter begins there, else -1.
            std::vector<std::ptrdiff_t> origins;
        };

        std::size_t letterEnd(View text, std::size_t begin, NSStringCompareOptions options)
        {
            std::size_t units = 0;
            text.codePoint(begin, units);
            std::size_t end = begin + units;
            if (options & NSLiteralSearch && !(options & NSDiacriticInsensitiveSearch))
                return end;
            while (end < text.size() && unicode::isCombining(text.codePoint(end, units)))
                end += units;
            return end;
        }

        Folding foldLetters(View text, NSStringCompareOptions options)
        {
            Folding out;
            for (std::size_t at = 0; at < text.size();) {
                const std::size_t end = letterEnd(text, at, options);
                if (end == at + 1 && text[at] < 0x80) {
                    const bool ignoresCase = options & NSCaseInsensitiveSearch;
                    out.text += ignoresCase ? asciiFolded(text[at]) : text[at];
                } else {
                    out.text += folded(text.part(at, end - at).units(), options);
                }
                if (out.origins.size() < out.text.size()) {
                    out.origins.push_back(static_cast<std::ptrdiff_t>(at));
                    out.origins.resize(out.text.size(), -1);
                }
                at = end;
            }
            out.origins.push_back(static_cast<std::ptrdiff_t>(text.size()));
            return out;
        }

        // ---- search

        /// Calls `search(from, at most)` over the places where a text may begin, in the order that the options want.
        template <class Matches>
        std::optional<std::size_t> firstPlace(
            std::size_t size, std::size_t wanted, NSStringCompareOptions options, Matches matches)
        {
            if (wanted > size)
                return std::nullopt;
            const bool isBackwards = options & NSBackwardsSearch;
            const std::size_t last = size - wanted;
            if (options & NSAnchoredSearch) {
                const std::size_t place = isBackwards ? last : 0;
                return matches(place) ? std::optional(place) : std::nullopt;
            }
            for (std::size_t i = 0; i <= last; ++i) {
                const std::size_t place = isBackwards ? last - i : i;
                if (matches(place))
                    return place;
            }
            return std::nullopt;
        }

        bool hasAsciiLetter(View text)
        {
            for (std::size_t i = 0; i < text.size(); ++i) {
                if (const char16_t unit = asciiFolded(text[i]); unit >= u'a' && unit <= u'z')
                    return true;
            }
            return false;
        }

        /// Units for units; ASCII case is the only difference that may be overlooked.
        NSRange findUnits(View text, View wanted, NSStringCompareOptions options)
        {
            const bool ignoresCase = options & NSCaseInsensitiveSearch && hasAsciiLetter(wanted);
            const bool isForward = !(options & (NSBackwardsSearch | NSAnchoredSearch));
            if (isForward && !ignoresCase && text.isNarrow() && wanted.isNarrow()) {
                const std::size_t place = text.narrow().find(wanted.narrow());
                return place == std::string_view::npos ? notFound()
                                                       : NSRange { place, wanted.size() };
            }
            const auto same = [&](char16_t a, char16_t b) {
                return a == b || (ignoresCase && asciiFolded(a) == asciiFolded(b));
            };
            const auto matches = [&](std::size_t place) {
                for (std::size_t i = 0; i < wanted.size(); ++i) {
                    if (!same(text[place + i], wanted[i]))
                        return false;
                }
                return true;
            };
            const auto place = firstPlace(text.size(), wanted.size(), options, matches);
            return place ? NSRange { *place, wanted.size() } : notFound();
        }

        NSRange findLetters(View text, View wanted, NSStringCompareOptions options)
        {
            const Folding in = foldLetters(text, options);
            const std::u16string what = foldLetters(wanted, options).text;
            if (what.empty())
                return notFound();
            const auto matches = [&](std::size_t place) {
                return in.origins[place] >= 0 && in.origins[place + what.size()] >= 0
                    && in.text.compare(place, what.size(), what) == 0;
            };
            const auto place = firstPlace(in.text.size(), what.size(), options, matches);
            if (!place)
                return notFound();
            const auto begin = static_cast<std::size_t>(in.origins[*place]);
            const auto end = static_cast<std::size_t>(in.origins[*place + what.size()]);
            return { begin, end - begin };
        }

        /// Finds all, with the text folded only once.
        void addLetterPlaces(std::vector<NSRange>& places, View text, View wanted,
            NSStringCompareOptions options, std::size_t offset)
        {
            const Folding in = foldLetters(text, options);
            const std::u16string what = foldLetters(wanted, options).text;
            if (what.empty())
                return;
            std::size_t at = 0;
            while ((at = in.text.find(what, at)) != std::u16string::npos) {
                const std::ptrdiff_t begin = in.origins[at];
                const std::ptrdiff_t end = in.origins[at + what.size()];
                if (begin < 0 || end < 0) {
                    ++at;
                    continue;
                }
                places.push_back({ static_cast<std::size_t>(begin) + offset,
                    static_cast<std::size_t>(end - begin) });
                at += what.size();
            }
        }

        bool needsLetters(View text, View wanted, NSStringCompareOptions options)
        {
            if (text.isNarrow() && wanted.isNarrow())
                return false;
            if (options & kFolding)
                return true;
            return !(options & NSLiteralSearch) && !(isSimple(text) && isSimple(wanted));
        }

        NSRange findIn(View text, View wanted, NSStringCompareOptions options)
        {
            return needsLetters(text, wanted, options) ? findLetters(text, wanted, options)
                                                       : findUnits(text, wanted, options);
        }

        /// Finds text, looking at no more than needed: searches that overlook differences fold all they look at, and
        /// who goes through a text asks again and again.
        NSRange findNear(View text, View wanted, NSStringCompareOptions options)
        {
            const bool isBackwards = options & NSBackwardsSearch;
            // Without marks that are overlooked no spelling of a text is eight times as long as another.
            const bool endsAtOnce
                = options & NSAnchoredSearch && !(options & NSDiacriticInsensitiveSearch);
            for (std::size_t size = wanted.size() * 8 + 8; size < text.size(); size *= 4) {
                const std::size_t begin = isBackwards ? text.size() - size : 0;
                NSRange found = findIn(text.part(begin, size), wanted, options);
                if (found.length == 0) {
                    if (endsAtOnce)
                        return found;
                    continue;
                }
                // At the edge of the part it may have been cut out of a longer letter.
                const bool isCut = isBackwards ? found.location == 0 : NSMaxRange(found) == size;
                found.location += begin;
                if (!isCut)
                    return found;
            }
            return findIn(text, wanted, options);
        }

    }

    std::u16string fold(View text, NSStringCompareOptions options)
    {
        if (!(options & NSDiacriticInsensitiveSearch))
            options |= NSLiteralSearch;
        return foldLetters(text, options).text;
    }

    std::u16string canonical(View text, NSStringCompareOptions options)
    {
        return foldLetters(text, options).text;
    }

    NSRange find(View text, View wanted, NSStringCompareOptions options, NSRange range)
    {
        if (wanted.size() == 0)
            return notFound();
        if (options & NSRegularExpressionSearch)
            return patterns::find(text, wanted, options, range);
        const View part = text.part(range);
        const bool isNarrow = text.isNarrow() && wanted.isNarrow(); // nothing to fold
        NSRange found
            = isNarrow ? findUnits(part, wanted, options) : findNear(part, wanted, options);
        if (found.location != notFound().location)
            found.location += range.location;
        return found;
    }

    std::vector<NSRange> findAll(
        View text, View wanted, NSStringCompareOptions options, NSRange range)
    {
        std::vector<NSRange> places;
        if (wanted.size() == 0)
            return places;
        if (options & NSAnchoredSearch) {
            if (const NSRange only = find(text, wanted, options, range); only.length > 0)
                places.push_back(only);
            return places;
        }
        const NSStringCompareOptions forward = options & ~NSBackwardsSearch;
        const View part = text.part(range);
        if (needsLetters(part, wanted, forward)) {
            addLetterPlaces(places, part, wanted, forward, range.location);
            return places;
        }
        for (std::size_t done = 0; done < part.size();
             done = NSMaxRange(places.back()) - range.location) {
            NSRange found = findUnits(part.part(done, part.size() - done), wanted, forward);
            if (found.length == 0)
                break;
            found.location += done + range.location;
            places.push_back(found);
        }
        return places;
    }

    Ref<NSString> replace(View text, View target, View replacement, NSStringCompareOptions options,
        NSRange range, NSUInteger& count)
    {
        if (options & NSRegularExpressionSearch)
            return patterns::replace(text, target, replacement, options, range, count);
        const std::vector<NSRange> places = findAll(text, target, options, range);
        count = places.size();
        TextBuilder out;
        std::size_t done = 0;
        for (const NSRange place : places) {
            out.add(text.part(done, place.location - done));
            out.add(replacement);
            done = NSMaxRange(place);
        }
        out.add(text.part(done, text.size() - done));
        return out.string();
    }

}

template <> struct NSString::Methods<struct StringSearch> {

    static NSRange rangeIn(NSString& self, const char* selector, NSString* text,
        NSStringCompareOptions options, const NSRange* range)
    {
        strings::checkArgument(self, selector, text);
        const Contents contents(&self);
        const NSRange all { 0, contents->size() };
        if (range)
            strings::checkRange(self, selector, *range, contents->size());
        return strings::find(contents, Contents(text), options, range ? *range : all);
    }

    static NSRange rangeOfString(NSString& self, NSString* text)
    {
        return rangeIn(self, "rangeOfString:", text, 0, nullptr);
    }
    static NSRange rangeOfStringOptions(
        NSString& self, NSString* text, NSStringCompareOptions options)
    {
        return rangeIn(self, "rangeOfString:options:", text, options, nullptr);
    }
    static NSRange rangeOfStringOptionsRange(
        NSString& self, NSString* text, NSStringCompareOptions options, NSRange range)
    {
        return rangeIn(self, "rangeOfString:options:range:", text, options, &range);
    }
    static bool found(NSRange range) { return range.location != strings::notFound().location; }

    static bool containsString(NSString& self, NSString* text)
    {
        return found(rangeIn(self, "containsString:", text, 0, nullptr));
    }
    static bool containsIgnoringCase(NSString& self, NSString* text)
    {
        return found(rangeIn(self, "localizedCaseInsensitiveContainsString:", text,
            NSCaseInsensitiveSearch, nullptr));
    }
    static bool containsAsPeopleSearch(NSString& self, NSString* text)
    {
        return found(rangeIn(self, "localizedStandardContainsString:", text,
            NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch, nullptr));
    }
    static bool hasPrefix(NSString& self, NSString* prefix)
    {
        return found(rangeIn(self, "hasPrefix:", prefix, NSAnchoredSearch, nullptr));
    }
    static bool hasSuffix(NSString& self, NSString* suffix)
    {
        return found(
            rangeIn(self, "hasSuffix:", suffix, NSAnchoredSearch | NSBackwardsSearch, nullptr));
    }

    // ---- replacing

    static Ref<NSString> replacing(NSString& self, NSString* target, NSString* replacement,
        NSStringCompareOptions options, NSRange range)
    {
        constexpr const char* kSelector
            = "stringByReplacingOccurrencesOfString:withString:options:range:";
        strings::checkArgument(self, kSelector, target);
        strings::checkArgument(self, kSelector, replacement);
        const Contents text(&self);
        strings::checkRange(self, kSelector, range, text->size());
        NSUInteger count = 0;
        return strings::replace(
            text, Contents(target), Contents(replacement), options, range, count);
    }
    static Ref<NSString> replacingAll(NSString& self, NSString* target, NSString* replacement)
    {
        return self.stringByReplacingOccurrencesOfString_withString_options_range(
            target, replacement, 0, { 0, self.length() });
    }
    static Ref<NSString> replacingRange(NSString& self, NSRange range, NSString* replacement)
    {
        constexpr const char* kSelector = "stringByReplacingCharactersInRange:withString:";
        strings::checkArgument(self, kSelector, replacement);
        const Contents text(&self);
        strings::checkRange(self, kSelector, range, text->size());
        strings::TextBuilder out;
        out.add(text->part(0, range.location));
        out.add(Contents(replacement));
        out.add(text->part(NSMaxRange(range), text->size() - NSMaxRange(range)));
        return out.string();
    }

    // ---- letters as readers see them

    static bool isInside(View text, std::size_t index)
    {
        if (index == 0 || index >= text.size())
            return false;
        if (strings::isLow(text[index]) && strings::isHigh(text[index - 1]))
            return true;
        if (text[index] < 0x300)
            return text[index] == u'\n' && text[index - 1] == u'\r';
        std::size_t units = 0;
        return unicode::extendsLetter(text.codePoint(index, units));
    }
    static NSRange letters(View text, NSRange range)
    {
        std::size_t begin = range.location;
        while (isInside(text, begin))
            --begin;
        std::size_t end = std::max(NSMaxRange(range), begin);
        while (isInside(text, end))
            ++end;
        return { begin, end - begin };
    }
    static NSRange letterAt(NSString& self, NSUInteger index)
    {
        const Contents text(&self);
        strings::checkIndex(
            self, "rangeOfComposedCharacterSequenceAtIndex:", index, text->size(), text->size());
        return letters(text, { index, 1 });
    }
    static NSRange lettersIn(NSString& self, NSRange range)
    {
        const Contents text(&self);
        strings::checkRange(
            self, "rangeOfComposedCharacterSequencesForRange:", range, text->size());
        return letters(text, range);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "rangeOfString:", imp<rangeOfString> },
            { "rangeOfString:options:", imp<rangeOfStringOptions> },
            { "rangeOfString:options:range:", imp<rangeOfStringOptionsRange> },
            { "containsString:", imp<containsString> },
            { "localizedCaseInsensitiveContainsString:", imp<containsIgnoringCase> },
            { "localizedStandardContainsString:", imp<containsAsPeopleSearch> },
            { "hasPrefix:", imp<hasPrefix> },
            { "hasSuffix:", imp<hasSuffix> },
            { "stringByReplacingOccurrencesOfString:withString:", imp<replacingAll> },
            { "stringByReplacingOccurrencesOfString:withString:options:range:", imp<replacing> },
            { "stringByReplacingCharactersInRange:withString:", imp<replacingRange> },
            { "rangeOfComposedCharacterSequenceAtIndex:", imp<letterAt> },
            { "rangeOfComposedCharacterSequencesForRange:", imp<lettersIn> },
        });
    }
};
BRINDLE_RECORD(NSString, StringSearch)

}
