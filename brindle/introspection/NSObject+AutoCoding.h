// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSCoder.h"
#include "foundation/NSString.h"

/// Every object archives itself: what it writes and reads follows from the properties that its classes declare.
///
/// A property is codable when it is backed by a field and its type is a number (unsigned 64-bit ones excepted), a boolean,
/// a structure or an object of a named class; a read-only one only when its field is called as the property is, or so with
/// "_" before it. Closures, plain `NSObject` fields, classes, selectors and pointers are not codable. Values are read and
/// written by their keys, so that accessors and overrides of `valueForKey:` and `setValue:forKey:` take effect.
///
/// Loading this also makes every object answer `copyWithZone:`: nil where its class does not copy.

namespace brindle {

class NSArray;
class NSDictionary;

/// Of a class: the codable properties that it declares itself, with the class that a decoded value must be. Of an object:
/// those of all its classes; of two of one name the one nearest the root counts.
/// - Shape: name (NSString): class object. Numbers are `NSNumber`, structures `NSValue`; a class that nobody declared
///   reads `NSObject`. Both are made once for a class.
inline Ref<NSDictionary> codableProperties(To<NSObject> object)
{
    return object.send<"codableProperties", Ref<NSDictionary>>();
}
/// Answers the names of properties of the class itself that are left out; a class overrides it. The root answers nil.
inline Ref<NSArray> uncodableProperties(To<Class> cls)
{
    return cls.send<"uncodableProperties", Ref<NSArray>>();
}
/// Answers whether decoded values must be of the expected class; YES unless a class says otherwise.
inline bool supportsSecureCoding(To<Class> cls) { return cls.send<"supportsSecureCoding", bool>(); }

/// Answers all codable properties with their values; `NSNull` stands for nil.
inline Ref<NSDictionary> dictionaryRepresentation(To<NSObject> object)
{
    return object.send<"dictionaryRepresentation", Ref<NSDictionary>>();
}
/// Reads every codable property for which the coder has a value; the others stay as they are.
/// - Raises: "AutocodingException" "Expected 'name' to be a NSString, but was actually a NSNumber" when the class supports
///   secure coding. Properties before that one have their new values; where the coder can tell, nothing of the
///   unexpected object was built.
inline void setWithCoder(To<NSObject> object, NSCoder* coder)
{
    object.send<"setWithCoder:">(coder);
}
/// Sends `setWithCoder:` and answers the receiver; no other initialiser runs.
inline Ref<NSObject> initWithCoder(To<NSObject> object, NSCoder* coder)
{
    return object.send<"initWithCoder:", Ref<NSObject>>(coder);
}
/// Writes every codable property that is not nil.
inline void encodeWithCoder(To<NSObject> object, NSCoder* coder)
{
    object.send<"encodeWithCoder:">(coder);
}

/// Archives the receiver into a file; NO when it could not be written.
inline bool writeToFile_atomically(To<NSObject> object, NSString* path, bool atomically)
{
    return object.send<"writeToFile:atomically:", bool>(path, atomically);
}
/// Answers what a file holds: the object of an archive, else a property list, else its bytes as `NSData`; nil when it
/// cannot be read.
inline Ref<NSObject> objectWithContentsOfFile(To<Class> cls, NSString* path)
{
    return cls.send<"objectWithContentsOfFile:", Ref<NSObject>>(path);
}

}
