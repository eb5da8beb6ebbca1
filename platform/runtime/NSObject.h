// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Send.h"

namespace brindle {

class NSInvocation;
class NSMethodSignature;
class NSString;
struct ClassData;
struct Protocol;

/// The root of every class: an object begins with one word, its class, and has no C++ virtual table.
///
/// Operations are messages; the members of a class only send them. Objects are made by `make<T>()` or by
/// `alloc<T>()` and an `init…` operation, never on the stack. The count stands before the object.
struct NSObject {
    struct Meta;
    static constexpr const char* kName = "NSObject";
    template <class Topic> struct Methods;
    template <class Self = NSObject> static typename Self::Meta cls();

    /// Sends a message: the receiver's class answers with the implementation it has now.
    /// - Raises: `NSInvalidArgumentException` when nothing answers (after forwarding), or when the implementation
    ///   has another signature; the text names class, selector and both encodings.
    template <Text S, class R = void, class... A> R send(A... arguments) const;

    /// Makes the object ready for use and answers it, or nil when it cannot be.
    Ref<NSObject> init() { return send<"init", Ref<NSObject>>(); }
    Class* classObject() const { return send<"class", Class*>(); }
    Class* superclass() const { return send<"superclass", Class*>(); }
    /// Answers whether both objects have equal values; by default only an object itself is equal to it.
    bool isEqual(const NSObject* other) const
    {
        return send<"isEqual:", bool>(const_cast<NSObject*>(other));
    }
    /// Answers the same number for equal objects.
    std::uint64_t hash() const { return send<"hash", std::uint64_t>(); }
    bool isKindOfClass(Class* cls) const { return send<"isKindOfClass:", bool>(cls); }
    bool isMemberOfClass(Class* cls) const { return send<"isMemberOfClass:", bool>(cls); }
    bool respondsToSelector(SEL sel) const { return send<"respondsToSelector:", bool>(sel); }
    bool conformsToProtocol(Protocol* protocol) const
    {
        return send<"conformsToProtocol:", bool>(protocol);
    }
    /// Sends a message without arguments, or with arguments that are ignored where the operation takes none.
    /// - Returns: the answer where it is an object or a class, else nil.
    Ref<NSObject> performSelector(SEL sel) { return send<"performSelector:", Ref<NSObject>>(sel); }
    Ref<NSObject> performSelector_withObject(SEL sel, NSObject* object)
    {
        return send<"performSelector:withObject:", Ref<NSObject>>(sel, object);
    }
    Ref<NSObject> performSelector_withObject_withObject(SEL sel, NSObject* first, NSObject* second)
    {
        return send<"performSelector:withObject:withObject:", Ref<NSObject>>(sel, first, second);
    }
    /// Answers the implementation this object would run; the forwarding one where there is none.
    IMP methodForSelector(SEL sel) const { return send<"methodForSelector:", IMP>(sel); }
    Ref<NSMethodSignature> methodSignatureForSelector(SEL sel) const
    {
        return send<"methodSignatureForSelector:", Ref<NSMethodSignature>>(sel);
    }
    /// Handles a message that nothing answers; the root sends `doesNotRecognizeSelector:`.
    void forwardInvocation(NSInvocation* invocation) { send<"forwardInvocation:">(invocation); }
    /// Answers another object that takes the message, or nil (the root's answer).
    Ref<NSObject> forwardingTargetForSelector(SEL sel)
    {
        return send<"forwardingTargetForSelector:", Ref<NSObject>>(sel);
    }
    /// Raises `NSInvalidArgumentException`: "-[Class selector]: unrecognized selector sent to instance 0x…".
    void doesNotRecognizeSelector(SEL sel) { send<"doesNotRecognizeSelector:">(sel); }
    /// Answers `copyWithZone:` with a null zone.
    Ref<NSObject> copy() const { return send<"copy", Ref<NSObject>>(); }
    Ref<NSObject> mutableCopy() const { return send<"mutableCopy", Ref<NSObject>>(); }
    /// Answers "<Class: 0xaddress>" unless a class says more.
    Ref<NSString> description() const { return send<"description", Ref<NSString>>(); }
    Ref<NSString> debugDescription() const { return send<"debugDescription", Ref<NSString>>(); }
    /// Does nothing here; sent to objects that an interface description made.
    void awakeFromNib() { send<"awakeFromNib">(); }

    Class* isa_ = nullptr; ///< the object's class; the one word every object begins with
};

/// A class as an object: it can be kept in collections, compared, sent class operations.
///
/// The first two words are what every send reads. Classes live for ever.
struct Class : NSObject {
    std::atomic<std::uint64_t> mask_ { 0 };
    std::atomic<dispatch::Slot*> slots_ { nullptr };
    Class* super_ = nullptr;
    ClassData* data_ = nullptr;
};

/// The one object that absent receivers send to: it answers every message with nil, NO, zero or an empty structure.
BRINDLE_EXPORT extern NSObject* const nilObject;

/// Answers the object, or the one that answers nothing: `maybe(view->superview())->frame()`.
template <class T> T* maybe(T* object) { return object ? object : static_cast<T*>(nilObject); }
template <class T> T* maybe(const Ref<T>& object) { return maybe(object.get()); }

namespace dispatch {

    /// Selector and call signature in one word: a call with other types never hits.
    constexpr std::uint64_t keyOf(SEL sel, std::uint64_t signature)
    {
        return sel.value ^ signature;
    }

    /// The road every message takes: two loads, a compare, an indirect call. One for each signature, whatever the
    /// message's name.
    template <class R, class... A>
    [[gnu::always_inline]] inline R sendThrough(
        const NSObject* self, Class* holder, SEL sel, const char* name, std::uint64_t key, A... a)
    {
        static_assert(
            (std::is_trivially_copyable_v<A> && ...), "arguments are lent: pass ref.get()");
        // The mask first: tables only grow, so an old mask fits a new table.
        const std::uint64_t mask = holder->mask_.load(std::memory_order_acquire);
        const auto* table
            = reinterpret_cast<const char*>(holder->slots_.load(std::memory_order_acquire));
        const auto& slot = *reinterpret_cast<const Slot*>(table + (key & mask));
        const IMP imp = slot.key.load(std::memory_order_acquire) == key
            ? slot.imp.load(std::memory_order_acquire)
            : miss(self, holder, sel, name, signatureOf<R, A...>, key);
        const auto function
            = reinterpret_cast<typename Abi<R>::C (*)(const NSObject*, SEL, A...)>(imp);
        if constexpr (encoding::Owner<R>)
            return R::adopt(function(self, sel, a...));
        else
            return function(self, sel, a...);
    }

}

template <Text S, class R, class... A> inline R NSObject::send(A... arguments) const
{
    constexpr SEL sel = selectorOf(S.view());
    constexpr std::uint64_t key = dispatch::keyOf(sel, signatureOf<R, A...>.hash);
    return dispatch::sendThrough<R, A...>(this, isa_, sel, S.characters, key, arguments...);
}

/// Answers the class of a name, realising it on first use; nil for nil, "" and names nobody declared.
BRINDLE_EXPORT Class* objc_getClass(const char* name);

/// Answers a class that a header declares, without sending it a message.
/// - Raises: ends the process with one line when no source of the program implements the class.
BRINDLE_EXPORT Class* requireClass(const char* name);

template <class T> inline Class* classOf()
{
    static constinit std::atomic<Class*> found { nullptr };
    Class* cls = found.load(std::memory_order_acquire);
    if (!cls) [[unlikely]] {
        cls = requireClass(T::kName);
        found.store(cls, std::memory_order_release);
    }
    return cls;
}

/// Operations of class objects. A class with class operations nests `struct Meta : Parent::Meta`.
struct NSObject::Meta {
    Class* object = nullptr;

    operator Class*() const { return object; }
    Class* operator->() const { return object; }

    template <Text S, class R = void, class... A> R send(A... arguments) const
    {
        return object->send<S, R, A...>(arguments...);
    }
    /// Answers an object with all fields zero and one count; an `init…` operation must follow.
    Ref<NSObject> alloc() const { return send<"alloc", Ref<NSObject>>(); }
    /// Answers the class's name.
    Ref<NSString> description() const { return send<"description", Ref<NSString>>(); }
    Class* superclass() const { return send<"superclass", Class*>(); }
    bool instancesRespondToSelector(SEL sel) const
    {
        return send<"instancesRespondToSelector:", bool>(sel);
    }
    bool respondsToSelector(SEL sel) const { return send<"respondsToSelector:", bool>(sel); }
    bool conformsToProtocol(Protocol* protocol) const
    {
        return send<"conformsToProtocol:", bool>(protocol);
    }
    bool isSubclassOfClass(Class* cls) const { return send<"isSubclassOfClass:", bool>(cls); }
    IMP instanceMethodForSelector(SEL sel) const
    {
        return send<"instanceMethodForSelector:", IMP>(sel);
    }
    Ref<NSMethodSignature> instanceMethodSignatureForSelector(SEL sel) const
    {
        return send<"instanceMethodSignatureForSelector:", Ref<NSMethodSignature>>(sel);
    }
};

template <class Self> inline typename Self::Meta NSObject::cls()
{
    typename Self::Meta meta;
    meta.object = classOf<Self>();
    return meta;
}

/// Answers a new object that still wants its `init…`.
template <class T> Ref<T> alloc() { return cast<T>(T::cls().alloc()); }

/// Answers a new object made by `init`.
template <class T> Ref<T> make()
{
    return cast<T>(classOf<T>()->template send<"new", Ref<NSObject>>());
}

/// Sends a message that starts at the parent of `T`, the class that holds the calling code:
/// `super<NSView, "drawRect:">(self, rect)`. For a class operation `self` is the class object.
template <class T, Text S, class R = void, class Self, class... A>
R super(Self& self, A... arguments)
{
    Class* holder = classOf<T>();
    if constexpr (std::is_same_v<Self, Class>)
        holder = holder->isa_;
    constexpr SEL sel = selectorOf(S.view());
    constexpr std::uint64_t key = dispatch::keyOf(sel, signatureOf<R, A...>.hash);
    return dispatch::sendThrough<R, A...>(
        &self, holder->super_, sel, S.characters, key, arguments...);
}

/// The receiver of an extension's function: made from a reference, a pointer, an owner or a class object.
/// An absent receiver answers nil, NO or zero.
template <class T> class To {
public:
    To(T& object)
        : target_(&object)
    {
    }
    To(T* object)
        : target_(maybe(object))
    {
    }
    template <class U>
        requires std::is_convertible_v<U*, T*>
    To(const Ref<U>& object)
        : target_(maybe(static_cast<T*>(object.get())))
    {
    }
    To(NSObject::Meta meta)
        requires std::is_convertible_v<Class*, T*>
        : target_(meta.object)
    {
    }

    T* operator->() const { return target_; }
    template <Text S, class R = void, class... A> R send(A... arguments) const
    {
        return target_->template send<S, R, A...>(arguments...);
    }

private:
    T* target_;
};

/// Declares what the runtime needs inside a class: its name, its parent, its class object `cls()` and the template
/// whose specialisations implement it topic by topic.
#define BRINDLE_OBJECT(T, Super)                                                                   \
public:                                                                                            \
    static constexpr const char* kName = #T;                                                       \
    using Parent = Super;                                                                          \
    template <class Topic> struct Methods;                                                         \
    template <class Self = T> static typename Self::Meta cls()                                     \
    {                                                                                              \
        return ::brindle::NSObject::cls<Self>();                                                   \
    }                                                                                              \
                                                                                                   \
protected:                                                                                         \
    template <class> friend struct ::brindle::Lifecycle;                                           \
    T() = default;                                                                                 \
                                                                                                   \
private:

/// Makes and ends the C++ part of objects of one class.
template <class T> struct Lifecycle {
    static void construct(void* memory)
    {
        auto* const object = static_cast<NSObject*>(memory);
        Class* const cls = object->isa_;
        (::new (memory) T())->isa_ = cls;
    }
    static void destruct(void* object) { static_cast<T*>(object)->~T(); }
};

}
