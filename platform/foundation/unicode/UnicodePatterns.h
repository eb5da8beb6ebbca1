// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct URegularExpression;

/// Regular expressions of the Unicode library, kept from running for ever or out of memory.
namespace brindle::unicode {

struct PatternCloser {
    void operator()(URegularExpression* expression) const;
};
using PatternHandle = std::unique_ptr<URegularExpression, PatternCloser>;

// How a pattern is read; bits.
inline constexpr std::uint32_t kPatternUnixLines = 1;
inline constexpr std::uint32_t kPatternIgnoresCase = 2;
inline constexpr std::uint32_t kPatternComments = 4;
inline constexpr std::uint32_t kPatternAnchorsMatchLines = 8;
inline constexpr std::uint32_t kPatternLiteral = 16;
inline constexpr std::uint32_t kPatternDotMatchesAll = 32;
inline constexpr std::uint32_t kPatternUnicodeWords = 256;

/// A pattern that was understood. Any thread may match it; each match works on a copy.
class Pattern {
public:
    /// Reads a pattern.
    /// - Returns: nullptr, with a reason such as "mismatched parenthesis at 3", for a bad one and without the library.
    static std::unique_ptr<const Pattern> read(
        std::u16string_view text, std::uint32_t flags, std::string& reason);

    std::size_t groups() const { return groups_; }
    /// Answers the number of a group with a name; 0 when there is none.
    std::size_t groupNamed(std::u16string_view name) const;

private:
    friend class Matcher;
    PatternHandle handle_;
    std::size_t groups_ = 0;
};

/// One search of a text. The text must outlive it.
class Matcher {
public:
    struct Bounds {
        std::size_t begin;
        std::size_t end;
        bool areTransparent = false; ///< what stands outside may be looked at
        bool areAnchors = true; ///< "^" and "$" match at the bounds
    };
    static constexpr std::size_t kNoPlace = ~std::size_t { 0 };

    Matcher(const Pattern& pattern, std::u16string_view text, Bounds bounds);

    /// Finds the next match; false when there is none or the search took too long.
    bool next();
    /// Matches at the very beginning only.
    bool atStart();
    /// Where a group of the last match is; 0 is the whole match. `kNoPlace` for one that took no part.
    std::size_t begin(std::size_t group) const;
    std::size_t end(std::size_t group) const;
    bool hitEnd() const;
    bool requiresEnd() const;
    /// Answers whether the search was given up.
    bool hasFailed() const { return hasFailed_; }

private:
    PatternHandle handle_;
    bool hasFailed_ = false;
    std::chrono::steady_clock::time_point deadline_;
};

}
