// SPDX-License-Identifier: Apache-2.0
#include "PercentEscapes.h"

#include <algorithm>
#include <cstring>

namespace brindle::escapes {

bool isWellFormed(strings::View text)
{
    if (text.isNarrow())
        return true;
    std::size_t units = 0;
    for (std::size_t at = 0; at < text.size(); at += units) {
        const char32_t c = text.codePoint(at, units);
        if (c >= 0xd800 && c <= 0xdfff)
            return false;
    }
    return true;
}

std::optional<std::string> removed(std::string_view utf8, characters::AsciiSet leave)
{
    std::string out(utf8.size(), '\0');
    char* to = out.data();
    const char* at = utf8.data();
    const char* const end = at + utf8.size();
    while (at != end) {
        const auto* const escape
            = static_cast<const char*>(std::memchr(at, '%', static_cast<std::size_t>(end - at)));
        const char* const plainEnd = escape ? escape : end;
        to = std::copy(at, plainEnd, to);
        at = plainEnd;
        if (!escape)
            break;
        const int high = end - at > 2 ? digitOf(static_cast<unsigned char>(at[1])) : -1;
        const int low = end - at > 2 ? digitOf(static_cast<unsigned char>(at[2])) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        const auto byte = static_cast<unsigned char>(high << 4 | low);
        if (leave.contains(byte))
            to = std::copy(at, at + 3, to);
        else
            *to++ = static_cast<char>(byte);
        at += 3;
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
    return out;
}

Ref<NSString> removed(strings::View text, characters::AsciiSet leave)
{
    if (!isWellFormed(text))
        return nullptr;
    const std::string wide = text.isNarrow() ? std::string() : strings::toUtf8(text);
    std::optional<std::string> bytes = removed(text.isNarrow() ? text.narrow() : wide, leave);
    if (!bytes)
        return nullptr;
    if (strings::isAscii(*bytes))
        return strings::plain(std::move(*bytes));
    return stringFrom(std::string_view(*bytes));
}

}
