// SPDX-License-Identifier: Apache-2.0
#include "NSObjCRuntime.h"

#include "runtime/Runtime.h"

namespace brindle {

namespace {

    // Names of classes, selectors and protocols stay for ever, and so may their strings.
    Ref<NSString> nameOf(const char* name) { return name ? strings::literal(name) : nullptr; }

}

Ref<NSString> NSStringFromClass(const Class* cls)
{
    return nameOf(cls ? class_getName(cls) : nullptr);
}

Class* NSClassFromString(const NSString* name)
{
    return name ? objc_getClass(name->UTF8String()) : nullptr;
}

Ref<NSString> NSStringFromSelector(SEL selector) { return nameOf(sel_getName(selector)); }

SEL NSSelectorFromString(const NSString* name)
{
    return name ? sel_registerName(name->UTF8String()) : SEL {};
}

Ref<NSString> NSStringFromProtocol(const Protocol* protocol)
{
    return nameOf(protocol ? protocol->name() : nullptr);
}

Protocol* NSProtocolFromString(const NSString* name)
{
    return name ? objc_getProtocol(name->UTF8String()) : nullptr;
}

}
