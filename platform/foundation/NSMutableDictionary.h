// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDictionary.h"

namespace brindle {

/// A dictionary that can be changed.
///
/// A subclass that keeps its entries in its own way overrides the three operations of `NSDictionary` and
/// `setObject:forKey:` and `removeObjectForKey:`. Any change, a new value for an old key too, ends the loops that run over
/// the dictionary with `NSGenericException`.
/// Thread: one at a time.
class NSMutableDictionary : public NSDictionary {
    BRINDLE_OBJECT(NSMutableDictionary, NSDictionary)

public:
    struct Meta : NSDictionary::Meta {
        Ref<NSMutableDictionary> dictionary() const
        {
            return send<"dictionary", Ref<NSMutableDictionary>>();
        }
        Ref<NSMutableDictionary> dictionaryWithCapacity(NSUInteger capacity) const
        {
            return send<"dictionaryWithCapacity:", Ref<NSMutableDictionary>>(capacity);
        }
        Ref<NSMutableDictionary> dictionaryWithObject_forKey(NSObject* item, NSObject* key) const
        {
            return send<"dictionaryWithObject:forKey:", Ref<NSMutableDictionary>>(item, key);
        }
        Ref<NSMutableDictionary> dictionaryWithObjects_forKeys(
            const NSArray* objects, const NSArray* keys) const
        {
            return send<"dictionaryWithObjects:forKeys:", Ref<NSMutableDictionary>>(objects, keys);
        }
        template <class... A>
        Ref<NSMutableDictionary> dictionaryWithObjectsAndKeys(A... pairs) const
        {
            return cast<NSMutableDictionary>(
                NSDictionary::Meta::dictionaryWithObjectsAndKeys(pairs...));
        }
        Ref<NSMutableDictionary> dictionaryWithDictionary(const NSDictionary* other) const
        {
            return send<"dictionaryWithDictionary:", Ref<NSMutableDictionary>>(other);
        }
    };

    /// The capacity is a hint.
    Ref<NSMutableDictionary> initWithCapacity(NSUInteger capacity)
    {
        return send<"initWithCapacity:", Ref<NSMutableDictionary>>(capacity);
    }
    /// Adds an entry, or gives the entry of an equal key another value; then the old key stays.
    void setObject_forKey(NSObject* object, const NSObject* key)
    {
        send<"setObject:forKey:">(object, key);
    }
    /// The same, except that a nil object removes the entry.
    void setObject_forKeyedSubscript(NSObject* object, const NSObject* key)
    {
        send<"setObject:forKeyedSubscript:">(object, key);
    }
    /// - Raises: `NSInvalidArgumentException` for a nil key; nothing for one that is not there.
    void removeObjectForKey(const NSObject* key) { send<"removeObjectForKey:">(key); }
    void removeObjectsForKeys(const NSArray* keys) { send<"removeObjectsForKeys:">(keys); }
    void removeAllObjects() { send<"removeAllObjects">(); }
    /// Adds the other dictionary's entries; they win over the receiver's own.
    void addEntriesFromDictionary(const NSDictionary* other)
    {
        send<"addEntriesFromDictionary:">(other);
    }
    void setDictionary(const NSDictionary* other) { send<"setDictionary:">(other); }
};

}
