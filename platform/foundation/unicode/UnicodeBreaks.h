// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// Where text may be cut as a reader sees it, by the rules of the Unicode library.
namespace brindle::unicode {

enum class Cut : std::uint8_t { words, sentences };

/// A stretch of text between two cuts.
struct Stretch {
    std::size_t begin;
    std::size_t end;
    bool isWord; ///< it has letters or digits; always true of sentences
};

/// Answers all stretches in their order. Without the library the whole text is one.
std::vector<Stretch> stretches(std::u16string_view text, Cut cut);

}
