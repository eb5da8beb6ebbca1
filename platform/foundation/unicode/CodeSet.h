// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace brindle::characters {

/// Code points from the first to the last, both included.
struct CodeRange {
    char32_t first;
    char32_t last;

    friend bool operator==(CodeRange, CodeRange) = default;
};

inline constexpr char32_t kLastCode = 0x10ffff;

/// A set of ASCII characters that can be a constant.
class AsciiSet {
public:
    constexpr AsciiSet() = default;
    constexpr explicit AsciiSet(std::string_view members)
    {
        for (const char c : members)
            add(static_cast<unsigned char>(c));
    }
    constexpr AsciiSet operator|(AsciiSet other) const
    {
        other.bits_[0] |= bits_[0];
        other.bits_[1] |= bits_[1];
        return other;
    }
    constexpr AsciiSet without(AsciiSet other) const
    {
        other.bits_[0] = bits_[0] & ~other.bits_[0];
        other.bits_[1] = bits_[1] & ~other.bits_[1];
        return other;
    }
    constexpr void add(unsigned c) { bits_[c >> 6 & 1] |= std::uint64_t { 1 } << (c & 63); }
    constexpr void remove(unsigned c) { bits_[c >> 6 & 1] &= ~(std::uint64_t { 1 } << (c & 63)); }
    /// Answers false for everything that is not ASCII.
    constexpr bool contains(char32_t c) const { return c < 128 && (bits_[c >> 6] >> (c & 63) & 1); }
    constexpr std::uint64_t word(unsigned index) const { return bits_[index]; }

private:
    std::uint64_t bits_[2] {};
};

/// A set of code points: bits for ASCII; behind it whole Unicode categories, asked of the Unicode library only when
/// such a letter is looked up, and ranges.
class CodeSet {
public:
    CodeSet() = default;
    /// Answers the set of all letters whose category is among these bits.
    static CodeSet ofCategories(std::uint32_t categories);
    static CodeSet of(std::initializer_list<CodeRange> ranges);
    static CodeSet of(AsciiSet members);

    bool contains(char32_t c) const { return c < 128 ? ascii_.contains(c) : containsWide(c); }
    void add(CodeRange range);
    void remove(CodeRange range);
    void unite(const CodeSet& other);
    void intersect(const CodeSet& other);
    void invert();
    /// Answers all members as rising ranges with a gap between any two.
    std::vector<CodeRange> ranges() const;
    bool includes(const CodeSet& other) const;
    AsciiSet ascii() const { return ascii_; }

private:
    bool containsWide(char32_t c) const;
    void settle();

    AsciiSet ascii_;
    std::uint32_t categories_ = 0; // of letters behind ASCII
    std::vector<CodeRange> listed_; // behind ASCII; rising, with a gap between any two
};

}
