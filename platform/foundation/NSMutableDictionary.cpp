// SPDX-License-Identifier: Apache-2.0
#include "NSMutableDictionary.h"

#include "CollectionsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using namespace collections;

template <> struct NSMutableDictionary::Methods<struct Changing> {

    static Ref<NSMutableDictionary> dictionaryWithCapacity(Class& self, NSUInteger capacity)
    {
        return cast<NSMutableDictionary>(NSObject::Meta { &self }.alloc())
            ->initWithCapacity(capacity);
    }
    static Ref<NSMutableDictionary> initWithCapacity(NSMutableDictionary& self, NSUInteger capacity)
    {
        if (!super<NSMutableDictionary, "init", Ref<NSObject>>(self))
            return nullptr;
        self.table_.reserve(capacity);
        return &self;
    }

    static void set(NSMutableDictionary& self, NSObject* object, NSObject* key)
    {
        DictionaryAccess::set(self, object, key);
    }
    static void setSubscript(NSMutableDictionary& self, NSObject* object, NSObject* key)
    {
        if (object)
            self.setObject_forKey(object, key);
        else
            self.removeObjectForKey(key);
    }
    /// Key-value access writes entries.
    static void setValue(NSMutableDictionary& self, NSObject* value, NSString* key)
    {
        setSubscript(self, value, key);
    }
    static void remove(NSMutableDictionary& self, NSObject* key)
    {
        if (!key)
            raiseNil(&self, "removeObjectForKey:", "key");
        const std::size_t place = self.table_.find(key);
        if (place != OrderedTable<PairEntry>::kNowhere)
            static_cast<void>(self.table_.take(place)); // ends here, with the dictionary in order
    }
    static void removeForKeys(NSMutableDictionary& self, NSArray* keys)
    {
        for (const Ref<NSObject>& key : ArrayAccess::copy(keys))
            self.removeObjectForKey(key.get());
    }
    static void removeAll(NSMutableDictionary& self)
    {
        if (DictionaryAccess::isDirect(self))
            static_cast<void>(self.table_.takeAll());
        else
            removeForKeys(self, self.allKeys().get());
    }
    static void addEntries(NSMutableDictionary& self, NSDictionary* other)
    {
        if (!other || other == &self)
            return;
        const Ref<NSDictionary> alive(other);
        for (DictionaryIterator at(other); !(at == std::default_sentinel); ++at)
            self.setObject_forKey(at.value(), *at);
    }
    static void setDictionary(NSMutableDictionary& self, NSDictionary* other)
    {
        if (other == &self)
            return;
        self.removeAllObjects();
        self.addEntriesFromDictionary(other);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "dictionaryWithCapacity:", imp<dictionaryWithCapacity> } });
        t.methods({
            { "initWithCapacity:", imp<initWithCapacity> },
            { "setObject:forKey:", imp<set> },
            { "setObject:forKeyedSubscript:", imp<setSubscript> },
            { "setValue:forKey:", imp<setValue> },
            { "removeObjectForKey:", imp<remove> },
            { "removeObjectsForKeys:", imp<removeForKeys> },
            { "removeAllObjects", imp<removeAll> },
            { "addEntriesFromDictionary:", imp<addEntries> },
            { "setDictionary:", imp<setDictionary> },
        });
    }
};
BRINDLE_RECORD(NSMutableDictionary, Changing)

}
