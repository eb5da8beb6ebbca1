// SPDX-License-Identifier: Apache-2.0
#include <condition_variable>
#include <cstdlib>
#include <thread>
#include <utility>

#include "ClassPrivate.h"
#include "MethodChanges.h"
#include "NSException.h"

namespace brindle {

constinit std::atomic<MethodAdapter> methodAdapter { nullptr };

using dispatch::Slot;

namespace {

    // The class of the one object that answers nothing. It is never realised and its table stays empty, so every
    // message to it misses, and the miss answers the message's zero function.
    constinit Slot emptyTable[1] {};
    constinit Class nilClass { {}, { 0 }, { emptyTable }, nullptr, nullptr };

    struct NilStorage {
        ObjectHeader header { { 0 }, { ObjectHeader::kImmortal } };
        NSObject object { &nilClass };
    };
    constinit NilStorage nilStorage {};

    constexpr std::size_t kFirstTable = 16; // slots; a power of two
    constexpr std::size_t kLargestTable = 4096;
    constexpr std::size_t kProbes = 8;

    Slot& slotAt(Slot* table, std::uint64_t mask, std::uint64_t key, std::size_t probe)
    {
        const std::size_t index = ((key & mask) / sizeof(Slot) + probe) & (mask / sizeof(Slot));
        return table[index];
    }

    std::size_t slotsIn(const Class* cls)
    {
        return cls->slots_.load(std::memory_order_relaxed) == emptyTable
            ? 0
            : cls->mask_.load(std::memory_order_relaxed) / sizeof(Slot) + 1;
    }

    /// Puts an answer into a table that nobody reads yet, or into a free slot of one that is read.
    void put(Class* cls, Slot* table, std::uint64_t mask, std::uint64_t key, IMP imp, SEL sel,
        const Signature* signature)
    {
        for (std::size_t probe = 0; probe < kProbes; ++probe) {
            Slot& slot = slotAt(table, mask, key, probe);
            if (slot.key.load(std::memory_order_relaxed))
                continue;
            slot.imp.store(imp, std::memory_order_relaxed);
            slot.key.store(key, std::memory_order_release);
            cls->data_->cached.push_back(
                { static_cast<std::size_t>(&slot - table), sel, signature });
            return;
        }
    }

    /// Replaces the table by an empty or larger one. The old one stays.
    void replaceTable(Class* cls, std::size_t count, bool keepAnswers)
    {
        Slot* const old = cls->slots_.load(std::memory_order_relaxed);
        const bool hadSlots = slotsIn(cls) > 0;
        auto* const table = static_cast<Slot*>(std::calloc(count, sizeof(Slot)));
        if (!table)
            fatal("out of memory");
        const std::uint64_t mask = (count - 1) * sizeof(Slot);
        const std::vector<CachedAnswer> answers = std::exchange(cls->data_->cached, {});
        if (keepAnswers) {
            cls->data_->cached.reserve(answers.size() + 1);
            for (const CachedAnswer& answer : answers)
                put(cls, table, mask, old[answer.slot].key.load(std::memory_order_relaxed),
                    old[answer.slot].imp.load(std::memory_order_relaxed), answer.sel,
                    answer.signature);
        }
        if (hadSlots)
            cls->data_->oldTables.push_back(old);
        cls->slots_.store(table, std::memory_order_release);
        cls->mask_.store(mask, std::memory_order_release);
    }

    void keep(Class* cls, std::uint64_t key, IMP imp, SEL sel, const Signature* signature)
    {
        std::size_t count = slotsIn(cls);
        if (count == 0)
            replaceTable(cls, count = kFirstTable, false);
        for (;;) {
            Slot* const table = cls->slots_.load(std::memory_order_relaxed);
            const std::uint64_t mask = cls->mask_.load(std::memory_order_relaxed);
            const bool homeIsTaken
                = slotAt(table, mask, key, 0).key.load(std::memory_order_relaxed) != 0;
            const bool crowded = (cls->data_->cached.size() + 1) * 4 > count;
            const bool mayGrow = count < kLargestTable;
            // A first slot that is taken costs every later send a second look: grow while that is cheap.
            const bool worthwhile = homeIsTaken && (cls->data_->cached.size() + 1) * 6 > count;
            if (mayGrow && (crowded || worthwhile)) {
                replaceTable(cls, count *= 2, true);
                continue;
            }
            put(cls, table, mask, key, imp, sel, signature);
            return; // in a full neighbourhood the answer is looked up each time
        }
    }

    IMP lookAround(Class* cls, std::uint64_t key)
    {
        const std::uint64_t mask = cls->mask_.load(std::memory_order_acquire);
        Slot* const table = cls->slots_.load(std::memory_order_acquire);
        for (std::size_t probe = 0; probe < kProbes; ++probe) {
            const Slot& slot = slotAt(table, mask, key, probe);
            const std::uint64_t found = slot.key.load(std::memory_order_acquire);
            if (found == key)
                return slot.imp.load(std::memory_order_acquire);
            if (!found)
                return nullptr;
        }
        return nullptr;
    }

    [[noreturn]] void raiseMismatch(
        const NSObject* self, Class* holder, const char* name, const char* sent, const char* found)
    {
        const bool isClass = self->isa_->data_->isMeta;
        raise("NSInvalidArgumentException",
            std::string(isClass ? "+[" : "-[") + class_getName(holder) + " " + name + "]: sent as "
                + sent + ", implemented as " + found);
    }

    std::uintptr_t thisThread()
    {
        static thread_local char mark;
        return reinterpret_cast<std::uintptr_t>(&mark);
    }

    struct InitializationGate {
        std::mutex mutex;
        std::condition_variable changed;
    };
    InitializationGate& gate()
    {
        static InitializationGate& instance = *new InitializationGate;
        return instance;
    }

    /// Claims the sending of `+initialize`; false when it is done or this thread is already in it.
    bool claimInitialization(ClassData& data)
    {
        std::unique_lock lock(gate().mutex);
        for (;;) {
            switch (data.initialization.load(std::memory_order_acquire)) {
            case Initialization::done:
                return false;
            case Initialization::none:
                data.initialization.store(Initialization::running, std::memory_order_release);
                data.initializer.store(thisThread(), std::memory_order_relaxed);
                return true;
            case Initialization::running:
                if (data.initializer.load(std::memory_order_relaxed) == thisThread())
                    return false;
                gate().changed.wait(lock);
            }
        }
    }

    void finishInitialization(ClassData& data, Initialization state)
    {
        {
            const std::lock_guard lock(gate().mutex);
            data.initialization.store(state, std::memory_order_release);
        }
        gate().changed.notify_all();
    }

}

constinit std::atomic<std::uint64_t> methodChanges { 1 };

constinit NSObject* const nilObject = &nilStorage.object;

Slot* emptySlots() { return emptyTable; }

Method* findMethod(const Class* cls, SEL sel)
{
    for (; cls; cls = cls->super_) {
        if (Method* method = cls->data_->methods.find(sel))
            return method;
    }
    return nullptr;
}

void ensureInitialized(Class* cls)
{
    Class* const plain = cls->data_->plainClass;
    ClassData& data = *plain->data_;
    if (data.initialization.load(std::memory_order_acquire) == Initialization::done)
        return;
    if (plain->super_)
        ensureInitialized(plain->super_);
    if (!claimInitialization(data))
        return;
    try {
        plain->send<"initialize">();
    } catch (...) {
        finishInitialization(data, Initialization::none); // the next message tries again
        throw;
    }
    finishInitialization(data, Initialization::done);
}

namespace dispatch {

    IMP miss(const NSObject* self, Class* holder, SEL sel, const char* name,
        const Signature& signature, std::uint64_t key)
    {
        if (self == nilObject || !holder->data_)
            return signature.zero();
        if (const IMP found = lookAround(holder, key))
            return found;
        ensureInitialized(holder);
        IMP imp = nullptr;
        const char* wrongTypes = nullptr;
        Class* adaptableIn = nullptr;
        {
            const std::lock_guard guard(runtimeLock());
            const Method* const method = findMethod(holder, sel);
            if (method) {
                const char* const types = method->types.load(std::memory_order_relaxed);
                if (types == signature.types || std::strcmp(types, signature.types) == 0) {
                    imp = method->imp.load(std::memory_order_relaxed);
                    const auto state = holder->data_->plainClass->data_->initialization.load();
                    if (state == Initialization::done && !lookAround(holder, key))
                        keep(holder, key, imp, sel, &signature);
                } else {
                    wrongTypes = types;
                    adaptableIn = method->isAdaptable ? method->owner : nullptr;
                }
            }
        }
        const MethodAdapter adapt = adaptableIn ? methodAdapter.load() : nullptr;
        if (adapt && adapt(adaptableIn, sel, signature.types))
            return miss(self, holder, sel, name, signature, key);
        if (wrongTypes)
            raiseMismatch(self, holder, name, signature.types, wrongTypes);
        if (!imp) {
            registerSelector(sel, name, true);
            return signature.forward();
        }
        return imp;
    }

}

void updateCaches(Class* cls, SEL sel)
{
    methodChanges.fetch_add(1, std::memory_order_release);
    ClassData& data = *cls->data_;
    Slot* const table = cls->slots_.load(std::memory_order_relaxed);
    bool stale = false;
    for (const CachedAnswer& answer : data.cached) {
        if (answer.sel != sel)
            continue;
        const Method* const method = findMethod(cls, sel);
        if (method && std::strcmp(method->types, answer.signature->types) == 0)
            table[answer.slot].imp.store(
                method->imp.load(std::memory_order_relaxed), std::memory_order_release);
        else
            stale = true;
    }
    if (stale) // the signature changed: the answer must be looked for, and refused, again
        replaceTable(cls, slotsIn(cls), false);
    for (Class* const subclass : data.subclasses)
        updateCaches(subclass, sel);
}

}
