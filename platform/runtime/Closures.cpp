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
    if (closure->kind->end)
        closure->kind->end(closure);
}

namespace {

    // Queues make and end closures by the thousand, nearly all of them small. Each thread keeps some blocks of one size;
    // checkers of memory see every block go instead.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t kMostKept = 0;
#else
    constexpr std::size_t kMostKept = 256;
#endif
    constexpr std::size_t kKeptSize = 64; // two captured words fit

    struct KeptBlock {
        KeptBlock* next;
    };

    // Plain words, so that a thread can still post while its other variables end.
    constinit thread_local KeptBlock* keptBlocks = nullptr;
    constinit thread_local std::size_t keptCount = 0;
    constinit thread_local bool keepsNoMore = false;

    struct KeptBlocksEnd {
        bool known = true;

        ~KeptBlocksEnd()
        {
            keepsNoMore = true;
            while (KeptBlock* const block = keptBlocks) {
                keptBlocks = block->next;
                std::free(block);
            }
        }
    };
    thread_local KeptBlocksEnd keptBlocksEnd;

    void* takeBlock(std::size_t size)
    {
        if (size <= kKeptSize && keptBlocks) {
            KeptBlock* const block = keptBlocks;
            keptBlocks = block->next;
            --keptCount;
            return block;
        }
        void* const memory = std::malloc(size <= kKeptSize ? kKeptSize : size);
        if (!memory)
            fatal("out of memory");
        return memory;
    }

    void giveBlock(void* memory, std::size_t size)
    {
        if (size > kKeptSize || keptCount >= kMostKept || keepsNoMore) {
            std::free(memory);
            return;
        }
        if (keptCount == 0)
            keptBlocksEnd.known = true; // makes the thread end them
        auto* const block = static_cast<KeptBlock*>(memory);
        block->next = keptBlocks;
        keptBlocks = block;
        ++keptCount;
    }

}

void* allocateClosure(std::size_t size)
{
    auto* const memory = static_cast<char*>(takeBlock(sizeof(ObjectHeader) + size));
    ::new (memory) ObjectHeader { { 0 }, { 1 } };
    return memory + sizeof(ObjectHeader);
}

void freeClosure(NSObject* object)
{
    const std::size_t size = static_cast<ClosureBase*>(object)->kind->size;
    giveBlock(&headerOf(object), sizeof(ObjectHeader) + size);
}

ClosureBase* makeClosure(
    const char* encoding, ClosureBase::Code code, void* context, void (*end)(void*))
{
    auto* const closure = ::new (allocateClosure(sizeof(ContextClosure))) ContextClosure {};
    closure->isa_ = closureClass();
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
