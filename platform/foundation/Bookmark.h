// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a bookmark remembers of a file, and how it is kept from being changed or made by anyone but the user.
namespace brindle::bookmarks {

/// A secret of the user that seals bookmarks.
using Key = std::array<unsigned char, 16>;

/// Answers the user's key, made on first use: 16 random bytes in "brindle/bookmark-key" in the user's data folder
/// (`XDG_DATA_HOME` or "~/.local/share"), readable by the user only.
/// - Returns: nothing when it can be neither read nor made, or others can read it.
std::optional<Key> userKey();

/// Answers 16 bytes that nobody can answer for these bytes without the key: SipHash-2-4.
Key seal(const Key& key, std::span<const unsigned char> bytes);

struct Trace {
    static constexpr std::uint16_t kScoped = 1;
    static constexpr std::uint16_t kReadOnly = 2;
    static constexpr std::uint16_t kFolder = 4;

    std::uint16_t flags = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t volume = 0;
    std::uint64_t born
        = 0; ///< nanoseconds since 1970; numbers of files are used again, 0 where it is not known
    std::string path;

    friend bool operator==(const Trace&, const Trace&) = default;
};

/// - Shape: "brmk", version 1 and flags in 2 bytes each, device, inode, volume, birth in 8 each, the path's length
///   in 4, the path, the seal of all this and the base in 16; lowest byte first.
std::vector<unsigned char> write(const Trace& trace, std::string_view base, const Key& key);
/// - Returns: nothing unless every byte is as it was written, with this key and base.
std::optional<Trace> read(
    std::span<const unsigned char> bytes, std::string_view base, const Key& key);

/// Answers what there is to remember of a path; nothing, with the system's number of the error, when nothing is there.
std::optional<Trace> describe(const std::string& path, int& error);

/// Where a trace leads now.
struct Place {
    std::string path;
    bool isStale = false; ///< moved, renamed or replaced
    bool isFolder = false;
};
/// Looks at the old path first, then for the same file in the folders around it, at no more than some thousand entries.
std::optional<Place> locate(const Trace& trace);

}
