// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cxxabi.h>

#include "Block.h"

/// Plain functions by name, for languages that cannot read headers. A folder lists its own:
/// `BRINDLE_FUNCTION(NSBeep)` at namespace scope of one of its sources.

namespace brindle {

/// Keeps the exception that is being handled for this thread; `brindle_takeError` answers it.
BRINDLE_EXPORT void keepCurrentException() noexcept;

/// One function: its name, its detailed types without receiver and selector, and its code with C linkage.
struct FunctionRow {
    const char* name;
    const char* types;
    IMP (*code)();
};

namespace functions {

    /// How an argument crosses the C call: owners that are taken by reference come as bare pointers.
    template <class A> struct Argument {
        using C = A;
        static A in(C value) { return value; }
    };
    template <class A>
        requires encoding::Owner<std::remove_cvref_t<A>>
    struct Argument<A> {
        using C = typename std::remove_cvref_t<A>::Owned*;
        static std::remove_cvref_t<A> in(C value) { return value; }
    };

    /// Whether a function that answers a bare pointer gives a count with it, as its name says.
    constexpr bool givesCount(std::string_view name)
    {
        return name.find("Create") != name.npos || name.find("Copy") != name.npos;
    }

    template <auto Function, bool GivesCount> struct Plain;
    template <class R, class... A, R (*Function)(A...), bool GivesCount>
    struct Plain<Function, GivesCount> {
        static constexpr encoding::Buffer describe()
        {
            encoding::Buffer out;
            closures::appendDetailed<R>(out);
            (closures::appendDetailed<typename Argument<A>::C>(out), ...);
            return out;
        }
        static constexpr encoding::Exact<describe().length> types { describe() };

        static constexpr bool answersHidden()
        {
            if constexpr (std::is_pointer_v<R>)
                return std::string_view(types.text).starts_with("^{CG")
                    && encoding::Hidden<std::remove_cv_t<std::remove_pointer_t<R>>>;
            else
                return false;
        }
        /// Every object that is answered is an owner, as with messages.
        static constexpr bool kIsLentObject
            = !GivesCount && !encoding::Owner<R> && (types.text[0] == '@' || answersHidden());

        static IMP address() { return reinterpret_cast<IMP>(&call); }
        static typename Abi<R>::C call(typename Argument<A>::C... arguments)
        {
            try {
                if constexpr (std::is_void_v<R>)
                    return Function(Argument<A>::in(arguments)...);
                else {
                    const auto answer = Abi<R>::out(Function(Argument<A>::in(arguments)...));
                    if constexpr (kIsLentObject) {
                        if (answer)
                            retain(answer);
                    }
                    return answer;
                }
            } catch (abi::__forced_unwind&) {
                throw; // the thread is being ended
            } catch (...) {
                keepCurrentException();
            }
            if constexpr (!std::is_void_v<R>)
                return typename Abi<R>::C();
        }
    };
    extern "C" {
    [[gnu::visibility("hidden"), gnu::weak]] extern const FunctionRow* const
        __start_brindle_functions[]; // NOLINT: the linker's names
    [[gnu::visibility("hidden"),
        gnu::weak]] extern const FunctionRow* const __stop_brindle_functions[]; // NOLINT
    }

}

/// Lists a function under a name: `BRINDLE_FUNCTION_AS(half, static_cast<double (*)(double)>(&halve))`.
#define BRINDLE_FUNCTION_AS(name, function)                                                        \
    namespace {                                                                                    \
        using name##Plain                                                                          \
            = ::brindle::functions::Plain<function, ::brindle::functions::givesCount(#name)>;      \
        constexpr ::brindle::FunctionRow name##Row { #name, name##Plain::types.text,               \
            &name##Plain::address };                                                               \
        [[gnu::section("brindle_functions"), gnu::used,                                            \
            gnu::retain]] constinit const ::brindle::FunctionRow* const name##Entry                \
            = &name##Row;                                                                          \
    }

/// Lists a function that is not overloaded under its own name.
#define BRINDLE_FUNCTION(function) BRINDLE_FUNCTION_AS(function, &function)

}
