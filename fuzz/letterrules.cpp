// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdlib>
#include <span>

#include "quartz/text/LetterRules.h"

using namespace brindle;

/// Reads the bytes as a font file's rules for plain letters: the same each time, and none where no letter is sure.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span file { reinterpret_cast<const std::byte*>(data), size };
    const text::LetterRules rules = text::readLetterRules(file);
    const text::LetterRules again = text::readLetterRules(file);
    if (rules.isFree != again.isFree || rules.acting != again.acting)
        std::abort();
    return 0;
}
