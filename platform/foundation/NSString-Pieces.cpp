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

// Appending, filling, cutting apart.
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

    // A length beyond it is a mistake, and no memory holds the text.
    static constexpr std::size_t kLongestPadding = std::size_t { 1 } << 30;

    static Ref<NSString> padding(NSString& self, NSUInteger length, NSString* pad, NSUInteger index)
    {
        constexpr const char* kSelector = "stringByPaddingToLength:withString:startingAtIndex:";
        const Contents text(&self);
        if (length <= text->size())
            return strings::plain(text->part(0, length));
        strings::checkIndex(self, kSelector, length, kLongestPadding, kLongestPadding);
        strings::checkArgument(self, kSelector, pad);
        const Contents fill(pad);
        strings::checkIndex(self, kSelector, index, fill->size(), fill->size());
        TextBuilder out;
        out.add(text);
        for (std::size_t i = index; out.size() < length; ++i)
            out.add(fill.view()[i % fill->size()]);
        return out.string();
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
    static void table(Builder& t)
    {
        t.methods({
            { "stringByAppendingString:", imp<appending> },
            { "stringByPaddingToLength:withString:startingAtIndex:", imp<padding> },
            { "componentsSeparatedByString:", imp<components> },
        });
    }
};
BRINDLE_RECORD(NSString, StringPieces)

}
