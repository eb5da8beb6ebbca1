// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstring>
#include <vector>

#include "KeyValuePrivate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/NSInvocation.h"

namespace brindle::keyvalue {

namespace {

    // ---- numbers, each in its own kind

    Ref<NSNumber> box(bool value) { return NSNumber::cls().numberWithBool(value); }
    Ref<NSNumber> box(char value) { return NSNumber::cls().numberWithChar(value); }
    Ref<NSNumber> box(unsigned char value) { return NSNumber::cls().numberWithUnsignedChar(value); }
    Ref<NSNumber> box(short value) { return NSNumber::cls().numberWithShort(value); }
    Ref<NSNumber> box(unsigned short value)
    {
        return NSNumber::cls().numberWithUnsignedShort(value);
    }
    Ref<NSNumber> box(int value) { return NSNumber::cls().numberWithInt(value); }
    Ref<NSNumber> box(unsigned value) { return NSNumber::cls().numberWithUnsignedInt(value); }
    Ref<NSNumber> box(NSInteger value) { return NSNumber::cls().numberWithInteger(value); }
    Ref<NSNumber> box(NSUInteger value) { return NSNumber::cls().numberWithUnsignedInteger(value); }
    Ref<NSNumber> box(float value) { return NSNumber::cls().numberWithFloat(value); }
    Ref<NSNumber> box(double value) { return NSNumber::cls().numberWithDouble(value); }

    // By message: text that reads as a number answers most of them too.
    void unbox(const NSObject* from, bool& value) { value = from->send<"boolValue", bool>(); }
    void unbox(const NSObject* from, char& value) { value = from->send<"charValue", char>(); }
    void unbox(const NSObject* from, unsigned char& value)
    {
        value = from->send<"unsignedCharValue", unsigned char>();
    }
    void unbox(const NSObject* from, short& value) { value = from->send<"shortValue", short>(); }
    void unbox(const NSObject* from, unsigned short& value)
    {
        value = from->send<"unsignedShortValue", unsigned short>();
    }
    void unbox(const NSObject* from, int& value) { value = from->send<"intValue", int>(); }
    void unbox(const NSObject* from, unsigned& value)
    {
        value = from->send<"unsignedIntValue", unsigned>();
    }
    void unbox(const NSObject* from, NSInteger& value)
    {
        value = from->send<"longLongValue", NSInteger>();
    }
    void unbox(const NSObject* from, NSUInteger& value)
    {
        value = from->send<"unsignedLongLongValue", NSUInteger>();
    }
    void unbox(const NSObject* from, float& value) { value = from->send<"floatValue", float>(); }
    void unbox(const NSObject* from, double& value) { value = from->send<"doubleValue", double>(); }

    /// Calls `use` with a value of the number type that an encoding stands for; false when it is no number.
    template <class Use> bool withNumber(std::string_view encoding, Use use)
    {
        if (encoding.size() != 1)
            return false;
        switch (encoding[0]) {
        case 'B':
            use(bool {});
            return true;
        case 'c':
            use(char {});
            return true;
        case 'C':
            use(static_cast<unsigned char>(0));
            return true;
        case 's':
            use(short {});
            return true;
        case 'S':
            use(static_cast<unsigned short>(0));
            return true;
        case 'i':
        case 'l':
            use(int {});
            return true;
        case 'I':
        case 'L':
            use(0u);
            return true;
        case 'q':
            use(NSInteger {});
            return true;
        case 'Q':
            use(NSUInteger {});
            return true;
        case 'f':
            use(float {});
            return true;
        case 'd':
            use(double {});
            return true;
        default:
            return false;
        }
    }

    /// The same for the structures that most properties have.
    template <class Use> bool withStructure(std::string_view encoding, Use use)
    {
        if (encoding == encodingOf<NSRect>.view())
            use(NSRect {});
        else if (encoding == encodingOf<NSPoint>.view())
            use(NSPoint {});
        else if (encoding == encodingOf<NSSize>.view())
            use(NSSize {});
        else if (encoding == encodingOf<NSRange>.view())
            use(NSRange {});
        else
            return false;
        return true;
    }

    // ---- calling and reading

    template <class T> T call(NSObject& object, const Accessor& accessor)
    {
        return reinterpret_cast<T (*)(NSObject*, SEL)>(accessor.imp)(&object, accessor.sel);
    }
    template <class T> void call(NSObject& object, const Accessor& accessor, T value)
    {
        reinterpret_cast<void (*)(NSObject*, SEL, T)>(accessor.imp)(&object, accessor.sel, value);
    }

    template <class T> T* fieldOf(NSObject& object, const Accessor& accessor)
    {
        return reinterpret_cast<T*>(
            reinterpret_cast<char*>(&object) + ivar_getOffset(accessor.ivar));
    }

    /// Reads a value as generated accessors do: numbers in one step, anything larger under the property's lock.
    template <class T> T get(NSObject& object, const Accessor& accessor)
    {
        if (accessor.imp)
            return call<T>(object, accessor);
        T* const field = fieldOf<T>(object, accessor);
        if constexpr (std::is_scalar_v<T>)
            return std::atomic_ref<T>(*field).load(std::memory_order_acquire);
        else {
            const PropertyLock lock(field);
            return *field;
        }
    }
    template <class T> void put(NSObject& object, const Accessor& accessor, T value)
    {
        if (accessor.imp)
            return call<T>(object, accessor, value);
        T* const field = fieldOf<T>(object, accessor);
        if constexpr (std::is_scalar_v<T>)
            std::atomic_ref<T>(*field).store(value, std::memory_order_release);
        else {
            const PropertyLock lock(field);
            *field = value;
        }
    }

    // ---- any other type, by its size

    std::vector<char> room(const Accessor& accessor)
    {
        std::size_t size = 0;
        std::size_t alignment = 0;
        const std::string type(accessor.encoding());
        encodingSizeAndAlignment(type.c_str(), &size, &alignment);
        return std::vector<char>(size + sizeof(std::uint64_t));
    }

    Ref<NSInvocation> invocation(NSObject& object, const Accessor& accessor)
    {
        const auto call = NSInvocation::cls().invocationWithMethodSignature(
            object.methodSignatureForSelector(accessor.sel).get());
        call->setTarget(&object);
        call->setSelector(accessor.sel);
        return call;
    }

    Ref<NSObject> readBytes(NSObject& object, const Accessor& from)
    {
        std::vector<char> bytes = room(from);
        if (from.imp) {
            const auto call = invocation(object, from);
            call->invoke();
            call->getReturnValue(bytes.data());
        } else {
            const char* const field = fieldOf<char>(object, from);
            const PropertyLock lock(field);
            std::memcpy(bytes.data(), field, bytes.size() - sizeof(std::uint64_t));
        }
        return NSValue::cls().valueWithBytes_objCType(
            bytes.data(), std::string(from.encoding()).c_str());
    }

    void writeBytes(NSObject& object, const Accessor& to, NSValue* value)
    {
        std::vector<char> bytes = room(to);
        value->getValue(bytes.data());
        if (to.imp) {
            const auto call = invocation(object, to);
            call->setArgument_atIndex(bytes.data(), 2);
            call->invoke();
            return;
        }
        char* const field = fieldOf<char>(object, to);
        const PropertyLock lock(field);
        std::memcpy(field, bytes.data(), bytes.size() - sizeof(std::uint64_t));
    }

    // ---- objects

    bool isObject(const Accessor& accessor) { return *accessor.type == '@' || accessor.required; }

    Ref<NSObject> readObject(NSObject& object, const Accessor& from)
    {
        return from.imp ? Ref<NSObject>::adopt(call<NSObject*>(object, from))
                        : object_getIvar(&object, from.ivar);
    }

    [[noreturn]] void raiseUnfit(
        const NSObject& object, const Accessor& to, const NSObject* value, const NSString* key)
    {
        raise("NSInvalidArgumentException",
            placeOf(object) + "setValue:forKey:]: a value of class "
                + class_getName(value->classObject()) + " cannot be set for the key " + utf8Of(key)
                + " of type " + std::string(to.encoding()) + ".");
    }

    bool isBoxOf(const NSObject* value, std::string_view encoding)
    {
        return value && value->isKindOfClass(classOf<NSValue>())
            && static_cast<const NSValue*>(value)->objCType() == encoding;
    }

}

std::string placeOf(const NSObject& object)
{
    char address[24];
    std::snprintf(address, sizeof address, " %p> ", static_cast<const void*>(&object));
    return std::string("[<") + class_getName(object.isa_) + address;
}

Ref<NSObject> read(NSObject& object, const Accessor& from)
{
    if (isObject(from))
        return readObject(object, from);
    if (*from.type == '#')
        return get<Class*>(object, from);
    const std::string_view type = from.encoding();
    Ref<NSObject> boxed;
    if (withNumber(type, [&](auto like) { boxed = box(get<decltype(like)>(object, from)); })
        || withStructure(type,
            [&](auto like) { boxed = NSValue::cls().valueOf(get<decltype(like)>(object, from)); }))
        return boxed;
    return readBytes(object, from);
}

void write(NSObject& object, const Accessor& to, NSObject* value, const NSString* key)
{
    if (to.required && value && !value->isKindOfClass(to.required))
        raiseUnfit(object, to, value, key);
    if (isObject(to))
        return to.imp ? call<NSObject*>(object, to, value)
                      : object_setIvar(&object, to.ivar, value);
    if (*to.type == '#') {
        if (value && !class_isMetaClass(value->isa_))
            raiseUnfit(object, to, value, key);
        return put(object, to, static_cast<Class*>(value));
    }
    const std::string_view type = to.encoding();
    if (withNumber(type, [&](auto number) {
            unbox(value, number);
            put(object, to, number);
        }))
        return;
    if (!isBoxOf(value, type))
        raiseUnfit(object, to, value, key);
    auto* const boxed = static_cast<NSValue*>(value);
    if (!withStructure(type, [&](auto structure) {
            boxed->getValue(&structure);
            put(object, to, structure);
        }))
        writeBytes(object, to, boxed);
}

void unbox(const NSObject* boxed, const char* encoding, void* value)
{
    if (!boxed)
        return;
    const auto number = [&](auto like) {
        unbox(boxed, like);
        std::memcpy(value, &like, sizeof like);
    };
    if (!withNumber(encoding, number) && isBoxOf(boxed, encoding))
        static_cast<const NSValue*>(boxed)->getValue(value);
}

}
