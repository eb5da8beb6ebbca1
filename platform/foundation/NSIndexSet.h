// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSEnumerator.h"
#include "NSGeometry.h"

namespace brindle {

/// Numbers without repetition, in rising order, kept as ranges: row and element indexes.
///
/// - Raises: `NSRangeException` for an index above `NSNotFound - 1`.
/// Thread: any; a set that nobody changes is safe to read from several threads at once.
/// Cost: a range takes 16 bytes whatever its length; looking up an index halves its way through the ranges.
class NSIndexSet : public NSObject {
    BRINDLE_OBJECT(NSIndexSet, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSIndexSet> indexSet() const { return send<"indexSet", Ref<NSIndexSet>>(); }
        Ref<NSIndexSet> indexSetWithIndex(NSUInteger index) const
        {
            return send<"indexSetWithIndex:", Ref<NSIndexSet>>(index);
        }
        Ref<NSIndexSet> indexSetWithIndexesInRange(NSRange range) const
        {
            return send<"indexSetWithIndexesInRange:", Ref<NSIndexSet>>(range);
        }
    };

    Ref<NSIndexSet> initWithIndex(NSUInteger index)
    {
        return send<"initWithIndex:", Ref<NSIndexSet>>(index);
    }
    Ref<NSIndexSet> initWithIndexesInRange(NSRange range)
    {
        return send<"initWithIndexesInRange:", Ref<NSIndexSet>>(range);
    }
    Ref<NSIndexSet> initWithIndexSet(const NSIndexSet* other)
    {
        return send<"initWithIndexSet:", Ref<NSIndexSet>>(other);
    }

    NSUInteger count() const { return send<"count", NSUInteger>(); }
    NSUInteger countOfIndexesInRange(NSRange range) const
    {
        return send<"countOfIndexesInRange:", NSUInteger>(range);
    }

    // ---- one index: NSNotFound when there is none

    NSUInteger firstIndex() const { return send<"firstIndex", NSUInteger>(); }
    NSUInteger lastIndex() const { return send<"lastIndex", NSUInteger>(); }
    NSUInteger indexGreaterThanIndex(NSUInteger index) const
    {
        return send<"indexGreaterThanIndex:", NSUInteger>(index);
    }
    NSUInteger indexGreaterThanOrEqualToIndex(NSUInteger index) const
    {
        return send<"indexGreaterThanOrEqualToIndex:", NSUInteger>(index);
    }
    NSUInteger indexLessThanIndex(NSUInteger index) const
    {
        return send<"indexLessThanIndex:", NSUInteger>(index);
    }
    NSUInteger indexLessThanOrEqualToIndex(NSUInteger index) const
    {
        return send<"indexLessThanOrEqualToIndex:", NSUInteger>(index);
    }

    // ---- asking

    bool containsIndex(NSUInteger index) const { return send<"containsIndex:", bool>(index); }
    /// Answers whether all of the range's indexes are here; NO for an empty range.
    bool containsIndexesInRange(NSRange range) const
    {
        return send<"containsIndexesInRange:", bool>(range);
    }
    /// Answers whether all of the other set's indexes are here; YES for an empty set.
    bool containsIndexes(const NSIndexSet* other) const
    {
        return send<"containsIndexes:", bool>(other);
    }
    bool intersectsIndexesInRange(NSRange range) const
    {
        return send<"intersectsIndexesInRange:", bool>(range);
    }
    bool isEqualToIndexSet(const NSIndexSet* other) const
    {
        return send<"isEqualToIndexSet:", bool>(other);
    }

    // ---- blocks: setting `*stop` to true ends the enumeration. The set may be changed meanwhile: a copy is run over

    using Visitor = Block<void(NSUInteger index, bool* stop)>;
    using Test = Block<bool(NSUInteger index, bool* stop)>;
    using RangeVisitor = Block<void(NSRange range, bool* stop)>;

    void enumerateIndexesUsingBlock(const Visitor& block) const
    {
        send<"enumerateIndexesUsingBlock:">(block.get());
    }
    void enumerateIndexesWithOptions_usingBlock(
        NSEnumerationOptions options, const Visitor& block) const
    {
        send<"enumerateIndexesWithOptions:usingBlock:">(options, block.get());
    }
    void enumerateIndexesInRange_options_usingBlock(
        NSRange range, NSEnumerationOptions options, const Visitor& block) const
    {
        send<"enumerateIndexesInRange:options:usingBlock:">(range, options, block.get());
    }
    /// Hands out the longest stretches without a gap.
    void enumerateRangesUsingBlock(const RangeVisitor& block) const
    {
        send<"enumerateRangesUsingBlock:">(block.get());
    }
    Ref<NSIndexSet> indexesPassingTest(const Test& test) const
    {
        return send<"indexesPassingTest:", Ref<NSIndexSet>>(test.get());
    }

private:
    friend class NSMutableIndexSet;
    friend struct IndexSetAccess;

    std::vector<NSRange> ranges_; // rising, none empty, with a gap between any two
};

/// An index set that can be changed.
/// Thread: one at a time.
class NSMutableIndexSet : public NSIndexSet {
    BRINDLE_OBJECT(NSMutableIndexSet, NSIndexSet)

public:
    struct Meta : NSIndexSet::Meta {
        Ref<NSMutableIndexSet> indexSet() const
        {
            return send<"indexSet", Ref<NSMutableIndexSet>>();
        }
        Ref<NSMutableIndexSet> indexSetWithIndex(NSUInteger index) const
        {
            return send<"indexSetWithIndex:", Ref<NSMutableIndexSet>>(index);
        }
        Ref<NSMutableIndexSet> indexSetWithIndexesInRange(NSRange range) const
        {
            return send<"indexSetWithIndexesInRange:", Ref<NSMutableIndexSet>>(range);
        }
    };

    void addIndex(NSUInteger index) { send<"addIndex:">(index); }
    void addIndexesInRange(NSRange range) { send<"addIndexesInRange:">(range); }
    void addIndexes(const NSIndexSet* other) { send<"addIndexes:">(other); }
    void removeIndex(NSUInteger index) { send<"removeIndex:">(index); }
    void removeIndexesInRange(NSRange range) { send<"removeIndexesInRange:">(range); }
    void removeIndexes(const NSIndexSet* other) { send<"removeIndexes:">(other); }
    void removeAllIndexes() { send<"removeAllIndexes">(); }
    /// Moves the indexes from `index` on by `delta`. Upward this leaves a gap; downward it overwrites the indexes
    /// before, and what would fall below zero goes.
    void shiftIndexesStartingAtIndex_by(NSUInteger index, NSInteger delta)
    {
        send<"shiftIndexesStartingAtIndex:by:">(index, delta);
    }
};

}
