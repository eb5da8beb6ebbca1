// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "Selector.h"

namespace brindle {

struct NSObject;
struct Class;

/// The encoding of a plain structure; specialised beside the structure:
/// `template <> struct Structure<NSRect> { static constexpr const char* encoding = "{CGRect=...}"; };`
template <class T> struct Structure;

/// The encoding of what stands behind a reference of a plain C interface (`CGColorRef` is `CGColor*`):
/// `template <> struct Opaque<CGColor> { static constexpr const char* encoding = "{CGColor=}"; };`
/// The specialisation stands beside the first declaration of the type, so that every source sees it.
template <class T> struct Opaque;

/// A closure of the given signature as the runtime sees it; Block.h defines it.
template <class Signature> struct Closure;

namespace encoding {

    /// An encoding under construction, at compile time.
    struct Buffer {
        char text[512] {};
        std::size_t length = 0;

        constexpr void add(std::string_view piece)
        {
            for (const char c : piece)
                text[length++] = c; // past the end is a compile-time error
            text[length] = 0;
        }
        constexpr std::string_view view() const { return { text, length }; }
    };

    template <class T> inline constexpr bool isClosure = false;
    template <class S> inline constexpr bool isClosure<Closure<S>> = true;

    template <class T> concept Owner = requires { typename T::Owned; };
    template <class T> concept Described = requires { Structure<T>::encoding; };
    template <class T> concept Hidden = requires { Opaque<T>::encoding; };

    /// Any other class type than these is an object's.
    template <class U>
    inline constexpr bool isObject = std::is_class_v<U> && !isClosure<U> && !Hidden<U> && !Owner<U>
        && !Described<U> && !std::is_same_v<U, Class> && !std::is_same_v<U, SEL>;
    template <class T> inline constexpr bool isObjectPointer = false;
    template <class U> inline constexpr bool isObjectPointer<U*> = isObject<std::remove_cv_t<U>>;

    constexpr std::string_view integer(std::size_t size, bool isUnsigned)
    {
        const std::string_view letters = isUnsigned ? "CSIQ" : "csiq";
        return letters.substr(size == 1 ? 0 : size == 2 ? 1 : size == 4 ? 2 : 3, 1);
    }

    template <class T> constexpr void append(Buffer& out);

    /// What a pointer points to decides: closures, classes, plain data; any other class type is an object.
    template <class P> constexpr void appendPointer(Buffer& out)
    {
        using U = std::remove_cv_t<P>;
        if constexpr (isClosure<U>)
            out.add("@?");
        else if constexpr (std::is_same_v<U, Class>)
            out.add("#");
        else if constexpr (std::is_same_v<U, char>)
            out.add("*");
        else if constexpr (std::is_function_v<U>)
            out.add("^?");
        else if constexpr (Hidden<U>) {
            out.add("^");
            out.add(Opaque<U>::encoding);
        } else if constexpr (!isObject<U>) {
            out.add("^");
            append<U>(out);
        } else
            out.add("@");
    }

    template <class T> constexpr void append(Buffer& out)
    {
        using U = std::remove_cvref_t<T>;
        if constexpr (std::is_void_v<U>)
            out.add("v");
        else if constexpr (std::is_same_v<U, bool>)
            out.add("B");
        else if constexpr (std::is_same_v<U, double>)
            out.add("d");
        else if constexpr (std::is_same_v<U, float>)
            out.add("f");
        else if constexpr (std::is_same_v<U, SEL>)
            out.add(":");
        else if constexpr (std::is_same_v<U, char>)
            out.add("c");
        else if constexpr (std::is_enum_v<U>)
            append<std::underlying_type_t<U>>(out);
        else if constexpr (std::is_integral_v<U>)
            out.add(integer(sizeof(U), std::is_unsigned_v<U>));
        else if constexpr (std::is_pointer_v<U>)
            appendPointer<std::remove_pointer_t<U>>(out);
        else if constexpr (Owner<U>)
            appendPointer<typename U::Owned>(out);
        else if constexpr (std::is_reference_v<T>)
            out.add("@");
        else
            out.add(Structure<U>::encoding);
    }

    template <class R, class... A> constexpr Buffer message()
    {
        Buffer out;
        append<R>(out);
        out.add("@:");
        (append<A>(out), ...);
        return out;
    }

    template <class T> constexpr Buffer value()
    {
        Buffer out;
        append<T>(out);
        return out;
    }

    /// A buffer cut to its length, so that thousands of signatures stay small.
    template <std::size_t N> struct Exact {
        char text[N + 1] {};
        constexpr explicit Exact(const Buffer& from)
        {
            for (std::size_t i = 0; i < N; ++i)
                text[i] = from.text[i];
        }
        constexpr std::string_view view() const { return { text, N }; }
    };

}

/// The type string of a message with this result and these arguments, receiver and selector included: "v@:B".
template <class R, class... A>
inline constexpr encoding::Exact<encoding::message<R, A...>().length> messageEncoding {
    encoding::message<R, A...>()
};

/// The encoding of one type: "d", "@", "{CGPoint=dd}".
template <class T>
inline constexpr encoding::Exact<encoding::value<T>().length> encodingOf { encoding::value<T>() };

/// Answers the encoding without its first type: what follows is the next one. Qualifiers are skipped.
/// - Returns: nullptr when the text does not begin with a well-formed type.
BRINDLE_EXPORT const char* encodingSkipType(const char* types);

/// Answers size and alignment in bytes of the first type of an encoding.
/// - Returns: false when the text does not begin with a well-formed type of known size.
BRINDLE_EXPORT bool encodingSizeAndAlignment(
    const char* types, std::size_t* size, std::size_t* alignment);

}
