// SPDX-License-Identifier: Apache-2.0

// The functions of this folder by name, as far as they answer no buffer that the caller would have to free.

#include "Function.h"
#include "Runtime.h"

namespace brindle {

BRINDLE_FUNCTION(objc_getClass)
BRINDLE_FUNCTION(objc_getMetaClass)
BRINDLE_FUNCTION(object_getClass)
BRINDLE_FUNCTION(class_getName)
BRINDLE_FUNCTION(class_getSuperclass)
BRINDLE_FUNCTION(class_isMetaClass)
BRINDLE_FUNCTION(class_getInstanceSize)
BRINDLE_FUNCTION(objc_getProtocol)
BRINDLE_FUNCTION(protocol_conformsToProtocol)
BRINDLE_FUNCTION(class_conformsToProtocol)
BRINDLE_FUNCTION(class_addProtocol)
BRINDLE_FUNCTION(class_getInstanceMethod)
BRINDLE_FUNCTION(class_getClassMethod)
BRINDLE_FUNCTION(method_getTypeEncoding)
BRINDLE_FUNCTION(method_getDetailedTypes)
BRINDLE_FUNCTION(method_getName)
BRINDLE_FUNCTION(method_getImplementation)
BRINDLE_FUNCTION(class_getMethodImplementation)
BRINDLE_FUNCTION(class_respondsToSelector)
BRINDLE_FUNCTION(class_addMethod)
BRINDLE_FUNCTION(class_replaceMethod)
BRINDLE_FUNCTION(method_exchangeImplementations)
BRINDLE_FUNCTION(class_getProperty)
BRINDLE_FUNCTION(property_getName)
BRINDLE_FUNCTION(property_getAttributes)
BRINDLE_FUNCTION(class_getInstanceVariable)
BRINDLE_FUNCTION(ivar_getName)
BRINDLE_FUNCTION(ivar_getTypeEncoding)
BRINDLE_FUNCTION(ivar_getOffset)
BRINDLE_FUNCTION(objc_setAssociatedObject)
BRINDLE_FUNCTION(objc_getAssociatedObject)
BRINDLE_FUNCTION(sel_registerName)
BRINDLE_FUNCTION(sel_getUid)
BRINDLE_FUNCTION(sel_getName)

}
