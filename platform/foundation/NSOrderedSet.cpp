// SPDX-License-Identifier: Apache-2.0
#include "NSOrderedSet.h"

#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "NSIndexSet.h"
#include "NSMutableArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

namespace {

    Ref<NSSet> setOf(const NSOrderedSet* other)
    {
        return other ? other->set() : NSSet::cls().set();
    }

}

template <> struct NSOrderedSet::Methods<struct Ordered> {

    static Ref<NSOrderedSet> alloc(Class& self)
    {
        return cast<NSOrderedSet>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSOrderedSet> empty(Class& self) { return alloc(self)->initWithArray(nullptr); }
    static Ref<NSOrderedSet> withObject(Class& self, NSObject* object)
    {
        return alloc(self)->initWithObjects_count(&object, 1);
    }
    static Ref<NSOrderedSet> withObjects(Class& self, NSObject* const* objects, NSUInteger count)
    {
        return alloc(self)->initWithObjects_count(objects, count);
    }
    static Ref<NSOrderedSet> withArray(Class& self, NSArray* array)
    {
        return alloc(self)->initWithArray(array);
    }
    static Ref<NSOrderedSet> withSet(Class& self, NSSet* set)
    {
        return alloc(self)->initWithSet(set);
    }
    static Ref<NSOrderedSet> withOrderedSet(Class& self, NSOrderedSet* other)
    {
        return alloc(self)->initWithOrderedSet(other);
    }

    static Ref<NSObject> init(NSOrderedSet& self) { return self.initWithArray(nullptr); }
    static Ref<NSOrderedSet> initWithObjects(
        NSOrderedSet& self, NSObject* const* objects, NSUInteger count)
    {
        if (count && !objects)
            raiseNil(&self, "initWithObjects:count:", "objects");
        Items items;
        for (NSUInteger i = 0; i < count; ++i) {
            if (!objects[i])
                raiseNil(&self, "initWithObjects:count:");
            items.push_back(Ref<NSObject>(objects[i]));
        }
        return fill(self, items);
    }
    static Ref<NSOrderedSet> initWithArray(NSOrderedSet& self, NSArray* array)
    {
        return fill(self, ArrayAccess::copy(array));
    }
    static Ref<NSOrderedSet> initWithSet(NSOrderedSet& self, NSSet* set)
    {
        return fill(self, SetAccess::copy(set));
    }
    static Ref<NSOrderedSet> initWithOrderedSet(NSOrderedSet& self, NSOrderedSet* other)
    {
        return self.initWithArray(maybe(other)->array().get());
    }
    static Ref<NSOrderedSet> fill(NSOrderedSet& self, const Items& items)
    {
        if (!super<NSOrderedSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.order_ = NSMutableArray::cls().array();
        self.members_ = NSMutableSet::cls().set();
        for (const Ref<NSObject>& item : items) {
            if (self.members_->containsObject(item.get()))
                continue;
            self.members_->addObject(item.get());
            self.order_->addObject(item.get());
        }
        return &self;
    }

    static NSUInteger count(NSOrderedSet& self) { return maybe(self.order_)->count(); }
    static Ref<NSObject> objectAtIndex(NSOrderedSet& self, NSUInteger index)
    {
        if (index >= maybe(self.order_)->count())
            raiseIndex(&self, "objectAtIndex:", index, maybe(self.order_)->count());
        return maybe(self.order_)->objectAtIndex(index);
    }
    static Ref<NSObject> firstObject(NSOrderedSet& self)
    {
        return maybe(self.order_)->firstObject();
    }
    static Ref<NSObject> lastObject(NSOrderedSet& self) { return maybe(self.order_)->lastObject(); }
    static bool containsObject(NSOrderedSet& self, NSObject* object)
    {
        return maybe(self.members_)->containsObject(object);
    }
    static NSUInteger indexOfObject(NSOrderedSet& self, NSObject* object)
    {
        const Ref<NSObject> own = maybe(self.members_)->member(object);
        return own ? maybe(self.order_)->indexOfObjectIdenticalTo(own.get()) : NSNotFound;
    }
    static Ref<NSArray> objectsAtIndexes(NSOrderedSet& self, NSIndexSet* indexes)
    {
        return maybe(self.order_)->objectsAtIndexes(indexes);
    }
    static Ref<NSArray> array(NSOrderedSet& self)
    {
        return cast<NSArray>(maybe(self.order_)->copy());
    }
    static Ref<NSSet> set(NSOrderedSet& self) { return cast<NSSet>(maybe(self.members_)->copy()); }
    static Ref<NSOrderedSet> reversed(NSOrderedSet& self)
    {
        Items items = ArrayAccess::copy(self.order_.get());
        std::reverse(items.begin(), items.end());
        return NSOrderedSet::cls().orderedSetWithArray(makeArray(std::move(items)).get());
    }
    static Ref<NSEnumerator> enumerator(NSOrderedSet& self)
    {
        return maybe(self.order_)->objectEnumerator();
    }
    static Ref<NSEnumerator> reverseEnumerator(NSOrderedSet& self)
    {
        return maybe(self.order_)->reverseObjectEnumerator();
    }
    static void enumerate(NSOrderedSet& self, Closure<void(NSObject*, NSUInteger, bool*)>* block)
    {
        maybe(self.order_)
            ->enumerateObjectsUsingBlock(Block<void(NSObject*, NSUInteger, bool*)>(block));
    }
    static Ref<NSArray> sorted(NSOrderedSet& self, NSComparator::Owned* comparator)
    {
        return maybe(self.order_)->sortedArrayUsingComparator(NSComparator(comparator));
    }

    static bool isEqualToOrderedSet(NSOrderedSet& self, NSOrderedSet* other)
    {
        return other && maybe(self.order_)->isEqualToArray(other->array().get());
    }
    static bool isEqual(NSOrderedSet& self, NSObject* object)
    {
        if (object == &self)
            return true;
        return object && object->isKindOfClass(NSOrderedSet::cls())
            && self.isEqualToOrderedSet(cast<NSOrderedSet>(object));
    }
    static std::uint64_t hash(NSOrderedSet& self) { return maybe(self.members_)->hash(); }
    static bool isSubsetOfSet(NSOrderedSet& self, NSSet* other)
    {
        return maybe(self.members_)->isSubsetOfSet(other);
    }
    static bool isSubsetOfOrderedSet(NSOrderedSet& self, NSOrderedSet* other)
    {
        return maybe(self.members_)->isSubsetOfSet(setOf(other).get());
    }
    static bool intersectsSet(NSOrderedSet& self, NSSet* other)
    {
        return maybe(self.members_)->intersectsSet(other);
    }
    static bool intersectsOrderedSet(NSOrderedSet& self, NSOrderedSet* other)
    {
        return maybe(self.members_)->intersectsSet(setOf(other).get());
    }

    static Ref<NSObject> copyWithZone(NSOrderedSet& self, void*)
    {
        if (!self.isKindOfClass(NSMutableOrderedSet::cls()))
            return &self;
        return NSOrderedSet::cls().orderedSetWithArray(self.order_.get());
    }
    static Ref<NSObject> mutableCopyWithZone(NSOrderedSet& self, void*)
    {
        return NSMutableOrderedSet::cls().orderedSetWithArray(self.order_.get());
    }
    static Ref<NSString> description(NSOrderedSet& self)
    {
        return self.descriptionWithLocale_indent(nullptr, 0);
    }
    static Ref<NSString> descriptionWithLocale(NSOrderedSet& self, NSObject* locale)
    {
        return self.descriptionWithLocale_indent(locale, 0);
    }
    static Ref<NSString> descriptionWithLocaleIndent(
        NSOrderedSet& self, NSObject*, NSUInteger level)
    {
        return stringFrom(describeList(ArrayAccess::copy(self.order_.get()), level, "{(", ")}"));
    }

    static void encodeWithCoder(NSOrderedSet& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.array().get(), "NS.objects"_ns);
    }
    static Ref<NSObject> initWithCoder(NSOrderedSet& self, NSCoder* coder)
    {
        return self.initWithArray(decode<NSArray>(coder, "NS.objects"_ns).get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "orderedSet", imp<empty> },
            { "orderedSetWithObject:", imp<withObject> },
            { "orderedSetWithObjects:count:", imp<withObjects> },
            { "orderedSetWithArray:", imp<withArray> },
            { "orderedSetWithSet:", imp<withSet> },
            { "orderedSetWithOrderedSet:", imp<withOrderedSet> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithObjects:count:", imp<initWithObjects> },
            { "initWithArray:", imp<initWithArray> },
            { "initWithSet:", imp<initWithSet> },
            { "initWithOrderedSet:", imp<initWithOrderedSet> },
            { "count", imp<count> },
            { "objectAtIndex:", imp<objectAtIndex> },
            { "objectAtIndexedSubscript:", imp<objectAtIndex> },
            { "firstObject", imp<firstObject> },
            { "lastObject", imp<lastObject> },
            { "containsObject:", imp<containsObject> },
            { "indexOfObject:", imp<indexOfObject> },
            { "objectsAtIndexes:", imp<objectsAtIndexes> },
            { "array", imp<array> },
            { "set", imp<set> },
            { "reversedOrderedSet", imp<reversed> },
            { "objectEnumerator", imp<enumerator> },
            { "reverseObjectEnumerator", imp<reverseEnumerator> },
            { "enumerateObjectsUsingBlock:", imp<enumerate> },
            { "sortedArrayUsingComparator:", imp<sorted> },
            { "isEqualToOrderedSet:", imp<isEqualToOrderedSet> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "isSubsetOfSet:", imp<isSubsetOfSet> },
            { "isSubsetOfOrderedSet:", imp<isSubsetOfOrderedSet> },
            { "intersectsSet:", imp<intersectsSet> },
            { "intersectsOrderedSet:", imp<intersectsOrderedSet> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "description", imp<description> },
            { "descriptionWithLocale:", imp<descriptionWithLocale> },
            { "descriptionWithLocale:indent:", imp<descriptionWithLocaleIndent> },
        });
    }
};
BRINDLE_RECORD(NSOrderedSet, Ordered)

template <> struct NSMutableOrderedSet::Methods<struct Changing> {

    // A set without `init` is an empty one.

    static NSMutableArray& order(NSMutableOrderedSet& self)
    {
        if (!self.order_)
            self.order_ = NSMutableArray::cls().array();
        return *self.order_;
    }
    static NSMutableSet& members(NSMutableOrderedSet& self)
    {
        if (!self.members_)
            self.members_ = NSMutableSet::cls().set();
        return *self.members_;
    }

    static void addObject(NSMutableOrderedSet& self, NSObject* object)
    {
        insert(self, object, order(self).count(), "addObject:");
    }
    static void addObjectsFromArray(NSMutableOrderedSet& self, NSArray* array)
    {
        for (const Ref<NSObject>& item : ArrayAccess::copy(array))
            self.addObject(item.get());
    }
    static void insertObject(NSMutableOrderedSet& self, NSObject* object, NSUInteger index)
    {
        insert(self, object, index, "insertObject:atIndex:");
    }
    static void insert(
        NSMutableOrderedSet& self, NSObject* object, NSUInteger index, const char* operation)
    {
        if (!object)
            raiseNil(&self, operation);
        if (index > order(self).count())
            raiseIndex(&self, operation, index, order(self).count());
        if (members(self).containsObject(object))
            return;
        members(self).addObject(object);
        order(self).insertObject_atIndex(object, index);
    }

    static void removeObject(NSMutableOrderedSet& self, NSObject* object)
    {
        const NSUInteger index = self.indexOfObject(object);
        if (index != NSNotFound)
            self.removeObjectAtIndex(index);
    }
    static void removeObjectAtIndex(NSMutableOrderedSet& self, NSUInteger index)
    {
        if (index >= order(self).count())
            raiseIndex(&self, "removeObjectAtIndex:", index, order(self).count());
        const Ref<NSObject> object = order(self).objectAtIndex(index);
        order(self).removeObjectAtIndex(index);
        members(self).removeObject(object.get());
    }
    static void removeObjectsInArray(NSMutableOrderedSet& self, NSArray* array)
    {
        self.minusSet(NSSet::cls().setWithArray(array).get());
    }
    static void removeAll(NSMutableOrderedSet& self)
    {
        order(self).removeAllObjects();
        members(self).removeAllObjects();
    }
    static void replace(NSMutableOrderedSet& self, NSUInteger index, NSObject* object)
    {
        if (!object)
            raiseNil(&self, "replaceObjectAtIndex:withObject:");
        if (index >= order(self).count())
            raiseIndex(&self, "replaceObjectAtIndex:withObject:", index, order(self).count());
        const NSUInteger present = self.indexOfObject(object);
        if (present != NSNotFound && present != index)
            return;
        members(self).removeObject(order(self).objectAtIndex(index).get());
        members(self).addObject(object);
        order(self).replaceObjectAtIndex_withObject(index, object);
    }
    static void exchange(NSMutableOrderedSet& self, NSUInteger index, NSUInteger other)
    {
        order(self).exchangeObjectAtIndex_withObjectAtIndex(index, other);
    }
    static void move(NSMutableOrderedSet& self, NSIndexSet* indexes, NSUInteger index)
    {
        const Ref<NSArray> moved = order(self).objectsAtIndexes(indexes);
        if (index > order(self).count() - moved->count())
            raiseIndex(&self, "moveObjectsAtIndexes:toIndex:", index, order(self).count());
        order(self).removeObjectsAtIndexes(indexes);
        for (NSObject* const object : *moved)
            order(self).insertObject_atIndex(object, index++);
    }

    static void unionSet(NSMutableOrderedSet& self, NSSet* other)
    {
        for (const Ref<NSObject>& item : SetAccess::copy(other))
            self.addObject(item.get());
    }
    static void unionOrderedSet(NSMutableOrderedSet& self, NSOrderedSet* other)
    {
        self.addObjectsFromArray(maybe(other)->array().get());
    }
    /// Keeps only the objects whose presence in the other set is the one wanted.
    static void keep(NSMutableOrderedSet& self, NSSet* other, bool present)
    {
        const Ref<NSSet> alive(other);
        const auto places = make<NSMutableIndexSet>();
        std::vector<Ref<NSObject>> leaving;
        NSUInteger index = 0;
        for (const Ref<NSObject>& item : ArrayAccess::copy(self.order_.get())) {
            if (maybe(other)->containsObject(item.get()) != present) {
                places->addIndex(index);
                leaving.push_back(item);
            }
            ++index;
        }
        order(self).removeObjectsAtIndexes(places.get());
        for (const Ref<NSObject>& item : leaving)
            members(self).removeObject(item.get());
    }
    static void minusSet(NSMutableOrderedSet& self, NSSet* other) { keep(self, other, false); }
    static void minusOrderedSet(NSMutableOrderedSet& self, NSOrderedSet* other)
    {
        keep(self, setOf(other).get(), false);
    }
    static void intersectSet(NSMutableOrderedSet& self, NSSet* other) { keep(self, other, true); }
    static void intersectOrderedSet(NSMutableOrderedSet& self, NSOrderedSet* other)
    {
        keep(self, setOf(other).get(), true);
    }
    static void sort(NSMutableOrderedSet& self, NSComparator::Owned* comparator)
    {
        order(self).sortUsingComparator(NSComparator(comparator));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addObject:", imp<addObject> },
            { "addObjectsFromArray:", imp<addObjectsFromArray> },
            { "insertObject:atIndex:", imp<insertObject> },
            { "removeObject:", imp<removeObject> },
            { "removeObjectAtIndex:", imp<removeObjectAtIndex> },
            { "removeObjectsInArray:", imp<removeObjectsInArray> },
            { "removeAllObjects", imp<removeAll> },
            { "replaceObjectAtIndex:withObject:", imp<replace> },
            { "exchangeObjectAtIndex:withObjectAtIndex:", imp<exchange> },
            { "moveObjectsAtIndexes:toIndex:", imp<move> },
            { "unionSet:", imp<unionSet> },
            { "unionOrderedSet:", imp<unionOrderedSet> },
            { "minusSet:", imp<minusSet> },
            { "minusOrderedSet:", imp<minusOrderedSet> },
            { "intersectSet:", imp<intersectSet> },
            { "intersectOrderedSet:", imp<intersectOrderedSet> },
            { "sortUsingComparator:", imp<sort> },
        });
    }
};
BRINDLE_RECORD(NSMutableOrderedSet, Changing)

}
