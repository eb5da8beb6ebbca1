// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSArray.h"
#include "NSSet.h"

namespace brindle {

class NSIndexSet;
class NSMutableArray;

/// Objects, each of them once by `isEqual:`, at places that one can ask for and, in the mutable form, choose.
///
/// - Raises: `NSRangeException` for a place past the end, `NSInvalidArgumentException` for a nil object.
/// Thread: any; one that nobody changes is safe to read from several threads at once.
/// Cost: to look whether an object is there takes the same time whatever the count; to find its place does not.
class NSOrderedSet : public NSObject {
    BRINDLE_OBJECT(NSOrderedSet, NSObject)

public:
    using Element = NSObject;

    struct Meta : NSObject::Meta {
        Ref<NSOrderedSet> orderedSet() const { return send<"orderedSet", Ref<NSOrderedSet>>(); }
        Ref<NSOrderedSet> orderedSetWithObject(NSObject* item) const
        {
            return send<"orderedSetWithObject:", Ref<NSOrderedSet>>(item);
        }
        Ref<NSOrderedSet> orderedSetWithObjects_count(
            NSObject* const* objects, NSUInteger count) const
        {
            return send<"orderedSetWithObjects:count:", Ref<NSOrderedSet>>(objects, count);
        }
        /// Of equal objects the first one stays.
        Ref<NSOrderedSet> orderedSetWithArray(const NSArray* array) const
        {
            return send<"orderedSetWithArray:", Ref<NSOrderedSet>>(array);
        }
        Ref<NSOrderedSet> orderedSetWithSet(const NSSet* set) const
        {
            return send<"orderedSetWithSet:", Ref<NSOrderedSet>>(set);
        }
        Ref<NSOrderedSet> orderedSetWithOrderedSet(const NSOrderedSet* other) const
        {
            return send<"orderedSetWithOrderedSet:", Ref<NSOrderedSet>>(other);
        }
    };

    Ref<NSOrderedSet> initWithObjects_count(NSObject* const* objects, NSUInteger count)
    {
        return send<"initWithObjects:count:", Ref<NSOrderedSet>>(objects, count);
    }
    Ref<NSOrderedSet> initWithArray(const NSArray* array)
    {
        return send<"initWithArray:", Ref<NSOrderedSet>>(array);
    }
    Ref<NSOrderedSet> initWithSet(const NSSet* set)
    {
        return send<"initWithSet:", Ref<NSOrderedSet>>(set);
    }
    Ref<NSOrderedSet> initWithOrderedSet(const NSOrderedSet* other)
    {
        return send<"initWithOrderedSet:", Ref<NSOrderedSet>>(other);
    }

    NSUInteger count() const { return send<"count", NSUInteger>(); }
    Ref<NSObject> objectAtIndex(NSUInteger index) const
    {
        return send<"objectAtIndex:", Ref<NSObject>>(index);
    }
    Ref<NSObject> operator[](NSUInteger index) const
    {
        return send<"objectAtIndexedSubscript:", Ref<NSObject>>(index);
    }
    Ref<NSObject> firstObject() const { return send<"firstObject", Ref<NSObject>>(); }
    Ref<NSObject> lastObject() const { return send<"lastObject", Ref<NSObject>>(); }
    bool containsObject(const NSObject* object) const
    {
        return send<"containsObject:", bool>(object);
    }
    /// - Returns: `NSNotFound` when no equal object is there.
    NSUInteger indexOfObject(const NSObject* object) const
    {
        return send<"indexOfObject:", NSUInteger>(object);
    }
    Ref<NSArray> objectsAtIndexes(const NSIndexSet* indexes) const
    {
        return send<"objectsAtIndexes:", Ref<NSArray>>(indexes);
    }
    /// Answers the objects as they are now, in order.
    Ref<NSArray> array() const { return send<"array", Ref<NSArray>>(); }
    /// Answers the objects as they are now.
    Ref<NSSet> set() const { return send<"set", Ref<NSSet>>(); }
    Ref<NSOrderedSet> reversedOrderedSet() const
    {
        return send<"reversedOrderedSet", Ref<NSOrderedSet>>();
    }
    Ref<NSEnumerator> objectEnumerator() const
    {
        return send<"objectEnumerator", Ref<NSEnumerator>>();
    }
    Ref<NSEnumerator> reverseObjectEnumerator() const
    {
        return send<"reverseObjectEnumerator", Ref<NSEnumerator>>();
    }
    void enumerateObjectsUsingBlock(
        const Block<void(NSObject* object, NSUInteger index, bool* stop)>& block) const
    {
        send<"enumerateObjectsUsingBlock:">(block.get());
    }
    Ref<NSArray> sortedArrayUsingComparator(const NSComparator& comparator) const
    {
        return send<"sortedArrayUsingComparator:", Ref<NSArray>>(comparator.get());
    }

    /// Answers whether both hold equal objects at the same places.
    Ref<NSString> descriptionWithLocale_indent(NSObject* locale, NSUInteger level) const
    {
        return send<"descriptionWithLocale:indent:", Ref<NSString>>(locale, level);
    }
    bool isEqualToOrderedSet(const NSOrderedSet* other) const
    {
        return send<"isEqualToOrderedSet:", bool>(other);
    }
    bool isSubsetOfSet(const NSSet* other) const { return send<"isSubsetOfSet:", bool>(other); }
    bool isSubsetOfOrderedSet(const NSOrderedSet* other) const
    {
        return send<"isSubsetOfOrderedSet:", bool>(other);
    }
    bool intersectsSet(const NSSet* other) const { return send<"intersectsSet:", bool>(other); }
    bool intersectsOrderedSet(const NSOrderedSet* other) const
    {
        return send<"intersectsOrderedSet:", bool>(other);
    }

private:
    friend class NSMutableOrderedSet;

    Ref<NSMutableArray> order_;
    Ref<NSMutableSet> members_;
};

/// An ordered set that can be changed. Thread: one at a time.
class NSMutableOrderedSet : public NSOrderedSet {
    BRINDLE_OBJECT(NSMutableOrderedSet, NSOrderedSet)

public:
    struct Meta : NSOrderedSet::Meta {
        Ref<NSMutableOrderedSet> orderedSet() const
        {
            return send<"orderedSet", Ref<NSMutableOrderedSet>>();
        }
        Ref<NSMutableOrderedSet> orderedSetWithArray(const NSArray* array) const
        {
            return send<"orderedSetWithArray:", Ref<NSMutableOrderedSet>>(array);
        }
    };

    /// Adds an object at the end, unless an equal one is there, which then stays where it is.
    void addObject(NSObject* object) { send<"addObject:">(object); }
    void addObjectsFromArray(const NSArray* array) { send<"addObjectsFromArray:">(array); }
    /// Inserts an object, unless an equal one is there, which then stays where it is.
    void insertObject_atIndex(NSObject* object, NSUInteger index)
    {
        send<"insertObject:atIndex:">(object, index);
    }
    void removeObject(const NSObject* object) { send<"removeObject:">(object); }
    void removeObjectAtIndex(NSUInteger index) { send<"removeObjectAtIndex:">(index); }
    void removeObjectsInArray(const NSArray* array) { send<"removeObjectsInArray:">(array); }
    void removeAllObjects() { send<"removeAllObjects">(); }
    /// Puts an object in another's place; nothing happens when an equal one is elsewhere.
    void replaceObjectAtIndex_withObject(NSUInteger index, NSObject* object)
    {
        send<"replaceObjectAtIndex:withObject:">(index, object);
    }
    void exchangeObjectAtIndex_withObjectAtIndex(NSUInteger index, NSUInteger other)
    {
        send<"exchangeObjectAtIndex:withObjectAtIndex:">(index, other);
    }
    /// Moves objects, in their order, so that they begin at `index` once they are taken out.
    void moveObjectsAtIndexes_toIndex(const NSIndexSet* indexes, NSUInteger index)
    {
        send<"moveObjectsAtIndexes:toIndex:">(indexes, index);
    }
    void unionSet(const NSSet* other) { send<"unionSet:">(other); }
    void unionOrderedSet(const NSOrderedSet* other) { send<"unionOrderedSet:">(other); }
    void minusSet(const NSSet* other) { send<"minusSet:">(other); }
    void minusOrderedSet(const NSOrderedSet* other) { send<"minusOrderedSet:">(other); }
    void intersectSet(const NSSet* other) { send<"intersectSet:">(other); }
    void intersectOrderedSet(const NSOrderedSet* other) { send<"intersectOrderedSet:">(other); }
    void sortUsingComparator(const NSComparator& comparator)
    {
        send<"sortUsingComparator:">(comparator.get());
    }
};

}
