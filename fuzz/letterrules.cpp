// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdlib>
#include <span>

#include "quartz/text/CharacterMap.h"
#include "quartz/text/LetterRules.h"

using namespace brindle;

namespace {

/// What is done to all pairs of letters, in a number.
std::int64_t sumOf(const text::LetterKerning& kerning)
{
    std::int64_t sum = 0;
    for (std::size_t first = 0; first < text::kPlainLetters; ++first) {
        for (const text::LetterKerning::Kern& kern : kerning.behind(first))
            sum = sum * 31 % 1'000'003 + kern.step + 2 * kern.moved + (kern.isSure ? 1 : 0);
    }
    return sum;
}

}

/// Reads the bytes as a font file's rules for plain letters: the same each time, and none where no letter is sure.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span file { reinterpret_cast<const std::byte*>(data), size };
    const text::LetterRules rules = text::readLetterRules(file);
    const text::LetterRules again = text::readLetterRules(file);
    if (rules.isFree != again.isFree || rules.acting != again.acting
        || sumOf(rules.kerning) != sumOf(again.kerning))
        std::abort();
    const text::FontFile font({ data, size }, static_cast<unsigned>(size % 3));
    const text::CharacterMap characters(font.table("cmap"));
    for (char32_t codePoint = 0; codePoint < 0x110000; codePoint += 0x3FF)
        if (characters.glyphFor(codePoint) != characters.glyphFor(codePoint))
            std::abort();
    return 0;
}
