// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <bit>
#include <cstdlib>

#include "ArgumentKinds.h"
#include "ClassPrivate.h"
#include "NSException.h"

namespace brindle {

void MethodTable::reserve(std::size_t count)
{
    const std::size_t room = pieces_.empty() ? 0 : pieces_.back().room - pieces_.back().count;
    if (room < count)
        pieces_.push_back({ std::make_unique<Method[]>(count), 0, count });
    const std::size_t slots = std::bit_ceil(std::max<std::size_t>(8, (count_ + count) * 2));
    if (slots <= slots_.size())
        return;
    slots_.assign(slots, nullptr);
    mask_ = slots - 1;
    forEach([this](Method& method) { place(&method); });
}

Method* MethodTable::add(SEL sel)
{
    if (pieces_.empty() || pieces_.back().count == pieces_.back().room)
        reserve(std::clamp<std::size_t>(count_ / 2, 2, 32));
    Piece& piece = pieces_.back();
    Method& method = piece.methods[piece.count++];
    ++count_;
    method.sel = sel;
    place(&method);
    return &method;
}

void MethodTable::place(Method* method)
{
    std::size_t i = method->sel.value & mask_;
    while (slots_[i])
        i = (i + 1) & mask_;
    slots_[i] = method;
}

namespace {

    void fill(Method* method, IMP imp, const char* types, const Signature* signature,
        const char* details = nullptr)
    {
        method->imp.store(imp, std::memory_order_release);
        method->types.store(types, std::memory_order_release);
        method->signature.store(signature, std::memory_order_release);
        method->details.store(details, std::memory_order_release);
    }

    [[noreturn]] void reportTwo(
        const Class* cls, const char* selector, const Method* method, const char* topic)
    {
        const bool extensions = method->origin == Method::Origin::extension;
        fatal((std::string(extensions ? "the extensions " : "the topics ") + method->topic + " and "
            + topic + " of " + class_getName(cls) + " both define " + selector)
                  .c_str());
    }

    /// One operation of a table: own rows fill, extensions replace, generated accessors only step in.
    void declare(Class* cls, const char* name, SEL sel, const Signature* signature, IMP imp,
        const char* details, Method::Origin origin, const char* topic)
    {
        registerSelector(sel, name, false);
        Method* method = cls->data_->methods.find(sel);
        if (method) {
            if (origin == Method::Origin::generated && method->origin != Method::Origin::generated)
                return;
            if (method->origin == origin)
                reportTwo(cls, name, method, topic);
        } else
            method = cls->data_->methods.add(sel);
        fill(method, imp, signature->types, signature, details);
        method->owner = cls;
        method->origin = origin;
        method->topic = topic;
        updateCaches(cls, sel);
    }

    void declareRows(
        Class* cls, std::initializer_list<Row> rows, bool isExtension, const char* topic)
    {
        const auto origin = isExtension ? Method::Origin::extension : Method::Origin::own;
        for (const Row& row : rows)
            declare(
                cls, row.name, row.sel, row.signature, row.address(), row.details, origin, topic);
    }

    const char* checkedTypes(SEL sel, const char* types)
    {
        const char* const clean = canonicalTypes(types);
        const char* const name = sel_getName(sel);
        if (!clean)
            raise("NSInvalidArgumentException",
                std::string("the type string \"") + (types ? types : "(null)") + "\" of "
                    + (name ? name : "an unnamed selector") + " is malformed");
        return clean;
    }

}

void Builder::methods(std::initializer_list<Row> rows)
{
    declareRows(cls_, rows, isExtension_, topic_);
}

void Builder::classMethods(std::initializer_list<Row> rows)
{
    declareRows(cls_->isa_, rows, isExtension_, topic_);
}

void Builder::properties(std::initializer_list<PropertyRow> rows)
{
    std::size_t accessors = 0;
    for (const PropertyRow& row : rows)
        accessors += (row.getterAddress ? 1 : 0) + (row.setterAddress ? 1 : 0);
    cls_->data_->methods.reserve(accessors);
    for (const PropertyRow& row : rows) {
        auto property = std::make_unique<Property>();
        property->name = row.name;
        property->type = row.encoding;
        property->flags = row.flags;
        property->getter = row.getter ? row.getter : "";
        property->setter = row.setter ? row.setter : "";
        property->ivar = row.ivar ? row.ivar : "_" + property->name;
        if (row.offset)
            cls_->data_->ivars.push_back(std::make_unique<Ivar>(
                Ivar { property->ivar, property->type, row.offset(), row.flags }));
        if (row.getterAddress) {
            const std::string name = row.getter ? property->getter : property->name;
            const SEL sel = sel_registerName(name.c_str());
            declare(cls_, sel_getName(sel), sel, row.getterSignature, row.getterAddress(),
                row.getterDetails, Method::Origin::generated, topic_);
        }
        if (row.setterAddress) {
            std::string name = property->setter;
            if (name.empty()) {
                name = "set" + property->name + ":";
                if (name[3] >= 'a' && name[3] <= 'z')
                    name[3] = static_cast<char>(name[3] - 'a' + 'A');
            }
            const SEL sel = sel_registerName(name.c_str());
            declare(cls_, sel_getName(sel), sel, row.setterSignature, row.setterAddress(),
                row.setterDetails, Method::Origin::generated, topic_);
        }
        cls_->data_->properties.push_back(std::move(property));
    }
}

void Builder::ivars(std::initializer_list<IvarRow> rows)
{
    for (const IvarRow& row : rows)
        cls_->data_->ivars.push_back(
            std::make_unique<Ivar>(Ivar { row.name, row.encoding, row.offset(), row.flags }));
}

void Builder::conformsTo(std::initializer_list<const char*> protocols)
{
    for (const char* name : protocols)
        class_addProtocol(cls_, objc_getProtocol(name));
}

Method* class_getInstanceMethod(Class* cls, SEL sel)
{
    const std::lock_guard guard(runtimeLock());
    return findMethod(cls, sel);
}

Method* class_getClassMethod(Class* cls, SEL sel)
{
    return cls ? class_getInstanceMethod(cls->isa_, sel) : nullptr;
}

Method** class_copyMethodList(Class* cls, unsigned* count)
{
    if (count)
        *count = 0;
    if (!cls)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    const MethodTable& methods = cls->data_->methods;
    if (methods.count() == 0)
        return nullptr;
    auto** const list = static_cast<Method**>(std::calloc(methods.count() + 1, sizeof(Method*)));
    unsigned i = 0;
    methods.forEach([&](Method& method) { list[i++] = &method; });
    if (count)
        *count = i;
    return static_cast<Method**>(handOut(list));
}

IMP method_getImplementation(const Method* method)
{
    return method ? method->imp.load(std::memory_order_acquire) : nullptr;
}

const char* method_getTypeEncoding(const Method* method)
{
    return method ? method->types.load(std::memory_order_acquire) : nullptr;
}

const char* method_getDetailedTypes(const Method* method)
{
    const char* const details = method ? method->details.load(std::memory_order_acquire) : nullptr;
    return details ? details : method_getTypeEncoding(method);
}

Class* requiredArgumentClass(const Method* method, unsigned index)
{
    if (!method || method->origin == Method::Origin::generated)
        return nullptr; // what is made for a field only keeps the object
    const char* type = method->details.load(std::memory_order_acquire);
    for (unsigned i = 0; type && i <= index; ++i) // the answer's type comes first
        type = encodingSkipType(type);
    if (!type || type[0] != '@' || type[1] != '"')
        return nullptr;
    const std::string_view name(type + 2);
    return objc_getClass(std::string(name.substr(0, name.find('"'))).c_str());
}

SEL method_getName(const Method* method) { return method ? method->sel : SEL {}; }

IMP class_getMethodImplementation(Class* cls, SEL sel)
{
    if (!cls)
        return nullptr;
    const Method* const method = class_getInstanceMethod(cls, sel);
    return method ? method_getImplementation(method) : forwardingImplementation();
}

bool class_respondsToSelector(Class* cls, SEL sel)
{
    return class_getInstanceMethod(cls, sel) != nullptr;
}

bool class_addMethod(Class* cls, SEL sel, IMP imp, const char* types)
{
    if (!cls || !sel || !imp)
        return false;
    const char* const clean = checkedTypes(sel, types);
    const std::lock_guard guard(runtimeLock());
    if (cls->data_->methods.find(sel))
        return false;
    Method* const method = cls->data_->methods.add(sel);
    fill(method, imp, clean, nullptr);
    method->owner = cls;
    method->origin = Method::Origin::added;
    method->topic = "added at run time";
    updateCaches(cls, sel);
    return true;
}

IMP class_replaceMethod(Class* cls, SEL sel, IMP imp, const char* types)
{
    if (!cls || !sel || !imp)
        return nullptr;
    const char* const clean = checkedTypes(sel, types);
    const std::lock_guard guard(runtimeLock());
    Method* const method = cls->data_->methods.find(sel);
    if (!method) {
        class_addMethod(cls, sel, imp, clean);
        return nullptr;
    }
    const IMP old = method_getImplementation(method);
    fill(method, imp, clean, nullptr);
    updateCaches(cls, sel);
    return old;
}

namespace {

    void updateOwner(const Method* method) { updateCaches(method->owner, method->sel); }

}

IMP method_setImplementation(Method* method, IMP imp)
{
    if (!method || !imp)
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    const IMP old = method->imp.exchange(imp, std::memory_order_acq_rel);
    updateOwner(method);
    return old;
}

void method_exchangeImplementations(Method* a, Method* b)
{
    if (!a || !b || a == b)
        return;
    const std::lock_guard guard(runtimeLock());
    const IMP imp = a->imp.load(std::memory_order_relaxed);
    const char* const types = a->types.load(std::memory_order_relaxed);
    const Signature* const signature = a->signature.load(std::memory_order_relaxed);
    const char* const details = a->details.load(std::memory_order_relaxed);
    fill(a, b->imp, b->types, b->signature, b->details);
    fill(b, imp, types, signature, details);
    updateOwner(a);
    updateOwner(b);
}

const Signature* signatureForTypes(const char* types)
{
    const std::lock_guard guard(runtimeLock());
    static auto& known = *new std::unordered_map<std::string, const Signature*>;
    if (const auto found = known.find(types); found != known.end())
        return found->second;
    unsigned count = 0;
    Class** const classes = objc_copyClassList(&count);
    for (unsigned i = 0; i < count; ++i) {
        for (const Class* const cls : { classes[i], classes[i]->isa_ }) {
            cls->data_->methods.forEach([&](const Method& method) {
                if (const Signature* const signature = method.signature)
                    known.emplace(signature->types, signature);
            });
        }
    }
    releaseBuffer(classes);
    const auto found = known.find(types);
    return found == known.end() ? nullptr : found->second;
}

}
