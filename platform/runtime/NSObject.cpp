// SPDX-License-Identifier: Apache-2.0
#include "NSObject.h"

#include <cstdio>
#include <cstring>

#include "ArgumentKinds.h"
#include "ClassPrivate.h"
#include "DynamicCallPrivate.h"
#include "InvocationPrivate.h"
#include "NSException.h"
#include "NSInvocation.h"
#include "StringsPrivate.h"

namespace brindle {

// The root class's operations. Class objects answer them too: the root metaclass's parent is the root class.
template <> struct NSObject::Methods<struct Root> {

    static bool isClass(const NSObject& self) { return self.isa_->data_->isMeta; }

    // ---- making and keeping

    static Ref<NSObject> alloc(Class& self)
    {
        return Ref<NSObject>::adopt(class_createInstance(&self));
    }
    static Ref<NSObject> allocWithZone(Class& self, void*)
    {
        return NSObject::Meta { &self }.alloc();
    }
    static Ref<NSObject> makeNew(Class& self) { return NSObject::Meta { &self }.alloc()->init(); }
    static void initialize(Class&) { }
    static Ref<NSObject> init(NSObject& self) { return &self; }
    static void dealloc(NSObject&) { }
    static Ref<NSObject> keep(NSObject& self)
    {
        brindle::retain(&self);
        return &self;
    }
    static void release(NSObject& self) { brindle::release(&self); }
    static std::uint64_t retainCount(NSObject& self)
    {
        return static_cast<std::uint64_t>(headerOf(&self).count.load(std::memory_order_relaxed));
    }

    // ---- what it is

    static Class* classOfObject(NSObject& self)
    {
        return isClass(self) ? static_cast<Class*>(&self) : self.isa_;
    }
    static Class* classOfClass(Class& self) { return &self; }
    static Class* superclass(NSObject& self) { return class_getSuperclass(self.classObject()); }
    static Class* superclassOfClass(Class& self) { return self.super_; }
    static bool isEqual(NSObject& self, NSObject* other) { return &self == other; }
    static std::uint64_t hash(NSObject& self)
    {
        return reinterpret_cast<std::uintptr_t>(&self) >> 4;
    }
    static bool isKindOfClass(NSObject& self, Class* cls)
    {
        for (const Class* at = self.isa_; at; at = at->super_) {
            if (at == cls)
                return true;
        }
        return false;
    }
    static bool isMemberOfClass(NSObject& self, Class* cls) { return self.isa_ == cls; }
    static bool isSubclassOfClass(Class& self, Class* cls)
    {
        for (const Class* at = &self; at; at = at->super_) {
            if (at == cls)
                return true;
        }
        return false;
    }
    static bool isProxy(NSObject&) { return false; }
    static bool conformsToProtocol(NSObject& self, Protocol* protocol)
    {
        return class_conformsToProtocol(self.isa_, protocol);
    }
    static bool classConformsToProtocol(Class& self, Protocol* protocol)
    {
        return class_conformsToProtocol(&self, protocol);
    }
    static bool respondsToSelector(NSObject& self, SEL sel)
    {
        return class_respondsToSelector(self.isa_, sel);
    }
    static bool instancesRespondToSelector(Class& self, SEL sel)
    {
        return class_respondsToSelector(&self, sel);
    }

    // ---- text

    static Ref<NSString> description(NSObject& self)
    {
        char text[24];
        std::snprintf(text, sizeof text, ": %p>", static_cast<void*>(&self));
        return makeString(std::string("<") + class_getName(self.isa_) + text);
    }
    static Ref<NSString> classDescription(Class& self) { return makeString(class_getName(&self)); }
    static Ref<NSString> debugDescription(NSObject& self) { return self.description(); }

    // ---- performing

    static void requireKind(
        NSObject& self, const Method* method, unsigned index, NSObject* argument)
    {
        Class* const wanted = argument ? requiredArgumentClass(method, index) : nullptr;
        if (!wanted || argument->isKindOfClass(wanted))
            return;
        raise("NSInvalidArgumentException",
            std::string("*** ") + (class_isMetaClass(self.isa_) ? "+[" : "-[")
                + class_getName(self.isa_) + " " + sel_getName(method_getName(method))
                + "]: " + class_getName(wanted) + " is expected, not an object of class "
                + class_getName(argument->classObject()));
    }

    /// Answers the types of what is to be performed; empty when nothing answers it.
    static std::string performedTypes(NSObject& self, SEL sel, const Method* method)
    {
        if (method)
            return method_getTypeEncoding(method);
        const Ref<NSMethodSignature> signature = self.methodSignatureForSelector(sel);
        if (!signature)
            return {};
        std::string types = signature->methodReturnType();
        for (std::uint64_t i = 0; i < signature->numberOfArguments(); ++i)
            types += signature->getArgumentTypeAtIndex(i);
        return types;
    }
    /// Answers whether a parameter is a word: numbers with a fraction and structures cannot be made of an object.
    static bool isWord(const char* type) { return !std::strchr("dfD{(", *type); }

    static Ref<NSObject> perform(NSObject& self, SEL sel, NSObject* first, NSObject* second)
    {
        ensureInitialized(self.isa_);
        const Method* const method = class_getInstanceMethod(self.isa_, sel);
        requireKind(self, method, 2, first);
        requireKind(self, method, 3, second);
        const std::string types = performedTypes(self, sel, method);
        if (types.empty()) {
            self.doesNotRecognizeSelector(sel);
            return nullptr;
        }
        NSObject* receiver = &self;
        // Parameters beyond the objects, and those no object fits in, read zero; a large answer is dropped.
        std::uint64_t zeros[32] {};
        void* const nothing = zeros;
        void* arguments[16] = { &receiver, &sel };
        std::fill(arguments + 2, arguments + 16, nothing);
        NSObject* objects[] = { first, second };
        const char* type = types.c_str(); // of the result, the receiver, the selector, the objects
        for (std::size_t i = 0; type && *type; type = encodingSkipType(type), ++i) {
            if (i > std::size(arguments))
                raise("NSInvalidArgumentException",
                    std::string("too many parameters to be performed: ") + sel_getName(sel));
            if ((i == 3 || i == 4) && isWord(type))
                arguments[i - 1] = &objects[i - 3];
        }
        std::uint64_t result[32] {};
        const Ref<NSObject> alive(&self);
        if (method)
            callDynamically(method_getImplementation(method), types.c_str(), arguments, result);
        else
            forwardTypes(types.c_str(), arguments, result, sizeof result);
        if (types[0] != '@' && types[0] != '#')
            return nullptr;
        auto* const answer = reinterpret_cast<NSObject*>(result[0]);
        return types[0] == '@' ? Ref<NSObject>::adopt(answer) : Ref<NSObject>(answer);
    }

    static Ref<NSObject> performSelector(NSObject& self, SEL sel)
    {
        return perform(self, sel, nullptr, nullptr);
    }
    static Ref<NSObject> performWithObject(NSObject& self, SEL sel, NSObject* object)
    {
        return perform(self, sel, object, nullptr);
    }
    static Ref<NSObject> performWithObjects(
        NSObject& self, SEL sel, NSObject* first, NSObject* second)
    {
        return perform(self, sel, first, second);
    }

    // ---- methods and forwarding

    static IMP methodForSelector(NSObject& self, SEL sel)
    {
        return class_getMethodImplementation(self.isa_, sel);
    }
    static IMP instanceMethodForSelector(Class& self, SEL sel)
    {
        return class_getMethodImplementation(&self, sel);
    }
    static Ref<NSMethodSignature> signatureIn(Class* cls, SEL sel)
    {
        const Method* const method = class_getInstanceMethod(cls, sel);
        return method
            ? NSMethodSignature::cls().signatureWithObjCTypes(method_getTypeEncoding(method))
            : nullptr;
    }
    static Ref<NSMethodSignature> methodSignatureForSelector(NSObject& self, SEL sel)
    {
        return signatureIn(self.isa_, sel);
    }
    static Ref<NSMethodSignature> instanceMethodSignatureForSelector(Class& self, SEL sel)
    {
        return signatureIn(&self, sel);
    }
    static bool resolveMethod(Class&, SEL) { return false; }
    static Ref<NSObject> forwardingTargetForSelector(NSObject&, SEL) { return nullptr; }
    static void forwardInvocation(NSObject& self, NSInvocation* invocation)
    {
        self.doesNotRecognizeSelector(maybe(invocation)->selector());
    }
    static void doesNotRecognizeSelector(NSObject& self, SEL sel) { raiseUnrecognized(&self, sel); }

    // ---- copying

    static Ref<NSObject> copy(NSObject& self)
    {
        return self.send<"copyWithZone:", Ref<NSObject>>(static_cast<void*>(nullptr));
    }
    static Ref<NSObject> mutableCopy(NSObject& self)
    {
        return self.send<"mutableCopyWithZone:", Ref<NSObject>>(static_cast<void*>(nullptr));
    }
    static Ref<NSObject> copyClass(Class& self, void*) { return &self; }

    static void awakeFromNib(NSObject&) { }

    static void table(Builder& t)
    {
        t.classMethods({
            { "alloc", imp<alloc> },
            { "allocWithZone:", imp<allocWithZone> },
            { "new", imp<makeNew> },
            { "initialize", imp<initialize> },
            { "class", imp<classOfClass> },
            { "superclass", imp<superclassOfClass> },
            { "description", imp<classDescription> },
            { "isSubclassOfClass:", imp<isSubclassOfClass> },
            { "conformsToProtocol:", imp<classConformsToProtocol> },
            { "instancesRespondToSelector:", imp<instancesRespondToSelector> },
            { "instanceMethodForSelector:", imp<instanceMethodForSelector> },
            { "instanceMethodSignatureForSelector:", imp<instanceMethodSignatureForSelector> },
            { "resolveInstanceMethod:", imp<resolveMethod> },
            { "resolveClassMethod:", imp<resolveMethod> },
            { "copyWithZone:", imp<copyClass> },
            { "mutableCopyWithZone:", imp<copyClass> },
        });
        t.methods({
            { "init", imp<init> },
            { "dealloc", imp<dealloc> },
            { "retain", imp<keep> },
            { "release", imp<release> },
            { "retainCount", imp<retainCount> },
            { "class", imp<classOfObject> },
            { "superclass", imp<superclass> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "isKindOfClass:", imp<isKindOfClass> },
            { "isMemberOfClass:", imp<isMemberOfClass> },
            { "isProxy", imp<isProxy> },
            { "conformsToProtocol:", imp<conformsToProtocol> },
            { "respondsToSelector:", imp<respondsToSelector> },
            { "description", imp<description> },
            { "debugDescription", imp<debugDescription> },
            { "performSelector:", imp<performSelector> },
            { "performSelector:withObject:", imp<performWithObject> },
            { "performSelector:withObject:withObject:", imp<performWithObjects> },
            { "methodForSelector:", imp<methodForSelector> },
            { "methodSignatureForSelector:", imp<methodSignatureForSelector> },
            { "forwardingTargetForSelector:", imp<forwardingTargetForSelector> },
            { "forwardInvocation:", imp<forwardInvocation> },
            { "doesNotRecognizeSelector:", imp<doesNotRecognizeSelector> },
            { "copy", imp<copy> },
            { "mutableCopy", imp<mutableCopy> },
            { "awakeFromNib", imp<awakeFromNib> },
        });
    }
};
BRINDLE_RECORD(NSObject, Root)

void raiseUnrecognized(const NSObject* self, SEL sel)
{
    const bool isClass = self->isa_->data_->isMeta;
    const char* const name = sel_getName(sel);
    char address[24];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(self));
    raise("NSInvalidArgumentException",
        std::string(isClass ? "+[" : "-[") + class_getName(self->isa_) + " " + (name ? name : "?")
            + "]: unrecognized selector sent to " + (isClass ? "class " : "instance ") + address);
}

}
