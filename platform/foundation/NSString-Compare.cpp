// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <algorithm>

#include "NSStringPrivate.h"
#include "foundation/unicode/Unicode.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace strings {

    namespace {

        NSComparisonResult resultOf(int order)
        {
            return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
        }

        int compareUnits(View a, View b)
        {
            if (a.isNarrow() && b.isNarrow())
                return a.narrow().compare(b.narrow());
            const std::size_t shorter = std::min(a.size(), b.size());
            for (std::size_t i = 0; i < shorter; ++i) {
                if (a[i] != b[i])
                    return a[i] < b[i] ? -1 : 1;
            }
            return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
        }

        bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

        /// A run of digits, without the zeros in front.
        std::u16string_view digitsAt(std::u16string_view text, std::size_t& at)
        {
            while (at < text.size() && text[at] == u'0')
                ++at;
            const std::size_t begin = at;
            while (at < text.size() && isDigit(text[at]))
                ++at;
            return text.substr(begin, at - begin);
        }

        int compareNumerically(std::u16string_view a, std::u16string_view b)
        {
            std::size_t i = 0;
            std::size_t j = 0;
            while (i < a.size() && j < b.size()) {
                if (isDigit(a[i]) && isDigit(b[j])) {
                    const std::u16string_view left = digitsAt(a, i);
                    const std::u16string_view right = digitsAt(b, j);
                    if (left.size() != right.size())
                        return left.size() < right.size() ? -1 : 1;
                    if (const int order = left.compare(right))
                        return order;
                } else if (a[i] != b[j]) {
                    return a[i] < b[j] ? -1 : 1;
                } else {
                    ++i;
                    ++j;
                }
            }
            return i < a.size() ? 1 : j < b.size() ? -1 : 0;
        }

        bool isPlain(View text)
        {
            return text.isNarrow()
                || std::none_of(text.wide().begin(), text.wide().end(),
                    [](char16_t unit) { return unit >= 0xc0; });
        }

        int order(View a, View b, NSStringCompareOptions options)
        {
            constexpr NSStringCompareOptions kChanging = NSCaseInsensitiveSearch | NSNumericSearch
                | NSDiacriticInsensitiveSearch | NSWidthInsensitiveSearch;
            const bool isExact = options & NSLiteralSearch || (isPlain(a) && isPlain(b));
            if (!(options & kChanging) && isExact)
                return compareUnits(a, b);
            const std::u16string left = canonical(a, options);
            const std::u16string right = canonical(b, options);
            return options & NSNumericSearch ? compareNumerically(left, right)
                                             : left.compare(right);
        }

    }

    NSComparisonResult compare(View a, View b, NSStringCompareOptions options)
    {
        int result = order(a, b, options);
        if (result == 0 && options & NSForcedOrderingSearch)
            result = compareUnits(a, b);
        return resultOf(result);
    }

}

template <> struct NSString::Methods<struct StringOrder> {

    static NSComparisonResult compareRange(
        NSString& self, NSString* other, NSStringCompareOptions options, NSRange range)
    {
        constexpr const char* kSelector = "compare:options:range:";
        strings::checkArgument(self, kSelector, other);
        const Contents text(&self);
        strings::checkRange(self, kSelector, range, text->size());
        return strings::compare(text->part(range), Contents(other), options);
    }
    static NSComparisonResult compareOptions(
        NSString& self, NSString* other, NSStringCompareOptions options)
    {
        return self.compare_options_range(other, options, { 0, self.length() });
    }
    static NSComparisonResult compare(NSString& self, NSString* other)
    {
        return self.compare_options(other, 0);
    }
    static NSComparisonResult caseInsensitiveCompare(NSString& self, NSString* other)
    {
        return self.compare_options(other, NSCaseInsensitiveSearch);
    }

    static NSComparisonResult collate(
        NSString& self, NSString* other, const char* selector, unicode::Collation how)
    {
        strings::checkArgument(self, selector, other);
        const std::u16string left = Contents(&self)->units();
        const std::u16string right = Contents(other)->units();
        return strings::resultOf(unicode::collate(left, right, how));
    }
    static NSComparisonResult localizedCompare(NSString& self, NSString* other)
    {
        return collate(self, other, "localizedCompare:", {});
    }
    static NSComparisonResult localizedCaseInsensitiveCompare(NSString& self, NSString* other)
    {
        return collate(self, other, "localizedCaseInsensitiveCompare:", { .ignoresCase = true });
    }
    static NSComparisonResult localizedStandardCompare(NSString& self, NSString* other)
    {
        return collate(self, other, "localizedStandardCompare:", { .readsNumbers = true });
    }

    /// Answers where the letter that begins at an index ends.
    static std::size_t nextLetter(NSString& self, std::size_t at)
    {
        return NSMaxRange(self.rangeOfComposedCharacterSequencesForRange({ at, 1 }));
    }
    static Ref<NSString> commonPrefix(
        NSString& self, NSString* other, NSStringCompareOptions options)
    {
        strings::checkArgument(self, "commonPrefixWithString:options:", other);
        const Contents a(&self);
        const Contents b(other);
        std::size_t i = 0;
        std::size_t j = 0;
        while (i < a->size() && j < b->size()) {
            const std::size_t iEnd = nextLetter(self, i);
            const std::size_t jEnd = nextLetter(*other, j);
            if (strings::compare(a->part(i, iEnd - i), b->part(j, jEnd - j), options)
                != NSOrderedSame)
                break;
            i = iEnd;
            j = jEnd;
        }
        return strings::plain(a->part(0, i));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "compare:", imp<compare> },
            { "compare:options:", imp<compareOptions> },
            { "compare:options:range:", imp<compareRange> },
            { "caseInsensitiveCompare:", imp<caseInsensitiveCompare> },
            { "localizedCompare:", imp<localizedCompare> },
            { "localizedCaseInsensitiveCompare:", imp<localizedCaseInsensitiveCompare> },
            { "localizedStandardCompare:", imp<localizedStandardCompare> },
            { "commonPrefixWithString:options:", imp<commonPrefix> },
        });
    }
};
BRINDLE_RECORD(NSString, StringOrder)

}
