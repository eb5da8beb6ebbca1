// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include "NSMutableArray.h"
#include "NSStringPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::TextBuilder;
using strings::View;

// Appending, filling, trimming, cutting apart.
template <> struct NSString::Methods<struct StringPieces> {

    static Ref<NSString> appending(NSString& self, NSString* tail)
    {
        strings::checkArgument(self, "stringByAppendingString:", tail);
        const Contents head(&self);
        const Contents end(tail);
        TextBuilder out;
        out.reserve(head->size() + end->size());
        out.add(head);
        out.add(end);
        return out.string();
    }

    static Ref<NSString> padding(NSString& self, NSUInteger length, NSString* pad, NSUInteger index)
    {
        constexpr const char* kSelector = "stringByPaddingToLength:withString:startingAtIndex:";
        const Contents text(&self);
        if (length <= text->size())
            return strings::plain(text->part(0, length));
        strings::checkArgument(self, kSelector, pad);
        const Contents fill(pad);
        strings::checkIndex(self, kSelector, index, fill->size(), fill->size());
        TextBuilder out;
        out.add(text);
        for (std::size_t i = index; out.size() < length; ++i)
            out.add(fill.view()[i % fill->size()]);
        return out.string();
    }

    // ---- sets of letters

    static bool isIn(NSCharacterSet* set, char32_t c)
    {
        return reinterpret_cast<NSObject*>(set)->send<"longCharacterIsMember:", bool>(
            static_cast<std::uint32_t>(c));
    }
    /// Answers the first stretch of one letter from `from` on that is in the set, or one of no length at the end.
    static NSRange nextIn(View text, NSCharacterSet* set, std::size_t from)
    {
        std::size_t units = 0;
        for (std::size_t at = from; at < text.size(); at += units) {
            if (isIn(set, text.codePoint(at, units)))
                return { at, units };
        }
        return { text.size(), 0 };
    }
    static NSRange lastIn(View text, NSCharacterSet* set)
    {
        for (std::size_t at = text.size(); at > 0; --at) {
            std::size_t units = 0;
            const char32_t c = text.codePoint(at - 1, units);
            const bool isHalf
                = strings::isLow(text[at - 1]) && at > 1 && strings::isHigh(text[at - 2]);
            if (!isHalf && isIn(set, c))
                return { at - 1, units };
        }
        return strings::notFound();
    }
    static NSRange rangeOfLetter(NSString& self, NSCharacterSet* set)
    {
        return rangeOfLetterOptions(self, set, 0);
    }
    static NSRange rangeOfLetterOptions(
        NSString& self, NSCharacterSet* set, NSStringCompareOptions options)
    {
        strings::checkArgument(self, "rangeOfCharacterFromSet:options:", set);
        const Contents text(&self);
        const bool isBackwards = options & NSBackwardsSearch;
        NSRange found = isBackwards ? lastIn(text, set) : nextIn(text, set, 0);
        if (found.length == 0)
            return strings::notFound();
        const bool isAtEdge = isBackwards ? NSMaxRange(found) == text->size() : found.location == 0;
        return options & NSAnchoredSearch && !isAtEdge ? strings::notFound() : found;
    }

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
            std::size_t last = end - 1;
            if (strings::isLow(text.view()[last]) && last > begin
                && strings::isHigh(text.view()[last - 1]))
                --last;
            if (!isIn(set, text->codePoint(last, units)))
                break;
            end = last;
        }
        return strings::plain(text->part(begin, end - begin));
    }

    // ---- components

    static Ref<NSArray> components(NSString& self, NSString* separator)
    {
        strings::checkArgument(self, "componentsSeparatedByString:", separator);
        const Contents text(&self);
        Ref<NSMutableArray> pieces = NSMutableArray::cls().array();
        std::size_t done = 0;
        for (const NSRange place :
            strings::findAll(text, Contents(separator), 0, { 0, text->size() })) {
            pieces->addObject(strings::plain(text->part(done, place.location - done)).get());
            done = NSMaxRange(place);
        }
        pieces->addObject(strings::plain(text->part(done, text->size() - done)).get());
        return cast<NSArray>(pieces->copy());
    }
    static Ref<NSArray> componentsBySet(NSString& self, NSCharacterSet* set)
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

    static void table(Builder& t)
    {
        t.methods({
            { "stringByAppendingString:", imp<appending> },
            { "stringByPaddingToLength:withString:startingAtIndex:", imp<padding> },
            { "rangeOfCharacterFromSet:", imp<rangeOfLetter> },
            { "rangeOfCharacterFromSet:options:", imp<rangeOfLetterOptions> },
            { "stringByTrimmingCharactersInSet:", imp<trimming> },
            { "componentsSeparatedByString:", imp<components> },
            { "componentsSeparatedByCharactersInSet:", imp<componentsBySet> },
        });
    }
};
BRINDLE_RECORD(NSString, StringPieces)

}
