// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <span>
#include <vector>

#include "Each.h"
#include "NSEnumerator.h"
#include "NSGeometry.h"

namespace brindle {

class NSArray;
class NSIndexSet;
class NSMutableArray;
enum NSComparisonResult : NSInteger;

/// Compares two objects for sorting.
using NSComparator = Block<NSComparisonResult(NSObject*, NSObject*)>;

/// Stands at an element of an array, which is lent until the next step.
class BRINDLE_EXPORT ArrayIterator {
public:
    ArrayIterator() = default;
    explicit ArrayIterator(const NSArray* array);

    inline NSObject* operator*() const;
    ArrayIterator& operator++()
    {
        ++index_;
        return *this;
    }
    /// - Raises: `NSGenericException` when the array was changed since the loop began.
    inline bool operator==(std::default_sentinel_t) const;

private:
    [[noreturn]] void raiseChanged() const;

    Ref<NSArray> snapshot_; // only of a subclass that keeps its elements in its own way
    const NSArray* array_ = nullptr;
    const std::vector<Ref<NSObject>>* items_ = nullptr;
    NSUInteger index_ = 0;
    NSUInteger changes_ = 0;
};

/// Objects in an order. The array owns its elements; none of them is nil.
///
/// A subclass may keep its elements in its own way: it overrides `count` and `objectAtIndex:`, and everything else
/// follows. C++ reads an array by `for (NSObject* item : *array)`, answers of operations by `each(…)`.
/// - Raises: `NSRangeException` for an index outside, "*** -[NSArray objectAtIndex:]: index 3 beyond bounds [0 .. 2]";
///   `NSInvalidArgumentException` for a nil element.
/// Thread: any; an array that nobody changes is safe to read from several threads at once.
/// Cost: reading an element allocates nothing; a loop adds no counts.
class NSArray : public NSObject {
    BRINDLE_OBJECT(NSArray, NSObject)

public:
    using Element = NSObject;

    struct Meta : NSObject::Meta {
        Ref<NSArray> array() const { return send<"array", Ref<NSArray>>(); }
        Ref<NSArray> arrayWithObject(NSObject* item) const
        {
            return send<"arrayWithObject:", Ref<NSArray>>(item);
        }
        /// The first nil ends the list.
        template <class... A> Ref<NSArray> arrayWithObjects(A... objects) const;
        Ref<NSArray> arrayWithObjects_count(NSObject* const* objects, NSUInteger count) const
        {
            return send<"arrayWithObjects:count:", Ref<NSArray>>(objects, count);
        }
        Ref<NSArray> arrayWithContentsOfFile(const NSString* path) const
        {
            return send<"arrayWithContentsOfFile:", Ref<NSArray>>(path);
        }
        Ref<NSArray> arrayWithArray(const NSArray* array) const
        {
            return send<"arrayWithArray:", Ref<NSArray>>(array);
        }
    };

    // ---- making

    Ref<NSArray> initWithObjects_count(NSObject* const* objects, NSUInteger count)
    {
        return send<"initWithObjects:count:", Ref<NSArray>>(objects, count);
    }
    Ref<NSArray> initWithArray(const NSArray* array)
    {
        return send<"initWithArray:", Ref<NSArray>>(array);
    }
    /// Copies every element when `copyItems` is true.
    Ref<NSArray> initWithArray_copyItems(const NSArray* array, bool copyItems)
    {
        return send<"initWithArray:copyItems:", Ref<NSArray>>(array, copyItems);
    }
    /// Reads a property list of any format.
    /// - Nil: when the file cannot be read, or holds anything but an array.
    Ref<NSArray> initWithContentsOfFile(const NSString* path)
    {
        return send<"initWithContentsOfFile:", Ref<NSArray>>(path);
    }

    // ---- reading

    NSUInteger count() const { return send<"count", NSUInteger>(); }
    Ref<NSObject> objectAtIndex(NSUInteger index) const
    {
        return send<"objectAtIndex:", Ref<NSObject>>(index);
    }
    Ref<NSObject> objectAtIndexedSubscript(NSUInteger index) const
    {
        return send<"objectAtIndexedSubscript:", Ref<NSObject>>(index);
    }
    /// - Nil: for an empty array.
    Ref<NSObject> firstObject() const { return send<"firstObject", Ref<NSObject>>(); }
    Ref<NSObject> lastObject() const { return send<"lastObject", Ref<NSObject>>(); }
    /// Lends the elements in a range to the caller, without counts.
    void getObjects_range(NSObject** objects, NSRange range) const
    {
        send<"getObjects:range:">(objects, range);
    }
    Ref<NSEnumerator> objectEnumerator() const
    {
        return send<"objectEnumerator", Ref<NSEnumerator>>();
    }
    Ref<NSEnumerator> reverseObjectEnumerator() const
    {
        return send<"reverseObjectEnumerator", Ref<NSEnumerator>>();
    }
    ArrayIterator begin() const { return ArrayIterator(this); }
    std::default_sentinel_t end() const { return {}; }

    // ---- searching: by `isEqual:`, or by the address where the name says identical; NSNotFound for nothing

    bool containsObject(const NSObject* object) const
    {
        return send<"containsObject:", bool>(object);
    }
    NSUInteger indexOfObject(const NSObject* object) const
    {
        return send<"indexOfObject:", NSUInteger>(object);
    }
    NSUInteger indexOfObject_inRange(const NSObject* object, NSRange range) const
    {
        return send<"indexOfObject:inRange:", NSUInteger>(object, range);
    }
    NSUInteger indexOfObjectIdenticalTo(const NSObject* object) const
    {
        return send<"indexOfObjectIdenticalTo:", NSUInteger>(object);
    }
    /// Answers the first object that is in both arrays, or nil.
    Ref<NSObject> firstObjectCommonWithArray(const NSArray* other) const
    {
        return send<"firstObjectCommonWithArray:", Ref<NSObject>>(other);
    }
    /// Answers the place of `object` in a sorted array; where it belongs with `NSBinarySearchingInsertionIndex`.
    NSUInteger indexOfObject_inSortedRange_options_usingComparator(
        NSObject* object, NSRange range, NSUInteger options, const NSComparator& comparator) const
    {
        return send<"indexOfObject:inSortedRange:options:usingComparator:", NSUInteger>(
            object, range, options, comparator.get());
    }
    bool isEqualToArray(const NSArray* other) const { return send<"isEqualToArray:", bool>(other); }

    // ---- blocks: setting `*stop` to true ends the enumeration after that element

    using Visitor = Block<void(NSObject* object, NSUInteger index, bool* stop)>;
    using Test = Block<bool(NSObject* object, NSUInteger index, bool* stop)>;

    void enumerateObjectsUsingBlock(const Visitor& block) const
    {
        send<"enumerateObjectsUsingBlock:">(block.get());
    }
    void enumerateObjectsWithOptions_usingBlock(
        NSEnumerationOptions options, const Visitor& block) const
    {
        send<"enumerateObjectsWithOptions:usingBlock:">(options, block.get());
    }
    NSUInteger indexOfObjectPassingTest(const Test& test) const
    {
        return send<"indexOfObjectPassingTest:", NSUInteger>(test.get());
    }
    /// `NSEnumerationReverse` finds the last one.
    NSUInteger indexOfObjectWithOptions_passingTest(
        NSEnumerationOptions options, const Test& test) const
    {
        return send<"indexOfObjectWithOptions:passingTest:", NSUInteger>(options, test.get());
    }
    Ref<NSIndexSet> indexesOfObjectsPassingTest(const Test& test) const
    {
        return send<"indexesOfObjectsPassingTest:", Ref<NSIndexSet>>(test.get());
    }
    /// Answers the objects for which the block answers true, in their order.
    Ref<NSArray> filteredArrayUsingBlock(const Block<bool(NSObject*)>& keep) const
    {
        return send<"filteredArrayUsingBlock:", Ref<NSArray>>(keep.get());
    }
    /// Sends each element a message without arguments, first to last.
    void makeObjectsPerformSelector(SEL selector) const
    {
        send<"makeObjectsPerformSelector:">(selector);
    }
    void makeObjectsPerformSelector_withObject(SEL selector, NSObject* object) const
    {
        send<"makeObjectsPerformSelector:withObject:">(selector, object);
    }

    // ---- arrays from this one

    Ref<NSArray> subarrayWithRange(NSRange range) const
    {
        return send<"subarrayWithRange:", Ref<NSArray>>(range);
    }
    Ref<NSArray> objectsAtIndexes(NSIndexSet* indexes) const
    {
        return send<"objectsAtIndexes:", Ref<NSArray>>(indexes);
    }
    Ref<NSArray> arrayByAddingObject(NSObject* object) const
    {
        return send<"arrayByAddingObject:", Ref<NSArray>>(object);
    }
    Ref<NSArray> arrayByAddingObjectsFromArray(const NSArray* other) const
    {
        return send<"arrayByAddingObjectsFromArray:", Ref<NSArray>>(other);
    }
    /// Sorts by an operation of the elements such as `compare:`. Equal elements keep their order.
    Ref<NSArray> sortedArrayUsingSelector(SEL comparator) const
    {
        return send<"sortedArrayUsingSelector:", Ref<NSArray>>(comparator);
    }
    Ref<NSArray> sortedArrayUsingComparator(const NSComparator& comparator) const
    {
        return send<"sortedArrayUsingComparator:", Ref<NSArray>>(comparator.get());
    }
    /// Answers the elements' descriptions in a row with the separator between them.
    Ref<NSString> componentsJoinedByString(const NSString* separator) const
    {
        return send<"componentsJoinedByString:", Ref<NSString>>(separator);
    }
    /// Answers "(\n    a,\n    b\n)", indented by four spaces a level.
    Ref<NSString> descriptionWithLocale_indent(NSObject* locale, NSUInteger level) const
    {
        return send<"descriptionWithLocale:indent:", Ref<NSString>>(locale, level);
    }
    /// Writes an XML property list; NO when the elements are not all of its kinds, or the file cannot be written.
    bool writeToFile_atomically(const NSString* path, bool atomically) const
    {
        return send<"writeToFile:atomically:", bool>(path, atomically);
    }

private:
    friend class ArrayIterator;
    friend class NSMutableArray;
    friend struct ArrayAccess;

    std::vector<Ref<NSObject>> items_;
    NSUInteger changes_ = 0;
};

inline NSObject* ArrayIterator::operator*() const { return (*items_)[index_].get(); }

inline bool ArrayIterator::operator==(std::default_sentinel_t) const
{
    if (!array_)
        return true;
    if (array_->changes_ != changes_) [[unlikely]]
        raiseChanged();
    return index_ >= items_->size();
}

/// What `indexOfObject:inSortedRange:options:usingComparator:` answers among equal objects, and where none is.
enum : NSUInteger {
    NSBinarySearchingFirstEqual = 1 << 8,
    NSBinarySearchingLastEqual = 1 << 9,
    NSBinarySearchingInsertionIndex = 1 << 10,
};

/// Answers an array of these objects: `makeArray({ a.get(), b.get() })`.
/// - Raises: `NSInvalidArgumentException` when one is nil.
BRINDLE_EXPORT Ref<NSArray> makeArray(std::span<NSObject* const> objects);
inline Ref<NSArray> makeArray(std::initializer_list<NSObject*> objects)
{
    return makeArray(std::span<NSObject* const>(objects.begin(), objects.size()));
}
/// Answers an array that takes over these owners, none of them nil.
BRINDLE_EXPORT Ref<NSArray> makeArray(std::vector<Ref<NSObject>> owners);

template <class... A> Ref<NSArray> NSArray::Meta::arrayWithObjects(A... objects) const
{
    NSObject* const list[] = { objects..., nullptr };
    NSUInteger count = 0;
    while (list[count])
        ++count;
    return arrayWithObjects_count(list, count);
}

}
