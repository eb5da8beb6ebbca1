// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "LetterKerning.h"

namespace brindle::text {

/// What a face does to plain letters when it shapes Latin text.
struct LetterRules {
    PlainLetters isFree; // nothing is done to the letter for its own sake
    std::array<PlainLetters, kPlainLetters>
        acting {}; // letters that something is done with or because of, besides kerning, behind each
    LetterKerning kerning; // of what is left
};

/// Reads a face's rules. Where it cannot be sure, no letter is free.
/// - file: lent, as long as the rules live. - glyphs: those of the letters.
/// Cost: bounded, whatever the tables say.
LetterRules readLetterRules(const FontFile& file, const LetterGlyphs& glyphs);

/// Reads the rules of a font file's first face. - file: anything at all, lent as above.
LetterRules readLetterRules(std::span<const std::byte> file);

}
