// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSString.h"

/// Questions about the properties that a class declares. Every one may be asked of a class and of an object, which asks
/// its class. An unknown name answers NO, nil or nullptr.

namespace brindle {

/// Answers whether the class itself, not an ancestor, declares a property.
inline bool hasProperties(To<NSObject> object) { return object.send<"hasProperties", bool>(); }
/// Ancestors are searched too.
inline bool hasPropertyNamed(To<NSObject> object, NSString* name)
{
    return object.send<"hasPropertyNamed:", bool>(name);
}
/// - type: as `typeOfPropertyNamed` answers it, the "T" included.
inline bool hasPropertyNamed_ofType(To<NSObject> object, NSString* name, const char* type)
{
    return object.send<"hasPropertyNamed:ofType:", bool>(name, type);
}
/// Answers whether there is a property of the key's name, as it is or in property style: "Title" finds "title".
/// - Raises: `NSRangeException` for the empty key.
inline bool hasPropertyForKVCKey(To<NSObject> object, NSString* key)
{
    return object.send<"hasPropertyForKVCKey:", bool>(key);
}
/// Answers the type as `property_getTypeString` does, in the buffer that the next call overwrites.
inline const char* typeOfPropertyNamed(To<NSObject> object, NSString* name)
{
    return object.send<"typeOfPropertyNamed:", const char*>(name);
}
/// Answers the selector of the property's name; the zero one where the property names another getter.
/// - Raises: `NSInternalInconsistencyException` "Class has property 'name' with no custom getter, but does not respond
///   to the default getter".
inline SEL getterForPropertyNamed(To<NSObject> object, NSString* name)
{
    return object.send<"getterForPropertyNamed:", SEL>(name);
}
/// Answers the setter that the property names, else the selector "setName", without a colon.
/// - Raises: `NSInternalInconsistencyException` "Class has property 'setName' with no custom setter, but does not respond
///   to the default setter".
inline SEL setterForPropertyNamed(To<NSObject> object, NSString* name)
{
    return object.send<"setterForPropertyNamed:", SEL>(name);
}
/// Answers "retain", "copy" or "assign". Ask only where `property_getRetentionMethod` returns.
inline Ref<NSString> retentionMethodOfPropertyNamed(To<NSObject> object, NSString* name)
{
    return object.send<"retentionMethodOfPropertyNamed:", Ref<NSString>>(name);
}
/// Answers the names of the properties that the class itself declares, in their order; nil when there are none.
inline Ref<NSArray> propertyNames(To<NSObject> object)
{
    return object.send<"propertyNames", Ref<NSArray>>();
}

}
