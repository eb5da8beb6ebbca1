// SPDX-License-Identifier: Apache-2.0

// What can hang on any object: associated values and a weak cell, in a list that starts in the word before the count.
//
// The word is the address of the first node; its lowest bit is a lock for writers. Nodes are never taken out of the
// list while the object lives, so readers walk it without the lock. A node whose value went is used again for
// another key. An object with more keys than a short walk covers gets a table for the further ones.

#include <cstdlib>
#include <thread>

#include "ClassPrivate.h"

namespace brindle {

namespace {

    constexpr std::uintptr_t kLocked = 1;
    constexpr std::uintptr_t kKindMask = 15; // nodes come from malloc: the low four bits are free
    constexpr unsigned kShortList = 8;

    // What a node's low bits say. For values: whether a count is kept, whether reads lock.
    constexpr std::uintptr_t kOwned = 1;
    constexpr std::uintptr_t kAtomic = 2;
    constexpr std::uintptr_t kWeakNode = 4;
    constexpr std::uintptr_t kTableNode = 8;

    struct Node {
        std::atomic<const void*> key;
        std::atomic<void*> value;
        std::atomic<std::uintptr_t> link; ///< the next node and this node's bits

        Node* next() const
        {
            return reinterpret_cast<Node*>(link.load(std::memory_order_relaxed) & ~kKindMask);
        }
        std::uintptr_t bits() const { return link.load(std::memory_order_acquire) & kKindMask; }
    };

    struct Held {
        void* value;
        std::uintptr_t bits;
    };
    using Table = std::unordered_map<const void*, Held>;

    class ExtrasLock {
    public:
        explicit ExtrasLock(ObjectHeader& header)
            : header_(header)
        {
            std::uintptr_t word = header_.extras.load(std::memory_order_relaxed) & ~kLocked;
            while (!header_.extras.compare_exchange_weak(
                word, word | kLocked, std::memory_order_acquire, std::memory_order_relaxed)) {
                if (word & kLocked)
                    std::this_thread::yield();
                word &= ~kLocked;
            }
        }
        ~ExtrasLock()
        {
            // Nobody else writes the word while it is locked, so a plain store is enough.
            const std::uintptr_t word = header_.extras.load(std::memory_order_relaxed);
            header_.extras.store(word & ~kLocked, std::memory_order_release);
        }
        ExtrasLock(const ExtrasLock&) = delete;
        ExtrasLock& operator=(const ExtrasLock&) = delete;

    private:
        ObjectHeader& header_;
    };

    Node* firstNode(const ObjectHeader& header)
    {
        return reinterpret_cast<Node*>(header.extras.load(std::memory_order_acquire) & ~kLocked);
    }

    Node* findValue(Node* node, const void* key)
    {
        for (; node; node = node->next()) {
            if (node->key.load(std::memory_order_acquire) == key
                && !(node->bits() & (kWeakNode | kTableNode)))
                return node;
        }
        return nullptr;
    }

    Node* findKind(Node* node, std::uintptr_t kind)
    {
        while (node && !(node->bits() & kind))
            node = node->next();
        return node;
    }

    Node* makeNode(const void* key, void* value, std::uintptr_t link)
    {
        auto* const node = static_cast<Node*>(std::malloc(sizeof(Node)));
        if (!node)
            fatal("out of memory");
        ::new (node) Node;
        node->key.store(key, std::memory_order_relaxed);
        node->value.store(value, std::memory_order_relaxed);
        node->link.store(link, std::memory_order_relaxed);
        return node;
    }

    /// Puts a node at the front. The lock is held.
    void push(ObjectHeader& header, const void* key, void* value, std::uintptr_t bits)
    {
        const auto first = reinterpret_cast<std::uintptr_t>(firstNode(header));
        Node* const node = makeNode(key, value, first | bits);
        header.extras.store(
            reinterpret_cast<std::uintptr_t>(node) | kLocked, std::memory_order_release);
    }

    /// Hangs the first value on an object that nothing hangs on, without the lock. False: somebody was quicker.
    bool pushFirst(ObjectHeader& header, const void* key, void* value, std::uintptr_t bits)
    {
        Node* const node = makeNode(key, value, bits);
        std::uintptr_t nothing = 0;
        if (header.extras.compare_exchange_strong(nothing, reinterpret_cast<std::uintptr_t>(node),
                std::memory_order_release, std::memory_order_relaxed))
            return true;
        std::free(node);
        return false;
    }

    void setBits(Node* node, std::uintptr_t bits)
    {
        node->link.store((node->link.load(std::memory_order_relaxed) & ~kKindMask) | bits,
            std::memory_order_release);
    }

    /// Stores a value; answers what stood there before. The lock is held.
    Held exchange(ObjectHeader& header, const void* key, void* value, std::uintptr_t bits)
    {
        Node* const first = firstNode(header);
        if (Node* const node = findValue(first, key)) {
            const Held old { node->value.load(std::memory_order_relaxed), node->bits() };
            node->value.store(value, std::memory_order_release);
            if (value)
                setBits(node, bits);
            return old;
        }
        Node* const tableNode = findKind(first, kTableNode);
        auto* table = tableNode ? static_cast<Table*>(tableNode->value.load()) : nullptr;
        if (table) {
            if (const auto found = table->find(key); found != table->end()) {
                const Held old = found->second;
                if (value)
                    found->second = { value, bits };
                else
                    table->erase(found);
                return old;
            }
        }
        if (!value)
            return {};
        unsigned length = 0;
        for (Node* node = first; node; node = node->next()) {
            ++length;
            if (!(node->bits() & (kWeakNode | kTableNode))
                && !node->value.load(std::memory_order_relaxed)) {
                node->key.store(key, std::memory_order_release);
                setBits(node, bits);
                node->value.store(value, std::memory_order_release);
                return {};
            }
        }
        if (length < kShortList) {
            push(header, key, value, bits);
            return {};
        }
        if (!table)
            push(header, nullptr, table = new Table, kTableNode);
        table->emplace(key, Held { value, bits });
        return {};
    }

    Ref<NSObject> owner(void* value) { return Ref<NSObject>(static_cast<NSObject*>(value)); }

}

void objc_setAssociatedObject(
    NSObject* object, const void* key, NSObject* value, objc_AssociationPolicy policy)
{
    if (!object || object == nilObject)
        return;
    const bool copies = (policy & 3) == 3;
    const bool retains = (policy & 3) == 1;
    std::uintptr_t bits = copies || retains ? kOwned : 0;
    if (policy & 0x300)
        bits |= kAtomic;
    if (copies)
        value = properties::copyObject(value);
    else if (retains && value)
        retain(value);
    ObjectHeader& header = headerOf(object);
    if (!header.extras.load(std::memory_order_relaxed)
        && (!value || pushFirst(header, key, value, bits)))
        return;
    Held old {};
    {
        const ExtrasLock lock(header);
        old = exchange(header, key, value, bits);
    }
    if (old.value && (old.bits & kOwned))
        release(old.value); // after the new value is in place, with no lock held
}

NSObject* objc_borrowAssociatedObject(const NSObject* object, const void* key)
{
    if (!object)
        return nullptr;
    ObjectHeader& header = headerOf(object);
    Node* const first = firstNode(header);
    if (!first)
        return nullptr;
    if (const Node* const node = findValue(first, key))
        return static_cast<NSObject*>(node->value.load(std::memory_order_acquire));
    if (!findKind(first, kTableNode))
        return nullptr;
    const ExtrasLock lock(header);
    const auto& table = *static_cast<Table*>(findKind(first, kTableNode)->value.load());
    const auto found = table.find(key);
    return found == table.end() ? nullptr : static_cast<NSObject*>(found->second.value);
}

Ref<NSObject> objc_getAssociatedObject(const NSObject* object, const void* key)
{
    if (!object)
        return nullptr;
    ObjectHeader& header = headerOf(object);
    Node* const first = firstNode(header);
    if (!first)
        return nullptr;
    if (Node* const node = findValue(first, key)) {
        if (!(node->bits() & kAtomic))
            return owner(node->value.load(std::memory_order_acquire));
        const ExtrasLock lock(header);
        return node->key.load(std::memory_order_relaxed) == key
            ? owner(node->value.load(std::memory_order_relaxed))
            : nullptr;
    }
    if (!findKind(first, kTableNode))
        return nullptr;
    const ExtrasLock lock(header);
    const auto& table = *static_cast<Table*>(findKind(first, kTableNode)->value.load());
    const auto found = table.find(key);
    return found == table.end() ? nullptr : owner(found->second.value);
}

void objc_removeAssociatedObjects(NSObject* object)
{
    if (!object || object == nilObject)
        return;
    std::vector<void*> old;
    {
        ObjectHeader& header = headerOf(object);
        const ExtrasLock lock(header);
        for (Node* node = firstNode(header); node; node = node->next()) {
            if (node->bits() & kWeakNode)
                continue;
            if (node->bits() & kTableNode) {
                auto& table = *static_cast<Table*>(node->value.load());
                for (const auto& [key, held] : table) {
                    if (held.bits & kOwned)
                        old.push_back(held.value);
                }
                table.clear();
                continue;
            }
            void* const value = node->value.exchange(nullptr);
            if (value && (node->bits() & kOwned))
                old.push_back(value);
        }
    }
    for (void* const value : old)
        release(value);
}

/// Shared by an object and its weak references; the object's word is cleared when the object's end begins.
struct WeakCell {
    std::atomic<std::intptr_t> count { 1 };
    std::atomic<bool> locked { false };
    void* object = nullptr;

    void lock()
    {
        while (locked.exchange(true, std::memory_order_acquire))
            std::this_thread::yield();
    }
    void unlock() { locked.store(false, std::memory_order_release); }
};

WeakCell* makeWeakCell(void* object)
{
    ObjectHeader& header = headerOf(object);
    const std::intptr_t count = header.count.load(std::memory_order_relaxed);
    if (count >= ObjectHeader::kDying / 2 && count < ObjectHeader::kImmortal / 2)
        return nullptr; // its end has begun
    const ExtrasLock lock(header);
    if (Node* const node = findKind(firstNode(header), kWeakNode))
        return shareWeakCell(static_cast<WeakCell*>(node->value.load()));
    auto* const cell = new WeakCell;
    cell->object = object;
    push(header, nullptr, cell, kWeakNode);
    return shareWeakCell(cell);
}

WeakCell* shareWeakCell(WeakCell* cell)
{
    if (cell)
        cell->count.fetch_add(1, std::memory_order_relaxed);
    return cell;
}

void dropWeakCell(WeakCell* cell)
{
    if (cell && cell->count.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete cell;
}

void* loadWeakCell(WeakCell* cell)
{
    if (!cell)
        return nullptr;
    const std::lock_guard guard(*cell); // the object's memory stays while this is held
    if (!cell->object)
        return nullptr;
    auto& count = headerOf(cell->object).count;
    std::intptr_t now = count.load(std::memory_order_relaxed);
    while (now > 0 && (now < ObjectHeader::kDying / 2 || now >= ObjectHeader::kImmortal / 2)) {
        if (count.compare_exchange_weak(now, now + 1, std::memory_order_acquire))
            return cell->object;
    }
    return nullptr;
}

bool isWeakCellClear(WeakCell* cell)
{
    if (!cell)
        return true;
    const std::lock_guard guard(*cell);
    return !cell->object;
}

void clearWeakReferences(void* object)
{
    ObjectHeader& header = headerOf(object);
    if (!firstNode(header))
        return;
    WeakCell* cell = nullptr;
    {
        const ExtrasLock lock(header);
        if (Node* const node = findKind(firstNode(header), kWeakNode))
            cell = static_cast<WeakCell*>(node->value.load());
    }
    if (!cell)
        return;
    const std::lock_guard guard(*cell);
    cell->object = nullptr;
}

void clearExtras(void* object)
{
    ObjectHeader& header = headerOf(object);
    if (!firstNode(header))
        return;
    objc_removeAssociatedObjects(static_cast<NSObject*>(object));
    Node* node = firstNode(header);
    header.extras.store(0, std::memory_order_relaxed);
    while (node) {
        Node* const next = node->next();
        if (node->bits() & kWeakNode)
            dropWeakCell(static_cast<WeakCell*>(node->value.load()));
        else if (node->bits() & kTableNode)
            delete static_cast<Table*>(node->value.load());
        std::free(node);
        node = next;
    }
}

}
