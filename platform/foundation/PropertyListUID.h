// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

/// A reference of a keyed archive as it stands in a property list: the index of another object. A value; copying
/// answers the receiver, and equal indexes make equal objects.
///
/// In a binary list it has a form of its own, in XML it is a dictionary with the one key "CF$UID".
/// Thread: any.
class PropertyListUID : public NSObject {
    BRINDLE_OBJECT(PropertyListUID, NSObject)

public:
    Ref<PropertyListUID> initWithUnsignedInteger(NSUInteger value)
    {
        return send<"initWithUnsignedInteger:", Ref<PropertyListUID>>(value);
    }
    NSUInteger unsignedIntegerValue() const { return send<"unsignedIntegerValue", NSUInteger>(); }
    /// Answers "{value = 12}".
    Ref<NSString> description() const { return send<"description", Ref<NSString>>(); }

private:
    NSUInteger value_ = 0;
};

inline Ref<PropertyListUID> makeUID(NSUInteger value)
{
    return alloc<PropertyListUID>()->initWithUnsignedInteger(value);
}

}
