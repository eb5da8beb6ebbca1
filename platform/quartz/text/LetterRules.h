// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <span>

#include "FontFace.h"

struct hb_face_t;

namespace brindle::text {

/// The letters and signs of ASCII that show, and the space, counted from the space.
inline constexpr std::size_t kPlainLetters = 0x7F - 0x20;

using PlainLetters = std::bitset<kPlainLetters>;

/// What a face does to plain letters, besides kerning them by pairs, when it shapes Latin text.
struct LetterRules {
    PlainLetters isFree; // nothing is done to the letter for its own sake
    std::array<PlainLetters, kPlainLetters>
        acting {}; // letters that something is done with or because of, behind each
};

/// Reads a face's rules. Where it cannot be sure, no letter is free.
/// - glyphs: those of the letters.
/// Cost: bounded, whatever the tables say.
LetterRules readLetterRules(hb_face_t* face, const std::array<GlyphId, kPlainLetters>& glyphs);

/// Reads the rules of a font file's first face. - file: lent; anything at all.
LetterRules readLetterRules(std::span<const std::byte> file);

}
