// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <unordered_map>

#include "ClassPrivate.h"
#include "ObjectMemory.h"

namespace brindle {

namespace {

    constexpr int kDeepestEnd
        = 200; // objects that end inside each other's end before the rest waits in a line

    /// What a thread is ending.
    struct Ending {
        int depth;
        std::vector<void*>* line; // nullptr while nobody waits
    };
    [[gnu::tls_model("initial-exec")]] constinit thread_local Ending ending {};

    void releaseAddedFields(NSObject* object, const ClassData& data)
    {
        for (const Ivar* const ivar : data.addedObjects) {
            NSObject*& field
                = *reinterpret_cast<NSObject**>(reinterpret_cast<char*>(object) + ivar->offset);
            if (NSObject* const value = std::exchange(field, nullptr))
                release(value);
        }
    }

    void endFields(NSObject* object)
    {
        object->send<"dealloc">();
        const ClassData& data = *object->isa_->data_;
        releaseAddedFields(object, data);
        if (data.destruct)
            data.destruct(object);
    }

    void end(void* memory)
    {
        auto* const object = static_cast<NSObject*>(memory);
        ObjectHeader& header = headerOf(object);
        header.count.store(ObjectHeader::kDying, std::memory_order_relaxed);
        clearWeakReferences(object);
        if (isClosure(object)) {
            endClosure(object);
            clearExtras(object);
            freeClosure(object);
            return;
        }
        endFields(object);
        clearExtras(object);
        giveObjectMemory(&header);
    }

    /// Answers whether a closure ends by giving its memory back: it holds nothing that has an end, and nothing hangs on it.
    bool isBareClosure(const NSObject* object)
    {
        return isClosure(object) && !static_cast<const ClosureBase*>(object)->kind->end
            && headerOf(object).extras.load(std::memory_order_acquire) == 0;
    }

    [[gnu::noinline]] void waitForEnd(void* object)
    {
        // Others that end before it may still take and give counts.
        headerOf(object).count.store(ObjectHeader::kDying, std::memory_order_relaxed);
        if (!ending.line)
            ending.line = new std::vector<void*>;
        ending.line->push_back(object);
    }

    [[gnu::noinline]] void endThoseWaiting()
    {
        while (!ending.line->empty()) {
            void* const next = ending.line->back();
            ending.line->pop_back();
            end(next);
        }
        delete std::exchange(ending.line, nullptr);
    }

}

void destroyObject(void* object)
{
    if (isBareClosure(static_cast<NSObject*>(object)))
        return freeClosure(static_cast<NSObject*>(object));
    if (ending.depth >= kDeepestEnd) // a long chain must not use the stack up
        return waitForEnd(object);
    ++ending.depth;
    end(object);
    if (ending.depth == 1 && ending.line)
        endThoseWaiting();
    --ending.depth;
}

// ---- an object's own lock

namespace {

    struct ObjectLock {
        std::recursive_mutex mutex;
        std::size_t users = 0;
    };

    struct LockStripe {
        std::mutex mutex;
        std::unordered_map<const NSObject*, std::unique_ptr<ObjectLock>> locks;
    };

    constexpr std::size_t kStripes = 32;

    LockStripe& stripeOf(const NSObject* object)
    {
        static LockStripe* const stripes = new LockStripe[kStripes];
        return stripes[(reinterpret_cast<std::uintptr_t>(object) >> 5) % kStripes];
    }

}

Synchronized::Synchronized(const NSObject* object)
    : object_(object)
{
    if (!object)
        return;
    LockStripe& stripe = stripeOf(object);
    ObjectLock* lock = nullptr;
    {
        const std::lock_guard guard(stripe.mutex);
        auto& place = stripe.locks[object];
        if (!place)
            place = std::make_unique<ObjectLock>();
        lock = place.get();
        ++lock->users;
    }
    lock->mutex.lock();
    entry_ = lock;
}

Synchronized::~Synchronized()
{
    auto* const lock = static_cast<ObjectLock*>(entry_);
    if (!lock)
        return;
    lock->mutex.unlock();
    LockStripe& stripe = stripeOf(object_);
    const std::lock_guard guard(stripe.mutex);
    if (--lock->users == 0)
        stripe.locks.erase(object_);
}

}
