// SPDX-License-Identifier: Apache-2.0
#include "PercentEscapesPrivate.h"

#include <algorithm>

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
    const std::size_t first = utf8.find('%');
    std::string out(utf8);
    if (first == std::string_view::npos)
        return out;
    char* to = out.data() + first;
    const char* const end = utf8.data() + utf8.size();
    for (const char* at = utf8.data() + first; at != end;) {
        if (*at != '%') {
            *to++ = *at++;
            continue;
        }
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
