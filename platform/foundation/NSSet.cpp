// SPDX-License-Identifier: Apache-2.0
#include "NSSet.h"

#include <cstdarg>

#include "CollectionsPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

bool SetAccess::isDirect(const NSSet& set)
{
    return set.isa_ == classOf<NSSet>() || set.isa_ == classOf<NSMutableSet>();
}

Items SetAccess::copy(const NSSet* set)
{
    Items items;
    if (!set)
        return items;
    if (!isDirect(*set)) {
        const Ref<NSEnumerator> enumerator = set->objectEnumerator();
        while (Ref<NSObject> next = maybe(enumerator)->nextObject())
            items.push_back(std::move(next));
        return items;
    }
    const auto& table = set->table_;
    items.reserve(table.count());
    for (std::size_t at = table.skip(0); at < table.places(); at = table.skip(at + 1))
        items.push_back(table.at(at).key);
    return items;
}

SetIterator::SetIterator(const NSSet* set)
    : set_(set)
    , changes_(set->table_.changes())
{
    if (!SetAccess::isDirect(*set)) {
        snapshot_ = NSSet::cls().setWithArray(makeArray(SetAccess::copy(set)).get());
        set_ = snapshot_.get();
        changes_ = set_->table_.changes();
    }
    place_ = set_->table_.skip(0);
}

NSObject* SetIterator::operator*() const { return set_->table_.at(place_).key.get(); }

SetIterator& SetIterator::operator++()
{
    place_ = set_->table_.skip(place_ + 1);
    return *this;
}

bool SetIterator::operator==(std::default_sentinel_t) const
{
    if (!set_)
        return true;
    if (set_->table_.changes() != changes_)
        raiseMutated(set_);
    return place_ >= set_->table_.places();
}

template <> struct NSSet::Methods<struct Reading> {

    static Ref<NSSet> alloc(Class& self) { return cast<NSSet>(NSObject::Meta { &self }.alloc()); }

    static Ref<NSSet> set(Class& self) { return cast<NSSet>(alloc(self)->init()); }
    static Ref<NSSet> setWithObject(Class& self, NSObject* object)
    {
        return alloc(self)->initWithObjects_count(&object, 1);
    }
    static Ref<NSSet> setWithObjectsCount(Class& self, NSObject* const* objects, NSUInteger count)
    {
        return alloc(self)->initWithObjects_count(objects, count);
    }
    static NSObject* setWithObjects(Class* self, SEL, NSObject* first, ...)
    {
        va_list list;
        va_start(list, first);
        const std::vector<NSObject*> objects = collections::untilNil(first, list);
        va_end(list);
        return alloc(*self)->initWithObjects_count(objects.data(), objects.size()).leak();
    }
    static Ref<NSSet> setWithArray(Class& self, NSArray* array)
    {
        return alloc(self)->initWithArray(array);
    }
    static Ref<NSSet> setWithSet(Class& self, NSSet* other)
    {
        return alloc(self)->initWithSet(other);
    }

    static void addNew(NSSet& self, NSObject* object)
    {
        const std::uint64_t hash = object->hash();
        if (self.table_.find(object, hash) == OrderedTable<TableEntry>::kNowhere)
            self.table_.append({ hash, Ref<NSObject>(object) });
    }
    static Ref<NSSet> initWithObjectsCount(NSSet& self, NSObject* const* objects, NSUInteger count)
    {
        if (!super<NSSet, "init", Ref<NSObject>>(self))
            return nullptr;
        if (count && !objects)
            raiseNil(&self, "initWithObjects:count:", "objects");
        self.table_.reserve(count);
        for (NSUInteger i = 0; i < count; ++i) {
            if (!objects[i])
                raise("NSInvalidArgumentException",
                    placeOf(&self, "initWithObjects:count:")
                        + "attempt to insert nil object from objects[" + std::to_string(i) + "]");
            addNew(self, objects[i]);
        }
        return &self;
    }
    static Ref<NSSet> initWithItems(NSSet& self, const Items& items)
    {
        if (!super<NSSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.table_.reserve(items.size());
        for (const Ref<NSObject>& item : items)
            addNew(self, item.get());
        return &self;
    }
    static Ref<NSSet> initWithArray(NSSet& self, NSArray* array)
    {
        return initWithItems(self, ArrayAccess::copy(array));
    }
    static Ref<NSSet> initWithSet(NSSet& self, NSSet* other)
    {
        if (!other || !SetAccess::isDirect(*other))
            return initWithItems(self, SetAccess::copy(other));
        if (!super<NSSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.table_ = other->table_; // no hashing, no comparing
        return &self;
    }

    static NSUInteger count(NSSet& self) { return self.table_.count(); }
    static Ref<NSObject> member(NSSet& self, NSObject* object)
    {
        const std::size_t place
            = object ? self.table_.find(object) : OrderedTable<TableEntry>::kNowhere;
        return place == OrderedTable<TableEntry>::kNowhere ? nullptr : self.table_.at(place).key;
    }
    static bool containsObject(NSSet& self, NSObject* object)
    {
        if (SetAccess::isDirect(self))
            return object && self.table_.find(object) != OrderedTable<TableEntry>::kNowhere;
        return self.member(object) != nullptr;
    }
    static Ref<NSObject> anyObject(NSSet& self)
    {
        for (NSObject* item : self)
            return item;
        return nullptr;
    }
    static Ref<NSArray> allObjects(NSSet& self) { return makeArray(SetAccess::copy(&self)); }
    static Ref<NSEnumerator> objectEnumerator(NSSet& self)
    {
        // Only this class's own objects: a subclass that keeps them elsewhere overrides the operation.
        const Ref<NSSet> kept(&self);
        return makeEnumerator([kept, place = std::size_t { 0 },
                                  changes = self.table_.changes()]() mutable -> Ref<NSObject> {
            const auto& table = kept->table_;
            if (table.changes() != changes)
                raiseMutated(kept.get());
            place = table.skip(place);
            return place < table.places() ? table.at(place++).key : nullptr;
        });
    }

    static bool isSubsetOfSet(NSSet& self, NSSet* other)
    {
        if (self.count() > maybe(other)->count())
            return false;
        countComparison();
        for (NSObject* item : self) {
            if (!maybe(other)->containsObject(item))
                return false;
        }
        return true;
    }
    static bool isEqualToSet(NSSet& self, NSSet* other)
    {
        if (!other || &self == other)
            return other;
        return self.count() == other->count()
            && compareOnce(self, *other, [&] { return self.isSubsetOfSet(other); });
    }
    static bool intersectsSet(NSSet& self, NSSet* other)
    {
        for (NSObject* item : self) {
            if (maybe(other)->containsObject(item))
                return true;
        }
        return false;
    }
    static bool isEqual(NSSet& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSSet::cls())
            && self.isEqualToSet(static_cast<NSSet*>(other));
    }
    static std::uint64_t hash(NSSet& self)
    {
        return SetAccess::isDirect(self) ? hashOfKeys(self.table_)
                                         : NSSet::cls().setWithSet(&self)->hash();
    }
    static Ref<NSObject> copyWithZone(NSSet& self, void*)
    {
        if (self.isKindOfClass(NSMutableSet::cls()))
            return NSSet::cls().setWithSet(&self);
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSSet& self, void*)
    {
        return NSMutableSet::cls().setWithSet(&self);
    }

    static void enumerate(NSSet& self, Visitor::Owned* lent)
    {
        const Visitor block(lent);
        const Ref<NSSet> alive(&self);
        bool stop = false;
        for (NSObject* item : self) {
            block(item, &stop);
            if (stop)
                return;
        }
    }
    static Ref<NSSet> objectsPassing(NSSet& self, Test::Owned* lent)
    {
        const Test test(lent);
        const Ref<NSSet> alive(&self);
        Items passed;
        bool stop = false;
        for (NSObject* item : self) {
            Ref<NSObject> owner(item);
            if (test(item, &stop))
                passed.push_back(std::move(owner));
            if (stop)
                break;
        }
        return NSSet::cls().setWithArray(makeArray(std::move(passed)).get());
    }
    static void perform(NSSet& self, SEL selector)
    {
        const Ref<NSSet> alive(&self);
        for (NSObject* item : self)
            item->performSelector(selector);
    }
    static void performWithObject(NSSet& self, SEL selector, NSObject* object)
    {
        const Ref<NSSet> alive(&self);
        for (NSObject* item : self)
            item->performSelector_withObject(selector, object);
    }

    static Ref<NSSet> adding(NSSet& self, const Items& items)
    {
        Ref<NSSet> sum = make<NSSet>();
        initWithSet(*sum, &self);
        for (const Ref<NSObject>& item : items)
            addNew(*sum, item.get());
        return sum;
    }
    static Ref<NSSet> setByAddingObject(NSSet& self, NSObject* object)
    {
        if (!object)
            raiseNil(&self, "setByAddingObject:");
        return adding(self, Items { Ref<NSObject>(object) });
    }
    static Ref<NSSet> setByAddingSet(NSSet& self, NSSet* other)
    {
        return adding(self, SetAccess::copy(other));
    }
    static Ref<NSSet> setByAddingArray(NSSet& self, NSArray* other)
    {
        return adding(self, ArrayAccess::copy(other));
    }

    static Ref<NSString> description(NSSet& self)
    {
        return self.descriptionWithLocale_indent(nullptr, 0);
    }
    static Ref<NSString> descriptionWithLocaleIndent(NSSet& self, NSObject*, NSUInteger level)
    {
        return stringFrom(describeList(SetAccess::copy(&self), level, "{(", ")}"));
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying", "NSFastEnumeration" });
        t.classMethods({
            { "set", imp<set> },
            { "setWithObject:", imp<setWithObject> },
            { "setWithObjects:", variadic<setWithObjects> },
            { "setWithObjects:count:", imp<setWithObjectsCount> },
            { "setWithArray:", imp<setWithArray> },
            { "setWithSet:", imp<setWithSet> },
        });
        t.methods({
            { "initWithObjects:count:", imp<initWithObjectsCount> },
            { "initWithArray:", imp<initWithArray> },
            { "initWithSet:", imp<initWithSet> },
            { "count", imp<count> },
            { "member:", imp<member> },
            { "containsObject:", imp<containsObject> },
            { "anyObject", imp<anyObject> },
            { "allObjects", imp<allObjects> },
            { "objectEnumerator", imp<objectEnumerator> },
            { "isSubsetOfSet:", imp<isSubsetOfSet> },
            { "isEqualToSet:", imp<isEqualToSet> },
            { "intersectsSet:", imp<intersectsSet> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "enumerateObjectsUsingBlock:", imp<enumerate> },
            { "objectsPassingTest:", imp<objectsPassing> },
            { "makeObjectsPerformSelector:", imp<perform> },
            { "makeObjectsPerformSelector:withObject:", imp<performWithObject> },
            { "setByAddingObject:", imp<setByAddingObject> },
            { "setByAddingObjectsFromSet:", imp<setByAddingSet> },
            { "setByAddingObjectsFromArray:", imp<setByAddingArray> },
            { "description", imp<description> },
            { "descriptionWithLocale:indent:", imp<descriptionWithLocaleIndent> },
        });
    }
};
BRINDLE_RECORD(NSSet, Reading)

template <> struct NSMutableSet::Methods<struct Changing> {

    static Ref<NSMutableSet> setWithCapacity(Class& self, NSUInteger capacity)
    {
        return cast<NSMutableSet>(NSObject::Meta { &self }.alloc())->initWithCapacity(capacity);
    }
    static Ref<NSMutableSet> initWithCapacity(NSMutableSet& self, NSUInteger capacity)
    {
        if (!super<NSMutableSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.table_.reserve(capacity);
        return &self;
    }

    static void add(NSMutableSet& self, NSObject* object)
    {
        if (!object)
            raiseNil(&self, "addObject:");
        const std::uint64_t hash = object->hash();
        if (self.table_.find(object, hash) == OrderedTable<TableEntry>::kNowhere)
            self.table_.append({ hash, Ref<NSObject>(object) });
    }
    static void remove(NSMutableSet& self, NSObject* object)
    {
        if (!object)
            return;
        const std::size_t place = self.table_.find(object);
        if (place != OrderedTable<TableEntry>::kNowhere)
            static_cast<void>(self.table_.take(place)); // ends here, with the set in order
    }
    static void addAll(NSMutableSet& self, const Items& items)
    {
        for (const Ref<NSObject>& item : items)
            self.addObject(item.get());
    }
    static void removeAllOf(NSMutableSet& self, const Items& items)
    {
        for (const Ref<NSObject>& item : items)
            self.removeObject(item.get());
    }
    static void addFromArray(NSMutableSet& self, NSArray* array)
    {
        addAll(self, ArrayAccess::copy(array));
    }
    static void removeAll(NSMutableSet& self)
    {
        if (SetAccess::isDirect(self))
            static_cast<void>(self.table_.takeAll());
        else
            removeAllOf(self, SetAccess::copy(&self));
    }
    static void unionSet(NSMutableSet& self, NSSet* other) { addAll(self, SetAccess::copy(other)); }
    static void minusSet(NSMutableSet& self, NSSet* other)
    {
        removeAllOf(self, SetAccess::copy(other));
    }
    static void intersectSet(NSMutableSet& self, NSSet* other)
    {
        for (const Ref<NSObject>& item : SetAccess::copy(&self)) {
            if (!maybe(other)->containsObject(item.get()))
                self.removeObject(item.get());
        }
    }
    static void setSet(NSMutableSet& self, NSSet* other)
    {
        const Items items = SetAccess::copy(other);
        self.removeAllObjects();
        addAll(self, items);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "setWithCapacity:", imp<setWithCapacity> } });
        t.methods({
            { "initWithCapacity:", imp<initWithCapacity> },
            { "addObject:", imp<add> },
            { "addObjectsFromArray:", imp<addFromArray> },
            { "removeObject:", imp<remove> },
            { "removeAllObjects", imp<removeAll> },
            { "unionSet:", imp<unionSet> },
            { "minusSet:", imp<minusSet> },
            { "intersectSet:", imp<intersectSet> },
            { "setSet:", imp<setSet> },
        });
    }
};
BRINDLE_RECORD(NSMutableSet, Changing)

}
