// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Export.h"

namespace brindle {

/// A string literal as a template argument: `send<"setFrame:">`.
template <std::size_t N> struct Text {
    char characters[N] {};

    consteval Text(const char (&literal)[N])
    {
        for (std::size_t i = 0; i < N; ++i)
            characters[i] = literal[i];
    }
    constexpr std::string_view view() const { return { characters, N - 1 }; }
};

/// FNV-1a, 64 bits (offset basis and prime as published by its authors).
constexpr std::uint64_t hashOf(std::string_view text, std::uint64_t hash = 14695981039346656037u)
{
    for (const char c : text)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 1099511628211u;
    return hash;
}

/// The name of a message, as one word: the same value in every library and for the life of the process.
///
/// The word is the hash of the name with the top bit set. It is never the address of anything, so it can be
/// used as the key of an associated value as it is. Two names with one hash are refused when the second
/// is registered.
struct SEL {
    std::uint64_t value = 0;

    constexpr explicit operator bool() const { return value != 0; }
    friend constexpr bool operator==(SEL, SEL) = default;
    /// The selector as the key of an associated value.
    const void* key() const { return reinterpret_cast<const void*>(value); }
};

/// Answers the selector of a name without registering the name: a compile-time constant for a literal.
constexpr SEL selectorOf(std::string_view name) { return { hashOf(name) | 1ull << 63 }; }

/// The selector of a literal: `@selector(setFrame:)` is `selector<"setFrame:">`.
template <Text Name> inline constexpr SEL selector = selectorOf(Name.view());

/// Answers the selector of a name and registers the name; nil and "" answer the zero selector.
/// - Raises: `NSInternalInconsistencyException` when another name has the same selector value.
BRINDLE_EXPORT SEL sel_registerName(const char* name);
BRINDLE_EXPORT SEL sel_getUid(const char* name);
/// Answers the registered name, or nullptr when the name has never been seen by this process.
BRINDLE_EXPORT const char* sel_getName(SEL selector);

}
