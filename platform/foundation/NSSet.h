// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <span>

#include "Each.h"
#include "NSEnumerator.h"
#include "NSGeometry.h"
#include "OrderedTable.h"

namespace brindle {

class NSArray;
class NSSet;

/// Stands at an object of a set, which is lent until the next step.
class BRINDLE_EXPORT SetIterator {
public:
    SetIterator() = default;
    explicit SetIterator(const NSSet* set);

    NSObject* operator*() const;
    SetIterator& operator++();
    /// - Raises: `NSGenericException` when the set was changed since the loop began.
    bool operator==(std::default_sentinel_t) const;

private:
    Ref<NSSet> snapshot_; // only of a subclass that keeps its objects in its own way
    const NSSet* set_ = nullptr;
    std::size_t place_ = 0;
    std::uint64_t changes_ = 0;
};

/// Objects, each of them once by `isEqual:`, in the order in which they came.
///
/// A subclass may keep its objects in its own way: it overrides `count`, `member:` and `objectEnumerator`, and
/// everything else follows.
/// - Raises: `NSInvalidArgumentException` for a nil object.
/// Thread: any; a set that nobody changes is safe to read from several threads at once.
class NSSet : public NSObject {
    BRINDLE_OBJECT(NSSet, NSObject)

public:
    using Element = NSObject;

    struct Meta : NSObject::Meta {
        Ref<NSSet> set() const { return send<"set", Ref<NSSet>>(); }
        Ref<NSSet> setWithObject(NSObject* item) const
        {
            return send<"setWithObject:", Ref<NSSet>>(item);
        }
        /// The first nil ends the list.
        template <class... A> Ref<NSSet> setWithObjects(A... objects) const;
        Ref<NSSet> setWithObjects_count(NSObject* const* objects, NSUInteger count) const
        {
            return send<"setWithObjects:count:", Ref<NSSet>>(objects, count);
        }
        Ref<NSSet> setWithArray(const NSArray* array) const
        {
            return send<"setWithArray:", Ref<NSSet>>(array);
        }
        Ref<NSSet> setWithSet(const NSSet* other) const
        {
            return send<"setWithSet:", Ref<NSSet>>(other);
        }
    };

    Ref<NSSet> initWithObjects_count(NSObject* const* objects, NSUInteger count)
    {
        return send<"initWithObjects:count:", Ref<NSSet>>(objects, count);
    }
    Ref<NSSet> initWithArray(const NSArray* array)
    {
        return send<"initWithArray:", Ref<NSSet>>(array);
    }
    Ref<NSSet> initWithSet(const NSSet* other) { return send<"initWithSet:", Ref<NSSet>>(other); }

    NSUInteger count() const { return send<"count", NSUInteger>(); }
    bool containsObject(const NSObject* object) const
    {
        return send<"containsObject:", bool>(object);
    }
    /// Answers the set's own object that is equal to this one, or nil.
    Ref<NSObject> member(const NSObject* object) const
    {
        return send<"member:", Ref<NSObject>>(object);
    }
    /// Answers the object that came first, or nil.
    Ref<NSObject> anyObject() const { return send<"anyObject", Ref<NSObject>>(); }
    Ref<NSArray> allObjects() const { return send<"allObjects", Ref<NSArray>>(); }
    Ref<NSEnumerator> objectEnumerator() const
    {
        return send<"objectEnumerator", Ref<NSEnumerator>>();
    }
    SetIterator begin() const { return SetIterator(this); }
    std::default_sentinel_t end() const { return {}; }

    bool isEqualToSet(const NSSet* other) const { return send<"isEqualToSet:", bool>(other); }
    bool isSubsetOfSet(const NSSet* other) const { return send<"isSubsetOfSet:", bool>(other); }
    bool intersectsSet(const NSSet* other) const { return send<"intersectsSet:", bool>(other); }

    using Visitor = Block<void(NSObject* object, bool* stop)>;
    using Test = Block<bool(NSObject* object, bool* stop)>;

    void enumerateObjectsUsingBlock(const Visitor& block) const
    {
        send<"enumerateObjectsUsingBlock:">(block.get());
    }
    Ref<NSSet> objectsPassingTest(const Test& test) const
    {
        return send<"objectsPassingTest:", Ref<NSSet>>(test.get());
    }
    void makeObjectsPerformSelector(SEL selector) const
    {
        send<"makeObjectsPerformSelector:">(selector);
    }
    void makeObjectsPerformSelector_withObject(SEL selector, NSObject* object) const
    {
        send<"makeObjectsPerformSelector:withObject:">(selector, object);
    }
    Ref<NSSet> setByAddingObject(NSObject* object) const
    {
        return send<"setByAddingObject:", Ref<NSSet>>(object);
    }
    Ref<NSSet> setByAddingObjectsFromSet(const NSSet* other) const
    {
        return send<"setByAddingObjectsFromSet:", Ref<NSSet>>(other);
    }
    Ref<NSSet> setByAddingObjectsFromArray(const NSArray* other) const
    {
        return send<"setByAddingObjectsFromArray:", Ref<NSSet>>(other);
    }
    /// Answers "{(\n    a,\n    b\n)}", indented by four spaces a level.
    Ref<NSString> descriptionWithLocale_indent(NSObject* locale, NSUInteger level) const
    {
        return send<"descriptionWithLocale:indent:", Ref<NSString>>(locale, level);
    }

private:
    friend class SetIterator;
    friend class NSMutableSet;
    friend struct SetAccess;

    OrderedTable<TableEntry> table_;
};

/// A set that can be changed; any change ends the loops that run over it with `NSGenericException`.
///
/// A subclass that keeps its objects in its own way also overrides `addObject:` and `removeObject:`.
/// Thread: one at a time.
class NSMutableSet : public NSSet {
    BRINDLE_OBJECT(NSMutableSet, NSSet)

public:
    struct Meta : NSSet::Meta {
        Ref<NSMutableSet> set() const { return send<"set", Ref<NSMutableSet>>(); }
        Ref<NSMutableSet> setWithCapacity(NSUInteger capacity) const
        {
            return send<"setWithCapacity:", Ref<NSMutableSet>>(capacity);
        }
        Ref<NSMutableSet> setWithArray(const NSArray* array) const
        {
            return send<"setWithArray:", Ref<NSMutableSet>>(array);
        }
        Ref<NSMutableSet> setWithSet(const NSSet* other) const
        {
            return send<"setWithSet:", Ref<NSMutableSet>>(other);
        }
    };

    /// The capacity is a hint.
    Ref<NSMutableSet> initWithCapacity(NSUInteger capacity)
    {
        return send<"initWithCapacity:", Ref<NSMutableSet>>(capacity);
    }
    /// Adds the object unless an equal one is there, which then stays.
    void addObject(NSObject* object) { send<"addObject:">(object); }
    void addObjectsFromArray(const NSArray* array) { send<"addObjectsFromArray:">(array); }
    void removeObject(const NSObject* object) { send<"removeObject:">(object); }
    void removeAllObjects() { send<"removeAllObjects">(); }
    /// Adds the other set's objects.
    void unionSet(const NSSet* other) { send<"unionSet:">(other); }
    /// Removes the other set's objects.
    void minusSet(const NSSet* other) { send<"minusSet:">(other); }
    /// Keeps only what is in both.
    void intersectSet(const NSSet* other) { send<"intersectSet:">(other); }
    void setSet(const NSSet* other) { send<"setSet:">(other); }
};

/// Answers a set of these objects; equal ones once.
/// - Raises: `NSInvalidArgumentException` when one is nil.
inline Ref<NSSet> makeSet(std::initializer_list<NSObject*> objects)
{
    return NSSet::cls().setWithObjects_count(objects.begin(), objects.size());
}

template <class... A> Ref<NSSet> NSSet::Meta::setWithObjects(A... objects) const
{
    NSObject* const list[] = { objects..., nullptr };
    NSUInteger count = 0;
    while (list[count])
        ++count;
    return setWithObjects_count(list, count);
}

}
