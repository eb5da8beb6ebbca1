// SPDX-License-Identifier: Apache-2.0
#include "MethodPatching.h"

#include "runtime/Runtime.h"

namespace brindle {

namespace {

    Class* tableOf(Class* cls, char kind)
    {
        return cls && kind == '+' ? objc_getMetaClass(class_getName(cls)) : cls;
    }

    void makeOwn(Class* cls, SEL sel, const Method* method)
    {
        class_addMethod(
            cls, sel, class_getMethodImplementation(cls, sel), method_getTypeEncoding(method));
    }

}

bool XUISwizzleMethod(Class* cls, char kind, SEL target, SEL alternate)
{
    Class* const table = tableOf(cls, kind);
    const Method* const first = class_getInstanceMethod(table, target);
    const Method* const second = class_getInstanceMethod(table, alternate);
    if (!first || !second)
        return false;
    makeOwn(table, target, first);
    makeOwn(table, alternate, second);
    method_exchangeImplementations(
        class_getInstanceMethod(table, target), class_getInstanceMethod(table, alternate));
    return true;
}

bool XUIAliasMethod(Class* cls, char kind, SEL target, SEL alias)
{
    Class* const table = tableOf(cls, kind);
    const Method* const method = class_getInstanceMethod(table, target);
    return method
        && class_addMethod(
            table, alias, method_getImplementation(method), method_getTypeEncoding(method));
}

void JU_swizzleInstanceMethod(Class* cls, SEL target, SEL replacement)
{
    Method* const old = class_getInstanceMethod(cls, target);
    Method* const fresh = class_getInstanceMethod(cls, replacement);
    const IMP oldCode = method_getImplementation(old);
    const bool wasInherited = class_addMethod(
        cls, target, method_getImplementation(fresh), method_getTypeEncoding(fresh));
    if (wasInherited)
        class_replaceMethod(cls, replacement, oldCode, method_getTypeEncoding(old));
    else
        method_exchangeImplementations(old, fresh);
}

}
