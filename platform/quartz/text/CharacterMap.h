// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FontFile.h"

namespace brindle::text {

/// Which glyph of a face stands for a character, by the face's table for Unicode.
///
/// Faces of symbols, and those whose table is of a rare form, are left to the shaping library.
/// Thread: any.
class CharacterMap {
public:
    CharacterMap() = default;
    explicit CharacterMap(const FontTable& characters);

    bool isReadable() const { return form_ != 0; }

    /// Answers a glyph's number, 0 for a character that the face lacks.
    std::uint32_t glyphFor(char32_t codePoint) const;

private:
    std::uint32_t glyphInSegments(std::size_t codePoint) const;
    std::uint32_t glyphInGroups(std::size_t codePoint) const;

    FontTable table_;
    std::size_t start_ = 0; // of what is read, in the table
    std::size_t form_ = 0;
};

}
