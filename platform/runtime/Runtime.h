// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Block.h"
#include "Table.h"

/// The runtime's functions: classes, methods, properties, fields and associated values as data.
///
/// Thread: all of them may be called from any thread, beside sends. A nil class, method or property answers nil,
/// NO, nullptr or zero unless a function says more.

namespace brindle {

/// One operation of one class: a selector, an implementation and a type string.
struct Method;
/// One declared property of one class.
struct Property;
/// One field of one class.
struct Ivar;

template <> struct Opaque<Method> {
    static constexpr const char* encoding = "{Method=}";
};
template <> struct Opaque<Property> {
    static constexpr const char* encoding = "{Property=}";
};
template <> struct Opaque<Ivar> {
    static constexpr const char* encoding = "{Ivar=}";
};

using objc_property_t = const Property*;
using objc_AssociationPolicy = std::uintptr_t;

inline constexpr objc_AssociationPolicy OBJC_ASSOCIATION_ASSIGN = 0;
inline constexpr objc_AssociationPolicy OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1;
inline constexpr objc_AssociationPolicy OBJC_ASSOCIATION_COPY_NONATOMIC = 3;
inline constexpr objc_AssociationPolicy OBJC_ASSOCIATION_RETAIN = 0x301;
inline constexpr objc_AssociationPolicy OBJC_ASSOCIATION_COPY = 0x303;

/// A named set of operations that classes adopt. Protocols are objects and live for ever.
struct Protocol : NSObject {
    static constexpr const char* kName = "Protocol";
    using Parent = NSObject;
    template <class Topic> struct Methods;

    /// Answers the protocol's name.
    const char* name() const { return send<"name", const char*>(); }

    const char* name_ = nullptr;
};

// ---- classes

/// Answers the metaclass of the class of this name; its table holds the class operations.
BRINDLE_EXPORT Class* objc_getMetaClass(const char* name);
BRINDLE_EXPORT const char* class_getName(const Class* cls);
BRINDLE_EXPORT Class* class_getSuperclass(const Class* cls);
BRINDLE_EXPORT bool class_isMetaClass(const Class* cls);
BRINDLE_EXPORT std::size_t class_getInstanceSize(const Class* cls);
inline Class* object_getClass(const NSObject* object) { return object ? object->isa_ : nullptr; }
/// Answers an object of the class with all fields zero and one count, without sending a message.
BRINDLE_EXPORT NSObject* class_createInstance(Class* cls);
/// Answers all classes that are realised now, in the order in which that happened. The caller frees the array.
BRINDLE_EXPORT Class** objc_copyClassList(unsigned* count);

/// Begins a class at run time; nil when the name is taken or empty. `parent` nil is not allowed.
/// - extraBytes: room after the parent's fields; fields are better added by `class_addIvar`.
BRINDLE_EXPORT Class* objc_allocateClassPair(
    Class* parent, const char* name, std::size_t extraBytes);
/// Makes a begun class known by its name; from then on its fields are fixed.
BRINDLE_EXPORT void objc_registerClassPair(Class* cls);

// ---- protocols

/// Answers the protocol of a name, making it when it is new; nil for nil and "".
BRINDLE_EXPORT Protocol* objc_getProtocol(const char* name);
/// Says that whoever adopts `protocol` adopts `other` as well.
BRINDLE_EXPORT void protocol_addProtocol(Protocol* protocol, Protocol* other);
BRINDLE_EXPORT bool protocol_conformsToProtocol(const Protocol* protocol, const Protocol* other);
/// Answers whether the class or an ancestor adopts the protocol, by itself or through another protocol.
BRINDLE_EXPORT bool class_conformsToProtocol(const Class* cls, const Protocol* protocol);
BRINDLE_EXPORT bool class_addProtocol(Class* cls, Protocol* protocol);

// ---- methods

/// Answers the entry instances of the class use for a selector, ancestors searched; nullptr when there is none.
/// On a metaclass it finds class operations.
BRINDLE_EXPORT Method* class_getInstanceMethod(Class* cls, SEL sel);
BRINDLE_EXPORT Method* class_getClassMethod(Class* cls, SEL sel);
/// Answers the class's own entries. The caller frees the array.
BRINDLE_EXPORT Method** class_copyMethodList(Class* cls, unsigned* count);
BRINDLE_EXPORT IMP method_getImplementation(const Method* method);
BRINDLE_EXPORT const char* method_getTypeEncoding(const Method* method);
/// Answers the type encoding with the class of each object and the signature of each closure, as far as they are
/// known: `v@:@"NSView"@?<v@?@Q^B>`, with "..." at the end for a C variadic function. A class name here says what the operation relies on.
BRINDLE_EXPORT const char* method_getDetailedTypes(const Method* method);
BRINDLE_EXPORT SEL method_getName(const Method* method);
/// Answers what instances would run; the forwarding implementation, never nullptr, where there is nothing.
BRINDLE_EXPORT IMP class_getMethodImplementation(Class* cls, SEL sel);
BRINDLE_EXPORT bool class_respondsToSelector(Class* cls, SEL sel);
/// Answers the implementation that stands for "nobody answers"; it is only good for comparing and for
/// calls with integers, pointers and an object as the answer.
BRINDLE_EXPORT IMP forwardingImplementation();
/// Adds an entry to the class itself. NO, and nothing changes, when the class itself has the selector already.
/// - types: result, "@", ":" and the arguments, as in "v@:d"; offsets and class names are left out.
/// - Raises: `NSInvalidArgumentException` when the type string is malformed.
BRINDLE_EXPORT bool class_addMethod(Class* cls, SEL sel, IMP imp, const char* types);
/// Adds or replaces an entry of the class itself; answers the implementation that was the class's own, or nullptr.
BRINDLE_EXPORT IMP class_replaceMethod(Class* cls, SEL sel, IMP imp, const char* types);
BRINDLE_EXPORT IMP method_setImplementation(Method* method, IMP imp);
/// Exchanges what two entries run, types included, in one step as seen by sends.
BRINDLE_EXPORT void method_exchangeImplementations(Method* a, Method* b);

// ---- properties and fields

/// Answers the properties that the class itself declares, in order, its extensions' after; nullptr and 0 when none.
/// The array ends with a nullptr; the caller frees it.
BRINDLE_EXPORT objc_property_t* class_copyPropertyList(Class* cls, unsigned* count);
/// Searches ancestors too.
BRINDLE_EXPORT objc_property_t class_getProperty(Class* cls, const char* name);
BRINDLE_EXPORT const char* property_getName(objc_property_t property);
/// Answers `T@"NSString",C,N,V_title`: T, then R, C, &, W, D, N, G, S, V where they apply.
BRINDLE_EXPORT const char* property_getAttributes(objc_property_t property);
/// Answers one attribute's value, "" for one that is only present, nullptr for one that is not. The caller frees it.
BRINDLE_EXPORT char* property_copyAttributeValue(objc_property_t property, const char* attribute);
/// Declares a property of a class at run time; `attributes` as `property_getAttributes` answers them.
BRINDLE_EXPORT bool class_addProperty(Class* cls, const char* name, const char* attributes);

BRINDLE_EXPORT Ivar* class_getInstanceVariable(Class* cls, const char* name);
BRINDLE_EXPORT Ivar** class_copyIvarList(Class* cls, unsigned* count);
BRINDLE_EXPORT const char* ivar_getName(const Ivar* ivar);
BRINDLE_EXPORT const char* ivar_getTypeEncoding(const Ivar* ivar);
BRINDLE_EXPORT std::ptrdiff_t ivar_getOffset(const Ivar* ivar);
/// Adds a field to a class that is begun and not yet registered.
/// - alignment: in bytes, a power of two up to 16.
BRINDLE_EXPORT bool class_addIvar(
    Class* cls, const char* name, std::size_t size, std::size_t alignment, const char* types);
/// Reads and writes an object field by its way of keeping: retained, copied, weak or bare.
BRINDLE_EXPORT Ref<NSObject> object_getIvar(NSObject* object, const Ivar* ivar);
BRINDLE_EXPORT void object_setIvar(NSObject* object, const Ivar* ivar, NSObject* value);

// ---- associated values

/// Attaches a value to an object under an address; nil removes it. Values go when the object does, after its `dealloc`.
/// - policy: 0 assign, 1 retain, 3 copy, 769 retain and 771 copy with atomic reads.
BRINDLE_EXPORT void objc_setAssociatedObject(
    NSObject* object, const void* key, NSObject* value, objc_AssociationPolicy policy);
BRINDLE_EXPORT Ref<NSObject> objc_getAssociatedObject(const NSObject* object, const void* key);
/// Answers the value without adding a count: for policy 0, and for values that nobody replaces meanwhile.
BRINDLE_EXPORT NSObject* objc_borrowAssociatedObject(const NSObject* object, const void* key);
BRINDLE_EXPORT void objc_removeAssociatedObjects(NSObject* object);

// ---- locks

/// Holds an object's own recursive lock for a block, exceptions included; a nil object locks nothing.
class BRINDLE_EXPORT Synchronized {
public:
    explicit Synchronized(const NSObject* object);
    ~Synchronized();
    Synchronized(const Synchronized&) = delete;
    Synchronized& operator=(const Synchronized&) = delete;

private:
    const NSObject* object_;
    void* entry_ = nullptr;
};

// ---- closures and memory

/// Answers a closure made of a plain C function and a context, owned by the caller.
/// - encoding: "v@?", "v@?@", ...; copied. - end: called with the context when the closure goes; may be nullptr.
/// - code: `R code(closure, arguments…)`; it reads its context by `closureContext`.
BRINDLE_EXPORT ClosureBase* makeClosure(
    const char* encoding, ClosureBase::Code code, void* context, void (*end)(void*));
BRINDLE_EXPORT void* closureContext(const ClosureBase* closure);

/// Frees a buffer that the runtime handed out (`class_copy…`, `property_copy…`); any other pointer is left alone.
BRINDLE_EXPORT void releaseBuffer(void* buffer);

}
