// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/FontFile.h"

#include <fstream>

#include <gtest/gtest.h>

#include <hb-ot.h>

#include "quartz/text/CharacterMap.h"
#include "quartz/text/FontFacePrivate.h"
#include "support/SmallFont.h"
#include "support/TemporaryFolder.h"

namespace brindle::text {

namespace {

    using test::FontBytes;
    using test::smallFont;
    using test::smallGlyph;

    std::span<const unsigned char> bytesOf(const std::string& text)
    {
        return { reinterpret_cast<const unsigned char*>(text.data()), text.size() };
    }

    /// A font with one part in its table of characters.
    CharacterMap charactersOf(
        const std::string& part, std::size_t platform = 3, std::size_t encoding = 1)
    {
        FontBytes table { 0, 1, platform, encoding };
        table.longWord(12).text(part);
        // The map looks into the bytes where it is asked.
        static std::vector<std::unique_ptr<std::string>> kept;
        kept.push_back(std::make_unique<std::string>(table.bytes()));
        return CharacterMap(FontTable(bytesOf(*kept.back())));
    }

    /// Two segments: "A" to "C" by a difference, "a" and "b" by a list; and the one at the end.
    std::string segments()
    {
        FontBytes part { 4, 0, 0, 6, 0, 0, 0 };
        part.word('C').word('b').word(0xFFFF).word(0);
        part.word('A').word('a').word(0xFFFF);
        part.word(0x10000 + 5 - 'A').word(0).word(1);
        part.word(0).word(4).word(0);
        return part.word(40).word(0).bytes();
    }

}

TEST(FontFile, AnswersItsTables)
{
    const std::string font = smallFont({ { "kern", "abcd" } });
    const FontFile file(bytesOf(font), 0);
    EXPECT_EQ(file.table("kern").size(), 4u);
    EXPECT_EQ(file.table("kern").word(2), std::size_t { 'c' } << 8 | 'd');
    EXPECT_EQ(file.table("GPOS").size(), 0u);
}

TEST(FontFile, CutsATableThatLeavesItsEnd)
{
    const std::string font = smallFont({ { "zzzz", std::string(8, 'x') } }); // the last one
    const FontFile cut(bytesOf(font).first(font.size() - 5), 0);
    EXPECT_EQ(cut.table("zzzz").size(), 3u);
    EXPECT_EQ(cut.table("zzzz").word(2), 0u);
}

TEST(FontFile, HasNoTablesWhenItIsNoFont)
{
    const std::string text = "no font at all";
    EXPECT_EQ(FontFile(bytesOf(text), 0).table("head").size(), 0u);
    EXPECT_EQ(FontFile({}, 0).table("head").size(), 0u);
}

TEST(FontFile, FindsTheFacesOfACollection)
{
    FontBytes header;
    header.text("ttcf").longWord(0x10000).longWord(2).longWord(20).longWord(48);
    FontBytes face;
    face.longWord(0x10000).word(1).word(0).word(0).word(0);
    face.text("aaaa").longWord(0).longWord(0).longWord(3);
    const std::string file = header.bytes() + face.bytes() + face.bytes();
    EXPECT_EQ(FontFile(bytesOf(file), 0).table("aaaa").size(), 3u);
    EXPECT_EQ(FontFile(bytesOf(file), 1).table("aaaa").size(), 3u);
    EXPECT_EQ(FontFile(bytesOf(file), 2).table("aaaa").size(), 0u);
}

TEST(FontFile, HasNoSecondFaceOutsideOfACollection)
{
    const std::string font = smallFont({});
    EXPECT_EQ(FontFile(bytesOf(font), 1).table("head").size(), 0u);
}

TEST(FontFile, IsNothingWithoutAFile)
{
    const test::TemporaryFolder folder;
    EXPECT_FALSE(FontFile::open((folder.path() / "none.ttf").string(), 0));
}

TEST(FontFile, OpensAnEmptyFileWithoutTables)
{
    const test::TemporaryFolder folder;
    const std::string path = (folder.path() / "empty.ttf").string();
    std::ofstream(path).close();
    const auto file = FontFile::open(path, 0);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->table("head").size(), 0u);
}

TEST(CharacterMap, FindsCharactersInSegments)
{
    const CharacterMap characters = charactersOf(segments());
    ASSERT_TRUE(characters.isReadable());
    EXPECT_EQ(characters.glyphFor('A'), 5u);
    EXPECT_EQ(characters.glyphFor('C'), 7u);
    EXPECT_EQ(characters.glyphFor('D'), 0u);
    EXPECT_EQ(characters.glyphFor('a'), 40u);
    EXPECT_EQ(characters.glyphFor('b'), 0u) << "a list may say that there is none";
    EXPECT_EQ(characters.glyphFor(0xFFFF), 0u);
    EXPECT_EQ(characters.glyphFor(0x1F600), 0u);
}

TEST(CharacterMap, FindsCharactersInGroups)
{
    FontBytes part { 12, 0, 0, 28, 0, 0 };
    part.longWord(1).longWord(0x1F600).longWord(0x1F602).longWord(9);
    const CharacterMap characters = charactersOf(part.bytes(), 3, 10);
    EXPECT_EQ(characters.glyphFor(0x1F600), 9u);
    EXPECT_EQ(characters.glyphFor(0x1F602), 11u);
    EXPECT_EQ(characters.glyphFor(0x1F603), 0u);
    EXPECT_EQ(characters.glyphFor('a'), 0u);
}

TEST(CharacterMap, IsNotReadForSymbols)
{
    EXPECT_FALSE(charactersOf(segments(), 3, 0).isReadable());
}

TEST(CharacterMap, IsNotReadInARareForm)
{
    EXPECT_FALSE(charactersOf(FontBytes { 6, 12, 0, 'A', 1, 5 }.bytes()).isReadable());
    EXPECT_FALSE(CharacterMap(FontTable()).isReadable());
}

TEST(CharacterMap, FindsNothingOutsideOfItsTable)
{
    std::string part = segments();
    part.resize(20);
    const CharacterMap cut = charactersOf(part);
    for (char32_t letter = 0; letter < 0x100; ++letter)
        EXPECT_EQ(cut.glyphFor(letter), 0u);
    FontBytes groups { 12, 0, 0, 28, 0, 0 };
    const CharacterMap many = charactersOf(groups.longWord(0xFFFFFFFF).bytes(), 3, 10);
    EXPECT_EQ(many.glyphFor('a'), 0u);
}

namespace {

    /// Every installed face that is read beside the shaping library, for comparison.
    template <class Compare> void forEachFace(Compare compare)
    {
        for (const std::string& name : FontFace::installedNames()) {
            const FontFace* const face = FontFace::named(name);
            if (face && face->handles().characters.isReadable())
                compare(*face, face->handles().shaping(*face));
        }
    }

}

TEST(CharacterMap, AgreesWithTheShapingLibrary)
{
    forEachFace([](const FontFace& face, hb_font_t* font) {
        for (char32_t codePoint = 0; codePoint < 0x3000; ++codePoint) {
            hb_codepoint_t glyph = 0;
            BRINDLE_HARFBUZZ(hb_font_get_nominal_glyph)(font, codePoint, &glyph);
            ASSERT_EQ(face.glyphFor(codePoint), glyph) << face.postScriptName();
        }
    });
}

TEST(GlyphAdvances, AgreeWithTheShapingLibrary)
{
    forEachFace([](const FontFace& face, hb_font_t* font) {
        const GlyphAdvances& advances = face.handles().advances;
        for (GlyphId glyph = 0; glyph <= advances.glyphCount(); glyph += 7)
            ASSERT_EQ(
                advances.of(glyph), BRINDLE_HARFBUZZ(hb_font_get_glyph_h_advance)(font, glyph))
                << face.postScriptName() << ' ' << glyph;
    });
}

TEST(FontFaceMetrics, AgreeWithTheShapingLibrary)
{
    const auto metric = [](hb_font_t* font, hb_ot_metrics_tag_t tag) {
        hb_position_t value = 0;
        BRINDLE_HARFBUZZ(hb_ot_metrics_get_position)(font, tag, &value);
        return value;
    };
    forEachFace([&](const FontFace& face, hb_font_t* font) {
        const FaceMetrics& metrics = face.metrics();
        const double units = face.unitsPerEm();
        const auto expectAlike = [&](double ours, hb_ot_metrics_tag_t tag) {
            EXPECT_DOUBLE_EQ(ours * units, metric(font, tag)) << face.postScriptName();
        };
        expectAlike(metrics.ascender, HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER);
        expectAlike(metrics.descender, HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER);
        expectAlike(metrics.leading, HB_OT_METRICS_TAG_HORIZONTAL_LINE_GAP);
        expectAlike(metrics.underlinePosition, HB_OT_METRICS_TAG_UNDERLINE_OFFSET);
        expectAlike(metrics.underlineThickness, HB_OT_METRICS_TAG_UNDERLINE_SIZE);
        if (metric(font, HB_OT_METRICS_TAG_CAP_HEIGHT))
            expectAlike(metrics.capHeight, HB_OT_METRICS_TAG_CAP_HEIGHT);
        if (metric(font, HB_OT_METRICS_TAG_X_HEIGHT))
            expectAlike(metrics.xHeight, HB_OT_METRICS_TAG_X_HEIGHT);
    });
}

}
