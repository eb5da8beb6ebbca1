// SPDX-License-Identifier: Apache-2.0
#include "NSIndexSet.h"

#include <algorithm>
#include <cstdio>

#include "CollectionsPrivate.h"
#include "HashingPrivate.h"
#include "ShortVector.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

namespace {

    constexpr NSUInteger kNotFound = static_cast<NSUInteger>(NSNotFound);
    using Ranges = std::vector<NSRange>;

    NSUInteger endOf(NSRange range) { return range.location + range.length; }

    /// Answers the first range that ends after `index`: the one that holds it or the next one.
    template <class R> auto reaching(R& ranges, NSUInteger index)
    {
        return std::partition_point(
            ranges.begin(), ranges.end(), [index](NSRange range) { return endOf(range) <= index; });
    }

    /// Answers the part of a range that a set can have.
    NSRange possible(NSRange range)
    {
        if (range.location >= kNotFound)
            return { kNotFound, 0 };
        return { range.location, std::min(range.length, kNotFound - range.location) };
    }

    void requireIndexes(const NSObject* self, const char* operation, NSRange range)
    {
        if (range.location <= kNotFound && range.length <= kNotFound - range.location)
            return;
        raise("NSRangeException",
            placeOf(self, operation) + "range {" + std::to_string(range.location) + ", "
                + std::to_string(range.length) + "} exceeds maximum index value of NSNotFound - 1");
    }

    void add(Ranges& ranges, NSRange range)
    {
        if (!range.length)
            return;
        // Ranges that touch become one, so neighbours count as well.
        const auto first = reaching(ranges, range.location ? range.location - 1 : 0);
        auto last = first;
        NSUInteger begin = range.location;
        NSUInteger end = endOf(range);
        for (; last != ranges.end() && last->location <= end; ++last) {
            begin = std::min(begin, last->location);
            end = std::max(end, endOf(*last));
        }
        const auto place = ranges.erase(first, last);
        ranges.insert(place, { begin, end - begin });
    }

    void remove(Ranges& ranges, NSRange range)
    {
        const NSUInteger end = endOf(range);
        auto at = reaching(ranges, range.location);
        if (at == ranges.end() || at->location >= end || !range.length)
            return;
        Ranges rest;
        const auto first = at;
        for (; at != ranges.end() && at->location < end; ++at) {
            if (at->location < range.location)
                rest.push_back({ at->location, range.location - at->location });
            if (endOf(*at) > end)
                rest.push_back({ end, endOf(*at) - end });
        }
        const auto place = ranges.erase(first, at);
        ranges.insert(place, rest.begin(), rest.end());
    }

}

struct IndexSetAccess {
    static const Ranges& ranges(const NSIndexSet& set) { return set.ranges_; }
};

std::vector<NSRange> collections::rangesOf(const NSIndexSet* indexes)
{
    return indexes ? IndexSetAccess::ranges(*indexes) : Ranges();
}

template <> struct NSIndexSet::Methods<struct Reading> {

    static Ref<NSIndexSet> alloc(Class& self)
    {
        return cast<NSIndexSet>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSIndexSet> indexSet(Class& self) { return cast<NSIndexSet>(alloc(self)->init()); }
    static Ref<NSIndexSet> indexSetWithIndex(Class& self, NSUInteger index)
    {
        return alloc(self)->initWithIndex(index);
    }
    static Ref<NSIndexSet> indexSetWithRange(Class& self, NSRange range)
    {
        return alloc(self)->initWithIndexesInRange(range);
    }

    static Ref<NSIndexSet> initWithRange(NSIndexSet& self, NSRange range)
    {
        requireIndexes(&self, "initWithIndexesInRange:", range);
        if (!super<NSIndexSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.ranges_.clear();
        brindle::add(self.ranges_, range);
        return &self;
    }
    static Ref<NSIndexSet> initWithIndex(NSIndexSet& self, NSUInteger index)
    {
        return self.initWithIndexesInRange({ index, 1 });
    }
    static Ref<NSIndexSet> initWithIndexSet(NSIndexSet& self, NSIndexSet* other)
    {
        if (!super<NSIndexSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.ranges_ = rangesOf(other);
        return &self;
    }

    static NSUInteger count(NSIndexSet& self)
    {
        NSUInteger sum = 0;
        for (const NSRange range : self.ranges_)
            sum += range.length;
        return sum;
    }
    static NSUInteger countInRange(NSIndexSet& self, NSRange wanted)
    {
        const NSRange range = possible(wanted);
        NSUInteger sum = 0;
        for (auto at = reaching(self.ranges_, range.location);
             at != self.ranges_.end() && at->location < endOf(range); ++at)
            sum += std::min(endOf(*at), endOf(range)) - std::max(at->location, range.location);
        return sum;
    }

    static NSUInteger firstIndex(NSIndexSet& self)
    {
        return self.ranges_.empty() ? kNotFound : self.ranges_.front().location;
    }
    static NSUInteger lastIndex(NSIndexSet& self)
    {
        return self.ranges_.empty() ? kNotFound : endOf(self.ranges_.back()) - 1;
    }
    static NSUInteger atOrAfter(NSIndexSet& self, NSUInteger index)
    {
        const auto at = reaching(self.ranges_, index);
        return at == self.ranges_.end() ? kNotFound : std::max(at->location, index);
    }
    static NSUInteger after(NSIndexSet& self, NSUInteger index)
    {
        return index >= kNotFound ? kNotFound : atOrAfter(self, index + 1);
    }
    static NSUInteger atOrBefore(NSIndexSet& self, NSUInteger index)
    {
        const auto at = reaching(self.ranges_, index);
        if (at != self.ranges_.end() && at->location <= index)
            return index;
        return at == self.ranges_.begin() ? kNotFound : endOf(*(at - 1)) - 1;
    }
    static NSUInteger before(NSIndexSet& self, NSUInteger index)
    {
        return index ? atOrBefore(self, index - 1) : kNotFound;
    }

    static bool containsIndex(NSIndexSet& self, NSUInteger index)
    {
        const auto at = reaching(self.ranges_, index);
        return at != self.ranges_.end() && at->location <= index;
    }
    static bool containsRange(NSIndexSet& self, NSRange range)
    {
        return range.length && countInRange(self, range) == range.length;
    }
    static bool containsIndexes(NSIndexSet& self, NSIndexSet* other)
    {
        const Ranges ranges = rangesOf(other);
        return std::all_of(ranges.begin(), ranges.end(),
            [&](NSRange range) { return containsRange(self, range); });
    }
    static bool intersectsRange(NSIndexSet& self, NSRange range)
    {
        return countInRange(self, range) > 0;
    }
    static bool isEqualToIndexSet(NSIndexSet& self, NSIndexSet* other)
    {
        return other && self.ranges_ == other->ranges_;
    }
    static bool isEqual(NSIndexSet& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSIndexSet::cls())
            && self.isEqualToIndexSet(static_cast<NSIndexSet*>(other));
    }
    static std::uint64_t hash(NSIndexSet& self)
    {
        std::uint64_t hash = self.ranges_.size();
        for (const NSRange& range : self.ranges_)
            hash = hashing::ofWord(hash + range.location) + range.length;
        return hash;
    }
    static Ref<NSObject> copyWithZone(NSIndexSet& self, void*)
    {
        if (self.isKindOfClass(NSMutableIndexSet::cls()))
            return brindle::alloc<NSIndexSet>()->initWithIndexSet(&self);
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSIndexSet& self, void*)
    {
        return brindle::alloc<NSMutableIndexSet>()->initWithIndexSet(&self);
    }

    // ---- blocks

    /// Runs over the indexes of a range until the visitor answers false; over a copy, because the block may do anything.
    template <class Visit>
    static void visit(NSIndexSet& self, NSRange wanted, NSEnumerationOptions options, Visit each)
    {
        const NSRange range = possible(wanted);
        Ranges ranges = self.ranges_;
        if (options & NSEnumerationReverse)
            std::reverse(ranges.begin(), ranges.end());
        for (const NSRange part : ranges) {
            const NSUInteger begin = std::max(part.location, range.location);
            const NSUInteger end = std::min(endOf(part), endOf(range));
            for (NSUInteger i = begin; i < end; ++i) {
                if (!each(options & NSEnumerationReverse ? end - 1 - (i - begin) : i))
                    return;
            }
        }
    }
    static void enumerateInRange(
        NSIndexSet& self, NSRange range, NSEnumerationOptions options, Visitor::Owned* lent)
    {
        const Visitor block(lent);
        bool stop = false;
        visit(self, range, options, [&](NSUInteger index) {
            block(index, &stop);
            return !stop;
        });
    }
    static void enumerateWithOptions(
        NSIndexSet& self, NSEnumerationOptions options, Visitor::Owned* block)
    {
        enumerateInRange(self, { 0, kNotFound }, options, block);
    }
    static void enumerate(NSIndexSet& self, Visitor::Owned* block)
    {
        enumerateWithOptions(self, 0, block);
    }
    static void enumerateRanges(NSIndexSet& self, RangeVisitor::Owned* lent)
    {
        const RangeVisitor block(lent);
        bool stop = false;
        for (const NSRange range : rangesOf(&self)) {
            block(range, &stop);
            if (stop)
                return;
        }
    }
    static Ref<NSIndexSet> indexesPassing(NSIndexSet& self, Test::Owned* lent)
    {
        const Test test(lent);
        Ref<NSIndexSet> found = make<NSIndexSet>();
        bool stop = false;
        visit(self, { 0, kNotFound }, 0, [&](NSUInteger index) {
            if (test(index, &stop))
                brindle::add(found->ranges_, { index, 1 });
            return !stop;
        });
        return found;
    }

    static Ref<NSString> description(NSIndexSet& self)
    {
        char address[24];
        std::snprintf(address, sizeof address, ": %p>", static_cast<void*>(&self));
        std::string text = std::string("<") + class_getName(self.isa_) + address;
        if (self.ranges_.empty())
            return stringFrom(text + "(no indexes)");
        text += "[number of indexes: " + std::to_string(self.count()) + " (in "
            + std::to_string(self.ranges_.size())
            + (self.ranges_.size() == 1 ? " range" : " ranges") + "), indexes: (";
        const char* between = "";
        for (const NSRange range : self.ranges_) {
            text += between + std::to_string(range.location);
            if (range.length > 1)
                text += "-" + std::to_string(endOf(range) - 1);
            between = " ";
        }
        return stringFrom(text + ")]");
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        t.classMethods({
            { "indexSet", imp<indexSet> },
            { "indexSetWithIndex:", imp<indexSetWithIndex> },
            { "indexSetWithIndexesInRange:", imp<indexSetWithRange> },
        });
        t.methods({
            { "initWithIndex:", imp<initWithIndex> },
            { "initWithIndexesInRange:", imp<initWithRange> },
            { "initWithIndexSet:", imp<initWithIndexSet> },
            { "count", imp<count> },
            { "countOfIndexesInRange:", imp<countInRange> },
            { "firstIndex", imp<firstIndex> },
            { "lastIndex", imp<lastIndex> },
            { "indexGreaterThanIndex:", imp<after> },
            { "indexGreaterThanOrEqualToIndex:", imp<atOrAfter> },
            { "indexLessThanIndex:", imp<before> },
            { "indexLessThanOrEqualToIndex:", imp<atOrBefore> },
            { "containsIndex:", imp<containsIndex> },
            { "containsIndexesInRange:", imp<containsRange> },
            { "containsIndexes:", imp<containsIndexes> },
            { "intersectsIndexesInRange:", imp<intersectsRange> },
            { "isEqualToIndexSet:", imp<isEqualToIndexSet> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "enumerateIndexesUsingBlock:", imp<enumerate> },
            { "enumerateIndexesWithOptions:usingBlock:", imp<enumerateWithOptions> },
            { "enumerateIndexesInRange:options:usingBlock:", imp<enumerateInRange> },
            { "enumerateRangesUsingBlock:", imp<enumerateRanges> },
            { "indexesPassingTest:", imp<indexesPassing> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSIndexSet, Reading)

template <> struct NSMutableIndexSet::Methods<struct Changing> {

    static void addRange(NSMutableIndexSet& self, NSRange range)
    {
        requireIndexes(&self, "addIndexesInRange:", range);
        brindle::add(self.ranges_, range);
    }
    static void addIndex(NSMutableIndexSet& self, NSUInteger index)
    {
        self.addIndexesInRange({ index, 1 });
    }
    static void addIndexes(NSMutableIndexSet& self, NSIndexSet* other)
    {
        if (!other)
            return;
        const Ranges& theirs = IndexSetAccess::ranges(*other);
        for (const NSRange range : ShortVector<NSRange, 16>(theirs.begin(), theirs.end()))
            self.addIndexesInRange(range);
    }
    static void removeRange(NSMutableIndexSet& self, NSRange range)
    {
        brindle::remove(self.ranges_, possible(range));
    }
    static void removeIndex(NSMutableIndexSet& self, NSUInteger index)
    {
        self.removeIndexesInRange({ index, 1 });
    }
    static void removeIndexes(NSMutableIndexSet& self, NSIndexSet* other)
    {
        for (const NSRange range : rangesOf(other))
            self.removeIndexesInRange(range);
    }
    static void removeAll(NSMutableIndexSet& self) { self.ranges_.clear(); }

    static void shift(NSMutableIndexSet& self, NSUInteger index, NSInteger delta)
    {
        if (!delta || index >= kNotFound)
            return;
        const NSUInteger distance = delta > 0 ? static_cast<NSUInteger>(delta)
                                              : NSUInteger { 0 } - static_cast<NSUInteger>(delta);
        Ranges moved;
        for (const NSRange range : self.ranges_) {
            const NSUInteger begin = std::max(range.location, index);
            if (begin < endOf(range))
                moved.push_back({ begin, endOf(range) - begin });
        }
        if (delta > 0 && !moved.empty() && distance > kNotFound - endOf(moved.back()))
            requireIndexes(&self, "shiftIndexesStartingAtIndex:by:", { kNotFound, distance });
        const NSUInteger from = delta > 0 ? index : index - std::min(index, distance);
        brindle::remove(self.ranges_, { from, kNotFound - from });
        for (NSRange range : moved) {
            if (delta > 0) {
                range.location += distance;
            } else {
                const NSUInteger lost = range.location < distance ? distance - range.location : 0;
                if (lost >= range.length)
                    continue;
                range = { range.location + lost - distance, range.length - lost };
            }
            brindle::add(self.ranges_, range);
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addIndex:", imp<addIndex> },
            { "addIndexesInRange:", imp<addRange> },
            { "addIndexes:", imp<addIndexes> },
            { "removeIndex:", imp<removeIndex> },
            { "removeIndexesInRange:", imp<removeRange> },
            { "removeIndexes:", imp<removeIndexes> },
            { "removeAllIndexes", imp<removeAll> },
            { "shiftIndexesStartingAtIndex:by:", imp<shift> },
        });
    }
};
BRINDLE_RECORD(NSMutableIndexSet, Changing)

}
