// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <type_traits>

#include "Encoding.h"
#include "Ref.h"

namespace brindle {

/// An implementation whose arguments are not spoken of: compare it, keep it, cast it before calling it.
using IMP = void (*)();

/// What is known of a message's C signature, whatever its name: made by the compiler, one for each signature.
struct Signature {
    const char* types;
    std::size_t length;
    std::uint64_t hash; ///< of the types
    /// Calls an implementation: `arguments` are addresses of receiver, selector and arguments in order; the
    /// result is written to `result` (an owned count where the type is an object).
    void (*invoke)(IMP imp, void* const* arguments, void* result);
    /// The implementation that does nothing and answers zero.
    IMP (*zero)();
    /// The implementation that packs its arguments and forwards them.
    IMP (*forward)();
};

/// Forwards a message that nothing answers; writes the answer to `result` when there is one.
BRINDLE_EXPORT void forwardMessage(
    const Signature& signature, void* const* arguments, void* result, std::size_t resultSize);

/// How a C++ type crosses a C call: owners as pointers with their count, everything else as it is.
template <class T> struct Abi {
    using C = T;
    static T in(T value) { return value; }
    static T out(T value) { return value; }
};
template <> struct Abi<void> {
    using C = void;
};
template <class T> struct Abi<T&> {
    using C = T*;
    static T& in(T* pointer) { return *pointer; }
};
template <encoding::Owner T> struct Abi<T> {
    using C = typename T::Owned*;
    static C out(T owner) { return owner.leak(); }
};

namespace dispatch {

    template <bool> struct Merge {
        template <class T> using With = T;
    };
    template <> struct Merge<true> {
        template <class T> using With = NSObject*;
    };
    /// Every object pointer is the same to a C call: fewer instantiations.
    template <class T>
    using Common = typename Merge<encoding::isObjectPointer<T>>::template With<T>;

    template <class C, class... A> struct Call {
        using Function = C (*)(NSObject*, SEL, A...);

        template <std::size_t... I>
        static void unpack(IMP imp, void* const* arguments, void* result, std::index_sequence<I...>)
        {
            const auto function = reinterpret_cast<Function>(imp);
            NSObject* self = *static_cast<NSObject* const*>(arguments[0]);
            const SEL sel = *static_cast<const SEL*>(arguments[1]);
            if constexpr (std::is_void_v<C>)
                function(self, sel, *static_cast<A*>(arguments[I + 2])...);
            else
                *static_cast<C*>(result)
                    = function(self, sel, *static_cast<A*>(arguments[I + 2])...);
        }
        static void invoke(IMP imp, void* const* arguments, void* result)
        {
            unpack(imp, arguments, result, std::index_sequence_for<A...>());
        }
        static C zero(NSObject*, SEL, A...) { return C(); }
        static C forward(NSObject* self, SEL sel, A... a);
        static IMP zeroAddress() { return reinterpret_cast<IMP>(&zero); }
        static IMP forwardAddress() { return reinterpret_cast<IMP>(&forward); }
    };

    template <class C, class... A>
    inline constexpr Signature signature { messageEncoding<C, A...>.text,
        messageEncoding<C, A...>.view().size(), hashOf(messageEncoding<C, A...>.view()),
        &Call<C, A...>::invoke, &Call<C, A...>::zeroAddress, &Call<C, A...>::forwardAddress };

    template <class C, class... A> C Call<C, A...>::forward(NSObject* self, SEL sel, A... a)
    {
        void* arguments[] = { &self, &sel, &a... };
        if constexpr (std::is_void_v<C>) {
            forwardMessage(signature<C, A...>, arguments, nullptr, 0);
        } else {
            C result {};
            forwardMessage(signature<C, A...>, arguments, &result, sizeof result);
            return result;
        }
    }

    /// One answer kept by a class: filled once for a key, later only its implementation changes.
    struct Slot {
        std::atomic<std::uint64_t> key;
        std::atomic<IMP> imp;
    };

    /// Finds the implementation when the first slot does not hold it, and keeps it for the next time.
    /// - self: the receiver; `holder`: the class whose table is asked (the receiver's, or a parent for super).
    BRINDLE_EXPORT IMP miss(const NSObject* self, Class* holder, SEL sel, const char* name,
        const Signature& signature, std::uint64_t key);

}

/// The C signature of a message whose C++ result and arguments are these.
template <class R, class... A>
inline constexpr const Signature& signatureOf
    = dispatch::signature<dispatch::Common<typename Abi<R>::C>, dispatch::Common<A>...>;

}
