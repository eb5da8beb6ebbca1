// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "runtime/Runtime.h"

namespace brindle {

/// Declares properties whose attribute strings differ in what is asked about.
class PropertyHost : public NSObject {
    BRINDLE_OBJECT(PropertyHost, NSObject)

public:
    Ref<NSString> title_;
    Ref<NSString> copiedTitle_;
    Block<void()> code_;
    int count_ = 0;
    unsigned char byte_ = 0;
    bool on_ = false;
    Ref<NSArray> controller_;
    Ref<NSArray> shouted_;
};

/// Declares nothing itself.
class PlainPropertyHost : public PropertyHost {
    BRINDLE_OBJECT(PlainPropertyHost, PropertyHost)
};

/// Answers the property of a class.
inline objc_property_t propertyOf(Class* cls, const char* name)
{
    return class_getProperty(cls, name);
}

/// Declares a property with these attributes on a class made for it, and answers it.
objc_property_t propertyWith(const char* attributes);

}
