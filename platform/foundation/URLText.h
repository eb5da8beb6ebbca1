// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/unicode/CodeSet.h"

/// The grammar of URLs, RFC 2396 with the bracketed hosts of RFC 2732, over ASCII text.
namespace brindle::urls {

// What may stand unescaped in each part.
inline constexpr characters::AsciiSet kUnreserved {
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~"
};
inline constexpr characters::AsciiSet kUser = kUnreserved | characters::AsciiSet("!$&'()*+,;=");
inline constexpr characters::AsciiSet kHost = kUser | characters::AsciiSet(":[]");
/// Without ";", which begins parameters.
inline constexpr characters::AsciiSet kPath = kUnreserved | characters::AsciiSet("!$&'()*+,=:@/");
inline constexpr characters::AsciiSet kQuery = kUser | characters::AsciiSet(":@/?");

/// The pieces of a URL as they stand in its text. A piece that is not there has no data; one that is there may be
/// empty ("http://h?" has an empty query). The path is always there unless the URL is opaque.
struct Parts {
    using Piece = std::optional<std::string_view>;
    Piece scheme;
    Piece user;
    Piece password;
    Piece host; ///< with the brackets of a numeric address
    Piece port;
    Piece path;
    Piece query;
    Piece fragment;
    Piece opaque; ///< what stands behind the scheme's colon when no slash follows it: "mailto:a@b"

    /// Answers the text of these pieces; `user` to `port` only when there is a host.
    std::string text() const;
};

/// Takes a text apart; nothing when it breaks the grammar. The pieces are views of the text.
std::optional<Parts> parse(std::string_view text);

/// Answers a reference as it is meant behind a base (RFC 3986, 5.2); pieces are views of either.
/// - path: holds the merged path.
Parts resolve(const Parts& base, const Parts& reference, std::string& path);
/// Answers a path without "." and ".." pieces; ".." above the root goes.
std::string withoutDots(std::string_view path);

bool isScheme(std::string_view text);
/// Answers whether all characters are allowed or good escapes.
bool isEscaped(std::string_view text, characters::AsciiSet allowed);
/// Answers whether a host is a name of allowed characters or an address in brackets.
bool isHost(std::string_view text);
bool isPort(std::string_view text);

}
