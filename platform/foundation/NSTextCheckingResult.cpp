// SPDX-License-Identifier: Apache-2.0
#include "NSTextCheckingResult.h"

#include "NSRegularExpression.h"
#include "NSStringPrivate.h"
#include "RegularExpressionPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextCheckingResult::Methods<struct Result> {

    static Ref<NSTextCheckingResult> make(
        Class& self, const NSRange* ranges, NSUInteger count, NSRegularExpression* expression)
    {
        if (!ranges || count == 0)
            return nullptr;
        const auto out = cast<NSTextCheckingResult>(self.send<"new", Ref<NSObject>>());
        out->ranges_.assign(ranges, ranges + count);
        out->expression_ = expression;
        return out;
    }
    static NSTextCheckingType type(NSTextCheckingResult&)
    {
        return NSTextCheckingTypeRegularExpression;
    }
    static NSUInteger count(NSTextCheckingResult& self) { return self.ranges_.size(); }
    static NSRange at(NSTextCheckingResult& self, NSUInteger index)
    {
        if (index >= self.ranges_.size())
            raise("NSRangeException",
                strings::place(self, "rangeAtIndex:") + "index " + std::to_string(index)
                    + " beyond bounds [0 .. " + std::to_string(self.ranges_.size()) + "[");
        return self.ranges_[index];
    }
    static NSRange range(NSTextCheckingResult& self)
    {
        return self.ranges_.empty() ? strings::notFound() : self.ranges_[0];
    }
    static NSRange named(NSTextCheckingResult& self, NSString* name)
    {
        const std::size_t group
            = self.expression_ ? PatternAccess::groupNamed(*self.expression_.get(), name) : 0;
        return group > 0 && group < self.ranges_.size() ? self.ranges_[group] : strings::notFound();
    }
    static Ref<NSRegularExpression> expression(NSTextCheckingResult& self)
    {
        return self.expression_;
    }
    static Ref<NSTextCheckingResult> moved(NSTextCheckingResult& self, NSInteger offset)
    {
        std::vector<NSRange> ranges = self.ranges_;
        for (NSRange& range : ranges) {
            if (range.location == strings::notFound().location)
                continue;
            const auto place
                = static_cast<NSUInteger>(static_cast<NSUInteger>(offset) + range.location);
            if (static_cast<NSInteger>(place) < 0)
                raise("NSInvalidArgumentException",
                    strings::place(self, "resultByAdjustingRangesWithOffset:")
                        + "the offset makes a location negative");
            range.location = place;
        }
        return NSTextCheckingResult::cls()
            .regularExpressionCheckingResultWithRanges_count_regularExpression(
                ranges.data(), ranges.size(), self.expression_.get());
    }
    static Ref<NSObject> copyWithZone(NSTextCheckingResult& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "regularExpressionCheckingResultWithRanges:count:regularExpression:", imp<make> },
        });
        t.methods({
            { "resultType", imp<type> },
            { "range", imp<range> },
            { "numberOfRanges", imp<count> },
            { "rangeAtIndex:", imp<at> },
            { "rangeWithName:", imp<named> },
            { "regularExpression", imp<expression> },
            { "resultByAdjustingRangesWithOffset:", imp<moved> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSTextCheckingResult, Result)

}
