// SPDX-License-Identifier: Apache-2.0
#include "NSMutableArray.h"

#include "CollectionsPrivate.h"
#include "NSIndexSet.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

// Removed elements end after the array is in order again, because their `dealloc` may look at it. What a subclass
// may keep elsewhere is changed by the three basic operations.
template <> struct NSMutableArray::Methods<struct Changing> {

    static Ref<NSMutableArray> arrayWithCapacity(Class& self, NSUInteger capacity)
    {
        return cast<NSMutableArray>(NSObject::Meta { &self }.alloc())->initWithCapacity(capacity);
    }
    static Ref<NSMutableArray> initWithCapacity(NSMutableArray& self, NSUInteger capacity)
    {
        if (!super<NSMutableArray, "init", Ref<NSObject>>(self))
            return nullptr;
        if (capacity <= 1u << 24) // a hint from a broken file may be anything
            self.items_.reserve(capacity);
        return &self;
    }

    static bool isDirect(NSMutableArray& self) { return ArrayAccess::isDirect(self); }
    static auto at(NSMutableArray& self, NSUInteger index)
    {
        return self.items_.begin() + static_cast<std::ptrdiff_t>(index);
    }

    // ---- the three basic operations

    static void insert(NSMutableArray& self, NSObject* object, NSUInteger index)
    {
        if (!object)
            raiseNil(&self, "insertObject:atIndex:");
        if (index > self.items_.size())
            raiseIndex(&self, "insertObject:atIndex:", index, self.items_.size());
        self.items_.emplace(at(self, index), object);
        ++self.changes_;
    }
    static void removeAtIndex(NSMutableArray& self, NSUInteger index)
    {
        if (index >= self.items_.size())
            raiseIndex(&self, "removeObjectAtIndex:", index, self.items_.size());
        const Ref<NSObject> gone = std::move(self.items_[index]);
        self.items_.erase(at(self, index));
        ++self.changes_;
    }
    static void replaceAtIndex(NSMutableArray& self, NSUInteger index, NSObject* object)
    {
        if (!object)
            raiseNil(&self, "replaceObjectAtIndex:withObject:");
        if (index >= self.items_.size())
            raiseIndex(&self, "replaceObjectAtIndex:withObject:", index, self.items_.size());
        const Ref<NSObject> gone = std::exchange(self.items_[index], Ref<NSObject>(object));
        ++self.changes_;
    }

    // ---- adding

    static void add(NSMutableArray& self, NSObject* object)
    {
        if (!isDirect(self)) {
            self.insertObject_atIndex(object, self.count());
            return;
        }
        if (!object)
            raiseNil(&self, "addObject:");
        self.items_.emplace_back(object);
        ++self.changes_;
    }
    static void addFromArray(NSMutableArray& self, NSArray* other)
    {
        Items added = ArrayAccess::copy(other); // `other` may be the receiver
        if (!isDirect(self)) {
            for (const Ref<NSObject>& item : added)
                self.addObject(item.get());
            return;
        }
        self.items_.insert(self.items_.end(), std::make_move_iterator(added.begin()),
            std::make_move_iterator(added.end()));
        ++self.changes_;
    }
    static void insertAtIndexes(NSMutableArray& self, NSArray* objects, NSIndexSet* indexes)
    {
        Items added = ArrayAccess::copy(objects);
        const NSUInteger places = maybe(indexes)->count();
        if (added.size() != places)
            raise("NSInvalidArgumentException",
                placeOf(&self, "insertObjects:atIndexes:") + "count of array ("
                    + std::to_string(added.size()) + ") differs from count of index set ("
                    + std::to_string(places) + ")");
        const std::vector<NSRange> ranges = rangesOf(indexes);
        if (ranges.empty())
            return;
        if (NSMaxRange(ranges.back()) > self.count() + places)
            raiseIndex(&self, "insertObjects:atIndexes:", NSMaxRange(ranges.back()) - 1,
                self.count() + places);
        if (isDirect(self))
            return merge(self, std::move(added), ranges);
        auto next = added.begin();
        for (const NSRange range : ranges) {
            for (NSUInteger i = 0; i < range.length; ++i)
                self.insertObject_atIndex((next++)->get(), range.location + i);
        }
    }
    /// Puts elements at places of the result, which are in order, in one go.
    static void merge(NSMutableArray& self, Items added, const std::vector<NSRange>& ranges)
    {
        Items merged;
        merged.reserve(self.items_.size() + added.size());
        auto own = self.items_.begin();
        auto next = added.begin();
        for (const NSRange range : ranges) {
            while (merged.size() < range.location)
                merged.push_back(std::move(*own++));
            for (NSUInteger i = 0; i < range.length; ++i)
                merged.push_back(std::move(*next++));
        }
        merged.insert(
            merged.end(), std::make_move_iterator(own), std::make_move_iterator(self.items_.end()));
        self.items_ = std::move(merged);
        ++self.changes_;
    }

    // ---- removing

    /// Removes the elements of a range for which `unwanted` answers true; the question is foreign code.
    template <class Unwanted>
    static void removeWhere(NSMutableArray& self, NSRange range, Unwanted unwanted)
    {
        if (!isDirect(self)) {
            for (NSUInteger i = range.location + range.length; i-- > range.location;) {
                if (unwanted(self.objectAtIndex(i).get()))
                    self.removeObjectAtIndex(i);
            }
            return;
        }
        const NSUInteger changes = self.changes_;
        std::vector<NSUInteger> places;
        for (NSUInteger i = range.location; i < range.location + range.length; ++i) {
            if (unwanted(self.items_[i].get()))
                places.push_back(i);
            if (self.changes_ != changes)
                raiseMutated(&self);
        }
        takeOut(self, places);
    }
    /// Removes the elements at some places, which are in order, in one go.
    static void takeOut(NSMutableArray& self, const std::vector<NSUInteger>& places)
    {
        if (places.empty())
            return;
        Items gone;
        gone.reserve(places.size());
        NSUInteger to = places.front();
        auto next = places.begin();
        for (NSUInteger from = to; from < self.items_.size(); ++from) {
            if (next != places.end() && *next == from) {
                gone.push_back(std::move(self.items_[from]));
                ++next;
            } else
                self.items_[to++] = std::move(self.items_[from]);
        }
        self.items_.resize(to);
        ++self.changes_;
    }
    static NSRange all(NSMutableArray& self) { return { 0, self.count() }; }

    static void removeInRange(NSMutableArray& self, NSObject* object, NSRange range)
    {
        requireRange(&self, "removeObject:inRange:", range, self.count());
        if (!object)
            return;
        const Ref<NSObject> alive(object); // it may be an element that goes
        removeWhere(self, range,
            [object](NSObject* item) { return item == object || item->isEqual(object); });
    }
    static void remove(NSMutableArray& self, NSObject* object)
    {
        removeInRange(self, object, all(self));
    }
    static void removeIdentical(NSMutableArray& self, NSObject* object)
    {
        removeWhere(self, all(self), [object](NSObject* item) { return item == object; });
    }
    static void removeRange(NSMutableArray& self, NSRange range)
    {
        requireRange(&self, "removeObjectsInRange:", range, self.count());
        removeWhere(self, range, [](NSObject*) { return true; });
    }
    static void removeAtIndexes(NSMutableArray& self, NSIndexSet* indexes)
    {
        const std::vector<NSRange> ranges = rangesOf(indexes);
        if (!ranges.empty())
            requireRange(&self, "removeObjectsAtIndexes:", ranges.back(), self.count());
        if (isDirect(self)) {
            std::vector<NSUInteger> places;
            for (const NSRange range : ranges) {
                for (NSUInteger i = 0; i < range.length; ++i)
                    places.push_back(range.location + i);
            }
            return takeOut(self, places);
        }
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range)
            self.removeObjectsInRange(*range);
    }
    static void removeInArray(NSMutableArray& self, NSArray* other)
    {
        if (!other)
            return;
        const Ref<NSSet> unwanted = NSSet::cls().setWithArray(other);
        removeWhere(
            self, all(self), [&](NSObject* item) { return unwanted->containsObject(item); });
    }
    static void removeLast(NSMutableArray& self)
    {
        const NSUInteger count = self.count();
        if (!count)
            raiseIndex(&self, "removeLastObject", 0, 0);
        self.removeObjectAtIndex(count - 1);
    }
    static void removeAll(NSMutableArray& self)
    {
        if (!isDirect(self)) {
            self.removeObjectsInRange(all(self));
            return;
        }
        const Items gone = std::exchange(self.items_, {});
        ++self.changes_;
    }

    // ---- replacing and ordering

    static void setAtSubscript(NSMutableArray& self, NSObject* object, NSUInteger index)
    {
        if (index == self.count())
            self.addObject(object);
        else
            self.replaceObjectAtIndex_withObject(index, object);
    }
    static void replaceRange(NSMutableArray& self, NSRange range, NSArray* other)
    {
        requireRange(&self, "replaceObjectsInRange:withObjectsFromArray:", range, self.count());
        const Items fresh = ArrayAccess::copy(other);
        if (range.length)
            self.removeObjectsInRange(range);
        if (isDirect(self)) {
            const NSUInteger place = std::min<NSUInteger>(range.location, self.items_.size());
            self.items_.insert(at(self, place), fresh.begin(), fresh.end());
            ++self.changes_;
            return;
        }
        NSUInteger index = range.location;
        for (const Ref<NSObject>& item : fresh)
            self.insertObject_atIndex(item.get(), index++);
    }
    static void exchange(NSMutableArray& self, NSUInteger first, NSUInteger second)
    {
        const Ref<NSObject> a = self.objectAtIndex(first);
        const Ref<NSObject> b = self.objectAtIndex(second);
        self.replaceObjectAtIndex_withObject(first, b.get());
        self.replaceObjectAtIndex_withObject(second, a.get());
    }
    /// Puts these elements in the place of all others.
    static void setItems(NSMutableArray& self, Items items)
    {
        if (isDirect(self)) {
            const Items gone = std::exchange(self.items_, std::move(items));
            ++self.changes_;
            return;
        }
        self.removeAllObjects();
        for (const Ref<NSObject>& item : items)
            self.addObject(item.get());
    }
    static void setArray(NSMutableArray& self, NSArray* other)
    {
        setItems(self, ArrayAccess::copy(other));
    }
    template <class Compare> static void sort(NSMutableArray& self, Compare&& compare)
    {
        const NSUInteger changes = self.changes_;
        Items items = ArrayAccess::copy(&self);
        sortItems(items, compare);
        if (self.changes_ != changes)
            raiseMutated(&self);
        setItems(self, std::move(items));
    }
    static void sortUsingSelector(NSMutableArray& self, SEL selector)
    {
        sort(self, SelectorComparison(selector));
    }
    static void sortUsingComparator(NSMutableArray& self, NSComparator::Owned* lent)
    {
        sort(self, NSComparator(lent));
    }
    static void filter(NSMutableArray& self, Closure<bool(NSObject*)>* lent)
    {
        const Block<bool(NSObject*)> keep(lent);
        removeWhere(self, all(self), [&](NSObject* item) { return !keep(item); });
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "arrayWithCapacity:", imp<arrayWithCapacity> } });
        t.methods({
            { "initWithCapacity:", imp<initWithCapacity> },
            { "insertObject:atIndex:", imp<insert> },
            { "removeObjectAtIndex:", imp<removeAtIndex> },
            { "replaceObjectAtIndex:withObject:", imp<replaceAtIndex> },
            { "addObject:", imp<add> },
            { "addObjectsFromArray:", imp<addFromArray> },
            { "insertObjects:atIndexes:", imp<insertAtIndexes> },
            { "removeObject:", imp<remove> },
            { "removeObject:inRange:", imp<removeInRange> },
            { "removeObjectIdenticalTo:", imp<removeIdentical> },
            { "removeObjectsInRange:", imp<removeRange> },
            { "removeObjectsAtIndexes:", imp<removeAtIndexes> },
            { "removeObjectsInArray:", imp<removeInArray> },
            { "removeLastObject", imp<removeLast> },
            { "removeAllObjects", imp<removeAll> },
            { "setObject:atIndexedSubscript:", imp<setAtSubscript> },
            { "replaceObjectsInRange:withObjectsFromArray:", imp<replaceRange> },
            { "exchangeObjectAtIndex:withObjectAtIndex:", imp<exchange> },
            { "setArray:", imp<setArray> },
            { "sortUsingSelector:", imp<sortUsingSelector> },
            { "sortUsingComparator:", imp<sortUsingComparator> },
            { "filterUsingBlock:", imp<filter> },
        });
    }
};
BRINDLE_RECORD(NSMutableArray, Changing)

}
