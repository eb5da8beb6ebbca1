// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstring>
#include <forward_list>
#include <mutex>
#include <optional>

#include "KeyValuePrivate.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSStringPrivate.h"
#include "foundation/SameBytesPrivate.h"
#include "runtime/ArgumentKinds.h"
#include "runtime/MethodChanges.h"

namespace brindle::keyvalue {

namespace {

    // ---- looking

    /// What an object must be where C code takes it as its own kind: a closure, or what stands behind `^{CGColor=}`.
    Class* requiredClass(std::string_view type)
    {
        if (type == "@?")
            return objc_getClass("NSBlock");
        if (type.starts_with("^{") && type.ends_with("=}"))
            return objc_getClass(std::string(type.substr(2, type.size() - 4)).c_str());
        return nullptr;
    }

    /// Sets the value's type from text that begins with it; nullptr when it does not, else what follows.
    const char* takeType(Accessor& accessor, const char* types)
    {
        const char* const end = encodingSkipType(types);
        if (!end || *types == 'v')
            return nullptr;
        accessor.type = types;
        accessor.typeLength = static_cast<std::size_t>(end - types);
        accessor.required = requiredClass(accessor.encoding());
        return end;
    }

    /// Answers the method of a name; not that of another name with the same selector value. A method may have been added
    /// under a name that nobody registered.
    const Method* methodNamed(Class* cls, const std::string& name)
    {
        const Method* const method = class_getInstanceMethod(cls, selectorOf(name));
        const char* const registered = sel_getName(method_getName(method));
        return registered && name != registered ? nullptr : method;
    }

    bool takeGetter(Accessor& accessor, const Method* method)
    {
        if (!method)
            return false;
        const char* const rest = takeType(accessor, method_getTypeEncoding(method));
        return rest && std::strcmp(rest, "@:") == 0;
    }

    bool takeSetter(Accessor& accessor, const Method* method)
    {
        if (!method)
            return false;
        const char* const types = method_getTypeEncoding(method);
        if (std::strncmp(types, "v@:", 3) != 0)
            return false;
        const char* const end = takeType(accessor, types + 3);
        if (end && !accessor.required)
            accessor.required = requiredArgumentClass(method, 2);
        return end && !*end;
    }

    std::string capitalized(std::string_view key)
    {
        std::string text(key);
        if (text[0] >= 'a' && text[0] <= 'z')
            text[0] = static_cast<char>(text[0] - 'a' + 'A');
        return text;
    }

    std::array<std::string, 4> getterNames(const std::string& key, const std::string& large)
    {
        return { "get" + large, key, "is" + large, "_" + key };
    }
    std::array<std::string, 3> setterNames(const std::string& large)
    {
        return { "set" + large + ":", "_set" + large + ":", "setIs" + large + ":" };
    }
    std::array<std::string, 4> fieldNames(const std::string& key, const std::string& large)
    {
        return { "_" + key, "_is" + large, key, "is" + large };
    }

    template <class Names, class Take>
    bool findMethod(Accessor& accessor, Class* cls, const Names& names, Take take)
    {
        for (const std::string& name : names) {
            const Method* const method = methodNamed(cls, name);
            if (!take(accessor, method))
                continue;
            accessor.sel = method_getName(method);
            accessor.imp = method_getImplementation(method);
            return true;
        }
        return false;
    }

    bool findField(Accessor& accessor, Class* cls, const std::string& key, const std::string& large)
    {
        Class* const plain = class_isMetaClass(cls) ? nullptr : cls;
        if (!plain || !accessInstanceVariablesDirectly(plain))
            return false;
        for (const std::string& name : fieldNames(key, large)) {
            const Ivar* const ivar = class_getInstanceVariable(plain, name.c_str());
            if (ivar && takeType(accessor, ivar_getTypeEncoding(ivar))) {
                accessor.ivar = ivar;
                return true;
            }
        }
        return false;
    }

    bool leavesReadingToTheRoot(Class* cls)
    {
        constexpr SEL sel = selector<"valueForKey:">;
        return class_getMethodImplementation(cls, sel)
            == class_getMethodImplementation(classOf<NSObject>(), sel);
    }

    std::optional<Accessor> resolve(
        const NSObject* object, std::string_view text, Direction direction)
    {
        static_cast<void>(
            object->classObject()); // whatever `+initialize` does to the class comes first
        if (text.empty() || text.find('\0') != text.npos)
            return std::nullopt;
        Class* const cls = object->isa_;
        const std::string key(text);
        const std::string large = capitalized(key);
        Accessor accessor;
        accessor.isPlain = leavesReadingToTheRoot(cls);
        const bool isMethod = direction == Direction::read
            ? findMethod(accessor, cls, getterNames(key, large), takeGetter)
            : findMethod(accessor, cls, setterNames(large), takeSetter);
        if (isMethod || findField(accessor, cls, key, large))
            return accessor;
        return std::nullopt;
    }

    // ---- keeping

    /// What was found in one direction, and when.
    struct Found {
        std::atomic<std::uint64_t> changes {
            0
        }; ///< the number of method changes before it was looked for
        std::atomic<const Accessor*> accessor { nullptr };
        std::forward_list<Accessor> all; ///< kept: another thread may be using an older one
    };

    /// One key of one class. Entries stay; only keys that lead somewhere get one, so there are no more than accessors.
    struct Entry {
        const Class* cls;
        std::string key;
        Found found[2];
        Entry* next = nullptr;
    };

    constexpr std::size_t kBuckets = 4096;
    constinit std::atomic<Entry*> buckets[kBuckets] {};

    std::mutex& keeping()
    {
        static std::mutex& mutex = *new std::mutex;
        return mutex;
    }

    std::uint64_t word(const char* at, std::size_t count)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, at, count);
        return bits;
    }

    /// Keys are short: their first and last eight bytes and their length tell nearly all of them apart.
    std::size_t bucketOf(const Class* cls, std::string_view key)
    {
        std::uint64_t bits = key.size();
        if (key.size() >= 8)
            bits += word(key.data(), 8) * 3 + word(key.data() + key.size() - 8, 8);
        else if (key.size() >= 4)
            bits += word(key.data(), 4) << 24 ^ word(key.data() + key.size() - 4, 4);
        else
            for (const char c : key)
                bits = bits << 8 | static_cast<unsigned char>(c);
        bits ^= reinterpret_cast<std::uintptr_t>(cls) >> 4;
        return bits * 0x9e3779b97f4a7c15u >> 52;
    }

    Entry* entryOf(std::size_t bucket, const Class* cls, std::string_view key)
    {
        Entry* entry = buckets[bucket].load(std::memory_order_acquire);
        while (entry && (entry->cls != cls || !sameBytes(entry->key, key)))
            entry = entry->next;
        return entry;
    }

    Entry& ensureEntry(std::size_t bucket, const Class* cls, std::string_view key)
    {
        if (Entry* const entry = entryOf(bucket, cls, key))
            return *entry;
        auto* const entry = new Entry { cls, std::string(key), {}, nullptr };
        entry->next = buckets[bucket].load(std::memory_order_relaxed);
        buckets[bucket].store(entry, std::memory_order_release);
        return *entry;
    }

    const Accessor* keep(Found& found, const Accessor& accessor, std::uint64_t changes)
    {
        const Accessor* kept = nullptr;
        for (const Accessor& each : found.all) {
            if (each == accessor)
                kept = &each;
        }
        if (!kept)
            kept = &found.all.emplace_front(accessor);
        if (found.changes.load(std::memory_order_relaxed) < changes) {
            found.accessor.store(kept, std::memory_order_release);
            found.changes.store(changes, std::memory_order_release);
        }
        return kept;
    }

    const Accessor* find(const NSObject* object, std::string_view key, Direction direction)
    {
        const auto way = static_cast<std::size_t>(direction);
        const std::size_t bucket = bucketOf(object->isa_, key);
        const std::uint64_t changes = methodChanges.load(std::memory_order_acquire);
        if (Entry* const entry = entryOf(bucket, object->isa_, key)) {
            Found& found = entry->found[way];
            if (found.changes.load(std::memory_order_acquire) == changes)
                return found.accessor.load(std::memory_order_acquire);
        }
        const std::optional<Accessor> accessor = resolve(object, key, direction);
        if (!accessor)
            return nullptr;
        const std::lock_guard guard(keeping());
        return keep(ensureEntry(bucket, object->isa_, key).found[way], *accessor, changes);
    }

}

const Accessor* find(const NSObject* object, const NSString* key, Direction direction)
{
    if (key && key->isa_ == classOf<NSString>()) {
        const auto* const narrow = std::get_if<std::string>(&strings::Gate::storage(*key).text);
        if (narrow) // nearly every key
            return find(object, *narrow, direction);
    }
    const strings::Contents contents(key);
    return contents->isNarrow() ? find(object, contents->narrow(), direction)
                                : find(object, strings::toUtf8(contents), direction);
}

Getter findGetter(const NSObject* object, const NSString* key, std::string_view encoding)
{
    if (!object || object == nilObject)
        return {};
    const Accessor* const accessor = find(object, key, Direction::read);
    if (!accessor || !accessor->imp || !accessor->isPlain || accessor->encoding() != encoding)
        return {};
    return { accessor->imp, accessor->sel };
}

}
