// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Exceptions.h"
#include "NSString.h"

/// Properties by name, on every object.
///
/// Reading a key sends the first of `getKey`, `key`, `isKey` and `_key` that the class has, else reads the first of the
/// fields `_key`, `_isKey`, `key` and `isKey`. Writing sends `setKey:`, `_setKey:` or `setIsKey:`, else writes those
/// fields. The first letter of the key is upper-cased inside those names.
/// Numbers and booleans cross as `NSNumber` of their own kind, structures and pointers as `NSValue`. Writing
/// a number asks the value for `doubleValue`, `intValue` and the like, so text that reads as a number will do.
/// Arrays and sets read and write the key of each element, dictionaries their entries.
/// Cost: a class remembers what a key led to until a method is added or exchanged somewhere.

namespace brindle {

class NSArray;
class NSDictionary;
class NSError;
class NSMutableArray;

/// - Raises: what `valueForUndefinedKey:` does for a key that leads to nothing.
inline Ref<NSObject> valueForKey(To<NSObject> object, NSString* key)
{
    return object.send<"valueForKey:", Ref<NSObject>>(key);
}
/// - Nil: a nil value for an object property sets nil; for any other it sends `setNilValueForKey:`.
/// - Raises: what `setValue:forUndefinedKey:` does for a key that leads to nothing; `NSInvalidArgumentException` when
///   the value cannot be turned into the property's type.
inline void setValue_forKey(To<NSObject> object, NSObject* value, NSString* key)
{
    object.send<"setValue:forKey:">(value, key);
}

/// Follows keys with points between them; a nil on the way answers nil.
///
/// An array or a set on the way answers for its elements, and understands the operators `@count`, `@sum`, `@avg`, `@min`,
/// `@max`, `@unionOfObjects`, `@distinctUnionOfObjects`, `@unionOfArrays`, `@distinctUnionOfArrays` and
/// `@distinctUnionOfSets`, each followed by the path it works on: "rooms.@sum.area". Sums and averages are doubles,
/// those of nothing are 0; objects that are nil are left out.
/// - Raises: `NSInvalidArgumentException` for an operator it does not know, and for collections nested more than 512 deep.
inline Ref<NSObject> valueForKeyPath(To<NSObject> object, NSString* path)
{
    return object.send<"valueForKeyPath:", Ref<NSObject>>(path);
}
inline void setValue_forKeyPath(To<NSObject> object, NSObject* value, NSString* path)
{
    object.send<"setValue:forKeyPath:">(value, path);
}

/// Answers the values of several keys; `NSNull` stands for nil.
inline Ref<NSDictionary> dictionaryWithValuesForKeys(To<NSObject> object, NSArray* keys)
{
    return object.send<"dictionaryWithValuesForKeys:", Ref<NSDictionary>>(keys);
}
/// Writes every entry; `NSNull` sets nil.
inline void setValuesForKeysWithDictionary(To<NSObject> object, NSDictionary* values)
{
    object.send<"setValuesForKeysWithDictionary:">(values);
}

/// Answers an array that reads and writes the array behind a key.
///
/// Changes go through `insertObject:inKeyAtIndex:` and `removeObjectFromKeyAtIndex:` where the object has both; otherwise
/// a changed array is set as the key's new value.
inline Ref<NSMutableArray> mutableArrayValueForKey(To<NSObject> object, NSString* key)
{
    return object.send<"mutableArrayValueForKey:", Ref<NSMutableArray>>(key);
}

/// Asks `validateKey:error:` whether a value may be set, which may put another in its place; YES where the class has
/// no such operation.
/// - error: receives why not; may be nullptr.
inline bool validateValue_forKey_error(
    To<NSObject> object, Ref<NSObject>* value, NSString* key, Ref<NSError>* error)
{
    return object.send<"validateValue:forKey:error:", bool>(value, key, error);
}

/// What happens for keys that lead to nothing, and for nil where a number is wanted; classes override them.
/// - Raises: `NSUndefinedKeyException` "[<Class 0x…> valueForUndefinedKey:]: this class is not key value
///   coding-compliant for the key k."
inline Ref<NSObject> valueForUndefinedKey(To<NSObject> object, NSString* key)
{
    return object.send<"valueForUndefinedKey:", Ref<NSObject>>(key);
}
inline void setValue_forUndefinedKey(To<NSObject> object, NSObject* value, NSString* key)
{
    object.send<"setValue:forUndefinedKey:">(value, key);
}
/// - Raises: `NSInvalidArgumentException` "[<Class 0x…> setNilValueForKey]: could not set nil as the value for the key
///   k."
inline void setNilValueForKey(To<NSObject> object, NSString* key)
{
    object.send<"setNilValueForKey:">(key);
}
/// Answers whether fields may be read and written where there is no accessor; YES unless a class says otherwise.
inline bool accessInstanceVariablesDirectly(To<Class> cls)
{
    return cls.send<"accessInstanceVariablesDirectly", bool>();
}

namespace keyvalue {

    /// The operation that answers a key's value without an object round it.
    struct Getter {
        IMP imp = nullptr;
        SEL sel;
    };
    /// Answers no operation when there is none of just this type, or the class reads keys in its own way.
    BRINDLE_EXPORT Getter findGetter(
        const NSObject* object, const NSString* key, std::string_view encoding);
    /// Takes the value out of an object, zero where it is of another type.
    BRINDLE_EXPORT void unbox(const NSObject* boxed, const char* encoding, void* value);

}

/// Reads a number or a structure by name without an object round it: `valueForKeyAs<double>(object, "width"_ns)`.
///
/// Another type than the property's own is converted as `NSNumber` does it; a nil object reads zero.
template <class T> T valueForKeyAs(NSObject* object, NSString* key)
{
    const keyvalue::Getter getter = keyvalue::findGetter(object, key, encodingOf<T>.view());
    if (getter.imp)
        return reinterpret_cast<T (*)(NSObject*, SEL)>(getter.imp)(object, getter.sel);
    T value {};
    keyvalue::unbox(valueForKey(object, key).get(), encodingOf<T>.text, &value);
    return value;
}

}
