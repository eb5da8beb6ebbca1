// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "NSStringPrivate.h"
#include "foundation/unicode/CodeSet.h"

/// The escapes of URLs: "%" and two hexadecimal digits for a byte of UTF-8.
namespace brindle::escapes {

/// Answers the value of a hexadecimal digit, -1 for any other character.
constexpr int digitOf(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    const char16_t letter = c | 0x20;
    return c < 0x80 && letter >= u'a' && letter <= u'f' ? letter - u'a' + 10 : -1;
}

/// Answers whether every surrogate has its other half.
bool isWellFormed(strings::View text);

/// Answers the text with every byte escaped but ASCII that `keeps` accepts; capitals as digits.
template <class Keeps> std::string added(std::string_view utf8, Keeps keeps)
{
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string out(utf8.size() * 3, '\0');
    char* to = out.data();
    for (const char c : utf8) {
        if (static_cast<signed char>(c) >= 0 && keeps(c)) {
            *to++ = c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        *to++ = '%';
        *to++ = kDigits[byte >> 4];
        *to++ = kDigits[byte & 15];
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
    out.shrink_to_fit();
    return out;
}
/// - Nil: for unpaired surrogates.
template <class Keeps> Ref<NSString> added(strings::View text, Keeps keeps)
{
    if (text.isNarrow())
        return strings::plain(added(text.narrow(), keeps));
    if (!isWellFormed(text))
        return nullptr;
    return strings::plain(added(strings::toUtf8(text), keeps));
}

/// Answers the bytes behind a text; nothing when an escape is cut off or not hexadecimal.
/// - leave: characters whose escapes stay.
std::optional<std::string> removed(std::string_view utf8, characters::AsciiSet leave = {});
/// Answers the text without its escapes.
/// - Nil: also for bytes that are no UTF-8 and for unpaired surrogates.
Ref<NSString> removed(strings::View text, characters::AsciiSet leave = {});

}
