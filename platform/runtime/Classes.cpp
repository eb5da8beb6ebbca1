// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ClassPrivate.h"
#include "NSException.h"
#include "ObjectMemory.h"

namespace brindle {

namespace {

    /// What sources declared of one class: its topics and its extensions, in the order of their announcement.
    struct Declaration {
        std::vector<const Record*> topics;
        std::vector<const Record*> extensions;
        Class* realized = nullptr;
    };

    struct Registry {
        std::unordered_map<std::string_view, Declaration> declarations; // keys live in records
        std::unordered_map<std::string, Class*> runtimeMade; // nullptr: begun, not registered yet
        std::vector<Class*> order;
    };

    Registry& registry()
    {
        static Registry& instance = *new Registry;
        return instance;
    }

    /// Answers memory of zeros with room for a header and so many bytes, as where the object begins.
    void* allocate(std::size_t size)
    {
        // The C library gives back what this thread freed last through malloc alone; large memory comes as zeros.
        constexpr std::size_t kSmall = 1024;
        const std::size_t whole = sizeof(ObjectHeader) + size;
        void* memory = whole <= kSmall ? takeObjectMemory(whole) : std::calloc(1, whole);
        if (!memory)
            fatal("out of memory");
        asm("" : "+r"(memory)); // compilers make calloc of the two
        if (whole <= kSmall)
            std::memset(memory, 0, whole);
        return static_cast<char*>(memory) + sizeof(ObjectHeader);
    }

    void* immortal(std::size_t size)
    {
        void* const object = allocate(size);
        headerOf(object).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
        return object;
    }

    Class* makeClassObject(Class* isa, Class* parent, const char* name, bool isMeta)
    {
        auto* const cls = ::new (immortal(sizeof(Class))) Class();
        cls->isa_ = isa;
        cls->super_ = parent;
        cls->slots_.store(emptySlots(), std::memory_order_relaxed);
        cls->data_ = new ClassData;
        cls->data_->name = name;
        cls->data_->isMeta = isMeta;
        cls->data_->instanceSize = isMeta ? sizeof(Class) : sizeof(NSObject);
        return cls;
    }

    /// Makes class and metaclass with all links. Every metaclass's class is the root metaclass, whose parent is
    /// the root class.
    Class* makePair(const char* name, Class* parent)
    {
        Class* const rootMeta = parent ? parent->isa_->isa_ : nullptr;
        Class* const meta = makeClassObject(rootMeta, parent ? parent->isa_ : nullptr, name, true);
        Class* const cls = makeClassObject(meta, parent, name, false);
        if (!parent) {
            meta->isa_ = meta;
            meta->super_ = cls;
            cls->data_->subclasses.push_back(meta);
        } else {
            parent->isa_->data_->subclasses.push_back(meta);
            parent->data_->subclasses.push_back(cls);
        }
        meta->data_->plainClass = cls;
        cls->data_->plainClass = cls;
        return cls;
    }

    void inheritLayout(Class* cls, const Class* parent)
    {
        cls->data_->instanceSize = parent->data_->instanceSize;
        cls->data_->construct = parent->data_->construct;
        cls->data_->destruct = parent->data_->destruct;
        cls->data_->addedObjects = parent->data_->addedObjects;
    }

    void readTable(Class* cls, const Record* record, bool isExtension)
    {
        Builder builder(cls, isExtension, record->topic);
        record->table(builder);
    }

    Class* lookUp(std::string_view name);

    Class* realize(Declaration& declaration)
    {
        const Record* first = declaration.topics.front();
        Class* parent = nullptr;
        if (*first->parent) {
            parent = lookUp(first->parent);
            if (!parent)
                return nullptr;
            if (declaration.realized) // realising the parent may have led here
                return declaration.realized;
        }
        Class* const cls = makePair(first->name, parent);
        declaration.realized = cls;
        registry().order.push_back(cls);
        if (parent)
            inheritLayout(cls, parent);
        cls->data_->instanceSize = first->size;
        cls->data_->construct = first->construct;
        cls->data_->destruct = first->destruct;
        for (const Record* record : declaration.topics)
            readTable(cls, record, false);
        for (const Record* record : declaration.extensions)
            readTable(cls, record, true);
        return cls;
    }

    Class* lookUp(std::string_view name)
    {
        Registry& r = registry();
        if (const auto found = r.declarations.find(name); found != r.declarations.end()) {
            if (found->second.realized)
                return found->second.realized;
            if (!found->second.topics.empty())
                return realize(found->second);
        }
        const auto made = r.runtimeMade.find(std::string(name));
        return made == r.runtimeMade.end() ? nullptr : made->second;
    }

    void checkOneClass(const Declaration& declaration, const Record* record)
    {
        if (declaration.topics.empty())
            return;
        const Record* first = declaration.topics.front();
        if (first->size != record->size || std::strcmp(first->parent, record->parent) != 0)
            fatal((std::string("two classes are named ") + record->name).c_str());
    }

    /// Files one record; an extension or topic of a class that is already realised takes effect at once.
    void file(const Record* record)
    {
        Declaration& declaration = registry().declarations[record->name];
        const bool isExtension = !record->parent;
        if (!isExtension)
            checkOneClass(declaration, record);
        (isExtension ? declaration.extensions : declaration.topics).push_back(record);
        if (declaration.realized)
            readTable(declaration.realized, record, isExtension);
    }

}

void fatal(const char* text)
{
    std::fprintf(stderr, "brindle: %s\n", text);
    std::abort();
}

void announceRecords(const Record* const* begin, const Record* const* end)
{
    {
        const std::lock_guard guard(runtimeLock());
        for (auto* record = begin; record != end; ++record)
            file(*record);
    }
    for (auto* record = begin; record != end; ++record) {
        if ((*record)->load) {
            Class* const cls = objc_getClass((*record)->name);
            if (cls)
                (*record)->load(*cls);
        }
    }
}

Class* objc_getClass(const char* name)
{
    if (!name || !*name)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    return lookUp(name);
}

Class* requireClass(const char* name)
{
    Class* const cls = objc_getClass(name);
    if (!cls)
        fatal((std::string("no source of this program implements the class ") + name).c_str());
    return cls;
}

Class* objc_getMetaClass(const char* name)
{
    Class* const cls = objc_getClass(name);
    return cls ? cls->isa_ : nullptr;
}

const char* class_getName(const Class* cls) { return cls ? cls->data_->name.c_str() : "nil"; }
Class* class_getSuperclass(const Class* cls) { return cls ? cls->super_ : nullptr; }
bool class_isMetaClass(const Class* cls) { return cls && cls->data_->isMeta; }
std::size_t class_getInstanceSize(const Class* cls) { return cls ? cls->data_->instanceSize : 0; }

Class** objc_copyClassList(unsigned* count)
{
    const std::lock_guard guard(runtimeLock());
    const auto& order = registry().order;
    auto** const list = static_cast<Class**>(std::calloc(order.size() + 1, sizeof(Class*)));
    std::copy(order.begin(), order.end(), list);
    if (count)
        *count = static_cast<unsigned>(order.size());
    return static_cast<Class**>(handOut(list));
}

std::vector<std::string> knownClassNames()
{
    const std::lock_guard guard(runtimeLock());
    std::vector<std::string> names;
    for (const auto& [name, declaration] : registry().declarations) {
        if (!declaration.topics.empty())
            names.emplace_back(name);
    }
    for (const auto& [name, cls] : registry().runtimeMade) {
        if (cls)
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

NSObject* class_createInstance(Class* cls)
{
    if (!cls || cls->data_->isMeta)
        return nullptr;
    const ClassData& data = *cls->data_;
    auto* const object = static_cast<NSObject*>(allocate(data.instanceSize));
    headerOf(object).count.store(1, std::memory_order_relaxed);
    object->isa_ = cls;
    if (data.construct)
        data.construct(object);
    return object;
}

Class* objc_allocateClassPair(Class* parent, const char* name, std::size_t extraBytes)
{
    if (!parent || !name || !*name)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    if (lookUp(name) || !registry().runtimeMade.emplace(name, nullptr).second)
        return nullptr;
    Class* const cls = makePair(name, parent);
    inheritLayout(cls, parent);
    cls->data_->instanceSize += extraBytes;
    cls->data_->isRegistered = false;
    return cls;
}

void objc_registerClassPair(Class* cls)
{
    const std::lock_guard guard(runtimeLock());
    if (!cls || cls->data_->isRegistered)
        return;
    cls->data_->isRegistered = true;
    registry().runtimeMade[cls->data_->name] = cls;
    registry().order.push_back(cls);
}

}
