// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "NSObject.h"

namespace brindle {

/// Ends the process with one line: the caller broke a contract that has no answer.
[[noreturn]] BRINDLE_EXPORT void fatal(const char* text);

struct ClosureBase;

/// What all closures made at one place of the code share.
struct ClosureKind {
    const char* encoding; ///< "v@?" for one that takes and answers nothing
    void (*end)(ClosureBase*); ///< ends what was captured; nullptr when that is nothing
    std::size_t size; ///< bytes of memory, without the object header
};

/// What all closures begin with: the class word, the code as a plain C function, and their kind.
///
/// Other languages make closures with `makeClosure` of Runtime.h and call them through `code`.
struct ClosureBase : NSObject {
    using Code = void (*)();
    Code code = nullptr; ///< `R code(closure, arguments…)`
    const ClosureKind* kind = nullptr;
};

/// Answers the class of closures, `NSBlock`.
BRINDLE_EXPORT Class* closureClass();
/// Where a closure is made.
struct ClosurePlace {
    void* memory;
    Class* isa; ///< `closureClass()`
};
/// Answers memory for a closure, with a count of one; nothing else is set.
BRINDLE_EXPORT ClosurePlace allocateClosure(std::size_t size);

/// A closure as it is lent to operations: call it with `(*closure)(…)` through `call`, keep it as a `Block`.
template <class R, class... A> struct Closure<R(A...)> : ClosureBase {
    using Function = typename Abi<R>::C (*)(Closure*, A...);
};

namespace closures {

    template <class R, class... A> constexpr encoding::Buffer describe()
    {
        encoding::Buffer out;
        encoding::append<R>(out);
        out.add("@?");
        (encoding::append<A>(out), ...);
        return out;
    }
    template <class R, class... A>
    inline constexpr encoding::Exact<describe<R, A...>().length> text { describe<R, A...>() };

    template <class T> struct SignatureOf;
    template <class R, class... A> struct SignatureOf<Closure<R(A...)>> {
        static constexpr std::string_view text = closures::text<R, A...>.view();
    };

    /// The name of a class that may only be declared: a class itself would have to be complete to tell.
    template <class Named> constexpr std::string_view className()
    {
        std::string_view name = __PRETTY_FUNCTION__;
        name.remove_prefix(name.find("Named = ") + 8);
        name = name.substr(0, name.find_first_of(";]"));
        if (name.find('<') != name.npos)
            return {};
        const std::size_t colon = name.rfind(':');
        return colon == name.npos ? name : name.substr(colon + 1);
    }

    /// Adds a type as `append` does, with the class of an object and the signature of a closure.
    template <class T> constexpr void appendDetailed(encoding::Buffer& out)
    {
        using U = std::remove_cvref_t<T>;
        if constexpr (encoding::Owner<U>)
            appendDetailed<typename U::Owned*>(out);
        else {
            encoding::append<T>(out);
            if constexpr (std::is_pointer_v<U>) {
                using P = std::remove_cv_t<std::remove_pointer_t<U>>;
                if constexpr (encoding::isClosure<P>) {
                    out.add("<");
                    out.add(SignatureOf<P>::text);
                    out.add(">");
                } else if constexpr (!std::is_same_v<P, NSObject>) {
                    if (out.text[out.length - 1] == '@') {
                        out.add("\"");
                        out.add(className<P>());
                        out.add("\"");
                    }
                }
            }
        }
    }
    template <bool IsVariadic, class R, class... A> constexpr encoding::Buffer describeDetailed()
    {
        encoding::Buffer out;
        appendDetailed<R>(out);
        out.add("@:");
        (appendDetailed<A>(out), ...);
        if (IsVariadic)
            out.add("...");
        return out;
    }
    /// The type string of a message with the classes of its objects and the signatures of its closures:
    /// `v@:@"NSView"@?<v@?@Q^B>`.
    template <class R, class... A>
    inline constexpr encoding::Exact<describeDetailed<false, R, A...>().length> detailedTypes {
        describeDetailed<false, R, A...>()
    };
    /// The same with "..." for the arguments that C does not declare.
    template <class R, class... A>
    inline constexpr encoding::Exact<describeDetailed<true, R, A...>().length> variadicTypes {
        describeDetailed<true, R, A...>()
    };

    template <class F, class R, class... A> struct Holder : Closure<R(A...)> {
        F function;

        template <class G>
        explicit Holder(G&& g)
            : function(std::forward<G>(g))
        {
        }
        static typename Abi<R>::C run(Closure<R(A...)>* self, A... arguments)
        {
            F& function = static_cast<Holder*>(self)->function;
            if constexpr (std::is_void_v<R>)
                function(arguments...);
            else
                return Abi<R>::out(function(arguments...));
        }
        static void finish(ClosureBase* self) { static_cast<Holder*>(self)->function.~F(); }
        static const ClosureKind kHeld;
    };

    template <class F, class R, class... A>
    constexpr ClosureKind Holder<F, R, A...>::kHeld { text<R, A...>.text,
        std::is_trivially_destructible_v<F> ? nullptr : &Holder::finish, sizeof(Holder) };

}

template <class Signature> class Block;

/// Owns a closure: reference-counted, copied by sharing, an object to the runtime. Made from any callable.
///
/// Calling a null one ends the process: "brindle: a null closure was called".
template <class R, class... A> class Block<R(A...)> : public Ref<Closure<R(A...)>> {
    using Base = Ref<Closure<R(A...)>>;

public:
    using Owned = Closure<R(A...)>;

    Block() = default;
    Block(std::nullptr_t) { }
    Block(Closure<R(A...)>* lent)
        : Base(lent)
    {
    }
    template <class F>
        requires std::is_invocable_r_v<R, F&, A...>
        && (!std::is_base_of_v<Base, std::remove_cvref_t<F>>)
    Block(F&& function)
        : Base(Base::adopt(hold(std::forward<F>(function))))
    {
    }
    static Block adopt(Closure<R(A...)>* closure)
    {
        Block block;
        static_cast<Base&>(block) = Base::adopt(closure);
        return block;
    }

    R operator()(A... arguments) const { return call(this->get(), arguments...); }

private:
    template <class F> static Closure<R(A...)>* hold(F&& function)
    {
        using Holder = closures::Holder<std::decay_t<F>, R, A...>;
        static_assert(alignof(Holder) <= 16, "captured values of larger alignment cannot be held");
        const ClosurePlace place = allocateClosure(sizeof(Holder));
        auto* const holder = ::new (place.memory) Holder(std::forward<F>(function));
        holder->isa_ = place.isa;
        holder->code = reinterpret_cast<ClosureBase::Code>(&Holder::run);
        holder->kind = &Holder::kHeld;
        return holder;
    }
};

/// Runs a lent closure. A null one ends the process.
template <class R, class... A, class... B> R call(Closure<R(A...)>* closure, B&&... arguments)
{
    if (!closure) [[unlikely]]
        fatal("a null closure was called");
    const auto code = reinterpret_cast<typename Closure<R(A...)>::Function>(closure->code);
    if constexpr (encoding::Owner<R>)
        return R::adopt(code(closure, std::forward<B>(arguments)...));
    else
        return code(closure, std::forward<B>(arguments)...);
}

}
