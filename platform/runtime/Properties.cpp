// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <set>
#include <thread>

#include "ClassPrivate.h"

namespace brindle {

namespace {

    /// The attribute string in its one order: T, R, C, &, W, D, N, G, S, V.
    std::string describe(const Property& property)
    {
        std::string text = "T" + property.type;
        const auto flag = [&](unsigned bit, const char* letter) {
            if (property.flags & bit)
                text += std::string(",") + letter;
        };
        flag(kPropertyReadOnly, "R");
        flag(kPropertyCopy, "C");
        flag(kPropertyRetain, "&");
        flag(kPropertyWeak, "W");
        flag(kPropertyDynamic, "D");
        flag(kPropertyNonatomic, "N");
        if (!property.getter.empty())
            text += ",G" + property.getter;
        if (!property.setter.empty())
            text += ",S" + property.setter;
        if (!property.ivar.empty())
            text += ",V" + property.ivar;
        return text;
    }

    unsigned flagOf(char letter)
    {
        switch (letter) {
        case 'R':
            return kPropertyReadOnly;
        case 'C':
            return kPropertyCopy;
        case '&':
            return kPropertyRetain;
        case 'W':
            return kPropertyWeak;
        case 'D':
            return kPropertyDynamic;
        case 'N':
            return kPropertyNonatomic;
        default:
            return 0;
        }
    }

    /// Reads an attribute string; false when its first attribute is no type.
    bool parse(std::string_view text, Property& property)
    {
        bool first = true;
        while (!text.empty()) {
            const std::size_t comma = text.find(',');
            const std::string_view piece = text.substr(0, comma);
            if (first && (piece.size() < 2 || piece[0] != 'T'))
                return false;
            const std::string value(piece.empty() ? piece : piece.substr(1));
            switch (piece.empty() ? 0 : piece[0]) {
            case 'T':
                property.type = value;
                break;
            case 'G':
                property.getter = value;
                break;
            case 'S':
                property.setter = value;
                break;
            case 'V':
                property.ivar = value;
                break;
            case 0:
                break;
            default:
                property.flags |= flagOf(piece[0]);
            }
            first = false;
            text = comma == text.npos ? std::string_view() : text.substr(comma + 1);
        }
        return !first;
    }

    std::set<void*>& handedOut()
    {
        static std::set<void*>& buffers = *new std::set<void*>;
        return buffers;
    }
    std::mutex& handedOutLock()
    {
        static std::mutex& mutex = *new std::mutex;
        return mutex;
    }

    constexpr std::size_t kPropertyLocks = 64;
    constinit std::atomic<bool> propertyLocks[kPropertyLocks] {};

}

void* handOut(void* buffer)
{
    if (buffer) {
        const std::lock_guard guard(handedOutLock());
        handedOut().insert(buffer);
    }
    return buffer;
}

void releaseBuffer(void* buffer)
{
    bool ours = false;
    {
        const std::lock_guard guard(handedOutLock());
        ours = handedOut().erase(buffer) != 0;
    }
    if (ours)
        std::free(buffer);
}

objc_property_t* class_copyPropertyList(Class* cls, unsigned* count)
{
    if (count)
        *count = 0;
    if (!cls)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    const auto& properties = cls->data_->properties;
    if (properties.empty())
        return nullptr;
    auto* const list = static_cast<objc_property_t*>(
        std::calloc(properties.size() + 1, sizeof(objc_property_t)));
    for (std::size_t i = 0; i < properties.size(); ++i)
        list[i] = properties[i].get();
    if (count)
        *count = static_cast<unsigned>(properties.size());
    return static_cast<objc_property_t*>(handOut(list));
}

objc_property_t class_getProperty(Class* cls, const char* name)
{
    if (!name || !*name)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    for (; cls; cls = cls->super_) {
        for (const auto& property : cls->data_->properties) {
            if (property->name == name)
                return property.get();
        }
    }
    return nullptr;
}

const char* property_getName(objc_property_t property)
{
    return property ? property->name.c_str() : nullptr;
}

const char* property_getAttributes(objc_property_t property)
{
    if (!property)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    if (property->attributes.empty())
        property->attributes = describe(*property);
    return property->attributes.c_str();
}

char* property_copyAttributeValue(objc_property_t property, const char* attribute)
{
    if (!property || !attribute || !*attribute || attribute[1])
        return nullptr;
    const char* value = nullptr;
    switch (*attribute) {
    case 'T':
        value = property->type.c_str();
        break;
    case 'G':
        value = property->getter.empty() ? nullptr : property->getter.c_str();
        break;
    case 'S':
        value = property->setter.empty() ? nullptr : property->setter.c_str();
        break;
    case 'V':
        value = property->ivar.empty() ? nullptr : property->ivar.c_str();
        break;
    default:
        value = property->flags & flagOf(*attribute) ? "" : nullptr;
    }
    return value ? static_cast<char*>(handOut(strdup(value))) : nullptr;
}

bool class_addProperty(Class* cls, const char* name, const char* attributes)
{
    auto property = std::make_unique<Property>();
    if (!cls || !name || !*name || !attributes || !parse(attributes, *property))
        return false;
    property->name = name;
    const std::lock_guard guard(runtimeLock());
    for (const auto& existing : cls->data_->properties) {
        if (existing->name == name)
            return false;
    }
    cls->data_->properties.push_back(std::move(property));
    return true;
}

Ivar* class_getInstanceVariable(Class* cls, const char* name)
{
    if (!name || !*name)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    for (; cls; cls = cls->super_) {
        for (const auto& ivar : cls->data_->ivars) {
            if (ivar->name == name)
                return ivar.get();
        }
    }
    return nullptr;
}

Ivar** class_copyIvarList(Class* cls, unsigned* count)
{
    if (count)
        *count = 0;
    if (!cls || cls->data_->ivars.empty())
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    const auto& ivars = cls->data_->ivars;
    auto** const list = static_cast<Ivar**>(std::calloc(ivars.size() + 1, sizeof(Ivar*)));
    for (std::size_t i = 0; i < ivars.size(); ++i)
        list[i] = ivars[i].get();
    if (count)
        *count = static_cast<unsigned>(ivars.size());
    return static_cast<Ivar**>(handOut(list));
}

const char* ivar_getName(const Ivar* ivar) { return ivar ? ivar->name.c_str() : nullptr; }
const char* ivar_getTypeEncoding(const Ivar* ivar) { return ivar ? ivar->type.c_str() : nullptr; }
std::ptrdiff_t ivar_getOffset(const Ivar* ivar)
{
    return ivar ? static_cast<std::ptrdiff_t>(ivar->offset) : 0;
}

bool class_addIvar(
    Class* cls, const char* name, std::size_t size, std::size_t alignment, const char* types)
{
    constexpr std::size_t kLargest = std::size_t { 1 } << 32;
    const bool sound
        = alignment && alignment <= 16 && (alignment & (alignment - 1)) == 0 && size <= kLargest;
    if (!cls || cls->data_->isRegistered || !name || !*name || !types || !sound
        || !encodingSkipType(types) || class_getInstanceVariable(cls, name))
        return false;
    const bool isObject = *types == '@'; // the runtime itself writes those
    if (isObject && (size < sizeof(NSObject*) || alignment < alignof(NSObject*)))
        return false;
    const std::lock_guard guard(runtimeLock());
    ClassData& data = *cls->data_;
    const std::size_t offset = (data.instanceSize + alignment - 1) / alignment * alignment;
    data.ivars.push_back(std::make_unique<Ivar>(
        Ivar { name, types, offset, isObject ? unsigned { kPropertyRetain } : 0u }));
    data.instanceSize = offset + size;
    if (isObject)
        data.addedObjects.push_back(data.ivars.back().get());
    return true;
}

Ref<NSObject> object_getIvar(NSObject* object, const Ivar* ivar)
{
    if (!object || !ivar)
        return nullptr;
    void* const field = reinterpret_cast<char*>(object) + ivar->offset;
    const PropertyLock lock(field);
    if (ivar->flags & kPropertyWeak)
        return static_cast<WeakRef<NSObject>*>(field)->get();
    return Ref<NSObject>(*static_cast<NSObject**>(field));
}

void object_setIvar(NSObject* object, const Ivar* ivar, NSObject* value)
{
    if (!object || !ivar)
        return;
    void* const field = reinterpret_cast<char*>(object) + ivar->offset;
    if (ivar->flags & kPropertyWeak) {
        WeakRef<NSObject> fresh(value);
        const PropertyLock lock(field);
        std::swap(*static_cast<WeakRef<NSObject>*>(field), fresh);
        return;
    }
    const bool owned = ivar->flags & (kPropertyRetain | kPropertyCopy);
    Ref<NSObject> fresh = ivar->flags & kPropertyCopy
        ? Ref<NSObject>::adopt(properties::copyObject(value))
        : Ref<NSObject>(value);
    NSObject* old = nullptr;
    {
        const PropertyLock lock(field);
        old = std::exchange(*static_cast<NSObject**>(field), owned ? fresh.leak() : value);
    }
    if (old && owned)
        release(old);
}

PropertyLock::PropertyLock(const void* field)
    : lock_(&propertyLocks[(reinterpret_cast<std::uintptr_t>(field) >> 4) % kPropertyLocks])
{
    while (lock_->exchange(true, std::memory_order_acquire))
        std::this_thread::yield();
}

PropertyLock::~PropertyLock() { lock_->store(false, std::memory_order_release); }

NSObject* properties::copyObject(NSObject* object)
{
    return object ? object->copy().leak() : nullptr;
}

}
