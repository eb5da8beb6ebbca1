// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/Font.h"
#include "quartz/text/FontAliases.h"

#include <algorithm>
#include <thread>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    std::string resolvedName(std::string_view name)
    {
        const FontFace* face = FontFace::named(name);
        return face ? face->postScriptName() : "nothing";
    }

}

TEST(TextFontFace, IsFoundByPostScriptName)
{
    EXPECT_EQ(resolvedName("Inter-SemiBold"), "Inter-SemiBold");
    EXPECT_EQ(resolvedName("LiberationSans-BoldItalic"), "LiberationSans-BoldItalic");
}

TEST(TextFontFace, FamilyNameMeansItsRegularFace)
{
    EXPECT_EQ(resolvedName("Inter"), "Inter-Regular");
    EXPECT_EQ(resolvedName("DejaVu Sans"), "DejaVuSans");
}

TEST(TextFontFace, UnknownNameIsNeverReplaced)
{
    EXPECT_EQ(FontFace::named("NoSuchFace-Bold"), nullptr);
    EXPECT_EQ(FontFace::named("inter"), nullptr);
    EXPECT_EQ(FontFace::named(""), nullptr);
    EXPECT_EQ(FontFace::named(std::string_view("Inter\0x", 7)), nullptr);
}

TEST(TextFontFace, GenericFamilyIsNotAName)
{
    EXPECT_EQ(FontFace::named("sans-serif"), nullptr);
    EXPECT_EQ(FontFace::named("monospace"), nullptr);
}

TEST(TextFontFace, CustomaryNamesResolveToTheNearestInstalledFace)
{
    EXPECT_EQ(resolvedName("Helvetica"), "LiberationSans");
    EXPECT_EQ(resolvedName("Helvetica-Bold"), "LiberationSans-Bold");
    EXPECT_EQ(resolvedName("HelveticaNeue"), "LiberationSans");
    EXPECT_EQ(resolvedName("HelveticaNeue-Bold"), "LiberationSans-Bold");
    EXPECT_EQ(resolvedName("HelveticaNeue-Medium"), "Inter-Medium");
    EXPECT_EQ(resolvedName("LucidaGrande"), "DejaVuSans");
    EXPECT_EQ(resolvedName("Menlo-Regular"), "DejaVuSansMono");
    EXPECT_EQ(resolvedName("Times-Roman"), "LiberationSerif");
    EXPECT_EQ(resolvedName("Courier"), "LiberationMono");
}

TEST(TextFontFace, AliasesFallToTheNextInstalledFace)
{
    // The condensed relative is not among the installed fonts.
    EXPECT_EQ(resolvedName("HelveticaNeue-CondensedBold"), "LiberationSans-Bold");
}

TEST(TextFontFace, AliasTableKnowsOnlyItsOwnNames)
{
    ASSERT_NE(aliasesForName("Verdana-Bold"), nullptr);
    EXPECT_EQ(aliasesForName("Verdana-Bold")->front(), "DejaVuSans-Bold");
    EXPECT_EQ(aliasesForName("Zapfino"), nullptr);
    EXPECT_EQ(aliasesForName(""), nullptr);
}

TEST(TextFontFace, SameFaceIsOneObject)
{
    EXPECT_EQ(FontFace::named("Helvetica"), FontFace::named("LiberationSans"));
    EXPECT_EQ(FontFace::inFamily("Inter", 400, Slant::upright), FontFace::named("Inter"));
}

TEST(TextFontFace, SystemFaceHasTheWeightAndSlantAskedFor)
{
    EXPECT_EQ(FontFace::system(400, Slant::upright)->postScriptName(), "Inter-Regular");
    EXPECT_EQ(FontFace::system(500, Slant::upright)->postScriptName(), "Inter-Medium");
    EXPECT_EQ(FontFace::system(700, Slant::upright)->postScriptName(), "Inter-Bold");
    EXPECT_EQ(FontFace::system(400, Slant::italic)->postScriptName(), "Inter-Italic");
    EXPECT_EQ(FontFace::system(-5, Slant::upright)->postScriptName(), "Inter-Thin");
}

TEST(TextFontFace, FamilyAnswersTheNearestStyleItHas)
{
    EXPECT_EQ(FontFace::inFamily("Liberation Sans", 600, Slant::upright)->postScriptName(),
        "LiberationSans-Bold");
    EXPECT_EQ(
        FontFace::inFamily("DejaVu Sans", 400, Slant::italic)->postScriptName(), "DejaVuSans");
    EXPECT_EQ(FontFace::inFamily("No Such Family", 400, Slant::upright), nullptr);
}

TEST(TextFontFace, KnowsItsTraits)
{
    const FontFace* face = FontFace::named("LiberationMono-BoldItalic");
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->familyName(), "Liberation Mono");
    EXPECT_EQ(face->weight(), 700);
    EXPECT_EQ(face->slant(), Slant::italic);
    EXPECT_TRUE(face->isMonospaced());
    EXPECT_FALSE(FontFace::named("Inter")->isMonospaced());
}

TEST(TextFontFace, InstalledNamesAreSortedAndSingle)
{
    const std::vector<std::string> names = FontFace::installedNames();
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
    EXPECT_TRUE(std::ranges::binary_search(names, "Inter-Regular"));
}

TEST(TextFont, MeasuresAreIdealAndScaleWithTheSize)
{
    const Font font { FontFace::named("LiberationSans"), 12 };
    EXPECT_DOUBLE_EQ(font.ascender(), 12 * 1854.0 / 2048);
    EXPECT_DOUBLE_EQ(font.descender(), -12 * 434.0 / 2048);
    EXPECT_DOUBLE_EQ(font.leading(), 12 * 67.0 / 2048);
    const Font large { font.face, 120 };
    EXPECT_DOUBLE_EQ(large.capHeight(), 10 * font.capHeight());
    EXPECT_DOUBLE_EQ(large.xHeight(), 10 * font.xHeight());
}

TEST(TextFont, LettersReachTheStatedHeights)
{
    const Font font { FontFace::named("Inter-Regular"), 100 };
    EXPECT_NEAR(font.capHeight(), 72.7, 0.1);
    EXPECT_NEAR(font.xHeight(), 54.6, 0.1);
    EXPECT_GT(font.ascender(), font.capHeight());
}

TEST(TextFont, BoundingBoxHoldsTheLetters)
{
    const Font font { FontFace::named("LiberationSans"), 10 };
    const NSRect box = font.boundingBox();
    EXPECT_LT(box.origin.x, 0);
    EXPECT_LT(box.origin.y, font.descender());
    EXPECT_GT(NSMaxY(box), font.capHeight());
}

TEST(TextFont, AdvanceIsThatOfTheFile)
{
    const Font font { FontFace::named("LiberationSans"), 2048 };
    EXPECT_DOUBLE_EQ(font.advance(font.face->glyphFor(U'A')), 1366);
    EXPECT_DOUBLE_EQ(font.advance(font.face->glyphFor(U' ')), 569);
}

TEST(TextFont, WithoutAFaceEverythingIsZero)
{
    const Font none { nullptr, 12 };
    EXPECT_EQ(none.ascender(), 0);
    EXPECT_EQ(none.advance(3), 0);
    EXPECT_EQ(none.boundingBox(), NSZeroRect);
}

TEST(TextFontFace, MissingCharacterHasGlyphZero)
{
    const FontFace* face = FontFace::named("Inter-Regular");
    EXPECT_EQ(face->glyphFor(U'中'), 0u);
    EXPECT_FALSE(face->covers(U'中'));
    EXPECT_TRUE(face->covers(U'é'));
    EXPECT_EQ(face->glyphFor(0xFFFFFFFF), 0u);
}

TEST(TextFontFace, OutlineOfALetterIsClosedAndInsideItsEm)
{
    const FontFace* face = FontFace::named("LiberationSans");
    const std::vector<OutlineStep> steps = face->outline(face->glyphFor(U'l'));
    ASSERT_FALSE(steps.empty());
    EXPECT_EQ(steps.front().kind, OutlineStep::Kind::move);
    EXPECT_EQ(steps.back().kind, OutlineStep::Kind::close);
    for (const OutlineStep& step : steps) {
        EXPECT_LE(step.to.x, 1);
        EXPECT_LE(step.to.y, 1);
    }
    EXPECT_TRUE(face->outline(face->glyphFor(U' ')).empty());
}

TEST(TextFontFace, ThreadsThatAskAtOnceGetTheSameFace)
{
    std::array<const FontFace*, 4> found {};
    std::vector<std::thread> threads;
    for (const FontFace*& slot : found)
        threads.emplace_back([&slot] { slot = FontFace::named("LiberationSerif-Italic"); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_NE(found[0], nullptr);
    EXPECT_EQ(std::ranges::count(found, found[0]), 4);
}

}
