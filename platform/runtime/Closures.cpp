// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

#include "ClassPrivate.h"
#include "ClosureMemory.h"
#include "NSException.h"

namespace brindle {

/// The class of closures. Their memory is laid out by `Block`, so only the end is the class's business.
class NSBlock : public NSObject {
    BRINDLE_OBJECT(NSBlock, NSObject)
};

namespace {

    /// A closure of a plain C function and its context.
    struct ContextClosure : ClosureBase {
        void* context;
        void (*endContext)(void*);
        ClosureKind ownKind;
        char* ownEncoding;
    };

    void endContextClosure(ClosureBase* base)
    {
        auto* const closure = static_cast<ContextClosure*>(base);
        if (closure->endContext)
            closure->endContext(closure->context);
        std::free(closure->ownEncoding);
    }

}

template <> struct NSBlock::Methods<struct Closures> {

    // Memory without a function behind it would pass for a closure.
    static Ref<NSObject> alloc(Class&)
    {
        raise(
            "NSInvalidArgumentException", "*** +[NSBlock alloc]: a closure is made of a function");
    }
    static Ref<NSObject> allocWithZone(Class& self, void*) { return alloc(self); }
    static Ref<NSObject> copyWithZone(NSBlock& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({ { "alloc", imp<alloc> }, { "allocWithZone:", imp<allocWithZone> } });
        t.methods({
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSBlock, Closures)

constinit std::atomic<Class*> knownClosureClass { nullptr };

namespace {

    [[gnu::noinline]] Class* findClosureClass()
    {
        Class* const found = classOf<NSBlock>();
        knownClosureClass.store(found, std::memory_order_release);
        return found;
    }

}

Class* closureClass()
{
    Class* const known = knownClosureClass.load(std::memory_order_acquire);
    return known ? known : findClosureClass();
}

void endClosure(NSObject* object)
{
    auto* const closure = static_cast<ClosureBase*>(object);
    if (closure->kind->end)
        closure->kind->end(closure);
}

ClosurePlace allocateClosure(std::size_t size)
{
    auto* const memory = static_cast<char*>(takeClosureMemory(sizeof(ObjectHeader) + size));
    ::new (memory) ObjectHeader { { 0 }, { 1 } };
    return { memory + sizeof(ObjectHeader), closureClass() };
}

void freeClosure(NSObject* object)
{
    const std::size_t size = static_cast<ClosureBase*>(object)->kind->size;
    giveClosureMemory(&headerOf(object), sizeof(ObjectHeader) + size);
}

ClosureBase* makeClosure(
    const char* encoding, ClosureBase::Code code, void* context, void (*end)(void*))
{
    const ClosurePlace place = allocateClosure(sizeof(ContextClosure));
    auto* const closure = ::new (place.memory) ContextClosure {};
    closure->isa_ = place.isa;
    closure->code = code;
    closure->kind = &closure->ownKind;
    closure->context = context;
    closure->endContext = end;
    closure->ownEncoding = strdup(encoding);
    closure->ownKind = { closure->ownEncoding, &endContextClosure, sizeof(ContextClosure) };
    return closure;
}

void* closureContext(const ClosureBase* closure)
{
    return closure && closure->kind->end == &endContextClosure
        ? static_cast<const ContextClosure*>(closure)->context
        : nullptr;
}

}
