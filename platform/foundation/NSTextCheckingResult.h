// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSRegularExpression;

using NSTextCheckingType = std::uint64_t;
inline constexpr NSTextCheckingType NSTextCheckingTypeRegularExpression = 1 << 10;

/// One match: where the whole of it is, and where its groups are.
///
/// A group that took no part is at `NSNotFound` with a length of 0.
/// - Raises: `NSRangeException` for an index that is not below `numberOfRanges`.
/// Thread: any.
class NSTextCheckingResult : public NSObject {
    BRINDLE_OBJECT(NSTextCheckingResult, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - ranges: `count` of them, the whole match first; copied. None gives nil.
        Ref<NSTextCheckingResult> regularExpressionCheckingResultWithRanges_count_regularExpression(
            const NSRange* ranges, NSUInteger count, NSRegularExpression* expression) const
        {
            return send<"regularExpressionCheckingResultWithRanges:count:regularExpression:",
                Ref<NSTextCheckingResult>>(ranges, count, expression);
        }
    };

    NSTextCheckingType resultType() const { return send<"resultType", NSTextCheckingType>(); }
    NSRange range() const { return send<"range", NSRange>(); }
    NSUInteger numberOfRanges() const { return send<"numberOfRanges", NSUInteger>(); }
    /// - index: 0 for the whole match, then the groups by their numbers.
    NSRange rangeAtIndex(NSUInteger index) const { return send<"rangeAtIndex:", NSRange>(index); }
    /// Answers where a named group is; `NSNotFound` when there is none of this name.
    NSRange rangeWithName(const NSString* name) const
    {
        return send<"rangeWithName:", NSRange>(name);
    }
    Ref<NSRegularExpression> regularExpression() const
    {
        return send<"regularExpression", Ref<NSRegularExpression>>();
    }
    /// Answers the result with all its places moved.
    /// - Raises: `NSInvalidArgumentException` when one would be negative.
    Ref<NSTextCheckingResult> resultByAdjustingRangesWithOffset(NSInteger offset) const
    {
        return send<"resultByAdjustingRangesWithOffset:", Ref<NSTextCheckingResult>>(offset);
    }

private:
    std::vector<NSRange> ranges_;
    Ref<NSRegularExpression> expression_;
};

}
