// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSArray.h"

namespace brindle {

/// An array that can be changed.
///
/// A subclass that keeps its elements in its own way overrides the two operations of `NSArray` and
/// `insertObject:atIndex:`, `removeObjectAtIndex:` and `replaceObjectAtIndex:withObject:`.
/// Any change, a replacement too, ends the loops that run over the array with `NSGenericException`.
/// - Raises: `NSRangeException` for an index outside, `NSInvalidArgumentException` for a nil element:
///   "*** -[NSMutableArray insertObject:atIndex:]: object cannot be nil".
/// Thread: one at a time.
class NSMutableArray : public NSArray {
    BRINDLE_OBJECT(NSMutableArray, NSArray)

public:
    struct Meta : NSArray::Meta {
        Ref<NSMutableArray> array() const { return send<"array", Ref<NSMutableArray>>(); }
        Ref<NSMutableArray> arrayWithCapacity(NSUInteger capacity) const
        {
            return send<"arrayWithCapacity:", Ref<NSMutableArray>>(capacity);
        }
        Ref<NSMutableArray> arrayWithObject(NSObject* item) const
        {
            return send<"arrayWithObject:", Ref<NSMutableArray>>(item);
        }
        template <class... A> Ref<NSMutableArray> arrayWithObjects(A... objects) const
        {
            return cast<NSMutableArray>(NSArray::Meta::arrayWithObjects(objects...));
        }
        Ref<NSMutableArray> arrayWithArray(const NSArray* array) const
        {
            return send<"arrayWithArray:", Ref<NSMutableArray>>(array);
        }
    };

    /// The capacity is a hint.
    Ref<NSMutableArray> initWithCapacity(NSUInteger capacity)
    {
        return send<"initWithCapacity:", Ref<NSMutableArray>>(capacity);
    }

    // ---- adding

    void addObject(NSObject* object) { send<"addObject:">(object); }
    void addObjectsFromArray(const NSArray* other) { send<"addObjectsFromArray:">(other); }
    /// - index: up to `count`, which adds at the end.
    void insertObject_atIndex(NSObject* object, NSUInteger index)
    {
        send<"insertObject:atIndex:">(object, index);
    }
    /// Inserts the objects in order; each index is a place in the result.
    void insertObjects_atIndexes(const NSArray* objects, NSIndexSet* indexes)
    {
        send<"insertObjects:atIndexes:">(objects, indexes);
    }

    // ---- removing

    /// Removes every element that is equal to the object.
    void removeObject(const NSObject* object) { send<"removeObject:">(object); }
    void removeObject_inRange(const NSObject* object, NSRange range)
    {
        send<"removeObject:inRange:">(object, range);
    }
    /// Removes every element that is the object itself.
    void removeObjectIdenticalTo(const NSObject* object)
    {
        send<"removeObjectIdenticalTo:">(object);
    }
    void removeObjectAtIndex(NSUInteger index) { send<"removeObjectAtIndex:">(index); }
    void removeObjectsInRange(NSRange range) { send<"removeObjectsInRange:">(range); }
    void removeObjectsAtIndexes(NSIndexSet* indexes) { send<"removeObjectsAtIndexes:">(indexes); }
    void removeObjectsInArray(const NSArray* other) { send<"removeObjectsInArray:">(other); }
    /// - Raises: `NSRangeException` for an empty array.
    void removeLastObject() { send<"removeLastObject">(); }
    void removeAllObjects() { send<"removeAllObjects">(); }

    // ---- replacing and ordering

    void replaceObjectAtIndex_withObject(NSUInteger index, NSObject* object)
    {
        send<"replaceObjectAtIndex:withObject:">(index, object);
    }
    /// Replaces an element, or adds one where `index` is `count`.
    void setObject_atIndexedSubscript(NSObject* object, NSUInteger index)
    {
        send<"setObject:atIndexedSubscript:">(object, index);
    }
    void replaceObjectsInRange_withObjectsFromArray(NSRange range, const NSArray* other)
    {
        send<"replaceObjectsInRange:withObjectsFromArray:">(range, other);
    }
    void exchangeObjectAtIndex_withObjectAtIndex(NSUInteger first, NSUInteger second)
    {
        send<"exchangeObjectAtIndex:withObjectAtIndex:">(first, second);
    }
    void setArray(const NSArray* other) { send<"setArray:">(other); }
    void sortUsingSelector(SEL comparator) { send<"sortUsingSelector:">(comparator); }
    void sortUsingComparator(const NSComparator& comparator)
    {
        send<"sortUsingComparator:">(comparator.get());
    }
    /// Keeps the objects for which the block answers true.
    void filterUsingBlock(const Block<bool(NSObject*)>& keep)
    {
        send<"filterUsingBlock:">(keep.get());
    }
};

}
