// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle {

/// Answers the type of a property as `typeOfPropertyNamed` does, as a string object.
/// - Raises: `NSInvalidArgumentException` for an unknown name.
inline Ref<NSString> propertyTypeOfProperty(To<NSObject> object, NSString* name)
{
    return object.send<"propertyTypeOfProperty:", Ref<NSString>>(name);
}
/// Answers whether the name of the class stands in the property's type: a property of `NSArrayController` counts as one
/// of `NSArray`.
/// - Raises: `NSInvalidArgumentException` for an unknown name.
inline bool property_isOfClass(To<NSObject> object, NSString* name, Class* cls)
{
    return object.send<"property:isOfClass:", bool>(name, cls);
}

}
