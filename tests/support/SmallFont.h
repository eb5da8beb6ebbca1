// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// Font files made in memory, with the tables that a test is about.

namespace brindle::test {

/// Big-endian numbers, one behind the other.
class FontBytes {
public:
    FontBytes() = default;
    FontBytes(std::initializer_list<std::size_t> words)
    {
        for (const std::size_t value : words)
            word(value);
    }
    FontBytes& word(std::size_t value)
    {
        bytes_ += static_cast<char>(value >> 8);
        bytes_ += static_cast<char>(value);
        return *this;
    }
    FontBytes& longWord(std::size_t value) { return word(value >> 16).word(value); }
    FontBytes& text(const std::string& text)
    {
        bytes_ += text;
        return *this;
    }
    const std::string& bytes() const { return bytes_; }
    std::size_t size() const { return bytes_.size(); }

private:
    std::string bytes_;
};

/// Answers a table of rules that are all in use for Latin text.
/// - kind: of the lookup. - part: its only one. - times: how often the same lookup is listed.
inline std::string ruleTable(
    const std::string& feature, std::size_t kind, const FontBytes& part, std::size_t times = 1)
{
    constexpr std::size_t kHeader = 10;
    FontBytes scripts;
    scripts.word(1).text("latn").word(8).word(4).word(0).word(0).word(0xFFFF).word(1).word(0);
    FontBytes features;
    features.word(1).text(feature).word(8).word(0).word(times);
    for (std::size_t i = 0; i < times; ++i)
        features.word(i);
    FontBytes lookups;
    lookups.word(times);
    for (std::size_t i = 0; i < times; ++i)
        lookups.word(2 + 2 * times);
    lookups.word(kind).word(0).word(1).word(8).text(part.bytes());
    FontBytes table;
    table.word(1).word(0).word(kHeader).word(kHeader + scripts.size());
    table.word(kHeader + scripts.size() + features.size());
    return table.text(scripts.bytes()).text(features.bytes()).text(lookups.bytes()).bytes();
}

/// The glyph of a letter of ASCII in a small font.
constexpr std::size_t smallGlyph(char letter) { return static_cast<std::size_t>(letter) - 0x1F; }
/// The place of a letter of ASCII in a table that begins with the space.
constexpr std::size_t placeOf(char letter) { return static_cast<std::size_t>(letter - ' '); }
/// Where one glyph stands in front of what names it, and lists it.
inline FontBytes coverage(char letter) { return { 1, 1, smallGlyph(letter) }; }

/// Neighbouring characters and the glyph of the first.
struct FontCharacters {
    std::size_t first = 0x20;
    std::size_t last = 0x7E;
    std::size_t glyph = 1;
};

/// Answers a font file with some tables; the letters of ASCII are its glyphs 1 to 95 unless another order is given.
inline std::string smallFont(std::map<std::string, std::string> tables,
    const std::vector<FontCharacters>& characters = { FontCharacters {} })
{
    constexpr std::size_t kUnitsAt = 18;
    std::string head(54, '\0');
    head[kUnitsAt] = 4; // 1024 units an em
    tables["head"] = head;
    tables["maxp"] = FontBytes().longWord(0x5000).word(96).bytes();
    FontBytes order { 0, 1, 3, 10, 0, 12, 12, 0 };
    order.longWord(16 + 12 * characters.size()).longWord(0).longWord(characters.size());
    for (const FontCharacters& some : characters)
        order.longWord(some.first).longWord(some.last).longWord(some.glyph);
    tables["cmap"] = order.bytes();

    FontBytes directory;
    directory.longWord(0x10000).word(tables.size()).word(0).word(0).word(0);
    std::string contents;
    for (const auto& [name, table] : tables) {
        directory.text(name).longWord(0).longWord(12 + 16 * tables.size() + contents.size());
        directory.longWord(table.size());
        contents += table;
        contents.resize((contents.size() + 3) / 4 * 4);
    }
    return directory.bytes() + contents;
}

}
