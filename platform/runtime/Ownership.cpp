// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <unordered_map>

#include "ClassPrivate.h"

namespace brindle {

namespace {

    constexpr int kDeepestEnd
        = 200; // objects that end inside each other's end before the rest waits in a line

    thread_local int endDepth = 0;
    thread_local std::vector<void*>* endLine = nullptr;

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
        std::free(&header);
    }

}

void destroyObject(void* object)
{
    if (endDepth >= kDeepestEnd) { // a long chain must not use the stack up
        endLine->push_back(object);
        return;
    }
    std::vector<void*> line;
    if (endDepth == 0)
        endLine = &line;
    ++endDepth;
    end(object);
    if (endDepth == 1) {
        while (!line.empty()) {
            void* const next = line.back();
            line.pop_back();
            end(next);
        }
    }
    --endDepth;
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
