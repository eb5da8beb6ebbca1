// SPDX-License-Identifier: Apache-2.0
#include "URLText.h"

#include <algorithm>
#include <vector>

#include "PercentEscapesPrivate.h"

namespace brindle::urls {

using characters::AsciiSet;

namespace {

    constexpr AsciiSet kLetters { "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz" };
    constexpr AsciiSet kDigits { "0123456789" };
    constexpr AsciiSet kScheme = kLetters | kDigits | AsciiSet("+-.");
    constexpr AsciiSet kAddress = kLetters | kDigits | AsciiSet(":.-_~");
    constexpr AsciiSet kReserved { ";/?:@&=+$,!*'()" };
    constexpr AsciiSet kAny = kUnreserved | kReserved;

    bool contains(AsciiSet set, char c) { return set.contains(static_cast<unsigned char>(c)); }

    /// Cuts off what stands behind the first of a character; the character goes.
    Parts::Piece cutBehind(std::string_view& text, char c)
    {
        const std::size_t at = text.find(c);
        if (at == std::string_view::npos)
            return std::nullopt;
        const std::string_view behind = text.substr(at + 1);
        text = text.substr(0, at);
        return behind;
    }

    /// Answers where the scheme's colon is, or npos.
    std::size_t schemeEnd(std::string_view text)
    {
        const std::size_t at = text.find_first_of(":/?#");
        return at != std::string_view::npos && text[at] == ':' ? at : std::string_view::npos;
    }

    bool parseAuthority(std::string_view text, Parts& parts)
    {
        if (const std::size_t at = text.rfind('@'); at != std::string_view::npos) {
            std::string_view user = text.substr(0, at);
            parts.password = cutBehind(user, ':');
            parts.user = user;
            text.remove_prefix(at + 1);
        }
        const std::size_t bracket = text.starts_with('[') ? text.find(']') : 0;
        if (bracket == std::string_view::npos)
            return false;
        if (const std::size_t colon = text.find(':', bracket); colon != std::string_view::npos) {
            parts.port = text.substr(colon + 1);
            text = text.substr(0, colon);
        }
        parts.host = text;
        const AsciiSet allowed = kUser | AsciiSet(":@");
        return isHost(text) && isPort(parts.port.value_or(""))
            && isEscaped(parts.user.value_or(""), allowed)
            && isEscaped(parts.password.value_or(""), allowed);
    }

}

bool isScheme(std::string_view text)
{
    return !text.empty() && contains(kLetters, text[0])
        && std::all_of(text.begin(), text.end(), [](char c) { return contains(kScheme, c); });
}

bool isEscaped(std::string_view text, AsciiSet allowed)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            if (!contains(allowed, text[at]))
                return false;
            continue;
        }
        const bool isEscape = at + 2 < text.size()
            && escapes::digitOf(static_cast<unsigned char>(text[at + 1])) >= 0
            && escapes::digitOf(static_cast<unsigned char>(text[at + 2])) >= 0;
        if (!isEscape)
            return false;
        at += 2;
    }
    return true;
}

bool isHost(std::string_view text)
{
    if (!text.starts_with('['))
        return isEscaped(text, kUser);
    return text.size() > 2 && text.find(']') == text.size() - 1
        && isEscaped(text.substr(1, text.size() - 2), kAddress);
}

bool isPort(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return contains(kDigits, c); });
}

std::optional<Parts> parse(std::string_view text)
{
    Parts parts;
    parts.fragment = cutBehind(text, '#');
    if (const std::size_t colon = schemeEnd(text); colon != std::string_view::npos) {
        parts.scheme = text.substr(0, colon);
        if (!isScheme(*parts.scheme))
            return std::nullopt;
        text.remove_prefix(colon + 1);
    }
    if (!isEscaped(parts.fragment.value_or(""), kAny))
        return std::nullopt;
    if (parts.scheme && !text.empty() && !text.starts_with('/') && !text.starts_with('?')) {
        parts.opaque = text;
        return isEscaped(text, kAny) ? std::optional(parts) : std::nullopt;
    }
    parts.query = cutBehind(text, '?');
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const std::size_t slash = std::min(text.find('/'), text.size());
        if (!parseAuthority(text.substr(0, slash), parts))
            return std::nullopt;
        text.remove_prefix(slash);
    }
    parts.path = text;
    const bool isGood = isEscaped(text, kAny) && isEscaped(parts.query.value_or(""), kAny);
    return isGood ? std::optional(parts) : std::nullopt;
}

std::string Parts::text() const
{
    std::string out;
    const auto add = [&out](const char* before, const Piece& piece, const char* behind = "") {
        if (piece)
            out.append(before).append(*piece).append(behind);
    };
    add("", scheme, ":");
    if (opaque) {
        add("", opaque);
    } else if (host || path->starts_with("//")) {
        out += "//"; // a path that begins with two slashes would read as a host
        add("", user);
        add(":", password);
        if (user || password)
            out += '@';
        add("", host);
        add(":", port);
    }
    const bool looksLikeScheme
        = !scheme && !host && path && schemeEnd(*path) != std::string_view::npos;
    add(looksLikeScheme ? "./" : "", path);
    add("?", query);
    add("#", fragment);
    return out;
}

std::string withoutDots(std::string_view path)
{
    const bool isAbsolute = path.starts_with('/');
    std::vector<std::string_view> kept;
    bool endsInFolder = false;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view piece = path.substr(0, slash);
        const bool isLast = slash == std::string_view::npos;
        path.remove_prefix(isLast ? path.size() : slash + 1);
        endsInFolder = !isLast;
        if (piece == "." || piece == "..") {
            endsInFolder = true;
            const std::size_t root = isAbsolute ? 1 : 0; // the empty piece before the first slash
            if (piece == ".." && kept.size() > root)
                kept.pop_back();
        } else if (!piece.empty() || isAbsolute || !kept.empty()) {
            kept.push_back(piece); // a relative path never comes to begin with a slash
        }
    }
    std::string out;
    for (std::size_t i = 0; i < kept.size(); ++i)
        out.append(i ? "/" : "").append(kept[i]);
    if (endsInFolder && !kept.empty())
        out += '/';
    return out;
}

Parts resolve(const Parts& base, const Parts& reference, std::string& path)
{
    if (reference.scheme)
        return reference;
    Parts out = reference;
    out.scheme = base.scheme;
    if (base.opaque) {
        // Nothing can be relative to it but a fragment.
        out = base;
        out.fragment = reference.fragment;
        return out;
    }
    if (reference.host) {
        path = withoutDots(*reference.path);
        out.path = path;
        return out;
    }
    out.user = base.user;
    out.password = base.password;
    out.host = base.host;
    out.port = base.port;
    const std::string_view old = base.path.value_or("");
    if (reference.path->empty()) {
        path = old;
        if (!reference.query)
            out.query = base.query;
    } else if (reference.path->starts_with('/')) {
        path = withoutDots(*reference.path);
    } else {
        const std::size_t slash = old.rfind('/');
        std::string merged(base.host && old.empty() ? "/" : "");
        if (slash != std::string_view::npos)
            merged = old.substr(0, slash + 1);
        path = withoutDots(merged.append(*reference.path));
    }
    out.path = path;
    return out;
}

}
