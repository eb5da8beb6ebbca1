// SPDX-License-Identifier: Apache-2.0
#include "NSDictionary.h"

#include <cstdarg>

#include "CollectionsPrivate.h"
#include "NSMutableDictionary.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

constexpr std::size_t kNowhere = OrderedTable<PairEntry>::kNowhere;

// ---- the way to the entries

bool DictionaryAccess::isDirect(const NSDictionary& dictionary)
{
    return dictionary.isa_ == classOf<NSDictionary>()
        || dictionary.isa_ == classOf<NSMutableDictionary>();
}

void DictionaryAccess::set(NSDictionary& dictionary, NSObject* object, const NSObject* key)
{
    if (!key)
        raise("NSInvalidArgumentException", "*** setObjectForKey: key cannot be nil");
    if (!object)
        raise("NSInvalidArgumentException",
            "*** setObjectForKey: object cannot be nil (key: " + utf8Of(key->description()) + ")");
    OrderedTable<PairEntry>& table = dictionary.table_;
    const std::uint64_t hash = key->hash();
    std::size_t place = table.find(key, hash);
    if (place == kNowhere) {
        const std::uint64_t changes = table.changes();
        Ref<NSObject> copy = copyOf(key);
        if (!copy)
            raise("NSInvalidArgumentException", "*** setObjectForKey: key cannot be nil");
        if (table.changes() == changes) {
            PairEntry entry;
            entry.hash = hash;
            entry.key = std::move(copy);
            entry.value = Ref<NSObject>(object);
            table.append(std::move(entry));
            return;
        }
        raiseChangedWhileSearching();
    }
    table.noteChange();
    const Ref<NSObject> gone = std::exchange(table.at(place).value, Ref<NSObject>(object));
}

DictionaryIterator::DictionaryIterator(const NSDictionary* dictionary)
    : dictionary_(dictionary)
    , changes_(dictionary->table_.changes())
{
    if (!DictionaryAccess::isDirect(*dictionary)) {
        snapshot_ = NSDictionary::cls().dictionaryWithDictionary(dictionary);
        dictionary_ = snapshot_.get();
        changes_ = dictionary_->table_.changes();
    }
    place_ = dictionary_->table_.skip(0);
}

NSObject* DictionaryIterator::operator*() const { return dictionary_->table_.at(place_).key.get(); }

NSObject* DictionaryIterator::value() const { return dictionary_->table_.at(place_).value.get(); }

DictionaryIterator& DictionaryIterator::operator++()
{
    place_ = dictionary_->table_.skip(place_ + 1);
    return *this;
}

bool DictionaryIterator::operator==(std::default_sentinel_t) const
{
    if (!dictionary_)
        return true;
    if (dictionary_->table_.changes() != changes_)
        raiseMutated(dictionary_);
    return place_ >= dictionary_->table_.places();
}

Ref<NSDictionary> makeDictionary(
    std::initializer_list<std::pair<NSObject*, NSObject*>> keysAndValues)
{
    Ref<NSDictionary> dictionary = make<NSDictionary>();
    DictionaryAccess::table(*dictionary).reserve(keysAndValues.size());
    for (const auto& [key, value] : keysAndValues)
        DictionaryAccess::set(*dictionary, value, key);
    return dictionary;
}

// ---- making and reading

template <> struct NSDictionary::Methods<struct Reading> {

    static Ref<NSDictionary> alloc(Class& self)
    {
        return cast<NSDictionary>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSDictionary> dictionary(Class& self)
    {
        return cast<NSDictionary>(alloc(self)->init());
    }
    static Ref<NSDictionary> dictionaryWithObjectForKey(
        Class& self, NSObject* object, NSObject* key)
    {
        return alloc(self)->initWithObjects_forKeys_count(&object, &key, 1);
    }
    static Ref<NSDictionary> dictionaryWithObjectsForKeys(
        Class& self, NSArray* objects, NSArray* keys)
    {
        return alloc(self)->initWithObjects_forKeys(objects, keys);
    }
    static Ref<NSDictionary> dictionaryWithObjectsForKeysCount(
        Class& self, NSObject* const* objects, NSObject* const* keys, NSUInteger count)
    {
        return alloc(self)->initWithObjects_forKeys_count(objects, keys, count);
    }
    static NSObject* dictionaryWithObjectsAndKeys(Class* self, SEL, NSObject* first, ...)
    {
        std::vector<NSObject*> objects;
        std::vector<NSObject*> keys;
        va_list list;
        va_start(list, first);
        for (NSObject* object = first; object; object = va_arg(list, NSObject*)) {
            objects.push_back(object);
            keys.push_back(va_arg(list, NSObject*));
            if (!keys.back())
                break; // a list of odd length: there is nothing behind its nil
        }
        va_end(list);
        return alloc(*self)
            ->initWithObjects_forKeys_count(objects.data(), keys.data(), keys.size())
            .leak();
    }
    static Ref<NSDictionary> dictionaryWithDictionary(Class& self, NSDictionary* other)
    {
        return alloc(self)->initWithDictionary(other);
    }

    static Ref<NSDictionary> initWithObjectsForKeysCount(
        NSDictionary& self, NSObject* const* objects, NSObject* const* keys, NSUInteger count)
    {
        if (!super<NSDictionary, "init", Ref<NSObject>>(self))
            return nullptr;
        if (count && !(objects && keys))
            raiseNil(&self, "initWithObjects:forKeys:count:", objects ? "keys" : "objects");
        self.table_.reserve(count);
        for (NSUInteger i = 0; i < count; ++i)
            DictionaryAccess::set(self, objects[i], keys[i]);
        return &self;
    }
    static Ref<NSDictionary> initWithObjectsForKeys(
        NSDictionary& self, NSArray* objects, NSArray* keys)
    {
        const Items values = ArrayAccess::copy(objects);
        const Items names = ArrayAccess::copy(keys);
        if (values.size() != names.size())
            raise("NSInvalidArgumentException",
                placeOf(&self, "initWithObjects:forKeys:") + "count of objects ("
                    + std::to_string(values.size()) + ") differs from count of keys ("
                    + std::to_string(names.size()) + ")");
        if (!super<NSDictionary, "init", Ref<NSObject>>(self))
            return nullptr;
        self.table_.reserve(values.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            DictionaryAccess::set(self, values[i].get(), names[i].get());
        return &self;
    }
    static Ref<NSDictionary> initWithDictionary(NSDictionary& self, NSDictionary* other)
    {
        if (!super<NSDictionary, "init", Ref<NSObject>>(self))
            return nullptr;
        if (!other)
            return &self;
        if (DictionaryAccess::isDirect(*other)) {
            self.table_ = other->table_; // no hashing, no comparing, no copies of keys
            return &self;
        }
        const Ref<NSEnumerator> keys = other->keyEnumerator();
        while (const Ref<NSObject> key = maybe(keys)->nextObject())
            DictionaryAccess::set(self, other->objectForKey(key.get()).get(), key.get());
        return &self;
    }
    static Ref<NSDictionary> initWithDictionaryCopyItems(
        NSDictionary& self, NSDictionary* other, bool copyItems)
    {
        const Ref<NSDictionary> made = initWithDictionary(self, other);
        if (!made || !copyItems)
            return made;
        for (std::size_t at = self.table_.skip(0); at < self.table_.places();
             at = self.table_.skip(at + 1)) {
            Ref<NSObject> copy = copyOf(self.table_.at(at).value.get());
            if (!copy)
                raiseNil(&self, "initWithDictionary:copyItems:", "the copy of an object");
            self.table_.at(at).value = std::move(copy);
        }
        return made;
    }

    static NSUInteger count(NSDictionary& self) { return self.table_.count(); }
    static Ref<NSObject> objectForKey(NSDictionary& self, NSObject* key)
    {
        const std::size_t place = key ? self.table_.find(key) : kNowhere;
        return place == kNowhere ? nullptr : self.table_.at(place).value;
    }
    static Ref<NSObject> objectForKeyedSubscript(NSDictionary& self, NSObject* key)
    {
        return self.objectForKey(key);
    }
    /// Key-value access reads entries; behind an "@" it asks the dictionary itself: "@count".
    static Ref<NSObject> valueForKey(NSDictionary& self, NSString* key)
    {
        Ref<NSObject> value = self.objectForKey(key);
        if (value || !maybe(key)->hasPrefix("@"_ns))
            return value;
        return super<NSDictionary, "valueForKey:", Ref<NSObject>>(
            self, key->substringFromIndex(1).get());
    }

    static Items collect(NSDictionary& self, bool values)
    {
        Items items;
        items.reserve(self.count());
        for (DictionaryIterator at(&self); !(at == std::default_sentinel); ++at)
            items.emplace_back(values ? at.value() : *at);
        return items;
    }
    static Ref<NSArray> allKeys(NSDictionary& self) { return makeArray(collect(self, false)); }
    static Ref<NSArray> allValues(NSDictionary& self) { return makeArray(collect(self, true)); }
    static Ref<NSArray> objectsForKeys(NSDictionary& self, NSArray* keys, NSObject* marker)
    {
        Items found;
        for (const Ref<NSObject>& key : ArrayAccess::copy(keys)) {
            Ref<NSObject> value = self.objectForKey(key.get());
            if (!value && !marker)
                raiseNil(&self, "objectsForKeys:notFoundMarker:", "marker");
            found.push_back(value ? std::move(value) : Ref<NSObject>(marker));
        }
        return makeArray(std::move(found));
    }

    static Ref<NSEnumerator> enumerator(NSDictionary& self, bool values)
    {
        const Ref<NSDictionary> kept(&self);
        return makeEnumerator([kept, values, place = std::size_t { 0 },
                                  changes = self.table_.changes()]() mutable -> Ref<NSObject> {
            const auto& table = kept->table_;
            if (table.changes() != changes)
                raiseMutated(kept.get());
            place = table.skip(place);
            if (place >= table.places())
                return nullptr;
            const PairEntry& entry = table.at(place++);
            return values ? entry.value : entry.key;
        });
    }
    static Ref<NSEnumerator> keyEnumerator(NSDictionary& self) { return enumerator(self, false); }
    static Ref<NSEnumerator> objectEnumerator(NSDictionary& self)
    {
        if (DictionaryAccess::isDirect(self))
            return enumerator(self, true);
        return self.allValues()->objectEnumerator();
    }

    static Ref<NSObject> copyWithZone(NSDictionary& self, void*)
    {
        if (self.isKindOfClass(NSMutableDictionary::cls()))
            return NSDictionary::cls().dictionaryWithDictionary(&self);
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSDictionary& self, void*)
    {
        return NSMutableDictionary::cls().dictionaryWithDictionary(&self);
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying", "NSFastEnumeration" });
        t.classMethods({
            { "dictionary", imp<dictionary> },
            { "dictionaryWithObject:forKey:", imp<dictionaryWithObjectForKey> },
            { "dictionaryWithObjects:forKeys:", imp<dictionaryWithObjectsForKeys> },
            { "dictionaryWithObjects:forKeys:count:", imp<dictionaryWithObjectsForKeysCount> },
            { "dictionaryWithObjectsAndKeys:", variadic<dictionaryWithObjectsAndKeys> },
            { "dictionaryWithDictionary:", imp<dictionaryWithDictionary> },
        });
        t.methods({
            { "initWithObjects:forKeys:count:", imp<initWithObjectsForKeysCount> },
            { "initWithObjects:forKeys:", imp<initWithObjectsForKeys> },
            { "initWithDictionary:", imp<initWithDictionary> },
            { "initWithDictionary:copyItems:", imp<initWithDictionaryCopyItems> },
            { "count", imp<count> },
            { "objectForKey:", imp<objectForKey> },
            { "objectForKeyedSubscript:", imp<objectForKeyedSubscript> },
            { "valueForKey:", imp<valueForKey> },
            { "allKeys", imp<allKeys> },
            { "allValues", imp<allValues> },
            { "objectsForKeys:notFoundMarker:", imp<objectsForKeys> },
            { "keyEnumerator", imp<keyEnumerator> },
            { "objectEnumerator", imp<objectEnumerator> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSDictionary, Reading)

}
