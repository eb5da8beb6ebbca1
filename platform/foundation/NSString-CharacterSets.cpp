// SPDX-License-Identifier: Apache-2.0
#include "NSMutableArray.h"
#include "NSString+CharacterSets.h"
#include "NSStringPrivate.h"
#include "PercentEscapesPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

// Looking for letters of a set, trimming and cutting by them, escapes.
template <> struct NSString::Methods<struct StringCharacterSets> {

    static bool isIn(const NSCharacterSet* set, char32_t c)
    {
        return set->longCharacterIsMember(c);
    }

    /// Answers where the letter begins that ends before `end`.
    static std::size_t lastLetter(View text, std::size_t begin, std::size_t end)
    {
        const std::size_t last = end - 1;
        const bool isPair
            = last > begin && strings::isLow(text[last]) && strings::isHigh(text[last - 1]);
        return isPair ? last - 1 : last;
    }

    // ---- searching

    /// Answers the first letter from `from` on that is in the set; one of no length at the end when there is none.
    static NSRange nextIn(View text, const NSCharacterSet* set, std::size_t from)
    {
        std::size_t units = 0;
        for (std::size_t at = from; at < text.size(); at += units) {
            if (isIn(set, text.codePoint(at, units)))
                return { at, units };
        }
        return { text.size(), 0 };
    }
    static NSRange lastIn(View text, const NSCharacterSet* set)
    {
        std::size_t units = 0;
        for (std::size_t end = text.size(); end > 0; end -= units) {
            const std::size_t begin = lastLetter(text, 0, end);
            if (isIn(set, text.codePoint(begin, units)))
                return { begin, units };
        }
        return { 0, 0 };
    }
    static NSRange rangeInRange(
        NSString& self, NSCharacterSet* set, NSStringCompareOptions options, NSRange range)
    {
        constexpr const char* kSelector = "rangeOfCharacterFromSet:options:range:";
        strings::checkArgument(self, kSelector, set);
        const Contents text(&self);
        strings::checkRange(self, kSelector, range, text->size());
        const View part = text->part(range);
        const bool isBackwards = options & NSBackwardsSearch;
        const NSRange found = isBackwards ? lastIn(part, set) : nextIn(part, set, 0);
        const bool isAtEdge = isBackwards ? NSMaxRange(found) == part.size() : found.location == 0;
        if (found.length == 0 || (options & NSAnchoredSearch && !isAtEdge))
            return strings::notFound();
        return { found.location + range.location, found.length };
    }
    static NSRange rangeWithOptions(
        NSString& self, NSCharacterSet* set, NSStringCompareOptions options)
    {
        return rangeOfCharacterFromSet_options_range(self, set, options, { 0, self.length() });
    }
    static NSRange range(NSString& self, NSCharacterSet* set)
    {
        return self.rangeOfCharacterFromSet_options(set, 0);
    }

    // ---- cutting

    static Ref<NSString> trimming(NSString& self, NSCharacterSet* set)
    {
        strings::checkArgument(self, "stringByTrimmingCharactersInSet:", set);
        const Contents text(&self);
        std::size_t begin = 0;
        std::size_t units = 0;
        while (begin < text->size() && isIn(set, text->codePoint(begin, units)))
            begin += units;
        std::size_t end = text->size();
        while (end > begin) {
            const std::size_t last = lastLetter(text, begin, end);
            if (!isIn(set, text->codePoint(last, units)))
                break;
            end = last;
        }
        return strings::plain(text->part(begin, end - begin));
    }
    static Ref<NSArray> components(NSString& self, NSCharacterSet* set)
    {
        strings::checkArgument(self, "componentsSeparatedByCharactersInSet:", set);
        const Contents text(&self);
        Ref<NSMutableArray> pieces = NSMutableArray::cls().array();
        std::size_t done = 0;
        while (true) {
            const NSRange place = nextIn(text, set, done);
            pieces->addObject(strings::plain(text->part(done, place.location - done)).get());
            if (place.length == 0)
                break;
            done = NSMaxRange(place);
        }
        return cast<NSArray>(pieces->copy());
    }

    // ---- escapes

    static Ref<NSString> addingEscapes(NSString& self, NSCharacterSet* allowed)
    {
        strings::checkArgument(
            self, "stringByAddingPercentEncodingWithAllowedCharacters:", allowed);
        return escapes::added(Contents(&self),
            [allowed](char c) { return isIn(allowed, static_cast<unsigned char>(c)); });
    }
    static Ref<NSString> removingEscapes(NSString& self)
    {
        return escapes::removed(Contents(&self));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "rangeOfCharacterFromSet:", imp<range> },
            { "rangeOfCharacterFromSet:options:", imp<rangeWithOptions> },
            { "rangeOfCharacterFromSet:options:range:", imp<rangeInRange> },
            { "stringByTrimmingCharactersInSet:", imp<trimming> },
            { "componentsSeparatedByCharactersInSet:", imp<components> },
            { "stringByAddingPercentEncodingWithAllowedCharacters:", imp<addingEscapes> },
            { "stringByRemovingPercentEncoding", imp<removingEscapes> },
        });
    }
};
BRINDLE_RECORD(NSString, StringCharacterSets)

}
