// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "Export.h"

namespace brindle {

struct NSObject;

/// What stands in the 16 bytes before every object. The object itself begins with its class word.
struct ObjectHeader {
    std::atomic<std::uintptr_t>
        extras; ///< associated values, weak references, a lock bit; see Extras.cpp
    std::atomic<std::intptr_t> count;

    /// Objects that live as long as the process (classes, literals) start here and never come near zero.
    static constexpr std::intptr_t kImmortal = std::intptr_t { 1 } << 62;
    /// An object whose `dealloc` runs; retains and releases in there change nothing.
    static constexpr std::intptr_t kDying = std::intptr_t { 1 } << 60;
};

inline ObjectHeader& headerOf(const void* object)
{
    return reinterpret_cast<ObjectHeader*>(const_cast<void*>(object))[-1];
}

/// Ends an object whose last count went: `dealloc`, fields, associated values, memory, in this order.
BRINDLE_EXPORT void destroyObject(void* object);

/// Adds one count. The object must not be nil.
inline void retain(const void* object)
{
    headerOf(object).count.fetch_add(1, std::memory_order_relaxed);
}

/// Takes one count away; the last one ends the object on this thread. The object must not be nil.
inline void release(const void* object)
{
    ObjectHeader& header = headerOf(object);
    // A single count is the caller's, and without a weak reference nobody can add another: no atomic step is needed.
    const bool alone = header.count.load(std::memory_order_acquire) == 1
        && header.extras.load(std::memory_order_relaxed) == 0;
    if (alone || header.count.fetch_sub(1, std::memory_order_acq_rel) == 1)
        destroyObject(const_cast<void*>(object));
}

/// Owns one count of an object, or is nil. What fields keep and what operations answer.
template <class T> class Ref {
public:
    using Owned = T;

    constexpr Ref() = default;
    constexpr Ref(std::nullptr_t) { }
    Ref(T* object)
        : pointer_(object)
    {
        if (pointer_)
            retain(pointer_);
    }
    Ref(const Ref& other)
        : Ref(other.pointer_)
    {
    }
    Ref(Ref&& other) noexcept
        : pointer_(other.leak())
    {
    }
    template <class U>
        requires std::is_convertible_v<U*, T*>
    Ref(const Ref<U>& other)
        : Ref(static_cast<T*>(other.get()))
    {
    }
    template <class U>
        requires std::is_convertible_v<U*, T*>
    Ref(Ref<U>&& other) noexcept
        : pointer_(other.leak())
    {
    }
    ~Ref()
    {
        if (pointer_)
            release(pointer_);
    }
    Ref& operator=(Ref other) noexcept
    {
        swap(other);
        return *this;
    }

    /// Takes over a count that somebody else made.
    static Ref adopt(T* object)
    {
        Ref ref;
        ref.pointer_ = object;
        return ref;
    }
    /// Gives the count away to whoever takes the pointer.
    [[nodiscard]] T* leak() { return std::exchange(pointer_, nullptr); }

    T* get() const { return pointer_; }
    T* operator->() const { return pointer_; }
    T& operator*() const& { return *pointer_; }
    /// An owner that is about to go lends nothing: `for (… : *view->subviews())` would read what is gone.
    T& operator*() const&& = delete;
    explicit operator bool() const { return pointer_ != nullptr; }
    void swap(Ref& other) noexcept { std::swap(pointer_, other.pointer_); }

    /// Two references are equal when they own the same object; for equal values ask `isEqual`.
    friend bool operator==(const Ref& a, const Ref& b) { return a.pointer_ == b.pointer_; }
    friend bool operator==(const Ref& a, std::nullptr_t) { return !a.pointer_; }
    friend bool operator==(const Ref& a, const T* b) { return a.pointer_ == b; }

private:
    T* pointer_ = nullptr;
};

/// Answers the same object as another class, unchecked: the caller knows what it is.
template <class T, class U> Ref<T> cast(Ref<U> object)
{
    return Ref<T>::adopt(static_cast<T*>(object.leak()));
}
template <class T, class U> T* cast(U* object) { return static_cast<T*>(object); }

/// What a weak reference holds in place of the object.
struct WeakCell;
BRINDLE_EXPORT WeakCell* makeWeakCell(void* object);
BRINDLE_EXPORT WeakCell* shareWeakCell(WeakCell* cell);
BRINDLE_EXPORT void dropWeakCell(WeakCell* cell);
/// Answers the object with one count added for the caller, or nullptr once its end has begun.
BRINDLE_EXPORT void* loadWeakCell(WeakCell* cell);
/// Answers whether the object's `dealloc` has begun, also for no cell.
BRINDLE_EXPORT bool isWeakCellClear(WeakCell* cell);

/// Knows an object without keeping it; reads nil as soon as the object's `dealloc` begins.
/// Thread: reading is safe while another thread ends the object.
template <class T> class WeakRef {
public:
    WeakRef() = default;
    WeakRef(T* object)
        : cell_(object ? makeWeakCell(object) : nullptr)
    {
    }
    WeakRef(const Ref<T>& object)
        : WeakRef(object.get())
    {
    }
    WeakRef(const WeakRef& other)
        : cell_(shareWeakCell(other.cell_))
    {
    }
    WeakRef(WeakRef&& other) noexcept
        : cell_(std::exchange(other.cell_, nullptr))
    {
    }
    ~WeakRef() { dropWeakCell(cell_); }
    WeakRef& operator=(WeakRef other)
    {
        std::swap(cell_, other.cell_);
        return *this;
    }

    /// Answers an owner of the object, or nil.
    Ref<T> get() const { return Ref<T>::adopt(static_cast<T*>(loadWeakCell(cell_))); }
    /// Answers whether `dealloc` has begun, or there never was an object; asking does not own it and so never ends it.
    /// `get` may read nil a little earlier, once the last owner has gone.
    bool isGone() const { return isWeakCellClear(cell_); }

private:
    WeakCell* cell_ = nullptr;
};

}
