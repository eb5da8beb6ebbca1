// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

#include "ClassPrivate.h"

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

    static Ref<NSObject> copyWithZone(NSBlock& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSBlock, Closures)

Class* closureClass() { return classOf<NSBlock>(); }

bool isClosure(const NSObject* object) { return object->isa_ == classOf<NSBlock>(); }

void endClosure(NSObject* object)
{
    auto* const closure = static_cast<ClosureBase*>(object);
    if (closure->end)
        closure->end(closure);
}

void* allocateClosure(std::size_t size)
{
    auto* const memory = static_cast<char*>(std::malloc(sizeof(ObjectHeader) + size));
    if (!memory)
        fatal("out of memory");
    auto* const object = reinterpret_cast<NSObject*>(memory + sizeof(ObjectHeader));
    ::new (memory) ObjectHeader { { 0 }, { 1 } };
    object->isa_ = closureClass();
    return object;
}

ClosureBase* makeClosure(
    const char* encoding, ClosureBase::Code code, void* context, void (*end)(void*))
{
    void* const memory = allocateClosure(sizeof(ContextClosure));
    Class* const cls = static_cast<NSObject*>(memory)->isa_;
    auto* const closure = ::new (memory) ContextClosure {};
    closure->isa_ = cls;
    closure->code = code;
    closure->ownEncoding = strdup(encoding);
    closure->encoding = closure->ownEncoding;
    closure->context = context;
    closure->endContext = end;
    closure->end = &endContextClosure;
    return closure;
}

void* closureContext(const ClosureBase* closure)
{
    return closure && closure->end == &endContextClosure
        ? static_cast<const ContextClosure*>(closure)->context
        : nullptr;
}

}
