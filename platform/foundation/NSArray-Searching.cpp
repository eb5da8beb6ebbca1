// SPDX-License-Identifier: Apache-2.0
#include "NSArray.h"

#include "CollectionsPrivate.h"
#include "NSIndexSet.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

constexpr NSUInteger kNotFound = static_cast<NSUInteger>(NSNotFound);

// Searching, blocks, and arrays made from this one. Blocks and `isEqual:` are foreign code: loops over a live array
// run through `ArrayIterator`, which notices changes.
template <> struct NSArray::Methods<struct Searching> {

    // ---- searching

    static NSUInteger indexOfObjectInRange(NSArray& self, NSObject* object, NSRange range)
    {
        requireRange(&self, "indexOfObject:inRange:", range, self.count());
        if (!object)
            return kNotFound;
        ArrayIterator at(&self);
        for (NSUInteger i = 0; i < range.location; ++i)
            ++at;
        for (NSUInteger i = range.location; i < range.location + range.length; ++i, ++at) {
            if (at == std::default_sentinel)
                break;
            NSObject* const item = *at;
            if (item == object || item->isEqual(object))
                return i;
        }
        return kNotFound;
    }
    static NSUInteger indexOfObject(NSArray& self, NSObject* object)
    {
        return indexOfObjectInRange(self, object, { 0, self.count() });
    }
    static bool containsObject(NSArray& self, NSObject* object)
    {
        return self.indexOfObject(object) != kNotFound;
    }
    static NSUInteger indexOfObjectIdenticalTo(NSArray& self, NSObject* object)
    {
        NSUInteger index = 0;
        for (NSObject* item : self) {
            if (item == object)
                return index;
            ++index;
        }
        return kNotFound;
    }
    static Ref<NSObject> firstObjectCommonWithArray(NSArray& self, NSArray* other)
    {
        for (NSObject* item : self) {
            if (maybe(other)->containsObject(item))
                return item;
        }
        return nullptr;
    }

    /// Answers the first place in the range whose element does not satisfy `before`.
    template <class Before>
    static NSUInteger lowerBound(NSArray& self, NSRange range, Before before)
    {
        NSUInteger low = range.location;
        NSUInteger high = range.location + range.length;
        while (low < high) {
            const NSUInteger middle = low + (high - low) / 2;
            if (before(self.objectAtIndex(middle).get()))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }
    static NSUInteger indexOfObjectInSortedRange(NSArray& self, NSObject* object, NSRange range,
        NSUInteger options, NSComparator::Owned* comparator)
    {
        requireRange(
            &self, "indexOfObject:inSortedRange:options:usingComparator:", range, self.count());
        const NSUInteger end = range.location + range.length;
        const bool last = options & NSBinarySearchingLastEqual;
        const NSUInteger first = lowerBound(
            self, range, [&](NSObject* item) { return call(comparator, item, object) < 0; });
        const bool found
            = first < end && call(comparator, self.objectAtIndex(first).get(), object) == 0;
        if (!found)
            return options & NSBinarySearchingInsertionIndex ? first : kNotFound;
        if (!last)
            return first;
        const NSUInteger after = lowerBound(self, { first, end - first },
            [&](NSObject* item) { return call(comparator, item, object) <= 0; });
        return options & NSBinarySearchingInsertionIndex ? after : after - 1;
    }

    // ---- blocks

    /// Runs over the elements until the visitor answers false.
    template <class Visit>
    static void visit(NSArray& self, NSEnumerationOptions options, Visit each)
    {
        const Ref<NSArray> alive(&self);
        if (!(options & NSEnumerationReverse)) {
            NSUInteger index = 0;
            for (NSObject* item : self) {
                if (!each(item, index++))
                    return;
            }
            return;
        }
        const NSUInteger changes = self.changes_;
        for (NSUInteger index = self.count(); index--;) {
            if (!each(self.objectAtIndex(index).get(), index))
                return;
            if (self.changes_ != changes)
                raiseMutated(&self);
        }
    }

    static void enumerateWithOptions(
        NSArray& self, NSEnumerationOptions options, Visitor::Owned* lent)
    {
        const Visitor block(lent);
        visit(self, options, [&](NSObject* item, NSUInteger index) {
            bool stop = false;
            block(item, index, &stop);
            return !stop;
        });
    }
    static void enumerate(NSArray& self, Visitor::Owned* block)
    {
        enumerateWithOptions(self, 0, block);
    }

    static NSUInteger indexWithOptionsPassing(
        NSArray& self, NSEnumerationOptions options, Test::Owned* lent)
    {
        const Test test(lent);
        NSUInteger found = kNotFound;
        visit(self, options, [&](NSObject* item, NSUInteger index) {
            bool stop = false;
            if (test(item, index, &stop)) {
                found = index;
                return false;
            }
            return !stop;
        });
        return found;
    }
    static NSUInteger indexPassing(NSArray& self, Test::Owned* test)
    {
        return indexWithOptionsPassing(self, 0, test);
    }
    static Ref<NSIndexSet> indexesPassing(NSArray& self, Test::Owned* lent)
    {
        const Test test(lent);
        const Ref<NSMutableIndexSet> found = make<NSMutableIndexSet>();
        visit(self, 0, [&](NSObject* item, NSUInteger index) {
            bool stop = false;
            if (test(item, index, &stop))
                found->addIndex(index);
            return !stop;
        });
        return cast<NSIndexSet>(found->copy());
    }
    static Ref<NSArray> filtered(NSArray& self, Closure<bool(NSObject*)>* lent)
    {
        const Block<bool(NSObject*)> keep(lent);
        Items kept;
        visit(self, 0, [&](NSObject* item, NSUInteger) {
            Ref<NSObject> owner(item);
            if (keep(item))
                kept.push_back(std::move(owner));
            return true;
        });
        return makeArray(std::move(kept));
    }
    static void perform(NSArray& self, SEL selector)
    {
        visit(self, 0, [&](NSObject* item, NSUInteger) {
            item->performSelector(selector);
            return true;
        });
    }
    static void performWithObject(NSArray& self, SEL selector, NSObject* object)
    {
        visit(self, 0, [&](NSObject* item, NSUInteger) {
            item->performSelector_withObject(selector, object);
            return true;
        });
    }

    // ---- arrays from this one

    static Ref<NSArray> subarrayWithRange(NSArray& self, NSRange range)
    {
        requireRange(&self, "subarrayWithRange:", range, self.count());
        Items items;
        items.reserve(range.length);
        for (NSUInteger i = 0; i < range.length; ++i)
            items.push_back(self.objectAtIndex(range.location + i));
        return makeArray(std::move(items));
    }
    static Ref<NSArray> objectsAtIndexes(NSArray& self, NSIndexSet* indexes)
    {
        Items items;
        for (const NSRange range : rangesOf(indexes)) {
            requireRange(&self, "objectsAtIndexes:", range, self.count());
            for (NSUInteger i = 0; i < range.length; ++i)
                items.push_back(self.objectAtIndex(range.location + i));
        }
        return makeArray(std::move(items));
    }
    static Ref<NSArray> arrayByAddingObject(NSArray& self, NSObject* object)
    {
        if (!object)
            raiseNil(&self, "arrayByAddingObject:");
        Items items = ArrayAccess::copy(&self);
        items.emplace_back(object);
        return makeArray(std::move(items));
    }
    static Ref<NSArray> arrayByAddingObjectsFromArray(NSArray& self, NSArray* other)
    {
        Items items = ArrayAccess::copy(&self);
        Items added = ArrayAccess::copy(other);
        items.insert(items.end(), std::make_move_iterator(added.begin()),
            std::make_move_iterator(added.end()));
        return makeArray(std::move(items));
    }
    static Ref<NSArray> sortedUsingSelector(NSArray& self, SEL selector)
    {
        Items items = ArrayAccess::copy(&self);
        sortItems(items, SelectorComparison(selector));
        return makeArray(std::move(items));
    }
    static Ref<NSArray> sortedUsingComparator(NSArray& self, NSComparator::Owned* lent)
    {
        const NSComparator comparator(lent);
        Items items = ArrayAccess::copy(&self);
        sortItems(items, comparator);
        return makeArray(std::move(items));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "containsObject:", imp<containsObject> },
            { "indexOfObject:", imp<indexOfObject> },
            { "indexOfObject:inRange:", imp<indexOfObjectInRange> },
            { "indexOfObjectIdenticalTo:", imp<indexOfObjectIdenticalTo> },
            { "firstObjectCommonWithArray:", imp<firstObjectCommonWithArray> },
            { "indexOfObject:inSortedRange:options:usingComparator:",
                imp<indexOfObjectInSortedRange> },
            { "enumerateObjectsUsingBlock:", imp<enumerate> },
            { "enumerateObjectsWithOptions:usingBlock:", imp<enumerateWithOptions> },
            { "indexOfObjectPassingTest:", imp<indexPassing> },
            { "indexOfObjectWithOptions:passingTest:", imp<indexWithOptionsPassing> },
            { "indexesOfObjectsPassingTest:", imp<indexesPassing> },
            { "filteredArrayUsingBlock:", imp<filtered> },
            { "makeObjectsPerformSelector:", imp<perform> },
            { "makeObjectsPerformSelector:withObject:", imp<performWithObject> },
            { "subarrayWithRange:", imp<subarrayWithRange> },
            { "objectsAtIndexes:", imp<objectsAtIndexes> },
            { "arrayByAddingObject:", imp<arrayByAddingObject> },
            { "arrayByAddingObjectsFromArray:", imp<arrayByAddingObjectsFromArray> },
            { "sortedArrayUsingSelector:", imp<sortedUsingSelector> },
            { "sortedArrayUsingComparator:", imp<sortedUsingComparator> },
        });
    }
};
BRINDLE_RECORD(NSArray, Searching)

}
